// SPDX-License-Identifier: BSD-3-Clause
// Copies of subtrees in another module of the same context. Deliberate: a copy
// carries what a node is (kind, name, description, extension instances, keys and
// payload), not its conditions, flags, musts and if-features.
#include "schema/node_copy.h"

#include <qmodel/error.h>

#include "context/dict.h"
#include "context/guard.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/node_link.h"
#include "schema/node_value.h"
#include "schema/record_array.h"
#include "schema/typedef.h"
#include "types/type.h"

using PayloadCopyFunc = void* (*)(QmDict* dict, const void* payload);

namespace {
struct PayloadCopyRow {
  uint32_t kind;
  PayloadCopyFunc copy;
};

// The copy as far as it is made. `parent` takes the next node.
struct CopyState {
  QmsModule* module;
  QmsNode* root;
  QmsNode* parent;
  QmsNode* last;  // node made last
};
}  // namespace

// The kinds that have a payload.
constexpr PayloadCopyRow kPayloadCopies[] = {
    {QMS_NODE_LEAF, QMS_NODE_CopySchemaLeaf},
    {QMS_NODE_LEAF_LIST, QMS_NODE_CopySchemaLeaflist},
    {QMS_NODE_CHOICE, QMS_NODE_CopySchemaChoice},
};

// A new payload that `fill` makes a copy of `src`, or NULL.
template <typename Payload>
static void* CopyOf(QmDict* dict, const void* src, bool (*fill)(QmDict*, Payload*, const Payload*),
                    void (*destroy)(QmDict*, void*)) {
  if (dict == nullptr || src == nullptr) return nullptr;
  Payload* copy = NewRecord<Payload>();
  if (copy == nullptr || fill(dict, copy, static_cast<const Payload*>(src))) return copy;
  destroy(dict, copy);
  return nullptr;
}

static bool FillLeaf(QmDict* dict, QmsLeaf* dst, const QmsLeaf* src) {
  return QMT_TYPE_CopyQmtRealTypeInner(dict, &dst->type, &src->type) == QM_OK &&
         InternOptional(dict, &dst->defaultValue, src->defaultValue) &&
         InternOptional(dict, &dst->units, src->units);
}

static bool FillLeafList(QmDict* dict, QmsLeafList* dst, const QmsLeafList* src) {
  return QMT_TYPE_CopyQmtRealTypeInner(dict, &dst->type, &src->type) == QM_OK &&
         CopyCounted(dict, &dst->defaults, &dst->defaultCount, src->defaults, src->defaultCount,
                     QMS_NODE_CopyDefaults) &&
         InternOptional(dict, &dst->units, src->units);
}

static bool FillChoice(QmDict* dict, QmsChoice* dst, const QmsChoice* src) {
  return InternOptional(dict, &dst->defaultCase, src->defaultCase);
}

void* QMS_NODE_CopySchemaLeaf(QmDict* dict, const void* payload) {
  return CopyOf(dict, payload, FillLeaf, QMS_NODE_DestroySchemaLeaf);
}

void* QMS_NODE_CopySchemaLeaflist(QmDict* dict, const void* payload) {
  return CopyOf(dict, payload, FillLeafList, QMS_NODE_DestroySchemaLeaflist);
}

void* QMS_NODE_CopySchemaChoice(QmDict* dict, const void* payload) {
  return CopyOf(dict, payload, FillChoice, QMS_NODE_DestroySchemaChoice);
}

void* QMS_NODE_CopySchemaByType(QmDict* dict, uint32_t kind, const void* payload) {
  for (const PayloadCopyRow& row : kPayloadCopies) {
    if (row.kind == kind) return row.copy(dict, payload);
  }
  return nullptr;
}

static bool CopyPayload(QmDict* dict, QmsNode* dst, const QmsNode* src) {
  if (src->payload == nullptr) return true;
  dst->payload = QMS_NODE_CopySchemaByType(dict, src->kind, src->payload);
  if (dst->payload == nullptr) return false;
  QmtType* type = QMS_NODE_GetLeafSchemaRealType(dst);
  return type == nullptr || QMT_TYPE_UpdateRealTypeDerivedFrom(type, dst->module) == QM_OK;
}

static bool FillCopy(QmsNode* dst, const QmsNode* src) {
  QmDict* dict = ModuleDict(dst->module);
  if (src->kind == QMS_NODE_LIST) dst->keyCount = src->keyCount;
  dst->keyIndex = src->keyIndex;
  return InternOptional(dict, &dst->name, src->name) &&
         InternOptional(dict, &dst->description, src->description) &&
         CopyCounted(dict, &dst->extInsts, &dst->extInstCount, src->extInsts, src->extInstCount,
                     QMS_EXT_CopyExtInsts) &&
         CopyPayload(dict, dst, src);
}

QmsNode* QMS_NODE_CopyOneNodeToModule(const QmsNode* node, QmsModule* module) {
  if (node == nullptr || module == nullptr || module->ctx == nullptr) return nullptr;
  // The kind comes after the creation: the payload is a copy, not a new one.
  QmOwn<QMS_NODE_Free> copy(QMS_NODE_New(QMS_NODE_NONE));
  if (!copy) return nullptr;
  copy->module = module;
  copy->kind = node->kind;
  return FillCopy(copy.Get(), node) ? copy.Release() : nullptr;
}

static uint32_t CopyStepCb(QmsNode* node, uint32_t travType, void* arg) {
  CopyState* state = static_cast<CopyState*>(arg);
  if (travType == QMS_TRAV_PARENT) {
    state->parent = state->parent->parent;
    return QM_OK;
  }
  QmsNode* copy = QMS_NODE_CopyOneNodeToModule(node, state->module);
  if (copy == nullptr) return QM_NO_MEMORY;
  if (travType == QMS_TRAV_CHILD) state->parent = state->last;
  if (travType == QMS_TRAV_TOP) state->root = copy;
  state->last = copy;
  return travType == QMS_TRAV_TOP ? QM_OK : QMS_NODE_AddChild(state->parent, copy);
}

QmsNode* QMS_NODE_CopyNodeTreeToModule(QmsNode* root, QmsModule* module) {
  if (root == nullptr || module == nullptr) return nullptr;
  CopyState state{module, nullptr, nullptr, nullptr};
  if (QM_NODE_TreeScanAllNode(root, CopyStepCb, &state) == QM_OK) return state.root;
  QMS_NODE_Free(state.root);
  return nullptr;
}
