// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The enums and bits of types, which may depend on features (RFC 7950, sections 9.6.4 and
// 9.7.4).
#include <string_view>

#include "compiler/spelling/compile.h"

namespace compiler {

// Takes those that depend on what is off out of a type of the written tree, and of a union
// the members that have no value left.
void SettleItems(Output* out, xmlNode* type);

// True for an enum or bit that the type, by itself or by what it is derived from, loses so.
bool LosesItem(Output* out, const xmlNode* type, std::string_view name);

// True when the type has enums or bits of its own, and each depends on what is off.
bool LosesEveryItem(Output* out, const xmlNode* type);

// Writes a restriction of an enumeration or of bits, settled before, as the built-in type
// with what is left: so it is derived from nothing. A typedef keeps the units that it had
// from there.
void WriteAsBuiltIn(Output* out, xmlNode* type);

}  // namespace compiler
