// SPDX-License-Identifier: BSD-3-Clause
#include "schema/node.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <qmodel/error.h>

#include "context/dict.h"
#include "context/memory.h"
#include "schema/ext_inst.h"
#include "schema/node_array.h"
#include "schema/node_link.h"
#include "schema/statement.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"

using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Loose;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

uint32_t RefCount(QmDict* dict, const char* text) {
  const QmDictBucket& bucket = dict->buckets[QM_DICT_HashVal(text) & (dict->bucketCount - 1)];
  for (const QmDictEntry* entry = bucket.first; entry != nullptr; entry = entry->next) {
    if (std::string(entry->str) == text) return entry->refCount;
  }
  return 0;
}

std::vector<std::string> g_givenBack;

void NoteGivenBack(QmsNode* node, void* privateData) {
  g_givenBack.push_back(std::string(QM_NODE_GetNodeName(node)) + "=" +
                        static_cast<const char*>(privateData));
}

char g_first[] = "first";
char g_second[] = "second";

}  // namespace

TEST(GetStmtByNodeType, EachKindHasTheStatementOfItsName) {
  const uint32_t stmts[] = {QMS_STMT_UNKNOWN,   QMS_STMT_CONTAINER, QMS_STMT_LEAF,
                            QMS_STMT_LEAF_LIST, QMS_STMT_LIST,      QMS_STMT_CHOICE,
                            QMS_STMT_CASE,      QMS_STMT_ANYDATA,   QMS_STMT_ANYXML,
                            QMS_STMT_ACTION,    QMS_STMT_RPC,       QMS_STMT_NOTIFICATION,
                            QMS_STMT_INPUT,     QMS_STMT_OUTPUT,    QMS_STMT_AUGMENT};
  for (uint32_t kind = 0; kind < 15; ++kind) {
    EXPECT_EQ(stmts[kind], QMS_NODE_GetStmtByNodeType(kind)) << kind;
  }
}

TEST(GetStmtByNodeType, KindsFrom15OnGive0) {
  EXPECT_EQ(0u, QMS_NODE_GetStmtByNodeType(15));
  EXPECT_EQ(0u, QMS_NODE_GetStmtByNodeType(UINT32_MAX));
}

TEST(GetInfoSize, OnlyLeafLeafListAndChoiceHaveAPayload) {
  for (uint32_t kind = 0; kind < 20; ++kind) {
    uint32_t size = 0;
    if (kind == 2) size = sizeof(QmsLeaf);
    if (kind == 3) size = sizeof(QmsLeafList);
    if (kind == 5) size = sizeof(QmsChoice);
    EXPECT_EQ(size, QMS_NODE_GetInfoSize(kind)) << kind;
  }
}

TEST(DataTreeKinds, ChoiceCaseInputOutputAndAugmentNameNoElement) {
  for (uint32_t kind = 0; kind < 16; ++kind) {
    QmsNode node{};
    node.kind = kind;
    const bool transparent = kind == 0 || kind == 5 || kind == 6 || kind >= 12;
    EXPECT_EQ(!transparent, IsDataTreeNode(&node)) << kind;
  }
}

TEST(NewNode, IsZeroedButForItsKind) {
  Schema schema;
  QmsNode* node = QMS_NODE_New(QMS_NODE_LEAF);
  ASSERT_NE(nullptr, node);
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_LEAF), node->kind);
  EXPECT_EQ(nullptr, node->name);
  EXPECT_EQ(0u, node->flags);
  ASSERT_NE(nullptr, node->payload);
  EXPECT_EQ(nullptr, static_cast<QmsLeaf*>(node->payload)->defaultValue);
  node->module = schema.Module("m");
  QMS_NODE_Free(node);
}

TEST(NewNode, IsNullWhenEitherAllocationFails) {
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(nullptr, QMS_NODE_New(QMS_NODE_LEAF));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  counting_memory::RefuseNth(2, counting_memory::Refuse::kOnce);
  EXPECT_EQ(nullptr, QMS_NODE_New(QMS_NODE_LEAF));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
}

