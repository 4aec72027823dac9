// SPDX-License-Identifier: BSD-3-Clause
// Lint over models as their authors published them: the only errors are faults that
// the models really have, each with its reason.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "tests/compiler/lint_files.h"
#include "tests/support/real_models.h"

namespace compiler {
namespace {

namespace fs = std::filesystem;

const std::string kModels = RealModelsFolder();

struct RealFault {
  const char* file;
  const char* group;
  size_t count;
};

constexpr RealFault kRealFaults[] = {
    // The `when` of a `uses` in the notification looks at a sibling with "../", but its
    // context node is the notification itself, whose parent has no such child.
    {"ietf-netconf-notifications", "condition", 1},
    // The `when` of the augment asks the entry of "target" for the cases v1 and v2c,
    // which stand in "target-params".
    {"ietf-snmp-community", "condition", 2},
};

// The modules of a folder, without the submodules.
std::vector<std::string> ModulesOf(const std::string& folder, const std::string& ending) {
  std::vector<std::string> paths;
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ending) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> modules;
  for (const std::string& path : paths) {
    const LintRun run = LintFiles({path}, {});
    if (run.session->modules.front().belongsTo.empty()) modules.push_back(path);
  }
  return modules;
}

// "module class" of each error, and how often.
std::map<std::string, size_t> ErrorsOf(const LintRun& run) {
  std::map<std::string, size_t> errors;
  for (const Finding& finding : run.report.findings) {
    if (finding.severity == Severity::kWarning) continue;
    const std::string name = finding.place.file == nullptr
                                 ? std::string()
                                 : fs::path(finding.place.file->path).stem().string();
    ++errors[name + " " + finding.group];
  }
  return errors;
}

std::map<std::string, size_t> FaultsIn(const std::string& folder, const std::string& ending) {
  std::map<std::string, size_t> faults;
  for (const RealFault& fault : kRealFaults)
    if (fs::exists(folder + "/" + fault.file + ending))
      faults[std::string(fault.file) + " " + fault.group] += fault.count;
  return faults;
}

struct Folder {
  const char* name;
  std::vector<const char*> path;
};

std::string FolderName(const testing::TestParamInfo<Folder>& folder) {
  return folder.param.name;
}

class OriginalsLint : public testing::TestWithParam<Folder> {};

TEST_P(OriginalsLint, FindsRealFaultsOnly) {
  const std::string root = kModels + "/yang-originals/";
  if (kModels.empty() || !fs::is_directory(root)) GTEST_SKIP() << kNoRealModels;
  std::vector<std::string> folders;
  for (const char* folder : GetParam().path) folders.push_back(root + folder);
  const std::vector<std::string> modules = ModulesOf(root + GetParam().name, ".yang");
  ASSERT_FALSE(modules.empty());
  const LintRun run = LintFiles(modules, folders);
  EXPECT_EQ(FaultsIn(root + GetParam().name, ".yang"), ErrorsOf(run))
      << FindingsAsLines(run.report);
}

INSTANTIATE_TEST_SUITE_P(Folders, OriginalsLint,
                         testing::Values(Folder{"ietf", {"ietf"}},
                                         Folder{"openconfig", {"openconfig", "ietf"}},
                                         Folder{"ieee", {"ieee", "ietf"}},
                                         Folder{"bbf", {"bbf", "ieee", "ietf"}},
                                         Folder{"oran", {"oran", "ieee", "ietf"}},
                                         Folder{"juniper", {"juniper", "openconfig", "ietf"}},
                                         Folder{"sonic", {"sonic", "openconfig", "ietf"}},
                                         Folder{"arista", {"arista", "openconfig", "ietf"}}),
                         FolderName);

TEST(StandardModelsLint, FindsRealFaultsOnly) {
  const std::string folder = kModels + "/standard-models";
  if (kModels.empty() || !fs::is_directory(folder)) GTEST_SKIP() << kNoRealModels;
  const std::vector<std::string> modules = ModulesOf(folder, ".yin");
  ASSERT_FALSE(modules.empty());
  const LintRun run = LintFiles(modules, {folder});
  std::map<std::string, size_t> expected = FaultsIn(folder, ".yin");
  // Its submodule is not in the folder.
  expected["ietf-ipv6-unicast-routing linkage"] = 1;
  EXPECT_EQ(expected, ErrorsOf(run)) << FindingsAsLines(run.report);
}

}  // namespace
}  // namespace compiler
