// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// Makes `head` the sentinel of an empty list. It stays at its address.
void InitDefaultNodeList(QmDefaultNodeEntry* head);

QM_BEGIN_INTERNAL_DECLS

// Lists an added element; one whose parent was added goes with it and is not listed. 0
// or 12.
uint32_t QMD_PAS_AddDefaultNodeToList(QmDefaultNodeEntry* head, xmlNode* node);
// Forgets an element, if it is listed.
void QMD_PAS_RemoveDefaultNodeFromList(QmDefaultNodeEntry* head, xmlNode* node);
// 1 for an element with the mark of an added one, else 0.
uint32_t QMD_PAS_IsDefaultAddNode(const xmlNode* node);
// Frees an element with all below it, and forgets what of it is listed.
void QMD_PAS_DeleteDefaultAddNode(QmCheckAux* aux, xmlNode* node);
// Empties the list. The elements are freed, or stay without their mark (`keep` 1) and
// are told to the client.
void QMD_PAS_ClearDefaultNodeList(QmCheckAux* aux, uint32_t keep);
// Clears the mark of a node and of all below it.
void QMD_PAS_ClearDefaultNodeTreeFlag(xmlNode* node);

QM_END_INTERNAL_DECLS
