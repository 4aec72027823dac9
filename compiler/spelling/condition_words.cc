// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/condition_words.h"

#include <vector>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/handed_down.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"
#include "compiler/words/xpath_edit.h"

namespace compiler {

namespace {

constexpr char kConditionClass[] = "condition";
constexpr unsigned kMaxHops = 128;

bool IsIdentityref(const FoundNode& node) {
  const xmlNode* type = TypeOfNode(node);
  if (type == nullptr) return false;
  const xmlNode* bottom = FindBottomType(type).type;
  return bottom != nullptr && std::string_view(ArgumentOf(bottom)) == "identityref";
}

// The node that has the condition, or that the augment with it leads to.
FoundNode NodeOfCondition(Output* out, const xmlNode* statement) {
  xmlNode* parent = ParentOf(statement);
  if (Is(parent, Keyword::kDeviate)) return FindTarget(out->all, TargetSteps(ParentOf(parent)));
  if (Is(parent, Keyword::kAugment)) return AugmentTarget(out->all, out, parent);
  return {parent, out};
}

struct ComparedPath {
  const Xpath* xpath;
  uint32_t path;
};

// True when a literal that is compared with a path names an identity.
bool IsComparedIdentity(Compilation* all, const FoundNode& context, Module* words,
                        const ComparedPath& with, std::string_view literal) {
  const FoundNode target = PathTarget(all, context, words, *with.xpath, with.path);
  if (target.node != nullptr) return IsIdentityref(target);
  const Reference reference = SplitReference(literal);
  return !reference.prefix.empty() && KnowsPrefix(words, reference.prefix);
}

void ReportUnknown(Output* out, const xmlNode* statement,
                   const std::vector<UnknownPrefix>& unknown) {
  for (const UnknownPrefix& one : unknown) {
    AddFinding(&out->report, Severity::kError, kConditionClass, statement,
               "the prefix \"" + one.prefix + "\" is not known", "import its module");
  }
}

NameRules RulesFor(Output* out, const xmlNode* statement) {
  Module* words = StatementOf(statement)->words;
  NameRules rules;
  rules.nodes = [out, words](std::string_view prefix) -> std::optional<std::string> {
    // Names without a prefix are those of the module that uses them.
    if (prefix.empty()) return std::string();
    return TranslatePrefix(out, words, prefix);
  };
  rules.identities = [out, words](std::string_view prefix) {
    return TranslatePrefix(out, words, prefix);
  };
  rules.onIdentity = [out, words, statement](std::string_view prefix, std::string_view name) {
    Module* module = ModuleOfPrefix(words, prefix);
    if (module != nullptr && !IsInWrittenRevision(out, module, name))
      Lose(out, statement,
           "the revision of \"" + module->name + "\" that is written has no identity \"" +
               std::string(name) + "\"; no value is equal to it");
  };
  rules.isIdentity = [out, words, statement](const Xpath& xpath, uint32_t path,
                                             std::string_view literal) {
    const FoundNode context = ContextOfCondition(out, statement);
    if (context.output == nullptr) return !SplitReference(literal).prefix.empty();
    return IsComparedIdentity(out->all, context, words, {&xpath, path}, literal);
  };
  return rules;
}

// "../p:a[...]/p:b" from a path whose names have their prefixes.
std::string WithoutBlanks(const NodePath& path) {
  std::string text;
  for (uint32_t i = 0; i < path.ups; ++i) text += i == 0 ? ".." : "/..";
  for (const PathStep& step : path.steps) {
    text += '/';
    if (!step.prefix.empty()) text.append(path.Of(step.prefix)).append(":");
    text.append(path.Of(step.name));
    int depth = 0;
    for (const char c : path.Of(step.predicates)) {
      if (c == '[') ++depth;
      if (depth > 0) text += c;
      if (c == ']') --depth;
    }
  }
  return text;
}

// The leaf that a path in a type starts from: that whose type it is by origin, or that gets
// it by a deviation. None: the type stands in a typedef.
FoundNode LeafOf(Output* out, const xmlNode* type) {
  xmlNode* s = ParentOf(type);
  for (; Is(s, Keyword::kType); s = ParentOf(s)) {
    const auto copied = out->copiedTypes.find(s);
    if (copied != out->copiedTypes.end()) return copied->second;
  }
  if (Is(s, Keyword::kLeaf) || Is(s, Keyword::kLeafList)) return {s, out};
  const FoundNode deviated = DeviatedLeaf(out, type);
  return deviated.node == nullptr ? FoundNode{nullptr, out} : deviated;
}

// True when the type is part of what the leaf's type comes to.
bool LeadsBack(Output* out, const xmlNode* type, const FoundNode& leaf) {
  const xmlNode* s = ParentOf(type);
  for (; Is(s, Keyword::kType); s = ParentOf(s)) {
    const auto copied = out->copiedTypes.find(s);
    if (copied != out->copiedTypes.end() && copied->second.node == leaf.node) return true;
  }
  return s == leaf.node || DeviatedLeaf(out, type).node == leaf.node;
}

void PutTypeInUnion(Output* out, xmlNode* type, const FoundNode& leaf) {
  if (LeadsBack(out, type, leaf)) {
    Lose(out, type,
         "the library checks no leafref in a union, and this one leads back to its own leaf");
    return;
  }
  const xmlNode* other = TypeOfNode(leaf);
  if (!MayGrowUnion(out, type, OriginOf(other))) return;
  PutTypeOf(out, type, other, leaf);
}

}  // namespace

FoundNode ContextOfCondition(Output* out, const xmlNode* statement) {
  const FoundNode node = NodeOfCondition(out, statement);
  if (node.node == nullptr) return node;
  const bool isHandedDown = StatementOf(statement)->handedDown;
  return isHandedDown || IsTransparent(KeywordOf(node.node)) ? DataParent(out->all, node) : node;
}

std::string CanonicalCondition(Compilation* all, const xmlNode* statement, const FoundNode& context,
                               const Module* bare) {
  const xmlNode* origin = OriginOf(statement);
  Module* words = StatementOf(origin)->words;
  const Module* local = context.output->module;
  if (bare == nullptr) bare = MainModuleOf(words);
  Xpath xpath;
  XpathError error;
  if (ArgumentOf(origin) == nullptr || !ParseXpath(ArgumentOf(origin), &xpath, &error)) return {};
  NameRules rules;
  rules.nodes = [words, local](std::string_view prefix) -> std::optional<std::string> {
    const Module* module = prefix.empty() ? local : ModuleOfPrefix(words, prefix);
    return module == nullptr ? std::string() : module->name;
  };
  rules.identities = [words, bare](std::string_view prefix) -> std::optional<std::string> {
    const Module* module = prefix.empty() ? bare : ModuleOfPrefix(words, prefix);
    if (module == nullptr) return std::nullopt;
    return module->name;
  };
  rules.isIdentity = [all, &context, words](const Xpath& one, uint32_t path,
                                            std::string_view literal) {
    return IsComparedIdentity(all, context, words, {&one, path}, literal);
  };
  std::vector<UnknownPrefix> unknown;
  return RenamePrefixes(xpath, rules, &unknown);
}

// What a deviation deletes is written as the target has it, maybe with prefixes of that.
static bool IsToDelete(const xmlNode* statement) {
  const xmlNode* deviate = ParentOf(statement);
  return Is(deviate, Keyword::kDeviate) && ArgumentOf(deviate) != nullptr &&
         std::string_view(ArgumentOf(deviate)) == "delete";
}

// False: it cannot stay.
static bool TranslateOne(Output* out, xmlNode* statement) {
  const char* text = ArgumentOf(statement);
  Xpath xpath;
  XpathError error;
  if (text == nullptr || !ParseXpath(text, &xpath, &error)) {
    AddFinding(&out->report, Severity::kError, kConditionClass, statement,
               "the condition does not parse: " + error.message + "; it is left out");
    return false;
  }
  std::vector<UnknownPrefix> unknown;
  const std::string renamed = RenamePrefixes(xpath, RulesFor(out, statement), &unknown);
  if (!IsToDelete(statement)) ReportUnknown(out, statement, unknown);
  if (renamed != text) SetArgument(out->all->session, statement, renamed);
  return !StatementOf(statement)->handedDown || SettleHandedDown(out, statement);
}

void TranslateCondition(Output* out, xmlNode* statement) {
  xmlNode* node = ParentOf(statement);
  const bool isLast =
      Is(statement, Keyword::kWhen) && NextSibling(statement, Keyword::kWhen) == nullptr;
  if (!TranslateOne(out, statement)) RemoveStatement(statement);
  if (isLast) JoinConditionsOf(out, node);
}

void RewritePath(Output* out, xmlNode* statement) {
  Module* words = StatementOf(statement)->words;
  const char* text = ArgumentOf(statement);
  Xpath xpath;
  NodePath path;
  XpathError error;
  const FoundNode deviated = DeviatedLeaf(out, ParentOf(statement));
  Module* user = deviated.node == nullptr ? out->module : deviated.output->module;
  NameRules rules;
  rules.nodes = [out, words, user](std::string_view prefix) -> std::optional<std::string> {
    if (prefix.empty()) return PrefixOf(out, user);
    return TranslatePrefix(out, words, prefix);
  };
  rules.identities = [](std::string_view) { return std::nullopt; };
  if (text == nullptr || !ParseXpath(text, &xpath, &error)) return;
  std::vector<UnknownPrefix> unknown;
  std::string renamed = RenamePrefixes(xpath, rules, &unknown);
  ReportUnknown(out, statement, unknown);
  // RFC 7950 has no current() here, but models have, and it can mean one thing only.
  constexpr std::string_view kCurrent = "current()/";
  if (std::string_view(renamed).starts_with(kCurrent)) renamed.erase(0, kCurrent.size());
  if (!ParseLeafrefPath(renamed, &path, &error) || path.throughDeref) return;
  const std::string written = WithoutBlanks(path);
  if (written != text) SetArgument(out->all->session, statement, written);
}

FoundNode FindReferredLeaf(Compilation* all, FoundNode* leaf, const xmlNode** leafref) {
  for (unsigned hop = 0; hop < kMaxHops; ++hop) {
    const FoundNode target = LeafrefTarget(all, *leaf, *leafref);
    const xmlNode* type = TypeOfNode(target);
    const xmlNode* bottom = type == nullptr ? nullptr : FindBottomType(type).type;
    if (bottom == nullptr) return {};
    if (std::string_view(ArgumentOf(bottom)) != "leafref") return target;
    *leaf = target;
    *leafref = bottom;
  }
  return {};
}

void ResolveUnionMember(Output* out, xmlNode* type) {
  if (out->stopped) return;
  const FoundNode start = LeafOf(out, type);
  FoundNode leaf = start;
  const xmlNode* at = FindBottomType(type).type;  // a typedef may have the path
  const FoundNode end = FindReferredLeaf(out->all, &leaf, &at);
  if (end.node != nullptr) {
    PutTypeInUnion(out, type, end);
    return;
  }
  // A path in a typedef whose meaning depends on the leaf gets its target where one has it.
  if (start.node == nullptr && leaf.node == nullptr && at != nullptr && DependsOnLeaf(at)) {
    const xmlNode* holder = ParentOf(type);
    while (Is(holder, Keyword::kType)) holder = ParentOf(holder);
    if (Is(holder, Keyword::kTypedef)) return;
  }
  Lose(out, type,
       "the library checks no leafref in a union, and the type of this one's target is not known");
}

}  // namespace compiler
