// SPDX-License-Identifier: BSD-3-Clause
// Real models as they are published, compiled and loaded, and compared with what others
// made of them: the same models spelled out by other hands, and printed trees.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "compiler/job.h"
#include "tests/real/printed_tree.h"
#include "tests/real/text.h"
#include "tests/support/real_models.h"
#include "tests/support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

// A set of models: the folders in which they lie, the first with what is compiled.
struct Corpus {
  const char* name;
  std::vector<const char*> folders;
};

const Corpus kStandard = {"standard-models", {"standard-models", "yang-originals/ietf"}};

const std::vector<Corpus> kOriginals = {
    {"ietf", {"yang-originals/ietf"}},
    {"openconfig", {"yang-originals/openconfig", "yang-originals/ietf"}},
    {"ieee", {"yang-originals/ieee", "yang-originals/ietf"}},
    {"bbf", {"yang-originals/bbf", "yang-originals/ieee", "yang-originals/ietf"}},
    {"oran", {"yang-originals/oran", "yang-originals/ieee", "yang-originals/ietf"}},
    {"juniper", {"yang-originals/juniper", "yang-originals/openconfig", "yang-originals/ietf"}},
    {"sonic", {"yang-originals/sonic", "yang-originals/openconfig", "yang-originals/ietf"}},
    {"arista", {"yang-originals/arista", "yang-originals/openconfig", "yang-originals/ietf"}},
};

class CompiledModels : public testing::Test {
 protected:
  void SetUp() override {
    if (Root().empty()) GTEST_SKIP() << kNoRealModels;
  }

  static std::string Root() { return RealModelsFolder(); }

  // The modules that lie in the corpus's first folder.
  static std::vector<std::string> ModulesOf(const Corpus& corpus) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(Root() + "/" + corpus.folders[0])) {
      const std::string ending = entry.path().extension().string();
      if (ending != ".yang" && ending != ".yin") continue;
      const std::string text = ReadFile(entry.path().string());
      if (text.find("belongs-to") != std::string::npos) continue;
      const std::string base = entry.path().stem().string();
      names.insert(base.substr(0, base.find('@')));
    }
    return {names.begin(), names.end()};
  }

  static compiler::JobResult Compile(const Corpus& corpus, const compiler::CompileOptions& options,
                                     const temp_folder::Folder& into) {
    compiler::JobRequest request;
    for (const char* folder : corpus.folders) request.folders.push_back(Root() + "/" + folder);
    request.operands = ModulesOf(corpus);
    request.withImports = true;
    request.options = options;
    const compiler::JobResult result = compiler::RunJob(request);
    EXPECT_LE(result.state, compiler::JobState::kLost)
        << (result.findings.empty() ? "" : result.findings[0]);
    for (const std::string& finding : result.findings)
      EXPECT_EQ(std::string::npos, finding.find("is not found")) << finding;
    for (const compiler::JobModule& module : result.modules)
      into.Write(module.name + ".yin", module.yin);
    return result;
  }

  static uint32_t AddLoadError(const char* module, const char* file, const char* message,
                               void* arg) {
    *static_cast<std::string*>(arg) +=
        std::string(module) + ": " + (file == nullptr ? "" : file) + ": " + message + "\n";
    return 0;
  }

  static QmCtx* Load(const std::string& folder, const std::vector<std::string>& names) {
    QmCtx* ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, folder.c_str()));
    for (const std::string& name : names)
      EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str())) << name;
    std::string errors;
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx, AddLoadError, &errors));
    EXPECT_EQ("", errors);
    return ctx;
  }

  static void EnableAllFeatures(QmCtx* ctx, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
      if (module != nullptr) static_cast<void>(QM_MOD_EnableFeature(module, "*"));
    }
  }

  static uint32_t AddText(const char* text, uint32_t length, void* arg) {
    static_cast<std::string*>(arg)->append(text, length);
    return 0;
  }

  static std::string Tree(QmCtx* ctx, const std::string& name) {
    std::string text;
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
    EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(module, AddText, &text)) << name;
    return text;
  }
};

TEST_F(CompiledModels, StandardModelsLoadWithoutAnError) {
  const temp_folder::Folder folder;
  Compile(kStandard, {}, folder);
  const std::vector<std::string> names = ModulesOf(kStandard);
  EXPECT_GE(names.size(), 60u);
  QM_CTX_Delete(Load(folder.Dir(), names));
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    QM_CTX_Delete(Load(folder.Dir(), {name}));
  }
}

