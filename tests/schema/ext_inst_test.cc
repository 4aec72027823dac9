// SPDX-License-Identifier: BSD-3-Clause
#include "schema/ext_inst.h"

#include <gtest/gtest.h>

#include <string>

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/array.h"
#include "context/dict.h"
#include "schema/module.h"
#include "tests/support/counting_memory.h"
#include "tests/support/module_builder.h"
#include "tests/support/module_fixture.h"

namespace {

using counting_memory::Refuse;
using module_builder::AddChild;
using module_builder::AddTop;
using module_builder::NewModule;
using module_builder::References;

constexpr const char* kNacm = "ietf-netconf-acm";

// The instances of an array: "module:name=argument", nested ones in parentheses.
std::string InstText(const QmsExtInst* array, uint32_t count) {
  std::string text;
  for (uint32_t i = 0; i < count; ++i) {
    if (i > 0) text += ' ';
    text += std::string(array[i].module) + ":" + array[i].name;
    if (array[i].argument != nullptr) text += std::string("=") + array[i].argument;
    if (array[i].childCount > 0) {
      text += "(" + InstText(array[i].children, array[i].childCount) + ")";
    }
  }
  return text;
}

class ExtInst : public module_fixture::OneModule {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(OneModule::SetUp());
    container_ = AddTop(module_, QMS_NODE_CONTAINER, "c");
    ASSERT_NE(nullptr, container_);
  }
  void TearDown() override {
    QMS_EXT_FreeExtInsts(dict_, array_, count_);
    OneModule::TearDown();
  }
  void Append(const char* module, const char* name, const char* argument) {
    ASSERT_EQ(QM_OK,
              QMS_EXT_AppendOneExtInstToArray(dict_, &array_, &count_, module, name, argument));
  }
  // Nests an instance in the last one of the array.
  void Nest(const char* module, const char* name) {
    QmsExtInst* outer = &array_[count_ - 1];
    ASSERT_EQ(QM_OK, QMS_EXT_AppendOneExtInstToArray(dict_, &outer->children, &outer->childCount,
                                                     module, name, nullptr));
  }
  std::string Text() const { return InstText(array_, count_); }
  std::string NodeText() const { return InstText(container_->extInsts, container_->extInstCount); }

  QmsNode* container_ = nullptr;
  QmsExtInst* array_ = nullptr;
  uint16_t count_ = 0;
};

TEST_F(ExtInst, FillRefusesMissingModuleOrNameWith22) {
  QmsExtInst inst = {};
  EXPECT_EQ(QM_INVALID, QMS_EXT_FillExtInst(dict_, &inst, nullptr, "n", "a"));
  EXPECT_EQ(QM_INVALID, QMS_EXT_FillExtInst(dict_, &inst, "x", nullptr, "a"));
  EXPECT_EQ(QM_INVALID, QMS_EXT_FillExtInst(dict_, nullptr, "x", "n", "a"));
  EXPECT_EQ(QM_INVALID,
            QMS_EXT_AppendOneExtInstToArray(dict_, &array_, &count_, nullptr, "n", "a"));
  EXPECT_EQ(QM_INVALID,
            QMS_EXT_AppendOneExtInstToArray(dict_, &array_, &count_, "x", nullptr, "a"));
  EXPECT_EQ(0, count_);
}

TEST_F(ExtInst, FillWithoutMemoryGives12AndLeavesTheRecordClear) {
  for (uint64_t n = 1; n <= 6; ++n) {  // three texts of two blocks each
    QmsExtInst inst = {};
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QMS_EXT_FillExtInst(dict_, &inst, "x", "n", "a"));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(nullptr, inst.module);
    EXPECT_EQ(nullptr, inst.name);
    EXPECT_EQ(0u, References(dict_, "x"));
  }
}

