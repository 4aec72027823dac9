// SPDX-License-Identifier: BSD-3-Clause
// Statements as the grammar wants them: known, at their place, in their number and order,
// with an argument of the right form. What stands inside an extension instance is the
// extension's matter; only what stands further in is looked at again.
#include <cstring>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/session.h"
#include "compiler/words/argument.h"
#include "compiler/words/grammar.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

const char* WordOf(Keyword keyword) noexcept {
  return RowOf(keyword).name.data();
}

bool IsOfYang(const xmlNode* statement) noexcept {
  const xmlNs* ns = statement->ns;
  return ns != nullptr && std::strcmp(reinterpret_cast<const char*>(ns->href), kYinNamespace) == 0;
}

void JudgeUnknown(Lint* lint, const xmlNode* statement, const xmlNode* parent) {
  if (!IsOfYang(statement)) return;
  Suggestion near(NameOf(statement));
  for (const SubStatement& row : SubStatementsOf(KeywordOf(parent)))
    near.Consider(WordOf(row.keyword));
  Error(lint, cls::kStatement, statement, "YANG has no statement " + Quote(NameOf(statement)),
        near.Advice("statements of an extension need its prefix"));
}

// "container, list": where a statement may stand.
std::string HoldersOf(Keyword child) {
  std::string holders;
  for (size_t i = 1; i < kKeywordCount; ++i) {
    const auto parent = static_cast<Keyword>(i);
    if (FindSubStatement(parent, child) == nullptr) continue;
    holders += std::string(holders.empty() ? "" : ", ") + WordOf(parent);
  }
  return holders;
}

void JudgePosition(Lint* lint, const Module* file, const xmlNode* statement,
                   const xmlNode* parent) {
  const Keyword keyword = KeywordOf(statement);
  if (KeywordOf(parent) == Keyword::kNone) return;
  const SubStatement* row = FindSubStatement(KeywordOf(parent), keyword);
  const std::string what = Quote(NameOf(statement)) + " may not stand in " + Quote(NameOf(parent));
  if (row == nullptr) {
    const std::string holders = HoldersOf(keyword);
    Error(lint, cls::kStatement, statement, what,
          holders.empty() ? "a module is a file of its own" : "it may stand in " + holders);
  } else if (row->max1 == 0 && !file->version11) {
    Error(lint, cls::kStatement, statement, what + " in YANG version 1",
          "write \"yang-version 1.1;\" at the head of the file");
  }
}

// Each statement of a kind that may stand once, but the first.
void JudgeNumber(Lint* lint, const Module* file, const xmlNode* parent) {
  const xmlNode* first[kKeywordCount] = {};
  for (const xmlNode* s = FirstChild(parent); s != nullptr; s = NextSibling(s)) {
    const auto index = static_cast<size_t>(KeywordOf(s));
    const SubStatement* row = FindSubStatement(KeywordOf(parent), KeywordOf(s));
    if (row == nullptr) continue;
    const uint8_t most = file->version11 || row->max1 == 0 ? row->max : row->max1;
    if (first[index] == nullptr) {
      first[index] = s;
    } else if (most == 1) {
      Error(lint, cls::kStatement, s,
            Describe(parent) + " has a second " + Quote(NameOf(s)) + ", the first is in line " +
                std::to_string(StatementOf(first[index])->place.line),
            row->max == kAnyNumber ? "only \"yang-version 1.1;\" allows several" : "remove one");
    }
  }
  for (const SubStatement& row : SubStatementsOf(KeywordOf(parent))) {
    if (row.min == 0 || first[static_cast<size_t>(row.keyword)] != nullptr) continue;
    Error(lint, cls::kStatement, parent,
          Describe(parent) + " has no " + Quote(WordOf(row.keyword)) + " statement", "add one");
  }
}

// What must hold one statement of several kinds (RFC 7950, section 14).
bool IsContentOf(Keyword parent, Keyword child) noexcept {
  if (IsDataDefinition(child)) return true;
  return parent == Keyword::kAugment &&
         (child == Keyword::kCase || child == Keyword::kAction || child == Keyword::kNotification);
}

void JudgeContent(Lint* lint, const Module* file, const xmlNode* parent) {
  const Keyword keyword = KeywordOf(parent);
  const bool mustHold = keyword == Keyword::kInput || keyword == Keyword::kOutput ||
                        keyword == Keyword::kList || keyword == Keyword::kAugment;
  if (!mustHold || file->lossy) return;
  for (const xmlNode* s = FirstChild(parent); s != nullptr; s = NextSibling(s))
    if (IsContentOf(keyword, KeywordOf(s))) return;
  const bool implied = keyword == Keyword::kInput || keyword == Keyword::kOutput;
  Error(lint, cls::kStatement, parent, Describe(parent) + " defines no node",
        implied ? "leave it out; the operation has it all the same" : "define one in it");
}

void JudgeArgumentOf(Lint* lint, const Module* file, const xmlNode* statement,
                     const xmlNode* parent) {
  const Keyword keyword = KeywordOf(statement);
  if (RowOf(keyword).argument.empty()) return;
  const char* argument = ArgumentOf(statement);
  if (argument == nullptr) {
    if (file->broken) return;  // the reader has told what is missing
    Error(lint, cls::kArgument, statement, Quote(NameOf(statement)) + " has no argument",
          "write its " + std::string(RowOf(keyword).argument) + " behind it");
    return;
  }
  const Keyword around = parent == nullptr ? Keyword::kNone : KeywordOf(parent);
  // What an augment's path begins with depends on where it stands.
  if (keyword == Keyword::kAugment && FindSubStatement(around, keyword) == nullptr) return;
  const std::string fault = JudgeArgument(keyword, around, argument, file->version11);
  if (fault.empty()) return;
  Error(lint, cls::kArgument, statement,
        "the argument of " + Quote(NameOf(statement)) + ", " + fault,
        AdviseArgument(keyword, around));
}

void JudgeOrder(Lint* lint, const Module* file) {
  Section last = Section::kHeader;
  for (const xmlNode* s = FirstChild(file->root); s != nullptr; s = NextSibling(s)) {
    const Keyword keyword = KeywordOf(s);
    if (keyword == Keyword::kNone || FindSubStatement(KeywordOf(file->root), keyword) == nullptr)
      continue;
    const Section section = SectionOf(keyword);
    if (section < last) {
      Error(lint, cls::kStatement, s,
            Quote(NameOf(s)) + " stands behind statements of the " + NameOf(last),
            std::string("move it up to the ") + NameOf(section));
    } else {
      last = section;
    }
  }
}

}  // namespace

void LintGrammar(Lint* lint, const Module* file) {
  JudgeArgumentOf(lint, file, file->root, nullptr);
  JudgeNumber(lint, file, file->root);
  JudgeOrder(lint, file);
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    const xmlNode* parent = ParentOf(s);
    if (Is(s, Keyword::kNone)) {
      JudgeUnknown(lint, s, parent);
      continue;
    }
    JudgePosition(lint, file, s, parent);
    JudgeNumber(lint, file, s);
    JudgeContent(lint, file, s);
    JudgeArgumentOf(lint, file, s, parent);
  }
}

}  // namespace compiler
