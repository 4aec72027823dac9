// SPDX-License-Identifier: BSD-3-Clause
// qmodel notif: validates notifications as texts; the library writes the valid ones.
#include <cstdio>

#include <qmodel/data.h>

#include "client/commands.h"
#include "client/file_input.h"
#include "client/session.h"

static uint32_t PrintText(const char* text, void* /*arg*/) {
  static_cast<void>(std::fputs(text, stdout));
  return 0;
}

static int ValidateOne(QmCtx* ctx, const std::string& file) {
  std::string text;
  if (!ReadInput(file, &text)) return kExitUnusable;
  // The library takes a text up to its first NUL; one inside is no XML.
  const bool isText = text.find('\0') == std::string::npos;
  if (isText && QM_CTX_ValidateNotifDataTree(ctx, text.c_str(), PrintText, nullptr) == 0) {
    return kExitOk;
  }
  PrintError("%s: not a valid notification", file.c_str());
  return kExitInvalid;
}

int RunNotif(const Options& options) {
  return ValidateFiles(options, ValidateOne);
}