TEST_F(CompiledModels, OriginalsLoadWithoutAnError) {
  for (const Corpus& corpus : kOriginals) {
    SCOPED_TRACE(corpus.name);
    const temp_folder::Folder folder;
    Compile(corpus, {}, folder);
    const std::vector<std::string> names = ModulesOf(corpus);
    QM_CTX_Delete(Load(folder.Dir(), names));
    for (const std::string& name : names) {
      SCOPED_TRACE(name);
      QM_CTX_Delete(Load(folder.Dir(), {name}));
    }
  }
}

TEST_F(CompiledModels, CompilingAgainChangesNothing) {
  std::vector<Corpus> all = kOriginals;
  all.push_back(kStandard);
  for (const Corpus& corpus : all) {
    SCOPED_TRACE(corpus.name);
    const temp_folder::Folder folder;
    const compiler::JobResult first = Compile(corpus, {}, folder);
    compiler::JobRequest request;
    request.folders = {folder.Dir()};
    for (const compiler::JobModule& module : first.modules) request.operands.push_back(module.name);
    const compiler::JobResult second = compiler::RunJob(request);
    for (const std::string& finding : second.findings)
      EXPECT_EQ(std::string::npos, finding.find("yang-version")) << finding;
    ASSERT_EQ(first.modules.size(), second.modules.size());
    for (size_t i = 0; i < first.modules.size(); ++i) {
      EXPECT_EQ(first.modules[i].name, second.modules[i].name);
      EXPECT_TRUE(first.modules[i].yin == second.modules[i].yin) << first.modules[i].name;
    }
  }
}

TEST_F(CompiledModels, TwoRunsGiveTheSameBytes) {
  const temp_folder::Folder folder;
  const compiler::JobResult first = Compile(kOriginals[0], {}, folder);
  const compiler::JobResult second = Compile(kOriginals[0], {}, folder);
  ASSERT_EQ(first.modules.size(), second.modules.size());
  for (size_t i = 0; i < first.modules.size(); ++i)
    EXPECT_TRUE(first.modules[i].yin == second.modules[i].yin) << first.modules[i].name;
  EXPECT_EQ(first.findings, second.findings);
}

std::vector<std::string> Lines(const std::vector<TreeNode>& nodes) {
  std::vector<std::string> lines;
  for (const TreeNode& node : nodes) lines.push_back(node.path + " " + node.rest);
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::vector<std::string> Without(const std::vector<std::string>& a,
                                 const std::vector<std::string>& b) {
  std::vector<std::string> rest;
  std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(rest));
  return rest;
}

// Differences that are right, with the reason, as lines that only one side has.
struct Difference {
  std::vector<std::string> ours;
  std::vector<std::string> theirs;
};

const Difference& Expected(const std::map<std::string, Difference>& all, const std::string& name) {
  static const Difference none;
  const auto found = all.find(name);
  return found == all.end() ? none : found->second;
}

// ietf-acldns augments the cases "ipv4" and "ipv6" of the choice "l3", which the original
// writes in the short form (RFC 7950, section 7.9.2). The others kept that form, so the
// loader finds no such case and leaves the augment pending; spelled out, it is found.
const std::map<std::string, Difference> kStandardDifferences = {
    {"ietf-access-control-list",
     {{"/acls/acl/aces/ace/matches/(l3)/ipv4/dst-dnsname +--rw ? ietf-inet-types:host",
       "/acls/acl/aces/ace/matches/(l3)/ipv4/src-dnsname +--rw ? ietf-inet-types:host",
       "/acls/acl/aces/ace/matches/(l3)/ipv6/dst-dnsname +--rw ? ietf-inet-types:host",
       "/acls/acl/aces/ace/matches/(l3)/ipv6/src-dnsname +--rw ? ietf-inet-types:host"},
      {}}},
};

// A leaf that an augment brings to a choice is a case of its own (section 7.17.2); the
// other printer shows such cases in the tree of their module only, not below "augment".
const std::map<std::string, Difference> kOriginalDifferences = {
    {"ietf-netconf-nmda",
     {{"augment /lock/input/target/config-target/:(datastore)",
       "augment /lock/input/target/config-target/:(datastore)/datastore",
       "augment /unlock/input/target/config-target/:(datastore)",
       "augment /unlock/input/target/config-target/:(datastore)/datastore",
       "augment /validate/input/source/config-source/:(datastore)",
       "augment /validate/input/source/config-source/:(datastore)/datastore"},
      {"augment /lock/input/target/config-target/datastore",
       "augment /unlock/input/target/config-target/datastore",
       "augment /validate/input/source/config-source/datastore"}}},
};

