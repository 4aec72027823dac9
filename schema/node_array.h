// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The arrays that nodes carry: if-features, musts and default values. The same
// operations mean the same for each:
//
// Fill interns the texts of one element. 0; 22 when anything but an optional text is
// NULL; 12 without memory. The element is clear after a failure.
// Append grows the array by one filled element and raises the count last. It gives
// what Fill gives; 22 also for no array, and when there are 65535 elements already;
// 12 also without memory for the array.
// CheckTwo…Same gives 1 or 0; texts are compared by their pointers, and nothing is
// the same as NULL.
// Copy gives a new array with references of its own; NULL for an empty one and
// when memory runs out.
// Subtract takes elements away that the caller has cleared: it keeps the `newCount`
// that are still set, in their order. 22 without a dictionary or an array. 12
// without memory for those: nothing is left then, and the array is NULL.
// Clear releases what one element holds and zeroes it. Free clears all elements and
// frees the array. Both do nothing for NULL.

QM_BEGIN_INTERNAL_DECLS

// If-features: the feature's module and name. Find compares the pointers of
// interned texts; NULL when there is none. Two arrays are the same when they have
// the same elements in the same order, or none.
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
// Appends to the child those if-features of the augment that it does not have. 22
// for a NULL argument, else the first failure of an append, with those before it
// kept.
uint32_t QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(QmDict* dict, const QmsNode* augment,
                                                       QmsNode* child);

// Musts; both texts of the error are optional. The same: with the same condition,
// whatever the error. A must is set as long as it has a condition.
uint32_t QMS_NODE_FillMust(QmDict* dict, QmsMust* rec, const char* condition,
                           const char* errorMessage, const char* errorAppTag);
uint32_t QMS_NODE_AppendOneMust(QmDict* dict, QmsMust** array, uint16_t* count, const QmsMust* src);
uint32_t QMS_NODE_CheckTwoMustSame(const QmsMust* a, const QmsMust* b);
QmsMust* QMS_NODE_CopyMustsArray(QmDict* dict, const QmsMust* array, uint32_t count);
// Hands the texts of `src` over to `dst`, which must not hold any; `src` is clear
// then.
void QMS_NODE_AssignMoveMust(QmsMust* dst, QmsMust* src);
void QMS_NODE_ClearMust(QmDict* dict, QmsMust* rec);
void QMS_NODE_FreeMusts(QmDict* dict, QmsMust* array, uint32_t count);
// The caller sets the count afterwards.
uint32_t QMS_NODE_SubtractMustsArray(QmDict* dict, QmsMust** array, uint32_t oldCount,
                                     uint32_t newCount);

// Default values, each an interned text, of leaf-lists and of deviates.
const char** QMS_NODE_CopyDefaults(QmDict* dict, const char* const* array, uint32_t count);
void QMS_NODE_FreeDefaults(QmDict* dict, const char** array, uint32_t count);
// Appends all values or none: 12 without room for them, 1 when a value could not
// be interned, 22 when there would be more than 65535.
uint32_t QMS_NODE_AppendLeaflistDefaults(QmDict* dict, QmsLeafList* payload, uint32_t count,
                                         const char* const* values);
// Subtracts from the `defaultCount` values that the payload still counts, and sets
// the count; 22 also when there are fewer than `newCount`.
uint32_t QMS_NODE_SubtractLeaflistDefaults(QmDict* dict, QmsLeafList* payload, uint32_t newCount);

QM_END_INTERNAL_DECLS
