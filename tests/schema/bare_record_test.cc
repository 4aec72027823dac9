// SPDX-License-Identifier: BSD-3-Clause
// Nodes and deviates that are only half made: without module, name, payload or
// texts. The loader frees and skips such records after a failed step.
#include <gtest/gtest.h>

#include <string>

#include <qmodel/qmodel.h>

#include "context/dict.h"
#include "schema/deviate.h"
#include "schema/deviate_add.h"
#include "schema/deviate_delete.h"
#include "schema/ext_inst.h"
#include "schema/flags.h"
#include "schema/merge_tree.h"
#include "schema/module_nodes.h"
#include "schema/node.h"
#include "schema/node_copy.h"
#include "schema/node_link.h"
#include "schema/node_path.h"
#include "schema/node_value.h"
#include "schema/node_walk.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"
#include "types/type.h"

using counting_memory::Refuse;
using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

struct Tree {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* c = Top(m, QMS_NODE_CONTAINER, "c");
  QmDict* dict() const { return schema.dict(); }
};

// Refuses the first, second, … allocation of `step`, which gives 12 as long as
// one is refused, and 0 in the end.
template <typename Step>
void ExpectLostMemoryIs12(Step step) {
  for (uint64_t n = 1;; ++n) {
    SCOPED_TRACE(n);
    counting_memory::RefuseNth(n, Refuse::kOnce);
    const uint32_t ret = step();
    const bool refused = counting_memory::StopRefusing() != 0;
    EXPECT_EQ(refused ? QM_NO_MEMORY : QM_OK, ret);
    if (!refused) {
      EXPECT_GT(n, 1u);
      return;
    }
  }
}

TEST(BareRecords, AKeyThatNoChildIsIsPassedOver) {
  Tree tree;
  QmsNode* list = Top(tree.m, QMS_NODE_LIST, "li");
  list->keyCount = 2;
  QmsNode* second = Child(list, QMS_NODE_LEAF, "k");
  second->flags |= QMS_NODE_KEY;
  second->keyIndex = 1;
  std::string keys;
  const auto take = [](QmsNode* node, uint32_t /*travType*/, void* arg) {
    *static_cast<std::string*>(arg) += node->name;
    return uint32_t{QM_OK};
  };
  EXPECT_EQ(QM_OK, QM_NODE_ScanKey(list, take, &keys));
  EXPECT_EQ("k", keys);
}

}  // namespace

TEST(BareNode, HasNeitherDefaultNorUnits) {
  Tree tree;
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(Child(tree.c, QMS_NODE_CHOICE, "ch")));
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(tree.c));
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(nullptr));
  QmsNode bare = {};
  bare.kind = QMS_NODE_LEAF;
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(&bare)) << "no payload";
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(&bare));
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(nullptr));
  QmsLeaf payload = {};
  bare.payload = &payload;
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(&bare)) << "no context for its typedefs";
  EXPECT_EQ(nullptr, QM_NODE_GetUnitsValueStr(&bare));
}

TEST(BareNode, IsOfNoModule) {
  QmsNode bare = {};
  EXPECT_FALSE(IsOfModule(&bare, "m"));
  EXPECT_FALSE(NamesEqual(nullptr, "m"));
  EXPECT_FALSE(NamesEqual("m", nullptr));
  EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(&bare, nullptr, "x"));
  EXPECT_EQ(nullptr, QM_NODE_GetAugmentTargetNode(&bare));
  bare.kind = QMS_NODE_AUGMENT;
  EXPECT_EQ(nullptr, QM_NODE_GetAugmentTargetNode(&bare)) << "no context";
  EXPECT_EQ(nullptr, QM_NODE_GetAugmentTargetNode(nullptr));
  QMS_NODE_DestroySchemaInfo(&bare);
  QMS_NODE_DestroySchemaInfo(nullptr);
  QM_NODE_CalibrateTopNodeAddress(&bare, nullptr);
  EXPECT_EQ(QM_INVALID, QMS_NODE_NotifyBeforeExtInstsChange(&bare));
  EXPECT_EQ(QM_INVALID, QMS_NODE_NotifyBeforeExtInstsChange(nullptr));
  QmsModule module = {};
  bare.module = &module;
  EXPECT_EQ(QM_OK, QMS_NODE_NotifyBeforeExtInstsChange(&bare)) << "no context, no hook";
}

TEST(BareNode, IsLeftAloneWhenItsParentIsFreed) {
  Tree tree;
  QmsNode* box = Child(tree.c, QMS_NODE_CONTAINER, "box");
  QmsNode bare = {};
  bare.kind = QMS_NODE_LEAF;
  QmsNode* own = Child(box, QMS_NODE_CONTAINER, "own");
  bare.next = own;
  box->firstChild = &bare;
  ASSERT_EQ(QM_OK, QMS_NODE_Unlink(box));
  QMS_NODE_Free(box);
  EXPECT_EQ(uint32_t{QMS_NODE_LEAF}, bare.kind);
}

