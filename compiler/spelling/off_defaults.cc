// SPDX-License-Identifier: BSD-3-Clause
// Whether a value was one of its type is told by the types as they were read. A value of a
// union has left when every member that takes it has lost it; what no member takes is a
// mistake of the model, and none of ours.
#include "compiler/spelling/off_defaults.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/reading/type_chain.h"
#include "compiler/reading/value_check.h"
#include "compiler/spelling/departures.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/items.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/spelling/value_type.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

constexpr unsigned kMaxUnionDepth = 32;

// A default, and the unions that have lost it, with the leaf that their paths start from:
// unions may have others many times over.
struct Search {
  const xmlNode* byDefault;
  std::set<std::pair<const xmlNode*, const xmlNode*>> off;
};

bool IsOff(Output* out, const LeafType& one, Search* search, unsigned depth);

bool IsOff(Output* out, const LeafType& one, const xmlNode* byDefault) {
  Search search{byDefault, {}};
  return IsOff(out, one, &search, 0);
}

bool IsIdentityLost(Output* out, const xmlNode* byDefault) {
  const xmlNode* origin = OriginOf(byDefault);
  const xmlNode* identity = FindSymbol(origin, SymbolKind::kIdentity, ArgumentOf(origin));
  if (identity == nullptr) return false;
  Module* module = MainModuleOf(StatementOf(identity)->words);
  Module* written = WrittenModule(out->all->repository, module->name);
  const Output* owner = ExpandedOutput(out->all, written == nullptr ? module : written);
  return owner->lostIdentities.count(ArgumentOf(identity)) != 0;
}

// Of members that have no value left, the last one stays if there is no other.
bool LosesMember(Output* out, const xmlNode* member) {
  if (!LosesEveryItem(out, member)) return false;
  if (NextSibling(member, Keyword::kType) != nullptr) return true;
  const xmlNode* other = FirstChild(ParentOf(member), Keyword::kType);
  while (other != member && LosesEveryItem(out, other)) other = NextSibling(other, Keyword::kType);
  return other != member;
}

// `one` is the built-in type itself.
bool IsOffInUnion(Output* out, const LeafType& one, Search* search, unsigned depth) {
  if (search->off.count({one.type, one.leaf.node}) != 0) return true;
  const xmlNode* origin = OriginOf(search->byDefault);
  bool wasThere = false;
  for (const xmlNode* member = FirstChild(one.type, Keyword::kType); member != nullptr;
       member = NextSibling(member, Keyword::kType)) {
    if (!TakesValue(out->all, {member, one.leaf}, ArgumentOf(origin), origin)) continue;
    if (!LosesMember(out, member) && !IsOff(out, {member, one.leaf}, search, depth + 1))
      return false;
    wasThere = true;
  }
  if (wasThere) search->off.insert({one.type, one.leaf.node});
  return wasThere;
}

bool IsOff(Output* out, const LeafType& one, Search* search, unsigned depth) {
  const char* value = ArgumentOf(OriginOf(search->byDefault));
  const LeafType referred = ReferredType(out->all, one);
  if (referred.type == nullptr) return false;
  const TypeChain chain = ChainOf(referred.type);
  switch (chain.base) {
    case BuiltIn::kEnumeration:
      return LosesItem(out, referred.type, value);
    case BuiltIn::kBits: {
      const auto names = SplitNames(value);
      return std::any_of(names.begin(), names.end(), [&](std::string_view name) {
        return LosesItem(out, referred.type, name);
      });
    }
    case BuiltIn::kIdentityref:
      return IsIdentityLost(out, search->byDefault);
    case BuiltIn::kUnion:
      return depth < kMaxUnionDepth &&
             IsOffInUnion(out, {chain.types.back(), referred.leaf}, search, depth);
    default:
      return false;
  }
}

// One of the deviates has a default.
bool HasDefault(const xmlNode* deviation) {
  for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
       s = NextSibling(s, Keyword::kDeviate)) {
    if (FirstChild(s, Keyword::kDefault) != nullptr) return true;
  }
  return false;
}

