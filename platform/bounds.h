// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdarg>
#include <cstddef>
#include <cstdint>

#include <qmodel/export.h>

// Copies and prints that know the size of their destination, with the names and
// the behaviour of C11 Annex K as far as the library needs it. The copies give
// 0, 22 (a NULL pointer, a size of 0 or above kBoundsMaxSize, overlapping
// blocks) or 34 (it does not fit). On failure nothing of the source is left in
// the destination: a text is emptied, a block zero-filled.

constexpr size_t kBoundsMaxSize = SIZE_MAX >> 1;

// Copies a block.
int32_t memcpy_s(void* dest, size_t destSize, const void* src, size_t count);
// On a count that is too large the whole destination is set to `value`.
int32_t memset_s(void* dest, size_t destSize, int value, size_t count);
// Copies a text with its NUL.
int32_t strcpy_s(char* dest, size_t destSize, const char* src);
// Copies `count` characters at most and always ends the text.
int32_t strncpy_s(char* dest, size_t destSize, const char* src, size_t count);
// Appends a text to the one that `dest` holds.
int32_t strcat_s(char* dest, size_t destSize, const char* src);

// Prints a text that must fit whole. The number of characters written, or -1
// with an empty text when it does not fit, on a format error and for a NULL
// argument.
int32_t sprintf_s(char* dest, size_t destSize, const char* format, ...) QM_PRINTF(3, 4);

// Print what fits, `destSize` - 1 characters at most, and cut the rest silently.
// The number of characters written (not, as elsewhere, of those wanted, so that
// the result is always the length of the text), or -1 as above.
int32_t snprintf_s(char* dest, size_t destSize, const char* format, ...) QM_PRINTF(3, 4);
int32_t vsnprintf_s(char* dest, size_t destSize, const char* format, va_list args) QM_PRINTF(3, 0);
