// SPDX-License-Identifier: BSD-3-Clause
//
// The value of a bound element as conditions see it: its text, and for an identity the
// name of its module in front. Texts handed out are copies from the memory hooks.
#include "xpath/bound_value.h"

#include <qmodel/error.h>

#include "context/string.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/records.h"

const char* RawText(const xmlNode* node) {
  return IsElement(node) ? QM_XML_GetElemNodeContent(node) : nullptr;
}

static uint32_t NoteIdentityref(const char* /*moduleName*/, const char* /*typedefName*/,
                                QmtType* type, void* arg) {
  if (QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_IDENTITYREF) *static_cast<uint32_t*>(arg) = 1;
  return QM_OK;
}

// Standard models name their identityrefs by typedef, so the whole chain counts.
uint32_t QMD_MDL_IsIdentityref(QmsNode* schemaNode) {
  uint32_t found = 0;
  const QmtType* type = QM_NODE_GetRealType(schemaNode);
  if (type == nullptr) return 0;
  if (QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_IDENTITYREF) return 1;
  const uint32_t ret = QM_NODE_ScanDerivedType(schemaNode, NoteIdentityref, &found);
  return ret == QM_OK ? found : 0;
}

// The name of the module that the prefix of `length` characters stands for at
// the element; NULL when it stands for none.
static const char* ResolvePrefix(const xmlNode* element, QmCtx* ctx, const char* text,
                                 size_t length) {
  const char* ns = FindNamespaceOfPrefix(element, text, length);
  return ns == nullptr ? nullptr : QM_MOD_GetModuleName(QM_CTX_GetModuleByModNs(ctx, ns));
}

static const char* ModuleNameOfValue(const xmlNode* element, const QmsNode* schemaNode,
                                     const char* text, const char* colon) {
  if (colon == nullptr) return QM_MOD_GetModuleName(schemaNode->module);
  return ResolvePrefix(element, schemaNode->module->ctx, text, static_cast<size_t>(colon - text));
}

char* QMD_NODE_ConvertPrefixValueToModValue(xmlNode* element, QmsNode* schemaNode,
                                            const char* text) {
  if (!IsElement(element) || schemaNode == nullptr || schemaNode->module == nullptr ||
      text == nullptr) {
    return nullptr;
  }
  const char* colon = RTK_StrChr(text, ':');
  const char* modName = ModuleNameOfValue(element, schemaNode, text, colon);
  if (modName == nullptr) return nullptr;
  return JoinModuleAndName(modName, colon == nullptr ? text : colon + 1);
}

char* QMD_NODE_GetValueContent(xmlNode* element, QmsNode* schemaNode) {
  if (!IsElement(element) || schemaNode == nullptr) return nullptr;
  const char* text = QM_XML_GetElemNodeContent(element);
  if (text == nullptr) return nullptr;
  if (QMD_MDL_IsIdentityref(schemaNode) != 0) {
    return QMD_NODE_ConvertPrefixValueToModValue(element, schemaNode, text);
  }
  return QM_UTL_StrDup(text);
}

// Whether the prefix of an identity value stands for a loaded module at the
// element, asked when its content could not be had: if it does, memory ran out.
static uint32_t StatusOfMissingContent(const xmlNode* node, QmsNode* schemaNode) {
  const char* text = RawText(node);
  const char* colon = text == nullptr ? nullptr : RTK_StrChr(text, ':');
  if (text == nullptr || schemaNode->module == nullptr) return QM_OK;
  if (colon == nullptr || QMD_MDL_IsIdentityref(schemaNode) == 0) {
    return QM_NO_MEMORY;
  }
  const char* modName =
      ResolvePrefix(node, schemaNode->module->ctx, text, static_cast<size_t>(colon - text));
  return modName == nullptr ? QM_OK : QM_NO_MEMORY;
}

uint32_t CopyBoundValue(xmlNode* node, QmsNode* schemaNode, char** out) {
  *out = QMD_NODE_GetValueContent(node, schemaNode);
  return *out != nullptr ? uint32_t{QM_OK} : StatusOfMissingContent(node, schemaNode);
}

uint32_t ReadBoundText(const xmlNode* node, const QmsNode* schemaNode, bool isIdentityref,
                       QmBoundText* out) {
  const char* text = RawText(node);
  *out = {nullptr, text == nullptr ? "" : text};
  if (text == nullptr || !isIdentityref) return QM_OK;
  *out = {nullptr, ""};
  if (schemaNode->module == nullptr) return QM_OK;
  const char* colon = RTK_StrChr(text, ':');
  const char* modName = ModuleNameOfValue(node, schemaNode, text, colon);
  if (modName == nullptr) return colon == nullptr ? QM_NO_MEMORY : QM_OK;
  *out = {modName, colon == nullptr ? text : colon + 1};
  return QM_OK;
}

// The next character of "name:text".
static char NextChar(QmBoundText* rest) {
  if (rest->moduleName == nullptr) return *rest->text == '\0' ? '\0' : *rest->text++;
  if (*rest->moduleName != '\0') return *rest->moduleName++;
  rest->moduleName = nullptr;
  return ':';
}

bool BoundTextsAreEqual(const QmBoundText* left, const QmBoundText* right) {
  if (left->moduleName == nullptr && right->moduleName == nullptr) {
    return RTK_StrCmp(left->text, right->text) == 0;
  }
  QmBoundText a = *left;
  QmBoundText b = *right;
  char next = '\0';
  do {
    next = NextChar(&a);
    if (next != NextChar(&b)) return false;
  } while (next != '\0');
  return true;
}
