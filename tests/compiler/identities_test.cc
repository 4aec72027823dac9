// SPDX-License-Identifier: BSD-3-Clause
// Identities, and what only another revision of a module has.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

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

}  // namespace
}  // namespace compiler
