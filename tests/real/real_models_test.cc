// SPDX-License-Identifier: BSD-3-Clause
// Real standard models and messages, from a folder outside the project: models/
// with YIN files, messages/ with an index of what is expected of each.
#include <dirent.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "tests/real/text.h"
#include "tests/support/real_models.h"

namespace {

class RealModels : public testing::Test {
 protected:
  void SetUp() override {
    if (Folder().empty()) GTEST_SKIP() << kNoRealModels;
  }

  static std::string Folder() { return RealModelsFolder(); }
  static std::string Models() { return Folder() + "/models"; }

  // Names of the files whose root is a module: a submodule is loaded by its module.
  static std::vector<std::string> ModuleNames() {
    std::vector<std::string> names;
    DIR* dir = opendir(Models().c_str());
    if (dir == nullptr) return names;
    while (const dirent* entry = readdir(dir)) {
      const std::string file = entry->d_name;
      if (file.size() < 5 || file.substr(file.size() - 4) != ".yin") continue;
      if (ReadFile(Models() + "/" + file).find("<module ") == std::string::npos) continue;
      names.push_back(file.substr(0, file.size() - 4));
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
  }

  static QmCtx* NewContext(uint32_t flags) {
    QmCtx* ctx = QM_CTX_Create(flags);
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, Models().c_str()));
    return ctx;
  }

  static uint32_t AddLoadError(const char* module, const char* file, const char* message,
                               void* arg) {
    *static_cast<std::string*>(arg) +=
        std::string(module) + ": " + (file == nullptr ? "" : file) + ": " + message + "\n";
    return 0;
  }

  // All load errors, a line each. The real models are written for what the library
  // supports, so none is expected of them.
  static std::string LoadErrors(QmCtx* ctx) {
    std::string errors;
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx, AddLoadError, &errors));
    return errors;
  }

  static uint32_t AddText(const char* text, uint32_t length, void* arg) {
    static_cast<std::string*>(arg)->append(text, length);
    return 0;
  }

  static std::string Tree(QmCtx* ctx, const std::string& name) {
    std::string text;
    EXPECT_EQ(QM_OK,
              QM_MOD_PrintModelTree(QM_CTX_GetModuleByModName(ctx, name.c_str()), AddText, &text))
        << name;
    return text;
  }
};

TEST_F(RealModels, EachLoadsAlone) {
  const std::vector<std::string> names = ModuleNames();
  EXPECT_GE(names.size(), 60u);
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    QmCtx* ctx = NewContext(0);
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str()));
    EXPECT_EQ("", LoadErrors(ctx));
    EXPECT_NE(nullptr, QM_CTX_GetModuleByModName(ctx, name.c_str()));
    QM_CTX_Delete(ctx);
  }
}

TEST_F(RealModels, AllLoadTogetherInOneContext) {
  QmCtx* ctx = NewContext(QM_LOAD_IMPORTS | QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
  for (const std::string& name : ModuleNames()) {
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str())) << name;
  }
  EXPECT_EQ("", LoadErrors(ctx));
  QM_CTX_Delete(ctx);
}

// A printed tree as the sorted paths of its lines. The order of siblings says in
// which order modules came; everything else must not depend on it.
std::vector<std::string> SortedPaths(const std::string& tree) {
  std::vector<std::string> paths;
  std::vector<std::string> above;
  for (const std::string& line : Split(tree, '\n')) {
    size_t depth = 0;
    while (line.compare(3 * depth, 3, "|  ") == 0 || line.compare(3 * depth, 3, "   ") == 0)
      ++depth;
    above.resize(std::min(above.size(), depth));
    const bool isHead = line.find("--") == std::string::npos;
    if (isHead) above.clear();
    std::string path;
    for (const std::string& step : above) path += step + " / ";
    path += line.substr(3 * depth);
    paths.push_back(path);
    if (!isHead) above.push_back(line.substr(3 * depth));
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

using Trees = std::map<std::string, std::vector<std::string>>;

class RealOrders : public RealModels {
 protected:
  static Trees LoadInOrder(const std::vector<std::string>& order, uint32_t flags) {
    QmCtx* ctx = NewContext(flags);
    for (const std::string& name : order) {
      EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str())) << name;
    }
    EXPECT_EQ("", LoadErrors(ctx));
    Trees trees;
    for (const std::string& name : order) trees[name] = SortedPaths(Tree(ctx, name));
    QM_CTX_Delete(ctx);
    return trees;
  }
};

TEST_F(RealOrders, TreesAreTheSameButForTheOrderOfSiblings) {
  std::vector<std::string> order = ModuleNames();
  const Trees expected = LoadInOrder(order, 0);
  EXPECT_EQ(expected, LoadInOrder(order, QM_LOAD_IMPORTS)) << "with imports";
  std::reverse(order.begin(), order.end());
  EXPECT_EQ(expected, LoadInOrder(order, 0)) << "reversed";
  EXPECT_EQ(expected, LoadInOrder(order, QM_LOAD_IMPORTS)) << "reversed, with imports";
  std::mt19937 random(20261121);
  for (int round = 0; round < 4; ++round) {
    // Not with std::shuffle(), which each standard library does in its own way.
    for (size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[random() % i]);
    EXPECT_EQ(expected, LoadInOrder(order, round % 2 == 0 ? 0 : QM_LOAD_IMPORTS))
        << "shuffled, round " << round;
  }
}

