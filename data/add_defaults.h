// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// Completion of a request with the defaults of the schema. All make no error record.

QM_BEGIN_INTERNAL_DECLS

// Everything below an rpc or action element. 0 at once without QMD_MODE_RPC in `flags`;
// 22 for an element of any other schema node, else as QMD_PAS_CompleteSubTree().
uint32_t QMD_PAS_CompleteTree(QmCheckAux* aux, xmlNode* node, uint32_t flags);
// What the schema node and those below it ask for among the children of `dataParent`;
// *outAdded becomes 1 when something was added and is left as it was otherwise. 0, also
// for a disabled node and a kind that nothing is added for; 12 without memory; 22 for a
// NULL argument, a kind that there is not, a leaf without its payload, and a schema
// deeper than a run goes.
uint32_t QMD_PAS_CompleteSubTree(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                 uint32_t* outAdded);
// The same by the rule of one kind, whether or not the node is enabled. No argument may
// be NULL. A leaf is added with its default, a container without presence when something
// is added in it, a leaf-list never, a list entry neither, but those that are there are gone
// through; a choice goes on with the case that holds data or else its default one; all
// others hand `dataParent` on to their children.
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
