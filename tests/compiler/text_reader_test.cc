// SPDX-License-Identifier: BSD-3-Clause
// YANG text as a whole: statements, comments, characters, what is wrong and where, and
// sizes that no model has but a file may.
#include <gtest/gtest.h>

#include "tests/compiler/read_helper.h"

namespace compiler {
namespace {

std::string FindingsIn(const std::string& text) {
  return ReadText(text).Findings();
}

// The statements below the root, a line for each: "LINE:COLUMN KEYWORD ARGUMENT", indented.
std::string Outline(const ReadResult& read) {
  std::string lines;
  if (read.module == nullptr) return "no module";
  const xmlNode* root = read.module->root;
  for (const xmlNode* s = NextInTree(root, root); s != nullptr; s = NextInTree(root, s)) {
    for (const xmlNode* p = s->parent; p != root; p = p->parent) lines += "  ";
    const Place& place = StatementOf(s)->place;
    const char* argument = ArgumentOf(s);
    lines += std::to_string(place.line) + ":" + std::to_string(place.column) + " " + NameOf(s);
    lines += argument == nullptr ? "\n" : std::string(" ") + argument + "\n";
  }
  return lines;
}

TEST(TextStatements, StandWhereTheirKeywordDoes) {
  EXPECT_EQ(Outline(ReadText("module m {\n"
                             "  leaf a { type string; }\tleaf b;\n"
                             "  /* \xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\n\xc3\xa4 */ leaf c;"
                             " /* \xc3\xa4 */ leaf d;\r\n"
                             "  description 'one\n two'; leaf e;\n"
                             "}\n")),
            "2:3 leaf a\n"
            "  2:12 type string\n"
            "2:27 leaf b\n"
            "4:6 leaf c\n"
            "4:22 leaf d\n"
            "5:3 description one\n two\n"
            "6:8 leaf e\n");
}

TEST(TextStatements, MayEndInASemicolonOrAnEmptyBlock) {
  EXPECT_EQ(Outline(ReadText("module m{input{}output {} leaf a{}leaf b;}")),
            "1:10 input\n1:17 output\n1:27 leaf a\n1:35 leaf b\n");
}

TEST(TextStatements, FollowAByteOrderMark) {
  const ReadResult read = ReadText("\xef\xbb\xbfmodule m { leaf a; }");
  EXPECT_EQ(read.Findings(), "");
  EXPECT_EQ(StatementOf(read.module->root)->place.column, 1u);
}

TEST(TextStatements, MayHaveNoBlankBetweenThemAndComments) {
  EXPECT_EQ(Outline(ReadText("/**/module/**/m/**/{/***/leaf/* ** / */a;//\n//}\n}//")),
            "1:26 leaf a\n");
}

TEST(TextStatements, UnknownOnesStay) {
  const ReadResult read = ReadText("module m { leaff x { type string; } foo; e:x 'y'; }");
  EXPECT_EQ(read.Findings(), "");
  EXPECT_EQ(Outline(read), "1:12 leaff x\n  1:22 type string\n1:37 foo\n1:42 x y\n");
  const xmlNode* unknown = FirstChild(read.module->root);
  EXPECT_EQ(KeywordOf(unknown), Keyword::kNone);
  EXPECT_EQ(unknown->ns, read.session->yin);
  ASSERT_EQ(read.module->extensions.size(), 1u);
  EXPECT_STREQ(read.module->extensions[0].prefix, "e");
  EXPECT_EQ(read.module->extensions[0].element->ns, nullptr);
}

TEST(TextStatements, OfVersion1And11AreTold) {
  EXPECT_FALSE(ReadText("module m { yang-version 1; }").module->version11);
  EXPECT_FALSE(ReadText("module m { }").module->version11);
  EXPECT_TRUE(ReadText("module m { yang-version 1.1; }").module->version11);
  EXPECT_TRUE(ReadText("module m { yang-version '1.' + \"1\"; }").module->version11);
}

TEST(TextErrors, AreToldWithTheirPlace) {
  struct Row {
    const char* text;
    const char* findings;
  };
  for (const Row& row : std::initializer_list<Row>{
           {"", "1:1: the file holds no module\n"},
           {" // only this", "1:14: the file holds no module\n"},
           {"leaf a;", "1:1: the file does not begin with 'module' or 'submodule'\n"},
           {"'module' m;", "1:1: the file does not begin with 'module' or 'submodule'\n"},
           {"module;", "1:1: 'module' lacks its argument\n"},
           {"// c\n module '' { prefix m; }",
            "2:2: 'module' has an empty name; write the module's name\n"},
           {"submodule \"\";", "1:1: 'submodule' has an empty name; write the module's name\n"},
           {"module m {}\nmodule n {}",
            "2:1: something follows the end of the module; remove it\n"},
           {"module m {}\n}", "2:1: something follows the end of the module; remove it\n"},
           {"module m {\n leaf a {\n type string;\n}",
            "1:1: the block of 'module' is not closed; add '}'\n"},
           {"module m {\n leaf a {", "2:2: the block of 'leaf' is not closed; add '}'\n"},
           {"module m {\n leaf a",
            "2:8: ';' or '{' is missing after 'leaf'\n"
            "1:1: the block of 'module' is not closed; add '}'\n"},
           {"module m {\n leaf a\n leaf b;\n}", "3:2: ';' or '{' is missing after 'leaf'\n"},
           {"module m {\n leaf a }", "2:9: ';' or '{' is missing after 'leaf'\n"},
           {"module m {\n leaf;\n}", "2:2: 'leaf' lacks its argument\n"},
           {"module m {\n leaf {}\n}", "2:2: 'leaf' lacks its argument\n"},
           {"module m {\n input x;\n}", "2:2: 'input' takes no argument\n"},
           {"module m {\n description two words;\n leaf x;}",
            "2:18: ';' or '{' is missing after 'description'\n"},
           {"module m {\n description 'a' 'b' { } leaf x;}",
            "2:18: ';' or '{' is missing after 'description'\n"},
           {"module m {\n ;; }",
            "2:2: ';' ends no statement; remove it\n2:3: ';' ends no statement; remove it\n"},
           {"module m {\n { leaf a; } }",
            "2:2: '{' follows no statement\n"
            "2:14: something follows the end of the module; "
            "remove it\n"},
           {"module m {\n leaf a; {\n type string;\n }\n leaf b; }",
            "2:10: '{' follows no statement; if the block belongs to 'leaf', remove the ';' "
            "before it\n"},
           {"module m {\n 'leaf' a;\n leaf b; }",
            "2:2: a quoted string stands where a keyword is expected\n"},
           {"module m {\n 12 a { leaf e:f; } leaf b; }", "2:2: '12' is no keyword\n"},
           {"module m {\n :a; a:; a:b:c; -a; \xc3\xa4; }",
            "2:2: ':a' is no keyword\n2:6: 'a:' is no keyword\n2:10: 'a:b:c' is no keyword\n"
            "2:17: '-a' is no keyword\n2:21: '\xc3\xa4' is no keyword\n"},
           {"module m {\n leaf a */ ; }", "2:9: '*/' stands where no comment is open\n"},
           {"module m {\n leaf a*/; }", "2:8: '*/' stands where no comment is open\n"},
           {"module m {\n /* x\n * }",
            "2:2: the comment that begins here does not end; add '*/'\n"},
           {"module m {\n /*/ }", "2:2: the comment that begins here does not end; add '*/'\n"},
           {"module m {\n leaf 'a; }",
            "2:7: the string that begins here does not end; add the closing quote\n"},
           {"module m {\n leaf \"a\\\"; }",
            "2:7: the string that begins here does not end; add the closing quote\n"},
           {"module m {\n leaf 'a' + \"b; }",
            "2:7: the string that begins here does not end; add the closing quote\n"},
           {"module m {\r leaf a; }",
            "1:11: a carriage return without line feed; end lines with a line feed\n"},
           {"module m {\n description \"a;\n leaf b { type \"string\"; } }",
            "3:17: ';' or '{' is missing after 'description'; if the string that begins at line "
            "2 should end before, its closing quote is missing\n"
            "3:28: something follows the end of the module; remove it\n"},
       }) {
    SCOPED_TRACE(row.text);
    const ReadResult read = ReadText(row.text);
    EXPECT_EQ(read.Findings(), row.findings);
    for (const Finding& finding : read.report.findings) {
      EXPECT_EQ(finding.severity, Severity::kFatal);
      EXPECT_STREQ(finding.group, "syntax");
      EXPECT_EQ(finding.place.file->path, "m.yang");
    }
    EXPECT_TRUE(read.module == nullptr || read.module->broken);
  }
}

TEST(TextErrors, LeaveWhatElseCanBeRead) {
  EXPECT_EQ(Outline(ReadText("module m {\n leaf a\n leaf b { type string }\n description x y;\n"
                             " leaf c; { type int8; } ; 12 { e:f; leaf g; } leaf d; }")),
            "2:2 leaf a\n3:2 leaf b\n  3:11 type string\n4:2 description x\n5:2 leaf c\n"
            "  5:12 type int8\n5:47 leaf d\n");
}

TEST(TextErrors, OfAStatementWithoutNameTakeTheInstancesInItAlong) {
  const ReadResult read = ReadText("module m { e:a; 12 { e:b; 13 { e:c; } } e:d; }");
  ASSERT_EQ(read.module->extensions.size(), 2u);
  EXPECT_STREQ(NameOf(read.module->extensions[0].element), "a");
  EXPECT_STREQ(NameOf(read.module->extensions[1].element), "d");
}

TEST(TextErrors, AreNotToldWithoutEnd) {
  const ReadResult read = ReadText("module m {" + std::string(100000, ';') + "}");
  ASSERT_EQ(read.report.findings.size(), 1001u);
  EXPECT_EQ(read.report.findings.back().message,
            "too many errors, the rest of the file is not read");
}

TEST(TextCharacters, ThatAreNoUtf8AreToldEach) {
  struct Row {
    const char* bytes;
    const char* finding;
  };
  for (const Row& row : std::initializer_list<Row>{
           {"\x80", "2:18: byte 0x80, which is no UTF-8 here\n"},
           {"\xc3", "2:18: byte 0xc3, which is no UTF-8 here\n"},
           {"\xc0\x80",
            "2:18: byte 0xc0, which is no UTF-8 here\n"
            "2:19: byte 0x80, which is no UTF-8 here\n"},
           {"\xe0\x9f\xbf",
            "2:18: byte 0xe0, which is no UTF-8 here\n"
            "2:19: byte 0x9f, which is no UTF-8 here\n"
            "2:19: byte 0xbf, which is no UTF-8 here\n"},
           {"\xed\xa0\x80",
            "2:18: byte 0xed, which is no UTF-8 here\n"
            "2:19: byte 0xa0, which is no UTF-8 here\n"
            "2:19: byte 0x80, which is no UTF-8 here\n"},
           {"\x01", "2:18: character U+0001, which YANG does not allow\n"},
           {"\x1f", "2:18: character U+001F, which YANG does not allow\n"},
           {"\xef\xbf\xbe", "2:18: character U+FFFE, which YANG does not allow\n"},
           {"\xef\xb7\x90", "2:18: character U+FDD0, which YANG does not allow\n"},
           {"\xf0\x9f\xbf\xbf", "2:18: character U+1FFFF, which YANG does not allow\n"},
           {"\x7f\t\xc2\x80\xef\xbf\xbd\xf4\x8f\xbf\xbd\xed\x9f\xbf\xee\x80\x80", ""},
       }) {
    SCOPED_TRACE(row.finding);
    EXPECT_EQ(FindingsIn(std::string("module m {\n  description '\xc3\xa4 ") + row.bytes + "';}"),
              row.finding);
  }
}

TEST(TextCharacters, AreCheckedInCommentsToo) {
  EXPECT_EQ(FindingsIn("module m {} // \xff"), "1:16: byte 0xff, which is no UTF-8 here\n");
}

TEST(TextCharacters, MayNotBeNul) {
  using std::string_literals::operator""s;
  EXPECT_EQ(FindingsIn("module m { leaf a\0; }"s),
            "1:18: character U+0000, which YANG does not allow\n");
}

TEST(TextCharacters, BehindManyOthersAreFound) {
  for (size_t length = 0; length < 200; ++length) {
    const std::string before = "module m { // " + std::string(length, 'x');
    EXPECT_EQ(FindingsIn(before + "\x02\n}"),
              "1:" + std::to_string(before.size() + 1) +
                  ": character U+0002, which YANG does not allow\n");
  }
}

TEST(TextDepth, IsBounded) {
  const auto nested = [](unsigned depth) {
    std::string text = "module m {";
    for (unsigned i = 1; i < depth; ++i) text += "container c {";
    return text + std::string(depth, '}');
  };
  EXPECT_EQ(FindingsIn(nested(kMaxDepth)), "");
  const std::string findings = FindingsIn(nested(kMaxDepth + 1));
  EXPECT_NE(findings.find("statements stand in one another more than 1000 levels deep"),
            std::string::npos);
  EXPECT_NE(FindingsIn(nested(1000000)), "");
}

TEST(TextSize, MayBeTenMegabytesAndAMillionStatements) {
  const ReadResult large =
      ReadText("module m { description \"" + std::string(10 << 20, 'x') + "\"; }");
  EXPECT_EQ(large.Findings(), "");
  std::string text = "module m {";
  for (int i = 0; i < 1000000; ++i) text += "leaf a;";
  const ReadResult many = ReadText(text + "}");
  EXPECT_EQ(many.Findings(), "");
  size_t count = 0;
  for (const xmlNode* s = FirstChild(many.module->root); s != nullptr; s = NextSibling(s)) ++count;
  EXPECT_EQ(count, 1000000u);
}

// Columns of what is not ASCII are counted, so a long line must not be counted anew for
// each statement.
TEST(TextSize, OfOneLineCostsNoMore) {
  std::string text = "module m { description '\xc3\xa4';";
  for (int i = 0; i < 300000; ++i) text += "e:x '\\\xc3\xa4' + \"\\z\";";
  const ReadResult read = ReadText(text + "}");
  EXPECT_EQ(read.Findings(), "");
  EXPECT_EQ(StatementOf(read.module->extensions.back().element)->place.column, 28u + 299999 * 16);
}

}  // namespace
}  // namespace compiler
