// SPDX-License-Identifier: BSD-3-Clause
// A path that names nothing is answered with what may have been meant: a module of a
// similar name, or one that is imported and not loaded. A schema path has all steps of the
// tree, and is walked from step to step, since augments bring nodes of other modules.
#include "client/find_node.h"

#include <qmodel/inspect.h>

#include <string_view>

#include "client/hints.h"
#include "client/memory_watch.h"

namespace {

// "; did you mean" for the module that a path begins with.
std::string SuggestModule(QmCtx* ctx, const std::string& path) {
  const size_t colon = path.find(':');
  if (path.empty() || path[0] != '/' || colon == std::string::npos) return {};
  const std::string module = path.substr(1, colon - 1);
  const bool loaded = QM_CTX_GetModuleByModName(ctx, module.c_str()) != nullptr;
  return loaded ? std::string() : DidYouMeanModule(ctx, module);
}

void SayNotFound(QmCtx* ctx, const Options& options, const std::string& path, const char* kind) {
  CheckMemory();
  PrintError("no %s '%s'%s", kind, path.c_str(), SuggestModule(ctx, path).c_str());
  HintImportsOfPath(ctx, options, path);
}

bool IsStep(const QmsNode* node, const QmsModule* module, std::string_view name) {
  const char* nodeName = QM_NODE_GetNodeName(node);
  return nodeName != nullptr && name == nodeName && QM_NODE_GetModule(node) == module;
}

QmsNode* Next(QmsModule* module, const QmsNode* parent, const QmsNode* node) {
  return parent == nullptr ? QM_MOD_GetNextTopNode(module, node)
                           : QM_NODE_GetNextChild(parent, node);
}

QmsNode* FindStep(QmsModule* module, const QmsNode* parent, std::string_view name) {
  QmsNode* node = Next(module, parent, nullptr);
  while (node != nullptr && !IsStep(node, module, name)) node = Next(module, parent, node);
  return node;
}

QmsNode* FindSchemaNode(QmCtx* ctx, std::string_view path) {
  QmsModule* module = nullptr;
  QmsNode* node = nullptr;
  while (path.starts_with('/')) {
    path.remove_prefix(1);
    std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(step.size());
    const size_t colon = step.find(':');
    if (colon != step.npos) {
      module = QM_CTX_GetModuleByModName(ctx, std::string(step.substr(0, colon)).c_str());
      step.remove_prefix(colon + 1);
    }
    node = module == nullptr ? nullptr : FindStep(module, node, step);
    if (node == nullptr) return nullptr;
  }
  return path.empty() ? node : nullptr;
}

}  // namespace

QmsNode* FindDataNode(QmCtx* ctx, const Options& options, const std::string& path) {
  QmsNode* node = QM_CTX_FindDataNode(ctx, path.c_str());
  if (node == nullptr) SayNotFound(ctx, options, path, "data node");
  return node;
}

QmsNode* FindNode(QmCtx* ctx, const Options& options, const std::string& path) {
  QmsNode* node = QM_CTX_FindDataNode(ctx, path.c_str());
  if (node == nullptr) node = FindSchemaNode(ctx, path);
  if (node == nullptr) SayNotFound(ctx, options, path, "node");
  return node;
}
