// SPDX-License-Identifier: BSD-3-Clause
// YIN files: places, texts, foreign elements, and what is wrong with them.
#include <gtest/gtest.h>

#include "tests/compiler/read_helper.h"

namespace compiler {
namespace {

std::string Module(const std::string& content) {
  return "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:e='urn:e'>" + content +
         "</module>";
}

std::string DescriptionIn(const std::string& content) {
  const ReadResult read = ReadYin(Module(content));
  if (read.module == nullptr || read.module->broken) return "error " + read.Findings();
  const char* argument = ArgumentOfChild(read.module->root, Keyword::kDescription);
  return argument == nullptr ? "no argument" : argument;
}

TEST(YinPlaces, AreThoseOfTheStartTags) {
  const ReadResult read = ReadYin(
      "\xef\xbb\xbf<?xml version='1.0'?>\n"
      "<!-- <leaf\n -->\n"
      "  <module name='m'\n"
      "          xmlns='urn:ietf:params:xml:ns:yang:yin:1'><leaf name='a'/>\n"
      "\t<leaf\n  name='b>c'\n  ><!-- \xc3\xa4 --><type name='int8'/>\n"
      "</leaf><!-- \xc3\xa4 --><leaf name='\xc3\xa4'/></module>\n");
  ASSERT_EQ(read.Findings(), "");
  std::string places;
  const xmlNode* root = read.module->root;
  for (const xmlNode* s = root; s != nullptr; s = NextInTree(root, s)) {
    const Place& place = StatementOf(s)->place;
    places += std::to_string(place.line) + ":" + std::to_string(place.column) + " ";
  }
  EXPECT_EQ(places, "4:3 5:53 6:2 8:14 9:18 ");
}

TEST(YinPlaces, LiePastTheLinesThatLibxml2Counts) {
  const ReadResult read = ReadYin(Module(std::string(100000, '\n') + "  <leaf name='a'/>"));
  const Place& place = StatementOf(FirstChild(read.module->root))->place;
  EXPECT_EQ(place.line, 100001u);
  EXPECT_EQ(place.column, 3u);
}

TEST(YinPlaces, OfAConvertedFileHaveALineOnly) {
  const ReadResult read = ReadYin(
      "<?xml version='1.0' encoding='ISO-8859-1'?>\n"
      "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>\n"
      "   <description><text>\xe4</text></description></module>");
  ASSERT_EQ(read.Findings(), "");
  const xmlNode* description = FirstChild(read.module->root);
  EXPECT_STREQ(ArgumentOf(description), "\xc3\xa4");
  EXPECT_EQ(StatementOf(description)->place.line, 3u);
  EXPECT_EQ(StatementOf(description)->place.column, 1u);
}

TEST(YinTexts, AreTakenWhole) {
  EXPECT_EQ(DescriptionIn("<description><text>a<!-- c -->b<![CDATA[<&]]>&lt;&#10;\n "
                          "c<?p i?></text></description>"),
            "ab<&<\n\n c");
  EXPECT_EQ(DescriptionIn("<description><text>  </text></description>"), "  ");
  EXPECT_EQ(DescriptionIn("<description>\n <text/>\n</description>"), "");
  EXPECT_EQ(
      DescriptionIn("<description><text>" + std::string(11 << 20, 'x') + "</text></description>"),
      std::string(11 << 20, 'x'));
}

TEST(YinTexts, OfAttributesKeepReferences) {
  const ReadResult read = ReadYin(Module("<leaf name='a&#10;b&#9;&lt;&amp;&quot; \n c'/>"));
  EXPECT_STREQ(ArgumentOf(FirstChild(read.module->root)), "a\nb\t<&\"   c");
}

TEST(YinErrors, AreToldWithTheirPlace) {
  struct Row {
    const char* content;
    const char* findings;
  };
  for (const Row& row : std::initializer_list<Row>{
           {"<leaf/>", "1:76: 'leaf' lacks its argument; add the attribute 'name'\n"},
           {"<leaf nam='a'/>",
            "1:76: 'leaf' has no attribute 'nam'\n"
            "1:76: 'leaf' lacks its argument; add the attribute 'name'\n"},
           {"<leaf name='a' x='b' e:y='z' xml:lang='en'/>", "1:76: 'leaf' has no attribute 'x'\n"},
           {"<input name='a'/>", "1:76: 'input' has no attribute 'name'\n"},
           {"<description/>", "1:76: 'description' lacks its argument; add the element 'text'\n"},
           {"<description text='a'><text/></description>",
            "1:76: 'description' has no attribute 'text'\n"},
           {"<description><text/><text/></description>",
            "1:96: the argument 'text' stands behind another element\n"},
           {"<description><reference><text/></reference><text/></description>",
            "1:119: the argument 'text' stands behind another element\n"
            "1:76: 'description' lacks its argument; add the element 'text'\n"},
           {"<leaf name='a'>text</leaf>",
            "1:76: 'leaf' holds text; only the elements of arguments do\n"},
           {"<e:x a='1' b='2'/>", "1:76: 'x' has no attribute 'b'\n"},
           {"<leaf name='a' xmlns=''/>",
            "1:76: 'leaf' stands in no namespace; declare "
            "xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" on the module\n"},
       }) {
    SCOPED_TRACE(row.content);
    const ReadResult read = ReadYin(Module(row.content));
    EXPECT_EQ(read.Findings(), row.findings);
    ASSERT_NE(read.module, nullptr);
    EXPECT_TRUE(read.module->broken);
  }
}

TEST(YinErrors, OfXmlAreToldAsTheParserDoes) {
  EXPECT_NE(ReadYin("").Findings(), "");
  EXPECT_NE(ReadYin("module m {}").Findings(), "");
  const ReadResult read = ReadYin(Module("\n<leaf name='a'>\n</list><leaf name='b' name='c'/>"));
  EXPECT_NE(read.Findings().find("3:8: Opening and ending tag mismatch"), std::string::npos)
      << read.Findings();
  EXPECT_NE(read.Findings().find("Attribute name redefined"), std::string::npos);
}

TEST(YinErrors, OfTheRootLeaveNoModule) {
  EXPECT_EQ(ReadYin("<module name='m'/>").Findings(),
            "1:1: 'module' stands in no namespace; declare "
            "xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" on the module\n"
            "1:1: the file is no YIN module or submodule; these stand in the namespace "
            "urn:ietf:params:xml:ns:yang:yin:1\n");
  EXPECT_EQ(ReadYin("<module xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>").module, nullptr);
  const ReadResult nameless =
      ReadYin("<submodule name='' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>");
  EXPECT_EQ(nameless.module, nullptr);
  EXPECT_EQ(nameless.Findings(), "1:1: 'submodule' has an empty name; write the module's name\n");
  EXPECT_EQ(ReadYin("<leaf name='a' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>").module, nullptr);
}

TEST(YinErrors, IncludeDocumentTypes) {
  const ReadResult read =
      ReadYin("<?xml version='1.0'?>\n<!DOCTYPE module [<!ENTITY a 'b'>]>" + Module(""));
  EXPECT_EQ(read.Findings(), "2:1: the file declares a document type; remove the declaration\n");
}

TEST(YinErrors, AreNotToldWithoutEnd) {
  std::string content;
  for (int i = 0; i < 5000; ++i) content += "<leaf/>";
  EXPECT_EQ(ReadYin(Module(content)).report.findings.size(), 1001u);
}

TEST(YinDepth, IsBounded) {
  const auto nested = [](unsigned depth) {
    std::string text;
    for (unsigned i = 1; i < depth; ++i) text += "<container name='c'>";
    for (unsigned i = 1; i < depth; ++i) text += "</container>";
    return Module(text);
  };
  EXPECT_EQ(ReadYin(nested(kMaxDepth)).Findings(), "");
  EXPECT_NE(ReadYin(nested(kMaxDepth + 1)).Findings().find("more than 1000 levels deep"),
            std::string::npos);
  EXPECT_NE(ReadYin(nested(200000)).Findings(), "");
}

TEST(YinAttributes, OfOneElementAreBounded) {
  std::string tag = "<leaf";
  for (int i = 0; i < 200000; ++i) tag += " a" + std::to_string(i) + "='>'";
  const ReadResult read = ReadYin(Module("<!-- <a = = = --><![CDATA[ = ]]>" + tag + "/>"));
  EXPECT_EQ(read.Findings(), "1:108: the start tag has too many attributes\n");
}

TEST(YinForeignElements, KeepWhatTheyHold) {
  const ReadResult read =
      ReadYin(Module("<e:x a='1'>\n <leaf name='b'/>\n</e:x><e:y><e:z> t </e:z></e:y>"));
  EXPECT_EQ(read.Findings(), "");
  ASSERT_EQ(read.module->extensions.size(), 3u);
  const xmlNode* x = read.module->extensions[0].element;
  EXPECT_STREQ(reinterpret_cast<const char*>(x->ns->href), "urn:e");
  EXPECT_STREQ(read.module->extensions[0].prefix, "e");
  EXPECT_STREQ(ArgumentOf(x), "1");
  EXPECT_TRUE(Is(FirstChild(x), Keyword::kLeaf));
  EXPECT_EQ(x->children, FirstChild(x));
  const xmlNode* z = read.module->extensions[2].element;
  EXPECT_STREQ(reinterpret_cast<const char*>(z->children->content), " t ");
}

}  // namespace
}  // namespace compiler
