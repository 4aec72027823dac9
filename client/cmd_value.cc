// SPDX-License-Identifier: BSD-3-Clause
// qmodel value: checks values against the type of one node.
#include <cinttypes>
#include <cstdio>

#include <qmodel/agent.h>
#include <qmodel/data.h>
#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/find_node.h"
#include "client/hints.h"
#include "client/memory_watch.h"
#include "client/session.h"

static void PrintInvalid(uint32_t code, bool explain) {
  const char* text = explain ? QM_AGENT_GetStatusText(code) : nullptr;
  std::printf("invalid %" PRIu32 "%s%s\n", code, text == nullptr ? "" : ": ",
              text == nullptr ? "" : text);
}

static int CheckValues(QmsNode* node, const Options& options) {
  int status = kExitOk;
  for (size_t i = 1; i < options.operands.size(); ++i) {
    const uint32_t code = QM_NODE_ValidateValue(node, QM_INPUT_TEXT, options.operands[i].c_str());
    CheckMemory();
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
  const Context ctx = OpenSession(options, false, &status);
  if (ctx == nullptr) return status;
  QmsNode* node = FindDataNode(ctx.get(), options, options.operands[0]);
  status = node == nullptr ? kExitUsage : CheckValues(node, options);
  if (status == kExitInvalid) HintImportsOfType(ctx.get(), options, node);
  return status;
}
