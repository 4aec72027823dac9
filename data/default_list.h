// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// Makes `head` the sentinel of an empty list. It stays at its address.
void InitDefaultNodeList(QmDefaultNodeEntry* head);

QM_BEGIN_INTERNAL_DECLS

uint32_t QMD_PAS_AddDefaultNodeToList(QmDefaultNodeEntry* head, xmlNode* node);
void QMD_PAS_RemoveDefaultNodeFromList(QmDefaultNodeEntry* head, xmlNode* node);
uint32_t QMD_PAS_IsDefaultAddNode(const xmlNode* node);
void QMD_PAS_DeleteDefaultAddNode(QmCheckAux* aux, xmlNode* node);
void QMD_PAS_ClearDefaultNodeList(QmCheckAux* aux, uint32_t keep);
void QMD_PAS_ClearDefaultNodeTreeFlag(xmlNode* node);

QM_END_INTERNAL_DECLS
