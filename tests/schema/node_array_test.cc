// SPDX-License-Identifier: BSD-3-Clause
#include "schema/node_array.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/array.h"
#include "context/dict.h"
#include "context/memory.h"
#include "tests/support/counting_memory.h"
#include "tests/support/module_builder.h"

namespace {

using counting_memory::Refuse;
using module_builder::References;

class NodeArray : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(QM_OK, QM_DICT_Init(&dict_)); }
  void TearDown() override {
    QMS_NODE_FreeIfFeatures(&dict_, features_, featureCount_);
    QMS_NODE_FreeMusts(&dict_, musts_, mustCount_);
    QMS_NODE_FreeDefaults(&dict_, leafList_.defaults, leafList_.defaultCount);
    QM_DICT_Destroy(&dict_);
  }
  void AppendFeature(const char* module, const char* feature) {
    ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(&dict_, &features_, &featureCount_, module, feature));
  }
  void AppendMust(const char* condition, const char* message, const char* appTag) {
    const QmsMust must = {condition, message, appTag};
    ASSERT_EQ(QM_OK, QMS_NODE_AppendOneMust(&dict_, &musts_, &mustCount_, &must));
  }
  std::string MustText() const {
    std::string text;
    for (uint32_t i = 0; i < mustCount_; ++i) text += std::string(musts_[i].condition) + " ";
    return text;
  }
  std::string DefaultText() const {
    std::string text;
    for (uint32_t i = 0; i < leafList_.defaultCount; ++i) {
      text += std::string(leafList_.defaults[i]) + " ";
    }
    return text;
  }

  QmDict dict_ = {};
  QmsIfFeature* features_ = nullptr;
  uint16_t featureCount_ = 0;
  QmsMust* musts_ = nullptr;
  uint16_t mustCount_ = 0;
  QmsLeafList leafList_ = {};
};

using IfFeatures = NodeArray;

TEST_F(IfFeatures, FillRefusesAMissingTextWith22) {
  QmsIfFeature rec = {};
  EXPECT_EQ(QM_INVALID, QMS_NODE_FillIfFeature(&dict_, &rec, nullptr, "f"));
  EXPECT_EQ(QM_INVALID, QMS_NODE_FillIfFeature(&dict_, &rec, "m", nullptr));
  EXPECT_EQ(0u, References(&dict_, "m"));
}

TEST_F(IfFeatures, FillWithoutMemoryGives12AndHoldsNothing) {
  for (uint64_t n = 1; n <= 4; ++n) {
    QmsIfFeature rec = {};
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_FillIfFeature(&dict_, &rec, "m", "f"));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(nullptr, rec.module);
    EXPECT_EQ(0u, References(&dict_, "m"));
  }
}

