// SPDX-License-Identifier: BSD-3-Clause
// The deviate "add" (RFC 7950, section 7.20.3.2): gives the target properties
// that it does not have. What it has already is refused, except for musts, which
// only add up, and for extension instances, of which one more is no change.
#include "schema/deviate_add.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/dict.h"
#include "schema/deviate.h"
#include "schema/ext_inst.h"
#include "schema/flags.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"

namespace {
// What is recorded when the deviate has several defaults, or the node has one.
struct DefaultTexts {
  const char* several;
  const char* present;
};
}  // namespace

static uint32_t AddNodeConfig(QmsModule* module, QmsNode* target, const QmsDeviate* deviate) {
  if ((deviate->flags & kQmsConfigMask) == 0) return QM_OK;
  if ((target->flags & QMS_NODE_CONFIG_OWN) != 0) {
    return RefuseDeviate(
        module, target,
        "Failed to add config to node \"%s\", because it had been set config statement.");
  }
  TakeConfigOfDeviate(target, deviate);
  return QM_OK;
}

// The default of a choice or a leaf, which have one at most.
static uint32_t AddOnlyDefault(QmsModule* module, QmsNode* target, const QmsDeviate* deviate,
                               const char** field, const DefaultTexts& texts) {
  if (HasSeveralDefaults(module, target, deviate, texts.several)) return QM_OK;
  if (*field != nullptr) return RefuseDeviate(module, target, texts.present);
  return InternText(ModuleDict(target->module), field, deviate->defaults[0]) ? QM_OK : QM_NO_MEMORY;
}

static bool HasAnyOf(const QmsLeafList* payload, const QmsDeviate* deviate) {
  if (payload->defaults == nullptr) return false;
  for (uint32_t i = 0; i < deviate->defaultCount; ++i) {
    for (uint32_t j = 0; j < payload->defaultCount; ++j) {
      if (NamesEqual(deviate->defaults[i], payload->defaults[j])) return true;
    }
  }
  return false;
}

// Merges one instance into the node's, telling the client before the first change.
static uint32_t AddExtInst(QmsNode* target, const QmsExtInst* inst, bool* changed) {
  if (QMS_EXT_FindSameExtInstInArray(target->extInsts, target->extInstCount, inst) != nullptr) {
    return QM_OK;
  }
  // The client's answer changes nothing: it is told, not asked.
  if (!*changed) static_cast<void>(QMS_NODE_NotifyBeforeExtInstsChange(target));
  *changed = true;
  const uint32_t ret = QMS_EXT_MergeOneExtInstToArray(ModuleDict(target->module), &target->extInsts,
                                                      &target->extInstCount, inst);
  if (ret == QM_OK) QMS_NODE_SetNacmFlag(target, inst->module, inst->name);
  return ret;
}

uint32_t QMS_MOD_AddNodeMandatory(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  const uint32_t added = deviate->flags & kQmsMandatoryMask;
  if (added == 0) return QM_OK;
  if ((target->flags & kQmsMandatoryMask) != 0) {
    return RefuseDeviate(module, target, "Failed to add mandatory flag to node \"%s\".");
  }
  target->flags |= added;
  return QM_OK;
}

uint32_t QMS_MOD_CoupleDevAddFlag(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  const uint32_t ret = AddNodeConfig(module, target, deviate);
  return ret != QM_OK ? ret : QMS_MOD_AddNodeMandatory(module, target, deviate);
}

uint32_t QMS_MOD_AddChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr DefaultTexts kTexts = {
      "Failed to add default to choice node \"%s\", because the number of default to be added > 1.",
      "Failed to add default to choice node \"%s\", because it had been set default statement."};
  return AddOnlyDefault(module, target, deviate, &ChoiceOf(target)->defaultCase, kTexts);
}

uint32_t QMS_MOD_AddLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  // Clients match the first text with its two blanks.
  static constexpr DefaultTexts kTexts = {
      "Failed to add default to leaf node \"%s\",  because the number of default to be added > 1.",
      "Failed to add default to leaf node \"%s\", because it had been set default statement."};
  return AddOnlyDefault(module, target, deviate, &LeafOf(target)->defaultValue, kTexts);
}

uint32_t QMS_MOD_AddLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  QmsLeafList* payload = LeafListOf(target);
  if (HasAnyOf(payload, deviate)) {
    return RefuseDeviate(
        module, target, "Failed to add default to node \"%s\", because this value already exists.");
  }
  return QMS_NODE_AppendLeaflistDefaults(ModuleDict(target->module), payload, deviate->defaultCount,
                                         deviate->defaults);
}

uint32_t QMS_MOD_CoupleDevAddDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr QmsDeviateKindSteps kSteps = {QMS_MOD_AddChoiceDefault, QMS_MOD_AddLeafDefault,
                                                 QMS_MOD_AddLeaflistDefaults};
  return RunDeviateStepOfKind(kSteps, module, target, deviate);
}

uint32_t QMS_MOD_CoupleDevAddMusts(QmsModule* /*module*/, QmsNode* target, QmsDeviate* deviate) {
  for (uint32_t i = 0; i < deviate->mustCount; ++i) {
    const uint32_t ret = QMS_NODE_AppendOneMust(ModuleDict(target->module), &target->musts,
                                                &target->mustCount, &deviate->musts[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_MOD_CoupleDevAddUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  const char** units = UnitsField(target);
  if (units == nullptr) return QM_FAILED;
  if (*units != nullptr) {
    return RefuseDeviate(module, target,
                         "Failed to add units to node \"%s\", because it already has units.");
  }
  return InternText(ModuleDict(target->module), units, deviate->units) ? QM_OK : QM_NO_MEMORY;
}

uint32_t QMS_MOD_CoupleDevAddExtInsts(QmsModule* /*module*/, QmsNode* target, QmsDeviate* deviate) {
  bool changed = false;
  uint32_t ret = QM_OK;
  for (uint32_t i = 0; i < deviate->extInstCount && ret == QM_OK; ++i) {
    ret = AddExtInst(target, &deviate->extInsts[i], &changed);
  }
  if (changed) static_cast<void>(QMS_NODE_UpdateFlag(target));
  return ret;
}

uint32_t QMS_MOD_CoupleDevAdd(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr QmsDeviateStep kSteps[] = {
      {CarriesFlags, QMS_MOD_CoupleDevAddFlag, "Failed to add config or mandatory to node \"%s\"."},
      {CarriesDefaults, QMS_MOD_CoupleDevAddDefaults,
       "Failed to add default statements to node \"%s\"."},
      {CarriesMusts, QMS_MOD_CoupleDevAddMusts, "Failed to add must statements to node \"%s\"."},
      {CarriesUnits, QMS_MOD_CoupleDevAddUnits, "Failed to add units statement to node \"%s\"."},
      {CarriesExtInsts, QMS_MOD_CoupleDevAddExtInsts,
       "Failed to deviate-add extension-instance to node \"%s\"."},
  };
  return RunDeviateSteps(kSteps, std::size(kSteps), module, target, deviate);
}
