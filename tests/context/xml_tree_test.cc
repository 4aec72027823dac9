// SPDX-License-Identifier: BSD-3-Clause
#include "context/xml_tree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "context/xml_parse.h"

namespace {

class XmlTree : public testing::Test {
 protected:
  ~XmlTree() override { xmlFreeDoc(doc_); }
  xmlNode* Parse(const char* text) {
    xmlFreeDoc(doc_);
    doc_ = ParseXmlText(text, std::strlen(text));
    return xmlDocGetRootElement(doc_);
  }

  xmlDoc* doc_ = nullptr;
};

using PropertyValue = XmlTree;
using ElemNodeContent = XmlTree;
using DomWalk = XmlTree;
using NamespaceOfPrefix = XmlTree;

}  // namespace

TEST_F(PropertyValue, FirstIsTakenWhateverItsName) {
  EXPECT_STREQ("1", QM_XML_GetFirstPropertyValue(Parse("<a x='1' y='2'/>")));
  EXPECT_EQ(nullptr, QM_XML_GetFirstPropertyValue(Parse("<a/>")));
  EXPECT_EQ(nullptr, QM_XML_GetFirstPropertyValue(nullptr));
}

TEST_F(PropertyValue, NamespaceDeclarationIsNoAttribute) {
  EXPECT_STREQ("1",
               QM_XML_GetFirstPropertyValue(Parse("<a xmlns='urn:x' xmlns:p='urn:p' x='1'/>")));
}

TEST_F(PropertyValue, EmptyAttributeIsAnEmptyTextAndNotNull) {
  EXPECT_STREQ("", QM_XML_GetFirstPropertyValue(Parse("<default value=''/>")));
  EXPECT_STREQ("", QM_XML_GetTargetPropertyValue(Parse("<a x='1' y=''/>"), "y"));
  // One made through the libxml2 interface has no text piece at all.
  xmlNode* element = Parse("<a/>");
  xmlNewProp(element, XmlChars("x"), nullptr);
  EXPECT_STREQ("", QM_XML_GetFirstPropertyValue(element));
}

TEST_F(PropertyValue, TargetIsTakenByName) {
  xmlNode* element = Parse("<a x='1' y='2'/>");
  EXPECT_STREQ("2", QM_XML_GetTargetPropertyValue(element, "y"));
  EXPECT_EQ(nullptr, QM_XML_GetTargetPropertyValue(element, "z"));
  EXPECT_EQ(nullptr, QM_XML_GetTargetPropertyValue(element, nullptr));
  EXPECT_EQ(nullptr, QM_XML_GetTargetPropertyValue(nullptr, "x"));
}

TEST_F(PropertyValue, TargetWithAPrefixIsFoundByItsLocalName) {
  EXPECT_STREQ("1",
               QM_XML_GetTargetPropertyValue(Parse("<a xmlns:p='urn:p' p:x='1' x='2'/>"), "x"));
}

TEST_F(PropertyValue, OnlyTheFirstPieceOfSeveralIsGiven) {
  EXPECT_STREQ("a",
               QM_XML_GetFirstPropertyValue(Parse("<!DOCTYPE r [<!ENTITY e 'E'>]><r x='a&e;b'/>")));
}

TEST_F(PropertyValue, NodesThatAreNoElementsHaveNone) {
  Parse("<!DOCTYPE r [<!ENTITY e 'E'>]><r>text</r>");
  for (xmlNode* node = doc_->children; node != nullptr; node = node->next) {
    EXPECT_EQ(nullptr, QM_XML_GetFirstPropertyValue(node));
  }
  EXPECT_EQ(nullptr, QM_XML_GetFirstPropertyValue(xmlDocGetRootElement(doc_)->children));
}

