// SPDX-License-Identifier: BSD-3-Clause
#include "loader/import_load.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "loader/pending.h"
#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"

using coupling::Augment;
using coupling::Container;
using coupling::Deviate;
using coupling::Deviation;
using coupling::Imports;
using coupling::Leaf;
using testing::ElementsAre;
using testing::IsEmpty;

// The modules in the order in which their files were parsed: each of them uses
// the extension of its own name once, and the filter hook sees every use.
static std::vector<std::string>* g_parsed = nullptr;

static uint32_t NoteParse(const char* modName, const char* keyword) {
  EXPECT_STREQ("mark", keyword);
  g_parsed->push_back(modName);
  return 0;
}

namespace {

class ImportLoad : public testing::Test {
 protected:
  ImportLoad() : world_(QM_LOAD_IMPORTS) {
    g_parsed = &parsed_;
    QM_CTX_SetExtInstFilterCbFunc(world_.ctx(), NoteParse);
  }

  void Put(const std::string& name, const std::vector<std::string>& imports,
           const std::string& body = "") const {
    world_.Put(name, Imports(imports) + "<extension name=\"mark\"/><" + name + ":mark/>" + body);
  }

  std::vector<std::string> parsed_;
  coupling::World world_;
};

}  // namespace

TEST_F(ImportLoad, ModulesThatImportEachOtherAreLoadedOnce) {
  Put("a", {"b"});
  Put("b", {"a"});
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_TRUE(world_.IsLoaded("b"));
  EXPECT_EQ(1, std::count(parsed_.begin(), parsed_.end(), "a"));
  EXPECT_EQ(1, std::count(parsed_.begin(), parsed_.end(), "b"));
  EXPECT_THAT(world_.Errors(), IsEmpty());
}

TEST_F(ImportLoad, TheClosureIsLoadedBreadthFirst) {
  Put("a", {"b", "c"});
  Put("b", {"d"});
  Put("c", {"e", "b"});
  Put("d", {"a", "f"});
  Put("e", {});
  Put("f", {"c"});
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_THAT(parsed_, ElementsAre("a", "b", "c", "d", "e", "f"));
}

TEST_F(ImportLoad, WhatIsLoadedAlreadyIsNotReadAgain) {
  Put("b", {});
  ASSERT_EQ(QM_OK, world_.Load("b"));
  parsed_.clear();
  Put("a", {"b", "c"});
  Put("c", {"b"});
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_THAT(parsed_, ElementsAre("a", "c"));
}

TEST_F(ImportLoad, TheFirstMissingImportEndsTheWalkAndTheModuleStays) {
  Put("a", {"b", "none", "c"});
  Put("b", {"d"});
  Put("c", {});
  Put("d", {});
  EXPECT_EQ(QM_NOT_FOUND, world_.Load("a"));
  EXPECT_TRUE(world_.IsLoaded("a"));
  EXPECT_TRUE(world_.IsLoaded("b"));
  EXPECT_FALSE(world_.IsLoaded("c"));
  EXPECT_FALSE(world_.IsLoaded("d"));
  EXPECT_THAT(world_.Errors(),
              ElementsAre("none -: Failed to find \"none\" from search directories."));
}

TEST_F(ImportLoad, AnImportThatCannotBeAddedEndsTheWalkWith1) {
  Put("a", {"b"});
  world_.PutFile("b.yin", "b", "<namespace uri=\"urn:a\"/>");
  EXPECT_EQ(QM_FAILED, world_.Load("a"));
  EXPECT_TRUE(world_.IsLoaded("a"));
  EXPECT_FALSE(world_.IsLoaded("b"));
}

TEST_F(ImportLoad, WhatWasLoadedBeforeAFailureIsCoupled) {
  Put("a", {"b", "none"}, Augment("/b:x", Leaf("y")));
  Put("b", {}, Container("x"));
  EXPECT_EQ(QM_NOT_FOUND, world_.Load("a"));
  EXPECT_EQ("x{y:a}", world_.Tree("b"));
}

TEST_F(ImportLoad, AnAugmentAndADeviationOfAnImportedModuleAreCoupledAtTheEnd) {
  Put("a", {"b"}, Augment("/b:x", Leaf("y")) + Deviation("/b:l", Deviate("not-supported")));
  Put("b", {}, Container("x") + Leaf("l"));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("x{y:a}", world_.Tree("b"));
  EXPECT_EQ("/b:l applied", world_.Deviations("a"));
}

TEST_F(ImportLoad, ImportedModulesThatActOnEachOtherAreCoupled) {
  Put("a", {"b", "c"});
  Put("b", {"c"}, Augment("/c:x", Leaf("y")));
  Put("c", {"b"}, Container("x"));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("x{y:b}", world_.Tree("c"));
}

