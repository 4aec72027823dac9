// SPDX-License-Identifier: BSD-3-Clause
// uses, refine, augment, submodules and shorthand cases, spelled out.
#include <gmock/gmock.h>

#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

using Uses = Compiling;

TEST_F(Uses, BecomeTheNodesOfTheirGroupingInPlace) {
  Module("m",
         "grouping g { leaf a { type string; } leaf b { type string; } }\n"
         "container c { leaf x { type string; } uses g; leaf y { type string; } }");
  EXPECT_EQ(
      "container c { leaf x { type string; } leaf a { type string; } leaf b { type string; } "
      "leaf y { type string; } }",
      Body("m"));
}

TEST_F(Uses, StandAnywhere) {
  Module11("m",
           "grouping g { leaf a { type string; } }\n"
           "uses g;\n"
           "list l { key k; leaf k { type string; } uses g; action act { input { uses g; } } }\n"
           "container o { choice ch { case one { uses g; } } }\n"
           "rpc r { input { uses g; } output { uses g; } }\n"
           "notification n { uses g; }");
  EXPECT_EQ(
      "leaf a { type string; } "
      "list l { key k; leaf k { type string; } leaf a { type string; } "
      "action act { input { leaf a { type string; } } } } "
      "container o { choice ch { case one { leaf a { type string; } } } } "
      "rpc r { input { leaf a { type string; } } output { leaf a { type string; } } } "
      "notification n { leaf a { type string; } }",
      Body("m"));
}

TEST_F(Uses, FindGroupingsOfEnclosingScopesFirst) {
  Module("m",
         "grouping g { leaf outer { type string; } }\n"
         "container c { grouping h { leaf inner { type string; } }\n"
         "  container d { uses h; uses g; } }");
  EXPECT_EQ(
      "container c { container d { leaf inner { type string; } leaf outer { type string; } } }",
      Body("m"));
}

TEST_F(Uses, FindGroupingsOfImportsAndTheirOwnGroupings) {
  Module("n",
         "grouping deep { leaf d { type string; } } grouping g { container e { uses deep; } }");
  Module("m", "import n { prefix other; } container c { uses other:g; }");
  EXPECT_EQ("container c { container e { leaf d { type string; } } }", Body("m"));
}

TEST_F(Uses, TakeTheGroupingOfTheRevisionImported) {
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01;\n"
        "  grouping g { leaf old { type string; } } }");
  Write("n@2021-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2021-01-01; revision 2020-01-01;\n"
        "  grouping g { leaf new { type string; } } }");
  Module("m", "import n { prefix n; revision-date 2020-01-01; } uses n:g;");
  Module("k", "import n { prefix n; } uses n:g;");
  EXPECT_EQ("leaf old { type string; }", Body("m"));
  EXPECT_EQ("leaf new { type string; }", Body("k"));
}

TEST_F(Uses, OfAnUnknownGroupingStopsTheModule) {
  Module("m", "container c {\n  uses none;\n}");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kStopped, result.state);
  EXPECT_TRUE(result.modules.empty());
  EXPECT_EQ("m.yang:3: the grouping \"none\" is not found\n", Findings("m"));
}

TEST_F(Uses, SayInFindingsWhereAGroupingWasUsed) {
  Module11("m",
           "feature x; feature y;\n"
           "grouping g {\n"
           "  leaf a { if-feature \"x or y\"; type string; }\n"
           "}\n"
           "container c {\n  uses g;\n}");
  const std::string findings = Findings("m");
  EXPECT_EQ(0u, findings.find("m.yang:4: ")) << findings;
  EXPECT_NE(std::string::npos, findings.find(", used at m.yang:7\n")) << findings;
}

TEST_F(Uses, CarryTheirConditionsAndStatus) {
  Module("m",
         "feature f;\n"
         "grouping g { leaf a { type string; } container b { status obsolete; } }\n"
         "container c { leaf x { type string; }\n"
         "  uses g { when \"x = 'y'\"; if-feature f; status deprecated; } }");
  EXPECT_EQ(
      "feature f; container c { leaf x { type string; } "
      "leaf a { when ../x = 'y'; if-feature f; type string; status deprecated; } "
      "container b { when ../x = 'y'; if-feature f; status obsolete; } }",
      Body("m"));
}

