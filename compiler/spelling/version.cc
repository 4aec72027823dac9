// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/version.h"

#include <algorithm>

#include "compiler/reading/repository.h"
#include "compiler/reading/statement.h"

namespace compiler {

namespace {

bool HasSeveralBases(const xmlNode* identity) {
  const xmlNode* first = FirstChild(identity, Keyword::kBase);
  return first != nullptr && NextSibling(first, Keyword::kBase) != nullptr;
}

bool HoldsNewerStatements(const Output& out) {
  const xmlNode* root = out.written.root;
  for (const xmlNode* s = FirstChild(root); s != nullptr; s = NextInTree(root, s)) {
    if (StatementOf(s)->words->version11) return true;
    if (Is(s, Keyword::kIdentity) && HasSeveralBases(s)) return true;
  }
  return false;
}

bool ImportsNewerByRevision(const Output& out, const std::vector<Output*>& outputs) {
  for (const xmlNode* s = FirstChild(out.written.root, Keyword::kImport); s != nullptr;
       s = NextSibling(s, Keyword::kImport)) {
    const char* name = ArgumentOf(s);
    if (name == nullptr || FirstChild(s, Keyword::kRevisionDate) == nullptr) continue;
    const bool isNewer = std::any_of(outputs.begin(), outputs.end(), [name](const Output* other) {
      return other->module->name == name && other->written.version11;
    });
    if (isNewer) return true;
  }
  return false;
}

void WriteNewerVersion(Output* out) {
  constexpr char kVersion[] = "1.1";
  xmlNode* root = out->written.root;
  out->written.version11 = true;
  if (xmlNode* version = FirstChild(root, Keyword::kYangVersion)) {
    SetArgument(out->all->session, version, kVersion);
    return;
  }
  xmlNode* made = MakeStatement(out->all->session, root, Keyword::kYangVersion, kVersion);
  if (xmlNode* first = FirstChild(root)) {
    InsertBefore(first, made);
  } else {
    AppendChild(root, made);
  }
}

}  // namespace

void SettleVersions(const std::vector<Output*>& outputs) {
  for (Output* out : outputs) {
    out->written.version11 = out->module->version11;
    if (!out->stopped && !out->written.version11 && HoldsNewerStatements(*out))
      WriteNewerVersion(out);
  }
  for (bool changed = true; changed;) {
    changed = false;
    for (Output* out : outputs) {
      if (out->stopped || out->written.version11 || !ImportsNewerByRevision(*out, outputs))
        continue;
      WriteNewerVersion(out);
      changed = true;
    }
  }
}

}  // namespace compiler
