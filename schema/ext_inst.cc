// SPDX-License-Identifier: BSD-3-Clause
// Extension instances (RFC 7950 section 7.19): the uses of extension statements
// that a module, a node, a deviate or another instance carries. All texts are
// interned, so two instances are the same when their three pointers are; nested
// instances do not count. Copying and freeing follow the nesting, which is that
// of the statements in one document and so at most 256 deep.
#include "schema/ext_inst.h"

#include <qmodel/schema.h>

#include "context/dict.h"
#include "schema/flags.h"
#include "schema/node.h"
#include "schema/record_array.h"

uint32_t QMS_EXT_FillExtInst(QmDict* dict, QmsExtInst* rec, const char* module, const char* name,
                             const char* argument) {
  if (dict == nullptr || rec == nullptr || module == nullptr || name == nullptr) return QM_INVALID;
  if (InternBoth(dict, &rec->module, module, &rec->name, name) &&
      InternOptional(dict, &rec->argument, argument)) {
    return QM_OK;
  }
  QMS_EXT_ClearExtInst(dict, rec);
  return QM_NO_MEMORY;
}

uint32_t QMS_EXT_AppendOneExtInstToArray(QmDict* dict, QmsExtInst** array, uint16_t* count,
                                         const char* module, const char* name,
                                         const char* argument) {
  if (array == nullptr || count == nullptr || module == nullptr || name == nullptr) {
    return QM_INVALID;
  }
  return AppendElem(array, count, [&](QmsExtInst* rec) {
    return QMS_EXT_FillExtInst(dict, rec, module, name, argument);
  });
}

uint32_t QMS_EXT_CheckTwoExtInstSame(const QmsExtInst* a, const QmsExtInst* b) {
  if (a == nullptr || b == nullptr) return 0;
  return a->module == b->module && a->name == b->name && a->argument == b->argument ? 1 : 0;
}

QmsExtInst* QMS_EXT_FindSameExtInstInArray(QmsExtInst* array, uint32_t count,
                                           const QmsExtInst* inst) {
  if (array == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) {
    if (QMS_EXT_CheckTwoExtInstSame(&array[i], inst) != 0) return &array[i];
  }
  return nullptr;
}

uint32_t QMS_EXT_UpdateExtInstChildInsts(QmDict* dict, QmsExtInst* dst, const QmsExtInst* src) {
  if (dict == nullptr || dst == nullptr || src == nullptr) return QM_INVALID;
  const bool copied = CopyCounted(dict, &dst->children, &dst->childCount, src->children,
                                  src->childCount, QMS_EXT_CopyExtInsts);
  return copied ? QM_OK : QM_NO_MEMORY;
}

// A whole copy of one instance; the element is clear after a failure.
static uint32_t FillFrom(QmDict* dict, QmsExtInst* dst, const QmsExtInst* src) {
  uint32_t ret = QMS_EXT_FillExtInst(dict, dst, src->module, src->name, src->argument);
  if (ret != QM_OK) return ret;
  ret = QMS_EXT_UpdateExtInstChildInsts(dict, dst, src);
  if (ret != QM_OK) QMS_EXT_ClearExtInst(dict, dst);
  return ret;
}

QmsExtInst* QMS_EXT_CopyExtInsts(QmDict* dict, const QmsExtInst* array, uint32_t count) {
  return CopyArrayOf(dict, array, count, FillFrom, QMS_EXT_ClearExtInst);
}

uint32_t QMS_EXT_MergeOneExtInstToArray(QmDict* dict, QmsExtInst** array, uint16_t* count,
                                        const QmsExtInst* inst) {
  if (array == nullptr || count == nullptr || inst == nullptr) return QM_INVALID;
  return AppendElem(array, count, [&](QmsExtInst* rec) { return FillFrom(dict, rec, inst); });
}

