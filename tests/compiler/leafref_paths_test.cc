// SPDX-License-Identifier: BSD-3-Clause
// Paths of leafrefs as the library reads them.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

using Paths = Compiling;

TEST_F(Paths, HaveAPrefixOnEachStepAndNoBlanks) {
  Module("n", "container c { list l { key k; leaf k { type string; } leaf v { type string; } } }");
  Module("m",
         "import n { prefix n; }\n"
         "container d { leaf k { type string; }\n"
         "  leaf r { type leafref { path \"/n:c/n:l[ n:k = current()/../k ] / n:v\"; } }\n"
         "  leaf s { type leafref { path \"../k\"; } } leaf t { type leafref { path /d/k; } } }");
  EXPECT_EQ(
      "container d { leaf k { type string; } "
      "leaf r { type leafref { path /n:c/n:l[ n:k = current()/../m:k ]/n:v; } } "
      "leaf s { type leafref { path ../m:k; } } leaf t { type leafref { path /m:d/m:k; } } }",
      Body("m"));
}

TEST_F(Paths, WithoutPrefixesInATypedefBecomeThoseOfTheLeaf) {
  Module("n",
         "typedef ref { type leafref { path \"../name\"; } default x; units u; }\n"
         "typedef full { type leafref { path \"/n:top\"; } } leaf top { type string; }\n"
         "leaf name { type string; } leaf own { type ref; }");
  Module("m",
         "import n { prefix n; } leaf name { type string; } leaf a { type n:ref; }\n"
         "leaf b { type n:full; } leaf c { mandatory true; type n:ref; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(
      "leaf name { type string; } "
      "leaf a { type leafref { path ../m:name; } default x; units u; } "
      "leaf b { type n:full; } "
      "leaf c { mandatory true; type leafref { path ../m:name; } units u; }",
      BodyOf(result, "m"));
  EXPECT_NE(std::string::npos, BodyOf(result, "n").find("leaf own { type ref; }"));
}

TEST_F(Paths, BeginAtTheLeafWithoutSayingSo) {
  Module("m", "leaf a { type string; } leaf b { type leafref { path \"current()/../a\"; } }");
  // Many write it so, and it is an error all the same.
  const JobResult result = Run({"m"});
  EXPECT_EQ("leaf a { type string; } leaf b { type leafref { path ../m:a; } }",
            BodyOf(result, "m"));
  EXPECT_EQ(1u, result.findings.size());
}

TEST_F(Paths, ThatTheLoaderDoesNotTakeAreLeftOutAndReported) {
  Module("m",
         "leaf a { type leafref { path ../b; } } leaf b { type string; }\n"
         "leaf c { type leafref { path \"deref(../a)/../b\"; require-instance true; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(
      "leaf a { type leafref { path ../m:b; } } leaf b { type string; } leaf c { type string; }",
      BodyOf(result, "m"));
}

TEST_F(Paths, InAUnionBecomeTheTypeOfTheirTarget) {
  Module11(
      "m",
      "typedef t { type int8 { range 1..5; } }\n"
      "container c { leaf a { type t; } leaf b { type leafref { path ../a; } }\n"
      "  leaf u { type union { type leafref { path ../b; } type enumeration { enum none; } } } }");
  EXPECT_NE(std::string::npos,
            Body("m").find("leaf u { type union { type t; type enumeration { enum none; } } }"))
      << Body("m");
}

TEST_F(Paths, OfAnotherModulesUnionTargetTakePrefixes) {
  Module("n", "typedef t { type int8; } container c { leaf a { type t; } }");
  Module11("m",
           "import n { prefix n; }\n"
           "leaf u { type union { type leafref { path /n:c/n:a; } type empty; } }");
  EXPECT_EQ("leaf u { type union { type n:t; type empty; } }", Body("m"));
}

// A union that comes from a target keeps the paths of that leaf.
TEST_F(Paths, InTheUnionOfATargetBeginAtTheTarget) {
  Module11("n",
           "typedef near { type union { type leafref { path ../s; } type empty; } }\n"
           "typedef far { type union { type leafref { path /k; } type empty; } }\n"
           "leaf k { type uint8; }\n"
           "container in { leaf s { type int8; } leaf near { type near; } leaf far { type far; }\n"
           "  leaf u { type union { type leafref { path ../s; } type boolean; } } }");
  Module11("m",
           "import n { prefix n; }\n"
           "leaf s { type string; }\n"
           "leaf u { type union { type leafref { path /n:in/n:u; }\n"
           "  type leafref { path /n:in/n:near; } type leafref { path /n:in/n:far; } } }");
  EXPECT_EQ(
      "leaf s { type string; } leaf u { type union { type union { type int8; type boolean; } "
      "type union { type int8; type empty; } type union { type uint8; type empty; } } }",
      Body("m"));
}

