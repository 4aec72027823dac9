// SPDX-License-Identifier: BSD-3-Clause
// What the nodes that features take away take along.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class Departures : public Compiling {
 protected:
  static CompileOptions AllOff() {
    CompileOptions options;
    options.featuresComplete = true;
    return options;
  }
  // Compiles with every feature off; `lost` findings are to be said.
  JobResult RunOff(const std::vector<std::string>& operands, size_t lost) const {
    const JobResult result = Run(operands, AllOff());
    EXPECT_EQ(lost, result.findings.size())
        << (result.findings.empty() ? std::string() : result.findings[0]);
    EXPECT_EQ(lost == 0 ? JobState::kDone : JobState::kLost, result.state);
    return result;
  }
};

TEST_F(Departures, AnAugmentGoesWithItsTarget) {
  Module11("n", "feature a; container c { container d { if-feature a; } }");
  Module11("m", "import n { prefix n; }\naugment /n:c/n:d {\n  leaf l { type string; } }");
  const JobResult result = RunOff({"m", "n"}, 1);
  EXPECT_EQ("", BodyOf(result, "m"));
  EXPECT_EQ("feature a; container c;", BodyOf(result, "n"));
  EXPECT_EQ(0u, Findings("m", AllOff())
                    .find("m.yang:3: the target of the augment, in module \"n\", depends on a "
                          "feature that is off; the augment is left out"))
      << Findings("m", AllOff());
}

TEST_F(Departures, AnAugmentGoesWithTheOneThatBringsItsTarget) {
  Module11("n", "feature a; container c { if-feature a; }");
  Module11("o",
           "import n { prefix n; } import m { prefix m; }\n"
           "augment /n:c/m:d/o:e { leaf f { type string; } }\n"
           "augment /n:c/m:d { container e; }");
  Module11("m", "import n { prefix n; } augment /n:c { container d; }");
  const JobResult result = RunOff({"o", "m", "n"}, 2);
  EXPECT_EQ("", BodyOf(result, "o"));
  EXPECT_EQ("", BodyOf(result, "m"));
}

TEST_F(Departures, AnAugmentOfWhatStaysIsKept) {
  Module11("n", "feature a; container c { leaf x { if-feature a; type string; } }");
  Module11("m", "import n { prefix n; } augment /n:c { leaf l { type string; } }");
  EXPECT_EQ("augment /n:c { leaf l { type string; } }", BodyOf(RunOff({"m", "n"}, 0), "m"));
}

TEST_F(Departures, ADeviationGoesWithItsTarget) {
  Module11("n",
           "feature a; container c { leaf x { if-feature a; type string; }\n"
           "  leaf y { type string; } }");
  Module11("m",
           "import n { prefix n; }\n"
           "deviation /n:c/n:x { deviate not-supported; }\n"
           "deviation /n:c/n:y { deviate not-supported; }");
  EXPECT_EQ("deviation /n:c/n:y { deviate not-supported; }", BodyOf(RunOff({"m"}, 1), "m"));
}

TEST_F(Departures, AListGoesWithItsKey) {
  Module("m",
         "feature a; list l { key \"k j\"; leaf k { if-feature a; type string; }\n"
         "  leaf j { type string; } leaf v { type string; } }");
  const JobResult result = Run({"m"}, AllOff());
  EXPECT_EQ("feature a;", BodyOf(result, "m"));
  EXPECT_NE(std::string::npos,
            Findings("m", AllOff())
                .find("the key \"k\" of list \"l\" depends on a feature that is off; the list is "
                      "left out"));
}

TEST_F(Departures, AListWithoutAnyNodeLeaves) {
  Module11(
      "m",
      "feature a; container c { config false; list l { leaf v { if-feature a; type string; } }\n"
      "  container d { leaf v { if-feature a; type string; } } }");
  EXPECT_EQ("feature a; container c { config false; container d; }", BodyOf(RunOff({"m"}, 1), "m"));
}

TEST_F(Departures, AListWithoutNodesOfItsOwnStaysForThoseOfAnAugment) {
  Module11("n",
           "feature a; feature b; list l { config false; leaf v { if-feature a; type string; } }");
  Module11("m", "import n { prefix n; } augment /n:l { leaf w { type string; } }");
  const JobResult result = RunOff({"m", "n"}, 0);
  EXPECT_EQ("feature a; feature b; list l { config false; }", BodyOf(result, "n"));
  EXPECT_EQ("augment /n:l { leaf w { type string; } }", BodyOf(result, "m"));
  Module11("m", "import n { prefix n; } augment /n:l { leaf w { if-feature n:b; type string; } }");
  EXPECT_EQ("feature a; feature b;", BodyOf(RunOff({"m", "n"}, 1), "n"));
}

