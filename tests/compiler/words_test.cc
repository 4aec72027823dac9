// SPDX-License-Identifier: BSD-3-Clause
// Arguments in the words of the written module: prefixes, typedefs, identities, paths,
// conditions, keys, extensions.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

using Prefixes = Compiling;

TEST_F(Prefixes, NamesOfAGroupingBelongToItsModule) {
  Module11("n",
           "feature f; identity base; typedef t { type string; }\n"
           "extension ext { argument text; }\n"
           "grouping g { leaf a { if-feature f; type t; n:ext hello; }\n"
           "  leaf b { type identityref { base base; } must \"derived-from(., 'base')\"; } }");
  Module11("m", "import n { prefix other; } container c { uses other:g; }");
  EXPECT_EQ(
      "container c { "
      "leaf a { if-feature other:f; type other:t; other:ext hello; } "
      "leaf b { type identityref { base other:base; } must derived-from(., 'other:base'); } }",
      Body("m"));
}

TEST_F(Prefixes, DataNodesOfAGroupingBelongToTheUser) {
  Module("n",
         "grouping g { leaf a { type string; } leaf b { when \"../a\"; type leafref {\n"
         "  path \"../a\"; } } }");
  Module("m", "import n { prefix n; } container c { uses n:g; }");
  EXPECT_EQ(
      "container c { leaf a { type string; } "
      "leaf b { when ../a; type leafref { path ../m:a; } } }",
      Body("m"));
}

