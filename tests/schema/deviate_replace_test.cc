// SPDX-License-Identifier: BSD-3-Clause
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "schema/deviate_replace.h"
#include "tests/support/counting_memory.h"
#include "tests/support/deviation_case.h"
#include "types/type.h"

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
using deviation_case::Replace;
using deviation_case::Units;
using testing::ElementsAre;

static std::string Replaced(const std::string& target, const std::string& properties) {
  return deviation_case::Applied(target, Replace(properties));
}

static std::vector<std::string> Refused(const std::string& target, const std::string& properties) {
  return deviation_case::Refused(target, Replace(properties));
}

static std::string Type(const std::string& name, const std::string& body = "") {
  return "<type name='" + name + "'>" + body + "</type>";
}

TEST(DeviateReplace, EachPropertyIsReplaced) {
  EXPECT_EQ("leaf n config:false!", Replaced(Leaf(Config(true)), Config(false)));
  EXPECT_EQ("leaf n mandatory:false", Replaced(Leaf(Mandatory(true)), Mandatory(false)));
  EXPECT_EQ("leaf n default:w", Replaced(Leaf(Default("v")), Default("w")));
  EXPECT_EQ("leaf-list n default:w", Replaced(LeafList(Default("v")), Default("w")));
  EXPECT_EQ("choice n default:b", Replaced(Choice(Default("a")), Default("b")));
  EXPECT_EQ("leaf n units:m", Replaced(Leaf(Units("kg")), Units("m")));
  EXPECT_EQ("leaf-list n units:m", Replaced(LeafList(Units("kg")), Units("m")));
}

TEST(DeviateReplace, TheSameValuesAreNoFailure) {
  EXPECT_EQ("leaf n config:true! mandatory:true default:v units:kg",
            Replaced(Leaf(Config(true) + Mandatory(true) + Default("v") + Units("kg")),
                     Config(true) + Mandatory(true) + Default("v") + Units("kg")));
}

TEST(DeviateReplace, MustsAndExtensionInstancesAreNotHandled) {
  EXPECT_EQ(
      "leaf n units:m musts:a ext:ext:e1",
      Replaced(Leaf(Units("kg") + Must("a") + "<ext:e1/>"), Units("m") + Must("b") + "<ext:e2/>"));
}

TEST(DeviateReplaceConfig, NeedsNoStatementInTheTargetAndIsPushedDown) {
  const Case deviation(Container(Leaf() + Container(Leaf(Config(true)))), Replace(Config(false)));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("container n config:false!", deviation.Node());
  const QmsNode* leaf = deviation.Target()->firstChild;
  EXPECT_EQ("leaf n config:false", Describe(leaf));
  EXPECT_EQ("leaf n config:false", Describe(leaf->next->firstChild));
}

TEST(DeviateReplaceConfig, EqualBitsAreLeftAsTheyAreWithTheirOrigin) {
  Case deviation(Container(), "");
  deviation.Target()->flags |= QMS_NODE_CONFIG_FALSE;
  QmsDeviate deviate{};
  deviate.flags = QMS_NODE_CONFIG_FALSE | QMS_NODE_CONFIG_OWN;
  EXPECT_EQ(QM_OK, QMS_MOD_ReplNodeConfig(deviation.Deviating(), deviation.Target(), &deviate));
  EXPECT_EQ("container n config:false", deviation.Node());
}

TEST(DeviateReplaceMandatory, NeedsNoStatementInTheTarget) {
  EXPECT_EQ("leaf n mandatory:true", Replaced(Leaf(), Mandatory(true)));
}

TEST(DeviateReplaceDefault, TwoForAChoiceAreReportedAndIgnored) {
  const Case deviation(Choice(Default("a")), Replace(Default("a") + Default("b")));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to replace default of choice node \"n\", because default number "
                          "> 1."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("choice n default:a", deviation.Node());
}

TEST(DeviateReplaceDefault, TwoForALeafAreReportedAndIgnored) {
  const Case deviation(Leaf(Default("a") + Units("kg")),
                       Replace(Default("b") + Default("c") + Units("m")));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to replace default of leaf node \"n\", because the number of "
                          "defaults to be deleted > 1."));
  EXPECT_TRUE(deviation.IsApplied());
  EXPECT_EQ("leaf n default:a units:m", deviation.Node());
}

