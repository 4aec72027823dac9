// SPDX-License-Identifier: BSD-3-Clause
#include "bench/schema_paths.h"

// The module of the node stands at a step only where it differs from that of the parent.
static std::string PathOf(const QmsNode* node) {
  std::string path;
  while (node != nullptr) {
    const QmsNode* parent = QM_NODE_GetParentNode(node);
    const QmsModule* module = QM_NODE_GetModule(node);
    std::string step = "/";
    if (parent == nullptr || QM_NODE_GetModule(parent) != module)
      step += std::string(QM_MOD_GetModuleName(module)) + ":";
    path = step + QM_NODE_GetNodeName(node) + path;
    node = parent;
  }
  return path;
}

static uint32_t AddPath(QmsNode* node, uint32_t travType, void* paths) {
  constexpr uint32_t kUp = 2;
  if (travType != kUp) static_cast<std::vector<std::string>*>(paths)->push_back(PathOf(node));
  return 0;
}

static uint32_t AddPathsBelow(QmsNode* node, uint32_t /*travType*/, void* paths) {
  return QM_NODE_TreeScanAllNode(node, AddPath, paths);
}

std::vector<std::string> PathsOf(QmCtx* ctx, const std::vector<std::string>& modules) {
  std::vector<std::string> all;
  for (const std::string& name : modules) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
    Require(module != nullptr, "a module is missing");
    Require(QM_MOD_IterScanTopmostNode(module, AddPathsBelow, &all) == 0, "a walk failed");
  }
  std::vector<std::string> found;
  for (const std::string& path : all)
    if (QM_CTX_GetTargetNode(ctx, path.c_str(), nullptr) != nullptr) found.push_back(path);
  return found;
}

Work PathWork(Context ctx, std::vector<std::string> paths) {
  Work work;
  work.units = static_cast<int64_t>(paths.size());
  work.run = [ctx = std::move(ctx), paths = std::move(paths)] {
    for (const std::string& path : paths)
      Require(QM_CTX_GetTargetNode(ctx.get(), path.c_str(), nullptr) != nullptr,
              "a path is not found");
  };
  return work;
}
