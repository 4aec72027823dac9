// SPDX-License-Identifier: BSD-3-Clause
// The deviate "replace" (RFC 7950, section 7.20.3.2): puts new values in the
// place of properties that the target has. Config and mandatory have a value
// even where none is written, so replacing them never fails.
#include "schema/deviate_replace.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/dict.h"
#include "schema/deviate.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "types/type.h"

namespace {
// What is recorded when the deviate has several defaults, or the node has none.
struct DefaultTexts {
  const char* several;
  const char* absent;
};
}  // namespace

static uint32_t ReplaceText(QmsNode* target, const char** field, const char* text) {
  if (NamesEqual(*field, text)) return QM_OK;
  return InternText(ModuleDict(target->module), field, text) ? QM_OK : QM_NO_MEMORY;
}

// The default of a choice or a leaf, which have one at most.
static uint32_t ReplaceOnlyDefault(QmsModule* module, QmsNode* target, const QmsDeviate* deviate,
                                   const char** field, const DefaultTexts& texts) {
  if (HasSeveralDefaults(module, target, deviate, texts.several)) return QM_OK;
  if (*field == nullptr) return RefuseDeviate(module, target, texts.absent);
  return ReplaceText(target, field, deviate->defaults[0]);
}

uint32_t QMS_MOD_ReplNodeConfig(QmsModule* /*module*/, QmsNode* target, QmsDeviate* deviate) {
  const uint32_t wanted = deviate->flags & kQmsConfigMask;
  if (wanted != 0 && wanted != (target->flags & kQmsConfigMask)) {
    TakeConfigOfDeviate(target, deviate);
  }
  return QM_OK;
}

uint32_t QMS_MOD_ReplNodeMandatory(QmsModule* /*module*/, QmsNode* target, QmsDeviate* deviate) {
  const uint32_t wanted = deviate->flags & kQmsMandatoryMask;
  if (wanted != 0) target->flags = (target->flags & ~kQmsMandatoryMask) | wanted;
  return QM_OK;
}

uint32_t QMS_MOD_CoupleDevReplFlag(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static_cast<void>(QMS_MOD_ReplNodeConfig(module, target, deviate));
  return QMS_MOD_ReplNodeMandatory(module, target, deviate);
}

uint32_t QMS_MOD_ReplChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr DefaultTexts kTexts = {
      "Failed to replace default of choice node \"%s\", because default number > 1.",
      "Failed to replace default of choice node \"%s\" without default value."};
  return ReplaceOnlyDefault(module, target, deviate, &ChoiceOf(target)->defaultCase, kTexts);
}

uint32_t QMS_MOD_ReplLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  // The first text speaks of deleting, and clients match it.
  static constexpr DefaultTexts kTexts = {
      "Failed to replace default of leaf node \"%s\", because the number of defaults to be "
      "deleted > 1.",
      "Failed to replace default of leaf node \"%s\" without default value."};
  return ReplaceOnlyDefault(module, target, deviate, &LeafOf(target)->defaultValue, kTexts);
}

uint32_t QMS_MOD_ReplLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  QmDict* dict = ModuleDict(target->module);
  QmsLeafList* payload = LeafListOf(target);
  if (payload->defaultCount == 0) {
    return RefuseDeviate(module, target, "Failed to replace defaults of leaf-list node \"%s\".");
  }
  QMS_NODE_FreeDefaults(dict, payload->defaults, payload->defaultCount);
  // Deliberate: without memory for the copy the count stands beside no array.
  // Every reader of defaults looks at the array first.
  payload->defaults = QMS_NODE_CopyDefaults(dict, deviate->defaults, deviate->defaultCount);
  payload->defaultCount = deviate->defaultCount;
  return QM_OK;
}

uint32_t QMS_MOD_CoupleDevReplDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr QmsDeviateKindSteps kSteps = {QMS_MOD_ReplChoiceDefault, QMS_MOD_ReplLeafDefault,
                                                 QMS_MOD_ReplLeaflistDefaults};
  return RunDeviateStepOfKind(kSteps, module, target, deviate);
}

uint32_t QMS_MOD_CoupleDevReplType(QmsModule* /*module*/, QmsNode* target, QmsDeviate* deviate) {
  QmtType* type = TypeField(target);
  if (type == nullptr) return QM_FAILED;
  QMT_TYPE_DestroyQmtRealTypeInner(ModuleDict(target->module), type);
  // The range flags of the old type must not speak for the new one, and the
  // copy writes them only for a type with restrictions.
  *type = QmtType{};
  return QMT_TYPE_CopyQmtRealTypeInner(ModuleDict(target->module), type, deviate->type);
}

uint32_t QMS_MOD_CoupleDevReplUnits(QmsModule* /*module*/, QmsNode* target, QmsDeviate* deviate) {
  const char** units = UnitsField(target);
  if (units == nullptr || *units == nullptr) return QM_FAILED;
  return ReplaceText(target, units, deviate->units);
}

uint32_t QMS_MOD_CoupleDevRepl(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  // The flags have no message: that step cannot fail.
  static constexpr QmsDeviateStep kSteps[] = {
      {CarriesFlags, QMS_MOD_CoupleDevReplFlag, nullptr},
      {CarriesDefaults, QMS_MOD_CoupleDevReplDefault, "Failed to replace default of node \"%s\"."},
      {CarriesType, QMS_MOD_CoupleDevReplType, "Failed to replace type of node \"%s\"."},
      {CarriesUnits, QMS_MOD_CoupleDevReplUnits, "Failed to replace units of node \"%s\"."},
  };
  return RunDeviateSteps(kSteps, std::size(kSteps), module, target, deviate);
}
