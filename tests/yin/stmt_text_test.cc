// SPDX-License-Identifier: BSD-3-Clause
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/dict.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"
#include "yin/stmt_property.h"

using testing::ElementsAre;

// The text that `parse` stores for the element, "(none)" without one.
static std::string Stored(QmCtx* ctx, uint32_t (*parse)(QmsModule*, xmlNode*, uint32_t, void*),
                          uint32_t parentStmt, const std::string& element, uint32_t expected = 0) {
  const std::string text = yin_text::Root(element);
  yin::Parsed module(ctx, yin::Module("m", ""));
  xmlDoc* doc = ParseXmlText(text.data(), text.size());
  EXPECT_NE(nullptr, doc);
  const char* stored = nullptr;
  EXPECT_EQ(expected,
            parse(module.Get(), xmlDocGetRootElement(doc)->children, parentStmt, &stored));
  xmlFreeDoc(doc);
  const std::string result = stored == nullptr ? "(none)" : stored;
  ReleaseText(&ctx->dict, &stored);
  return result;
}

TEST(ParseText, TakesTheFirstChildWhenItIsText) {
  yin::Context ctx;
  EXPECT_EQ("abc", Stored(ctx, QMS_LOADER_ParseText, 15, "<text>abc</text>"));
  EXPECT_EQ(" a\n b ", Stored(ctx, QMS_LOADER_ParseText, 15, "<text> a\n b </text>"));
  EXPECT_EQ("a<b", Stored(ctx, QMS_LOADER_ParseText, 15, "<text><![CDATA[a<b]]></text>"));
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseText, 15, "<text/>"));
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseText, 15, "<text><b>x</b></text>"));
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseText, 15, "<text><!--c-->x</text>"));
}

TEST(ParseValue, ActsOnlyUnderErrorMessage) {
  yin::Context ctx;
  EXPECT_EQ("v", Stored(ctx, QMS_LOADER_ParseValue, 20, "<value>v</value>"));
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseValue, 18, "<value>v</value>"));
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseValue, 15, "<value>v</value>"));
}

TEST(ParseDescription, IsKeptOnlyWithItsLoadFlag) {
  yin::Context without(QM_LOAD_IMPORTS | QM_LOAD_UNITS);
  yin::Context with(QM_LOAD_DESCRIPTIONS);
  const std::string element = "<description><text>d</text></description>";
  EXPECT_EQ("(none)", Stored(without, QMS_LOADER_ParseDescription, 13, element));
  EXPECT_EQ("d", Stored(with, QMS_LOADER_ParseDescription, 13, element));
}

TEST(ParseDescription, WithoutItsLoadFlagTheChildrenAreNotLookedAt) {
  yin::Context without;
  yin::Context with(QM_LOAD_DESCRIPTIONS);
  xmlDoc* doc = yin::Xml(std::string("<description") + yin_text::kNamespace +
                         "><text><b/></text></description>");
  xmlNode* description = xmlDocGetRootElement(doc);
  const char* stored = nullptr;
  yin::Parsed dropping(without, yin::Module("m", ""));
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseDescription(dropping.Get(), description, 13, &stored));
  EXPECT_EQ(0u, PrivateMark(description->children));
  yin::Parsed keeping(with, yin::Module("m", ""));
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseDescription(keeping.Get(), description, 13, &stored));
  EXPECT_EQ(uintptr_t{QMS_STMT_TEXT}, PrivateMark(description->children));
  EXPECT_EQ(nullptr, stored);
  xmlFreeDoc(doc);
}

TEST(ParseDescription, WithoutTextChildNothingIsStored) {
  yin::Context ctx(QM_LOAD_DESCRIPTIONS);
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseDescription, 13, "<description/>"));
  EXPECT_EQ("(none)",
            Stored(ctx, QMS_LOADER_ParseDescription, 13, "<description>bare</description>"));
  EXPECT_THAT(ctx.Errors(), ElementsAre());
}

TEST(ParseOrganization, TakesItsTextChildWhateverTheFlags) {
  yin::Context ctx;
  EXPECT_EQ("o", Stored(ctx, QMS_LOADER_ParseOrganization, 39,
                        "<organization><text>o</text></organization>"));
}

TEST(ParseErrorMessage, TakesItsValueChild) {
  yin::Context ctx;
  EXPECT_EQ("bad", Stored(ctx, QMS_LOADER_ParseErrorMessage, 40,
                          "<error-message><value>bad</value></error-message>"));
  EXPECT_EQ("(none)", Stored(ctx, QMS_LOADER_ParseErrorMessage, 40,
                             "<error-message><text>bad</text></error-message>"));
}

TEST(ParseText, TheLaterOfTwoTextsWinsAndNoReferenceIsLost) {
  yin::Context ctx;
  EXPECT_EQ("b", Stored(ctx, QMS_LOADER_ParseOrganization, 39,
                        "<organization><text>a</text><text>b</text></organization>"));
}

TEST(ParseDescription, AFailedInternIs22AndTold) {
  yin::Context ctx(QM_LOAD_DESCRIPTIONS);
  yin::Parsed module(ctx, yin::Module("m", ""));
  const std::string text =
      std::string("<description") + yin_text::kNamespace + "><text>t</text></description>";
  xmlDoc* doc = ParseXmlText(text.data(), text.size());
  ASSERT_NE(nullptr, doc);
  const char* stored = nullptr;
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_ParseDescription(module.Get(), xmlDocGetRootElement(doc), 39, &stored));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, stored);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to parse statement \"text\" under statement "
                                        "\"description\".",
                                        "m -: Failed to parse statement \"description\"."));
  xmlFreeDoc(doc);
}
