// SPDX-License-Identifier: BSD-3-Clause
// The pending table: the working list of an import walk and of an unload.
//
// A node holds a copy of the module's name, since the module may be destroyed,
// and its interned name released, long before the node has served its turn.

#include "loader/pending.h"

#include <cstring>

#include <qmodel/error.h>

#include "context/list.h"
#include "context/memory.h"
#include "platform/string.h"
#include "schema/records.h"

static QmsModPendNode* NodeOrEnd(const QmsModPendTbl* tbl, QmListLink* link) {
  return link == &tbl->nodes ? nullptr : RecordOf<QmsModPendNode>(link);
}

// Copies a name into a fixed field; a name that is too long is refused, not cut.
static bool CopyName(char (&field)[kQmsNameSize], const char* name) {
  if (name == nullptr) return false;
  const size_t length = RTK_StrLen(name);
  if (length >= kQmsNameSize) return false;
  std::memcpy(field, name, length + 1);
  return true;
}

QmsModPendNode* FirstModPendNode(const QmsModPendTbl* tbl) {
  return NodeOrEnd(tbl, tbl->nodes.next);
}

QmsModPendNode* NextModPendNode(const QmsModPendTbl* tbl, const QmsModPendNode* node) {
  return NodeOrEnd(tbl, node->link.next);
}

bool IsToReload(const QmsModPendTbl* tbl, const char* name) {
  for (const QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    if (RTK_StrCmp(node->modName, name) == 0) return node->noReload == 0;
  }
  return false;
}

void QMS_LOADER_InitModPendTbl(QmsModPendTbl* tbl) {
  ListInit(&tbl->nodes);
}

void QMS_LOADER_DeInitModPendTbl(QmsModPendTbl* tbl) {
  while (!ListIsEmpty(&tbl->nodes)) QMS_LOADER_RemoveModPendNode(FirstModPendNode(tbl));
}

QmsModPendNode* QMS_LOADER_AddModPendNode(QmsModPendTbl* tbl, const char* name) {
  auto* node = NewRecord<QmsModPendNode>();
  if (node == nullptr) return nullptr;
  if (!CopyName(node->modName, name)) {
    g_qmMemFreeFunc(node);
    return nullptr;
  }
  ListInit(&node->featPends);
  ListPushTail(&tbl->nodes, &node->link);
  return node;
}

QmsModPendNode* QMS_LOADER_FindModPendNodeByName(QmsModPendTbl* tbl, const char* name) {
  if (name == nullptr) return nullptr;
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    if (RTK_StrCmp(node->modName, name) == 0) return node;
  }
  return nullptr;
}

void QMS_LOADER_RemoveModPendNode(QmsModPendNode* node) {
  if (node == nullptr) return;
  ListUnlink(&node->link);
  QMS_LOADER_DestoryAllModFeatPend(node);
  g_qmMemFreeFunc(node);
}

QmsModFeatPend* QMS_LOADER_AddModFeatPend(QmsModPendNode* node, const char* featName) {
  auto* feature = NewRecord<QmsModFeatPend>();
  if (feature == nullptr) return nullptr;
  if (!CopyName(feature->featName, featName)) {
    g_qmMemFreeFunc(feature);
    return nullptr;
  }
  ListPushTail(&node->featPends, &feature->link);
  return feature;
}

void QMS_LOADER_DestoryAllModFeatPend(QmsModPendNode* node) {
  while (!ListIsEmpty(&node->featPends)) {
    QmListLink* link = node->featPends.next;
    ListUnlink(link);
    g_qmMemFreeFunc(RecordOf<QmsModFeatPend>(link));
  }
}

uint32_t QMS_LOADER_SaveEnabledFeatureToPendNode(QmsModule* module, QmsModPendNode* node) {
  for (uint32_t i = 0; i < module->featureCount; ++i) {
    const QmsFeature* feature = &module->features[i];
    if (feature->name == nullptr || (feature->flags & QMS_FEATURE_ENABLED) == 0) continue;
    // No if-feature can name a longer one. Refused here, it would end an unload that
    // has taken other modules away already.
    if (RTK_StrLen(feature->name) >= kQmsNameSize) continue;
    if (QMS_LOADER_AddModFeatPend(node, feature->name) == nullptr) return QM_NO_MEMORY;
  }
  return QM_OK;
}