// One that will not leave itself.
bool HoldsDefault(Output* out, const xmlNode* holder) {
  if (Is(holder, Keyword::kDeviate)) {
    const FoundNode target = FindTarget(out->all, TargetSteps(ParentOf(holder)));
    return HasDefault(ParentOf(holder)) ||
           (target.node != nullptr && HoldsDefault(target.output, target.node));
  }
  for (const xmlNode* s = FirstChild(holder, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault)) {
    if (!IsDefaultOff(out, s)) return true;
  }
  return false;
}

// The value has left, or is none of a restriction whose own default has left.
bool CannotHave(Output* out, const LeafType& one, const xmlNode* byDefault) {
  return IsOff(out, one, byDefault) || !TakesValue(out->all, one, ArgumentOf(byDefault), byDefault);
}

// The default that the type brings from a typedef although it has lost the value there by
// its own restriction; NULL: there is none.
const xmlNode* DefaultLostIn(Output* out, const LeafType& one) {
  const xmlNode* byDefault = FindBottomType(one.type).byDefault;
  const xmlNode* definition =
      byDefault == nullptr || ArgumentOf(byDefault) == nullptr
          ? nullptr
          : FindSymbol(one.type, SymbolKind::kTypedef, ArgumentOf(one.type));
  const xmlNode* above = definition == nullptr ? nullptr : FirstChild(definition, Keyword::kType);
  if (above == nullptr || FirstChild(one.type) == nullptr || !CannotHave(out, one, byDefault))
    return nullptr;
  return CannotHave(out, {above, one.leaf}, byDefault) ? nullptr : byDefault;
}

bool IsDeletion(const xmlNode* deviate) {
  const char* kind = Is(deviate, Keyword::kDeviate) ? ArgumentOf(deviate) : nullptr;
  return kind != nullptr && std::string_view(kind) == "delete";
}

void SayLost(Output* out, const xmlNode* at, const xmlNode* byDefault) {
  Lose(out, at,
       "the default \"" + std::string(ArgumentOf(OriginOf(byDefault))) +
           "\" depends on a feature that is off; it is left out");
}

bool IsLostDefault(const xmlNode* byDefault, const std::vector<std::string>& lost) {
  const char* text = ArgumentOf(OriginOf(byDefault));
  return text != nullptr && std::find(lost.begin(), lost.end(), text) != lost.end();
}

// `deviate replace` of what is no longer there becomes `deviate add`.
void AddInstead(Output* out, xmlNode* replace) {
  xmlNode* add = MakeStatement(out->all->session, replace, Keyword::kDeviate, "add");
  InsertAfter(replace, add);
  while (xmlNode* byDefault = FirstChild(replace, Keyword::kDefault)) {
    TakeOut(byDefault);
    AppendChild(add, byDefault);
  }
}

void RemoveIfEmpty(Output* out, xmlNode* deviate) {
  if (FirstChild(deviate) != nullptr) return;
  xmlNode* deviation = ParentOf(deviate);
  RemoveStatement(deviate);
  if (FirstChild(deviation, Keyword::kDeviate) == nullptr) LeaveTree(out, deviation);
}

void SettleDeviate(Output* out, xmlNode* deviate, const FoundNode& target,
                   const std::vector<std::string>& lost) {
  if (FirstChild(deviate, Keyword::kDefault) == nullptr) return;
  const char* kind = ArgumentOf(deviate);
  if (IsDeletion(deviate)) {
    for (xmlNode* s = FirstChild(deviate, Keyword::kDefault); s != nullptr;) {
      xmlNode* next = NextSibling(s, Keyword::kDefault);
      if (IsLostDefault(s, lost)) RemoveStatement(s);
      s = next;
    }
  } else if (kind != nullptr && std::string_view(kind) == "replace" &&
             FirstChild(target.node, Keyword::kDefault) == nullptr) {
    AddInstead(out, deviate);
  }
  RemoveIfEmpty(out, deviate);
}