uint32_t QMS_EXT_MergeExtInsts(QmDict* dict, QmsExtInst** array, uint16_t* count,
                               const QmsExtInst* src, uint32_t srcCount) {
  if (array == nullptr || count == nullptr) return QM_INVALID;
  if (src == nullptr) return QM_OK;
  for (uint32_t i = 0; i < srcCount; ++i) {
    if (QMS_EXT_FindSameExtInstInArray(*array, *count, &src[i]) != nullptr) continue;
    const uint32_t ret = QMS_EXT_MergeOneExtInstToArray(dict, array, count, &src[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static bool IsInstSet(const QmsExtInst& inst) {
  return inst.name != nullptr;
}

uint32_t QMS_EXT_SubtractExtInstArray(QmDict* dict, QmsExtInst** array, uint32_t oldCount,
                                      uint32_t newCount) {
  if (dict == nullptr || array == nullptr) return QM_INVALID;
  return CompactArrayOf(dict, array, oldCount, newCount, IsInstSet, QMS_EXT_ClearExtInst);
}

void QMS_EXT_ClearExtInst(QmDict* dict, QmsExtInst* rec) {
  if (rec == nullptr) return;
  ReleaseText(dict, &rec->module);
  ReleaseText(dict, &rec->name);
  ReleaseText(dict, &rec->argument);
  DropArrayOf(dict, &rec->children, &rec->childCount, QMS_EXT_FreeExtInsts);
}

void QMS_EXT_FreeExtInsts(QmDict* dict, QmsExtInst* array, uint32_t count) {
  FreeArrayOf(dict, array, count, QMS_EXT_ClearExtInst);
}

// The marks of RFC 8341 section 3.3 count for the whole subtree.
static uint32_t ApplyNacmMark(QmsNode* node, const char* module, const char* name) {
  if (RTK_StrCmp(module, kQmsNacmModule) != 0) return QM_OK;
  QMS_NODE_SetNacmFlag(node, module, name);
  return QMS_NODE_UpdateFlag(node);
}

uint32_t QMS_NODE_AppendOneExtInst(QmDict* dict, QmsNode* node, const char* module,
                                   const char* name, const char* argument) {
  if (node == nullptr) return QM_INVALID;
  // The comparison goes by pointer: the texts must be interned first.
  QmsExtInst wanted = {};
  uint32_t ret = QMS_EXT_FillExtInst(dict, &wanted, module, name, argument);
  if (ret != QM_OK) return ret;
  const bool present =
      QMS_EXT_FindSameExtInstInArray(node->extInsts, node->extInstCount, &wanted) != nullptr;
  QMS_EXT_ClearExtInst(dict, &wanted);
  if (present) return QM_OK;
  ret = QMS_EXT_AppendOneExtInstToArray(dict, &node->extInsts, &node->extInstCount, module, name,
                                        argument);
  return ret == QM_OK ? ApplyNacmMark(node, module, name) : ret;
}

// What clients do: scan the instances of a module, a node or an instance, and
// change those of a node.

// Array and count are read anew for each instance: the callback may change them.
static uint32_t ScanInsts(QmsExtInst* const* array, const uint16_t* count, QmExtInstScanFunc cb,
                          void* arg) {
  for (uint32_t i = 0; *array != nullptr && i < *count; ++i) {
    QmsExtInst* inst = &(*array)[i];
    const uint32_t ret = cb(inst, inst->module, inst->name, inst->argument, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_NODE_ScanAllExtInsts(QmsNode* node, QmExtInstScanFunc cb, void* arg) noexcept {
  if (node == nullptr || cb == nullptr) return QM_INVALID;
  return ScanInsts(&node->extInsts, &node->extInstCount, cb, arg);
}

uint32_t QM_MOD_ScanAllExtInsts(QmsModule* module, QmExtInstScanFunc cb, void* arg) noexcept {
  if (module == nullptr || cb == nullptr) return QM_INVALID;
  return ScanInsts(&module->extInsts, &module->extInstCount, cb, arg);
}

uint32_t QM_EXT_ScanAllChildExtInsts(QmsExtInst* inst, QmExtInstScanFunc cb, void* arg) noexcept {
  if (inst == nullptr || cb == nullptr) return QM_INVALID;
  return ScanInsts(&inst->children, &inst->childCount, cb, arg);
}

// The dictionary that holds a node's texts, or NULL for a node outside a context.
static QmDict* NodeDict(const QmsNode* node) {
  QmCtx* ctx = node == nullptr ? nullptr : NodeCtx(node);
  return ctx == nullptr ? nullptr : &ctx->dict;
}

uint32_t QM_NODE_AppendExtInst(QmsNode* node, const char* module, const char* name,
                               const char* argument) noexcept {
  QmDict* dict = NodeDict(node);
  if (dict == nullptr || module == nullptr || name == nullptr) return QM_INVALID;
  return QMS_NODE_AppendOneExtInst(dict, node, module, name, argument);
}

uint32_t QM_NODE_ReplaceDstExtInst(QmsNode* dst, const QmsNode* src) noexcept {
  QmDict* dict = NodeDict(dst);
  if (dict == nullptr || src == nullptr) return QM_INVALID;
  if (src->extInsts == nullptr || src->extInstCount == 0) return QM_INVALID;
  // The nodes may lie in different contexts: the copy interns every text anew.
  const uint16_t count = src->extInstCount;
  QmsExtInst* copy = QMS_EXT_CopyExtInsts(dict, src->extInsts, count);
  if (copy == nullptr) return QM_NO_MEMORY;
  DropArrayOf(dict, &dst->extInsts, &dst->extInstCount, QMS_EXT_FreeExtInsts);
  dst->extInsts = copy;
  dst->extInstCount = count;
  return QM_OK;
}

void QM_NODE_CleanExtInsts(QmsNode* node) noexcept {
  QmDict* dict = NodeDict(node);
  if (dict == nullptr) return;
  DropArrayOf(dict, &node->extInsts, &node->extInstCount, QMS_EXT_FreeExtInsts);
}
