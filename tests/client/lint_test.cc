// SPDX-License-Identifier: BSD-3-Clause
// qmodel lint, end to end.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/client/run_client.h"

namespace {

using Args = std::vector<std::string>;

class ClientLint : public testing::Test {
 protected:
  ClientLint() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
  }
  ~ClientLint() override { std::filesystem::remove_all(path_); }

  void Write(const std::string& file, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + "/" + file).parent_path());
    std::ofstream(path_ + "/" + file) << text;
  }
  ClientRun Run(const Args& args) const { return RunClient(path_, args); }

  // A module without a fault, one with a warning, one with an error.
  void WriteModels() const {
    Write("good.yang",
          "module good { namespace urn:good; prefix g;\n"
          "  leaf a { type string; } }\n");
    Write("warned.yang",
          "module warned { namespace urn:warned; prefix w;\n"
          "  import good { prefix g; }\n"
          "  leaf a { type string; } }\n");
    Write("wrong.yang",
          "module wrong { namespace urn:wrong; prefix w;\n"
          "  leaf a { type strng; }\n"
          "  leaf b { type int8; default 300; } }\n");
  }

  std::string path_;
};

constexpr char kWarning[] =
    "./warned.yang:2:3: warning: nothing uses the import of \"good\"; remove it [unused]\n";
constexpr char kErrors[] =
    "./wrong.yang:2:12: error: there is no typedef \"strng\"; did you mean \"string\"? [type]\n"
    "./wrong.yang:3:23: error: the default \"300\" is out of range; write a value of type "
    "\"int8\" [default]\n";

