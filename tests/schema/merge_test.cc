// SPDX-License-Identifier: BSD-3-Clause
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/ext_inst.h"
#include "schema/merge_definitions.h"
#include "schema/merge_tree.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/node_link.h"
#include "schema/typedef.h"
#include "tests/support/counting_memory.h"
#include "tests/support/module_builder.h"
#include "types/type.h"

namespace {

using counting_memory::Refuse;
using module_builder::AddChild;
using module_builder::AddTop;
using module_builder::ListText;
using module_builder::MakeDerived;
using module_builder::Messages;
using module_builder::NewModule;
using module_builder::NewNode;
using module_builder::References;
using module_builder::ResolvedOf;
using module_builder::TypeOfLeaf;
using testing::ElementsAre;
using testing::IsEmpty;

// Two records of one module, as two files of it give them.
class Merge : public testing::Test {
 protected:
  void SetUp() override {
    ctx_ = QM_CTX_Create(0);
    ASSERT_NE(nullptr, ctx_);
    dict_ = &ctx_->dict;
    dst_ = NewModule(ctx_, "m");
    src_ = NewModule(ctx_, "m");
    ASSERT_NE(nullptr, dst_);
    ASSERT_NE(nullptr, src_);
  }
  void TearDown() override {
    QMS_MOD_Free(src_);
    QMS_MOD_Free(dst_);
    QM_CTX_Delete(ctx_);
  }
  uint32_t Run() { return QMS_MOD_MergeTwoModuleInSameCtx(dst_, src_); }
  std::vector<std::string> Said() { return Messages(ctx_, "m"); }
  // The same top-level containers in order, by name.
  void Containers(QmsModule* module, std::initializer_list<const char*> names) {
    for (const char* name : names) ASSERT_NE(nullptr, AddTop(module, QMS_NODE_CONTAINER, name));
  }
  void AddInst(QmsNode* node, const char* name) {
    ASSERT_EQ(QM_OK, QMS_EXT_AppendOneExtInstToArray(dict_, &node->extInsts, &node->extInstCount,
                                                     "x", name, nullptr));
  }
  void AddIfFeature(QmsFeature* feature, const char* name) {
    ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(dict_, &feature->ifFeatures, &feature->ifFeatureCount,
                                              "m", name));
  }
  void AddTypedef(QmsModule* module, const char* name, uint32_t baseType) {
    QmtType type = {};
    type.baseType = baseType;
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module, name, &type, nullptr));
  }
  void AddDerivedTypedef(QmsModule* module, const char* name, const char* base) {
    QmtType type = {};
    ASSERT_TRUE(MakeDerived(dict_, &type, "m", base));
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module, name, &type, "dflt"));
    QMT_TYPE_DestroyQmtRealTypeInner(dict_, &type);
  }

  QmCtx* ctx_ = nullptr;
  QmDict* dict_ = nullptr;
  QmsModule* dst_ = nullptr;
  QmsModule* src_ = nullptr;
};

using MergeModules = Merge;

TEST_F(MergeModules, MissingRecordAndForeignContextAreRefusedWith22) {
  QmCtx* otherCtx = QM_CTX_Create(0);
  ASSERT_NE(nullptr, otherCtx);
  QmsModule* foreign = NewModule(otherCtx, "m");
  QmsModule bare = {};
  for (QmsModule* src : {static_cast<QmsModule*>(nullptr), foreign, &bare, dst_}) {
    EXPECT_EQ(QM_INVALID, QMS_MOD_MergeTwoModuleInSameCtx(dst_, src));
    EXPECT_EQ(QM_INVALID, QMS_MOD_MergeGlobalDefData(dst_, src));
    EXPECT_EQ(QM_INVALID, QMS_MOD_MergeNonNodeMemberImport(dst_, src));
  }
  EXPECT_EQ(QM_INVALID, QMS_MOD_MergeTwoModuleInSameCtx(nullptr, src_));
  EXPECT_EQ(QM_INVALID, QMS_MOD_MergeTreeNodeData(nullptr, src_));
  EXPECT_EQ(QM_INVALID, QMS_MOD_MergeTreeNodeData(dst_, nullptr));
  EXPECT_THAT(Said(), IsEmpty());
  QMS_MOD_Free(foreign);
  QM_CTX_Delete(otherCtx);
}