TEST(DeviateReplaceDefault, WithoutADefaultItIsRefused) {
  EXPECT_THAT(Refused(Choice(), Default("a")),
              ElementsAre("Failed to replace default of choice node \"n\" without default value.",
                          "Failed to replace default of node \"n\"."));
  EXPECT_THAT(Refused(Leaf(), Default("a")),
              ElementsAre("Failed to replace default of leaf node \"n\" without default value.",
                          "Failed to replace default of node \"n\"."));
  EXPECT_THAT(Refused(LeafList(), Default("a")),
              ElementsAre("Failed to replace defaults of leaf-list node \"n\".",
                          "Failed to replace default of node \"n\"."));
}

TEST(DeviateReplaceDefault, AllDefaultsOfALeafListAreReplaced) {
  EXPECT_EQ(
      "leaf-list n default:x,y",
      Replaced(LeafList(Default("a") + Default("b") + Default("c")), Default("x") + Default("y")));
}

TEST(DeviateReplaceDefault, OtherKindsOfNodesAreRefusedWithTheGeneralMessage) {
  EXPECT_THAT(Refused(Container(), Default("a")),
              ElementsAre("Failed to replace default of node \"n\"."));
}

TEST(DeviateReplaceDefault, AFailedCopyLeavesTheCountWithoutAnArrayAndIsNotReported) {
  Case deviation(LeafList(Default("a") + Default("b")), "");
  const char* values[] = {"x", "y", "z"};
  QmsDeviate deviate{};
  deviate.defaults = values;
  deviate.defaultCount = 3;
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_OK, QMS_MOD_CoupleDevRepl(deviation.Deviating(), deviation.Target(), &deviate));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("leaf-list n default:(no array for 3)", deviation.Node());
  // Whatever is done with such a list finds no defaults, and no hole.
  EXPECT_EQ(QM_OK, QMS_MOD_CoupleDevRepl(deviation.Deviating(), deviation.Target(), &deviate));
  EXPECT_EQ("leaf-list n default:x,y,z", deviation.Node());
}

TEST(DeviateReplaceType, TheTypeOfALeafAndALeafListIsReplaced) {
  for (const std::string& target : {Leaf(), LeafList()}) {
    const Case deviation(target, Replace(Type("uint8", "<range value='1..5'/>")));
    EXPECT_TRUE(deviation.IsApplied());
    EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(deviation.Target(), 1, "5"));
    EXPECT_NE(QM_OK, QM_NODE_ValidateValue(deviation.Target(), 1, "6"));
  }
}

TEST(DeviateReplaceType, NothingOfTheOldTypeIsLeft) {
  const Case deviation("<leaf name='n'><type name='int8'><range value='1..2'/></type></leaf>",
                       Replace(Type("string")));
  const QmtType* type = QM_NODE_GetRealType(deviation.Target());
  EXPECT_EQ(static_cast<uint32_t>(QMT_BASE_STRING), type->baseType);
  EXPECT_EQ(0u, type->rangeFlags);
  EXPECT_EQ(0u, type->consCount);
}

TEST(DeviateReplaceType, WithoutATypeTheStepIsLeftOut) {
  const Case deviation(Leaf(Units("kg")), Replace(Units("m")));
  EXPECT_EQ(static_cast<uint32_t>(QMT_BASE_STRING),
            QM_NODE_GetRealType(deviation.Target())->baseType);
}

TEST(DeviateReplaceType, OtherKindsOfNodesAreRefusedWithTheGeneralMessage) {
  EXPECT_THAT(Refused(Container(), Type("string")),
              ElementsAre("Failed to replace type of node \"n\"."));
}

TEST(DeviateReplaceType, AFailedCopyIsReported) {
  Case deviation(Leaf(), "");
  const Case source(Leaf(), Replace(Type("uint8", "<range value='1..5'/>")));
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_MOD_CoupleDevRepl(deviation.Deviating(), deviation.Target(),
                                                source.Deviation()->deviates));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_THAT(deviation.Messages(), ElementsAre("Failed to replace type of node \"n\"."));
}

TEST(DeviateReplaceUnits, WithoutUnitsOnlyTheGeneralMessageIsRecorded) {
  for (const std::string& target : {Leaf(), LeafList(), Container()})
    EXPECT_THAT(Refused(target, Units("kg")),
                ElementsAre("Failed to replace units of node \"n\"."));
}

TEST(DeviateReplaceUnits, WithoutMemoryItGives12AndTheUnitsStay) {
  Case deviation(Leaf(Units("kg")), "");
  QmsDeviate deviate{};
  deviate.units = "never-interned-before";
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY,
            QMS_MOD_CoupleDevRepl(deviation.Deviating(), deviation.Target(), &deviate));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("leaf n units:kg", deviation.Node());
  EXPECT_THAT(deviation.Messages(), ElementsAre("Failed to replace units of node \"n\"."));
}
