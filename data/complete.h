// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// Adds the missing defaults below the start node of a request; nothing without
// QMD_MODE_RPC in `flags`. 0, 12 without memory, 22 for an element that is not bound to
// an rpc or action, and what the walk answers (schema_walk.h).
uint32_t QMD_PAS_CompleteTree(QmCheckAux* aux, xmlNode* node, uint32_t flags);
// The same for one schema node and what lies below it; `dataParent` is the element that
// holds it. *outAdded becomes 1 when something was added. 22 for NULL.
uint32_t QMD_PAS_CompleteSubTree(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                 uint32_t* outAdded);
// What completion does for one kind of node, whether the node is enabled or not;
// arguments and statuses as above, none of them NULL.
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
