// SPDX-License-Identifier: BSD-3-Clause
#include "yin/stmt_property.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/dict.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "yin/stmt_must_when.h"

using testing::ElementsAre;
using yin::ParseElement;
using yin::ParseFunc;

struct FlagRow {
  ParseFunc parse;
  const char* keyword;
  const char* value;
  uint32_t status;
  uint32_t bits;
};

static const FlagRow kFlagRows[] = {
    {QMS_LOADER_ParseConfig, "config", "true", QM_OK, 0x2 | 0x8},
    {QMS_LOADER_ParseConfig, "config", "false", QM_OK, 0x4 | 0x8},
    {QMS_LOADER_ParseConfig, "config", "False", QM_INVALID, 0},
    {QMS_LOADER_ParseConfig, "config", "", QM_INVALID, 0},
    {QMS_LOADER_ParseMandatory, "mandatory", "true", QM_OK, 0x10},
    {QMS_LOADER_ParseMandatory, "mandatory", "false", QM_OK, 0x20},
    {QMS_LOADER_ParseMandatory, "mandatory", "yes", QM_INVALID, 0},
    {QMS_LOADER_ParseOrderedBy, "ordered-by", "user", QM_OK, 0x80},
    {QMS_LOADER_ParseOrderedBy, "ordered-by", "system", QM_OK, 0},
    {QMS_LOADER_ParseOrderedBy, "ordered-by", "User", QM_INVALID, 0},
    {QMS_LOADER_ParseStatus, "status", "current", QM_OK, 0},
    {QMS_LOADER_ParseStatus, "status", "deprecated", QM_OK, 0x200},
    {QMS_LOADER_ParseStatus, "status", "obsolete", QM_OK, 0x400},
    {QMS_LOADER_ParseStatus, "status", "old", QM_INVALID, 0},
    {QMS_LOADER_ParsePresence, "presence", "", QM_OK, 0x800},
    {QMS_LOADER_ParsePresence, "presence", "any text", QM_OK, 0x800},
};

TEST(FlagStatements, EachWordSetsItsBitsAndKeepsTheOthers) {
  for (const FlagRow& row : kFlagRows) {
    SCOPED_TRACE(std::string(row.keyword) + " " + row.value);
    yin::Context ctx;
    uint32_t flags = 0x1000;
    const std::string element = std::string("<") + row.keyword + " value='" + row.value + "'/>";
    EXPECT_EQ(row.status, ParseElement(ctx, row.parse, element, QMS_STMT_LEAF, &flags));
    EXPECT_EQ(0x1000 | row.bits, flags);
    if (row.status == QM_OK)
      EXPECT_THAT(ctx.Errors(), ElementsAre());
    else
      EXPECT_THAT(ctx.Errors(),
                  ElementsAre(std::string("m -: Failed to parse value \"") + row.value +
                              "\" of statement \"" + row.keyword + "\"."));
  }
}

TEST(FlagStatements, UnderADeviateOnlySixteenBitsAreWritten) {
  yin::Context ctx;
  struct {
    uint16_t flags;
    uint16_t behind;
  } words = {0, 0xABCD};
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseConfig, "<config value='false'/>",
                                QMS_STMT_DEVIATE, &words.flags));
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseMandatory, "<mandatory value='true'/>",
                                QMS_STMT_DEVIATE, &words.flags));
  EXPECT_EQ(0x4 | 0x8 | 0x10, words.flags);
  EXPECT_EQ(0xABCD, words.behind);
}

TEST(FlagStatements, StatusGivenTwiceSetsBothBits) {
  yin::Context ctx;
  uint32_t flags = 0;
  EXPECT_EQ(QM_OK,
            ParseElement(ctx, QMS_LOADER_ParseStatus, "<status value='deprecated'/>", 31, &flags));
  EXPECT_EQ(QM_OK,
            ParseElement(ctx, QMS_LOADER_ParseStatus, "<status value='obsolete'/>", 31, &flags));
  EXPECT_EQ(0x600u, flags);
}

