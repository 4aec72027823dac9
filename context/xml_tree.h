// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include <qmodel/context.h>

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

// The namespace name that the prefix, the first `length` characters of a text, stands
// for at the element; NULL for none. Only reads, as libxml2's own search does not: that
// one adds the prefix "xml" to the document.
const char* FindNamespaceOfPrefix(const xmlNode* element, const char* prefix, size_t length);

// Steps over element trees. Only element nodes are entered: an entity reference
// in a caller's tree has the entity's declaration as child, whose parent links
// lead elsewhere.

// The first element in a chain of siblings, `node` included.
inline xmlNode* FirstElement(xmlNode* node) {
  while (node != nullptr && node->type != XML_ELEMENT_NODE) node = node->next;
  return node;
}

// The nearest element before `node` among its siblings.
inline xmlNode* PreviousElement(const xmlNode* node) {
  xmlNode* prev = node->prev;
  while (prev != nullptr && prev->type != XML_ELEMENT_NODE) prev = prev->prev;
  return prev;
}

inline bool IsElement(const xmlNode* node) {
  return node != nullptr && node->type == XML_ELEMENT_NODE;
}

inline const char* ElementName(const xmlNode* element) {
  // libxml2 leaves an element without name when it ran out of memory on it.
  return element->name == nullptr ? "" : XmlText(element->name);
}

// The schema node that an element is bound to; NULL for everything else.
inline QmsNode* BoundSchema(const xmlNode* node) {
  return IsElement(node) ? static_cast<QmsNode*>(node->_private) : nullptr;
}

// The next element in document order within the tree of `root` that does not
// lie below `node`; NULL at its end.
xmlNode* NextElementBeyond(const xmlNode* root, xmlNode* node);
// The same, elements below `node` included.
xmlNode* NextElement(const xmlNode* root, xmlNode* node);

// Takes a node out of its tree and frees it with all below it.
void RemoveNode(xmlNode* node);

QM_BEGIN_INTERNAL_DECLS

// Borrowed texts of an element; NULL when it has no such part. Of several pieces
// (entities, CDATA) only the first is read.
// The value of the first attribute, whatever its name, or of the first of a name; ""
// for one without value.
const char* QM_XML_GetFirstPropertyValue(const xmlNode* element);
const char* QM_XML_GetTargetPropertyValue(const xmlNode* element, const char* name);
// The namespace name of the element itself.
const char* QM_XML_GetXmlNodeDefaultNs(const xmlNode* element);
// The text of a first child that is a text node.
const char* QM_XML_GetElemNodeContent(const xmlNode* element);
// The first child whose `_private` word has one of `bits` set.
xmlNode* QM_XML_GetFirstChildNodeWithPriVal(const xmlNode* element, uintptr_t bits);
// The next node of a pre-order walk below `root`, NULL at its end. `dir`, a
// QmsTravType, says how the walk came to `node` and is set to how it goes on; a
// parent is met again on the way up. The second function goes on without looking at
// the children.
xmlNode* QM_XML_GetXmlDomNextNode(xmlNode* root, xmlNode* node, uint32_t* dir);
xmlNode* QM_XML_GetXmlDomSibOrParent(xmlNode* root, xmlNode* node, uint32_t* dir);
// Which node is the current parent after a step of the walk: the node itself after
// going down (or at the start), its parent after a sibling, NULL after going up.
xmlNode* QM_XML_GetParentNodeByTraverse(xmlNode* node, uint32_t dir);

QM_END_INTERNAL_DECLS
