// SPDX-License-Identifier: BSD-3-Clause
// References to features, as nodes, features and identities carry them. A
// reference holds the name of the feature's module and the feature's name, both
// interned, so that two references are equal when both pointers are.
#include "schema/node_array.h"
#include "schema/record_array.h"

uint32_t QMS_NODE_FillIfFeature(QmDict* dict, QmsIfFeature* rec, const char* module,
                                const char* feature) {
  if (dict == nullptr || rec == nullptr || module == nullptr || feature == nullptr) {
    return QM_INVALID;
  }
  return InternBoth(dict, &rec->module, module, &rec->feature, feature) ? QM_OK : QM_NO_MEMORY;
}

static uint32_t FillFrom(QmDict* dict, QmsIfFeature* dst, const QmsIfFeature* src) {
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
  return CopyArrayOf(dict, array, count, FillFrom, QMS_NODE_ClearIfFeature);
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
