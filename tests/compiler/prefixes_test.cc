// SPDX-License-Identifier: BSD-3-Clause
// Prefixes of the written module, and keys.
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

}  // namespace
}  // namespace compiler
