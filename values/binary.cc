// SPDX-License-Identifier: BSD-3-Clause
// Binary values (RFC 7950 section 9.8): base64 text, and the length of what it decodes
// to. Nothing is decoded; counting characters tells the length.
#include "context/path_scan.h"
#include "platform/string.h"
#include "values/value_check.h"

constexpr size_t kGroupChars = 4;
constexpr size_t kGroupBytes = 3;
constexpr uint32_t kMaxPadding = 2;

static size_t TrimmedLength(const char* text) {
  size_t length = RTK_StrLen(text);
  while (length != 0 && IsBlank(text[length - 1])) --length;
  return length;
}

// Written out, so that the locale of the client has no say.
static bool IsBase64Data(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) || c == '+' || c == '/';
}

// Counts the padding; false for data after padding, or too much padding. Deliberate: any
// other character is passed over, though it counts in the length.
static bool ScanBase64(const char* text, size_t length, uint32_t* padding) {
  for (size_t i = 0; i < length; ++i) {
    if (IsBase64Data(text[i]) && *padding != 0) return false;
    if (text[i] == '=' && ++*padding > kMaxPadding) return false;
  }
  return true;
}

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBinary(uint32_t baseType, const char* valueStr,
                                                      QmtCheckCtx* checkCtx) {
  if (valueStr == nullptr) return QM_VALUE_BAD_BINARY;
  const char* text = QM_UTL_ConsumeAllSpaceChar(valueStr);
  const size_t length = TrimmedLength(text);
  checkCtx->binaryLength = 0;
  if (length == 0) return QM_OK;
  uint32_t padding = 0;
  if (length % kGroupChars != 0 || !ScanBase64(text, length, &padding)) {
    return QM_VALUE_BAD_BINARY;
  }
  const size_t decoded = length / kGroupChars * kGroupBytes - padding;
  if (decoded > UINT32_MAX) return QM_VALUE_BAD_BINARY;
  checkCtx->binaryLength = static_cast<uint32_t>(decoded);
  return QMT_CONS_CheckValStrAgainstDefRestrictLength(baseType, text, checkCtx);
}
