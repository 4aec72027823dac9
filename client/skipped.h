// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "client/options.h"

// Says of each operand how many statements the loader has skipped that the compiler
// spells out: groupings, their uses, typedefs that are not at the module's level.
void PrintSkipped(const Options& options);
