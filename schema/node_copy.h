// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// A copy of a node for `module`, whose parent and siblings stay NULL; of the node
// alone, or of all below it. It has the kind, name, description, extension
// instances, key count and payload of the original; deliberately not its
// conditions, flags, musts and if-features. The caller links it or frees it with
// QMS_NODE_Free(). NULL for a NULL argument, a module without a context, a typedef
// that `module` should have and has not, and when memory runs out.
QmsNode* QMS_NODE_CopyNodeTreeToModule(QmsNode* root, QmsModule* module);
QmsNode* QMS_NODE_CopyOneNodeToModule(const QmsNode* node, QmsModule* module);

// A copy of a node's payload, by its kind, with texts of its own in `dict`. NULL
// for a kind that has none, for a NULL argument and when memory runs out. What a
// type is derived from is not resolved in the copy.
void* QMS_NODE_CopySchemaByType(QmDict* dict, uint32_t kind, const void* payload);
void* QMS_NODE_CopySchemaLeaf(QmDict* dict, const void* payload);
void* QMS_NODE_CopySchemaLeaflist(QmDict* dict, const void* payload);
void* QMS_NODE_CopySchemaChoice(QmDict* dict, const void* payload);

QM_END_INTERNAL_DECLS
