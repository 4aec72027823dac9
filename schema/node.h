// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"
#include "types/upcalls.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_NODE_GetStmtByNodeType(uint32_t kind);
uint32_t QMS_NODE_GetInfoSize(uint32_t kind);
QmsNode* QMS_NODE_New(uint32_t kind);
void QMS_NODE_Free(QmsNode* node);
void QMS_NODE_DestroySchemaInfo(QmsNode* node);
void QMS_NODE_DestroySchemaLeaf(QmDict* dict, void* payload);
void QMS_NODE_DestroySchemaLeaflist(QmDict* dict, void* payload);
void QMS_NODE_DestroySchemaChoice(QmDict* dict, void* payload);
void QMS_NODE_DestroyPrivateData(QmCtx* ctx, QmsNode* node);

QM_END_INTERNAL_DECLS
