// SPDX-License-Identifier: BSD-3-Clause
// Which file a module is taken from.
#include "compiler/reading/repository.h"

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include "compiler/reading/session.h"
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class Lookup : public Compiling {
 protected:
  // A module m of this revision whose namespace tells the file.
  void WriteM(const std::string& file, const std::string& revision) const {
    const std::string date = revision.empty() ? "" : " revision " + revision + ";";
    Write(file, "module m { namespace urn:" + file + "; prefix m;" + date + " }");
  }
  void WriteYin(const std::string& file, const std::string& revision) const {
    Write(file, "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><namespace uri='urn:" +
                    file + "'/><prefix value='m'/><revision date='" + revision + "'/></module>");
  }

  // The file that m comes from, searched in these folders.
  std::string Find(const std::vector<std::string>& folders, const std::string& revision = "",
                   bool recursive = false) const {
    const std::unique_ptr<Session> session = OpenSession();
    Report report;
    Repository repository;
    repository.session = session.get();
    repository.report = &report;
    for (const std::string& dir : folders) {
      EXPECT_TRUE(AddSearchFolder(&repository, Path(dir), recursive));
    }
    const struct Module* found = FindModuleFile(&repository, "m", revision);
    return found == nullptr ? "none" : found->nameSpace.substr(4);
  }
};

// Many files of one folder are given by a shell's pattern.
TEST_F(Lookup, SearchesTheFolderOfSeveralFilesOnce) {
  WriteM("m.yang", "");
  Module("n", "leaf a { type string; }");
  JobRequest request;
  request.operands = {Path("m.yang")};
  std::string one;
  EXPECT_TRUE(ListInputs(request, &one));
  request.operands = {Path("m.yang"), Path("n.yang")};
  std::string two;
  EXPECT_TRUE(ListInputs(request, &two));
  EXPECT_NE(std::string::npos, one.find("n.yang"));
  EXPECT_EQ(one, two);
}

TEST_F(Lookup, TakesTheFirstDirectoryThatHasTheModule) {
  Write("a/other.yang", "module other { namespace urn:o; prefix o; }");
  WriteM("b/m.yang", "2020-01-01");
  WriteM("c/m.yang", "2022-01-01");
  EXPECT_EQ("b/m.yang", Find({"a", "b", "c"}));
  EXPECT_EQ("c/m.yang", Find({"a", "c", "b"}));
  EXPECT_EQ("none", Find({"a"}));
}

// A reader of a FIFO would wait for a writer, and there is none.
TEST_F(Lookup, DoesNotWaitForAFileThatBecameAFifoAfterTheListing) {
  WriteM("a/m.yang", "2020-01-01");
  const std::unique_ptr<Session> session = OpenSession();
  Report report;
  Repository repository;
  repository.session = session.get();
  repository.report = &report;
  ASSERT_TRUE(AddSearchFolder(&repository, Path("a"), false));
  ASSERT_EQ(0, unlink(Path("a/m.yang").c_str()));
  ASSERT_EQ(0, mkfifo(Path("a/m.yang").c_str(), 0600));
  EXPECT_EQ(nullptr, FindModuleFile(&repository, "m", ""));
  ASSERT_EQ(1U, report.findings.size());
  EXPECT_EQ("cannot be read: no regular file", report.findings[0].message);
}

TEST_F(Lookup, DoesNotSeeAFifo) {
  ASSERT_EQ(0, mkfifo(Path("m.yang").c_str(), 0600));
  EXPECT_EQ("none", Find({""}));
}

TEST_F(Lookup, TakesTheNewestByItsOwnRevisionStatement) {
  WriteM("a/m@2030-01-01.yang", "2019-01-01");
  WriteM("a/m@2020-01-01.yang", "2020-01-01");
  WriteM("a/m.yang", "2018-01-01");
  EXPECT_EQ("a/m@2020-01-01.yang", Find({"a"}));
}

