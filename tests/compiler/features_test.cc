// SPDX-License-Identifier: BSD-3-Clause
// Features and their expressions.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class Features : public Compiling {
 protected:
  static CompileOptions On(std::vector<FeatureName> names, bool complete = false) {
    CompileOptions options;
    options.features = std::move(names);
    options.featuresComplete = complete;
    return options;
  }
};

TEST_F(Features, AConjunctionBecomesSeveralStatements) {
  Module11("m",
           "feature a; feature b; feature c;\n"
           "leaf l { if-feature \"a and b and (a and c)\"; type string; }");
  EXPECT_EQ(
      "feature a; feature b; feature c; "
      "leaf l { if-feature a; if-feature b; if-feature c; type string; }",
      Body("m"));
}

TEST_F(Features, ThoseOfTheOptionsDecide) {
  Module11("m",
           "feature a; feature b;\n"
           "leaf one { if-feature a; type string; } leaf two { if-feature b; type string; }\n"
           "leaf three { if-feature \"a or b\"; type string; }\n"
           "leaf four { if-feature \"not a\"; type string; }\n"
           "leaf five { if-feature \"a and b\"; type string; }");
  const JobResult result = Run({"m"}, On({{"m", "a"}}));
  EXPECT_EQ(JobState::kDone, result.state);
  EXPECT_EQ(
      "feature a; feature b; leaf one { type string; } leaf two { if-feature b; type string; } "
      "leaf three { type string; } leaf five { if-feature b; type string; }",
      BodyOf(result, "m"));
}

TEST_F(Features, ACompleteListTurnsTheRestOff) {
  Module11("m",
           "feature a; feature b { if-feature a; }\n"
           "leaf one { if-feature a; type string; } leaf two { if-feature b; type string; }\n"
           "identity i { if-feature a; } rpc r { if-feature b; }\n"
           "leaf e { type enumeration { enum x; enum y { if-feature a; } } }");
  EXPECT_EQ("feature a; leaf e { type enumeration { enum x; } }",
            BodyOf(Run({"m"}, On({{"m", "b"}}, true)), "m"))
      << "b needs a, which is off";
  EXPECT_EQ(
      "feature a; feature b; leaf one { type string; } leaf two { type string; } "
      "identity i; rpc r; leaf e { type enumeration { enum x; enum y; } }",
      BodyOf(Run({"m"}, On({{"m", "*"}}, true)), "m"));
}

TEST_F(Features, WhatStaysUndecidedIsKeptAndReported) {
  Module11("m", "feature a; feature b;\nleaf l {\n  if-feature \"a or not b\";\n  type string; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("feature a; feature b; leaf l { type string; }", BodyOf(result, "m"));
  EXPECT_EQ(0u, Findings("m").find("m.yang:4: ")) << Findings("m");
}

TEST_F(Features, OfEnumsAndBitsAreReportedUnlessDecided) {
  Module11("m",
           "feature a;\nleaf e { type enumeration { enum x; enum y { if-feature a; } } }\n"
           "leaf b { type bits { bit x; bit y { if-feature a; } } }");
  EXPECT_EQ(JobState::kLost, Run({"m"}).state);
  EXPECT_EQ(JobState::kDone, Run({"m"}, On({{"m", "a"}})).state);
}

TEST_F(Features, ThatAreNotDefinedLeaveTheirConditionOut) {
  Module("m", "leaf l { if-feature none; type string; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf l { type string; }", BodyOf(result, "m"));
}

TEST_F(Features, ADefaultCaseThatGoesTakesTheDefaultAlong) {
  Module11("m",
           "feature a; choice ch { default x; case x { if-feature a; leaf x { type string; } }\n"
           "  case y { leaf y { type string; } } }");
  EXPECT_EQ("feature a; choice ch { case y { leaf y { type string; } } }",
            BodyOf(Run({"m"}, On({}, true)), "m"));
}

TEST_F(Features, OfUsesAndAugmentsReachTheirNodes) {
  Module11("n", "container c;");
  Module11("m",
           "import n { prefix n; } feature a; feature b; grouping g { leaf x { type string; } }\n"
           "augment /n:c { if-feature \"a and b\"; uses g { if-feature a; } }");
  EXPECT_EQ(
      "feature a; feature b; augment /n:c { if-feature a; if-feature b; "
      "leaf x { if-feature a; type string; } }",
      Body("m"));
}

}  // namespace
}  // namespace compiler