TEST_F(MergeModules, RecordReadTwiceChangesNothing) {
  for (QmsModule* module : {dst_, src_}) {
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module, "other", "o"));
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneInclude(module, "s"));
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module, "f"));
    AddIfFeature(&module->features[0], "g");
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module, "i"));
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(module, "e", "a", 1));
    AddTypedef(module, "t", QMT_BASE_INT8);
    QmsNode* container = AddTop(module, QMS_NODE_CONTAINER, "c");
    ASSERT_NE(nullptr, AddChild(container, QMS_NODE_LEAF, "l"));
    AddInst(container, "inst");
    ASSERT_NE(nullptr, AddTop(module, QMS_NODE_RPC, "r"));
    ASSERT_NE(nullptr, AddTop(module, QMS_NODE_NOTIFICATION, "n"));
    ASSERT_NE(nullptr, AddTop(module, QMS_NODE_AUGMENT, "/x:y"));
  }
  EXPECT_EQ(0u, Run());
  EXPECT_EQ(1, dst_->importCount);
  EXPECT_EQ(1, dst_->includeCount);
  EXPECT_EQ(1, dst_->featureCount);
  EXPECT_EQ(1, dst_->identityCount);
  EXPECT_EQ(1, dst_->extensionCount);
  EXPECT_EQ(1, dst_->typedefCount);
  EXPECT_EQ("c (l)", ListText(dst_->dataNodes));
  EXPECT_EQ(1, dst_->dataNodes->extInstCount);
  EXPECT_EQ("r", ListText(dst_->rpcNodes));
  EXPECT_EQ("n", ListText(dst_->notifNodes));
  EXPECT_EQ("/x:y", ListText(dst_->augmentNodes));
  EXPECT_THAT(Said(), IsEmpty());
}

using MergeDefinitions = Merge;

TEST_F(MergeDefinitions, WhatTheDestinationLacksIsTakenOver) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(src_, "other", "o"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneInclude(src_, "s"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(src_, "f"));
  AddIfFeature(&src_->features[0], "g");
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(src_, "i"));
  const QmsIdentBase base = {"m", "root"};
  src_->identities[0].bases = QMS_MOD_CopyIdentBaseArray(dict_, &base, 1);
  src_->identities[0].baseCount = 1;
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(dict_, &src_->identities[0].ifFeatures,
                                            &src_->identities[0].ifFeatureCount, "m", "g"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(src_, "e", "a", 1));
  ASSERT_EQ(QM_OK, QMS_EXT_AppendOneExtInstToArray(dict_, &src_->extInsts, &src_->extInstCount, "x",
                                                   "inst", nullptr));
  EXPECT_EQ(0u, Run());
  ASSERT_EQ(1, dst_->importCount);
  EXPECT_STREQ("other", dst_->imports[0].moduleName);
  ASSERT_EQ(1, dst_->includeCount);
  ASSERT_EQ(1, dst_->featureCount);
  EXPECT_EQ(1u, QMS_MOD_CheckTwoFeatureSame(&dst_->features[0], &src_->features[0]));
  ASSERT_EQ(1, dst_->identityCount);
  EXPECT_EQ(1u, QMS_MOD_CheckTwoIdentitySame(&dst_->identities[0], &src_->identities[0]));
  ASSERT_EQ(1, dst_->extensionCount);
  EXPECT_EQ(1u, QMS_MOD_CheckTwoExtensionSame(&dst_->extensions[0], &src_->extensions[0]));
  ASSERT_EQ(1, dst_->extInstCount);
  EXPECT_STREQ("inst", dst_->extInsts[0].name);
  // The copies outlive their source.
  QMS_MOD_Free(src_);
  src_ = nullptr;
  EXPECT_STREQ("root", dst_->identities[0].bases[0].name);
  EXPECT_STREQ("g", dst_->features[0].ifFeatures[0].feature);
}

TEST_F(MergeDefinitions, EnabledBitIsNotCarriedOver) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(src_, "f"));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(src_, "f"));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ(0, dst_->features[0].flags);
}

TEST_F(MergeDefinitions, PrefixForAnotherModuleIsRefused) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(dst_, "one", "p"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(src_, "two", "p"));
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(),
              ElementsAre("The import module name \"two\" corresponding to the prefix \"p\" is "
                          "different from the existing module name \"one\".",
                          "Failed to merge global definitions."));
  EXPECT_EQ(1, dst_->importCount);
}

TEST_F(MergeDefinitions, FeatureWithOtherIfFeaturesIsRefused) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(dst_, "f"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(src_, "f"));
  AddIfFeature(&src_->features[0], "g");
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(),
              ElementsAre("The if-feature informations of the feature \"f\" are different from "
                          "the existing feature",
                          "Failed to merge global definitions."));
}

TEST_F(MergeDefinitions, IdentityWithOtherBasesIsRefused) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(dst_, "i"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(src_, "i"));
  const QmsIdentBase base = {"m", "root"};
  dst_->identities[0].bases = QMS_MOD_CopyIdentBaseArray(dict_, &base, 1);
  dst_->identities[0].baseCount = 1;
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(),
              ElementsAre("The information of the identity \"i\" is different from the existing "
                          "identity",
                          "Failed to merge global definitions."));
}

