// SPDX-License-Identifier: BSD-3-Clause
// Relations between modules: for each target, which modules augment or deviate
// it. A table per target stands in a tree by name; its items form a list with
// the newest first. All names are interned, so items are matched by pointer.
#include "context/relation.h"

#include "context/array.h"
#include "context/dict.h"
#include "context/list.h"
#include "context/memory.h"
#include "platform/string.h"

constexpr uint32_t kNameHolderStep = 32;

constexpr RtkAvl3TreeInfo kModRelTreeInfo = {QM_CTX_CompareModRelationTbl,
                                             offsetof(QmCtxModRelTbl, modName),
                                             offsetof(QmCtxModRelTbl, link)};

int32_t QM_CTX_CompareModRelationTbl(const void* keyA, const void* keyB) {
  if (keyA == keyB) return 0;
  return RTK_StrCmp(static_cast<const char*>(keyA), static_cast<const char*>(keyB));
}

uint32_t QM_CTX_InitModRelationTree(QmCtx* ctx) {
  if (ctx == nullptr) return QM_INVALID;
  RTK_AVL3_Init(&ctx->modRelTree, &kModRelTreeInfo);
  return QM_OK;
}

static QmCtxModRelTbl* FirstTable(const QmCtx* ctx) {
  return static_cast<QmCtxModRelTbl*>(RTK_AVL3_First(&ctx->modRelTree));
}

void QM_CTX_DeInitModRelationTree(QmCtx* ctx) {
  if (ctx == nullptr) return;
  while (QmCtxModRelTbl* tbl = FirstTable(ctx)) QM_CTX_DeleteModRelationTbl(ctx, tbl);
}

QmCtxModRelTbl* QM_CTX_FindModRelationTbl(QmCtx* ctx, const char* tgtModName) {
  if (ctx == nullptr || tgtModName == nullptr) return nullptr;
  return static_cast<QmCtxModRelTbl*>(RTK_AVL3_Find(&ctx->modRelTree, tgtModName));
}

static void FreeItem(QmDict* dict, QmCtxModRelItem* item) {
  ListUnlink(&item->link);
  ReleaseText(dict, &item->srcModName);
  g_qmMemFreeFunc(item);
}

void QM_CTX_DeleteModRelationTbl(QmCtx* ctx, QmCtxModRelTbl* tbl) {
  if (ctx == nullptr || tbl == nullptr) return;
  RTK_AVL3_Delete(&ctx->modRelTree, tbl);
  while (!ListIsEmpty(&tbl->items)) FreeItem(tbl->dict, RecordOf<QmCtxModRelItem>(tbl->items.next));
  ReleaseText(tbl->dict, &tbl->modName);
  g_qmMemFreeFunc(tbl);
}

QmCtxModRelTbl* QM_CTX_AddModRelationTbl(QmCtx* ctx, const char* tgtModName) {
  auto* tbl = NewRecord<QmCtxModRelTbl>();
  if (tbl == nullptr) return nullptr;
  tbl->dict = &ctx->dict;
  ListInit(&tbl->items);
  RTK_AVL3_InitLink(&tbl->link);
  if (InternText(tbl->dict, &tbl->modName, tgtModName) &&
      RTK_AVL3_Insert_Or_Find(&ctx->modRelTree, tbl, nullptr) == 0) {
    return tbl;
  }
  QM_CTX_DeleteModRelationTbl(ctx, tbl);
  return nullptr;
}

QmCtxModRelItem* QM_CTX_AddModRelationItem(QmCtxModRelTbl* tbl, uint32_t relType,
                                           const char* srcModName) {
  auto* item = NewRecord<QmCtxModRelItem>();
  if (item == nullptr) return nullptr;
  if (!InternText(tbl->dict, &item->srcModName, srcModName)) {
    g_qmMemFreeFunc(item);
    return nullptr;
  }
  item->relType = relType;
  item->refCount = 1;
  ListPushHead(&tbl->items, &item->link);
  return item;
}

static QmCtxModRelItem* FindItem(QmCtxModRelTbl* tbl, const char* srcModName, uint32_t relType) {
  for (QmListLink* link = tbl->items.next; link != &tbl->items; link = link->next) {
    QmCtxModRelItem* item = RecordOf<QmCtxModRelItem>(link);
    if (item->relType == relType && item->srcModName == srcModName) return item;
  }
  return nullptr;
}

