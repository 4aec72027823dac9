// SPDX-License-Identifier: BSD-3-Clause
//
// Statements whose argument is a child element: "text" under description,
// organization and their kin, "value" under error-message (RFC 7950 section
// 13.1). Each stores one interned text; a second one replaces the first.
#include <cstdint>

#include "context/xml_tree.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/keyword.h"
#include "yin/statements.h"

static const char* LeadingText(const xmlNode* element) {
  const xmlNode* child = element->children;
  if (child == nullptr) return nullptr;
  const bool isText = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
  return isText ? XmlText(child->content) : nullptr;
}

uint32_t QMS_LOADER_ParseText(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  const char* text = LeadingText(element);
  if (text == nullptr) return QM_OK;
  return InternOrRefuse(module, static_cast<const char**>(dest), text);
}

// "value" also names a sub-statement of "enum", which types read themselves.
uint32_t QMS_LOADER_ParseValue(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest) {
  if (parentStmt != QMS_STMT_ERROR_MESSAGE) return QM_OK;
  return QMS_LOADER_ParseText(module, element, parentStmt, dest);
}

static uint32_t ParseOneChild(QmsModule* module, xmlNode* element, uint32_t ownStmt,
                              uint32_t childStmt, void* dest) {
  QmsSubStmtDesc table[] = {SingleSubStmt(childStmt, dest)};
  return QMS_LOADER_ParseSubStatements(module, element, ownStmt, table, 1);
}

uint32_t QMS_LOADER_ParseDescription(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  if ((module->ctx->loadFlags & QM_LOAD_DESCRIPTIONS) == 0) return QM_OK;
  const uint32_t ret = ParseOneChild(module, element, QMS_STMT_DESCRIPTION, QMS_STMT_TEXT, dest);
  if (ret != QM_OK) RecordBadStatement(module, QMS_STMT_DESCRIPTION);
  return ret;
}

uint32_t QMS_LOADER_ParseOrganization(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  return ParseOneChild(module, element, QMS_STMT_ORGANIZATION, QMS_STMT_TEXT, dest);
}

uint32_t QMS_LOADER_ParseErrorMessage(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  return ParseOneChild(module, element, QMS_STMT_ERROR_MESSAGE, QMS_STMT_VALUE, dest);
}
