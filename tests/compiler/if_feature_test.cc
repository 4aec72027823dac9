// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/if_feature.h"

#include <gtest/gtest.h>

#include <string>

namespace compiler {
namespace {

// "on..." is on, "off..." is off.
FeatureState Known(std::string_view, std::string_view name) {
  if (name.substr(0, 2) == "on") return FeatureState::kOn;
  return name.substr(0, 3) == "off" ? FeatureState::kOff : FeatureState::kUnknown;
}

std::optional<std::string> Same(std::string_view) {
  return std::nullopt;
}

std::string Outcome(const std::string& text) {
  FeatureExpr expr;
  XpathError error;
  if (!ParseIfFeature(text, true, &expr, &error)) {
    return std::to_string(error.offset) + ": " + error.message;
  }
  const FeatureRest rest = Reduce(expr, Known, Same);
  EXPECT_EQ(rest.state, Evaluate(expr, Known));
  if (rest.state != FeatureState::kUnknown) return rest.state == FeatureState::kOn ? "on" : "off";
  if (!rest.expressible) return "?";
  std::string out;
  for (const std::string& name : rest.features) out += (out.empty() ? "" : " ") + name;
  return out;
}

struct Row {
  const char* text;
  const char* outcome;
};

TEST(ReduceIfFeature, PutsInWhatIsKnown) {
  const Row kRows[] = {
      {"a", "a"},
      {"p:a", "p:a"},
      {"on", "on"},
      {"off", "off"},
      {"not on", "off"},
      {"a and b", "a b"},
      {"a and on and b and a", "a b"},
      {"a and off", "off"},
      {"a or on", "on"},
      {"a or off", "a"},
      {"a or b", "?"},
      {"not a", "?"},
      {"not not a", "a"},
      {"not (not (a))", "a"},
      {"a or a and b", "a"},
      {"a and b or b and a", "a b"},
      {"a and (off or b)", "a b"},
      {"a and (b or c)", "?"},
      {"(a and not off) or (off and b)", "a"},
      {"not (a or on)", "off"},
      {"  a\n and\tb ", "a b"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Outcome(row.text), row.outcome);
  }
}

TEST(ParseIfFeature, AndBindsTighterThanOr) {
  EXPECT_EQ(Outcome("on or off and off"), "on");
  EXPECT_EQ(Outcome("(on or off) and off"), "off");
  EXPECT_EQ(Outcome("not off and on"), "on");
}

TEST(ParseIfFeature, MistakesAreNamedWithTheirOffset) {
  const Row kRows[] = {
      {"", "0: a feature is missing here"},
      {" ", "1: a feature is missing here"},
      {"a and", "5: a feature is missing here"},
      {"a b", "2: the expression should end before this"},
      {"(a", "2: \")\" is missing here"},
      {"a)", "1: the expression should end before this"},
      {"()", "1: a feature is missing here"},
      {"p:", "0: \"p:\" is no name of a feature"},
      {"a and 1b", "6: \"1b\" is no name of a feature"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Outcome(row.text), row.outcome);
  }
  EXPECT_EQ(Outcome(std::string(300, '(') + "a" + std::string(300, ')')),
            "256: the expression is nested too deep");
}

TEST(ParseIfFeature, VersionOneHasOneFeature) {
  FeatureExpr expr;
  XpathError error;
  EXPECT_TRUE(ParseIfFeature("p:a", false, &expr, &error));
  EXPECT_FALSE(ParseIfFeature("a and b", false, &expr, &error));
  EXPECT_EQ(error.offset, 2U);
  EXPECT_EQ(error.message, "only one feature may stand here in YANG version 1");
  EXPECT_FALSE(ParseIfFeature("(a)", false, &expr, &error));
}

TEST(ParseIfFeature, MissingBlanksAreSlips) {
  FeatureExpr expr;
  XpathError error;
  ASSERT_TRUE(ParseIfFeature("not(a) and(b)", true, &expr, &error));
  ASSERT_EQ(expr.slips.size(), 2U);
  EXPECT_EQ(expr.slips[0].offset, 3U);
  EXPECT_EQ(expr.slips[0].message, "a blank is missing next to \"not\"");
  EXPECT_EQ(expr.slips[1].message, "a blank is missing next to \"and\"");
  ASSERT_TRUE(ParseIfFeature("not (a) and (b)", true, &expr, &error));
  EXPECT_TRUE(expr.slips.empty());
}

TEST(RenameFeatures, KeepsWhatIsNoPrefix) {
  FeatureExpr expr;
  XpathError error;
  ASSERT_TRUE(ParseIfFeature(" a  and ( not p:b or q:c )", true, &expr, &error));
  const auto rule = [](std::string_view prefix) -> std::optional<std::string> {
    if (prefix.empty()) return "own";
    if (prefix == "p") return "";
    return std::nullopt;
  };
  EXPECT_EQ(RenameFeatures(expr, rule), " own:a  and ( not b or q:c )");
}

}  // namespace
}  // namespace compiler