TEST(BareNode, WithoutNameIsNotFound) {
  Tree tree;
  ReleaseText(tree.dict(), &tree.c->name);
  Top(tree.m, QMS_NODE_CONTAINER, "d");
  EXPECT_EQ(nullptr, QMS_MOD_FindTopLevelSchemaNode(tree.m, "c"));
  EXPECT_NE(nullptr, QMS_MOD_FindTopLevelSchemaNode(tree.m, "d"));
}

TEST(BareNode, IsAppendedToAListThatHasNoTailYet) {
  Tree tree;
  Top(tree.m, QMS_NODE_CONTAINER, "d");
  tree.m->dataTail = nullptr;
  Top(tree.m, QMS_NODE_CONTAINER, "e");
  EXPECT_STREQ("e", tree.m->dataTail->name);
  EXPECT_EQ(tree.m->dataTail, tree.c->next->next);
}

TEST(BareNode, AListHeldByItsFirstChildAloneEndsWhereItsLinksEnd) {
  QmsNode parent = {};
  QmsNode nodes[2] = {};
  parent.firstChild = &nodes[0];
  nodes[0].parent = nodes[1].parent = &parent;
  nodes[0].next = &nodes[1];
  EXPECT_EQ(&nodes[1], QMS_NODE_GetLastSibling(&nodes[0]));
}

TEST(BareNode, AMergeRefusesATargetOfNoModule) {
  Tree tree;
  QmsNode target = {};
  EXPECT_EQ(QM_INVALID, QMS_NODE_MergeNodeListToTgtWithTravType(&target, tree.c, QMS_TRAV_CHILD));
  EXPECT_EQ(QM_INVALID, QMS_NODE_MergeDstNodeWithMimExtInst(&target, tree.c));
  EXPECT_EQ(tree.c, tree.m->dataNodes);
  QmsNode* leaf = LeafOf(tree.c, "l", QMT_BASE_INT8);
  leaf->module = nullptr;
  EXPECT_EQ(QM_OK, QMS_NODE_RefreshNodeTreeToQmMod(tree.c, tree.m));
  EXPECT_EQ(tree.m, leaf->module);
}

TEST(BareNode, AWalkOfACoupledAugmentWithoutRunEndsAtTheNodesOwnList) {
  Tree tree;
  QmsNode* child = Child(tree.c, QMS_NODE_LEAF, "l");
  QmsNode* last = Child(tree.c, QMS_NODE_LEAF, "k");
  QmsNode augment = {};
  augment.kind = QMS_NODE_AUGMENT;
  augment.flags = QMS_NODE_COUPLED;
  uint32_t how = QMS_TRAV_TOP;
  EXPECT_EQ(last, QMS_NODE_GetTreeNodeSibOrParent(&augment, child, &how));
  EXPECT_EQ(nullptr, QMS_NODE_GetTreeNodeNextNode(&augment, &augment, &how));
}

TEST(BareNode, APathThatStartsBehindItsBufferIsRefused) {
  Tree tree;
  char text[4] = "abc";
  uint32_t length = 4;
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintJsonPathRecursive(tree.c, text, 4, &length));
  EXPECT_EQ(4u, length);
  EXPECT_STREQ("abc", text);
}

TEST(BareNode, ATopNodeInheritsNoMarks) {
  Tree tree;
  tree.c->flags = QMS_NODE_DENY_ALL;
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateNacmFlag(tree.c));
  EXPECT_EQ(uint32_t{QMS_NODE_DENY_ALL}, tree.c->flags);
  EXPECT_EQ(QM_INVALID, QMS_NODE_ImplUpdateFlagCb(nullptr, QMS_TRAV_TOP, nullptr));
}

TEST(BareNode, ATypedefThatEndsInNoLeafrefHasNoPath) {
  Tree tree;
  schema_tree::Typedef(tree.m, "t", QMT_BASE_INT8);
  QmsNode* leaf = LeafOf(tree.c, "l", QMT_BASE_INT8);
  schema_tree::SetDerivedType(leaf, "m", "t");
  EXPECT_EQ(nullptr, QMS_NODE_GetNextLeafrefPath(leaf));
  EXPECT_EQ(nullptr, QMS_NODE_GetNextLeafrefPath(tree.c));
}

TEST(BareExtInsts, ACountOrAnArrayAloneReplacesNothing) {
  Tree tree;
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(tree.c, "m", "kept", nullptr));
  QmsExtInst inst = {};
  QmsNode src = {};
  src.extInstCount = 1;
  EXPECT_EQ(QM_INVALID, QM_NODE_ReplaceDstExtInst(tree.c, &src));
  src.extInstCount = 0;
  src.extInsts = &inst;
  EXPECT_EQ(QM_INVALID, QM_NODE_ReplaceDstExtInst(tree.c, &src));
  ASSERT_EQ(1, tree.c->extInstCount);
  EXPECT_STREQ("kept", tree.c->extInsts[0].name);
}

