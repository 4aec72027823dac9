// SPDX-License-Identifier: BSD-3-Clause
// Deviations and their deviates (RFC 7950 section 7.20.3) as a module keeps
// them: what is to be changed at which target. Here they are only stored, copied
// and compared; applying them is a matter of their own.
#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "schema/record_array.h"
#include "types/type.h"

uint32_t QMS_MOD_FillDeviationTargetNode(QmDict* dict, QmsDeviation* dev, const char* path) {
  if (dict == nullptr || dev == nullptr || path == nullptr) return QM_INVALID;
  return InternText(dict, &dev->targetPath, path) ? QM_OK : QM_NO_MEMORY;
}

uint32_t QMS_MOD_AppendOneDeviation(QmsModule* mod, const char* targetPath) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&mod->deviations, &mod->deviationCount, [&](QmsDeviation* dev) {
    return QMS_MOD_FillDeviationTargetNode(ModuleDict(mod), dev, targetPath);
  });
}

void QMS_MOD_ClearDeviation(QmDict* dict, QmsDeviation* deviation) {
  if (deviation == nullptr) return;
  ReleaseText(dict, &deviation->targetPath);
  DropArrayOf(dict, &deviation->deviates, &deviation->deviateCount, QMS_MOD_FreeDeviate);
  deviation->flags = 0;
}

void QMS_MOD_FreeDeviation(QmDict* dict, QmsDeviation* deviations, uint32_t count) {
  FreeArrayOf(dict, deviations, count, QMS_MOD_ClearDeviation);
}

// The type of a replace deviate; most deviates have none.
static bool CopyDeviateType(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src) {
  if (src->type == nullptr) return true;
  dst->type = QMT_TYPE_CopyQmtRealType(dict, src->type);
  return dst->type != nullptr;
}

uint32_t QMS_MOD_FillDeviate(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src) {
  if (dict == nullptr || dst == nullptr || src == nullptr) return QM_INVALID;
  dst->kind = src->kind;
  dst->flags = src->flags;
  dst->defaultsRewritten = src->defaultsRewritten;
  if (CopyCounted(dict, &dst->musts, &dst->mustCount, src->musts, src->mustCount,
                  QMS_NODE_CopyMustsArray) &&
      CopyCounted(dict, &dst->defaults, &dst->defaultCount, src->defaults, src->defaultCount,
                  QMS_NODE_CopyDefaults) &&
      CopyDeviateType(dict, dst, src) && InternOptional(dict, &dst->units, src->units)) {
    return QM_OK;
  }
  QMS_MOD_ClearDeviate(dict, dst);
  return QM_NO_MEMORY;
}

// A whole copy: the extension instances as well.
static uint32_t FillFrom(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src) {
  const uint32_t ret = QMS_MOD_FillDeviate(dict, dst, src);
  if (ret != QM_OK) return ret;
  if (CopyCounted(dict, &dst->extInsts, &dst->extInstCount, src->extInsts, src->extInstCount,
                  QMS_EXT_CopyExtInsts)) {
    return QM_OK;
  }
  QMS_MOD_ClearDeviate(dict, dst);
  return QM_NO_MEMORY;
}

QmsDeviate* QMS_MOD_CopyDeviateArray(QmDict* dict, const QmsDeviate* deviates, uint32_t count) {
  return CopyArrayOf(dict, deviates, count, FillFrom, QMS_MOD_ClearDeviate);
}

void QMS_MOD_ClearDeviate(QmDict* dict, QmsDeviate* deviate) {
  if (deviate == nullptr) return;
  DropArrayOf(dict, &deviate->musts, &deviate->mustCount, QMS_NODE_FreeMusts);
  DropArrayOf(dict, &deviate->defaults, &deviate->defaultCount, QMS_NODE_FreeDefaults);
  DropArrayOf(dict, &deviate->extInsts, &deviate->extInstCount, QMS_EXT_FreeExtInsts);
  QMT_TYPE_DestroyQmtRealType(dict, deviate->type);
  ReleaseText(dict, &deviate->units);
  *deviate = QmsDeviate{};
}

void QMS_MOD_FreeDeviate(QmDict* dict, QmsDeviate* deviates, uint32_t count) {
  FreeArrayOf(dict, deviates, count, QMS_MOD_ClearDeviate);
}

static uint32_t TextIsSame(const char* const* a, const char* const* b) {
  return *a == *b ? 1 : 0;
}

uint32_t QMS_MOD_CheckTwoDeviateSame(const QmsDeviate* a, const QmsDeviate* b) {
  if (a == nullptr || b == nullptr) return 0;
  if (a->kind != b->kind || a->flags != b->flags || a->units != b->units) return 0;
  const bool same =
      ArraysAreSame(a->musts, a->mustCount, b->musts, b->mustCount, QMS_NODE_CheckTwoMustSame) &&
      ArraysAreSame<const char*>(a->defaults, a->defaultCount, b->defaults, b->defaultCount,
                                 TextIsSame);
  return same ? 1 : 0;
}

// Deliberate: no two deviations count as the same, not even equal ones. One that
// is merged from another source is always new, and each one is applied.
uint32_t QMS_MOD_CheckTwoDeviationSame(const QmsDeviation*, const QmsDeviation*) {
  return 0;
}

uint32_t QMS_MOD_CheckSameDeviationExist(const QmsModule* mod, const QmsDeviation* dev) {
  if (mod == nullptr || mod->deviations == nullptr) return 0;
  for (uint32_t i = 0; i < mod->deviationCount; ++i) {
    if (QMS_MOD_CheckTwoDeviationSame(&mod->deviations[i], dev) != 0) return 1;
  }
  return 0;
}
