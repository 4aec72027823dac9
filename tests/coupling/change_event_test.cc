// SPDX-License-Identifier: BSD-3-Clause
#include "coupling/change_event.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/dict.h"
#include "context/relation.h"
#include "loader/import_load.h"
#include "loader/pending.h"
#include "tests/support/coupling.h"

using coupling::Augment;
using coupling::Container;
using coupling::Deviate;
using coupling::Deviation;
using coupling::Imports;
using coupling::Leaf;
using coupling::NotSupported;

static std::string Default(const std::string& value) {
  return "<default value=\"" + value + "\"/>";
}

TEST(GetCoupleEvtProcFunc, GivesTheHandlerOfEachRelationAndEvent) {
  EXPECT_EQ(&QMS_MOD_CoupleAugmentFromDepMods, QMS_MOD_GetCoupleEvtProcFunc(0, 0));
  EXPECT_EQ(&QMS_MOD_UnCoupleAugmentFromDepMods, QMS_MOD_GetCoupleEvtProcFunc(0, 1));
  EXPECT_EQ(&QMS_MOD_CoupleDeviationFromDepMods, QMS_MOD_GetCoupleEvtProcFunc(1, 0));
  EXPECT_EQ(&QMS_MOD_UnCoupleDeviationFromDepMods, QMS_MOD_GetCoupleEvtProcFunc(1, 1));
}

TEST(GetCoupleEvtProcFunc, OtherNumbersHaveNoHandler) {
  EXPECT_EQ(nullptr, QMS_MOD_GetCoupleEvtProcFunc(2, 0));
  EXPECT_EQ(nullptr, QMS_MOD_GetCoupleEvtProcFunc(0, 2));
  EXPECT_EQ(nullptr, QMS_MOD_GetCoupleEvtProcFunc(1, 0xFFFFFFFFu));
  EXPECT_EQ(nullptr, QMS_MOD_GetCoupleEvtProcFunc(0xFFFFFFFFu, 1));
}

TEST(ChangeEventHandlers, AMissingDependentModuleGives1) {
  coupling::World world;
  for (const uint32_t kind : {0u, 1u})
    for (const uint32_t event : {0u, 1u})
      EXPECT_EQ(QM_FAILED, QMS_MOD_GetCoupleEvtProcFunc(kind, event)(world.ctx(), "t", "none", 0));
}

TEST(NotifyModuleChangeEvent, WithoutRelationsItGives0) {
  coupling::World world;
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", 0, 0));
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), nullptr, 0, 0));
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(nullptr, "t", 0, 0));
}

TEST(NotifyModuleChangeEvent, AnUnknownEventOrADependentThatIsGoneChangesNothing) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  const char* ghost = QM_DICT_Insert(&world.ctx()->dict, "ghost");
  ASSERT_EQ(QM_OK, QM_CTX_AddTwoModRelation(world.ctx(), "t", ghost, QM_RELATION_AUGMENT));
  ASSERT_EQ(QM_OK, QM_CTX_AddTwoModRelation(world.ctx(), "t", ghost, 7));
  QM_DICT_Remove(&world.ctx()->dict, "ghost");
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", 2, 0));
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", 0, 0));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
}

TEST(NotifyModuleChangeEvent, UncoupleTakesOutOnlyAugmentsOfTheChangedModule) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("u", Container("w"));
  world.Add("a", Imports({"t", "u"}) + Augment("/t:x", Leaf("y")) + Augment("/u:w", Leaf("v")));
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", QMS_EVENT_UNCOUPLE, 0));
  EXPECT_EQ("/t:x pending{y}; /u:w coupled{v}", world.Augments("a"));
  EXPECT_EQ("augment:a", world.Relations("t")) << "the relation brings it back";
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", QMS_EVENT_COUPLE, 0));
  EXPECT_EQ("/t:x coupled{y}; /u:w coupled{v}", world.Augments("a"));
}

TEST(NotifyModuleChangeEvent, UncoupleOnlyMarksDeviationsOfTheChangedModule) {
  coupling::World world;
  world.Add("t", Leaf("l"));
  world.Add("u", Leaf("k"));
  world.Add("d", Imports({"t", "u"}) + Deviation("/t:l", Deviate("add", Default("v"))) +
                     Deviation("/u:k", Deviate("add", Default("w"))));
  EXPECT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", QMS_EVENT_UNCOUPLE, 0));
  EXPECT_EQ("/t:l pending; /u:k applied", world.Deviations("d"));
  const auto* leaf = static_cast<const QmsLeaf*>(world.Module("t")->dataNodes->payload);
  EXPECT_STREQ("v", leaf->defaultValue) << "its effect is not undone";
}

TEST(NotifyModuleChangeEvent, TheRelationRecordedLastIsVisitedFirst) {
  // The deviation was recorded after the augment that brings its target, so at
  // the event it is tried before it, and waits for the next one.
  coupling::World world;
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  world.Add("d", Imports({"t"}) + Deviation("/t:x/y", Deviate("add", Default("v"))));
  ASSERT_EQ("deviation:d augment:a", world.Relations("t"));
  world.Add("t", Container("x"));
  EXPECT_EQ("/t:x coupled{y}", world.Augments("a"));
  EXPECT_EQ("/t:x/y pending", world.Deviations("d"));
  EXPECT_EQ(QM_OK, world.Load("t"));
  EXPECT_EQ("/t:x/y applied", world.Deviations("d"));
}

