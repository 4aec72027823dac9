// SPDX-License-Identifier: BSD-3-Clause
// Imports, groupings and typedefs that nothing needs. A module that defines no data of
// its own is made for others to use, so what it has at its level is not judged.
#include <algorithm>
#include <cstring>

#include "compiler/grammar.h"
#include "compiler/lint_pass.h"
#include "compiler/type_chain.h"

namespace compiler {

namespace {

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.';
}

// Free text, which names nothing.
bool IsProse(Keyword keyword) {
  constexpr Keyword kProse[] = {Keyword::kDescription,  Keyword::kReference, Keyword::kContact,
                                Keyword::kOrganization, Keyword::kNamespace, Keyword::kErrorMessage,
                                Keyword::kPattern};
  return std::find(std::begin(kProse), std::end(kProse), keyword) != std::end(kProse);
}

// Whether "prefix:" stands in the text as a name of its own.
bool Names(std::string_view text, std::string_view prefix) {
  for (size_t at = text.find(prefix); at != std::string_view::npos;
       at = text.find(prefix, at + 1)) {
    const size_t end = at + prefix.size();
    const bool begins = at == 0 || !IsNameCharacter(text[at - 1]);
    if (begins && end + 1 < text.size() && text[end] == ':' && text[end + 1] != ':') return true;
  }
  return false;
}

bool IsOfModule(const xmlNode* instance, const Module* module) {
  const xmlNs* ns = instance->ns;
  return module != nullptr && ns != nullptr &&
         module->nameSpace == reinterpret_cast<const char*>(ns->href);
}

bool IsUsed(const Module* file, const Import& import) {
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    if (Is(s, Keyword::kNone) && IsOfModule(s, import.target)) return true;
    const char* argument = IsProse(KeywordOf(s)) ? nullptr : ArgumentOf(s);
    if (argument != nullptr && Names(argument, import.prefix)) return true;
  }
  return false;
}

// An instance of an extension that is not known has left the tree, with its prefix.
bool HasLostInstances(const Lint& lint, const Module* file) {
  return std::any_of(
      lint.report->findings.begin(), lint.report->findings.end(), [file](const Finding& finding) {
        return finding.place.file == file->file && std::strcmp(finding.group, cls::kExtension) == 0;
      });
}

void JudgeImports(Lint* lint, const Module* file) {
  if (HasLostInstances(*lint, file)) return;
  for (const Import& import : file->imports)
    if (!import.prefix.empty() && import.prefix != file->prefix && !IsUsed(file, import))
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
  const bool definesData = DefinesData(*lint);
  for (const Module* file : lint->files) {
    JudgeImports(lint, file);
    for (const Keyword keyword : {Keyword::kTypedef, Keyword::kGrouping})
      ForEachStatement(file, keyword,
                       [&](const xmlNode* s) { JudgeDefinition(lint, s, definesData); });
  }
}

}  // namespace compiler
