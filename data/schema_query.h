// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(const QmsNode* schemaNode);
uint32_t QMD_MDL_IsSchemaNodeDefineWithMountPoint(const QmsNode* schemaNode);
uint32_t QMD_MDL_IsSchemaNodeNeedSkipInDataTree(const QmsNode* schemaNode);
uint32_t QMD_MDL_IsChoiceOrCaseNode(const QmsNode* schemaNode);
QmsNode* QMD_MDL_GetChoiceDefaultChildNode(QmsNode* choiceNode);
QmsNode* QMD_MDL_GetClosestAncestorNodeNotChoiceCase(QmsNode* schemaNode);
QmsNode* QMD_MDL_GetNextDataNodeInSameMod(QmsNode* schemaNode, QmsNode* stop);
QmsNode* QMD_MDL_GetChoiceCaseParentNode(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
