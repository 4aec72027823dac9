// SPDX-License-Identifier: BSD-3-Clause
// Reading libxml2 trees: attributes, text, marks, and walks that go by parent and
// sibling links. A caller's tree may be deeper than any stack, so nothing here recurses.
#include "context/xml_tree.h"

#include <cstring>

#include "platform/string.h"

// The attributes of an element; other kinds of nodes have none, and some of them
// are records of another shape.
static const xmlAttr* FirstAttribute(const xmlNode* element) {
  if (element == nullptr || element->type != XML_ELEMENT_NODE) return nullptr;
  return element->properties;
}

// The text of an attribute's first piece. An attribute that is there but empty
// is "", which is not the same as none: `default value=""` is a default.
static const char* AttributeText(const xmlAttr* attribute) {
  if (attribute == nullptr) return nullptr;
  const xmlNode* piece = attribute->children;
  return piece != nullptr && piece->content != nullptr ? XmlText(piece->content) : "";
}

const char* QM_XML_GetFirstPropertyValue(const xmlNode* element) {
  return AttributeText(FirstAttribute(element));
}

const char* QM_XML_GetTargetPropertyValue(const xmlNode* element, const char* name) {
  if (name == nullptr) return nullptr;
  const xmlAttr* attribute = FirstAttribute(element);
  while (attribute != nullptr && RTK_StrCmp(XmlText(attribute->name), name) != 0) {
    attribute = attribute->next;
  }
  return AttributeText(attribute);
}

const char* QM_XML_GetXmlNodeDefaultNs(const xmlNode* element) {
  if (element == nullptr || element->ns == nullptr) return nullptr;
  return XmlText(element->ns->href);
}

// Bound to "xml" everywhere, without a declaration.
constexpr char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";

static bool HasPrefix(const xmlNs* ns, const char* prefix, size_t length) {
  if (ns->prefix == nullptr || ns->href == nullptr) return false;
  const char* own = XmlText(ns->prefix);
  // The first character tells most of them apart without a call.
  if (length != 0 && own[0] != prefix[0]) return false;
  return RTK_StrNCmp(own, prefix, length) == 0 && own[length] == '\0';
}

static const xmlNs* FindDeclaration(const xmlNode* element, const char* prefix, size_t length) {
  const xmlNs* ns = element->nsDef;
  while (ns != nullptr && !HasPrefix(ns, prefix, length)) ns = ns->next;
  return ns;
}

const char* FindNamespaceOfPrefix(const xmlNode* element, const char* prefix, size_t length) {
  if (length == 3 && std::memcmp(prefix, "xml", 3) == 0) return kXmlNamespace;
  for (const xmlNode* node = element; node != nullptr; node = node->parent) {
    if (node->type != XML_ELEMENT_NODE) continue;
    const xmlNs* ns = FindDeclaration(node, prefix, length);
    // A tree made by hand may use a namespace that it declares nowhere.
    if (ns == nullptr && node != element && node->ns != nullptr &&
        HasPrefix(node->ns, prefix, length)) {
      ns = node->ns;
    }
    if (ns != nullptr) return XmlText(ns->href);
  }
  return nullptr;
}

const char* QM_XML_GetElemNodeContent(const xmlNode* element) {
  if (element == nullptr || element->children == nullptr) return nullptr;
  const xmlNode* first = element->children;
  return first->type == XML_TEXT_NODE ? XmlText(first->content) : nullptr;
}

xmlNode* QM_XML_GetFirstChildNodeWithPriVal(const xmlNode* element, uintptr_t bits) {
  if (element == nullptr) return nullptr;
  xmlNode* child = element->children;
  while (child != nullptr && (PrivateMark(child) & bits) == 0) child = child->next;
  return child;
}

// The child list of an entity reference is the entity's own record, whose links
// lead out of the tree.
static xmlNode* OwnFirstChild(const xmlNode* node) {
  return node->type != XML_ENTITY_REF_NODE ? node->children : nullptr;
}

xmlNode* QM_XML_GetXmlDomNextNode(xmlNode* root, xmlNode* node, uint32_t* dir) {
  if (*dir != QMS_TRAV_PARENT) {
    xmlNode* child = OwnFirstChild(node);
    if (child != nullptr) {
      *dir = QMS_TRAV_CHILD;
      return child;
    }
  }
  return QM_XML_GetXmlDomSibOrParent(root, node, dir);
}

xmlNode* QM_XML_GetXmlDomSibOrParent(xmlNode* root, xmlNode* node, uint32_t* dir) {
  if (node == root) return nullptr;
  *dir = node->next != nullptr ? QMS_TRAV_SIBLING : QMS_TRAV_PARENT;
  return node->next != nullptr ? node->next : node->parent;
}

xmlNode* QM_XML_GetParentNodeByTraverse(xmlNode* node, uint32_t dir) {
  if (dir == QMS_TRAV_CHILD || dir == QMS_TRAV_TOP) return node;
  return dir == QMS_TRAV_SIBLING && node != nullptr ? node->parent : nullptr;
}

xmlNode* NextElementBeyond(const xmlNode* root, xmlNode* node) {
  while (node != nullptr && node != root) {
    xmlNode* sibling = FirstElement(node->next);
    if (sibling != nullptr) return sibling;
    node = node->parent;
  }
  return nullptr;
}

xmlNode* NextElement(const xmlNode* root, xmlNode* node) {
  xmlNode* child = FirstElement(node->children);
  return child != nullptr ? child : NextElementBeyond(root, node);
}

void RemoveNode(xmlNode* node) {
  xmlUnlinkNode(node);
  xmlFreeNode(node);
}
