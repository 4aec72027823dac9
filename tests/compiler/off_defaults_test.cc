// SPDX-License-Identifier: BSD-3-Clause
// Enums, bits and identities that features take away, and the defaults that name them.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class OffDefaults : public Compiling {
 protected:
  // With every feature off.
  std::string OffBody(const std::string& name) const { return BodyOf(RunOff({name}), name); }
  JobResult RunOff(const std::vector<std::string>& operands) const {
    CompileOptions options;
    options.featuresComplete = true;
    return Run(operands, options);
  }
};

TEST_F(OffDefaults, AreLeftOutAndSaid) {
  Module11("m",
           "feature a; identity b; identity i { if-feature a; base b; }\n"
           "leaf e { type enumeration { enum x; enum y { if-feature a; } } default y; }\n"
           "leaf f { type bits { bit x; bit y { if-feature a; } } default \"x y\"; }\n"
           "leaf g { type identityref { base b; } default m:i; }\n"
           "leaf-list h { type enumeration { enum x; enum y { if-feature a; } } default y; default "
           "x; }");
  CompileOptions options;
  options.featuresComplete = true;
  EXPECT_EQ(
      "feature a; identity b; leaf e { type enumeration { enum x; } } "
      "leaf f { type bits { bit x; } } leaf g { type identityref { base b; } } "
      "leaf-list h { type enumeration { enum x; } default x; }",
      OffBody("m"));
  EXPECT_NE(std::string::npos,
            Findings("m", options)
                .find("m.yang:3: the default \"y\" depends on a feature that is off; it is left "
                      "out\n"))
      << Findings("m", options);
}

TEST_F(OffDefaults, OfWhatStaysAreKept) {
  Module11("m",
           "feature a; identity b; identity i { if-feature a; base b; } identity j { base i; }\n"
           "leaf e { type enumeration { enum x; enum y { if-feature a; } } default x; }\n"
           "leaf f { type enumeration { enum y { if-feature a; } } default y; }\n"
           "leaf g { type identityref { base b; } default i; }");
  EXPECT_EQ(
      "feature a; identity b; identity j { base i; base b; } "
      "leaf e { type enumeration { enum x; } default x; } "
      "leaf f { type enumeration { enum y; } default y; } "
      "leaf g { type identityref { base b; } default i; } identity i { base b; }",
      OffBody("m"));
}

TEST_F(OffDefaults, OfTypedefsAndRefinementsAreLeftOutToo) {
  Module11("n",
           "feature a; typedef t { type enumeration { enum x; enum y { if-feature a; } } }\n"
           "typedef u { type t; default y; }\n"
           "grouping g { typedef v { type t; default y; } leaf l { type t; } leaf k { type v; } }");
  Module("m", "import n { prefix n; } uses n:g { refine l { default y; } } leaf j { type n:u; }");
  const JobResult result = RunOff({"m", "n"});
  EXPECT_EQ("leaf l { type n:t; } leaf k { type v; } leaf j { type n:u; } typedef v { type n:t; }",
            BodyOf(result, "m"));
  EXPECT_EQ("feature a; typedef t { type enumeration { enum x; } } typedef u { type t; }",
            BodyOf(result, "n"));
}

TEST_F(OffDefaults, OfAUnionStayWithAMemberThatTakesThem) {
  Module11("m",
           "feature a;\n"
           "leaf one { type union { type enumeration { enum x; enum y { if-feature a; } }\n"
           "  type string; } default y; }\n"
           "leaf two { type union { type enumeration { enum x; enum y { if-feature a; } }\n"
           "  type int8; } default y; }\n"
           "leaf three { type union { type enumeration { enum y { if-feature a; } }\n"
           "  type int8; } default y; }");
  EXPECT_EQ(
      "feature a; leaf one { type union { type enumeration { enum x; } type string; } default y; } "
      "leaf two { type union { type enumeration { enum x; } type int8; } } "
      "leaf three { type union { type int8; } }",
      OffBody("m"));
}

TEST_F(OffDefaults, OfUnionsThatDoubleAreLookedIntoOnce) {
  std::string text =
      "feature a; typedef u0 { type union { type enumeration { enum x; enum y { if-feature a; } }\n"
      "  type int8; } } ";
  for (int i = 1; i <= 28; ++i) {
    const std::string below = "type u" + std::to_string(i - 1) + "; ";
    text += "typedef u" + std::to_string(i) + " { type union { " + below + below + "} } ";
  }
  Module11("m", text + "leaf l { type u28; default y; } leaf k { type u28; default x; }");
  const std::string body = OffBody("m");
  EXPECT_NE(std::string::npos, body.find("leaf l { type u28; } leaf k { type u28; default x; }"))
      << body;
}

