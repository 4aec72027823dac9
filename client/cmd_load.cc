// SPDX-License-Identifier: BSD-3-Clause
// qmodel load: what was loaded, a line or a JSON object for each module.
#include <cstdio>

#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/json.h"
#include "client/session.h"

static const char* OrDash(const char* text) {
  return text == nullptr || *text == '\0' ? "-" : text;
}

static const char* OrNull(const char* text) {
  return text == nullptr || *text == '\0' ? nullptr : text;
}

static void PrintLine(const QmsModule* module) {
  std::printf("%s %s %s\n", OrDash(QM_MOD_GetModuleName(module)),
              OrDash(QM_MOD_GetRevision(module)), OrDash(QM_MOD_GetModuleNs(module)));
}

static void AddObject(const QmsModule* module, JsonArray* array) {
  array->Add("{\"name\": " + JsonOrNull(OrNull(QM_MOD_GetModuleName(module))) +
             ", \"revision\": " + JsonOrNull(OrNull(QM_MOD_GetRevision(module))) +
             ", \"namespace\": " + JsonOrNull(OrNull(QM_MOD_GetModuleNs(module))) + "}");
}

int RunLoad(const Options& options) {
  int status = kExitOk;
  const Context ctx = OpenSession(options, true, &status);
  if (ctx == nullptr) return status;
  JsonArray array;
  for (const std::string& name : options.operands) {
    const QmsModule* module = QM_CTX_GetModuleByModName(ctx.get(), name.c_str());
    if (module == nullptr) continue;  // unloaded again
    if (options.json) {
      AddObject(module, &array);
    } else {
      PrintLine(module);
    }
  }
  if (options.json) array.Print();
  return status;
}