TEST_F(XmlTree, DefaultNamespaceIsThatOfTheElement) {
  xmlNode* element = Parse("<a xmlns='urn:a'><p:b xmlns:p='urn:p'/></a>");
  EXPECT_STREQ("urn:a", QM_XML_GetXmlNodeDefaultNs(element));
  EXPECT_STREQ("urn:p", QM_XML_GetXmlNodeDefaultNs(element->children));
  EXPECT_EQ(nullptr, QM_XML_GetXmlNodeDefaultNs(Parse("<a/>")));
  EXPECT_EQ(nullptr, QM_XML_GetXmlNodeDefaultNs(nullptr));
}

TEST_F(ElemNodeContent, IsThatOfAFirstTextChild) {
  EXPECT_STREQ("text", QM_XML_GetElemNodeContent(Parse("<a>text</a>")));
  EXPECT_STREQ(" a b ", QM_XML_GetElemNodeContent(Parse("<a> a b </a>")));
  EXPECT_STREQ("text", QM_XML_GetElemNodeContent(Parse("<a>text<b/>more</a>")));
}

TEST_F(ElemNodeContent, IsNullWhenTheFirstChildIsNoText) {
  EXPECT_EQ(nullptr, QM_XML_GetElemNodeContent(Parse("<a/>")));
  EXPECT_EQ(nullptr, QM_XML_GetElemNodeContent(Parse("<a><b/>text</a>")));
  EXPECT_EQ(nullptr, QM_XML_GetElemNodeContent(Parse("<a><![CDATA[text]]></a>")));
  EXPECT_EQ(nullptr, QM_XML_GetElemNodeContent(Parse("<a><!--c-->text</a>")));
  EXPECT_EQ(nullptr, QM_XML_GetElemNodeContent(nullptr));
}

TEST_F(XmlTree, FirstChildWithAMarkIsFoundByAnyOfTheBits) {
  xmlNode* element = Parse("<a><b/><c/><d/></a>");
  xmlNode* c = element->children->next;
  EXPECT_EQ(nullptr, QM_XML_GetFirstChildNodeWithPriVal(element, 0xFF));
  AddPrivateMark(c, 0x2);
  AddPrivateMark(c->next, 0x6);
  EXPECT_EQ(c, QM_XML_GetFirstChildNodeWithPriVal(element, 0x3));
  EXPECT_EQ(c->next, QM_XML_GetFirstChildNodeWithPriVal(element, 0x4));
  EXPECT_EQ(nullptr, QM_XML_GetFirstChildNodeWithPriVal(element, 0x8));
  EXPECT_EQ(nullptr, QM_XML_GetFirstChildNodeWithPriVal(nullptr, 0xFF));
}

TEST_F(DomWalk, VisitsInPreOrderAndTellsTheDirection) {
  xmlNode* root = Parse("<a><b><c/></b><d/></a>");
  std::string trace;
  uint32_t dir = 3;
  for (xmlNode* node = root; node != nullptr; node = QM_XML_GetXmlDomNextNode(root, node, &dir)) {
    trace += std::to_string(dir) + XmlText(node->name) + " ";
  }
  EXPECT_EQ("3a 0b 0c 2b 1d 2a ", trace);
}

TEST_F(DomWalk, StaysBelowItsRoot) {
  xmlNode* b = Parse("<a><b><c/></b><d/></a>")->children;
  uint32_t dir = 3;
  xmlNode* c = QM_XML_GetXmlDomNextNode(b, b, &dir);
  EXPECT_EQ(b->children, c);
  EXPECT_EQ(b, QM_XML_GetXmlDomNextNode(b, c, &dir));
  EXPECT_EQ(2u, dir);
  EXPECT_EQ(nullptr, QM_XML_GetXmlDomNextNode(b, b, &dir));
  dir = 0;
  EXPECT_EQ(nullptr, QM_XML_GetXmlDomSibOrParent(b, b, &dir));
}

TEST_F(DomWalk, RootWithoutChildrenEndsAtOnce) {
  xmlNode* root = Parse("<a/>");
  uint32_t dir = 3;
  EXPECT_EQ(nullptr, QM_XML_GetXmlDomNextNode(root, root, &dir));
}

