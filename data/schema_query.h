// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// 1 when nothing below the node is looked at: anydata, anyxml, a mount point.
uint32_t QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(const QmsNode* schemaNode);
// 1 for a container or list with the mount-point extension of schema mount.
uint32_t QMD_MDL_IsSchemaNodeDefineWithMountPoint(const QmsNode* schemaNode);
// 1 for the kinds that have no element: choice, case, input, output, augment.
uint32_t QMD_MDL_IsSchemaNodeNeedSkipInDataTree(const QmsNode* schemaNode);
// 1 for a choice or a case.
uint32_t QMD_MDL_IsChoiceOrCaseNode(const QmsNode* schemaNode);
// The child that a choice names as its default, or NULL.
QmsNode* QMD_MDL_GetChoiceDefaultChildNode(QmsNode* choiceNode);
// The nearest ancestor that is no choice or case, or NULL.
QmsNode* QMD_MDL_GetClosestAncestorNodeNotChoiceCase(QmsNode* schemaNode);
// The enabled data node of the same module that follows in the walk within `stop`, or
// NULL.
QmsNode* QMD_MDL_GetNextDataNodeInSameMod(QmsNode* schemaNode, QmsNode* stop);
// The choice that a node is a child of, or that its case is; NULL for none.
QmsNode* QMD_MDL_GetChoiceCaseParentNode(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
