// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The limits of the loader. What exceeds one would make the load fail, so it is left
// out and reported.
#include "compiler/spelling/compile.h"

namespace compiler {

void KeepLimits(Output* out);

}  // namespace compiler
