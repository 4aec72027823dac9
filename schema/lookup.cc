// SPDX-License-Identifier: BSD-3-Clause
// Finding schema nodes by path. The steps of a path are names, each with the
// name of its module before it where the module changes (as in RFC 7951 section
// 4); predicates are skipped.
//
// A data path names elements of a data tree, so it looks through choice and case
// and may begin with parent steps. A schema node identifier names every schema
// node on its way. When the last nodes of a target path were added by an augment
// of another module, they are looked for below that augment: they may hang there
// still, because its own target is not loaded yet.
#include "schema/lookup.h"

#include <cstring>
#include <iterator>

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/records.h"
#include "context/text_scan.h"
#include "schema/module_nodes.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "schema/node_walk.h"
#include "schema/target_path.h"

namespace {
struct PathStep {
  char qualifier[kQmsNameSize];
  char name[kQmsNameSize];
};

// An absolute path of names alone, cut into its steps.
struct PlainPath {
  QmPathStep steps[32];
  uint32_t count;
  uint32_t lastQualified;  // the last step that names a module
};

// A target path, split at the last step that names a module.
struct SplitTarget {
  char moduleName[kQmsNameSize];
  char* head;  // the caller's; NULL when that step is the first
  char* tail;  // the caller's
};
}  // namespace

// What follows the "/" at `rest`, which may also be the end. NULL for a "/" with nothing
// behind it.
static const char* AfterSlash(const char* rest) {
  if (*rest == '\0') return rest;
  return rest[1] == '\0' ? nullptr : rest + 1;
}

// Takes the step at `path` and gives what follows its "/". NULL when no step can be taken.
static const char* TakeStep(const char* path, PathStep* step) {
  const char* rest = QM_UTL_GetXPathNextPredicatedPrefixNode(
      path, step->qualifier, sizeof(step->qualifier), step->name, sizeof(step->name));
  return rest == nullptr ? nullptr : AfterSlash(rest);
}

static bool BeginsWithParentStep(const char* path) {
  return path[0] == '.' && path[1] == '.' && (path[2] == '/' || path[2] == '\0');
}

const char* QMS_MOD_GetRelativePathRealStartNode(QmsModule* module, QmsNode* startNode,
                                                 const char* path, QmsNode** node) {
  if (module == nullptr || startNode == nullptr || path == nullptr || node == nullptr) {
    return nullptr;
  }
  const bool beginsWithDot = *path == '.';
  *node = startNode;
  while (BeginsWithParentStep(path)) {
    if (*node == nullptr) return nullptr;
    *node = QMS_NODE_GetParentDataTreeNode(*node);
    path += path[2] == '/' ? 3 : 2;
  }
  return beginsWithDot && *path == '\0' ? nullptr : path;
}

const char* QMS_MOD_GetStartPathAndNode(QmsModule* module, QmsNode* startNode, const char* path,
                                        QmsNode** node, QmsModule** mod) {
  if (path == nullptr || node == nullptr || mod == nullptr) return nullptr;
  *node = nullptr;
  *mod = nullptr;
  if (*path == '/') return path + 1;
  const char* rest = QMS_MOD_GetRelativePathRealStartNode(module, startNode, path, node);
  if (rest != nullptr && *node != nullptr) *mod = (*node)->module;
  return rest;
}

// A top-level node that names an element: no choice.
static QmsNode* FindTopDataNode(QmsModule* module, const char* name) {
  QmsNode* node = module == nullptr ? nullptr : QMS_MOD_FindTopLevelSchemaNode(module, name);
  return node != nullptr && IsDataTreeNode(node) ? node : nullptr;
}

QmsNode* QMS_MOD_GetDataTreeNodeByNodeIdentifier(QmCtx* ctx, QmsModule** mod, QmsNode* parent,
                                                 const char* qualifier, const char* name) {
  if (ctx == nullptr || mod == nullptr || name == nullptr) return nullptr;
  QmsNode* node = parent != nullptr
                      ? QMS_NODE_FindChildDataTreeNodeByName(parent, qualifier, name)
                      : FindTopDataNode(QM_CTX_GetModuleByModName(ctx, qualifier), name);
  if (node != nullptr) *mod = node->module;
  return node;
}

QmsNode* QMS_MOD_GetNodeByXpath(QmsModule* module, QmsNode* startNode, const char* path) {
  if (module == nullptr || path == nullptr) return nullptr;
  QmsNode* node = nullptr;
  QmsModule* mod = nullptr;
  const char* rest = QMS_MOD_GetStartPathAndNode(module, startNode, path, &node, &mod);
  if (rest == nullptr) return nullptr;
  PathStep step;
  while (*rest != '\0') {
    rest = TakeStep(rest, &step);
    if (rest == nullptr) return nullptr;
    node =
        QMS_MOD_GetDataTreeNodeByNodeIdentifier(module->ctx, &mod, node, step.qualifier, step.name);
    if (node == nullptr) return nullptr;
  }
  return node;
}

// Names have as many characters as fit the buffers of prescribed functions, a NUL counted.
static bool StepFits(const QmPathStep& step) {
  return step.prefix.length < kQmsNameSize && step.name.length < kQmsNameSize;
}

