// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/memory.h"

// Constraint bodies that are a counted array of items: bases, bits, enums, patterns.

template <typename Body>
Body* NewItemBody(uint32_t itemCount) {
  if (itemCount > kMaxArrayCount) return nullptr;
  QmHeld<Body> body(NewRecord<Body>());
  if (!body || NewArrayOf(&body->items, itemCount) != QM_OK) return nullptr;
  body->count = static_cast<uint16_t>(itemCount);
  return body.Release();
}

template <typename Body, auto ReleaseItem>
void DestroyItemBody(QmDict* dict, void* body) {
  auto* own = static_cast<Body*>(body);
  if (own == nullptr) return;
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    ReleaseItem(dict, &own->items[i]);
  }
  g_qmMemFreeFunc(own->items);
  g_qmMemFreeFunc(own);
}

// A new body, or NULL. `CopyItem` fills a zero-filled item and may fail half-way.
template <typename Body, auto CopyItem, auto ReleaseItem>
Body* CopyItemBody(QmDict* dict, const Body* src) {
  Body* copy = NewItemBody<Body>(src->count);
  if (copy == nullptr) return nullptr;
  for (uint32_t i = 0; src->items != nullptr && i < src->count; ++i) {
    if (CopyItem(dict, &copy->items[i], &src->items[i])) continue;
    DestroyItemBody<Body, ReleaseItem>(dict, copy);
    return nullptr;
  }
  return copy;
}