TEST_F(MergeDefinitions, ExtensionWithAnotherArgumentIsRefused) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(dst_, "e", "a", 0));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(src_, "e", "b", 0));
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(),
              ElementsAre("The information of the extension \"e\" is different from the existing "
                          "extension",
                          "Failed to merge global definitions."));
}

TEST_F(MergeDefinitions, EveryDeviationIsAppendedWithItsDeviates) {
  QmsMust must = {"c", nullptr, nullptr};
  QmsDeviate deviate = {};
  deviate.kind = QMS_DEVIATE_ADD;
  deviate.musts = &must;
  deviate.mustCount = 1;
  for (QmsModule* module : {dst_, src_}) {
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(module, "/a:b"));
    module->deviations[0].deviates = QMS_MOD_CopyDeviateArray(dict_, &deviate, 1);
    module->deviations[0].deviateCount = 1;
    module->deviations[0].flags = QMS_DEVIATION_APPLIED;
  }
  EXPECT_EQ(0u, Run());
  ASSERT_EQ(2, dst_->deviationCount);
  EXPECT_STREQ("/a:b", dst_->deviations[1].targetPath);
  EXPECT_EQ(0, dst_->deviations[1].flags);
  ASSERT_EQ(1, dst_->deviations[1].deviateCount);
  EXPECT_STREQ("c", dst_->deviations[1].deviates[0].musts[0].condition);
}

TEST_F(MergeDefinitions, TypedefOfTheSameNameIsKeptWithoutComparison) {
  AddTypedef(dst_, "t", QMT_BASE_INT8);
  AddTypedef(src_, "t", QMT_BASE_STRING);
  EXPECT_EQ(0u, Run());
  ASSERT_EQ(1, dst_->typedefCount);
  EXPECT_EQ(uint32_t{QMT_BASE_INT8}, dst_->typedefs[0].type.baseType);
  EXPECT_THAT(Said(), IsEmpty());
}

TEST_F(MergeDefinitions, MergedTypedefIsResolvedInTheDestinationAndHasNoUnits) {
  AddTypedef(dst_, "base", QMT_BASE_INT8);
  AddDerivedTypedef(src_, "t", "base");
  ASSERT_TRUE(InternText(dict_, &src_->typedefs[0].units, "seconds"));
  EXPECT_EQ(0u, Run());
  ASSERT_EQ(2, dst_->typedefCount);
  EXPECT_EQ(&dst_->typedefs[0].type, ResolvedOf(&dst_->typedefs[1].type));
  EXPECT_STREQ("dflt", dst_->typedefs[1].defaultValue);
  EXPECT_EQ(nullptr, dst_->typedefs[1].units);
}

TEST_F(MergeDefinitions, LaterTypedefsLeaveNoPointerToTheArrayThatMoved) {
  AddTypedef(dst_, "base", QMT_BASE_INT8);
  QmsNode* leaf = AddTop(dst_, QMS_NODE_LEAF, "l");
  ASSERT_TRUE(MakeDerived(dict_, TypeOfLeaf(leaf), "m", "base"));
  ASSERT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(TypeOfLeaf(leaf), dst_));
  AddDerivedTypedef(src_, "t1", "base");
  AddDerivedTypedef(src_, "t2", "base");
  EXPECT_EQ(QM_OK, QMS_MOD_MergeNonNodeMemberTypeDef(dst_, src_));
  EXPECT_EQ(nullptr, ResolvedOf(TypeOfLeaf(leaf)));
  EXPECT_EQ(nullptr, ResolvedOf(&dst_->typedefs[1].type));
  EXPECT_EQ(&dst_->typedefs[0].type, ResolvedOf(&dst_->typedefs[2].type));
}

TEST_F(MergeDefinitions, TypedefThatRefersToALaterOneIsRefused) {
  AddDerivedTypedef(src_, "t", "later");
  AddTypedef(src_, "later", QMT_BASE_INT8);
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(), ElementsAre("Failed to update real type of typedef \"t\".",
                                  "Failed to merge global definitions."));
}

TEST_F(MergeDefinitions, FirstFailureEndsTheMergeAndNothingIsRolledBack) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(src_, "new", "n"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(dst_, "e", "a", 0));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(src_, "e", "b", 0));
  AddTypedef(src_, "t", QMT_BASE_INT8);
  Containers(src_, {"c"});
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_EQ(1, dst_->importCount);
  EXPECT_EQ(0, dst_->typedefCount);
  EXPECT_EQ("", ListText(dst_->dataNodes));
}

using DiffReason = Merge;

