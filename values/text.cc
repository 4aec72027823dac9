// SPDX-License-Identifier: BSD-3-Clause
// Values that are judged by their text alone: binary, boolean, empty, enumeration, bits,
// and the patterns of strings.
#include "values/text.h"

#include <qmodel/context.h>

#include <cstring>

#include "context/array.h"
#include "context/guard.h"
#include "context/kept_pattern.h"
#include "context/records.h"
#include "context/text_scan.h"
#include "platform/string.h"
#include "types/type.h"
#include "values/range_check.h"
#include "values/type_check.h"

// Binary values (RFC 7950 section 9.8): base64 text, and the length of what it decodes
// to. Nothing is decoded; counting characters tells the length.

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

// Types whose values are fixed texts: boolean (RFC 7950 section 9.5) has two, empty
// (section 9.11) has none.

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBoolean(uint32_t /*baseType*/, const char* valueStr,
                                                       QmtCheckCtx* /*checkCtx*/) {
  if (valueStr == nullptr) return QM_VALUE_BAD_BOOLEAN;
  const bool valid = RTK_StrCmp(valueStr, "true") == 0 || RTK_StrCmp(valueStr, "false") == 0;
  return valid ? QM_OK : QM_VALUE_BAD_BOOLEAN;
}

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictEmpty(uint32_t /*baseType*/, const char* valueStr,
                                                     QmtCheckCtx* /*checkCtx*/) {
  return valueStr == nullptr || *valueStr == '\0' ? QM_OK : QM_VALUE_BAD_EMPTY;
}

// Enumerations (RFC 7950 section 9.6): the value is one of the names, byte for byte.

uint32_t QMT_CONS_ValidateValueNodeAgainstDataEnum(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* /*checkCtx*/) {
  const auto* own = static_cast<const QmtConsEnum*>(body);
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr || own->items == nullptr) return QM_VALUE_BAD_ENUM;
  for (uint32_t i = 0; i < own->count; ++i) {
    const char* name = own->items[i].name;
    if (name != nullptr && RTK_StrCmp(name, text) == 0) return QM_OK;
  }
  return QM_VALUE_BAD_ENUM;
}

uint32_t ScanEnums(void* body, QmNameValueScanFunc cb, void* arg) {
  const auto* own = static_cast<const QmtConsEnum*>(body);
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const char* description = own->descriptions == nullptr ? nullptr : own->descriptions[i];
    const uint32_t ret = cb(own->items[i].name, own->items[i].value, description, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Bits (RFC 7950 section 9.7): a list of names in any order, each at most once.
//
// The names are collected first, which refuses what is no list of different names or
// holds more names than the type has bits; then each must be a bit of the type.

constexpr uint16_t kMaxBitNames = 129;

namespace {
struct BitName {
  char text[kQmsNameSize];
};

// The names of one value.
struct BitNames {
  BitName* names;     // `capacity` zero-filled slots
  uint16_t capacity;  // bits of the type, as far as a value can name them
  uint16_t used;
};
}  // namespace

static bool HoldsName(const BitNames* names, const char* name) {
  for (uint32_t i = 0; i < names->used; ++i) {
    if (RTK_StrCmp(names->names[i].text, name) == 0) return true;
  }
  return false;
}

static bool AppendName(BitNames* names, const char* text, uint32_t length) {
  if (length == 0 || length >= kQmsNameSize || names->used >= names->capacity) return false;
  BitName* slot = &names->names[names->used];
  std::memcpy(slot->text, text, length);
  if (HoldsName(names, slot->text)) return false;
  ++names->used;
  return true;
}

static bool CollectNames(BitNames* names, const char* text) {
  for (uint32_t read = 0; *text != '\0'; ++read) {
    const uint32_t length = QM_UTL_ConsumeIdentNameBestEffort(text);
    if (read == kMaxBitNames || !AppendName(names, text, length)) return false;
    text += length;
    const char* next = QM_UTL_ConsumeAllSpaceChar(text);
    if (next == text && *text != '\0') return false;
    text = next;
  }
  return true;
}

static bool IsBitOfType(const QmtConsBit* own, const char* name) {
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const char* bit = own->items[i].name;
    if (bit != nullptr && RTK_StrCmp(bit, name) == 0) return true;
  }
  return false;
}

static bool AllAreBitsOfType(const QmtConsBit* own, const BitNames* names) {
  for (uint32_t i = 0; i < names->used; ++i) {
    if (!IsBitOfType(own, names->names[i].text)) return false;
  }
  return true;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataBit(void* body, uint32_t inputKind, const void* input,
                                                  QmtCheckCtx* /*checkCtx*/) {
  const auto* own = static_cast<const QmtConsBit*>(body);
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  BitName* slots = nullptr;
  // A type may have thousands of bits; each value would clear room for all of them.
  const uint16_t capacity = own->count < kMaxBitNames ? own->count : kMaxBitNames;
  if (text == nullptr || NewArrayOf(&slots, capacity) != QM_OK) return QM_VALUE_BAD_BITS;
  const QmHeld<BitName> held(slots);
  BitNames names = {slots, capacity, 0};
  const bool valid = CollectNames(&names, text) && AllAreBitsOfType(own, &names);
  return valid ? QM_OK : QM_VALUE_BAD_BITS;
}

uint32_t ScanBits(void* body, QmNameValueScanFunc cb, void* arg) {
  const auto* own = static_cast<const QmtConsBit*>(body);
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const uint32_t ret = cb(own->items[i].name, int64_t{own->items[i].position}, nullptr, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Patterns (RFC 7950 section 9.4.5): regular expressions of XML Schema, in the dialect
// of libxml2. All patterns of a type must accept the value.
//
// Deliberate: unless the client has asked the context to keep them, patterns are compiled
// in every check and nothing is kept, so that checks share no state. A pattern that does
// not compile matches nothing: it refuses every value, or with invert-match accepts every
// value.

uint32_t QMT_CONS_ValidateValueNodeAgainstDataPattern(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx* checkCtx) {
  const auto* own = static_cast<const QmtConsPattern*>(body);
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr) return QM_VALUE_BAD_PATTERN;
  QmCtx* ctx = checkCtx == nullptr ? nullptr : checkCtx->ctx;
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const bool matches = MatchStrKeepingPattern(ctx, text, own->items[i].pattern) == QM_OK;
    const bool wanted = own->items[i].invertMatch == 0;
    if (matches != wanted) return QM_VALUE_BAD_PATTERN;
  }
  return QM_OK;
}
