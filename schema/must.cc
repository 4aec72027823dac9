// SPDX-License-Identifier: BSD-3-Clause
// The must statements of nodes and deviates (RFC 7950 section 7.5.3). A must is
// set as long as it has a condition: a deviation clears the ones that it
// deletes, and the rest is compacted afterwards.
#include "context/dict.h"
#include "schema/node_array.h"
#include "schema/record_array.h"

uint32_t QMS_NODE_FillMust(QmDict* dict, QmsMust* rec, const char* condition,
                           const char* errorMessage, const char* errorAppTag) {
  if (dict == nullptr || rec == nullptr || condition == nullptr) return QM_INVALID;
  if (InternText(dict, &rec->condition, condition) &&
      InternOptional(dict, &rec->errorMessage, errorMessage) &&
      InternOptional(dict, &rec->errorAppTag, errorAppTag)) {
    return QM_OK;
  }
  QMS_NODE_ClearMust(dict, rec);
  return QM_NO_MEMORY;
}

static uint32_t FillFrom(QmDict* dict, QmsMust* dst, const QmsMust* src) {
  return QMS_NODE_FillMust(dict, dst, src->condition, src->errorMessage, src->errorAppTag);
}

uint32_t QMS_NODE_AppendOneMust(QmDict* dict, QmsMust** array, uint16_t* count,
                                const QmsMust* src) {
  if (array == nullptr || count == nullptr || src == nullptr) return QM_INVALID;
  return AppendElem(array, count, [&](QmsMust* rec) { return FillFrom(dict, rec, src); });
}

// A deviation names a must by its condition alone (RFC 7950 section 7.20.3.2).
uint32_t QMS_NODE_CheckTwoMustSame(const QmsMust* a, const QmsMust* b) {
  if (a == nullptr || b == nullptr) return 0;
  return a->condition == b->condition ? 1 : 0;
}

QmsMust* QMS_NODE_CopyMustsArray(QmDict* dict, const QmsMust* array, uint32_t count) {
  return CopyArrayOf(dict, array, count, FillFrom, QMS_NODE_ClearMust);
}

void QMS_NODE_AssignMoveMust(QmsMust* dst, QmsMust* src) {
  if (dst == nullptr || src == nullptr || dst == src) return;
  MoveElem(dst, src);
}

void QMS_NODE_ClearMust(QmDict* dict, QmsMust* rec) {
  if (rec == nullptr) return;
  ReleaseText(dict, &rec->condition);
  ReleaseText(dict, &rec->errorMessage);
  ReleaseText(dict, &rec->errorAppTag);
}

void QMS_NODE_FreeMusts(QmDict* dict, QmsMust* array, uint32_t count) {
  FreeArrayOf(dict, array, count, QMS_NODE_ClearMust);
}

static bool IsMustSet(const QmsMust& must) {
  return must.condition != nullptr;
}

uint32_t QMS_NODE_SubtractMustsArray(QmDict* dict, QmsMust** array, uint32_t oldCount,
                                     uint32_t newCount) {
  if (dict == nullptr || array == nullptr) return QM_INVALID;
  return CompactArrayOf(dict, array, oldCount, newCount, IsMustSet, QMS_NODE_ClearMust);
}