TEST_F(ImportLoad, AModuleThatWaitsForTheNamedOneIsTold) {
  ASSERT_EQ(QM_OK, world_.LoadText("w", Imports({"a"}) + Augment("/a:x", Leaf("y"))));
  Put("a", {}, Container("x"));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("x{y:w}", world_.Tree("a"));
}

TEST_F(ImportLoad, AModuleThatWaitsForAnImportedOneIsToldOnlyWhenThatIsNamed) {
  ASSERT_EQ(QM_OK, world_.LoadText("w", Imports({"b"}) + Augment("/b:x", Leaf("y"))));
  Put("a", {"b"});
  Put("b", {}, Container("x"));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("/b:x pending{y}", world_.Augments("w"));
  EXPECT_EQ(QM_OK, world_.Load("b"));
  EXPECT_EQ("/b:x coupled{y}", world_.Augments("w"));
}

TEST_F(ImportLoad, LoadingALoadedModuleAgainLoadsItsMissingImports) {
  Put("a", {"b"});
  EXPECT_EQ(QM_NOT_FOUND, world_.Load("a"));
  Put("b", {});
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_TRUE(world_.IsLoaded("b"));
}

TEST_F(ImportLoad, ImportsOfAModuleFromMemoryAreNotLoaded) {
  Put("b", {});
  EXPECT_EQ(QM_OK, world_.LoadText("a", Imports({"b"})));
  EXPECT_FALSE(world_.IsLoaded("b"));
}

TEST_F(ImportLoad, AModuleThatIsNotLoadedGives2) {
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_LoadModuleImportedNames(world_.ctx(), "none"));
}

TEST(ImportLoadFlag, WithoutItNoImportIsLoaded) {
  coupling::World world;
  world.Put("b", "");
  world.Add("a", Imports({"b"}));
  EXPECT_FALSE(world.IsLoaded("b"));
}

namespace {

class ImportsAsPending : public testing::Test {
 protected:
  ImportsAsPending() { QMS_LOADER_InitModPendTbl(&tbl_); }
  ~ImportsAsPending() override { QMS_LOADER_DeInitModPendTbl(&tbl_); }

  std::string Names() const {
    std::string text;
    for (const QmsModPendNode* node = FirstModPendNode(&tbl_); node != nullptr;
         node = NextModPendNode(&tbl_, node))
      text += (text.empty() ? "" : " ") + std::string(node->modName);
    return text;
  }

  coupling::World world_;
  QmsModPendTbl tbl_;
};

}  // namespace

TEST_F(ImportsAsPending, ImportsThatAreNeitherLoadedNorPendingAreAppendedInOrder) {
  world_.Add("loaded", "");
  world_.Add("m", Imports({"z", "loaded", "y", "x"}));
  ASSERT_NE(nullptr, QMS_LOADER_AddModPendNode(&tbl_, "y"));
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendQmModImportsAsPending(world_.ctx(), &tbl_, "m"));
  EXPECT_EQ("y z x", Names());
}

TEST_F(ImportsAsPending, AModuleThatIsNotLoadedGives2) {
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_AppendQmModImportsAsPending(world_.ctx(), &tbl_, "m"));
}

TEST_F(ImportsAsPending, ANodeThatCannotBeAppendedGives12) {
  world_.Add("m", Imports({"first", std::string(65, 'n'), "third"}));
  EXPECT_EQ(QM_NO_MEMORY, QMS_LOADER_AppendQmModImportsAsPending(world_.ctx(), &tbl_, "m"));
  EXPECT_EQ("first", Names());
}

TEST_F(ImportsAsPending, WithoutMemoryItGives12) {
  world_.Add("m", Imports({"first", "second"}));
  counting_memory::RefuseNth(2, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_LOADER_AppendQmModImportsAsPending(world_.ctx(), &tbl_, "m"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("first", Names());
}

static const char* g_dir = nullptr;

static void LoadWithImports(bool refusing) {
  yin::Context ctx(QM_LOAD_IMPORTS);
  if (ctx.Get() == nullptr || QM_CTX_SetSearchDir(ctx, g_dir) != 0) return;
  const uint32_t ret = QM_CTX_LoadModule(ctx, "a");
  coupling::CheckLinks(ctx);
  if (refusing) return;
  EXPECT_EQ(QM_OK, ret);
  EXPECT_EQ("x{y:a}", coupling::Tree(QM_CTX_GetModuleByModName(ctx, "b")));
}

TEST(ImportLoadMemory, SurvivesEveryRefusedAllocation) {
  const yin::Folder folder;
  g_dir = folder.Dir();
  folder.Write("a.yin", yin::Module("a", Imports({"b", "c"}) + Augment("/b:x", Leaf("y"))));
  folder.Write("b.yin", yin::Module("b", Imports({"a"}) + Container("x")));
  folder.Write("c.yin", yin::Module("c", Imports({"b"})));
  EXPECT_GT(counting_memory::FailEachAllocation(LoadWithImports), 100u);
}
