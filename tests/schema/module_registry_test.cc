// SPDX-License-Identifier: BSD-3-Clause
#include "schema/module_registry.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/dict.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "loader/context_life.h"
#include "schema/records.h"
#include "tests/support/yin_text.h"

namespace {

class Registry : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(0)); }
  void TearDown() override { QM_CTX_Delete(ctx_); }

  // A record that is not registered; NULL texts are left out.
  QmsModule* MakeModule(const char* name, const char* ns) {
    auto* module = NewRecord<QmsModule>();
    module->ctx = ctx_;
    RTK_AVL3_InitLink(&module->nameLink);
    RTK_AVL3_InitLink(&module->nsLink);
    module->name = QM_DICT_Insert(&ctx_->dict, name);
    module->ns = QM_DICT_Insert(&ctx_->dict, ns);
    return module;
  }
  QmsModule* AddModule(const char* name, const char* ns) {
    QmsModule* module = MakeModule(name, ns);
    EXPECT_EQ(QM_OK, QM_CTX_AddModuleNode(ctx_, module));
    return module;
  }

  QmCtx* ctx_ = nullptr;
};

using AddModuleNode = Registry;
using DestroyModuleNode = Registry;
using DeInitModuleTree = Registry;
using FindDefinition = Registry;
using FeaturesOfModules = Registry;

constexpr char kAugmentTarget[] = "<container name='x'/>";
constexpr char kAugment[] =
    "<import module='t'><prefix value='t'/></import>"
    "<augment target-node='/t:x'><leaf name='y'><type name='string'/></leaf></augment>";

}  // namespace

TEST(ModTreeKeyCompare, ComparesTextsAndTakesNullAsEqual) {
  EXPECT_LT(QM_CTX_ModTreeKeyCompare("a", "b"), 0);
  EXPECT_EQ(0, QM_CTX_ModTreeKeyCompare("a", "a"));
  EXPECT_GT(QM_CTX_ModTreeKeyCompare("b", "a"), 0);
  EXPECT_EQ(0, QM_CTX_ModTreeKeyCompare(nullptr, "a"));
  EXPECT_EQ(0, QM_CTX_ModTreeKeyCompare("a", nullptr));
  EXPECT_EQ(0, QM_CTX_ModTreeKeyCompare(nullptr, nullptr));
}

