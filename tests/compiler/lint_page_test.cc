// SPDX-License-Identifier: BSD-3-Clause
// docs/lint.md against the program: a head for each class, and under it each message
// that a model can bring.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "tests/compiler/lint_files.h"

namespace compiler {
namespace {

// A message as the page writes it, with words in capitals for what differs.
std::regex PatternOf(const std::string& family) {
  std::string pattern;
  for (const char c : family)
    pattern += std::string(std::string("\\^$.|?*+()[]{}").find(c) != std::string::npos, '\\') + c;
  pattern = std::regex_replace(pattern, std::regex("\\b(NAME|TEXT|KIND|NUMBER|PLACE)\\b"), ".*");
  return std::regex(pattern, std::regex::ECMAScript);
}

// The families of each class, in order of the page.
std::map<std::string, std::vector<std::string>> ReadPage() {
  std::map<std::string, std::vector<std::string>> families;
  std::ifstream page(QMODEL_LINT_PAGE);
  std::string group;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("## ", 0) == 0) {
      group = line.substr(3);
      families[group];
    }
    const size_t end = line.rfind("| `", 0) == 0 ? line.find('`', 3) : std::string::npos;
    if (end != std::string::npos) families[group].push_back(line.substr(3, end - 3));
  }
  return families;
}

bool IsOnPage(const std::vector<std::string>& families, std::string message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  for (const std::string& family : families)
    if (std::regex_match(message, PatternOf(family))) return true;
  return false;
}

TEST(ModelAuthorsGuide, ListsEachClassInTheOrderOfTheLintPage) {
  std::vector<std::string> heads;
  std::ifstream lint_page(QMODEL_LINT_PAGE);
  for (std::string line; std::getline(lint_page, line);)
    if (line.rfind("## ", 0) == 0) heads.push_back(line.substr(3));
  std::vector<std::string> listed;
  const std::regex row("\\| \\[`(\\w+)`\\]\\(lint\\.md#\\1\\) \\| .*");
  std::ifstream guide(std::filesystem::path(QMODEL_LINT_PAGE).parent_path() / "model-authors.md");
  for (std::string line; std::getline(guide, line);) {
    std::smatch match;
    if (std::regex_match(line, match, row)) listed.push_back(match[1]);
  }
  EXPECT_FALSE(heads.empty());
  EXPECT_EQ(heads, listed);
}

TEST(LintPage, HasAHeadForEachClassAndNoOther) {
  std::set<std::string> expected;
  for (const LintClass& row : LintClasses()) expected.insert(row.name);
  std::set<std::string> heads;
  for (const auto& entry : ReadPage()) {
    heads.insert(entry.first);
    EXPECT_FALSE(entry.second.empty()) << entry.first;
  }
  EXPECT_EQ(expected, heads);
}

// The messages of each class that lint has for a file.
void CollectMessages(const std::string& path, const std::vector<std::string>& folders,
                     std::map<std::string, std::vector<std::string>>* messages) {
  const LintRun run = LintFiles({path}, folders, {"style"});
  for (const Finding& finding : run.report.findings) {
    EXPECT_TRUE(SaysWhatToDo(finding)) << finding.group << ": " << finding.message;
    (*messages)[finding.group].push_back(finding.message);
  }
}

// Of the files with mistakes, those that are made for this page, and what is too long to
// stand in a file.
std::map<std::string, std::vector<std::string>> MessagesOfModels() {
  std::map<std::string, std::vector<std::string>> messages;
  const std::string mistakes = QMODEL_COMPILER_MISTAKES;
  const std::string page = QMODEL_COMPILER_PAGE;
  for (const std::string& folder : {mistakes, page}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.is_regular_file())
        CollectMessages(entry.path(), {mistakes + "/imports", page + "/parts"}, &messages);
    }
  }
  const std::string header = "module m { namespace \"urn:m\"; prefix m; ";
  std::string deep;
  for (int i = 0; i < 1001; ++i) deep += "container a {";
  std::string chain;
  for (int i = 0; i < 2100; ++i)
    chain += "grouping g" + std::to_string(i) + " { uses g" + std::to_string(i + 1) + "; }";
  for (const std::string& body :
       {deep + std::string(1001, '}'), std::string(1100, ';'), chain + "grouping g2100 { }"}) {
    const std::string path =
        testing::TempDir() + "qmodel-lint-page-" + std::to_string(getpid()) + ".yang";
    std::ofstream(path) << header << body << "}\n";
    CollectMessages(path, {}, &messages);
    std::filesystem::remove(path);
  }
  return messages;
}

TEST(LintPage, HasEachMessageThatTheModelsBring) {
  const auto families = ReadPage();
  size_t count = 0;
  for (const auto& [group, messages] : MessagesOfModels()) {
    for (const std::string& message : messages) {
      ++count;
      EXPECT_TRUE(IsOnPage(families.at(group), message)) << group << ": " << message;
    }
  }
  EXPECT_GT(count, 250U);
}

TEST(LintPage, HasNoMessageThatNoModelBrings) {
  const auto messages = MessagesOfModels();
  for (const auto& [group, families] : ReadPage()) {
    for (const std::string& family : families) {
      EXPECT_NE("TEXT", family) << "says nothing";
      const std::regex pattern = PatternOf(family);
      const auto& said = messages.at(group);
      EXPECT_TRUE(std::any_of(said.begin(), said.end(),
                              [&](std::string message) {
                                std::replace(message.begin(), message.end(), '\n', ' ');
                                return std::regex_match(message, pattern);
                              }))
          << group << ": " << family;
    }
  }
}

}  // namespace
}  // namespace compiler
