// SPDX-License-Identifier: BSD-3-Clause
#include "schema/node_copy.h"

#include <gtest/gtest.h>

#include <string>

#include <qmodel/error.h>

#include "context/dict.h"
#include "schema/ext_inst.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"
#include "types/type.h"

using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Loose;
using schema_tree::Schema;
using schema_tree::Top;
using schema_tree::Walk;

TEST(CopyOneNode, CarriesKindNameDescriptionExtensionsAndKeys) {
  Schema schema;
  QmsModule* n = schema.Module("n");
  QmsNode* list = Top(schema.Module("m"), QMS_NODE_LIST, "l");
  ASSERT_TRUE(InternText(schema.dict(), &list->description, "about"));
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneExtInst(schema.dict(), list, "m", "ext", "arg"));
  list->keyCount = 2;
  QmsNode* copy = QMS_NODE_CopyOneNodeToModule(list, n);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(n, copy->module);
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_LIST), copy->kind);
  EXPECT_EQ(list->name, copy->name);
  EXPECT_EQ(list->description, copy->description);
  EXPECT_EQ(2u, copy->keyCount);
  ASSERT_EQ(1u, copy->extInstCount);
  EXPECT_NE(list->extInsts, copy->extInsts);
  EXPECT_STREQ("arg", copy->extInsts[0].argument);
  EXPECT_EQ(nullptr, copy->parent);
  QMS_NODE_Free(copy);
}

TEST(CopyOneNode, LeavesFlagsWhenMustsAndIfFeaturesBehind) {
  Schema schema;
  QmDict* dict = schema.dict();
  QmsModule* m = schema.Module("m");
  QmsNode* node = Top(m, QMS_NODE_CONTAINER, "c");
  node->flags = QMS_NODE_CONFIG_FALSE | QMS_NODE_PRESENCE;
  node->keyCount = 3;  // only a list's is taken
  ASSERT_TRUE(InternText(dict, &node->when, "../x"));
  QmsMust must{"a", nullptr, nullptr};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneMust(dict, &node->musts, &node->mustCount, &must));
  ASSERT_EQ(QM_OK,
            QMS_NODE_AppendOneIfFeat(dict, &node->ifFeatures, &node->ifFeatureCount, "m", "f"));
  QmsNode* copy = QMS_NODE_CopyOneNodeToModule(node, m);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(0u, copy->flags);
  EXPECT_EQ(0u, copy->keyCount);
  EXPECT_EQ(nullptr, copy->when);
  EXPECT_EQ(0u, copy->mustCount);
  EXPECT_EQ(0u, copy->ifFeatureCount);
  QMS_NODE_Free(copy);
}

TEST(CopyPayload, OfALeafCopiesTypeDefaultAndUnits) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* leaf = Top(m, QMS_NODE_LEAF, "l");
  QmsLeaf* payload = static_cast<QmsLeaf*>(leaf->payload);
  schema_tree::SetLeafref(leaf, "../x");
  ASSERT_TRUE(InternText(schema.dict(), &payload->defaultValue, "7"));
  ASSERT_TRUE(InternText(schema.dict(), &payload->units, "metres"));
  void* copy = QMS_NODE_CopySchemaByType(schema.dict(), QMS_NODE_LEAF, payload);
  ASSERT_NE(nullptr, copy);
  const QmsLeaf* copied = static_cast<QmsLeaf*>(copy);
  EXPECT_EQ(payload->defaultValue, copied->defaultValue);
  EXPECT_EQ(payload->units, copied->units);
  EXPECT_NE(payload->type.cons, copied->type.cons);
  EXPECT_STREQ("../x", QM_TYPE_GetTypeConsDataLeafrefPath(&copied->type));
  QMS_NODE_DestroySchemaLeaf(schema.dict(), copy);
}

