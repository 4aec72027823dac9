// SPDX-License-Identifier: BSD-3-Clause
#include "context/pattern.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <string>

TEST(MatchStrWithPattern, BytesThatAreNoUtf8NeverMatch) {
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("x", "[a\xFF\xFF\xFF\xFF"));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("\xFF", ".*"));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("\xC3", ".*"));
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("\xC3\xA9", "."));
}

TEST(MatchStrWithPattern, MatchesTheWholeText) {
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("abc", "[a-c]+"));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("abcd", "[a-c]+"));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("xabc", "[a-c]+"));
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("", "[a-c]*"));
}

TEST(MatchStrWithPattern, PatternsAreThoseOfXmlSchema) {
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("\xC3\xA4", "\\p{L}"));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("a", "^a$"))
      << "^ and $ are ordinary characters";
}

TEST(MatchStrWithPattern, BadPatternGives22AndPrintsNothing) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("a", "[a"));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("a", "(a"));
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("a", nullptr));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern(nullptr, "a"));
}

static std::string Repeated(const std::string& text, size_t times) {
  std::string out;
  for (size_t i = 0; i < times; ++i) out += text;
  return out;
}

// libxml2 would recurse over them: half a megabyte of the last one overflows a stack of
// eight.
TEST(MatchStrWithPattern, PatternsWithMoreThan512OptionalPartsMatchNothing) {
  for (const char* part : {"a?", "a*", "()", "(|a)", "(a|)", "(a||b)", "a{0,1}", "()*"}) {
    SCOPED_TRACE(part);
    const size_t perPart = part == std::string("()*") ? 2 : 1;
    const std::string fits = Repeated(part, 512 / perPart);
    EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("x", (fits + "x").c_str()));
    EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("x", (fits + part + "x").c_str()));
  }
  EXPECT_EQ(QM_OK,
            QM_UTL_MatchStrWithPattern(Repeated("?", 1000).c_str(), Repeated("\\?", 1000).c_str()));
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("b", (Repeated("a|", 5000) + "b").c_str()));
  for (const char* part : {"[?]", "[*]", "[(|)]", "[()]", "[a-z?-[b*]]", "[\\]?]"}) {
    const std::string classes = Repeated(part, 600) + "|x";
    EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("x", classes.c_str())) << "characters in " << part;
  }
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("x", (Repeated("[?]?", 513) + "x").c_str()));
  EXPECT_EQ(QM_INVALID,
            QM_UTL_MatchStrWithPattern("", ("(" + Repeated("()*", 400000) + ")*").c_str()));
}

TEST(MatchStrWithPattern, PatternsWithMoreThan1024OpenClassesMatchNothing) {
  const auto nested = [](size_t depth) {
    return Repeated("[a-z-", depth) + "[b]" + Repeated("]", depth) + "?";
  };
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("", nested(1023).c_str()));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("", nested(1024).c_str()));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("", nested(1000000).c_str()));
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern(Repeated("a", 2000).c_str(),
                                              Repeated("[a-c]", 2000).c_str()));
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern("a", "a\\"));
}

namespace {

// More than 2 GB of the letter "a" in the memory of one megabyte, which is mapped
// again and again. Empty when the system gives no such room.
class EndlessText {
 public:
  EndlessText() : room_(mmap(nullptr, kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    const int file = memfd_create("text", 0);
    if (room_ == MAP_FAILED || ftruncate(file, kPiece) != 0) return;
    complete_ = true;
    for (size_t at = 0; at + kPiece < kSize; at += kPiece) complete_ = complete_ && Map(file, at);
    if (complete_) std::memset(room_, 'a', kPiece);
    void* end = static_cast<char*>(room_) + kSize - kPiece;
    complete_ = complete_ && mprotect(end, kPiece, PROT_READ) == 0;
    close(file);
  }
  ~EndlessText() { munmap(room_, kSize); }
  EndlessText(const EndlessText&) = delete;
  EndlessText& operator=(const EndlessText&) = delete;
  const char* Get() const { return complete_ ? static_cast<const char*>(room_) : nullptr; }

 private:
  static constexpr size_t kPiece = size_t{1} << 20;
  static constexpr size_t kSize = size_t{INT_MAX} + 1 + 2 * kPiece;
  bool Map(int file, size_t at) {
    return mmap(static_cast<char*>(room_) + at, kPiece, PROT_READ | PROT_WRITE,
                MAP_SHARED | MAP_FIXED, file, 0) != MAP_FAILED;
  }
  void* room_;
  bool complete_ = false;
};

}  // namespace

TEST(MatchStrWithPattern, TextOfMoreCharactersThanAnIntCountsMatchesNothing) {
  const EndlessText text;
  if (text.Get() == nullptr) GTEST_SKIP() << "no room for it";
  EXPECT_EQ(QM_INVALID, QM_UTL_MatchStrWithPattern(text.Get(), "a*"));
}
