// SPDX-License-Identifier: BSD-3-Clause
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "schema/deviate_add.h"
#include "tests/support/counting_memory.h"
#include "tests/support/deviation_case.h"

using deviation_case::Add;
using deviation_case::Case;
using deviation_case::Choice;
using deviation_case::Config;
using deviation_case::Container;
using deviation_case::Default;
using deviation_case::Describe;
using deviation_case::Leaf;
using deviation_case::LeafList;
using deviation_case::Mandatory;
using deviation_case::Must;
using deviation_case::Units;
using testing::ElementsAre;
using testing::IsEmpty;

static std::string Added(const std::string& target, const std::string& properties) {
  return deviation_case::Applied(target, Add(properties));
}

static std::vector<std::string> Refused(const std::string& target, const std::string& properties) {
  return deviation_case::Refused(target, Add(properties));
}

TEST(DeviateAdd, EachPropertyIsAdded) {
  EXPECT_EQ("leaf n config:false!", Added(Leaf(), Config(false)));
  EXPECT_EQ("leaf n config:true!", Added(Leaf(), Config(true)));
  EXPECT_EQ("leaf n mandatory:true", Added(Leaf(), Mandatory(true)));
  EXPECT_EQ("leaf n mandatory:false", Added(Leaf(), Mandatory(false)));
  EXPECT_EQ("leaf n default:v", Added(Leaf(), Default("v")));
  EXPECT_EQ("leaf-list n default:v", Added(LeafList(), Default("v")));
  EXPECT_EQ("choice n default:b", Added(Choice(), Default("b")));
  EXPECT_EQ("leaf n units:kg", Added(Leaf(), Units("kg")));
  EXPECT_EQ("leaf-list n units:kg", Added(LeafList(), Units("kg")));
  EXPECT_EQ("container n musts:a", Added(Container(), Must("a")));
  EXPECT_EQ("container n ext:ext:e1(v)", Added(Container(), "<ext:e1 v='v'/>"));
}

TEST(DeviateAdd, AllPropertiesTogether) {
  EXPECT_EQ("leaf n config:true! mandatory:false default:v units:kg musts:a ext:ext:e2",
            Added(Leaf(), "<ext:e2/>" + Units("kg") + Must("a") + Default("v") + Mandatory(false) +
                              Config(true)));
}

TEST(DeviateAdd, WhatItDoesNotCarryStaysAsItIs) {
  EXPECT_EQ("leaf n config:false! mandatory:true default:v units:kg musts:a ext:ext:e1",
            Added(Leaf(Config(false) + Mandatory(true) + Default("v") + Units("kg") + Must("a") +
                       "<ext:e1/>"),
                  ""));
}

TEST(DeviateAddConfig, ConfigThatCameFromTheParentIsReplacedAndPushedDown) {
  const Case deviation(
      Container(Leaf() + "<container name='c'>" + Leaf(Config(true)) + "</container>"),
      Add(Config(false)));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("container n config:false!", deviation.Node());
  const QmsNode* leaf = deviation.Target()->firstChild;
  EXPECT_EQ("leaf n config:false", Describe(leaf));
  EXPECT_EQ("container c config:false", Describe(leaf->next));
  // A config true of its own is overruled and forgotten.
  EXPECT_EQ("leaf n config:false", Describe(leaf->next->firstChild));
}

TEST(DeviateAddConfig, ANodeWithAConfigStatementIsRefused) {
  for (const bool value : {true, false})
    EXPECT_THAT(
        Refused(Leaf(Config(value)), Config(false)),
        ElementsAre("Failed to add config to node \"n\", because it had been set config statement.",
                    "Failed to add config or mandatory to node \"n\"."));
}

TEST(DeviateAddConfig, AfterARefusedConfigNothingElseIsAdded) {
  EXPECT_THAT(
      Refused(Leaf(Config(true)), Config(true) + Mandatory(true) + Default("v")),
      ElementsAre("Failed to add config to node \"n\", because it had been set config statement.",
                  "Failed to add config or mandatory to node \"n\"."));
}