TEST_F(Departures, TheCaseThatANodeStandsForStaysForThoseOfAnAugment) {
  Module11("n",
           "feature a; feature b;\n"
           "choice c { default v; leaf v { if-feature a; type string; }\n"
           "  leaf u { if-feature a; status deprecated; type string; } }");
  Module11("m", "import n { prefix n; } augment /n:c/n:v { leaf w { type string; } }");
  const JobResult result = RunOff({"m", "n"}, 0);
  EXPECT_EQ("feature a; feature b; choice c { default v; case v; }", BodyOf(result, "n"));
  EXPECT_EQ("augment /n:c/n:v { leaf w { type string; } }", BodyOf(result, "m"));
  Module11("m",
           "import n { prefix n; } augment /n:c/n:v { leaf w { if-feature n:b; type string; } }");
  EXPECT_EQ("feature a; feature b; choice c;", BodyOf(RunOff({"m", "n"}, 0), "n"));
}

TEST_F(Departures, AListThatLeavesTakesAnAugmentAlong) {
  Module(
      "n",
      "feature a; list l { key k; leaf k { if-feature a; type string; } leaf v { type string; } }");
  Module("m", "import n { prefix n; } augment /n:l { leaf w { type string; } }");
  EXPECT_EQ("", BodyOf(Run({"m"}, AllOff()), "m"));
}

TEST_F(Departures, AUniqueThatNamesWhatHasLeftNeverApplies) {
  Module11("n",
           "feature a; list l { key k; unique \"c/u v\"; unique \"v w\"; leaf k { type string; }\n"
           "  leaf v { type string; } leaf w { type string; }\n"
           "  container c { leaf u { if-feature a; type string; } } }");
  Module11("m",
           "import n { prefix n; }\n"
           "deviation /n:l { deviate delete { unique \"c/u v\"; unique \"v w\"; } }");
  const JobResult result = RunOff({"m", "n"}, 0);
  EXPECT_EQ(
      "feature a; list l { key k; unique v w; leaf k { type string; } leaf v { type string; } "
      "leaf w { type string; } container c; }",
      BodyOf(result, "n"));
  EXPECT_EQ("deviation /n:l { deviate delete { unique v w; } }", BodyOf(result, "m"));
}

TEST_F(Departures, WhatStoodBesideTheNodesGoesWithThemAndIsSaid) {
  Module11("n",
           "feature a; extension e;\n"
           "rpc r { input {\n  must \"x\"; leaf x { if-feature a; type string; } }\n"
           "  output {\n  n:e; leaf o { if-feature a; type string; } } }\n"
           "container c;");
  Module11("m",
           "import n { prefix n; } feature b;\n"
           "augment /n:c {\n  n:e; leaf al { if-feature b; type string; } }\n"
           "augment /n:r/n:input { leaf ai { type string; } }");
  const JobResult result = RunOff({"m", "n"}, 3);
  EXPECT_EQ("feature a; extension e; rpc r; container c;", BodyOf(result, "n"));
  EXPECT_EQ("feature b; augment /n:r/n:input { leaf ai { type string; } }", BodyOf(result, "m"));
}

TEST_F(Departures, AMandatoryChoiceWithoutNodesIsReported) {
  Module11(
      "m",
      "feature a; rpc r { input { choice c { mandatory true;\n"
      "  case d { leaf x { if-feature a; type string; } } leaf y { if-feature a; type string; } }\n"
      "  choice e { mandatory true; leaf f { type string; } leaf g { if-feature a; type string; } "
      "}\n"
      "} }");
  EXPECT_EQ(
      "feature a; rpc r { input { choice c { mandatory true; case d; } "
      "choice e { mandatory true; case f { leaf f { type string; } } } } }",
      BodyOf(RunOff({"m"}, 1), "m"));
}

TEST_F(Departures, AConditionIsWrittenWithoutPathsToWhatHasLeft) {
  Module11(
      "m",
      "feature a; container c { leaf x { if-feature a; type string; } leaf y { type string; }\n"
      "  leaf one { when \"../x = 'b' or ../y\"; type string; }\n"
      "  leaf two { when \"not(../x) and ../y = 'b'\"; type string; }\n"
      "  leaf three { when \"not(../x)\"; must \"count(../x) < ../y\"; type string; }\n"
      "  leaf four { must \"../y and not(../x = ../y)\"; type string; } }");
  EXPECT_EQ(
      "feature a; container c { leaf y { type string; } leaf one { when ../y; type string; } "
      "leaf two { when ../y = 'b'; type string; } leaf three { must 0 < ../y; type string; } "
      "leaf four { must ../y; type string; } }",
      BodyOf(RunOff({"m"}, 0), "m"));
}

