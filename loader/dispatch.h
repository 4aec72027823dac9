// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/statement.h"
#include "loader/records.h"
#include "types/upcalls.h"

QM_BEGIN_INTERNAL_DECLS

QmsStmtParseFunc QMS_LOADER_GetStmtParseFunc(uint32_t stmt);
uint32_t QMS_LOADER_MarkSubNodeAndCountArraySize(QmsModule* module, xmlNode* element,
                                                 QmsSubStmtDesc* table, uint32_t count);
uint32_t QMS_LOADER_NewSubStatementsArray(uint32_t parentStmt, QmsSubStmtDesc* table,
                                          uint32_t count);
uint32_t QMS_LOADER_ParseSubStatementsInner(QmsModule* module, xmlNode* element,
                                            uint32_t parentStmt, QmsSubStmtDesc* table,
                                            uint32_t count);
QmsSubStmtDesc* QMS_LOADER_GetSubParseElem(QmsSubStmtDesc* table, uint32_t count, uint32_t stmt);
void* QMS_LOADER_GetSubParseDest(QmsSubStmtDesc* desc, uint32_t parentStmt);
void QMS_LOADER_MarkSubNode(xmlNode* element);

QM_END_INTERNAL_DECLS
