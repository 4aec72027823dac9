// SPDX-License-Identifier: BSD-3-Clause
// A typedef stays where it is when it stands at the level of a module that is written in
// this revision. Else a copy moves to the level of the written module, once, under a
// name that is free there; its own type is rewritten when the walk over the tree comes
// to it. A path without prefixes means nodes of the module that uses the typedef (section
// 6.4.1), while the library would read it in the module of the typedef.
#include "compiler/spelling/typedefs.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <unordered_set>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/condition_words.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

constexpr size_t kMaxName = 64;
// How far typedefs that name typedefs are followed; circles are errors before.
constexpr unsigned kMaxChain = 1000;
constexpr size_t kMaxTypesInUnions = 200000;

constexpr std::string_view kBuiltIn[] = {
    "binary",  "bits",        "boolean",     "decimal64",
    "empty",   "enumeration", "identityref", "instance-identifier",
    "int8",    "int16",       "int32",       "int64",
    "leafref", "string",      "uint8",       "uint16",
    "uint32",  "uint64",      "union"};

const char* TypeName(const xmlNode* type) {
  const char* name = ArgumentOf(OriginOf(type));
  return name == nullptr ? "" : name;
}

const xmlNode* DefinitionOf(const xmlNode* type) {
  return FindSymbol(type, SymbolKind::kTypedef, TypeName(type));
}

Module* ModuleOfDefinition(const xmlNode* definition) {
  return MainModuleOf(StatementOf(definition)->words);
}

bool HasUnprefixedStep(const xmlNode* leafref) {
  const char* text = ArgumentOfChild(leafref, Keyword::kPath);
  NodePath path;
  XpathError error;
  if (text == nullptr || !ParseLeafrefPath(text, &path, &error)) return false;
  return std::any_of(path.steps.begin(), path.steps.end(),
                     [](const PathStep& step) { return step.prefix.empty(); });
}

// Whether `holds` says so of a type that the type comes to: behind its typedefs, and as a
// member of a union. Each is asked once, since unions may have others twice.
template <typename Holds>
bool HoldsForAny(const xmlNode* type, Holds holds, std::unordered_set<const xmlNode*>* seen,
                 unsigned chain = 0) {
  const BottomType bottom = FindBottomType(type);
  if (bottom.type == nullptr || chain == kMaxChain || !seen->insert(bottom.type).second)
    return false;
  if (holds(type, bottom.type)) return true;
  if (std::string_view(TypeName(bottom.type)) != "union") return false;
  for (const xmlNode* member = FirstChild(bottom.type, Keyword::kType); member != nullptr;
       member = NextSibling(member, Keyword::kType)) {
    if (HoldsForAny(member, holds, seen, chain + 1)) return true;
  }
  return false;
}

bool IsLeafref(const xmlNode* type) {
  return std::string_view(TypeName(type)) == "leafref";
}

// True when the type, or a member of it, is a path whose meaning depends on its user.
bool DependsOnUser(const xmlNode* type) {
  std::unordered_set<const xmlNode*> seen;
  return HoldsForAny(
      type,
      [](const xmlNode*, const xmlNode* end) { return IsLeafref(end) && HasUnprefixedStep(end); },
      &seen);
}

bool IsRelativeLeafref(const xmlNode* type) {
  const char* text = ArgumentOfChild(type, Keyword::kPath);
  return IsLeafref(type) && text != nullptr && *text != '/';
}

bool IsUnion(const xmlNode* type) {
  const xmlNode* bottom = FindBottomType(type).type;
  return bottom != nullptr && std::string_view(TypeName(bottom)) == "union";
}

// True for a union, by whatever name, with a path whose target depends on the leaf.
bool IsUnionForLeaf(const xmlNode* type) {
  std::unordered_set<const xmlNode*> seen;
  return IsUnion(type) &&
         HoldsForAny(
             type, [](const xmlNode*, const xmlNode* end) { return IsRelativeLeafref(end); },
             &seen);
}

