// SPDX-License-Identifier: BSD-3-Clause
#include "schema/node_link.h"

#include <gtest/gtest.h>

#include <qmodel/error.h>

#include "schema/node.h"
#include "tests/support/schema_tree.h"

using schema_tree::Child;
using schema_tree::Children;
using schema_tree::Loose;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

// Every link of a child list fits its neighbours.
void ExpectSound(const QmsNode* parent) {
  const QmsNode* previous = nullptr;
  for (const QmsNode* child = parent->firstChild; child != nullptr; child = child->next) {
    EXPECT_EQ(parent, child->parent);
    EXPECT_EQ(previous, child->prev);
    previous = child;
  }
  EXPECT_EQ(previous, parent->lastChild);
}

}  // namespace

TEST(Linking, RefusesNullWith22) {
  QmsNode node{};
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddChild(nullptr, &node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddChild(&node, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddAsFirstChild(nullptr, &node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddAsFirstChild(&node, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddSibling(nullptr, &node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddSibling(&node, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_LinkTreeNode(nullptr, &node, 0));
  EXPECT_EQ(QM_INVALID, QMS_NODE_LinkTreeNode(&node, nullptr, 1));
  EXPECT_EQ(QM_INVALID, QMS_NODE_Unlink(nullptr));
  EXPECT_EQ(nullptr, QMS_NODE_GetLastSibling(nullptr));
  EXPECT_EQ(0u, QMS_NODE_IsChildNode(nullptr, &node));
  EXPECT_EQ(0u, QMS_NODE_IsChildNode(&node, nullptr));
  QM_NODE_CalibrateTopNodeAddress(nullptr, &node);
}

TEST(AddChild, AppendsAndClearsOldSiblingLinks) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  Child(parent, QMS_NODE_CONTAINER, "a");
  QmsNode* stale = Loose(parent->module, QMS_NODE_CONTAINER, "b");
  stale->next = parent;
  stale->prev = parent;
  EXPECT_EQ(QM_OK, QMS_NODE_AddChild(parent, stale));
  EXPECT_EQ("a b", Children(parent));
  ExpectSound(parent);
}

TEST(AddAsFirstChild, Prepends) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  EXPECT_EQ(QM_OK,
            QMS_NODE_AddAsFirstChild(parent, Loose(parent->module, QMS_NODE_CONTAINER, "b")));
  EXPECT_EQ(QM_OK,
            QMS_NODE_AddAsFirstChild(parent, Loose(parent->module, QMS_NODE_CONTAINER, "a")));
  EXPECT_EQ("a b", Children(parent));
  ExpectSound(parent);
}

TEST(AddChild, RefusesACoupledAugmentAsParentWith22) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* target = Top(module, QMS_NODE_CONTAINER, "c");
  QmsNode* augment = Top(module, QMS_NODE_AUGMENT, "/m:c");
  Child(augment, QMS_NODE_CONTAINER, "x");
  schema_tree::Couple(augment, target);
  Child(target, QMS_NODE_CONTAINER, "after");
  QmsNode* node = Loose(module, QMS_NODE_CONTAINER, "y");
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddChild(augment, node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AddAsFirstChild(augment, node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_LinkTreeNode(augment, node, 0));
  EXPECT_EQ("x after", Children(target));
  QMS_NODE_Free(node);
}

TEST(AddSibling, AppendsBehindTheLastSibling) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  QmsNode* a = Child(parent, QMS_NODE_CONTAINER, "a");
  Child(parent, QMS_NODE_CONTAINER, "b");
  EXPECT_EQ(QM_OK, QMS_NODE_AddSibling(a, Loose(parent->module, QMS_NODE_CONTAINER, "c")));
  EXPECT_EQ("a b c", Children(parent));
  ExpectSound(parent);
}

TEST(AddSibling, WorksWithoutParent) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* a = Top(module, QMS_NODE_CONTAINER, "a");
  QmsNode* b = Top(module, QMS_NODE_CONTAINER, "b");
  QmsNode* c = Loose(module, QMS_NODE_CONTAINER, "c");
  EXPECT_EQ(QM_OK, QMS_NODE_AddSibling(a, c));
  EXPECT_EQ(c, b->next);
  EXPECT_EQ(b, c->prev);
  EXPECT_EQ(nullptr, c->parent);
  EXPECT_EQ(c, QMS_NODE_GetLastSibling(a));
}

TEST(LinkTreeNode, LinksAsChildOrSiblingAndRefusesTheRest) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  QmsNode* a = Loose(parent->module, QMS_NODE_CONTAINER, "a");
  QmsNode* b = Loose(parent->module, QMS_NODE_CONTAINER, "b");
  EXPECT_EQ(QM_INVALID, QMS_NODE_LinkTreeNode(parent, a, 2));
  EXPECT_EQ(QM_OK, QMS_NODE_LinkTreeNode(parent, a, 0));
  EXPECT_EQ(QM_OK, QMS_NODE_LinkTreeNode(a, b, 1));
  EXPECT_EQ("a b", Children(parent));
}

