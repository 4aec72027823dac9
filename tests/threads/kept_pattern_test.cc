// SPDX-License-Identifier: BSD-3-Clause
// Threads that check values in one context share the compiled forms of patterns that it
// keeps, and answer as one thread does that keeps none. Every round begins without a form,
// so that all threads want to make the same ones at once; the thread sanitizer watches how
// they are published.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <qmodel/qmodel.h>

#include "tests/support/yin_text.h"

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 25;
constexpr int kLeaves = 40;

// Leaves "l0", "l1", ...: each has a pattern of its own, and one that all of them have; of
// every fifth the own one does not compile. And an operation with all of them.
std::string Module() {
  std::string leaves;
  for (int i = 0; i < kLeaves; ++i) {
    const std::string number = std::to_string(i);
    const std::string own = i % 5 == 4 ? "(a" : "[a-z]{1,3}" + number + "?.*";
    leaves += "<leaf name='l" + number + "'><type name='string'><pattern value='" + own +
              "'/><pattern value='([a-z]+[0-9]*|x)+'/></type></leaf>";
  }
  return yin_text::Module("m", leaves + yin_text::Rpc(leaves, "op"));
}

// Which values of which leaves are valid, and how requests with them are answered;
// `first` says where to begin.
std::string Check(QmCtx* ctx, int first) {
  std::string seen(kLeaves, '?');
  for (int i = 0; i < kLeaves; ++i) {
    const int leaf = (first + i) % kLeaves;
    const std::string name = "l" + std::to_string(leaf);
    QmsNode* node = QM_CTX_GetTargetNode(ctx, ("/m:" + name).c_str(), nullptr);
    uint32_t valid = 0;
    for (const char* value : {"abc", "ab12", "x", "", "A", "abcxabc12x9"}) {
      valid = 2 * valid + (QM_NODE_ValidateValue(node, QM_INPUT_TEXT, value) == QM_OK ? 1 : 0);
    }
    std::string request = "<op xmlns='urn:m'><" + name + ">abc</" + name + "></op>";
    QmErrNode* error =
        QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request.data(), nullptr, nullptr);
    if (error == nullptr) valid += 64;
    QM_FreeErrNode(error);
    seen[static_cast<size_t>(leaf)] = static_cast<char>(valid);
  }
  return seen;
}

class SharedPatterns : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, Module().c_str())); }
  void TearDown() override { QM_CTX_Delete(ctx_); }

  // All threads begin at once, each at a leaf of its own.
  void ExpectAllSee(const std::string& expected) {
    std::atomic<int> waiting{kThreads};
    std::vector<std::string> seen(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([this, i, &waiting, &seen] {
        --waiting;
        while (waiting > 0) std::this_thread::yield();
        seen[static_cast<size_t>(i)] = Check(ctx_, i % 2 == 0 ? 0 : i);
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(std::vector<std::string>(kThreads, expected), seen);
  }

  QmCtx* ctx_ = QM_CTX_Create(0);
};

TEST_F(SharedPatterns, AnswerAsPatternsOfOneThreadThatAreNotKept) {
  const std::string expected = Check(ctx_, 0);
  for (int round = 0; round < kRounds; ++round) {
    ASSERT_EQ(QM_OK, QM_CTX_SetKeepPatterns(ctx_, 1));
    ExpectAllSee(expected);
    ExpectAllSee(expected);
    ASSERT_EQ(QM_OK, QM_CTX_SetKeepPatterns(ctx_, 0));
  }
}

TEST_F(SharedPatterns, AreMadeAgainAfterAnUnload) {
  const std::string expected = Check(ctx_, 0);
  ASSERT_EQ(QM_OK, QM_CTX_SetKeepPatterns(ctx_, 1));
  for (int round = 0; round < kRounds; ++round) {
    ExpectAllSee(expected);
    ASSERT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "m"));
    ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, Module().c_str()));
  }
}

}  // namespace