TEST_F(OffDefaults, OfATypedefAreNotBroughtToALeafThatLacksTheirValue) {
  Module11("m",
           "feature a; typedef t { type enumeration { enum x; enum y; } default y; }\n"
           "leaf l { type t { enum x; enum y { if-feature a; } } }");
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum x; enum y; } default y; } "
      "leaf l { type union { type t { enum x; } } }",
      OffBody("m"));
}

// A typedef that is a union could be restricted no further, so it is written in full.
TEST_F(OffDefaults, OfATypedefAreNotBroughtToATypedefThatLacksTheirValue) {
  Module11(
      "m",
      "feature a; typedef t { type enumeration { enum w; enum x; enum y; } default y; units s; }\n"
      "typedef u { type t { enum x; enum y { if-feature a; } } }\n"
      "typedef b { type bits { bit x; bit y; } default \"x y\"; }\n"
      "typedef c { type b { bit x { if-feature a; } bit y; } }\n"
      "leaf l { type u { enum x; } } leaf k { type u; } leaf j { type c; }");
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum w; enum x; enum y; } default y; units s; } "
      "typedef u { type enumeration { enum x { value 1; } } units s; } "
      "typedef b { type bits { bit x; bit y; } default x y; } "
      "typedef c { type bits { bit y { position 1; } } } "
      "leaf l { type u { enum x; } } leaf k { type u; } leaf j { type c; }",
      OffBody("m"));
}

// Once a default of its own has left, one above would hold that its values never had.
TEST_F(OffDefaults, OfATypedefDoNotAppearWhereARestrictionsOwnHasLeft) {
  Module11("m",
           "feature a; typedef t { type enumeration { enum x; enum y; enum z { if-feature a; } } "
           "default x; }\n"
           "typedef u { type t { enum y; enum z; } default z; }");
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum x; enum y; } default x; } "
      "typedef u { type enumeration { enum y { value 1; } } }",
      OffBody("m"));
}

TEST_F(OffDefaults, OfALeafrefAreThoseOfItsTarget) {
  Module11("m",
           "feature a; identity b; identity i { if-feature a; base b; }\n"
           "leaf e { type enumeration { enum x; enum y { if-feature a; } } }\n"
           "leaf f { type leafref { path ../e; } default y; }\n"
           "leaf g { type leafref { path ../f; } default x; }\n"
           "leaf h { type union { type leafref { path ../e; } type int8; } default y; }\n"
           "leaf j { type leafref { path ../k; } default i; }\n"
           "leaf k { if-feature a; type identityref { base b; } }");
  EXPECT_EQ(
      "feature a; identity b; leaf e { type enumeration { enum x; } } "
      "leaf f { type leafref { path ../m:e; } } "
      "leaf g { type leafref { path ../m:f; } default x; } "
      "leaf h { type union { type enumeration { enum x; } type int8; } } "
      "leaf j { type identityref { base b; } }",
      OffBody("m"));
}

// A leaf that must be there has no use for a default.
TEST_F(OffDefaults, OfATypedefDoNotMatterToAMandatoryLeaf) {
  Module11("m",
           "feature a; typedef t { type enumeration { enum x; enum y; } default y; }\n"
           "leaf l { type t { enum x; enum y { if-feature a; } } mandatory true; }");
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum x; enum y; } default y; } "
      "leaf l { type t { enum x; } mandatory true; }",
      OffBody("m"));
}

TEST_F(OffDefaults, OfATargetGoWithTheTypeOfADeviation) {
  Module11("n", "leaf l { type string; default y; } leaf k { type string; default v; }");
  Module11("m",
           "import n { prefix n; } feature a;\n"
           "typedef t { type enumeration { enum x; enum y { if-feature a; } } }\n"
           "deviation /n:l { deviate replace { type t; } }\n"
           "deviation /n:k { deviate replace { type t; default y; } }");
  const JobResult result = RunOff({"m", "n"});
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum x; } } "
      "deviation /n:l { deviate delete { default y; } deviate replace { type t; } } "
      "deviation /n:k { deviate delete { default v; } deviate replace { type t; } }",
      BodyOf(result, "m"));
}

