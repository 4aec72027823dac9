// SPDX-License-Identifier: BSD-3-Clause
#include "yin/stmt_must_when.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/dict.h"
#include "schema/node_array.h"
#include "tests/support/yin.h"

using testing::ElementsAre;
using yin::ParseElement;

TEST(ParseWhen, ASecondConditionReplacesTheFirst) {
  yin::Context ctx;
  const char* when = nullptr;
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseWhen, "<when condition='a'/>", 13, &when));
  EXPECT_EQ(QM_OK,
            ParseElement(ctx, QMS_LOADER_ParseWhen, "<when condition=\"b = 'o:x'\"/>", 13, &when));
  EXPECT_STREQ("b = 'other:x'", when);
  ReleaseText(&ctx.Get()->dict, &when);
}

TEST(ParseWhen, AConditionThatCannotBeRewrittenIsKeptAsWritten) {
  yin::Context ctx;
  const char* when = nullptr;
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseWhen, "<when condition='$x'/>", 13, &when));
  EXPECT_STREQ("$x", when);
  ReleaseText(&ctx.Get()->dict, &when);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to transfer prefix to module name in "
                                        "statement \"when\"."));
}

TEST(ParseMust, AConditionThatIsTooLongIsKeptAsWritten) {
  yin::Context ctx;
  QmsMust must = {};
  const std::string condition(3097, 'a');
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseMust, "<must condition='" + condition + "'/>",
                                13, &must));
  EXPECT_EQ(condition, must.condition);
  QMS_NODE_ClearMust(&ctx.Get()->dict, &must);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to transfer prefix to module name in "
                                        "statement \"must\"."));
}

TEST(ParseMust, ErrorTextsGoIntoTheSameRecord) {
  yin::Context ctx;
  QmsMust must = {};
  EXPECT_EQ(QM_OK, ParseElement(ctx, QMS_LOADER_ParseMust,
                                "<must condition=\"derived-from(../t, 'm:base')\">"
                                "<error-message><value>no</value></error-message>"
                                "<error-app-tag value='tag'/><description/></must>",
                                13, &must));
  EXPECT_STREQ("derived-from(../t, 'm:base')", must.condition);
  EXPECT_STREQ("no", must.errorMessage);
  EXPECT_STREQ("tag", must.errorAppTag);
  QMS_NODE_ClearMust(&ctx.Get()->dict, &must);
}

TEST(ParseMust, AFailedSubStatementClearsTheRecord) {
  yin::Context ctx;
  QmsMust must = {};
  EXPECT_EQ(QM_INVALID, ParseElement(ctx, QMS_LOADER_ParseMust,
                                     "<must condition='o:a'><error-app-tag/></must>", 13, &must));
  EXPECT_EQ(nullptr, must.condition);
  EXPECT_THAT(ctx.Errors(),
              ElementsAre("m -: Failed to get value of statement \"error-app-tag\".",
                          "m -: Failed to parse value \"o:a\" of statement \"must\"."));
}
