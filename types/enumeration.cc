// SPDX-License-Identifier: BSD-3-Clause
// Enumerations (RFC 7950 section 9.6): the value is one of the names, byte for byte.
#include <qmodel/context.h>

#include "platform/string.h"
#include "types/constraint_ops.h"
#include "types/item_body.h"
#include "types/type.h"
#include "types/value_check.h"

uint32_t QMT_CONS_ValidateValueNodeAgainstDataEnum(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx*) {
  const auto* own = static_cast<const QmtConsEnum*>(body);
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr || own->items == nullptr) return QM_VALUE_BAD_ENUM;
  for (uint32_t i = 0; i < own->count; ++i) {
    const char* name = own->items[i].name;
    if (name != nullptr && RTK_StrCmp(name, text) == 0) return QM_OK;
  }
  return QM_VALUE_BAD_ENUM;
}

static uint32_t ScanEnums(void* body, QmNameValueScanFunc cb, void* arg) {
  const auto* own = static_cast<const QmtConsEnum*>(body);
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const char* description = own->descriptions == nullptr ? nullptr : own->descriptions[i];
    const uint32_t ret = cb(own->items[i].name, own->items[i].value, description, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static void ReleaseEnum(QmDict* dict, QmtEnum* item) {
  ReleaseText(dict, &item->name);
}

static bool CopyEnum(QmDict* dict, QmtEnum* copy, const QmtEnum* src) {
  copy->value = src->value;
  return CopyText(dict, &copy->name, src->name);
}

static void DestroyEnums(QmDict* dict, void* body) {
  auto* own = static_cast<QmtConsEnum*>(body);
  if (own == nullptr) return;
  for (uint32_t i = 0; own->descriptions != nullptr && i < own->count; ++i) {
    ReleaseText(dict, &own->descriptions[i]);
  }
  g_qmMemFreeFunc(own->descriptions);
  DestroyItemBody<QmtConsEnum, ReleaseEnum>(dict, own);
}

static void* CreateEnums(uint32_t itemCount, uint32_t loadFlags) {
  QmtConsEnum* own = NewItemBody<QmtConsEnum>(itemCount);
  if (own == nullptr || (loadFlags & QM_LOAD_DESCRIPTIONS) == 0) return own;
  if (NewArrayOf(&own->descriptions, itemCount) == QM_OK) return own;
  DestroyEnums(nullptr, own);
  return nullptr;
}

static bool CopyDescriptions(QmDict* dict, QmtConsEnum* copy, const QmtConsEnum* src) {
  if (src->descriptions == nullptr) return true;
  if (NewArrayOf(&copy->descriptions, src->count) != QM_OK) return false;
  for (uint32_t i = 0; i < src->count; ++i) {
    if (!CopyText(dict, &copy->descriptions[i], src->descriptions[i])) return false;
  }
  return true;
}

static void* CopyEnums(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsEnum*>(body);
  QmtConsEnum* copy = CopyItemBody<QmtConsEnum, CopyEnum, ReleaseEnum>(dict, src);
  if (copy == nullptr || CopyDescriptions(dict, copy, src)) return copy;
  DestroyEnums(dict, copy);
  return nullptr;
}

const QmtConsOps g_qmtEnumOps = {
    CreateEnums, DestroyEnums, CopyEnums, QMT_CONS_ValidateValueNodeAgainstDataEnum,
    nullptr,     ScanEnums,    nullptr,
};
