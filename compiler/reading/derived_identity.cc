// SPDX-License-Identifier: BSD-3-Clause
// Identities may have several bases and stand in circles, which are told elsewhere: each
// is looked at once.
#include "compiler/reading/derived_identity.h"

#include <unordered_set>
#include <vector>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"

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
  std::unordered_set<const xmlNode*> seen;
  std::vector<const xmlNode*> open = BasesOf(identity);
  while (!open.empty()) {
    const xmlNode* next = open.back();
    open.pop_back();
    if (next == base) return true;
    if (!seen.insert(next).second) continue;
    for (const xmlNode* further : BasesOf(next)) open.push_back(further);
  }
  return false;
}

}  // namespace compiler