TEST_F(AddModuleNode, ModuleIsFoundByNameAndByNamespace) {
  QmsModule* m = AddModule("m", "urn:m");
  QmsModule* n = AddModule("n", "urn:n");
  EXPECT_EQ(m, QM_CTX_GetModuleByModName(ctx_, "m"));
  EXPECT_EQ(n, QM_CTX_GetModuleByModNs(ctx_, "urn:n"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, "urn:m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(ctx_, "m"));
}

TEST_F(AddModuleNode, NullArgumentsGive1AndNullLookups) {
  EXPECT_EQ(QM_FAILED, QM_CTX_AddModuleNode(ctx_, nullptr));
  EXPECT_EQ(QM_FAILED, QM_CTX_AddModuleNode(nullptr, nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(nullptr, "m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(ctx_, nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(nullptr, "urn:m"));
}

TEST_F(AddModuleNode, SameNameGives1) {
  QmsModule* first = AddModule("m", "urn:m");
  QmsModule* second = MakeModule("m", "urn:other");
  EXPECT_EQ(QM_FAILED, QM_CTX_AddModuleNode(ctx_, second));
  EXPECT_EQ(first, QM_CTX_GetModuleByModName(ctx_, "m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(ctx_, "urn:other"));
  QM_CTX_DestroyModuleNode(ctx_, second);
}

TEST_F(AddModuleNode, SameNamespaceGives1AndUndoesTheName) {
  QmsModule* first = AddModule("m", "urn:m");
  QmsModule* second = MakeModule("n", "urn:m");
  EXPECT_EQ(QM_FAILED, QM_CTX_AddModuleNode(ctx_, second));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, "n"));
  QM_CTX_DestroyModuleNode(ctx_, second);
  EXPECT_EQ(first, QM_CTX_GetModuleByModNs(ctx_, "urn:m")) << "by its link, not by its key";
}

TEST_F(AddModuleNode, ModuleWithoutNamespaceCollidesWithAnyOther) {
  AddModule("m", "urn:m");
  QmsModule* second = MakeModule("n", nullptr);
  EXPECT_EQ(QM_FAILED, QM_CTX_AddModuleNode(ctx_, second));
  QM_CTX_DestroyModuleNode(ctx_, second);
}

TEST_F(AddModuleNode, FirstModuleWithoutNamespaceIsFoundForAny) {
  QmsModule* first = AddModule("m", nullptr);
  EXPECT_EQ(first, QM_CTX_GetModuleByModNs(ctx_, "urn:any"));
  QmsModule* second = MakeModule("n", "urn:n");
  EXPECT_EQ(QM_FAILED, QM_CTX_AddModuleNode(ctx_, second));
  QM_CTX_DestroyModuleNode(ctx_, second);
}

TEST_F(DestroyModuleNode, RemovesTheModuleAndItsErrors) {
  QmsModule* m = AddModule("m", "urn:m");
  QM_CTX_AddModError(ctx_, "m", "x");
  QM_CTX_DestroyModuleNode(ctx_, m);
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, "m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(ctx_, "urn:m"));
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, "m"));
  QM_CTX_DestroyModuleNode(ctx_, nullptr);
  QM_CTX_DestroyModuleNode(nullptr, nullptr);
}

TEST_F(DestroyModuleNode, TargetOfACoupledAugmentGoesWithoutTheForeignNodes) {
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("t", kAugmentTarget).c_str()));
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("a", kAugment).c_str()));
  QmsModule* a = QM_CTX_GetModuleByModName(ctx_, "a");
  ASSERT_NE(0u, a->augmentNodes->flags & QMS_NODE_COUPLED);
  QM_CTX_DestroyModuleNode(ctx_, QM_CTX_GetModuleByModName(ctx_, "t"));
  EXPECT_EQ(0u, a->augmentNodes->flags & QMS_NODE_COUPLED);
  ASSERT_NE(nullptr, a->augmentNodes->firstChild);
  EXPECT_STREQ("y", a->augmentNodes->firstChild->name);
  EXPECT_EQ(a->augmentNodes, a->augmentNodes->firstChild->parent);
}

TEST_F(DestroyModuleNode, ModuleWithACoupledAugmentTakesItsNodesAlong) {
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("t", kAugmentTarget).c_str()));
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("a", kAugment).c_str()));
  QmsModule* t = QM_CTX_GetModuleByModName(ctx_, "t");
  ASSERT_NE(nullptr, t->dataNodes->firstChild);
  QM_CTX_DestroyModuleNode(ctx_, QM_CTX_GetModuleByModName(ctx_, "a"));
  EXPECT_EQ(nullptr, t->dataNodes->firstChild);
}

TEST_F(DeInitModuleTree, CoupledModulesAreTakenApartAndFreed) {
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("t", kAugmentTarget).c_str()));
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("a", kAugment).c_str()));
  // An augment into the nodes of another augment of the same module.
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(
                       ctx_, yin_text::Module(
                                 "b",
                                 "<import module='t'><prefix value='t'/></import>"
                                 "<augment target-node='/t:x'><container name='z'/></augment>"
                                 "<augment target-node='/t:x/b:z'><container name='w'/></augment>")
                                 .c_str()));
  // And into those of another module.
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(
                       ctx_, yin_text::Module(
                                 "a2",
                                 "<import module='t'><prefix value='t'/></import>"
                                 "<import module='b'><prefix value='b'/></import>"
                                 "<augment target-node='/t:x/b:z'><container name='v'/></augment>")
                                 .c_str()));
  const QmsNode* z = QM_CTX_GetTargetNode(ctx_, "/t:x/b:z", nullptr);
  ASSERT_NE(nullptr, z);
  ASSERT_STREQ("w", z->firstChild->name);
  ASSERT_STREQ("v", z->lastChild->name);
  QM_CTX_DeInitModuleTree(ctx_);
  for (const char* name : {"t", "a", "a2", "b"}) {
    EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, name));
  }
  QM_CTX_DeInitModuleTree(nullptr);
  EXPECT_EQ(QM_INVALID, QM_CTX_InitModuleTree(nullptr));
}

