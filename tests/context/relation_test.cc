// SPDX-License-Identifier: BSD-3-Clause
#include "context/relation.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/dict.h"
#include "context/list.h"
#include "context/memory.h"
#include "tests/support/counting_memory.h"

namespace {

class Relation : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(0)); }
  void TearDown() override { QM_CTX_Delete(ctx_); }

  const char* Name(const std::string& name) { return QM_DICT_Insert(&ctx_->dict, name.c_str()); }
  uint32_t Add(const char* target, const std::string& source, uint32_t relType) {
    return QM_CTX_AddTwoModRelation(ctx_, target, Name(source), relType);
  }
  void Del(const char* target, const std::string& source, uint32_t relType) {
    QM_CTX_DelTwoModRelation(ctx_, target, Name(source), relType);
  }
  // The items of a target as "source/kind", or "none".
  std::string Items(const char* target) {
    QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx_, target);
    if (tbl == nullptr) return "none";
    std::string text;
    for (QmListLink* link = tbl->items.next; link != &tbl->items; link = link->next) {
      const auto* item = RecordOf<QmCtxModRelItem>(link);
      EXPECT_EQ(1u, item->refCount);
      text += std::string(item->srcModName) + "/" + std::to_string(item->relType) + " ";
    }
    return text;
  }
  std::vector<std::string> Closure(const char* start, uint32_t relType) {
    const char** names = nullptr;
    uint32_t count = 0;
    EXPECT_EQ(QM_OK, QM_CTX_CollectDepModNamesRecursive(ctx_, start, relType, &names, &count));
    std::vector<std::string> texts(names, names + count);
    g_qmMemFreeFunc(names);
    return texts;
  }

  QmCtx* ctx_ = nullptr;
};

using TwoModRelation = Relation;
using CollectDepModNamesRecursive = Relation;
using Names = std::vector<std::string>;

}  // namespace

TEST_F(TwoModRelation, NewItemsComeFirst) {
  EXPECT_EQ(QM_OK, Add("T", "A", 0));
  EXPECT_EQ(QM_OK, Add("T", "B", 1));
  EXPECT_EQ("B/1 A/0 ", Items("T"));
  EXPECT_EQ("none", Items("A"));
}

TEST_F(TwoModRelation, SameKindAndSourceIsKeptOnce) {
  EXPECT_EQ(QM_OK, Add("T", "A", 0));
  EXPECT_EQ(QM_OK, Add("T", "A", 0));
  EXPECT_EQ("A/0 ", Items("T"));
  EXPECT_EQ(QM_OK, Add("T", "A", 1)) << "another kind is another item";
  EXPECT_EQ("A/1 A/0 ", Items("T"));
}

TEST_F(TwoModRelation, TargetMayBeAnyEqualText) {
  const std::string target = "T";
  EXPECT_EQ(QM_OK, Add("T", "A", 0));
  EXPECT_EQ(QM_OK, Add(target.c_str(), "B", 0));
  EXPECT_EQ("B/0 A/0 ", Items("T"));
}

TEST_F(TwoModRelation, DeletingTheLastItemDeletesTheTable) {
  ASSERT_EQ(QM_OK, Add("T", "A", 0));
  ASSERT_EQ(QM_OK, Add("T", "B", 0));
  Del("T", "A", 0);
  EXPECT_EQ("B/0 ", Items("T"));
  Del("T", "B", 0);
  EXPECT_EQ("none", Items("T"));
}

TEST_F(TwoModRelation, DeletingWhatIsNotThereDoesNothing) {
  Del("T", "A", 0);
  ASSERT_EQ(QM_OK, Add("T", "A", 0));
  Del("T", "A", 1);
  Del("T", "B", 0);
  Del("S", "A", 0);
  EXPECT_EQ("A/0 ", Items("T"));
}

