// SPDX-License-Identifier: BSD-3-Clause
// qmodel compile and -c, end to end.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "tests/client/run_client.h"
#include "tests/support/yin_text.h"

namespace {

using Args = std::vector<std::string>;

// A folder of models, in which the program runs.
class ClientCompile : public testing::Test {
 protected:
  ClientCompile() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
  }
  ~ClientCompile() override { std::filesystem::remove_all(path_); }

  void Write(const std::string& file, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + "/" + file).parent_path());
    std::ofstream(path_ + "/" + file) << text;
  }
  void Fifo(const std::string& file) const {
    EXPECT_EQ(0, mkfifo((path_ + "/" + file).c_str(), 0600));
  }
  std::string Read(const std::string& file) const {
    std::stringstream content;
    content << std::ifstream(path_ + "/" + file).rdbuf();
    return content.str();
  }
  std::set<std::string> List(const std::string& dir) const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_ + "/" + dir))
      names.insert(entry.path().filename().string());
    return names;
  }
  bool Exists(const std::string& file) const { return std::filesystem::exists(path_ + "/" + file); }
  ClientRun Run(const Args& args, const std::string& input = "") const {
    return RunClient(path_, args, input);
  }

  // Module m with a grouping, which imports n.
  void WriteModels() const {
    Write("m.yang",
          "module m { namespace urn:m; prefix m; import n { prefix n; }\n"
          "  grouping g { leaf a { type n:t; } }\n"
          "  container c { uses g; }\n"
          "  rpc r { input { uses g; leaf b { type int8; default 5; } } }\n"
          "}\n");
    Write("n.yang", "module n { namespace urn:n; prefix n; typedef t { type string; } }\n");
  }
  ClientRun RunShell(const std::string& command) const {
    return RunProgram("/bin/sh", path_, {"-c", command});
  }

 private:
  std::string path_;
};

