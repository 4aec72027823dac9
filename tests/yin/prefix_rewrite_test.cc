// SPDX-License-Identifier: BSD-3-Clause
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/memory.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "yin/prefix_rewrite.h"

static const char kImports[] =
    "<import module='other'><prefix value='o'/></import>"
    "<import module='abcdefghijabcdefghij'><prefix value='x'/></import>";

// The rewritten text, "(fails)" when there is none.
static std::string Rewrite(const std::string& text) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", kImports));
  char* out = QMS_LOADER_TransPrefix2ModNameInLiteral(module.Get(), text.c_str());
  const std::string result = out == nullptr ? "(fails)" : out;
  g_qmMemFreeFunc(out);
  return result;
}

TEST(TransPrefix2ModNameInLiteral, OnlyKnownPrefixesInLiteralsAreReplaced) {
  struct {
    const char* text;
    const char* expected;
  } const rows[] = {
      {"", ""},
      {"a", "a"},
      {"../o:a = 'o:b'", "../o:a = 'other:b'"},
      {"derived-from-or-self(../type, \"o:eth\")", "derived-from-or-self(../type, \"other:eth\")"},
      {"'m:x'", "'m:x'"},
      {"'z:x'", "'z:x'"},
      {"'o'", "'o'"},
      {"':x'", "':x'"},
      {"''", "''"},
      {"'o:'", "'other:'"},
      {"'o:x:y'", "'other:x:y'"},
      {"'http://o:x'", "'http://o:x'"},
      {"  a  =\t'o:x'\n or 'o:y'", "  a  =\t'other:x'\n or 'other:y'"},
      {"a  ", "a"},
      {"'unclosed", "(fails)"},
      {"$v", "(fails)"},
      {"1.2.3", "(fails)"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.expected, Rewrite(row.text));
  }
}

TEST(TransPrefix2ModNameInLiteral, AResultOf3096CharactersFitsAndOneMoreFails) {
  EXPECT_EQ(std::string(3096, 'a'), Rewrite(std::string(3096, 'a')));
  EXPECT_EQ("(fails)", Rewrite(std::string(3097, 'a')));
  // 'x:…' grows by 19 characters.
  const std::string fits = "'x:" + std::string(3096 - 4 - 19, 'b') + "'";
  EXPECT_EQ(3096u, Rewrite(fits).size());
  EXPECT_EQ("(fails)", Rewrite("a" + fits));
  EXPECT_EQ("(fails)", Rewrite("'x:" + std::string(3096 - 4 - 18, 'b') + "'"));
}

TEST(TransPrefix2ModNameInLiteral, NullGivesNull) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  EXPECT_EQ(nullptr, QMS_LOADER_TransPrefix2ModNameInLiteral(module.Get(), nullptr));
  EXPECT_EQ(nullptr, QMS_LOADER_TransPrefix2ModNameInLiteral(nullptr, "a"));
}

TEST(CopyTokenIntoOutCondition, TheSizeCountsTheTerminator) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  char out[4] = "xyz";
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CopyTokenIntoOutCondition(module.Get(), "a", out, 0));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CopyTokenIntoOutCondition(module.Get(), "a", out, 1));
  EXPECT_EQ(QM_OK, QMS_LOADER_CopyTokenIntoOutCondition(module.Get(), "abc", out, 4));
  EXPECT_STREQ("abc", out);
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CopyTokenIntoOutCondition(module.Get(), "abcd", out, 4));
}

TEST(AddModuleNameIntoCondition, AppendsAtTheUsedLength) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", kImports));
  char out[32] = "a=";
  uint32_t used = 2;
  EXPECT_EQ(QM_OK, QMS_LOADER_AddModuleNameIntoCondition(module.Get(), "'o:x' rest", 5, out,
                                                         sizeof(out), &used));
  EXPECT_STREQ("a='other:x'", out);
  EXPECT_EQ(11u, used);
}

TEST(TransPrefix2ModNameInLiteral, SurvivesRefusedMemory) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool) {
    yin::Context ctx;
    if (ctx.Get() == nullptr) return;
    yin::Parsed module(ctx, yin::Module("m", kImports));
    char* out = QMS_LOADER_TransPrefix2ModNameInLiteral(module.Get(), "a = 'o:b'");
    if (out != nullptr) {
      EXPECT_STREQ("a = 'other:b'", out);
    }
    g_qmMemFreeFunc(out);
  });
  EXPECT_GT(injected, 10u);
}