TEST_F(Lookup, TakesTheRevisionAskedFor) {
  WriteM("a/m@2020-01-01.yang", "2020-01-01");
  WriteM("a/m.yang", "2021-01-01");
  EXPECT_EQ("a/m@2020-01-01.yang", Find({"a"}, "2020-01-01"));
  EXPECT_EQ("a/m.yang", Find({"a"}, "1999-01-01")) << "else the newest";
}

TEST_F(Lookup, TakesTextBeforeYin) {
  WriteYin("a/m.yin", "2020-01-01");
  WriteM("a/m.yang", "2020-01-01");
  EXPECT_EQ("a/m.yang", Find({"a"}));
  WriteYin("a/m@2021-01-01.yin", "2021-01-01");
  EXPECT_EQ("a/m@2021-01-01.yin", Find({"a"})) << "but the newest first";
}

TEST_F(Lookup, SearchesSubFoldersAsPartOfTheirDirectory) {
  WriteM("a/deep/er/m.yang", "2020-01-01");
  WriteM("a/m.yang", "2019-01-01");
  WriteM("b/m.yang", "2022-01-01");
  EXPECT_EQ("a/m.yang", Find({"a", "b"}));
  EXPECT_EQ("a/deep/er/m.yang", Find({"a", "b"}, "", true));
}

TEST_F(Lookup, PassesOverFilesThatHoldAnotherModule) {
  Write("a/m.yang", "module other { namespace urn:o; prefix o; }");
  WriteM("b/m.yang", "");
  EXPECT_EQ("b/m.yang", Find({"a", "b"}));
}

// Such as a page of a web server that was saved in the module's place.
TEST_F(Lookup, SaysWhichFilesBeforeTheOneTakenHoldNoModule) {
  Write("a/m.yang", "<html/>");
  Write("b/m@2022-01-01.yin", "");
  WriteM("b/m.yang", "2020-01-01");
  Write("c/m.yang", "<html/>");
  JobRequest request;
  request.folders = {Path("a"), Path("b"), Path("c")};
  request.operands = {"m"};
  const JobResult result = RunJob(request);
  EXPECT_EQ(JobState::kLost, result.state);
  ASSERT_EQ(1u, result.modules.size());
  EXPECT_EQ(Path("b/m.yang"), result.modules[0].source);
  EXPECT_EQ((std::vector<std::string>{
                Path("a/m.yang") + ":1:1: the file does not begin with 'module' or 'submodule'",
                Path("b/m@2022-01-01.yin") + ":1:1: Document is empty"}),
            result.findings);
}

TEST_F(Lookup, TellsFilesFromModules) {
  for (const char* file : {"x.yang", "x.yin", "a/b", "./m", "/"}) EXPECT_TRUE(IsFileOperand(file));
  for (const char* module : {"m", "m.x", "yang", ".yang", "m@2020-01-01"}) {
    EXPECT_FALSE(IsFileOperand(module)) << module;
  }
}

TEST_F(Lookup, AnImportThatIsMissingStopsTheModuleOnly) {
  Module("m", "import none { prefix n; }");
  Module("k", "leaf a { type string; }");
  const JobResult result = Run({"m", "k"});
  EXPECT_EQ(JobState::kStopped, result.state);
  ASSERT_EQ(1u, result.modules.size());
  EXPECT_EQ("k", result.modules[0].name);
  EXPECT_EQ("m.yang:2: the imported module \"none\" is not found; add its folder with -p\n",
            Findings("m"));
}

TEST_F(Lookup, AFileThatHoldsAnotherModuleThanItPromisesIsSaid) {
  Write("a.yang", "module b { namespace urn:b; prefix b; }");
  Write("s.yang", "submodule t { belongs-to m { prefix m; } }");
  Module("m", "import a { prefix a; } include s;");
  EXPECT_EQ(
      "m.yang:2: the imported module \"a\" is not found; a.yang holds module 'b', not 'a'\n"
      "m.yang:2: the included submodule \"s\" is not found; s.yang holds submodule 't', not 's'\n",
      Findings("m"));
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
  EXPECT_EQ(std::vector<std::string>{"qmodel: a: no directory has this module; " + Path("a.yang") +
                                     " holds module 'b', not 'a'"},
            Run({"a"}).findings);
}

