// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/build.h"

#include <libxml/parserInternals.h>
#include <libxml/xmlmemory.h>

#include <cstring>

#include "compiler/words/path.h"

namespace compiler {

namespace {

template <typename Node>
Node* MakeNode(xmlElementType type, xmlDoc* document) {
  auto* node = static_cast<Node*>(Need(xmlMalloc(sizeof(Node))));
  std::memset(node, 0, sizeof(Node));
  node->type = type;
  node->doc = document;
  return node;
}

void Link(xmlNode* parent, xmlNode* node) noexcept {
  node->parent = parent;
  node->prev = parent->last;
  if (parent->last != nullptr) {
    parent->last->next = node;
  } else {
    parent->children = node;
  }
  parent->last = node;
}

// A text too short to be worth a block lies where a text has no attributes, as in the
// trees that libxml2 parses.
xmlNode* NewText(xmlDoc* document, std::string_view text) {
  auto* node = MakeNode<xmlNode>(XML_TEXT_NODE, document);
  node->name = xmlStringText;
  xmlChar* place = reinterpret_cast<xmlChar*>(&node->properties);
  if (text.size() >= 2 * sizeof(void*)) {
    place = static_cast<xmlChar*>(xmlMallocAtomic(text.size() + 1));
    if (place == nullptr) {
      xmlFree(node);
      throw std::bad_alloc();
    }
  }
  std::memcpy(place, text.data(), text.size());
  place[text.size()] = 0;
  node->content = place;
  return node;
}

xmlChar* CopyText(std::string_view text) {
  return Need(
      xmlStrndup(reinterpret_cast<const xmlChar*>(text.data()), static_cast<int>(text.size())));
}

}  // namespace

xmlNode* NewElement(xmlDoc* document, xmlNs* ns, const xmlChar* name) {
  auto* element = MakeNode<xmlNode>(XML_ELEMENT_NODE, document);
  element->name = name;
  element->ns = ns;
  return element;
}

xmlNode* AppendElement(xmlNode* parent, xmlNs* ns, const xmlChar* name) {
  xmlNode* element = NewElement(parent->doc, ns, name);
  Link(parent, element);
  return element;
}

xmlAttr* AppendAttribute(xmlNode* element, const xmlChar* name, std::string_view value) {
  auto* attribute = MakeNode<xmlAttr>(XML_ATTRIBUTE_NODE, element->doc);
  attribute->name = name;
  attribute->parent = element;
  xmlAttr* last = element->properties;
  while (last != nullptr && last->next != nullptr) last = last->next;
  attribute->prev = last;
  (last == nullptr ? element->properties : last->next) = attribute;
  SetAttributeText(attribute, value);
  return attribute;
}

void AppendText(xmlNode* element, std::string_view text) {
  if (!text.empty()) Link(element, NewText(element->doc, text));
}

void SetAttributeText(xmlAttr* attribute, std::string_view value) {
  xmlNode* text = NewText(attribute->doc, value);
  if (attribute->children != nullptr) xmlFreeNodeList(attribute->children);
  attribute->children = text;
  attribute->last = text;
  text->parent = reinterpret_cast<xmlNode*>(attribute);
}

bool IsXmlPrefix(std::string_view prefix) noexcept {
  return IsIdentifier(prefix) && prefix != "xml" && prefix != "xmlns";
}

bool IsXmlNamespace(std::string_view uri) noexcept {
  return uri != "http://www.w3.org/XML/1998/namespace" && uri != "http://www.w3.org/2000/xmlns/";
}

xmlNs* AppendNamespace(xmlNode* element, xmlNs* last, std::string_view prefix,
                       std::string_view uri) {
  // The declaration owns its texts from the start, so whoever frees it frees them.
  std::unique_ptr<xmlNs, void (*)(xmlNs*)> made(static_cast<xmlNs*>(Need(xmlMalloc(sizeof(xmlNs)))),
                                                xmlFreeNs);
  *made = xmlNs{};
  made->type = XML_NAMESPACE_DECL;
  made->href = CopyText(uri);
  made->prefix = CopyText(prefix);
  xmlNs** place = last == nullptr ? &element->nsDef : &last->next;
  while (*place != nullptr) place = &(*place)->next;
  *place = made.release();
  return *place;
}

void RenameNamespace(xmlNode* element, std::string_view before, std::string_view after) {
  for (xmlNs* ns = element->nsDef; ns != nullptr; ns = ns->next) {
    if (ns->prefix == nullptr || before != reinterpret_cast<const char*>(ns->prefix)) continue;
    xmlChar* copy = CopyText(after);
    xmlFree(const_cast<xmlChar*>(ns->prefix));
    ns->prefix = copy;
    return;
  }
}

void RemoveContent(xmlNode* element) noexcept {
  if (element->children != nullptr) xmlFreeNodeList(element->children);
  element->children = nullptr;
  element->last = nullptr;
}

}  // namespace compiler
