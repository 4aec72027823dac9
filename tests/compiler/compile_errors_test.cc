// SPDX-License-Identifier: BSD-3-Clause
// What is wrong in a model and stops nothing: it is said once, and the module is written.
#include "compiler/convert.h"
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

using Errors = Compiling;

TEST_F(Errors, OfLintAreSaidAndTheModuleIsWritten) {
  Module("m",
         "list l { leaf k { type string; } }\n"
         "leaf a { type int8; default 200; }\n"
         "leaf a { type string; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_NE("", BodyOf(result, "m"));
  const std::string findings = Findings("m");
  EXPECT_NE(std::string::npos, findings.find("m.yang:2: ")) << findings;
  EXPECT_NE(std::string::npos, findings.find("m.yang:3: the default")) << findings;
  EXPECT_NE(std::string::npos, findings.find("m.yang:4: leaf \"a\"")) << findings;
}

TEST_F(Errors, OfAModuleThatIsNotAskedForAreNotSaid) {
  Module("n", "typedef t { type string; } leaf a { type int8; default 200; }");
  Module("m", "import n { prefix n; } leaf b { type n:t; }");
  JobRequest request;
  request.folders = {folder()};
  request.operands = {"m"};
  EXPECT_EQ(0u, RunJob(request).findings.size());
  request.withImports = true;
  EXPECT_EQ(1u, RunJob(request).findings.size());
}

TEST_F(Errors, ThatStopAModuleAreSaidOnceAmongTheOthers) {
  Module("m", "leaf a { type nothing; }\nleaf b { type int8; default 200; }");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_EQ(0u, Findings("m").find("m.yang:2: the type \"nothing\" is not found\nm.yang:3: "))
      << Findings("m");
}

TEST_F(Errors, OneIdentityOfAGroupingsModuleIsNone) {
  Module11("n",
           "identity base; grouping g { leaf b { type identityref { base base; }\n"
           "  must \"derived-from(., 'base')\"; } }");
  Module11("m", "import n { prefix n; } container c { uses n:g; }");
  EXPECT_EQ("", Findings("m"));
}

TEST_F(Errors, OfATypedefsPathAreThoseOfTheLeafThatHasIt) {
  Module("n",
         "typedef r { type leafref { path /top/a; } } container top { leaf a { type string; } }\n"
         "leaf own { type r; }");
  Module("m", "import n { prefix x; } leaf b { type x:r; }");
  const std::string findings = Findings("m");
  EXPECT_EQ(0u, findings.find("m.yang:2: the path \"/top/a\" of \"b\" leads nowhere: module "
                              "\"m\" has no top-level node"))
      << findings;
  EXPECT_EQ("", Findings("n"));
}

TEST_F(Errors, OfAPrefixThatTwoImportsHaveLoseNothing) {
  Module("n", "typedef t { type int8; }");
  Module("o", "typedef t { type string; }");
  for (const char* second : {"n", "o"}) {
    SCOPED_TRACE(second);
    Module("m", std::string("import n { prefix x; } import ") + second +
                    " { prefix x; } leaf a { type x:t; }");
    const JobResult result = Run({"m"});
    EXPECT_EQ(JobState::kLost, result.state);
    EXPECT_EQ("leaf a { type x:t; }", BodyOf(result, "m"));
    EXPECT_EQ(0u, ImportsOf(result, "m").find("x=n")) << ImportsOf(result, "m");
  }
}

// A prefix of the file's own that XML or the loader does not take.
TEST_F(Errors, OfItsOwnPrefixAreSaidAndAnotherIsWritten) {
  for (const std::string& prefix : {std::string("xml"), std::string("xmlns"), std::string("9"),
                                    std::string("'a b'"), std::string(65, 'p')}) {
    SCOPED_TRACE(prefix);
    Write("m.yang", "module m { yang-version 1.1; namespace urn:m; prefix " + prefix +
                        ";\nleaf a { type string; } leaf b { type leafref { path /a; } } }");
    const JobResult result = Run({"m"});
    EXPECT_EQ(JobState::kLost, result.state);
    EXPECT_NE(0u, result.findings.size());
    ASSERT_EQ(1u, result.modules.size());
    const std::string& yin = result.modules[0].yin;
    const std::string written = prefix.size() == 65 ? std::string(64, 'p') : "m";
    EXPECT_NE(std::string::npos, yin.find("xmlns:" + written + "=\"urn:m\"")) << yin;
    EXPECT_NE(std::string::npos, yin.find("<prefix value=\"" + written + "\"/>")) << yin;
    EXPECT_NE(std::string::npos, yin.find("<path value=\"/" + written + ":a\"/>")) << yin;
  }
}

TEST_F(Errors, WithoutAPrefixOneIsWritten) {
  Write("m.yang", "module m { namespace urn:m; leaf a { type string; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(1u, result.findings.size());
  ASSERT_EQ(1u, result.modules.size());
  EXPECT_NE(std::string::npos, result.modules[0].yin.find("<prefix value=\"m\"/>"));
}

TEST_F(Errors, APrefixThatXmlReservesIsNotKeptForAnImport) {
  Module("n", "typedef t { type string; }");
  for (const char* prefix : {"xml", "xmlns", "9"}) {
    SCOPED_TRACE(prefix);
    Module11("o",
             std::string("import n { prefix ") + prefix + "; } leaf a { type " + prefix + ":t; }");
    EXPECT_EQ("m=n", ImportsOf(Run({"o"}), "o"));
  }
}

TEST_F(Errors, ANamespaceThatXmlReservesStopsTheModule) {
  for (const char* uri :
       {"http://www.w3.org/XML/1998/namespace", "http://www.w3.org/2000/xmlns/"}) {
    SCOPED_TRACE(uri);
    Write("m.yang", std::string("module m { namespace '") + uri + "'; prefix m; }");
    const JobResult result = Run({"m"});
    EXPECT_EQ(JobState::kStopped, result.state);
    EXPECT_EQ(0u, result.modules.size());
    EXPECT_NE(std::string::npos, Findings("m").find("m.yang:1: the namespace")) << Findings("m");
  }
}

TEST_F(Errors, OfAPrefixWithTwoMeaningsStopAConversion) {
  Module("n", "typedef t { type string; }");
  Module("o", "typedef t { type string; }");
  for (const char* second : {"o { prefix n; }", "o { prefix m; }"}) {
    SCOPED_TRACE(second);
    Module("m", std::string("import n { prefix n; }\nimport ") + second + "\nleaf a { type n:t; }");
    ConvertRequest request;
    request.file = Path("m.yang");
    const JobResult result = ConvertFile(request);
    EXPECT_EQ(JobState::kStopped, result.state);
    EXPECT_TRUE(result.modules.empty());
    ASSERT_EQ(1u, result.findings.size());
    EXPECT_NE(std::string::npos, result.findings[0].find("m.yang:3: the prefix \""));
  }
  Module("m", "import n { prefix n; } import n { prefix n; } leaf a { type n:t; }");
  ConvertRequest request;
  request.file = Path("m.yang");
  EXPECT_EQ(1u, ConvertFile(request).modules.size());
}

TEST_F(Errors, OfNamesThatXmlReservesStopAConversion) {
  Module("n", "");
  Write("x.yang", "module x { namespace 'http://www.w3.org/2000/xmlns/'; prefix x; }");
  for (const char* body :
       {"namespace urn:m; prefix xml;", "namespace urn:m; prefix xmlns;",
        "namespace urn:m; prefix 9;", "namespace 'http://www.w3.org/XML/1998/namespace'; prefix m;",
        "namespace urn:m; prefix m; import n { prefix xml; }",
        "namespace urn:m; prefix m; import x { prefix y; }"}) {
    SCOPED_TRACE(body);
    Write("m.yang", std::string("module m { yang-version 1.1; ") + body + " }");
    ConvertRequest request;
    request.file = Path("m.yang");
    const JobResult result = ConvertFile(request);
    EXPECT_EQ(JobState::kStopped, result.state);
    EXPECT_EQ(0u, result.modules.size());
    EXPECT_EQ(1u, result.findings.size());
  }
}

}  // namespace
}  // namespace compiler
