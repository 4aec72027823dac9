// SPDX-License-Identifier: BSD-3-Clause
#include "context/table.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {
struct Row {
  const char* name;
  uint16_t id;
};
}  // namespace

static constexpr Row kInOrder[] = {{"a", 0}, {"b", 1}, {"c", 2}};
static constexpr Row kFromFive[] = {{"a", 5}, {"b", 6}};
static constexpr Row kSwapped[] = {{"a", 0}, {"c", 2}, {"b", 1}};
static constexpr Row kGap[] = {{"a", 0}, {"c", 2}};

TEST(RowsStandAtTheir, ARowAtAnotherPlaceThanItsIdIsSeen) {
  EXPECT_TRUE(RowsStandAtTheir<&Row::id>(kInOrder));
  EXPECT_FALSE(RowsStandAtTheir<&Row::id>(kSwapped));
  EXPECT_FALSE(RowsStandAtTheir<&Row::id>(kGap));
}

TEST(RowsStandAtTheir, TheIdsMayBeginLater) {
  EXPECT_TRUE(RowsStandAtTheir<&Row::id>(kFromFive, 5));
  EXPECT_FALSE(RowsStandAtTheir<&Row::id>(kFromFive));
}