TEST_F(FindDefinition, GoesByModuleAndName) {
  ASSERT_EQ(QM_OK,
            QM_CTX_LoadMemory(ctx_, yin_text::Module("m",
                                                     "<feature name='f'/><identity name='i'/>"
                                                     "<typedef name='t'><type name='string'/>"
                                                     "</typedef>")
                                        .c_str()));
  QmsModule* m = QM_CTX_GetModuleByModName(ctx_, "m");
  EXPECT_EQ(m->identities, QM_CTX_FindIdentityByModNameAndIdentName(ctx_, "m", "i"));
  EXPECT_EQ(m->features, QM_CTX_FindFeatureByModNameAndFeatName(ctx_, "m", "f"));
  EXPECT_EQ(m->typedefs, QM_CTX_FindTdefObjByModAndTdefName(ctx_, "m", "t"));
  EXPECT_EQ(nullptr, QM_CTX_FindIdentityByModNameAndIdentName(ctx_, "absent", "i"));
  EXPECT_EQ(nullptr, QM_CTX_FindFeatureByModNameAndFeatName(ctx_, "absent", "f"));
  EXPECT_EQ(nullptr, QM_CTX_FindTdefObjByModAndTdefName(ctx_, "absent", "t"));
  EXPECT_EQ(nullptr, QM_CTX_FindIdentityByModNameAndIdentName(ctx_, "m", "f"));
  EXPECT_EQ(nullptr, QM_CTX_FindFeatureByModNameAndFeatName(ctx_, "m", nullptr));
  EXPECT_EQ(nullptr, QM_CTX_FindTdefObjByModAndTdefName(nullptr, "m", "t"));
}

TEST_F(FeaturesOfModules, AreAskedForAndDisabledByName) {
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("m", "<feature name='f'/>").c_str()));
  EXPECT_EQ(QM_OK, QM_CTX_IsModFeatureEnable(ctx_, "m", "f"));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(QM_CTX_GetModuleByModName(ctx_, "m"), "f"));
  EXPECT_EQ(QM_FAILED, QM_CTX_IsModFeatureEnable(ctx_, "m", "f"));
  EXPECT_EQ(QM_OK, QM_CTX_DisableModFeature(ctx_, "m", "f"));
  EXPECT_EQ(QM_OK, QM_CTX_IsModFeatureEnable(ctx_, "m", "f"));
  EXPECT_EQ(QM_OK, QM_CTX_DisableModFeature(ctx_, "m", "f")) << "also when it is disabled already";
}

TEST_F(FeaturesOfModules, UnknownOnesAreNotEnabledAndCannotBeDisabled) {
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin_text::Module("m", "<feature name='f'/>").c_str()));
  EXPECT_EQ(QM_OK, QM_CTX_IsModFeatureEnable(ctx_, "absent", "f"));
  EXPECT_EQ(QM_OK, QM_CTX_IsModFeatureEnable(ctx_, "m", "absent"));
  EXPECT_EQ(QM_INVALID, QM_CTX_DisableModFeature(ctx_, "absent", "f"));
  EXPECT_EQ(QM_INVALID, QM_CTX_DisableModFeature(ctx_, "m", "absent"));
}

TEST_F(FeaturesOfModules, NullArgumentsGive22) {
  EXPECT_EQ(QM_INVALID, QM_CTX_IsModFeatureEnable(nullptr, "m", "f"));
  EXPECT_EQ(QM_INVALID, QM_CTX_IsModFeatureEnable(ctx_, nullptr, "f"));
  EXPECT_EQ(QM_INVALID, QM_CTX_IsModFeatureEnable(ctx_, "m", nullptr));
  EXPECT_EQ(QM_INVALID, QM_CTX_DisableModFeature(nullptr, "m", "f"));
  EXPECT_EQ(QM_INVALID, QM_CTX_DisableModFeature(ctx_, nullptr, "f"));
  EXPECT_EQ(QM_INVALID, QM_CTX_DisableModFeature(ctx_, "m", nullptr));
}
