// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

QmsNode* QMS_LOADER_ParseNodeCommon(QmsModule* module, xmlNode* element, uint32_t nodeKind);
uint32_t QMS_LOADER_AddNodeToSchemaTree(QmsModule* module, QmsNode* parentNode, QmsNode* node,
                                        uint32_t parentStmt);
uint32_t QMS_LOADER_ParseListInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest, QmsNode* list);
uint32_t QMS_LOADER_ParseAnydataInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest, uint32_t nodeKind);
uint32_t QMS_LOADER_ParseRpcInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest, uint32_t nodeKind);
uint32_t QMS_LOADER_ParseInout(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest,
                               uint32_t nodeKind);
uint32_t QMS_LOADER_ParseAugmentTargetNode(QmsModule* module, xmlNode* element, const char** name);

QM_END_INTERNAL_DECLS