TEST_F(ExtInst, SameMeansModuleNameAndArgumentNotChildren) {
  Append("x", "n", "a");
  Append("x", "n", "a");
  Nest("x", "inner");
  Append("x", "n", nullptr);
  Append("y", "n", "a");
  Append("x", "o", "a");
  EXPECT_EQ(1u, QMS_EXT_CheckTwoExtInstSame(&array_[0], &array_[1]));
  EXPECT_EQ(0u, QMS_EXT_CheckTwoExtInstSame(&array_[0], &array_[2]));
  EXPECT_EQ(0u, QMS_EXT_CheckTwoExtInstSame(&array_[0], &array_[3]));
  EXPECT_EQ(0u, QMS_EXT_CheckTwoExtInstSame(&array_[0], &array_[4]));
  EXPECT_EQ(0u, QMS_EXT_CheckTwoExtInstSame(&array_[0], nullptr));
}

TEST_F(ExtInst, FindGivesTheFirstSameElement) {
  Append("y", "n", nullptr);
  Append("x", "n", "a");
  Append("x", "n", "a");
  EXPECT_EQ(&array_[1], QMS_EXT_FindSameExtInstInArray(array_, count_, &array_[2]));
  EXPECT_EQ(nullptr, QMS_EXT_FindSameExtInstInArray(array_, 1, &array_[2]));
  EXPECT_EQ(nullptr, QMS_EXT_FindSameExtInstInArray(array_, 0, &array_[2]));
  EXPECT_EQ(nullptr, QMS_EXT_FindSameExtInstInArray(nullptr, 3, &array_[2]));
}

TEST_F(ExtInst, CopyIsDeepAndHoldsReferencesOfItsOwn) {
  Append("x", "outer", "a");
  Nest("x", "inner");
  QmsExtInst* copy = QMS_EXT_CopyExtInsts(dict_, array_, count_);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ("x:outer=a(x:inner)", InstText(copy, 1));
  EXPECT_NE(array_[0].children, copy[0].children);
  EXPECT_EQ(2u, References(dict_, "inner"));
  QMS_EXT_FreeExtInsts(dict_, copy, 1);
  EXPECT_EQ(1u, References(dict_, "inner"));
  EXPECT_EQ(nullptr, QMS_EXT_CopyExtInsts(dict_, array_, 0));
}

TEST_F(ExtInst, FailedCopyGivesNullAndFreesWhatWasCopied) {
  Append("x", "outer", "a");
  Nest("x", "inner");
  // The texts are held already, so the copy only allocates its two arrays.
  for (uint64_t n = 1; n <= 2; ++n) {
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(nullptr, QMS_EXT_CopyExtInsts(dict_, array_, count_));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(1u, References(dict_, "outer"));
  }
}

TEST_F(ExtInst, UpdateChildrenCopiesThoseOfTheSource) {
  Append("x", "outer", nullptr);
  Nest("x", "inner");
  QmsExtInst dst = {};
  EXPECT_EQ(QM_OK, QMS_EXT_UpdateExtInstChildInsts(dict_, &dst, &array_[0]));
  EXPECT_EQ("x:inner", InstText(dst.children, dst.childCount));
  QMS_EXT_ClearExtInst(dict_, &dst);
  EXPECT_EQ(nullptr, dst.children);
  EXPECT_EQ(0, dst.childCount);
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_EXT_UpdateExtInstChildInsts(dict_, &dst, &array_[0]));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(0, dst.childCount);
  EXPECT_EQ(QM_INVALID, QMS_EXT_UpdateExtInstChildInsts(dict_, &dst, nullptr));
}

TEST_F(ExtInst, MergeOfOneAppendsACopyWithItsChildren) {
  Append("x", "outer", nullptr);
  Nest("x", "inner");
  QmsExtInst* target = nullptr;
  uint16_t targetCount = 0;
  EXPECT_EQ(QM_OK, QMS_EXT_MergeOneExtInstToArray(dict_, &target, &targetCount, &array_[0]));
  // Merged once more: here the caller decides whether the array has it already.
  EXPECT_EQ(QM_OK, QMS_EXT_MergeOneExtInstToArray(dict_, &target, &targetCount, &array_[0]));
  EXPECT_EQ("x:outer(x:inner) x:outer(x:inner)", InstText(target, targetCount));
  QMS_EXT_FreeExtInsts(dict_, target, targetCount);
}

