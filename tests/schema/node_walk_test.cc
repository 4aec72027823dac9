// SPDX-License-Identifier: BSD-3-Clause
#include "schema/node_walk.h"

#include <gtest/gtest.h>

#include <string>

#include <qmodel/context.h>
#include <qmodel/error.h>
#include <qmodel/loader.h>

#include "schema/node.h"
#include "schema/node_link.h"
#include "tests/support/schema_tree.h"
#include "tests/support/yin_text.h"

using schema_tree::Child;
using schema_tree::Children;
using schema_tree::Schema;
using schema_tree::Top;
using schema_tree::Walk;

namespace {

// A target with own children a and z around the runs of two augments, one of
// two nodes and one of one.
struct AugmentedTree {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule* n = schema.Module("n");
  QmsNode* target = Top(m, QMS_NODE_CONTAINER, "c");
  QmsNode* a = Child(target, QMS_NODE_CONTAINER, "a");
  QmsNode* augment = Top(n, QMS_NODE_AUGMENT, "/m:c");
  QmsNode* x = Child(augment, QMS_NODE_CONTAINER, "x");
  QmsNode* inner = Child(x, QMS_NODE_LEAF, "inner");
  QmsNode* y = Child(augment, QMS_NODE_CONTAINER, "y");
  QmsNode* y2 = Child(y, QMS_NODE_LEAF, "y2");
  QmsNode* other = Top(n, QMS_NODE_AUGMENT, "/m:c");
  QmsNode* late = Child(other, QMS_NODE_LEAF, "late");
  AugmentedTree() {
    schema_tree::Couple(augment, target);
    schema_tree::Couple(other, target);
  }
};

// Walks and answers `result` at the node of that name.
struct Answer {
  std::string name;
  uint32_t result;
  std::string seen;
};

uint32_t AnswerCb(QmsNode* node, uint32_t travType, void* arg) {
  Answer* answer = static_cast<Answer*>(arg);
  answer->seen += std::string(node->name) + ":" + std::to_string(travType) + " ";
  return answer->name == node->name ? answer->result : 0;
}

}  // namespace

TEST(TreeScanAllNode, ShowsInnerNodesOnTheWayDownAndUp) {
  Schema schema;
  QmsNode* root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  QmsNode* a = Child(root, QMS_NODE_CONTAINER, "a");
  Child(a, QMS_NODE_LEAF, "a1");
  Child(a, QMS_NODE_LEAF, "a2");
  Child(root, QMS_NODE_LEAF, "b");
  EXPECT_EQ("root:3 a:0 a1:0 a2:1 a:2 b:1", Walk(root));
  EXPECT_EQ("a:3 a1:0 a2:1", Walk(a));
}

TEST(TreeScanAllNode, OneNodeIsOneStep) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* root = Top(module, QMS_NODE_CONTAINER, "root");
  Top(module, QMS_NODE_CONTAINER, "sibling");
  EXPECT_EQ("root:3", Walk(root));
}

TEST(TreeScanAllNode, ASkippedSubtreeIsNeverVisited) {
  Schema schema;
  QmsNode* root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  QmsNode* a = Child(root, QMS_NODE_CONTAINER, "a");
  Child(a, QMS_NODE_LEAF, "a1");
  Child(root, QMS_NODE_LEAF, "b");
  Answer answer{"a", 0x5A6B7C8D, ""};
  EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(root, AnswerCb, &answer));
  EXPECT_EQ("root:3 a:0 b:1 ", answer.seen);
  Answer atRoot{"root", 0x5A6B7C8D, ""};
  EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(root, AnswerCb, &atRoot));
  EXPECT_EQ("root:3 ", atRoot.seen);
}