TEST_F(OffDefaults, OfDeviationsFollowTheirTarget) {
  Module11("n",
           "feature a; typedef t { type enumeration { enum x; enum y { if-feature a; } } }\n"
           "leaf l { type t; default y; } leaf k { type t; default y; } leaf j { type t; }\n"
           "leaf i { type t; default y; units s; }");
  Module11("m",
           "import n { prefix n; }\n"
           "deviation /n:l { deviate replace { default x; } }\n"
           "deviation /n:k { deviate delete { default y; } }\n"
           "deviation /n:j { deviate add { default y; units s; } }\n"
           "deviation /n:i { deviate replace { default x; units t; } }");
  const JobResult result = RunOff({"m", "n"});
  EXPECT_EQ(
      "deviation /n:l { deviate add { default x; } } "
      "deviation /n:j { deviate add { units s; } } "
      "deviation /n:i { deviate replace { units t; } deviate add { default x; } }",
      BodyOf(result, "m"));
}

// With every feature as it is: the words of a default are those of its file.
TEST_F(Compiling, DefaultsThatAreIdentitiesByAUnionOrLeafrefGetPrefixes) {
  Module11(
      "n",
      "identity b; identity i { base b; } identity k { base b; }\n"
      "typedef t { type identityref { base b; } }\n"
      "container c { leaf x { type t; } }\n"
      "grouping g { leaf u { type union { type enumeration { enum k; } type t; } default i; }\n"
      "  leaf v { type union { type enumeration { enum k; } type t; } default k; }\n"
      "  leaf w { type leafref { path /n:c/n:x; } default i; } }");
  Module11("m",
           "import n { prefix n; } container d { uses n:g; }\n"
           "deviation /n:c/n:x { deviate replace { type union { type n:t; } }\n"
           "  deviate add { default n:i; } }\n"
           "rpc r { input { uses n:g; } }");
  const JobResult result = Run({"m", "n"});
  const std::string nodes =
      "leaf u { type union { type enumeration { enum k; } type n:t; } default n:i; } "
      "leaf v { type union { type enumeration { enum k; } type n:t; } default k; } "
      "leaf w { type leafref { path /n:c/n:x; } default n:i; }";
  EXPECT_EQ(
      "container d { " + nodes +
          " } deviation /n:c/n:x { deviate replace { type union { type n:t; } } deviate add { "
          "default n:i; } } rpc r { input { " +
          nodes + " } }",
      BodyOf(result, "m"));
  EXPECT_EQ(2U, result.findings.size());
}

TEST_F(Compiling, DeviationsAddNoDefaultThatALeafListHas) {
  Module11("n", "leaf-list l { config false; type int8; default 1; }");
  Module11("m",
           "import n { prefix n; } deviation /n:l { deviate add { default 2; default 1; } }\n");
  EXPECT_EQ("deviation /n:l { deviate add { default 2; } }", BodyOf(Run({"m"}), "m"));
  Module11("k", "import n { prefix n; } deviation /n:l { deviate add { default 1; } }");
  EXPECT_EQ("", BodyOf(Run({"k"}), "k"));
  EXPECT_EQ("k.yang:2: the leaf-list \"l\" has the default \"1\" already; it is left out\n",
            Findings("k"));
}

// RFC 7950, sections 9.6.4.2 and 9.7.4.2: the statement counts, whether or not it is on.
TEST_F(OffDefaults, ItemsThatStayKeepTheirNumbers) {
  Module11("m",
           "feature a;\n"
           "leaf e { type enumeration { enum v; enum w { if-feature a; } enum x; enum y;\n"
           "  enum z { value 9; } enum u { if-feature a; } enum t; } }\n"
           "leaf b { type bits { bit x { if-feature a; } bit y; bit z { position 7; } } }\n"
           "leaf f { type enumeration { enum n { value -5; if-feature a; } enum m; } }");
  EXPECT_EQ(
      "feature a; leaf e { type enumeration { enum v; enum x { value 2; } enum y; "
      "enum z { value 9; } enum t { value 11; } } } "
      "leaf b { type bits { bit y { position 1; } bit z { position 7; } } } "
      "leaf f { type enumeration { enum m { value -4; } } }",
      OffBody("m"));
}

}  // namespace
}  // namespace compiler
