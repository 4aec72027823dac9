// SPDX-License-Identifier: BSD-3-Clause
// The bodies of the ten kinds of constraint: how each is made, freed and copied.
//
// A body is a counted array of items (bases, bits, enums, patterns, union members), a list
// of segments (length, range), or a record by itself. A zero-filled item is freed and
// copied without special care, so that a half-filled body is fit for both. A copy of a
// derived entry is not resolved: it may go to another module, and the pointer would lead
// into an array that this module neither owns nor watches.
#include "types/constraint.h"

#include <cstring>
#include <iterator>

#include <qmodel/context.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/table.h"
#include "types/type.h"

namespace {
struct KindRow {
  uint32_t kind;
  QmtConsCreateFunc create;
  QmtConsDestroyFunc destroy;
  QmtConsCopyFunc copy;
};
}  // namespace

// A body that is one record.
template <typename Body>
static void* CreateRecord(uint32_t /*itemCount*/, uint32_t /*loadFlags*/) {
  return NewRecord<Body>();
}

// A body that is a counted array of items: bases, bits, enums, patterns.
template <typename Body>
static Body* NewItemBody(uint32_t itemCount) {
  if (itemCount > kMaxArrayCount) return nullptr;
  QmHeld<Body> body(NewRecord<Body>());
  if (!body || NewArrayOf(&body->items, itemCount) != QM_OK) return nullptr;
  body->count = static_cast<uint16_t>(itemCount);
  return body.Release();
}

