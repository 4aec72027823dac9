// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/writer.h"

#include <gtest/gtest.h>

#include "tests/compiler/read_helper.h"

namespace compiler {
namespace {

// The lines between the root's tags.
std::string Written(const std::string& content) {
  const ReadResult read = ReadText("module m {" + content + "}");
  EXPECT_EQ(read.Findings(), "");
  const std::string all = WriteYin(*read.module);
  const size_t from = all.find(":yin:1\">\n") + 9;
  return all.substr(from, all.size() - from - sizeof("</module>"));
}

TEST(WriteYin, WritesLineFeedsAndTabsOfAttributesAsReferences) {
  EXPECT_EQ(Written("must 'a\n\tb <>&\"';"),
            "  <must condition=\"a&#10;&#9;b &lt;&gt;&amp;&quot;\"/>\n");
}

TEST(WriteYin, WritesTextsAsTheyAre) {
  EXPECT_EQ(Written("description ' a\n\tb <>&\" ';"),
            "  <description>\n    <text> a\n\tb &lt;&gt;&amp;\" </text>\n  </description>\n");
  EXPECT_EQ(Written("leaf a { must b { error-message ' c '; } }"),
            "  <leaf name=\"a\">\n    <must condition=\"b\">\n      <error-message>\n"
            "        <value> c </value>\n      </error-message>\n    </must>\n  </leaf>\n");
}

TEST(WriteYin, WritesCarriageReturnsSoThatTheyStay) {
  EXPECT_EQ(Written("description 'a\rb'; units 'a\rb';"),
            "  <description>\n    <text>a&#13;b</text>\n  </description>\n"
            "  <units name=\"a&#13;b\"/>\n");
}

TEST(WriteYin, WritesUtf8) {
  EXPECT_EQ(Written("units \xc3\xa4\xf0\x9f\x98\x80;"),
            "  <units name=\"\xc3\xa4\xf0\x9f\x98\x80\"/>\n");
}

TEST(WriteYin, WritesAnEmptyRoot) {
  EXPECT_EQ(WriteYin(*ReadText("submodule m;").module),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<submodule name=\"m\"\n"
            "           xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\"/>\n");
}

TEST(WriteYin, BreaksNoLineInForeignElementsWithText) {
  const ReadResult read = ReadYin(
      "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:e='urn:e'>"
      "<container name='a'><e:x>t<e:y><e:z/></e:y></e:x><e:x><e:y/></e:x></container></module>");
  const std::string all = WriteYin(*read.module);
  EXPECT_NE(all.find("\n    <x>t<y><z/></y></x>\n    <x>\n      <y/>\n    </x>\n"),
            std::string::npos)
      << all;
}

// Reading back what was written gives the same again, whatever the argument holds.
TEST(WriteYin, IsReadBackAsItWas) {
  for (const char* argument :
       {"", " ", "\n", "\t a \n", "]]>", "<![CDATA[x]]>", "&amp;", "\r\r", "a\nb", "<!-- -->"}) {
    const std::string quoted = std::string("'") + argument + "'";
    const ReadResult text = ReadText("module m { units " + quoted + "; description " + quoted +
                                     " { reference " + quoted + "; } }");
    const std::string written = WriteYin(*text.module);
    const ReadResult yin = ReadYin(written);
    EXPECT_EQ(yin.Findings(), "");
    EXPECT_EQ(WriteYin(*yin.module), written);
    EXPECT_STREQ(ArgumentOfChild(yin.module->root, Keyword::kUnits), argument);
    const xmlNode* description = FirstChild(yin.module->root, Keyword::kDescription);
    EXPECT_STREQ(ArgumentOf(description), argument);
    EXPECT_STREQ(ArgumentOfChild(description, Keyword::kReference), argument);
  }
}

}  // namespace
}  // namespace compiler
