// SPDX-License-Identifier: BSD-3-Clause
#include "loader/unload.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/dict.h"
#include "context/relation.h"
#include "coupling/detach.h"
#include "loader/pending.h"
#include "schema/module_registry.h"
#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"

using coupling::Augment;
using coupling::Container;
using coupling::Deviate;
using coupling::Deviation;
using coupling::Imports;
using coupling::Leaf;
using coupling::NotSupported;
using testing::ElementsAre;
using testing::IsEmpty;

static const char kFeatures[] =
    "<feature name=\"f1\"/><feature name=\"f2\"/><feature name=\"f3\"/>";

static std::string EnabledFeatures(const coupling::World& world, const char* module) {
  std::string text;
  for (const char* name : {"f1", "f2", "f3"})
    if (QM_CTX_IsModFeatureEnable(world.ctx(), module, name) == 1)
      text += (text.empty() ? "" : " ") + std::string(name);
  return text;
}

static std::vector<std::string>* g_reloads = nullptr;

static void NoteReload(QmCtx* ctx, const char* modName) {
  EXPECT_NE(nullptr, QM_CTX_GetModuleByModName(ctx, modName)) << "told before it is destroyed";
  g_reloads->push_back(modName);
}

TEST(UnloadModule, OneThatIsNotLoadedGives0AndItsErrorsAreForgotten) {
  coupling::World world;
  EXPECT_EQ(QM_NOT_FOUND, world.Load("none"));
  ASSERT_EQ(1u, world.Errors().size());
  EXPECT_EQ(QM_OK, world.Unload("none"));
  EXPECT_THAT(world.Errors(), IsEmpty());
  EXPECT_EQ(QM_OK, world.Unload("none"));
}

TEST(UnloadModule, NullGives0) {
  coupling::World world;
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(world.ctx(), nullptr));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(nullptr, "m"));
}

TEST(UnloadModule, APlainModuleIsRemovedAndNotLoadedAgain) {
  coupling::World world;
  world.Add("m", Container("x"));
  EXPECT_EQ(QM_OK, world.Unload("m"));
  EXPECT_FALSE(world.IsLoaded("m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(world.ctx(), "urn:m"));
}

TEST(UnloadModule, TheNameMayBeTheModulesOwn) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  world.Add("r", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(world.ctx(), QM_MOD_GetModuleName(world.Module("r"))));
  EXPECT_EQ("l", world.Tree("t"));
}

TEST(UnloadModule, ADeviatedModuleIsReadAgainWithItsFeaturesEnabled) {
  coupling::World world;
  world.Add("t", std::string(kFeatures) + Leaf("l") + Leaf("k"));
  world.Add("r", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("t"), "f1"));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("t"), "f3"));
  ASSERT_EQ("k", world.Tree("t"));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_FALSE(world.IsLoaded("r"));
  EXPECT_EQ("l k", world.Tree("t"));
  EXPECT_EQ("f1 f3", EnabledFeatures(world, "t"));
  EXPECT_EQ("", world.Relations("t"));
}

TEST(UnloadModule, TheDeviatedModuleComesBackFromItsFileAsItIsNow) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  world.Add("r", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  world.Put("t", Leaf("l") + Leaf("newer"));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_EQ("l newer", world.Tree("t"));
}

TEST(UnloadModule, EachDeviatedModuleIsReloadedOnceInTheOrderOfTheDeviations) {
  std::vector<std::string> reloads;
  g_reloads = &reloads;
  coupling::World world;
  QM_CTX_SetReloadModuleCbFunc(world.ctx(), NoteReload);
  world.Add("t", Leaf("l") + Leaf("k"));
  world.Add("u", Leaf("l"));
  world.Add("r", Imports({"t", "u", "missing"}) + Deviation("/t:l", NotSupported()) +
                     Deviation("/t:k", NotSupported()) + Deviation("/u:l", NotSupported()) +
                     Deviation("/missing:l", NotSupported()) +
                     Deviation("/t:none", NotSupported()));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_THAT(reloads, ElementsAre("r", "t", "u"));
  EXPECT_EQ("l k", world.Tree("t"));
  EXPECT_EQ("l", world.Tree("u"));
  EXPECT_FALSE(world.IsLoaded("missing"));
  EXPECT_EQ("", world.Relations("missing"));
}

