// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

QmsNode* QMS_NODE_CopyNodeTreeToModule(QmsNode* root, QmsModule* module);
QmsNode* QMS_NODE_CopyOneNodeToModule(const QmsNode* node, QmsModule* module);
void* QMS_NODE_CopySchemaByType(QmDict* dict, uint32_t kind, const void* payload);
void* QMS_NODE_CopySchemaLeaf(QmDict* dict, const void* payload);
void* QMS_NODE_CopySchemaLeaflist(QmDict* dict, const void* payload);
void* QMS_NODE_CopySchemaChoice(QmDict* dict, const void* payload);

QM_END_INTERNAL_DECLS
