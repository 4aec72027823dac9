// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/lint/lint_pass.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "compiler/reading/type_chain.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

constexpr const char* kSymbolWords[] = {"grouping", "typedef", "identity", "feature", "extension"};
static_assert(std::size(kSymbolWords) == kSymbolKindCount, "one word a kind");

// The names that could stand where `reference` does: those of the module that its
// prefix means, and for a type without prefix the built-in ones.
void ConsiderNames(Suggestion* near, const Module* module, SymbolKind kind, bool local) {
  const auto index = static_cast<size_t>(kind);
  std::vector<std::string_view> names;  // sorted, since the table has no order
  for (const auto& entry : module->symbols.named[index]) names.push_back(entry.first);
  for (const auto& scope : module->symbols.inner)
    for (const xmlNode* s : scope.second.all)
      if (local && std::string_view(NameOf(s)) == kSymbolWords[index])
        names.emplace_back(ArgumentOf(s));
  if (local && kind == SymbolKind::kTypedef)
    for (const std::string_view name : BuiltInNames()) names.push_back(name);
  std::sort(names.begin(), names.end());
  for (const std::string_view name : names) {
    if (!near->Consider(name)) break;
  }
}

}  // namespace

std::string Describe(const xmlNode* statement) {
  const char* argument = ArgumentOf(statement);
  std::string text = NameOf(statement);
  if (argument != nullptr) text += " " + Quote(argument);
  return text;
}

std::string PlaceOf(const xmlNode* statement) {
  const Place& place = StatementOf(statement)->place;
  return place.file->path + ":" + std::to_string(place.line);
}

void Fatal(Lint* lint, const char* group, const xmlNode* at, std::string message,
           std::string advice) {
  AddFinding(lint->report, Severity::kFatal, group, at, std::move(message), std::move(advice));
}

void Error(Lint* lint, const char* group, const xmlNode* at, std::string message,
           std::string advice) {
  AddFinding(lint->report, Severity::kError, group, at, std::move(message), std::move(advice));
}

void Warn(Lint* lint, const char* group, const xmlNode* at, std::string message,
          std::string advice) {
  AddFinding(lint->report, Severity::kWarning, group, at, std::move(message), std::move(advice));
}

bool IsOfModule(const Lint& lint, const SchemaNode* node) noexcept {
  return node->space == lint.module;
}

void ErrorOn(Lint* lint, const char* group, const SchemaNode* node, const xmlNode* at,
             std::string message, std::string advice) {
  Error(lint, group, at, std::move(message), std::move(advice));
  lint->report->findings.back().usedAt = node->usedAt;
}

void WarnOn(Lint* lint, const char* group, const SchemaNode* node, const xmlNode* at,
            std::string message, std::string advice) {
  Warn(lint, group, at, std::move(message), std::move(advice));
  lint->report->findings.back().usedAt = node->usedAt;
}

Module* ResolvePrefix(Lint* lint, const char* group, const xmlNode* at, std::string_view prefix) {
  Module* file = StatementOf(at)->words;
  if (KnowsPrefix(file, prefix) || prefix.empty()) return ModuleOfPrefix(file, prefix);
  Suggestion near(prefix, &lint->namesToCompare);
  near.Consider(file->prefix);
  for (const Import& import : file->imports) near.Consider(import.prefix);
  Error(lint, group, at, "no import declares the prefix " + Quote(prefix),
        near.Advice("import the module that is meant with this prefix"));
  return nullptr;
}

// A submodule of version 1 sees what it defines and includes itself (RFC 6020, section
// 7.2.2); of version 1.1 all that its module has (RFC 7950, section 5.1).
static void JudgeVisibility(Lint* lint, const xmlNode* at, const xmlNode* definition) {
  const Module* file = StatementOf(at)->words;
  const Module* other = StatementOf(definition)->words;
  if (file->version11 || file->belongsTo.empty() || other == file || !IsGlobal(definition)) return;
  if (MainModuleOf(StatementOf(definition)->words) != lint->module) return;
  const bool isIncluded = std::any_of(file->includes.begin(), file->includes.end(),
                                      [other](const Include& i) { return i.target == other; });
  if (isIncluded) return;
  const bool isSubmodule = !other->belongsTo.empty();
  Error(lint, cls::kLinkage, at,
        Describe(definition) + " is defined in " + (isSubmodule ? "submodule " : "module ") +
            Quote(other->name) + ", which submodule " + Quote(file->name) + " does not include",
        isSubmodule ? "include it; version 1.1 needs no include here"
                    : "move it into a submodule, or write \"yang-version 1.1;\" in all files");
}

std::string NearestSymbol(Lint* lint, const xmlNode* at, SymbolKind kind,
                          std::string_view reference, std::string_view otherwise) {
  const Reference parts = SplitReference(reference);
  Module* file = StatementOf(at)->words;
  Module* module = ModuleOfPrefix(file, parts.prefix);
  if (module == nullptr) return std::string(otherwise);
  Suggestion near(parts.name, &lint->namesToCompare);
  if (lint->namesToCompare != 0) ConsiderNames(&near, module, kind, module == MainModuleOf(file));
  return near.Advice(otherwise);
}

xmlNode* Resolve(Lint* lint, const char* group, const xmlNode* at, SymbolKind kind,
                 std::string_view reference, bool stops) {
  const Reference parts = SplitReference(reference);
  Module* module = ResolvePrefix(lint, cls::kLinkage, at, parts.prefix);
  if (module == nullptr) return nullptr;
  xmlNode* found = FindSymbol(at, kind, reference);
  if (found != nullptr) {
    JudgeVisibility(lint, at, found);
    return found;
  }
  const bool local = module == MainModuleOf(StatementOf(at)->words);
  if (IsLossy(module)) return nullptr;
  std::string message = std::string("there is no ") + kSymbolWords[static_cast<size_t>(kind)] +
                        " " + Quote(parts.name);
  if (!local) message += " in module " + Quote(module->name);
  const std::string advice = NearestSymbol(
      lint, at, kind, reference,
      local && parts.prefix.empty() ? "define it, or name the module that does by its prefix"
                                    : "look at what that module defines");
  (stops ? Fatal : Error)(lint, group, at, message, advice);
  return nullptr;
}

}  // namespace compiler