TEST_F(ClientCompile, WritesOneModuleToStandardOutput) {
  WriteModels();
  const ClientRun run = Run({"compile", "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.err);
  EXPECT_NE(std::string::npos, run.out.find("<leaf name=\"a\">")) << run.out;
  EXPECT_EQ(std::string::npos, run.out.find("<uses"));
  EXPECT_EQ(run.out, Run({"compile", "m"}).out);
}

TEST_F(ClientCompile, WritesIntoAFolderThatItMakes) {
  WriteModels();
  const ClientRun run = Run({"compile", "-i", "-o", "out/deep", "m"});
  EXPECT_EQ(0, run.status) << run.err;
  EXPECT_EQ("", run.out);
  EXPECT_TRUE(Exists("out/deep/m.yin"));
  EXPECT_TRUE(Exists("out/deep/n.yin"));
  EXPECT_EQ(Run({"compile", "m"}).out, Read("out/deep/m.yin"));
}

TEST_F(ClientCompile, CompilingItsOutputAgainChangesNothing) {
  WriteModels();
  ASSERT_EQ(0, Run({"compile", "-i", "-o", "one", "m"}).status);
  ASSERT_EQ(0, Run({"compile", "-i", "-p", "one", "-o", "two", "m"}).status);
  EXPECT_EQ(Read("one/m.yin"), Read("two/m.yin"));
  EXPECT_EQ(Read("one/n.yin"), Read("two/n.yin"));
}

TEST_F(ClientCompile, NeverReplacesAFileThatWasRead) {
  WriteModels();
  ASSERT_EQ(0, Run({"compile", "-i", "-o", "out", "m"}).status);
  const std::string before = Read("out/m.yin");
  Write("out/m.yin", before + "<!-- mine -->\n");
  const ClientRun run = Run({"compile", "-p", "out", "-o", "out", "m"});
  EXPECT_EQ(2, run.status);
  EXPECT_EQ(before + "<!-- mine -->\n", Read("out/m.yin"));
}

TEST_F(ClientCompile, LeavesNothingButTheFiles) {
  WriteModels();
  ASSERT_EQ(0, Run({"compile", "-i", "-o", "out", "m"}).status);
  ASSERT_EQ(0, Run({"compile", "-i", "-o", "out", "m"}).status);
  EXPECT_EQ((std::set<std::string>{"m.yin", "n.yin"}), List("out"));
}

TEST_F(ClientCompile, GivesStatus1WhenSomethingWasLost) {
  Write("m.yang",
        "module m { yang-version 1.1; namespace urn:m; prefix m; feature x; feature y;\n"
        "  leaf a { if-feature \"x or y\"; type string; } }\n");
  const ClientRun run = Run({"compile", "m"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(0u, run.err.find("./m.yang:2: ")) << run.err;
  EXPECT_NE(std::string::npos, run.out.find("<leaf name=\"a\">"));
}

TEST_F(ClientCompile, DecidesFeatures) {
  Write("m.yang",
        "module m { yang-version 1.1; namespace urn:m; prefix m; feature x; feature y;\n"
        "  leaf a { if-feature \"x or y\"; type string; }\n"
        "  leaf b { if-feature \"not x\"; type string; } }\n");
  const ClientRun on = Run({"compile", "-f", "m:x", "m"});
  EXPECT_EQ(0, on.status) << on.err;
  EXPECT_NE(std::string::npos, on.out.find("name=\"a\""));
  EXPECT_EQ(std::string::npos, on.out.find("name=\"b\""));
  const ClientRun off = Run({"compile", "-F", "m"});
  EXPECT_EQ(0, off.status) << off.err;
  EXPECT_EQ(std::string::npos, off.out.find("name=\"a\""));
  EXPECT_NE(std::string::npos, off.out.find("name=\"b\""));
}

TEST_F(ClientCompile, AFeatureThatIsNotThereIsWrongUsage) {
  WriteModels();
  for (const char* feature : {"m:none", "other:x"}) {
    const ClientRun run = Run({"compile", "-f", feature, "-o", "out", "m"});
    EXPECT_EQ(2, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(0u, run.err.find("qmodel: ")) << run.err;
    EXPECT_FALSE(Exists("out"));
  }
}

TEST_F(ClientCompile, WritesTheRestWhenOneModuleIsStopped) {
  WriteModels();
  Write("bad.yang", "module bad { namespace urn:bad; prefix b; container c { uses none; } }\n");
  Write("user.yang", "module user { namespace urn:u; prefix u; import bad { prefix b; } }\n");
  const ClientRun run = Run({"compile", "-i", "-o", "out", "m", "user"});
  EXPECT_EQ(3, run.status);
  EXPECT_TRUE(Exists("out/m.yin"));
  EXPECT_FALSE(Exists("out/bad.yin"));
  EXPECT_FALSE(Exists("out/user.yin"));
  EXPECT_NE(std::string::npos, run.err.find("./bad.yang:1: ")) << run.err;
}

TEST_F(ClientCompile, ASubmoduleAsOperandIsAnErrorThatNamesItsModule) {
  Write("s.yang", "submodule s { belongs-to the-module { prefix m; } }\n");
  const ClientRun run = Run({"compile", "s"});
  EXPECT_EQ(3, run.status);
  EXPECT_NE(std::string::npos, run.err.find("the-module")) << run.err;
}

TEST_F(ClientCompile, ALineStaysOneWhateverItNames) {
  Write("two\nlines/m.yang",
        "module m { namespace urn:m; prefix m; leaf a { type int8; default 'x\ny'; } }\n");
  const ClientRun run = Run({"compile", "-p", "two\nlines", "m"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(0u, run.err.find("two\\x0alines/m.yang:1: the default \"x\\x0ay\" ")) << run.err;
  EXPECT_EQ(1, std::count(run.err.begin(), run.err.end(), '\n')) << run.err;
}

TEST_F(ClientCompile, AnOperandThatIsNotThereIsALineOfTheProgram) {
  Write("s.yang", "submodule s { belongs-to the-module { prefix m; } }\n");
  const std::string submodule = "qmodel: s: a submodule; name its module \"the-module\"\n";
  EXPECT_EQ(submodule, Run({"compile", "s"}).err);
  EXPECT_EQ(submodule, Run({"load", "-c", "s"}).err);
  EXPECT_EQ(0u, Run({"compile", "gone"}).err.find("qmodel: gone: no directory has this module\n"));
}

TEST_F(ClientCompile, WhatAFileHoldsInPlaceOfTheModuleThatItPromisesIsSaid) {
  Write("a.yang", "module b { namespace urn:b; prefix b; }\n");
  Write("m.yang", "module m { namespace urn:m; prefix m;\n  import a { prefix a; } }\n");
  const std::string holds = "./a.yang holds module 'b', not 'a'\n";
  for (const Args& call : {Args{"compile"}, Args{"load", "-c"}}) {
    Args args = call;
    args.emplace_back("a");
    EXPECT_EQ("qmodel: a: no directory has this module; " + holds, Run(args).err);
    args.back() = "m";
    const ClientRun import = Run(args);
    EXPECT_EQ(3, import.status);
    EXPECT_EQ(0u, import.err.find("./m.yang:2: the imported module \"a\" is not found; " + holds))
        << import.err;
  }
  EXPECT_EQ("m.yang:2: the imported module 'a' is not found; " + holds,
            Run({"compile", "--convert", "m.yang"}).err);
}

TEST_F(ClientCompile, AModuleWithoutANameIsAnErrorWithItsPlace) {
  Write("m.yang", "\nmodule '' { namespace urn:m; prefix m; }\n");
  const std::string expected = "m.yang:2:1: 'module' has an empty name; write the module's name\n";
  for (const Args& args : {Args{"compile", "m.yang"}, Args{"compile", "--convert", "m.yang"},
                           Args{"load", "-c", "--no-cache", "m.yang"}}) {
    const ClientRun run = Run(args);
    EXPECT_EQ(3, run.status) << args[0];
    EXPECT_EQ(expected, run.err);
    EXPECT_EQ("", run.out);
  }
}

TEST_F(ClientCompile, AFileThatWasLoadedIsUnloadedByTheSameName) {
  WriteModels();
  const ClientRun run = Run({"load", "-c", "-i", "-u", "./n.yang", "-m", "./n.yang", "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.err);
}

TEST_F(ClientCompile, SearchesSubFoldersWhenAsked) {
  Write("vendor/a/m.yang", "module m { namespace urn:m; prefix m; }\n");
  EXPECT_EQ(3, Run({"compile", "-p", "vendor", "m"}).status);
  EXPECT_EQ(0, Run({"compile", "-r", "-p", "vendor", "m"}).status);
}

TEST_F(ClientCompile, TakesAFileAndSearchesItsFolderFirst) {
  WriteModels();
  Write("other/m.yang", "module m { namespace urn:other; prefix m; import n { prefix n; } }\n");
  Write("other/n.yang", "module n { namespace urn:other-n; prefix n; }\n");
  const ClientRun run = Run({"compile", "-i", "-o", "out", "other/m.yang"});
  EXPECT_EQ(0, run.status) << run.err;
  EXPECT_NE(std::string::npos, Read("out/n.yin").find("urn:other-n"));
}

TEST_F(ClientCompile, AnUnusableDirectoryOrOutputGivesStatus3) {
  WriteModels();
  EXPECT_EQ(3, Run({"compile", "-p", "nowhere", "m"}).status);
  Write("file", "");
  EXPECT_EQ(3, Run({"compile", "-o", "file/out", "m"}).status);
  const ClientRun file = Run({"compile", "-o", "file", "m"});
  EXPECT_EQ(3, file.status);
  EXPECT_EQ("qmodel: file: Not a directory\n", file.err);
  const ClientRun nameless = Run({"compile", "-o", "", "m"});
  EXPECT_EQ(2, nameless.status);
  EXPECT_EQ("qmodel: a folder has a name\n", nameless.err);
  EXPECT_EQ("", nameless.out);
}

TEST_F(ClientCompile, LoadsWhatItHasCompiled) {
  WriteModels();
  const ClientRun run = Run({"load", "-c", "-i", "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.err);
  EXPECT_EQ("m - urn:m\n", run.out);
  const ClientRun tree = Run({"tree", "-c", "-i", "./m.yang"});
  EXPECT_NE(std::string::npos, tree.out.find("a?")) << tree.out << tree.err;
}

TEST_F(ClientCompile, ValidatesOnWhatItHasCompiled) {
  WriteModels();
  const ClientRun run = Run({"rpc", "-c", "-i", "-m", "m", "-"}, "<r xmlns='urn:m'><a>x</a></r>");
  EXPECT_EQ(0, run.status) << run.err;
  EXPECT_NE(std::string::npos, run.out.find("<b>5</b>")) << run.out;
  const ClientRun value = Run({"value", "-c", "-i", "-m", "m", "/m:c/a", "text"});
  EXPECT_EQ("valid\n", value.out) << value.err;
}

TEST_F(ClientCompile, LossesChangeNoStatusOfACommandThatLoads) {
  Write("m.yang",
        "module m { yang-version 1.1; namespace urn:m; prefix m; feature x; feature y;\n"
        "  leaf a { if-feature \"x or y\"; type string; } }\n");
  const ClientRun run = Run({"load", "-c", "m"});
  EXPECT_EQ(0, run.status);
  EXPECT_NE("", run.err);
}

TEST_F(ClientCompile, AModuleThatDoesNotCompileCouldNotBeLoaded) {
  Write("m.yang", "module m { namespace urn:m; prefix m; container c { uses none; } }\n");
  const ClientRun run = Run({"load", "-c", "m"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ(0u, run.err.find("./m.yang:1: ")) << run.err;
}

TEST_F(ClientCompile, LoadErrorsNameTheOriginalFile) {
  Write("m.yang",
        "module m { namespace urn:m; prefix m;\n"
        "  container c { leaf l { type decimal64 { fraction-digits 30; } } } }\n");
  const ClientRun run = Run({"load", "-c", "m"});
  EXPECT_EQ(3, run.status);
  EXPECT_NE(std::string::npos, run.err.find("m: ./m.yang: ")) << run.err;
}

TEST_F(ClientCompile, PlainLoadsSayHowMuchTheySkip) {
  Write("m.yin",
        yin_text::Module(
            "m",
            "<include module='s'/><typedef name='t'><type name='string'/></typedef>"
            "<grouping name='g'><typedef name='u'><type name='string'/></typedef></grouping>"
            "<container name='c'><typedef name='u'><type name='string'/></typedef><uses name='g'/>"
            "</container>"));
  Write("s.yin", yin_text::Submodule("s", yin_text::BelongsTo("m") + "<grouping name='h'/>"));
  const std::string expected = "qmodel: m: 4 statements were skipped that -c spells out\n";
  EXPECT_EQ(expected, Run({"load", "m"}).err);
  EXPECT_EQ(expected, Run({"tree", "m"}).err);
  EXPECT_EQ("", Run({"load", "-c", "m"}).err);
}

// What is counted is looked for and read with the library's care: nothing is waited for,
// nothing outside the search directories is looked at, and a model that the library
// refuses for the attributes it declares is not read for minutes.
TEST_F(ClientCompile, WhatTheLibraryDoesNotReadIsNotCounted) {
  const std::string skipped = yin_text::Module("m", "<grouping name='g'/>");
  Fifo("fifo.yin");
  EXPECT_EQ("fifo: Failed to find \"fifo\" from search directories.\n", Run({"load", "fifo"}).err);
  Write("in/m.yin", yin_text::Module("m", "<include module='../s'/>"));
  Write("s.yin", skipped);
  EXPECT_EQ(std::string::npos, Run({"load", "-p", "in", "m"}).err.find("were skipped"));
  for (const size_t count : {16u, 17u}) {
    std::string attributes;
    for (size_t i = 0; i < count; ++i) attributes += " a" + std::to_string(i) + " CDATA 'x'";
    Write("m.yin", "<!DOCTYPE module [<!ATTLIST module" + attributes + ">]>" + skipped);
    const ClientRun run = Run({"load", "m"});
    EXPECT_EQ(count == 16, run.err.find("were skipped") != std::string::npos) << run.err;
  }
}

TEST_F(ClientCompile, AFullDeviceGivesStatus3) {
  Write("m.yang", "module m { namespace urn:m; prefix m; leaf a { type string; } }");
  for (const std::string words : {"compile m", "compile --convert m.yang", "lint -W style m",
                                  "lint --json m", "tree -c --no-cache m"}) {
    const ClientRun run = RunShell(QMODEL_CLIENT " " + words + " > /dev/full");
    EXPECT_EQ(3, run.status) << words;
    EXPECT_EQ("qmodel: standard output: No space left on device\n", run.err) << words;
  }
}

// The limit holds for files, so what is said goes through a pipe.
TEST_F(ClientCompile, AFileThatCannotBeWrittenWholeIsNotThere) {
  Write("m.yang", "module m { namespace urn:m; prefix m; leaf a { type string; } }");
  Write("out/m.yin", "as it was");
  const ClientRun run = RunShell("(trap '' XFSZ; ulimit -f 0; " QMODEL_CLIENT
                                 " compile -o out m 2>&1; echo status $?) | cat");
  EXPECT_NE(std::string::npos, run.out.find("File too large\nstatus 3\n")) << run.out;
  EXPECT_EQ("as it was", Read("out/m.yin"));
  EXPECT_EQ(std::set<std::string>{"m.yin"}, List("out"));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// A sanitizer takes more than any limit for itself.
// The program waits for a message, which never comes.
TEST_F(ClientCompile, ASignalThatEndsItLeavesNoFolder) {
  WriteModels();
  Fifo("message");
  Write("tmp/here", "");
  const ClientRun run = RunShell("TMPDIR=$PWD/tmp " QMODEL_CLIENT
                                 " rpc -c -i -m m message & "
                                 "for i in $(seq 1000); do "
                                 "[ -e tmp/qmodel-*/n.yin ] && break; sleep 0.01; done; "
                                 "kill -TERM $!; wait $!");
  EXPECT_EQ(128 + SIGTERM, run.status);
  EXPECT_EQ(std::set<std::string>{"here"}, List("tmp"));
}

TEST_F(ClientCompile, AReaderThatHasSeenEnoughLeavesNoFolder) {
  std::string leafs;
  for (int i = 0; i < 5000; ++i) leafs += "leaf leaf-" + std::to_string(i) + " { type string; }\n";
  Write("m.yang", "module m { namespace urn:m; prefix m;\n" + leafs + "}\n");
  Write("tmp/here", "");
  const ClientRun run =
      RunShell("(TMPDIR=$PWD/tmp " QMODEL_CLIENT " tree -c m; echo $? >status) | head -1");
  EXPECT_EQ("module: m\n", run.out);
  EXPECT_NE("0\n", Read("status"));
  EXPECT_EQ(std::set<std::string>{"here"}, List("tmp"));
}

TEST_F(ClientCompile, MemoryThatIsRefusedIsOneLine) {
  const std::string command = std::string("ulimit -v 200000 && head -c 300000000 /dev/zero | ") +
                              QMODEL_CLIENT + " compile --convert -";
  const ClientRun run = RunProgram("/bin/sh", ".", {"-c", command}, "");
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("qmodel: out of memory\n", run.err);
}
#endif

TEST_F(ClientCompile, SaysWhatIsWrongAndWritesTheModule) {
  Write("m.yang",
        "module m { namespace urn:m; prefix m;\n"
        "  leaf a { type int8; default 200; }\n"
        "}\n");
  const ClientRun run = Run({"compile", "m"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(0u, run.err.find("./m.yang:2: the default")) << run.err;
  EXPECT_NE(std::string::npos, run.out.find("<leaf name=\"a\">")) << run.out;
  EXPECT_EQ(0, Run({"load", "-c", "m"}).status);
}

}  // namespace
