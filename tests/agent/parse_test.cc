// SPDX-License-Identifier: BSD-3-Clause
// Texts that come from outside: what of them is in the document, and why others are
// refused. The hostile ones are about a megabyte and must be refused or parsed at once.
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <chrono>
#include <string>

#include <qmodel/agent.h>

namespace {

using std::string_literals::operator""s;

std::string DumpRoot(xmlDoc* doc) {
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, doc, xmlDocGetRootElement(doc), 0, 0);
  std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return text;
}

size_t CountNodes(const xmlNode* node, bool (*counts)(const xmlNode*)) {
  size_t count = 0;
  for (; node != nullptr; node = node->next) {
    if (counts(node)) ++count;
    if (node->type == XML_ELEMENT_NODE) count += CountNodes(node->children, counts);
  }
  return count;
}

// The root as text, or the reason as a number.
std::string Parse(const std::string& text, const QmAgentLimits* limits = nullptr) {
  uint32_t reason = 99;
  xmlDoc* doc = QM_AGENT_ParseMessage(text.data(), text.size(), limits, &reason);
  EXPECT_EQ(doc == nullptr, reason != QM_AGENT_REASON_NONE);
  if (doc == nullptr) return std::to_string(reason);
  std::string dump = DumpRoot(doc);
  xmlFreeDoc(doc);
  return dump;
}

std::string Reason(QmAgentReason reason) {
  return std::to_string(reason);
}

