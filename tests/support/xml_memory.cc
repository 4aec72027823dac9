// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/xml_memory.h"

#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>

namespace xml_memory {
namespace {

uint64_t g_countdown = 0;

bool RefuseThis() {
  return g_countdown != 0 && --g_countdown == 0;
}

void* Malloc(size_t size) {
  return RefuseThis() ? nullptr : std::malloc(size);
}

void* Realloc(void* block, size_t size) {
  return RefuseThis() ? nullptr : std::realloc(block, size);
}

char* Duplicate(const char* text) {
  const size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(Malloc(size));
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

}  // namespace

bool Install() {
  return xmlMemSetup(std::free, Malloc, Realloc, Duplicate) == 0;
}

void RefuseNth(uint64_t n) {
  g_countdown = n;
}

uint64_t Left() {
  return g_countdown;
}

}  // namespace xml_memory
