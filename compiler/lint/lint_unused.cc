// SPDX-License-Identifier: BSD-3-Clause
// Imports, groupings and typedefs that nothing needs. A module that defines no data of
// its own is made for others to use, so what it has at its level is not judged.
#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_set>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"
#include "compiler/words/character.h"
#include "compiler/words/grammar.h"

namespace compiler {

namespace {

// Free text, which names nothing.
bool IsProse(Keyword keyword) {
  constexpr Keyword kProse[] = {Keyword::kDescription,  Keyword::kReference, Keyword::kContact,
                                Keyword::kOrganization, Keyword::kNamespace, Keyword::kErrorMessage,
                                Keyword::kPattern};
  return std::find(std::begin(kProse), std::end(kProse), keyword) != std::end(kProse);
}

// Each name that stands before a single colon in the text.
void CollectPrefixes(std::string_view text, std::unordered_set<std::string_view>* prefixes) {
  for (size_t colon = text.find(':'); colon != std::string_view::npos;
       colon = text.find(':', colon + 1)) {
    size_t begin = colon;
    while (begin > 0 && IsNameCharacter(text[begin - 1])) --begin;
    if (begin != colon && colon + 1 < text.size() && text[colon + 1] != ':')
      prefixes->insert(text.substr(begin, colon - begin));
  }
}

// What the statements of a file use of others.
struct Uses {
  std::unordered_set<std::string_view> prefixes;    // in arguments
  std::unordered_set<std::string_view> nameSpaces;  // of extensions
};

Uses UsesOf(const Module* file) {
  Uses uses;
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    if (Is(s, Keyword::kNone) && s->ns != nullptr)
      uses.nameSpaces.insert(reinterpret_cast<const char*>(s->ns->href));
    const char* argument = IsProse(KeywordOf(s)) ? nullptr : ArgumentOf(s);
    if (argument != nullptr) CollectPrefixes(argument, &uses.prefixes);
  }
  return uses;
}

bool IsUsed(const Uses& uses, const Import& import) {
  return uses.prefixes.count(import.prefix) != 0 ||
         (import.target != nullptr && uses.nameSpaces.count(import.target->nameSpace) != 0);
}

// The files of which an instance of an extension that is not known has left the tree, with
// its prefix.
std::unordered_set<const SourceFile*> FilesWithLostInstances(const Lint& lint) {
  std::unordered_set<const SourceFile*> files;
  for (const Finding& finding : lint.report->findings)
    if (std::strcmp(finding.group, cls::kExtension) == 0) files.insert(finding.place.file);
  return files;
}

void JudgeImports(Lint* lint, const Module* file) {
  const Uses uses = UsesOf(file);
  for (const Import& import : file->imports)
    if (!import.prefix.empty() && import.prefix != file->prefix && !IsUsed(uses, import))
      Warn(lint, cls::kUnused, import.statement,
           "nothing uses the import of " + Quote(import.module), "remove it");
}

bool DefinesData(const Lint& lint) {
  for (const Module* file : lint.files)
    for (const xmlNode* s = FirstChild(file->root); s != nullptr; s = NextSibling(s)) {
      const Keyword keyword = KeywordOf(s);
      if (IsDataDefinition(keyword) || keyword == Keyword::kRpc ||
          keyword == Keyword::kNotification || keyword == Keyword::kAugment ||
          keyword == Keyword::kDeviation)
        return true;
    }
  return false;
}

void JudgeDefinition(Lint* lint, const xmlNode* statement, bool definesData) {
  if (ArgumentOf(statement) == nullptr || lint->used->count(statement) != 0) return;
  if (IsGlobal(statement) && !definesData) return;
  Warn(lint, cls::kUnused, statement, "nothing uses the " + Describe(statement),
       "remove it, if it is not made for other modules");
}

}  // namespace

void CollectUsed(const Session& session, std::unordered_set<const xmlNode*>* used) {
  for (const Module& file : session.modules) {
    if (file.root == nullptr) continue;
    for (const xmlNode* s = NextInTree(file.root, file.root); s != nullptr;
         s = NextInTree(file.root, s)) {
      const bool uses = Is(s, Keyword::kUses);
      if ((!uses && !Is(s, Keyword::kType)) || ArgumentOf(s) == nullptr) continue;
      if (!uses && FindBuiltIn(ArgumentOf(s)) != BuiltIn::kNone) continue;
      used->insert(
          FindSymbol(s, uses ? SymbolKind::kGrouping : SymbolKind::kTypedef, ArgumentOf(s)));
    }
  }
}

void LintUnused(Lint* lint) {
  if (IsLossy(lint->module)) return;  // what uses them may be missing
  const bool definesData = DefinesData(*lint);
  const std::unordered_set<const SourceFile*> lost = FilesWithLostInstances(*lint);
  for (const Module* file : lint->files) {
    if (lost.count(file->file) == 0) JudgeImports(lint, file);
    for (const Keyword keyword : {Keyword::kTypedef, Keyword::kGrouping})
      ForEachStatement(file, keyword,
                       [&](const xmlNode* s) { JudgeDefinition(lint, s, definesData); });
  }
}

}  // namespace compiler
