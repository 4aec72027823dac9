// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// What the context asks of the layers above it. These functions are declared
// here and nowhere else; the headers of their owners include this one.

struct QmsFeature;
struct QmsTypedef;
struct QmsLoadAssister;

// How the registry reads module records; owned by the module record.
extern const RtkAvl3TreeInfo g_qmsModuleNameTreeInfo;
extern const RtkAvl3TreeInfo g_qmsModuleNsTreeInfo;

// The enabled bit of a feature record.
bool IsFeatureEnabled(const QmsFeature* feature);
void SetFeatureEnabled(QmsFeature* feature, bool enabled);

// Takes the coupled augments of `module`, and those of other modules whose
// children lie in its trees, apart without a path lookup, so that no node
// outlives its module.
void DetachModuleAugments(QmCtx* ctx, QmsModule* module);

QM_BEGIN_INTERNAL_DECLS

QmsModule* QMS_LOADER_ParseYinContent(QmCtx* ctx, xmlDoc* doc, QmsLoadAssister* assister);
uint32_t QMS_LOADER_LoadModuleByModName(QmCtx* ctx, const char* modName);
uint32_t QMS_LOADER_AppendModuleToCtx(QmCtx* ctx, QmsModule* module, QmsLoadAssister* assister);
uint32_t QMS_LOADER_LoadModuleImportedNames(QmCtx* ctx, const char* modName);
uint32_t QMS_LOADER_UnloadModuleProc(QmCtx* ctx, const char* modName);
uint32_t QMS_NODE_UnCoupleAugmentNode(QmsNode* augment);
uint32_t QMS_MOD_NotifyModuleChangeEvent(QmCtx* ctx, const char* moduleName, uint32_t event,
                                         uintptr_t arg);
QmsFeature* QMS_MOD_FindFeatureByName(QmsModule* mod, const char* name);
QmsIdentity* QMS_MOD_FindIdentityByName(QmsModule* mod, const char* name);
QmsTypedef* QMS_MOD_FindQmsTypDefByName(QmsModule* mod, const char* name);
void QMS_MOD_Free(QmsModule* mod);
QmsNode* QMS_MOD_GetNodeBySchemaNodeId(QmsModule* module, QmsNode* startNode, const char* path);
QmsNode* QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(QmsModule* module, const char* augTargetPath,
                                                   const char* subPath, QmsNode** augment);
uint32_t QM_XPATH_SplitTargetNodeXpath(const char* path, char* lastModName,
                                       uint32_t lastModNameSize, char** outParentPath,
                                       char** outLastPart);
QmsIdentity* QM_CTX_FindIdentityByModNameAndIdentName(QmCtx* ctx, const char* modName,
                                                      const char* identName);
QmsTypedef* QM_CTX_FindTdefObjByModAndTdefName(QmCtx* ctx, const char* modName,
                                               const char* tdefName);
const char* QMS_MOD_GetModuleNameByPrefix(const QmsModule* mod, const char* prefix);

QM_END_INTERNAL_DECLS