TEST(CopyPayload, OfALeafListCopiesItsDefaults) {
  Schema schema;
  QmsNode* list = Top(schema.Module("m"), QMS_NODE_LEAF_LIST, "ll");
  QmsLeafList* payload = static_cast<QmsLeafList*>(list->payload);
  payload->type.baseType = QMT_BASE_STRING;
  const char* values[] = {"one", "two"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(schema.dict(), payload, 2, values));
  void* copy = QMS_NODE_CopySchemaByType(schema.dict(), QMS_NODE_LEAF_LIST, payload);
  ASSERT_NE(nullptr, copy);
  const QmsLeafList* copied = static_cast<QmsLeafList*>(copy);
  ASSERT_EQ(2u, copied->defaultCount);
  EXPECT_EQ(payload->defaults[1], copied->defaults[1]);
  EXPECT_NE(payload->defaults, copied->defaults);
  QMS_NODE_DestroySchemaLeaflist(schema.dict(), copy);
}

TEST(CopyPayload, DefaultsThatGotLostBesideTheirCountAreNone) {
  Schema schema;
  QmsLeafList payload{};
  payload.type.baseType = QMT_BASE_STRING;
  payload.defaultCount = 4;
  void* copy = QMS_NODE_CopySchemaLeaflist(schema.dict(), &payload);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(0u, static_cast<QmsLeafList*>(copy)->defaultCount);
  QMS_NODE_DestroySchemaLeaflist(schema.dict(), copy);
}

TEST(CopyPayload, OfAChoiceCopiesTheDefaultCase) {
  Schema schema;
  QmsNode* choice = Top(schema.Module("m"), QMS_NODE_CHOICE, "ch");
  QmsChoice* payload = static_cast<QmsChoice*>(choice->payload);
  ASSERT_TRUE(InternText(schema.dict(), &payload->defaultCase, "first"));
  void* copy = QMS_NODE_CopySchemaByType(schema.dict(), QMS_NODE_CHOICE, payload);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(payload->defaultCase, static_cast<QmsChoice*>(copy)->defaultCase);
  QMS_NODE_DestroySchemaChoice(schema.dict(), copy);
}

TEST(CopyPayload, IsNullForKindsWithoutOne) {
  Schema schema;
  int something = 0;
  for (uint32_t kind : {0u, 1u, 4u, 6u, 7u, 14u, 15u, 99u}) {
    EXPECT_EQ(nullptr, QMS_NODE_CopySchemaByType(schema.dict(), kind, &something)) << kind;
  }
  EXPECT_EQ(nullptr, QMS_NODE_CopySchemaByType(schema.dict(), QMS_NODE_LEAF, nullptr));
}

TEST(CopyNodeTree, KeepsTheShape) {
  Schema schema;
  QmsModule* n = schema.Module("n");
  QmsNode* root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  QmsNode* a = Child(root, QMS_NODE_CONTAINER, "a");
  QmsNode* deep = Child(a, QMS_NODE_LIST, "deep");
  LeafOf(deep, "x", QMT_BASE_INT8);
  LeafOf(deep, "y", QMT_BASE_INT8);
  Child(a, QMS_NODE_CHOICE, "b");
  LeafOf(root, "c", QMT_BASE_STRING);
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(root, n);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ("root:3 a:0 deep:0 x:0 y:1 deep:2 b:1 a:2 c:1", Walk(copy));
  EXPECT_EQ(Walk(root), Walk(copy));
  EXPECT_EQ(n, copy->firstChild->firstChild->firstChild->module);
  EXPECT_EQ(copy->lastChild, copy->firstChild->next);
  QMS_NODE_Free(copy);
}

TEST(CopyNodeTree, OfACoupledAugmentCopiesItsRun) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* target = Top(m, QMS_NODE_CONTAINER, "c");
  QmsNode* augment = Top(m, QMS_NODE_AUGMENT, "/m:c");
  Child(Child(augment, QMS_NODE_CONTAINER, "x"), QMS_NODE_CONTAINER, "inner");
  schema_tree::Couple(augment, target);
  Child(target, QMS_NODE_CONTAINER, "after");
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(augment, m);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ("/m:c:3 x:0 inner:0 x:2", Walk(copy));
  EXPECT_EQ(copy, copy->firstChild->parent);
  QMS_NODE_Free(copy);
}

