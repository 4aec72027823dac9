// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The YANG version of what is written.
#include <vector>

#include "compiler/spelling/compile.h"

namespace compiler {

// A module of version 1 is written as one of 1.1 where its own statements no longer are of
// version 1 alone: it has what came from a file of 1.1, identities with several bases, or
// imports by revision what is written as 1.1 (RFC 7950, section 12). For the library and
// for what the module says the version makes no difference.
void SettleVersions(const std::vector<Output*>& outputs);

}  // namespace compiler
