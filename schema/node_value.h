// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// The type of a leaf or leaf-list whose context can be asked for typedefs, or NULL.
QmtType* UsableType(QmsNode* node);

QM_BEGIN_INTERNAL_DECLS

// The type record of a leaf or leaf-list, also an empty one; NULL for any other node.
QmtType* QMS_NODE_GetLeafSchemaRealType(QmsNode* node);
// The path of a leafref, of the leaf's own type or of the first typedef below it that is
// one; NULL for any other node. Borrowed.
const char* QMS_NODE_GetNextLeafrefPath(QmsNode* node);

QM_END_INTERNAL_DECLS
