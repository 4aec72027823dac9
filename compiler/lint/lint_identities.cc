// SPDX-License-Identifier: BSD-3-Clause
// Bases of identities and of identityrefs (RFC 7950, sections 7.18.2 and 9.10.2).
#include "compiler/lint/lint_pass.h"
#include "compiler/words/argument.h"

namespace compiler {

void LintIdentities(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kBase, [&](const xmlNode* s) {
    const char* name = ArgumentOf(s);
    if (name != nullptr && IsIdentifierRef(name, true))
      Resolve(lint, cls::kIdentity, s, SymbolKind::kIdentity, name, true);
  });
}

}  // namespace compiler
