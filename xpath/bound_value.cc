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

char* QMD_NODE_ConvertPrefixValueToModValue(xmlNode* element, QmsNode* schemaNode,
                                            const char* text) {
  if (!IsElement(element) || schemaNode == nullptr || schemaNode->module == nullptr ||
      text == nullptr) {
    return nullptr;
  }
  const char* colon = RTK_StrChr(text, ':');
  const char* modName = colon == nullptr ? QM_MOD_GetModuleName(schemaNode->module)
                                         : ResolvePrefix(element, schemaNode->module->ctx, text,
                                                         static_cast<size_t>(colon - text));
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