TEST_F(ExtInst, MergeOfAnElementIntoItsOwnArrayCopiesIt) {
  Append("x", "outer", nullptr);
  Nest("x", "inner");
  EXPECT_EQ(QM_OK, QMS_EXT_MergeOneExtInstToArray(dict_, &array_, &count_, &array_[0]));
  EXPECT_EQ("x:outer(x:inner) x:outer(x:inner)", Text());
}

TEST_F(ExtInst, MergeOfOneWithoutMemoryForChildrenKeepsTheCount) {
  Append("x", "outer", nullptr);
  Nest("x", "inner");
  counting_memory::RefuseNth(2, Refuse::kOnce);  // the grown array is first
  EXPECT_EQ(QM_NO_MEMORY, QMS_EXT_MergeOneExtInstToArray(dict_, &array_, &count_, &array_[0]));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("x:outer(x:inner)", Text());
  EXPECT_EQ(1u, References(dict_, "outer"));
}

TEST_F(ExtInst, MergeTakesOnlyWhatTheArrayLacks) {
  Append("x", "a", nullptr);
  QmsExtInst* source = nullptr;
  uint16_t sourceCount = 0;
  for (const char* name : {"b", "a", "b", "c"}) {
    ASSERT_EQ(QM_OK,
              QMS_EXT_AppendOneExtInstToArray(dict_, &source, &sourceCount, "x", name, nullptr));
  }
  EXPECT_EQ(QM_OK, QMS_EXT_MergeExtInsts(dict_, &array_, &count_, source, sourceCount));
  EXPECT_EQ("x:a x:b x:c", Text());
  EXPECT_EQ(QM_OK, QMS_EXT_MergeExtInsts(dict_, &array_, &count_, nullptr, 4));
  QMS_EXT_FreeExtInsts(dict_, source, sourceCount);
}

TEST_F(ExtInst, MergeStopsAtTheFirstFailure) {
  QmsExtInst* source = nullptr;
  uint16_t sourceCount = 0;
  for (const char* name : {"a", "b", "c"}) {
    ASSERT_EQ(QM_OK,
              QMS_EXT_AppendOneExtInstToArray(dict_, &source, &sourceCount, "x", name, nullptr));
  }
  counting_memory::RefuseNth(2, Refuse::kOnce);  // the array for "b"
  EXPECT_EQ(QM_NO_MEMORY, QMS_EXT_MergeExtInsts(dict_, &array_, &count_, source, sourceCount));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("x:a", Text());
  QMS_EXT_FreeExtInsts(dict_, source, sourceCount);
}

TEST_F(ExtInst, FullCounterIsRefusedWith22) {
  ASSERT_EQ(QM_OK, NewArrayOf(&array_, 65535));
  count_ = 65535;
  EXPECT_EQ(QM_INVALID,
            QMS_EXT_AppendOneExtInstToArray(dict_, &array_, &count_, "x", "n", nullptr));
  EXPECT_EQ(65535, count_);
}

TEST_F(ExtInst, SubtractKeepsTheInstancesThatAreStillSet) {
  Append("x", "a", nullptr);
  Append("x", "b", nullptr);
  Nest("x", "inner");
  Append("x", "c", nullptr);
  QMS_EXT_ClearExtInst(dict_, &array_[0]);
  EXPECT_EQ(QM_OK, QMS_EXT_SubtractExtInstArray(dict_, &array_, 3, 2));
  count_ = 2;
  EXPECT_EQ("x:b(x:inner) x:c", Text());
  EXPECT_EQ(1u, References(dict_, "inner"));
}

