// SPDX-License-Identifier: BSD-3-Clause
// What RFC 7950 leaves to the author and RFC 8407 asks for: descriptions of all that is
// defined, and who published the module, and when.
#include <algorithm>

#include "compiler/lint/lint_pass.h"

namespace compiler {

namespace {

bool WantsDescription(Keyword keyword) {
  constexpr Keyword kKinds[] = {Keyword::kAction,       Keyword::kAnydata,   Keyword::kAnyxml,
                                Keyword::kContainer,    Keyword::kExtension, Keyword::kFeature,
                                Keyword::kGrouping,     Keyword::kIdentity,  Keyword::kLeaf,
                                Keyword::kLeafList,     Keyword::kList,      Keyword::kModule,
                                Keyword::kNotification, Keyword::kRevision,  Keyword::kRpc,
                                Keyword::kSubmodule,    Keyword::kTypedef};
  return std::find(std::begin(kKinds), std::end(kKinds), keyword) != std::end(kKinds);
}

void JudgeDescription(Lint* lint, const xmlNode* statement) {
  if (!WantsDescription(KeywordOf(statement)) || ArgumentOf(statement) == nullptr) return;
  if (FirstChild(statement, Keyword::kDescription) != nullptr) return;
  Warn(lint, cls::kStyle, statement, Describe(statement) + " has no description",
       "say what it is for");
}

}  // namespace

void LintStyle(Lint* lint, const Module* file) {
  for (const Keyword keyword : {Keyword::kOrganization, Keyword::kContact, Keyword::kRevision}) {
    if (FirstChild(file->root, keyword) != nullptr) continue;
    Warn(lint, cls::kStyle, file->root,
         Describe(file->root) + " has no " + Quote(RowOf(keyword).name) + " statement", "add one");
  }
  JudgeDescription(lint, file->root);
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s))
    JudgeDescription(lint, s);
}

}  // namespace compiler
