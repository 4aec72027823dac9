// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <type_traits>

#include "context/array.h"
#include "context/dict.h"
#include "context/memory.h"
#include "platform/string.h"
#include "schema/module.h"

// The loops that the arrays of modules, definitions and nodes have in common.
// A zero-filled element is valid everywhere, and so is a NULL array beside a
// count: a failed replacement leaves one behind.

// Interns both texts or none.
inline bool InternBoth(QmDict* dict, const char** fieldA, const char* textA, const char** fieldB,
                       const char* textB) {
  if (!InternText(dict, fieldA, textA)) return false;
  if (InternText(dict, fieldB, textB)) return true;
  ReleaseText(dict, fieldA);
  return false;
}

// Hands the content of one element over to another.
template <typename Elem>
void MoveElem(Elem* dst, Elem* src) {
  *dst = *src;
  *src = Elem{};
}

// Clears all elements and frees the array; nothing for NULL.
template <typename Elem>
void FreeArrayOf(QmDict* dict, Elem* array, uint32_t count, void (*clear)(QmDict*, Elem*)) {
  if (array == nullptr) return;
  for (uint32_t i = 0; i < count; ++i) clear(dict, &array[i]);
  g_qmMemFreeFunc(array);
}

// The same for an array that a record owns, which is empty afterwards.
template <typename Elem, typename Count>
void DropArrayOf(QmDict* dict, Elem** array, Count* count,
                 void (*freeArray)(QmDict*, Elem*, uint32_t)) {
  Elem* block = *array;
  const uint32_t used = *count;
  *array = nullptr;
  *count = 0;
  freeArray(dict, block, used);
}

// Appends one element that `fill(element)` fills; a failed fill must leave its
// element clear. The old block lives on until then, since `fill` may copy from an
// element of it, and stays in place when anything fails.
template <typename Elem, typename Fill>
uint32_t AppendElem(Elem** array, uint16_t* count, Fill fill) {
  const uint32_t used = *array == nullptr ? 0 : *count;
  if (used >= kMaxArrayCount) return QM_INVALID;
  Elem* grown = nullptr;
  uint32_t ret = NewArrayOf(&grown, used + 1);
  if (ret != QM_OK) return ret;
  for (uint32_t i = 0; i < used; ++i) grown[i] = (*array)[i];
  ret = fill(&grown[used]);
  if (ret != QM_OK) {
    g_qmMemFreeFunc(grown);
    return ret;
  }
  g_qmMemFreeFunc(*array);
  *array = grown;
  *count = static_cast<uint16_t>(used + 1);
  return QM_OK;
}

// The same for an array of `mod`, whose element Fill fills with the texts. 22 also for no
// module and for one without a context.
template <typename Elem, typename... Texts>
uint32_t AppendTo(QmsModule* mod, Elem* QmsModule::*array, uint16_t QmsModule::*count,
                  uint32_t (*fill)(QmDict*, Elem*, Texts...),
                  std::type_identity_t<Texts>... texts) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&(mod->*array), &(mod->*count),
                    [&](Elem* elem) { return fill(ModuleDict(mod), elem, texts...); });
}

// A new array of deep copies; NULL for an empty one, and on failure.
template <typename Elem>
Elem* CopyArrayOf(QmDict* dict, const Elem* array, uint32_t count,
                  uint32_t (*fill)(QmDict*, Elem*, const Elem*), void (*clear)(QmDict*, Elem*)) {
  Elem* copy = nullptr;
  if (array == nullptr || NewArrayOf(&copy, count) != QM_OK) return nullptr;
  for (uint32_t i = 0; i < count; ++i) {
    if (fill(dict, &copy[i], &array[i]) == QM_OK) continue;
    FreeArrayOf(dict, copy, i, clear);
    return nullptr;
  }
  return copy;
}

// Copies an array with its count into an empty one. False, with nothing
// changed, on failure.
template <typename Elem>
bool CopyCounted(QmDict* dict, Elem** dst, uint16_t* dstCount, const Elem* src, uint16_t srcCount,
                 Elem* (*copy)(QmDict*, const Elem*, uint32_t)) {
  if (src == nullptr || srcCount == 0) return true;
  Elem* array = copy(dict, src, srcCount);
  if (array == nullptr) return false;
  *dst = array;
  *dstCount = srcCount;
  return true;
}

// Replaces an array by one of the `newCount` elements in it that are still set.
// When that cannot be made, nothing is left: *array is NULL then. A count without
// an array stays without one.
template <typename Elem>
uint32_t CompactArrayOf(QmDict* dict, Elem** array, uint32_t oldCount, uint32_t newCount,
                        bool (*isSet)(const Elem&), void (*clear)(QmDict*, Elem*)) {
  Elem* old = *array;
  if (old == nullptr) return QM_OK;
  Elem* kept = nullptr;
  const uint32_t ret = NewArrayOf(&kept, newCount);
  const uint32_t room = ret == QM_OK ? newCount : 0;
  for (uint32_t i = 0, used = 0; i < oldCount && used < room; ++i) {
    if (isSet(old[i])) MoveElem(&kept[used++], &old[i]);
  }
  FreeArrayOf(dict, old, oldCount, clear);
  *array = kept;
  return ret;
}

// The first element whose text `key` equals `text`.
template <typename Elem>
Elem* FindByText(Elem* array, uint32_t count, const char* Elem::*key, const char* text) {
  if (array == nullptr || text == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) {
    // An element that is being parsed is counted already, and has no text yet.
    const char* own = array[i].*key;
    if (own == text || (own != nullptr && TextsEqual(own, text))) return &array[i];
  }
  return nullptr;
}

// The same, for texts that the dictionary has interned: where the elements are many, the
// text is looked up once and they are told by its address. Elements made by hand may have
// texts of their own. `dict` may be NULL.
template <typename Elem>
Elem* FindByInterned(QmDict* dict, Elem* array, uint32_t count, const char* Elem::*key,
                     const char* text) {
  constexpr uint32_t kFew = 16;
  const bool areMany = dict != nullptr && array != nullptr && count > kFew;
  const char* interned = areMany ? FindInterned(dict, text) : nullptr;
  for (uint32_t i = 0; interned != nullptr && i < count; ++i) {
    if (array[i].*key == interned) return &array[i];
  }
  return FindByText(array, count, key, text);
}

// Whether two arrays are equal in length and, pair by pair, in content.
template <typename Elem>
bool ArraysAreSame(const Elem* a, uint32_t na, const Elem* b, uint32_t nb,
                   uint32_t (*same)(const Elem*, const Elem*)) {
  const uint32_t count = a == nullptr ? 0 : na;
  if (count != (b == nullptr ? 0 : nb)) return false;
  for (uint32_t i = 0; i < count; ++i) {
    if (same(&a[i], &b[i]) == 0) return false;
  }
  return true;
}