TEST_F(ExtInst, SubtractToNothingFreesTheArray) {
  Append("x", "a", nullptr);
  QMS_EXT_ClearExtInst(dict_, &array_[0]);
  EXPECT_EQ(QM_OK, QMS_EXT_SubtractExtInstArray(dict_, &array_, 1, 0));
  EXPECT_EQ(nullptr, array_);
  count_ = 0;
}

TEST_F(ExtInst, SubtractWithoutMemoryFreesBothArrays) {
  Append("x", "a", nullptr);
  Append("x", "b", nullptr);
  QMS_EXT_ClearExtInst(dict_, &array_[0]);
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_EXT_SubtractExtInstArray(dict_, &array_, 2, 1));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, array_);
  EXPECT_EQ(0u, References(dict_, "b"));
  count_ = 0;
}

TEST_F(ExtInst, ClearAcceptsAnEmptyRecordAndNull) {
  QmsExtInst inst = {};
  QMS_EXT_ClearExtInst(dict_, &inst);
  QMS_EXT_ClearExtInst(dict_, nullptr);
  QMS_EXT_FreeExtInsts(dict_, nullptr, 2);
}

using NodeExtInst = ExtInst;

TEST_F(NodeExtInst, AppendingTheSameTwiceLeavesOne) {
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "n", "a"));
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "n", "a"));
  EXPECT_EQ("x:n=a", NodeText());
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "n", nullptr));
  EXPECT_EQ("x:n=a x:n", NodeText());
  EXPECT_EQ(2u, References(dict_, "n"));
}

TEST_F(NodeExtInst, DenyWriteMarksTheNodeAndAllItsDescendants) {
  QmsNode* list = AddChild(container_, QMS_NODE_LIST, "l");
  QmsNode* leaf = AddChild(AddChild(list, QMS_NODE_CHOICE, "ch"), QMS_NODE_LEAF, "x");
  QmsNode* beside = AddTop(module_, QMS_NODE_LEAF, "beside");
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, kNacm, "default-deny-write", nullptr));
  for (const QmsNode* node : {container_, list, leaf->parent, leaf}) {
    EXPECT_EQ(1u, QM_NODE_IsNacmDefaultDenyWrite(node)) << node->name;
    EXPECT_EQ(0u, QM_NODE_IsNacmDefaultDenyAll(node)) << node->name;
  }
  EXPECT_EQ(0u, QM_NODE_IsNacmDefaultDenyWrite(beside));
}

TEST_F(NodeExtInst, DenyAllMarksWithItsOwnBit) {
  QmsNode* leaf = AddChild(container_, QMS_NODE_LEAF, "x");
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, kNacm, "default-deny-all", nullptr));
  EXPECT_EQ(0x2000u, container_->flags);
  EXPECT_EQ(0x2000u, leaf->flags);
}

TEST_F(NodeExtInst, OtherNamesAndOtherModulesMarkNothing) {
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, kNacm, "something", nullptr));
  EXPECT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "default-deny-all", nullptr));
  EXPECT_EQ(0u, container_->flags);
}

TEST_F(NodeExtInst, AppendRefusesMissingArgumentsWith22) {
  QmsNode outside = {};
  QmsModule bare = {};
  QmsNode orphan = {};
  orphan.module = &bare;
  EXPECT_EQ(QM_INVALID, QM_NODE_AppendExtInst(nullptr, "x", "n", nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_AppendExtInst(&outside, "x", "n", nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_AppendExtInst(&orphan, "x", "n", nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_AppendExtInst(container_, nullptr, "n", nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_AppendExtInst(container_, "x", nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendOneExtInst(dict_, nullptr, "x", "n", nullptr));
  EXPECT_EQ(nullptr, container_->extInsts);
}

TEST_F(NodeExtInst, AppendWithoutMemoryGives12AndChangesNothing) {
  for (uint64_t n = 1; n <= 4; ++n) {
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QM_NODE_AppendExtInst(container_, kNacm, "default-deny-all", nullptr));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(0, container_->extInstCount);
    EXPECT_EQ(0u, container_->flags);
  }
}

TEST_F(NodeExtInst, ReplaceGivesTheDestinationACopyOfTheSourcesInstances) {
  QmsNode* source = AddTop(module_, QMS_NODE_LEAF, "s");
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "old", nullptr));
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(source, "y", "a", "1"));
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(source, "y", "b", nullptr));
  EXPECT_EQ(QM_OK, QM_NODE_ReplaceDstExtInst(container_, source));
  EXPECT_EQ("y:a=1 y:b", NodeText());
  EXPECT_EQ(0u, References(dict_, "old"));
  EXPECT_EQ(QM_OK, QM_NODE_ReplaceDstExtInst(container_, container_));
  EXPECT_EQ("y:a=1 y:b", NodeText());
}

