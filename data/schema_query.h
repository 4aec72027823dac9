// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// 1 or 0. Nothing below the node is validated: anydata, anyxml, schema-mount points.
uint32_t QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(const QmsNode* schemaNode);
// A container or list that carries "mount-point" of the module ietf-yang-schema-mount.
uint32_t QMD_MDL_IsSchemaNodeDefineWithMountPoint(const QmsNode* schemaNode);
// The node has no element: choice, case, input, output, augment.
uint32_t QMD_MDL_IsSchemaNodeNeedSkipInDataTree(const QmsNode* schemaNode);
uint32_t QMD_MDL_IsChoiceOrCaseNode(const QmsNode* schemaNode);

// The child that the choice names as its default; NULL without one, and for other kinds.
QmsNode* QMD_MDL_GetChoiceDefaultChildNode(QmsNode* choiceNode);
// The nearest node above that is neither choice nor case, or NULL.
QmsNode* QMD_MDL_GetClosestAncestorNodeNotChoiceCase(QmsNode* schemaNode);
// The next enabled data node of the same module, below `stop`; NULL after the last one.
QmsNode* QMD_MDL_GetNextDataNodeInSameMod(QmsNode* schemaNode, QmsNode* stop);
// The choice that the node is a case of, or a child of a case of; NULL when it is neither.
QmsNode* QMD_MDL_GetChoiceCaseParentNode(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
