// SPDX-License-Identifier: BSD-3-Clause
// The node that a path names, across modules: the path is cut at the last step that
// names a module, which is asked for the rest.
#include "context/guard.h"
#include "context/records.h"
#include "schema/lookup.h"
#include "schema/module_registry.h"
#include "schema/target_path.h"

QmsNode* QM_CTX_GetTargetNode(QmCtx* ctx, const char* path, QmsNode** augment) noexcept {
  if (augment != nullptr) *augment = nullptr;
  if (ctx == nullptr || path == nullptr) return nullptr;
  char modName[kQmsNameSize] = "";
  char* parentPath = nullptr;
  char* lastPart = nullptr;
  const uint32_t ret =
      QM_XPATH_SplitTargetNodeXpath(path, modName, sizeof modName, &parentPath, &lastPart);
  const QmHeld<char> heldParent(parentPath);
  const QmHeld<char> heldLast(lastPart);
  if (ret != QM_OK) return nullptr;
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, modName);
  if (module == nullptr) return nullptr;
  // A path that stays in one module has no parent piece.
  if (parentPath == nullptr) return QMS_MOD_GetNodeBySchemaNodeId(module, nullptr, path);
  return QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(module, parentPath, lastPart, augment);
}
