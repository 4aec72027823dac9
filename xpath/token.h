// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

QM_BEGIN_INTERNAL_DECLS

// The rules of the tokenizer. Each reads the token that begins at `offset` and
// fills it: 0, or 22 with kind 21. The first also appends the token and gives 12
// when the array cannot grow. None moves the offset.
uint32_t QM_XPATH_ParseCurTokenFromExpr(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);
uint32_t QM_XPATH_GetTokenStartWithDigit(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);
uint32_t QM_XPATH_GetTokenStartWithNameStart(QmXpathExpr* expr, uint32_t offset,
                                             QmXpathToken* token);
uint32_t QM_XPATH_GetTokenStartWithOtherCh(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);
uint32_t QM_XPATH_GetTgtTokenFromSymbolTbl(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);
uint32_t QM_XPATH_ParseSpecialSymbol(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);
uint32_t QM_XPATH_ParseLiteralToken(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);
uint32_t QM_XPATH_GetOperatorType(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token);

QM_END_INTERNAL_DECLS
