// SPDX-License-Identifier: BSD-3-Clause
#include "coupling/couple_augment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/dict.h"
#include "coupling/detach.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"

using coupling::Augment;
using coupling::Container;
using coupling::Imports;
using coupling::Leaf;
using testing::ElementsAre;
using testing::IsEmpty;

static const char kNacmImport[] =
    "<import module=\"ietf-netconf-acm\"><prefix value=\"nacm\"/></import>";
static const char kConfigFalse[] = "<config value=\"false\"/>";
static const char kConfigTrue[] = "<config value=\"true\"/>";

static uint32_t ConfigOf(const QmsNode* node) {
  return node->flags & (kQmsConfigMask | QMS_NODE_CONFIG_OWN);
}

TEST(CoupleAugmentNode, NullIsRefusedWith22) {
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNode(nullptr));
}

TEST(CoupleAugmentNode, ChildrenJoinTheTargetAsARunAtItsEnd) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("own")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2")));
  EXPECT_EQ("x{own y1:a y2:a}", world.Tree("t"));
  EXPECT_EQ("/t:x coupled{y1 y2}", world.Augments("a"));
  EXPECT_EQ("augment:a", world.Relations("t"));
  const QmsNode* augment = world.Module("a")->augmentNodes;
  EXPECT_EQ(world.Module("t")->dataNodes, augment->firstChild->parent);
  EXPECT_THAT(world.Errors(), IsEmpty());
}

TEST(CoupleAugmentNode, ACoupledAugmentIsLeftAsItIs) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ(QM_OK, QMS_NODE_CoupleAugmentNode(world.Module("a")->augmentNodes));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
}

TEST(CoupleAugmentNode, WithoutTargetItIsRefusedWith22AndStaysPending) {
  coupling::World world;
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNode(world.Module("a")->augmentNodes));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
}

TEST(CoupleAugmentNode, AnAugmentWithoutChildrenIsCoupledAndUncoupled) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", ""));
  EXPECT_EQ("/t:x coupled{}", world.Augments("a"));
  EXPECT_EQ(QM_OK, QMS_NODE_UnCoupleAugmentNode(world.Module("a")->augmentNodes));
  EXPECT_EQ("/t:x pending{}", world.Augments("a"));
}

TEST(CoupleAugmentNode, TwoModulesAugmentOneNodeInTheOrderOfLoading) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("b", Imports({"t"}) + Augment("/t:x", Leaf("z")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ("x{z:b y:a}", world.Tree("t"));
  EXPECT_EQ(QM_OK, world.Unload("b"));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
  EXPECT_EQ("augment:a", world.Relations("t"));
}

TEST(CoupleAugmentNode, LoadedBeforeItsTargetItIsCoupledByTheCoupleEvent) {
  coupling::World world;
  world.Add("b", Imports({"a"}) + Augment("/a:x", Leaf("y")));
  EXPECT_EQ("/a:x pending{y}", world.Augments("b"));
  EXPECT_EQ("augment:b", world.Relations("a"));
  world.Add("a", Container("x"));
  EXPECT_EQ("/a:x coupled{y}", world.Augments("b"));
  EXPECT_EQ("x{y:b}", world.Tree("a"));
  EXPECT_THAT(world.Errors(), IsEmpty());
}

TEST(CoupleAugmentNode, AnAugmentBelowAnAugmentIsCoupledInEveryOrderOfLoading) {
  const std::string t = Container("x");
  const std::string a = Imports({"t"}) + Augment("/t:x", Container("y"));
  const std::string b = Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z"));
  for (const std::string order : {"tab", "tba", "atb", "abt", "bta", "bat"}) {
    SCOPED_TRACE(order);
    coupling::World world;
    for (const char name : order)
      world.Add(std::string(1, name), name == 't' ? t : name == 'a' ? a : b);
    EXPECT_EQ("x{y:a{z:b}}", world.Tree("t"));
    EXPECT_EQ("augment:a", world.Relations("t"));
    EXPECT_EQ("augment:b", world.Relations("a"));
  }
}

TEST(CoupleAugmentNode, ANodeOfAPendingAugmentIsATarget) {
  coupling::World world;
  world.Add("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  EXPECT_EQ("/t:x/a:y coupled{z}", world.Augments("b"));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
  EXPECT_EQ("y{z:b}", coupling::Subtree(world.Module("a")->augmentNodes->firstChild));
}

TEST(CoupleAugmentNode, AChoiceAndACaseAreTargets) {
  coupling::World world;
  world.Add(
      "t", Container("x", "<choice name=\"c\"><case name=\"k\">" + Leaf("l") + "</case></choice>"));
  world.Add("a",
            Imports({"t"}) +
                Augment("/t:x/t:c", Leaf("short") + "<case name=\"m\">" + Leaf("n") + "</case>") +
                Augment("/t:x/t:c/t:k", Leaf("more")));
  EXPECT_EQ("x{c{k{l more:a} short:a m:a{n}}}", world.Tree("t"));
}

TEST(CoupleAugmentNode, ConfigFalseOfTheTargetIsCarriedDown) {
  coupling::World world;
  world.Add("t", Container("x", kConfigFalse));
  world.Add("a", Imports({"t"}) +
                     Augment("/t:x", Container("y", Leaf("deep") + Leaf("own", kConfigTrue))));
  const QmsNode* y = yin::Find(world.Module("t"), "x/y");
  ASSERT_NE(nullptr, y);
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_CONFIG_FALSE), ConfigOf(y));
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_CONFIG_FALSE), ConfigOf(y->firstChild));
  // A config true of its own is overruled and loses its mark.
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_CONFIG_FALSE), ConfigOf(y->lastChild));
}

