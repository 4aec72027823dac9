// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

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

QM_END_INTERNAL_DECLS