TEST(PropertyStatements, AMissingArgumentIs22AndNamesTheStatement) {
  struct {
    ParseFunc parse;
    const char* keyword;
  } const rows[] = {{QMS_LOADER_ParseConfig, "config"},
                    {QMS_LOADER_ParseMandatory, "mandatory"},
                    {QMS_LOADER_ParseOrderedBy, "ordered-by"},
                    {QMS_LOADER_ParseStatus, "status"},
                    {QMS_LOADER_ParsePresence, "presence"},
                    {QMS_LOADER_ParseKey, "key"},
                    {QMS_LOADER_ParseDefault, "default"},
                    {QMS_LOADER_ParseUnits, "units"},
                    {QMS_LOADER_ParseErrorAppTag, "error-app-tag"},
                    {QMS_LOADER_ParseWhen, "when"},
                    {QMS_LOADER_ParseMust, "must"},
                    {QMS_LOADER_ParseIfFeature, "if-feature"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.keyword);
    yin::Context ctx(QM_LOAD_UNITS);
    QmsMust dest = {};
    EXPECT_EQ(QM_INVALID,
              ParseElement(ctx, row.parse, std::string("<") + row.keyword + "/>", 31, &dest));
    EXPECT_THAT(ctx.Errors(), ElementsAre(std::string("m -: Failed to get value of statement \"") +
                                          row.keyword + "\"."));
  }
}

TEST(ParseKey, BorrowsTheArgumentFromTheDocument) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  xmlDoc* doc = yin::Xml("<key value='a b'/>");
  ASSERT_NE(nullptr, doc);
  xmlNode* root = xmlDocGetRootElement(doc);
  const char* key = nullptr;
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseKey(module.Get(), root, QMS_STMT_LIST, &key));
  EXPECT_STREQ("a b", key);
  EXPECT_EQ(XmlText(root->properties->children->content), key);
  xmlFreeDoc(doc);
}

TEST(ParseDefault, AnEmptyValueIsAValueAndTheAttributesNameDoesNotMatter) {
  yin::Context ctx;
  const char* value = nullptr;
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseDefault, "<default value=''/>", 31, &value));
  EXPECT_STREQ("", value);
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseDefault, "<default other='x'/>", 31, &value));
  EXPECT_STREQ("x", value);
  ReleaseText(&ctx.Get()->dict, &value);
}

TEST(ParseUnits, AreKeptOnlyWithTheirLoadFlag) {
  yin::Context without(QM_LOAD_DESCRIPTIONS);
  yin::Context with(QM_LOAD_UNITS);
  const char* units = nullptr;
  EXPECT_EQ(QM_OK, ParseElement(without, QMS_LOADER_ParseUnits, "<units/>", 31, &units))
      << "without the flag a malformed one is not looked at";
  EXPECT_EQ(nullptr, units);
  EXPECT_EQ(QM_OK, ParseElement(with, QMS_LOADER_ParseUnits, "<units name='s'/>", 31, &units));
  EXPECT_STREQ("s", units);
  ReleaseText(&with.Get()->dict, &units);
}

// The statuses of a failed intern differ by statement.
static uint32_t ParseWithoutMemory(QmCtx* ctx, ParseFunc parse, const char* element, void* dest) {
  yin::Parsed module(ctx, yin::Module("m", ""));
  xmlDoc* doc = ParseXmlText(element, std::string(element).size());
  EXPECT_NE(nullptr, doc);
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  const uint32_t ret = parse(module.Get(), xmlDocGetRootElement(doc), 31, dest);
  EXPECT_LT(0u, counting_memory::StopRefusing());
  xmlFreeDoc(doc);
  return ret;
}

TEST(PropertyStatements, AFailedInternGives22AndForUnits12) {
  yin::Context ctx(QM_LOAD_UNITS);
  const char* text = nullptr;
  QmsMust must = {};
  EXPECT_EQ(QM_INVALID,
            ParseWithoutMemory(ctx, QMS_LOADER_ParseDefault, "<default value='d'/>", &text));
  EXPECT_EQ(QM_NO_MEMORY,
            ParseWithoutMemory(ctx, QMS_LOADER_ParseUnits, "<units name='u'/>", &text));
  EXPECT_EQ(QM_INVALID,
            ParseWithoutMemory(ctx, QMS_LOADER_ParseErrorAppTag, "<e value='t'/>", &text));
  EXPECT_EQ(QM_INVALID,
            ParseWithoutMemory(ctx, QMS_LOADER_ParseWhen, "<when condition='w'/>", &text));
  EXPECT_EQ(QM_INVALID,
            ParseWithoutMemory(ctx, QMS_LOADER_ParseMust, "<must condition='w'/>", &must));
  EXPECT_EQ(nullptr, text);
  EXPECT_EQ(nullptr, must.condition);
}

