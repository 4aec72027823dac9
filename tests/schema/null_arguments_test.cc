// SPDX-License-Identifier: BSD-3-Clause
// What the functions of module and node records answer when an argument is missing.
// They are called by the loader with what a file gave it, and a missing text or
// record must end in a status, with nothing changed.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "context/dict.h"
#include "context/memory.h"
#include "schema/definitions.h"
#include "schema/ext_inst.h"
#include "schema/flags.h"
#include "schema/lookup.h"
#include "schema/merge_tree.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/node_copy.h"
#include "schema/node_link.h"
#include "schema/node_path.h"
#include "schema/node_walk.h"
#include "schema/typedef.h"
#include "tests/support/module_builder.h"
#include "tests/support/module_fixture.h"
#include "tests/support/null_arguments.h"
#include "yin/augment_condition.h"

namespace {

using null_arguments::ExpectEachGives;

class NullArguments : public module_fixture::OneModule {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(OneModule::SetUp());
    ASSERT_NE(nullptr, node_ = module_builder::AddTop(module_, QMS_NODE_CONTAINER, "n"));
  }

  QmsNode* node_ = nullptr;
};

TEST_F(NullArguments, AreRefusedByFillingOfDefinitionsWith22) {
  QmsImport import = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillImport, dict_, &import, "m", "p");
  QmsInclude include = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillInclude, dict_, &include, "s");
  QmsFeature feature = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillFeature, dict_, &feature, "f");
  QmsIdentity identity = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillIdentity, dict_, &identity, "i");
  QmsIdentBase base = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillIdentBase, dict_, &base, "p", "i");
  QmsExtension extension = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_SetExtension, dict_, &extension, "e", nullptr, 0);
  QmsDeviation deviation = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillDeviationTargetNode, dict_, &deviation, "/m:n");
  QmsTypedef td = {};
  QmtType type = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillTypeDef, dict_, &td, "t", &type, nullptr);
  QmsDeviate from = {}, to = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_FillDeviate, dict_, &to, &from);

  EXPECT_EQ(nullptr, import.moduleName);
  EXPECT_EQ(nullptr, import.prefix);
  EXPECT_EQ(nullptr, include.submoduleName);
  EXPECT_EQ(nullptr, base.prefix);
  EXPECT_EQ(nullptr, extension.name);
  EXPECT_EQ(nullptr, td.name);
}

TEST_F(NullArguments, AreRefusedByArraysOfNodesWith22) {
  QmsIfFeature* ifFeatures = nullptr;
  QmsMust* musts = nullptr;
  QmsExtInst* insts = nullptr;
  uint16_t count = 0;
  QmsIfFeature ifFeature = {};
  QmsMust must = {}, set = {};
  set.condition = "c";
  QmsExtInst inst = {}, other = {};
  QmsLeafList leafList = {};
  ExpectEachGives(QM_INVALID, QMS_NODE_FillIfFeature, dict_, &ifFeature, "m", "f");
  ExpectEachGives(QM_INVALID, QMS_NODE_AppendOneIfFeat, dict_, &ifFeatures, &count, "m", "f");
  ExpectEachGives(QM_INVALID, QMS_NODE_FillMust, dict_, &must, "c", nullptr, nullptr);
  ExpectEachGives(QM_INVALID, QMS_NODE_AppendOneMust, dict_, &musts, &count, &set);
  ExpectEachGives(QM_INVALID, QMS_NODE_SubtractMustsArray, dict_, &musts, 0, 0);
  const char* const values[] = {"v"};
  ExpectEachGives(QM_INVALID, QMS_NODE_AppendLeaflistDefaults, dict_, &leafList, 1, values);
  ExpectEachGives(QM_INVALID, QMS_NODE_SubtractLeaflistDefaults, dict_, &leafList, 0);
  ExpectEachGives(QM_INVALID, QMS_EXT_FillExtInst, dict_, &inst, "m", "e", nullptr);
  ExpectEachGives(QM_INVALID, QMS_EXT_AppendOneExtInstToArray, dict_, &insts, &count, "m", "e",
                  nullptr);
  ExpectEachGives(QM_INVALID, QMS_EXT_UpdateExtInstChildInsts, dict_, &inst, &other);
  inst.module = "m";
  inst.name = "e";
  ExpectEachGives(QM_INVALID, QMS_EXT_MergeOneExtInstToArray, dict_, &insts, &count, &inst);
  ExpectEachGives(QM_INVALID, QMS_EXT_SubtractExtInstArray, dict_, &insts, 0, 0);
  EXPECT_EQ(QM_INVALID, QMS_EXT_MergeExtInsts(dict_, nullptr, &count, &inst, 1));
  EXPECT_EQ(QM_INVALID, QMS_EXT_MergeExtInsts(dict_, &insts, nullptr, &inst, 1));
  ExpectEachGives(QM_INVALID, QMS_NODE_AppendOneExtInst, dict_, node_, "m", "e", nullptr);
  ExpectEachGives(QM_INVALID, QMS_NODE_InheritAugNodeIfFeatArrayToChildNode, dict_, node_, node_);

  EXPECT_EQ(0, count);
  EXPECT_EQ(nullptr, ifFeatures);
  EXPECT_EQ(nullptr, musts);
  EXPECT_EQ(nullptr, insts);
  EXPECT_EQ(nullptr, leafList.defaults);
  EXPECT_EQ(nullptr, node_->extInsts);
}

