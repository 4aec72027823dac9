// SPDX-License-Identifier: BSD-3-Clause
// Threads that answer messages by the kit for agents, on one context that keeps patterns,
// while others list the schema: each answers as one thread alone does. A thread without
// memory cannot tell, and the others still can.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <qmodel/qmodel.hpp>

#include "tests/support/counting_memory.h"

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 10;

// The examples' messages, and two that no schema is asked about.
std::vector<std::string> Messages() {
  std::vector<std::string> texts = {
      "no XML", "<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'><get/></rpc>"};
  for (const auto& entry : std::filesystem::directory_iterator(QMODEL_EXAMPLES "/messages")) {
    std::ifstream file(entry.path());
    texts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  std::sort(texts.begin(), texts.end());
  return texts;
}

std::string Tell(const qmodel::Verdict& verdict) {
  return std::to_string(verdict.code) + verdict.completed +
         (verdict.error ? verdict.error->xml : std::string());
}

std::string Answer(const qmodel::Context& context, const std::string& message) {
  return Tell(context.validateRequest(message)) + Tell(context.validateNotification(message));
}

// What the accessors say of every node.
std::string List(const qmodel::Context& context) {
  std::string seen;
  for (const qmodel::Module module : context.modules()) {
    for (const qmodel::Node top : module.nodes()) {
      top.walk([&](qmodel::Node node) {
        seen += node.path() + " " + std::to_string(node.keys().size());
        for (const std::string_view value : node.defaults()) seen += value;
        for (const qmodel::Must& must : node.musts()) seen += must.condition;
        seen += context.dataNode(node.path()) ? "+" : "-";
        return qmodel::Walk::kOn;
      });
    }
  }
  return seen;
}

class KitInThreads : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(context_);
    ASSERT_TRUE(context_->addSearchDir(QMODEL_EXAMPLES "/models"));
    for (const char* module : {"router-system", "router-vlans", "router-alarms"}) {
      ASSERT_TRUE(context_->load(module)) << module;
    }
    for (const std::string& message : messages_) alone_.push_back(Answer(*context_, message));
  }

  static void InThreads(const std::function<void(size_t)>& work) {
    std::vector<std::thread> threads;
    for (size_t i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
  }

  std::optional<qmodel::Context> context_ = qmodel::Context::Create(QM_LOAD_IMPORTS);
  const std::vector<std::string> messages_ = Messages();
  std::vector<std::string> alone_;
};

TEST_F(KitInThreads, AnswersAsOneThreadAloneDoes) {
  ASSERT_LT(5u, messages_.size());
  const std::string listed = List(*context_);
  ASSERT_FALSE(listed.empty());
  for (int round = 0; round < kRounds; ++round) {
    ASSERT_TRUE(context_->keepPatterns(round % 2 == 0));  // each time without a form yet
    InThreads([&](size_t first) {
      for (size_t i = 0; i < messages_.size(); ++i) {
        const size_t at = (first + i) % messages_.size();
        EXPECT_EQ(alone_[at], Answer(*context_, messages_[at]));
      }
      EXPECT_EQ(listed, List(*context_));
    });
  }
}

TEST_F(KitInThreads, TellsOnlyTheThreadWithoutMemoryThatThereIsNone) {
  InThreads([&](size_t thread) {
    const bool poor = thread % 2 == 0;
    for (size_t i = 0; i < messages_.size(); ++i) {
      if (!poor) {
        EXPECT_EQ(alone_[i], Answer(*context_, messages_[i]));
        continue;
      }
      counting_memory::RefuseInThisThread(true);
      QmErrNode* error = nullptr;
      const uint32_t verdict =
          QM_AGENT_ValidateRequestText(context_->get(), messages_[i].data(), messages_[i].size(),
                                       nullptr, nullptr, nullptr, &error);
      counting_memory::RefuseInThisThread(false);
      EXPECT_EQ(uint32_t{QM_AGENT_NO_MEMORY}, verdict) << messages_[i];
      QM_FreeErrNode(error);
    }
  });
}

}  // namespace
