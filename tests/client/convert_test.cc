// SPDX-License-Identifier: BSD-3-Clause
// qmodel compile --convert, end to end.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/client/run_client.h"

namespace {

using Args = std::vector<std::string>;

// A folder of models, in which the program runs.
class ClientConvert : public testing::Test {
 protected:
  ClientConvert() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
    Write("in/m.yang",
          "module m {\n"
          "  namespace urn:m; prefix m;\n"
          "  import e { prefix x; }\n"
          "  x:note 'of the\nmodule' { x:mark; }\n"
          "  container c { uses g; x:title \"a\tb\"; }\n"
          "}\n");
    Write("other/e.yang",
          "module e {\n"
          "  namespace urn:e; prefix e; include es;\n"
          "  extension note { argument text { yin-element true; } }\n"
          "  extension mark;\n"
          "}\n");
    Write("other/es.yang",
          "submodule es { belongs-to e { prefix e; } extension title { argument name; } }\n");
  }
  ~ClientConvert() override { std::filesystem::remove_all(path_); }

  void Write(const std::string& file, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + "/" + file).parent_path());
    std::ofstream(path_ + "/" + file) << text;
  }
  ClientRun Convert(const Args& args, const std::string& input = "") const {
    Args all = {"compile", "--convert"};
    all.insert(all.end(), args.begin(), args.end());
    return RunClient(path_, all, input);
  }

 private:
  std::string path_;
};