// Deliberate: the module of a top-level step is given, not looked up.
static QmsNode* FindStep(const QmsModule* module, QmsNode* parent, const QmPathStep& step) {
  return parent != nullptr ? FindChildNode(parent, step.prefix, step.name)
                           : FindTopNode(module, step.name);
}

QmsNode* QMS_MOD_GetNodeBySchemaNodeId(QmsModule* module, QmsNode* startNode, const char* path) {
  if (module == nullptr || path == nullptr) return nullptr;
  QmsNode* node = startNode;
  const char* rest = *path == '/' ? path + 1 : path;
  QmPathStep step;
  while (*rest != '\0') {
    rest = ReadPathStep(rest, &step);
    if (rest == nullptr || !StepFits(step)) return nullptr;
    rest = AfterSlash(rest);
    if (rest == nullptr) return nullptr;
    node = FindStep(module, node, step);
    if (node == nullptr) return nullptr;
  }
  return node;
}

QmsNode* QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(QmsModule* module, const char* augTargetPath,
                                                   const char* subPath, QmsNode** augment) {
  if (augment != nullptr) *augment = nullptr;
  if (module == nullptr || augTargetPath == nullptr || subPath == nullptr) return nullptr;
  for (QmsNode* aug = module->augmentNodes; aug != nullptr; aug = aug->next) {
    if (!NamesEqual(aug->name, augTargetPath)) continue;
    QmsNode* node = QMS_MOD_GetNodeBySchemaNodeId(module, aug, subPath);
    if (node == nullptr) continue;
    if (augment != nullptr) *augment = aug;
    return node;
  }
  return nullptr;
}

static uint32_t SplitTargetPath(const char* path, SplitTarget* split) {
  return QM_XPATH_SplitTargetNodeXpath(path, split->moduleName, sizeof(split->moduleName),
                                       &split->head, &split->tail);
}

// The target in the module that the path leads into.
static QmsNode* FindTarget(QmsModule* module, const char* path, const SplitTarget& split,
                           QmsNode** augment) {
  // A path that stays in one module has no head.
  if (split.head == nullptr) return QMS_MOD_GetNodeBySchemaNodeId(module, nullptr, path);
  return QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(module, split.head, split.tail, augment);
}

uint32_t QMS_MOD_FindAugNodeTargetInSelfMod(QmsModule* module, QmsNode* augment, QmsNode** target) {
  if (module == nullptr || augment == nullptr || target == nullptr) return QM_INVALID;
  *target = nullptr;
  SplitTarget split{};
  const uint32_t ret = SplitTargetPath(augment->name, &split);
  const QmHeld<char> head(split.head);
  const QmHeld<char> tail(split.tail);
  if (ret != QM_OK) return ret;
  if (!NamesEqual(module->name, split.moduleName)) return QM_OK;
  *target = FindTarget(module, augment->name, split, nullptr);
  return QM_OK;
}

// Most target paths are plain, and are cut once: the module that the path leads into is told,
// and the nodes are found, from the same steps. False for any other path, also one that is
// too long, for no path at all, and for one that names no module: those are split from their
// end.
static bool ReadPlainPath(const char* path, PlainPath* plain) {
  bool isQualified = false;
  plain->count = 0;
  if (*path != '/') return false;
  for (; *path == '/'; ++plain->count) {
    if (plain->count == std::size(plain->steps)) return false;
    QmPathStep* step = &plain->steps[plain->count];
    path = ReadPathStep(path + 1, step);
    if (path == nullptr || path != step->name.text + step->name.length || !StepFits(*step)) {
      return false;
    }
    if (step->prefix.length == 0) continue;
    isQualified = true;
    plain->lastQualified = plain->count;
  }
  return isQualified;
}

static uint32_t SplitPlainPath(const char* path, const PlainPath& plain, SplitTarget* split) {
  const TextSpan moduleName = plain.steps[plain.lastQualified].prefix;
  std::memcpy(split->moduleName, moduleName.text, moduleName.length);
  split->moduleName[moduleName.length] = '\0';
  return CopyBothParts(path, moduleName.text - 1, &split->head, &split->tail);
}

static QmsNode* FindPlainPath(const QmsModule* module, const PlainPath& plain) {
  QmsNode* node = nullptr;
  for (uint32_t i = 0; i < plain.count; ++i) {
    node = FindStep(module, node, plain.steps[i]);
    if (node == nullptr) return nullptr;
  }
  return node;
}

QmsNode* QM_CTX_GetTargetNode(QmCtx* ctx, const char* path, QmsNode** augment) noexcept {
  if (augment != nullptr) *augment = nullptr;
  if (ctx == nullptr || path == nullptr) return nullptr;
  PlainPath plain;
  const bool isPlain = ReadPlainPath(path, &plain);
  SplitTarget split{};
  const uint32_t ret =
      isPlain ? SplitPlainPath(path, plain, &split) : SplitTargetPath(path, &split);
  const QmHeld<char> head(split.head);
  const QmHeld<char> tail(split.tail);
  if (ret != QM_OK) return nullptr;
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, split.moduleName);
  if (module == nullptr) return nullptr;
  const bool isOfOneModule = isPlain && split.head == nullptr;
  return isOfOneModule ? FindPlainPath(module, plain) : FindTarget(module, path, split, augment);
}