TEST(UnloadModule, AModuleThatAugmentsItAndSharesItsDeviatorIsReloaded) {
  std::vector<std::string> reloads;
  g_reloads = &reloads;
  coupling::World world;
  QM_CTX_SetReloadModuleCbFunc(world.ctx(), NoteReload);
  world.Add("r", Container("x"));
  world.Add("a", Imports({"r"}) + Augment("/r:x", Leaf("y")) + Leaf("own"));
  world.Add("other", Imports({"r"}) + Augment("/r:x", Leaf("z")));
  world.Add("d", Imports({"r", "a"}) +
                     Deviation("/r:x", Deviate("add", "<config value=\"false\"/>")) +
                     Deviation("/a:own", NotSupported()));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_THAT(reloads, ElementsAre("r", "a"));
  EXPECT_FALSE(world.IsLoaded("r"));
  EXPECT_TRUE(world.IsLoaded("a"));
  EXPECT_EQ("/r:x pending{y}", world.Augments("a"));
  EXPECT_EQ("/r:x pending{z}", world.Augments("other"));
}

TEST(UnloadModule, AnAugmentLostToADeviationComesBackOnlyWhenItsTargetIsUnloaded) {
  const std::string t = Container("x", Container("y")) + Leaf("l");
  const std::string c = Imports({"t"}) + Augment("/t:x/t:y", Leaf("z"));
  const std::string d = Imports({"t"}) + Deviation("/t:x", NotSupported());
  {
    // The relation to t is forgotten before t has its turn, so c is not found.
    coupling::World world;
    world.Add("t", t);
    world.Add("c", c);
    world.Add("d", d);
    EXPECT_EQ(QM_OK, world.Unload("d"));
    EXPECT_EQ("x{y} l", world.Tree("t"));
    EXPECT_EQ("", world.Augments("c"));
  }
  {
    coupling::World world;
    world.Add("t", t);
    world.Add("c", c);
    world.Add("d", d);
    EXPECT_EQ(QM_OK, world.Unload("t"));
    EXPECT_EQ("/t:x/y pending{z}", world.Augments("c"));
  }
}

TEST(UnloadModule, AModuleThatWasUnloadedBeforeIsNotBroughtBack) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  world.Add("c", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z")));
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  ASSERT_EQ(QM_OK, world.Unload("c"));
  // Its augment was gone, so the relation is still there; and d deviates both.
  ASSERT_EQ("deviation:d augment:c", world.Relations("a"));
  ASSERT_EQ("deviation:d", world.Relations("c"));
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_FALSE(world.IsLoaded("c"));
}

TEST(UnloadModule, AnAugmentingModuleTakesItsNodesWithIt) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("own")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2")));
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_EQ("x{own}", world.Tree("t"));
  EXPECT_EQ("", world.Relations("t"));
  EXPECT_EQ(QM_OK, world.Load("a"));
  EXPECT_EQ("x{own y1:a y2:a}", world.Tree("t"));
}

TEST(UnloadModule, AnAugmentedModuleLeavesTheAugmentPendingUntilItComesBack) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ(QM_OK, world.Unload("t"));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
  EXPECT_EQ("augment:a", world.Relations("t"));
  EXPECT_EQ(QM_OK, world.Load("t"));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
}

TEST(UnloadModule, OneWithAPendingAugmentIsUnloaded) {
  coupling::World world;
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_FALSE(world.IsLoaded("a"));
  EXPECT_EQ("", world.Relations("t"));
}

TEST(UnloadModule, AnAugmentBelowAnAugmentFollowsTheOneItHangsIn) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  world.Add("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z")));
  ASSERT_EQ("x{y:a{z:b}}", world.Tree("t"));

  EXPECT_EQ(QM_OK, world.Unload("t"));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
  EXPECT_EQ("/t:x/a:y coupled{z}", world.Augments("b"));
  EXPECT_EQ(QM_OK, world.Load("t"));
  EXPECT_EQ("x{y:a{z:b}}", world.Tree("t"));

  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_EQ("x", world.Tree("t"));
  EXPECT_EQ("/t:x/a:y pending{z}", world.Augments("b"));
  EXPECT_EQ(QM_OK, world.Load("a"));
  EXPECT_EQ("x{y:a{z:b}}", world.Tree("t"));

  EXPECT_EQ(QM_OK, world.Unload("b"));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
}

