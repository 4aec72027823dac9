// SPDX-License-Identifier: BSD-3-Clause
#include <gtest/gtest.h>

#include <qmodel/qmodel.h>

#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "tests/support/schema_tree.h"

using schema_tree::Child;
using schema_tree::Schema;
using schema_tree::Top;

TEST(NodeAccessors, GiveZeroOrNullForNull) {
  EXPECT_EQ(nullptr, QM_NODE_GetNodeName(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetModule(nullptr));
  EXPECT_EQ(0u, QM_NODE_GetNodeType(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetWhenCond(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetDescription(nullptr));
  EXPECT_EQ(0u, QM_NODE_GetNodeKeyNum(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetPrivate(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_SetPrivate(nullptr, nullptr));
  EXPECT_EQ(0u, QM_NODE_IsKey(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsRwConfig(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsMandatory(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsOrderedByNode(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsNacmDefaultDenyAll(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsNacmDefaultDenyWrite(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsObsoleteNode(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsPresenceContainer(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetParentNode(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetNonChoiceCaseParent(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetAugmentTargetNode(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetRealType(nullptr));
  EXPECT_EQ(0u, QM_NODE_IsEnabled(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(nullptr));
  EXPECT_EQ(nullptr, QM_NODE_FindRealTypeMatchedValue(nullptr, 1, "x"));
  EXPECT_EQ(nullptr, QM_NODE_GetLeafrefTargetNode(nullptr, 1));
}

TEST(NodeAccessors, GiveTheFields) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* list = Top(module, QMS_NODE_LIST, "l");
  ASSERT_TRUE(InternText(schema.dict(), &list->when, "../x"));
  ASSERT_TRUE(InternText(schema.dict(), &list->description, "about"));
  list->keyCount = 255;
  EXPECT_STREQ("l", QM_NODE_GetNodeName(list));
  EXPECT_EQ(module, QM_NODE_GetModule(list));
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_LIST), QM_NODE_GetNodeType(list));
  EXPECT_STREQ("../x", QM_NODE_GetWhenCond(list));
  EXPECT_STREQ("about", QM_NODE_GetDescription(list));
  EXPECT_EQ(255u, QM_NODE_GetNodeKeyNum(list));
}

TEST(SetPrivate, GivesThePreviousPointer) {
  QmsNode node{};
  int first = 0;
  int second = 0;
  EXPECT_EQ(nullptr, QM_NODE_SetPrivate(&node, &first));
  EXPECT_EQ(&first, QM_NODE_SetPrivate(&node, &second));
  EXPECT_EQ(&second, QM_NODE_GetPrivate(&node));
}

TEST(NodeFlags, EachPredicateReadsItsOwnBit) {
  const struct {
    uint32_t (*predicate)(const QmsNode*);
    uint32_t bit;
  } rows[] = {{QM_NODE_IsMandatory, 0x10},
              {QM_NODE_IsOrderedByNode, 0x80},
              {QM_NODE_IsObsoleteNode, 0x400},
              {QM_NODE_IsNacmDefaultDenyWrite, 0x1000},
              {QM_NODE_IsNacmDefaultDenyAll, 0x2000}};
  QmsNode node{};
  node.kind = QMS_NODE_LEAF;
  for (const auto& row : rows) {
    node.flags = row.bit;
    EXPECT_EQ(1u, row.predicate(&node)) << row.bit;
    node.flags = ~row.bit;
    EXPECT_EQ(0u, row.predicate(&node)) << row.bit;
  }
}

TEST(IsRwConfig, IsTrueWithoutAnyConfigMark) {
  QmsNode node{};
  EXPECT_EQ(1u, QM_NODE_IsRwConfig(&node));
  node.flags = QMS_NODE_CONFIG_TRUE;
  EXPECT_EQ(1u, QM_NODE_IsRwConfig(&node));
  node.flags = QMS_NODE_CONFIG_FALSE | QMS_NODE_CONFIG_OWN;
  EXPECT_EQ(0u, QM_NODE_IsRwConfig(&node));
}

TEST(IsKey, NeedsALeafBelowAListAndTheMark) {
  QmsNode list{};
  list.kind = QMS_NODE_LIST;
  QmsNode leaf{};
  leaf.kind = QMS_NODE_LEAF;
  leaf.flags = QMS_NODE_KEY;
  EXPECT_EQ(0u, QM_NODE_IsKey(&leaf));
  leaf.parent = &list;
  EXPECT_EQ(1u, QM_NODE_IsKey(&leaf));
  leaf.flags = 0;
  EXPECT_EQ(0u, QM_NODE_IsKey(&leaf));
  leaf.flags = QMS_NODE_KEY;
  list.kind = QMS_NODE_CONTAINER;
  EXPECT_EQ(0u, QM_NODE_IsKey(&leaf));
  list.kind = QMS_NODE_LIST;
  leaf.kind = QMS_NODE_LEAF_LIST;
  EXPECT_EQ(0u, QM_NODE_IsKey(&leaf));
}

TEST(IsPresenceContainer, NeedsAContainer) {
  QmsNode node{};
  node.flags = QMS_NODE_PRESENCE;
  node.kind = QMS_NODE_CONTAINER;
  EXPECT_EQ(1u, QM_NODE_IsPresenceContainer(&node));
  node.kind = QMS_NODE_LIST;
  EXPECT_EQ(0u, QM_NODE_IsPresenceContainer(&node));
}

TEST(GetParentNode, HidesAnAugment) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* c = Top(module, QMS_NODE_CONTAINER, "c");
  QmsNode* choice = Child(c, QMS_NODE_CHOICE, "ch");
  QmsNode* leaf = Child(Child(choice, QMS_NODE_CASE, "ca"), QMS_NODE_LEAF, "l");
  EXPECT_STREQ("ca", QM_NODE_GetNodeName(QM_NODE_GetParentNode(leaf)));
  EXPECT_EQ(c, QM_NODE_GetNonChoiceCaseParent(leaf));
  EXPECT_EQ(c, QM_NODE_GetNonChoiceCaseParent(choice));
  EXPECT_EQ(nullptr, QM_NODE_GetParentNode(c));
  EXPECT_EQ(nullptr, QM_NODE_GetNonChoiceCaseParent(c));
  QmsNode* augment = Top(module, QMS_NODE_AUGMENT, "/m:gone");
  EXPECT_EQ(nullptr, QM_NODE_GetParentNode(Child(augment, QMS_NODE_LEAF, "x")));
}

TEST(GetAugmentTargetNode, LooksTheTargetUpByTheName) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* c = Top(module, QMS_NODE_CONTAINER, "c");
  QmsNode* other = Top(schema.Module("n"), QMS_NODE_AUGMENT, "/m:c");
  QmsNode* lost = Top(module, QMS_NODE_AUGMENT, "/o:c");
  EXPECT_EQ(c, QM_NODE_GetAugmentTargetNode(other));
  EXPECT_EQ(nullptr, QM_NODE_GetAugmentTargetNode(lost));
  EXPECT_EQ(nullptr, QM_NODE_GetAugmentTargetNode(c));
}

TEST(IsEnabled, NeedsEveryFeature) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module, "f"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module, "g"));
  QmsNode* node = Top(module, QMS_NODE_CONTAINER, "c");
  EXPECT_EQ(1u, QM_NODE_IsEnabled(node));
  for (const char* feature : {"f", "g"}) {
    ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(schema.dict(), &node->ifFeatures,
                                              &node->ifFeatureCount, "m", feature));
  }
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(module, "f"));
  EXPECT_EQ(0u, QM_NODE_IsEnabled(node));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(module, "g"));
  EXPECT_EQ(1u, QM_NODE_IsEnabled(node));
}

// A record that is being read, or is about to be destroyed, may share its name with the one
// that the context knows.
TEST(IsEnabled, AsksTheRegisteredModuleOfThatName) {
  Schema schema;
  QmsModule* registered = schema.Module("m");
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(registered, "f"));
  for (const bool isInitialized : {false, true}) {
    SCOPED_TRACE(isInitialized);
    QmsModule loose{};
    loose.ctx = schema.ctx();
    loose.name = registered->name;
    if (isInitialized) RTK_AVL3_InitLink(&loose.nameLink);
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(&loose, "f"));
    QmsIfFeature reference = {loose.name, loose.features[0].name};
    QmsNode node{};
    node.module = &loose;
    node.ifFeatures = &reference;
    node.ifFeatureCount = 1;
    ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(&loose, "f"));
    ASSERT_EQ(QM_OK, QM_MOD_DisableFeature(registered, "f"));
    EXPECT_EQ(0u, QM_NODE_IsEnabled(&node));
    ASSERT_EQ(QM_OK, QM_MOD_DisableFeature(&loose, "f"));
    ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(registered, "f"));
    EXPECT_EQ(1u, QM_NODE_IsEnabled(&node));
    QMS_MOD_FreeFeatures(schema.dict(), loose.features, loose.featureCount);
  }
}

TEST(IsEnabled, IsFalseWhenTheFeatureCannotBeAskedFor) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* node = Top(module, QMS_NODE_CONTAINER, "c");
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(schema.dict(), &node->ifFeatures, &node->ifFeatureCount,
                                            "unknown", "f"));
  EXPECT_EQ(0u, QM_NODE_IsEnabled(node));
  // A cleared reference makes the context answer 22, which is not "enabled".
  QMS_NODE_ClearIfFeature(schema.dict(), &node->ifFeatures[0]);
  EXPECT_EQ(0u, QM_NODE_IsEnabled(node));
  QmsNode bare{};
  EXPECT_EQ(0u, QM_NODE_IsEnabled(&bare));
}
