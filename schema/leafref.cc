// SPDX-License-Identifier: BSD-3-Clause
// The targets of leafrefs, RFC 7950 section 9.9. The path is that of the leaf's
// type or of the typedef from which it derives, and is always looked up from the
// leaf. Chains of leafrefs may run in a circle, so they are followed so far only.
#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "schema/lookup.h"
#include "schema/node.h"

static constexpr uint32_t kMaxLookups = 128;
static constexpr uint32_t kStopScan = QM_FAILED;

static const char* PathOfLeafref(const QmtType* type) {
  if (QM_TYPE_GetBuiltInBaseType(type) != QMT_BASE_LEAFREF) return nullptr;
  return QM_TYPE_GetTypeConsDataLeafrefPath(type);
}

static uint32_t TakeLeafrefPathCb(const char* moduleName, const char* typedefName, QmtType* type,
                                  void* arg) {
  static_cast<void>(moduleName);
  static_cast<void>(typedefName);
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