TEST(CoupleAugmentNode, AccessControlMarksOfTheTargetAreCarriedDown) {
  coupling::World world;
  world.Add("ietf-netconf-acm", "<extension name=\"default-deny-all\"/>");
  const std::string text =
      yin::Module("t", std::string(kNacmImport) + Container("x", "<nacm:default-deny-all/>"),
                  "xmlns:nacm=\"urn:ietf-netconf-acm\"");
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(world.ctx(), text.c_str()));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y", Leaf("deep"))));
  const QmsNode* y = yin::Find(world.Module("t"), "x/y");
  ASSERT_NE(nullptr, y);
  EXPECT_EQ(1u, QM_NODE_IsNacmDefaultDenyAll(y));
  EXPECT_EQ(1u, QM_NODE_IsNacmDefaultDenyAll(y->firstChild));
}

TEST(CoupleAugmentNode, UncouplingRestoresNoFlags) {
  coupling::World world;
  world.Add("t", Container("x", kConfigFalse));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  ASSERT_EQ(QM_OK, world.Unload("t"));
  const QmsNode* y = world.Module("a")->augmentNodes->firstChild;
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_CONFIG_FALSE), ConfigOf(y));
}

TEST(CoupleAugmentNode, ConditionsReachTheChildren) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("flag")));
  world.Add(
      "a", Imports({"t"}) + "<feature name=\"f\"/>" +
               Augment("/t:x", "<when condition=\"t:flag\"/><if-feature name=\"f\"/>" + Leaf("y")));
  const QmsNode* y = yin::Find(world.Module("t"), "x/y");
  ASSERT_NE(nullptr, y);
  EXPECT_STREQ("../t:flag", y->when);
  ASSERT_EQ(1u, y->ifFeatureCount);
  EXPECT_STREQ("f", y->ifFeatures[0].feature);
}

TEST(CoupleAugmentNode, AnUndeclaredInputIsMadeAsFirstChildOfTheRpc) {
  coupling::World world;
  world.Add("m", "<rpc name=\"r\"><output>" + Leaf("o") + "</output></rpc>");
  world.Add("a", Imports({"m"}) + Augment("/m:r/m:input", Leaf("late")));
  // The parser writes "/m:r/input": a step of the same module needs no qualifier.
  EXPECT_EQ("/m:r/input coupled{late}", world.Augments("a"));
  EXPECT_EQ("r{input{late:a} output{o}}", world.Tree("m"));
  const QmsNode* input = world.Module("m")->rpcNodes->firstChild;
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_INPUT), input->kind);
  EXPECT_EQ(world.Module("m"), input->module);
  EXPECT_EQ(QM_DICT_Insert(&world.ctx()->dict, "input"), input->name) << "the name is interned";
  QM_DICT_Remove(&world.ctx()->dict, "input");
}

