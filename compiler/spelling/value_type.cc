// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/value_type.h"

#include <set>
#include <utility>

#include "compiler/reading/symbols.h"
#include "compiler/reading/value_check.h"
#include "compiler/spelling/condition_words.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"

namespace compiler {

namespace {

constexpr unsigned kMaxUnionDepth = 32;

bool IsNamed(const xmlNode* bottom, std::string_view name) {
  const char* argument = bottom == nullptr ? nullptr : ArgumentOf(bottom);
  return argument != nullptr && name == argument;
}

// What was read, of a type that stands in its tree by itself or in a union made for it.
const xmlNode* AsRead(const xmlNode* type) {
  while (StatementOf(type)->origin == nullptr && FirstChild(type, Keyword::kType) != nullptr &&
         StatementOf(FirstChild(type, Keyword::kType))->origin != nullptr)
    type = FirstChild(type, Keyword::kType);
  return OriginOf(type);
}

// A value, and the unions that do not take it, each for its leaf, as far as is known.
struct Asked {
  Compilation* all;
  std::string_view value;
  const xmlNode* at;
  std::set<std::pair<const xmlNode*, const xmlNode*>> unfit{};
};

const xmlNode* Deciding(Asked* asked, const LeafType& one, unsigned depth);

const xmlNode* DecidingMember(Asked* asked, const LeafType& one, unsigned depth) {
  const std::pair<const xmlNode*, const xmlNode*> key = {one.type, one.leaf.node};
  if (asked->unfit.count(key) != 0) return nullptr;
  for (const xmlNode* member = FirstChild(one.type, Keyword::kType); member != nullptr;
       member = NextSibling(member, Keyword::kType)) {
    const xmlNode* type = Deciding(asked, {member, one.leaf}, depth + 1);
    if (type != nullptr && FaultOfValue(type, asked->value, asked->at).empty()) return type;
  }
  asked->unfit.insert(key);
  return nullptr;
}

const xmlNode* Deciding(Asked* asked, const LeafType& one, unsigned depth) {
  const LeafType referred = ReferredType(asked->all, one);
  if (referred.type == nullptr) return nullptr;
  const xmlNode* bottom = FindBottomType(referred.type).type;
  if (!IsNamed(bottom, "union")) return bottom == nullptr ? nullptr : referred.type;
  if (depth == kMaxUnionDepth) return nullptr;
  return DecidingMember(asked, {bottom, referred.leaf}, depth);
}

}  // namespace

LeafType ReferredType(Compilation* all, const LeafType& one) {
  if (one.type == nullptr) return {};
  const xmlNode* bottom = FindBottomType(one.type).type;
  if (!IsNamed(bottom, "leafref")) return one;
  const auto settled = all->settledLeafrefs.find(bottom);
  if (settled != all->settledLeafrefs.end()) return {settled->second.first, settled->second.second};
  FoundNode leaf = one.leaf;
  const FoundNode referred = FindReferredLeaf(all, &leaf, &bottom);
  if (referred.node == nullptr) return {};
  return TypeOfLeaf(referred);
}

LeafType TypeWithDefault(Output* out, const xmlNode* parent) {
  const xmlNode* type = TypeOfDefault(out, parent);
  if (type == nullptr) return {};
  LeafType one{AsRead(type), {nullptr, out}};
  if (Is(parent, Keyword::kDeviate)) {
    one.leaf = FindTarget(out->all, TargetSteps(ParentOf(parent)));
  } else if (!Is(parent, Keyword::kTypedef)) {
    one.leaf.node = const_cast<xmlNode*>(parent);
  }
  if (one.leaf.output == nullptr) one.leaf.output = out;
  return one;
}

LeafType TypeOfLeaf(const FoundNode& leaf) {
  const xmlNode* type = TypeOfNode(leaf);
  if (type == nullptr) return {};
  return {AsRead(type), leaf};
}

bool NamesIdentity(Compilation* all, const LeafType& one, const xmlNode* origin) {
  if (ArgumentOf(origin) == nullptr) return false;
  const xmlNode* type = DecidingType(all, one, ArgumentOf(origin), origin);
  return type != nullptr && IsNamed(FindBottomType(type).type, "identityref");
}

const xmlNode* DecidingType(Compilation* all, const LeafType& one, std::string_view value,
                            const xmlNode* at) {
  Asked asked{all, value, at};
  return Deciding(&asked, one, 0);
}

bool TakesValue(Compilation* all, const LeafType& one, std::string_view value, const xmlNode* at) {
  const xmlNode* type = DecidingType(all, one, value, at);
  return type != nullptr && FaultOfValue(type, value, at).empty();
}

}  // namespace compiler
