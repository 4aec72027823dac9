// SPDX-License-Identifier: BSD-3-Clause
#include "coupling/couple_deviation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/dict.h"
#include "coupling/couple_augment.h"
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

static const QmsLeaf* LeafAt(const coupling::World& world, const char* module, const char* path) {
  const QmsNode* node = yin::Find(world.Module(module), path);
  return node != nullptr && node->kind == QMS_NODE_LEAF ? static_cast<const QmsLeaf*>(node->payload)
                                                        : nullptr;
}

static std::string Default(const std::string& value) {
  return "<default value=\"" + value + "\"/>";
}

TEST(CoupleDeviation, IsAppliedToALoadedTarget) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  world.Add("d", Imports({"t"}) + Deviation("/t:l", Deviate("add", Default("v"))));
  EXPECT_STREQ("v", LeafAt(world, "t", "l")->defaultValue);
  EXPECT_EQ("/t:l applied", world.Deviations("d"));
  EXPECT_EQ("deviation:d", world.Relations("t"));
}

TEST(CoupleDeviation, WaitsForItsTargetAndIsAppliedByTheCoupleEvent) {
  coupling::World world;
  QmsModule* d = world.Add("d", Imports({"t"}) + Deviation("/t:l", Deviate("add", Default("v"))));
  EXPECT_EQ(QM_OK, QMS_MOD_CoupleDeviation(d, &d->deviations[0]));
  EXPECT_EQ("/t:l pending", world.Deviations("d"));
  EXPECT_EQ("deviation:d", world.Relations("t"));
  world.Add("t", Leaf("l"));
  EXPECT_EQ("/t:l applied", world.Deviations("d"));
  EXPECT_STREQ("v", LeafAt(world, "t", "l")->defaultValue);
  EXPECT_THAT(world.Errors(), IsEmpty());
}

TEST(CoupleDeviation, AnAppliedOneIsLeftAsItIs) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  QmsModule* d = world.Add("d", Imports({"t"}) + Deviation("/t:l", Deviate("add", Default("v"))));
  EXPECT_EQ(QM_OK, QMS_MOD_CoupleDeviation(d, &d->deviations[0]));
  EXPECT_THAT(world.Errors(), IsEmpty());
  EXPECT_EQ(QM_INVALID, QMS_MOD_CoupleDeviation(nullptr, &d->deviations[0]));
  EXPECT_EQ(QM_INVALID, QMS_MOD_CoupleDeviation(d, nullptr));
}

TEST(CoupleDeviation, WithoutDeviatesItIsMarkedAsApplied) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  world.Add("d", Imports({"t"}) + Deviation("/t:l", ""));
  EXPECT_EQ("/t:l applied", world.Deviations("d"));
}

TEST(CoupleDeviation, DeviatesAreAppliedInTheirOrder) {
  coupling::World world;
  world.Add("t", Leaf("l", Default("old")));
  world.Add("d", Imports({"t"}) + Deviation("/t:l", Deviate("delete", Default("old")) +
                                                        Deviate("add", Default("new"))));
  EXPECT_STREQ("new", LeafAt(world, "t", "l")->defaultValue);
  EXPECT_EQ("/t:l applied", world.Deviations("d"));
}

TEST(CoupleDeviation, AfterAFailureItStaysUnappliedAndWhatWasDoneStaysDone) {
  coupling::World world;
  world.Add("t", Leaf("l", Default("old") + "<mandatory value=\"false\"/>"));
  world.Add("d",
            Imports({"t"}) + Deviation("/t:l", Deviate("delete", Default("old")) +
                                                   Deviate("add", "<mandatory value=\"true\"/>") +
                                                   Deviate("add", Default("never"))));
  EXPECT_EQ(nullptr, LeafAt(world, "t", "l")->defaultValue);
  EXPECT_EQ("/t:l pending", world.Deviations("d"));
  EXPECT_THAT(world.Errors(), ElementsAre("d -: Failed to add mandatory flag to node \"l\".",
                                          "d -: Failed to add config or mandatory to node \"l\"."));
  EXPECT_EQ("deviation:d", world.Relations("t"));
}

TEST(CoupleDeviation, AFailedOneIsTriedAgainFromItsFirstDeviate) {
  coupling::World world;
  world.Add("t", Leaf("l", "<mandatory value=\"false\"/>"));
  QmsModule* d = world.Add(
      "d", Imports({"t"}) + Deviation("/t:l", Deviate("add", Default("v")) +
                                                  Deviate("add", "<mandatory value=\"true\"/>")));
  ASSERT_EQ(2u, world.Errors().size());
  EXPECT_EQ(QM_FAILED, QMS_MOD_CoupleDeviation(d, &d->deviations[0]));
  EXPECT_STREQ("v", LeafAt(world, "t", "l")->defaultValue);
}