TEST_F(NodeExtInst, ReplaceFromAnotherContextInternsAnew) {
  QmCtx* otherCtx = QM_CTX_Create(0);
  ASSERT_NE(nullptr, otherCtx);
  QmsModule* other = NewModule(otherCtx, "o");
  QmsNode* source = AddTop(other, QMS_NODE_LEAF, "s");
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(source, "y", "a", "1"));
  EXPECT_EQ(QM_OK, QM_NODE_ReplaceDstExtInst(container_, source));
  QMS_MOD_Free(other);
  QM_CTX_Delete(otherCtx);
  EXPECT_EQ("y:a=1", NodeText());
  EXPECT_EQ(1u, References(dict_, "y"));
}

TEST_F(NodeExtInst, ReplaceFromANodeWithoutInstancesGives22AndChangesNothing) {
  QmsNode* source = AddTop(module_, QMS_NODE_LEAF, "s");
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "old", nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_ReplaceDstExtInst(container_, source));
  EXPECT_EQ(QM_INVALID, QM_NODE_ReplaceDstExtInst(container_, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_ReplaceDstExtInst(nullptr, container_));
  QmsNode outside = {};
  EXPECT_EQ(QM_INVALID, QM_NODE_ReplaceDstExtInst(&outside, container_));
  EXPECT_EQ("x:old", NodeText());
}

TEST_F(NodeExtInst, ReplaceWithoutMemoryGives12AndChangesNothing) {
  QmsNode* source = AddTop(module_, QMS_NODE_LEAF, "s");
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "old", nullptr));
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(source, "y", "a", "1"));
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QM_NODE_ReplaceDstExtInst(container_, source));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("x:old", NodeText());
}

TEST_F(NodeExtInst, CleanRemovesAll) {
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "a", nullptr));
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "b", nullptr));
  QM_NODE_CleanExtInsts(container_);
  EXPECT_EQ(nullptr, container_->extInsts);
  EXPECT_EQ(0, container_->extInstCount);
  EXPECT_EQ(0u, References(dict_, "x"));
  QM_NODE_CleanExtInsts(container_);
  QM_NODE_CleanExtInsts(nullptr);
}

struct Scan {
  std::string seen;
  int stopAfter = 0;
  int calls = 0;
};

uint32_t See(QmsExtInst* inst, const char* module, const char* name, const char* argument,
             void* arg) {
  auto* scan = static_cast<Scan*>(arg);
  EXPECT_EQ(inst->name, name);
  scan->seen += std::string(module) + ":" + name + "=";
  scan->seen += std::string(argument == nullptr ? "-" : argument) + " ";
  return ++scan->calls == scan->stopAfter ? 77 : 0;
}

using ScanExtInsts = ExtInst;

TEST_F(ScanExtInsts, NodeScanIsInOrderAndEndsAtTheFirstNonZeroResult) {
  for (const char* name : {"c", "a", "b"}) {
    ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", name, "v"));
  }
  Scan all;
  EXPECT_EQ(QM_OK, QM_NODE_ScanAllExtInsts(container_, See, &all));
  EXPECT_EQ("x:c=v x:a=v x:b=v ", all.seen);
  Scan stopped{"", 2, 0};
  EXPECT_EQ(77u, QM_NODE_ScanAllExtInsts(container_, See, &stopped));
  EXPECT_EQ("x:c=v x:a=v ", stopped.seen);
}