TEST(NotifyModuleChangeEvent, AHandlerMayRemoveWhatOthersHaveCoupledAndALaterOneNeeds) {
  // Three modules wait for t and are visited in the order e, d, c.
  coupling::World world;
  world.Add("c", Imports({"t"}) + Augment("/t:x/t:y", Leaf("z")));
  world.Add("d",
            Imports({"t"}) + Deviation("/t:w", NotSupported()) + Deviation("/t:x", NotSupported()));
  world.Add("e", Imports({"t"}) + Augment("/t:x", Leaf("v")));
  world.Add("t", Container("x", Container("y")) + Leaf("w"));
  EXPECT_EQ("", world.Tree("t"));
  EXPECT_EQ("/t:w applied; /t:x applied", world.Deviations("d"));
  EXPECT_EQ("augment:e deviation:d augment:c", world.Relations("t"));
  EXPECT_EQ("", world.Augments("e")) << "coupled before, removed with its target";
  EXPECT_EQ("/t:x/y pending{z}", world.Augments("c")) << "visited last, its target was gone";
}

TEST(CoupleModRemainNodesToTgt, NullIsRefusedWith22) {
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleModRemainNodesToTgt(nullptr));
}

TEST(CoupleModRemainNodesToTgt, CouplesWhatWaitsAndIgnoresFailures) {
  coupling::World world;
  world.Add("t", Container("x") + Leaf("l"));
  QmsModule* m =
      world.Add("m", Imports({"t", "u"}) + Augment("/u:none", Leaf("no")) +
                         Augment("/t:x", Leaf("y")) + Deviation("/u:none", NotSupported()) +
                         Deviation("/t:l", Deviate("replace", "<mandatory value=\"true\"/>")));
  ASSERT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world.ctx(), "t", QMS_EVENT_UNCOUPLE, 0));
  ASSERT_EQ("/u:none pending{no}; /t:x pending{y}", world.Augments("m"));
  ASSERT_EQ("/u:none pending; /t:l pending", world.Deviations("m"));
  EXPECT_EQ(QM_OK, QMS_LOADER_CoupleModRemainNodesToTgt(m));
  EXPECT_EQ("/u:none pending{no}; /t:x coupled{y}", world.Augments("m"));
  EXPECT_EQ("/u:none pending; /t:l applied", world.Deviations("m"));
}

namespace {

class CoupleModPendTbl : public testing::Test {
 protected:
  CoupleModPendTbl() { QMS_LOADER_InitModPendTbl(&tbl_); }
  ~CoupleModPendTbl() override { QMS_LOADER_DeInitModPendTbl(&tbl_); }

  coupling::World world_;
  QmsModPendTbl tbl_;
};

}  // namespace

TEST_F(CoupleModPendTbl, AModuleThatIsNotLoadedGives22) {
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleModPendTblAndCurMod(world_.ctx(), "none", &tbl_));
}

TEST_F(CoupleModPendTbl, CouplesTheModuleThePendingOnesAndWhoWaitsForTheModule) {
  world_.Add("t", Container("x"));
  world_.Add("p", Imports({"t"}) + Augment("/t:x", Leaf("of-pending")));
  world_.Add("m", Imports({"t"}) + Container("c") + Augment("/t:x", Leaf("of-module")));
  world_.Add("w", Imports({"m"}) + Augment("/m:c", Leaf("of-waiting")));
  ASSERT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world_.ctx(), "t", QMS_EVENT_UNCOUPLE, 0));
  ASSERT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world_.ctx(), "m", QMS_EVENT_UNCOUPLE, 0));
  ASSERT_NE(nullptr, QMS_LOADER_AddModPendNode(&tbl_, "gone"));
  ASSERT_NE(nullptr, QMS_LOADER_AddModPendNode(&tbl_, "p"));
  EXPECT_EQ(QM_OK, QMS_LOADER_CoupleModPendTblAndCurMod(world_.ctx(), "m", &tbl_));
  EXPECT_EQ("x{of-module:m of-pending:p}", world_.Tree("t"));
  EXPECT_EQ("c{of-waiting:w}", world_.Tree("m"));
}

TEST_F(CoupleModPendTbl, NoEventIsRaisedForThePendingModules) {
  world_.Add("m", Container("c"));
  world_.Add("p", Container("e"));
  world_.Add("w", Imports({"p"}) + Augment("/p:e", Leaf("l")));
  ASSERT_EQ(QM_OK, QMS_MOD_NotifyModuleChangeEvent(world_.ctx(), "p", QMS_EVENT_UNCOUPLE, 0));
  ASSERT_NE(nullptr, QMS_LOADER_AddModPendNode(&tbl_, "p"));
  EXPECT_EQ(QM_OK, QMS_LOADER_CoupleModPendTblAndCurMod(world_.ctx(), "m", &tbl_));
  EXPECT_EQ("/p:e pending{l}", world_.Augments("w"));
}
