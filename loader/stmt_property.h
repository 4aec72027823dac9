// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"
#include "types/upcalls.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_RefreshLeafDefaultValue(QmsModule* module, QmsNode* leaf);
uint32_t QMS_LOADER_RefreshLeafListDefaultValue(QmsModule* module, QmsNode* leafList);
char* QMS_LOADER_TransPrefix2ModNameInLiteral(QmsModule* module, const char* text);
uint32_t QMS_LOADER_CopyTokenIntoOutCondition(QmsModule* module, const char* text, char* out,
                                              uint32_t outSize);
uint32_t QMS_LOADER_AddModuleNameIntoCondition(QmsModule* module, const char* token,
                                               uint32_t tokenLength, char* out, uint32_t outSize,
                                               uint32_t* used);

QM_END_INTERNAL_DECLS