// True for one of which a member gets the type of its target where that leaf has it.
bool IsUnionKnownFor(Output* out, const xmlNode* type, const FoundNode& leaf) {
  std::unordered_set<const xmlNode*> seen;
  const auto isKnown = [&](const xmlNode*, const xmlNode* end) {
    FoundNode at = leaf;
    const xmlNode* leafref = end;
    return IsRelativeLeafref(end) && FindReferredLeaf(out->all, &at, &leafref).node != nullptr;
  };
  return IsUnion(type) && HoldsForAny(type, isKnown, &seen);
}

bool IsText(const xmlNode* statement) {
  return Is(statement, Keyword::kDescription) || Is(statement, Keyword::kReference);
}

const xmlNode* SkipTexts(const xmlNode* statement) {
  while (statement != nullptr && IsText(statement)) statement = NextSibling(statement);
  return statement;
}

bool SameMeaning(const xmlNode* a, const xmlNode* b, unsigned chain);

bool SameArgument(const xmlNode* a, const xmlNode* b, unsigned chain) {
  if (Is(a, Keyword::kType) && !IsBuiltInType(TypeName(a))) {
    const xmlNode* first = DefinitionOf(a);
    const xmlNode* second = DefinitionOf(b);
    if (first == nullptr || second == nullptr) return false;
    if (ModuleOfDefinition(first)->name != ModuleOfDefinition(second)->name) return false;
    return first == second || SameMeaning(first, second, chain + 1);
  }
  const char* first = ArgumentOf(a);
  const char* second = ArgumentOf(b);
  if (first == nullptr || second == nullptr) return first == second;
  return std::string_view(first) == second;
}

// Compares two definitions, texts apart.
bool SameMeaning(const xmlNode* a, const xmlNode* b, unsigned chain) {
  if (chain == kMaxChain || KeywordOf(a) != KeywordOf(b) || !SameArgument(a, b, chain))
    return false;
  const xmlNode* first = SkipTexts(FirstChild(a));
  const xmlNode* second = SkipTexts(FirstChild(b));
  while (first != nullptr && second != nullptr) {
    if (!SameMeaning(first, second, chain + 1)) return false;
    first = SkipTexts(NextSibling(first));
    second = SkipTexts(NextSibling(second));
  }
  return first == nullptr && second == nullptr;
}

// True when the definition can be named where it stands.
bool StaysThere(Output* out, const xmlNode* definition) {
  Module* module = ModuleOfDefinition(definition);
  // The loader takes no longer name of a type.
  if (!IsGlobal(definition) || std::strlen(ArgumentOf(definition)) > kMaxName) return false;
  if (module == out->module) return true;
  Module* written = WrittenModule(out->all->repository, module->name);
  if (written == module) return true;
  const xmlNode* other = written == nullptr
                             ? nullptr
                             : FindGlobal(written, SymbolKind::kTypedef, ArgumentOf(definition));
  return other != nullptr && SameMeaning(definition, other, 0);
}

std::string FreeName(Output* out, const std::string& wanted) {
  std::string name = wanted.substr(0, kMaxName);
  if (out->typedefNames.insert(name).second) return name;
  unsigned& last = out->typedefNumbers.try_emplace(name, 1).first->second;
  while (!out->typedefNames.insert(name).second) {
    const std::string number = "-" + std::to_string(++last);
    name = wanted.substr(0, kMaxName - number.size()) + number;
  }
  return name;
}

// `leaf` without node: for all.
const std::string& Hoist(Output* out, const xmlNode* definition, const FoundNode& leaf,
                         const Place* usedAt) {
  const auto known = out->hoisted.find({definition, leaf.node});
  if (known != out->hoisted.end()) return known->second;
  const std::string name = FreeName(out, ArgumentOf(definition));
  Session* session = out->all->session;
  const bool isOwn = ModuleOfDefinition(definition)->name == out->module->name;
  xmlNode* copy =
      CopyStatement(session, out->written.document.get(), definition, isOwn ? nullptr : usedAt);
  AppendChild(out->written.root, copy);
  SetArgument(session, copy, name);
  if (leaf.node != nullptr) out->leafsOfTypedefs[copy] = leaf;
  return out->hoisted.emplace(std::make_pair(definition, leaf.node), name).first->second;
}

void TakeOverUnits(Output* out, xmlNode* holder, const BottomType& bottom, const Place* usedAt) {
  if (bottom.units != nullptr && FirstChild(holder, Keyword::kUnits) == nullptr)
    AppendChild(holder, CopyStatement(out->all->session, holder->doc, bottom.units, usedAt));
}

