// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The module whose instances mark nodes for access control (RFC 8341 section 3.3).
constexpr char kQmsNacmModule[] = "ietf-netconf-acm";

// Arrays of extension instances, with a count beside them in the module, node,
// deviate or instance that owns them. An instance is set as long as it has a name;
// without it, it is clear.

QM_BEGIN_INTERNAL_DECLS

// Interns the texts of one instance, of which the argument is optional; what is
// nested is left alone. 22 without a dictionary, module or name; 12 without memory.
// The instance is clear after a failure.
uint32_t QMS_EXT_FillExtInst(QmDict* dict, QmsExtInst* rec, const char* module, const char* name,
                             const char* argument);

// Both append one instance and raise the count last: of the given texts, or a copy
// of `inst` with all that is nested. Neither looks whether it is there already. 22
// for what is missing, and when there are 65535 already; 12 without memory.
uint32_t QMS_EXT_AppendOneExtInstToArray(QmDict* dict, QmsExtInst** array, uint16_t* count,
                                         const char* module, const char* name,
                                         const char* argument);
uint32_t QMS_EXT_MergeOneExtInstToArray(QmDict* dict, QmsExtInst** array, uint16_t* count,
                                        const QmsExtInst* inst);

// Merges in, one by one, the instances of `src` that the array does not have. The
// first failure is given and ends it; 22 without an array, 0 without a source.
uint32_t QMS_EXT_MergeExtInsts(QmDict* dict, QmsExtInst** array, uint16_t* count,
                               const QmsExtInst* src, uint32_t srcCount);

// 1 when module, name and argument are the same, by the pointers of their interned
// texts; nested instances do not count. 0 else, and for NULL.
uint32_t QMS_EXT_CheckTwoExtInstSame(const QmsExtInst* a, const QmsExtInst* b);
// The first in the array that is the same as `inst`, or NULL.
QmsExtInst* QMS_EXT_FindSameExtInstInArray(QmsExtInst* array, uint32_t count,
                                           const QmsExtInst* inst);

// A new array of whole copies; NULL for an empty one and when memory runs out.
QmsExtInst* QMS_EXT_CopyExtInsts(QmDict* dict, const QmsExtInst* array, uint32_t count);
// Copies what is nested in `src` to `dst`, which has nothing nested yet. 22 for a
// NULL argument, 12 without memory, with `dst` as it was.
uint32_t QMS_EXT_UpdateExtInstChildInsts(QmDict* dict, QmsExtInst* dst, const QmsExtInst* src);

// Keeps the `newCount` instances that are still set; the caller has cleared the
// others, and sets the count afterwards. 22 without a dictionary or an array. 12
// without memory for those: nothing is left then, and the array is NULL.
uint32_t QMS_EXT_SubtractExtInstArray(QmDict* dict, QmsExtInst** array, uint32_t oldCount,
                                      uint32_t newCount);

// Release one instance with all that is nested, which is clear then, or all of an
// array and the array. Nothing for NULL.
void QMS_EXT_ClearExtInst(QmDict* dict, QmsExtInst* rec);
void QMS_EXT_FreeExtInsts(QmDict* dict, QmsExtInst* array, uint32_t count);

// Appends an instance to a node, unless it has the same already. One of
// kQmsNacmModule sets the mark that it names, for the whole subtree. 22 without a
// node or what an instance needs; 12 without memory.
uint32_t QMS_NODE_AppendOneExtInst(QmDict* dict, QmsNode* node, const char* module,
                                   const char* name, const char* argument);

QM_END_INTERNAL_DECLS
