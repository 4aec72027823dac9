// SPDX-License-Identifier: BSD-3-Clause
// What the deviates have in common, and the defaults of a deviate.
//
// A deviate is applied property by property, in a fixed order. A change that is
// refused leaves two messages: what exactly was refused, then which step failed.
// A property changed before stays changed: there is no way back, and the
// deviation is tried again as a whole when its target is loaded again.
#include "schema/deviate.h"

#include <qmodel/error.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/load_error.h"
#include "schema/flags.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_path.h"
#include "types/type.h"

uint32_t RunDeviateSteps(const QmsDeviateStep* steps, size_t count, QmsModule* module,
                         QmsNode* target, QmsDeviate* deviate) {
  for (size_t i = 0; i < count; ++i) {
    if (!steps[i].carried(deviate)) continue;
    const uint32_t ret = steps[i].apply(module, target, deviate);
    if (ret == QM_OK) continue;
    RecordDeviateError(module, target, steps[i].failure);
    return ret;
  }
  return QM_OK;
}

uint32_t RunDeviateStepOfKind(const QmsDeviateKindSteps& steps, QmsModule* module, QmsNode* target,
                              QmsDeviate* deviate) {
  if (target->kind == QMS_NODE_CHOICE) return steps.choice(module, target, deviate);
  if (target->kind == QMS_NODE_LEAF) return steps.leaf(module, target, deviate);
  if (target->kind == QMS_NODE_LEAF_LIST) return steps.leafList(module, target, deviate);
  return QM_FAILED;
}

void RecordDeviateError(QmsModule* module, const QmsNode* target, const char* format) {
  QM_CTX_AddModError(module->ctx, module->name, format, target->name);
}

uint32_t RefuseDeviate(QmsModule* module, const QmsNode* target, const char* format) {
  RecordDeviateError(module, target, format);
  return QM_FAILED;
}

bool HasSeveralDefaults(QmsModule* module, const QmsNode* target, const QmsDeviate* deviate,
                        const char* format) {
  if (deviate->defaultCount <= 1) return false;
  RecordDeviateError(module, target, format);
  return true;
}

bool CarriesFlags(const QmsDeviate* deviate) {
  return (deviate->flags & (kQmsConfigMask | kQmsMandatoryMask)) != 0;
}

bool CarriesDefaults(const QmsDeviate* deviate) {
  return deviate->defaults != nullptr && deviate->defaultCount != 0;
}

bool CarriesMusts(const QmsDeviate* deviate) {
  return deviate->musts != nullptr && deviate->mustCount != 0;
}

bool CarriesUnits(const QmsDeviate* deviate) {
  return deviate->units != nullptr;
}

bool CarriesExtInsts(const QmsDeviate* deviate) {
  return deviate->extInsts != nullptr && deviate->extInstCount != 0;
}

bool CarriesType(const QmsDeviate* deviate) {
  return deviate->type != nullptr;
}

void TakeConfigOfDeviate(QmsNode* target, const QmsDeviate* deviate) {
  const uint32_t taken = deviate->flags & (kQmsConfigMask | QMS_NODE_CONFIG_OWN);
  target->flags = (target->flags & ~kQmsConfigMask) | taken;
  static_cast<void>(QMS_NODE_UpdateFlag(target));
}

const char** UnitsField(QmsNode* target) {
  if (target->kind == QMS_NODE_LEAF) return &LeafOf(target)->units;
  if (target->kind == QMS_NODE_LEAF_LIST) return &LeafListOf(target)->units;
  return nullptr;
}

QmtType* TypeField(QmsNode* target) {
  if (target->kind == QMS_NODE_LEAF) return &LeafOf(target)->type;
  if (target->kind == QMS_NODE_LEAF_LIST) return &LeafListOf(target)->type;
  return nullptr;
}

// An interned "module:value" for a value with a prefix of `module`, or NULL.
static const char* InternQualifiedValue(QmsModule* module, const char* value) {
  const QmHeld<char> text(QMS_MOD_ConvertPrefixValToJsonFormat(module, value));
  return text ? QM_DICT_Insert(ModuleDict(module), text.Get()) : nullptr;
}

// Fills `out` with the qualified form of every default; nothing is kept when one fails.
static bool QualifyDefaults(QmsModule* module, const QmsDeviate* deviate, const char** out) {
  for (uint32_t i = 0; i < deviate->defaultCount; ++i) {
    out[i] = InternQualifiedValue(module, deviate->defaults[i]);
    if (out[i] != nullptr) continue;
    while (i > 0) ReleaseText(ModuleDict(module), &out[--i]);
    return false;
  }
  return true;
}

// All or none: a deviate with some of its values rewritten could not be tried again.
static uint32_t RewriteDefaults(QmsModule* module, QmsDeviate* deviate) {
  const char** block = nullptr;
  if (NewArrayOf(&block, deviate->defaultCount) != QM_OK) return QM_INVALID;
  const QmHeld<const char*> qualified(block);
  if (!QualifyDefaults(module, deviate, qualified.Get())) return QM_INVALID;
  for (uint32_t i = 0; i < deviate->defaultCount; ++i) {
    ReleaseText(ModuleDict(module), &deviate->defaults[i]);
    deviate->defaults[i] = qualified.Get()[i];
  }
  deviate->defaultsRewritten = 1;
  return QM_OK;
}

uint32_t QMS_MOD_RefreshDeviateDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate) {
  // A deviate is applied again whenever its target is loaded again. By then its
  // values carry module names, which are no prefixes.
  if (!CarriesDefaults(deviate) || deviate->defaultsRewritten != 0) return QM_OK;
  const QmtType* type = TypeField(target);
  if (type == nullptr) return QM_OK;
  if (deviate->type != nullptr) type = deviate->type;
  if (QMT_TYPE_IsTypeWithIdentref(type) != 1) return QM_OK;
  return RewriteDefaults(module, deviate);
}

uint32_t QMS_NODE_NotifyBeforeExtInstsChange(QmsNode* node) {
  if (node == nullptr || node->module == nullptr) return QM_INVALID;
  QmCtx* ctx = NodeCtx(node);
  if (ctx == nullptr || ctx->beforeDeviateExtInstFunc == nullptr) return QM_OK;
  return ctx->beforeDeviateExtInstFunc(ctx, node);
}
