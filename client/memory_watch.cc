// SPDX-License-Identifier: BSD-3-Clause
// The library survives each refusal, but not every call of it has an answer for one: a
// request may read as valid, a path as one that names nothing. So all memory of the library
// and of libxml2 passes here and a refusal is remembered.
//
// libxml2 itself does not survive every refusal: compiling a regular expression it follows a
// null pointer. So what is refused to it is taken from a reserve, which is enough until the
// command comes to a place where it may end. Blocks of the reserve are handed out one behind
// the other and used again when all of them are released.
#include "client/memory_watch.h"

#include <libxml/xmlmemory.h>
#include <qmodel/memory.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace {

constexpr size_t kReserve = size_t{1} << 20;

alignas(std::max_align_t) char g_reserve[kReserve];
size_t g_used = 0;    // bytes of the reserve
size_t g_blocks = 0;  // of the reserve, that are not released
bool g_refused = false;

// What serves otherwise.
xmlFreeFunc g_free = nullptr;
xmlMallocFunc g_malloc = nullptr;
xmlReallocFunc g_realloc = nullptr;
xmlStrdupFunc g_duplicate = nullptr;

void* Noted(void* block) noexcept {
  if (block == nullptr) NoteRefusal();
  return block;
}

// ---- for the library ----

void* Take(size_t size) {
  return Noted(g_malloc(size));
}

void* Change(void* block, size_t size) {
  return Noted(g_realloc(block, size));
}

void Release(void* block) {
  g_free(block);
}

// ---- for libxml2: each block has its size in front ----

constexpr size_t kHead = alignof(std::max_align_t);

void* BehindHead(void* start, size_t size) noexcept {
  std::memcpy(start, &size, sizeof(size));
  return static_cast<char*>(start) + kHead;
}

void* HeadOf(void* block) noexcept {
  return static_cast<char*>(block) - kHead;
}

bool IsReserved(const void* block) noexcept {
  const auto* byte = static_cast<const char*>(block);
  return byte >= g_reserve && byte < g_reserve + kReserve;
}

// NULL: the reserve is used up.
void* TakeReserved(size_t size) noexcept {
  NoteRefusal();
  if (size > kReserve) return nullptr;
  const size_t whole = (kHead + size + kHead - 1) / kHead * kHead;
  if (kReserve - g_used < whole) return nullptr;
  void* start = g_reserve + g_used;
  g_used += whole;
  ++g_blocks;
  return BehindHead(start, size);
}

void* TakeXml(size_t size) {
  void* start = size > SIZE_MAX - kHead ? nullptr : g_malloc(kHead + size);
  return start == nullptr ? TakeReserved(size) : BehindHead(start, size);
}

void ReleaseXml(void* block) {
  if (block == nullptr) return;
  if (!IsReserved(block)) {
    g_free(HeadOf(block));
  } else if (--g_blocks == 0) {
    g_used = 0;
  }
}

void* ChangeXml(void* block, size_t size) {
  if (block == nullptr) return TakeXml(size);
  if (!IsReserved(block) && size <= SIZE_MAX - kHead) {
    void* start = g_realloc(HeadOf(block), kHead + size);
    if (start != nullptr) return BehindHead(start, size);
  }
  void* changed = TakeReserved(size);
  if (changed == nullptr) return nullptr;
  size_t before = 0;
  std::memcpy(&before, HeadOf(block), sizeof(before));
  std::memcpy(changed, block, std::min(before, size));
  ReleaseXml(block);
  return changed;
}

char* DuplicateXml(const char* text) {
  const size_t size = std::strlen(text) + 1;
  void* copy = TakeXml(size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

}  // namespace

void WatchMemory() {
  g_refused = false;
  if (g_malloc != nullptr) return;
  static_cast<void>(xmlMemGet(&g_free, &g_malloc, &g_realloc, &g_duplicate));
  static_cast<void>(xmlMemSetup(ReleaseXml, TakeXml, ChangeXml, DuplicateXml));
  static_cast<void>(QM_MemRegisterCallBack(Take, Change, Release));
}

void CheckMemory() {
  if (g_refused) throw std::bad_alloc();
}

void NoteRefusal() noexcept {
  g_refused = true;
}