TEST(BareDeviate, CarriesWhatHasBothAnArrayAndACount) {
  QmsMust must = {};
  const char* text = nullptr;
  QmsExtInst inst = {};
  QmsDeviate deviate = {};
  deviate.mustCount = deviate.defaultCount = deviate.extInstCount = 1;
  EXPECT_FALSE(CarriesMusts(&deviate) || CarriesDefaults(&deviate) || CarriesExtInsts(&deviate));
  deviate.musts = &must;
  deviate.defaults = &text;
  deviate.extInsts = &inst;
  EXPECT_TRUE(CarriesMusts(&deviate) && CarriesDefaults(&deviate) && CarriesExtInsts(&deviate));
  deviate.mustCount = deviate.defaultCount = deviate.extInstCount = 0;
  EXPECT_FALSE(CarriesMusts(&deviate) || CarriesDefaults(&deviate) || CarriesExtInsts(&deviate));
}

TEST(BareDeviate, AMustWithoutConditionDeletesNothing) {
  Tree tree;
  QmsMust must = {};
  QmsDeviate deviate = {};
  deviate.musts = &must;
  deviate.mustCount = 1;
  EXPECT_EQ(QM_FAILED, QMS_MOD_CoupleDevDelMusts(tree.m, tree.c, &deviate));
}

// The texts of these deviates are not in the dictionary, so that taking them needs memory.
TEST(BareDeviate, AddedUnitsAndExtensionInstancesNeedMemory) {
  Tree tree;
  QmsNode* leaf = LeafOf(tree.c, "l", QMT_BASE_INT8);
  QmsExtInst insts[2] = {};
  insts[0].module = insts[1].module = "fresh-module";
  insts[0].name = "fresh-name";
  insts[1].name = "fresh-other";
  insts[1].argument = "fresh-argument";
  QmsDeviate deviate = {};
  deviate.units = "fresh-units";
  deviate.extInsts = insts;
  deviate.extInstCount = 2;
  ExpectLostMemoryIs12([&] { return QMS_MOD_CoupleDevAddUnits(tree.m, leaf, &deviate); });
  EXPECT_STREQ("fresh-units", QM_NODE_GetUnitsValueStr(leaf));
  ExpectLostMemoryIs12([&] {
    QM_NODE_CleanExtInsts(leaf);  // what was added before a failure stays
    return QMS_MOD_CoupleDevAddExtInsts(tree.m, leaf, &deviate);
  });
  ASSERT_EQ(2, leaf->extInstCount);
  EXPECT_STREQ("fresh-argument", leaf->extInsts[1].argument);
  ExpectLostMemoryIs12([&] { return QM_NODE_AppendExtInst(tree.c, "other", "name", "argument"); });
  EXPECT_EQ(1, tree.c->extInstCount);
}

// Copies whose texts the dictionary does not hold yet: each of them needs memory.
TEST(CopyWithFreshTexts, IsWholeOrNull) {
  Tree tree;
  QmsLeaf leaf = {};
  leaf.type.baseType = QMT_BASE_INT8;
  leaf.defaultValue = "fresh-default";
  leaf.units = "fresh-units";
  const char* defaults[] = {"fresh-one", "fresh-two"};
  QmsLeafList leafList = {};
  leafList.type.baseType = QMT_BASE_INT8;
  leafList.defaults = defaults;
  leafList.defaultCount = 2;
  leafList.units = "fresh-units";
  QmsChoice choice = {};
  choice.defaultCase = "fresh-case";
  const struct {
    uint32_t kind;
    const void* payload;
    void (*destroy)(QmDict* dict, void* payload);
  } rows[] = {{QMS_NODE_LEAF, &leaf, QMS_NODE_DestroySchemaLeaf},
              {QMS_NODE_LEAF_LIST, &leafList, QMS_NODE_DestroySchemaLeaflist},
              {QMS_NODE_CHOICE, &choice, QMS_NODE_DestroySchemaChoice}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    ExpectLostMemoryIs12([&] {
      const size_t before = counting_memory::LiveBlocks();
      void* copy = QMS_NODE_CopySchemaByType(tree.dict(), row.kind, row.payload);
      if (copy != nullptr) row.destroy(tree.dict(), copy);
      EXPECT_EQ(before, counting_memory::LiveBlocks());
      return copy == nullptr ? QM_NO_MEMORY : QM_OK;
    });
  }
}

TEST(CopyWithFreshTexts, OfANodeIsWholeOrNull) {
  Tree tree;
  QmsExtInst inner = {};
  inner.module = "fresh-module";
  inner.name = "fresh-inner";
  QmsExtInst inst = inner;
  inst.name = "fresh-outer";
  inst.children = &inner;
  inst.childCount = 1;
  QmsNode node = {};
  node.kind = QMS_NODE_CONTAINER;
  node.name = "fresh-name";
  node.description = "fresh-description";
  node.extInsts = &inst;
  node.extInstCount = 1;
  ExpectLostMemoryIs12([&] {
    const size_t before = counting_memory::LiveBlocks();
    QmsNode* copy = QMS_NODE_CopyOneNodeToModule(&node, tree.m);
    if (copy != nullptr) QMS_NODE_Free(copy);
    EXPECT_EQ(before, counting_memory::LiveBlocks());
    return copy == nullptr ? QM_NO_MEMORY : QM_OK;
  });
}