TEST(DiffReasonName, EachReasonHasItsName) {
  EXPECT_STREQ("none", QMS_NODE_GetDiffReasonName(0));
  EXPECT_STREQ("extension", QMS_NODE_GetDiffReasonName(1));
  EXPECT_STREQ("name", QMS_NODE_GetDiffReasonName(2));
  EXPECT_STREQ("other", QMS_NODE_GetDiffReasonName(4));
  for (uint32_t reason : {3u, 5u, 6u, 100u, UINT32_MAX}) {
    EXPECT_STREQ("unknown", QMS_NODE_GetDiffReasonName(reason));
  }
}

TEST_F(DiffReason, NameIsLookedAtFirstThenFlagsKindAndInstances) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "a");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "a");
  QmsNode* other = AddTop(src_, QMS_NODE_LEAF, "b");
  other->flags = QMS_NODE_CONFIG_FALSE;
  EXPECT_EQ(0u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
  EXPECT_EQ(2u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, other));

  src->flags = QMS_NODE_PRESENCE;
  EXPECT_EQ(4u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
  src->flags = 0;
  src->kind = QMS_NODE_LIST;
  EXPECT_EQ(4u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
  src->kind = QMS_NODE_CONTAINER;

  AddInst(src, "one");
  EXPECT_EQ(1u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
  AddInst(dst, "two");  // equal in number is enough
  EXPECT_EQ(0u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
  AddInst(src, "three");
  EXPECT_EQ(4u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
}

TEST_F(DiffReason, WhatOnlyTheDestinationHasAndConditionsDoNotCount) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_LEAF, "a");
  QmsNode* src = AddTop(src_, QMS_NODE_LEAF, "a");
  AddInst(dst, "one");
  ASSERT_TRUE(InternText(dict_, &src->when, "x"));
  TypeOfLeaf(src)->baseType = QMT_BASE_STRING;
  EXPECT_EQ(0u, QMS_NODE_CompareTwoTreeNodeSelfData(dst, src));
}

using MergeTree = Merge;

TEST_F(MergeTree, FromTheFirstOtherNameOnSourceNodesMoveToTheEnd) {
  Containers(dst_, {"a", "b", "c"});
  Containers(src_, {"a", "x", "y"});
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a b c x y", ListText(dst_->dataNodes));
  EXPECT_EQ("a", ListText(src_->dataNodes));
  for (const QmsNode* node = dst_->dataNodes; node != nullptr; node = node->next) {
    EXPECT_EQ(dst_, node->module) << node->name;
    EXPECT_EQ(nullptr, node->parent);
  }
  EXPECT_THAT(Said(), IsEmpty());
}

TEST_F(MergeTree, SourceHeadIsClearedWhenItsFirstNodeMoved) {
  Containers(dst_, {"a"});
  Containers(src_, {"x", "y"});
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a x y", ListText(dst_->dataNodes));
  EXPECT_EQ(nullptr, src_->dataNodes);
}

TEST_F(MergeTree, ListHeadOutsideTheModuleIsClearedToo) {
  Containers(dst_, {"a"});
  Containers(src_, {"x", "y"});
  QmsNode* head = src_->dataNodes;
  EXPECT_EQ(QM_OK, QMS_NODE_CompareAndMergeNodeList(&dst_->dataNodes, &head, nullptr, dst_));
  EXPECT_EQ(nullptr, head);
  EXPECT_EQ(nullptr, src_->dataNodes);
}

TEST_F(MergeTree, SurplusTopLevelNodesStayInTheSource) {
  Containers(dst_, {"a"});
  Containers(src_, {"a", "b", "c"});
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a", ListText(dst_->dataNodes));
  EXPECT_EQ("a b c", ListText(src_->dataNodes));
  EXPECT_EQ(src_, src_->dataNodes->next->module);
  EXPECT_THAT(Said(), IsEmpty());
}

TEST_F(MergeTree, WholeListMovesIntoAnEmptyOne) {
  Containers(src_, {"a", "b"});
  ASSERT_NE(nullptr, AddTop(src_, QMS_NODE_RPC, "r"));
  ASSERT_NE(nullptr, AddTop(src_, QMS_NODE_NOTIFICATION, "n"));
  ASSERT_NE(nullptr, AddTop(src_, QMS_NODE_AUGMENT, "/x:y"));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a b", ListText(dst_->dataNodes));
  EXPECT_EQ("r", ListText(dst_->rpcNodes));
  EXPECT_EQ("n", ListText(dst_->notifNodes));
  EXPECT_EQ("/x:y", ListText(dst_->augmentNodes));
  EXPECT_EQ(nullptr, src_->dataNodes);
  EXPECT_EQ(nullptr, src_->rpcNodes);
  EXPECT_EQ(nullptr, src_->notifNodes);
  EXPECT_EQ(nullptr, src_->augmentNodes);
  EXPECT_EQ(dst_, dst_->dataNodes->module);
  EXPECT_EQ(nullptr, dst_->dataNodes->prev);
}

TEST_F(MergeTree, EmptySourceListChangesNothing) {
  Containers(dst_, {"a"});
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a", ListText(dst_->dataNodes));
  EXPECT_EQ(nullptr, src_->dataNodes);
}

TEST_F(MergeTree, ExtraChildrenMoveBehindThoseOfTheDestination) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "c");
  ASSERT_NE(nullptr, AddChild(dst, QMS_NODE_LEAF, "a"));
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_LEAF, "a"));
  QmsNode* list = AddChild(src, QMS_NODE_LIST, "l");
  ASSERT_NE(nullptr, AddChild(list, QMS_NODE_LEAF, "k"));
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_LEAF, "z"));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("c (a l (k) z)", ListText(dst_->dataNodes));
  EXPECT_EQ("c (a)", ListText(src_->dataNodes));
  EXPECT_EQ(dst, list->parent);
  EXPECT_EQ(dst_, list->firstChild->module);
  EXPECT_STREQ("z", dst->lastChild->name);
  EXPECT_EQ(src->firstChild, src->lastChild);
}

