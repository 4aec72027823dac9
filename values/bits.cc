// SPDX-License-Identifier: BSD-3-Clause
// Bits (RFC 7950 section 9.7): a list of names in any order, each at most once.
//
// The names are collected first, which refuses what is no list of different names or
// holds more names than the type has bits; then each must be a bit of the type.
#include <cstring>

#include "context/array.h"
#include "context/guard.h"
#include "context/path_scan.h"
#include "context/records.h"
#include "platform/string.h"
#include "types/type.h"
#include "values/type_check.h"
#include "values/value_check.h"

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
                                                  QmtCheckCtx*) {
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
