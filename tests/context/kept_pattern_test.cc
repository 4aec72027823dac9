// SPDX-License-Identifier: BSD-3-Clause
#include "context/kept_pattern.h"

#include <gtest/gtest.h>
#include <qmodel/qmodel.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "context/dict.h"
#include "context/pattern.h"
#include "tests/support/counting_memory.h"
#include "tests/support/leaf_module.h"
#include "tests/support/xml_memory.h"

namespace {

const char kWord[] = "[a-c]+";
const char kBad[] = "(a";

std::string PatternLeaf(const char* name, const std::string& pattern) {
  return "<leaf name='" + std::string(name) + "'><type name='string'><pattern value='" + pattern +
         "'/></type></leaf>";
}

// A leaf "word" with a pattern, and a leaf "bad" with one that does not compile.
class KeptPattern : public testing::Test {
 protected:
  QmCtx* ctx() { return module_.ctx(); }

  uint32_t ReferencesOf(const char* text) {
    for (uint32_t i = 0; i < ctx()->dict.bucketCount; ++i) {
      for (QmDictEntry* e = ctx()->dict.buckets[i].first; e != nullptr; e = e->next) {
        if (std::strcmp(e->str, text) == 0) return e->refCount;
      }
    }
    return 0;
  }

  void Keep(uint32_t on) { ASSERT_EQ(QM_OK, QM_CTX_SetKeepPatterns(ctx(), on)); }

  uint32_t CheckWord(const char* value) {
    return QM_NODE_ValidateValue(word_, QM_INPUT_TEXT, value);
  }
  void ExpectWordIsChecked() {
    EXPECT_EQ(QM_OK, CheckWord("abc"));
    EXPECT_EQ(QM_VALUE_BAD_PATTERN, CheckWord("abcd"));
    EXPECT_EQ(QM_VALUE_BAD_PATTERN, CheckWord("a\xFF"));
  }

  LeafModule module_{PatternLeaf("word", kWord) + PatternLeaf("bad", kBad)};
  QmsNode* word_ = module_.NodeOf("word");
};

TEST_F(KeptPattern, IsNotKeptInANewContext) {
  EXPECT_EQ(0u, ctx()->keepPatterns);
  ExpectWordIsChecked();
  EXPECT_EQ(nullptr, ctx()->keptPatterns);
  EXPECT_EQ(1u, ReferencesOf(kWord));
}

TEST_F(KeptPattern, HoldsOneReferenceOfItsOwnToItsText) {
  Keep(1);
  EXPECT_EQ(1u, ReferencesOf(kWord)) << "nothing is made before it is needed";
  ExpectWordIsChecked();
  ExpectWordIsChecked();
  EXPECT_EQ(2u, ReferencesOf(kWord));
}

TEST_F(KeptPattern, AnyNumberButZeroKeeps) {
  Keep(UINT32_MAX);
  ExpectWordIsChecked();
  EXPECT_EQ(2u, ReferencesOf(kWord));
}

TEST_F(KeptPattern, SettingAContextThatIsNullGives22) {
  EXPECT_EQ(QM_INVALID, QM_CTX_SetKeepPatterns(nullptr, 1));
  EXPECT_EQ(QM_INVALID, QM_CTX_SetKeepPatterns(nullptr, 0));
}

TEST_F(KeptPattern, IsDroppedBySwitchingOffOnly) {
  Keep(1);
  ExpectWordIsChecked();
  Keep(1);
  EXPECT_EQ(2u, ReferencesOf(kWord)) << "on again changes nothing";
  Keep(0);
  EXPECT_EQ(1u, ReferencesOf(kWord));
  EXPECT_EQ(nullptr, ctx()->keptPatterns);
  ExpectWordIsChecked();
  EXPECT_EQ(1u, ReferencesOf(kWord));
}

TEST_F(KeptPattern, IsDroppedByEachUnload) {
  module_.Add("n", "", "");
  Keep(1);
  ExpectWordIsChecked();
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx(), "n"));
  EXPECT_EQ(1u, ReferencesOf(kWord));
  ExpectWordIsChecked();
  EXPECT_EQ(2u, ReferencesOf(kWord)) << "patterns are still kept";
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx(), "never-loaded"));
  EXPECT_EQ(1u, ReferencesOf(kWord));
  ExpectWordIsChecked();
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx(), "m"));
  EXPECT_EQ(0u, ReferencesOf(kWord));
}

TEST_F(KeptPattern, OutlivesALoad) {
  Keep(1);
  ExpectWordIsChecked();
  module_.Add("n", "", PatternLeaf("word", kWord));
  EXPECT_EQ(3u, ReferencesOf(kWord));
  ExpectWordIsChecked();
}

// A deviation frees the type, with the text that its pattern had.
TEST_F(KeptPattern, StaysThatOfItsTextWhenTheTypeIsReplaced) {
  Keep(1);
  ExpectWordIsChecked();
  module_.Add("n", "<import module='m'><prefix value='m'/></import>",
              "<deviation target-node='/m:word'><deviate value='replace'><type name='string'>"
              "<pattern value='[x-z]+'/></type></deviate></deviation>");
  EXPECT_EQ(1u, ReferencesOf(kWord)) << "held by the compiled form alone";
  EXPECT_EQ(QM_OK, CheckWord("xyz"));
  EXPECT_EQ(QM_VALUE_BAD_PATTERN, CheckWord("abc"));
}

