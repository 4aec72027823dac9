// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/keyword.h"

#include <gtest/gtest.h>

namespace compiler {
namespace {

TEST(FindKeyword, FindsTheFirstTheLastAndOneBetween) {
  EXPECT_EQ(FindKeyword("action"), Keyword::kAction);
  EXPECT_EQ(FindKeyword("yin-element"), Keyword::kYinElement);
  EXPECT_EQ(FindKeyword("leaf-list"), Keyword::kLeafList);
}

TEST(FindKeyword, FindsEachStatement) {
  for (size_t i = 1; i < kKeywordCount; ++i) {
    const auto keyword = static_cast<Keyword>(i);
    EXPECT_EQ(FindKeyword(RowOf(keyword).name), keyword) << RowOf(keyword).name;
  }
}

TEST(FindKeyword, GivesNoneForWhatIsNoStatement) {
  for (const char* name : {"", "a", "leaflist", "zzz", "lea", "leafs", "min-elementS",
                           "\xff\xff\xff", "Leaf", "leaf "})
    EXPECT_EQ(FindKeyword(name), Keyword::kNone) << name;
}

TEST(RowOf, TellsTheArgumentInYin) {
  EXPECT_EQ(RowOf(Keyword::kDescription).argument, "text");
  EXPECT_TRUE(RowOf(Keyword::kDescription).argumentIsElement);
  EXPECT_EQ(RowOf(Keyword::kErrorMessage).argument, "value");
  EXPECT_TRUE(RowOf(Keyword::kErrorMessage).argumentIsElement);
  EXPECT_EQ(RowOf(Keyword::kUnique).argument, "tag");
  EXPECT_FALSE(RowOf(Keyword::kUnique).argumentIsElement);
  EXPECT_EQ(RowOf(Keyword::kInput).argument, "");
}

}  // namespace
}  // namespace compiler
