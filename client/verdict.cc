// SPDX-License-Identifier: BSD-3-Clause
// Lines on standard error that belong to one message. Standard output is flushed before, so
// that they stand where they belong when both are one file.
#include "client/verdict.h"

#include <cstdio>

#include <qmodel/agent.h>

void PrintVerdict(const Options& options, const std::string& file, bool valid) {
  if (!options.verdicts) return;
  static_cast<void>(std::fflush(stdout));
  PrintError("%s: %s", file.c_str(), valid ? "valid" : "not valid");
}

void PrintReason(const std::string& file, const QmErrNode* record) {
  const char* path = QM_GetErrorPath(record);
  const char* message = QM_GetErrorMessage(record);
  PrintError("%s: %s%s%s%s%s", file.c_str(), QM_AGENT_GetTagName(QM_GetErrorTag(record)),
             path == nullptr ? "" : " at ", path == nullptr ? "" : path,
             message == nullptr ? "" : ": ", message == nullptr ? "" : message);
}