constexpr char kYin[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<module name=\"m\"\n"
    "        xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\"\n"
    "        xmlns:m=\"urn:m\"\n"
    "        xmlns:x=\"urn:e\">\n"
    "  <namespace uri=\"urn:m\"/>\n"
    "  <prefix value=\"m\"/>\n"
    "  <import module=\"e\">\n"
    "    <prefix value=\"x\"/>\n"
    "  </import>\n"
    "  <x:note>\n"
    "    <x:text>of the\nmodule</x:text>\n"
    "    <x:mark/>\n"
    "  </x:note>\n"
    "  <container name=\"c\">\n"
    "    <uses name=\"g\"/>\n"
    "    <x:title name=\"a&#9;b\"/>\n"
    "  </container>\n"
    "</module>\n";

TEST_F(ClientConvert, WritesTheYinFormWithNothingSpelledOut) {
  const ClientRun run = Convert({"-p", "other", "in/m.yang"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ(kYin, run.out);
  EXPECT_EQ("", run.err);
}

TEST_F(ClientConvert, LooksImportsUpInTheFoldersNamedAndInTheFilesOwn) {
  Write("in/e.yang", "module e { namespace urn:own; prefix e; }\n");
  const ClientRun run = Convert({"-p", "other", "in/m.yang"});
  EXPECT_NE(run.out.find("xmlns:x=\"urn:own\""), std::string::npos);
}

TEST_F(ClientConvert, ReadsStandardInput) {
  const ClientRun run = Convert({"-"}, "module m { namespace urn:m; prefix m; }");
  EXPECT_EQ(0, run.status);
  EXPECT_NE(run.out.find("<module name=\"m\""), std::string::npos);
}

TEST_F(ClientConvert, TakesYinAsWell) {
  Write("in/m.yin", Convert({"-p", "other", "in/m.yang"}).out);
  EXPECT_EQ(kYin, Convert({"-p", "other", "in/m.yin"}).out);
}

TEST_F(ClientConvert, SaysTheLineOfAnImportThatIsMissing) {
  const ClientRun run = Convert({"in/m.yang"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ("in/m.yang:3: the imported module 'e' is not found; add its folder with -p\n", run.err);
}

TEST_F(ClientConvert, LooksAtNoImportOfAnImport) {
  Write("in/e.yang", "module e { namespace urn:e; prefix e; import gone { prefix g; } }\n");
  Write("in/m.yang", "module m { namespace urn:m; prefix m; import e { prefix e; } }\n");
  EXPECT_EQ(0, Convert({"in/m.yang"}).status);
}

TEST_F(ClientConvert, AsksOfAnImportOnlyWhatItNeeds) {
  Write("broken.yang",
        "module broken {\n  namespace urn:b; prefix b;\n  extension x { argument a; }\n"
        "  leaf y { type string }\n}\n");
  Write("k.yang",
        "module k {\n  namespace urn:k; prefix k;\n  import broken { prefix b; }\n  b:x 1;\n}\n");
  const ClientRun run = Convert({"k.yang"});
  EXPECT_EQ(0, run.status);
  EXPECT_EQ("", run.err);
  EXPECT_NE(std::string::npos, run.out.find("<b:x a=\"1\"/>")) << run.out;
}

TEST_F(ClientConvert, SaysWhyAnImportLacksWhatItNeeds) {
  Write("broken.yang", "module broken {\n  namespace urn:b; prefix b;\n  7 { extension x; }\n}\n");
  Write("k.yang",
        "module k {\n  namespace urn:k; prefix k;\n  import broken { prefix b; }\n  b:x;\n}\n");
  const ClientRun run = Convert({"k.yang"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(
      "k.yang:4: module 'broken' defines no extension 'x'\n"
      "./broken.yang:3:3: '7' is no keyword\n",
      run.err);
}

TEST_F(ClientConvert, GivesASubmoduleTheNamespaceOfItsModule) {
  const ClientRun run = Convert({"other/es.yang"});
  EXPECT_EQ(0, run.status);
  EXPECT_NE(run.out.find("<submodule name=\"es\""), std::string::npos);
  EXPECT_NE(run.out.find("xmlns:e=\"urn:e\""), std::string::npos);
  Write("in/es.yang", "submodule es {\n belongs-to gone { prefix e; } }\n");
  const ClientRun missing = Convert({"in/es.yang"});
  EXPECT_EQ(3, missing.status);
  EXPECT_EQ(
      "in/es.yang:2: the module 'gone' of this submodule is not found; add its folder with -p\n",
      missing.err);
}

TEST_F(ClientConvert, LeavesOutWhatItCannotWriteAndSaysSo) {
  Write("in/m.yang",
        "module m {\n namespace urn:m; prefix m;\n import e { prefix x; }\n x:gone;\n y:z 'a';\n"
        " x:mark 'a';\n x:title;\n x:mark;\n}\n");
  const ClientRun run = Convert({"-p", "other", "in/m.yang"});
  EXPECT_EQ(1, run.status);
  EXPECT_EQ(
      "in/m.yang:4: module 'e' defines no extension 'gone'\n"
      "in/m.yang:5: no import has the prefix 'y'; import the module that defines the extension\n"
      "in/m.yang:6: 'x:mark' takes no argument\n"
      "in/m.yang:7: 'x:title' lacks its argument 'name'\n",
      run.err);
  EXPECT_NE(run.out.find("  <x:mark/>\n</module>\n"), std::string::npos) << run.out;
}

TEST_F(ClientConvert, SaysLineAndColumnOfErrorsAndWritesNothing) {
  Write("in/m.yang", "module m {\n  leaf a\n  leaf b;\n  leaff c;\n}\n");
  const ClientRun run = Convert({"in/m.yang"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("", run.out);
  EXPECT_EQ(
      "in/m.yang:3:3: ';' or '{' is missing after 'leaf'\n"
      "in/m.yang:4:3: 'leaff' is no statement of YANG\n",
      run.err);
}

TEST_F(ClientConvert, FailsWithStatus3OnFilesAndFoldersThatCannotBeRead) {
  const ClientRun run = Convert({"in/gone.yang"});
  EXPECT_EQ(3, run.status);
  EXPECT_EQ("in/gone.yang: cannot be read: No such file or directory\n", run.err);
  EXPECT_EQ(3, Convert({"-p", "gone", "in/m.yang"}).status);
}

TEST_F(ClientConvert, TakesOneFileAndNoOtherOption) {
  for (const Args& args :
       {Args{}, Args{"in/m.yang", "in/m.yang"}, Args{"-i", "in/m.yang"}, Args{"-r", "in/m.yang"},
        Args{"-F", "in/m.yang"}, Args{"-o", "out", "in/m.yang"}, Args{"-f", "m:f", "in/m.yang"},
        Args{"--drop-failing", "in/m.yang"}}) {
    SCOPED_TRACE(testing::PrintToString(args));
    const ClientRun run = Convert(args);
    EXPECT_EQ(2, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(run.err.rfind("qmodel: ", 0), 0u);
  }
  EXPECT_EQ(2, RunClient(".", {"load", "--convert", "m"}).status);
}

}  // namespace
