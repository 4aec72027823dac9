// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What the library skips, does not check or evaluates otherwise in a model that is right:
// just what cannot be expressed when it is spelled out.
#include <span>

#include "compiler/reading/repository.h"

namespace compiler {

// Adds a warning of class "library" for each loss that compiling the modules has. No
// features are decided. Modules
// with errors are passed over.
void LintLibrary(Repository* repository, std::span<Module* const> modules, Report* report);

}  // namespace compiler