TEST_F(Uses, JoinConditionsOuterFirst) {
  Module("m",
         "grouping g { leaf a { when \"../p\"; type string; } }\n"
         "container c { leaf p { type string; } leaf q { type string; } leaf r { type string; }\n"
         "  grouping h { uses g { when q; } }\n"
         "  uses h { when r; } }");
  EXPECT_NE(std::string::npos, Body("m").find("leaf a { when (../r) and ((../q) and (../p));"))
      << Body("m");
}

TEST_F(Uses, GiveConditionsToChoicesAndCasesAsTheyAre) {
  Module("m",
         "grouping g { choice ch { leaf a { type string; } } }\n"
         "container c { leaf x { type string; } uses g { when \"x\"; } }");
  EXPECT_EQ(
      "container c { leaf x { type string; } "
      "choice ch { when x; case a { leaf a { type string; } } } }",
      Body("m"));
}

TEST_F(Uses, WriteConditionsAtTheTopAsAbsolutePaths) {
  Module("m",
         "container top { leaf x { type string; } }\n"
         "grouping g { container a; choice ch { leaf b { type string; } } }\n"
         "uses g { when \"top/x = 'on'\"; }");
  EXPECT_EQ(
      "container top { leaf x { type string; } } "
      "container a { when /top/x = 'on'; } "
      "choice ch { when /top/x = 'on'; case b { leaf b { type string; } } }",
      Body("m"));
}

TEST_F(Uses, LoseConditionsOfActionsAndNotifications) {
  Module11("m",
           "grouping g { action act; notification note; }\n"
           "container c { leaf x { type string; }\n  uses g { when x; }\n}");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("container c { leaf x { type string; } action act; notification note; }",
            BodyOf(result, "m"));
  EXPECT_EQ(2u, result.findings.size());
}

TEST_F(Uses, SayWhereAGroupingWasUsedThatLosesACondition) {
  Module11("m",
           "grouping g { action act; }\ngrouping h { uses g { when x; } leaf x { type string; } }\n"
           "container c {\n  uses h; }\ncontainer d {\n  uses h; }");
  EXPECT_EQ(
      "m.yang:3: the condition does not reach action \"act\", which takes none, used at m.yang:5\n"
      "m.yang:3: the condition does not reach action \"act\", which takes none, used at "
      "m.yang:7\n",
      Findings("m"));
}

using Refinements = Compiling;

TEST_F(Refinements, ChangeEveryPropertyThatTheyMay) {
  Module11(
      "m",
      "feature f;\n"
      "grouping g {\n"
      "  leaf a { type string; default x; description old; }\n"
      "  container b { description old; reference old; }\n"
      "  list l { key k; leaf k { type string; } min-elements 1; }\n"
      "  leaf-list ll { type string; default p; default q; }\n"
      "  choice ch { case one { leaf o { type string; } } case two { leaf t { type string; } } }\n"
      "}\n"
      "container c { uses g {\n"
      "  refine a { default y; config false; mandatory false; must \"1 = 1\"; if-feature f;"
      " description new; }\n"
      "  refine b { presence yes; reference new; }\n"
      "  refine l { min-elements 2; max-elements 3; }\n"
      "  refine ll { default r; default s; }\n"
      "  refine ch { default two; }\n"
      "  refine ch/one/o { mandatory true; }\n"
      "} }");
  EXPECT_EQ(
      "feature f; container c { "
      "leaf a { type string; description { text \"new\" } default y; config false; "
      "mandatory false; must 1 = 1; if-feature f; } "
      "container b { description { text \"old\" } reference { text \"new\" } presence yes; } "
      "list l { key k; leaf k { type string; } min-elements 2; max-elements 3; } "
      "leaf-list ll { type string; default r; default s; } "
      "choice ch { case one { leaf o { type string; mandatory true; } } "
      "case two { leaf t { type string; } } default two; } }",
      Body("m"));
}

TEST_F(Refinements, ReachThroughTheCasesThatAreNotWritten) {
  Module("m",
         "grouping g { choice ch { leaf a { type string; } } }\n"
         "uses g { refine ch/a/a { default x; } }");
  EXPECT_EQ("choice ch { case a { leaf a { type string; default x; } } }", Body("m"));
}