TEST_F(CompiledModels, TreesOfTheStandardModelsAreThoseOfOtherHands) {
  const temp_folder::Folder folder;
  const std::vector<std::string> names = ModulesOf(kStandard);
  Compile(kStandard, {}, folder);
  QmCtx* ours = Load(folder.Dir(), names);
  QmCtx* theirs = Load(Root() + "/models", names);
  EnableAllFeatures(ours, names);
  EnableAllFeatures(theirs, names);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const auto a = Lines(WithoutShorthandCases(ReadTree(Tree(ours, name))));
    const auto b = Lines(WithoutShorthandCases(ReadTree(Tree(theirs, name))));
    const Difference& expected = Expected(kStandardDifferences, name);
    EXPECT_EQ(expected.ours, Without(a, b)) << "only in ours";
    EXPECT_EQ(expected.theirs, Without(b, a)) << "only in theirs";
  }
  QM_CTX_Delete(ours);
  QM_CTX_Delete(theirs);
}

TEST_F(CompiledModels, PathsOfTheOriginalsAreThoseOfTheirPrintedTrees) {
  size_t compared = 0;
  for (const Corpus& corpus : kOriginals) {
    const temp_folder::Folder folder;
    Compile(corpus, {}, folder);
    for (const std::string& name : ModulesOf(corpus)) {
      SCOPED_TRACE(std::string(corpus.name) + "/" + name);
      const std::string file = Root() + "/yang-originals/" + corpus.name + "/" + name + ".tree";
      if (!fs::exists(file)) continue;
      QmCtx* ctx = Load(folder.Dir(), {name});
      EnableAllFeatures(ctx, ModulesOf(corpus));
      const std::set<std::string> ours = Paths(ReadTree(Tree(ctx, name)));
      const std::set<std::string> theirs = Paths(ReadTree(ReadFile(file)));
      const std::vector<std::string> a(ours.begin(), ours.end());
      const std::vector<std::string> b(theirs.begin(), theirs.end());
      const Difference& expected = Expected(kOriginalDifferences, name);
      EXPECT_EQ(expected.ours, Without(a, b)) << "only in ours";
      EXPECT_EQ(expected.theirs, Without(b, a)) << "only in theirs";
      ++compared;
      QM_CTX_Delete(ctx);
    }
  }
  EXPECT_EQ(78u, compared);
}

// ---- messages

struct Message {
  std::string file;
  std::string kind;
  std::vector<std::string> modules;
  std::vector<std::string> features;
};

std::vector<Message> ReadIndex(const std::string& path) {
  std::vector<Message> rows;
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);  // the heading
  while (std::getline(file, line)) {
    const std::vector<std::string> field = Split(line, '\t');
    if (field.size() < 7) continue;
    rows.push_back({field[0], field[1], Split(field[2], ' '),
                    field[3] == "-" ? std::vector<std::string>() : Split(field[3], ' ')});
  }
  return rows;
}

std::string OrDash(const char* text) {
  return text == nullptr ? "-" : text;
}

class CompiledMessages : public CompiledModels {
 protected:
  static QmCtx* Open(const std::string& folder, const Message& message) {
    QmCtx* ctx = Load(folder, message.modules);
    for (const std::string& feature : message.features) {
      const std::vector<std::string> parts = Split(feature, ':');
      QmsModule* module = QM_CTX_GetModuleByModName(ctx, parts[0].c_str());
      EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(module, parts[1].c_str())) << feature;
    }
    return ctx;
  }

  // All that the library has to say of a message.
  static std::string Verdict(QmCtx* ctx, const Message& message, std::string text) {
    if (message.kind != "rpc") {
      const uint32_t ret = QM_CTX_ValidateNotifDataTree(ctx, text.c_str(), nullptr, nullptr);
      return std::to_string(ret);
    }
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, text.data(), nullptr, nullptr);
    if (err == nullptr) return "valid";
    const std::string verdict = std::to_string(QM_GetErrorTag(err)) + " " +
                                OrDash(QM_GetErrorMessage(err)) + " " +
                                OrDash(QM_GetErrorPath(err)) + " " + OrDash(QM_GetBadElement(err));
    QM_FreeErrNode(err);
    return verdict;
  }
};

TEST_F(CompiledMessages, ComeOutTheSame) {
  const temp_folder::Folder folder;
  Compile(kStandard, {}, folder);
  const std::vector<Message> messages = ReadIndex(Root() + "/messages/index.tsv");
  EXPECT_GE(messages.size(), 40u);
  for (const Message& message : messages) {
    SCOPED_TRACE(message.file);
    const std::string text = ReadFile(Root() + "/messages/" + message.file);
    QmCtx* ours = Open(folder.Dir(), message);
    QmCtx* theirs = Open(Root() + "/models", message);
    EXPECT_EQ(Verdict(theirs, message, text), Verdict(ours, message, text));
    QM_CTX_Delete(ours);
    QM_CTX_Delete(theirs);
  }
}

}  // namespace
