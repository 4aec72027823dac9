// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Whether a default fits its type (RFC 7950, section 9).
#include <string>
#include <string_view>

#include "compiler/reading/records.h"

namespace compiler {

// Why `value`, written at the statement `at`, is no value of the type; empty: it is one,
// or that cannot be told here (a leafref has the values of its target, and what is
// wrong with the type itself is told there).
std::string FaultOfValue(const xmlNode* type, std::string_view value, const xmlNode* at);

// One text for all that write the same number; other values stay as they are.
std::string CanonicalOf(const xmlNode* type, std::string_view value);

}  // namespace compiler
