// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

constexpr uint32_t kConditionSize = 3097;  // a rewritten condition of 3096 characters and its NUL

QM_BEGIN_INTERNAL_DECLS

// The condition with module names for the prefixes at the start of its string
// literals: a new text, or NULL when it cannot be tokenized or gets too long.
char* QMS_LOADER_TransPrefix2ModNameInLiteral(QmsModule* module, const char* text);

// Writes the rewritten condition into `out`; 22 when it cannot be tokenized or does
// not fit whole, 12 without memory.
uint32_t QMS_LOADER_CopyTokenIntoOutCondition(QmsModule* module, const char* text, char* out,
                                              uint32_t outSize);

// Appends one string literal that contains ":" at out[*used], its prefix
// replaced when the module knows it; 22 when it does not fit, 12 without memory.
uint32_t QMS_LOADER_AddModuleNameIntoCondition(QmsModule* module, const char* token,
                                               uint32_t tokenLength, char* out, uint32_t outSize,
                                               uint32_t* used);

// Bring the defaults of a leaf, a leaf-list or a typedef whose own type is identityref
// into module-name form; nothing for other types. 22 when one cannot be converted or
// interned; those before it are converted then.
uint32_t QMS_LOADER_RefreshLeafDefaultValue(QmsModule* module, QmsNode* leaf);
uint32_t QMS_LOADER_RefreshLeafListDefaultValue(QmsModule* module, QmsNode* leafList);
uint32_t QMS_LOADER_RefreshTypeDefDefaultValue(QmsModule* module, QmsTypedef* td);

QM_END_INTERNAL_DECLS
