// SPDX-License-Identifier: BSD-3-Clause
// A string that stands in the file as it is meant, which is nearly every one on a
// single line, is viewed there. Others are put together in one buffer: parts joined
// by '+', escapes, and lines of which the indentation is taken away.
//
// The two versions of the language differ in what they forbid, and a file tells its
// version only after the first words. So everything is read as version 1 does, and
// what version 1.1 forbids is noted until the version is known.
#include "compiler/reading/text_tokens.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "compiler/reading/reader.h"
#include "compiler/words/text_check.h"

namespace compiler {

namespace {

constexpr unsigned kMaxErrors = 1000;
constexpr uint32_t kTabColumns = 8;

enum CharClass : uint8_t { kPlain, kBlank, kLineFeed, kMark, kQuote, kComment, kNul };

constexpr std::array<CharClass, 256> MakeClasses() {
  std::array<CharClass, 256> classes{};
  classes[0] = kNul;
  classes[' '] = classes['\t'] = classes['\r'] = kBlank;
  classes['\n'] = kLineFeed;
  classes[';'] = classes['{'] = classes['}'] = kMark;
  classes['"'] = classes['\''] = kQuote;
  classes['/'] = classes['*'] = kComment;  // or not: two characters tell
  return classes;
}
constexpr std::array<CharClass, 256> kClasses = MakeClasses();

CharClass ClassOf(char c) noexcept {
  return kClasses[static_cast<unsigned char>(c)];
}

void NextLine(Tokenizer* t, const char* start) noexcept {
  ++t->line;
  t->lineStart = start;
  t->counted = start;
  t->countedColumn = 1;
}

uint32_t ColumnOf(Tokenizer* t, const char* place) noexcept {
  if (t->ascii) return static_cast<uint32_t>(place - t->lineStart) + 1;
  if (place < t->counted) {
    t->counted = t->lineStart;
    t->countedColumn = 1;
  }
  PositionCounter counter{t->counted, t->line, t->countedColumn};
  CountTo(&counter, place);
  t->counted = place;
  t->countedColumn = counter.column;
  return counter.column;
}

void ReportHere(Tokenizer* t, std::string message, std::string advice = {}) {
  ReportSyntax(t, t->line, ColumnOf(t, t->at), std::move(message), std::move(advice));
}

void Stop(Tokenizer* t) noexcept {
  t->stopped = true;
  t->at = t->end;
}

std::string ForbiddenPair(char character) {
  if (character <= ' ' || character == 0x7f) return "a backslash that begins no escape of YANG 1.1";
  return std::string("'\\") + character + "' is no escape of YANG 1.1";
}

void ReportDoubt(Tokenizer* t, const Doubt& doubt) {
  if (doubt.character == 0) {
    ReportSyntax(t, doubt.line, doubt.column, "a quote stands in an unquoted string",
                 "put the string in quotes, or a blank before the quote");
  } else {
    ReportSyntax(t, doubt.line, doubt.column, ForbiddenPair(doubt.character),
                 "write '\\\\' for a backslash, or use single quotes");
  }
}

void NoteDoubt(Tokenizer* t, uint32_t line, uint32_t column, char character) {
  if (t->version11) {
    ReportDoubt(t, {line, column, character});
  } else if (t->doubts.size() <= kMaxErrors) {
    t->doubts.push_back({line, column, character});
  }
}

// ---- between the tokens ----

void SkipLineComment(Tokenizer* t) noexcept {
  const void* feed = std::memchr(t->at, '\n', static_cast<size_t>(t->end - t->at));
  t->at = feed == nullptr ? t->end : static_cast<const char*>(feed);
}

void SkipBlockComment(Tokenizer* t) {
  const uint32_t line = t->line;
  const uint32_t column = ColumnOf(t, t->at);
  for (const char* p = t->at + 2; p < t->end; ++p) {
    if (*p == '\n') NextLine(t, p + 1);
    if (*p != '*' || p[1] != '/') continue;
    t->at = p + 2;
    return;
  }
  Stop(t);
  ReportSyntax(t, line, column, "the comment that begins here does not end", "add '*/'");
}

// False when what stands at the cursor is no comment.
bool SkipComment(Tokenizer* t) {
  if (*t->at == '/' && t->at[1] == '/') {
    SkipLineComment(t);
  } else if (*t->at == '/' && t->at[1] == '*') {
    SkipBlockComment(t);
  } else {
    return false;
  }
  return true;
}

bool SkipCommentEnd(Tokenizer* t) {
  if (*t->at != '*' || t->at[1] != '/') return false;
  ReportHere(t, "'*/' stands where no comment is open");
  if (!t->stopped) t->at += 2;
  return true;
}

void SkipBlank(Tokenizer* t) {
  if (*t->at == '\r' && t->at[1] != '\n')
    ReportHere(t, "a carriage return without line feed", "end lines with a line feed");
  if (!t->stopped) ++t->at;
}

void SkipBetweenTokens(Tokenizer* t) {
  for (;;) {
    switch (ClassOf(*t->at)) {
      case kBlank:
        SkipBlank(t);
        break;
      case kLineFeed:
        ++t->at;
        NextLine(t, t->at);
        break;
      case kComment:
        if (!SkipComment(t) && !SkipCommentEnd(t)) return;
        break;
      default:
        return;
    }
  }
}

// ---- words ----

// True when a comment begins at `p`, or ends there: neither may stand in a word.
bool EndsWord(const char* p) noexcept {
  return (*p == '/' && (p[1] == '/' || p[1] == '*')) || (*p == '*' && p[1] == '/');
}

Token ReadWord(Tokenizer* t) {
  Token token{TokenKind::kWord, {}, t->line, ColumnOf(t, t->at)};
  const char* start = t->at;
  const char* p = start;
  for (;; ++p) {
    const CharClass kind = ClassOf(*p);
    if (kind == kPlain) continue;
    if (kind == kComment && !EndsWord(p)) continue;
    if (kind != kQuote) break;
    NoteDoubt(t, t->line, ColumnOf(t, p), 0);
    if (t->version11) break;
  }
  if (t->stopped) return {TokenKind::kEnd, {}, t->line, 1};
  t->at = p;
  token.text = {start, static_cast<size_t>(p - start)};
  return token;
}

// ---- quoted strings ----

// The width of the line before `quote`, as far as an indentation is concerned.
uint32_t IndentColumn(const char* lineStart, const char* quote) noexcept {
  uint32_t column = 0;
  for (const char* p = lineStart; p < quote; ++p) {
    const bool continues = (static_cast<unsigned char>(*p) & 0xc0) == 0x80;
    column += *p == '\t' ? kTabColumns : continues ? 0 : 1;
  }
  return column;
}

const char* WithoutTrailingBlanks(const char* start, const char* end) noexcept {
  while (end > start && (end[-1] == ' ' || end[-1] == '\t')) --end;
  return end;
}

// A double-quoted string while it is read.
struct Quoted {
  const char* quote = nullptr;      // that opens it
  const char* lineStart = nullptr;  // of the line of this quote
  uint32_t indent = 0;              // columns to take from each further line; 0: not counted yet
  const char* pending = nullptr;    // from here the text is not yet in the buffer
  uint32_t blanks = 0;              // what is left of a tab that was taken in part
};

void Flush(Tokenizer* t, Quoted* q, const char* end) {
  t->joined.append(q->blanks, ' ');
  t->joined.append(q->pending, end);
  q->blanks = 0;
}

// Ends a line of a string: takes away the blanks around the line's end.
const char* FoldLine(Tokenizer* t, Quoted* q, const char* feed) {
  const bool carriage = feed > q->pending && feed[-1] == '\r';
  const char* end = WithoutTrailingBlanks(q->pending, carriage ? feed - 1 : feed);
  if (end == q->pending) q->blanks = 0;
  Flush(t, q, end);
  t->joined += '\n';
  NextLine(t, feed + 1);
  if (q->indent == 0) q->indent = IndentColumn(q->lineStart, q->quote) + 1;
  const char* p = feed + 1;
  uint32_t column = 0;
  for (; column < q->indent && (*p == ' ' || *p == '\t'); ++p)
    column += *p == '\t' ? kTabColumns : 1;
  q->blanks = column > q->indent ? column - q->indent : 0;
  q->pending = p;
  return p;
}

// Takes the pair of a backslash and what follows it.
const char* TakeEscape(Tokenizer* t, Quoted* q, const char* backslash) {
  const char next = backslash[1];
  if (next == '\0') return backslash + 1;
  if (next != 'n' && next != 't' && next != '"' && next != '\\') {
    NoteDoubt(t, t->line, ColumnOf(t, backslash), next);
    return backslash + 1;  // both stay; a line may end behind the backslash
  }
  Flush(t, q, backslash);
  t->joined += next == 'n' ? '\n' : next == 't' ? '\t' : next;
  q->pending = backslash + 2;
  return q->pending;
}

void StringDoesNotEnd(Tokenizer* t, const Token& token) {
  Stop(t);
  ReportSyntax(t, token.line, token.column, "the string that begins here does not end",
               "add the closing quote");
}

// The first `c` at or after `from`, or the end.
const char* Find(const Tokenizer* t, const char* from, char c) noexcept {
  const void* found = std::memchr(from, c, static_cast<size_t>(t->end - from));
  return found == nullptr ? t->end : static_cast<const char*>(found);
}

// Takes the lines that end before `stop`.
void FoldLinesBefore(Tokenizer* t, Quoted* q, const char* from, const char* stop) {
  while (from < stop) {
    const void* feed = std::memchr(from, '\n', static_cast<size_t>(stop - from));
    if (feed == nullptr) return;
    from = FoldLine(t, q, static_cast<const char*>(feed));
  }
}

// Reads from behind the opening quote of `token`; false: it does not end. What ends a
// line, a pair or the string is searched for, which is cheaper than a look at each
// character; the place of the next backslash is kept, so that a text is searched once.
bool ReadFolded(Tokenizer* t, const char* quote, const Token& token) {
  Quoted q;
  q.quote = quote;
  q.lineStart = t->lineStart;
  q.pending = quote + 1;
  const char* close = Find(t, quote + 1, '"');
  for (const char* p = q.pending;;) {
    if (t->backslash < p) t->backslash = Find(t, p, '\\');
    if (close < p) close = Find(t, p, '"');
    const bool escaped = t->backslash < close;
    const char* stop = escaped ? t->backslash : close;
    FoldLinesBefore(t, &q, p, stop);
    if (stop == t->end) break;
    if (!escaped) {
      Flush(t, &q, close);
      t->at = close + 1;
      return true;
    }
    p = TakeEscape(t, &q, stop);
  }
  StringDoesNotEnd(t, token);
  return false;
}

// One part of a string, the cursor at its quote. `plain` views it where it stands in the
// file as it is meant, else it was added to the buffer and `plain` views nothing.
bool ReadDouble(Tokenizer* t, const Token& token, std::string_view* plain) {
  const char* quote = t->at;
  const char* p = quote + 1;
  while (*p != '"' && *p != '\\' && *p != '\n' && *p != '\0') ++p;
  if (*p != '"') return ReadFolded(t, quote, token);
  *plain = {quote + 1, static_cast<size_t>(p - quote - 1)};
  t->at = p + 1;
  return true;
}

bool ReadSingle(Tokenizer* t, const Token& token, std::string_view* plain) {
  const char* start = t->at + 1;
  const char* from = start;
  const char* p = start;
  for (; *p != '\''; ++p) {
    if (p == t->end) {
      StringDoesNotEnd(t, token);
      return false;
    }
    if (*p != '\n') continue;
    NextLine(t, p + 1);
    if (p == start || p[-1] != '\r') continue;
    t->joined.append(from, p - 1);  // a line of the file ends with a line feed alone
    from = p;
  }
  if (from == start) {
    *plain = {start, static_cast<size_t>(p - start)};
  } else {
    t->joined.append(from, p);
  }
  t->at = p + 1;
  return true;
}

// True when '+' joins another part, at which the cursor then stands.
bool AnotherPart(Tokenizer* t) {
  SkipBetweenTokens(t);
  if (*t->at != '+') return false;
  ++t->at;
  SkipBetweenTokens(t);
  if (ClassOf(*t->at) == kQuote) return true;
  if (!t->stopped) ReportHere(t, "'+' is followed by no quoted string", "quote what follows it");
  return false;
}

Token ReadString(Tokenizer* t) {
  Token token{TokenKind::kString, {}, t->line, ColumnOf(t, t->at)};
  std::string_view plain;
  t->joined.clear();
  for (bool another = true; another;) {
    t->joined.append(plain);
    plain = {};
    const bool ends = *t->at == '"' ? ReadDouble(t, token, &plain) : ReadSingle(t, token, &plain);
    if (!ends) return {TokenKind::kEnd, {}, t->line, 1};
    token.spansLines = token.spansLines || t->line != token.line;
    another = AnotherPart(t);
  }
  if (t->joined.empty()) {
    token.text = plain;
  } else {
    t->joined.append(plain);
    token.text = t->joined;
  }
  return token;
}

Token ReadMark(Tokenizer* t, TokenKind kind) {
  Token token{kind, {}, t->line, ColumnOf(t, t->at)};
  ++t->at;
  return token;
}

}  // namespace

void StartTokens(Tokenizer* t, const SourceFile* file, std::string_view text, Report* report) {
  *t = Tokenizer{};
  t->file = file;
  t->report = report;
  t->at = t->lineStart = t->counted = text.data();
  t->end = text.data() + text.size();
  t->backslash = Find(t, t->at, '\\');
  t->ascii = IsAscii(text);
}

Token NextToken(Tokenizer* t) {
  SkipBetweenTokens(t);
  switch (*t->at) {
    case ';':
      return ReadMark(t, TokenKind::kSemicolon);
    case '{':
      return ReadMark(t, TokenKind::kOpen);
    case '}':
      return ReadMark(t, TokenKind::kClose);
    case '"':
    case '\'':
      return ReadString(t);
    case '\0':
      return {TokenKind::kEnd, {}, t->line, ColumnOf(t, t->at)};
    default:
      return ReadWord(t);
  }
}

void ReportSyntax(Tokenizer* t, uint32_t line, uint32_t column, std::string message,
                  std::string advice) {
  if (t->errors > kMaxErrors) return;
  const Place place{t->file, line, column};
  ++t->errors;
  if (t->errors <= kMaxErrors) {
    AddFindingAt(t->report, Severity::kFatal, kSyntaxClass, place, std::move(message),
                 std::move(advice));
    return;
  }
  AddFindingAt(t->report, Severity::kFatal, kSyntaxClass, place,
               "too many errors, the rest of the file is not read");
  Stop(t);
}

void SetVersion11(Tokenizer* t) {
  t->version11 = true;
  for (const Doubt& doubt : t->doubts) ReportDoubt(t, doubt);
  t->doubts.clear();
}

}  // namespace compiler
