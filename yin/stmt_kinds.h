// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Entries of the dispatch table (dispatch.h). Each makes one node, with all that lies
// below it, under the parent in `dest`. 0; 22 when the node cannot be made or named, lacks
// a type, or cannot be linked; 12 for a list that cannot be made or named, -1 for one with
// a key that is no leaf of it, and for an augment whose target path cannot be interned;
// else the code of what failed inside.
uint32_t QMS_LOADER_ParseContainer(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseLeaf(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseLeafList(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMS_LOADER_ParseList(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseChoice(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseCase(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseAnydata(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);
uint32_t QMS_LOADER_ParseAnyxml(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseRpc(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseAction(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseInput(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest);
uint32_t QMS_LOADER_ParseOutput(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseNotif(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest);
uint32_t QMS_LOADER_ParseAugment(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);

// What the parsers of list, of anydata and anyxml, of rpc and action, and of input and
// output do once the kind is known, with the statuses of those. The first takes a node
// made before and owns it.
uint32_t QMS_LOADER_ParseListInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest, QmsNode* list);
uint32_t QMS_LOADER_ParseAnydataInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest, uint32_t nodeKind);
uint32_t QMS_LOADER_ParseRpcInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest, uint32_t nodeKind);
uint32_t QMS_LOADER_ParseInout(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest,
                               uint32_t nodeKind);

QM_END_INTERNAL_DECLS