TEST_F(Refinements, OfNothingStopTheModule) {
  Module("m", "grouping g { leaf a { type string; } }\nuses g {\n  refine b { default x; } }");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_EQ("m.yang:4: the node to be refined is not in the grouping\n", Findings("m"));
}

TEST_F(Refinements, DoNotReachOtherUsesOfTheGrouping) {
  Module("m",
         "grouping g { leaf a { type string; } }\n"
         "container c { uses g { refine a { default x; } } } container d { uses g; }");
  EXPECT_EQ(
      "container c { leaf a { type string; default x; } } container d { leaf a { type string; } }",
      Body("m"));
}

using ImpliedCases = Compiling;

TEST_F(ImpliedCases, AreAsCurrentAsTheirNode) {
  Module("n", "choice ch;");
  Module("m",
         "import n { prefix n; }\n"
         "container h { choice ch { container a { status deprecated; }\n"
         "  leaf b { type string; status obsolete; } case c { leaf c { type string; } } } }\n"
         "augment /h/ch { status deprecated; leaf d { type string; }\n"
         "  leaf e { type string; status obsolete; } }\n"
         "augment /n:ch { leaf f { type string; status deprecated; } }");
  EXPECT_EQ(
      "container h { choice ch { "
      "case a { container a { status deprecated; } status deprecated; } "
      "case b { status obsolete; leaf b { type string; status obsolete; } } "
      "case c { leaf c { type string; } } "
      "case d { leaf d { type string; status deprecated; } status deprecated; } "
      "case e { status obsolete; leaf e { type string; status obsolete; } } } } "
      "augment /n:ch { case f { status deprecated; "
      "leaf f { type string; status deprecated; } } }",
      Body("m"));
}

using Augments = Compiling;

TEST_F(Augments, InsideUsesExtendWhatTheyBring) {
  Module("m",
         "grouping g { container b { leaf x { type string; } } }\n"
         "container c { uses g { augment b { when \"x\"; status deprecated;\n"
         "  leaf y { type string; } } } }");
  EXPECT_EQ(
      "container c { container b { leaf x { type string; } "
      "leaf y { when ../x; type string; status deprecated; } } }",
      Body("m"));
}

TEST_F(Augments, InsideUsesExtendWhatEachOtherBringInWhateverOrderTheyStand) {
  Module("m",
         "grouping g { container b; }\n"
         "container c { uses g {\n"
         "  augment b/d/e { leaf z { type string; } }\n"
         "  augment b/d { container e; }\n"
         "  augment b { container d; }\n"
         "  augment b { leaf y { type string; } } } }");
  EXPECT_EQ(
      "container c { container b { container d { container e { leaf z { type string; } } } "
      "leaf y { type string; } } }",
      Body("m"));
  EXPECT_EQ("", Findings("m"));
}

TEST_F(Augments, OfOwnNodesAreFoldedInWhateverOrderTheyStand) {
  Module("m",
         "augment /m:c/m:d/m:e { leaf z { type string; } }\n"
         "augment /m:c/m:d { container e; }\n"
         "augment /c { container d; }\n"
         "container c;");
  EXPECT_EQ("container c { container d { container e { leaf z { type string; } } } }", Body("m"));
}

TEST_F(Augments, OfOwnNodesInOtherTreesAreFoldedToo) {
  Module("n", "container c { leaf k { type string; } }");
  Module("m",
         "import n { prefix n; }\n"
         "augment /n:c/m:d { when \"../n:k\"; leaf z { type string; } }\n"
         "augment /n:c { container d; }");
  EXPECT_EQ("augment /n:c { container d { leaf z { when ../../n:k; type string; } } }", Body("m"));
}

TEST_F(Augments, OfOwnNodesThatAreNotThereStopTheModule) {
  Module("m", "container c;\naugment /m:d { leaf z { type string; } }");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_EQ("m.yang:3: the target of the augment is not found in the module\n", Findings("m"));
}

