// SPDX-License-Identifier: BSD-3-Clause
// Bases of identities and of identityrefs (RFC 7950, sections 7.18.2 and 9.10.2).
#include <map>

#include "compiler/lint/lint_pass.h"
#include "compiler/words/argument.h"

namespace compiler {

namespace {

std::vector<const xmlNode*> BasesOf(const xmlNode* identity) {
  std::vector<const xmlNode*> bases;
  for (const xmlNode* s = FirstChild(identity, Keyword::kBase); s != nullptr;
       s = NextSibling(s, Keyword::kBase)) {
    const char* name = ArgumentOf(s);
    const xmlNode* base = name == nullptr ? nullptr : FindSymbol(s, SymbolKind::kIdentity, name);
    if (base != nullptr) bases.push_back(base);
  }
  return bases;
}

}  // namespace

bool IsDerivedFrom(const xmlNode* identity, const xmlNode* base) {
  std::map<const xmlNode*, bool> seen;
  std::vector<const xmlNode*> open = BasesOf(identity);
  while (!open.empty()) {
    const xmlNode* next = open.back();
    open.pop_back();
    if (next == base) return true;
    if (!seen.emplace(next, true).second) continue;
    for (const xmlNode* further : BasesOf(next)) open.push_back(further);
  }
  return false;
}

void LintIdentities(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kBase, [&](const xmlNode* s) {
    const char* name = ArgumentOf(s);
    if (name != nullptr && IsIdentifierRef(name, true))
      Resolve(lint, cls::kIdentity, s, SymbolKind::kIdentity, name, true);
  });
}

}  // namespace compiler
