// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// libxml2 spells its texts with a character type of its own; these two are the
// only places that convert.
inline const char* XmlText(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}
inline const xmlChar* XmlChars(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

// The `_private` word of an element, read as a number.
inline uintptr_t PrivateMark(const xmlNode* node) {
  return reinterpret_cast<uintptr_t>(node->_private);
}
inline void AddPrivateMark(xmlNode* node, uintptr_t bits) {
  node->_private = reinterpret_cast<void*>(PrivateMark(node) | bits);
}

QM_BEGIN_INTERNAL_DECLS

const char* QM_XML_GetFirstPropertyValue(const xmlNode* element);
const char* QM_XML_GetTargetPropertyValue(const xmlNode* element, const char* name);
const char* QM_XML_GetXmlNodeDefaultNs(const xmlNode* element);
const char* QM_XML_GetElemNodeContent(const xmlNode* element);
xmlNode* QM_XML_GetFirstChildNodeWithPriVal(const xmlNode* element, uintptr_t bits);
xmlNode* QM_XML_GetXmlDomNextNode(xmlNode* root, xmlNode* node, uint32_t* dir);
xmlNode* QM_XML_GetXmlDomSibOrParent(xmlNode* root, xmlNode* node, uint32_t* dir);
xmlNode* QM_XML_GetParentNodeByTraverse(xmlNode* node, uint32_t dir);

QM_END_INTERNAL_DECLS