TEST_F(Paths, InAUnionThatLeadBackToTheirLeafStay) {
  Module11("m",
           "container c {\n"
           "leaf a { type union { type leafref { path ../a; } type int8; } }\n"
           "leaf b { type union { type leafref { path ../d; } type int8; } }\n"
           "leaf d { type leafref { path ../e; } }\n"
           "leaf e { type union { type leafref { path ../b; } type string; } } }");
  EXPECT_EQ(
      "m.yang:3: the library checks no leafref in a union, and this one leads back to its own "
      "leaf\n"
      "m.yang:4: the library checks no leafref in a union, and this one leads back to its own "
      "leaf, used at m.yang:6\n"
      "m.yang:6: the library checks no leafref in a union, and this one leads back to its own "
      "leaf, used at m.yang:4\n",
      Findings("m"));
  EXPECT_EQ(
      "container c { leaf a { type union { type leafref { path ../m:a; } type int8; } } "
      "leaf b { type union { type union { type leafref { path ../m:b; } type string; } "
      "type int8; } } leaf d { type leafref { path ../m:e; } } "
      "leaf e { type union { type union { type leafref { path ../m:d; } type int8; } "
      "type string; } } }",
      BodyOf(Run({"m"}), "m"));
}

// Each union has the one before twice.
TEST_F(Paths, InUnionsThatDoubleAreRefusedInTime) {
  std::string leafs = "leaf l0 { type string; }\n";
  for (int i = 1; i <= 40; ++i) {
    const std::string path = "{ path ../l" + std::to_string(i - 1) + "; } ";
    leafs += "leaf l" + std::to_string(i) + " { type union { type leafref " + path +
             "type leafref " + path + "} }\n";
  }
  Module11("m", "container c {\n" + leafs + "}");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
}

// An absolute path means the same wherever its typedef is used; a relative one begins at
// the leaf.
TEST_F(Paths, OfATypedefInAUnionBecomeTheTypeOfTheirTarget) {
  Module11("n",
           "typedef r { type leafref { path /n:c/n:a; } }\n"
           "typedef up { type leafref { path ../n:b; } }\n"
           "container c { leaf a { type int8; } }\n"
           "grouping g { leaf u { type union { type r; type up; type empty; } }\n"
           "  leaf b { type boolean; } }\n"
           "container d { uses g; }");
  Module11("m",
           "import n { prefix x; }\n"
           "leaf u { type union { type x:r; type empty; } }");
  EXPECT_EQ("leaf u { type union { type int8; type empty; } }", Body("m"));
  EXPECT_NE(std::string::npos,
            Body("n").find("leaf u { type union { type int8; type boolean; type empty; } }"))
      << Body("n");
}

// Where a union of a typedef begins at the leaf, each leaf has its own.
TEST_F(Paths, OfAUnionThatATypedefHasAreThoseOfEachLeaf) {
  Module11(
      "n",
      "typedef sibling { type union { type leafref { path ../x; } type empty; }\n"
      "  default 7; units u; }\n"
      "typedef wide { type sibling; }\n"
      "container c { leaf x { type uint8; } leaf v { type wide; } leaf-list w { type wide; } }");
  Module11("m",
           "import n { prefix n; }\n"
           "container c { leaf x { type string; }\n"
           "  leaf v { type n:wide; mandatory true; }\n"
           "  leaf w { type union { type n:sibling; type int8; } default a; } }");
  EXPECT_EQ(
      "typedef sibling { type union { type leafref { path ../n:x; } type empty; } "
      "default 7; units u; } typedef wide { type sibling; } "
      "container c { leaf x { type uint8; } "
      "leaf v { type union { type uint8; type empty; } default 7; units u; } "
      "leaf-list w { type union { type uint8; type empty; } units u; } }",
      Body("n"));
  EXPECT_EQ(
      "container c { leaf x { type string; } "
      "leaf v { type union { type string; type empty; } mandatory true; units u; } "
      "leaf w { type union { type union { type string; type empty; } type int8; } default a; } }",
      Body("m"));
}

}  // namespace
}  // namespace compiler
