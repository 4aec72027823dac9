// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// The modules that one import walk or one unload has still to handle. New nodes
// go to the tail, so that a walk also meets the nodes it appends itself.

// Modules that one import walk or one unload still has to handle.
struct QmsModPendTbl {
  QmListLink nodes;  // sentinel of QmsModPendNode; appended at the tail
};

struct QmsModPendNode {
  QmListLink link;       // must stay first
  QmListLink featPends;  // sentinel of QmsModFeatPend
  char modName[kQmsNameSize];
  uint8_t noReload;  // 1: removed and not loaded again
};

struct QmsModFeatPend {
  QmListLink link;  // must stay first
  char featName[kQmsNameSize];
};

// The first node of a walk, or the one after `node`; NULL at the end.
QmsModPendNode* FirstModPendNode(const QmsModPendTbl* tbl);
QmsModPendNode* NextModPendNode(const QmsModPendTbl* tbl, const QmsModPendNode* node);

// Whether the unload of this table loads the module again.
bool IsToReload(const QmsModPendTbl* tbl, const char* name);

QM_BEGIN_INTERNAL_DECLS

// Makes an empty table; removes every node of a table.
void QMS_LOADER_InitModPendTbl(QmsModPendTbl* tbl);
void QMS_LOADER_DeInitModPendTbl(QmsModPendTbl* tbl);

// Appends a node; NULL without memory or for a name of more than 64 characters.
QmsModPendNode* QMS_LOADER_AddModPendNode(QmsModPendTbl* tbl, const char* name);
// The first node with an equal name, or NULL.
QmsModPendNode* QMS_LOADER_FindModPendNodeByName(QmsModPendTbl* tbl, const char* name);
// Unlinks a node and frees it with its features.
void QMS_LOADER_RemoveModPendNode(QmsModPendNode* node);

// Appends a feature that is to be enabled again; NULL as for a node.
QmsModFeatPend* QMS_LOADER_AddModFeatPend(QmsModPendNode* node, const char* featName);
// Frees the features of a node.
void QMS_LOADER_DestoryAllModFeatPend(QmsModPendNode* node);
// Appends every enabled feature of `module` whose name has at most 64 characters: 0,
// or 12 at the first that cannot be.
uint32_t QMS_LOADER_SaveEnabledFeatureToPendNode(QmsModule* module, QmsModPendNode* node);

QM_END_INTERNAL_DECLS
