// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "xpath/records.h"

QM_BEGIN_INTERNAL_DECLS

char* QM_XPATH_TransformToJsonFormat(QmsModule* module, const char* path);
uint32_t QM_XPATH_GetJsonFormatXpath(QmsModule* module, const char* path, char* out,
                                     uint32_t outSize);
uint32_t QM_XPATH_UpdateCurrentXpathModName(QmsModule* module, const char* prefix, char* lastPrefix,
                                            uint32_t lastPrefixSize);
uint32_t QM_XPATH_NeedAppendModifiedModName(const char* lastPrefix, const char* prefix);
const char* QM_XPATH_GetXpathLastModNameFromRear(const char* path, uint32_t* nameLength);

QM_END_INTERNAL_DECLS