TEST(UnloadModule, WithReloadTheAugmentsOfOthersComeBackBeforeTheFeatures) {
  std::vector<std::string> reloads;
  g_reloads = &reloads;
  coupling::World world;
  QM_CTX_SetReloadModuleCbFunc(world.ctx(), NoteReload);
  world.Add("t", std::string(kFeatures) + Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  world.Add("r", Imports({"t"}) + Deviation("/t:x", Deviate("add", "<config value=\"true\"/>")));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("t"), "*"));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_THAT(reloads, ElementsAre("r", "t"));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
  EXPECT_EQ("f1 f2 f3", EnabledFeatures(world, "t"));
  EXPECT_EQ("augment:a", world.Relations("t"));
}

TEST(UnloadModule, TheDeviationsOfOthersAreAppliedAfreshToAReloadedModule) {
  const std::string base =
      "<identity name=\"base\"/><identity name=\"one\"><base name=\"base\"/></identity>";
  coupling::World world;
  world.Add("t",
            base +
                "<leaf name=\"l\"><type name=\"identityref\"><base name=\"base\"/></type></leaf>" +
                Leaf("k"));
  world.Put("e", "");
  // The default of d carries a prefix when it is read; it is a module name afterwards.
  world.Add("d", "<import module=\"t\"><prefix value=\"p\"/></import>" +
                     Deviation("/p:l", Deviate("add", "<default value=\"p:one\"/>")));
  world.Add("r", Imports({"t"}) + Deviation("/t:k", NotSupported()));
  ASSERT_STREQ("t:one", QM_NODE_GetDefaultValueStr(yin::Find(world.Module("t"), "l")));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_EQ("l k", world.Tree("t"));
  EXPECT_STREQ("t:one", QM_NODE_GetDefaultValueStr(yin::Find(world.Module("t"), "l")));
  EXPECT_EQ("/t:l applied", world.Deviations("d"));
  EXPECT_THAT(world.Errors(), IsEmpty());
}

TEST(UnloadModule, ADeviationOfTheModuleItselfNeedsNoSecondRemoval) {
  std::vector<std::string> reloads;
  g_reloads = &reloads;
  coupling::World world;
  QM_CTX_SetReloadModuleCbFunc(world.ctx(), NoteReload);
  world.Add("m", Leaf("l") + Leaf("k") + Deviation("/m:l", NotSupported()));
  EXPECT_EQ(QM_OK, world.Unload("m"));
  EXPECT_THAT(reloads, ElementsAre("m"));
  EXPECT_FALSE(world.IsLoaded("m"));
}

TEST(UnloadModule, ModulesThatDeviateEachOtherAreBothRead) {
  coupling::World world;
  world.Add("a", Imports({"b"}) + Leaf("la") + Leaf("ka") + Deviation("/b:lb", NotSupported()));
  world.Add("b", Imports({"a"}) + Leaf("lb") + Leaf("kb") + Deviation("/a:la", NotSupported()));
  ASSERT_EQ("ka", world.Tree("a"));
  ASSERT_EQ("kb", world.Tree("b"));
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_FALSE(world.IsLoaded("a"));
  EXPECT_EQ("lb kb", world.Tree("b"));
}

TEST(UnloadModule, OneThatCannotBeReadAgainGivesAFailureAndTheOthersComeBack) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  world.Add("u", Leaf("l"));
  world.Add("a", Imports({"t"}) + Augment("/t:later", Leaf("y")));
  world.Add("r", Imports({"t", "u"}) + Deviation("/t:l", NotSupported()) +
                     Deviation("/u:l", NotSupported()));
  world.Remove("t.yin");
  EXPECT_NE(QM_OK, world.Unload("r"));
  EXPECT_FALSE(world.IsLoaded("t"));
  EXPECT_EQ("l", world.Tree("u"));
  EXPECT_THAT(world.Errors(), ElementsAre("t -: Failed to find \"t\" from search directories."));
  world.Put("t", Container("later"));
  EXPECT_EQ(QM_OK, world.Load("t"));
  EXPECT_EQ("later{y:a}", world.Tree("t"));
}

