// SPDX-License-Identifier: BSD-3-Clause
// qmodel load: what was loaded, a line for each module.
#include <cstdio>

#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/session.h"

static const char* OrDash(const char* text) {
  return text == nullptr || *text == '\0' ? "-" : text;
}

int RunLoad(const Options& options) {
  int status = kExitOk;
  QmCtx* ctx = OpenSession(options, true, &status);
  if (ctx == nullptr) return status;
  for (const std::string& name : options.operands) {
    const QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
    if (module == nullptr) continue;  // unloaded again
    std::printf("%s %s %s\n", OrDash(QM_MOD_GetModuleName(module)),
                OrDash(QM_MOD_GetRevision(module)), OrDash(QM_MOD_GetModuleNs(module)));
  }
  QM_CTX_Delete(ctx);
  return status;
}
