// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/condition_tree.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include <sstream>

#include "context/xml_tree.h"
#include "schema/module_nodes.h"
#include "schema/node_walk.h"
#include "tests/support/yin_text.h"

namespace condition_tree {
namespace {

constexpr const char* kBodyC = R"(
  <identity name="animal"/>
  <identity name="mammal"><base name="animal"/></identity>
  <identity name="dog"><base name="mammal"/></identity>
  <typedef name="kind"><type name="identityref"><base name="animal"/></type></typedef>
  <container name="top">
    <leaf name="a"><type name="string"/></leaf>
    <leaf name="n"><type name="int32"/></leaf>
    <leaf name="e"><type name="string"/></leaf>
    <leaf name="id"><type name="identityref"><base name="animal"/></type></leaf>
    <leaf name="did"><type name="kind"/></leaf>
    <container name="sub">
      <leaf name="x"><type name="string"/></leaf>
      <list name="l"><key value="k m"/><leaf name="k"><type name="string"/></leaf>
        <leaf name="m"><type name="string"/></leaf><leaf name="v"><type name="string"/></leaf></list>
    </container>
  </container>)";

constexpr const char* kBodyD = R"(
  <import module="c"><prefix value="c"/></import>
  <identity name="cat"><base name="c:mammal"/></identity>)";

xmlNode* Child(xmlNode* parent, const std::string& name) {
  for (xmlNode* child = parent->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE && name == XmlText(child->name)) return child;
  }
  return nullptr;
}

void BindChildren(xmlNode* element) {
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    child->_private = QMS_NODE_FindChildDataTreeNodeByName(static_cast<QmsNode*>(element->_private),
                                                           "c", XmlText(child->name));
    if (child->_private != nullptr) BindChildren(child);
  }
}

}  // namespace

Tree::Tree(const std::string& children, const std::string& prologue) : ctx_(QM_CTX_Create(0)) {
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("c", kBodyC).c_str()));
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("d", kBodyD).c_str()));
  const std::string xml =
      prologue + "<top xmlns='urn:c' xmlns:c='urn:c' xmlns:dd='urn:d'>" + children + "</top>";
  doc_ = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  EXPECT_NE(nullptr, doc_) << xml;
  xmlNode* root = xmlDocGetRootElement(doc_);
  root->_private = QMS_MOD_FindTopLevelSchemaNode(QM_CTX_GetModuleByModName(ctx_, "c"), "top");
  EXPECT_NE(nullptr, root->_private);
  BindChildren(root);
}

Tree::~Tree() {
  xmlFreeDoc(doc_);
  QM_CTX_Delete(ctx_);
}

xmlNode* Tree::Document() {
  return static_cast<xmlNode*>(static_cast<void*>(doc_));
}

xmlNode* Tree::Element(const std::string& path) {
  xmlNode* element = xmlDocGetRootElement(doc_);
  std::istringstream names(path);
  for (std::string name; element != nullptr && std::getline(names, name, '/');) {
    element = Child(element, name);
  }
  EXPECT_NE(nullptr, element) << path;
  return element;
}

uint32_t Tree::Eval(const std::string& path, const std::string& condition) {
  return QM_XPATH_EvalCondition(Document(), Element(path), condition.c_str());
}

}  // namespace condition_tree