TEST_F(NullArguments, EqualNothing) {
  const QmsFeature feature = {};
  ExpectEachGives(0, QMS_MOD_CheckTwoFeatureSame, &feature, &feature);
  const QmsIdentity identity = {};
  ExpectEachGives(0, QMS_MOD_CheckTwoIdentitySame, &identity, &identity);
  const QmsIdentBase base = {};
  ExpectEachGives(0, QMS_MOD_CheckTwoIdentBaseSame, &base, &base);
  const QmsExtension extension = {};
  ExpectEachGives(0, QMS_MOD_CheckTwoExtensionSame, &extension, &extension);
  const QmsDeviate deviate = {};
  ExpectEachGives(0, QMS_MOD_CheckTwoDeviateSame, &deviate, &deviate);
  const QmsIfFeature ifFeature = {};
  ExpectEachGives(0, QMS_NODE_CheckTwoIfFeatureSame, &ifFeature, &ifFeature);
  const QmsMust must = {};
  ExpectEachGives(0, QMS_NODE_CheckTwoMustSame, &must, &must);
  const QmsExtInst inst = {};
  ExpectEachGives(0, QMS_EXT_CheckTwoExtInstSame, &inst, &inst);
  ExpectEachGives(QMS_DIFF_OTHER, QMS_NODE_CompareTwoTreeNodeSelfData, node_, node_);
}

TEST_F(NullArguments, FindNothing) {
  QmsIfFeature ifFeature = {};
  ExpectEachGives(nullptr, QMS_NODE_FindIfFeature, &ifFeature, 1, "m", "f");
  QmsImport import = {};
  ExpectEachGives(nullptr, QMS_MOD_FindImportByPrefix, &import, 1, "p");
  QmsNode* found = nullptr;
  QmsModule* in = nullptr;
  ExpectEachGives(nullptr, QMS_MOD_GetRelativePathRealStartNode, module_, node_, "../x", &found);
  ExpectEachGives(nullptr, QMS_MOD_GetStartPathAndNode, module_, node_, "x", &found, &in);
  EXPECT_EQ(nullptr, QMS_MOD_GetDataTreeNodeByNodeIdentifier(nullptr, &in, nullptr, "m", "n"));
  EXPECT_EQ(nullptr, QMS_MOD_GetDataTreeNodeByNodeIdentifier(ctx_, nullptr, nullptr, "m", "n"));
  EXPECT_EQ(nullptr, QMS_MOD_GetDataTreeNodeByNodeIdentifier(ctx_, &in, nullptr, "m", nullptr));
  EXPECT_EQ(nullptr, QMS_MOD_GetDataTreeNodeByNodeIdentifier(ctx_, &in, nullptr, nullptr, "n"));
}

TEST_F(NullArguments, AreRefusedByTheMergeOfTreesWith22) {
  QmsModule* other = module_builder::NewModule(ctx_, "o");
  ASSERT_NE(nullptr, other);
  QmsNode* moved = module_builder::AddTop(other, QMS_NODE_CONTAINER, "c");
  QmsNode* list = node_;
  QmsNode* none = nullptr;
  uint32_t goOn = 7;
  ExpectEachGives(QM_INVALID, QMS_NODE_MergeDstNodeWithMimExtInst, node_, moved);
  ExpectEachGives(QM_INVALID, QMS_NODE_MergeNodeListWithDiffReason, node_, moved, module_,
                  QMS_DIFF_NAME, &goOn);
  ExpectEachGives(QM_INVALID, QMS_NODE_MergeNodeListToTgtWithTravType, node_, moved,
                  QMS_TRAV_CHILD);
  ExpectEachGives(QM_INVALID, QMS_NODE_MoveExtraNodeList, &none, moved, nullptr, module_);
  ExpectEachGives(QM_INVALID, QMS_NODE_CompareAndMergeNodeList, &list, &moved, nullptr, module_);
  ExpectEachGives(QM_INVALID, QMS_NODE_RefreshNodeTreeToQmMod, moved, module_);
  ExpectEachGives(QM_INVALID, QMS_MOD_MergeTreeNodeData, module_, other);
  QMS_NODE_RecordNodeListMergeError(nullptr, node_, nullptr, QMS_DIFF_NAME);
  QMS_NODE_RecordNodeListMergeError(module_, nullptr, nullptr, QMS_DIFF_NAME);
  QMS_NODE_RecordExtraNodeListMergeError(nullptr, node_, nullptr);
  QMS_NODE_RecordExtraNodeListMergeError(module_, nullptr, nullptr);

  EXPECT_EQ(7u, goOn);
  EXPECT_EQ(other, moved->module);
  EXPECT_EQ(moved, other->dataNodes);
  EXPECT_EQ(nullptr, node_->next);
  QMS_MOD_Free(other);
}

