// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// From a tree to YIN: UTF-8, two blanks for each level, the same bytes for the same tree.
#include <string>

#include "compiler/reading/records.h"

namespace compiler {

// The tree as text, with the XML declaration and a line feed at the end. The root's
// namespace declarations are written as they stand there (nsDef), one to a line, the
// YIN namespace first.
std::string WriteYin(const Module& module);

}  // namespace compiler
