// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"
#include "data/schema_walk.h"

// Makes `head` the sentinel of an empty list. It stays at its address.
void InitDefaultNodeList(QmDefaultNodeEntry* head);

// Completion of the kinds that make elements: a leaf at once, a container when the
// walk leaves it and something was added in it.
uint32_t AddDefaultOfLeaf(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode, QmdLevel* level);
uint32_t OpenDefaultContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level);
uint32_t CloseDefaultContainer(QmdWalk* walk, const QmdLevel* level, uint32_t ret);

QM_BEGIN_INTERNAL_DECLS

uint32_t QMD_PAS_CompleteTree(QmCheckAux* aux, xmlNode* node, uint32_t flags);
uint32_t QMD_PAS_CompleteSubTree(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                 uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForContainer(QmCheckAux* aux, xmlNode* dataParent,
                                              QmsNode* schemaNode, uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForLeaf(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForLeaflist(QmCheckAux* aux, xmlNode* dataParent,
                                             QmsNode* schemaNode, uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForList(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForChoice(QmCheckAux* aux, xmlNode* dataParent,
                                           QmsNode* schemaNode, uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForCase(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForRpc(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                        uint32_t* outAdded);
uint32_t QMD_PAS_CompleteDataTreeForInput(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                          uint32_t* outAdded);
uint32_t QMD_PAS_AddDefaultNodeToList(QmDefaultNodeEntry* head, xmlNode* node);
void QMD_PAS_RemoveDefaultNodeFromList(QmDefaultNodeEntry* head, xmlNode* node);
uint32_t QMD_PAS_IsDefaultAddNode(const xmlNode* node);
void QMD_PAS_DeleteDefaultAddNode(QmCheckAux* aux, xmlNode* node);
void QMD_PAS_ClearDefaultNodeList(QmCheckAux* aux, uint32_t keep);
void QMD_PAS_ClearDefaultNodeTreeFlag(xmlNode* node);

QM_END_INTERNAL_DECLS