TEST_F(TwoModRelation, NullNamesAreRefused) {
  EXPECT_EQ(QM_INVALID, QM_CTX_AddTwoModRelation(ctx_, nullptr, "A", 0));
  EXPECT_EQ(QM_INVALID, QM_CTX_AddTwoModRelation(ctx_, "T", nullptr, 0));
  EXPECT_EQ(QM_INVALID, QM_CTX_AddTwoModRelation(nullptr, "T", "A", 0));
  QM_CTX_DelTwoModRelation(ctx_, nullptr, "A", 0);
  EXPECT_EQ(nullptr, QM_CTX_FindModRelationTbl(ctx_, nullptr));
  EXPECT_EQ(nullptr, QM_CTX_FindModRelationTbl(nullptr, "T"));
}

TEST_F(TwoModRelation, MissingMemoryGives12AndLeavesNoHalfMadeTable) {
  const char* source = Name("A");
  // Blocks in order: the table, the entry and text of its name, the item. The
  // source's name is interned already.
  for (uint64_t n = 1; n <= 4; ++n) {
    SCOPED_TRACE(n);
    const size_t before = counting_memory::LiveBlocks();
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QM_CTX_AddTwoModRelation(ctx_, "T", source, 0));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(before, counting_memory::LiveBlocks());
    EXPECT_EQ("none", Items("T"));
  }
  EXPECT_EQ(QM_OK, QM_CTX_AddTwoModRelation(ctx_, "T", source, 0));
  // With the table in place: a failed item leaves the others.
  const char* other = Name("B");
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QM_CTX_AddTwoModRelation(ctx_, "T", other, 0));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("A/0 ", Items("T"));
}

TEST_F(Relation, TableOfANameThatHasOneIsNotAddedAgain) {
  QmCtxModRelTbl* tbl = QM_CTX_AddModRelationTbl(ctx_, "T");
  ASSERT_NE(nullptr, tbl);
  EXPECT_TRUE(ListIsEmpty(&tbl->items));
  EXPECT_EQ(nullptr, QM_CTX_AddModRelationTbl(ctx_, "T"));
  EXPECT_EQ(tbl, QM_CTX_FindModRelationTbl(ctx_, "T"));
}

TEST_F(Relation, NamesCompareByPointerFirstAndThenByText) {
  const std::string a = "a";
  EXPECT_EQ(0, QM_CTX_CompareModRelationTbl(nullptr, nullptr));
  EXPECT_EQ(0, QM_CTX_CompareModRelationTbl("a", a.c_str()));
  EXPECT_LT(QM_CTX_CompareModRelationTbl("a", "b"), 0);
}

TEST_F(Relation, DeInitDeletesEveryTable) {
  ASSERT_EQ(QM_OK, Add("T", "A", 0));
  ASSERT_EQ(QM_OK, Add("S", "A", 1));
  QM_CTX_DeInitModRelationTree(ctx_);
  EXPECT_EQ("none", Items("T"));
  EXPECT_EQ("none", Items("S"));
  EXPECT_EQ(QM_OK, Add("T", "A", 0)) << "the tree can be used on";
}

TEST_F(CollectDepModNamesRecursive, FollowsOneKindBreadthFirst) {
  ASSERT_EQ(QM_OK, Add("T", "A", 0));
  ASSERT_EQ(QM_OK, Add("T", "B", 0));
  ASSERT_EQ(QM_OK, Add("A", "C", 0));
  ASSERT_EQ(QM_OK, Add("B", "D", 0));
  ASSERT_EQ(QM_OK, Add("D", "C", 0));
  ASSERT_EQ(QM_OK, Add("T", "X", 1));
  ASSERT_EQ(QM_OK, Add("B", "Y", 1));
  EXPECT_EQ((Names{"B", "A", "D", "C"}), Closure("T", 0));
  EXPECT_EQ((Names{"X"}), Closure("T", 1));
}

TEST_F(CollectDepModNamesRecursive, StopsOnACycleThatLeadsBackToTheStart) {
  ASSERT_EQ(QM_OK, Add("A", "B", 0));
  ASSERT_EQ(QM_OK, Add("B", "A", 0));
  EXPECT_EQ((Names{"B", "A"}), Closure("A", 0));
}