TEST_F(KeptPattern, IsNotMadeOfAPatternThatDoesNotCompile) {
  Keep(1);
  for (int check = 0; check < 2; ++check) {
    EXPECT_EQ(QM_VALUE_BAD_PATTERN, module_.CheckText("bad", "a"));
    EXPECT_EQ(1u, ReferencesOf(kBad));
  }
}

TEST_F(KeptPattern, IsMadeOfTextsOfTheDictionaryOnly) {
  Keep(1);
  const std::string stranger = kWord;
  EXPECT_EQ(QM_OK, MatchStrKeepingPattern(ctx(), "abc", stranger.c_str()));
  EXPECT_EQ(QM_OK, MatchStrKeepingPattern(ctx(), "x", "x"));
  EXPECT_EQ(QM_INVALID, MatchStrKeepingPattern(ctx(), "abc", nullptr));
  EXPECT_EQ(QM_INVALID, MatchStrKeepingPattern(ctx(), nullptr, kWord));
  EXPECT_EQ(1u, ReferencesOf(kWord));
}

TEST_F(KeptPattern, NothingIsKeptWithoutAContextNorByTheMatchOfAText) {
  EXPECT_EQ(QM_OK, MatchStrKeepingPattern(nullptr, "abc", kWord));
  Keep(1);
  const char* text = QM_DICT_Insert(&ctx()->dict, kWord);
  EXPECT_EQ(QM_OK, QM_UTL_MatchStrWithPattern("abc", text));
  QM_DICT_Remove(&ctx()->dict, text);
  EXPECT_EQ(nullptr, ctx()->keptPatterns);
}

// A text with as many forms as make chains of several.
TEST_F(KeptPattern, ThousandsAreToldApart) {
  std::string body;
  constexpr int kLeaves = 3000;
  for (int i = 0; i < kLeaves; ++i) {
    body += PatternLeaf(("l" + std::to_string(i)).c_str(), "x" + std::to_string(i));
  }
  LeafModule many(body);
  ASSERT_EQ(QM_OK, QM_CTX_SetKeepPatterns(many.ctx(), 1));
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < kLeaves; ++i) {
      const std::string leaf = "l" + std::to_string(i);
      ASSERT_EQ(QM_OK, many.CheckText(leaf.c_str(), ("x" + std::to_string(i)).c_str()));
      ASSERT_EQ(QM_VALUE_BAD_PATTERN, many.CheckText(leaf.c_str(), "x"));
    }
  }
}

// With the n-th block of the library refused, a check has the same result, and nothing
// half made is kept.
TEST_F(KeptPattern, ResultsAreTheSameWithoutMemoryToKeep) {
  for (uint64_t n = 1; n <= 3; ++n) {
    Keep(0);
    Keep(1);
    counting_memory::RefuseNth(n, counting_memory::Refuse::kFromThenOn);
    ExpectWordIsChecked();
    const uint64_t refused = counting_memory::StopRefusing();
    EXPECT_EQ(n < 3, refused != 0) << "the table, and a record for the form";
    EXPECT_EQ(n < 3 ? 1u : 2u, ReferencesOf(kWord));
    ExpectWordIsChecked();
    EXPECT_EQ(2u, ReferencesOf(kWord));
  }
}

// Exit statuses of a child in the test below; none is that of a sanitizer.
constexpr int kSpoilt = 10;
constexpr int kRefused = 11;
constexpr int kServedOnce = 12;
constexpr int kNothingRefused = 13;

// libxml2 may hand out a form with parts missing when it is refused memory. It serves that
// check, as it does where nothing is kept, but no other. Each refusal has a process of its
// own, since libxml2 does not survive all of them.
TEST_F(KeptPattern, WhatLibxml2MadeWithoutMemoryIsNotKept) {
  ASSERT_TRUE(xml_memory::Install());
  Keep(1);
  int servedOnce = 0;
  for (uint64_t n = 1; n < 100; ++n) {
    const pid_t pid = fork();
    if (pid == 0) {
      xml_memory::RefuseNth(n);
      const bool valid = CheckWord("abc") == QM_OK;
      if (xml_memory::Left() != 0) _exit(kNothingRefused);
      const bool kept = ReferencesOf(kWord) > 1;
      if (CheckWord("abc") != QM_OK || CheckWord("abcd") == QM_OK) _exit(kSpoilt);
      _exit(valid && !kept ? kServedOnce : kRefused);
    }
    int status = 0;
    ASSERT_EQ(pid, waitpid(pid, &status, 0));
    const int result = WIFEXITED(status) ? WEXITSTATUS(status) : kRefused;
    EXPECT_NE(kSpoilt, result) << "allocation " << n;
    servedOnce += result == kServedOnce ? 1 : 0;
    if (result == kNothingRefused) break;
  }
  EXPECT_GT(servedOnce, 0);
}

