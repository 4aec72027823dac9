// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

// One input of a fuzz target. Its first three bytes steer the run: two choose the
// allocation that fails (0: none), one gives load flags; the rest is text.
struct FuzzInput {
  uint32_t flags;
  const char* text;  // NUL-terminated; may hold further NULs
  size_t length;
};

// The largest text: hostile structure shows in few bytes, and small inputs keep
// the fuzzer fast.
constexpr size_t kMaxFuzzText = 8192;

// What a target does with one input. It frees everything it makes: a block of
// the library that is left afterwards ends the process.
void FuzzOne(const FuzzInput& input);

// Splits off the text up to the first `separator` and moves `*rest` behind it. The
// piece is NUL-terminated in place; NULL when nothing is left.
char* NextPiece(char** rest, char separator);

// A writable copy of the text, from malloc().
char* CopyText(const FuzzInput& input);
