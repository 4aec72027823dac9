// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_UTL_ConsumeIdentNameBestEffort(const char* str);
uint32_t QM_UTL_ConsumeIdentNameFromTail(const char* str, uint32_t len);
const char* QM_UTL_ConsumeAllSpaceChar(const char* str);
uint32_t QM_UTL_GetXPathNextNodeName(const char* str, char* out, uint32_t outSize);
uint32_t QM_UTL_GetXPathNextPrefixAndNode(const char* str, char* prefixOut, uint32_t prefixSize,
                                          char* nodeOut, uint32_t nodeSize);
const char* QM_UTL_GetXPathNextPredicatedPrefixNode(const char* str, char* prefixOut,
                                                    uint32_t prefixSize, char* nodeOut,
                                                    uint32_t nodeSize);
const char* QM_UTL_SkipPredicateParis(const char* str);

QM_END_INTERNAL_DECLS
