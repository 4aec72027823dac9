// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/report.h"

#include <utility>

namespace compiler {

void AddFinding(Report* report, Severity severity, const char* group, const xmlNode* element,
                std::string message, std::string advice) {
  const Statement* statement = StatementOf(element);
  report->findings.push_back({statement->place, statement->usedAt, severity, group,
                              std::move(message), std::move(advice)});
}

void AddFindingAt(Report* report, Severity severity, const char* group, const Place& place,
                  std::string message, std::string advice) {
  report->findings.push_back(
      {place, nullptr, severity, group, std::move(message), std::move(advice)});
}

}  // namespace compiler
