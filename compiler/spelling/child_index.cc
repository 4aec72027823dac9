// SPDX-License-Identifier: BSD-3-Clause
// The key is the parent's record, which stays with the session: an address of a node that
// was freed may come again.
#include "compiler/spelling/child_index.h"

#include "compiler/reading/statement.h"
#include "compiler/words/node_kind.h"

namespace compiler {

namespace {

// So many are looked through one by one.
constexpr unsigned kFewChildren = 16;

xmlNode* FindAmongMany(Compilation* all, const xmlNode* parent, std::string_view name) {
  const auto entered = all->children.try_emplace(StatementOf(parent));
  NamedNodes& named = entered.first->second;
  for (xmlNode* s = FirstChild(parent); entered.second && s != nullptr; s = NextSibling(s)) {
    const char* own = SchemaName(s);
    if (own != nullptr) named.emplace(own, s);
  }
  const auto found = named.find(name);
  return found == named.end() ? nullptr : found->second;
}

}  // namespace

const char* SchemaName(const xmlNode* node) noexcept {
  const Keyword keyword = KeywordOf(node);
  if (!IsSchemaNode(keyword)) return nullptr;
  const bool isUnnamed = keyword == Keyword::kInput || keyword == Keyword::kOutput;
  return isUnnamed ? NameOf(node) : ArgumentOf(node);
}

xmlNode* FindSchemaChild(Compilation* all, const xmlNode* parent, std::string_view name) {
  unsigned looked = 0;
  for (xmlNode* s = FirstChild(parent); s != nullptr; s = NextSibling(s)) {
    if (++looked > kFewChildren) return FindAmongMany(all, parent, name);
    const char* own = SchemaName(s);
    if (own != nullptr && name == own) return s;
  }
  return nullptr;
}

void NoteChild(Compilation* all, const xmlNode* parent, xmlNode* child) {
  if (all->children.empty()) return;
  const auto known = all->children.find(StatementOf(parent));
  const char* name = known == all->children.end() ? nullptr : SchemaName(child);
  if (name != nullptr) known->second.emplace(name, child);
}

void ForgetChildren(Compilation* all, const xmlNode* parent) {
  all->children.erase(StatementOf(parent));
}

}  // namespace compiler
