// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/suggestion.h"

#include <gtest/gtest.h>

namespace compiler {
namespace {

TEST(EditDistance, CountsLettersToChange) {
  EXPECT_EQ(0u, EditDistance("leaf", "leaf", 3));
  EXPECT_EQ(1u, EditDistance("leaf", "leafs", 3));
  EXPECT_EQ(1u, EditDistance("laef", "leaf", 3));
  EXPECT_EQ(2u, EditDistance("kitten", "sittin", 3));
  EXPECT_EQ(3u, EditDistance("", "abc", 3));
  EXPECT_EQ(3u, EditDistance("abc", "xyz", 2)) << "one more than the limit";
}

TEST(Suggestion, IsTheNearestAndOfEqualsTheFirst) {
  Suggestion near("contaner");
  for (const char* name : {"contact", "container", "contaimer"}) near.Consider(name);
  EXPECT_EQ("did you mean \"container\"?", near.Advice("nothing"));
}

TEST(Suggestion, TakesCapitalsForASmallDifference) {
  Suggestion near("MTU");
  for (const char* name : {"mta", "mtu"}) near.Consider(name);
  EXPECT_EQ("did you mean \"mtu\"?", near.Advice("nothing"));
}

TEST(Suggestion, IsNoneThatSharesNoLetter) {
  Suggestion near("a");
  near.Consider("b");
  EXPECT_EQ("nothing", near.Advice("nothing"));
  near.Consider("A");
  EXPECT_EQ("did you mean \"A\"?", near.Advice("nothing"));
}

TEST(Suggestion, IsNoneWhenNothingIsNear) {
  Suggestion near("abc");
  for (const char* name : {"", "abc", "xyz", "abcdefgh"}) near.Consider(name);
  EXPECT_EQ("look elsewhere", near.Advice("look elsewhere"));
}

}  // namespace
}  // namespace compiler