// The properties that a leaf had from its typedef, once that is gone.
void TakeOver(Output* out, xmlNode* leaf, const BottomType& bottom, const Place* usedAt) {
  Session* session = out->all->session;
  const bool takesDefault = Is(leaf, Keyword::kLeaf) && !IsChildTrue(leaf, Keyword::kMandatory);
  if (takesDefault && bottom.byDefault != nullptr && FirstChild(leaf, Keyword::kDefault) == nullptr)
    AppendChild(leaf, CopyStatement(session, leaf->doc, bottom.byDefault, usedAt));
  TakeOverUnits(out, leaf, bottom, usedAt);
}

bool IsLeafType(const xmlNode* type) {
  const xmlNode* parent = ParentOf(type);
  return Is(parent, Keyword::kLeaf) || Is(parent, Keyword::kLeafList);
}

// The type of a leaf, or a member of it.
bool IsOfLeaf(const xmlNode* type) {
  while (Is(ParentOf(type), Keyword::kType)) type = ParentOf(type);
  return IsLeafType(type);
}

// Writes what the typedefs come to in the place of their name.
xmlNode* InlineType(Output* out, xmlNode* type, const BottomType& bottom) {
  if (Is(ParentOf(type), Keyword::kType) && !MayGrowUnion(out, type, bottom.type)) return type;
  const Place* usedAt = StatementOf(type)->usedAt;
  if (usedAt == nullptr) usedAt = &StatementOf(type)->place;
  xmlNode* copy = CopyStatement(out->all->session, type->doc, bottom.type, usedAt);
  InsertBefore(type, copy);
  const auto copied = out->copiedTypes.find(type);
  if (copied != out->copiedTypes.end()) {
    out->copiedTypes.emplace(copy, copied->second);
    out->copiedTypes.erase(copied);
  }
  // The nearest word on whether the instance must exist holds.
  xmlNode* require = FirstChild(type, Keyword::kRequireInstance);
  if (require != nullptr) {
    xmlNode* other = FirstChild(copy, Keyword::kRequireInstance);
    if (other != nullptr) RemoveStatement(other);
    TakeOut(require);
    AppendChild(copy, require);
  }
  if (IsLeafType(type)) TakeOver(out, ParentOf(type), bottom, usedAt);
  if (Is(ParentOf(type), Keyword::kTypedef)) TakeOverUnits(out, ParentOf(type), bottom, usedAt);
  RemoveStatement(type);
  return copy;
}

size_t TypesIn(const xmlNode* type) {
  size_t count = 1;
  for (const xmlNode* s = FirstChild(type, Keyword::kType); s != nullptr;
       s = NextSibling(s, Keyword::kType))
    count += TypesIn(s);
  return count;
}

void NoteFile(Module* file, void* arg) {
  auto* out = static_cast<Output*>(arg);
  for (const xmlNode* s = FirstChild(file->root, Keyword::kTypedef); s != nullptr;
       s = NextSibling(s, Keyword::kTypedef)) {
    if (ArgumentOf(s) != nullptr) out->typedefNames.insert(ArgumentOf(s));
  }
}

}  // namespace

bool DependsOnLeaf(const xmlNode* leafref) {
  return IsRelativeLeafref(leafref) || HasUnprefixedStep(leafref);
}

bool IsBuiltInType(std::string_view name) noexcept {
  return std::find(std::begin(kBuiltIn), std::end(kBuiltIn), name) != std::end(kBuiltIn);
}

BottomType FindBottomType(const xmlNode* type) {
  BottomType bottom;
  const xmlNode* at = OriginOf(type);
  for (unsigned chain = 0; at != nullptr && !IsBuiltInType(TypeName(at)); ++chain) {
    const xmlNode* definition = chain == kMaxChain ? nullptr : DefinitionOf(at);
    if (definition == nullptr) return bottom;
    bottom.direct = false;
    if (bottom.byDefault == nullptr) bottom.byDefault = FirstChild(definition, Keyword::kDefault);
    if (bottom.units == nullptr) bottom.units = FirstChild(definition, Keyword::kUnits);
    at = FirstChild(definition, Keyword::kType);
  }
  bottom.type = at;
  return bottom;
}

