// SPDX-License-Identifier: BSD-3-Clause
#include "context/pointer_map.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/counting_memory.h"

namespace {

using counting_memory::Refuse;

struct Block {
  char bytes[48];
};

TEST(PointerMap, FindsWhatWasAddedAndNothingElse) {
  std::vector<Block> keys(5000);
  std::vector<Block> others(5000);
  QmPointerMap map = {};
  EXPECT_EQ(nullptr, FindPointer(&map, &keys[0]));
  for (Block& key : keys) ASSERT_TRUE(AddPointer(&map, &key, key.bytes + 1));
  EXPECT_EQ(5000u, map.count);
  for (Block& key : keys) {
    const QmPointerEntry* entry = FindPointer(&map, &key);
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(key.bytes + 1, entry->value);
  }
  for (const Block& other : others) EXPECT_EQ(nullptr, FindPointer(&map, &other));
  FreePointerMap(&map);
  EXPECT_EQ(nullptr, FindPointer(&map, &keys[0]));
}

TEST(PointerMap, TellsAnEntryWithoutValueFromNone) {
  QmPointerMap map = {};
  const Block key = {};
  ASSERT_TRUE(AddPointer(&map, &key, nullptr));
  ASSERT_NE(nullptr, FindPointer(&map, &key));
  EXPECT_EQ(nullptr, FindPointer(&map, &key)->value);
  FreePointerMap(&map);
}

TEST(PointerMap, StaysAsItWasWithoutMemory) {
  std::vector<Block> keys(9);
  QmPointerMap map = {};
  counting_memory::RefuseNth(1, Refuse::kFromThenOn);
  EXPECT_FALSE(AddPointer(&map, &keys[0], &keys[0]));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  for (size_t i = 0; i < 8; ++i) ASSERT_TRUE(AddPointer(&map, &keys[i], &keys[i]));
  counting_memory::RefuseNth(1, Refuse::kFromThenOn);
  EXPECT_FALSE(AddPointer(&map, &keys[8], &keys[8]));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(8u, map.count);
  for (size_t i = 0; i < 8; ++i) EXPECT_NE(nullptr, FindPointer(&map, &keys[i]));
  EXPECT_EQ(nullptr, FindPointer(&map, &keys[8]));
  EXPECT_TRUE(AddPointer(&map, &keys[8], &keys[8]));
  FreePointerMap(&map);
}

}  // namespace
