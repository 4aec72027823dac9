// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Deviations of several modules that meet at one node (RFC 7950, section 7.20.3). Each is
// written for the node as its module defines it, and the library applies them in the order
// of the loads.
#include <vector>

#include "compiler/spelling/compile.h"

namespace compiler {

// Reports modules whose deviations of one node come out differently in another order, or
// fail in one, where each alone would not. After SettleDeviations().
void ReportOrderOfDeviations(const std::vector<Output*>& outputs);

}  // namespace compiler
