// SPDX-License-Identifier: BSD-3-Clause
// Types that deviations bring: their paths start at the leaf that they are for. And unions
// that grow.
#include <gmock/gmock.h>

#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class DeviatedTypes : public Compiling {
 protected:
  DeviatedTypes() {
    Module11("base",
             "typedef near { type leafref { path \"../x\"; } default 7; } "
             "typedef any { type union { type leafref { path \"../x\"; } type boolean; } } "
             "container top { leaf x { type uint8; } leaf y { type string; } "
             "leaf z { type string; } }");
  }

  void Deviating(const std::string& body) const {
    Module11("dev", "import base { prefix b; } " + body);
  }
};

TEST_F(DeviatedTypes, FindUnprefixedNamesInTheModuleOfTheirLeaf) {
  Deviating(
      "deviation /b:top/b:y { deviate replace { type leafref { path \"../x\"; } } } "
      "deviation /b:top/b:z { deviate replace { type leafref { path \"/top/x\"; } } }");
  EXPECT_EQ(Body("dev"),
            "deviation /b:top/b:y { deviate replace { type leafref { path ../b:x; } } } "
            "deviation /b:top/b:z { deviate replace { type leafref { path /b:top/b:x; } } }");
}

TEST_F(DeviatedTypes, GetTypedefsOfTheirOwnWhereAPathDependsOnTheLeaf) {
  Deviating(
      "typedef mine { type leafref { path \"../x\"; } default 5; } "
      "deviation /b:top/b:y { deviate replace { type mine; } } "
      "container c { leaf x { type int8; } leaf r { type mine; } }");
  EXPECT_EQ(Body("dev"),
            "typedef mine { type leafref { path ../dev:x; } default 5; } "
            "deviation /b:top/b:y { deviate replace { type mine-2; } } "
            "container c { leaf x { type int8; } leaf r { type mine; } } "
            "typedef mine-2 { type leafref { path ../b:x; } default 5; }");
}

TEST_F(DeviatedTypes, KeepATypedefOfTheModuleOfTheirLeaf) {
  Deviating("deviation /b:top/b:y { deviate replace { type b:near; } }");
  EXPECT_EQ(Body("dev"), "deviation /b:top/b:y { deviate replace { type b:near; } }");
}

TEST_F(DeviatedTypes, HaveTheTypesOfTheTargetsInUnions) {
  Deviating(
      "typedef mine { type union { type b:any; type leafref { path \"../b:y\"; } } default 5; } "
      "deviation /b:top/b:y { deviate replace { type union { type leafref { path \"../x\"; } "
      "type boolean; } } } "
      "deviation /b:top/b:z { deviate replace { type mine; } }");
  const std::string body = Body("dev");
  EXPECT_THAT(body, testing::HasSubstr("/b:top/b:y { deviate replace { type union { type uint8; "
                                       "type boolean; } } }"));
  EXPECT_THAT(body, testing::HasSubstr("/b:top/b:z { deviate replace { type mine-2; } }"));
  EXPECT_THAT(body, testing::HasSubstr("typedef mine-2 { type union { type any-2; type string; } "
                                       "default 5; }"));
  EXPECT_THAT(body, testing::HasSubstr("typedef any-2 { type union { type uint8; type boolean; } "
                                       "}"));
}

// Without a prefix the path means a node of whoever has the type.
TEST_F(DeviatedTypes, OfUnionsWithUnprefixedPathsAreKnownWhereTheyAreUsed) {
  Module11("types", "typedef t { type union { type leafref { path \"/top/x\"; } type boolean; } }");
  Module11("user",
           "import types { prefix t; } leaf a { type t:t; } "
           "container top { leaf x { type int8; } }");
  EXPECT_EQ(Body("user"),
            "leaf a { type t; } container top { leaf x { type int8; } } "
            "typedef t { type union { type int8; type boolean; } }");
}

// Each level of the union has the one below twice.
std::string Doubling(const std::string& member) {
  std::string text = "typedef u0 { type union { " + member + " type int8; } } ";
  for (int i = 1; i <= 30; ++i) {
    const std::string below = "type u" + std::to_string(i - 1) + "; ";
    text += "typedef u" + std::to_string(i) + " { type union { " + below + below + "} } ";
  }
  return text + "leaf k { type string; } leaf x { type u30; default none; } ";
}

using Unions = Compiling;

TEST_F(Unions, ThatDoubleAreLookedIntoOnce) {
  Module11("plain", Doubling("type boolean;"));
  EXPECT_EQ(Findings("plain"),
            "plain.yang:2: the default \"none\" fits no member of the union; write a value of "
            "type \"u30\"\n");
  Module11("path", Doubling("type leafref { path \"/path:k\"; }"));
  EXPECT_EQ(Findings("path"), "");
}

TEST_F(Unions, ThatDoubleAreNotWrittenForEachLeaf) {
  Module11("near", Doubling("type leafref { path \"../k\"; }"));
  EXPECT_THAT(Findings("near"), testing::HasSubstr("unions get more than 200000 types"));
}

}  // namespace
}  // namespace compiler