TEST_F(MergeTree, ChildrenMoveIntoANodeWithoutChildren) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "c");
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_LEAF, "a"));
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_LEAF, "b"));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("c (a b)", ListText(dst_->dataNodes));
  EXPECT_EQ(dst->lastChild, dst->firstChild->next);
  EXPECT_EQ(nullptr, src->firstChild);
  EXPECT_EQ(nullptr, src->lastChild);
}

TEST_F(MergeTree, WholeTreesAreMergedAtEveryDepth) {
  // dst: a (b (x)) c (y)      src: a (b (x n1) n2) c (n3)
  QmsNode* dstA = AddTop(dst_, QMS_NODE_CONTAINER, "a");
  ASSERT_NE(nullptr, AddChild(AddChild(dstA, QMS_NODE_CONTAINER, "b"), QMS_NODE_LEAF, "x"));
  ASSERT_NE(nullptr, AddChild(AddTop(dst_, QMS_NODE_CONTAINER, "c"), QMS_NODE_LEAF, "y"));
  QmsNode* srcA = AddTop(src_, QMS_NODE_CONTAINER, "a");
  QmsNode* srcB = AddChild(srcA, QMS_NODE_CONTAINER, "b");
  ASSERT_NE(nullptr, AddChild(srcB, QMS_NODE_LEAF, "x"));
  ASSERT_NE(nullptr, AddChild(srcB, QMS_NODE_LEAF, "n1"));
  ASSERT_NE(nullptr, AddChild(srcA, QMS_NODE_LEAF, "n2"));
  ASSERT_NE(nullptr, AddChild(AddTop(src_, QMS_NODE_CONTAINER, "c"), QMS_NODE_LEAF, "n3"));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a (b (x n1) n2) c (y n3)", ListText(dst_->dataNodes));
}

TEST_F(MergeTree, ChildrenBeforeAMoveAreStillMerged) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "a");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "a");
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_LEAF, "l"));
  Containers(dst_, {"b"});
  Containers(src_, {"x"});
  EXPECT_EQ(0u, Run());
  EXPECT_EQ("a (l) b x", ListText(dst_->dataNodes));
  EXPECT_EQ(dst, dst_->dataNodes);
}

TEST_F(MergeTree, DeepTreesNeedNoDeepStack) {
  constexpr uint32_t kDepth = 200000;
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "c");
  for (uint32_t i = 0; i < kDepth; ++i) {
    dst = AddChild(dst, QMS_NODE_CONTAINER, "c");
    src = AddChild(src, QMS_NODE_CONTAINER, "c");
  }
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_LEAF, "bottom"));
  EXPECT_EQ(0u, Run());
  ASSERT_NE(nullptr, dst->firstChild);
  EXPECT_STREQ("bottom", dst->firstChild->name);
}

TEST_F(MergeTree, ParentsOtherThanTheRootKeepTheWalkInside) {
  QmsNode* dstTop = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* srcTop = AddTop(src_, QMS_NODE_CONTAINER, "c");
  ASSERT_NE(nullptr, AddChild(dstTop, QMS_NODE_CONTAINER, "in"));
  ASSERT_NE(nullptr, AddChild(srcTop, QMS_NODE_CONTAINER, "in"));
  QmsNode* dstAfter = AddTop(dst_, QMS_NODE_CONTAINER, "after");
  QmsNode* srcAfter = AddTop(src_, QMS_NODE_CONTAINER, "after");
  ASSERT_NE(nullptr, AddChild(srcAfter, QMS_NODE_LEAF, "l"));
  EXPECT_EQ(QM_OK, QMS_NODE_MergeTreeNodeFromRootStart(&dstTop->firstChild, &srcTop->firstChild,
                                                       dstTop, dst_));
  EXPECT_EQ(nullptr, dstAfter->firstChild);
}