TEST_F(KeptPattern, IsNotCompiledAgain) {
  ASSERT_TRUE(xml_memory::Install());
  Keep(1);
  ExpectWordIsChecked();
  xml_memory::RefuseNth(UINT64_MAX);
  ExpectWordIsChecked();
  EXPECT_EQ(UINT64_MAX, xml_memory::Left()) << "libxml2 has asked for memory";
  xml_memory::RefuseNth(0);
}

// Where libxml2 puts compiled forms in the test below: in one piece of memory that can be
// made unwritable. Blocks of other times are the C library's.
namespace arena {

constexpr size_t kSize = size_t{64} << 20;
char* g_start = nullptr;
size_t g_used = 0;
bool g_open = false;

bool Holds(const void* block) {
  const auto* at = static_cast<const char*>(block);
  return g_start != nullptr && at >= g_start && at < g_start + kSize;
}

void* Malloc(size_t size) {
  if (!g_open) return std::malloc(size);
  char* head = g_start + g_used;
  g_used += 16 + (size + 15) / 16 * 16;
  if (g_used > kSize) return nullptr;
  std::memcpy(head, &size, sizeof size);
  return head + 16;
}

void Free(void* block) {
  if (!Holds(block)) std::free(block);
}

void* Realloc(void* block, size_t size) {
  if (!g_open && !Holds(block)) return std::realloc(block, size);
  void* moved = Malloc(size);
  if (block == nullptr || moved == nullptr) return moved;
  size_t old = size;
  if (Holds(block)) std::memcpy(&old, static_cast<char*>(block) - 16, sizeof old);
  std::memcpy(moved, block, old < size ? old : size);
  Free(block);
  return moved;
}

char* Duplicate(const char* text) {
  const size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(Malloc(size));
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

bool Open() {
  void* room = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (room == MAP_FAILED || xmlMemSetup(Free, Malloc, Realloc, Duplicate) != 0) return false;
  g_start = static_cast<char*>(room);
  g_open = true;
  return true;
}

bool CloseForWriting() {
  g_open = false;
  return mprotect(g_start, kSize, PROT_READ) == 0;
}

}  // namespace arena

constexpr char kAddressPattern[] =
    "(((:|[0-9a-fA-F]{0,4}):)([0-9a-fA-F]{0,4}:){0,5})((([0-9a-fA-F]{0,4}"
    ":)?(:|[0-9a-fA-F]{0,4}))|([0-9]{1,3}(\\.[0-9]{1,3}){3}))(%\\p{N})?";

// Each kind of part that a pattern can have: classes, taken from each other and negated,
// blocks and categories, counted parts nested and with both bounds, alternatives that
// backtrack, and what is explosive.
const char* const kKinds[] = {"[a-c]+",
                              "[a-z-[aeiou]]*",
                              "[^x]{2,4}",
                              "\\p{L}+\\p{IsBasicLatin}*",
                              "\\P{N}\\i\\c*",
                              "\\d{1,3}(\\.\\d{1,3}){3}",
                              "((a{1,3}b?)*c|(ab|a)(c|bcd)*d*)",
                              "(a|aa){2,5}b{0,3}",
                              "[\\w\\s.,]*|.+",
                              kAddressPattern,
                              "",
                              "(a?){3}((b)*c?){2,}"};
const char* const kTexts[] = {"",  "abc",      "aaaaabbbcd", "192.0.2.17",  "2001:db8::1",
                              "x", "\xC3\xA9", "a b.",       "aabcaabcaac", "aaaaaaaad"};

// A write to a form would end the process.
TEST(SharedForm, IsNeverWrittenToWhileItIsRun) {
  ASSERT_TRUE(arena::Open());
  std::vector<xmlRegexp*> forms;
  bool isWhole = false;
  for (const char* pattern : kKinds) forms.push_back(CompilePattern(pattern, &isWhole));
  ASSERT_TRUE(arena::CloseForWriting());
  const auto run = [&forms] {
    std::vector<uint32_t> results;
    for (xmlRegexp* form : forms) {
      EXPECT_TRUE(arena::Holds(form));
      for (const char* text : kTexts) results.push_back(MatchCompiled(form, text));
    }
    return results;
  };
  const std::vector<uint32_t> expected = run();
  EXPECT_EQ(expected.size(), std::size(kKinds) * std::size(kTexts));
  std::vector<std::vector<uint32_t>> seen(4);
  std::vector<std::thread> threads;
  for (auto& results : seen) threads.emplace_back([&run, &results] { results = run(); });
  for (std::thread& thread : threads) thread.join();
  for (const auto& results : seen) EXPECT_EQ(expected, results);
  size_t at = 0;
  for (const char* pattern : kKinds) {
    for (const char* text : kTexts) {
      EXPECT_EQ(QM_UTL_MatchStrWithPattern(text, pattern), expected[at++])
          << "\"" << text << "\" and " << pattern;
    }
  }
}

}  // namespace
