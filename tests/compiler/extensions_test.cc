// SPDX-License-Identifier: BSD-3-Clause
// Instances of extensions.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

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
