// SPDX-License-Identifier: BSD-3-Clause
#include "context/string.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstring>

#include "context/memory.h"
#include "tests/support/counting_memory.h"

namespace {

// A text of the memory hooks that is freed at the end of its test.
class Text {
 public:
  explicit Text(char* text) : text_(text) {}
  ~Text() { g_qmMemFreeFunc(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  const char* Get() const { return text_; }

 private:
  char* text_;
};

}  // namespace

TEST(StrDup, CopiesTheText) {
  const char* source = "abc";
  const Text copy(QM_UTL_StrDup(source));
  EXPECT_STREQ("abc", copy.Get());
  EXPECT_NE(source, copy.Get());
  EXPECT_STREQ("", Text(QM_UTL_StrDup("")).Get());
  EXPECT_EQ(nullptr, QM_UTL_StrDup(nullptr));
}

TEST(StrDupWithSpecifyLength, CopiesTheFirstCharacters) {
  EXPECT_STREQ("ab", Text(QM_UTL_StrDupWithSpecifyLength("abc", 2)).Get());
  EXPECT_STREQ("abc", Text(QM_UTL_StrDupWithSpecifyLength("abc", 3)).Get());
}

TEST(StrDupWithSpecifyLength, GivesNullForNoTextLength0AndTooLong) {
  EXPECT_EQ(nullptr, QM_UTL_StrDupWithSpecifyLength(nullptr, 1));
  EXPECT_EQ(nullptr, QM_UTL_StrDupWithSpecifyLength("abc", 0));
  EXPECT_EQ(nullptr, QM_UTL_StrDupWithSpecifyLength("abc", 4));
  EXPECT_EQ(nullptr, QM_UTL_StrDupWithSpecifyLength("", 1));
}

TEST(CreateEmptyString, IsOneByte) {
  EXPECT_STREQ("", Text(QM_UTL_CreateEmptyString()).Get());
}

TEST(StringCopies, GiveNullWithoutMemory) {
  for (char* (*copy)() :
       {+[] { return QM_UTL_StrDup("a"); }, +[] { return QM_UTL_StrDupWithSpecifyLength("a", 1); },
        +[] { return QM_UTL_CreateEmptyString(); }}) {
    counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
    EXPECT_EQ(nullptr, copy());
    EXPECT_EQ(1u, counting_memory::StopRefusing());
  }
}

TEST(IsNulStringEqual, TakesNullAsAValue) {
  EXPECT_EQ(1u, QM_UTL_IsNulStringEqual(nullptr, nullptr));
  EXPECT_EQ(0u, QM_UTL_IsNulStringEqual(nullptr, ""));
  EXPECT_EQ(0u, QM_UTL_IsNulStringEqual("a", nullptr));
  EXPECT_EQ(1u, QM_UTL_IsNulStringEqual("a", "a"));
  EXPECT_EQ(0u, QM_UTL_IsNulStringEqual("a", "A"));
}

TEST(CountCharNumber, CountsOccurrences) {
  EXPECT_EQ(0u, QM_UTL_CountCharNumber("", '|'));
  EXPECT_EQ(0u, QM_UTL_CountCharNumber("abc", '|'));
  EXPECT_EQ(3u, QM_UTL_CountCharNumber("|a||", '|'));
  EXPECT_EQ(0u, QM_UTL_CountCharNumber(nullptr, '|'));
}

TEST(Strnchr, LooksAtTheFirstCharacters) {
  const char* text = "abcb";
  EXPECT_EQ(text + 1, QM_UTL_Strnchr(text, 'b', 4));
  EXPECT_EQ(text + 1, QM_UTL_Strnchr(text, 'b', 2));
  EXPECT_EQ(nullptr, QM_UTL_Strnchr(text, 'b', 1));
  EXPECT_EQ(nullptr, QM_UTL_Strnchr(text, 'x', 4));
}

TEST(Strnchr, EndsWithTheText) {
  EXPECT_EQ(nullptr, QM_UTL_Strnchr("a\0b", 'b', 3));
  EXPECT_EQ(nullptr, QM_UTL_Strnchr("", 'b', 100));
}

TEST(Strnchr, AlwaysExaminesPosition0) {
  const char* text = "abc";
  EXPECT_EQ(text, QM_UTL_Strnchr(text, 'a', 0));
  EXPECT_EQ(nullptr, QM_UTL_Strnchr(text, 'b', 0));
}
