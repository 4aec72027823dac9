// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/prefixes.h"

#include <algorithm>

#include "compiler/reading/build.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/words/xpath_token.h"

namespace compiler {

namespace {

constexpr size_t kMaxName = 64;  // characters of a name that the loader takes

const WrittenPrefix* FindWritten(const Output& out, const Module& module) {
  const auto found =
      std::find_if(out.prefixes.begin(), out.prefixes.end(),
                   [&](const WrittenPrefix& p) { return p.module->name == module.name; });
  return found == out.prefixes.end() ? nullptr : &*found;
}

bool IsFree(const Output& out, const std::string& prefix) {
  return std::none_of(out.prefixes.begin(), out.prefixes.end(),
                      [&](const WrittenPrefix& p) { return p.prefix == prefix; });
}

// The prefix that is wanted where it can be, else one like it.
std::string FreePrefix(const Output& out, std::string wanted) {
  if (!IsXmlPrefix(wanted)) wanted = "m";
  std::string prefix = wanted.substr(0, kMaxName);
  for (unsigned i = 2; !IsFree(out, prefix); ++i) {
    const std::string number = std::to_string(i);
    prefix = wanted.substr(0, kMaxName - number.size()) + number;
  }
  return prefix;
}

void Declare(Output* out, const std::string& prefix, Module* module) {
  out->prefixes.push_back({prefix, module});
  if (!module->nameSpace.empty())
    AppendNamespace(out->written.root, nullptr, prefix, module->nameSpace);
}

// The prefix of the module's own. The file cannot be written with one that XML or the
// loader does not take, and with another it means the same.
void DeclareOwn(Output* out) {
  const std::string& own = out->module->prefix;
  const std::string prefix = FreePrefix(*out, own);
  out->written.prefix = prefix;
  Declare(out, prefix, out->module);
  const xmlNode* read = FirstChild(out->module->root, Keyword::kPrefix);
  if (prefix == own || read == nullptr) return;
  AddFinding(
      &out->report, Severity::kError, "name", read,
      "the prefix \"" + own + "\" cannot be written in YIN; \"" + prefix + "\" is written instead",
      "take a short one of letters, digits, \"_\", \"-\" and \".\" that XML does not reserve");
}

// Makes the statement of the module's own prefix tell what is written.
void WriteOwnPrefix(Output* out) {
  xmlNode* root = out->written.root;
  xmlNode* own = FirstChild(root, Keyword::kPrefix);
  if (own == nullptr) {
    AppendChild(root,
                MakeStatement(out->all->session, root, Keyword::kPrefix, out->written.prefix));
  } else if (out->written.prefix != out->module->prefix) {
    SetArgument(out->all->session, own, out->written.prefix);
  }
}

void CheckNamespace(Output* out) {
  if (IsXmlNamespace(out->module->nameSpace)) return;
  Stop(out, "name", FirstChild(out->module->root, Keyword::kNamespace),
       "the namespace \"" + out->module->nameSpace + "\" is one of XML itself",
       "take a namespace of your own");
}

// Each prefix stands in a statement, its own or of an import, and as one of XML.
void ChangePrefix(Output* out, WrittenPrefix* written, const std::string& prefix) {
  xmlNode* root = out->written.root;
  xmlNode* holder = root;
  if (written == out->prefixes.data()) {
    out->written.prefix = prefix;
  } else {
    holder = FirstChild(root, Keyword::kImport);
    while (ArgumentOf(holder) == nullptr || written->module->name != ArgumentOf(holder))
      holder = NextSibling(holder, Keyword::kImport);
  }
  SetArgument(out->all->session, FirstChild(holder, Keyword::kPrefix), prefix);
  RenameNamespace(root, written->prefix, prefix);
  written->prefix = prefix;
}

void PutImport(Output* out, xmlNode* import) {
  if (out->lastImport == nullptr) {
    AppendChild(out->written.root, import);
  } else {
    InsertAfter(out->lastImport, import);
  }
  out->lastImport = import;
}

void AddImport(Output* out, const std::string& prefix, Module* module) {
  Session* session = out->all->session;
  xmlNode* import = MakeStatement(session, out->written.root, Keyword::kImport, module->name);
  PutImport(out, import);
  AppendChild(import, MakeStatement(session, import, Keyword::kPrefix, prefix));
  Declare(out, prefix, module);
}

// An import of the module's own file. Of two for one module the first holds; the date
// stays when it is that of the revision that is written.
void CopyImport(Output* out, const Import& import) {
  if (import.target == nullptr || FindWritten(*out, *import.target) != nullptr) return;
  xmlNode* copy =
      CopyStatement(out->all->session, out->written.document.get(), import.statement, nullptr);
  PutImport(out, copy);
  xmlNode* date = FirstChild(copy, Keyword::kRevisionDate);
  const Module* written = WrittenModule(out->all->repository, import.module);
  if (date != nullptr && (written == nullptr || written->revision != import.revision))
    RemoveStatement(date);
  // One that is too long for the loader, or that another import has, is not kept.
  const std::string prefix = FreePrefix(*out, import.prefix);
  xmlNode* own = FirstChild(copy, Keyword::kPrefix);
  if (own != nullptr && prefix != import.prefix) SetArgument(out->all->session, own, prefix);
  Declare(out, prefix, import.target);
}

void ImportOfSubmodule(Module* file, void* arg) {
  auto* out = static_cast<Output*>(arg);
  if (file == out->module) return;
  for (const Import& import : file->imports) {
    if (import.target != nullptr) PrefixOf(out, import.target, import.prefix);
  }
}

void CopyAll(Output* out, Keyword keyword) {
  for (const xmlNode* s = FirstChild(out->module->root, keyword); s != nullptr;
       s = NextSibling(s, keyword))
    AppendChild(out->written.root,
                CopyStatement(out->all->session, out->written.document.get(), s, nullptr));
}

void StartTree(Output* out) {
  Session* session = out->all->session;
  xmlDoc* document = Need(xmlNewDoc(nullptr));
  out->written.document.reset(document);
  document->dict = session->dictionary.get();
  xmlDictReference(document->dict);
  xmlNode* root = CopyAlone(session, document, out->module->root, nullptr);
  xmlDocSetRootElement(document, root);
  out->written.root = root;
}

}  // namespace

void WriteHeader(Output* out) {
  const Module* module = out->module;
  StartTree(out);
  out->written.file = module->file;
  out->written.name = module->name;
  out->written.nameSpace = module->nameSpace;
  out->written.revision = module->revision;
  DeclareOwn(out);
  CheckNamespace(out);
  for (const Keyword keyword : {Keyword::kYangVersion, Keyword::kNamespace, Keyword::kPrefix})
    CopyAll(out, keyword);
  WriteOwnPrefix(out);
  for (xmlNode* s = FirstChild(out->written.root); s != nullptr; s = NextSibling(s))
    out->lastImport = s;
  for (const Import& import : module->imports) CopyImport(out, import);
  ForEachFile(out->module, ImportOfSubmodule, out);
  for (const Keyword keyword : {Keyword::kOrganization, Keyword::kContact, Keyword::kDescription,
                                Keyword::kReference, Keyword::kRevision})
    CopyAll(out, keyword);
}

const std::string& PrefixOf(Output* out, Module* module, std::string_view preferred) {
  const WrittenPrefix* written = FindWritten(*out, *module);
  if (written != nullptr) return written->prefix;
  const std::string prefix =
      FreePrefix(*out, std::string(preferred.empty() ? module->prefix : preferred));
  AddImport(out, prefix, module);
  return out->prefixes.back().prefix;
}

bool TakeNameAsPrefix(Output* out, Module* module) {
  const std::string& name = module->name;
  if (!IsXmlPrefix(name) || name.size() > kMaxName) return false;
  if (PrefixOf(out, module, name) == name) return true;
  const auto other =
      std::find_if(out->prefixes.begin(), out->prefixes.end(),
                   [&](const WrittenPrefix& written) { return written.prefix == name; });
  if (other != out->prefixes.end())
    ChangePrefix(out, &*other, FreePrefix(*out, other->module->prefix));
  const auto own =
      std::find_if(out->prefixes.begin(), out->prefixes.end(),
                   [&](const WrittenPrefix& written) { return written.module->name == name; });
  ChangePrefix(out, &*own, name);
  return true;
}

Module* ModuleOfWritten(const Output& out, std::string_view prefix) {
  const auto found =
      std::find_if(out.prefixes.begin(), out.prefixes.end(),
                   [&](const WrittenPrefix& written) { return written.prefix == prefix; });
  return found == out.prefixes.end() ? nullptr : found->module;
}

size_t LengthInLibrary(const Output& out, std::string_view condition) {
  std::vector<XpathToken> tokens;
  XpathError error;
  size_t length = condition.size();
  if (!TokenizeXpath(condition, &tokens, &error)) return length;
  for (const XpathToken& token : tokens) {
    if (token.kind != XpathTokenKind::kLiteral) continue;
    const std::string_view literal =
        condition.substr(token.span.begin + 1, token.span.end - token.span.begin - 2);
    const size_t colon = literal.find(':');
    const Module* module =
        colon == std::string_view::npos ? nullptr : ModuleOfWritten(out, literal.substr(0, colon));
    if (module != nullptr) length = length - colon + module->name.size();
  }
  return length;
}

std::string Qualify(Output* out, Module* module, std::string_view name) {
  if (module->name == out->module->name) return std::string(name);
  return PrefixOf(out, module) + ":" + std::string(name);
}

std::optional<std::string> TranslatePrefix(Output* out, Module* file, std::string_view prefix) {
  Module* module = ModuleOfPrefix(file, prefix);
  if (module == nullptr) return std::nullopt;
  return PrefixOf(out, module, prefix);
}

}  // namespace compiler
