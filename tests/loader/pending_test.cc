// SPDX-License-Identifier: BSD-3-Clause
#include "loader/pending.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/list.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"

namespace {

class Pending : public testing::Test {
 protected:
  Pending() { QMS_LOADER_InitModPendTbl(&tbl_); }
  ~Pending() override { QMS_LOADER_DeInitModPendTbl(&tbl_); }

  std::string Names() const {
    std::string text;
    for (const QmsModPendNode* node = FirstModPendNode(&tbl_); node != nullptr;
         node = NextModPendNode(&tbl_, node))
      text += (text.empty() ? "" : " ") + std::string(node->modName);
    return text;
  }

  static std::string Features(const QmsModPendNode* node) {
    std::string text;
    for (const QmListLink* link = node->featPends.next; link != &node->featPends; link = link->next)
      text += (text.empty() ? "" : " ") + std::string(RecordOf<QmsModFeatPend>(link)->featName);
    return text;
  }

  QmsModPendTbl tbl_;
};

}  // namespace

TEST_F(Pending, ANewTableIsEmpty) {
  EXPECT_EQ(nullptr, FirstModPendNode(&tbl_));
  EXPECT_EQ(nullptr, QMS_LOADER_FindModPendNodeByName(&tbl_, "m"));
}

TEST_F(Pending, NodesAreAppendedAtTheTail) {
  for (const char* name : {"b", "a", "c"}) {
    const QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl_, name);
    ASSERT_NE(nullptr, node);
    EXPECT_EQ(0u, node->noReload);
    EXPECT_EQ("", Features(node));
  }
  EXPECT_EQ("b a c", Names());
}

TEST_F(Pending, AWalkMeetsTheNodesThatItAppends) {
  ASSERT_NE(nullptr, QMS_LOADER_AddModPendNode(&tbl_, "1"));
  int steps = 0;
  for (QmsModPendNode* node = FirstModPendNode(&tbl_); node != nullptr;
       node = NextModPendNode(&tbl_, node))
    if (++steps < 4) QMS_LOADER_AddModPendNode(&tbl_, std::to_string(steps + 1).c_str());
  EXPECT_EQ(4, steps);
  EXPECT_EQ("1 2 3 4", Names());
}

TEST_F(Pending, TheFirstNodeWithAnEqualNameIsFound) {
  QmsModPendNode* first = QMS_LOADER_AddModPendNode(&tbl_, "a");
  QMS_LOADER_AddModPendNode(&tbl_, "a");
  EXPECT_EQ(first, QMS_LOADER_FindModPendNodeByName(&tbl_, std::string("a").c_str()));
  EXPECT_EQ(nullptr, QMS_LOADER_FindModPendNodeByName(&tbl_, "A"));
  EXPECT_EQ(nullptr, QMS_LOADER_FindModPendNodeByName(&tbl_, nullptr));
}

TEST_F(Pending, ANameHasAtMost64Characters) {
  const std::string fits(64, 'n');
  const QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl_, fits.c_str());
  ASSERT_NE(nullptr, node);
  EXPECT_EQ(fits, node->modName);
  EXPECT_EQ(nullptr, QMS_LOADER_AddModPendNode(&tbl_, std::string(65, 'n').c_str()));
  EXPECT_EQ(nullptr, QMS_LOADER_AddModPendNode(&tbl_, nullptr));
  EXPECT_EQ(fits, Names());
}

TEST_F(Pending, ARemovedNodeIsUnlinkedAndFreedWithItsFeatures) {
  QMS_LOADER_AddModPendNode(&tbl_, "a");
  QmsModPendNode* b = QMS_LOADER_AddModPendNode(&tbl_, "b");
  QMS_LOADER_AddModPendNode(&tbl_, "c");
  ASSERT_NE(nullptr, QMS_LOADER_AddModFeatPend(b, "f"));
  const size_t before = counting_memory::LiveBlocks();
  QMS_LOADER_RemoveModPendNode(b);
  EXPECT_EQ(before - 2, counting_memory::LiveBlocks());
  EXPECT_EQ("a c", Names());
  QMS_LOADER_RemoveModPendNode(nullptr);
}

TEST_F(Pending, FeaturesAreAppendedAtTheTail) {
  QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl_, "m");
  EXPECT_NE(nullptr, QMS_LOADER_AddModFeatPend(node, "g"));
  EXPECT_NE(nullptr, QMS_LOADER_AddModFeatPend(node, "f"));
  EXPECT_EQ(nullptr, QMS_LOADER_AddModFeatPend(node, std::string(65, 'f').c_str()));
  EXPECT_EQ("g f", Features(node));
  QMS_LOADER_DestoryAllModFeatPend(node);
  EXPECT_EQ("", Features(node));
}

TEST_F(Pending, OnlyEnabledFeaturesAreSaved) {
  yin::Context ctx;
  yin::Parsed m(
      ctx, yin::Module("m", "<feature name=\"f1\"/><feature name=\"f2\"/><feature name=\"f3\"/>"));
  ASSERT_TRUE(m);
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(m.Get(), "f3"));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(m.Get(), "f1"));
  QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl_, "m");
  EXPECT_EQ(QM_OK, QMS_LOADER_SaveEnabledFeatureToPendNode(m.Get(), node));
  EXPECT_EQ("f1 f3", Features(node));
}

TEST_F(Pending, SavingWithoutMemoryGives12) {
  yin::Context ctx;
  yin::Parsed m(ctx, yin::Module("m", "<feature name=\"f1\"/><feature name=\"f2\"/>"));
  ASSERT_TRUE(m);
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(m.Get(), "*"));
  QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl_, "m");
  counting_memory::RefuseNth(2, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_LOADER_SaveEnabledFeatureToPendNode(m.Get(), node));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("f1", Features(node));
}

TEST_F(Pending, WithoutMemoryNothingIsAppended) {
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(nullptr, QMS_LOADER_AddModPendNode(&tbl_, "m"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("", Names());
}
