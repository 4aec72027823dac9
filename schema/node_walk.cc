// SPDX-License-Identifier: BSD-3-Clause
// Walks over the schema tree, all of them loops that climb by the parent links.
//
// Two things make them delicate. The children of an augment may be a run in the
// child list of its target: their parent is the target, and the list goes on after
// the run. Their links tell, not the mark of the augment, which changes earlier or
// later than they do, while a client's hook may walk. And the data tree has fewer
// levels than the schema tree: choice, case, input, output and augment name no
// element, so the walks of the data tree look through them.
#include "schema/node_walk.h"

#include <qmodel/error.h>

#include "context/dict.h"
#include "schema/node.h"

static bool FitsModule(const QmsNode* node, TextSpan moduleName) {
  if (moduleName.length == 0) return true;
  return node->module != nullptr && node->module->name != nullptr &&
         TextIs(node->module->name, moduleName);
}

// Looks from `child` on for one whose name is the interned text.
static QmsNode* FindByInterned(QmsNode* parent, QmsNode* child, TextSpan moduleName,
                               const char* interned) {
  for (; child != nullptr; child = NextChild(parent, child)) {
    if (child->name == interned && FitsModule(child, moduleName)) return child;
  }
  return nullptr;
}

// The same for a name that one record of the context has: it is found from both ends, since
// the time goes to reaching the next node in memory, and two chains of nodes are reached
// at a time.
static QmsNode* FindTheOnly(QmsNode* parent, QmsNode* child, TextSpan moduleName,
                            const char* interned) {
  QmsNode* last = parent->lastChild;
  while (child != nullptr && last != nullptr) {
    if (last->name == interned) return FitsModule(last, moduleName) ? last : nullptr;
    if (last == child) return nullptr;
    last = last->prev;
    if (child->name == interned) return FitsModule(child, moduleName) ? child : nullptr;
    if (last == child) return nullptr;
    child = child->next;
  }
  return nullptr;
}

static QmsNode* FindAmongMany(QmsNode* parent, QmsNode* child, TextSpan moduleName, TextSpan name) {
  uint32_t refCount = 0;
  const char* interned = FindInternedSpan(&NodeCtx(parent)->dict, name, &refCount);
  if (interned == nullptr) return nullptr;
  return refCount == 1 ? FindTheOnly(parent, child, moduleName, interned)
                       : FindByInterned(parent, child, moduleName, interned);
}

// Names of loaded nodes are interned: where the children are many, the text is looked up
// once and the rest is told by its address. Nodes made by hand may have names of their own.
QmsNode* FindChildNode(QmsNode* parent, TextSpan moduleName, TextSpan name) {
  constexpr int kFew = 16;
  int seen = 0;
  for (QmsNode* child = parent->firstChild; child != nullptr; child = NextChild(parent, child)) {
    if (child->name != nullptr && TextIs(child->name, name) && FitsModule(child, moduleName)) {
      return child;
    }
    if (++seen != kFew || NodeCtx(parent) == nullptr) continue;
    QmsNode* found = FindAmongMany(parent, child, moduleName, name);
    if (found != nullptr) return found;
  }
  return nullptr;
}

QmsNode* QMS_NODE_FindChildNodeByName(QmsNode* parent, const char* moduleName, const char* name) {
  if (parent == nullptr || name == nullptr) return nullptr;
  const TextSpan module = moduleName == nullptr ? TextSpan{"", 0} : WholeText(moduleName);
  return FindChildNode(parent, module, WholeText(name));
}

// A child of the augment `root`, wherever its children hang: in its own list, or
// as a run in that of a target, which a climb must not enter.
static bool IsChildOfAugment(const QmsNode* root, const QmsNode* node) {
  return root->kind == QMS_NODE_AUGMENT && root->firstChild != nullptr &&
         node->parent == root->firstChild->parent;
}

QmsNode* QMS_NODE_GetTreeNodeSibOrParent(QmsNode* root, QmsNode* cur, uint32_t* travType) {
  if (root == nullptr || cur == nullptr || travType == nullptr || cur == root) return nullptr;
  const bool ofAugment = IsChildOfAugment(root, cur);
  QmsNode* next = ofAugment ? NextChild(root, cur) : cur->next;
  if (next != nullptr) {
    *travType = QMS_TRAV_SIBLING;
    return next;
  }
  if (ofAugment || cur->parent == root) return nullptr;
  *travType = QMS_TRAV_PARENT;
  return cur->parent;
}

QmsNode* QMS_NODE_GetTreeNodeNextNode(QmsNode* root, QmsNode* cur, uint32_t* travType) {
  if (root == nullptr || cur == nullptr || travType == nullptr) return nullptr;
  if (*travType == QMS_TRAV_PARENT || cur->firstChild == nullptr) {
    return QMS_NODE_GetTreeNodeSibOrParent(root, cur, travType);
  }
  *travType = QMS_TRAV_CHILD;
  return cur->firstChild;
}

