// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "schema/statement.h"
#include "yin/records.h"

// The keyword of each statement id; the index is the id.
extern const QmsKeyWord g_qmsKeyWordTbl[QMS_STMT_COUNT];

// As QMS_LOADER_GetXmlNodeYangStmt(), for one node after the other: *yin is the last
// declaration that turned out to be of the YIN namespace, or NULL, so that its name is not
// compared for each.
uint32_t StmtOfNode(const xmlNode* node, const xmlNs** yin);

QM_BEGIN_INTERNAL_DECLS

// The statement id of a YIN node: by its name in the YIN namespace, 70 (extension
// instance) in any other, 0 without namespace or for what is no element.
uint32_t QMS_LOADER_GetXmlNodeYangStmt(const xmlNode* element);

// The id of a keyword, 0 for NULL and when there is none of that name. Case matters (RFC
// 7950 section 6.1.2).
uint32_t QMS_LOADER_GetStmtByKeyword(const char* name);

// The keyword of an id, "unknown" for ids past the last.
const char* QMS_LOADER_GetKeywordByStmt(uint32_t stmt);

// The id of `name` among the words of one initial letter, 0 when there is none.
// The first character is not compared: it chose the map.
uint32_t QMS_LOADER_GetStmtFromStmtMap(const char* name, const QmsKeyWord* map, uint32_t mapCount);

// One lookup per initial letter; `name` must begin with that letter.
uint32_t QMS_LOADER_GetStmtByKeywordStartWithA(const char* name);
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
uint32_t QMS_LOADER_GetStmtByKeywordStartWithY(const char* name);

QM_END_INTERNAL_DECLS