TEST_F(Lookup, WhatAnIncludeFindsInPlaceOfItsOwnSubmoduleIsSaid) {
  Write("s.yang", "submodule s { belongs-to k { prefix k; } }");
  Module("n", "leaf a { type string; }");
  Module("m", "include s; include n;");
  EXPECT_EQ(
      "m.yang:2: \"s\" is not a submodule of \"m\"; s.yang holds one of 'k'; include submodules "
      "of the module only\n"
      "m.yang:2: \"n\" is not a submodule of \"m\"; n.yang holds a module; include submodules of "
      "the module only\n",
      Findings("m"));
}

TEST_F(Lookup, AnImportOfARevisionThatIsMissingIsSaid) {
  Module("n", "revision 2021-01-01; leaf a { type string; }");
  Module("m", "import n { prefix n; revision-date 2020-01-01; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(2u, result.modules.size());
  EXPECT_EQ(1u, result.findings.size());
}

TEST_F(Lookup, ASubmoduleCannotBeImported) {
  Write("s.yang", "submodule s { belongs-to k { prefix k; } }");
  Module("m", "import s { prefix s; }");
  EXPECT_EQ(JobState::kStopped, Run({"m"}).state);
}

TEST_F(Lookup, ASubmoduleThatDoesNotSayOfWhichModuleIsNoModule) {
  Write("s.yang", "submodule s { leaf a { type string; } }");
  const JobResult alone = Run({Path("s.yang")});
  EXPECT_EQ(JobState::kStopped, alone.state);
  EXPECT_TRUE(alone.modules.empty());
  EXPECT_EQ(
      std::vector<std::string>{Path("s.yang") +
                               ":1: submodule \"s\" has no \"belongs-to\" statement; add one"},
      alone.findings);
  Module("m", "import s { prefix s; }");
  EXPECT_EQ("m.yang:2: \"s\" is a submodule and cannot be imported; import its module\n",
            Findings("m"));
}

// "n.yang" and "./n.yang", for instance.
TEST_F(Lookup, AnOperandIsNotReadAgainUnderAnotherPath) {
  Write("n.yang", "module n { namespace urn:n; prefix n; revision 2020-01-01; leaf }");
  Module("m", "import n { prefix n; revision-date 2020-01-01; }");
  const JobResult result = Run({folder() + "//n.yang", "m"});
  EXPECT_EQ(JobState::kStopped, result.state);
  for (const std::string& line : result.findings) EXPECT_NE(0u, line.find(Path("n.yang"))) << line;
}

// Whatever the order, as of the files of a directory.
TEST_F(Lookup, OfOperandsThatAreOneModuleTheNewestIsWritten) {
  WriteM("m@2019-01-01.yang", "2019-01-01");
  WriteM("m@2020-01-01.yang", "2020-01-01");
  const std::string older = Path("m@2019-01-01.yang");
  const std::string newer = Path("m@2020-01-01.yang");
  for (const auto& operands :
       {std::vector<std::string>{older, newer}, {newer, older}, {older, "m"}, {"m", older}}) {
    const JobResult result = Run(operands);
    EXPECT_EQ(JobState::kLost, result.state);
    ASSERT_EQ(1u, result.modules.size());
    EXPECT_EQ(newer, result.modules[0].source);
    EXPECT_EQ(std::vector<std::string>{older +
                                       ": this revision of \"m\" is not written, but 2020-01-01 "
                                       "of " +
                                       newer + "; compile it in another call"},
              result.findings);
  }
  EXPECT_EQ(JobState::kDone, Run({newer, "m", newer}).state);
}

// Who imports whom may be a long chain, which is not to be one of calls.
TEST_F(Lookup, AChainOfImportsTakesNoStack) {
  constexpr int kLength = 1000;
  Module("m0", "leaf a { type string; }");
  for (int i = 1; i < kLength; ++i)
    Module("m" + std::to_string(i), "import m" + std::to_string(i - 1) + " { prefix p; }");
  struct Call {
    JobRequest request;
    JobResult result;
  };
  Call call;
  call.request.folders = {folder()};
  call.request.operands = {"m" + std::to_string(kLength - 1)};
  call.request.withImports = true;
  const auto compile = [](void* arg) -> void* {
    auto* one = static_cast<Call*>(arg);
    one->result = RunJob(one->request);
    return nullptr;
  };
  pthread_attr_t attributes;
  ASSERT_EQ(0, pthread_attr_init(&attributes));
  ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, size_t{1} << 20));
  pthread_t thread{};
  ASSERT_EQ(0, pthread_create(&thread, &attributes, compile, &call));
  ASSERT_EQ(0, pthread_join(thread, nullptr));
  ASSERT_EQ(0, pthread_attr_destroy(&attributes));
  EXPECT_EQ(size_t{kLength}, call.result.modules.size());
}