uint32_t QM_NODE_TreeScanAllNode(QmsNode* root, QmNodeScanFunc cb, void* arg) noexcept {
  if (root == nullptr || cb == nullptr) return QM_INVALID;
  uint32_t travType = QMS_TRAV_TOP;
  QmsNode* cur = root;
  while (cur != nullptr) {
    const uint32_t ret = cb(cur, travType, arg);
    if (ret != QM_OK && ret != QMS_SCAN_SKIP_SUBTREE) return ret;
    cur = ret == QM_OK ? QMS_NODE_GetTreeNodeNextNode(root, cur, &travType)
                       : QMS_NODE_GetTreeNodeSibOrParent(root, cur, &travType);
  }
  return QM_OK;
}

uint32_t QM_NODE_IterScanChildrenNode(QmsNode* node, QmNodeScanFunc cb, void* arg) noexcept {
  if (node == nullptr || cb == nullptr) return QM_INVALID;
  QmsNode* child = node->firstChild;
  while (child != nullptr) {
    QmsNode* next = NextChild(node, child);
    const uint32_t ret = cb(child, QMS_TRAV_CHILD, arg);
    if (ret != QM_OK) return ret;
    child = next;
  }
  return QM_OK;
}

uint32_t QM_NODE_IterScanSiblingNode(QmsNode* node, QmNodeScanFunc cb, void* arg) noexcept {
  if (node == nullptr || cb == nullptr) return QM_INVALID;
  while (node != nullptr) {
    QmsNode* next = node->next;
    const uint32_t ret = cb(node, QMS_TRAV_SIBLING, arg);
    if (ret != QM_OK) return ret;
    node = next;
  }
  return QM_OK;
}

QmsNode* QMS_NODE_GetParentDataTreeNode(QmsNode* node) {
  if (node == nullptr) return nullptr;
  QmsNode* parent = node->parent;
  while (parent != nullptr && !IsDataTreeNode(parent)) parent = parent->parent;
  return parent;
}

// The next sibling of `node` or of the nearest ancestor that has one, without
// leaving the data tree node, or `stop`, below which `node` lies.
static QmsNode* NextSiblingLookingUp(QmsNode* node, const QmsNode* stop) {
  while (node->next == nullptr) {
    QmsNode* parent = node->parent;
    if (parent == nullptr || parent == stop || IsDataTreeNode(parent)) return nullptr;
    node = parent;
  }
  return node->next;
}

QmsNode* QMS_NODE_GetFirstSlibingDataTreeNode(QmsNode* node, QmsNode* stop) {
  while (node != nullptr && !IsDataTreeNode(node)) {
    node = node->firstChild != nullptr ? node->firstChild : NextSiblingLookingUp(node, stop);
  }
  return node;
}

QmsNode* QMS_NODE_GetNextDataTreeNode(QmsNode* node, QmsNode* stop) {
  if (node == nullptr) return nullptr;
  return QMS_NODE_GetFirstSlibingDataTreeNode(NextSiblingLookingUp(node, stop), stop);
}

static QmsNode* FindDataChildBelow(QmsNode* root, const char* moduleName, const char* name) {
  uint32_t travType = QMS_TRAV_TOP;
  QmsNode* cur = QMS_NODE_GetTreeNodeNextNode(root, root, &travType);
  while (cur != nullptr) {
    if (!IsDataTreeNode(cur)) {
      cur = QMS_NODE_GetTreeNodeNextNode(root, cur, &travType);
      continue;
    }
    if (NamesEqual(cur->name, name) && IsOfModule(cur, moduleName)) return cur;
    cur = QMS_NODE_GetTreeNodeSibOrParent(root, cur, &travType);
  }
  return nullptr;
}

// The output of a split module may stand before an input that came later. A name
// that both define is that of the input.
static QmsNode* FindDataChildOfInputs(QmsNode* operation, const char* moduleName,
                                      const char* name) {
  QmsNode* found = nullptr;
  QmsNode* part = operation->firstChild;
  for (; part != nullptr && found == nullptr; part = NextChild(operation, part)) {
    if (part->kind == QMS_NODE_INPUT) found = FindDataChildBelow(part, moduleName, name);
  }
  return found;
}

QmsNode* QMS_NODE_FindChildDataTreeNodeByName(QmsNode* node, const char* moduleName,
                                              const char* name) {
  if (node == nullptr || name == nullptr) return nullptr;
  if (moduleName == nullptr || *moduleName == '\0') {
    if (node->module == nullptr) return nullptr;
    moduleName = node->module->name;
  }
  QmsNode* found = IsOperation(node) ? FindDataChildOfInputs(node, moduleName, name) : nullptr;
  return found != nullptr ? found : FindDataChildBelow(node, moduleName, name);
}
