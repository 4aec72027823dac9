// SPDX-License-Identifier: BSD-3-Clause
//
// A prefix means something only in the module that wrote it, and two kinds of text go
// where it means nothing and are compared as text: a literal in a condition, such as
// 'p:ethernet' in derived-from(), and the default of an identityref. Both get the
// module's name for the prefix here. The steps of a condition need none: the evaluation
// compares their names without a prefix, so that they stay as they were written.
#include "yin/prefix_rewrite.h"

#include <cstdint>
#include <cstring>

#include "context/guard.h"
#include "context/string.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/node_path.h"
#include "types/type.h"
#include "yin/argument.h"

// Room for the NUL is kept at all times.
static uint32_t AppendText(const char* text, size_t length, char* out, uint32_t outSize,
                           uint32_t* used) {
  if (length >= size_t{outSize} - *used) return QM_INVALID;
  std::memcpy(out + *used, text, length);
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
  if (kind == QM_XPATH_TOKEN_LITERAL && QM_UTL_Strnchr(token, ':', length) != nullptr) {
    return QMS_LOADER_AddModuleNameIntoCondition(module, token, length, out, outSize, used);
  }
  return AppendText(token, length, out, outSize, used);
}

// The text between tokens is kept, so that all but the literals stays as it was written.
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

// Only the own type decides: a default under a typedef of identityref stays as written.
static uint32_t RefreshDefault(QmsModule* module, const QmtType* type, const char** value) {
  if (*value == nullptr || QMT_TYPE_IsTypeWithIdentref(type) != 1) return QM_OK;
  const QmHeld<char> converted(QMS_MOD_ConvertPrefixValToJsonFormat(module, *value));
  return converted ? InternOrRefuse(module, value, converted.Get()) : uint32_t{QM_INVALID};
}

uint32_t QMS_LOADER_RefreshTypeDefDefaultValue(QmsModule* module, QmsTypedef* td) {
  return RefreshDefault(module, &td->type, &td->defaultValue);
}

uint32_t QMS_LOADER_RefreshLeafDefaultValue(QmsModule* module, QmsNode* leaf) {
  auto* payload = static_cast<QmsLeaf*>(leaf->payload);
  return RefreshDefault(module, &payload->type, &payload->defaultValue);
}

uint32_t QMS_LOADER_RefreshLeafListDefaultValue(QmsModule* module, QmsNode* leafList) {
  auto* payload = static_cast<QmsLeafList*>(leafList->payload);
  if (payload->defaults == nullptr) return QM_OK;
  for (uint32_t i = 0; i < payload->defaultCount; ++i) {
    const uint32_t ret = RefreshDefault(module, &payload->type, &payload->defaults[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
