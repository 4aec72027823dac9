// SPDX-License-Identifier: BSD-3-Clause
// The program's tree diagrams of models as they are published, and those that another tool
// has printed.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "tests/client/run_client.h"
#include "tests/real/printed_tree.h"
#include "tests/real/text.h"
#include "tests/support/real_models.h"

namespace {

namespace fs = std::filesystem;

const std::vector<std::vector<std::string>> kSearched = {
    {"ietf"},
    {"openconfig", "ietf"},
    {"ieee", "ietf"},
    {"bbf", "ieee", "ietf"},
    {"oran", "ieee", "ietf"},
    {"juniper", "openconfig", "ietf"},
    {"sonic", "openconfig", "ietf"},
    {"arista", "openconfig", "ietf"},
};

// What may differ: the tool gives prefixes as a model has written them, also in groupings of
// other modules, and no access to what stands below an action or an augmented operation;
// the library keeps no predicates; and the compiler hands a status down to what a deprecated
// grouping brings.
std::string Comparable(const TreeNode& node, bool noAccess) {
  static const std::regex predicate("\\[[^\\]]*\\]");
  static const std::regex prefix("[A-Za-z_][A-Za-z0-9_.-]*:");
  std::string rest = node.rest.substr(std::min<size_t>(1, node.rest.size()));
  const size_t path = rest.find("-> ");
  if (path != std::string::npos) {
    const size_t features = std::min(rest.find(" {"), rest.size());
    rest = rest.substr(0, path) +
           std::regex_replace(rest.substr(path, features - path), predicate, "") +
           rest.substr(features);
  }
  if (noAccess) rest = rest.substr(0, 2) + rest.substr(std::min(rest.find(' '), rest.size()));
  return node.path + " " + std::regex_replace(rest, prefix, "");
}

bool HasNoAccess(const TreeNode& node) {
  const std::string last = node.path.substr(node.path.rfind('/') + 1);
  return !last.starts_with(":(") && node.rest.substr(1, 3) == "-- ";
}

class Diagrams : public testing::Test {
 protected:
  void SetUp() override {
    if (RealModelsFolder().empty()) GTEST_SKIP() << kNoRealModels;
    root_ = RealModelsFolder() + "/yang-originals";
  }

  std::string Diagram(const std::vector<std::string>& folders, const std::string& module) const {
    std::vector<std::string> args = {"tree", "--rfc8340", "-c", "-i", "--no-cache", module};
    for (const std::string& folder : folders) args.insert(args.end(), {"-p", folder});
    const ClientRun run = RunClient(root_, args);
    EXPECT_EQ(0, run.status) << run.err;
    return run.out;
  }

  std::string root_;
};

// The lines of both that the other has not.
void ExpectSameNodes(const std::string& ours, const std::string& theirs) {
  const std::vector<TreeNode> a = WithoutShorthandCases(ReadTree(ours));
  const std::vector<TreeNode> b = WithoutShorthandCases(ReadTree(theirs));
  std::set<std::string> noAccess;
  for (const TreeNode& node : b)
    if (HasNoAccess(node)) noAccess.insert(node.path);
  std::set<std::string> left;
  std::set<std::string> right;
  for (const TreeNode& node : a) left.insert(Comparable(node, noAccess.contains(node.path)));
  for (const TreeNode& node : b) right.insert(Comparable(node, noAccess.contains(node.path)));
  for (const std::string& line : left) EXPECT_TRUE(right.contains(line)) << "only ours: " << line;
  for (const std::string& line : right) EXPECT_TRUE(left.contains(line)) << "only theirs: " << line;
}

TEST_F(Diagrams, AreThoseOfTheOtherTool) {
  size_t compared = 0;
  size_t equal = 0;
  for (const std::vector<std::string>& folders : kSearched) {
    for (const auto& entry : fs::directory_iterator(root_ + "/" + folders[0])) {
      const std::string theirs =
          entry.path().extension() == ".tree" ? ReadFile(entry.path().string()) : std::string();
      if (theirs.empty()) continue;  // of a module without nodes the tool prints nothing
      SCOPED_TRACE(entry.path().string());
      const std::string ours = Diagram(folders, entry.path().stem().string());
      ExpectSameNodes(ours, theirs);
      ++compared;
      if (ours == theirs) ++equal;
    }
  }
  EXPECT_EQ(47u, compared);
  EXPECT_EQ(32u, equal) << "to the last blank";
}

}  // namespace
