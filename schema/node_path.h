// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

char* QMS_MOD_ConvertPrefixValToJsonFormat(QmsModule* module, const char* text);
char* QMS_NODE_PrintPath(QmsNode* node);
uint32_t QMS_NODE_PrintJsonPathRecursive(QmsNode* node, char* buf, uint32_t size, uint32_t* len);

QM_END_INTERNAL_DECLS
