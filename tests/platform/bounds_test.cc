// SPDX-License-Identifier: BSD-3-Clause
#include "platform/bounds.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <cstring>
#include <string>

namespace {

int32_t PrintCut(char* dest, size_t size, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int32_t ret = vsnprintf_s(dest, size, format, args);
  va_end(args);
  return ret;
}

}  // namespace

TEST(MemcpyS, CopiesWhatFits) {
  char dest[4] = "zzz";
  EXPECT_EQ(0, memcpy_s(dest, sizeof dest, "abcd", 4));
  EXPECT_EQ(0, std::memcmp(dest, "abcd", 4));
  EXPECT_EQ(0, memcpy_s(dest, sizeof dest, nullptr, 0)) << "nothing to copy";
}

TEST(MemcpyS, FailureZeroFillsTheDestination) {
  const char zeros[4] = {};
  char dest[4] = "zzz";
  EXPECT_EQ(ERANGE, memcpy_s(dest, sizeof dest, "abcde", 5));
  EXPECT_EQ(0, std::memcmp(dest, zeros, 4));
  std::memset(dest, 'z', 4);
  EXPECT_EQ(EINVAL, memcpy_s(dest, sizeof dest, nullptr, 1));
  EXPECT_EQ(0, std::memcmp(dest, zeros, 4));
}

TEST(MemcpyS, OverlappingBlocksAreRefused) {
  char block[8] = "abcdefg";
  EXPECT_EQ(EINVAL, memcpy_s(block + 1, 4, block, 4));
  char other[8] = "abcdefg";
  EXPECT_EQ(EINVAL, memcpy_s(other, 4, other + 3, 4));
  char touching[8] = "abcdefg";
  EXPECT_EQ(0, memcpy_s(touching, 4, touching + 4, 4));
}

TEST(MemcpyS, UnusableDestinationIsRefused) {
  char c = 'z';
  EXPECT_EQ(EINVAL, memcpy_s(nullptr, 1, "a", 1));
  EXPECT_EQ(EINVAL, memcpy_s(&c, 0, "a", 1));
  EXPECT_EQ(EINVAL, memcpy_s(&c, SIZE_MAX, "a", 1));
  EXPECT_EQ('z', c);
}

TEST(MemsetS, SetsWhatFitsAndReportsTheRest) {
  char dest[4] = "zzz";
  EXPECT_EQ(0, memset_s(dest, sizeof dest, 'a', 2));
  EXPECT_EQ(0, std::memcmp(dest, "aaz", 4));
  EXPECT_EQ(ERANGE, memset_s(dest, sizeof dest, 'b', 5));
  EXPECT_EQ(0, std::memcmp(dest, "bbbb", 4));
  EXPECT_EQ(EINVAL, memset_s(nullptr, 4, 0, 1));
}

TEST(StrcpyS, CopiesWhatFitsWithItsEnd) {
  char dest[4] = "zzz";
  EXPECT_EQ(0, strcpy_s(dest, sizeof dest, "abc"));
  EXPECT_STREQ("abc", dest);
  EXPECT_EQ(0, strcpy_s(dest, sizeof dest, ""));
  EXPECT_STREQ("", dest);
}

TEST(StrcpyS, FailureEmptiesTheText) {
  char dest[4] = "zzz";
  EXPECT_EQ(ERANGE, strcpy_s(dest, sizeof dest, "abcd"));
  EXPECT_STREQ("", dest);
  std::strcpy(dest, "zzz");
  EXPECT_EQ(EINVAL, strcpy_s(dest, sizeof dest, nullptr));
  EXPECT_STREQ("", dest);
  std::strcpy(dest, "zzz");
  EXPECT_EQ(EINVAL, strcpy_s(dest, sizeof dest, dest + 1));
  EXPECT_STREQ("", dest);
  EXPECT_EQ(EINVAL, strcpy_s(nullptr, 4, "a"));
  EXPECT_EQ(EINVAL, strcpy_s(dest, 0, "a"));
}

