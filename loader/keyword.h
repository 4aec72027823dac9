// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_GetXmlNodeYangStmt(const xmlNode* element);
uint32_t QMS_LOADER_GetStmtByKeyword(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithA(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithY(const char* name);
uint32_t QMS_LOADER_GetStmtFromStmtMap(const char* name, const QmsKeyWord* map, uint32_t mapCount);
const char* QMS_LOADER_GetKeywordByStmt(uint32_t stmt);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithB(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithC(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithD(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithE(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithF(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithG(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithI(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithK(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithL(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithM(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithN(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithO(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithP(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithR(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithS(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithT(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithU(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithV(const char* name);
uint32_t QMS_LOADER_GetStmtByKeywordStartWithW(const char* name);

QM_END_INTERNAL_DECLS
