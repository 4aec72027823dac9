// SPDX-License-Identifier: BSD-3-Clause
// The pages hold each message that the compiler's sources can say: what stands in quotes where
// a message is handed to a reporting function stands in docs/, too.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// The functions, and which of their arguments is the message, from 0.
const std::map<std::string, int> kReporters = {
    {"AddFinding", 4}, {"Error", 3},  {"ErrorOn", 4}, {"Fatal", 3}, {"Lose", 2},
    {"Refuse", 2},     {"Remark", 2}, {"Say", 1},     {"Warn", 3},  {"WarnOn", 4},
};

// Fewer words say nothing of what the message is about.
constexpr int kFewestWords = 3;

struct Token {
  char kind;  // 'w' a word, 's' a string, 'p' any other character
  std::string text;
};

std::string ReadText(const fs::path& path) {
  std::ifstream stream(path);
  std::stringstream text;
  text << stream.rdbuf();
  return text.str();
}

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// The end of what is in quotes from `begin` on, behind its last quote.
size_t EndOfQuoted(const std::string& source, size_t begin) {
  size_t end = begin + 1;
  while (end < source.size() && source[end] != source[begin]) end += source[end] == '\\' ? 2 : 1;
  return end + 1;
}

// Strings that follow one another are one.
std::vector<Token> TokensOf(const std::string& source) {
  std::vector<Token> tokens;
  for (size_t i = 0; i < source.size();) {
    size_t end = i + 1;
    if (source.compare(i, 2, "//") == 0) {
      end = std::min(source.find('\n', i), source.size());
    } else if (source[i] == '"') {
      end = EndOfQuoted(source, i);
      if (tokens.empty() || tokens.back().kind != 's') tokens.push_back({'s', ""});
      tokens.back().text += source.substr(i + 1, end - i - 2);
    } else if (source[i] == '\'') {
      end = EndOfQuoted(source, i);
    } else if (IsWordCharacter(source[i])) {
      // A quote behind a digit is one of a long number.
      while (end < source.size() && (IsWordCharacter(source[end]) || source[end] == '\'')) ++end;
      tokens.push_back({'w', source.substr(i, end - i)});
    } else if (std::isspace(static_cast<unsigned char>(source[i])) == 0) {
      tokens.push_back({'p', source.substr(i, 1)});
    }
    i = end;
  }
  return tokens;
}

// The strings in an argument of the call whose "(" is at `at`.
void CollectStrings(const std::vector<Token>& tokens, size_t at, int wanted,
                    std::vector<std::string>* strings) {
  int depth = 0;
  int argument = 0;
  for (size_t i = at + 1; i < tokens.size() && depth >= 0; ++i) {
    const Token& token = tokens[i];
    if (token.kind == 's' && argument == wanted) strings->push_back(token.text);
    if (token.kind != 'p') continue;
    if (std::string("({[").find(token.text) != std::string::npos) ++depth;
    if (std::string(")}]").find(token.text) != std::string::npos) --depth;
    if (token.text == "," && depth == 0) ++argument;
  }
}

std::vector<std::string> StringsOfMessages(const fs::path& source) {
  const std::vector<Token> tokens = TokensOf(ReadText(source));
  std::vector<std::string> strings;
  for (size_t i = 0; i + 1 < tokens.size(); ++i) {
    const auto reporter = kReporters.find(tokens[i].text);
    if (tokens[i].kind == 'w' && reporter != kReporters.end() && tokens[i + 1].text == "(")
      CollectStrings(tokens, i + 1, reporter->second, &strings);
  }
  return strings;
}

// Without quotes and the like, each run of blanks being one.
std::string Plain(const std::string& text) {
  std::string plain;
  for (const char c : text) {
    const bool blank = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (c == '"' || c == '`' || c == '\'' || c == '\\') continue;
    if (!blank || (!plain.empty() && plain.back() != ' ')) plain += blank ? ' ' : c;
  }
  return plain;
}

// What stands between the semicolons of a message, each a sentence of its own on the pages.
std::vector<std::string> PiecesOf(const std::string& message) {
  std::vector<std::string> pieces;
  std::stringstream stream(message);
  for (std::string piece; std::getline(stream, piece, ';');) {
    const size_t begin = piece.find_first_not_of(" ,:[]");
    const size_t end = piece.find_last_not_of(" ,:[]");
    if (begin == std::string::npos) continue;
    piece = piece.substr(begin, end + 1 - begin);
    int words = 0;
    for (size_t i = 0; i < piece.size(); ++i) {
      const bool begins = i == 0 || piece[i - 1] == ' ';
      words += begins && std::isalpha(static_cast<unsigned char>(piece[i])) != 0 ? 1 : 0;
    }
    if (words >= kFewestWords) pieces.push_back(piece);
  }
  return pieces;
}

std::string TextOfPages() {
  std::string pages;
  for (const char* name : {"lint.md", "compile.md"})
    pages += Plain(ReadText(fs::path(QMODEL_LINT_PAGE).parent_path() / name)) + " ";
  return pages;
}

TEST(MessagePages, HoldEachMessageOfTheSources) {
  const std::string pages = TextOfPages();
  size_t count = 0;
  for (const char* folder : {"conditions", "lint", "reading", "spelling"}) {
    for (const auto& entry : fs::directory_iterator(fs::path(QMODEL_COMPILER_SOURCES) / folder)) {
      if (entry.path().extension() != ".cc") continue;
      for (const std::string& message : StringsOfMessages(entry.path())) {
        for (const std::string& piece : PiecesOf(Plain(message))) {
          ++count;
          EXPECT_NE(std::string::npos, pages.find(piece))
              << entry.path().filename() << " says what no page lists: " << piece;
        }
      }
    }
  }
  EXPECT_GT(count, 150U);
}

}  // namespace