TEST_F(Prefixes, AddedOnesClashWithNone) {
  Module("a", "typedef t { type string; }");
  Module("b", "import a { prefix x; } grouping g { leaf l { type x:t; } }");
  Module("d", "typedef u { type string; }");
  Write("m.yang",
        "module m { namespace urn:m; prefix x2; import b { prefix b; } import d { prefix x; }\n"
        "  container c { uses b:g; leaf o { type x:u; } } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ("container c { leaf l { type a:t; } leaf o { type x:u; } }", BodyOf(result, "m"));
  EXPECT_EQ("b=b x=d a=a", ImportsOf(result, "m"));
}

TEST_F(Prefixes, OneThatIsTakenGetsANumber) {
  Module("a", "typedef t { type string; }");
  Module("b", "import a { prefix a; } grouping g { leaf l { type a:t; } }");
  Module("d", "typedef u { type string; }");
  Write("m.yang",
        "module m { namespace urn:m; prefix m; import b { prefix b; } import d { prefix a; }\n"
        "  container c { uses b:g; leaf o { type a:u; } } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ("container c { leaf l { type a2:t; } leaf o { type a:u; } }", BodyOf(result, "m"));
  EXPECT_EQ("b=b a=d a2=a", ImportsOf(result, "m"));
}

TEST_F(Prefixes, OneModuleHasOneInTheWholeFile) {
  Module("n", "container c { leaf a { type string; } }");
  Write(
      "m.yang",
      "module m { namespace urn:m; prefix m; import n { prefix one; } import n { prefix two; }\n"
      "  augment /one:c { leaf b { when \"two:a\"; type leafref { path \"/two:c/one:a\"; } } } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ("one=n", ImportsOf(result, "m"));
  EXPECT_EQ("augment /one:c { leaf b { when one:a; type leafref { path /one:c/one:a; } } }",
            BodyOf(result, "m"));
}

TEST_F(Prefixes, AreDeclaredForInstancesOfExtensions) {
  Module("e", "extension x { argument a; }");
  Module("n", "import e { prefix e; } grouping g { leaf l { type string; e:x arg; } }");
  Module("m", "import n { prefix n; } uses n:g;");
  const JobResult result = Run({"m"});
  EXPECT_NE(std::string::npos, result.modules[0].yin.find("xmlns:e=\"urn:e\""))
      << result.modules[0].yin;
  EXPECT_EQ("leaf l { type string; e:x arg; }", BodyOf(result, "m"));
  EXPECT_EQ("n=n e=e", ImportsOf(result, "m"));
}

using Typedefs = Compiling;

TEST_F(Typedefs, OfInnerScopesMoveToTheModule) {
  Module("m",
         "container c { typedef t { type u; } typedef u { type int8; } leaf a { type t; } }\n"
         "container d { typedef t { type string; } leaf a { type t; } }");
  EXPECT_EQ(
      "container c { leaf a { type t; } } container d { leaf a { type t-2; } } "
      "typedef t { type u; } typedef t-2 { type string; } typedef u { type int8; }",
      Body("m"));
}

TEST_F(Typedefs, ThatMoveClashWithNoneAndStayWithin64Characters) {
  const std::string longName(64, 'x');
  Module("m", "typedef " + longName +
                  " { type string; }\n"
                  "rpc r { input { leaf i { type string; } } }\n"
                  "notification note { typedef nn { type int8; } leaf a { type nn; } }\n"
                  "grouping g { typedef hidden { type int16; } leaf b { type hidden; } }\n"
                  "container c { uses g; }");
  EXPECT_EQ("typedef " + longName +
                " { type string; } rpc r { input { leaf i { type string; } } } "
                "notification note { leaf a { type nn; } } "
                "container c { leaf b { type hidden; } } "
                "typedef nn { type int8; } typedef hidden { type int16; }",
            Body("m"));
}

TEST_F(Typedefs, OfGroupingsOfOtherModulesMoveToTheUser) {
  Module("n",
         "grouping g { typedef t { type top; } leaf a { type t; } } typedef top { type int8; }");
  Module("m", "import n { prefix n; } typedef t { type string; } uses n:g;");
  EXPECT_EQ("typedef t { type string; } leaf a { type t-2; } typedef t-2 { type n:top; }",
            Body("m"));
}

TEST_F(Typedefs, ThatDifferFromTheWrittenRevisionAreCopied) {
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01;\n"
        "  typedef same { type string; description old; } typedef other { type int8; } }");
  Write("n@2021-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2021-01-01;\n"
        "  typedef same { type string; } typedef other { type int16; } }");
  Module("m",
         "import n { prefix n; revision-date 2020-01-01; }\n"
         "leaf a { type n:same; } leaf b { type n:other; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ("leaf a { type n:same; } leaf b { type other; } typedef other { type int8; }",
            BodyOf(result, "m"));
  EXPECT_EQ("2021-01-01",
            result.modules[1].yin.substr(result.modules[1].yin.find("revision date=\"") + 15, 10));
}

TEST_F(Typedefs, WithNamesThatAreTooLongForTheLoaderAreCopiedUnderShorterOnes) {
  const std::string name(70, 'x');
  Module("m", "typedef " + name + " { type string; } leaf a { type " + name + "; }");
  const std::string kept(64, 'x');
  EXPECT_EQ("typedef " + name + " { type string; } leaf a { type " + kept + "; } typedef " + kept +
                " { type string; }",
            Body("m"));
}

TEST_F(Typedefs, ThatAreNotThereStopTheModule) {
  Module("m", "leaf a {\n  type none;\n}");
  EXPECT_EQ("m.yang:3: the type \"none\" is not found\n", Findings("m"));
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
}

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

using Identities = Compiling;

TEST_F(Identities, OfBasesTakePrefixes) {
  Module("n", "identity a; identity b { base a; }");
  Module("m", "import n { prefix n; } identity c { base n:b; } identity d { base m:c; }");
  EXPECT_EQ(
      "identity c { base n:b; base n:a; } "
      "identity d { base c; base n:b; base n:a; }",
      Body("m"));
}

TEST_F(Identities, ThatAreNotThereStopTheModule) {
  Module("m", "identity c {\n  base none;\n}");
  EXPECT_EQ("m.yang:3: the identity \"none\" is not found\n", Findings("m"));
}

TEST_F(Identities, OfDefaultsBehindATypedefStandBareAndThoseOfTypedefsAtTheType) {
  Module("m",
         "identity base; identity i { base base; }\n"
         "typedef t { type identityref { base base; } }\n"
         "typedef d { type t; default m:i; }\n"
         "leaf a { type t; default m:i; } leaf b { type identityref { base base; } default m:i; }\n"
         "leaf c { type d; } leaf e { type d; mandatory true; } leaf f { type d; default i; }");
  EXPECT_EQ(
      "identity base; identity i { base base; } "
      "typedef t { type identityref { base base; } } "
      "typedef d { type identityref { base base; } default i; } "
      "leaf a { type t; default i; } leaf b { type identityref { base base; } default i; } "
      "leaf c { type d; } leaf e { type d; mandatory true; } "
      "leaf f { type d; default i; }",
      Body("m"));
}

TEST_F(Identities, OfTypedefsThatGiveADefaultKeepTheUnitsOfTheTypedefBelow) {
  Module("m",
         "identity base; identity i { base base; }\n"
         "typedef t { type identityref { base base; } units u; }\n"
         "typedef d { type t; default i; } typedef e { type t; default i; units own; }\n"
         "leaf a { type d; } leaf b { type e; }");
  EXPECT_EQ(
      "identity base; identity i { base base; } "
      "typedef t { type identityref { base base; } units u; } "
      "typedef d { type identityref { base base; } default i; units u; } "
      "typedef e { type identityref { base base; } default i; units own; } "
      "leaf a { type d; } leaf b { type e; }",
      Body("m"));
}

// What is compiled can be compiled again only when each base in it is found.
TEST_F(Identities, ThatOnlyAnotherRevisionHasGiveWayToTheirBases) {
  Write("t@2019-01-01.yang",
        "module t { namespace urn:t; prefix t; revision 2019-01-01; identity base;\n"
        "  identity gone { base base; } identity far { base gone; } identity root; }");
  Write("t.yang", "module t { namespace urn:t; prefix t; revision 2020-01-01; identity base; }");
  Module("m",
         "import t { prefix t; revision-date 2019-01-01; }\n"
         "identity i { base t:far; }\n"
         "identity j { base t:root; }\n"
         "leaf a { type identityref { base t:far; } }\n"
         "leaf b { type identityref { base t:root; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(4u, result.findings.size());
  EXPECT_EQ(
      "identity i { base t:base; } identity j; leaf a { type identityref { base t:base; } } "
      "leaf b { type string; }",
      BodyOf(result, "m"));
  for (const JobModule& module : result.modules) Write("again/" + module.name + ".yin", module.yin);
  const JobResult again = Run({Path("again/m.yin")});
  EXPECT_EQ(JobState::kDone, again.state);
  EXPECT_EQ(result.modules[0].yin, again.modules[0].yin);
}

// The library declares a prefix that is the name of a module.
TEST_F(Identities, OfOtherModulesInDefaultsBehindATypedefHaveTheirModulesName) {
  Write("types.yang",
        "module types { namespace urn:types; prefix t; identity base;\n"
        "  identity i { base base; } typedef t { type identityref { base base; } } }");
  Module("n", "import types { prefix x; } grouping g { leaf b { type x:t; default x:i; } }");
  // Prefixes that others have: an import, and the module itself.
  Write("m.yang",
        "module m { namespace urn:m; prefix types; import types { prefix n; } import n { prefix z; "
        "}\n"
        "  leaf a { type n:t; default n:i; } uses z:g; }");
  EXPECT_EQ("leaf a { type types:t; default types:i; } leaf b { type types:t; default types:i; }",
            Body("m"));
  const JobResult result = Run({"m"});
  EXPECT_EQ("types=types z=n", ImportsOf(result, "m"));
  EXPECT_NE(std::string::npos, result.modules[0].yin.find("<prefix value=\"types2\"/>"));
}

// No prefix can be like the name of this module.
TEST_F(Identities, OfAModuleThatXmlHasForItselfAreReported) {
  Write("xml.yang",
        "module xml { yang-version 1.1; namespace urn:x; prefix x; identity base;\n"
        "  identity i { base base; } typedef t { type identityref { base base; } } }");
  Module11("m", "import xml { prefix n; }\nleaf a { type n:t; default n:i; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf a { type n:t; default n:i; }", BodyOf(result, "m"));
}

TEST_F(Identities, OnlyInAnotherRevisionAreReported) {
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01; identity gone; }");
  Write("n@2021-01-01.yang", "module n { namespace urn:n; prefix n; revision 2021-01-01; }");
  Module("m",
         "import n { prefix n; revision-date 2020-01-01; }\n"
         "leaf a { type identityref { base n:gone; } }");
  EXPECT_NE(std::string::npos, Findings("m").find("has no identity \"gone\"")) << Findings("m");
}

using Literals = Compiling;

TEST_F(Identities, AndFeaturesOnlyInAnotherRevisionAreNotWritten) {
  Write("n@2020-01-01.yang",
        "module n { yang-version 1.1; namespace urn:n; prefix n; revision 2020-01-01;\n"
        "  feature f; identity a; identity old { base a; }\n"
        "  grouping g { leaf i { if-feature f; type identityref { base a; } default old; } } }");
  Write("n@2021-01-01.yang",
        "module n { yang-version 1.1; namespace urn:n; prefix n; revision 2021-01-01;\n"
        "  revision 2020-01-01; identity a; leaf l { type identityref { base a; } } }");
  Module11("m", "import n { prefix n; revision-date 2020-01-01; } uses n:g;");
  Module11("o", "import n { prefix n; revision-date 2021-01-01; } leaf l { type string; }");
  const JobResult result = Run({"m", "n"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf i { type identityref { base n:a; } }", BodyOf(result, "m"));
  EXPECT_EQ(2u, result.findings.size());
}

using OtherRevisions = Compiling;

// What is written is read again with the revision that is written.
TEST_F(OtherRevisions, LackExtensionsWhoseInstancesAreNotWritten) {
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01;\n"
        "  extension kept { argument a; } extension gone; extension other { argument a; }\n"
        "  grouping g { leaf i { when \"1 = 1\" { n:gone; description d; }\n"
        "    n:gone { n:kept 1; } n:kept 2; n:other 3; type string; } } }");
  Write("n@2021-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2021-01-01; revision 2020-01-01;\n"
        "  extension kept { argument a; } extension other { argument b; } }");
  Module("m", "import n { prefix n; revision-date 2020-01-01; } uses n:g;");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf i { when 1 = 1 { description { text \"d\" } } n:kept 2; type string; }",
            BodyOf(result, "m"));
  ASSERT_EQ(3u, result.findings.size());
  EXPECT_EQ(Path("n@2020-01-01.yang") +
                ":4: the revision of \"n\" that is written has no such extension \"gone\"; it is "
                "left out, used at " +
                Path("m.yang") + ":2",
            result.findings[1]);
  for (const JobModule& module : result.modules) Write("again/" + module.name + ".yin", module.yin);
  const JobResult again = Run({Path("again/m.yin")});
  EXPECT_EQ(JobState::kDone, again.state);
  ASSERT_EQ(2u, again.modules.size());
  EXPECT_EQ(result.modules[0].yin, again.modules[0].yin);
}

TEST_F(Literals, ThatNameIdentitiesGetAPrefix) {
  Module11("m",
           "identity base; identity i { base base; }\n"
           "container c { leaf t { type identityref { base base; } } leaf s { type string; }\n"
           "  leaf a { when \"../t = 'i'\"; type string; }\n"
           "  leaf b { when \"../s = 'i'\"; type string; }\n"
           "  leaf d { when \"derived-from-or-self(../t, 'i')\"; type string; } }");
  const std::string body = Body("m");
  EXPECT_NE(std::string::npos, body.find("leaf a { when ../t = 'm:i';")) << body;
  EXPECT_NE(std::string::npos, body.find("leaf b { when ../s = 'i';")) << body;
  EXPECT_NE(std::string::npos, body.find("leaf d { when derived-from-or-self(../t, 'm:i');"))
      << body;
}

TEST_F(Literals, ThatNameIdentitiesOnlyInAnotherRevisionAreReported) {
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01; identity a;\n"
        "  identity gone { base a; } identity kept { base a; } }");
  Write("n@2021-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2021-01-01; identity a;\n"
        "  identity kept { base a; } }");
  Module11("m",
           "import n { prefix n; revision-date 2020-01-01; }\n"
           "leaf t { type identityref { base n:a; } }\n"
           "leaf l { when \"../t = 'n:gone'\"; type string; }\n"
           "leaf k { when \"derived-from-or-self(../t, 'n:gone')\"; type string; }\n"
           "leaf i { when \"../t = 'n:kept'\"; type string; }");
  Write("o.yang", "module o { namespace urn:o; prefix o; import n { prefix n; } }");
  const JobResult result = Run({"m", "o"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(2u, result.findings.size());
}

TEST_F(Literals, OfConditionsInOddPlacesDoNoHarm) {
  Module("m",
         "must \"a = 'b'\"; container c { leaf a { when \"../b = 'x'\"; type string; } }\n"
         "augment /m:c { must \"a\"; leaf b { type string; } }");
  EXPECT_EQ(1u, Run({"m"}).modules.size());
}

using Keys = Compiling;

TEST_F(Keys, AreBareWithSingleBlanks) {
  Module("m",
         "list l { key \" m:a\n   b\t \"; unique \" m:c/m:d\n  e\"; leaf a { type string; }\n"
         "  leaf b { type string; } container c { leaf d { type string; } }\n"
         "  leaf e { type string; } }");
  EXPECT_EQ(
      "list l { key a b; unique c/d e; leaf a { type string; } leaf b { type string; } "
      "container c { leaf d { type string; } } leaf e { type string; } }",
      Body("m"));
}

using Deviations = Compiling;

TEST_F(Deviations, StayStatementsWithTheirContentsSpelledOut) {
  Module("n", "container c { leaf a { type string; } }");
  Module("t", "typedef t { type int8; }");
  Module("m",
         "import n { prefix n; } import t { prefix t; }\n"
         "deviation /n:c/n:a { deviate replace { type t:t; } }");
  EXPECT_EQ("deviation /n:c/n:a { deviate replace { type t:t; } }", Body("m"));
}

TEST_F(Deviations, DeleteTheTextThatTheTargetHas) {
  Module11("i", "identity base; identity one { base base; }");
  Module11("n",
           "import i { prefix id; }\n"
           "container c { leaf t { type identityref { base id:base; } }\n"
           "  leaf a { type string; must \"../n:t = 'id:one'\"; must \"../t = 'id:base'\"; } }");
  Module11("m",
           "import n { prefix x; } import i { prefix i; }\n"
           "deviation /x:c/x:a { deviate delete { must \"../x:t = 'i:one'\"; } }");
  // The steps as in the target, the prefix of the literal this module's own.
  const JobResult result = Run({"m"});
  EXPECT_EQ("deviation /x:c/x:a { deviate delete { must ../n:t = 'i:one'; } }",
            BodyOf(result, "m"));
  EXPECT_EQ(1u, result.findings.size());  // the text is another than that of the target
}

TEST_F(Deviations, DeleteStepsThatTheTargetWritesWithoutPrefixes) {
  Module("n", "container c { leaf t { type string; } leaf a { type string; must \"../t\"; } }");
  for (const char* must : {"../t", "../x:t"}) {
    SCOPED_TRACE(must);
    Module("m",
           std::string("import n { prefix x; } deviation /x:c/x:a { deviate delete { must \"") +
               must + "\"; } }");
    EXPECT_EQ("deviation /x:c/x:a { deviate delete { must ../t; } }", BodyOf(Run({"m"}), "m"));
  }
}

TEST_F(Deviations, DeleteIdentitiesHoweverTheirPrefixesAreWritten) {
  Module11("q",
           "identity base; identity sub { base base; }\n"
           "container c { leaf id { type identityref { base base; } } leaf t { type string; }\n"
           "  leaf a { type string; must \"../id = 'sub'\"; must \"../t = 'sub'\"; } }");
  for (const char* must : {"../id = 'sub'", "../q:id = 'q:sub'", "../id = 'q:sub'"}) {
    SCOPED_TRACE(must);
    Module11("m", std::string("import q { prefix q; }\n"
                              "deviation /q:c/q:a { deviate delete { must \"") +
                      must + "\"; } }");
    EXPECT_EQ("deviation /q:c/q:a { deviate delete { must ../id = 'q:sub'; } }",
              BodyOf(Run({"m"}), "m"));
  }
  // A text is no identity.
  Module11("m",
           "import q { prefix q; }\n"
           "deviation /q:c/q:a { deviate delete { must \"../q:t = 'sub'\"; } }");
  EXPECT_EQ("deviation /q:c/q:a { deviate delete { must ../t = 'sub'; } }",
            BodyOf(Run({"m"}), "m"));
}

// Two musts may mean the same; the library deletes by text.
TEST_F(Deviations, DeleteWhatHasTheSameTextBeforeWhatMeansTheSame) {
  Module11(
      "n",
      "identity i; container c { leaf k { type string; } leaf t { type identityref { base i; } }\n"
      "  leaf l { type string; must \"../n:k\"; must \"../n:t = 'n:i'\"; must \"../t = 'i'\"; } }");
  Module11("m",
           "import n { prefix p; }\n"
           "deviation /p:c/p:l { deviate delete {\n"
           "  must \"../n:k\"; must \"../n:t = 'n:i'\"; must \"../t = 'i'\"; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(
      "deviation /p:c/p:l { deviate delete { "
      "must ../n:k; must ../n:t = 'p:i'; must ../t = 'p:i'; } }",
      BodyOf(result, "m"));
  EXPECT_TRUE(result.findings.empty()) << result.findings[0];
  for (const JobModule& module : result.modules) Write("again/" + module.name + ".yin", module.yin);
  EXPECT_EQ(BodyOf(result, "m"), BodyOf(Run({Path("again/m.yin")}), "m"));
}

TEST_F(Deviations, DeleteIdentitiesOfAGroupingsModule) {
  Module11("g",
           "identity base; identity sub { base base; }\n"
           "grouping g { leaf id { type identityref { base base; } }\n"
           "  leaf a { type string; must \"../id = 'sub'\"; } }");
  Module11("q", "import g { prefix g; } container c { uses g:g; }");
  for (const char* must : {"../id = 'sub'", "../q:id = 'g:sub'"}) {
    SCOPED_TRACE(must);
    Module11("m", std::string("import q { prefix q; } import g { prefix g; }\n"
                              "deviation /q:c/q:a { deviate delete { must \"") +
                      must + "\"; } }");
    EXPECT_EQ("deviation /q:c/q:a { deviate delete { must ../id = 'g:sub'; } }",
              BodyOf(Run({"m"}), "m"));
  }
}

TEST_F(Deviations, LeaveOutADeletionOfWhatIsNotThere) {
  Module("n",
         "container c { leaf a { type string; must \"../b\"; default x; units u; }\n"
         "  leaf b { type string; } }");
  Module("m",
         "import n { prefix n; }\n"
         "deviation /n:c/n:a { deviate delete {\n"
         "  must \"../n:b = 'x'\";\n"
         "  must \"../n:b\";\n"
         "  default y;\n"
         "  units v;\n"
         "} }");
  EXPECT_EQ("deviation /n:c/n:a { deviate delete { must ../b; } }", BodyOf(Run({"m"}), "m"));
  const std::string findings = Findings("m");
  for (const char* line :
       {"m.yang:4: the leaf \"a\" has no such must to delete; it is left out\n",
        "m.yang:6: the leaf \"a\" has no such default to delete; it is left out\n",
        "m.yang:7: the leaf \"a\" has no such units to delete; it is left out\n"})
    EXPECT_NE(std::string::npos, findings.find(line)) << findings;
}

TEST_F(Deviations, DeleteDefaultsThatNameTheSameIdentity) {
  Module11("q",
           "identity base; identity sub { base base; }\n"
           "typedef t { type identityref { base base; } }\n"
           "container c { leaf a { type identityref { base base; } default sub; }\n"
           "  leaf b { type t; default sub; } }");
  for (const char* value : {"sub", "q:sub"}) {
    SCOPED_TRACE(value);
    const std::string body = std::string(" { deviate delete { default ") + value + "; } }";
    Module11("m",
             "import q { prefix q; } deviation /q:c/q:a" + body + " deviation /q:c/q:b" + body);
    EXPECT_EQ(
        "deviation /q:c/q:a { deviate delete { default q:sub; } } "
        "deviation /q:c/q:b { deviate delete { default sub; } }",
        BodyOf(Run({"m"}), "m"));
  }
}

TEST_F(Deviations, DeleteWhatWasLeftOutAlready) {
  Module("n", "rpc r { input { leaf a { type string; must \"none()\"; } } }");
  Module("m",
         "import n { prefix n; }\n"
         "deviation /n:r/n:input/n:a { deviate delete { must \"none()\"; } }");
  CompileOptions options;
  options.dropFailing = true;
  EXPECT_EQ("deviation /n:r/n:input/n:a { deviate delete; }", BodyOf(Run({"m"}, options), "m"));
}

TEST_F(Deviations, ThatDependOnTheOrderOfLoadsAreToldInEachModuleOnce) {
  Module("q", "container c { leaf a { type string; } leaf b { type string; default x; } }");
  Module("m",
         "import q { prefix q; }\n"
         "deviation /q:c/q:a { deviate add { default 1; } }\n"
         "deviation /q:c/q:b { deviate replace { default 2; type int8; } }");
  Module("n",
         "import q { prefix q; } import m { prefix m; }\n"
         "deviation /q:c/q:a { deviate add { mandatory true; } }\n"
         "deviation /q:c/q:b { deviate replace { default 3; }\n"
         "  deviate add { units s; } }");
  Module("o",
         "import q { prefix q; } import n { prefix n; }\n"
         "deviation /q:c/q:a { deviate replace { type int8; } }\n"
         "deviation /q:c/q:b { deviate delete { default x; } }");
  const std::string tail =
      "\" deviates the leaf \"b\", too, and what becomes of it depends on which of the two is "
      "loaded "
      "first\n";
  EXPECT_EQ(
      "o.yang:4: module \"n" + tail + "n.yang:4: module \"o" + tail + "m.yang:4: module \"o" + tail,
      Findings("o"));
}

TEST_F(Deviations, OfAnInputThatIsNotWrittenAreReported) {
  Module("n", "rpc r { output { leaf a { type string; } } }");
  Module("m",
         "import n { prefix n; }\n"
         "deviation /n:r/n:input { deviate add { must \"1 = 1\"; } }\n"
         "deviation /n:r/n:output { deviate add { must \"n:a\"; } }");
  EXPECT_EQ(
      "m.yang:3: the library has no input that the operation does not write, unless an augment "
      "leads there; the deviation has no effect on it\n",
      Findings("m"));
}

using Extensions = Compiling;

TEST_F(Extensions, KeepArgumentsAsElementsAndSayThatTheyAreNotKept) {
  Module("e",
         "extension note { argument text { yin-element true; } } extension mark;\n"
         "extension tag { argument name; }");
  Module("m",
         "import e { prefix e; }\n"
         "leaf a { e:note \"some text\"; e:tag t; type string { e:mark; } }\n"
         "leaf b { type string { e:mark; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(
      "leaf a { e:note { e:text \"some text\" } e:tag t; type string { e:mark; } } "
      "leaf b { type string { e:mark; } }",
      BodyOf(result, "m"));
  EXPECT_EQ(2u, result.findings.size()) << "each kind once";
}

TEST_F(Extensions, InConditionsKeepTheirNamespaceAndAreSaid) {
  Module("e", "extension ext { argument a; }");
  Module("g",
         "import e { prefix ee; }\n"
         "grouping g { leaf a { type string; must 1 { ee:ext x; }\n"
         "  when 2 { ee:ext y; } } }");
  Module("m", "import g { prefix g; } container c { uses g:g { when 3; } }");
  EXPECT_EQ(
      "g.yang:3: the loader does not keep the extension \"ext\" in must; it stays in the file, "
      "used at m.yang:2\n"
      "g.yang:4: the loader does not keep the extension \"ext\" in when; it stays in the file, "
      "used at m.yang:2\n",
      Findings("m"));
  EXPECT_EQ(
      "container c { leaf a { when (3) and (2) { e:ext y; } type string; "
      "must 1 { e:ext x; } } }",
      BodyOf(Run({"m"}), "m"));
}

TEST_F(Extensions, WithoutAPlaceAreSaidWithWhereTheirGroupingIsUsed) {
  Module("e", "extension ext;");
  Module("m",
         "import e { prefix e; }\n"
         "grouping g { e:ext; leaf a { type string; } }\n"
         "container c { uses g; }\n"
         "container d { uses g; }");
  EXPECT_EQ(
      "m.yang:3: an extension in grouping has no place in the output, used at m.yang:4\n"
      "m.yang:3: an extension in grouping has no place in the output, used at m.yang:5\n",
      Findings("m"));
}

TEST_F(Extensions, HaveTheirContentsSpelledOut) {
  Module("e", "extension data { argument name; }");
  Module("n", "typedef t { type string; } grouping g { leaf a { type t; } }");
  Module("m",
         "import e { prefix e; } import n { prefix n; } e:data x { container c { uses n:g; } }");
  EXPECT_EQ("e:data x { container c { leaf a { type n:t; } } }", Body("m"));
}

}  // namespace
}  // namespace compiler
