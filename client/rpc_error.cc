// SPDX-License-Identifier: BSD-3-Clause
// Prints an error record as XML, in the form without bound prefixes.
#include "client/rpc_error.h"

#include <cstdio>

#include <qmodel/agent.h>

// What standard output does not take is seen at the end of the program.
static uint32_t Print(const char* text, size_t length, void* /*arg*/) {
  static_cast<void>(std::fwrite(text, 1, length, stdout));
  return 0;
}

void PrintRpcError(const QmErrNode* record) {
  constexpr uint32_t kForm = QM_AGENT_RECORD_INDENTED | QM_AGENT_RECORD_BARE;
  static_cast<void>(QM_AGENT_WriteRecord(record, nullptr, kForm, Print, nullptr));
}
