// SPDX-License-Identifier: BSD-3-Clause
// Each file of mistakes/ is a model with a mistake, or one that looks like a mistake and
// is none. At its end stands what lint has to say, no more and no less:
//   // expect: LINE error|warning CLASS
// with "FILE:" before the line when it is said of another file.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "tests/compiler/lint_files.h"

namespace compiler {
namespace {

const std::string kFolder = QMODEL_COMPILER_MISTAKES;

std::string ReadText(const std::string& path) {
  std::ifstream stream(path);
  std::stringstream text;
  text << stream.rdbuf();
  return text.str();
}

// "LINE severity class" of each expectation in the file.
std::set<std::string> ExpectedOf(const std::string& text) {
  static constexpr char kMark[] = "// expect: ";
  std::set<std::string> expected;
  std::stringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    if (line.rfind(kMark, 0) == 0) expected.insert(line.substr(sizeof kMark - 1));
  return expected;
}

std::vector<std::string> NamesOfMistakes() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kFolder))
    if (entry.path().extension() == ".yang") names.push_back(entry.path().stem());
  std::sort(names.begin(), names.end());
  return names;
}

std::string TestName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

class Mistake : public testing::TestWithParam<std::string> {};

TEST_P(Mistake, IsSaidAtItsLineAndNothingElse) {
  const std::string path = kFolder + "/" + GetParam() + ".yang";
  const LintRun run = LintFiles({path}, {kFolder + "/imports"});
  std::set<std::string> found;
  for (const Finding& finding : run.report.findings) {
    ASSERT_NE(nullptr, finding.place.file);
    EXPECT_TRUE(SaysWhatToDo(finding)) << finding.message;
    const std::string& file = finding.place.file->path;
    found.insert((file == path ? "" : file.substr(file.rfind('/') + 1) + ":") +
                 std::to_string(finding.place.line) +
                 (finding.severity == Severity::kWarning ? " warning " : " error ") +
                 finding.group);
  }
  EXPECT_EQ(ExpectedOf(ReadText(path)), found) << FindingsAsLines(run.report);
}

INSTANTIATE_TEST_SUITE_P(Lint, Mistake, testing::ValuesIn(NamesOfMistakes()), TestName);

TEST(Mistakes, AreAtLeast150) {
  EXPECT_GE(NamesOfMistakes().size(), 150u);
}

// A class without a file would be one that nothing shows to work.
TEST(Mistakes, HaveAFileForEachClass) {
  std::set<std::string> classes;
  for (const std::string& name : NamesOfMistakes())
    for (const std::string& line : ExpectedOf(ReadText(kFolder + "/" + name + ".yang")))
      classes.insert(line.substr(line.rfind(' ') + 1));
  for (const LintClass& row : LintClasses()) {
    if (!row.on) continue;
    EXPECT_EQ(1u, classes.count(row.name)) << row.name;
  }
}

}  // namespace
}  // namespace compiler
