// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The dictionary that holds the texts of a module.
inline QmDict* ModuleDict(const QmsModule* module) {
  return &module->ctx->dict;
}

// Lookups give borrowed texts and nodes, or NULL. Adding a node appends it to the
// top-level list of its kind; 22 for a kind that never stands there. The two
// Destroy functions release the parts of a record, which stays valid and empty;
// QMS_MOD_Free() does both and frees it.

// A top-level list of a module.
struct QmsTopList {
  QmsNode* QmsModule::*head;
  QmsNode* QmsModule::*tail;
};

constexpr QmsTopList kDataList = {&QmsModule::dataNodes, &QmsModule::dataTail};
constexpr QmsTopList kRpcList = {&QmsModule::rpcNodes, &QmsModule::rpcTail};
constexpr QmsTopList kNotifList = {&QmsModule::notifNodes, &QmsModule::notifTail};
constexpr QmsTopList kAugmentList = {&QmsModule::augmentNodes, &QmsModule::augmentTail};
constexpr QmsTopList kTopLists[] = {kDataList, kRpcList, kNotifList, kAugmentList};

// How the registry reads module records; owned by the module record.
extern const RtkAvl3TreeInfo g_qmsModuleNameTreeInfo;
extern const RtkAvl3TreeInfo g_qmsModuleNsTreeInfo;
// The enabled bit of a feature record.
bool IsFeatureEnabled(const QmsFeature* feature);
void SetFeatureEnabled(QmsFeature* feature, bool enabled);

QM_BEGIN_INTERNAL_DECLS

const char* QMS_MOD_GetImportModNameByPrefix(const QmsModule* mod, const char* prefix);
uint32_t QMS_MOD_AddTopNodeToSchemaTree(QmsModule* mod, QmsNode* node);
QmsNode* QMS_MOD_FindTopLevelSchemaNode(QmsModule* mod, const char* name);
void QMS_MOD_DestroyNonNodeMember(QmsModule* mod);
void QMS_MOD_DestroyNodeMember(QmsModule* mod);

void QMS_MOD_Free(QmsModule* mod);
const char* QMS_MOD_GetModuleNameByPrefix(const QmsModule* mod, const char* prefix);

QM_END_INTERNAL_DECLS