TEST(TreeScanAllNode, ASkippedLastChildGoesUp) {
  Schema schema;
  QmsNode* root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  QmsNode* a = Child(root, QMS_NODE_CONTAINER, "a");
  QmsNode* last = Child(a, QMS_NODE_CONTAINER, "last");
  Child(last, QMS_NODE_LEAF, "hidden");
  Child(root, QMS_NODE_LEAF, "b");
  Answer answer{"last", QMS_SCAN_SKIP_SUBTREE, ""};
  EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(root, AnswerCb, &answer));
  EXPECT_EQ("root:3 a:0 last:0 a:2 b:1 ", answer.seen);
}

TEST(TreeScanAllNode, AnyOtherResultEndsTheWalkAndIsReturned) {
  Schema schema;
  QmsNode* root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "root");
  Child(root, QMS_NODE_LEAF, "a");
  Child(root, QMS_NODE_LEAF, "b");
  Answer answer{"a", 77, ""};
  EXPECT_EQ(77u, QM_NODE_TreeScanAllNode(root, AnswerCb, &answer));
  EXPECT_EQ("root:3 a:0 ", answer.seen);
}

TEST(Scans, RefuseNullWith22) {
  QmsNode node{};
  EXPECT_EQ(QM_INVALID, QM_NODE_TreeScanAllNode(nullptr, AnswerCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_TreeScanAllNode(&node, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_IterScanChildrenNode(nullptr, AnswerCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_IterScanChildrenNode(&node, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_IterScanSiblingNode(nullptr, AnswerCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_IterScanSiblingNode(&node, nullptr, nullptr));
}

TEST(TreeScanAllNode, OfACoupledAugmentStaysInItsRun) {
  AugmentedTree tree;
  EXPECT_EQ("/m:c:3 x:0 inner:0 x:2 y:1 y2:0 y:2", Walk(tree.augment));
  EXPECT_EQ("/m:c:3 late:0", Walk(tree.other));
  EXPECT_EQ("c:3 a:0 x:1 inner:0 x:2 y:1 y2:0 y:2 late:1", Walk(tree.target));
}

TEST(TreeScanAllNode, TakesATreeDeeperThanTheCallStack) {
  Schema schema;
  QmsNode* root = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* node = root;
  for (int i = 0; i < 200000; ++i) node = Child(node, QMS_NODE_CONTAINER, "c");
  Answer answer{"", 0, ""};
  EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(root, AnswerCb, &answer));
  // Down to each node, and up to all but the last and the root.
  EXPECT_EQ((200001u + 199999u) * 4u, answer.seen.size());
}

TEST(IterScanChildrenNode, OfACoupledAugmentVisitsExactlyItsRun) {
  AugmentedTree tree;
  EXPECT_EQ("x y", Children(tree.augment));
  EXPECT_EQ("late", Children(tree.other));
  EXPECT_EQ("a x y late", Children(tree.target));
}

TEST(IterScanChildrenNode, StopsAtTheFirstResultThatIsNotZero) {
  AugmentedTree tree;
  Answer answer{"x", 5, ""};
  EXPECT_EQ(5u, QM_NODE_IterScanChildrenNode(tree.target, AnswerCb, &answer));
  EXPECT_EQ("a:0 x:0 ", answer.seen);
}

TEST(IterScanSiblingNode, BeginsWithTheNodeItself) {
  AugmentedTree tree;
  Answer answer{"", 0, ""};
  EXPECT_EQ(QM_OK, QM_NODE_IterScanSiblingNode(tree.x, AnswerCb, &answer));
  EXPECT_EQ("x:1 y:1 late:1 ", answer.seen);
  Answer stop{"y", 9, ""};
  EXPECT_EQ(9u, QM_NODE_IterScanSiblingNode(tree.x, AnswerCb, &stop));
  EXPECT_EQ("x:1 y:1 ", stop.seen);
}

TEST(FindChildNodeByName, TellsModulesApartWhenAsked) {
  AugmentedTree tree;
  QmsNode* foreign = Child(tree.target, QMS_NODE_LEAF, "a", tree.n);
  EXPECT_EQ(tree.a, QMS_NODE_FindChildNodeByName(tree.target, nullptr, "a"));
  EXPECT_EQ(tree.a, QMS_NODE_FindChildNodeByName(tree.target, "", "a"));
  EXPECT_EQ(tree.a, QMS_NODE_FindChildNodeByName(tree.target, "m", "a"));
  EXPECT_EQ(foreign, QMS_NODE_FindChildNodeByName(tree.target, "n", "a"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(tree.target, "o", "a"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(tree.target, nullptr, "b"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(nullptr, nullptr, "a"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(tree.target, nullptr, nullptr));
}

// Names that one node of the context has are looked for from both ends.
TEST(FindChildNodeByName, AmongManyFindsNoNodeOfAnotherParent) {
  for (int count = 17; count <= 36; ++count) {
    std::string leaves;
    for (int i = 0; i < count; ++i) leaves += yin_text::Leaf("l" + std::to_string(i));
    QmCtx* ctx = QM_CTX_Create(0);
    ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(
                         ctx, yin_text::Module("m", "<container name='c'>" + leaves +
                                                        "</container>" + yin_text::Leaf("only"))
                                  .c_str()));
    QmsNode* parent = QM_CTX_GetTargetNode(ctx, "/m:c", nullptr);
    EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(parent, "m", "only")) << count;
    for (int i = 0; i < count; ++i) {
      const std::string name = "l" + std::to_string(i);
      const QmsNode* child = QMS_NODE_FindChildNodeByName(parent, "m", name.c_str());
      ASSERT_NE(nullptr, child) << count << " " << name;
      EXPECT_EQ(name, child->name);
    }
    QM_CTX_Delete(ctx);
  }
}

TEST(FindChildNodeByName, SearchesTheRunOfAnAugmentOnlyUpToItsEnd) {
  AugmentedTree tree;
  EXPECT_EQ(tree.y, QMS_NODE_FindChildNodeByName(tree.augment, nullptr, "y"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(tree.augment, nullptr, "late"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(tree.other, nullptr, "x"));
}

TEST(FindChildNodeByName, FindsEachOfManyWhereverItsNameIsKept) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule* n = schema.Module("n");
  QmsNode* c = Top(m, QMS_NODE_CONTAINER, "c");
  QmsNode* children[50];
  for (int i = 0; i < 50; ++i) {
    children[i] = Child(c, QMS_NODE_LEAF, ("leaf" + std::to_string(i)).c_str(), i % 2 == 0 ? m : n);
  }
  QmsNode* foreign = Child(c, QMS_NODE_LEAF, "leaf40", n);
  const char* interned = children[45]->name;
  const char* nameless = children[46]->name;
  children[45]->name = "leaf45";  // made by hand
  children[46]->name = nullptr;
  for (int i = 0; i < 50; ++i) {
    const std::string name = "leaf" + std::to_string(i);
    QmsNode* expected = i == 46 ? nullptr : children[i];
    EXPECT_EQ(expected, QMS_NODE_FindChildNodeByName(c, nullptr, name.c_str())) << name;
  }
  EXPECT_EQ(children[40], QMS_NODE_FindChildNodeByName(c, "m", "leaf40"));
  EXPECT_EQ(foreign, QMS_NODE_FindChildNodeByName(c, "n", "leaf40"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(c, "o", "leaf40"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(c, nullptr, "leaf50"));
  children[45]->name = interned;
  children[46]->name = nameless;
}

// As many as are told by the addresses of their names, before a run, in it and behind it.
TEST(FindChildNodeByName, FindsEachOfManyInTheRunOfAnAugmentAndNoneOutsideOfIt) {
  for (int count : {17, 18, 40, 41}) {
    SCOPED_TRACE(count);
    Schema schema;
    QmsNode* target = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
    QmsModule* n = schema.Module("n");
    QmsNode* augment = Top(n, QMS_NODE_AUGMENT, "/m:c");
    QmsNode* other = Top(n, QMS_NODE_AUGMENT, "/m:c");
    for (int i = 0; i < count; ++i) {
      Child(target, QMS_NODE_LEAF, ("own" + std::to_string(i)).c_str());
      Child(augment, QMS_NODE_LEAF, ("run" + std::to_string(i)).c_str());
      Child(other, QMS_NODE_LEAF, ("late" + std::to_string(i)).c_str());
    }
    schema_tree::Couple(augment, target);
    schema_tree::Couple(other, target);
    QmsNode* expected = augment->firstChild;
    for (int i = 0; i < count; ++i, expected = expected->next) {
      const std::string number = std::to_string(i);
      const std::string name = "run" + number;
      EXPECT_EQ(expected, QMS_NODE_FindChildNodeByName(augment, nullptr, name.c_str())) << name;
      EXPECT_EQ(expected, QMS_NODE_FindChildNodeByName(target, "n", name.c_str())) << name;
      EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(target, "m", name.c_str())) << name;
      EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(other, nullptr, name.c_str())) << name;
      EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(augment, "", ("own" + number).c_str()));
      EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(augment, "", ("late" + number).c_str()));
    }
  }
}

TEST(FindChildNodeByName, GivesTheFirstOfManyThatShareAName) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  for (int i = 0; i < 30; ++i) Child(c, QMS_NODE_LEAF, ("a" + std::to_string(i)).c_str());
  QmsNode* first = Child(c, QMS_NODE_LEAF, "same");
  for (int i = 0; i < 10; ++i) Child(c, QMS_NODE_LEAF, ("b" + std::to_string(i)).c_str());
  QmsNode* second = Child(c, QMS_NODE_LEAF, "same", schema.Module("n"));
  EXPECT_EQ(first, QMS_NODE_FindChildNodeByName(c, nullptr, "same"));
  EXPECT_EQ(second, QMS_NODE_FindChildNodeByName(c, "n", "same"));
}

TEST(FindChildNodeByName, SeesChoicesAndDoesNotLookThroughThem) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* choice = Child(c, QMS_NODE_CHOICE, "ch");
  QmsNode* leaf = Child(choice, QMS_NODE_LEAF, "l");
  EXPECT_EQ(choice, QMS_NODE_FindChildNodeByName(c, nullptr, "ch"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildNodeByName(c, nullptr, "l"));
  EXPECT_EQ(leaf, QMS_NODE_FindChildNodeByName(choice, nullptr, "l"));
}

TEST(GetParentDataTreeNode, SkipsChoiceCaseInputOutputAndAugment) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* rpc = Top(module, QMS_NODE_RPC, "r");
  QmsNode* input = Child(rpc, QMS_NODE_INPUT, "input");
  QmsNode* choice = Child(input, QMS_NODE_CHOICE, "ch");
  QmsNode* oneCase = Child(choice, QMS_NODE_CASE, "ca");
  QmsNode* leaf = Child(oneCase, QMS_NODE_LEAF, "l");
  EXPECT_EQ(rpc, QMS_NODE_GetParentDataTreeNode(leaf));
  EXPECT_EQ(nullptr, QMS_NODE_GetParentDataTreeNode(rpc));
  EXPECT_EQ(nullptr, QMS_NODE_GetParentDataTreeNode(nullptr));
  QmsNode* augment = Top(module, QMS_NODE_AUGMENT, "/m:gone");
  EXPECT_EQ(nullptr, QMS_NODE_GetParentDataTreeNode(Child(augment, QMS_NODE_LEAF, "x")));
}

namespace {

// The data tree nodes from `node` on, by name.
std::string DataSiblings(QmsNode* node, QmsNode* stop) {
  std::string names;
  QmsNode* cur = QMS_NODE_GetFirstSlibingDataTreeNode(node, stop);
  for (; cur != nullptr; cur = QMS_NODE_GetNextDataTreeNode(cur, stop)) {
    names += (names.empty() ? "" : " ") + std::string(cur->name);
  }
  return names;
}

// c { choice one { case p { a b } case q { d } } choice two { case r { e } } f }
struct ChoiceTree {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* one = Child(c, QMS_NODE_CHOICE, "one");
  QmsNode* p = Child(one, QMS_NODE_CASE, "p");
  QmsNode* a = Child(p, QMS_NODE_LEAF, "a");
  QmsNode* b = Child(p, QMS_NODE_LEAF, "b");
  QmsNode* q = Child(one, QMS_NODE_CASE, "q");
  QmsNode* d = Child(q, QMS_NODE_LEAF, "d");
  QmsNode* two = Child(c, QMS_NODE_CHOICE, "two");
  QmsNode* r = Child(two, QMS_NODE_CASE, "r");
  QmsNode* e = Child(r, QMS_NODE_LEAF, "e");
  QmsNode* f = Child(c, QMS_NODE_LEAF, "f");
};

}  // namespace

TEST(DataTreeWalk, LooksThroughChoiceAndCase) {
  ChoiceTree tree;
  EXPECT_EQ("a b d e f", DataSiblings(tree.c->firstChild, tree.c));
  EXPECT_EQ("d e f", DataSiblings(tree.d, nullptr));
}

TEST(DataTreeWalk, LastLeafOfTheLastCaseLeadsIntoTheFollowingChoice) {
  ChoiceTree tree;
  EXPECT_EQ(tree.e, QMS_NODE_GetNextDataTreeNode(tree.d, tree.c));
  EXPECT_EQ(tree.f, QMS_NODE_GetNextDataTreeNode(tree.e, tree.c));
}

TEST(DataTreeWalk, EndsWhenTheChoiceIsTheLastChildOfAContainer) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* c = Top(module, QMS_NODE_CONTAINER, "c");
  Top(module, QMS_NODE_LEAF, "after");
  QmsNode* choice = Child(c, QMS_NODE_CHOICE, "ch");
  QmsNode* leaf = Child(Child(choice, QMS_NODE_CASE, "ca"), QMS_NODE_LEAF, "l");
  EXPECT_EQ(nullptr, QMS_NODE_GetNextDataTreeNode(leaf, nullptr));
}

TEST(DataTreeWalk, NeverLeavesTheStopNode) {
  ChoiceTree tree;
  EXPECT_EQ("a b d", DataSiblings(tree.one->firstChild, tree.one));
  EXPECT_EQ(nullptr, QMS_NODE_GetNextDataTreeNode(tree.b, tree.p));
}

TEST(DataTreeWalk, GoesOnBehindAnEmptyChoiceOrCase) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* choice = Child(c, QMS_NODE_CHOICE, "ch");
  Child(choice, QMS_NODE_CASE, "empty");
  Child(c, QMS_NODE_CHOICE, "none");
  QmsNode* leaf = Child(c, QMS_NODE_LEAF, "l");
  EXPECT_EQ(leaf, QMS_NODE_GetFirstSlibingDataTreeNode(choice, c));
  EXPECT_EQ(QM_OK, QMS_NODE_Unlink(leaf));
  EXPECT_EQ(nullptr, QMS_NODE_GetFirstSlibingDataTreeNode(choice, c));
  QMS_NODE_Free(leaf);
}

TEST(DataTreeWalk, LooksThroughInputAndOutputAndNotOutOfAnOperation) {
  Schema schema;
  QmsModule* module = schema.Module("m");
  QmsNode* rpc = Top(module, QMS_NODE_RPC, "r");
  Child(Child(rpc, QMS_NODE_INPUT, "input"), QMS_NODE_LEAF, "i");
  Child(Child(rpc, QMS_NODE_OUTPUT, "output"), QMS_NODE_LEAF, "o");
  Top(module, QMS_NODE_RPC, "next");
  EXPECT_EQ("i o", DataSiblings(rpc->firstChild, rpc));
  EXPECT_EQ("i", DataSiblings(rpc->firstChild->firstChild, rpc->firstChild));
}

TEST(DataTreeWalk, TakesNull) {
  EXPECT_EQ(nullptr, QMS_NODE_GetFirstSlibingDataTreeNode(nullptr, nullptr));
  EXPECT_EQ(nullptr, QMS_NODE_GetNextDataTreeNode(nullptr, nullptr));
}

TEST(FindChildDataTreeNodeByName, LooksThroughNestedChoices) {
  ChoiceTree tree;
  QmsNode* nested = Child(tree.q, QMS_NODE_CHOICE, "nested");
  QmsNode* deep = Child(Child(nested, QMS_NODE_CASE, "s"), QMS_NODE_LEAF, "deep");
  EXPECT_EQ(deep, QMS_NODE_FindChildDataTreeNodeByName(tree.c, nullptr, "deep"));
  EXPECT_EQ(tree.e, QMS_NODE_FindChildDataTreeNodeByName(tree.c, "m", "e"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.c, nullptr, "nested"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.c, nullptr, "q"));
}

TEST(FindChildDataTreeNodeByName, DoesNotLookIntoDataTreeNodes) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  Child(Child(c, QMS_NODE_CONTAINER, "inner"), QMS_NODE_LEAF, "l");
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(c, nullptr, "l"));
}

