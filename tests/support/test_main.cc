// SPDX-License-Identifier: BSD-3-Clause
// The main function of the test programs: counting hooks first, then before each
// test the order in which directories are listed, and after it a check that every
// block of the library was released.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/counting_memory.h"
#include "tests/support/listing.h"

namespace {

class ListingListener : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    listing::Draw(static_cast<uint32_t>(testing::UnitTest::GetInstance()->random_seed()));
  }
};

class LeakListener : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { before_ = counting_memory::LiveBlocks(); }
  void OnTestEnd(const testing::TestInfo&) override {
    EXPECT_EQ(before_, counting_memory::LiveBlocks()) << "the test leaked blocks of the library";
  }
  size_t before_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (!counting_memory::Install()) {
    std::fprintf(stderr, "the memory hooks could not be registered\n");
    return 1;
  }
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new ListingListener);
  testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
  return RUN_ALL_TESTS();
}