TEST(CoupleDeviation, LoadingTheTargetByNameAgainTriesAFailedOneAgain) {
  coupling::World world;
  world.Add("t", Leaf("l", "<mandatory value=\"false\"/>"));
  world.Add("d", Imports({"t"}) + Deviation("/t:l", Deviate("add", "<mandatory value=\"true\"/>")));
  ASSERT_EQ("/t:l pending", world.Deviations("d"));
  yin::Find(world.Module("t"), "l")->flags &= ~QMS_NODE_MANDATORY_FALSE;
  EXPECT_EQ(QM_OK, world.Load("t"));
  EXPECT_EQ("/t:l applied", world.Deviations("d"));
}

// The remedy for one that fails halfway: what it did piles up until its module is
// unloaded, which reads the target again.
TEST(CoupleDeviation, UnloadingTheModuleOfAFailedOneGivesEverythingBack) {
  coupling::World world;
  world.Add("t",
            Container("c", Leaf("l", "<mandatory value=\"false\"/>")) + Leaf("k", Default("1")));
  const auto state = [&world] {
    const QmsNode* leaf = yin::Find(world.Module("t"), "c/l");
    const char* other = LeafAt(world, "t", "k")->defaultValue;
    return std::to_string(leaf->mustCount) + " musts, flags " + std::to_string(leaf->flags) +
           ", k " + (other == nullptr ? "-" : other) + ", " + world.Tree("t") + ", " +
           world.Relations("t");
  };
  const std::string before = state();
  const std::string must = "<must condition=\"true()\"/><must condition=\"../l\"/>";
  const std::string body =
      Imports({"t"}) + Deviation("/t:k", Deviate("delete", Default("1"))) +
      Deviation("/t:c/t:l", Deviate("add", must) + Deviate("add", "<mandatory value=\"true\"/>"));
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    world.Add("d", body);
    ASSERT_EQ("/t:k applied; /t:c/l pending", world.Deviations("d"));
    EXPECT_EQ(2u, world.Errors().size()) << "the sign to watch for";
    for (uint32_t loads = 2; loads < 6; ++loads) {
      EXPECT_EQ(QM_OK, world.Load("t")) << "loaded already";
      EXPECT_EQ(2 * loads, yin::Find(world.Module("t"), "c/l")->mustCount);
    }
    EXPECT_EQ(QM_OK, world.Unload("d"));
    EXPECT_FALSE(world.IsLoaded("d"));
    EXPECT_EQ(before, state());
    EXPECT_EQ(QM_OK, world.Load("t"));
    EXPECT_EQ(before, state()) << "and nothing is tried again";
    EXPECT_THAT(world.Errors(), IsEmpty());
  }
}

TEST(CoupleDeviation, AnUnknownKindOfDeviateFailsWith1) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  QmsModule* d =
      world.Add("d", Imports({"t"}) + Deviation("/t:none", Deviate("add", Default("v"))));
  QmsDeviation* deviation = &d->deviations[0];
  ASSERT_TRUE(InternText(&world.ctx()->dict, &deviation->targetPath, "/t:l"));
  for (const uint32_t kind : {0u, 5u, 99u}) {
    deviation->deviates[0].kind = kind;
    EXPECT_EQ(QM_FAILED, QMS_MOD_CoupleDeviation(d, deviation)) << kind;
    EXPECT_EQ("/t:l pending", world.Deviations("d"));
  }
}

TEST(CoupleDeviation, TheTargetMayLieInAnAugment) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  world.Add("d", Imports({"t", "a"}) + Deviation("/t:x/a:y", Deviate("add", Default("v"))));
  EXPECT_STREQ("v", LeafAt(world, "t", "x/y")->defaultValue);
  EXPECT_EQ("deviation:d", world.Relations("a"));
  EXPECT_EQ("augment:a", world.Relations("t"));
}

TEST(CoupleDeviation, OneOfItsOwnModuleHasNoRelation) {
  coupling::World world;
  world.Add("m", Leaf("l") + Deviation("/m:l", Deviate("add", Default("v"))));
  EXPECT_STREQ("v", LeafAt(world, "m", "l")->defaultValue);
  EXPECT_EQ("", world.Relations("m"));
}

