// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "compiler/lint/lint.h"

namespace compiler {

// What lint says of files. The findings point into the session.
struct LintRun {
  std::unique_ptr<Session> session;
  Report report;
};

// Lints these operands with these search directories.
LintRun LintFiles(const std::vector<std::string>& operands, const std::vector<std::string>& folders,
                  const std::vector<std::string>& classes = {});

// True when a finding has advice of its own, or as a part of its message.
bool SaysWhatToDo(const Finding& finding);

}  // namespace compiler