TEST_F(MergeTree, InstancesAreCopiedIntoANodeThatHasNone) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "c");
  AddInst(src, "one");
  AddInst(src, "two");
  EXPECT_EQ(0u, Run());
  ASSERT_EQ(2, dst->extInstCount);
  EXPECT_STREQ("two", dst->extInsts[1].name);
  EXPECT_EQ(2, src->extInstCount);
  EXPECT_EQ(QM_INVALID, QMS_NODE_MergeDstNodeWithMimExtInst(dst, src));
  EXPECT_EQ(QM_INVALID, QMS_NODE_MergeDstNodeWithMimExtInst(nullptr, src));
}

TEST_F(MergeTree, FailedCopyOfInstancesGives12AndNamesTheReason) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "c");
  AddInst(src, "one");
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, Run());
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, dst->extInsts);
  EXPECT_THAT(Said(), ElementsAre("Failed to merge node \"c\" with diff reason \"extension\".",
                                  "Failed to merge schema tree."));
}

TEST_F(MergeTree, OtherConfigFailsWithReasonOther) {
  AddTop(dst_, QMS_NODE_LEAF, "l")->flags = QMS_NODE_CONFIG_FALSE;
  AddTop(src_, QMS_NODE_LEAF, "l")->flags = QMS_NODE_CONFIG_TRUE;
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(), ElementsAre("Failed to merge node \"l\" with diff reason \"other\".",
                                  "Failed to merge schema tree."));
}

TEST_F(MergeTree, FailureBelowAParentNamesTheParent) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_CONTAINER, "c");
  QmsNode* src = AddTop(src_, QMS_NODE_CONTAINER, "c");
  ASSERT_NE(nullptr, AddChild(dst, QMS_NODE_LEAF, "l"));
  ASSERT_NE(nullptr, AddChild(src, QMS_NODE_CONTAINER, "l"));
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(), ElementsAre("Failed to merge node \"l\" under \"c\" with diff reason "
                                  "\"other\".",
                                  "Failed to merge schema tree."));
}

TEST_F(MergeTree, NameThatWouldOccurTwiceIsRefused) {
  Containers(dst_, {"a", "b", "c"});
  Containers(src_, {"a", "x", "c"});
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(), ElementsAre("Failed to merge node \"b\" with diff reason \"name\".",
                                  "Failed to merge schema tree."));
  EXPECT_EQ("a b c", ListText(dst_->dataNodes));
  EXPECT_EQ("a x c", ListText(src_->dataNodes));
}

TEST_F(MergeTree, UniquenessLooksFromTheDestinationNodeOn) {
  Containers(dst_, {"a", "b", "c"});
  Containers(src_, {"x", "a"});
  const QmsNode* dst = dst_->dataNodes;
  EXPECT_EQ(QM_INVALID, QMS_NODE_CheckPostSiblingNodeUnique(dst, src_->dataNodes));
  EXPECT_EQ(QM_OK, QMS_NODE_CheckPostSiblingNodeUnique(dst->next, src_->dataNodes));
}

TEST_F(MergeTree, NodeOfAnotherModuleIsNotMergedInto) {
  QmsModule* other = NewModule(ctx_, "other");
  QmsNode* foreign = NewNode(other, QMS_NODE_CONTAINER, "c");
  dst_->dataNodes = foreign;
  Containers(src_, {"c"});
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(), ElementsAre("Failed to merge node \"c\" with diff reason \"none\".",
                                  "Failed to merge schema tree."));
  dst_->dataNodes = nullptr;
  QMS_NODE_Free(foreign);
  QMS_MOD_Free(other);
}

TEST_F(MergeTree, ExtraChildrenOfACoupledAugmentAreRefused) {
  QmsNode* dst = AddTop(dst_, QMS_NODE_AUGMENT, "/x:y");
  QmsNode* src = AddTop(src_, QMS_NODE_AUGMENT, "/x:y");
  QmsNode* leaf = AddChild(src, QMS_NODE_LEAF, "l");
  dst->flags = QMS_NODE_COUPLED;
  src->flags = QMS_NODE_COUPLED;
  EXPECT_EQ(QM_INVALID, Run());
  EXPECT_THAT(Said(), ElementsAre("Failed to merge extra node list \"l\" under \"/x:y\".",
                                  "Failed to merge schema tree."));
  EXPECT_EQ(src, leaf->parent);
  dst->flags = 0;
  src->flags = 0;
}

TEST_F(MergeTree, ExtraListFailureAtTheTopHasAMessageOfItsOwn) {
  Containers(src_, {"a"});
  QMS_NODE_RecordExtraNodeListMergeError(dst_, src_->dataNodes, nullptr);
  QMS_NODE_RecordExtraNodeListMergeError(nullptr, src_->dataNodes, nullptr);
  QMS_NODE_RecordNodeListMergeError(nullptr, src_->dataNodes, nullptr, 0);
  EXPECT_THAT(Said(), ElementsAre("Failed to merge extra node list \"a\"."));
}

