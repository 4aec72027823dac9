// SPDX-License-Identifier: BSD-3-Clause
// The entry point that all fuzz targets share: memory hooks that count blocks and
// refuse one allocation, and the check that nothing is left.
#include "fuzz/fuzz_target.h"

#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <qmodel/memory.h>

namespace {

size_t g_live = 0;
uint32_t g_countdown = 0;

bool RefuseThis() {
  return g_countdown != 0 && --g_countdown == 0;
}

void* Malloc(size_t size) {
  if (RefuseThis()) return nullptr;
  ++g_live;
  return std::malloc(size == 0 ? 1 : size);
}

void* Realloc(void* block, size_t size) {
  if (block == nullptr) return Malloc(size);
  return RefuseThis() ? nullptr : std::realloc(block, size == 0 ? 1 : size);
}

void Free(void* block) {
  if (block == nullptr) return;
  --g_live;
  std::free(block);
}

void SetUpOnce() {
  static bool done = false;
  if (done) return;
  done = true;
  if (QM_MemRegisterCallBack(Malloc, Realloc, Free) != 0) std::abort();
  xmlInitParser();
}

}  // namespace

char* NextPiece(char** rest, char separator) {
  if (*rest == nullptr) return nullptr;
  char* piece = *rest;
  char* end = std::strchr(piece, separator);
  *rest = end == nullptr ? nullptr : end + 1;
  if (end != nullptr) *end = '\0';
  return piece;
}

char* CopyText(const FuzzInput& input) {
  auto* copy = static_cast<char*>(std::malloc(input.length + 1));
  if (copy == nullptr) std::abort();
  std::memcpy(copy, input.text, input.length + 1);
  return copy;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  SetUpOnce();
  if (size < 3 || size > kMaxFuzzText + 3) return 0;
  const size_t length = size - 3;
  auto* text = static_cast<char*>(std::malloc(length + 1));
  if (text == nullptr) return 0;
  std::memcpy(text, data + 3, length);
  text[length] = '\0';
  g_countdown = static_cast<uint32_t>(data[0]) << 8 | data[1];
  FuzzOne({data[2], text, length});
  g_countdown = 0;
  std::free(text);
  if (g_live != 0) {
    std::fprintf(stderr, "%zu blocks of the library are left\n", g_live);
    std::abort();
  }
  return 0;
}
