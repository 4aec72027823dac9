// SPDX-License-Identifier: BSD-3-Clause
// The table of a module is filled once, when the first name is looked up; definitions
// further in are kept by the statement that holds them, and a lookup goes up through the
// statements around its place.
#include "compiler/reading/symbols.h"

#include <unordered_set>
#include <vector>

#include "compiler/reading/statement.h"

namespace compiler {

namespace {

constexpr Keyword kKeywordOfSymbol[] = {Keyword::kGrouping, Keyword::kTypedef, Keyword::kIdentity,
                                        Keyword::kFeature, Keyword::kExtension};
static_assert(std::size(kKeywordOfSymbol) == kSymbolKindCount, "one keyword per kind");

int SymbolKindOf(Keyword keyword) {
  for (size_t i = 0; i < kSymbolKindCount; ++i) {
    if (kKeywordOfSymbol[i] == keyword) return static_cast<int>(i);
  }
  return -1;
}

void EnterOne(SymbolTable* table, xmlNode* statement) {
  const int kind = SymbolKindOf(KeywordOf(statement));
  const char* name = kind < 0 ? nullptr : ArgumentOf(statement);
  if (name == nullptr) return;
  if (IsGlobal(statement)) {
    table->named[kind].emplace(name, statement);
    return;
  }
  InnerSymbols& inner = table->inner[ParentOf(statement)];
  inner.all.push_back(statement);
  inner.named[name].push_back(statement);
}

void EnterFile(Module* file, void* arg) {
  auto* table = static_cast<SymbolTable*>(arg);
  table->lossy = table->lossy || file->lossy;
  for (const Include& include : file->includes)
    table->lossy = table->lossy || include.target == nullptr;
  for (xmlNode* s = NextInTree(file->root, file->root); s != nullptr; s = NextInTree(file->root, s))
    EnterOne(table, s);
}

const SymbolTable& TableOf(Module* module) {
  SymbolTable& table = module->symbols;
  if (!table.filled) {
    table.filled = true;
    ForEachFile(module, EnterFile, &table);
  }
  return table;
}

xmlNode* FindInner(const SymbolTable& table, const xmlNode* at, Keyword keyword,
                   std::string_view name) {
  if (table.inner.empty()) return nullptr;
  for (const xmlNode* scope = at; scope != nullptr; scope = ParentOf(scope)) {
    const auto found = table.inner.find(scope);
    if (found == table.inner.end()) continue;
    const auto named = found->second.named.find(name);
    if (named == found->second.named.end()) continue;
    for (xmlNode* definition : named->second) {
      if (Is(definition, keyword)) return definition;
    }
  }
  return nullptr;
}

// A file whose includes are being visited.
struct OpenFile {
  Module* file = nullptr;
  size_t next = 0;
};

}  // namespace

Reference SplitReference(std::string_view text) noexcept {
  const size_t colon = text.find(':');
  if (colon == std::string_view::npos) return {{}, text};
  return {text.substr(0, colon), text.substr(colon + 1)};
}

Module* MainModuleOf(Module* file) noexcept {
  return file == nullptr || file->belongsTo.empty() ? file : file->owner;
}

Module* ModuleOfPrefix(Module* file, std::string_view prefix) noexcept {
  if (prefix.empty() || prefix == file->prefix) return MainModuleOf(file);
  const auto import = file->importOfPrefix.find(prefix);
  return import == file->importOfPrefix.end() ? nullptr : import->second->target;
}

Module* ModuleOfNamespace(Module* file, std::string_view uri) noexcept {
  Module* main = MainModuleOf(file);
  if (main != nullptr && main->nameSpace == uri) return main;
  for (const Import& import : file->imports)
    if (import.target != nullptr && import.target->nameSpace == uri) return import.target;
  return nullptr;
}

bool KnowsPrefix(const Module* file, std::string_view prefix) noexcept {
  return prefix == file->prefix || file->importOfPrefix.count(prefix) != 0;
}

xmlNode* FindGlobal(Module* module, SymbolKind kind, std::string_view name) {
  const auto& named = TableOf(module).named[static_cast<size_t>(kind)];
  const auto found = named.find(name);
  return found == named.end() ? nullptr : found->second;
}

xmlNode* FindSymbol(const xmlNode* at, SymbolKind kind, std::string_view reference) {
  const Reference parts = SplitReference(reference);
  const xmlNode* origin = OriginOf(at);
  Module* file = StatementOf(origin)->words;
  Module* module = ModuleOfPrefix(file, parts.prefix);
  if (module == nullptr) return nullptr;
  if (module == MainModuleOf(file)) {
    const Keyword keyword = kKeywordOfSymbol[static_cast<size_t>(kind)];
    xmlNode* inner = FindInner(TableOf(module), origin, keyword, parts.name);
    if (inner != nullptr) return inner;
  }
  return FindGlobal(module, kind, parts.name);
}

bool IsLossy(Module* module) {
  return TableOf(module).lossy;
}

bool IsGlobal(const xmlNode* definition) noexcept {
  const xmlNode* parent = ParentOf(definition);
  return parent != nullptr && (Is(parent, Keyword::kModule) || Is(parent, Keyword::kSubmodule));
}

const xmlNode* OriginOf(const xmlNode* statement) noexcept {
  const xmlNode* origin = StatementOf(statement)->origin;
  return origin == nullptr ? statement : origin;
}

void ForEachFile(Module* module, void (*visit)(Module* file, void* arg), void* arg) {
  if (module == nullptr) return;
  std::unordered_set<const Module*> seen = {module};
  std::vector<OpenFile> open = {{module, 0}};
  while (!open.empty()) {
    OpenFile* top = &open.back();
    if (top->next == top->file->includes.size()) {
      visit(top->file, arg);
      open.pop_back();
      continue;
    }
    Module* included = top->file->includes[top->next++].target;
    if (included != nullptr && seen.insert(included).second) open.push_back({included, 0});
  }
}

}  // namespace compiler