TEST_F(IfFeatures, FailedAppendKeepsTheCount) {
  AppendFeature("m", "f");
  counting_memory::RefuseNth(2, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_AppendOneIfFeat(&dict_, &features_, &featureCount_, "m", "g"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendOneIfFeat(&dict_, &features_, &featureCount_, "m", nullptr));
  EXPECT_EQ(1, featureCount_);
  AppendFeature("m", "g");
  EXPECT_STREQ("g", features_[1].feature);
}

TEST_F(IfFeatures, FindComparesBothPointers) {
  AppendFeature("m", "f");
  AppendFeature("n", "f");
  const char* copyOfName = "n";
  EXPECT_EQ(&features_[1], QMS_NODE_FindIfFeature(features_, featureCount_, features_[1].module,
                                                  features_[1].feature));
  EXPECT_EQ(nullptr,
            QMS_NODE_FindIfFeature(features_, featureCount_, copyOfName, features_[1].feature));
  EXPECT_EQ(nullptr, QMS_NODE_FindIfFeature(nullptr, 2, features_[0].module, features_[0].feature));
  EXPECT_EQ(1u, QMS_NODE_CheckTwoIfFeatureSame(&features_[0], &features_[0]));
  EXPECT_EQ(0u, QMS_NODE_CheckTwoIfFeatureSame(&features_[0], &features_[1]));
}

TEST_F(IfFeatures, ArraysAreSameInCountOrderAndContent) {
  AppendFeature("m", "f");
  AppendFeature("n", "f");
  const QmsIfFeature swapped[] = {features_[1], features_[0]};
  EXPECT_EQ(1u, QMS_NODE_CheckTwoIfFeatureArraySame(features_, 2, features_, 2));
  EXPECT_EQ(0u, QMS_NODE_CheckTwoIfFeatureArraySame(features_, 2, features_, 1));
  EXPECT_EQ(0u, QMS_NODE_CheckTwoIfFeatureArraySame(features_, 2, swapped, 2));
  EXPECT_EQ(1u, QMS_NODE_CheckTwoIfFeatureArraySame(nullptr, 0, features_, 0));
  EXPECT_EQ(0u, QMS_NODE_CheckTwoIfFeatureArraySame(nullptr, 0, features_, 2));
}

TEST_F(IfFeatures, CopyHoldsReferencesOfItsOwn) {
  AppendFeature("m", "f");
  QmsIfFeature* copy = QMS_NODE_CopyIfFeaturesArray(&dict_, features_, 1);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(1u, QMS_NODE_CheckTwoIfFeatureArraySame(copy, 1, features_, 1));
  EXPECT_EQ(2u, References(&dict_, "f"));
  QMS_NODE_FreeIfFeatures(&dict_, copy, 1);
  EXPECT_EQ(1u, References(&dict_, "f"));
  EXPECT_EQ(nullptr, QMS_NODE_CopyIfFeaturesArray(&dict_, features_, 0));
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(nullptr, QMS_NODE_CopyIfFeaturesArray(&dict_, features_, 1));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
}

TEST_F(IfFeatures, ChildInheritsWhatItDoesNotHave) {
  AppendFeature("m", "f");
  AppendFeature("m", "g");
  QmsNode augment = {};
  augment.ifFeatures = features_;
  augment.ifFeatureCount = featureCount_;
  QmsNode child = {};
  ASSERT_EQ(QM_OK,
            QMS_NODE_AppendOneIfFeat(&dict_, &child.ifFeatures, &child.ifFeatureCount, "m", "g"));
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(&dict_, &augment, &child));
  ASSERT_EQ(2, child.ifFeatureCount);
  EXPECT_STREQ("g", child.ifFeatures[0].feature);
  EXPECT_STREQ("f", child.ifFeatures[1].feature);
  QMS_NODE_FreeIfFeatures(&dict_, child.ifFeatures, child.ifFeatureCount);

  QmsNode other = {};
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(&dict_, &augment, &other));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(0, other.ifFeatureCount);
  EXPECT_EQ(QM_INVALID, QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(&dict_, nullptr, &other));
}

using Musts = NodeArray;

TEST_F(Musts, FillNeedsAConditionOnly) {
  QmsMust rec = {};
  EXPECT_EQ(QM_INVALID, QMS_NODE_FillMust(&dict_, &rec, nullptr, "m", "t"));
  EXPECT_EQ(QM_OK, QMS_NODE_FillMust(&dict_, &rec, "c", nullptr, nullptr));
  EXPECT_STREQ("c", rec.condition);
  EXPECT_EQ(nullptr, rec.errorMessage);
  EXPECT_EQ(nullptr, rec.errorAppTag);
  QMS_NODE_ClearMust(&dict_, &rec);
  EXPECT_EQ(nullptr, rec.condition);
}

TEST_F(Musts, FillWithoutMemoryGives12AndHoldsNothing) {
  for (uint64_t n = 1; n <= 6; ++n) {
    QmsMust rec = {};
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_FillMust(&dict_, &rec, "c", "m", "t"));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(nullptr, rec.condition);
    EXPECT_EQ(0u, References(&dict_, "c"));
    EXPECT_EQ(0u, References(&dict_, "m"));
  }
}

TEST_F(Musts, SameMeansTheSameConditionOnly) {
  AppendMust("c", "one", "a");
  AppendMust("c", "two", nullptr);
  AppendMust("d", "one", "a");
  EXPECT_EQ(1u, QMS_NODE_CheckTwoMustSame(&musts_[0], &musts_[1]));
  EXPECT_EQ(0u, QMS_NODE_CheckTwoMustSame(&musts_[0], &musts_[2]));
  EXPECT_EQ(0u, QMS_NODE_CheckTwoMustSame(&musts_[0], nullptr));
}

TEST_F(Musts, MoveTakesTheTextsAlong) {
  AppendMust("c", "m", "t");
  QmsMust moved = {};
  QMS_NODE_AssignMoveMust(&moved, &musts_[0]);
  EXPECT_STREQ("c", moved.condition);
  EXPECT_EQ(nullptr, musts_[0].condition);
  EXPECT_EQ(nullptr, musts_[0].errorMessage);
  EXPECT_EQ(1u, References(&dict_, "c"));
  QMS_NODE_AssignMoveMust(&moved, &moved);
  EXPECT_STREQ("c", moved.condition);
  QMS_NODE_ClearMust(&dict_, &moved);
}