TEST(UnloadModule, AFeatureThatIsGoneAfterTheReloadGivesAFailure) {
  coupling::World world;
  world.Add("t", std::string(kFeatures) + Leaf("l"));
  world.Add("r", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("t"), "*"));
  world.Put("t", "<feature name=\"f1\"/><feature name=\"f3\"/>" + Leaf("l"));
  EXPECT_EQ(QM_INVALID, world.Unload("r"));
  EXPECT_EQ("f1 f3", EnabledFeatures(world, "t"));
}

// No if-feature can refer to such a feature; it is the one that is not enabled again.
TEST(UnloadModule, AnEnabledFeatureWithATooLongNameStandsInNoWay) {
  coupling::World world;
  const std::string longName(65, 'f');
  world.Add("t", "<feature name=\"" + longName + "\"/>" + kFeatures + Leaf("l"));
  world.Add("r", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("t"), "*"));
  EXPECT_EQ(QM_OK, world.Unload("r"));
  EXPECT_EQ("l", world.Tree("t"));
  EXPECT_EQ("f1 f2 f3", EnabledFeatures(world, "t"));
  EXPECT_EQ(QM_OK, QM_CTX_IsModFeatureEnable(world.ctx(), "t", longName.c_str()));
  EXPECT_EQ(QM_OK, world.Unload("t"));
  EXPECT_FALSE(world.IsLoaded("t"));
}

TEST(UnloadModule, AModuleMergedFromSplitFilesIsReadAgain) {
  coupling::World world;
  world.PutFile("m@@x.yin", "m", kFeatures + Container("c"));
  world.PutFile("m@@y.yin", "m", std::string(kFeatures) + Container("c") + "<rpc name=\"r\"/>");
  ASSERT_EQ(QM_OK, world.Load("m"));
  ASSERT_EQ("c r", world.Tree("m"));
  ASSERT_EQ(2u, world.Module("m")->mergeSourceCount);
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("m"), "f2"));
  world.Remove("m@@y.yin");
  EXPECT_EQ(QM_OK, world.Unload("m"));
  EXPECT_EQ("c", world.Tree("m"));
  EXPECT_EQ("f2", EnabledFeatures(world, "m"));
  EXPECT_EQ(1u, world.Module("m")->mergeSourceCount);
}

TEST(UnloadModule, APathThatCannotBeSplitGives22AndRemovesNothing) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  QmsModule* r = world.Add(
      "r", Imports({"t"}) + Deviation("/t:l", NotSupported()) + Augment("/t:none", Leaf("y")));
  QmDict* dict = &world.ctx()->dict;
  ASSERT_TRUE(InternText(dict, &r->deviations[0].targetPath, "/l"));
  EXPECT_EQ(QM_INVALID, world.Unload("r"));
  ASSERT_TRUE(InternText(dict, &r->deviations[0].targetPath, "/t:l"));
  ASSERT_TRUE(InternText(dict, &r->augmentNodes->name, "/none"));
  EXPECT_EQ(QM_INVALID, world.Unload("r"));
  EXPECT_TRUE(world.IsLoaded("r"));
  EXPECT_TRUE(world.IsLoaded("t"));
}

