// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

#include "schema/records.h"

// What the three deviates share: a deviate is a table of steps, one for each
// property, of which only those are taken that the deviate carries.

using QmsDeviateStepFunc = uint32_t (*)(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

struct QmsDeviateStep {
  bool (*carried)(const QmsDeviate* deviate);
  QmsDeviateStepFunc apply;
  const char* failure;  // format of the message that follows a failed step, with the node's name
};

// The functions of one step for the node kinds that can have the property.
struct QmsDeviateKindSteps {
  QmsDeviateStepFunc choice;
  QmsDeviateStepFunc leaf;
  QmsDeviateStepFunc leafList;
};

// Takes the steps in order; the first failure is recorded and returned.
uint32_t RunDeviateSteps(const QmsDeviateStep* steps, size_t count, QmsModule* module,
                         QmsNode* target, QmsDeviate* deviate);

// Calls the function for the kind of `target`; 1 for any other kind.
uint32_t RunDeviateStepOfKind(const QmsDeviateKindSteps& steps, QmsModule* module, QmsNode* target,
                              QmsDeviate* deviate);

// Records `format`, which takes the node's name, against the deviating module.
void RecordDeviateError(QmsModule* module, const QmsNode* target, const char* format);

// The same, giving the status of a refused change.
uint32_t RefuseDeviate(QmsModule* module, const QmsNode* target, const char* format);

// Which properties a deviate carries.
bool CarriesFlags(const QmsDeviate* deviate);
bool CarriesDefaults(const QmsDeviate* deviate);
bool CarriesMusts(const QmsDeviate* deviate);
bool CarriesUnits(const QmsDeviate* deviate);
bool CarriesExtInsts(const QmsDeviate* deviate);
bool CarriesType(const QmsDeviate* deviate);

// Puts the config bits of the deviate in place of the node's, its mark of an own
// statement included, and pushes them down the subtree.
void TakeConfigOfDeviate(QmsNode* target, const QmsDeviate* deviate);

// The units field of a leaf or leaf-list; NULL for any other node.
const char** UnitsField(QmsNode* target);

// The embedded type of a leaf or leaf-list; NULL for any other node.
QmtType* TypeField(QmsNode* target);

inline QmsLeaf* LeafOf(QmsNode* node) {
  return static_cast<QmsLeaf*>(node->payload);
}
inline QmsLeafList* LeafListOf(QmsNode* node) {
  return static_cast<QmsLeafList*>(node->payload);
}
inline QmsChoice* ChoiceOf(QmsNode* node) {
  return static_cast<QmsChoice*>(node->payload);
}
