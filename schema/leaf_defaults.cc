// SPDX-License-Identifier: BSD-3-Clause
// The default values of leaf-lists and of deviates: arrays of interned texts. A
// failed replacement leaves a leaf-list with a count and no array, which counts
// as no defaults here.
#include "schema/node_array.h"
#include "schema/record_array.h"

static uint32_t FillText(QmDict* dict, const char** dst, const char* const* src) {
  return InternText(dict, dst, *src) ? QM_OK : QM_NO_MEMORY;
}

const char** QMS_NODE_CopyDefaults(QmDict* dict, const char* const* array, uint32_t count) {
  return CopyArrayOf(dict, array, count, FillText, ReleaseText);
}

void QMS_NODE_FreeDefaults(QmDict* dict, const char** array, uint32_t count) {
  FreeArrayOf(dict, array, count, ReleaseText);
}

// Interns `count` values; what was interned is released again on failure.
static bool InternAll(QmDict* dict, const char** dst, const char* const* values, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) {
    if (InternText(dict, &dst[i], values[i])) continue;
    while (i > 0) ReleaseText(dict, &dst[--i]);
    return false;
  }
  return true;
}

uint32_t QMS_NODE_AppendLeaflistDefaults(QmDict* dict, QmsLeafList* payload, uint32_t count,
                                         const char* const* values) {
  if (dict == nullptr || payload == nullptr) return QM_INVALID;
  if (count == 0) return QM_OK;
  if (values == nullptr) return QM_INVALID;
  const uint32_t oldCount = payload->defaults == nullptr ? 0 : payload->defaultCount;
  if (count > kMaxArrayCount - oldCount) return QM_INVALID;

  const char** grown = nullptr;
  if (NewArrayOf(&grown, oldCount + count) != QM_OK) return QM_NO_MEMORY;
  if (!InternAll(dict, &grown[oldCount], values, count)) {
    g_qmMemFreeFunc(grown);
    return QM_FAILED;
  }
  // The references of the old values move over with the pointers.
  for (uint32_t i = 0; i < oldCount; ++i) grown[i] = payload->defaults[i];
  g_qmMemFreeFunc(payload->defaults);
  payload->defaults = grown;
  payload->defaultCount = static_cast<uint16_t>(oldCount + count);
  return QM_OK;
}

static bool IsTextSet(const char* const& text) {
  return text != nullptr;
}

uint32_t QMS_NODE_SubtractLeaflistDefaults(QmDict* dict, QmsLeafList* payload, uint32_t newCount) {
  if (dict == nullptr || payload == nullptr || newCount > payload->defaultCount) return QM_INVALID;
  const uint32_t ret = CompactArrayOf(dict, &payload->defaults, payload->defaultCount, newCount,
                                      IsTextSet, ReleaseText);
  payload->defaultCount = payload->defaults == nullptr ? 0 : static_cast<uint16_t>(newCount);
  return ret;
}
