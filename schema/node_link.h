// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_NODE_AddChild(QmsNode* parent, QmsNode* node);
uint32_t QMS_NODE_AddAsFirstChild(QmsNode* parent, QmsNode* node);
uint32_t QMS_NODE_AddSibling(QmsNode* node, QmsNode* newNode);
uint32_t QMS_NODE_LinkTreeNode(QmsNode* a, QmsNode* node, uint32_t how);
uint32_t QMS_NODE_Unlink(QmsNode* node);
void QM_NODE_CalibrateTopNodeAddress(QmsNode* node, QmsNode* next);
QmsNode* QMS_NODE_GetLastSibling(QmsNode* node);
uint32_t QMS_NODE_IsChildNode(const QmsNode* parent, const QmsNode* node);

QM_END_INTERNAL_DECLS
