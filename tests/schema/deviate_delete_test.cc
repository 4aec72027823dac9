// SPDX-License-Identifier: BSD-3-Clause
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "schema/deviate_delete.h"
#include "tests/support/counting_memory.h"
#include "tests/support/deviation_case.h"

using deviation_case::Case;
using deviation_case::Choice;
using deviation_case::Config;
using deviation_case::Container;
using deviation_case::Default;
using deviation_case::Delete;
using deviation_case::Describe;
using deviation_case::Leaf;
using deviation_case::LeafList;
using deviation_case::Mandatory;
using deviation_case::Must;
using deviation_case::Units;
using testing::ElementsAre;

static std::string Deleted(const std::string& target, const std::string& properties) {
  return deviation_case::Applied(target, Delete(properties));
}

static std::vector<std::string> Refused(const std::string& target, const std::string& properties) {
  return deviation_case::Refused(target, Delete(properties));
}

TEST(DeviateDelete, EachPropertyIsDeleted) {
  EXPECT_EQ("leaf n", Deleted(Leaf(Default("v")), Default("v")));
  EXPECT_EQ("leaf-list n", Deleted(LeafList(Default("v")), Default("v")));
  EXPECT_EQ("choice n", Deleted(Choice(Default("a")), Default("a")));
  EXPECT_EQ("leaf n", Deleted(Leaf(Units("kg")), Units("kg")));
  EXPECT_EQ("leaf-list n", Deleted(LeafList(Units("kg")), Units("kg")));
  EXPECT_EQ("container n", Deleted(Container(Must("a")), Must("a")));
  EXPECT_EQ("container n", Deleted(Container("<ext:e1 v='1'/>"), "<ext:e1 v='1'/>"));
}

TEST(DeviateDelete, ConfigAndMandatoryAreNotHandled) {
  EXPECT_EQ("leaf n config:true! mandatory:true default:v",
            Deleted(Leaf(Config(true) + Mandatory(true) + Default("v") + Units("kg")),
                    Units("kg") + Config(true) + Mandatory(true)));
}

TEST(DeviateDeleteDefault, TwoOfAChoiceAreReportedAndIgnored) {
  const Case deviation(Choice(Default("a")), Delete(Default("a") + Default("b")));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to delete default from choice node \"n\", because default "
                          "number > 1."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("choice n default:a", deviation.Node());
}

TEST(DeviateDeleteDefault, TwoOfALeafAreReportedAndIgnored) {
  const Case deviation(Leaf(Default("a") + Units("kg")),
                       Delete(Default("a") + Default("b") + Units("kg")));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to delete default from leaf node \"n\", because the number of "
                          "defaults to be deleted > 1."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("leaf n default:a", deviation.Node());
}

TEST(DeviateDeleteDefault, WithoutADefaultItIsRefused) {
  EXPECT_THAT(Refused(Choice(), Default("a")),
              ElementsAre("Failed to delete default from choice node \"n\" without default value.",
                          "Failed to delete default from node \"n\"."));
  EXPECT_THAT(Refused(Leaf(), Default("a")),
              ElementsAre("Failed to delete default from leaf node \"n\" without default value.",
                          "Failed to delete default from node \"n\"."));
  EXPECT_THAT(Refused(LeafList(), Default("a")),
              ElementsAre("Failed to find default value to be deleted in leaf-list node \"n\".",
                          "Failed to delete default from node \"n\"."));
}

TEST(DeviateDeleteDefault, ADifferentDefaultIsRefused) {
  EXPECT_THAT(Refused(Choice(Default("a")), Default("b")),
              ElementsAre("Failed to find default value to be deleted in choice node \"n\".",
                          "Failed to delete default from node \"n\"."));
  EXPECT_THAT(Refused(Leaf(Default("a")), Default("b")),
              ElementsAre("Failed to find default value to be deleted in leaf node \"n\".",
                          "Failed to delete default from node \"n\"."));
  EXPECT_THAT(Refused(LeafList(Default("a") + Default("c")), Default("b")),
              ElementsAre("Failed to find default value to be deleted in leaf-list node \"n\".",
                          "Failed to delete default from node \"n\"."));
}