TEST_F(Musts, CopyIsDeep) {
  AppendMust("c", "m", "t");
  QmsMust* copy = QMS_NODE_CopyMustsArray(&dict_, musts_, 1);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(musts_[0].errorMessage, copy[0].errorMessage);
  EXPECT_EQ(2u, References(&dict_, "t"));
  QMS_NODE_FreeMusts(&dict_, copy, 1);
  EXPECT_EQ(nullptr, QMS_NODE_CopyMustsArray(&dict_, musts_, 0));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendOneMust(&dict_, &musts_, &mustCount_, nullptr));
}

TEST_F(Musts, FailedCopyGivesNullAndReleasesTheFirstElements) {
  const QmsMust musts[] = {{"c", nullptr, nullptr}, {"d", nullptr, nullptr}};
  for (uint64_t n = 1; n <= 5; ++n) {
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(nullptr, QMS_NODE_CopyMustsArray(&dict_, musts, 2));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(0u, References(&dict_, "c"));
  }
}

TEST_F(Musts, SubtractKeepsThoseWithACondition) {
  for (const char* condition : {"a", "b", "c", "d"}) AppendMust(condition, "m", nullptr);
  QMS_NODE_ClearMust(&dict_, &musts_[0]);
  QMS_NODE_ClearMust(&dict_, &musts_[2]);
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractMustsArray(&dict_, &musts_, 4, 2));
  mustCount_ = 2;
  EXPECT_EQ("b d ", MustText());
  EXPECT_EQ(2u, References(&dict_, "m"));
}

TEST_F(Musts, SubtractReleasesTheErrorTextsOfADroppedMust) {
  AppendMust("a", "dropped", nullptr);
  AppendMust("b", nullptr, nullptr);
  ReleaseText(&dict_, &musts_[0].condition);
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractMustsArray(&dict_, &musts_, 2, 1));
  mustCount_ = 1;
  EXPECT_EQ("b ", MustText());
  EXPECT_EQ(0u, References(&dict_, "dropped"));
}

TEST_F(Musts, SubtractToNothingFreesTheArray) {
  AppendMust("a", nullptr, nullptr);
  QMS_NODE_ClearMust(&dict_, &musts_[0]);
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractMustsArray(&dict_, &musts_, 1, 0));
  EXPECT_EQ(nullptr, musts_);
  mustCount_ = 0;
}

TEST_F(Musts, SubtractMakesNoMustsOfACountWithoutArray) {
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractMustsArray(&dict_, &musts_, 3, 2));
  EXPECT_EQ(nullptr, musts_);
}

TEST_F(Musts, SubtractWithoutMemoryFreesBothArrays) {
  AppendMust("a", nullptr, nullptr);
  AppendMust("b", nullptr, nullptr);
  QMS_NODE_ClearMust(&dict_, &musts_[0]);
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_SubtractMustsArray(&dict_, &musts_, 2, 1));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, musts_);
  EXPECT_EQ(0u, References(&dict_, "b"));
  mustCount_ = 0;
}

TEST_F(Musts, FullCounterIsRefusedWith22) {
  ASSERT_EQ(QM_OK, NewArrayOf(&musts_, 65535));
  mustCount_ = 65535;
  const QmsMust must = {"c", nullptr, nullptr};
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendOneMust(&dict_, &musts_, &mustCount_, &must));
  EXPECT_EQ(65535, mustCount_);
}

using Defaults = NodeArray;

TEST_F(Defaults, CopyHoldsReferencesOfItsOwn) {
  const char* values[] = {"a", "b"};
  const char** copy = QMS_NODE_CopyDefaults(&dict_, values, 2);
  ASSERT_NE(nullptr, copy);
  EXPECT_STREQ("b", copy[1]);
  EXPECT_EQ(1u, References(&dict_, "b"));
  QMS_NODE_FreeDefaults(&dict_, copy, 2);
  EXPECT_EQ(0u, References(&dict_, "b"));
  EXPECT_EQ(nullptr, QMS_NODE_CopyDefaults(&dict_, values, 0));
  EXPECT_EQ(nullptr, QMS_NODE_CopyDefaults(&dict_, nullptr, 2));
}

TEST_F(Defaults, FailedCopyGivesNull) {
  const char* values[] = {"a", "b"};
  for (uint64_t n = 1; n <= 5; ++n) {
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(nullptr, QMS_NODE_CopyDefaults(&dict_, values, 2));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(0u, References(&dict_, "a"));
  }
}

TEST_F(Defaults, AppendPutsNewValuesBehindTheOldOnes) {
  const char* first[] = {"a", "b"};
  const char* second[] = {"c"};
  EXPECT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 2, first));
  EXPECT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, second));
  EXPECT_EQ("a b c ", DefaultText());
  EXPECT_EQ(1u, References(&dict_, "a"));
  EXPECT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 0, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendLeaflistDefaults(&dict_, nullptr, 1, second));
}