TEST_F(Departures, AConditionThatCanNeverHoldIsReported) {
  Module11("m",
           "feature a; container c { leaf x { if-feature a; type string; }\n"
           "  leaf l { when \"../x = 'b'\"; type string; }\n"
           "  leaf k { must \"../x\"; type string; } }");
  EXPECT_EQ(
      "feature a; container c { leaf l { when 1 = 0; type string; } "
      "leaf k { must 1 = 0; type string; } }",
      BodyOf(RunOff({"m"}, 2), "m"));
}

TEST_F(Departures, ConditionsOfUsesAugmentsAndDeviationsAreWrittenWithoutThemToo) {
  Module11(
      "n",
      "feature a; container c { leaf x { if-feature a; type string; } leaf y { type string; }\n"
      "  choice h { when \"x or y\"; leaf z { type string; } } }\n"
      "grouping g { leaf p { type string; } }\n"
      "container d { uses g { when \"not(/c/x)\"; } }");
  Module11("m",
           "import n { prefix n; }\n"
           "augment /n:c { when \"n:x or n:y\"; leaf l { type string; } }\n"
           "deviation /n:c/n:y { deviate add { must \"not(../n:x) or ../n:z\"; } }");
  const JobResult result = RunOff({"m", "n"}, 0);
  EXPECT_EQ(
      "feature a; container c { leaf y { type string; } "
      "choice h { when y; case z { leaf z { type string; } } } } "
      "container d { leaf p { type string; } }",
      BodyOf(result, "n"));
  EXPECT_EQ("augment /n:c { when n:y; leaf l { type string; } }", BodyOf(result, "m"));
}

TEST_F(Departures, NothingIsDerivedFromAnIdentityThatHasLeft) {
  Module11("m",
           "feature a; identity b; identity gone { if-feature a; base b; }\n"
           "container c { leaf i { type identityref { base b; } } leaf y { type string; }\n"
           "  leaf l { when \"derived-from-or-self(../i, 'm:gone') or ../y\"; type string; } }");
  EXPECT_EQ(
      "feature a; identity b; container c { leaf i { type identityref { base b; } } "
      "leaf y { type string; } leaf l { when ../y; type string; } }",
      BodyOf(RunOff({"m"}, 0), "m"));
}

TEST_F(Departures, AConditionThatLedNowhereBeforeIsLeftAlone) {
  Module11("m",
           "feature a; container c { leaf x { if-feature a; type string; }\n"
           "  leaf l { when \"../nowhere\"; type string; } }");
  const JobResult result = Run({"m"}, AllOff());
  EXPECT_EQ("feature a; container c { leaf l { when ../nowhere; type string; } }",
            BodyOf(result, "m"));
}

TEST_F(Departures, ALeafrefGetsTheTypeOfATargetThatHasLeft) {
  Module11(
      "m",
      "feature a; typedef t { type uint8 { range 1..9; } default 5; }\n"
      "typedef r { type leafref { path \"/c/x\"; } } typedef s { type leafref { path ../x; } "
      "default 7; }\n"
      "container c { leaf x { if-feature a; type uint8; } leaf d { if-feature a; type t; }\n"
      "  leaf one { type leafref { path ../x; } } leaf two { type r; } leaf three { type s; }\n"
      "  leaf four { type leafref { path ../d; } }\n"
      "  leaf five { type union { type leafref { path ../d; } type string; } }\n"
      "  leaf six { type leafref { path ../one; } } }");
  EXPECT_EQ(
      "feature a; typedef t { type uint8 { range 1..9; } default 5; } typedef r { type uint8; } "
      "typedef s { type leafref { path ../m:x; } default 7; } "
      "container c { leaf one { type uint8; } leaf two { type r; } "
      "leaf three { type uint8; default 7; } leaf four { type union { type t; } } "
      "leaf five { type union { type t; type string; } } "
      "leaf six { type leafref { path ../m:one; } } }",
      BodyOf(RunOff({"m"}, 4), "m"));
}

TEST_F(Departures, ATemplateOfDataWithoutNodesLeaves) {
  Module("ietf-restconf", "extension yang-data { argument name; }");
  Write(
      "ietf-restconf.yang",
      "module ietf-restconf { namespace \"urn:ietf:params:xml:ns:yang:ietf-restconf\"; prefix rc;\n"
      "extension yang-data { argument name; } }");
  Module("m",
         "import ietf-restconf { prefix rc; } feature a;\n"
         "rc:yang-data d { container c { if-feature a; } }");
  EXPECT_EQ("feature a;", BodyOf(RunOff({"m"}, 1), "m"));
}

}  // namespace
}  // namespace compiler
