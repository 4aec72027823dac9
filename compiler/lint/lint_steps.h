// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// A step of a condition's path that leads nowhere, in words.
#include <string>

#include "compiler/lint/data_axes.h"
#include "compiler/lint/lint_pass.h"

namespace compiler {

struct StepFault {
  std::string what;  // goes on behind "the path "
  std::string advice;
};

StepFault ExplainStep(Lint* lint, const DataPlaces& from, const DataTest& step);

}  // namespace compiler
