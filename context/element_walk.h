// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <qmodel/context.h>

#include "context/xml_tree.h"

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
