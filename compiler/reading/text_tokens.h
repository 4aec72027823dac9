// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The tokens of YANG text (RFC 7950, sections 6.1.1 to 6.1.3): words, quoted strings,
// ';', '{' and '}'. Comments and blanks between them are passed over, strings joined
// by '+' are one token.
#include <string>
#include <string_view>
#include <vector>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"

namespace compiler {

enum class TokenKind : uint8_t { kEnd, kWord, kString, kSemicolon, kOpen, kClose };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string_view text;  // of a word or string; valid until the next string
  uint32_t line = 1;
  uint32_t column = 1;
  bool spansLines = false;  // a string that goes over a line's end
};

// What version 1.1 forbids, met before the version is known.
struct Doubt {
  uint32_t line = 0;
  uint32_t column = 0;
  char character = 0;  // behind a backslash; 0: a quote in an unquoted word
};

struct Tokenizer {
  const SourceFile* file = nullptr;
  Report* report = nullptr;
  const char* at = nullptr;
  const char* end = nullptr;        // a NUL stands there
  const char* lineStart = nullptr;  // of the line of `at`
  const char* counted = nullptr;    // a place in this line, and its column
  uint32_t countedColumn = 1;
  const char* backslash = nullptr;  // the first at or after some place before, or the end
  uint32_t line = 1;
  unsigned errors = 0;
  bool ascii = false;      // columns are bytes
  bool version11 = false;  // `yang-version 1.1` was read
  bool stopped = false;    // nothing more can be made of the text
  std::vector<Doubt> doubts;
  std::string joined;  // the text of a string that does not stand in the file as it is
};

// Begins with a text that holds allowed characters only (text_check.h), without byte
// order mark, and that a NUL follows.
void StartTokens(Tokenizer* tokenizer, const SourceFile* file, std::string_view text,
                 Report* report);

Token NextToken(Tokenizer* tokenizer);

// Reports an error of the text. After very many the reading stops.
void ReportSyntax(Tokenizer* tokenizer, uint32_t line, uint32_t column, std::string message,
                  std::string advice = {});

// The file is of version 1.1: what was doubtful until now is wrong, and so is what
// follows.
void SetVersion11(Tokenizer* tokenizer);

}  // namespace compiler
