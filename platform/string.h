// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

extern "C" {
int32_t RTK_StrCmp(const char* a, const char* b);
int32_t RTK_StrNCmp(const char* a, const char* b, size_t n);
size_t RTK_StrLen(const char* str);
const char* RTK_StrChr(const char* str, char c);
const char* RTK_StrRChr(const char* str, char c);
const char* RTK_StrStr(const char* str, const char* sub);
uint32_t RTK_StrToFloat(const char* str, double* out);
}
