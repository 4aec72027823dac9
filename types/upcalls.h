// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/statement.h"
#include "types/records.h"

// What types ask of the schema and the loader above them.

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_ParseSubStatements(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                       QmsSubStmtDesc* table, uint32_t count);
uint32_t QMS_LOADER_RefreshTypeDefDefaultValue(QmsModule* module, QmsTypedef* td);
QmtType* QMS_NODE_GetLeafSchemaRealType(QmsNode* node);

QM_END_INTERNAL_DECLS
