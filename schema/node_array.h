// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The arrays that nodes carry: if-features, musts and default values. Filling an
// element gives 22 for a missing text and 12 when memory runs out, and leaves the
// element clear then; appending raises the count last and gives 22 when the
// counter is full. A copy is NULL for an empty array and on failure.

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_NODE_FillIfFeature(QmDict* dict, QmsIfFeature* rec, const char* module,
                                const char* feature);
uint32_t QMS_NODE_AppendOneIfFeat(QmDict* dict, QmsIfFeature** array, uint16_t* count,
                                  const char* module, const char* feature);
QmsIfFeature* QMS_NODE_FindIfFeature(QmsIfFeature* array, uint32_t count, const char* module,
                                     const char* feature);
uint32_t QMS_NODE_CheckTwoIfFeatureSame(const QmsIfFeature* a, const QmsIfFeature* b);
uint32_t QMS_NODE_CheckTwoIfFeatureArraySame(const QmsIfFeature* a, uint32_t na,
                                             const QmsIfFeature* b, uint32_t nb);
QmsIfFeature* QMS_NODE_CopyIfFeaturesArray(QmDict* dict, const QmsIfFeature* array, uint32_t count);
void QMS_NODE_ClearIfFeature(QmDict* dict, QmsIfFeature* rec);
void QMS_NODE_FreeIfFeatures(QmDict* dict, QmsIfFeature* array, uint32_t count);
uint32_t QMS_NODE_FillMust(QmDict* dict, QmsMust* rec, const char* condition,
                           const char* errorMessage, const char* errorAppTag);
uint32_t QMS_NODE_AppendOneMust(QmDict* dict, QmsMust** array, uint16_t* count, const QmsMust* src);
uint32_t QMS_NODE_CheckTwoMustSame(const QmsMust* a, const QmsMust* b);
QmsMust* QMS_NODE_CopyMustsArray(QmDict* dict, const QmsMust* array, uint32_t count);
void QMS_NODE_AssignMoveMust(QmsMust* dst, QmsMust* src);
void QMS_NODE_ClearMust(QmDict* dict, QmsMust* rec);
void QMS_NODE_FreeMusts(QmDict* dict, QmsMust* array, uint32_t count);
// Keeps the `newCount` musts whose condition is still set; the caller has cleared
// the others, and sets the count afterwards. On failure *array is freed and NULL.
uint32_t QMS_NODE_SubtractMustsArray(QmDict* dict, QmsMust** array, uint32_t oldCount,
                                     uint32_t newCount);
const char** QMS_NODE_CopyDefaults(QmDict* dict, const char* const* array, uint32_t count);
void QMS_NODE_FreeDefaults(QmDict* dict, const char** array, uint32_t count);
// Appends all values or none: 12 without room for them, 1 when a value could not
// be interned, 22 when there would be more than 65535.
uint32_t QMS_NODE_AppendLeaflistDefaults(QmDict* dict, QmsLeafList* payload, uint32_t count,
                                         const char* const* values);
// Keeps the `newCount` defaults that are not NULL, of the `defaultCount` that the
// payload still counts, and sets the count. On failure no default is left.
uint32_t QMS_NODE_SubtractLeaflistDefaults(QmDict* dict, QmsLeafList* payload, uint32_t newCount);
uint32_t QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(QmDict* dict, const QmsNode* augment,
                                                       QmsNode* child);

QM_END_INTERNAL_DECLS
