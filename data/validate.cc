// SPDX-License-Identifier: BSD-3-Clause
// One validation run. The phases have a fixed order, since each relies on the one
// before it: elements are bound and checked one by one, defaults are added to the
// bound tree, conditions are evaluated over the completed tree, and what is still
// missing is looked for last. The first failure ends the run.

#include "data/validate.h"

#include "context/element_walk.h"
#include "data/bind.h"
#include "data/complete.h"
#include "data/default_list.h"
#include "data/must.h"
#include "data/node_check.h"
#include "xpath/child_lookup.h"

void QMD_PAS_InitCheckAux(QmCheckAux* aux, QmCtx* ctx, uint32_t flags, QmDefaultNodeFunc callback,
                          void* callbackArg) {
  aux->ctx = ctx;
  aux->flags = flags;
  aux->defaultNodeCallback = callback;
  aux->callbackArg = callbackArg;
  InitDefaultNodeList(&aux->defaultList);
}

static uint32_t CheckBoundTree(QmCheckAux* aux, xmlNode* startNode) {
  uint32_t ret = QMD_PAS_CompleteTree(aux, startNode, aux->flags);
  if (ret != QM_OK) return ret;
  ChildLookup lookup;
  ret = QMD_PAS_EvalDataTreeWhenMust(aux, startNode);
  return ret == QM_OK ? QM_PAS_CheckTreeMandatory(aux, startNode) : ret;
}

uint32_t QMD_PAS_ValidateDataTree(QmCheckAux* aux, xmlNode* root) {
  if (aux == nullptr || root == nullptr) return QM_INVALID;
  aux->topNode = root->parent;
  uint32_t ret = QMD_PAS_FlushTreeWithSchema(aux, root);
  if (ret != QM_OK) return ret;
  constexpr uint32_t kMountedAction = QMD_MODE_ACTION_TREE | QMD_MODE_MOUNT_POINT;
  // The action may be one of the mounted schema, which is not known here.
  if ((aux->flags & kMountedAction) == kMountedAction) return QM_OK;
  ret = QMD_PAS_CheckActionNodeExist(aux);
  if (ret != QM_OK) return ret;
  xmlNode* startNode = (aux->flags & QMD_MODE_ACTION_TREE) != 0 ? aux->actionNode : root;
  return startNode == nullptr ? QM_INVALID : CheckBoundTree(aux, startNode);
}