TEST(CoupleDeviationAndGenRelation, APathThatCannotBeSplitGives22) {
  yin::Context ctx;
  yin::Parsed d(ctx, yin::Module("d", Leaf("l") + Deviation("/d:l", NotSupported())));
  ASSERT_TRUE(d);
  ASSERT_TRUE(InternText(&ctx.Get()->dict, &d.Get()->deviations[0].targetPath, "/l"));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleDeviationAndGenRelation(ctx, d.Get()));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleDeviationAndGenRelation(ctx, nullptr));
}

TEST(NotSupported, RemovesTheNodeWithItsSubtree) {
  coupling::World world;
  world.Add("t", Container("x", Container("inner", Leaf("l"))) + Leaf("stays"));
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  EXPECT_EQ("stays", world.Tree("t"));
  EXPECT_EQ("/t:x applied", world.Deviations("d"));
}

TEST(NotSupported, RemovesRpcsNotificationsAndInputs) {
  coupling::World world;
  world.Add("t", "<rpc name=\"r\"><input>" + Leaf("i") + "</input></rpc><rpc name=\"s\"/>" +
                     "<notification name=\"n\"/>");
  world.Add("d", Imports({"t"}) + Deviation("/t:s", NotSupported()) +
                     Deviation("/t:r/t:input", NotSupported()) + Deviation("/t:n", NotSupported()));
  EXPECT_EQ("r", world.Tree("t"));
}

TEST(NotSupported, TheDeviatesAfterItAreSkipped) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("l")) + Leaf("stays"));
  world.Add("d",
            Imports({"t"}) + Deviation("/t:x/t:l", NotSupported() + Deviate("add", Default("v")) +
                                                       NotSupported()));
  EXPECT_EQ("x stays", world.Tree("t"));
  EXPECT_EQ("/t:x/l applied", world.Deviations("d"));
  EXPECT_THAT(world.Errors(), IsEmpty());
}

TEST(NotSupported, AugmentsBelowTheRemovedNodeGoAndAreRecordedAsDeviated) {
  coupling::World world;
  world.Add("a", Container("x", Container("y")) + Container("xy"));
  world.Add("c", Imports({"a"}) + Augment("/a:x/a:y", Leaf("gone")) +
                     Augment("/a:xy", Leaf("kept")) + Augment("/a:x", Leaf("gone2")));
  world.Add("d", Imports({"a"}) + Deviation("/a:x", NotSupported()));
  EXPECT_EQ("xy{kept:c}", world.Tree("a"));
  EXPECT_EQ("/a:xy coupled{kept}", world.Augments("c"));
  EXPECT_EQ("deviation:d", world.Relations("c"));
}

TEST(NotSupported, AugmentsOfAugmentsGoTogether) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  world.Add("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z")));
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  EXPECT_EQ("", world.Tree("t"));
  EXPECT_EQ("", world.Augments("a"));
  EXPECT_EQ("", world.Augments("b"));
  EXPECT_EQ("deviation:d augment:b", world.Relations("a"));
  EXPECT_EQ("deviation:d", world.Relations("b"));
}

TEST(NotSupported, APendingAugmentIsNotTouched) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("c", Imports({"t"}) + Augment("/t:x/t:later", Leaf("y")));
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  EXPECT_EQ("/t:x/later pending{y}", world.Augments("c"));
  EXPECT_EQ("", world.Relations("c"));
}

TEST(NotSupported, ANodeOfARunIsTakenOffItsEnds) {
  const struct {
    const char* removed;
    const char* left;
    const char* tree;
  } rows[] = {{"y1", "/t:x coupled{y2 y3}", "x{own y2:a y3:a z:b}"},
              {"y2", "/t:x coupled{y1 y3}", "x{own y1:a y3:a z:b}"},
              {"y3", "/t:x coupled{y1 y2}", "x{own y1:a y2:a z:b}"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.removed);
    coupling::World world;
    world.Add("t", Container("x", Leaf("own")));
    world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2") + Leaf("y3")));
    world.Add("b", Imports({"t"}) + Augment("/t:x", Leaf("z")));
    world.Add(
        "d", Imports({"t", "a"}) + Deviation(std::string("/t:x/a:") + row.removed, NotSupported()));
    EXPECT_EQ(row.left, world.Augments("a"));
    EXPECT_EQ(row.tree, world.Tree("t"));
  }
}

TEST(NotSupported, TheWholeRunMayGo) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  world.Add("d", Imports({"t", "a"}) + Deviation("/t:x/a:y", NotSupported()));
  EXPECT_EQ("/t:x coupled{}", world.Augments("a"));
  EXPECT_EQ("x", world.Tree("t"));
  EXPECT_EQ(QM_OK, world.Unload("a"));
}

