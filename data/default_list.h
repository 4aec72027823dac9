// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// The list of the topmost elements that a run added as defaults, and their mark. Every
// element in the list is in its tree.

// Makes `head` the sentinel of an empty list. It stays at its address.
void InitDefaultNodeList(QmDefaultNodeEntry* head);

QM_BEGIN_INTERNAL_DECLS

// Lists an element that carries the mark and whose parent does not, as the latest one;
// 0 also when there is nothing to list, 12 without memory.
uint32_t QMD_PAS_AddDefaultNodeToList(QmDefaultNodeEntry* head, xmlNode* node);
// Frees the element's entry, if it has one; the element stays.
void QMD_PAS_RemoveDefaultNodeFromList(QmDefaultNodeEntry* head, xmlNode* node);
// 1 for an element that carries the mark, be it a parser's line number; else 0.
uint32_t QMD_PAS_IsDefaultAddNode(const xmlNode* node);
// Takes an element out of its tree and frees it, with all entries of it and below it.
void QMD_PAS_DeleteDefaultAddNode(QmCheckAux* aux, xmlNode* node);
// Empties the list, latest first. With `keep` 1 the elements stay, lose their marks and
// are handed to the client's callback; with any other value they are freed.
void QMD_PAS_ClearDefaultNodeList(QmCheckAux* aux, uint32_t keep);
// Takes the mark from the node and every node below it.
void QMD_PAS_ClearDefaultNodeTreeFlag(xmlNode* node);

QM_END_INTERNAL_DECLS