// ---- messages

struct Expectation {
  std::string file;
  std::string kind;
  std::vector<std::string> modules;
  std::vector<std::string> features;
  std::string expected;
  std::string errorTag;
  std::string badElement;
};

const std::map<std::string, uint32_t>& Tags() {
  static const std::map<std::string, uint32_t> tags = {
      {"missing-element", QM_ERR_TAG_MISSING_ELEMENT},
      {"bad-element", QM_ERR_TAG_BAD_ELEMENT},
      {"unknown-element", QM_ERR_TAG_UNKNOWN_ELEMENT},
      {"unknown-namespace", QM_ERR_TAG_UNKNOWN_NAMESPACE},
      {"data-missing", QM_ERR_TAG_DATA_MISSING},
      {"operation-failed", QM_ERR_TAG_OPERATION_FAILED},
  };
  return tags;
}

std::vector<Expectation> ReadIndex(const std::string& path) {
  std::vector<Expectation> rows;
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);  // the heading
  while (std::getline(file, line)) {
    const std::vector<std::string> field = Split(line, '\t');
    if (field.size() < 7) continue;
    rows.push_back({field[0], field[1], Split(field[2], ' '),
                    field[3] == "-" ? std::vector<std::string>() : Split(field[3], ' '), field[4],
                    field[5], field[6]});
  }
  return rows;
}

class RealMessages : public RealModels {
 protected:
  static QmCtx* Load(const Expectation& row) {
    QmCtx* ctx = NewContext(QM_LOAD_IMPORTS);
    for (const std::string& name : row.modules) {
      EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str())) << name;
    }
    for (const std::string& feature : row.features) {
      const std::vector<std::string> parts = Split(feature, ':');
      QmsModule* module = QM_CTX_GetModuleByModName(ctx, parts[0].c_str());
      EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(module, parts[1].c_str())) << feature;
    }
    return ctx;
  }

  static void CheckRpc(QmCtx* ctx, const Expectation& row, const std::string& text) {
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, const_cast<char*>(text.c_str()),
                                                nullptr, nullptr);
    EXPECT_EQ(row.expected == "valid", err == nullptr)
        << (err == nullptr || QM_GetErrorMessage(err) == nullptr ? "no message"
                                                                 : QM_GetErrorMessage(err));
    if (err == nullptr || row.expected == "valid") {
      QM_FreeErrNode(err);
      return;
    }
    ASSERT_EQ(1u, Tags().count(row.errorTag)) << row.errorTag;
    EXPECT_EQ(Tags().at(row.errorTag), QM_GetErrorTag(err));
    if (row.badElement != "*") {
      EXPECT_STREQ(row.badElement.c_str(), QM_GetBadElement(err));
    }
    QM_FreeErrNode(err);
  }
};

TEST_F(RealMessages, EachComesOutAsExpected) {
  const std::vector<Expectation> rows = ReadIndex(Folder() + "/messages/index.tsv");
  EXPECT_GE(rows.size(), 40u);
  for (const Expectation& row : rows) {
    SCOPED_TRACE(row.file);
    if (row.expected == "doubtful") continue;
    QmCtx* ctx = Load(row);
    const std::string text = ReadFile(Folder() + "/messages/" + row.file);
    ASSERT_FALSE(text.empty());
    if (row.kind == "rpc") {
      CheckRpc(ctx, row, text);
    } else {
      EXPECT_EQ(row.expected == "valid",
                QM_CTX_ValidateNotifDataTree(ctx, text.c_str(), nullptr, nullptr) == 0);
    }
    QM_CTX_Delete(ctx);
  }
}

TEST_F(RealMessages, ElementTreeValidatesTwiceWithTheSameResult) {
  for (const Expectation& row : ReadIndex(Folder() + "/messages/index.tsv")) {
    if (row.kind != "rpc" || row.expected != "valid") continue;
    SCOPED_TRACE(row.file);
    QmCtx* ctx = Load(row);
    const std::string text = ReadFile(Folder() + "/messages/" + row.file);
    xmlKeepBlanksDefault(0);
    xmlDoc* doc = xmlParseMemory(text.data(), static_cast<int>(text.size()));
    ASSERT_NE(nullptr, doc);
    for (int round = 0; round < 2; ++round) {
      QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, xmlDocGetRootElement(doc),
                                                  nullptr, nullptr);
      EXPECT_EQ(nullptr, err) << "round " << round;
      QM_FreeErrNode(err);
    }
    xmlFreeDoc(doc);
    QM_CTX_Delete(ctx);
  }
}

}  // namespace
