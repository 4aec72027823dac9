// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

struct QmsPrintPara;

QM_BEGIN_INTERNAL_DECLS

void QMS_NODE_InheritPrintPara(QmsPrintPara* child, const QmsPrintPara* parent);
uint32_t QMS_NODE_PrintSubTree(QmsModule* module, QmsNode* node, QmsPrintPara* para);
uint32_t QMS_NODE_PrintGetMaxLen(const QmsModule* module, const QmsNode* first);
uint32_t QMS_NODE_PrintRetractStatus(const QmsNode* node, QmsPrintPara* para);
uint32_t QMS_NODE_PrintGetRetract(const QmsNode* node, const QmsPrintPara* para);
uint32_t QMS_NODE_PrintCheckNextCase(const QmsNode* node);
uint32_t QMS_NODE_PrintNodeNameAlignSpace(uint32_t nameLength, QmsPrintPara* para);
uint32_t QMS_NODE_PrintType(const QmtType* type, QmsPrintPara* para);
uint32_t QMS_NODE_PrintTypeLeafref(const QmtType* type, QmsPrintPara* para);
uint32_t QMS_NODE_PrintTypeDerived(const QmtType* type, QmsPrintPara* para);

QM_END_INTERNAL_DECLS
