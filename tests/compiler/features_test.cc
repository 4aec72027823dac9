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

// RFC 7950, section 7.20.1. It is said also of a module that is not written.
TEST_F(Features, ThatNeedWhatIsOffAreOffAndSaidWhenTheyAreNamed) {
  Module11("n", "feature a; feature b {\n  if-feature a; }");
  Module11("m", "import n { prefix n; } leaf l { if-feature n:b; type string; }");
  CompileOptions options = On({{"n", "b"}}, true);
  EXPECT_EQ(
      "n.yang:2: the feature \"b\" is off although -f names it, since it depends on one that is "
      "off\n",
      Findings("m", options));
  EXPECT_EQ("", Findings("m", On({{"n", "*"}, {"m", "*"}}, true)));
  EXPECT_EQ("", BodyOf(Run({"m"}, options), "m"));
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

TEST_F(Features, OfAugmentsStandOnTheirOperationsToo) {
  Module11("n", "container c;");
  Module11("m",
           "import n { prefix n; } feature a; feature b;\n"
           "augment /n:c { if-feature \"a and b\"; leaf x { type string; }\n"
           "  action act { if-feature b; } notification note; }");
  EXPECT_EQ(
      "feature a; feature b; augment /n:c { if-feature a; if-feature b; "
      "leaf x { type string; } action act { if-feature a; if-feature b; } "
      "notification note { if-feature a; if-feature b; } }",
      Body("m"));
}

TEST_F(Features, ThatAreOffTakeBlocksAndAugmentsOfNothingElseAlong) {
  Module11("f",
           "feature a; rpc r { input { leaf l { if-feature a; type string; } } }\n"
           "rpc q { output { leaf l { type string; } } }\n"
           "augment /q/output { if-feature a; leaf k { type string; } }\n"
           "augment /q/input { if-feature a; leaf k { type string; } } container e;");
  Module11("m",
           "import f { prefix f; } feature a;\n"
           "augment /f:e { when \"1 = 1\"; leaf z { if-feature a; type string; } }\n"
           "augment /f:r/f:input { leaf y { type string; } }");
  const JobResult result = Run({"m", "f"}, On({}, true));
  EXPECT_EQ(JobState::kDone, result.state) << result.findings[0];
  EXPECT_EQ("feature a; rpc r; rpc q { output { leaf l { type string; } } } container e;",
            BodyOf(result, "f"));
  EXPECT_EQ("feature a; augment /f:r/f:input { leaf y { type string; } }", BodyOf(result, "m"));
}

TEST_F(Features, OfItemsOfTypedefsThatMoveAreDecidedToo) {
  Module11("m",
           "feature a;\n"
           "container c { typedef t { type enumeration { enum z; enum x { if-feature a; } } }\n"
           "  leaf l { type t; } }");
  EXPECT_EQ(JobState::kLost, Run({"m"}).state) << "the condition of x is undecided";
  EXPECT_EQ(
      "feature a; container c { leaf l { type t; } } "
      "typedef t { type enumeration { enum z; } }",
      BodyOf(Run({"m"}, On({}, true)), "m"));
  EXPECT_EQ(
      "feature a; container c { leaf l { type t; } } "
      "typedef t { type enumeration { enum z; enum x; } }",
      BodyOf(Run({"m"}, On({{"m", "a"}})), "m"));
}

TEST_F(Features, ThatAreOffTakeItemsFromDerivedTypesToo) {
  Module11("m",
           "feature a; typedef t { type enumeration { enum z; enum x { if-feature a; } } }\n"
           "typedef u { type t { enum x; enum z; } } leaf l { type u { enum x; enum z; } }");
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum z; } } typedef u { type t { enum z; } } "
      "leaf l { type u { enum z; } }",
      BodyOf(Run({"m"}, On({}, true)), "m"));
}

TEST_F(Features, ThatLeaveATypeWithoutValuesAreReported) {
  Module11("m",
           "feature a;\n"
           "leaf e { type enumeration { enum x { if-feature a; } enum y { if-feature a; } } }\n"
           "leaf b { type bits { bit x { if-feature a; } } }");
  const JobResult result = Run({"m"}, On({}, true));
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(2u, result.findings.size());
  EXPECT_EQ(
      "feature a; leaf e { type enumeration { enum x; enum y; } } leaf b { type bits { bit x; } }",
      BodyOf(result, "m"))
      << "the library takes every text for an enumeration without enums";
}

TEST_F(Features, ThatLeaveADerivedTypeWithoutValuesAreReported) {
  Module11("m",
           "feature a; typedef t { type bits { bit x; bit z; } }\n"
           "leaf l { type t { bit x { if-feature a; } } }");
  const JobResult result = Run({"m"}, On({}, true));
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("feature a; typedef t { type bits { bit x; bit z; } } leaf l { type t; }",
            BodyOf(result, "m"));
}

TEST_F(Features, ThatLeaveAMemberOfAUnionWithoutValuesTakeItAlong) {
  Module11("m",
           "feature a; leaf l { type union { type enumeration { enum x { if-feature a; } }\n"
           "  type int8; type bits { bit x { if-feature a; } } } }\n"
           "leaf k { type union { type enumeration { enum x { if-feature a; } } } }");
  const JobResult result = Run({"m"}, On({}, true));
  EXPECT_EQ(1u, result.findings.size());
  EXPECT_EQ(
      "feature a; leaf l { type union { type int8; } } "
      "leaf k { type union { type enumeration { enum x; } } }",
      BodyOf(result, "m"));
}

TEST_F(Features, ThatTakeABaseOfWhatStaysAreReported) {
  Module11("f",
           "feature a; identity top { if-feature a; } identity i { if-feature a; base top; }\n"
           "identity gone { if-feature a; }");
  Module11("m", "import f { prefix f; } identity k { base f:i; }");
  const JobResult result = Run({"m", "f"}, On({}, true));
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(2u, result.findings.size());
  EXPECT_EQ("identity k { base f:i; base f:top; }", BodyOf(result, "m"));
  EXPECT_EQ("feature a; identity i { base top; } identity top;", BodyOf(result, "f"));
}

}  // namespace
}  // namespace compiler
