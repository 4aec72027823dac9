// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Circles of imports, includes, groupings, typedefs, identities and features: each is
// an error that names those that are in it.
#include <functional>
#include <vector>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"

namespace compiler {

// The circles among the imports and includes of `files`, from entry `first` on. Each is
// reported, as fatal, at the import or include that closes it, whose file is `broken`.
void ReportLinkCircles(const std::vector<Module*>& files, size_t first, Report* report);

// The circles in which definitions of the module stand. True: there is one.
bool ReportDefinitionCircles(Module* module, Report* report);

}  // namespace compiler