TEST(Unlink, TakesTheFirstAMiddleAndTheLastChildOut) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  QmsNode* nodes[4];
  const char* names[] = {"a", "b", "c", "d"};
  for (int i = 0; i < 4; ++i) nodes[i] = Child(parent, QMS_NODE_CONTAINER, names[i]);
  const struct {
    int which;
    const char* left;
  } steps[] = {{1, "a c d"}, {0, "c d"}, {3, "c"}, {2, ""}};
  for (const auto& step : steps) {
    QmsNode* node = nodes[step.which];
    EXPECT_EQ(QM_OK, QMS_NODE_Unlink(node));
    EXPECT_EQ(step.left, Children(parent));
    ExpectSound(parent);
    EXPECT_EQ(nullptr, node->parent);
    EXPECT_EQ(nullptr, node->next);
    EXPECT_EQ(nullptr, node->prev);
    QMS_NODE_Free(node);
  }
}

TEST(Unlink, MovesTheHeadOfEachTopLevelList) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  const struct {
    uint32_t kind;
    QmsNode* QmsModule::*head;
  } lists[] = {{QMS_NODE_LEAF, &QmsModule::dataNodes},
               {QMS_NODE_RPC, &QmsModule::rpcNodes},
               {QMS_NODE_NOTIFICATION, &QmsModule::notifNodes},
               {QMS_NODE_AUGMENT, &QmsModule::augmentNodes}};
  for (const auto& list : lists) {
    QmsNode* a = Top(module, list.kind, "a");
    QmsNode* b = Top(module, list.kind, "b");
    ASSERT_EQ(a, module->*list.head);
    EXPECT_EQ(QM_OK, QMS_NODE_Unlink(a));
    EXPECT_EQ(b, module->*list.head);
    EXPECT_EQ(nullptr, b->prev);
    EXPECT_EQ(QM_OK, QMS_NODE_Unlink(b));
    EXPECT_EQ(nullptr, module->*list.head);
    QMS_NODE_Free(a);
    QMS_NODE_Free(b);
  }
}

TEST(Unlink, LeavesTheHeadWhenALaterTopNodeGoes) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* a = Top(module, QMS_NODE_LEAF, "a");
  QmsNode* b = Top(module, QMS_NODE_LEAF, "b");
  EXPECT_EQ(QM_OK, QMS_NODE_Unlink(b));
  EXPECT_EQ(a, module->dataNodes);
  EXPECT_EQ(nullptr, a->next);
  QMS_NODE_Free(b);
}

TEST(GetLastSibling, IsTheParentsLastChild) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  QmsNode* a = Child(parent, QMS_NODE_CONTAINER, "a");
  QmsNode* b = Child(parent, QMS_NODE_CONTAINER, "b");
  EXPECT_EQ(b, QMS_NODE_GetLastSibling(a));
  EXPECT_EQ(b, QMS_NODE_GetLastSibling(b));
}

TEST(IsChildNode, ComparesAddressesOnly) {
  Schema schema;
  QmsNode* parent = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  QmsNode* a = Child(parent, QMS_NODE_CONTAINER, "a");
  QmsNode* inner = Child(a, QMS_NODE_CONTAINER, "inner");
  EXPECT_EQ(1u, QMS_NODE_IsChildNode(parent, a));
  EXPECT_EQ(0u, QMS_NODE_IsChildNode(parent, inner));
  EXPECT_EQ(0u, QMS_NODE_IsChildNode(parent, parent));
  const QmsNode* gone = Loose(parent->module, QMS_NODE_CONTAINER, "gone");
  QMS_NODE_Free(const_cast<QmsNode*>(gone));
  EXPECT_EQ(0u, QMS_NODE_IsChildNode(parent, gone));
}