TEST(DeviateDeleteDefault, EveryEqualDefaultOfALeafListGoes) {
  EXPECT_EQ(
      "leaf-list n default:b,c",
      Deleted(LeafList(Default("a") + Default("b") + Default("a") + Default("c")), Default("a")));
  EXPECT_EQ("leaf-list n default:b", Deleted(LeafList(Default("a") + Default("b") + Default("c")),
                                             Default("c") + Default("a")));
  EXPECT_EQ("leaf-list n",
            Deleted(LeafList(Default("a") + Default("b")), Default("a") + Default("b")));
}

TEST(DeviateDeleteDefault, WhatWasFoundBeforeARefusedValueIsGoneAndLeavesNoGap) {
  const Case deviation(LeafList(Default("a") + Default("b") + Default("c")),
                       Delete(Default("b") + Default("x") + Default("a")));
  EXPECT_FALSE(deviation.IsApplied());
  EXPECT_EQ("leaf-list n default:a,c", deviation.Node());
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to find default value to be deleted in leaf-list node \"n\".",
                          "Failed to delete default from node \"n\"."));
}

TEST(DeviateDeleteDefault, AValueGivenTwiceIsNotFoundTheSecondTime) {
  const Case deviation(LeafList(Default("a") + Default("b")), Delete(Default("a") + Default("a")));
  EXPECT_FALSE(deviation.IsApplied());
  EXPECT_EQ("leaf-list n default:b", deviation.Node());
}

TEST(DeviateDeleteDefault, ACountWithoutAnArrayIsReadAsNoDefaults) {
  Case deviation(LeafList(Default("a")), "");
  auto* payload = static_cast<QmsLeafList*>(deviation.Target()->payload);
  const char* value = "a";
  QmsDeviate deviate{};
  deviate.defaults = &value;
  deviate.defaultCount = 1;
  const char** array = payload->defaults;
  payload->defaults = nullptr;
  EXPECT_EQ(QM_FAILED,
            QMS_MOD_DelLeaflistDefaults(deviation.Deviating(), deviation.Target(), &deviate));
  payload->defaults = array;
}

TEST(DeviateDeleteDefault, OtherKindsOfNodesAreRefusedWithTheGeneralMessage) {
  EXPECT_THAT(Refused(Container(), Default("a")),
              ElementsAre("Failed to delete default from node \"n\"."));
}

TEST(DeviateDeleteMust, EveryMustWithTheConditionGoes) {
  EXPECT_EQ("container n musts:b",
            Deleted(Container(Must("a") + Must("b") + Must("a")), Must("a")));
  EXPECT_EQ("container n", Deleted(Container(Must("a") + Must("b")), Must("b") + Must("a")));
}

TEST(DeviateDeleteMust, OneThatTheNodeLacksIsRefused) {
  for (const std::string& target : {Container(), Container(Must("a"))})
    EXPECT_THAT(Refused(target, Must("b")),
                ElementsAre("Failed to find must condition to be deleted in target node \"n\".",
                            "Failed to delete must from node \"n\"."));
}

TEST(DeviateDeleteMust, WhatWasFoundBeforeARefusedMustIsGoneAndLeavesNoGap) {
  const Case deviation(Container(Must("a") + Must("b") + Must("c")),
                       Delete(Must("b") + Must("x") + Must("a")));
  EXPECT_FALSE(deviation.IsApplied());
  EXPECT_EQ("container n musts:a,c", deviation.Node());
}

TEST(DeviateDeleteUnits, OtherUnitsOrNoneAreRefused) {
  for (const std::string& target : {Leaf(), Leaf(Units("m")), LeafList(), LeafList(Units("m"))})
    EXPECT_THAT(Refused(target, Units("kg")),
                ElementsAre("Failed to delete units from node \"n\", because it doesn't have units "
                            "or the target units.",
                            "Failed to delete units from node \"n\"."));
}

