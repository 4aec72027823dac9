// SPDX-License-Identifier: BSD-3-Clause
// What clients do with extension instances: scan those of a module, a node or an
// instance, and change those of a node.
#include <qmodel/schema.h>

#include "schema/ext_inst.h"
#include "schema/node.h"
#include "schema/record_array.h"

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