static void DeleteTableIfEmpty(QmCtx* ctx, QmCtxModRelTbl* tbl) {
  if (ListIsEmpty(&tbl->items)) QM_CTX_DeleteModRelationTbl(ctx, tbl);
}

uint32_t QM_CTX_AddTwoModRelation(QmCtx* ctx, const char* tgtModName, const char* srcModName,
                                  uint32_t relType) {
  if (ctx == nullptr || tgtModName == nullptr || srcModName == nullptr) return QM_INVALID;
  QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx, tgtModName);
  if (tbl == nullptr) tbl = QM_CTX_AddModRelationTbl(ctx, tgtModName);
  if (tbl == nullptr) return QM_NO_MEMORY;
  if (FindItem(tbl, srcModName, relType) != nullptr) return QM_OK;
  if (QM_CTX_AddModRelationItem(tbl, relType, srcModName) != nullptr) return QM_OK;
  DeleteTableIfEmpty(ctx, tbl);
  return QM_NO_MEMORY;
}

void QM_CTX_DelTwoModRelation(QmCtx* ctx, const char* tgtModName, const char* srcModName,
                              uint32_t relType) {
  QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx, tgtModName);
  if (tbl == nullptr) return;
  QmCtxModRelItem* item = FindItem(tbl, srcModName, relType);
  if (item == nullptr) return;
  FreeItem(tbl->dict, item);
  DeleteTableIfEmpty(ctx, tbl);
}

static bool HoldsName(const QmCtxNameHolder* holder, const char* modName) {
  for (uint32_t i = 0; i < holder->count; ++i) {
    if (holder->names[i] == modName) return true;
  }
  return false;
}

// Skipping a name that is there already also ends the walk on cyclic relations.
uint32_t QM_CTX_WriteOneDepModIntoNameHolder(QmCtxNameHolder* holder, const char* modName) {
  if (HoldsName(holder, modName)) return QM_OK;
  if (holder->count + 1 >= holder->capacity) {
    const uint32_t ret = ExpandArrayOf(&holder->names, holder->capacity, kNameHolderStep);
    if (ret != QM_OK) return ret;
    holder->capacity += kNameHolderStep;
  }
  holder->names[holder->count++] = modName;
  return QM_OK;
}

// Writes the sources of one target into the holder.
static uint32_t WriteDepModsOf(QmCtx* ctx, const char* modName, uint32_t relType,
                               QmCtxNameHolder* holder) {
  QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx, modName);
  if (tbl == nullptr) return QM_OK;
  for (QmListLink* link = tbl->items.next; link != &tbl->items; link = link->next) {
    const QmCtxModRelItem* item = RecordOf<QmCtxModRelItem>(link);
    if (item->relType != relType) continue;
    const uint32_t ret = QM_CTX_WriteOneDepModIntoNameHolder(holder, item->srcModName);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static uint32_t WriteClosure(QmCtx* ctx, const char* modName, uint32_t relType,
                             QmCtxNameHolder* holder) {
  uint32_t ret = WriteDepModsOf(ctx, modName, relType, holder);
  for (uint32_t i = 0; ret == QM_OK && i < holder->count; ++i) {
    if (holder->names[i] == nullptr) return QM_INVALID;
    ret = WriteDepModsOf(ctx, holder->names[i], relType, holder);
  }
  return ret;
}

uint32_t QM_CTX_CollectDepModNamesRecursive(QmCtx* ctx, const char* modName, uint32_t relType,
                                            const char*** names, uint32_t* count) {
  if (ctx == nullptr || modName == nullptr || names == nullptr || count == nullptr) {
    return QM_INVALID;
  }
  QmCtxNameHolder holder = {nullptr, 0, 0};
  const uint32_t ret = WriteClosure(ctx, modName, relType, &holder);
  if (ret != QM_OK || holder.count == 0) {
    g_qmMemFreeFunc(holder.names);
    return ret;
  }
  *names = holder.names;
  *count = holder.count;
  return QM_OK;
}
