// SPDX-License-Identifier: BSD-3-Clause
#include "xpath/kept_conditions.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>
#include <qmodel/xpath.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/condition_tree.h"
#include "tests/support/counting_memory.h"
#include "tests/support/random_condition.h"

using condition_tree::Tree;
using counting_memory::Refuse;

namespace {

constexpr const char* kData =
    "<a>x</a><n>5</n><e/><id>dog</id><did>dd:cat</did>"
    "<sub><x>1</x><l><k>1</k><m>1</m><v>one</v></l><l><k>2</k><m>2</m><v>two</v></l>"
    "<!--c--><?pi x?><unbound>7</unbound></sub>";
const std::vector<std::string> kPlaces = {"", "a", "n", "e", "id", "did", "sub", "sub/l/k"};

// The conditions of one run, which is over at the end of the scope.
struct OneRun {
  OneRun() = default;
  ~OneRun() { FreeKeptConditions(&kept); }
  OneRun(const OneRun&) = delete;
  OneRun& operator=(const OneRun&) = delete;

  uint32_t Eval(Tree* tree, const std::string& place, const std::string& condition) {
    return EvalKeptCondition(&kept, tree->Document(), tree->Element(place), condition.c_str());
  }
  QmKeptConditions kept = {};
};

// With nothing kept, when it is kept, and from what is kept. The text is kept by its
// address, so it must outlive the run.
void ExpectSame(Tree* tree, OneRun* run, const std::string& condition) {
  SCOPED_TRACE(condition);
  for (int i = 0; i < 2; ++i) {
    for (const std::string& place : kPlaces)
      EXPECT_EQ(tree->Eval(place, condition), run->Eval(tree, place, condition)) << place;
  }
}

const std::vector<std::string> kRows = {"",
                                        "1",
                                        "0",
                                        "''",
                                        "'x'",
                                        "\"it's\"",
                                        ".",
                                        "..",
                                        "/",
                                        "/top",
                                        "/top/a = 'x'",
                                        "a",
                                        "missing",
                                        "*",
                                        "c:*",
                                        "c:a",
                                        "/*",
                                        "//a",
                                        "a//b",
                                        "a/",
                                        "sub//x = 1",
                                        "sub/l/v = 'one'",
                                        "sub/l[k='2']/v",
                                        "a[",
                                        "a[1]]",
                                        "sub/unbound = ''",
                                        "sub/unbound = 7",
                                        "sub/unbound < 8",
                                        "e = ''",
                                        "e < 1",
                                        "e = 0",
                                        "missing = 0",
                                        "missing < 1",
                                        "missing = ''",
                                        "1 = 1.0",
                                        ".5.3 = 1",
                                        "n = 5",
                                        "n = '5'",
                                        "n > 4 and n < 6",
                                        "a = x",
                                        "1 = 1 = 1",
                                        "1 < 2 = (3 > 4)",
                                        "a = (1 = 1)",
                                        "'' = (1 = 2)",
                                        "(a)",
                                        "((a = 'x'))",
                                        "(a",
                                        "a)",
                                        "(a, b)",
                                        "not(a)",
                                        "not(not(a))",
                                        "not()",
                                        "1 = not()",
                                        "not(a, b)",
                                        "not (a)",
                                        "id = 'c:dog'",
                                        "id = 'dog'",
                                        "did = 'd:cat'",
                                        "id = did",
                                        "id = id",
                                        "did != 'd:cats'",
                                        "id = 1",
                                        "id < 1",
                                        "id and did",
                                        "'c:dog' = id",
                                        "'c:dog ' = id",
                                        "'c' = id",
                                        "derived-from(id, 'c:mammal')",
                                        "derived-from(id, 'mammal')",
                                        "derived-from(did, 'c:mammal')",
                                        "derived-from-or-self(id, 'c:dog')",
                                        "derived-from(a, 'c:x')",
                                        "derived-from(missing, 'c:x')",
                                        "derived-from(id)",
                                        "derived-from('c:x', id)",
                                        "derived-from(id, '')",
                                        "derived-from(id, 1)",
                                        "derived-from(sub/unbound, 'c:x')",
                                        "not(derived-from(id, 'c:animal')) or id",
                                        "count(a)",
                                        "a + 1",
                                        "a | a",
                                        "- 1",
                                        "2 * 3",
                                        "a div b",
                                        "@a",
                                        "$a",
                                        "a b",
                                        "1 2",
                                        "=",
                                        "= 1",
                                        "1 =",
                                        "or",
                                        "a or",
                                        "and a",
                                        "or and",
                                        "a, b",
                                        "()",
                                        "(,)",
                                        "not(",
                                        "not",
                                        "1.2.3",
                                        "'open",
                                        "ancestor::a",
                                        "x:y:z",
                                        std::string(65, 'a'),
                                        std::string(64, 'a') + ":a",
                                        "a:" + std::string(65, 'b')};

TEST(KeptConditions, HaveTheResultOfThoseThatAreNot) {
  Tree tree(kData);
  OneRun run;
  for (const std::string& condition : kRows) ExpectSame(&tree, &run, condition);
}

TEST(KeptConditions, NestAsDeepAsOthers) {
  Tree tree(kData);
  for (const size_t depth : {size_t{255}, size_t{256}, size_t{257}}) {
    const std::string parens = std::string(depth, '(') + "a" + std::string(depth, ')');
    std::string calls = "a" + std::string(depth, ')');
    for (size_t i = 0; i < depth; ++i) calls.insert(0, "a = not(");
    OneRun run;
    ExpectSame(&tree, &run, parens);
    ExpectSame(&tree, &run, calls);
  }
}

TEST(KeptConditions, RefuseNull) {
  Tree tree(kData);
  OneRun run;
  EXPECT_EQ(QM_INVALID, EvalKeptCondition(&run.kept, nullptr, tree.Element("a"), "1"));
  EXPECT_EQ(QM_INVALID, EvalKeptCondition(&run.kept, tree.Document(), nullptr, "1"));
  EXPECT_EQ(QM_INVALID, EvalKeptCondition(&run.kept, tree.Document(), tree.Element("a"), nullptr));
  EXPECT_EQ(0u, EvalKeptCondition(nullptr, tree.Document(), tree.Element("a"), "1"));
}

random_condition::Writer RandomConditions(uint64_t seed) {
  return {seed,
          {"a", "n", "e", "id", "did", "sub", "x", "l", "k", "v", "c:a", "dd:n", "unbound", "top",
           "missing", "*", "c:*"},
          {"''", "'x'", "\"1\"", "1", "5.0", "'5'", ".5", "'c:dog'", "'d:cat'", "' 5 '", "'one'"}};
}

TEST(KeptConditions, OfAnyKindHaveTheSameResult) {
  Tree tree(kData);
  OneRun run;
  random_condition::Writer writer = RandomConditions(20261122);
  std::vector<std::string> conditions;
  std::map<uint32_t, int> statuses;
  for (int i = 0; i < 4000; ++i) conditions.push_back(writer.Condition());
  for (const std::string& condition : conditions) {
    ExpectSame(&tree, &run, condition);
    ++statuses[tree.Eval("", condition)];
    if (HasFailure()) break;
  }
  EXPECT_EQ(4000u, run.kept.plans.count);
  EXPECT_GT(statuses[0], 400);
  EXPECT_GT(statuses[QM_XPATH_FALSE], 400);
  EXPECT_GT(statuses.size(), 10u);
}

TEST(KeptConditions, AllocateNothing) {
  Tree tree(kData);
  OneRun run;
  const std::string condition =
      "id = 'c:dog' and (did != 'x' or not(../missing)) and n > 4 and sub/l[k=2]/v = \"one\"";
  EXPECT_EQ(0u, run.Eval(&tree, "", condition));
  const uint64_t before = counting_memory::AllocationCount();
  EXPECT_EQ(0u, run.Eval(&tree, "", condition));
  EXPECT_EQ(before, counting_memory::AllocationCount());
}

// The n-th allocation of a run is refused. A block that was only to be kept makes no
// difference; one that the evaluation needs ends it like one without kept conditions.
void ExpectSurvivesRefusal(Tree* tree, const std::string& condition, Refuse mode) {
  const uint32_t expected = tree->Eval("", condition);
  for (uint64_t n = 1;; ++n) {
    SCOPED_TRACE(testing::Message() << condition << ": allocation " << n);
    const size_t before = counting_memory::LiveBlocks();
    uint32_t first = 0;
    uint32_t again = 0;
    uint64_t refused = 0;
    {
      OneRun run;
      counting_memory::RefuseNth(n, mode);
      first = run.Eval(tree, "", condition);
      refused = counting_memory::StopRefusing();
      again = run.Eval(tree, "", condition);
    }
    EXPECT_EQ(before, counting_memory::LiveBlocks());
    EXPECT_EQ(expected, again);
    if (first != expected) {
      EXPECT_TRUE(first == QM_NO_MEMORY || first == QM_XPATH_BAD_TOKEN) << first;
      EXPECT_GT(refused, 0u);
    }
    // The record of the tokens and their array come first, then the plan.
    EXPECT_TRUE(first == expected || mode != Refuse::kOnce || n > 3);
    if (refused == 0 || testing::Test::HasFailure()) return;
  }
}

TEST(KeptConditions, ThatThereIsNoMemoryForAreEvaluated) {
  Tree tree(kData);
  random_condition::Writer writer = RandomConditions(7);
  std::vector<std::string> conditions = kRows;
  for (int i = 0; i < 300; ++i) conditions.push_back(writer.Condition());
  for (const std::string& condition : conditions) {
    ExpectSurvivesRefusal(&tree, condition, Refuse::kOnce);
    ExpectSurvivesRefusal(&tree, condition, Refuse::kFromThenOn);
    if (HasFailure()) break;
  }
}

}  // namespace