TEST(CoupleAugmentNode, AnUndeclaredOutputIsMadeAsLastChildOfTheAction) {
  coupling::World world;
  world.Add("m", Container("x", "<action name=\"act\"><input>" + Leaf("i") + "</input></action>"));
  world.Add("a", Imports({"m"}) + Augment("/m:x/m:act/m:output", Leaf("late")));
  EXPECT_EQ("x{act{input{i} output{late:a}}}", world.Tree("m"));
}

TEST(CoupleAugmentNode, AMadeInputStaysWhenTheAugmentGoes) {
  coupling::World world;
  world.Add("m", "<rpc name=\"r\"/>");
  world.Add("a", Imports({"m"}) + Augment("/m:r/m:input", Leaf("late")));
  ASSERT_EQ(QM_OK, world.Unload("a"));
  EXPECT_EQ("r{input}", world.Tree("m"));
  EXPECT_EQ(QM_OK, world.Load("a"));
  EXPECT_EQ("r{input{late:a}}", world.Tree("m"));
}

TEST(CoupleAugmentNode, AMadeInputTakesTheAccessControlMarksOfItsRpc) {
  coupling::World world;
  QmsModule* m = world.Add("m", "<rpc name=\"r\"/>");
  m->rpcNodes->flags |= QMS_NODE_DENY_ALL;
  world.Add("a", Imports({"m"}) + Augment("/m:r/m:input", Leaf("late")));
  EXPECT_EQ(1u, QM_NODE_IsNacmDefaultDenyAll(m->rpcNodes->firstChild));
}

TEST(CoupleAugmentNode, WithoutMemoryForTheLookupNoSecondInputIsMade) {
  coupling::World world;
  world.Add("m", "<rpc name=\"r\"><input>" + Leaf("i") + "</input></rpc>");
  QmsNode* augment =
      world.Add("a", Imports({"m"}) + Augment("/m:r/m:input", Leaf("late")))->augmentNodes;
  uint64_t refused = 1;
  for (uint64_t n = 1; refused != 0; ++n) {
    SCOPED_TRACE(n);
    ASSERT_EQ(QM_OK, QMS_NODE_UnCoupleAugmentNode(augment));
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    static_cast<void>(QMS_NODE_CoupleAugmentNode(augment));
    refused = counting_memory::StopRefusing();
    ASSERT_EQ(nullptr, world.Module("m")->rpcNodes->firstChild->next);
    ASSERT_EQ(QM_OK, QMS_NODE_CoupleAugmentNode(augment));
    ASSERT_EQ("r{input{i late:a}}", world.Tree("m"));
  }
}

TEST(ConstructInputOutputNode, IsMadeOnlyForABareStepBelowAnRpcOrAction) {
  coupling::World world;
  world.Add("m", "<rpc name=\"r\"/>" + Container("c"));
  const struct {
    const char* path;
    bool made;
  } rows[] = {{"/m:r/input", true},   {"/m:r/output", true}, {"/m:r/m:input", false},
              {"/m:r/inputs", false}, {"/m:c/input", false}, {"/m:none/input", false},
              {"/input", false},      {"input", false},      {"", false},
              {"/m:r/", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(row.made, QMS_NODE_UpdateTargetPathWithInputOutput(world.ctx(), row.path) != nullptr);
  }
  EXPECT_EQ("c r{input output}", world.Tree("m"));
  EXPECT_EQ(nullptr, QMS_NODE_UpdateTargetPathWithInputOutput(nullptr, "/m:r/input"));
  EXPECT_EQ(nullptr, QMS_NODE_UpdateTargetPathWithInputOutput(world.ctx(), nullptr));
}

TEST(ConstructInputOutputNode, TellsTheRpcAndTheKind) {
  coupling::World world;
  QmsModule* m = world.Add("m", "<rpc name=\"r\"/>");
  uint32_t kind = 0;
  EXPECT_EQ(m->rpcNodes,
            QMS_NODE_GetAugRpcParentNodeAndChildType(world.ctx(), "/m:r", "output", &kind));
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_OUTPUT), kind);
  EXPECT_EQ(nullptr, QMS_NODE_GetAugRpcParentNodeAndChildType(world.ctx(), "/m:r", "x", &kind));
}

