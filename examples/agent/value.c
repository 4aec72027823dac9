/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "value.h"

#include <stdlib.h>
#include <string.h>

#include "text.h"

enum { MAX_BITS = 256 };

/* A number without its sign, leading zeros and the blanks around it. */
typedef struct Number {
  int negative;
  const char *digits;
  int length;
} Number;

static Number ReadNumber(const char *value) {
  value += strspn(value, kBlanks);
  Number number = {*value == '-', NULL, 0};
  number.digits = value + (*value == '-' || *value == '+' ? 1 : 0);
  number.digits += strspn(number.digits, "0");
  number.length = (int)strspn(number.digits, "0123456789");
  return number;
}

/* The forms of the types. Each makes a text of a value that is valid. */

static char *FormInteger(QmtType *type, const char *value) {
  (void)type;
  Number number = ReadNumber(value);
  if (number.length == 0) return CopyText("0");
  return PrintText("%s%.*s", number.negative ? "-" : "", number.length, number.digits);
}

/* One digit at least stands on each side of the point. */
static char *FormDecimal(QmtType *type, const char *value) {
  (void)type;
  Number whole = ReadNumber(value);
  const char *point = whole.digits + whole.length;
  const char *fraction = *point == '.' ? point + 1 : "";
  int length = (int)strspn(fraction, "0123456789");
  while (length > 0 && fraction[length - 1] == '0') length--;
  int zero = whole.length == 0 && length == 0;
  return PrintText("%s%.*s.%.*s", whole.negative && !zero ? "-" : "",
                   whole.length == 0 ? 1 : whole.length, whole.length == 0 ? "0" : whole.digits,
                   length == 0 ? 1 : length, length == 0 ? "0" : fraction);
}

static char *FormBinary(QmtType *type, const char *value) {
  (void)type;
  char *made = CopyText(value);
  size_t length = 0;
  for (const char *at = value; *at != '\0'; at++)
    if (strchr(kBlanks, *at) == NULL) made[length++] = *at;
  made[length] = '\0';
  return made;
}

/* The bits of a type that a value has. */
typedef struct Bits {
  const char *value;
  size_t count;
  struct Bit {
    const char *name;
    int64_t position;
  } bits[MAX_BITS];
} Bits;

static uint32_t TakeBit(const char *name, int64_t position, const char *description, void *arg) {
  Bits *set = arg;
  (void)description;
  size_t length = strlen(name);
  for (const char *at = set->value; *at != '\0';) {
    at += strspn(at, kBlanks);
    size_t word = strcspn(at, kBlanks);
    if (word == length && strncmp(at, name, word) == 0 && set->count < MAX_BITS)
      set->bits[set->count++] = (struct Bit){name, position};
    at += word;
  }
  return 0;
}

static int ComparePositions(const void *one, const void *two) {
  const struct Bit *left = one;
  const struct Bit *right = two;
  return (left->position > right->position) - (left->position < right->position);
}

/* By their positions, one blank between them. */
static char *FormBits(QmtType *type, const char *value) {
  Bits set = {.value = value};
  Ignore(QM_TYPE_ScanNameValuePair(type, TakeBit, &set));
  qsort(set.bits, set.count, sizeof *set.bits, ComparePositions);
  Text text = {NULL, 0, 0};
  TextAdd(&text, "");
  for (size_t i = 0; i < set.count; i++)
    TextPrint(&text, "%s%s", i == 0 ? "" : " ", set.bits[i].name);
  return text.data;
}

static char *FormIdentity(QmCtx *ctx, xmlNode *element, const char *value) {
  char *prefix = CopyText(value);
  char *colon = strchr(prefix, ':');
  if (colon != NULL) *colon = '\0';
  xmlNs *ns = xmlSearchNs(element->doc, element, colon == NULL ? NULL : X(prefix));
  const QmsModule *module = ns == NULL ? NULL : QM_CTX_GetModuleByModNs(ctx, C(ns->href));
  const char *name = colon == NULL ? value : value + (colon - prefix) + 1;
  free(prefix);
  return module == NULL ? CopyText(value) : PrintText("%s:%s", QM_MOD_GetModuleName(module), name);
}

char *ValueOf(QmCtx *ctx, QmsNode *node, xmlNode *element) {
  static char *(*const kForms[QMT_BASE_COUNT])(QmtType *, const char *) = {
      [QMT_BASE_BINARY] = FormBinary,     [QMT_BASE_BITS] = FormBits,
      [QMT_BASE_DECIMAL64] = FormDecimal, [QMT_BASE_INT8] = FormInteger,
      [QMT_BASE_INT16] = FormInteger,     [QMT_BASE_INT32] = FormInteger,
      [QMT_BASE_INT64] = FormInteger,     [QMT_BASE_UINT8] = FormInteger,
      [QMT_BASE_UINT16] = FormInteger,    [QMT_BASE_UINT32] = FormInteger,
      [QMT_BASE_UINT64] = FormInteger,
  };
  xmlChar *content = Need(xmlNodeGetContent(element));
  QmtType *type = QM_NODE_FindRealTypeMatchedValue(node, QM_INPUT_ELEMENT, element);
  uint32_t base = QM_TYPE_GetBuiltInBaseType(type);
  char *value = NULL;
  if (base == QMT_BASE_IDENTITYREF) {
    value = FormIdentity(ctx, element, C(content));
  } else if (base < QMT_BASE_COUNT && kForms[base] != NULL) {
    value = kForms[base](type, C(content));
  } else {
    value = CopyText(C(content));
  }
  xmlFree(content);
  return value;
}

void ValueDeclarePrefixes(QmCtx *ctx, xmlNode *leaf, xmlNode *in, const char *value) {
  const char *colon = strchr(value, ':');
  if (colon == NULL) return;
  char *name = CopyText(value);
  name[colon - value] = '\0';
  QmtType *type = QM_NODE_FindRealTypeMatchedValue(in->_private, QM_INPUT_ELEMENT, in);
  const QmsModule *module = QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_IDENTITYREF
                                ? QM_CTX_GetModuleByModName(ctx, name)
                                : NULL;
  if (module != NULL) (void)xmlNewNs(leaf, X(QM_MOD_GetModuleNs(module)), X(name));
  free(name);
  xmlNs **all = module == NULL ? xmlGetNsList(in->doc, in) : NULL;
  for (size_t i = 0; all != NULL && all[i] != NULL; i++) {
    if (all[i]->prefix == NULL) continue;
    char *used = PrintText("%s:", C(all[i]->prefix));
    if (strstr(value, used) != NULL) (void)xmlNewNs(leaf, all[i]->href, all[i]->prefix);
    free(used);
  }
  xmlFree(all);
}