TEST_F(MergeTree, ReasonsThatAreNoneOfTheKnownAreRefusedWith22) {
  Containers(dst_, {"a"});
  Containers(src_, {"a"});
  uint32_t goOn = 0;
  for (uint32_t reason : {3u, 4u, 5u}) {
    EXPECT_EQ(QM_INVALID, QMS_NODE_MergeNodeListWithDiffReason(dst_->dataNodes, src_->dataNodes,
                                                               dst_, reason, &goOn));
  }
  EXPECT_EQ(QM_INVALID,
            QMS_NODE_MergeNodeListWithDiffReason(dst_->dataNodes, src_->dataNodes, src_, 0, &goOn));
  EXPECT_EQ(QM_OK,
            QMS_NODE_MergeNodeListWithDiffReason(dst_->dataNodes, src_->dataNodes, dst_, 0, &goOn));
  EXPECT_EQ(1u, goOn);
}

TEST_F(MergeTree, MoveWithoutTargetOrWithAnotherTravelTypeIsRefusedWith22) {
  Containers(dst_, {"a"});
  Containers(src_, {"b"});
  EXPECT_EQ(QM_INVALID, QMS_NODE_MergeNodeListToTgtWithTravType(nullptr, src_->dataNodes, 1));
  EXPECT_EQ(QM_INVALID, QMS_NODE_MergeNodeListToTgtWithTravType(dst_->dataNodes, nullptr, 1));
  EXPECT_EQ(QM_INVALID,
            QMS_NODE_MergeNodeListToTgtWithTravType(dst_->dataNodes, src_->dataNodes, 2));
  EXPECT_EQ("b", ListText(src_->dataNodes));
}

TEST_F(MergeTree, MovedLeafIsResolvedInTheDestination) {
  AddTypedef(dst_, "t", QMT_BASE_INT8);
  AddTypedef(src_, "t", QMT_BASE_INT8);
  QmsNode* leaf = AddChild(AddTop(src_, QMS_NODE_CONTAINER, "c"), QMS_NODE_LEAF, "l");
  ASSERT_TRUE(MakeDerived(dict_, TypeOfLeaf(leaf), "m", "t"));
  // Resolved in the source, whose typedefs do not outlive the merge.
  ASSERT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(TypeOfLeaf(leaf), src_));
  ASSERT_EQ(&src_->typedefs[0].type, ResolvedOf(TypeOfLeaf(leaf)));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ(dst_, leaf->module);
  EXPECT_EQ(&dst_->typedefs[0].type, ResolvedOf(TypeOfLeaf(leaf)));
}

TEST_F(MergeTree, MovedLeafOfAnUnknownTypedefDoesNotFailTheMerge) {
  QmsNode* leaf = AddTop(src_, QMS_NODE_LEAF, "l");
  ASSERT_TRUE(MakeDerived(dict_, TypeOfLeaf(leaf), "m", "missing"));
  EXPECT_EQ(0u, Run());
  EXPECT_EQ(leaf, dst_->dataNodes);
  EXPECT_EQ(nullptr, ResolvedOf(TypeOfLeaf(leaf)));
  EXPECT_EQ(QM_INVALID, QMS_NODE_RefreshNodeTreeToQmMod(nullptr, dst_));
  EXPECT_EQ(QM_INVALID, QMS_NODE_RefreshNodeTreeToQmMod(leaf, nullptr));
}

TEST_F(MergeTree, MovedNodesOutliveTheSource) {
  ASSERT_NE(nullptr, AddChild(AddTop(src_, QMS_NODE_CONTAINER, "c"), QMS_NODE_LEAF, "l"));
  EXPECT_EQ(0u, Run());
  QMS_MOD_Free(src_);
  src_ = nullptr;
  EXPECT_EQ("c (l)", ListText(dst_->dataNodes));
  EXPECT_EQ(1u, References(dict_, "l"));
}