TEST(SelfAugment, DisappearsAfterTheLoadAndItsChildrenStay) {
  coupling::World world;
  world.Add("m", Container("x", Leaf("l")) + Augment("/m:x", Leaf("y")));
  EXPECT_EQ("x{l y}", world.Tree("m"));
  EXPECT_EQ("", world.Augments("m"));
  EXPECT_EQ("", world.Relations("m"));
}

TEST(SelfAugment, CouplesBelowAnotherAugmentOfItsModule) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")) + Augment("/t:x/a:y", Leaf("w")));
  EXPECT_EQ("x{y:a{w}}", world.Tree("t"));
  EXPECT_EQ("/t:x coupled{y}", world.Augments("a"));
}

TEST(SelfAugment, WithoutTargetItsChildrenAreFreedWithIt) {
  coupling::World world;
  world.Add("m", Container("x") + Augment("/m:none", Container("lost", Leaf("deep"))));
  EXPECT_EQ("x", world.Tree("m"));
  EXPECT_EQ("", world.Augments("m"));
  EXPECT_THAT(world.Errors(), IsEmpty());
}

TEST(SelfAugment, WithoutMemoryForTheLookupItIsReportedAndItsChildrenAreKept) {
  const std::string text = yin::Module("m", Container("x") + Augment("/m:x", Leaf("y")));
  uint64_t refused = 1;
  for (uint64_t n = 1; refused != 0; ++n) {
    SCOPED_TRACE(n);
    yin::Context ctx;
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    const uint32_t ret = QM_CTX_LoadMemory(ctx, text.c_str());
    refused = counting_memory::StopRefusing();
    if (ret != QM_OK || ctx.Errors().empty()) {
      QmsModule* m = QM_CTX_GetModuleByModName(ctx, "m");
      EXPECT_EQ(ret == QM_OK ? "x{y}" : "", m == nullptr ? "" : coupling::Tree(m));
      continue;
    }
    EXPECT_THAT(ctx.Errors(), testing::ElementsAre("m -: Failed to couple augment statements."));
    QmsModule* m = QM_CTX_GetModuleByModName(ctx, "m");
    EXPECT_EQ("/m:x pending{y}", coupling::Augments(m));
    EXPECT_EQ(QM_OK, QMS_LOADER_CoupleAugmentAndGenRelation(ctx, m));
    EXPECT_EQ("x{y}", coupling::Tree(m));
    EXPECT_EQ("", coupling::Augments(m));
  }
}

TEST(SelfAugment, TheOnesAroundItStay) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("m", Imports({"t"}) + Container("c") + Augment("/t:x", Leaf("a1")) +
                     Augment("/m:c", Leaf("self")) + Augment("/t:x", Leaf("a2")));
  EXPECT_EQ("/t:x coupled{a1}; /t:x coupled{a2}", world.Augments("m"));
  EXPECT_EQ("c{self}", world.Tree("m"));
}

TEST(CoupleSelfAugmentNode, MovesAugmentsOfTheModuleAndLeavesTheOthers) {
  yin::Context ctx;
  yin::Parsed m(
      ctx, yin::Module("m", Imports({"t"}) + Container("c") + Augment("/m:c", Leaf("self")) +
                                Augment("/t:x", Leaf("other")) + Augment("/m:none", Leaf("no"))));
  ASSERT_TRUE(m);
  EXPECT_EQ(QM_OK, QMS_LOADER_CoupleSelfAugmentNode(ctx, m.Get()));
  EXPECT_EQ("c{self}", coupling::Tree(m.Get()));
  EXPECT_EQ("/t:x pending{other}; /m:none pending{no}", coupling::Augments(m.Get()));
}