TEST_F(Lookup, SyntaxErrorsStopAModuleAndWhatNeedsIt) {
  Write("n.yang", "module n { namespace urn:n; prefix n; leaf a { type string; }");
  Module("m", "import n { prefix n; }");
  Module("k", "leaf a { type string; }");
  const JobResult result = Run({"m", "k"});
  EXPECT_EQ(JobState::kStopped, result.state);
  ASSERT_EQ(1u, result.modules.size());
  EXPECT_EQ("k", result.modules[0].name);
}

using Limits = Compiling;

TEST_F(Limits, LongConditionsAreLeftOut) {
  const std::string text(3100, 'x');
  Module("m", "leaf b { type string; }\nleaf a { must \"../b = '" + text + "'\"; type string; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf b { type string; } leaf a { type string; }", BodyOf(result, "m"));
}

TEST_F(Limits, ConditionsThatTheLibraryCannotReadAreLeftOut) {
  Module("m", "leaf a { must \"$x\"; type string; }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf a { type string; }", BodyOf(result, "m"));
}

// The loader would refuse the whole module.
TEST_F(Limits, PathsWithAPrefixThatNothingDeclaresAreLeftOut) {
  Module("n", "container c { leaf a { type string; } }");
  Module("m",
         "import n { prefix n; }\n"
         "augment /x:c { leaf a { type string; } }\n"
         "augment /n:c/x:d { leaf a { type string; } }\n"
         "deviation /x:c { deviate not-supported; }\n"
         "leaf a { type leafref { path /x:c; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf a { type string; }", BodyOf(result, "m"));
}

// The library refuses each value that names the bit.
TEST_F(Limits, BitsWithNamesOfMoreThan64CharactersAreReported) {
  const std::string fits(64, 'b');
  Module("m", "leaf a { type bits { bit " + fits + "; } }");
  EXPECT_EQ(JobState::kDone, Run({"m"}).state);
  Module("k", "leaf a {\n type bits {\n bit " + fits + "b; bit c; } }");
  EXPECT_EQ(
      "k.yang:4: the name is longer than 64 characters; the library takes no value that has "
      "this bit\n",
      Findings("k"));
  EXPECT_EQ("leaf a { type bits { bit " + fits + "b; bit c; } }", BodyOf(Run({"k"}), "k"));
}