TEST(FreeNode, TakesNull) {
  QMS_NODE_Free(nullptr);
  QMS_NODE_DestroySchemaInfo(nullptr);
  QMS_NODE_DestroyPrivateData(nullptr, nullptr);
  FreeNodesWithoutTexts(nullptr);
}

TEST(FreeNode, LeavesANodeWithoutModuleAlone) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* node = Loose(module, QMS_NODE_CONTAINER, "c");
  node->module = nullptr;
  QMS_NODE_Free(node);
  EXPECT_STREQ("c", node->name);
  node->module = module;
  QMS_NODE_Free(node);
}

TEST(FreeNode, LeavesANodeWhoseModuleHasNoContextAlone) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* node = Loose(module, QMS_NODE_CONTAINER, "c");
  QmsModule bare{};
  node->module = &bare;
  QMS_NODE_Free(node);
  EXPECT_STREQ("c", node->name);
  node->module = module;
  QMS_NODE_Free(node);
}

TEST(FreeNode, LeavesACoupledAugmentAlone) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* target = Top(module, QMS_NODE_CONTAINER, "c");
  QmsNode* augment = Top(module, QMS_NODE_AUGMENT, "/m:c");
  Child(augment, QMS_NODE_CONTAINER, "x");
  schema_tree::Couple(augment, target);
  QMS_NODE_Free(augment);
  EXPECT_STREQ("/m:c", augment->name);
  EXPECT_EQ("x", schema_tree::Children(target));
}

TEST(FreeNode, ReleasesEveryTextOfTheSubtree) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmDict* dict = schema.dict();
  QmsNode* root = Loose(module, QMS_NODE_CONTAINER, "root");
  ASSERT_TRUE(InternText(dict, &root->description, "about it"));
  ASSERT_TRUE(InternText(dict, &root->when, "../w"));
  ASSERT_EQ(QM_OK,
            QMS_NODE_AppendOneIfFeat(dict, &root->ifFeatures, &root->ifFeatureCount, "m", "f"));
  QmsMust must{"must-it", "message", "tag"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneMust(dict, &root->musts, &root->mustCount, &must));
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneExtInst(dict, root, "m", "extension", "argument"));
  QmsNode* leaf = LeafOf(root, "a-leaf", QMT_BASE_STRING);
  QmsLeaf* leafPayload = static_cast<QmsLeaf*>(leaf->payload);
  ASSERT_TRUE(InternText(dict, &leafPayload->defaultValue, "leaf-default"));
  ASSERT_TRUE(InternText(dict, &leafPayload->units, "leaf-units"));
  QmsNode* list = Child(root, QMS_NODE_LEAF_LIST, "a-leaf-list");
  QmsLeafList* listPayload = static_cast<QmsLeafList*>(list->payload);
  const char* values[] = {"list-default"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(dict, listPayload, 1, values));
  ASSERT_TRUE(InternText(dict, &listPayload->units, "list-units"));
  QmsNode* choice = Child(root, QMS_NODE_CHOICE, "a-choice");
  ASSERT_TRUE(InternText(dict, &static_cast<QmsChoice*>(choice->payload)->defaultCase, "the-case"));
  QMS_NODE_Free(root);
  for (const char* text : {"root", "about it", "../w", "f", "must-it", "message", "tag",
                           "extension", "argument", "a-leaf", "leaf-default", "leaf-units",
                           "a-leaf-list", "list-default", "list-units", "a-choice", "the-case"}) {
    EXPECT_EQ(0u, RefCount(dict, text)) << text;
  }
}

TEST(FreeNode, AcceptsDefaultsThatGotLostBesideTheirCount) {
  Schema schema;
  QmsNode* node = Loose(schema.Module("m"), QMS_NODE_LEAF_LIST, "l");
  static_cast<QmsLeafList*>(node->payload)->defaultCount = 3;
  QMS_NODE_Free(node);
}

