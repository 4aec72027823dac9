// SPDX-License-Identifier: BSD-3-Clause
#include "platform/stack.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "tests/support/counting_memory.h"

TEST(Stack, LastPushedComesOffFirst) {
  int items[3] = {};
  RtkStack* stack = RTK_CreateStack();
  for (int& item : items) EXPECT_EQ(QM_OK, RTK_Push(stack, &item));
  EXPECT_EQ(3u, RTK_GetSize(stack));
  EXPECT_EQ(&items[2], RTK_Peep(stack));
  EXPECT_EQ(3u, RTK_GetSize(stack));
  EXPECT_EQ(&items[2], RTK_Pop(stack));
  EXPECT_EQ(&items[1], RTK_Pop(stack));
  EXPECT_EQ(&items[0], RTK_Pop(stack));
  EXPECT_EQ(0u, RTK_GetSize(stack));
  RTK_DeleteStack(stack);
}

TEST(Stack, EmptyStackGivesNull) {
  RtkStack* stack = RTK_CreateStack();
  EXPECT_EQ(nullptr, RTK_Pop(stack));
  EXPECT_EQ(nullptr, RTK_Peep(stack));
  RTK_DeleteStack(stack);
}

TEST(Stack, HoldsMoreItemsThanItsFirstBlock) {
  char items[100];
  RtkStack* stack = RTK_CreateStack();
  for (char& item : items) ASSERT_EQ(QM_OK, RTK_Push(stack, &item));
  for (size_t i = sizeof items; i > 0; --i) ASSERT_EQ(&items[i - 1], RTK_Pop(stack));
  RTK_DeleteStack(stack);
}

TEST(Stack, NullStackIsHarmless) {
  EXPECT_EQ(QM_INVALID, RTK_Push(nullptr, nullptr));
  EXPECT_EQ(nullptr, RTK_Pop(nullptr));
  EXPECT_EQ(nullptr, RTK_Peep(nullptr));
  EXPECT_EQ(0u, RTK_GetSize(nullptr));
  RTK_DeleteStack(nullptr);
}

TEST(Stack, RefusedAllocationGivesNullOr12AndKeepsTheItems) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    char items[20];
    RtkStack* stack = RTK_CreateStack();
    if (stack == nullptr) {
      EXPECT_TRUE(refusing);
      return;
    }
    uint32_t pushed = 0;
    for (char& item : items) {
      const uint32_t ret = RTK_Push(stack, &item);
      if (ret != QM_OK) {
        EXPECT_EQ(QM_NO_MEMORY, ret);
        break;
      }
      ++pushed;
    }
    EXPECT_TRUE(refusing || pushed == sizeof items);
    EXPECT_EQ(pushed, RTK_GetSize(stack));
    if (pushed > 0) {
      EXPECT_EQ(&items[pushed - 1], RTK_Peep(stack));
    }
    RTK_DeleteStack(stack);
  });
  EXPECT_GE(injected, 6u);
}
