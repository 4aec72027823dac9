// SPDX-License-Identifier: BSD-3-Clause
// The library adds a default to a request as the text that it holds, and declares a prefix
// in it that is the name of a module. Where the type is identityref itself, of a leaf or a
// typedef, it holds "module:name"; behind a typedef the text as it was written. So a
// typedef that gives another one a default becomes one of identityref itself, and a leaf
// behind a typedef, or a deviation, whose default is of another module has that module's
// name for a prefix. An identity of the leaf's own module needs none.
#include "compiler/spelling/identities.h"

#include <string>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/identity_bases.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/spelling/value_type.h"

namespace compiler {

namespace {

constexpr char kIdentityClass[] = "identity";

bool IsIdentityref(const xmlNode* bottom) {
  return bottom != nullptr && std::string_view(ArgumentOf(bottom)) == "identityref";
}

// A type that the deviation replaces is replaced before.
const xmlNode* TypeOfDeviation(const xmlNode* deviation) {
  const xmlNode* type = nullptr;
  for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
       s = NextSibling(s, Keyword::kDeviate)) {
    if (const xmlNode* replaced = FirstChild(s, Keyword::kType)) type = replaced;
  }
  return type;
}

bool IsDeletion(const xmlNode* deviate) {
  const char* kind = ArgumentOf(deviate);
  return Is(deviate, Keyword::kDeviate) && kind != nullptr && std::string_view(kind) == "delete";
}

// The module of the identity that a default of that type names, in the words that it was
// written in; NULL: it names none that is known.
Module* ModuleOfIdentity(const xmlNode* byDefault, const xmlNode* type) {
  const char* text = ArgumentOf(byDefault);
  if (text == nullptr || type == nullptr || !IsIdentityref(FindBottomType(type).type))
    return nullptr;
  return ModuleOfPrefix(StatementOf(byDefault)->words, SplitReference(text).prefix);
}

// A type that has no base left is no identityref; as a string it takes what that might.
void RemoveBase(Output* out, xmlNode* base) {
  xmlNode* parent = ParentOf(base);
  RemoveStatement(base);
  if (Is(parent, Keyword::kType) && FirstChild(parent, Keyword::kBase) == nullptr)
    SetArgument(out->all->session, parent, "string");
}

void NameModule(Output* out, const xmlNode* byDefault, Module* module) {
  if (module == nullptr || TakeNameAsPrefix(out, module)) return;
  Lose(out, byDefault,
       "the default \"" + std::string(ArgumentOf(byDefault)) + "\" is added to requests with " +
           "a prefix that the library does not declare, since XML has \"" + module->name +
           "\" for itself");
}

// What is deleted gets the text of the target's.
void NameModulesOfTarget(Output* out, const FoundNode& target) {
  if (target.node == nullptr) return;
  for (const xmlNode* s = FirstChild(target.node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault)) {
    Module* module = ModuleOfIdentity(s, TypeOfNode(target));
    if (module != nullptr) TakeNameAsPrefix(out, module);
  }
}

// Behind a typedef of the leaf, or one that it may get before a deviation comes to it, the
// library holds the text as it is written.
void NameModulesOf(Output* out, const xmlNode* byDefault) {
  const xmlNode* parent = ParentOf(byDefault);
  if (IsDeletion(parent)) {
    NameModulesOfTarget(out, FindTarget(out->all, TargetSteps(ParentOf(parent))));
  } else if (Is(parent, Keyword::kDeviate)) {
    NameModule(out, byDefault, ModuleOfIdentity(byDefault, TypeOfDefault(out, parent)));
  } else if (Is(parent, Keyword::kLeaf)) {
    const xmlNode* type = FirstChild(parent, Keyword::kType);
    Module* module = ModuleOfIdentity(byDefault, type);
    if (module != nullptr && module->name != out->module->name && !FindBottomType(type).direct)
      NameModule(out, byDefault, module);
  }
}

bool IsInInput(const xmlNode* node) {
  while (node != nullptr && !Is(node, Keyword::kInput)) node = ParentOf(node);
  return node != nullptr;
}

// The library knows no identity behind a union or leafref.
void SayUndeclared(Output* out, const xmlNode* byDefault, const Module* module) {
  const xmlNode* parent = ParentOf(byDefault);
  if (!Is(parent, Keyword::kLeaf) || module->name == out->module->name || !IsInInput(parent) ||
      IsIdentityref(FindBottomType(FirstChild(parent, Keyword::kType)).type))
    return;
  Lose(out, byDefault,
       "the default \"" + std::string(ArgumentOf(byDefault)) +
           "\" is added to requests with a prefix that the library does not declare, since its "
           "type is no identityref itself");
}

}  // namespace

