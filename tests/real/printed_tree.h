// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Schema trees as text, ours and those of RFC 8340, read back into the paths of nodes.
#include <set>
#include <string>
#include <vector>

struct TreeNode {
  std::string path;  // "/augment target/a/(choice)/:(case)/b", names without prefix
  std::string rest;  // flags before the name and all behind it, blanks squeezed
};

// The nodes of a printed tree in order of its lines.
std::vector<TreeNode> ReadTree(const std::string& text);

// Without the cases that hold one node of their own name: the shorthand of a choice
// (RFC 7950, section 7.9.2) is the same with and without its case. Their nodes stand
// below the choice then.
std::vector<TreeNode> WithoutShorthandCases(const std::vector<TreeNode>& nodes);

std::set<std::string> Paths(const std::vector<TreeNode>& nodes);