// A path that leads into no module would be met again at the unload, and refused there.
TEST(UnloadModule, NoPathThatALoadTakesStandsInItsWay) {
  const std::string imports = Imports({"t"}) + "<import module=\"" + std::string(65, 'n') +
                              "\"><prefix value=\"p\"/></import>";
  const std::string bodies[] = {
      Augment("/..", Leaf("y")),        Augment("/t:../..", Leaf("y")),
      Augment("/p:x", Leaf("y")),       Augment("/p:x/t:x", Leaf("y")),
      Deviation("/..", NotSupported()), Deviation("/t:..", NotSupported()),
      Deviation("/p:x", NotSupported())};
  for (const std::string& body : bodies) {
    SCOPED_TRACE(body);
    coupling::World world;
    world.Add("t", Leaf("l"));
    const bool splits = body.find("/t:x") != std::string::npos;
    EXPECT_EQ(splits ? QM_OK : QM_FAILED, world.LoadText("r", imports + body));
    EXPECT_EQ(splits, world.IsLoaded("r"));
    EXPECT_EQ(QM_OK, world.Unload("r"));
    EXPECT_FALSE(world.IsLoaded("r"));
  }
}

TEST(UnloadModule, ANameOfMoreThan64CharactersGives12) {
  coupling::World world;
  const std::string name(65, 'n');
  world.Add(name, Leaf("l"));
  EXPECT_EQ(QM_NO_MEMORY, world.Unload(name));
  EXPECT_TRUE(world.IsLoaded(name));
}

TEST(UnloadModule, WithoutMemoryForTheTableItGives12AndRemovesNothing) {
  coupling::World world;
  world.Add("m", Leaf("l"));
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, world.Unload("m"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("l", world.Tree("m"));
}

TEST(UnloadModule, WithoutMemoryForAFeatureTheRemovalEndsThereWith12) {
  coupling::World world;
  world.Add("t", std::string(kFeatures) + Leaf("l"));
  world.Add("r", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world.Module("t"), "f1"));
  counting_memory::RefuseNth(3, counting_memory::Refuse::kOnce);  // after the nodes for r and t
  EXPECT_EQ(QM_NO_MEMORY, world.Unload("r"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_FALSE(world.IsLoaded("r")) << "what was removed stays removed";
  EXPECT_TRUE(world.IsLoaded("t"));
}

TEST(UnloadModule, TheModuleNamedIsPropagatedOnlyWhenLoaded) {
  coupling::World world;
  QmsModPendTbl tbl;
  QMS_LOADER_InitModPendTbl(&tbl);
  EXPECT_EQ(QM_OK, QMS_LOADER_PropagateModuleRemove(world.ctx(), "none", &tbl));
  EXPECT_EQ(nullptr, FirstModPendNode(&tbl));
  EXPECT_EQ(QM_OK, QMS_LOADER_ProcModuleAugAndRelationUncouple(world.ctx(), "none"));
  ASSERT_NE(nullptr, QMS_LOADER_AddModPendNode(&tbl, "none"));
  EXPECT_EQ(QM_OK, QMS_LOADER_UnloadModRemoveProc(world.ctx(), &tbl));
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_EnableReloadModFeature(world.ctx(), FirstModPendNode(&tbl)));
  QMS_LOADER_DeInitModPendTbl(&tbl);
}

TEST(SharedDeviation, OneModuleMustDeviateBoth) {
  coupling::World world;
  world.Add("t", Container("x") + Leaf("l"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")) + Leaf("l"));
  EXPECT_EQ(0u, QMS_LOADER_IsAugAndRmvModShareSameDevaition(world.ctx(), "a", world.Module("t")));
  world.Add("d1", Imports({"t"}) + Deviation("/t:l", Deviate("add", "<config value=\"true\"/>")));
  world.Add("d2", Imports({"a"}) + Deviation("/a:l", Deviate("add", "<config value=\"true\"/>")));
  EXPECT_EQ(0u, QMS_LOADER_IsAugAndRmvModShareSameDevaition(world.ctx(), "a", world.Module("t")));
  const QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(world.ctx(), "a");
  ASSERT_NE(nullptr, tbl);
  EXPECT_EQ(0u, QMS_LOADER_CheckRelTblHaveDevByWithSameName(tbl, world.Module("d2")->name));
  EXPECT_EQ(1u, QMS_LOADER_CheckRelTblHaveDevByWithSameName(tbl, world.Module("d1")->name));
  world.Add("d3", Imports({"t", "a"}) + Deviation("/a:l", Deviate("replace")) +
                      Deviation("/t:l", Deviate("replace")));
  EXPECT_EQ(1u, QMS_LOADER_IsAugAndRmvModShareSameDevaition(world.ctx(), "a", world.Module("t")));
}

// No path leads back to these runs; the modules must let go of them all the same.

TEST(ForcedDetachment, OfARunWhoseTargetIsSpelledWithoutTheAugment) {
  const std::string t = Container("x");
  const std::string a = Imports({"t"}) + Augment("/t:x", Container("y"));
  const std::string b = Imports({"t"}) + Augment("/t:x/y", Leaf("z"));
  for (const std::string order : {"a", "b", "t", "ab", "ba", "ta", "tb", "tab", "tba", "bta"}) {
    SCOPED_TRACE(order);
    coupling::World world;
    world.Add("t", t);
    world.Add("a", a);
    world.Add("b", b);
    ASSERT_EQ("x{y:a{z:b}}", world.Tree("t"));
    for (const char name : order) EXPECT_EQ(QM_OK, world.Unload(std::string(1, name)));
    for (const char* name : {"t", "a", "b"}) EXPECT_EQ(QM_OK, world.Load(name));
    EXPECT_EQ(QM_OK, world.Load("t"));
    EXPECT_EQ("x{y:a{z:b}}", world.Tree("t"));
  }
}

TEST(ForcedDetachment, OfARunWhoseTargetHasLostItsName) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  QmDict* dict = &world.ctx()->dict;
  ASSERT_TRUE(InternText(dict, &world.Module("t")->dataNodes->name, "other"));
  EXPECT_EQ(QM_OK, world.Unload("t"));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
  EXPECT_EQ(QM_OK, world.Load("t"));
  ASSERT_TRUE(InternText(dict, &world.Module("t")->dataNodes->name, "other"));
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_EQ("other", world.Tree("t"));
}

TEST(ForcedDetachment, AtTheEndOfAContext) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  world.Add("b", Imports({"t"}) + Augment("/t:x/y", Leaf("z")));
  world.Add("c", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("w")));
  ASSERT_TRUE(InternText(&world.ctx()->dict, &world.Module("t")->dataNodes->name, "other"));
  // The leak check of the test program sees whether every node was found.
}

