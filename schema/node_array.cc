// SPDX-License-Identifier: BSD-3-Clause
// The arrays that nodes carry: references to features, musts and default values.
// Features, identities and deviates carry some of them too. All texts are
// interned, so two elements are compared by the pointers of their texts.
//
// A deviation that takes elements away clears them one by one and has the array
// compacted afterwards: an element is set as long as its first text is.
#include "schema/node_array.h"

#include "context/dict.h"
#include "schema/record_array.h"

// References to features (RFC 7950 section 7.20.2): the name of the feature's
// module and the feature's name.

uint32_t QMS_NODE_FillIfFeature(QmDict* dict, QmsIfFeature* rec, const char* module,
                                const char* feature) {
  if (dict == nullptr || rec == nullptr || module == nullptr || feature == nullptr) {
    return QM_INVALID;
  }
  return InternBoth(dict, &rec->module, module, &rec->feature, feature) ? QM_OK : QM_NO_MEMORY;
}

static uint32_t FillIfFeatureFrom(QmDict* dict, QmsIfFeature* dst, const QmsIfFeature* src) {
  return QMS_NODE_FillIfFeature(dict, dst, src->module, src->feature);
}

uint32_t QMS_NODE_AppendOneIfFeat(QmDict* dict, QmsIfFeature** array, uint16_t* count,
                                  const char* module, const char* feature) {
  if (array == nullptr || count == nullptr) return QM_INVALID;
  return AppendElem(array, count, [&](QmsIfFeature* rec) {
    return QMS_NODE_FillIfFeature(dict, rec, module, feature);
  });
}

QmsIfFeature* QMS_NODE_FindIfFeature(QmsIfFeature* array, uint32_t count, const char* module,
                                     const char* feature) {
  if (array == nullptr || module == nullptr || feature == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) {
    if (array[i].module == module && array[i].feature == feature) return &array[i];
  }
  return nullptr;
}

uint32_t QMS_NODE_CheckTwoIfFeatureSame(const QmsIfFeature* a, const QmsIfFeature* b) {
  if (a == nullptr || b == nullptr) return 0;
  return a->module == b->module && a->feature == b->feature ? 1 : 0;
}

uint32_t QMS_NODE_CheckTwoIfFeatureArraySame(const QmsIfFeature* a, uint32_t na,
                                             const QmsIfFeature* b, uint32_t nb) {
  return ArraysAreSame(a, na, b, nb, QMS_NODE_CheckTwoIfFeatureSame) ? 1 : 0;
}

QmsIfFeature* QMS_NODE_CopyIfFeaturesArray(QmDict* dict, const QmsIfFeature* array,
                                           uint32_t count) {
  return CopyArrayOf(dict, array, count, FillIfFeatureFrom, QMS_NODE_ClearIfFeature);
}

void QMS_NODE_ClearIfFeature(QmDict* dict, QmsIfFeature* rec) {
  if (rec == nullptr) return;
  ReleaseText(dict, &rec->module);
  ReleaseText(dict, &rec->feature);
}

void QMS_NODE_FreeIfFeatures(QmDict* dict, QmsIfFeature* array, uint32_t count) {
  FreeArrayOf(dict, array, count, QMS_NODE_ClearIfFeature);
}

// The child may have the same feature of its own; one reference is enough.
uint32_t QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(QmDict* dict, const QmsNode* augment,
                                                       QmsNode* child) {
  if (dict == nullptr || augment == nullptr || child == nullptr) return QM_INVALID;
  if (augment->ifFeatures == nullptr) return QM_OK;
  for (uint32_t i = 0; i < augment->ifFeatureCount; ++i) {
    const QmsIfFeature* own = &augment->ifFeatures[i];
    if (QMS_NODE_FindIfFeature(child->ifFeatures, child->ifFeatureCount, own->module,
                               own->feature) != nullptr) {
      continue;
    }
    const uint32_t ret = QMS_NODE_AppendOneIfFeat(dict, &child->ifFeatures, &child->ifFeatureCount,
                                                  own->module, own->feature);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// The must statements of nodes and deviates (RFC 7950 section 7.5.3).

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

static uint32_t FillMustFrom(QmDict* dict, QmsMust* dst, const QmsMust* src) {
  return QMS_NODE_FillMust(dict, dst, src->condition, src->errorMessage, src->errorAppTag);
}

uint32_t QMS_NODE_AppendOneMust(QmDict* dict, QmsMust** array, uint16_t* count,
                                const QmsMust* src) {
  if (array == nullptr || count == nullptr || src == nullptr) return QM_INVALID;
  return AppendElem(array, count, [&](QmsMust* rec) { return FillMustFrom(dict, rec, src); });
}

// A deviation names a must by its condition alone (RFC 7950 section 7.20.3.2).
uint32_t QMS_NODE_CheckTwoMustSame(const QmsMust* a, const QmsMust* b) {
  if (a == nullptr || b == nullptr) return 0;
  return a->condition == b->condition ? 1 : 0;
}

QmsMust* QMS_NODE_CopyMustsArray(QmDict* dict, const QmsMust* array, uint32_t count) {
  return CopyArrayOf(dict, array, count, FillMustFrom, QMS_NODE_ClearMust);
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

// The default values of leaf-lists and of deviates: arrays of interned texts. A
// failed replacement leaves a leaf-list with a count and no array, which counts
// as no defaults here.

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
