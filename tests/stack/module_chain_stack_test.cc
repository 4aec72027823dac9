// SPDX-License-Identifier: BSD-3-Clause
// Files that lead to files: includes, imports, augments and deviations from module to
// module.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "tests/stack/deep_model.h"

namespace {

using deep_model::Folder;
using deep_model::LoadErrors;
using deep_model::Nested;
using deep_model::OnSmallStack;

// The longest name that a file of the chain can have makes the longest messages.
std::string PartName(size_t number) {
  return "part-" + std::to_string(number);
}

// A module "m" that includes the first of `links` submodules, each of which includes
// the next; `inner` stands in the last.
void WriteIncludes(const Folder& folder, size_t links, const std::string& inner) {
  const auto include = [](size_t number) { return "<include module='" + PartName(number) + "'/>"; };
  folder.Write("m.yin", deep_model::Module("m", include(0) + "<container name='c'/>"));
  for (size_t i = 0; i < links; ++i)
    folder.Write(PartName(i) + ".yin",
                 deep_model::Submodule(PartName(i), i + 1 < links ? include(i + 1) : inner));
}

class ModuleChain : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder_.Dir())); }
  void TearDown() override { QM_CTX_Delete(ctx_); }
  Folder folder_;
  QmCtx* ctx_ = QM_CTX_Create(QM_LOAD_IMPORTS);
};

TEST_F(ModuleChain, Of256IncludesIsFollowed) {
  WriteIncludes(folder_, 256,
                Nested(deep_model::kTextLevels - 3, "<container name='d'>", "</container>",
                       "<leaf name='x'><type name='int8'/></leaf>") +
                    "<leaf name='u'>" +
                    Nested(deep_model::kTextLevels - 3, "<type name='union'>", "</type>",
                           "<type name='int8'/>") +
                    "</leaf>");
  OnSmallStack([&] {
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
    EXPECT_EQ("", LoadErrors(ctx_));
    EXPECT_NE(nullptr, QM_CTX_GetTargetNode(ctx_, "/m:d/d/d", nullptr));
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "m"));
  });
}

TEST_F(ModuleChain, Of257IncludesIsRefused) {
  WriteIncludes(folder_, 257, "");
  OnSmallStack([&] {
    EXPECT_NE(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
    EXPECT_NE("", LoadErrors(ctx_));
  });
}

TEST_F(ModuleChain, OfIncludesFailsAtItsEnd) {
  WriteIncludes(
      folder_, 256,
      Nested(deep_model::kTextLevels - 2, "<container name='d'>", "</container>", "<leaf/>"));
  OnSmallStack([&] {
    EXPECT_NE(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
    EXPECT_NE("", LoadErrors(ctx_));
  });
}

std::string Import(const std::string& name) {
  return "<import module='" + name + "'><prefix value='p'/></import>";
}

TEST_F(ModuleChain, OfImportsAugmentsAndDeviationsIsLoadedAndUnloaded) {
  constexpr size_t kModules = 200;
  const auto name = [](size_t number) { return "m" + std::to_string(number); };
  folder_.Write("m0.yin", deep_model::Module("m0", "<container name='c'/>"));
  for (size_t i = 1; i < kModules; ++i) {
    const std::string before = name(i - 1);
    const std::string path = i == 1 ? "/p:c" : "/p:c" + std::to_string(i - 1);
    folder_.Write(
        name(i) + ".yin",
        deep_model::Module(name(i), Import(before) + "<container name='c" + std::to_string(i) +
                                        "'/>" + "<augment target-node='" + path +
                                        "'><leaf name='a'><type name="
                                        "'int8'/></leaf></augment><deviation target-node='" +
                                        path +
                                        "'><deviate value='add'><must condition='1'/></deviate>"
                                        "</deviation>"));
  }
  OnSmallStack([&] {
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, name(kModules - 1).c_str()));
    EXPECT_EQ("", LoadErrors(ctx_));
    EXPECT_NE(nullptr, QM_CTX_GetModuleByModName(ctx_, "m0"));
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "m0"));
  });
}

}  // namespace
