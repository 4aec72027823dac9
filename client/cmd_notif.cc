// SPDX-License-Identifier: BSD-3-Clause
// qmodel notif: validates notifications as texts; the library writes the valid ones.
#include <cstdio>

#include <qmodel/agent.h>
#include <qmodel/data.h>

#include "client/commands.h"
#include "client/file_input.h"
#include "client/hints.h"
#include "client/memory_watch.h"
#include "client/owned.h"
#include "client/session.h"
#include "client/verdict.h"

static uint32_t AddText(const char* text, void* answer) {
  *static_cast<std::string*>(answer) += text;
  return 0;
}

// The run that gave the answer keeps no record, so another one makes it.
static void PrintWhy(const Validation& validation, const std::string& file,
                     const std::string& text) {
  QmErrNode* made = nullptr;
  const uint32_t verdict = QM_AGENT_ValidateNotificationText(
      validation.ctx, text.data(), text.size(), nullptr, nullptr, nullptr, &made);
  const ErrorRecord record(made);
  CheckMemory();
  if (verdict != QM_AGENT_INVALID || record == nullptr) return;
  if (validation.options.verdicts) PrintReason(file, record.get());
  HintImportsOfRecord(validation.ctx, validation.options, record.get());
}

static int ValidateOne(const Validation& validation, const std::string& file) {
  std::string text;
  if (!ReadInput(file, &text)) return kExitUnusable;
  // The library takes a text up to its first NUL; one inside is no XML.
  const bool isText = text.find('\0') == std::string::npos;
  std::string answer;
  const bool valid = isText && QM_CTX_ValidateNotifDataTree(validation.ctx, text.c_str(),
                                                            kGuarded<AddText>, &answer) == 0;
  CheckMemory();
  PrintVerdict(validation.options, file, valid);
  static_cast<void>(std::fwrite(answer.data(), 1, answer.size(), stdout));
  if (valid) return kExitOk;
  if (!validation.options.quiet) PrintError("%s: not a valid notification", file.c_str());
  PrintWhy(validation, file, text);
  return kExitInvalid;
}

int RunNotif(const Options& options) {
  return ValidateFiles(options, ValidateOne);
}
