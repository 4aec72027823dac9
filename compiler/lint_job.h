// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// One call of lint from its operands to the text that is printed. Refused memory is
// caught here.
#include <string>
#include <vector>

#include "compiler/lint/lint.h"

namespace compiler {

struct LintRequest {
  std::vector<std::string> folders;  // searched in this order
  bool recursive = false;            // with their sub-folders
  std::vector<std::string> operands;
  LintOptions options;
  bool json = false;
};

enum class LintState : uint8_t {
  kClean,     // nothing, or warnings only
  kErrors,    // in the models
  kUnusable,  // an operand is not there, cannot be read, or is a submodule
  kNoFolder,  // a folder cannot be searched, see `detail`
  kNoMemory,
};

struct LintResult {
  LintState state = LintState::kClean;
  std::string detail;
  std::string output;                 // the findings, in order
  std::vector<std::string> troubles;  // what has no line in a file, one sentence each
};

LintResult RunLintJob(const LintRequest& request);

}  // namespace compiler