// One of the deviates has lost a default.
bool HasLostDefault(const Output* out, const xmlNode* deviation) {
  for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
       s = NextSibling(s, Keyword::kDeviate)) {
    if (out->lostDefaults.count(s) != 0) return true;
  }
  return false;
}

// A default of the target that the new type of a deviation has lost is deleted, and one that
// it never had, once the default that was to replace it has left.
void DeleteLost(Output* out, xmlNode* deviation, const FoundNode& target) {
  xmlNode* replace = FirstChild(deviation, Keyword::kDeviate);
  while (replace != nullptr && FirstChild(replace, Keyword::kType) == nullptr)
    replace = NextSibling(replace, Keyword::kDeviate);
  if (replace == nullptr || HasDefault(deviation)) return;
  const LeafType type = TypeWithDefault(out, replace);
  const bool isBare = HasLostDefault(out, deviation);
  xmlNode* deletion = nullptr;
  for (const xmlNode* s = FirstChild(target.node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault)) {
    const char* text = ArgumentOf(OriginOf(s));
    if (text == nullptr || type.type == nullptr) continue;
    if (isBare ? !CannotHave(out, type, OriginOf(s)) : !IsOff(out, type, s)) continue;
    SayLost(out, replace, s);
    if (deletion == nullptr) {
      deletion = MakeStatement(out->all->session, replace, Keyword::kDeviate, "delete");
      InsertBefore(replace, deletion);
    }
    AppendChild(deletion, MakeStatement(out->all->session, replace, Keyword::kDefault, text));
  }
}

}  // namespace

bool IsDefaultOff(Output* out, const xmlNode* byDefault) {
  const xmlNode* parent = ParentOf(byDefault);
  if (Is(parent, Keyword::kChoice) || IsDeletion(parent)) return false;
  const LeafType one = TypeWithDefault(out, parent);
  return one.type != nullptr && ArgumentOf(OriginOf(byDefault)) != nullptr &&
         IsOff(out, one, byDefault);
}

void LeaveDefault(Output* out, xmlNode* byDefault) {
  xmlNode* parent = ParentOf(byDefault);
  SayLost(out, byDefault, byDefault);
  out->lostDefaults[parent].emplace_back(ArgumentOf(OriginOf(byDefault)));
  RemoveStatement(byDefault);
}

void LeaveDefaultOfTypedef(Output* out, xmlNode* type) {
  xmlNode* holder = ParentOf(type);
  const bool isTypedef = Is(holder, Keyword::kTypedef);
  const bool takesOne = isTypedef || Is(holder, Keyword::kLeaf) || Is(holder, Keyword::kLeafList) ||
                        Is(holder, Keyword::kDeviate);
  if (!takesOne || IsChildTrue(holder, Keyword::kMandatory) || HoldsDefault(out, holder)) return;
  const xmlNode* byDefault = DefaultLostIn(out, {OriginOf(type), {nullptr, out}});
  if (byDefault == nullptr) return;
  SayLost(out, type, byDefault);
  if (isTypedef) {
    WriteAsBuiltIn(out, type);
    return;
  }
  xmlNode* around = MakeStatement(out->all->session, type, Keyword::kType, "union");
  InsertBefore(type, around);
  TakeOut(type);
  AppendChild(around, type);
}

void SettleDeviatedDefaults(Output* out) {
  for (xmlNode* s = FirstChild(out->written.root, Keyword::kDeviation); s != nullptr;) {
    xmlNode* next = NextSibling(s, Keyword::kDeviation);
    const FoundNode target = FindTarget(out->all, TargetSteps(s));
    if (target.node != nullptr) {
      DeleteLost(out, s, target);
      const auto lost = target.output->lostDefaults.find(target.node);
      xmlNode* deviate =
          lost == target.output->lostDefaults.end() ? nullptr : FirstChild(s, Keyword::kDeviate);
      while (deviate != nullptr) {
        xmlNode* after = NextSibling(deviate, Keyword::kDeviate);
        SettleDeviate(out, deviate, target, lost->second);
        deviate = after;
      }
    }
    s = next;
  }
}

}  // namespace compiler
