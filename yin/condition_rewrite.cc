// SPDX-License-Identifier: BSD-3-Clause
//
// A condition is evaluated far from the module that wrote it, where its
// prefixes mean nothing. Path steps keep their prefixes all the same, since the
// evaluation compares the names behind them alone; but a literal such as
// 'p:ethernet' in derived-from() is compared whole, as text, so its prefix is
// replaced by the module's name here. The
// condition is rebuilt token by token with the text between tokens kept, so
// that everything else stays as it was written.
#include <cstdint>
#include <cstring>

#include "context/guard.h"
#include "context/string.h"
#include "platform/string.h"
#include "schema/module.h"
#include "yin/stmt_property.h"

// Room for the NUL is kept at all times.
static uint32_t AppendText(const char* text, size_t length, char* out, uint32_t outSize,
                           uint32_t* used) {
  if (length >= size_t{outSize} - *used) return QM_INVALID;
  memcpy(out + *used, text, length);
  *used += static_cast<uint32_t>(length);
  out[*used] = '\0';
  return QM_OK;
}

uint32_t QMS_LOADER_AddModuleNameIntoCondition(QmsModule* module, const char* token,
                                               uint32_t tokenLength, char* out, uint32_t outSize,
                                               uint32_t* used) {
  const char* colon = QM_UTL_Strnchr(token, ':', tokenLength);
  const char* moduleName = nullptr;
  if (colon != nullptr && colon > token + 1) {
    const auto length = static_cast<uint32_t>(colon - token - 1);
    const QmHeld<char> prefix(QM_UTL_StrDupWithSpecifyLength(token + 1, length));
    if (!prefix) return QM_NO_MEMORY;
    moduleName = QMS_MOD_GetModuleNameByPrefix(module, prefix.Get());
  }
  if (moduleName == nullptr) return AppendText(token, tokenLength, out, outSize, used);
  uint32_t ret = AppendText(token, 1, out, outSize, used);
  if (ret == QM_OK) ret = AppendText(moduleName, RTK_StrLen(moduleName), out, outSize, used);
  if (ret != QM_OK) return ret;
  return AppendText(colon, tokenLength - static_cast<size_t>(colon - token), out, outSize, used);
}

static uint32_t AppendToken(QmsModule* module, const char* token, uint32_t kind, uint32_t length,
                            char* out, uint32_t outSize, uint32_t* used) {
  if (kind == QM_XPATH_TOKEN_LITERAL && QM_UTL_Strnchr(token, ':', length) != nullptr)
    return QMS_LOADER_AddModuleNameIntoCondition(module, token, length, out, outSize, used);
  return AppendText(token, length, out, outSize, used);
}

uint32_t QMS_LOADER_CopyTokenIntoOutCondition(QmsModule* module, const char* text, char* out,
                                              uint32_t outSize) {
  const QmOwn<QM_XPATH_FreeXpathLex> expr(QM_XPATH_ExprTokenize(text));
  if (!expr || outSize == 0) return QM_INVALID;
  const char* rest = text;
  uint32_t used = 0;
  out[0] = '\0';
  for (uint32_t i = 0; i < QM_XPATH_GetTokenNumber(expr.Get()); ++i) {
    uint32_t kind = QM_XPATH_TOKEN_INVALID;
    uint32_t length = 0;
    const char* token = QM_XPATH_GetTokenExprByPos(expr.Get(), i, &kind, &length);
    const auto gap = static_cast<size_t>(token - rest);
    uint32_t ret = AppendText(rest, gap, out, outSize, &used);
    if (ret == QM_OK) ret = AppendToken(module, token, kind, length, out, outSize, &used);
    if (ret != QM_OK) return ret;
    rest = token + length;
  }
  return QM_OK;
}

char* QMS_LOADER_TransPrefix2ModNameInLiteral(QmsModule* module, const char* text) {
  char out[kConditionSize];
  if (module == nullptr || text == nullptr) return nullptr;
  if (QMS_LOADER_CopyTokenIntoOutCondition(module, text, out, sizeof(out)) != QM_OK) return nullptr;
  return QM_UTL_StrDup(out);
}
