// SPDX-License-Identifier: BSD-3-Clause
#include "context/xml_parse.h"

#include <gtest/gtest.h>
#include <libxml/globals.h>
#include <libxml/parser.h>

#include <climits>
#include <cstring>
#include <string>

#include "context/xml_tree.h"
#include "tests/support/temp_folder.h"
#include "tests/support/xml_memory.h"

namespace {

xmlDoc* Parse(const std::string& text) {
  return ParseXmlText(text.data(), text.size());
}

void CountError(void* counter, xmlErrorPtr /*error*/) {
  ++*static_cast<int*>(counter);
}

}  // namespace

TEST(ParseXmlText, BlanksBetweenElementsAreDropped) {
  xmlDoc* doc = Parse("<a>\n  <b/>\n</a>");
  ASSERT_NE(nullptr, doc);
  const xmlNode* root = xmlDocGetRootElement(doc);
  EXPECT_EQ(XML_ELEMENT_NODE, root->children->type);
  EXPECT_EQ(nullptr, root->children->next);
  xmlFreeDoc(doc);
}

TEST(ParseXmlText, TextThatIsNotWellFormedGivesNullAndPrintsNothing) {
  testing::internal::CaptureStderr();
  for (const char* text : {"<a>", "<a></b>", "text", " ", "<a/><b/>", "<p:a/>x"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(nullptr, Parse(text));
  }
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(ParseXmlText, EmptyNullAndTooLongTextsGiveNull) {
  EXPECT_EQ(nullptr, ParseXmlText("", 0));
  EXPECT_EQ(nullptr, ParseXmlText(nullptr, 5));
  EXPECT_EQ(nullptr, ParseXmlText("<a/>", size_t{INT_MAX} + 1)) << "libxml2 takes an int";
}

TEST(ParseXmlText, ElementsNestedDeeperThanLibxml2AllowsGiveNull) {
  std::string open;
  std::string close;
  for (int i = 0; i < 1000; ++i) {
    open += "<a>";
    close += "</a>";
  }
  EXPECT_EQ(nullptr, Parse(open + close));
}

TEST(ParseXmlText, ClientsErrorHandlerIsNotCalledAndStays) {
  int errors = 0;
  xmlSetStructuredErrorFunc(&errors, CountError);
  EXPECT_EQ(nullptr, Parse("<a>"));
  EXPECT_EQ(0, errors);
  EXPECT_EQ(&errors, xmlStructuredErrorContext);
  EXPECT_EQ(&CountError, xmlStructuredError);
  EXPECT_EQ(nullptr, xmlParseMemory("<a>", 3));
  EXPECT_GT(errors, 0);
  xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST(ParseXmlText, ClientsSettingsAreAsBeforeButForTheIndentation) {
  for (int setting : {0, 1}) {
    SCOPED_TRACE(setting);
    const int indentAtStart = xmlIndentTreeOutput;
    const int keepBlanksAtStart = xmlKeepBlanksDefault(setting);
    const int substituteAtStart = xmlSubstituteEntitiesDefault(setting);
    xmlIndentTreeOutput = setting;
    xmlLoadExtDtdDefaultValue = setting;
    xmlDoValidityCheckingDefaultValue = setting;
    xmlFreeDoc(Parse("<a/>"));
    EXPECT_EQ(1, xmlIndentTreeOutput) << "what was parsed may be written indented";
    EXPECT_EQ(setting, xmlLoadExtDtdDefaultValue);
    EXPECT_EQ(setting, xmlDoValidityCheckingDefaultValue);
    EXPECT_EQ(setting, xmlSubstituteEntitiesDefault(substituteAtStart));
    EXPECT_EQ(setting, xmlKeepBlanksDefault(keepBlanksAtStart));
    xmlLoadExtDtdDefaultValue = 0;
    xmlDoValidityCheckingDefaultValue = 0;
    xmlIndentTreeOutput = indentAtStart;
  }
}

TEST(ParseXmlText, EntitiesAreNotSubstitutedEvenForAClientWhoWantsIt) {
  const int before = xmlSubstituteEntitiesDefault(1);
  xmlDoc* doc = Parse("<!DOCTYPE a [<!ENTITY e 'text'>]><a>&e;</a>");
  ASSERT_NE(nullptr, doc);
  EXPECT_EQ(XML_ENTITY_REF_NODE, xmlDocGetRootElement(doc)->children->type);
  xmlFreeDoc(doc);
  xmlSubstituteEntitiesDefault(before);
}

namespace {
// `before` and `after` around the numbers below `count`, in a DTD.
bool ParsesWithDeclarations(const std::string& before, const std::string& after, int count) {
  std::string text = "<!DOCTYPE a [";
  for (int i = 0; i < count; ++i) text += before + std::to_string(i) + after;
  xmlDoc* doc = Parse(text + "]><a/>");
  FreeParsedDocument(doc);
  return doc != nullptr;
}
}  // namespace

TEST(ParseXmlText, MoreThan16AttributesThatADtdGivesToElementsAreRefused) {
  const std::pair<const char*, const char*> declarations[] = {
      {"<!ATTLIST a b", " CDATA 'x'>"},
      {"<!ATTLIST a b", " CDATA #FIXED 'x'>"},
      {"<!ATTLIST a b", " (x|y) 'x'>"},
      {"<!ATTLIST a xmlns:b", " CDATA 'urn:a'>"},
      {"<!ATTLIST a c CDATA #IMPLIED b", " CDATA ''>"},
      {"<!ENTITY % e \"<!ATTLIST a b", " CDATA 'x'>\"> %e;"},
  };
  for (const auto& [before, after] : declarations) {
    SCOPED_TRACE(before);
    EXPECT_TRUE(ParsesWithDeclarations(before, after, 1));
    // A parameter entity that is declared again keeps its first text.
    EXPECT_TRUE(ParsesWithDeclarations(before, after, 16));
    EXPECT_FALSE(ParsesWithDeclarations(before, after, 17));
  }
  EXPECT_TRUE(ParsesWithDeclarations("<!ATTLIST a b", " CDATA #IMPLIED>", 1000));
  EXPECT_TRUE(ParsesWithDeclarations("<!ATTLIST a b", " (x|y) #REQUIRED>", 1000));
  EXPECT_TRUE(ParsesWithDeclarations("<!ELEMENT a", " ANY>", 1000));
}

namespace {

xmlDoc* ParseMessage(const std::string& text) {
  return ParseXmlMessage(text.data(), text.size());
}

// How many blocks libxml2 asks for while it refuses a message.
uint64_t BlocksForRefusing(const std::string& text) {
  constexpr uint64_t kNever = uint64_t{1} << 40;
  xml_memory::RefuseNth(kNever);
  EXPECT_EQ(nullptr, ParseMessage(text));
  const uint64_t asked = kNever - xml_memory::Left();
  xml_memory::RefuseNth(0);
  return asked;
}

}  // namespace

TEST(ParseXmlMessage, IsParsedLikeAnyTextWithoutDocumentType) {
  xmlDoc* doc = ParseMessage("<?xml version='1.0'?><!-- c --><?p?><a> <b/> </a>");
  ASSERT_NE(nullptr, doc);
  EXPECT_EQ(nullptr, doc->intSubset);
  EXPECT_STREQ("b", XmlText(xmlDocGetRootElement(doc)->children->name));
  FreeParsedDocument(doc);
  EXPECT_EQ(nullptr, ParseMessage("<a>"));
  EXPECT_EQ(nullptr, ParseMessage(""));
}

TEST(ParseXmlMessage, AnyDocumentTypeIsRefused) {
  for (const char* declaration :
       {"a", "a []", "a SYSTEM 'a.dtd'", "a PUBLIC 'p' 'a.dtd'", "a SYSTEM 'a.dtd' []",
        "a [<!ENTITY e 'x'>]", "a [<!ATTLIST a b CDATA #IMPLIED>]", "html"}) {
    SCOPED_TRACE(declaration);
    const std::string text = std::string("<!DOCTYPE ") + declaration + "><a/>";
    EXPECT_EQ(nullptr, ParseMessage(text));
    xmlDoc* model = Parse(text);
    EXPECT_NE(nullptr, model) << "a model may have it";
    FreeParsedDocument(model);
  }
}

TEST(ParseXmlMessage, NothingOfADocumentTypeIsRead) {
  ASSERT_TRUE(xml_memory::Install());
  std::string attributes;
  for (int i = 0; i < 5000; ++i)
    attributes += "<!ATTLIST a b" + std::to_string(i) + " ID #IMPLIED>";
  // A text of the same length, since libxml2 keeps a copy of it.
  const std::string comment = "<!--" + std::string(attributes.size() - 7, ' ') + "-->";
  const std::string empty = "<!DOCTYPE a []>" + comment + "<a/>";
  BlocksForRefusing(empty);  // the first parse sets libxml2 up
  EXPECT_EQ(BlocksForRefusing(empty), BlocksForRefusing("<!DOCTYPE a [" + attributes + "]><a/>"));
}

namespace {
int g_toldNodes = 0;
void MarkNode(xmlNode* node) {
  ++g_toldNodes;
  node->_private = &g_toldNodes;
}
void ReadMark(xmlNode* /*node*/) {
  ++g_toldNodes;
}
}  // namespace

TEST(ParseXmlText, ClientsFunctionsForNodesAreNotCalledAndStay) {
  xmlRegisterNodeDefault(MarkNode);
  xmlDeregisterNodeDefault(ReadMark);
  xmlDoc* doc = Parse("<a><b/>text</a>");
  ASSERT_NE(nullptr, doc);
  EXPECT_EQ(nullptr, xmlDocGetRootElement(doc)->_private);
  EXPECT_EQ(nullptr, xmlDocGetRootElement(doc)->children->_private);
  FreeParsedDocument(doc);
  EXPECT_EQ(nullptr, Parse("<a><b/></c>"));
  EXPECT_EQ(0, g_toldNodes);
  EXPECT_EQ(ReadMark, xmlDeregisterNodeDefault(nullptr));
  EXPECT_EQ(MarkNode, xmlRegisterNodeDefault(nullptr));
}

TEST(ParseXmlText, ExternalEntitiesAndSubsetsAreNotLoaded) {
  const temp_folder::Folder folder;
  const std::string file = folder.Path("dtd");
  folder.Write("dtd", "<!ATTLIST a secret CDATA 'loaded'>");
  const int substitute = xmlSubstituteEntitiesDefault(1);
  xmlLoadExtDtdDefaultValue = XML_COMPLETE_ATTRS | XML_DETECT_IDS;
  xmlDoc* doc = Parse("<!DOCTYPE a SYSTEM '" + file + "'><a/>");
  ASSERT_NE(nullptr, doc);
  EXPECT_EQ(nullptr, xmlDocGetRootElement(doc)->properties);
  xmlFreeDoc(doc);
  doc = Parse("<!DOCTYPE a [<!ENTITY e SYSTEM '" + file + "'>]><a>&e;</a>");
  ASSERT_NE(nullptr, doc);
  const xmlNode* reference = xmlDocGetRootElement(doc)->children;
  ASSERT_EQ(XML_ENTITY_REF_NODE, reference->type);
  EXPECT_EQ(nullptr, reference->content);
  xmlFreeDoc(doc);
  xmlLoadExtDtdDefaultValue = 0;
  xmlSubstituteEntitiesDefault(substitute);
}

TEST(XmlSilence, NestsAndEndsWithItsBlock) {
  int errors = 0;
  xmlSetStructuredErrorFunc(&errors, CountError);
  {
    const XmlSilence outer;
    { const XmlSilence inner; }
    EXPECT_EQ(nullptr, xmlParseMemory("<a>", 3));
    EXPECT_EQ(0, errors);
  }
  EXPECT_EQ(nullptr, xmlParseMemory("<a>", 3));
  EXPECT_GT(errors, 0);
  xmlSetStructuredErrorFunc(nullptr, nullptr);
}