TEST(CoupleSelfAugmentNode, APathThatCannotBeSplitGives22) {
  yin::Context ctx;
  yin::Parsed m(ctx, yin::Module("m", Container("c") + Augment("/m:c", Leaf("self"))));
  ASSERT_TRUE(m);
  ASSERT_TRUE(InternText(&ctx.Get()->dict, &m.Get()->augmentNodes->name, "nowhere"));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleSelfAugmentNode(ctx, m.Get()));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleSelfAugmentNode(ctx, nullptr));
}

TEST(CoupleAugmentAndGenRelation, APathThatCannotBeSplitGives22) {
  yin::Context ctx;
  yin::Parsed m(ctx, yin::Module("m", Container("c") + Augment("/m:c", Leaf("self"))));
  ASSERT_TRUE(m);
  ASSERT_TRUE(InternText(&ctx.Get()->dict, &m.Get()->augmentNodes->name, "/c"));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CoupleAugmentAndGenRelation(ctx, m.Get()));
}

TEST(CoupleAugmentAndGenRelation, TheRelationNamesTheModuleOfTheLastQualifiedStep) {
  coupling::World world;
  world.Add("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z")));
  EXPECT_EQ("augment:b", world.Relations("a"));
  EXPECT_EQ("", world.Relations("t"));
}

TEST(UnCoupleAugmentNode, MovesTheRunBackUnderTheAugment) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("own")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2") + Leaf("y3")));
  world.Add("b", Imports({"t"}) + Augment("/t:x", Leaf("z")));
  QmsNode* augment = world.Module("a")->augmentNodes;
  EXPECT_EQ(QM_OK, QMS_NODE_UnCoupleAugmentNode(augment));
  EXPECT_EQ("x{own z:b}", world.Tree("t"));
  EXPECT_EQ("/t:x pending{y1 y2 y3}", world.Augments("a"));
  EXPECT_EQ(augment, augment->firstChild->parent);
}

TEST(UnCoupleAugmentNode, OnePendingOrWithoutTargetIsRefusedWith22) {
  coupling::World world;
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNode(nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNode(world.Module("a")->augmentNodes));
  world.Add("t", Container("x"));
  QmsNode* augment = world.Module("a")->augmentNodes;
  ASSERT_TRUE(IsCoupledAugment(augment));
  // A name that leads nowhere: the run stays where it is, and can still be found.
  ASSERT_TRUE(InternText(&world.ctx()->dict, &augment->name, "/t:gone"));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNode(augment));
  EXPECT_EQ("x{y:a}", world.Tree("t"));
}

TEST(UnCoupleAugmentNodeAndTargetNode, ARunInAnotherListIsRefusedAndKept) {
  coupling::World world;
  world.Add("t", Container("x") + Container("other"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  QmsNode* augment = world.Module("a")->augmentNodes;
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNodeAndTargetNode(
                            augment, yin::Find(world.Module("t"), "other")));
  EXPECT_EQ("/t:x coupled{y}", world.Augments("a"));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNodeAndTargetNode(nullptr, augment));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNodeAndTargetNode(augment, nullptr));
}

TEST(UnCoupleAugmentNodeAndTargetNode, NoFirstChildSucceedsOnlyWithoutLastChild) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("l")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", ""));
  QmsNode* augment = world.Module("a")->augmentNodes;
  QmsNode* target = world.Module("t")->dataNodes;
  EXPECT_EQ(QM_OK, QMS_NODE_UnCoupleAugmentNodeAndTargetNode(augment, target));
  augment->lastChild = target->firstChild;
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNodeAndTargetNode(augment, target));
  augment->lastChild = nullptr;
}

TEST(UnCoupleAugmentNodeAndTargetNode, AChainThatEndsTooEarlyGives22AndLosesNothing) {
  coupling::World world;
  world.Add("t", Container("x", Leaf("l")));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2")));
  QmsNode* augment = world.Module("a")->augmentNodes;
  QmsNode* target = world.Module("t")->dataNodes;
  augment->lastChild = target->firstChild;  // stands before the run
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNodeAndTargetNode(augment, target));
  EXPECT_EQ("x{l}", world.Tree("t"));
  EXPECT_STREQ("y1", augment->firstChild->name);
  EXPECT_STREQ("y2", augment->lastChild->name);
  // The end of the module finds them under their augment.
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_EQ("x{l}", world.Tree("t"));
}

