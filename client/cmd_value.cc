// SPDX-License-Identifier: BSD-3-Clause
// qmodel value: checks values against the type of one node.
#include <cinttypes>
#include <cstdio>

#include <qmodel/data.h>
#include <qmodel/inspect.h>
#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/session.h"

static int CheckValues(QmsNode* node, const Options& options) {
  int status = kExitOk;
  for (size_t i = 1; i < options.operands.size(); ++i) {
    const uint32_t code = QM_NODE_ValidateValue(node, QM_INPUT_TEXT, options.operands[i].c_str());
    if (code == 0) {
      std::puts("valid");
    } else {
      std::printf("invalid %" PRIu32 "\n", code);
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
    PrintError("no data node '%s'", path);
    status = kExitUsage;
  } else {
    status = CheckValues(node, options);
  }
  QM_CTX_Delete(ctx);
  return status;
}
