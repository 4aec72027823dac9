// SPDX-License-Identifier: BSD-3-Clause
// Deviations, their contents spelled out.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

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

}  // namespace
}  // namespace compiler
