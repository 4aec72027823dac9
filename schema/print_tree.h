// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/print_node.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// Makes `child` the state of the level below that of `parent`.
void QMS_NODE_InheritPrintPara(QmsPrintPara* child, const QmsPrintPara* parent);
// Prints `node` at the level of `para`, and all below it. 0; 22 when it does not fit or the
// client's output function fails, 12 without memory.
uint32_t QMS_NODE_PrintSubTree(QmsModule* module, QmsNode* node, QmsPrintPara* para);
// The connectors for the children of `node`.
uint32_t QMS_NODE_PrintGetRetract(const QmsNode* node, const QmsPrintPara* para);
// 1 when another case is printed after the one of `node`; for a node outside a
// choice, when another sibling is.
uint32_t QMS_NODE_PrintCheckNextCase(const QmsNode* node);

QM_END_INTERNAL_DECLS
