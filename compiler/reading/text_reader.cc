// SPDX-License-Identifier: BSD-3-Clause
// YANG text into a tree. The tree itself is the stack: `parent` is the statement whose
// block is being read. After an error the reader looks for the statement's end and
// goes on, so that one run tells all that is wrong with a file.
#include <climits>
#include <cstring>

#include "compiler/reading/build.h"
#include "compiler/reading/module_file.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/text_tokens.h"
#include "compiler/words/character.h"
#include "compiler/words/text_check.h"

namespace compiler {

namespace {

struct TextReader {
  Session* session = nullptr;
  Module* module = nullptr;
  Tokenizer tokens;
  Token token;                // the next one, not yet taken
  xmlNode* parent = nullptr;  // whose block is open; the document: none is
  unsigned depth = 0;
  xmlNode* ended = nullptr;          // the statement that ended last, in this block
  xmlNode* discarded = nullptr;      // has no name; leaves the tree when it ends
  size_t extensionsBefore = 0;       // ... and those in it with it
  const xmlChar* unnamed = nullptr;  // of an argument whose name is not known yet
};

// What a statement's first word says.
struct Heading {
  Keyword keyword = Keyword::kNone;
  std::string_view prefix;  // empty: none
  std::string_view name;
  bool valid = true;  // could be a name
};

void Advance(TextReader* r) {
  r->token = NextToken(&r->tokens);
}

void ReportAtToken(TextReader* r, std::string message, std::string advice = {}) {
  ReportSyntax(&r->tokens, r->token.line, r->token.column, std::move(message), std::move(advice));
}

void ReportAtStatement(TextReader* r, const xmlNode* statement, std::string message,
                       std::string advice = {}) {
  const Place& place = StatementOf(statement)->place;
  ReportSyntax(&r->tokens, place.line, place.column, std::move(message), std::move(advice));
}

std::string Quote(std::string_view text) {
  constexpr size_t kShown = 40;
  if (text.size() <= kShown) return "'" + std::string(text) + "'";
  size_t shown = kShown;
  while ((static_cast<unsigned char>(text[shown]) & 0xc0) == 0x80) --shown;
  return "'" + std::string(text.substr(0, shown)) + "...'";
}

bool IsName(std::string_view text) noexcept {
  if (text.empty() || !IsNameStart(text[0])) return false;
  for (const char c : text)
    if (!IsNameCharacter(c)) return false;
  return true;
}

Heading ReadHeading(std::string_view word) noexcept {
  Heading heading;
  heading.name = word;
  heading.keyword = FindKeyword(word);
  if (heading.keyword != Keyword::kNone) return heading;
  const size_t colon = word.find(':');
  if (colon != std::string_view::npos) {
    heading.prefix = word.substr(0, colon);
    heading.name = word.substr(colon + 1);
    heading.valid = IsName(heading.prefix);
  }
  heading.valid = heading.valid && IsName(heading.name);
  return heading;
}

void AddArgument(TextReader* r, xmlNode* element, const Statement& record,
                 std::string_view argument) {
  const xmlChar* name = r->session->arguments[static_cast<size_t>(record.keyword)];
  if (record.argumentIsElement) {
    AppendText(AppendElement(element, r->session->yin, name), argument);
  } else {
    AppendAttribute(element, name == nullptr ? r->unnamed : name, argument);
  }
}

void CheckArgument(TextReader* r, const Heading& heading, const Token& first, bool given) {
  if (heading.keyword == Keyword::kNone) return;
  const bool takesOne = !RowOf(heading.keyword).argument.empty();
  if (takesOne == given) return;
  if (LosesName(heading.keyword)) r->module->lossy = true;
  ReportSyntax(&r->tokens, first.line, first.column,
               Quote(heading.name) + (given ? " takes no argument" : " lacks its argument"));
}

const xmlChar* NameIn(TextReader* r, const Heading& heading) {
  if (heading.keyword != Keyword::kNone)
    return r->session->names[static_cast<size_t>(heading.keyword)];
  return reinterpret_cast<const xmlChar*>(
      Intern(r->session, heading.valid ? heading.name : "invalid"));
}

xmlNode* AddStatement(TextReader* r, const Heading& heading, const Token& first) {
  const bool isExtension = !heading.prefix.empty() && heading.valid;
  xmlNode* element =
      AppendElement(r->parent, isExtension ? nullptr : r->session->yin, NameIn(r, heading));
  Statement& record = r->session->statements.emplace_back();
  element->_private = &record;
  record.place = {r->module->file, first.line, first.column};
  record.words = r->module;
  record.keyword = heading.keyword;
  record.argumentIsElement = RowOf(heading.keyword).argumentIsElement;
  if (isExtension) r->module->extensions.push_back({element, Intern(r->session, heading.prefix)});
  return element;
}

void Discard(TextReader* r, xmlNode* element, const Token& first) {
  r->module->lossy = true;
  ReportSyntax(&r->tokens, first.line, first.column, Quote(first.text) + " is no keyword");
  if (r->discarded != nullptr) return;
  r->discarded = element;
  r->extensionsBefore = r->module->extensions.size();
}

// A statement has ended. One without a name takes all in it out of the tree.
void EndStatement(TextReader* r, xmlNode* element) {
  r->ended = element;
  if (element != r->discarded) return;
  r->module->extensions.resize(r->extensionsBefore);
  RemoveStatement(element);
  r->discarded = nullptr;
  r->ended = nullptr;
}

void OpenBlock(TextReader* r, xmlNode* element) {
  r->parent = element;
  r->ended = nullptr;
  if (++r->depth <= kMaxDepth) return;
  ReportAtToken(
      r, "statements stand in one another more than " + std::to_string(kMaxDepth) + " levels deep");
  r->tokens.stopped = true;
}

bool IsSubmoduleOrModule(Keyword keyword) noexcept {
  return keyword == Keyword::kModule || keyword == Keyword::kSubmodule;
}

// A word that could begin a statement: then the semicolon before it is what is missing.
bool BeginsStatement(const Token& token) noexcept {
  return token.kind == TokenKind::kWord && FindKeyword(token.text) != Keyword::kNone;
}

// What stands behind a statement's argument is neither ';' nor '{'.
void ReportNoEnd(TextReader* r, const xmlNode* element, const Token& before) {
  std::string advice;
  if (before.spansLines) {
    advice = "if the string that begins at line " + std::to_string(before.line) +
             " should end before, its closing quote is missing";
  }
  ReportAtToken(r, std::string("';' or '{' is missing after ") + Quote(NameOf(element)),
                std::move(advice));
}

// Finds the end of a statement whose argument is followed by something else.
void RecoverEnd(TextReader* r, uint32_t line) {
  while (r->token.kind == TokenKind::kWord || r->token.kind == TokenKind::kString) {
    if (r->token.line > line && BeginsStatement(r->token)) return;
    r->module->lossy = true;
    Advance(r);
  }
}

void ReadEnd(TextReader* r, xmlNode* element, const Token& last) {
  if (r->token.kind != TokenKind::kSemicolon && r->token.kind != TokenKind::kOpen &&
      !r->tokens.stopped) {
    ReportNoEnd(r, element, last);
    RecoverEnd(r, last.line);
  }
  if (r->token.kind == TokenKind::kOpen) {
    OpenBlock(r, element);
    Advance(r);
    return;
  }
  if (r->token.kind == TokenKind::kSemicolon) Advance(r);
  EndStatement(r, element);
}

// From the first word of a statement to its ';' or into its block.
void ReadStatement(TextReader* r) {
  const Token first = r->token;
  const Heading heading = ReadHeading(first.text);
  xmlNode* element = AddStatement(r, heading, first);
  if (!heading.valid) Discard(r, element, first);
  Advance(r);
  const bool given = r->token.kind == TokenKind::kWord || r->token.kind == TokenKind::kString;
  Token last = first;
  if (given) {
    if (heading.keyword == Keyword::kYangVersion && r->depth == 1 && r->token.text == "1.1")
      SetVersion11(&r->tokens);
    if (heading.keyword == Keyword::kNone || !RowOf(heading.keyword).argument.empty())
      AddArgument(r, element, *StatementOf(element), r->token.text);
    last = r->token;
    Advance(r);
  }
  if (!r->tokens.stopped) CheckArgument(r, heading, first, given);
  ReadEnd(r, element, last);
}

void CloseBlock(TextReader* r) {
  if (r->depth == 0) {
    ReportAtToken(r, "'}' closes no block");
  } else {
    xmlNode* element = r->parent;
    r->parent = element->parent;
    --r->depth;
    EndStatement(r, element);
  }
  Advance(r);
}

// A block that no statement opens: it is taken to belong to the one that ended before
// it, as after a ';' too many.
void ReadStrayBlock(TextReader* r) {
  if (r->ended == nullptr) {
    r->module->lossy = true;
    ReportAtToken(r, "'{' follows no statement");
  } else {
    ReportAtToken(r, std::string("'{' follows no statement"),
                  std::string("if the block belongs to ") + Quote(NameOf(r->ended)) +
                      ", remove the ';' before it");
    OpenBlock(r, r->ended);
  }
  Advance(r);
}

void ReadStraySemicolon(TextReader* r) {
  ReportAtToken(r, "';' ends no statement", "remove it");
  Advance(r);
}

// Passes over a block that belongs to nothing.
void SkipBlock(TextReader* r) {
  size_t open = 0;
  do {
    if (r->token.kind == TokenKind::kOpen) ++open;
    if (r->token.kind == TokenKind::kClose) --open;
    Advance(r);
  } while (open > 0 && r->token.kind != TokenKind::kEnd);
}

void ReadStrayString(TextReader* r) {
  r->module->lossy = true;
  ReportAtToken(r, "a quoted string stands where a keyword is expected");
  const uint32_t line = r->token.line;
  Advance(r);
  RecoverEnd(r, line);
  if (r->token.kind == TokenKind::kSemicolon) {
    Advance(r);
  } else if (r->token.kind == TokenKind::kOpen) {
    SkipBlock(r);
  }
}

// Reads what stands in the block of the module, after its '{'.
void ReadBlocks(TextReader* r) {
  while (r->depth > 0 && !r->tokens.stopped) {
    switch (r->token.kind) {
      case TokenKind::kWord:
        ReadStatement(r);
        break;
      case TokenKind::kClose:
        CloseBlock(r);
        break;
      case TokenKind::kOpen:
        ReadStrayBlock(r);
        break;
      case TokenKind::kSemicolon:
        ReadStraySemicolon(r);
        break;
      case TokenKind::kString:
        ReadStrayString(r);
        break;
      case TokenKind::kEnd:
        if (!r->tokens.stopped)
          ReportAtStatement(r, r->parent,
                            "the block of " + Quote(NameOf(r->parent)) + " is not closed",
                            "add '}'");
        return;
    }
  }
}

bool ReadRoot(TextReader* r) {
  Advance(r);
  if (r->tokens.stopped) return false;
  if (r->token.kind != TokenKind::kWord || !IsSubmoduleOrModule(FindKeyword(r->token.text))) {
    ReportAtToken(r, r->token.kind == TokenKind::kEnd
                         ? std::string("the file holds no module")
                         : "the file does not begin with 'module' or 'submodule'");
    return false;
  }
  ReadStatement(r);
  r->module->root = xmlDocGetRootElement(r->module->document.get());
  ReadBlocks(r);
  if (!r->tokens.stopped && r->depth == 0 && r->token.kind != TokenKind::kEnd)
    ReportAtToken(r, "something follows the end of the module", "remove it");
  const char* name = ArgumentOf(r->module->root);
  if (name != nullptr && *name == '\0')
    ReportAtStatement(r, r->module->root, Quote(NameOf(r->module->root)) + " has an empty name",
                      "write the module's name");
  return name != nullptr && *name != '\0';
}

// Reports each character that YANG does not allow, and gives a text in which they are
// replaced, so that the rest can be read.
std::string ReplaceBadCharacters(std::string_view text, const char* bad, Tokenizer* tokens) {
  std::string repaired(text);
  PositionCounter counter{text.data(), 1, 1};
  const char* end = text.data() + text.size();
  while (bad != end) {
    const BadCharacter what = DescribeBadCharacter(bad, end);
    CountTo(&counter, bad);
    ReportSyntax(tokens, counter.line, counter.column, what.description);
    std::memset(&repaired[static_cast<size_t>(bad - text.data())], '?', what.length);
    bad = FindBadCharacter(bad + what.length, end);
  }
  return repaired;
}

std::string_view WithoutMark(std::string_view text) noexcept {
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  return text;
}

bool ReadTree(Session* session, Module* module, std::string_view text, Report* report) {
  TextReader r;
  r.session = session;
  r.module = module;
  r.unnamed = reinterpret_cast<const xmlChar*>(Intern(session, "argument"));
  r.parent = reinterpret_cast<xmlNode*>(module->document.get());
  text = WithoutMark(text);
  StartTokens(&r.tokens, module->file, text, report);
  std::string repaired;
  const char* bad = FindBadCharacter(text.data(), text.data() + text.size());
  if (bad != text.data() + text.size()) {
    repaired = ReplaceBadCharacters(text, bad, &r.tokens);
    const unsigned errors = r.tokens.errors;
    StartTokens(&r.tokens, module->file, repaired, report);
    r.tokens.errors = errors;
  }
  const bool isModule = ReadRoot(&r);
  module->broken = r.tokens.errors > 0;
  module->lossy = module->lossy || r.tokens.stopped || r.depth > 0 ||
                  (module->broken && r.token.kind != TokenKind::kEnd);
  return isModule;
}

}  // namespace

Module* ReadModuleText(Session* session, const std::string& path, const std::string& text,
                       Report* report) {
  Module* module = NewModule(session, path, true);
  if (text.size() <= INT_MAX && ReadTree(session, module, text, report)) {
    ReadHeader(module);
    return module;
  }
  if (text.size() > INT_MAX) ReportTooLarge(module, report);
  session->modules.pop_back();
  return nullptr;
}

}  // namespace compiler
