// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// What the deviates "add", "delete" and "replace" share: a deviate is a table of
// steps, one for each property, of which only those are taken that the deviate
// carries. Every deviate and every step takes (deviating module, target node,
// deviate) and gives 0, 1 for a refused change or 12 without memory. What was
// refused is recorded against the deviating module; what was changed before a
// failure stays changed.

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

// Whether the deviate has several defaults, for a node that can have only one;
// records `format` then. Deliberate: the message is all that happens to such a
// deviate, which goes on with its next property.
bool HasSeveralDefaults(QmsModule* module, const QmsNode* target, const QmsDeviate* deviate,
                        const char* format);

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

// The payloads, for a node whose kind is known.
inline QmsLeaf* LeafOf(QmsNode* node) {
  return static_cast<QmsLeaf*>(node->payload);
}
inline QmsLeafList* LeafListOf(QmsNode* node) {
  return static_cast<QmsLeafList*>(node->payload);
}
inline QmsChoice* ChoiceOf(QmsNode* node) {
  return static_cast<QmsChoice*>(node->payload);
}

QM_BEGIN_INTERNAL_DECLS

// To be called before each deviate: rewrites the prefixes of identityref defaults
// to module names, once. The type that decides is the one that the deviate brings,
// else the target's. 0 also when there is nothing to rewrite; 22, with all values
// as they were, when one cannot be rewritten or memory runs out.
uint32_t QMS_MOD_RefreshDeviateDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// Tells the client, by the hook of its context, that a deviation is about to
// change the extension instances of `node`. Gives the client's answer; 0 without a
// hook or a context, 22 for no node or one without a module.
uint32_t QMS_NODE_NotifyBeforeExtInstsChange(QmsNode* node);

QM_END_INTERNAL_DECLS