TEST(DeviateAddMandatory, ANodeWithAnyMandatoryStatementIsRefused) {
  for (const bool own : {true, false})
    for (const bool added : {true, false})
      EXPECT_THAT(Refused(Leaf(Mandatory(own)), Mandatory(added)),
                  ElementsAre("Failed to add mandatory flag to node \"n\".",
                              "Failed to add config or mandatory to node \"n\"."));
}

TEST(DeviateAddMandatory, ConfigAddedBeforeARefusedMandatoryStays) {
  const Case deviation(Leaf(Mandatory(true)), Add(Config(false) + Mandatory(true)));
  EXPECT_FALSE(deviation.IsApplied());
  EXPECT_EQ("leaf n config:false! mandatory:true", deviation.Node());
}

TEST(DeviateAddDefault, TwoForAChoiceAreReportedAndIgnored) {
  const Case deviation(Choice(), Add(Default("a") + Default("b") + Mandatory(true)));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to add default to choice node \"n\", because the number of "
                          "default to be added > 1."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("choice n mandatory:true", deviation.Node());
}

TEST(DeviateAddDefault, TwoForALeafAreReportedAndIgnored) {
  const Case deviation(Leaf(), Add(Default("a") + Default("b") + Units("kg")));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to add default to leaf node \"n\",  because the number of "
                          "default to be added > 1."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("leaf n units:kg", deviation.Node());
}

TEST(DeviateAddDefault, AChoiceWithADefaultIsRefused) {
  EXPECT_THAT(
      Refused(Choice(Default("a")), Default("b")),
      ElementsAre(
          "Failed to add default to choice node \"n\", because it had been set default statement.",
          "Failed to add default statements to node \"n\"."));
}

TEST(DeviateAddDefault, ALeafWithADefaultIsRefused) {
  EXPECT_THAT(
      Refused(Leaf(Default("a")), Default("b")),
      ElementsAre(
          "Failed to add default to leaf node \"n\", because it had been set default statement.",
          "Failed to add default statements to node \"n\"."));
}

TEST(DeviateAddDefault, ThoseOfALeafListAreAppendedInOrder) {
  EXPECT_EQ("leaf-list n default:b,a,d,c",
            Added(LeafList(Default("b") + Default("a")), Default("d") + Default("c")));
}

TEST(DeviateAddDefault, AValueThatALeafListHasIsRefused) {
  EXPECT_THAT(Refused(LeafList(Default("a") + Default("b")), Default("c") + Default("b")),
              ElementsAre("Failed to add default to node \"n\", because this value already exists.",
                          "Failed to add default statements to node \"n\"."));
}

TEST(DeviateAddDefault, OtherKindsOfNodesAreRefusedWithTheGeneralMessage) {
  EXPECT_THAT(Refused(Container(), Default("a")),
              ElementsAre("Failed to add default statements to node \"n\"."));
}

TEST(DeviateAddMust, MustsAreAppendedInOrderWithoutLookingForTheSame) {
  EXPECT_EQ("leaf n musts:a,b,a", Added(Leaf(Must("a")), Must("b") + Must("a")));
}

TEST(DeviateAddMust, TheErrorTextsComeAlong) {
  const Case deviation(Container(),
                       Add("<must condition='a'><error-message><value>bad</value></error-message>"
                           "<error-app-tag value='tag'/></must>"));
  ASSERT_EQ(1u, deviation.Target()->mustCount);
  EXPECT_STREQ("bad", deviation.Target()->musts[0].errorMessage);
  EXPECT_STREQ("tag", deviation.Target()->musts[0].errorAppTag);
}

TEST(DeviateAddUnits, ANodeWithUnitsIsRefused) {
  for (const std::string& target : {Leaf(Units("m")), LeafList(Units("m"))})
    EXPECT_THAT(Refused(target, Units("kg")),
                ElementsAre("Failed to add units to node \"n\", because it already has units.",
                            "Failed to add units statement to node \"n\"."));
}

TEST(DeviateAddUnits, OtherKindsOfNodesAreRefusedWithTheGeneralMessage) {
  EXPECT_THAT(Refused(Container(), Units("kg")),
              ElementsAre("Failed to add units statement to node \"n\"."));
}

