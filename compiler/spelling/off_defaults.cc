// SPDX-License-Identifier: BSD-3-Clause
// Whether a value was one of its type is told by the types as they were read. A value of a
// union has left when every member that takes it has lost it; what no member takes is a
// mistake of the model, and none of ours.
#include "compiler/spelling/off_defaults.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/reading/type_chain.h"
#include "compiler/reading/value_check.h"
#include "compiler/spelling/departures.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/items.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

constexpr unsigned kMaxUnionDepth = 32;

bool IsOff(Output* out, const xmlNode* type, const xmlNode* byDefault, unsigned depth);

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

bool IsOffInUnion(Output* out, const xmlNode* type, const xmlNode* byDefault, unsigned depth) {
  const xmlNode* origin = OriginOf(byDefault);
  bool wasThere = false;
  for (const xmlNode* member = FirstChild(type, Keyword::kType); member != nullptr;
       member = NextSibling(member, Keyword::kType)) {
    if (!FaultOfValue(member, ArgumentOf(origin), origin).empty()) continue;
    if (!LosesMember(out, member) && !IsOff(out, member, byDefault, depth + 1)) return false;
    wasThere = true;
  }
  return wasThere;
}

// The type is as it was read.
bool IsOff(Output* out, const xmlNode* type, const xmlNode* byDefault, unsigned depth) {
  const char* value = ArgumentOf(OriginOf(byDefault));
  const TypeChain chain = ChainOf(type);
  switch (chain.base) {
    case BuiltIn::kEnumeration:
      return LosesItem(out, type, value);
    case BuiltIn::kBits: {
      const auto names = SplitNames(value);
      return std::any_of(names.begin(), names.end(),
                         [&](std::string_view name) { return LosesItem(out, type, name); });
    }
    case BuiltIn::kIdentityref:
      return IsIdentityLost(out, byDefault);
    case BuiltIn::kUnion:
      return depth < kMaxUnionDepth && IsOffInUnion(out, chain.types.back(), byDefault, depth);
    default:
      return false;
  }
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

}  // namespace

bool IsDefaultOff(Output* out, const xmlNode* byDefault) {
  const xmlNode* parent = ParentOf(byDefault);
  if (Is(parent, Keyword::kChoice) || IsDeletion(parent)) return false;
  const xmlNode* type = TypeOfDefault(out, parent);
  return type != nullptr && ArgumentOf(OriginOf(byDefault)) != nullptr &&
         IsOff(out, OriginOf(type), byDefault, 0);
}

void LeaveDefault(Output* out, xmlNode* byDefault) {
  xmlNode* parent = ParentOf(byDefault);
  SayLost(out, byDefault, byDefault);
  out->lostDefaults[parent].emplace_back(ArgumentOf(OriginOf(byDefault)));
  RemoveStatement(byDefault);
}

void LeaveDefaultOfTypedef(Output* out, xmlNode* type) {
  xmlNode* leaf = ParentOf(type);
  const char* mandatory = ArgumentOfChild(leaf, Keyword::kMandatory);
  const bool isMandatory = mandatory != nullptr && std::string_view(mandatory) == "true";
  const bool takesOne = Is(leaf, Keyword::kLeaf) || Is(leaf, Keyword::kLeafList);
  if (!takesOne || isMandatory || FirstChild(leaf, Keyword::kDefault) != nullptr) return;
  const xmlNode* byDefault = FindBottomType(type).byDefault;
  if (byDefault == nullptr || ArgumentOf(byDefault) == nullptr ||
      !IsOff(out, OriginOf(type), byDefault, 0) ||
      IsOff(out, FirstChild(ParentOf(byDefault), Keyword::kType), byDefault, 0))
    return;
  SayLost(out, type, byDefault);
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