TEST_F(NullArguments, EndAWalk) {
  uint32_t how = QMS_TRAV_TOP;
  QmsNode* child = module_builder::AddChild(node_, QMS_NODE_LEAF, "l");
  ExpectEachGives(nullptr, QMS_NODE_GetTreeNodeNextNode, node_, child, &how);
  ExpectEachGives(nullptr, QMS_NODE_GetTreeNodeSibOrParent, node_, child, &how);
}

TEST_F(NullArguments, AreNotCopied) {
  const QmsLeaf leaf = {};
  ExpectEachGives(nullptr, QMS_NODE_CopySchemaLeaf, dict_, static_cast<const void*>(&leaf));
  const QmsLeafList leafList = {};
  ExpectEachGives(nullptr, QMS_NODE_CopySchemaLeaflist, dict_, static_cast<const void*>(&leafList));
  const QmsChoice choice = {};
  ExpectEachGives(nullptr, QMS_NODE_CopySchemaChoice, dict_, static_cast<const void*>(&choice));
  ExpectEachGives(nullptr, QMS_NODE_CopyOneNodeToModule, node_, module_);
  ExpectEachGives(nullptr, QMS_NODE_CopyNodeTreeToModule, node_, module_);
}

TEST_F(NullArguments, AreNeitherClearedNorMoved) {
  QMS_MOD_ClearImport(dict_, nullptr);
  QMS_MOD_ClearInclude(dict_, nullptr);
  QMS_MDL_ClearFeature(dict_, nullptr);
  QMS_MDL_ClearIdentity(dict_, nullptr);
  QMS_MDL_ClearIdentBase(dict_, nullptr);
  QMS_MDL_ClearExtension(dict_, nullptr);
  QMS_MOD_ClearDeviate(dict_, nullptr);
  QMS_MOD_ClearDeviation(dict_, nullptr);
  QMS_NODE_ClearIfFeature(dict_, nullptr);
  QMS_NODE_ClearMust(dict_, nullptr);
  QMS_EXT_ClearExtInst(dict_, nullptr);
  QMS_NODE_DestroyPrivateData(nullptr, node_);
  QMS_NODE_DestroyPrivateData(ctx_, nullptr);
  QM_NODE_CalibrateTopNodeAddress(nullptr, node_);
  EXPECT_EQ(node_, module_->dataNodes);

  QmsMust must = {};
  must.condition = "c";
  QMS_NODE_AssignMoveMust(&must, nullptr);
  QMS_NODE_AssignMoveMust(nullptr, &must);
  QMS_NODE_AssignMoveMust(&must, &must);
  EXPECT_STREQ("c", must.condition);
}

TEST_F(NullArguments, AreRefusedByKeysPathsAndInheritanceWith22) {
  uint8_t keys = 0;
  QmsNode* list = module_builder::AddTop(module_, QMS_NODE_LIST, "l");
  ASSERT_NE(nullptr, module_builder::AddChild(list, QMS_NODE_LEAF, "k"));
  EXPECT_EQ(QM_INVALID, QMS_NODE_MarkKeyAttrToListLeafs(nullptr, "k", &keys));
  EXPECT_EQ(QM_INVALID, QMS_NODE_MarkKeyAttrToListLeafs(list, "k", nullptr));
  EXPECT_EQ(0u, list->firstChild->flags & QMS_NODE_KEY);
  char path[8];
  uint32_t length = 0;
  ExpectEachGives(QM_INVALID, QMS_NODE_PrintJsonPathRecursive, node_, path, sizeof path, &length);
  ExpectEachGives(QM_INVALID, QMS_NODE_InheritAugNodeEvalToAllChildNode, dict_, node_);
  ExpectEachGives(QM_INVALID, QMS_NODE_InheritAugNodeWhenCondToChildNode, dict_, nullptr, node_);
}

}  // namespace
