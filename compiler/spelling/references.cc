// SPDX-License-Identifier: BSD-3-Clause
// A path to a node that has left has no nodes, and nothing is derived from an identity
// that has left, since one that is a base of what stays would have stayed. So the
// condition has the same answer without them. The library refuses every value of a leafref
// whose target is not there, and lint takes its path for a mistake; with the target's type
// values are checked as ever, and whether there is such an instance is for others to say,
// as it always is.
#include "compiler/spelling/references.h"

#include <string_view>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/condition_fold.h"
#include "compiler/spelling/condition_words.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/departures.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"

namespace compiler {

namespace {

Output* WrittenOutput(Compilation* all, Module* module) {
  Module* written = WrittenModule(all->repository, module->name);
  return ExpandedOutput(all, written == nullptr ? module : written);
}

// Walks the paths of a condition on the schema; what stands behind a step that cannot be
// followed is not noted.
class ConditionNoter {
 public:
  ConditionNoter(NotedCondition* noted, const Xpath& xpath, const FoundNode& context)
      : noted_(noted), xpath_(xpath), context_(context) {}

  void Run() { Follow(xpath_.root, {context_, true}); }

 private:
  struct Cursor {
    FoundNode at;  // without node: at the top
    bool known = false;
  };

  FoundNode Child(const FoundNode& at, const XpathStep& step) const {
    Compilation* all = noted_->output->all;
    const std::string_view name = xpath_.Of(step.name);
    if (!step.prefix.empty()) {
      Module* words = StatementOf(noted_->statement)->words;
      return DataChild(all, at, ModuleOfPrefix(words, xpath_.Of(step.prefix)), name);
    }
    // A name without prefix belongs to the module whose node the condition is on.
    const FoundNode own = DataChild(all, at, noted_->output->module, name);
    return own.node != nullptr ? own : DataChild(all, at, context_.output->module, name);
  }

  Cursor Step(uint32_t path, const XpathStep& step, const Cursor& from) {
    if (!from.known || step.descendants) return {};
    if (step.test == XpathTest::kNode && step.axis == XpathAxis::kSelf) return from;
    if (step.test == XpathTest::kNode && step.axis == XpathAxis::kParent) {
      if (from.at.node == nullptr) return {};
      const FoundNode up = DataParent(noted_->output->all, from.at);
      return {up, up.output != nullptr};
    }
    if (step.test != XpathTest::kName || step.axis != XpathAxis::kChild) return {};
    const FoundNode child = Child(from.at, step);
    if (child.node == nullptr) return {};
    noted_->steps.push_back({path, child});
    return {child, true};
  }

  Cursor FollowPath(uint32_t index, const Cursor& context) {
    const XpathNode& node = xpath_.At(index);
    Cursor cursor = context;
    if (!node.operands.empty()) cursor = Follow(node.operands[0], context);
    if (node.absolute) cursor = {{nullptr, context_.output}, true};
    for (const uint32_t predicate : node.predicates) Follow(predicate, cursor);
    for (const XpathStep& step : node.steps) {
      cursor = Step(index, step, cursor);
      for (const uint32_t predicate : step.predicates) Follow(predicate, cursor);
    }
    return cursor;
  }

  void NoteIdentity(uint32_t index) {
    const XpathNode& call = xpath_.At(index);
    const std::string_view name = xpath_.Of(call.name);
    if ((name != "derived-from" && name != "derived-from-or-self") || call.operands.size() != 2 ||
        xpath_.At(call.operands[1]).kind != XpathKind::kLiteral)
      return;
    const Reference reference = SplitReference(LiteralText(xpath_, call.operands[1]));
    Module* module = ModuleOfPrefix(StatementOf(noted_->statement)->words, reference.prefix);
    if (module != nullptr)
      noted_->identities.push_back({index, module, std::string(reference.name)});
  }