TEST_F(CollectDepModNamesRecursive, WithoutNamesTheOutputsStay) {
  ASSERT_EQ(QM_OK, Add("T", "A", 0));
  const char* name = "before";
  const char** names = &name;
  uint32_t count = 77;
  EXPECT_EQ(QM_OK, QM_CTX_CollectDepModNamesRecursive(ctx_, "T", 1, &names, &count));
  EXPECT_EQ(QM_OK, QM_CTX_CollectDepModNamesRecursive(ctx_, "absent", 0, &names, &count));
  EXPECT_EQ(&name, names);
  EXPECT_EQ(77u, count);
}

TEST_F(CollectDepModNamesRecursive, NullArgumentsGive22) {
  const char** names = nullptr;
  uint32_t count = 0;
  EXPECT_EQ(QM_INVALID, QM_CTX_CollectDepModNamesRecursive(nullptr, "T", 0, &names, &count));
  EXPECT_EQ(QM_INVALID, QM_CTX_CollectDepModNamesRecursive(ctx_, nullptr, 0, &names, &count));
  EXPECT_EQ(QM_INVALID, QM_CTX_CollectDepModNamesRecursive(ctx_, "T", 0, nullptr, &count));
  EXPECT_EQ(QM_INVALID, QM_CTX_CollectDepModNamesRecursive(ctx_, "T", 0, &names, nullptr));
}

TEST_F(CollectDepModNamesRecursive, NullEntryGives22AndTheArrayIsFreed) {
  ASSERT_EQ(QM_OK, Add("T", "A", 0));
  QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx_, "T");
  auto* item = static_cast<QmCtxModRelItem*>(static_cast<void*>(tbl->items.next));
  const char* name = item->srcModName;
  item->srcModName = nullptr;
  const char** names = nullptr;
  uint32_t count = 0;
  const size_t before = counting_memory::LiveBlocks();
  EXPECT_EQ(QM_INVALID, QM_CTX_CollectDepModNamesRecursive(ctx_, "T", 0, &names, &count));
  EXPECT_EQ(nullptr, names);
  EXPECT_EQ(before, counting_memory::LiveBlocks());
  item->srcModName = name;
}

TEST_F(CollectDepModNamesRecursive, NamesAreBorrowedAndCannotOverrunTheArray) {
  Names expected;
  for (int i = 0; i < 100; ++i) {
    const std::string source = "m" + std::to_string(i);
    ASSERT_EQ(QM_OK, Add("T", source, 0));
    expected.insert(expected.begin(), source);
  }
  EXPECT_EQ(expected, Closure("T", 0));
}

TEST_F(CollectDepModNamesRecursive, MissingMemoryGives12) {
  for (int i = 0; i < 40; ++i) ASSERT_EQ(QM_OK, Add("T", "m" + std::to_string(i), 0));
  for (uint64_t n : {1u, 2u}) {
    SCOPED_TRACE(n);
    const char** names = nullptr;
    uint32_t count = 0;
    const size_t before = counting_memory::LiveBlocks();
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QM_CTX_CollectDepModNamesRecursive(ctx_, "T", 0, &names, &count));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(nullptr, names);
    EXPECT_EQ(before, counting_memory::LiveBlocks());
  }
}

TEST(WriteOneDepModIntoNameHolder, GrowsBy32WhenOnlyOneSlotIsLeft) {
  static const char kNames[40] = {};
  QmCtxNameHolder holder = {nullptr, 0, 0};
  for (uint32_t i = 0; i < 40; ++i) {
    ASSERT_EQ(QM_OK, QM_CTX_WriteOneDepModIntoNameHolder(&holder, &kNames[i]));
    EXPECT_EQ(i + 1, holder.count);
    EXPECT_EQ(i < 31 ? 32u : 64u, holder.capacity);
  }
  EXPECT_EQ(QM_OK, QM_CTX_WriteOneDepModIntoNameHolder(&holder, &kNames[5])) << "already present";
  EXPECT_EQ(40u, holder.count);
  g_qmMemFreeFunc(holder.names);
}
