// SPDX-License-Identifier: BSD-3-Clause
// Single elements of a data tree: their module, their children by name or by
// schema node, and new children. Elements are made through libxml2 and belong to
// their tree.

#include "data/data_node.h"

#include "context/xml_tree.h"
#include "data/schema_query.h"
#include "platform/string.h"

const char* QMD_NODE_GetModuleName(QmCtx* ctx, const xmlNode* element) {
  if (!IsElement(element)) return nullptr;
  const QmsNode* schemaNode = BoundSchema(element);
  if (schemaNode != nullptr) return QM_MOD_GetModuleName(schemaNode->module);
  const char* ns = QM_XML_GetXmlNodeDefaultNs(element);
  return ns == nullptr ? nullptr : QM_MOD_GetModuleName(QM_CTX_GetModuleByModNs(ctx, ns));
}

uint32_t QMD_NODE_IsKeyLeafNode(const xmlNode* element) {
  const QmsNode* schemaNode = BoundSchema(element);
  return schemaNode == nullptr ? 0 : QM_NODE_IsKey(schemaNode);
}

xmlNode* FindChildElement(const xmlNode* parent, const char* name) {
  xmlNode* child = FirstElement(parent->children);
  while (child != nullptr && RTK_StrCmp(ElementName(child), name) != 0) {
    child = FirstElement(child->next);
  }
  return child;
}

xmlNode* QMD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode* element, const QmsNode* schemaNode) {
  if (element == nullptr || schemaNode == nullptr) return nullptr;
  return NextBoundSibling(element->children, schemaNode);
}

xmlNode* NextBoundSibling(xmlNode* node, const QmsNode* schemaNode) {
  while (node != nullptr && BoundSchema(node) != schemaNode) node = node->next;
  return node;
}

// Out of memory libxml2 may make a namespace without its texts, and one without
// prefix would be the default; such a one goes with its element.
xmlNs* DeclareNamespace(xmlNode* element, const char* href, const char* prefix) {
  xmlNs* ns = xmlNewNs(element, XmlChars(href), prefix == nullptr ? nullptr : XmlChars(prefix));
  if (ns == nullptr || ns->href == nullptr) return nullptr;
  return prefix == nullptr || ns->prefix != nullptr ? ns : nullptr;
}

// A new element inherits its parent's namespace. Under a parent of another
// module it declares its own as the default namespace, which is also what an
// attribute "xmlns" would say in the written text, but counts in memory too:
// the tree can be validated again.
static bool SetNamespace(xmlNode* child, const xmlNode* parent, const QmsNode* schemaNode) {
  const QmsNode* parentSchema = BoundSchema(parent);
  if (parentSchema != nullptr && parentSchema->module == schemaNode->module) {
    child->ns = parent->ns;
    return true;
  }
  const char* href = QM_MOD_GetModuleNs(schemaNode->module);
  if (href == nullptr) return false;
  xmlNs* ns = DeclareNamespace(child, href, nullptr);
  if (ns == nullptr) return false;
  xmlSetNs(child, ns);
  return true;
}

xmlNode* NewElementFor(xmlNode* parent, QmsNode* schemaNode, const xmlChar* ownName) {
  if (!IsElement(parent) || schemaNode == nullptr || schemaNode->name == nullptr) return nullptr;
  xmlDoc* doc = parent->doc;
  xmlNode* element =
      ownName != nullptr
          ? xmlNewDocNodeEatName(doc, nullptr, const_cast<xmlChar*>(ownName), nullptr)
          : xmlNewDocNode(doc, nullptr, XmlChars(schemaNode->name), nullptr);
  if (element == nullptr) return nullptr;
  element->_private = schemaNode;
  // Out of memory libxml2 may leave the name out.
  if (element->name != nullptr && SetNamespace(element, parent, schemaNode)) return element;
  xmlFreeNode(element);
  return nullptr;
}

// The text becomes a text node as it stands: functions that take the content of
// an element read it as markup, and "a&b" would be lost.
bool AddText(xmlNode* element, const char* text) {
  xmlNode* content = xmlNewDocText(element->doc, XmlChars(text));
  if (content == nullptr) return false;
  static_cast<void>(xmlAddChild(element, content));
  // Out of memory libxml2 may make a text node without the text.
  return content->content != nullptr;
}

xmlNode* QMD_NODE_CreateNewChildNode(xmlNode* parentElement, QmsNode* schemaNode) {
  return QMD_PAS_AddNewChildNodeWithValue(parentElement, schemaNode, nullptr);
}

xmlNode* QMD_PAS_AddNewChildNodeWithValue(xmlNode* parent, QmsNode* schemaNode, const char* text) {
  xmlNode* child = NewElementFor(parent, schemaNode, nullptr);
  if (child == nullptr) return nullptr;
  if (text == nullptr || AddText(child, text)) return xmlAddChild(parent, child);
  xmlFreeNode(child);
  return nullptr;
}

// The branch of the choice that the node lies in: the node itself, or its
// ancestor, directly below the choice. Only choices and cases are climbed.
QmsNode* BranchOfChoice(QmsNode* schemaNode, const QmsNode* choice) {
  QmsNode* branch = schemaNode;
  while (branch != nullptr && branch->parent != choice) {
    branch = branch->parent;
    if (branch != nullptr && QMD_MDL_IsChoiceOrCaseNode(branch) == 0) return nullptr;
  }
  return branch;
}

QmsNode* QMD_NODE_GetChoiceInstanceCaseBranch(const xmlNode* parentElement,
                                              const QmsNode* choiceSchemaNode) {
  if (parentElement == nullptr || choiceSchemaNode == nullptr) return nullptr;
  const QmsNode* last = nullptr;
  for (const xmlNode* child = parentElement->children; child != nullptr; child = child->next) {
    QmsNode* schemaNode = BoundSchema(child);
    // Entries of one list stand in runs; the answer for the first serves them all.
    if (schemaNode == nullptr || schemaNode == last) continue;
    last = schemaNode;
    QmsNode* branch = BranchOfChoice(schemaNode, choiceSchemaNode);
    if (branch != nullptr) return branch;
  }
  return nullptr;
}
