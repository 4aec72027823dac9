// SPDX-License-Identifier: BSD-3-Clause
#include "context/array.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstring>

#include "context/memory.h"
#include "tests/support/counting_memory.h"

namespace {

class Array : public testing::Test {
 protected:
  void TearDown() override { g_qmMemFreeFunc(block_); }
  uint32_t* Numbers() const { return static_cast<uint32_t*>(block_); }

  void* block_ = nullptr;
};

using NewArray = Array;
using ExpandArray = Array;

}  // namespace

TEST_F(NewArray, IsZeroFilled) {
  ASSERT_EQ(QM_OK, QM_UTL_NewArray(&block_, 3, sizeof(uint32_t)));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(0u, Numbers()[i]);
}

TEST_F(NewArray, Count0AllocatesNothing) {
  EXPECT_EQ(QM_OK, QM_UTL_NewArray(&block_, 0, 4));
  EXPECT_EQ(nullptr, block_);
}

TEST_F(NewArray, BadArgumentsGive22) {
  EXPECT_EQ(QM_INVALID, QM_UTL_NewArray(nullptr, 1, 4));
  EXPECT_EQ(QM_INVALID, QM_UTL_NewArray(&block_, 1, 0));
  ASSERT_EQ(QM_OK, QM_UTL_NewArray(&block_, 1, 4));
  void* const before = block_;
  EXPECT_EQ(QM_INVALID, QM_UTL_NewArray(&block_, 1, 4)) << "the pointer is set";
  EXPECT_EQ(QM_INVALID, QM_UTL_NewArray(&block_, 0, 4)) << "also for no elements";
  EXPECT_EQ(before, block_);
}

TEST_F(NewArray, WithoutMemoryGives12) {
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QM_UTL_NewArray(&block_, 1, 4));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, block_);
}

TEST_F(ExpandArray, KeepsTheOldElementsAndZeroFillsTheNew) {
  ASSERT_EQ(QM_OK, QM_UTL_NewArray(&block_, 2, sizeof(uint32_t)));
  Numbers()[0] = 11;
  Numbers()[1] = 22;
  ASSERT_EQ(QM_OK, QM_UTL_ExpandArray(&block_, 2, 2, sizeof(uint32_t)));
  EXPECT_EQ(11u, Numbers()[0]);
  EXPECT_EQ(22u, Numbers()[1]);
  EXPECT_EQ(0u, Numbers()[2]);
  EXPECT_EQ(0u, Numbers()[3]);
  EXPECT_EQ(1u, counting_memory::LiveBlocks()) << "the old block is freed";
}

TEST_F(ExpandArray, OldCount0MakesANewArray) {
  ASSERT_EQ(QM_OK, QM_UTL_ExpandArray(&block_, 0, 1, 4));
  EXPECT_NE(nullptr, block_);
}

TEST_F(ExpandArray, OldCount0OnASetPointerGives22) {
  ASSERT_EQ(QM_OK, QM_UTL_NewArray(&block_, 1, 4));
  void* const before = block_;
  EXPECT_EQ(QM_INVALID, QM_UTL_ExpandArray(&block_, 0, 1, 4));
  EXPECT_EQ(before, block_);
}

TEST_F(ExpandArray, AddCount0ChangesNothing) {
  ASSERT_EQ(QM_OK, QM_UTL_NewArray(&block_, 1, 4));
  void* const before = block_;
  EXPECT_EQ(QM_OK, QM_UTL_ExpandArray(&block_, 1, 0, 4));
  EXPECT_EQ(before, block_);
}

TEST_F(ExpandArray, BadArgumentsGive22) {
  EXPECT_EQ(QM_INVALID, QM_UTL_ExpandArray(nullptr, 1, 1, 4));
  EXPECT_EQ(QM_INVALID, QM_UTL_ExpandArray(&block_, 1, 1, 0));
  EXPECT_EQ(QM_INVALID, QM_UTL_ExpandArray(&block_, 1, 0, 0));
}

TEST_F(ExpandArray, FailureLeavesTheOldArray) {
  ASSERT_EQ(QM_OK, QM_UTL_NewArray(&block_, 1, sizeof(uint32_t)));
  Numbers()[0] = 11;
  void* const before = block_;
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QM_UTL_ExpandArray(&block_, 1, 1, sizeof(uint32_t)));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(before, block_);
  EXPECT_EQ(11u, Numbers()[0]);
}

TEST_F(ExpandArray, ASizeThatDoesNotFitGives12) {
  // 5522622740 elements of 3340214413 bytes are 2^64 + 4 bytes, which wraps to 4.
  EXPECT_EQ(QM_NO_MEMORY, QM_UTL_ExpandArray(&block_, 4294967295u, 1227655445u, 3340214413u));
  EXPECT_EQ(nullptr, block_);
}

TEST_F(ExpandArray, ACountBesideANullArrayCountsEmptyElements) {
  ASSERT_EQ(QM_OK, QM_UTL_ExpandArray(&block_, 2, 1, sizeof(uint32_t)));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(0u, Numbers()[i]);
}

TEST(GrowByOne, IsRefusedBeforeA16BitCounterOverflows) {
  uint8_t* bytes = nullptr;
  ASSERT_EQ(QM_OK, NewArrayOf(&bytes, 65535));
  bytes[65534] = 7;
  uint8_t* const before = bytes;
  EXPECT_EQ(QM_INVALID, GrowByOne(&bytes, 65535));
  EXPECT_EQ(before, bytes);
  EXPECT_EQ(QM_OK, GrowByOne(&bytes, 65534));
  g_qmMemFreeFunc(bytes);
}

TEST(GrowByOne, KeepsPointersToConst) {
  const char** texts = nullptr;
  ASSERT_EQ(QM_OK, GrowByOne(&texts, 0));
  texts[0] = "a";
  ASSERT_EQ(QM_OK, GrowByOne(&texts, 1));
  EXPECT_STREQ("a", texts[0]);
  EXPECT_EQ(nullptr, texts[1]);
  FreeAndNull(&texts);
  EXPECT_EQ(nullptr, texts);
}