TEST_F(Limits, RangesOfMoreThan256TokensAreLeftOut) {
  std::string range = "0";
  for (int i = 1; i < 128; ++i) range += " | " + std::to_string(2 * i);
  Module("m", "leaf a { type int32 { range \"" + range + "\"; } }");
  EXPECT_EQ(JobState::kDone, Run({"m"}).state) << "255 tokens and the end";
  range += " | 1000";
  Module("k", "leaf a { type int32 { range \"" + range + "\"; } }");
  const JobResult result = Run({"k"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("leaf a { type int32; }", BodyOf(result, "k"));
}

TEST_F(Limits, StatementsDeeperThan256LevelsAreLeftOut) {
  std::string text;
  for (int i = 0; i < 260; ++i) text += "container c { ";
  Module("m", text + std::string(260, '}'));
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  const std::string body = BodyOf(result, "m");
  size_t containers = 0;
  for (size_t at = body.find("container"); at != std::string::npos;
       at = body.find("container", at + 1))
    ++containers;
  EXPECT_EQ(255u, containers) << "and the module itself";
}

// The loader takes no leaf without its type, and no list with a key that is not there.
TEST_F(Limits, LeafsWhoseTypeWouldStandTooDeepAreLeftOut) {
  const auto in = [](size_t depth, const std::string& leafs) {
    std::string text;
    for (size_t i = 0; i < depth; ++i) text += "container c { ";
    return text + leafs + std::string(depth, '}');
  };
  Module("m", in(253, "list l { key \"k q\"; leaf k { type string; } leaf q { type string; } }"));
  const std::string body = BodyOf(Run({"m"}), "m");
  EXPECT_NE(std::string::npos, body.find("list l;")) << body;
  Module11("n", in(253, "leaf a { type union { type int8; } } leaf b { type int8; }"));
  const std::string other = BodyOf(Run({"n"}), "n");
  EXPECT_EQ(std::string::npos, other.find("leaf a")) << other;
  EXPECT_NE(std::string::npos, other.find("leaf b { type int8; }")) << other;
}

TEST_F(Limits, LongNamesWhereTheLoaderLooksThemUpAreLeftOut) {
  const std::string n(65, 'n');
  Module("m", "identity i; identity " + n + " { base i; }\n" + "leaf " + n + " { type string; }\n" +
                  "leaf a { type identityref { base i; } default " + n + "; }\n" +
                  "leaf b { type string; must \"../" + n + "\"; }\n" + "list l { key \"k " + n +
                  "\"; leaf k { type string; } leaf " + n + " { type string; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ("identity i; identity " + n + " { base i; } leaf " + n +
                " { type string; } leaf a { type identityref { base i; } } "
                "leaf b { type string; } list l { key k; leaf k { type string; } leaf " +
                n + " { type string; } }",
            BodyOf(result, "m"));
}

TEST_F(Limits, KeysThatAreNoLeafsOfTheListAreLeftOut) {
  Module("m",
         "list l { key \"k none c\"; leaf k { type string; } container c; }\n"
         "list e { key none; leaf k { type string; } }");
  EXPECT_EQ(
      "list l { key k; leaf k { type string; } container c; } list e { leaf k { type string; } }",
      BodyOf(Run({"m"}), "m"));
}

TEST_F(Limits, TypesOfTypedefsThatAreTooManyAreWrittenAsString) {
  std::string text;
  for (int i = 0; i <= 65535; ++i) text += "typedef t" + std::to_string(i) + "{type int8;}";
  Module("m", text + "\nleaf a { type t65534; }\nleaf b { type t65535 { range 1; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  const std::string body = BodyOf(result, "m");
  EXPECT_NE(std::string::npos, body.find("typedef t65534 { type int8; } leaf a { type t65534; } "
                                         "leaf b { type string; }"))
      << body.substr(body.size() - 200);
}

TEST_F(Limits, MoreThan65535OfAKindAreLeftOut) {
  std::string text = "typedef t { type enumeration {\n";
  for (int i = 0; i < 65540; ++i) text += "enum e" + std::to_string(i) + ";\n";
  Module("m", text + "} }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kLost, result.state);
  const std::string body = BodyOf(result, "m");
  EXPECT_NE(std::string::npos, body.find("enum e65534;"));
  EXPECT_EQ(std::string::npos, body.find("enum e65535;"));
}

TEST_F(Limits, NamesThatAreNoneOfAModuleAreNotWritten) {
  Write("x.yin",
        "<module name='../x' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><namespace uri='urn:x'/>"
        "<prefix value='x'/></module>");
  const JobResult result = Run({Path("x.yin")});
  EXPECT_EQ(JobState::kStopped, result.state);
  EXPECT_TRUE(result.modules.empty());
}

}  // namespace
}  // namespace compiler
