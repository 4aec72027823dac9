// SPDX-License-Identifier: BSD-3-Clause
// Names of every kind that are misspelled, and what lint takes them for.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/compiler/lint_files.h"

namespace compiler {
namespace {

struct Row {
  const char* body;
  const char* meant;
};

constexpr Row kRows[] = {
    {"import neighbuor { prefix n; }", "neighbour"},
    {"include partt;", "part"},
    {"import neighbour { prefix near; } leaf l { type naer:text; }", "near"},
    {"import neighbour { prefix near; } leaf l { type near:txt; }", "text"},
    {"import neighbour { prefix near; } near:markk;", "mark"},
    {"identity colour; identity red { base colur; }", "colour"},
    {"feature speedy; leaf l { if-feature speddy; type string; }", "speedy"},
    {"grouping address; container c { uses adress; }", "address"},
    {"grouping g { leaf street { type string; } } uses g { refine stret { description d; } }",
     "street"},
    {"leaf l { type strng; }", "string"},
    {"leaf l { tipe string; type string; }", "type"},
    {"leaf l { type enumeration { enum active; enum passive; } default actve; }", "active"},
    {"leaf l { type bits { bit alpha; bit beta; } default \"beta alpa\"; }", "alpha"},
    {"identity c; identity red { base c; } leaf l { type identityref { base c; } default rad; }",
     "red"},
    {"leaf l { type leafref { path \"../nmae\"; } } leaf name { type string; }", "name"},
    {"leaf l { type string; must \"../nmae\"; } leaf name { type string; }", "name"},
    {"leaf l { type string; must \"contans(., 'a')\"; }", "contains"},
    {"identity col; leaf l { type identityref { base col; } must \"derived-from(., 'cl')\"; }",
     "col"},
    {"list l { key nmae; leaf name { type string; } }", "name"},
    {"list l { key k; unique valeu; leaf k { type string; } leaf value { type string; } }",
     "value"},
    {"choice c { default slwo; leaf slow { type string; } }", "slow"},
    {"container box; augment /m:bax { leaf l { type string; } }", "box"},
    {"container box; deviation /m:bax { deviate add { config true; } }", "box"},
};

class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "nearest-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    path_ = name;
    Write("neighbour",
          "module neighbour { yang-version 1.1; namespace urn:n; prefix n; "
          "typedef text { type string; } extension mark; }");
    Write("part", "submodule part { yang-version 1.1; belongs-to m { prefix m; } }");
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / (name + ".yang")) << text;
    return (path_ / (name + ".yang")).string();
  }

 private:
  std::filesystem::path path_;
};

TEST(NearestNames, AreAskedForWhateverIsMisspelled) {
  const Folder folder;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.body);
    const std::string file =
        folder.Write("m", "module m { yang-version 1.1; namespace urn:m; prefix m; " +
                              std::string(row.body) + " }");
    const LintRun run = LintFiles({file}, {}, {"no-unused"});
    ASSERT_EQ(1U, run.report.findings.size()) << FindingsAsLines(run.report);
    EXPECT_EQ("did you mean \"" + std::string(row.meant) + "\"?", run.report.findings[0].advice);
  }
}

}  // namespace
}  // namespace compiler
