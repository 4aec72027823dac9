// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// How much is compiled: counted before anything is copied, since thirty groupings that
// each use the former twice make a billion nodes.
#include "compiler/spelling/compile.h"

namespace compiler {

inline constexpr uint64_t kMaxNodes = 1000000;            // of the schema, in one module
inline constexpr uint64_t kMaxBytes = uint64_t{1} << 30;  // of its tree in memory

// Groupings may use groupings to this depth.
inline constexpr unsigned kMaxUsesDepth = 1000;

// False, and the output stopped, when the module is too large once spelled out.
bool FitsBounds(Output* out);

}  // namespace compiler