const xmlNode* TypeOfDefault(Output* out, const xmlNode* parent) {
  if (!Is(parent, Keyword::kDeviate)) return FirstChild(parent, Keyword::kType);
  const xmlNode* replaced = TypeOfDeviation(ParentOf(parent));
  if (replaced != nullptr) return replaced;
  return TypeOfNode(FindTarget(out->all, TargetSteps(ParentOf(parent))));
}

bool IsInWrittenRevision(Output* out, Module* module, std::string_view name) {
  Module* written = WrittenModule(out->all->repository, module->name);
  return written == nullptr || written == module ||
         FindGlobal(written, SymbolKind::kIdentity, name) != nullptr ||
         FindGlobal(module, SymbolKind::kIdentity, name) == nullptr;
}

bool RewriteBase(Output* out, xmlNode* base) {
  const char* text = ArgumentOf(base);
  const Reference reference = SplitReference(text == nullptr ? "" : text);
  Module* module = ModuleOfPrefix(StatementOf(base)->words, reference.prefix);
  const xmlNode* definition =
      module == nullptr ? nullptr : FindGlobal(module, SymbolKind::kIdentity, reference.name);
  if (definition == nullptr) {
    Stop(out, kIdentityClass, base,
         "the identity \"" + std::string(text == nullptr ? "" : text) + "\" is not found");
    return true;
  }
  if (IsInWrittenRevision(out, module, reference.name)) {
    SetArgument(out->all->session, base, Qualify(out, module, reference.name));
    return true;
  }
  Lose(out, base,
       "the revision of \"" + module->name + "\" that is written has no identity \"" +
           std::string(reference.name) + "\"");
  const std::string nearest = NearestWrittenBase(out, definition);
  if (nearest.empty()) {
    RemoveBase(out, base);
    return false;
  }
  SetArgument(out->all->session, base, nearest);
  return true;
}

void NameModulesOfDefaults(Output* out) {
  const xmlNode* root = out->written.root;
  for (const xmlNode* s = FirstChild(root); s != nullptr; s = NextInTree(root, s)) {
    if (Is(s, Keyword::kDefault)) NameModulesOf(out, s);
  }
}

bool RewriteDefault(Output* out, xmlNode* byDefault) {
  const xmlNode* parent = ParentOf(byDefault);
  const char* text = ArgumentOf(byDefault);
  if (text == nullptr || IsDeletion(parent)) return true;
  Session* session = out->all->session;
  const Reference reference = SplitReference(text);
  if (Is(parent, Keyword::kChoice)) {
    const std::string name(reference.name);
    SetArgument(session, byDefault, name);
    return true;
  }
  if (!NamesIdentity(out->all, TypeWithDefault(out, parent), OriginOf(byDefault))) return true;
  Module* module = ModuleOfPrefix(StatementOf(byDefault)->words, reference.prefix);
  if (module == nullptr) {
    AddFinding(&out->report, Severity::kError, kIdentityClass, byDefault,
               "the prefix \"" + std::string(reference.prefix) +
                   "\" is not known; the default is left out");
    RemoveStatement(byDefault);
    return false;
  }
  if (!IsInWrittenRevision(out, module, reference.name)) {
    Lose(out, byDefault,
         "the revision of \"" + module->name + "\" that is written has no identity \"" +
             std::string(reference.name) + "\"; the default is left out");
    RemoveStatement(byDefault);
    return false;
  }
  SayUndeclared(out, byDefault, module);
  const std::string name(reference.name);
  SetArgument(session, byDefault,
              Is(parent, Keyword::kDeviate) ? PrefixOf(out, module) + ":" + name
                                            : Qualify(out, module, name));
  return true;
}

bool IsDefaultedIdentity(Compilation* all, const xmlNode* type) {
  const xmlNode* definition = ParentOf(type);
  return Is(definition, Keyword::kTypedef) &&
         FirstChild(definition, Keyword::kDefault) != nullptr &&
         IsIdentityref(FindWrittenBottom(all, type).type);
}

}  // namespace compiler
