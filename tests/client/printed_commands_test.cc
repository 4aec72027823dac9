// SPDX-License-Identifier: BSD-3-Clause
// The commands that the pages print give what is printed below them, run in examples/.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/client/run_client.h"

namespace {

struct Printed {
  std::string command;
  std::string output;
};

// What stands in the fenced blocks of a page: a command behind "$ ", its output up to the
// next command or the end of the block; the last blank line before a command only divides.
std::vector<Printed> PrintedCommands(std::istream& page) {
  std::vector<Printed> all;
  bool in_block = false;
  bool in_output = false;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("```", 0) == 0) {
      in_block = !in_block;
      in_output = false;
    } else if (in_block && line.rfind("$ ", 0) == 0) {
      if (in_output && all.back().output.ends_with("\n\n")) all.back().output.pop_back();
      if (in_output && all.back().output == "\n") all.back().output.clear();
      all.push_back({line.substr(2), ""});
      in_output = true;
    } else if (in_output) {
      all.back().output += line + "\n";
    }
  }
  return all;
}

// The output of a command as a terminal shows it.
std::string OutputOf(const std::string& command) {
  const std::string programs = std::filesystem::path(QMODEL_CLIENT).parent_path();
  const ClientRun run = RunProgram(
      "/bin/sh", QMODEL_EXAMPLES,
      {"-c", "PATH='" + programs + "':$PATH LC_ALL=C; export PATH LC_ALL; exec 2>&1; " + command});
  return run.out;
}

void ExpectPrintedAsRun(const std::string& file, size_t at_least) {
  std::ifstream page(file);
  const std::vector<Printed> all = PrintedCommands(page);
  EXPECT_LE(at_least, all.size());
  for (const Printed& printed : all) {
    // A server that stays until it is ended; the test of the shown session starts it.
    if (printed.command.rfind("scripts/agent.sh", 0) == 0) continue;
    SCOPED_TRACE(printed.command);
    EXPECT_EQ(printed.output, OutputOf(printed.command));
  }
}

TEST(PrintedCommands, AreReadWithTheirOutput) {
  std::istringstream page(
      "$ no\n```\n$ a b\n1\n\n2\n\n$ c\n\n$ d\n```\n$ no\n```c\nx\n$ e\n3\n```\n");
  const std::vector<Printed> all = PrintedCommands(page);
  ASSERT_EQ(4u, all.size());
  EXPECT_EQ("a b", all[0].command);
  EXPECT_EQ("1\n\n2\n", all[0].output);
  EXPECT_EQ("c", all[1].command);
  EXPECT_EQ("", all[1].output);
  EXPECT_EQ("d", all[2].command);
  EXPECT_EQ("", all[2].output);
  EXPECT_EQ("3\n", all[3].output);
}

TEST(PrintedCommands, OfTheReadmeAreTrue) {
  ExpectPrintedAsRun(QMODEL_README, 6);
}

TEST(VendorFolder, HasANodeThatFeaturesBring) {
  const std::string tree = "qmodel tree -c -i -p vendor ";
  EXPECT_EQ(std::string::npos, OutputOf(tree + "acme-optics").find("pump?"));
  EXPECT_NE(
      std::string::npos,
      OutputOf(tree + "-f acme-optics:tunable -f acme-optics:raman acme-optics").find("pump?"));
}

// The examples of the manual page are indented by a tab, and show no output.
TEST(PrintedCommands, OfTheManualPageRun) {
  std::ifstream page(QMODEL_MAN_PAGE);
  bool inExamples = false;
  size_t count = 0;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("# ", 0) == 0) inExamples = line == "# EXAMPLES";
    if (!inExamples || line.rfind("\tqmodel ", 0) != 0) continue;
    ++count;
    SCOPED_TRACE(line);
    const std::string output = OutputOf(line.substr(1) + "; echo \"exit $?\"");
    EXPECT_TRUE(output.ends_with("exit 0\n")) << output;
    EXPECT_EQ(std::string::npos, output.find("qmodel: ")) << output;
    EXPECT_LT(std::string("exit 0\n").size(), output.size());
  }
  EXPECT_LE(4u, count);
}

TEST(PrintedCommands, OfThePagesOnCompilingAndLintAreTrue) {
  ExpectPrintedAsRun(QMODEL_DOCS "/compile.md", 3);
  ExpectPrintedAsRun(QMODEL_DOCS "/lint.md", 2);
}

// With one blank for any white space.
std::string Folded(const std::string& text) {
  std::istringstream words(text);
  std::string folded;
  for (std::string word; words >> word;) folded += (folded.empty() ? "" : " ") + word;
  return folded;
}

// Their first lines say what the program says of itself.
TEST(UsageLines, OfThePagesAreThoseOfTheProgram) {
  for (const char* command : {"compile", "lint"}) {
    std::ifstream page(std::string(QMODEL_DOCS "/") + command + ".md");
    std::string usage;
    for (std::string line; usage.empty() && std::getline(page, line);)
      if (line.rfind("    qmodel ", 0) == 0) usage = line.substr(4);
    ASSERT_FALSE(usage.empty()) << command;
    const std::string help = OutputOf("qmodel --help");
    EXPECT_NE(std::string::npos, Folded(help).find(Folded(usage))) << usage << "\n" << help;
  }
}

TEST(PrintedCommands, OfDeparturesAreTrue) {
  ExpectPrintedAsRun(QMODEL_DOCS "/departures.md", 13);
}

TEST(PrintedCommands, OfTheModelAuthorsGuideAreTrue) {
  ExpectPrintedAsRun(QMODEL_DOCS "/model-authors.md", 4);
}

}  // namespace
