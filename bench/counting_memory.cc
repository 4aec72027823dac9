// SPDX-License-Identifier: BSD-3-Clause
#include "bench/counting_memory.h"

#include <libxml/xmlmemory.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <qmodel/memory.h>

#include "bench/shared_parts.h"

namespace {

// Sizes as asked for stand in front of each block.
struct Held {
  int64_t allocations = 0;
  int64_t bytes = 0;
  int64_t now = 0;
  int64_t peak = 0;
};

Held g_library;
Held g_xml;
constexpr size_t kHead = 16;

void* Take(Held* held, size_t size) {
  char* block = static_cast<char*>(std::malloc(kHead + size));
  if (block == nullptr) return nullptr;
  std::memcpy(block, &size, sizeof size);
  ++held->allocations;
  held->bytes += static_cast<int64_t>(size);
  held->now += static_cast<int64_t>(size);
  held->peak = std::max(held->peak, held->now);
  return block + kHead;
}

size_t SizeOfBlock(const void* block) {
  size_t size = 0;
  std::memcpy(&size, static_cast<const char*>(block) - kHead, sizeof size);
  return size;
}

void Give(Held* held, void* block) {
  if (block == nullptr) return;
  held->now -= static_cast<int64_t>(SizeOfBlock(block));
  std::free(static_cast<char*>(block) - kHead);
}

void* Retake(Held* held, void* block, size_t size) {
  void* taken = Take(held, size);
  if (block == nullptr || taken == nullptr) return taken;
  std::memcpy(taken, block, std::min(size, SizeOfBlock(block)));
  Give(held, block);
  return taken;
}

void* LibraryMalloc(size_t size) {
  return Take(&g_library, size);
}
void* LibraryRealloc(void* block, size_t size) {
  return Retake(&g_library, block, size);
}
void LibraryFree(void* block) {
  Give(&g_library, block);
}
void* XmlMalloc(size_t size) {
  return Take(&g_xml, size);
}
void* XmlRealloc(void* block, size_t size) {
  return Retake(&g_xml, block, size);
}
void XmlFree(void* block) {
  Give(&g_xml, block);
}
char* XmlStrdup(const char* text) {
  const size_t size = std::strlen(text) + 1;
  void* copy = Take(&g_xml, size);
  if (copy != nullptr) std::memcpy(copy, text, size);
  return static_cast<char*>(copy);
}

}  // namespace

void CountMemory() {
  Require(QM_MemRegisterCallBack(LibraryMalloc, LibraryRealloc, LibraryFree) == 0, "no hooks");
  Require(xmlMemSetup(XmlFree, XmlMalloc, XmlRealloc, XmlStrdup) == 0, "no hooks of libxml2");
}

MemoryUse MeasureMemory(const std::function<void()>& run) {
  const Held library = g_library;
  const Held xml = g_xml;
  g_library.peak = g_library.now;
  g_xml.peak = g_xml.now;
  run();
  return {g_library.allocations - library.allocations,
          g_library.bytes - library.bytes,
          g_library.peak - library.now,
          g_xml.peak - xml.now,
          g_library.now - library.now,
          g_xml.now - xml.now};
}