TEST(NotSupported, APathThatDoesNotNameTheAugmentLeavesNoRunBehind) {
  for (const char* removed : {"y1", "y2"}) {
    SCOPED_TRACE(removed);
    coupling::World world;
    world.Add("t", Container("x"));
    world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2")));
    // Without a qualifier the step is looked up in the tree of its target.
    world.Add("d", Imports({"t"}) + Deviation(std::string("/t:x/") + removed, NotSupported()));
    ASSERT_EQ(std::string("/t:x/") + removed + " applied", world.Deviations("d"));
    EXPECT_EQ(std::string("/t:x coupled{") + (removed[1] == '1' ? "y2}" : "y1}"),
              world.Augments("a"));
  }
}

TEST(NotSupported, ARunInTheSubtreeWhoseTargetIsSpelledDifferentlyBecomesPending) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  world.Add("b", Imports({"t"}) + Augment("/t:x/y", Leaf("z")));
  ASSERT_EQ("/t:x/y coupled{z}", world.Augments("b"));
  world.Add("d", Imports({"t", "a"}) + Deviation("/t:x/a:y", NotSupported()));
  EXPECT_EQ("x", world.Tree("t"));
  EXPECT_EQ("/t:x/y pending{}", world.Augments("b"));
  EXPECT_EQ("", world.Relations("b"));
  EXPECT_EQ(QM_OK, world.Unload("b"));
  EXPECT_EQ(QM_OK, world.Load("b"));
  EXPECT_EQ("/t:x/y pending{z}", world.Augments("b"));
}

TEST(NotSupported, AnAugmentOfTheDeviatedModuleItselfLosesItsRun) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t", "b"}) + Augment("/t:x", Container("y")) +
                     Augment("/t:x/a:y/b:z", Leaf("again")));
  world.Add("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Container("z")));
  ASSERT_EQ("x{y:a{z:b{again:a}}}", world.Tree("t"));
  world.Add("d", Imports({"t", "a"}) + Deviation("/t:x/a:y", NotSupported()));
  EXPECT_EQ("x", world.Tree("t"));
  EXPECT_EQ("", world.Augments("b"));
  EXPECT_EQ("/t:x coupled{}", world.Augments("a"));
  EXPECT_EQ(QM_OK, world.Unload("t"));
}

TEST(NotSupported, AnAugmentThatStillWaitedAboveLosesItsChildrenToo) {
  // The augment of c hangs in a node that waits for t2; by its path it is to go.
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  world.Add("c", Imports({"t", "a"}) + Augment("/t:x/a:y", Container("z")));
  world.Add("e", Imports({"t", "a"}) + Augment("/t:x/y/z", Leaf("deep")));
  ASSERT_EQ("x{y:a{z:c{deep:e}}}", world.Tree("t"));
  ASSERT_EQ(QM_OK, QMS_NODE_UnCoupleAugmentNode(world.Module("a")->augmentNodes));
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
  EXPECT_EQ("y", coupling::Subtree(world.Module("a")->augmentNodes->firstChild));
  EXPECT_EQ("", world.Augments("c"));
  EXPECT_EQ("deviation:d", world.Relations("c"));
  EXPECT_EQ("", world.Augments("e"));
}

static std::vector<std::string>* g_removed = nullptr;

static uint32_t NoteRemoval(QmCtx* ctx, QmsNode* node, const char* deviatingModName,
                            const char* deviationPath) {
  EXPECT_EQ(ctx, node->module->ctx);
  g_removed->push_back(std::string(node->name) + " by " + deviatingModName + " " + deviationPath);
  return 77;
}

TEST(NotSupportedHook, IsCalledBeforeTheRemovalAndItsAnswerChangesNothing) {
  std::vector<std::string> removed;
  g_removed = &removed;
  coupling::World world;
  QM_CTX_SetBeforeDeviateNotSupportFunc(world.ctx(), NoteRemoval);
  world.Add("t", Container("x", Leaf("l")));
  EXPECT_EQ(77u, QMS_NODE_NotifyBeforeDeviateNotSupport(world.Module("t")->dataNodes, nullptr, "d",
                                                        "/p"));
  removed.clear();
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  EXPECT_THAT(removed, ElementsAre("x by d /t:x"));
  EXPECT_EQ("", world.Tree("t"));
  EXPECT_EQ("/t:x applied", world.Deviations("d"));
  EXPECT_EQ(QM_INVALID, QMS_NODE_NotifyBeforeDeviateNotSupport(nullptr, nullptr, "d", "/p"));
}