TEST(DeviateDeleteUnits, OtherKindsOfNodesAreRefusedWithTheGeneralMessage) {
  EXPECT_THAT(Refused(Container(), Units("kg")),
              ElementsAre("Failed to delete units from node \"n\"."));
}

TEST(DeviateDeleteExtInst, OneThatTheNodeLacksIsIgnored) {
  EXPECT_EQ("container n ext:ext:e1(1)",
            Deleted(Container("<ext:e1 v='1'/>"), "<ext:e1 v='2'/><ext:e2 v='1'/><ext:e1/>"));
}

TEST(DeviateDeleteExtInst, TheRestIsCompacted) {
  EXPECT_EQ("container n ext:ext:e1(1),ext:e1(3)",
            Deleted(Container("<ext:e1 v='1'/><ext:e2/><ext:e1 v='3'/>"), "<ext:e2/>"));
}

TEST(DeviateDeleteExtInst, AccessControlIsReportedAndStaysAndTheDeviateSucceeds) {
  const Case deviation(Container("<nacm:default-deny-all/><ext:e1/>"),
                       Delete("<nacm:default-deny-all/><ext:e1/>"));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Deleting extension-instance \"ietf-netconf-acm:default-deny-all\" from "
                          "node \"n\" is not supported."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("container n ext:ietf-netconf-acm:default-deny-all nacm:all", deviation.Node());
}

static std::vector<std::string>* g_told = nullptr;

static uint32_t NoteChange(QmCtx*, QmsNode* node) {
  g_told->push_back(Describe(node));
  return 99;
}

TEST(DeviateDeleteExtInst, TheClientIsToldOnceBeforeTheFirstChange) {
  std::vector<std::string> told;
  g_told = &told;
  Case deviation(Container("<ext:e1/><ext:e2/>"), "");
  QM_CTX_SetBeforeDeviateExtInstFunc(deviation.ctx(), NoteChange);
  const std::string d2 = yin::Module(
      "d2",
      "<import module='t'><prefix value='t'/></import><import module='ext'><prefix value='ext'/>"
      "</import><deviation target-node='/t:n'>" +
          Delete("<ext:e1 v='lacks'/>") + Delete("<ext:e2/><ext:e1/>") + "</deviation>",
      "xmlns:ext='urn:ext'");
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(deviation.ctx(), d2.c_str()));
  EXPECT_EQ("container n", deviation.Node());
  EXPECT_EQ(nullptr, deviation.Target()->extInsts);
  EXPECT_THAT(told, ElementsAre("container n ext:ext:e1,ext:e2"));
}

TEST(DeviateDeleteMemory, WithoutMemoryForTheRestItIsEmptyAndReported) {
  const struct {
    std::string target;
    std::string property;
    const char* message;
    const char* left;
  } rows[] = {
      {LeafList(Default("a") + Default("b")), Default("a"),
       "Failed to delete default from node \"n\".", "leaf-list n"},
      {Container(Must("a") + Must("b")), Must("a"), "Failed to delete must from node \"n\".",
       "container n"},
      {Container("<ext:e1/><ext:e2/>"), "<ext:e1/>",
       "Failed to delete extension-instance to node \"n\".", "container n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.message);
    Case deviation(row.target, "");
    const std::string d2 = yin::Module(
        "d2",
        "<import module='ext'><prefix value='ext'/></import><import module='t'><prefix value='t'/>"
        "</import><deviation target-node='/t:later'>" +
            Delete(row.property) + "</deviation>",
        "xmlns:ext='urn:ext'");
    ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(deviation.ctx(), d2.c_str()));
    QmsDeviate* deviate = QM_CTX_GetModuleByModName(deviation.ctx(), "d2")->deviations[0].deviates;
    counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY,
              QMS_MOD_CoupleDevDel(deviation.Deviating(), deviation.Target(), deviate));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(row.left, deviation.Node());
    EXPECT_THAT(deviation.Messages(), ElementsAre(row.message));
  }
}
