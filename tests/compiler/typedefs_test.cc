// SPDX-License-Identifier: BSD-3-Clause
// Typedefs that move or are copied.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

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

}  // namespace
}  // namespace compiler