TEST(FreeNode, GivesPrivateDataBackFromTheTopDown) {
  Schema schema;
  QM_CTX_SetPridataFreeFunc(schema.ctx(), NoteGivenBack);
  g_givenBack.clear();
  QmsNode* root = Loose(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  QmsNode* inner = Child(root, QMS_NODE_CONTAINER, "inner");
  Child(root, QMS_NODE_CONTAINER, "without");
  QM_NODE_SetPrivate(root, g_first);
  QM_NODE_SetPrivate(inner, g_second);
  QMS_NODE_Free(root);
  EXPECT_EQ((std::vector<std::string>{"root=first", "inner=second"}), g_givenBack);
}

TEST(DestroyPrivateData, ClearsTheFieldOnlyWithAHook) {
  Schema schema;
  QmsNode* node = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QM_NODE_SetPrivate(node, g_first);
  QMS_NODE_DestroyPrivateData(schema.ctx(), node);
  EXPECT_EQ(g_first, QM_NODE_GetPrivate(node));
  QM_CTX_SetPridataFreeFunc(schema.ctx(), NoteGivenBack);
  g_givenBack.clear();
  QMS_NODE_DestroyPrivateData(schema.ctx(), node);
  EXPECT_EQ(nullptr, QM_NODE_GetPrivate(node));
  QMS_NODE_DestroyPrivateData(schema.ctx(), node);
  EXPECT_EQ(1u, g_givenBack.size());
}

TEST(FreeNode, TakesATreeDeeperThanTheCallStack) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* root = Loose(module, QMS_NODE_CONTAINER, "c");
  QmsNode* node = root;
  for (int i = 0; i < 300000; ++i) node = Child(node, QMS_NODE_CONTAINER, "c");
  QMS_NODE_Free(root);
  EXPECT_EQ(0u, RefCount(schema.dict(), "c"));
}

TEST(DestroySchemaInfo, ReleasesThePayloadOnce) {
  Schema schema;
  QmsNode* node = Top(schema.Module("m"), QMS_NODE_CHOICE, "ch");
  ASSERT_TRUE(
      InternText(schema.dict(), &static_cast<QmsChoice*>(node->payload)->defaultCase, "the-case"));
  QMS_NODE_DestroySchemaInfo(node);
  EXPECT_EQ(nullptr, node->payload);
  EXPECT_EQ(0u, RefCount(schema.dict(), "the-case"));
  QMS_NODE_DestroySchemaInfo(node);
}

TEST(FreeNodesWithoutTexts, FreesTheBlocksOfAListAndKeepsTheTexts) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmDict* dict = schema.dict();
  QmsNode* first = Loose(module, QMS_NODE_CONTAINER, "first-node");
  QmsNode* second = Loose(module, QMS_NODE_CONTAINER, "second-node");
  ASSERT_EQ(QM_OK, QMS_NODE_AddSibling(first, second));
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneExtInst(dict, first, "m", "extension", nullptr));
  ASSERT_EQ(QM_OK,
            QMS_NODE_AppendOneIfFeat(dict, &first->ifFeatures, &first->ifFeatureCount, "m", "f"));
  schema_tree::SetDerivedType(Child(second, QMS_NODE_LEAF, "a-leaf"), "m", "a-type");
  QmsModule bare{};
  first->module = &bare;
  FreeNodesWithoutTexts(first);
  for (const char* text : {"first-node", "second-node", "extension", "f", "a-leaf", "a-type"}) {
    EXPECT_EQ(1u, RefCount(dict, text)) << text;
  }
}

TEST(FreeNodesWithoutTexts, LeavesTheRunOfACoupledAugmentToItsTarget) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* target = Top(module, QMS_NODE_CONTAINER, "c");
  QmsNode* augment = Loose(module, QMS_NODE_AUGMENT, "/m:c");
  Child(augment, QMS_NODE_CONTAINER, "x");
  schema_tree::Couple(augment, target);
  FreeNodesWithoutTexts(augment);
  EXPECT_EQ("x", schema_tree::Children(target));
}
