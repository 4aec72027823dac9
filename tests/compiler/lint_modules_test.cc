// SPDX-License-Identifier: BSD-3-Clause
// Several modules that are judged in one call.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "tests/compiler/lint_files.h"

namespace compiler {
namespace {

class LintModules : public testing::Test {
 protected:
  LintModules() : folder_(testing::TempDir() + "qmodel-lint-modules-XXXXXX") {
    EXPECT_NE(nullptr, mkdtemp(folder_.data()));
  }
  ~LintModules() override { std::filesystem::remove_all(folder_); }

  // What lint says of these modules, which import each the one before; named a, b and so on.
  std::string FindingsOf(const std::vector<std::string>& bodies) const {
    std::vector<std::string> operands;
    for (const std::string& body : bodies) {
      const std::string name(1, static_cast<char>('a' + operands.size()));
      const std::string last(1, static_cast<char>(name[0] - 1));
      const std::string import =
          operands.empty() ? "" : "import " + last + " { prefix " + last + "; }\n";
      operands.push_back(folder_ + "/" + name + ".yang");
      std::ofstream(operands.back())
          << "module " << name << " { yang-version 1.1; namespace urn:" << name << "; prefix "
          << name << ";\n"
          << import << body << "}\n";
    }
    std::string found;
    for (const Finding& finding : LintFiles(operands, {folder_}).report.findings)
      if (finding.severity != Severity::kWarning) found += finding.message + "\n";
    return found;
  }

 private:
  std::string folder_;
};

TEST_F(LintModules, TakesNamesOfAGroupingForThoseOfItsUser) {
  const std::string inner = "grouping h { leaf z { type string; } }";
  EXPECT_EQ("", FindingsOf({inner + "grouping g { uses h { when y; } leaf y { type string; } }",
                            "container c { uses a:g; }"}));
  EXPECT_EQ("", FindingsOf({inner + "grouping g { uses h { when x; } leaf x { type string; } }"
                                    "container d { uses g; }",
                            "container c { uses a:g; }"}));
}

TEST_F(LintModules, SaysOfEachUserWhatIsWrongThere) {
  EXPECT_EQ(
      "in the when \"../n\" the path leads nowhere: module \"b\" has no top-level node \"n\"\n",
      FindingsOf({"grouping h { leaf z { type string; } }"
                  "grouping g { container k { uses h { when ../n; } } }"
                  "container d { leaf n { type string; } uses g; }",
                  "uses a:g;"}));
}

TEST_F(LintModules, SaysNamesThatTwoAugmentsBring) {
  const std::string twice =
      "augment /a:c/a:d/a:e { leaf x { type string; } } augment /a:c { leaf x { type string; } }";
  const std::string found = FindingsOf({"container c { choice d { case e; case f; } }", twice});
  EXPECT_NE(std::string::npos, found.find("leaf \"x\" has a sibling of the same name")) << found;
  EXPECT_EQ("", FindingsOf({"container c { choice d { case e; case f; } leaf x { type int8; } }",
                            "augment /a:c/a:d/a:e { leaf x { type string; } }"}));
}

}  // namespace
}  // namespace compiler