TEST(CoupleAugmentNodeAndTargetNode, NullAndATargetBelowTheAugmentAreRefusedWith22) {
  coupling::World world;
  world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y")));
  QmsNode* augment = world.Module("a")->augmentNodes;
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNodeAndTargetNode(nullptr, augment));
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNodeAndTargetNode(augment, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNodeAndTargetNode(augment, augment->firstChild));
  EXPECT_EQ("/t:x pending{y}", world.Augments("a"));
}

TEST(RemoveCoupledAugmentNodeChildLink, MovesTheEndsOfTheRun) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2") + Leaf("y3")));
  QmsNode* augment = world.Module("a")->augmentNodes;
  QmsNode* y1 = augment->firstChild;
  QmsNode* y2 = y1->next;
  QmsNode* y3 = y2->next;
  QMS_NODE_RemoveCoupledAugmentNodeChildLink(augment, y2);
  EXPECT_EQ("/t:x coupled{y1 y2 y3}", world.Augments("a"));
  QMS_NODE_RemoveCoupledAugmentNodeChildLink(augment, y1);
  EXPECT_EQ("/t:x coupled{y2 y3}", world.Augments("a"));
  QMS_NODE_RemoveCoupledAugmentNodeChildLink(augment, y3);
  EXPECT_EQ("/t:x coupled{y2}", world.Augments("a"));
  QMS_NODE_RemoveCoupledAugmentNodeChildLink(augment, y2);
  EXPECT_EQ("/t:x coupled{}", world.Augments("a"));
  augment->firstChild = y1;
  augment->lastChild = y3;
  NoteRun(y1->parent);
}

static std::vector<std::string>* g_relinked = nullptr;

static void NoteRelink(QmCtx* ctx, QmsNode* node) {
  EXPECT_EQ(ctx, node->module->ctx);
  g_relinked->push_back(std::string(node->name) + " in " + node->parent->name);
}

TEST(RelinkHook, RunsAfterAttachingAndBeforeDetaching) {
  std::vector<std::string> relinked;
  g_relinked = &relinked;
  coupling::World world;
  QM_CTX_SetFirstAugChildRelinkFunc(world.ctx(), NoteRelink);
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y1") + Leaf("y2")) + Augment("/t:x", ""));
  EXPECT_THAT(relinked, ElementsAre("y1 in x"));
  relinked.clear();
  EXPECT_EQ(QM_OK, world.Unload("a"));
  EXPECT_THAT(relinked, ElementsAre("y1 in x"));
  QM_CTX_SetFirstAugChildRelinkFunc(world.ctx(), nullptr);
  EXPECT_EQ(QM_OK, world.Load("a"));
  EXPECT_EQ(1u, relinked.size());
  QMS_NODE_NotifyAugmentFirstChildNodeRelink(nullptr);
}

static void CoupleIntoUndeclaredInput(bool refusing) {
  yin::Context ctx;
  if (ctx.Get() == nullptr) return;
  const uint32_t first =
      QM_CTX_LoadMemory(ctx, yin::Module("m", "<rpc name=\"r\"/>" + Container("c")).c_str());
  const uint32_t second =
      QM_CTX_LoadMemory(ctx, yin::Module("a", Imports({"m"}) + Augment("/m:r/m:input", Leaf("l")) +
                                                  Augment("/m:c", Leaf("k")) + Container("s") +
                                                  Augment("/a:s", Leaf("z")))
                                 .c_str());
  coupling::CheckLinks(ctx);
  if (refusing) return;
  EXPECT_EQ(0u, first);
  EXPECT_EQ(0u, second);
  EXPECT_EQ("c{k:a} r{input{l:a}}", coupling::Tree(QM_CTX_GetModuleByModName(ctx, "m")));
}

TEST(CoupleAugmentNode, SurvivesEveryRefusedAllocation) {
  EXPECT_GT(counting_memory::FailEachAllocation(CoupleIntoUndeclaredInput), 50u);
}
