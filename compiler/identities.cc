// SPDX-License-Identifier: BSD-3-Clause
// The library adds a default to a request as the text that it holds. Where the type is
// identityref itself it holds "module:name", but behind a typedef the text of the leaf
// as it was written: without a prefix, it names an identity of the leaf's own module in
// the request too. The default of such a typedef is a text of another place, so each
// leaf gets it for itself.
#include "compiler/identities.h"

#include <string>

#include "compiler/data_lookup.h"
#include "compiler/prefixes.h"
#include "compiler/statement.h"
#include "compiler/symbols.h"
#include "compiler/target.h"
#include "compiler/typedefs.h"

namespace compiler {

namespace {

constexpr char kIdentityClass[] = "identity";

bool IsIdentityref(const xmlNode* bottom) {
  return bottom != nullptr && std::string_view(ArgumentOf(bottom)) == "identityref";
}

// What a default is for: the leaf may be one of another module.
struct DefaultPlace {
  const xmlNode* type = nullptr;  // NULL: there is none
  const Module* module = nullptr;
};

// A type that the deviation replaces is replaced before.
const xmlNode* TypeOfDeviation(const xmlNode* deviation) {
  const xmlNode* type = nullptr;
  for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
       s = NextSibling(s, Keyword::kDeviate)) {
    if (const xmlNode* replaced = FirstChild(s, Keyword::kType)) type = replaced;
  }
  return type;
}

DefaultPlace PlaceOfDefault(Output* out, const xmlNode* parent) {
  if (!Is(parent, Keyword::kDeviate)) return {FirstChild(parent, Keyword::kType), out->module};
  const FoundNode target = FindTarget(out->all, TargetSteps(ParentOf(parent)));
  const xmlNode* replaced = TypeOfDeviation(ParentOf(parent));
  return {replaced == nullptr ? TypeOfNode(target) : replaced,
          target.node == nullptr ? out->module : target.output->module};
}

// Behind a typedef, an identity of the leaf's own module stands bare, whoever says so.
std::string WrittenIdentity(Output* out, Module* module, std::string_view name,
                            const DefaultPlace& place, bool direct) {
  if (direct) return Qualify(out, module, name);
  if (module->name == place.module->name) return std::string(name);
  return PrefixOf(out, module) + ":" + std::string(name);
}

// A leaf, or a deviation that does not take its default away.
bool GivesDefault(const xmlNode* parent) {
  if (!Is(parent, Keyword::kDeviate)) return Is(parent, Keyword::kLeaf);
  const char* kind = ArgumentOf(parent);
  return kind == nullptr || std::string_view(kind) != "delete";
}

}  // namespace

bool IsInWrittenRevision(Output* out, Module* module, std::string_view name) {
  Module* written = WrittenModule(out->all->repository, module->name);
  return written == nullptr || written == module ||
         FindGlobal(written, SymbolKind::kIdentity, name) != nullptr ||
         FindGlobal(module, SymbolKind::kIdentity, name) == nullptr;
}

void RewriteBase(Output* out, xmlNode* base) {
  const char* text = ArgumentOf(base);
  const Reference reference = SplitReference(text == nullptr ? "" : text);
  Module* module = ModuleOfPrefix(StatementOf(base)->words, reference.prefix);
  if (module == nullptr || FindGlobal(module, SymbolKind::kIdentity, reference.name) == nullptr) {
    Stop(out, kIdentityClass, base,
         "the identity \"" + std::string(text == nullptr ? "" : text) + "\" is not found");
    return;
  }
  if (!IsInWrittenRevision(out, module, reference.name))
    Lose(out, base,
         "the revision of \"" + module->name + "\" that is written has no identity \"" +
             std::string(reference.name) + "\"");
  SetArgument(out->all->session, base, Qualify(out, module, reference.name));
}

bool RewriteDefault(Output* out, xmlNode* byDefault) {
  const xmlNode* parent = ParentOf(byDefault);
  const char* text = ArgumentOf(byDefault);
  if (text == nullptr) return true;
  Session* session = out->all->session;
  const Reference reference = SplitReference(text);
  if (Is(parent, Keyword::kChoice)) {
    const std::string name(reference.name);
    SetArgument(session, byDefault, name);
    return true;
  }
  const DefaultPlace place = PlaceOfDefault(out, parent);
  if (place.type == nullptr) return true;
  const BottomType bottom = FindBottomType(place.type);
  if (!IsIdentityref(bottom.type)) return true;
  if (Is(parent, Keyword::kTypedef)) {
    RemoveStatement(byDefault);
    return false;
  }
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
  const std::string written = WrittenIdentity(out, module, reference.name, place, bottom.direct);
  SetArgument(session, byDefault, written);
  if (!bottom.direct && written.find(':') != std::string::npos && GivesDefault(parent))
    Lose(out, byDefault,
         "the default \"" + written +
             "\" is added to requests as it stands, so they are valid again only where they "
             "declare this prefix");
  return true;
}

void MoveIdentityDefault(Output* out, const xmlNode* type) {
  xmlNode* leaf = ParentOf(type);
  if (!Is(leaf, Keyword::kLeaf) || FirstChild(leaf, Keyword::kDefault) != nullptr) return;
  const BottomType bottom = FindBottomType(type);
  const char* mandatory = ArgumentOfChild(leaf, Keyword::kMandatory);
  const bool isMandatory = mandatory != nullptr && std::string_view(mandatory) == "true";
  if (bottom.byDefault == nullptr || !IsIdentityref(bottom.type) || isMandatory) return;
  const Place* usedAt = StatementOf(type)->usedAt;
  AppendChild(leaf, CopyStatement(out->all->session, leaf->doc, bottom.byDefault,
                                  usedAt == nullptr ? &StatementOf(type)->place : usedAt));
}

}  // namespace compiler
