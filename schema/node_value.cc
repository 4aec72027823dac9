// SPDX-License-Identifier: BSD-3-Clause
// The values of leaves: their type, the default and units that they have of
// their own or from the typedefs of their type, and the leaf that a leafref refers to.
#include "schema/node_value.h"

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "schema/lookup.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "types/type.h"

namespace {
// A search for a text along the typedefs of a type.
struct TypedefTextSearch {
  QmCtx* ctx;
  const char* QmsTypedef::*field;
  const char* found;
};
}  // namespace

// Ends a scan whose answer was found.
constexpr uint32_t kStopScan = QM_FAILED;

QmtType* QMS_NODE_GetLeafSchemaRealType(QmsNode* node) {
  if (node == nullptr || node->payload == nullptr) return nullptr;
  if (node->kind == QMS_NODE_LEAF) return &static_cast<QmsLeaf*>(node->payload)->type;
  if (node->kind == QMS_NODE_LEAF_LIST) return &static_cast<QmsLeafList*>(node->payload)->type;
  return nullptr;
}

QmtType* QM_NODE_GetRealType(QmsNode* node) noexcept {
  return QMS_NODE_GetLeafSchemaRealType(node);
}

static uint32_t TakeTypedefTextCb(const char* moduleName, const char* typedefName,
                                  QmtType* /*type*/, void* arg) {
  TypedefTextSearch* search = static_cast<TypedefTextSearch*>(arg);
  if (typedefName == nullptr) return QM_OK;
  const QmsTypedef* td = QM_CTX_FindTdefObjByModAndTdefName(search->ctx, moduleName, typedefName);
  if (td == nullptr) return QM_OK;
  search->found = td->*search->field;
  return search->found == nullptr ? QM_OK : kStopScan;
}

// The first text of this kind among the typedefs from which the type derives.
static const char* FindTypedefText(const QmsNode* node, QmtType* type,
                                   const char* QmsTypedef::*field) {
  TypedefTextSearch search{NodeCtx(node), field, nullptr};
  if (search.ctx == nullptr) return nullptr;
  const uint32_t ret =
      QM_TYPE_IterRealTypeDerivedName(type, search.ctx, TakeTypedefTextCb, &search);
  return ret == kStopScan ? search.found : nullptr;
}

const char* QM_NODE_GetDefaultValueStr(const QmsNode* node) noexcept {
  if (node == nullptr || node->kind != QMS_NODE_LEAF || node->payload == nullptr) return nullptr;
  if (HasFlag(node, QMS_NODE_MANDATORY_TRUE)) return nullptr;
  QmsLeaf* leaf = static_cast<QmsLeaf*>(node->payload);
  if (leaf->defaultValue != nullptr) return leaf->defaultValue;
  return FindTypedefText(node, &leaf->type, &QmsTypedef::defaultValue);
}

// One function for two records that differ in the place of their fields.
template <typename Payload>
static const char* UnitsOf(const QmsNode* node) {
  Payload* payload = static_cast<Payload*>(node->payload);
  if (payload->units != nullptr) return payload->units;
  return FindTypedefText(node, &payload->type, &QmsTypedef::units);
}

const char* QM_NODE_GetUnitsValueStr(const QmsNode* node) noexcept {
  if (node == nullptr || node->payload == nullptr) return nullptr;
  if (node->kind == QMS_NODE_LEAF) return UnitsOf<QmsLeaf>(node);
  if (node->kind == QMS_NODE_LEAF_LIST) return UnitsOf<QmsLeafList>(node);
  return nullptr;
}

QmtType* UsableType(QmsNode* node) {
  if (node == nullptr || NodeCtx(node) == nullptr) return nullptr;
  QmtType* type = QMS_NODE_GetLeafSchemaRealType(node);
  return QMT_TYPE_IsInvalidType(type) != 0 ? nullptr : type;
}

uint32_t QM_NODE_ScanDerivedType(QmsNode* node, QmDerivedTypeScanFunc cb, void* arg) noexcept {
  QmtType* type = UsableType(node);
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  return QM_TYPE_IterRealTypeDerivedName(type, NodeCtx(node), cb, arg);
}

// The targets of leafrefs, RFC 7950 section 9.9. The path is that of the leaf's
// type or of the typedef from which it derives, and is always looked up from the
// leaf. Chains of leafrefs may run in a circle, so they are followed so far only.

constexpr uint32_t kMaxLookups = 128;

static const char* PathOfLeafref(const QmtType* type) {
  if (QM_TYPE_GetBuiltInBaseType(type) != QMT_BASE_LEAFREF) return nullptr;
  return QM_TYPE_GetTypeConsDataLeafrefPath(type);
}

static uint32_t TakeLeafrefPathCb(const char* /*moduleName*/, const char* /*typedefName*/,
                                  QmtType* type, void* arg) {
  const char** path = static_cast<const char**>(arg);
  *path = PathOfLeafref(type);
  return *path == nullptr ? QM_OK : kStopScan;
}

const char* QMS_NODE_GetNextLeafrefPath(QmsNode* node) {
  const QmtType* type = QMS_NODE_GetLeafSchemaRealType(node);
  if (type == nullptr) return nullptr;
  if (QM_TYPE_GetBuiltInBaseType(type) != QMT_BASE_TYPEDEF) return PathOfLeafref(type);
  const char* path = nullptr;
  const uint32_t ret = QM_NODE_ScanDerivedType(node, TakeLeafrefPathCb, &path);
  return ret == kStopScan ? path : nullptr;
}

QmsNode* QM_NODE_GetLeafrefTargetNode(QmsNode* node, uint32_t follow) noexcept {
  const char* path = QMS_NODE_GetNextLeafrefPath(node);
  for (uint32_t lookups = 0; path != nullptr && lookups < kMaxLookups; ++lookups) {
    node = QMS_MOD_GetNodeByXpath(node->module, node, path);
    if (node == nullptr || follow == 0) return node;
    path = QMS_NODE_GetNextLeafrefPath(node);
    if (path == nullptr) return node;
  }
  return nullptr;
}
