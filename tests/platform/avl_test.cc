// SPDX-License-Identifier: BSD-3-Clause
#include "platform/avl.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

struct Record {
  int payload;
  const char* key;
  RtkAvl3Link link;
};

int32_t CompareText(const void* a, const void* b) {
  return std::strcmp(static_cast<const char*>(a), static_cast<const char*>(b));
}

constexpr RtkAvl3TreeInfo kInfo = {CompareText, offsetof(Record, key), offsetof(Record, link)};

Record MakeRecord(const char* key) {
  Record record{0, key, {}};
  RTK_AVL3_InitLink(&record.link);
  return record;
}

class Avl : public testing::Test {
 protected:
  void SetUp() override { RTK_AVL3_Init(&tree_, &kInfo); }

  std::string Keys() const {
    std::string keys;
    for (void* r = RTK_AVL3_First(&tree_); r != nullptr; r = RTK_AVL3_Next(&tree_, r)) {
      keys += static_cast<Record*>(r)->key;
    }
    return keys;
  }

  RtkAvl3Tree tree_;
};

// Height of a subtree; records a failure for one that is out of balance, whose
// links disagree, or that stores anything but 0 to 2.
int CheckedHeight(const RtkAvl3Link* link, const RtkAvl3Link* parent) {
  if (link == nullptr) return 0;
  EXPECT_EQ(parent, link->parent);
  const int left = CheckedHeight(link->left, link);
  const int right = CheckedHeight(link->right, link);
  EXPECT_EQ(right - left + 1, link->balance);
  EXPECT_GE(link->balance, 0);
  EXPECT_LE(link->balance, 2);
  return 1 + (left > right ? left : right);
}

}  // namespace

TEST_F(Avl, EmptyTreeHasNoFirstRecord) {
  EXPECT_EQ(nullptr, RTK_AVL3_First(&tree_));
  EXPECT_EQ(nullptr, RTK_AVL3_Find(&tree_, "a"));
}

TEST_F(Avl, ZeroFilledTreeReadsAsEmpty) {
  RtkAvl3Tree tree = {};
  EXPECT_EQ(nullptr, RTK_AVL3_First(&tree));
  EXPECT_EQ(nullptr, RTK_AVL3_Find(&tree, "a"));
  Record record = MakeRecord("a");
  RTK_AVL3_Delete(&tree, &record);
  EXPECT_EQ(nullptr, RTK_AVL3_First(&tree));
}

TEST_F(Avl, RecordsComeInAscendingOrderOfTheirKeys) {
  Record records[] = {MakeRecord("d"), MakeRecord("a"), MakeRecord("c"), MakeRecord("b")};
  for (Record& record : records) EXPECT_EQ(0u, RTK_AVL3_Insert_Or_Find(&tree_, &record, nullptr));
  EXPECT_EQ("abcd", Keys());
  EXPECT_EQ(&records[2], RTK_AVL3_Find(&tree_, "c"));
  EXPECT_EQ(nullptr, RTK_AVL3_Find(&tree_, "e"));
}

TEST_F(Avl, InsertOfAnEqualKeyFailsAndGivesTheRecordThatIsThere) {
  Record first = MakeRecord("a");
  Record second = MakeRecord("a");
  void* found = nullptr;
  EXPECT_EQ(0u, RTK_AVL3_Insert_Or_Find(&tree_, &first, &found));
  EXPECT_EQ(nullptr, found);
  EXPECT_EQ(1u, RTK_AVL3_Insert_Or_Find(&tree_, &second, &found));
  EXPECT_EQ(&first, found);
  EXPECT_EQ(1u, RTK_AVL3_Insert_Or_Find(&tree_, &second, nullptr));
  EXPECT_FALSE(RTK_AVL3_IsLinked(&second.link));
}

TEST_F(Avl, BalanceIsMinusOneExactlyWhileNotLinked) {
  Record record = MakeRecord("a");
  EXPECT_EQ(-1, record.link.balance);
  EXPECT_FALSE(RTK_AVL3_IsLinked(&record.link));
  RTK_AVL3_Insert_Or_Find(&tree_, &record, nullptr);
  EXPECT_TRUE(RTK_AVL3_IsLinked(&record.link));
  EXPECT_GE(record.link.balance, 0);
  RTK_AVL3_Delete(&tree_, &record);
  EXPECT_EQ(-1, record.link.balance);
  EXPECT_EQ(nullptr, record.link.parent);
}

TEST_F(Avl, DeleteOfARecordThatIsNotLinkedLeavesItsEqualInPlace) {
  Record registered = MakeRecord("a");
  Record stranger = MakeRecord("a");
  RTK_AVL3_Insert_Or_Find(&tree_, &registered, nullptr);
  RTK_AVL3_Delete(&tree_, &stranger);
  EXPECT_EQ(&registered, RTK_AVL3_Find(&tree_, "a"));
}

TEST_F(Avl, DeletedRecordCanBeInsertedAgain) {
  Record record = MakeRecord("a");
  RTK_AVL3_Insert_Or_Find(&tree_, &record, nullptr);
  RTK_AVL3_Delete(&tree_, &record);
  EXPECT_EQ(nullptr, RTK_AVL3_First(&tree_));
  EXPECT_EQ(0u, RTK_AVL3_Insert_Or_Find(&tree_, &record, nullptr));
  EXPECT_EQ("a", Keys());
}

TEST_F(Avl, TreeStaysBalancedThroughInsertsAndDeletesInAnyOrder) {
  constexpr size_t kCount = 500;
  std::vector<std::string> keys;
  std::vector<Record> records;
  for (size_t i = 0; i < kCount; ++i) {
    const std::string digits = std::to_string(i);
    keys.push_back(std::string(4 - digits.size(), '0') + digits);
  }
  for (const std::string& key : keys) records.push_back(MakeRecord(key.c_str()));
  // 7 and 500 have no common divisor, so the steps meet each index once.
  for (size_t i = 0; i < kCount; ++i) {
    ASSERT_EQ(0u, RTK_AVL3_Insert_Or_Find(&tree_, &records[i * 7 % kCount], nullptr));
  }
  EXPECT_LE(CheckedHeight(tree_.header.parent, &tree_.header), 12);
  for (size_t i = 0; i < kCount; i += 2) RTK_AVL3_Delete(&tree_, &records[i * 3 % kCount]);
  CheckedHeight(tree_.header.parent, &tree_.header);
  size_t left = 0;
  const char* last = "";
  for (void* r = RTK_AVL3_First(&tree_); r != nullptr; r = RTK_AVL3_Next(&tree_, r)) {
    EXPECT_LT(std::strcmp(last, static_cast<Record*>(r)->key), 0);
    last = static_cast<Record*>(r)->key;
    ++left;
  }
  EXPECT_EQ(kCount / 2, left);
}