bool MayGrowUnion(Output* out, const xmlNode* member, const xmlNode* added) {
  if (out->stopped) return false;
  out->typesInUnions += TypesIn(added);
  if (out->typesInUnions <= kMaxTypesInUnions) return true;
  Stop(out, "type", member,
       "spelled out, unions get more than " + std::to_string(kMaxTypesInUnions) +
           " types from the targets of their leafrefs");
  return false;
}

FoundNode DeviatedLeaf(Output* out, const xmlNode* type) {
  const xmlNode* holder = ParentOf(type);
  while (Is(holder, Keyword::kType)) holder = ParentOf(holder);
  if (Is(holder, Keyword::kDeviate)) return FindTarget(out->all, TargetSteps(ParentOf(holder)));
  const auto found = out->leafsOfTypedefs.find(holder);
  return found == out->leafsOfTypedefs.end() ? FoundNode{} : found->second;
}

BottomType FindWrittenBottom(const Compilation* all, const xmlNode* type) {
  BottomType bottom = FindBottomType(type);
  const auto settled = all->settledLeafrefs.find(bottom.type);
  if (settled != all->settledLeafrefs.end())
    bottom.type = FindBottomType(settled->second.first).type;
  return bottom;
}

xmlNode* RewriteType(Output* out, xmlNode* type) {
  const char* name = TypeName(type);
  if (IsBuiltInType(name)) return type;
  const xmlNode* definition = DefinitionOf(type);
  if (definition == nullptr) {
    Stop(out, "type", type, std::string("the type \"") + name + "\" is not found");
    return type;
  }
  Module* module = ModuleOfDefinition(definition);
  const FoundNode deviated = DeviatedLeaf(out, type);
  const Module* user = deviated.node == nullptr ? out->module : deviated.output->module;
  const bool depends = module->name != user->name && DependsOnUser(type);
  const bool isOfOtherLeaf = out->copiedTypes.count(type) != 0 && DependsOnUser(type);
  if (IsOfLeaf(type) && (isOfOtherLeaf || IsUnionForLeaf(type)))
    return InlineType(out, type, FindBottomType(type));
  if (IsDefaultedIdentity(out->all, type))
    return InlineType(out, type, FindWrittenBottom(out->all, type));
  if (depends && IsLeafType(type)) {
    const BottomType bottom = FindBottomType(type);
    if (std::string_view(TypeName(bottom.type)) == "leafref") return InlineType(out, type, bottom);
  }
  const Place* usedAt = StatementOf(type)->usedAt;
  if (usedAt == nullptr) usedAt = &StatementOf(type)->place;
  Session* session = out->all->session;
  if (deviated.node != nullptr && (depends || IsUnionKnownFor(out, type, deviated))) {
    SetArgument(session, type, Hoist(out, definition, deviated, usedAt));
  } else if (depends || !StaysThere(out, definition)) {
    SetArgument(session, type, Hoist(out, definition, {}, usedAt));
  } else {
    SetArgument(session, type, Qualify(out, module, ArgumentOf(definition)));
  }
  return type;
}

xmlNode* PutTypeOf(Output* out, xmlNode* type, const xmlNode* other, const FoundNode& leaf) {
  Session* session = out->all->session;
  const Place* usedAt = StatementOf(type)->usedAt;
  if (usedAt == nullptr) usedAt = &StatementOf(type)->place;
  if (IsLeafType(type)) TakeOver(out, ParentOf(type), FindBottomType(type), usedAt);
  LooseStatement copy(CopyStatement(session, type->doc, OriginOf(other), usedAt));
  const bool isMember = Is(ParentOf(type), Keyword::kType);
  if (!isMember && FindBottomType(other).byDefault != nullptr) {
    // In a union, the default of a typedef does not count.
    LooseStatement around(MakeStatement(session, type, Keyword::kType, "union"));
    AppendChild(around.get(), copy.release());
    copy = std::move(around);
  }
  xmlNode* put = copy.release();
  InsertBefore(type, put);
  out->copiedTypes[put] = leaf;
  RemoveStatement(type);
  return put;
}

void NoteTypedefNames(Output* out) {
  ForEachFile(out->module, NoteFile, out);
}

}  // namespace compiler
