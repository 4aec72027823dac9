// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// "module:name" in a new block, or NULL without memory. No argument may be NULL.
char* JoinModuleAndName(const char* moduleName, const char* name);

QM_BEGIN_INTERNAL_DECLS

// Copies of a text in a new block, or NULL without memory and for a NULL text. The
// second takes the first `n` characters, and gives NULL when there are fewer or `n`
// is 0; the third is a copy of "".
char* QM_UTL_StrDup(const char* str);
char* QM_UTL_StrDupWithSpecifyLength(const char* str, uint32_t n);
char* QM_UTL_CreateEmptyString();
// 1 when both are NULL or both are the same text.
uint32_t QM_UTL_IsNulStringEqual(const char* a, const char* b);
// How often `c` stands in the text; 0 for NULL.
uint32_t QM_UTL_CountCharNumber(const char* str, char c);
// The first `c` among the first `n` characters, or NULL; one character is looked at when
// `n` is 0.
const char* QM_UTL_Strnchr(const char* str, char c, uint32_t n);

QM_END_INTERNAL_DECLS