std::string Repeat(const std::string& piece, size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (size_t i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(ParseMessage, KeepsElementsAttributesAndTexts) {
  EXPECT_EQ("<a xmlns=\"u\" b=\"1\"><c>x</c><d/></a>",
            Parse("<?xml version='1.0' encoding='utf-8'?><a xmlns='u' b='1'><c>x</c><d/></a>"));
}

TEST(ParseMessage, DropsBlanksBetweenElementsAndNoOthers) {
  EXPECT_EQ("<a><b> </b><c> x </c><d><e/></d></a>",
            Parse("<a>\n <b> </b>\t<c> x </c>\r\n<d> <e/> </d> </a>\n"));
}

TEST(ParseMessage, DropsCommentsAndInstructionsAndJoinsTheTextsAroundThem) {
  EXPECT_EQ("<a>12</a>", Parse("<!-- x --><a>1<!-- y --><?p q?>2</a><?z?>"));
  EXPECT_EQ("<a>  </a>", Parse("<a> <!-- y --> </a>"));
  EXPECT_EQ("<a><b/></a>", Parse("<a> <!-- y --> <b/> <?p?> </a>"));
}

TEST(ParseMessage, JoinsSectionsAndReferencesToOneText) {
  const std::string text = "<a> 1<![CDATA[<2>]]>&amp;&#51;<![CDATA[ ]]></a>";
  EXPECT_EQ("<a> 1&lt;2&gt;&amp;3 </a>", Parse(text));
  xmlDoc* doc = QM_AGENT_ParseMessage(text.data(), text.size(), nullptr, nullptr);
  ASSERT_NE(nullptr, doc);
  const xmlNode* root = xmlDocGetRootElement(doc);
  ASSERT_NE(nullptr, root->children);
  EXPECT_EQ(nullptr, root->children->next) << "one piece";
  EXPECT_EQ(XML_TEXT_NODE, root->children->type);
  xmlFreeDoc(doc);
}

TEST(ParseMessage, KeepsNoLineNumbersWhateverTheClientAsksLibxml2For) {
  const int before = xmlLineNumbersDefault(1);
  const std::string text = "<a>" + Repeat("\n", 300) + "<b>1</b></a>";
  xmlDoc* doc = QM_AGENT_ParseMessage(text.data(), text.size(), nullptr, nullptr);
  EXPECT_EQ(1, xmlLineNumbersDefault(before)) << "the setting is the client's";
  ASSERT_NE(nullptr, doc);
  EXPECT_EQ(0u, CountNodes(xmlDocGetRootElement(doc), [](const xmlNode* node) {
              return node->type == XML_ELEMENT_NODE && node->line != 0;
            }));
  xmlFreeDoc(doc);
}

TEST(ParseMessage, ReadsNoFurtherThanItsLength) {
  uint32_t reason = 0;
  xmlDoc* doc = QM_AGENT_ParseMessage("<a/><b/>", 4, nullptr, &reason);
  ASSERT_NE(nullptr, doc);
  EXPECT_EQ("<a/>", DumpRoot(doc));
  xmlFreeDoc(doc);
}

TEST(ParseMessage, NoTextIsAWrongCall) {
  EXPECT_EQ(nullptr, QM_AGENT_ParseMessage(nullptr, 1, nullptr, nullptr));
  uint32_t reason = 0;
  EXPECT_EQ(nullptr, QM_AGENT_ParseMessage(nullptr, 0, nullptr, &reason));
  EXPECT_EQ(QM_AGENT_REASON_WRONG_CALL, reason);
}

TEST(ParseMessage, WhatIsNotWellFormedIsNoXml) {
  const std::string xml = Reason(QM_AGENT_REASON_NOT_XML);
  for (const std::string& text : {""s,
                                  " "s,
                                  "<a>"s,
                                  "<a></b>"s,
                                  "<a/><b/>"s,
                                  "x<a/>"s,
                                  "<a b='1' b='2'/>"s,
                                  "<a>&x;</a>"s,
                                  "<p:a/>"s,
                                  "<a>&#0;</a>"s,
                                  "<a>&#xD800;</a>"s,
                                  "<a>\x01</a>"s,
                                  "<a b=1/>"s,
                                  "<a b='<'/>"s,
                                  "<!--<a/>"s,
                                  "<![CDATA["s,
                                  "<"s,
                                  "<a b='"s,
                                  "<?xml"s,
                                  "<!-->"s}) {
    EXPECT_EQ(xml, Parse(text)) << text;
  }
}

TEST(ParseMessage, ANulEndsNothing) {
  EXPECT_EQ(Reason(QM_AGENT_REASON_NOT_XML), Parse("<a/>\0"s));
  EXPECT_EQ(Reason(QM_AGENT_REASON_NOT_XML), Parse("<a>\0</a>"s));
}

TEST(ParseMessage, ADocumentTypeIsRefusedBeforeItIsRead) {
  const std::string type = Reason(QM_AGENT_REASON_DOCUMENT_TYPE);
  EXPECT_EQ(type, Parse("<!DOCTYPE a><a/>"));
  EXPECT_EQ(type, Parse("<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>"));
  EXPECT_EQ(type, Parse("<!DOCTYPE a [<!ENTITY x 'y'><!ENTITY z '&x;&x;'>]><a>&z;</a>"));
}

TEST(ParseMessage, OtherEncodingsAreRefused) {
  const std::string utf8 = Reason(QM_AGENT_REASON_NOT_UTF8);
  EXPECT_EQ(utf8, Parse("<?xml version='1.0' encoding='ISO-8859-1'?><a/>"));
  EXPECT_EQ(utf8, Parse("<?xml version=\"1.0\" encoding = \"utf-16\"?><a/>"));
  EXPECT_EQ(utf8, Parse("<?xml version='1.0' encoding='UTF-80'?><a/>"));
  EXPECT_EQ(utf8, Parse("<?xml version='1.0' encoding='IBM037'?><a/>"));
  EXPECT_EQ(utf8, Parse("<a>\xE4</a>"));
  EXPECT_EQ(utf8, Parse("<a>\xC0\xBC</a>")) << "an overlong form";
  EXPECT_EQ(utf8, Parse("<a>\xED\xA0\x80</a>")) << "a surrogate";
  EXPECT_EQ(utf8, Parse("<a>\xF5\x80\x80\x80</a>"));
  EXPECT_EQ(utf8, Parse("<a>\xE2\x82")) << "cut within a character";
  EXPECT_EQ(utf8, Parse("\xFF\xFE<"s));
  // UTF-16 has NULs wherever a letter is.
  EXPECT_EQ(Reason(QM_AGENT_REASON_NOT_XML), Parse("\xFF\xFE<\0a\0/\0>\0"s));
}

TEST(ParseMessage, Utf8IsTakenWithAndWithoutMarkAndDeclaration) {
  const std::string whole = "<a>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80</a>";
  EXPECT_NE(Reason(QM_AGENT_REASON_NOT_UTF8), Parse(whole));
  EXPECT_EQ(Parse(whole), Parse("\xEF\xBB\xBF" + whole));
  EXPECT_EQ(Parse(whole), Parse("<?xml version='1.0' encoding='uTf-8' standalone='yes'?>" + whole));
  EXPECT_EQ("<a encoding=\"ISO-8859-1\"/>",
            Parse("<?xml version='1.0'?><a encoding='ISO-8859-1'/>"));
  EXPECT_EQ("<a/>", Parse("<?xml-x encoding='ISO-8859-1'?><a/>"));
}

TEST(ParseMessage, LengthAndDepthHaveLimits) {
  const QmAgentLimits limits = {20, 3};
  EXPECT_EQ("<a><b><c/></b></a>", Parse("<a><b><c/></b></a>", &limits));
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_DEEP), Parse("<a><b><c><d/></c>", &limits));
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_BIG), Parse("<a><b>34567890</b></a>", &limits));
  EXPECT_EQ("<a>34567890123456</a>", Parse("<a>34567890123456</a>", nullptr));
  const QmAgentLimits zero = {0, 0};
  EXPECT_EQ("<a/>", Parse("<a/>", &zero));
}

