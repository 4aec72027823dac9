// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Arguments as messages quote them.
#include <string>
#include <string_view>

namespace compiler {

// `"text"`, shortened when it is very long.
std::string Quote(std::string_view text);

}  // namespace compiler
