// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Extensions that hold definitions of data which is no part of a module's own tree:
// yang-data (RFC 8040, section 8), structure and augment-structure (RFC 8791).
#include "compiler/reading/records.h"

namespace compiler {

enum class DataTemplate : uint8_t { kNone, kYangData, kStructure, kAugmentStructure };

DataTemplate DataTemplateOf(const xmlNode* statement) noexcept;

// True for what a template may hold directly.
bool MayStandInTemplate(DataTemplate holder, Keyword keyword) noexcept;

}  // namespace compiler