TEST(ParseMessage, TheDefaultLimitsAreThoseOfTheHeader) {
  const auto nested = [](size_t depth) { return Repeat("<a>", depth) + Repeat("</a>", depth); };
  EXPECT_EQ(Parse(nested(QM_AGENT_MAX_DEPTH)).substr(0, 3), "<a>");
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_DEEP), Parse(nested(QM_AGENT_MAX_DEPTH + 1)));
  const QmAgentLimits deeper = {0, 100000};
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_DEEP), Parse(nested(QM_AGENT_MAX_DEPTH + 1), &deeper));
  const std::string full = "<a>" + std::string(QM_AGENT_DEFAULT_BYTES - 7, 'x') + "</a>";
  EXPECT_EQ(full, Parse(full));
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_BIG), Parse(full + " "));
}

std::string Attributes(const char* name, size_t count, const char* value = "=\"&gt;") {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += " " + (name + std::to_string(i)) + "='" + value + "'";
  return text;
}

std::string Namespaces(const char* prefix, size_t count) {
  return Attributes(("xmlns:" + std::string(prefix)).c_str(), count, "u");
}

TEST(ParseMessage, AttributesOfAnElementAreBounded) {
  const size_t most = QM_AGENT_MAX_ATTRIBUTES;
  EXPECT_EQ("<a", Parse("<a" + Attributes("b", most) + "/>").substr(0, 2));
  const std::string many = Reason(QM_AGENT_REASON_TOO_MANY);
  EXPECT_EQ(many, Parse("<a" + Attributes("b", most + 1) + "/>"));
  EXPECT_EQ(many,
            Parse("<!-- > --><?p <?><a><![CDATA[<]]><b x='>'" + Attributes("b", most) + "/></a>"));
  // Wherever else there are many, they compare with nothing.
  EXPECT_EQ("<a>", Parse("<!-- " + Attributes("b", most * 2) + "--><a><![CDATA[<b" +
                         Attributes("b", most * 2) + ">]]></a>")
                       .substr(0, 3));
  EXPECT_EQ("<a>", Parse("<a>" + Repeat("<b x='1' y='2'/>", most) + "</a>").substr(0, 3));
}

TEST(ParseMessage, NamespacesOfOpenElementsAreBoundedTogether) {
  const size_t most = QM_AGENT_MAX_NAMESPACES;
  const auto nested = [](size_t outer, size_t inner) {
    return "<a" + Namespaces("n", outer) + "><b" + Namespaces("m", inner) + "/></a>";
  };
  EXPECT_EQ("<a", Parse(nested(most / 2, most / 2)).substr(0, 2));
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_MANY), Parse(nested(most / 2, most / 2 + 1)));
  // One after the other they are not together.
  EXPECT_EQ("<a>",
            Parse("<a>" + Repeat("<b" + Namespaces("n", 600) + "/>", 4) + "</a>").substr(0, 3));
}

TEST(ParseMessage, AMegabyteOfAnythingIsAnsweredAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  const size_t megabyte = 1000000;
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_MANY), Parse("<a" + Attributes("b", megabyte / 20) + "/>"));
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_MANY), Parse("<a" + Namespaces("b", 50000) + "/>"));
  EXPECT_EQ("<a>", Parse("<a>" + Repeat("<b/>", megabyte / 4) + "</a>").substr(0, 3));
  EXPECT_EQ("<a>", Parse("<a>" + Repeat("&#65;<!-- -->", megabyte / 13) + "</a>").substr(0, 3));
  EXPECT_EQ("<a>", Parse("<a>" + Repeat("x<![CDATA[y]]>", megabyte / 14) + "</a>").substr(0, 3));
  EXPECT_EQ("<a/>", Parse(Repeat("<?p?>", megabyte / 5) + "<a/>"));
  EXPECT_EQ(Reason(QM_AGENT_REASON_NOT_XML), Parse(Repeat("<", megabyte)));
  EXPECT_EQ(Reason(QM_AGENT_REASON_NOT_XML), Parse(Repeat("<!--", megabyte / 4)));
  EXPECT_EQ(Reason(QM_AGENT_REASON_TOO_DEEP), Parse(Repeat("<a>", megabyte / 3)));
  const std::string ns = "<a" + Namespaces("n", 1000) + ">" + Repeat("<n0:b/>", megabyte / 7);
  EXPECT_EQ("<a", Parse(ns + "</a>").substr(0, 2));
  // Each kind takes some tens of milliseconds; with compared attributes it was half a minute.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(ParseMessage, NodeFunctionsOfTheClientAreNotTold) {
  static int told = 0;
  told = 0;
  xmlRegisterNodeFunc before = xmlRegisterNodeDefault([](xmlNode*) { ++told; });
  EXPECT_EQ("<a><b/></a>", Parse("<a> <b/></a>"));
  xmlRegisterNodeDefault(before);
  EXPECT_EQ(0, told);
}

}  // namespace