TEST_F(ScanExtInsts, ModuleScanVisitsThoseOfTheModuleOnly) {
  ASSERT_EQ(QM_OK, QM_NODE_AppendExtInst(container_, "x", "of-node", nullptr));
  Scan none;
  EXPECT_EQ(QM_OK, QM_MOD_ScanAllExtInsts(module_, See, &none));
  EXPECT_EQ("", none.seen);
  ASSERT_EQ(QM_OK,
            QMS_EXT_AppendOneExtInstToArray(dict_, &module_->extInsts, &module_->extInstCount, "x",
                                            "of-module", nullptr));
  Scan one{"", 1, 0};
  EXPECT_EQ(77u, QM_MOD_ScanAllExtInsts(module_, See, &one));
  EXPECT_EQ("x:of-module=- ", one.seen);
}

TEST_F(ScanExtInsts, ChildScanVisitsOneLevel) {
  Append("x", "outer", nullptr);
  Nest("x", "a");
  Nest("y", "b");
  Scan all;
  EXPECT_EQ(QM_OK, QM_EXT_ScanAllChildExtInsts(&array_[0], See, &all));
  EXPECT_EQ("x:a=- y:b=- ", all.seen);
  Scan stopped{"", 1, 0};
  EXPECT_EQ(77u, QM_EXT_ScanAllChildExtInsts(&array_[0], See, &stopped));
  EXPECT_EQ("x:a=- ", stopped.seen);
}

TEST_F(ScanExtInsts, MissingArgumentsAreRefusedWith22) {
  QmsExtInst inst = {};
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanAllExtInsts(nullptr, See, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanAllExtInsts(container_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanAllExtInsts(nullptr, See, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanAllExtInsts(module_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_EXT_ScanAllChildExtInsts(nullptr, See, nullptr));
  EXPECT_EQ(QM_INVALID, QM_EXT_ScanAllChildExtInsts(&inst, nullptr, nullptr));
  EXPECT_EQ(QM_OK, QM_NODE_ScanAllExtInsts(container_, See, nullptr));
  EXPECT_EQ(QM_OK, QM_EXT_ScanAllChildExtInsts(&inst, See, nullptr));
}

void AppendCopyAndSubtract(bool refusing) {
  QmCtx* ctx = QM_CTX_Create(0);
  if (ctx == nullptr) return;
  QmDict* dict = &ctx->dict;
  QmsExtInst* array = nullptr;
  uint16_t count = 0;
  uint32_t failed = 0;
  for (const char* name : {"a", "b", "c"}) {
    failed += QMS_EXT_AppendOneExtInstToArray(dict, &array, &count, "x", name, "v") != 0;
  }
  EXPECT_EQ(3u - failed, count);
  QmsExtInst* copy = QMS_EXT_CopyExtInsts(dict, array, count);
  if (!refusing) {
    EXPECT_EQ(0u, failed);
    EXPECT_NE(nullptr, copy);
  }
  QMS_EXT_FreeExtInsts(dict, copy, count);
  if (count == 3) {
    QMS_EXT_ClearExtInst(dict, &array[1]);
    const uint32_t ret = QMS_EXT_SubtractExtInstArray(dict, &array, 3, 2);
    EXPECT_EQ(ret == QM_OK, array != nullptr);
    count = 2;
  }
  QMS_EXT_FreeExtInsts(dict, array, count);
  QM_CTX_Delete(ctx);
}

TEST(ExtInstWithoutMemory, EveryFailureIsReportedAndNothingLeaks) {
  EXPECT_GT(counting_memory::FailEachAllocation(AppendCopyAndSubtract), 20u);
}

}  // namespace
