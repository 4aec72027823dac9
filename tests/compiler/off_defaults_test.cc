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

TEST_F(OffDefaults, OfATypedefAreNotBroughtToALeafThatLacksTheirValue) {
  Module11("m",
           "feature a; typedef t { type enumeration { enum x; enum y; } default y; }\n"
           "leaf l { type t { enum x; enum y { if-feature a; } } }");
  EXPECT_EQ(
      "feature a; typedef t { type enumeration { enum x; enum y; } default y; } "
      "leaf l { type union { type t { enum x; } } }",
      OffBody("m"));
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
