// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// Bring the flags of `node`, then of what lies below it, in line with the node above: the
// config value, or the access rules. 0; 22 without node.
uint32_t QMS_NODE_UpdateConfigFlag(QmsNode* node);
uint32_t QMS_NODE_UpdateNacmFlag(QmsNode* node);
// Hands the flags of `node` down to all below it, when it has any to hand down. 0; 22
// without node. The callback does so for one child.
uint32_t QMS_NODE_UpdateFlag(QmsNode* node);
uint32_t QMS_NODE_ImplUpdateFlagCb(QmsNode* node, uint32_t travType, void* arg);
// Sets the flag that an extension of ietf-netconf-acm stands for; any other changes
// nothing. Nothing is handed down.
void QMS_NODE_SetNacmFlag(QmsNode* node, const char* moduleName, const char* extName);

// Marks the leaves that a key statement names and counts them in *keyCount. 0, also without
// text; 22 for a list without children; -1 for a name that is none, names no leaf of the
// list, or passes 255 keys. The leaves before it stay marked and counted.
uint32_t QMS_NODE_MarkKeyAttrToListLeafs(QmsNode* list, const char* keyText, uint8_t* keyCount);

QM_END_INTERNAL_DECLS
