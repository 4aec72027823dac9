// SPDX-License-Identifier: BSD-3-Clause
//
// The functions that conditions may call: not (XPath 1.0 section 4.3) and the two
// identity tests of RFC 7950 section 10.4. A function takes its arguments from the top
// of the operand stack and leaves its result there.
#include "xpath/functions.h"

#include <cstring>
#include <iterator>

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/guard.h"
#include "context/records.h"
#include "context/text_scan.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module_registry.h"
#include "schema/records.h"
#include "xpath/bound_value.h"
#include "xpath/convert.h"
#include "xpath/object.h"

namespace {

constexpr uint32_t kMaxFunctionName = 20;

struct FunctionRow {
  const char* name;
  QmXpathFunc function;
};

constexpr FunctionRow g_qmXpathFuncTbl[] = {
    {"not", QM_XPATH_FuncNot},
    {"derived-from", QM_XPATH_FuncDerivedFrom},
    {"derived-from-or-self", QM_XPATH_FuncDerivedFromOfSelf},
};

// An identity as a condition or a value names it.
struct IdentityName {
  char module[kQmsNameSize];
  char name[kQmsNameSize];
};

}  // namespace

QmXpathFunc FindXpathFunction(const char* name, uint32_t length) {
  if (length > kMaxFunctionName) return nullptr;
  for (const FunctionRow& row : g_qmXpathFuncTbl) {
    if (RTK_StrLen(row.name) == length && RTK_StrNCmp(row.name, name, length) == 0) {
      return row.function;
    }
  }
  return nullptr;
}

uint32_t QM_XPATH_FuncNot(QmXpathEvalCtx* ctx) {
  auto* object = static_cast<QmXpathObject*>(RTK_Peep(ctx->objStack));
  return object == nullptr ? uint32_t{QM_INVALID} : QM_XPATH_FuncNotInner(object);
}

static bool SplitIdentity(const char* text, IdentityName* out) {
  return QM_UTL_GetXPathNextPrefixAndNode(text, out->module, kQmsNameSize, out->name,
                                          kQmsNameSize) == QM_OK;
}

static bool NamesIdentity(const IdentityName* wanted, const char* module, const char* name) {
  return module != nullptr && name != nullptr && RTK_StrCmp(wanted->module, module) == 0 &&
         RTK_StrCmp(wanted->name, name) == 0;
}

static uint32_t StopAtBase(const char* moduleName, const char* identityName, void* arg) {
  return NamesIdentity(static_cast<const IdentityName*>(arg), moduleName, identityName) ? 1 : 0;
}

// Deliberate: the prefix of the argument is a module name already; the loader
// rewrote it. Without one, the module of the leaf is meant.
static uint32_t ReadWantedIdentity(const char* argument, const QmsNode* schemaNode,
                                   IdentityName* wanted) {
  if (!SplitIdentity(argument, wanted)) return QM_INVALID;
  if (wanted->module[0] != '\0') return QM_OK;
  const char* own = QM_MOD_GetModuleName(schemaNode->module);
  if (own == nullptr) return QM_INVALID;
  const size_t length = RTK_StrLen(own);
  if (length >= kQmsNameSize) return QM_INVALID;
  std::memcpy(wanted->module, own, length + 1);
  return QM_OK;
}

// Looks at direct bases only.
static uint32_t IsDerived(const QmsNode* schemaNode, const char* value, const char* argument,
                          bool orSelf, uint32_t* result) {
  IdentityName self = {};
  IdentityName wanted = {};
  *result = 0;
  if (value == nullptr || !SplitIdentity(value, &self) || self.module[0] == '\0') return QM_OK;
  QmsIdentity* identity =
      QM_CTX_FindIdentityByModNameAndIdentName(schemaNode->module->ctx, self.module, self.name);
  if (identity == nullptr) return QM_INVALID;
  const uint32_t ret = ReadWantedIdentity(argument, schemaNode, &wanted);
  if (ret != QM_OK) return ret;
  const bool isSelf = orSelf && NamesIdentity(&wanted, self.module, self.name);
  *result = isSelf || QM_MOD_ScanIdentityBase(identity, StopAtBase, &wanted) != QM_OK ? 1 : 0;
  return QM_OK;
}

uint32_t TestIdentity(xmlNode* node, const char* argument, bool orSelf, uint32_t* result) {
  QmsNode* schemaNode = BoundSchema(node);
  if (schemaNode == nullptr) return QM_XPATH_UNBOUND_NODE;
  if (QMD_MDL_IsIdentityref(schemaNode) == 0) return QM_INVALID;
  char* content = nullptr;
  const uint32_t ret = CopyBoundValue(node, schemaNode, &content);
  if (ret != QM_OK) return ret;
  const QmHeld<char> value(content);
  return IsDerived(schemaNode, value.Get(), argument, orSelf, result);
}

static uint32_t EvalDerivedFrom(QmXpathEvalCtx* ctx, bool orSelf) {
  const QmOwn<QM_XPATH_FreeObject> text(
      QM_XPATH_GetArgumentByType(ctx->objStack, QM_XPATH_OBJECT_STRING));
  if (!text || *text->value.string == '\0') return QM_XPATH_BAD_ARGUMENTS;
  const QmOwn<QM_XPATH_FreeObject> object(
      QM_XPATH_GetArgumentByType(ctx->objStack, QM_XPATH_OBJECT_NODE));
  if (!object || object->value.node == nullptr) return QM_XPATH_BAD_ARGUMENTS;
  uint32_t result = 0;
  const uint32_t ret = TestIdentity(object->value.node, text->value.string, orSelf, &result);
  return ret != QM_OK ? ret : QM_XPATH_PushBooleanToObjStack(ctx->objStack, result);
}

uint32_t QM_XPATH_FuncDerivedFrom(QmXpathEvalCtx* ctx) {
  return EvalDerivedFrom(ctx, false);
}

uint32_t QM_XPATH_FuncDerivedFromOfSelf(QmXpathEvalCtx* ctx) {
  return EvalDerivedFrom(ctx, true);
}