// A source with one definition of each kind and a node with an instance.
void FillSource(QmCtx* ctx, QmsModule* dst, QmsModule* src) {
  QmDict* dict = &ctx->dict;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(src, "other", "o"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneInclude(src, "s"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(src, "f"));
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(dict, &src->features[0].ifFeatures,
                                            &src->features[0].ifFeatureCount, "m", "g"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(src, "i"));
  const QmsIdentBase base = {"m", "root"};
  src->identities[0].bases = QMS_MOD_CopyIdentBaseArray(dict, &base, 1);
  ASSERT_NE(nullptr, src->identities[0].bases);
  src->identities[0].baseCount = 1;
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(dict, &src->identities[0].ifFeatures,
                                            &src->identities[0].ifFeatureCount, "m", "g"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(src, "e", "a", 1));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(src, "/a:b"));
  const QmsDeviate deviate = {};
  src->deviations[0].deviates = QMS_MOD_CopyDeviateArray(dict, &deviate, 1);
  ASSERT_NE(nullptr, src->deviations[0].deviates);
  src->deviations[0].deviateCount = 1;
  QmtType type = {};
  type.baseType = QMT_BASE_INT8;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(src, "t", &type, nullptr));
  ASSERT_EQ(QM_OK, QMS_EXT_AppendOneExtInstToArray(dict, &src->extInsts, &src->extInstCount, "x",
                                                   "inst", nullptr));
  ASSERT_NE(nullptr, AddTop(dst, QMS_NODE_CONTAINER, "c"));
  QmsNode* node = AddTop(src, QMS_NODE_CONTAINER, "c");
  ASSERT_EQ(QM_OK, QMS_EXT_AppendOneExtInstToArray(dict, &node->extInsts, &node->extInstCount, "x",
                                                   "inst", nullptr));
}

// Each allocation of a merge is refused once; every failure names its step first.
TEST(MergeWithoutMemory, EachStepReportsItsFailureWith12Or22) {
  std::set<std::string> firstMessages;
  for (uint64_t n = 1;; ++n) {
    SCOPED_TRACE(n);
    QmCtx* ctx = QM_CTX_Create(0);
    ASSERT_NE(nullptr, ctx);
    QmsModule* dst = NewModule(ctx, "m");
    QmsModule* src = NewModule(ctx, "m");
    FillSource(ctx, dst, src);
    counting_memory::RefuseNth(n, Refuse::kOnce);
    const uint32_t ret = QMS_MOD_MergeTwoModuleInSameCtx(dst, src);
    const bool refused = counting_memory::StopRefusing() != 0;
    const std::vector<std::string> said = Messages(ctx, "m");
    if (refused) {
      EXPECT_TRUE(ret == QM_NO_MEMORY || ret == QM_INVALID) << ret;
      EXPECT_EQ(2u, said.size());
      if (!said.empty()) firstMessages.insert(said[0]);
    } else {
      EXPECT_EQ(QM_OK, ret);
    }
    QMS_MOD_Free(src);
    QMS_MOD_Free(dst);
    QM_CTX_Delete(ctx);
    if (!refused) break;
  }
  EXPECT_THAT(
      firstMessages,
      testing::UnorderedElementsAre(
          "Failed to merge import module name \"other\" with prefix \"o\".",
          "Failed to merge include module name \"s\".", "Failed to merge feature name \"f\".",
          "Failed to merge if-feature informations of feature \"f\".",
          "Failed to merge identity name \"i\".",
          "Failed to merge base informations of identity \"i\".",
          "Failed to merge if-feature informations of identity \"i\".",
          "Failed to merge extension name \"e\".", "Failed to merge deviation \"/a:b\".",
          "Failed to merge deviate informations of deviation \"/a:b\".",
          "Failed to merge typedef \"t\".",
          "Failed to merge global extension instance informations.",
          "Failed to merge node \"c\" with diff reason \"extension\"."));
}

void BuildAndMerge(bool refusing) {
  QmCtx* ctx = QM_CTX_Create(0);
  if (ctx == nullptr) return;
  QmsModule* dst = NewModule(ctx, "m");
  QmsModule* src = NewModule(ctx, "m");
  if (dst != nullptr && src != nullptr) {
    QmtType type = {};
    type.baseType = QMT_BASE_INT8;
    uint32_t failed = 0;
    failed += QMS_MOD_AppendOneTypeDef(dst, "a", &type, nullptr) != 0;
    failed += QMS_MOD_AppendOneTypeDef(src, "b", &type, "1") != 0;
    failed += QMS_MOD_AppendOneFeature(src, "f") != 0;
    failed += AddTop(dst, QMS_NODE_LEAF, "l") == nullptr;
    failed += AddTop(src, QMS_NODE_LEAF, "k") == nullptr;
    const uint32_t ret = QMS_MOD_MergeTwoModuleInSameCtx(dst, src);
    if (!refusing) {
      EXPECT_EQ(0u, failed + ret);
    }
    if (failed + ret == 0) {
      EXPECT_EQ("l k", ListText(dst->dataNodes));
    }
  }
  QMS_MOD_Free(src);
  QMS_MOD_Free(dst);
  QM_CTX_Delete(ctx);
}

TEST(MergeWithoutMemory, NothingLeaksWhateverFails) {
  EXPECT_GT(counting_memory::FailEachAllocation(BuildAndMerge), 30u);
}

}  // namespace