TEST(FindChildDataTreeNodeByName, WithoutModuleNameTakesThatOfTheNode) {
  AugmentedTree tree;
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.target, nullptr, "x"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.target, "", "x"));
  EXPECT_EQ(tree.x, QMS_NODE_FindChildDataTreeNodeByName(tree.target, "n", "x"));
  EXPECT_EQ(tree.a, QMS_NODE_FindChildDataTreeNodeByName(tree.target, "", "a"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.target, "n", "a"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(nullptr, nullptr, "a"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.target, nullptr, nullptr));
}

TEST(FindChildDataTreeNodeByName, OfACoupledAugmentStaysInItsRun) {
  AugmentedTree tree;
  EXPECT_EQ(tree.y, QMS_NODE_FindChildDataTreeNodeByName(tree.augment, nullptr, "y"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(tree.augment, nullptr, "late"));
}

TEST(FindChildDataTreeNodeByName, OfAnOperationLooksIntoTheInputFirst) {
  Schema schema;
  QmsNode* rpc = Top(schema.Module("m"), QMS_NODE_RPC, "r");
  QmsNode* output = Child(rpc, QMS_NODE_OUTPUT, "output");
  QmsNode* input = Child(rpc, QMS_NODE_INPUT, "input");
  Child(output, QMS_NODE_LEAF, "both");
  QmsNode* only = Child(output, QMS_NODE_LEAF, "only");
  QmsNode* both = Child(input, QMS_NODE_LEAF, "both");
  EXPECT_EQ(both, QMS_NODE_FindChildDataTreeNodeByName(rpc, nullptr, "both"));
  EXPECT_EQ(only, QMS_NODE_FindChildDataTreeNodeByName(rpc, nullptr, "only"));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(rpc, nullptr, "input"));
}

TEST(FindChildDataTreeNodeByName, OfAnOperationLooksIntoEveryInput) {
  Schema schema;
  QmsNode* rpc = Top(schema.Module("m"), QMS_NODE_RPC, "r");
  Child(Child(rpc, QMS_NODE_INPUT, "input"), QMS_NODE_LEAF, "a");
  QmsNode* b = Child(Child(rpc, QMS_NODE_INPUT, "input"), QMS_NODE_LEAF, "b");
  Child(Child(rpc, QMS_NODE_OUTPUT, "output"), QMS_NODE_LEAF, "b");
  EXPECT_EQ(b, QMS_NODE_FindChildDataTreeNodeByName(rpc, nullptr, "b"));
}
