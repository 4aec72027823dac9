// SPDX-License-Identifier: BSD-3-Clause
// The deviate "delete" (RFC 7950, section 7.20.3.2): takes properties away that
// the target has with exactly the given text.
//
// In an array the entries to go are cleared first and the rest is compacted at
// the end, also when a later value is refused: what was found before it is gone,
// and no cleared entry stays behind for others to trip over.
#include "schema/deviate_delete.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/dict.h"
#include "context/load_error.h"
#include "schema/deviate.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/record_array.h"

namespace {
// What is recorded when the deviate has several defaults, or the node has none or
// another one.
struct DefaultTexts {
  const char* several;
  const char* absent;
  const char* different;
};
}  // namespace

// The default of a choice or a leaf, which have one at most.
static uint32_t DeleteOnlyDefault(QmsModule* module, QmsNode* target, const QmsDeviate* deviate,
                                  const char** field, const DefaultTexts& texts) {
  if (HasSeveralDefaults(module, target, deviate, texts.several)) return QM_OK;
  if (*field == nullptr) return RefuseDeviate(module, target, texts.absent);
  if (!NamesEqual(*field, deviate->defaults[0])) {
    return RefuseDeviate(module, target, texts.different);
  }
  ReleaseText(ModuleDict(target->module), field);
  return QM_OK;
}

static uint32_t ReleaseMatchingDefaults(QmDict* dict, QmsLeafList* payload, const char* value) {
  uint32_t released = 0;
  for (uint32_t i = 0; payload->defaults != nullptr && i < payload->defaultCount; ++i) {
    if (!NamesEqual(payload->defaults[i], value)) continue;
    ReleaseText(dict, &payload->defaults[i]);
    ++released;
  }
  return released;
}

// Closes the gaps that `removed` released defaults have left.
static uint32_t CompactDefaults(QmDict* dict, QmsLeafList* payload, uint32_t removed) {
  if (removed == 0) return QM_OK;
  const uint32_t left = payload->defaultCount - removed;
  if (left != 0) return QMS_NODE_SubtractLeaflistDefaults(dict, payload, left);
  DropArrayOf(dict, &payload->defaults, &payload->defaultCount, QMS_NODE_FreeDefaults);
  return QM_OK;
}

// The same for an array of records. Without memory for the rest, nothing is left.
template <auto Subtract, auto Free, typename Elem>
static uint32_t CompactRecords(QmDict* dict, Elem** array, uint16_t* count, uint32_t removed) {
  if (removed == 0) return QM_OK;
  const uint32_t left = *count - removed;
  if (left == 0) {
    DropArrayOf(dict, array, count, Free);
    return QM_OK;
  }
  const uint32_t ret = Subtract(dict, array, *count, left);
  *count = *array != nullptr ? static_cast<uint16_t>(left) : uint16_t{0};
  return ret;
}

static uint32_t ClearMatchingMusts(QmDict* dict, QmsNode* target, const QmsMust* must) {
  uint32_t cleared = 0;
  if (must->condition == nullptr) return 0;
  for (uint32_t i = 0; target->musts != nullptr && i < target->mustCount; ++i) {
    if (QMS_NODE_CheckTwoMustSame(&target->musts[i], must) != 1) continue;
    QMS_NODE_ClearMust(dict, &target->musts[i]);
    ++cleared;
  }
  return cleared;
}

// Clears the node's instance that is the same as `inst`, if it has one, telling
// the client before the first change. Gives the number of cleared instances.
static uint32_t ClearMatchingExtInst(QmsNode* target, const QmsExtInst* inst, bool firstChange) {
  QmsExtInst* found = QMS_EXT_FindSameExtInstInArray(target->extInsts, target->extInstCount, inst);
  if (found == nullptr) return 0;
  if (firstChange) static_cast<void>(QMS_NODE_NotifyBeforeExtInstsChange(target));
  QMS_EXT_ClearExtInst(ModuleDict(target->module), found);
  return 1;
}

uint32_t QMS_MOD_DelChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr DefaultTexts kTexts = {
      "Failed to delete default from choice node \"%s\", because default number > 1.",
      "Failed to delete default from choice node \"%s\" without default value.",
      "Failed to find default value to be deleted in choice node \"%s\"."};
  return DeleteOnlyDefault(module, target, deviate, &ChoiceOf(target)->defaultCase, kTexts);
}