template <typename Body, auto ReleaseItem>
static void DestroyItemBody(QmDict* dict, void* body) {
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
static Body* CopyItemBody(QmDict* dict, const Body* src) {
  Body* copy = NewItemBody<Body>(src->count);
  if (copy == nullptr) return nullptr;
  for (uint32_t i = 0; src->items != nullptr && i < src->count; ++i) {
    if (CopyItem(dict, &copy->items[i], &src->items[i])) continue;
    DestroyItemBody<Body, ReleaseItem>(dict, copy);
    return nullptr;
  }
  return copy;
}

template <typename Body>
static void* CreateItems(uint32_t itemCount, uint32_t /*loadFlags*/) {
  return NewItemBody<Body>(itemCount);
}

template <typename Body, auto CopyItem, auto ReleaseItem>
static void* CopyItems(QmDict* dict, const void* body) {
  return CopyItemBody<Body, CopyItem, ReleaseItem>(dict, static_cast<const Body*>(body));
}

// The row of a kind whose body is a counted array and nothing else.
template <typename Body, auto CopyItem, auto ReleaseItem>
static consteval KindRow ItemsRow(uint32_t kind) {
  return {kind, CreateItems<Body>, DestroyItemBody<Body, ReleaseItem>,
          CopyItems<Body, CopyItem, ReleaseItem>};
}

static void DestroyDerived(QmDict* dict, void* body) {
  auto* derived = static_cast<QmtConsDerived*>(body);
  if (derived == nullptr) return;
  ReleaseText(dict, &derived->moduleName);
  ReleaseText(dict, &derived->typedefName);
  g_qmMemFreeFunc(derived);
}

static void* CopyDerived(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsDerived*>(body);
  auto* copy = NewRecord<QmtConsDerived>();
  if (copy == nullptr) return nullptr;
  if (InternOptional(dict, &copy->moduleName, src->moduleName) &&
      InternOptional(dict, &copy->typedefName, src->typedefName)) {
    return copy;
  }
  DestroyDerived(dict, copy);
  return nullptr;
}

static void ReleaseBase(QmDict* dict, QmtIdentRef* item) {
  ReleaseText(dict, &item->moduleName);
  ReleaseText(dict, &item->identityName);
}

static bool CopyBase(QmDict* dict, QmtIdentRef* copy, const QmtIdentRef* src) {
  return InternOptional(dict, &copy->moduleName, src->moduleName) &&
         InternOptional(dict, &copy->identityName, src->identityName);
}

static void ReleaseBit(QmDict* dict, QmtBit* item) {
  ReleaseText(dict, &item->name);
}

static bool CopyBit(QmDict* dict, QmtBit* copy, const QmtBit* src) {
  copy->position = src->position;
  return InternOptional(dict, &copy->name, src->name);
}

static void ReleaseEnum(QmDict* dict, QmtEnum* item) {
  ReleaseText(dict, &item->name);
}

static bool CopyEnum(QmDict* dict, QmtEnum* copy, const QmtEnum* src) {
  copy->value = src->value;
  return InternOptional(dict, &copy->name, src->name);
}

static void DestroyEnums(QmDict* dict, void* body) {
  auto* own = static_cast<QmtConsEnum*>(body);
  if (own == nullptr) return;
  for (uint32_t i = 0; own->descriptions != nullptr && i < own->count; ++i) {
    ReleaseText(dict, &own->descriptions[i]);
  }
  g_qmMemFreeFunc(own->descriptions);
  DestroyItemBody<QmtConsEnum, ReleaseEnum>(dict, own);
}

static void* CreateEnums(uint32_t itemCount, uint32_t loadFlags) {
  QmtConsEnum* own = NewItemBody<QmtConsEnum>(itemCount);
  if (own == nullptr || (loadFlags & QM_LOAD_DESCRIPTIONS) == 0) return own;
  if (NewArrayOf(&own->descriptions, itemCount) == QM_OK) return own;
  DestroyEnums(nullptr, own);
  return nullptr;
}

static bool CopyDescriptions(QmDict* dict, QmtConsEnum* copy, const QmtConsEnum* src) {
  if (src->descriptions == nullptr) return true;
  if (NewArrayOf(&copy->descriptions, src->count) != QM_OK) return false;
  for (uint32_t i = 0; i < src->count; ++i) {
    if (!InternOptional(dict, &copy->descriptions[i], src->descriptions[i])) return false;
  }
  return true;
}

static void* CopyEnums(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsEnum*>(body);
  QmtConsEnum* copy = CopyItemBody<QmtConsEnum, CopyEnum, ReleaseEnum>(dict, src);
  if (copy == nullptr || CopyDescriptions(dict, copy, src)) return copy;
  DestroyEnums(dict, copy);
  return nullptr;
}

static void DestroyFraction(QmDict* /*dict*/, void* body) {
  g_qmMemFreeFunc(body);
}

static void* CopyFraction(QmDict* /*dict*/, const void* body) {
  auto* copy = NewRecord<QmtConsFraction>();
  if (copy != nullptr) *copy = *static_cast<const QmtConsFraction*>(body);
  return copy;
}

static void DestroySegList(QmDict* /*dict*/, void* body) {
  auto* list = static_cast<QmtSegList*>(body);
  if (list == nullptr) return;
  g_qmMemFreeFunc(list->segs);
  g_qmMemFreeFunc(list);
}

static void* CopySegList(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtSegList*>(body);
  auto* copy = NewRecord<QmtSegList>();
  if (copy == nullptr || src->segs == nullptr) return copy;
  if (QM_UTL_NewArray(&copy->segs, src->capacity, src->segSize) != QM_OK) {
    DestroySegList(dict, copy);
    return nullptr;
  }
  std::memcpy(copy->segs, src->segs, size_t{src->count} * src->segSize);
  copy->capacity = src->capacity;
  copy->segSize = src->segSize;
  copy->count = src->count;
  return copy;
}

static void* CreatePath(uint32_t /*itemCount*/, uint32_t /*loadFlags*/) {
  auto* body = NewRecord<QmtConsPath>();
  if (body != nullptr) body->requireInstance = 1;
  return body;
}

static void DestroyPath(QmDict* dict, void* body) {
  auto* own = static_cast<QmtConsPath*>(body);
  if (own == nullptr) return;
  ReleaseText(dict, &own->path);
  g_qmMemFreeFunc(own);
}

static void* CopyPath(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsPath*>(body);
  auto* copy = NewRecord<QmtConsPath>();
  if (copy == nullptr) return nullptr;
  copy->requireInstance = src->requireInstance;
  if (InternOptional(dict, &copy->path, src->path)) return copy;
  DestroyPath(dict, copy);
  return nullptr;
}

static void ReleasePattern(QmDict* dict, QmtPattern* item) {
  ReleaseText(dict, &item->pattern);
}

static bool CopyPattern(QmDict* dict, QmtPattern* copy, const QmtPattern* src) {
  copy->invertMatch = src->invertMatch;
  return InternOptional(dict, &copy->pattern, src->pattern);
}

static QmtConsUnion* NewUnion(uint32_t itemCount) {
  if (itemCount > kMaxArrayCount) return nullptr;
  QmHeld<QmtConsUnion> own(NewRecord<QmtConsUnion>());
  if (!own || NewArrayOf(&own->members, itemCount) != QM_OK) return nullptr;
  own->count = static_cast<uint16_t>(itemCount);
  return own.Release();
}

static void* CreateUnion(uint32_t itemCount, uint32_t /*loadFlags*/) {
  return NewUnion(itemCount);
}

static void DestroyUnion(QmDict* dict, void* body) {
  auto* own = static_cast<QmtConsUnion*>(body);
  if (own == nullptr) return;
  for (uint32_t i = 0; own->members != nullptr && i < own->count; ++i) {
    QMT_TYPE_DestroyQmtRealTypeInner(dict, &own->members[i]);
  }
  g_qmMemFreeFunc(own->members);
  g_qmMemFreeFunc(own);
}

static void* CopyUnion(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsUnion*>(body);
  QmtConsUnion* copy = NewUnion(src->count);
  if (copy == nullptr) return nullptr;
  for (uint32_t i = 0; src->members != nullptr && i < src->count; ++i) {
    if (QMT_TYPE_CopyQmtRealTypeInner(dict, &copy->members[i], &src->members[i]) == QM_OK) continue;
    DestroyUnion(dict, copy);
    return nullptr;
  }
  return copy;
}

constexpr KindRow kKinds[] = {
    {QMT_CONS_DERIVED, CreateRecord<QmtConsDerived>, DestroyDerived, CopyDerived},
    ItemsRow<QmtConsBase, CopyBase, ReleaseBase>(QMT_CONS_BASE),
    ItemsRow<QmtConsBit, CopyBit, ReleaseBit>(QMT_CONS_BIT),
    {QMT_CONS_ENUM, CreateEnums, DestroyEnums, CopyEnums},
    {QMT_CONS_FRACTION, CreateRecord<QmtConsFraction>, DestroyFraction, CopyFraction},
    {QMT_CONS_LENGTH, CreateRecord<QmtSegList>, DestroySegList, CopySegList},
    {QMT_CONS_PATH, CreatePath, DestroyPath, CopyPath},
    ItemsRow<QmtConsPattern, CopyPattern, ReleasePattern>(QMT_CONS_PATTERN),
    {QMT_CONS_RANGE, CreateRecord<QmtSegList>, DestroySegList, CopySegList},
    {QMT_CONS_UNION, CreateUnion, DestroyUnion, CopyUnion},
};

static_assert(std::size(kKinds) == QMT_CONS_COUNT, "one row per constraint kind");
static_assert(RowsStandAtTheir<&KindRow::kind>(kKinds), "a row's index is its constraint kind");

// The operation of a kind, NULL for a kind that is none.
template <auto Operation>
static auto OperationOf(uint32_t kind) {
  return kind < QMT_CONS_COUNT ? kKinds[kind].*Operation : nullptr;
}

QmtConsCreateFunc QMT_CONS_GetConsDataCreateBodyFunc(uint32_t kind) {
  return OperationOf<&KindRow::create>(kind);
}

QmtConsDestroyFunc QMT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind) {
  return OperationOf<&KindRow::destroy>(kind);
}

QmtConsCopyFunc QMT_CONS_GetConsDataCopyBodyFunc(uint32_t kind) {
  return OperationOf<&KindRow::copy>(kind);
}
