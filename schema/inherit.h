// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_NODE_UpdateConfigFlag(QmsNode* node);
uint32_t QMS_NODE_UpdateNacmFlag(QmsNode* node);
uint32_t QMS_NODE_UpdateFlag(QmsNode* node);
uint32_t QMS_NODE_ImplUpdateFlagCb(QmsNode* node, uint32_t travType, void* arg);
void QMS_NODE_SetNacmFlag(QmsNode* node, const char* moduleName, const char* extName);
uint32_t QMS_NODE_MarkKeyAttrToListLeafs(QmsNode* list, const char* keyText, uint8_t* keyCount);

QM_END_INTERNAL_DECLS