TEST_F(ClientLint, SaysNothingOfAModelWithoutFault) {
  WriteModels();
  const ClientRun run = Run({"lint", "good"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ("", run.err);
}

TEST_F(ClientLint, EndsWith0WhenThereAreWarningsOnly) {
  WriteModels();
  const ClientRun run = Run({"lint", "warned"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(kWarning, run.out);
}

TEST_F(ClientLint, EndsWith1WhenThereAreErrors) {
  WriteModels();
  const ClientRun run = Run({"lint", "wrong"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(kErrors, run.out);
  EXPECT_EQ("", run.err);
}

TEST_F(ClientLint, TakesSeveralOperandsInOrder) {
  WriteModels();
  const ClientRun run = Run({"lint", "./wrong.yang", "good", "./warned.yang"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(std::string(kErrors) + kWarning, run.out);
}

TEST_F(ClientLint, TakesTwoRevisionsOfAModule) {
  Write("m.yang",
        "module m { namespace urn:m; prefix m; revision 2021-01-01;\n"
        "  leaf a { type strng; } }\n");
  Write("m@2020-01-01.yang",
        "module m { namespace urn:m; prefix m; revision 2020-01-01;\n"
        "  leaf b { type strng; } }\n");
  const ClientRun run = Run({"lint", "./m.yang", "./m@2020-01-01.yang"});
  EXPECT_EQ(1, run.status);
  EXPECT_NE(std::string::npos, run.out.find("./m.yang:2:12: error: ")) << run.out;
  EXPECT_NE(std::string::npos, run.out.find("./m@2020-01-01.yang:2:12: error: ")) << run.out;
  Write("n.yang",
        "module n { namespace urn:n; prefix n; revision 2021-01-01; leaf a { type int8; } }");
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01; leaf b { type int8; } }");
  const ClientRun good = Run({"lint", "./n.yang", "./n@2020-01-01.yang", "./m.yang"});
  EXPECT_EQ(1, good.status);
}

TEST_F(ClientLint, ReadsYinLikeText) {
  Write("yin.yin",
        "<module name='yin' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>\n"
        "  <namespace uri='urn:yin'/>\n"
        "  <prefix value='y'/>\n"
        "  <leaf name='a'><type name='strng'/></leaf>\n"
        "</module>\n");
  const ClientRun run = Run({"lint", "yin.yin"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(0u, run.out.find("yin.yin:4:")) << run.out;
  EXPECT_NE(std::string::npos, run.out.find("\"strng\"; did you mean \"string\"? [type]\n"));
}

TEST_F(ClientLint, SearchesDirectoriesAndTheirSubFoldersOnDemand) {
  WriteModels();
  Write("far/away/user.yang",
        "module user { yang-version 1.1; namespace urn:user; prefix u;\n"
        "  leaf a { type string; } }\n");
  EXPECT_EQ(3, Run({"lint", "-p", "far", "user"}).status);
  EXPECT_EQ(0, Run({"lint", "-r", "-p", "far", "user"}).status);
}

TEST_F(ClientLint, ShowsAndHidesTheWarningsOfAClass) {
  WriteModels();
  EXPECT_EQ("", Run({"lint", "-W", "no-unused", "warned"}).out);
  const ClientRun style = Run({"lint", "-W", "style", "good"});
  EXPECT_EQ(0, style.status);
  EXPECT_NE(std::string::npos, style.out.find("./good.yang:2:3: warning: leaf \"a\" has no "
                                              "description; say what it is for [style]\n"));
  EXPECT_EQ(kErrors, Run({"lint", "-W", "no-type", "--warn=no-default", "wrong"}).out)
      << "errors are always shown";
}

TEST_F(ClientLint, PrintsAnArrayOfObjects) {
  WriteModels();
  EXPECT_EQ("[]\n", Run({"lint", "--json", "good"}).out);
  EXPECT_EQ(
      "[\n  {\"file\": \"./warned.yang\", \"line\": 2, \"column\": 3, \"severity\": \"warning\", "
      "\"class\": \"unused\", \"message\": \"nothing uses the import of \\\"good\\\"\", "
      "\"advice\": \"remove it\"}\n]\n",
      Run({"lint", "warned", "--json"}).out);
}

TEST_F(ClientLint, EndsWith2OnWrongUsage) {
  WriteModels();
  for (const Args& args :
       {Args{"lint"}, Args{"lint", "-W", "nothing", "good"}, Args{"lint", "-W", "no-", "good"},
        Args{"lint", "-m", "good", "good"}, Args{"lint", "-o", "x", "good"},
        Args{"lint", "-i", "good"}, Args{"lint", "-f", "good:x", "good"},
        Args{"tree", "--json", "good"}, Args{"compile", "-W", "style", "good"}}) {
    const ClientRun run = Run(args);
    EXPECT_EQ(2, run.status) << args.back();
    EXPECT_EQ("", run.out);
    EXPECT_EQ(0u, run.err.find("qmodel: "));
  }
}

TEST_F(ClientLint, EndsWith3WhenAnOperandCannotBeUsed) {
  WriteModels();
  Write("part.yang", "submodule part { belongs-to good { prefix g; } }\n");
  const ClientRun missing = Run({"lint", "nowhere", "wrong"});
  EXPECT_EQ(3, missing.status);
  EXPECT_EQ(kErrors, missing.out) << "the others are checked all the same";
  EXPECT_EQ("qmodel: nowhere: no directory has this module\n", missing.err);
  EXPECT_EQ(3, Run({"lint", "./nowhere.yang"}).status);
  EXPECT_EQ(3, Run({"lint", "-p", "nowhere", "good"}).status);
  const ClientRun part = Run({"lint", "part.yang"});
  EXPECT_EQ(3, part.status);
  EXPECT_NE(std::string::npos, part.err.find("\"good\"")) << part.err;
}

TEST_F(ClientLint, SaysWhatAFileHoldsInPlaceOfTheModuleThatItPromises) {
  Write("a.yang", "module b { namespace urn:b; prefix b; }\n");
  Write("m.yang", "module m { namespace urn:m; prefix m;\n  import a { prefix a; } }\n");
  const ClientRun operand = Run({"lint", "a"});
  EXPECT_EQ(3, operand.status);
  EXPECT_EQ("qmodel: a: no directory has this module; ./a.yang holds module 'b', not 'a'\n",
            operand.err);
  const ClientRun import = Run({"lint", "m.yang"});
  EXPECT_EQ(1, import.status);
  EXPECT_EQ(0u, import.out.find("m.yang:2:3: error: the imported module \"a\" is not found; "
                                "./a.yang holds module 'b', not 'a' [linkage]\n"))
      << import.out;
}

TEST_F(ClientLint, SaysWhereAFileIsNotWellFormed) {
  Write("broken.yang", "module broken {\n  namespace urn:b;\n  prefix b\n}\n");
  Write("broken.yin", "<module name='broken'\n");
  for (const char* file : {"broken.yang", "broken.yin"}) {
    const ClientRun run = Run({"lint", file});
    EXPECT_EQ(1, run.status) << file;
    EXPECT_NE(std::string::npos, run.out.find(" [syntax]\n")) << run.out;
  }
}

TEST_F(ClientLint, NamesWhereAGroupingWasUsed) {
  Write("used.yang",
        "module used { namespace urn:u; prefix u;\n"
        "  grouping g { list l { key k; uses h; } }\n"
        "  grouping h { leaf k { type string; } leaf m { when \"../../n\"; type string; } }\n"
        "  container c { uses g; }\n"
        "}\n");
  const ClientRun run = Run({"lint", "used"});
  EXPECT_EQ(1, run.status);
  EXPECT_NE(std::string::npos, run.out.find("./used.yang:3:")) << run.out;
  EXPECT_NE(std::string::npos, run.out.find(", used at ./used.yang:4; ")) << run.out;
}

}  // namespace
