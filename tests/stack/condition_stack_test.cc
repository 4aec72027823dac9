// SPDX-License-Identifier: BSD-3-Clause
// Conditions with as many parentheses and calls as an evaluation takes, and one more.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "tests/stack/deep_model.h"

namespace {

using deep_model::Nested;
using deep_model::OnSmallStack;

struct Row {
  const char* property;  // of the leaf "x", with %s for the condition
  std::string condition;
  const char* verdict;
};

constexpr size_t kLevels = 256;

const Row kRows[] = {
    {"must", Nested(kLevels, "(", ")", ". = 'v'"), "valid"},
    {"must", Nested(kLevels, "not(", ")", ". = 'v'"), "valid"},
    // The innermost comparison is false, and each one around it turns the answer.
    {"must", Nested(kLevels, "'' = (", ")", "."), "valid"},
    {"must", Nested(kLevels - 1, "'' = (", ")", "."), "x is not satisfied must condition."},
    {"must", Nested(kLevels + 1, "(", ")", ". = 'v'"), "Failed to check must condition of x."},
    {"must", Nested(100000, "(", ")", ". = 'v'"), "Failed to check must condition of x."},
    {"must", Nested(kLevels / 2, "not((", "))", "derived-from(., 'm:b')"),
     "Failed to check must condition of x."},
    {"when", Nested(kLevels, "not(", ")", ". = 'v'"), "valid"},
    {"when", Nested(kLevels + 1, "not(", ")", ". = 'v'"), "Failed to check when condition of x."},
};

std::string ModuleWith(const Row& row) {
  return deep_model::Module("m", "<rpc name='r'><input><leaf name='x'><" +
                                     std::string(row.property) + " condition=\"" + row.condition +
                                     "\"/><type name='string'/><mandatory value='true'/></leaf>"
                                     "</input></rpc>");
}

TEST(DeepCondition, IsEvaluatedOrRefused) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.condition.substr(0, 20));
    std::string verdict;
    OnSmallStack([&] {
      QmCtx* ctx = QM_CTX_Create(0);
      EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleWith(row).c_str()));
      char request[] = "<r xmlns='urn:m'><x>v</x></r>";
      verdict = deep_model::Verdict(
          QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request, nullptr, nullptr));
      QM_CTX_Delete(ctx);
    });
    EXPECT_EQ(row.verdict, verdict);
  }
}

// Of the evaluation alone, since a load may take more.
size_t StackOfMust(const std::string& condition) {
  const Row row = {"must", condition, "valid"};
  QmCtx* ctx = QM_CTX_Create(0);
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ModuleWith(row).c_str()));
  std::string verdict;
  char request[] = "<r xmlns='urn:m'><x>v</x></r>";
  const auto validate = [&] {
    verdict = deep_model::Verdict(
        QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request, nullptr, nullptr));
  };
  validate();  // the first call of a function may take stack to find it
  const size_t used = OnSmallStack(validate);
  EXPECT_EQ(row.verdict, verdict);
  QM_CTX_Delete(ctx);
  return used;
}

TEST(DeepCondition, TakesNoMoreStackThanAShallowOne) {
  const size_t shallow = StackOfMust(". = 'v'");
  EXPECT_EQ(shallow, StackOfMust(Nested(kLevels, "(", ")", ". = 'v'")));
  const size_t call = StackOfMust("not(not(. = 'v'))");
  EXPECT_EQ(call, StackOfMust(Nested(kLevels, "not(", ")", ". = 'v'")));
  EXPECT_EQ(call, StackOfMust(Nested(kLevels / 2, "not((", "))", ". = 'v'")));
}

// The element that the when of a missing leaf stands on is a temporary one.
TEST(DeepCondition, OfAMissingLeafBelowMissingContainersIsEvaluated) {
  std::string verdict;
  const std::string leaf = "<leaf name='x'><when condition=\"" +
                           Nested(kLevels, "not(", ")", "../y = ''") +
                           "\"/><type name='string'/><mandatory value='true'/></leaf>";
  OnSmallStack([&] {
    QmCtx* ctx = QM_CTX_Create(0);
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(
                         ctx, deep_model::SelfAugmentedModule(deep_model::kDeepest, leaf).c_str()));
    char request[] = "<r xmlns='urn:m'/>";
    verdict = deep_model::Verdict(
        QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request, nullptr, nullptr));
    QM_CTX_Delete(ctx);
  });
  EXPECT_EQ("Missing element: x.", verdict);
}

}  // namespace
