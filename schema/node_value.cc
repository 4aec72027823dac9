// SPDX-License-Identifier: BSD-3-Clause
// The values of leaves: their type, the default and units that they have of
// their own or from the typedefs of their type, and the check of a value.
#include <qmodel/error.h>
#include <qmodel/schema.h>

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
static constexpr uint32_t kStopScan = QM_FAILED;

QmtType* QMS_NODE_GetLeafSchemaRealType(QmsNode* node) {
  if (node == nullptr || node->payload == nullptr) return nullptr;
  if (node->kind == QMS_NODE_LEAF) return &static_cast<QmsLeaf*>(node->payload)->type;
  if (node->kind == QMS_NODE_LEAF_LIST) return &static_cast<QmsLeafList*>(node->payload)->type;
  return nullptr;
}

QmtType* QM_NODE_GetRealType(QmsNode* node) noexcept {
  return QMS_NODE_GetLeafSchemaRealType(node);
}

static uint32_t TakeTypedefTextCb(const char* moduleName, const char* typedefName, QmtType* type,
                                  void* arg) {
  static_cast<void>(type);
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

// The type of a leaf or leaf-list whose context can be asked for typedefs.
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
