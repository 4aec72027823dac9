// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The arguments of the expanded tree, put in the words of the written module.
#include "compiler/spelling/compile.h"

namespace compiler {

// Rewrites all arguments of the tree in one walk: types, bases, paths, conditions,
// targets, defaults, keys, extensions.
void RewriteArguments(Output* out);

}  // namespace compiler