TEST_F(Augments, WhereNoneMayStandAreLeftOut) {
  Module("m", "container c;\naugment /m:c { augment /m:d { leaf a { type string; } } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("container c;", BodyOf(result, "m"));
}

TEST_F(Augments, MakeAnInputThatIsNotWritten) {
  Module("m", "rpc r;\naugment /m:r/m:input { leaf z { type string; } }");
  EXPECT_EQ("rpc r { input { leaf z { type string; } } }", Body("m"));
}

TEST_F(Augments, FindTheInputAndOutputThatAnotherModuleDoesNotWrite) {
  Module11("n", "rpc r; container c { action act { output { leaf o { type string; } } } }");
  Module11("m",
           "import n { prefix n; }\n"
           "augment /n:r/n:output { leaf a { type string; } }\n"
           "augment /n:c/n:act/n:input/m:b { leaf z { type string; } }\n"
           "augment /n:c/n:act/n:input { container b; }");
  EXPECT_EQ(
      "augment /n:r/n:output { leaf a { type string; } } "
      "augment /n:c/n:act/n:input { container b { leaf z { type string; } } }",
      Body("m"));
  // The library makes them.
  EXPECT_EQ("rpc r; container c { action act { output { leaf o { type string; } } } }", Body("n"));
}

TEST_F(Augments, OfAnInputThatIsNotWrittenAreWhereConditionsLook) {
  Module11("i", "identity base; identity one { base base; }");
  Module("n", "rpc r;");
  Module11("m",
           "import n { prefix n; } import i { prefix i; }\n"
           "augment /n:r/n:input { when \"m:kind != 'one'\";\n"
           "  leaf kind { type identityref { base i:base; } }\n"
           "  leaf a { when \"../kind = 'i:one'\"; type string; } }");
  EXPECT_EQ("", Findings("m"));
}

TEST_F(Augments, AreWrittenWithAPrefixOnEachStep) {
  Module("n", "container c { container d { container e; } }");
  Module("m",
         "import n { prefix x; }\n"
         "augment \"/x:c/x:d/x:e\" { leaf z { type string; } }");
  EXPECT_EQ("augment /x:c/x:d/x:e { leaf z { type string; } }", Body("m"));
}

TEST_F(Augments, BringCasesToChoicesOfOtherModules) {
  Module("n", "choice ch { leaf a { type string; } }");
  Module("m",
         "import n { prefix n; }\n"
         "augment /n:ch { leaf b { type string; } case c { leaf c { type string; } } }\n"
         "augment /n:ch/n:a { leaf a2 { type string; } }");
  EXPECT_EQ(
      "augment /n:ch { case b { leaf b { type string; } } case c { leaf c { type string; } } } "
      "augment /n:ch/n:a { leaf a2 { type string; } }",
      Body("m"));
}

TEST_F(Augments, ReachTheOwnCasesThatTheyBringToChoicesOfOtherModules) {
  Module("n", "choice ch { leaf a { type string; } }");
  Module("m",
         "import n { prefix n; }\n"
         "augment /n:ch/m:b { leaf b2 { type string; } }\n"
         "augment /n:ch/m:c/m:c { leaf c2 { type string; } }\n"
         "augment /n:ch { leaf b { type string; } container c; }");
  EXPECT_EQ(
      "augment /n:ch { case b { leaf b { type string; } leaf b2 { type string; } } "
      "case c { container c { leaf c2 { type string; } } } }",
      Body("m"));
}

TEST_F(Augments, LeadThroughTheCasesThatAnotherModuleBrings) {
  Module("a", "container h { choice ch; }");
  Module("b", "import a { prefix a; } augment /a:h/a:ch { container x; }");
  Module("c",
         "import a { prefix a; } import b { prefix b; }"
         " augment /a:h/a:ch/b:x/b:x { leaf l { type string; } }");
  EXPECT_EQ("augment /a:h/a:ch/b:x/b:x { leaf l { type string; } }", Body("c"));
}

TEST_F(Augments, OfOneNodeThatIsNotThereYetComeBehindThoseThatStandAfterIt) {
  Module("m",
         "container c;"
         " augment /c/d { leaf first { type string; } }"
         " augment /c { container d; }"
         " augment /c/d { leaf second { type string; } }"
         " augment /c/d { leaf third { type string; } }");
  EXPECT_EQ(
      "container c { container d { leaf second { type string; } leaf third { type string; }"
      " leaf first { type string; } } }",
      Body("m"));
}

TEST_F(Augments, KeepAConditionThatTheLibraryHandsDownRightly) {
  Module("n", "container c { leaf type { type string; } }");
  Module("m",
         "import n { prefix n; } augment /n:c { when \"n:type = 'x'\"; leaf a { type string; } }");
  EXPECT_EQ("augment /n:c { when n:type = 'x'; leaf a { type string; } }", Body("m"));
}

TEST_F(Augments, GiveOtherConditionsToTheirChildren) {
  // "../a" is longer than twice "a"; a choice takes the condition as it is.
  Module("n", "container c { leaf a { type string; } }");
  Module("m",
         "import n { prefix n; } augment /n:c { leaf a { type string; } }\n"
         "augment /n:c { when \"a\"; leaf b { type string; } }\n"
         "augment /n:c { when \"n:a = 'long enough'\"; choice d { leaf e { type string; } } }");
  EXPECT_EQ(
      "augment /n:c { leaf a { type string; } } "
      "augment /n:c { leaf b { when ../a; type string; } } "
      "augment /n:c { choice d { when n:a = 'long enough'; case e { leaf e { type string; } } } }",
      Body("m"));
}

// It has room for twice the length with module names for prefixes, which are shorter here.
TEST_F(Augments, GiveConditionsToTheirChildrenThatAreShorterInTheLibrary) {
  Write("n.yang",
        "module n { namespace urn:n; prefix long-prefix; identity q; "
        "container c { leaf x { type identityref { base q; } } } }");
  Module("m",
         "import n { prefix long-prefix; } augment /long-prefix:c { "
         "when \"x=x=x=x=x=x='long-prefix:q'\"; leaf x { type identityref { base "
         "long-prefix:q; } } }");
  EXPECT_THAT(BodyOf(Run({"m"}), "m"),
              testing::HasSubstr("leaf x { when ../x=../x=../x=../x=../x=../x='long-prefix:q';"));
}

TEST_F(Augments, OfNodesThatAnotherModuleDoesNotHaveAreSaid) {
  Module("n", "container c;");
  Module("m", "import n { prefix n; }\naugment /n:d { leaf a { type string; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("augment /n:d { leaf a { type string; } }", BodyOf(result, "m"));
  EXPECT_EQ("m.yang:3: the target of the augment is not found\n", Findings("m"));
}

using Submodules = Compiling;

TEST_F(Submodules, FoldIntoTheirModuleWhereTheyAreIncluded) {
  Write("m.yang",
        "module m { namespace urn:m; prefix m; include s; include t; container last { uses g; } }");
  Write("s.yang",
        "submodule s { belongs-to m { prefix sm; } include t; container first { uses sm:g; } }");
  Write("t.yang",
        "submodule t { belongs-to m { prefix tm; } grouping g { leaf a { type u; } }\n"
        "  typedef u { type string; } container middle; }");
  EXPECT_EQ(
      "typedef u { type string; } container middle; container first { leaf a { type u; } } "
      "container last { leaf a { type u; } }",
      Body("m"));
}

TEST_F(Submodules, KeepTheMeaningOfTheirImportPrefixes) {
  Module("a", "typedef t { type int8; }");
  Module("b", "typedef t { type int16; }");
  Write("m.yang",
        "module m { namespace urn:m; prefix m; import a { prefix x; } include s;\n"
        "  leaf one { type x:t; } }");
  Write("s.yang",
        "submodule s { belongs-to m { prefix m; } import b { prefix x; } leaf two { type x:t; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ("x=a x2=b", ImportsOf(result, "m"));
  EXPECT_EQ("leaf two { type x2:t; } leaf one { type x:t; }", BodyOf(result, "m"));
}

TEST_F(Submodules, ThatAreMissingStopTheModule) {
  Module("m", "include s;");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_EQ("m.yang:2: the included submodule \"s\" is not found; add its folder with -p\n",
            Findings("m"));
}

TEST_F(Submodules, OfAnotherModuleStopTheModule) {
  Write("s.yang", "submodule s { belongs-to other { prefix o; } }");
  Module("m", "include s;");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
}

using ShorthandCases = Compiling;

TEST_F(ShorthandCases, BecomeCases) {
  Module11("m",
           "choice ch { default a; leaf a { type string; } container b;\n"
           "  choice inner { leaf c { type string; } } case d { leaf d { type string; } } }\n"
           "augment /m:ch/m:a { leaf a2 { type string; } }");
  EXPECT_EQ(
      "choice ch { default a; case a { leaf a { type string; } leaf a2 { type string; } } "
      "case b { container b; } "
      "case inner { choice inner { case c { leaf c { type string; } } } } "
      "case d { leaf d { type string; } } }",
      Body("m"));
}

using Bounds = Compiling;

TEST_F(Bounds, AreCountedBeforeAnythingIsCopied) {
  std::string text = "grouping g0 { leaf a { type string; } }\n";
  for (int i = 1; i <= 30; ++i) {
    const std::string former = "g" + std::to_string(i - 1);
    text += "grouping g" + std::to_string(i) + " { container x { uses " + former +
            "; } container y { uses " + former + "; } }\n";
  }
  Module("m", text + "uses g30;");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_NE(std::string::npos, Findings("m").find("more than 1000000 nodes"));
}

// Lint looks at each grouping for itself, and so at three times as many nodes.
TEST_F(Bounds, TakeHalfAMillionNodesOfGroupingsThatDouble) {
  std::string text = "grouping g0 { leaf a { type string; } }\n";
  for (int i = 1; i <= 18; ++i) {
    const std::string former = "g" + std::to_string(i - 1);
    text += "grouping g" + std::to_string(i) + " { container x { uses " + former +
            "; } container y { uses " + former + "; } }\n";
  }
  Module("m", text + "uses g18;");
  EXPECT_EQ(JobState::kDone, Run({"m"}).state);
  EXPECT_EQ("", Findings("m"));
}

TEST_F(Bounds, TakeOneHundredThousandNodes) {
  std::string text = "grouping g0 { leaf a { type string; } }\n";
  for (int i = 1; i <= 15; ++i) {
    const std::string former = "g" + std::to_string(i - 1);
    text += "grouping g" + std::to_string(i) + " { container x { uses " + former +
            "; } container y { uses " + former + "; } }\n";
  }
  Module("m", text + "uses g15;");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kDone, result.state);
  ASSERT_EQ(1u, result.modules.size());
  size_t leaves = 0;
  const std::string& yin = result.modules[0].yin;
  for (size_t at = yin.find("<leaf"); at != std::string::npos; at = yin.find("<leaf", at + 1))
    ++leaves;
  EXPECT_EQ(size_t{1} << 15, leaves);
}

using Circles = Compiling;

TEST_F(Circles, NameThoseThatAreInThem) {
  const struct {
    const char* body;
    const char* message;
  } rows[] = {
      {"grouping a { uses b; } grouping b { container x { uses a; } }",
       "circle of groupings: a -> b -> a"},
      {"grouping a { uses a; }", "circle of groupings: a -> a"},
      {"typedef a { type b; } typedef b { type union { type string; type a; } }",
       "circle of typedefs: a -> b -> a"},
      {"identity a { base b; } identity b { base c; } identity c { base a; }",
       "circle of identities: a -> b -> c -> a"},
      {"feature a { if-feature b; } feature b { if-feature a; }",
       "circle of features: a -> b -> a"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.body);
    Module("m", row.body);
    EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
    EXPECT_NE(std::string::npos, Findings("m").find(row.message)) << Findings("m");
  }
}

TEST_F(Circles, OfImportsAndIncludesAreErrors) {
  Module("m", "import n { prefix n; }");
  Module("n", "import m { prefix m; }");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_NE(std::string::npos, Findings("m").find("circle of imports: m -> n -> m"))
      << Findings("m");
  Write("k.yang", "module k { namespace urn:k; prefix k; include s; include t; }");
  Write("s.yang", "submodule s { belongs-to k { prefix k; } include t; }");
  Write("t.yang", "submodule t { belongs-to k { prefix k; } include s; }");
  EXPECT_EQ(JobState::kStopped, Run({"k"}).state);
  EXPECT_NE(std::string::npos, Findings("k").find("circle of includes: s -> t -> s"))
      << Findings("k");
}

}  // namespace
}  // namespace compiler
