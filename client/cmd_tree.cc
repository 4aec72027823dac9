// SPDX-License-Identifier: BSD-3-Clause
// qmodel tree: the schema trees of modules, as the library prints them, whole or in part.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/find_node.h"
#include "client/memory_watch.h"
#include "client/session.h"
#include "client/terminal.h"
#include "client/tree_depth.h"
#include "client/tree_html.h"
#include "client/tree_rfc8340.h"

static uint32_t AddChunk(const char* text, uint32_t length, void* arg) {
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

static void Print(const std::string& tree) {
  CheckMemory();
  const std::string text = UseColours() ? PaintTree(tree) : tree;
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stdout));
}

// Asked before anything is printed: wrong usage leaves standard output empty.
static bool AllLoaded(QmCtx* ctx, const Options& options) {
  for (const std::string& name : options.operands) {
    if (QM_CTX_GetModuleByModName(ctx, name.c_str()) != nullptr) continue;
    PrintError("module '%s' is no longer loaded", name.c_str());
    return false;
  }
  return true;
}

static int PrintTrees(QmCtx* ctx, const Options& options) {
  int status = kExitOk;
  for (const std::string& name : options.operands) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
    std::string tree;
    uint32_t ret = 0;
    if (options.rfc8340) {
      tree = TreeOfRfc8340(ctx, module, options.depth);
    } else {
      ret = QM_MOD_PrintModelTree(module, kGuarded<AddChunk>, &tree);
    }
    Print(options.rfc8340 ? tree : CutTree(tree, options.depth, 0));
    if (ret == 0) continue;
    PrintError("the tree of module '%s' cannot be printed", name.c_str());
    status = kExitUnusable;
  }
  return status;
}

// The lines that lead to a node, and those below it.
static int PrintSubtree(QmCtx* ctx, const Options& options) {
  QmsNode* node = FindNode(ctx, options, options.nodePath);
  if (node == nullptr) return kExitUsage;
  std::string header;
  std::string tree;
  const uint32_t ret = QM_NODE_PrintNodeHeader(node, kGuarded<AddChunk>, &header) |
                       QM_NODE_PrintNodesTree(node, kGuarded<AddChunk>, &tree);
  CheckMemory();
  if (ret == 0) {
    Print(CutTree(tree, options.depth, DepthBelow(header)));
    return kExitOk;
  }
  PrintError("the tree of '%s' cannot be printed", options.nodePath.c_str());
  return kExitUnusable;
}

// What is printed otherwise goes into one page.
static int WritePage(QmCtx* ctx, const Options& options) {
  std::vector<QmsModule*> modules;
  for (const std::string& name : options.operands) {
    modules.push_back(QM_CTX_GetModuleByModName(ctx, name.c_str()));
  }
  const std::string page = HtmlPage(ctx, modules);
  CheckMemory();
  if (options.htmlFile == "-") {
    static_cast<void>(std::fwrite(page.data(), 1, page.size(), stdout));
    return kExitOk;
  }
  FILE* file = std::fopen(options.htmlFile.c_str(), "wb");
  bool written = file != nullptr && std::fwrite(page.data(), 1, page.size(), file) == page.size();
  if (file != nullptr && std::fclose(file) != 0) written = false;
  if (written) return kExitOk;
  PrintError("%s: %s", options.htmlFile.c_str(), std::strerror(errno));
  return kExitUnusable;
}

static int PrintAsked(QmCtx* ctx, const Options& options) {
  if (!AllLoaded(ctx, options)) return kExitUsage;
  if (!options.htmlFile.empty()) return WritePage(ctx, options);
  return options.nodePath.empty() ? PrintTrees(ctx, options) : PrintSubtree(ctx, options);
}

int RunTree(const Options& options) {
  const bool part = options.rfc8340 || !options.nodePath.empty() || options.depth != 0;
  if (part && !options.htmlFile.empty()) {
    PrintError("'--html' takes whole trees, without '--rfc8340', '--node' and '--depth'");
    return kExitUsage;
  }
  if (options.rfc8340 && !options.nodePath.empty()) {
    PrintError("'--rfc8340' is for whole modules, without '--node'");
    return kExitUsage;
  }
  int status = kExitOk;
  Options wanted = options;
  // The page has room for all that is said.
  if (!options.htmlFile.empty()) wanted.loadFlags |= QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS;
  const Context ctx = OpenSession(wanted, true, &status);
  if (ctx == nullptr) return status;
  return PrintAsked(ctx.get(), options);
}