  Cursor Follow(uint32_t index, const Cursor& context) {
    const XpathNode& node = xpath_.At(index);
    if (node.kind == XpathKind::kPath) return FollowPath(index, context);
    if (node.kind == XpathKind::kGroup) return Follow(node.operands[0], context);
    for (const uint32_t operand : node.operands) Follow(operand, context);
    if (node.kind != XpathKind::kCall) return {};
    NoteIdentity(index);
    if (xpath_.Of(node.name) == "current") return {context_, true};
    return {};
  }

  NotedCondition* noted_;
  const Xpath& xpath_;
  const FoundNode& context_;
};

// What a deviation deletes has the text of its target, whatever becomes of that.
bool IsOfDeletion(const xmlNode* statement) {
  const xmlNode* parent = ParentOf(statement);
  const char* kind = Is(parent, Keyword::kDeviate) ? ArgumentOf(parent) : nullptr;
  return kind != nullptr && std::string_view(kind) == "delete";
}

void NoteCondition(Output* out, xmlNode* statement, References* references) {
  Xpath xpath;
  XpathError error;
  if (ArgumentOf(statement) == nullptr || IsOfDeletion(statement)) return;
  if (!ParseXpath(ArgumentOf(statement), &xpath, &error)) return;
  const FoundNode context = ContextOfCondition(out, statement);
  if (context.output == nullptr) return;
  NotedCondition noted;
  noted.output = out;
  noted.statement = statement;
  ConditionNoter(&noted, xpath, context).Run();
  if (!noted.steps.empty() || !noted.identities.empty())
    references->conditions.push_back(std::move(noted));
}

// The leaf whose type it is, or has it as a member; its node is NULL for a typedef, its
// output for anything else.
FoundNode LeafOf(Output* out, const xmlNode* type) {
  xmlNode* holder = ParentOf(type);
  while (Is(holder, Keyword::kType)) holder = ParentOf(holder);
  if (Is(holder, Keyword::kTypedef)) return {nullptr, out};
  if (Is(holder, Keyword::kLeaf) || Is(holder, Keyword::kLeafList)) return {holder, out};
  if (Is(holder, Keyword::kDeviate)) return FindTarget(out->all, TargetSteps(ParentOf(holder)));
  return {};
}

// True when the type is settled where the typedef with the path stands.
bool IsSettledAtTypedef(Compilation* all, const BottomType& bottom) {
  if (bottom.direct) return false;
  const char* path = ArgumentOfChild(bottom.type, Keyword::kPath);
  const xmlNode* definition = ParentOf(bottom.type);
  if (path == nullptr || *path != '/' || !IsGlobal(definition)) return false;
  Module* module = MainModuleOf(StatementOf(definition)->words);
  return WrittenOutput(all, module)->module == module;
}

void NoteLeafref(Output* out, xmlNode* type, References* references) {
  const BottomType bottom = FindBottomType(type);
  if (bottom.type == nullptr || std::string_view(ArgumentOf(bottom.type)) != "leafref") return;
  if (IsSettledAtTypedef(out->all, bottom)) return;
  FoundNode leaf = LeafOf(out, type);
  if (leaf.output == nullptr) return;
  NotedLeafref noted{out, type, LeafrefTarget(out->all, leaf, bottom.type), {}, nullptr};
  if (noted.target.node == nullptr) return;
  const xmlNode* leafref = bottom.type;
  noted.referred = FindReferredLeaf(out->all, &leaf, &leafref);
  noted.valueType = TypeOfNode(noted.referred);
  references->leafrefs.push_back(noted);
}

bool IsLost(const NotedCondition& condition, const NotedIdentity& identity) {
  const Output* owner = WrittenOutput(condition.output->all, identity.module);
  return owner->lostIdentities.count(identity.name) != 0;
}

void SayNeverTrue(Output* out, const xmlNode* statement) {
  const xmlNode* node = ParentOf(statement);
  const char* name = ArgumentOf(node);
  const std::string what =
      name == nullptr ? NameOf(node) : std::string(NameOf(node)) + " \"" + name + "\"";
  Lose(out, statement,
       "the " + std::string(NameOf(statement)) +
           " is never true, since what it asks for depends on a feature that is off; " +
           (Is(statement, Keyword::kWhen) ? what + " can never be there"
                                          : "what has " + what + " is never valid"));
}

// A condition that always holds. A deviation may delete it.
void LeaveOut(Output* out, xmlNode* statement) {
  xmlNode* parent = ParentOf(statement);
  TakeOut(statement);
  if (!Is(parent, Keyword::kDeviate)) {
    out->dropped.push_back({parent, nullptr});
    out->dropped.back().statement.reset(statement);
    return;
  }
  out->removed.emplace_back(statement);
  if (FirstChild(parent) != nullptr) return;
  xmlNode* deviation = ParentOf(parent);
  LeaveTree(out, parent);
  if (FirstChild(deviation, Keyword::kDeviate) == nullptr) LeaveTree(out, deviation);
}

void SettleCondition(const NotedCondition& noted) {
  Output* out = noted.output;
  xmlNode* statement = noted.statement;
  if (!StaysInTree({statement, out})) return;
  KnownParts known;
  for (const NotedStep& step : noted.steps) {
    if (!StaysInTree(step.node)) known.emptyPaths.insert(step.path);
  }
  for (const NotedIdentity& identity : noted.identities) {
    if (IsLost(noted, identity)) known.falseCalls.insert(identity.call);
  }
  Xpath xpath;
  XpathError error;
  if (known.emptyPaths.empty() && known.falseCalls.empty()) return;
  if (!ParseXpath(ArgumentOf(statement), &xpath, &error)) return;
  const FoldedCondition folded = FoldCondition(xpath, known);
  if (!folded.value) {
    SetArgument(out->all->session, statement, folded.text);
  } else if (!*folded.value) {
    SayNeverTrue(out, statement);
    SetArgument(out->all->session, statement, "1 = 0");
  } else {
    LeaveOut(out, statement);
  }
}

void SettleLeafref(const NotedLeafref& noted) {
  Output* out = noted.output;
  if (!StaysInTree({noted.type, out}) || StaysInTree(noted.target)) return;
  const char* path = ArgumentOfChild(FindBottomType(noted.type).type, Keyword::kPath);
  Lose(out, noted.type,
       "the target \"" + std::string(path) +
           "\" of the leafref depends on a feature that is off, so no value can be valid; the "
           "type of the target takes its place");
  if (noted.valueType != nullptr) {
    if (Is(ParentOf(noted.type), Keyword::kTypedef))
      out->all->settledLeafrefs[OriginOf(FindBottomType(noted.type).type)] = {
          OriginOf(noted.valueType), noted.referred};
    PutTypeOf(out, noted.type, noted.valueType, noted.referred);
    return;
  }
  LooseStatement any(MakeStatement(out->all->session, noted.type, Keyword::kType, "string"));
  InsertBefore(noted.type, any.release());
  RemoveStatement(noted.type);
}

}  // namespace

References NoteReferences(const std::vector<Output*>& outputs) {
  References references;
  for (Output* out : outputs) {
    xmlNode* root = out->written.root;
    for (xmlNode* s = out->stopped ? nullptr : FirstChild(root); s != nullptr;
         s = NextInTree(root, s)) {
      if (Is(s, Keyword::kWhen) || Is(s, Keyword::kMust)) NoteCondition(out, s, &references);
      if (Is(s, Keyword::kType)) NoteLeafref(out, s, &references);
    }
  }
  return references;
}

void SettleReferences(const References& references) {
  for (const NotedCondition& one : references.conditions) SettleCondition(one);
  for (const NotedLeafref& one : references.leafrefs) SettleLeafref(one);
}

}  // namespace compiler