TEST_F(Defaults, AppendWithoutRoomGives12) {
  const char* values[] = {"a"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, values));
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, values));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("a ", DefaultText());
}

TEST_F(Defaults, AppendWithAFailedInterningGives1AndKeepsTheOldArray) {
  const char* old[] = {"a"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, old));
  const char* values[] = {"b", "c"};
  for (uint64_t n = 2; n <= 5; ++n) {
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(QM_FAILED, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 2, values));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ("a ", DefaultText());
    EXPECT_EQ(0u, References(&dict_, "b"));
  }
}

TEST_F(Defaults, MoreThan65535AreRefusedWith22) {
  ASSERT_EQ(QM_OK, NewArrayOf(&leafList_.defaults, 65535));
  leafList_.defaultCount = 65535;
  const char* values[] = {"a"};
  EXPECT_EQ(QM_INVALID, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, values));
  EXPECT_EQ(65535, leafList_.defaultCount);
}

TEST_F(Defaults, CountWithoutArrayCountsAsNoDefaults) {
  leafList_.defaultCount = 3;
  const char* values[] = {"a"};
  EXPECT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, values));
  EXPECT_EQ("a ", DefaultText());

  QmsLeafList broken = {};
  broken.defaultCount = 3;
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractLeaflistDefaults(&dict_, &broken, 2));
  EXPECT_EQ(nullptr, broken.defaults);
  EXPECT_EQ(0, broken.defaultCount);
  QMS_NODE_FreeDefaults(&dict_, nullptr, 3);
}

TEST_F(Defaults, SubtractKeepsTheValuesThatAreSet) {
  const char* values[] = {"a", "b", "c"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 3, values));
  ReleaseText(&dict_, &leafList_.defaults[1]);
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractLeaflistDefaults(&dict_, &leafList_, 2));
  EXPECT_EQ("a c ", DefaultText());
  EXPECT_EQ(QM_INVALID, QMS_NODE_SubtractLeaflistDefaults(&dict_, &leafList_, 3));
  EXPECT_EQ(QM_INVALID, QMS_NODE_SubtractLeaflistDefaults(&dict_, nullptr, 0));
}

TEST_F(Defaults, SubtractToNothingFreesTheArray) {
  const char* values[] = {"a"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 1, values));
  ReleaseText(&dict_, &leafList_.defaults[0]);
  EXPECT_EQ(QM_OK, QMS_NODE_SubtractLeaflistDefaults(&dict_, &leafList_, 0));
  EXPECT_EQ(nullptr, leafList_.defaults);
  EXPECT_EQ(0, leafList_.defaultCount);
}

TEST_F(Defaults, SubtractWithoutMemoryLeavesNoDefaults) {
  const char* values[] = {"a", "b"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(&dict_, &leafList_, 2, values));
  ReleaseText(&dict_, &leafList_.defaults[0]);
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_SubtractLeaflistDefaults(&dict_, &leafList_, 1));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, leafList_.defaults);
  EXPECT_EQ(0, leafList_.defaultCount);
  EXPECT_EQ(0u, References(&dict_, "b"));
}

void UseEveryArray(bool refusing) {
  QmDict dict = {};
  if (QM_DICT_Init(&dict) != 0) return;
  QmsIfFeature* features = nullptr;
  uint16_t featureCount = 0;
  QmsMust* musts = nullptr;
  uint16_t mustCount = 0;
  QmsLeafList leafList = {};
  const QmsMust must = {"c", "m", "t"};
  const char* values[] = {"v", "w"};
  uint32_t failed = 0;
  for (const char* name : {"a", "b"}) {
    failed += QMS_NODE_AppendOneIfFeat(&dict, &features, &featureCount, "m", name) != 0;
    failed += QMS_NODE_AppendOneMust(&dict, &musts, &mustCount, &must) != 0;
  }
  EXPECT_EQ(4u - failed, 0u + featureCount + mustCount);
  const uint32_t ret = QMS_NODE_AppendLeaflistDefaults(&dict, &leafList, 2, values);
  EXPECT_EQ(ret == QM_OK ? 2 : 0, leafList.defaultCount);
  if (!refusing) {
    EXPECT_EQ(0u, failed + ret);
  }
  QMS_NODE_FreeIfFeatures(&dict, features, featureCount);
  QMS_NODE_FreeMusts(&dict, musts, mustCount);
  QMS_NODE_FreeDefaults(&dict, leafList.defaults, leafList.defaultCount);
  QM_DICT_Destroy(&dict);
}

TEST(NodeArrayWithoutMemory, EveryFailureIsReportedAndNothingLeaks) {
  EXPECT_GT(counting_memory::FailEachAllocation(UseEveryArray), 20u);
}

}  // namespace
