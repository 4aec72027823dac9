// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Printed trees, cut below a depth.
#include <string>
#include <string_view>

// The lines of a tree without those deeper than `depth` below `top`, which is the depth of
// the topmost nodes that count; 0 for all.
std::string CutTree(std::string_view tree, unsigned depth, unsigned top);

// The depth of the last node of a tree whose lines lead to it, plus one; 0 without one.
unsigned DepthBelow(std::string_view lines);