TEST(CopyNodeTree, ResolvesTypedefsOfTheNewModule) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsTypedef* td = schema_tree::Typedef(m, "t", QMT_BASE_INT8);
  QmsNode* leaf = Top(m, QMS_NODE_LEAF, "l");
  schema_tree::SetDerivedType(leaf, "m", "t");
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(leaf, m);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(&td->type, QMT_TYPE_GetTypeConsDataDerived(QM_NODE_GetRealType(copy))->resolved);
  QMS_NODE_Free(copy);
}

TEST(CopyNodeTree, FailsAsAWholeWhenATypedefOfTheNewModuleIsMissing) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* root = Top(m, QMS_NODE_CONTAINER, "c");
  LeafOf(root, "good", QMT_BASE_INT8);
  QmsNode* bad = Child(root, QMS_NODE_LEAF, "bad");
  schema_tree::SetDerivedType(bad, "m", "missing");
  EXPECT_EQ(nullptr, QMS_NODE_CopyNodeTreeToModule(root, m));
  // In another module the name is left to be resolved when it is needed.
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(root, schema.Module("n"));
  EXPECT_NE(nullptr, copy);
  QMS_NODE_Free(copy);
}

TEST(CopyNodeTree, TakesNull) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule bare{};
  QmsNode* node = Top(m, QMS_NODE_CONTAINER, "c");
  EXPECT_EQ(nullptr, QMS_NODE_CopyNodeTreeToModule(nullptr, m));
  EXPECT_EQ(nullptr, QMS_NODE_CopyNodeTreeToModule(node, nullptr));
  EXPECT_EQ(nullptr, QMS_NODE_CopyNodeTreeToModule(node, &bare));
  EXPECT_EQ(nullptr, QMS_NODE_CopyOneNodeToModule(nullptr, m));
  EXPECT_EQ(nullptr, QMS_NODE_CopyOneNodeToModule(node, nullptr));
}

TEST(CopyNodeTree, TakesATreeDeeperThanTheCallStack) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* root = Top(m, QMS_NODE_CONTAINER, "c");
  QmsNode* node = root;
  for (int i = 0; i < 100000; ++i) node = Child(node, QMS_NODE_CONTAINER, "c");
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(root, m);
  ASSERT_NE(nullptr, copy);
  int depth = 0;
  for (QmsNode* n = copy; n->firstChild != nullptr; n = n->firstChild) ++depth;
  EXPECT_EQ(100000, depth);
  QMS_NODE_Free(copy);
}

namespace {

QmsNode* g_root;
QmsModule* g_into;

void CopyScenario(bool refusing) {
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(g_root, g_into);
  EXPECT_EQ(refusing && copy == nullptr, copy == nullptr);
  if (copy != nullptr) {
    EXPECT_EQ(Walk(g_root), Walk(copy));
  }
  QMS_NODE_Free(copy);
}

}  // namespace

TEST(CopyNodeTree, SurvivesEveryFailedAllocation) {
  Schema schema;
  QmDict* dict = schema.dict();
  g_into = schema.Module("n");
  g_root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneExtInst(dict, g_root, "m", "ext", "arg"));
  QmsNode* leaf = Child(g_root, QMS_NODE_LEAF, "l");
  schema_tree::SetDerivedType(leaf, "o", "t");
  ASSERT_TRUE(InternText(dict, &static_cast<QmsLeaf*>(leaf->payload)->units, "metres"));
  QmsNode* list = Child(g_root, QMS_NODE_LEAF_LIST, "ll");
  schema_tree::SetType(list, QMT_BASE_STRING);
  const char* values[] = {"one", "two"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(dict, static_cast<QmsLeafList*>(list->payload),
                                                   2, values));
  Child(g_root, QMS_NODE_CHOICE, "ch");
  EXPECT_LT(10u, counting_memory::FailEachAllocation(CopyScenario));
}