TEST(ForcedDetachment, DestroyingAnUnregisteredModuleTouchesNobody) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  DetachModuleAugments(world.ctx(), nullptr);
  DetachModuleAugments(nullptr, world.Module("t"));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
}

static const char* g_dir = nullptr;

static void UnloadAndReload(bool refusing) {
  yin::Context ctx;
  if (ctx.Get() == nullptr || QM_CTX_SetSearchDir(ctx, g_dir) != 0) return;
  for (const char* name : {"t", "a", "b", "r"}) static_cast<void>(QM_CTX_LoadModule(ctx, name));
  QmsModule* t = QM_CTX_GetModuleByModName(ctx, "t");
  if (t != nullptr) static_cast<void>(QM_MOD_EnableFeature(t, "*"));
  const uint32_t ret = QM_CTX_UnloadModule(ctx, "r");
  coupling::CheckLinks(ctx);
  if (!refusing) {
    EXPECT_EQ(QM_OK, ret);
    EXPECT_EQ("x{y:a{z:b}} l", coupling::Tree(QM_CTX_GetModuleByModName(ctx, "t")));
    EXPECT_EQ(QM_FAILED, QM_CTX_IsModFeatureEnable(ctx, "t", "f2"));
  }
  static_cast<void>(QM_CTX_UnloadModule(ctx, "a"));
  coupling::CheckLinks(ctx);
}

TEST(UnloadModule, SurvivesEveryRefusedAllocation) {
  const yin::Folder folder;
  g_dir = folder.Dir();
  folder.Write("t.yin", yin::Module("t", kFeatures + Container("x") + Leaf("l")));
  folder.Write("a.yin", yin::Module("a", Imports({"t"}) + Augment("/t:x", Container("y"))));
  folder.Write("b.yin", yin::Module("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z"))));
  folder.Write("r.yin", yin::Module("r", Imports({"t"}) + Deviation("/t:l", NotSupported())));
  EXPECT_GT(counting_memory::FailEachAllocation(UnloadAndReload), 200u);
}