static std::vector<std::string>* g_told = nullptr;

static uint32_t NoteChange(QmCtx* ctx, QmsNode* node) {
  EXPECT_EQ(ctx, node->module->ctx);
  g_told->push_back(Describe(node));
  return 99;
}

TEST(DeviateAddExtInst, OnlyThoseThatTheNodeLacksAreAddedAndTheClientIsToldOnceBefore) {
  std::vector<std::string> told;
  g_told = &told;
  Case deviation(Container("<ext:e1 v='1'/>"), "");
  QM_CTX_SetBeforeDeviateExtInstFunc(deviation.ctx(), NoteChange);
  const std::string d2 = yin::Module(
      "d2",
      "<import module='t'><prefix value='t'/></import><import module='ext'><prefix value='ext'/>"
      "</import><deviation target-node='/t:n'>" +
          Add("<ext:e1 v='1'/><ext:e2 v='2'/><ext:e1 v='3'/>") + "</deviation>",
      "xmlns:ext='urn:ext'");
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(deviation.ctx(), d2.c_str()));
  EXPECT_EQ("container n ext:ext:e1(1),ext:e2(2),ext:e1(3)", deviation.Node());
  EXPECT_THAT(told, ElementsAre("container n ext:ext:e1(1)"));
}

TEST(DeviateAddExtInst, WithoutAChangeTheClientIsNotTold) {
  std::vector<std::string> told;
  g_told = &told;
  Case deviation(Container("<ext:e1/>"), "");
  QM_CTX_SetBeforeDeviateExtInstFunc(deviation.ctx(), NoteChange);
  QmsDeviate deviate{};
  deviate.extInsts = deviation.Target()->extInsts;
  deviate.extInstCount = 1;
  EXPECT_EQ(QM_OK,
            QMS_MOD_CoupleDevAddExtInsts(deviation.Deviating(), deviation.Target(), &deviate));
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ("container n ext:ext:e1", deviation.Node());
}

TEST(DeviateAddExtInst, NestedInstancesComeAlong) {
  const Case deviation(Container(), Add("<ext:e1><ext:e2 v='deep'/></ext:e1>"));
  ASSERT_EQ(1u, deviation.Target()->extInstCount);
  ASSERT_EQ(1u, deviation.Target()->extInsts[0].childCount);
  EXPECT_STREQ("deep", deviation.Target()->extInsts[0].children[0].argument);
}

TEST(DeviateAddExtInst, AccessControlMarksTheNodeAndItsSubtree) {
  const struct {
    const char* name;
    const char* mark;
  } rows[] = {{"default-deny-all", "all"}, {"default-deny-write", "write"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Case deviation(Container(Leaf()), Add(std::string("<nacm:") + row.name + "/>"));
    EXPECT_EQ(std::string("container n ext:ietf-netconf-acm:") + row.name + " nacm:" + row.mark,
              deviation.Node());
    EXPECT_EQ(std::string("leaf n nacm:") + row.mark, Describe(deviation.Target()->firstChild));
  }
}

TEST(DeviateAddMemory, ARefusedAllocationIsReportedByTheStep) {
  const struct {
    std::string target;
    std::string property;
    const char* message;
  } rows[] = {
      {Choice(), Default("zz"), "Failed to add default statements to node \"n\"."},
      {Leaf(), Default("zz"), "Failed to add default statements to node \"n\"."},
      {LeafList(), Default("zz"), "Failed to add default statements to node \"n\"."},
      {Container(), Must("zz"), "Failed to add must statements to node \"n\"."},
      {Container(), "<ext:e1/>", "Failed to deviate-add extension-instance to node \"n\"."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.message);
    Case empty(row.target, "");
    const Case source(row.target, Add(row.property));
    const std::string before = empty.Node();
    // The texts are new in the dictionary of the first context, so all is allocated.
    QmsDeviate* deviate = source.Deviation()->deviates;
    counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
    EXPECT_NE(QM_OK, QMS_MOD_CoupleDevAdd(empty.Deviating(), empty.Target(), deviate));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(before, empty.Node());
    EXPECT_THAT(empty.Messages(), ElementsAre(row.message));
  }
}
