// SPDX-License-Identifier: BSD-3-Clause
// Resolves a data path with the public scans of the schema. Nodes that have no
// element of their own are looked through, depth first, as the data tree has it.
#include "client/data_path.h"

#include <cstring>
#include <string>

namespace {

struct Step {
  std::string module;  // empty: that of the step before
  std::string name;
};

struct Search {
  const Step* step;
  QmsNode* found;
};

bool IsTransparent(const QmsNode* node) {
  switch (QM_NODE_GetNodeType(node)) {
    case QMS_NODE_CHOICE:
    case QMS_NODE_CASE:
    case QMS_NODE_INPUT:
    case QMS_NODE_OUTPUT:
      return true;
    default:
      return false;
  }
}

bool IsNamed(const QmsNode* node, const Step& step) {
  const char* module = QM_MOD_GetModuleName(QM_NODE_GetModule(node));
  const char* name = QM_NODE_GetNodeName(node);
  return module != nullptr && name != nullptr && step.name == name && step.module == module;
}

uint32_t MatchTop(QmsNode* node, uint32_t /*travType*/, void* arg) {
  auto* search = static_cast<Search*>(arg);
  if (IsTransparent(node) || !IsNamed(node, *search->step)) return 0;
  search->found = node;
  return 1;
}

uint32_t MatchChild(QmsNode* node, uint32_t travType, void* arg) {
  auto* search = static_cast<Search*>(arg);
  if (travType == QMS_TRAV_TOP || travType == QMS_TRAV_PARENT || IsTransparent(node)) return 0;
  if (!IsNamed(node, *search->step)) return QMS_SCAN_SKIP_SUBTREE;
  search->found = node;
  return 1;
}

bool IsNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '.' || c == '_';
}

std::string TakeName(const char** pos) {
  const char* start = *pos;
  while (IsNameChar(**pos)) ++*pos;
  return std::string(start, *pos);
}

// Reads "/module:name" or "/name" with its predicates, and moves past it.
bool TakeStep(const char** pos, Step* step) {
  if (**pos != '/') return false;
  ++*pos;
  step->module.clear();
  step->name = TakeName(pos);
  if (**pos == ':') {
    ++*pos;
    step->module = step->name;
    step->name = TakeName(pos);
    if (step->module.empty()) return false;
  }
  while (**pos == '[') {
    const char* close = std::strchr(*pos, ']');
    if (close == nullptr) return false;
    *pos = close + 1;
  }
  return !step->name.empty();
}

QmsNode* FindTop(QmCtx* ctx, const Step& step) {
  Search search = {&step, nullptr};
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, step.module.c_str());
  if (module == nullptr) return nullptr;
  static_cast<void>(QM_MOD_IterScanTopmostNode(module, MatchTop, &search));
  return search.found;
}

QmsNode* FindChild(QmsNode* node, Step step) {
  if (step.module.empty()) step.module = QM_MOD_GetModuleName(QM_NODE_GetModule(node));
  Search search = {&step, nullptr};
  static_cast<void>(QM_NODE_TreeScanAllNode(node, MatchChild, &search));
  return search.found;
}

}  // namespace

QmsNode* FindDataNode(QmCtx* ctx, const char* path) {
  Step step;
  if (!TakeStep(&path, &step) || step.module.empty()) return nullptr;
  QmsNode* node = FindTop(ctx, step);
  while (node != nullptr && *path != '\0') {
    if (!TakeStep(&path, &step)) return nullptr;
    node = FindChild(node, step);
  }
  return node;
}