TEST(NotSupportedHook, WithoutHookTheAnswerIs0) {
  coupling::World world;
  world.Add("t", Container("x"));
  EXPECT_EQ(
      0u, QMS_NODE_NotifyBeforeDeviateNotSupport(world.Module("t")->dataNodes, nullptr, "d", "/p"));
}

static std::vector<std::string>* g_freed = nullptr;

static void NotePrivate(QmsNode* node, void*) {
  g_freed->push_back(node->name);
}

TEST(NotSupported, PrivateDataOfTheSubtreeGoesBackToTheClient) {
  std::vector<std::string> freed;
  g_freed = &freed;
  coupling::World world;
  QM_CTX_SetPridataFreeFunc(world.ctx(), NotePrivate);
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  QM_NODE_SetPrivate(yin::Find(world.Module("t"), "x"), &freed);
  QM_NODE_SetPrivate(yin::Find(world.Module("t"), "x/y"), &freed);
  world.Add("d", Imports({"t"}) + Deviation("/t:x", NotSupported()));
  EXPECT_THAT(freed, ElementsAre("x", "y"));
}

TEST(RemoveAugments, WithoutRelationTheAugmentStaysWithoutItsRun) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("c", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  QmsModule* c = world.Module("c");
  const char* name = QM_DICT_Insert(&world.ctx()->dict, "d");
  // The first allocation is the relation table of c.
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(c, name, "/t:x"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("/t:x pending{y}", world.Augments("c"));
  EXPECT_EQ("x", world.Tree("t"));
  QM_DICT_Remove(&world.ctx()->dict, "d");
}

TEST(RemoveAugments, NotSupportedWithoutMemoryForTheRelationGives12AndLeavesNoRun) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("c", Imports({"t"}) + Augment("/t:x", Leaf("y")) + Augment("/t:x", Leaf("y2")));
  QmsModule* d = world.Add("d", Imports({"t"}) + Deviation("/t:none", NotSupported()));
  ASSERT_TRUE(InternText(&world.ctx()->dict, &d->deviations[0].targetPath, "/t:x"));
  // Lookups allocate too, so every allocation is refused in turn until one is the relation's.
  uint32_t ret = 0;
  for (uint64_t n = 1; ret == QM_OK && n < 20 && world.Tree("t") == "x{y:c y2:c}"; ++n) {
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    ret = QMS_MOD_CoupleDeviation(d, &d->deviations[0]);
    counting_memory::StopRefusing();
  }
  EXPECT_EQ(QM_NO_MEMORY, ret);
  EXPECT_EQ("", world.Tree("t"));
  EXPECT_EQ("/t:x pending", world.Deviations("d"));
  coupling::CheckLinks(world.ctx());
}

TEST(RemoveAugments, NullArgumentsAreRefusedWith22) {
  EXPECT_EQ(QM_INVALID, QMS_MOD_CoupleDevNotSup(nullptr, nullptr, "d", "/t:x"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(nullptr, "d", "/t:x"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(nullptr, "d", "/t:x"));
}

TEST(RemoveAugments, AModuleThatIsNotAugmentedHasNothingToRemove) {
  coupling::World world;
  world.Add("t", Container("x"));
  EXPECT_EQ(QM_OK,
            QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(world.Module("t"), "d", "/t:x"));
}

static void DeviateAway(bool refusing) {
  yin::Context ctx;
  if (ctx.Get() == nullptr) return;
  static_cast<void>(QM_CTX_LoadMemory(ctx, yin::Module("t", Container("x", Leaf("l"))).c_str()));
  static_cast<void>(QM_CTX_LoadMemory(
      ctx, yin::Module("a", Imports({"t"}) + Augment("/t:x", Container("y"))).c_str()));
  static_cast<void>(QM_CTX_LoadMemory(
      ctx, yin::Module("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z"))).c_str()));
  static_cast<void>(QM_CTX_LoadMemory(
      ctx, yin::Module("d", Imports({"t"}) + Deviation("/t:x/t:l", Deviate("add", Default("v"))) +
                                Deviation("/t:x", NotSupported()))
               .c_str()));
  coupling::CheckLinks(ctx);
  if (refusing) return;
  EXPECT_EQ("", coupling::Tree(QM_CTX_GetModuleByModName(ctx, "t")));
  EXPECT_EQ("", coupling::Augments(QM_CTX_GetModuleByModName(ctx, "b")));
}

TEST(NotSupported, SurvivesEveryRefusedAllocation) {
  EXPECT_GT(counting_memory::FailEachAllocation(DeviateAway), 100u);
}
