// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

char* QM_UTL_StrDup(const char* str);
char* QM_UTL_StrDupWithSpecifyLength(const char* str, uint32_t n);
char* QM_UTL_CreateEmptyString();
uint32_t QM_UTL_IsNulStringEqual(const char* a, const char* b);
uint32_t QM_UTL_CountCharNumber(const char* str, char c);
const char* QM_UTL_Strnchr(const char* str, char c, uint32_t n);
uint32_t QM_UTL_MatchStrWithPattern(const char* str, const char* pattern);

QM_END_INTERNAL_DECLS