TEST(StrncpyS, CopiesAtMostTheCountAndEndsTheText) {
  char dest[4] = "zzz";
  EXPECT_EQ(0, strncpy_s(dest, sizeof dest, "abcdef", 3));
  EXPECT_STREQ("abc", dest);
  EXPECT_EQ(0, strncpy_s(dest, sizeof dest, "a", 100));
  EXPECT_STREQ("a", dest);
  EXPECT_EQ(0, strncpy_s(dest, sizeof dest, "abc", 0));
  EXPECT_STREQ("", dest);
  EXPECT_EQ(ERANGE, strncpy_s(dest, sizeof dest, "abcdef", 4));
  EXPECT_STREQ("", dest);
  EXPECT_EQ(0, strncpy_s(dest, sizeof dest, "a", kBoundsMaxSize));
  EXPECT_EQ(EINVAL, strncpy_s(dest, sizeof dest, "a", kBoundsMaxSize + 1));
  EXPECT_STREQ("", dest);
}

TEST(StrncpyS, SourceNeedNotBeTerminatedWithinTheCount) {
  const char source[3] = {'a', 'b', 'c'};
  char dest[4];
  EXPECT_EQ(0, strncpy_s(dest, sizeof dest, source, 3));
  EXPECT_STREQ("abc", dest);
}

TEST(StrncpyS, SourceMayEndWhereTheTargetBegins) {
  char text[7] = "abcxyz";
  EXPECT_EQ(0, strncpy_s(text + 3, 4, text, 3));
  EXPECT_STREQ("abcabc", text);
}

TEST(StrcatS, AppendsWhatFits) {
  char dest[6] = "ab";
  EXPECT_EQ(0, strcat_s(dest, sizeof dest, "cde"));
  EXPECT_STREQ("abcde", dest);
  EXPECT_EQ(0, strcat_s(dest, sizeof dest, ""));
  EXPECT_STREQ("abcde", dest);
  EXPECT_EQ(ERANGE, strcat_s(dest, sizeof dest, "f"));
  EXPECT_STREQ("", dest);
  char unterminated[2] = {'a', 'b'};
  EXPECT_EQ(EINVAL, strcat_s(unterminated, sizeof unterminated, "c"));
  EXPECT_EQ(EINVAL, strcat_s(nullptr, 6, "c"));
  EXPECT_EQ(EINVAL, strcat_s(dest, 0, "c"));
}

TEST(SprintfS, TextMustFitWhole) {
  char dest[6];
  EXPECT_EQ(5, sprintf_s(dest, sizeof dest, "%s-%d", "abc", 7));
  EXPECT_STREQ("abc-7", dest);
  EXPECT_EQ(-1, sprintf_s(dest, sizeof dest, "%s-%d", "abcd", 7));
  EXPECT_STREQ("", dest);
  EXPECT_EQ(0, sprintf_s(dest, sizeof dest, "%s", ""));
  EXPECT_EQ(-1, sprintf_s(nullptr, 6, "a%d", 1));
  EXPECT_EQ(-1, sprintf_s(dest, 0, "a%d", 1));
}

TEST(SnprintfS, CutsSilentlyAndGivesTheLengthOfTheText) {
  char dest[6];
  EXPECT_EQ(5, snprintf_s(dest, sizeof dest, "%s", "abcdefgh"));
  EXPECT_STREQ("abcde", dest);
  EXPECT_EQ(2, snprintf_s(dest, sizeof dest, "%s", "ab"));
  EXPECT_EQ(0, snprintf_s(dest, 1, "%s", "ab"));
  EXPECT_STREQ("", dest);
}

TEST(VsnprintfS, FormatErrorGivesANegativeResultAndAnEmptyText) {
  char dest[6] = "zzz";
  EXPECT_EQ(5, PrintCut(dest, sizeof dest, "%s", "abcdefgh"));
  EXPECT_STREQ("abcde", dest);
  // A wide character that no text of the "C" locale can show.
  const wchar_t wide[] = {0x20AC, 0};
  EXPECT_EQ(-1, PrintCut(dest, sizeof dest, "a%ls", wide));
  EXPECT_STREQ("", dest);
  EXPECT_EQ(-1, PrintCut(dest, sizeof dest, nullptr));
  EXPECT_EQ(-1, PrintCut(nullptr, 6, "a"));
}
