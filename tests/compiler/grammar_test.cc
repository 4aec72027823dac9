// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/grammar.h"

#include <gtest/gtest.h>

#include <set>

namespace compiler {
namespace {

TEST(SubStatements, OfEachStatementAreNamedOnce) {
  for (size_t i = 0; i < kKeywordCount; ++i) {
    std::set<Keyword> seen;
    for (const SubStatement& row : SubStatementsOf(static_cast<Keyword>(i))) {
      EXPECT_TRUE(seen.insert(row.keyword).second)
          << RowOf(static_cast<Keyword>(i)).name << " " << RowOf(row.keyword).name;
      EXPECT_LE(row.max1, row.max);
    }
  }
}

TEST(SubStatements, EachStatementButTheModulesStandsSomewhere) {
  for (size_t i = 1; i < kKeywordCount; ++i) {
    const auto child = static_cast<Keyword>(i);
    bool stands = child == Keyword::kModule || child == Keyword::kSubmodule;
    for (size_t p = 1; p < kKeywordCount; ++p)
      stands = stands || FindSubStatement(static_cast<Keyword>(p), child) != nullptr;
    EXPECT_TRUE(stands) << RowOf(child).name;
  }
}

TEST(SubStatements, DifferBetweenTheVersions) {
  EXPECT_EQ(0, FindSubStatement(Keyword::kContainer, Keyword::kAction)->max1);
  EXPECT_EQ(kAnyNumber, FindSubStatement(Keyword::kContainer, Keyword::kAction)->max);
  EXPECT_EQ(1, FindSubStatement(Keyword::kIdentity, Keyword::kBase)->max1);
  EXPECT_EQ(kAnyNumber, FindSubStatement(Keyword::kIdentity, Keyword::kBase)->max);
  EXPECT_EQ(nullptr, FindSubStatement(Keyword::kLeaf, Keyword::kLeaf));
  EXPECT_EQ(nullptr, FindSubStatement(Keyword::kNone, Keyword::kLeaf));
}

TEST(Sections, FollowEachOther) {
  EXPECT_LT(SectionOf(Keyword::kPrefix), SectionOf(Keyword::kImport));
  EXPECT_LT(SectionOf(Keyword::kInclude), SectionOf(Keyword::kContact));
  EXPECT_LT(SectionOf(Keyword::kReference), SectionOf(Keyword::kRevision));
  EXPECT_LT(SectionOf(Keyword::kRevision), SectionOf(Keyword::kLeaf));
}

}  // namespace
}  // namespace compiler