uint32_t QMS_MOD_DelLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr DefaultTexts kTexts = {
      "Failed to delete default from leaf node \"%s\", because the number of defaults to be "
      "deleted > 1.",
      "Failed to delete default from leaf node \"%s\" without default value.",
      "Failed to find default value to be deleted in leaf node \"%s\"."};
  return DeleteOnlyDefault(module, target, deviate, &LeafOf(target)->defaultValue, kTexts);
}

uint32_t QMS_MOD_DelLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  QmDict* dict = ModuleDict(target->module);
  QmsLeafList* payload = LeafListOf(target);
  uint32_t removed = 0;
  uint32_t ret = QM_OK;
  for (uint32_t i = 0; i < deviate->defaultCount && ret == QM_OK; ++i) {
    const uint32_t released = ReleaseMatchingDefaults(dict, payload, deviate->defaults[i]);
    removed += released;
    if (released == 0) {
      ret = RefuseDeviate(module, target,
                          "Failed to find default value to be deleted in leaf-list node \"%s\".");
    }
  }
  if (removed > payload->defaultCount) {
    return RefuseDeviate(module, target,
                         "Failed to delete default value from leaf-list node \"%s\".");
  }
  const uint32_t compacted = CompactDefaults(dict, payload, removed);
  return ret != QM_OK ? ret : compacted;
}

uint32_t QMS_MOD_CoupleDevDelDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr QmsDeviateKindSteps kSteps = {QMS_MOD_DelChoiceDefault, QMS_MOD_DelLeafDefault,
                                                 QMS_MOD_DelLeaflistDefaults};
  return RunDeviateStepOfKind(kSteps, module, target, deviate);
}

uint32_t QMS_MOD_CoupleDevDelMusts(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  QmDict* dict = ModuleDict(target->module);
  uint32_t removed = 0;
  uint32_t ret = QM_OK;
  for (uint32_t i = 0; i < deviate->mustCount && ret == QM_OK; ++i) {
    const uint32_t cleared = ClearMatchingMusts(dict, target, &deviate->musts[i]);
    removed += cleared;
    if (cleared == 0) {
      ret = RefuseDeviate(module, target,
                          "Failed to find must condition to be deleted in target node \"%s\".");
    }
  }
  if (removed > target->mustCount) {
    return RefuseDeviate(module, target, "Failed to delete musts from node \"%s\".");
  }
  const uint32_t compacted = CompactRecords<QMS_NODE_SubtractMustsArray, QMS_NODE_FreeMusts>(
      dict, &target->musts, &target->mustCount, removed);
  return ret != QM_OK ? ret : compacted;
}

uint32_t QMS_MOD_CoupleDevDelUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  const char** units = UnitsField(target);
  if (units == nullptr) return QM_FAILED;
  if (!NamesEqual(*units, deviate->units)) {
    return RefuseDeviate(module, target,
                         "Failed to delete units from node \"%s\", because it doesn't have units "
                         "or the target units.");
  }
  ReleaseText(ModuleDict(target->module), units);
  return QM_OK;
}

uint32_t QMS_MOD_CoupleDevDelExtInsts(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  uint32_t removed = 0;
  for (uint32_t i = 0; i < deviate->extInstCount; ++i) {
    const QmsExtInst* inst = &deviate->extInsts[i];
    if (NamesEqual(inst->module, kQmsNacmModule)) {
      // Deliberate: access-control marks stay, and that is no failure.
      QM_CTX_AddModError(module->ctx, module->name,
                         "Deleting extension-instance \"%s:%s\" from node \"%s\" is not supported.",
                         inst->module, inst->name, target->name);
      continue;
    }
    removed += ClearMatchingExtInst(target, inst, removed == 0);
  }
  return CompactRecords<QMS_EXT_SubtractExtInstArray, QMS_EXT_FreeExtInsts>(
      ModuleDict(target->module), &target->extInsts, &target->extInstCount, removed);
}

uint32_t QMS_MOD_CoupleDevDel(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  static constexpr QmsDeviateStep kSteps[] = {
      {CarriesDefaults, QMS_MOD_CoupleDevDelDefaults, "Failed to delete default from node \"%s\"."},
      {CarriesMusts, QMS_MOD_CoupleDevDelMusts, "Failed to delete must from node \"%s\"."},
      {CarriesUnits, QMS_MOD_CoupleDevDelUnits, "Failed to delete units from node \"%s\"."},
      {CarriesExtInsts, QMS_MOD_CoupleDevDelExtInsts,
       "Failed to delete extension-instance to node \"%s\"."},
  };
  return RunDeviateSteps(kSteps, std::size(kSteps), module, target, deviate);
}
