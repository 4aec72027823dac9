// SPDX-License-Identifier: BSD-3-Clause
// qmodel value: checks values against the type of one node.
#include <cinttypes>
#include <cstdio>

#include <qmodel/agent.h>
#include <qmodel/data.h>
#include <qmodel/inspect.h>
#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/hints.h"
#include "client/session.h"

static void PrintInvalid(uint32_t code, bool explain) {
  const char* text = explain ? QM_AGENT_GetStatusText(code) : nullptr;
  std::printf("invalid %" PRIu32 "%s%s\n", code, text == nullptr ? "" : ": ",
              text == nullptr ? "" : text);
}

// "; did you mean" for the module that a path begins with.
static std::string SuggestModule(QmCtx* ctx, const std::string& path) {
  const size_t colon = path.find(':');
  if (path.empty() || path[0] != '/' || colon == std::string::npos) return {};
  const std::string module = path.substr(1, colon - 1);
  const bool loaded = QM_CTX_GetModuleByModName(ctx, module.c_str()) != nullptr;
  return loaded ? std::string() : DidYouMeanModule(ctx, module);
}

static int CheckValues(QmsNode* node, const Options& options) {
  int status = kExitOk;
  for (size_t i = 1; i < options.operands.size(); ++i) {
    const uint32_t code = QM_NODE_ValidateValue(node, QM_INPUT_TEXT, options.operands[i].c_str());
    if (code == 0) {
      std::puts("valid");
    } else {
      PrintInvalid(code, options.explain);
      status = kExitInvalid;
    }
  }
  return status;
}

int RunValue(const Options& options) {
  int status = kExitOk;
  QmCtx* ctx = OpenSession(options, false, &status);
  if (ctx == nullptr) return status;
  const char* path = options.operands[0].c_str();
  QmsNode* node = QM_CTX_FindDataNode(ctx, path);
  if (node == nullptr) {
    PrintError("no data node '%s'%s", path, SuggestModule(ctx, path).c_str());
    HintImportsOfPath(ctx, options, path);
    status = kExitUsage;
  } else {
    status = CheckValues(node, options);
    if (status != kExitOk) HintImportsOfType(ctx, options, node);
  }
  QM_CTX_Delete(ctx);
  return status;
}