TEST(ParseDefault, AFailedInternNamesTheValue) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  xmlDoc* doc = yin::Xml("<default value='d'/>");
  const char* text = nullptr;
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_ParseDefault(module.Get(), xmlDocGetRootElement(doc), 31, &text));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_THAT(ctx.Errors(),
              ElementsAre("m -: Failed to parse value \"d\" of statement \"default\"."));
  xmlFreeDoc(doc);
}

TEST(ParseIfFeature, AFailedInternIs12) {
  yin::Context ctx;
  QmsIfFeature ref = {};
  EXPECT_EQ(QM_NO_MEMORY,
            ParseWithoutMemory(ctx, QMS_LOADER_ParseIfFeature, "<i name='f'/>", &ref));
  EXPECT_EQ(nullptr, ref.module);
  EXPECT_EQ(nullptr, ref.feature);
}

struct IfFeatureRow {
  const char* argument;
  uint32_t status;
  const char* stored;  // "<module>|<feature>"
  const char* error;   // the first of the two messages
};

static const IfFeatureRow kIfFeatureRows[] = {
    {"f", QM_OK, "m|f", nullptr},
    {"m:f", QM_OK, "m|f", nullptr},
    {"o:f", QM_OK, "other|f", nullptr},
    {"f/rest", QM_OK, "m|f", nullptr},
    {"a and b", QM_INVALID, "", "Failed to parse xpath \"a and b\"."},
    {"not a", QM_INVALID, "", "Failed to parse xpath \"not a\"."},
    {"(a)", QM_FAILED, "", "Failed to parse xpath \"(a)\"."},
    {"", QM_FAILED, "", "Failed to parse xpath \"\"."},
    {"p:a", QM_INVALID, "", "Failed to find module by prefix \"p\"."},
};

TEST(ParseIfFeature, TakesOneReferenceAndNoExpression) {
  for (const IfFeatureRow& row : kIfFeatureRows) {
    SCOPED_TRACE(row.argument);
    yin::Context ctx;
    QmsIfFeature ref = {};
    EXPECT_EQ(row.status,
              ParseElement(ctx, QMS_LOADER_ParseIfFeature,
                           std::string("<if-feature name='") + row.argument + "'/>", 31, &ref));
    if (row.error == nullptr) {
      EXPECT_EQ(row.stored, std::string(ref.module) + "|" + ref.feature);
      EXPECT_THAT(ctx.Errors(), ElementsAre());
    } else {
      EXPECT_EQ(nullptr, ref.feature);
      EXPECT_THAT(ctx.Errors(), ElementsAre(std::string("m -: ") + row.error,
                                            std::string("m -: Failed to parse value \"") +
                                                row.argument + "\" of statement \"if-feature\"."));
    }
    QMS_NODE_ClearIfFeature(&ctx.Get()->dict, &ref);
  }
}

TEST(ParseIfFeature, NamesOfMoreThan64CharactersDoNotFit) {
  yin::Context ctx;
  QmsIfFeature ref = {};
  const std::string longest(64, 'f');
  EXPECT_EQ(QM_OK,
            ParseElement(ctx, QMS_LOADER_ParseIfFeature, "<i name='" + longest + "'/>", 31, &ref));
  EXPECT_EQ(longest, ref.feature);
  QMS_NODE_ClearIfFeature(&ctx.Get()->dict, &ref);
  EXPECT_EQ(QM_NAME_TOO_LONG,
            ParseElement(ctx, QMS_LOADER_ParseIfFeature, "<i name='" + longest + "f'/>", 31, &ref));
}