TEST_F(DomWalk, DoesNotEnterTheDeclarationOfAnEntity) {
  xmlNode* root = Parse("<!DOCTYPE a [<!ENTITY e '<x/>'>]><a>&e;<b/></a>");
  uint32_t dir = 3;
  xmlNode* reference = QM_XML_GetXmlDomNextNode(root, root, &dir);
  ASSERT_EQ(XML_ENTITY_REF_NODE, reference->type);
  xmlNode* next = QM_XML_GetXmlDomNextNode(root, reference, &dir);
  EXPECT_STREQ("b", XmlText(next->name));
  EXPECT_EQ(1u, dir);
}

TEST_F(DomWalk, ParentOfTheNextNodeFollowsTheDirection) {
  xmlNode* root = Parse("<a><b/></a>");
  xmlNode* b = root->children;
  EXPECT_EQ(b, QM_XML_GetParentNodeByTraverse(b, 0));
  EXPECT_EQ(root, QM_XML_GetParentNodeByTraverse(b, 1));
  EXPECT_EQ(nullptr, QM_XML_GetParentNodeByTraverse(b, 2));
  EXPECT_EQ(b, QM_XML_GetParentNodeByTraverse(b, 3));
  EXPECT_EQ(nullptr, QM_XML_GetParentNodeByTraverse(nullptr, 1));
}

TEST_F(NamespaceOfPrefix, IsThatOfTheNearestDeclaration) {
  xmlNode* root =
      Parse("<a xmlns='urn:d' xmlns:p='urn:1' xmlns:pp='urn:2'><b xmlns:p='urn:3'/></a>");
  EXPECT_STREQ("urn:1", FindNamespaceOfPrefix(root, "p", 1));
  EXPECT_STREQ("urn:3", FindNamespaceOfPrefix(root->children, "p:x", 1));
  EXPECT_STREQ("urn:2", FindNamespaceOfPrefix(root->children, "pp", 2));
  EXPECT_EQ(nullptr, FindNamespaceOfPrefix(root, "ppp", 3));
  EXPECT_EQ(nullptr, FindNamespaceOfPrefix(root, "q", 1));
  EXPECT_EQ(nullptr, FindNamespaceOfPrefix(root, ":x", 0)) << "the default one has no prefix";
}

TEST_F(NamespaceOfPrefix, MayBeThatOfAnElementAboveWhichDeclaresNone) {
  xmlNode* root = Parse("<a><b/></a>");
  xmlNs* ns = xmlNewNs(nullptr, XmlChars("urn:1"), XmlChars("p"));
  root->ns = ns;
  EXPECT_STREQ("urn:1", FindNamespaceOfPrefix(root->children, "p", 1));
  root->ns = nullptr;
  xmlFreeNs(ns);
}

// As in trees made by hand.
TEST_F(NamespaceOfPrefix, PassesADeclarationWithoutANameBy) {
  xmlNode* root = Parse("<a xmlns:p='urn:1'><b/></a>");
  xmlNewNs(root->children, nullptr, XmlChars("p"));
  EXPECT_STREQ("urn:1", FindNamespaceOfPrefix(root->children, "p", 1));
}

TEST_F(NamespaceOfPrefix, MayBeThatOfAnEmptyPrefix) {
  xmlNode* root = Parse("<a><b/></a>");
  xmlNewNs(root, XmlChars("urn:1"), XmlChars(""));
  EXPECT_STREQ("urn:1", FindNamespaceOfPrefix(root->children, ":x", 0));
  EXPECT_EQ(nullptr, FindNamespaceOfPrefix(root->children, "p:x", 1));
}

// Several threads may look at one document.
TEST_F(NamespaceOfPrefix, XmlIsFoundWithoutATouchOfTheDocument) {
  xmlNode* root = Parse("<a/>");
  EXPECT_STREQ("http://www.w3.org/XML/1998/namespace", FindNamespaceOfPrefix(root, "xml", 3));
  EXPECT_EQ(nullptr, doc_->oldNs);
  EXPECT_EQ(nullptr, root->nsDef);
}
