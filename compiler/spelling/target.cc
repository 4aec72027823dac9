// SPDX-License-Identifier: BSD-3-Clause
// The library finds a node below an augment only by comparing the texts of two targets,
// and destroys an augment of own nodes whose target it does not find at once. So all
// augments into own nodes are resolved here: their children move to the target, and only
// augments of other modules' nodes stay statements. An augment whose target is not there
// yet waits at the node where its path ends, for the name that is missing; it goes on from
// there when another one brings that. The order is that of rounds over all that wait.
#include "compiler/spelling/target.h"

#include <algorithm>
#include <queue>
#include <string>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/child_index.h"
#include "compiler/spelling/expand.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

// Paths of one target have one key.
void AddToKey(std::string* key, const TargetStep& step) {
  key->append(step.module->name).append(1, ':').append(step.name).append(1, '/');
}

bool HasUnknownStep(const std::vector<TargetStep>& steps) {
  return std::any_of(steps.begin(), steps.end(),
                     [](const TargetStep& step) { return step.module == nullptr; });
}

bool IsOwnStep(const Output& out, const TargetStep& step) {
  return step.module != nullptr && step.module->name == out.module->name;
}

// True for a path to a node of this module, wherever that hangs.
bool IsOwn(const Output& out, const std::vector<TargetStep>& steps) {
  return !steps.empty() && IsOwnStep(out, steps.back());
}

NamedNodes* HungAt(Output* out, const std::vector<TargetStep>& steps) {
  if (HasUnknownStep(steps)) return nullptr;
  std::string key;
  for (const TargetStep& step : steps) AddToKey(&key, step);
  return &out->hung[key];
}

// The node that one of the augments into other modules brings to the target with that key.
xmlNode* FindHung(Output* out, const std::string& key, std::string_view name) {
  if (!out->hungFilled) {
    out->hungFilled = true;
    for (const WrittenAugment& augment : out->augments) {
      NamedNodes* named = IsOwn(*out, augment.steps) ? nullptr : HungAt(out, augment.steps);
      for (xmlNode* s = FirstChild(augment.node); named != nullptr && s != nullptr;
           s = NextSibling(s)) {
        const char* own = SchemaName(s);
        if (own != nullptr) named->emplace(own, s);
      }
    }
  }
  const auto there = out->hung.find(key);
  if (there == out->hung.end()) return nullptr;
  const auto found = there->second.find(name);
  return found == there->second.end() ? nullptr : found->second;
}

// An augment on its way to own nodes.
struct Waiting {
  WrittenAugment* augment = nullptr;
  xmlNode* at = nullptr;  // as far as its path leads; NULL: nowhere, whatever may come
  size_t next = 0;        // the step that is looked for there
  bool folded = false;
};

// A round, and the augment whose turn it is in that.
using Turn = std::pair<size_t, size_t>;

struct Folding {
  Output* out = nullptr;
  std::vector<Waiting> augments;
  std::priority_queue<Turn, std::vector<Turn>, std::greater<>> turns;
  // Who waits for a child of that name, by the record of the parent.
  std::unordered_map<const Statement*, std::unordered_map<std::string_view, std::vector<size_t>>>
      waiters;
};

// From where own steps are followed: the top, or what an augment that stays brings to the
// last foreign step.
void Begin(Output* out, Waiting* one) {
  const std::vector<TargetStep>& steps = one->augment->steps;
  if (HasUnknownStep(steps)) return;
  size_t own = steps.size();
  while (own > 0 && IsOwnStep(*out, steps[own - 1])) --own;
  if (own == 0) {
    one->at = out->written.root;
    return;
  }
  std::string key;
  for (size_t i = 0; i < own; ++i) AddToKey(&key, steps[i]);
  one->at = FindHung(out, key, steps[own].name);
  one->next = own + 1;
}

// Follows steps, making missing inputs and outputs. True: to the end.
bool Advance(Output* out, Waiting* one) {
  const std::vector<TargetStep>& steps = one->augment->steps;
  for (; one->at != nullptr && one->next < steps.size(); ++one->next) {
    xmlNode* child = SchemaChild(out, one->at, steps[one->next].name);
    if (child == nullptr) return false;
    one->at = child;
  }
  return one->at != nullptr;
}

void Wake(Folding* folding, const Turn& turn, const xmlNode* target, const xmlNode* brought) {
  const auto here = folding->waiters.find(StatementOf(target));
  const char* name = here == folding->waiters.end() ? nullptr : SchemaName(brought);
  if (name == nullptr) return;
  const auto named = here->second.find(name);
  if (named == here->second.end()) return;
  for (const size_t index : named->second)
    folding->turns.emplace(index > turn.second ? turn.first : turn.first + 1, index);
  here->second.erase(named);
}

// What an augment has for its target; the rest is its own.
bool IsBrought(const xmlNode* statement) {
  return IsSchemaNode(KeywordOf(statement));
}

void Fold(Folding* folding, const Turn& turn, xmlNode* augment, xmlNode* target) {
  Output* out = folding->out;
  const std::vector<const xmlNode*> inherited = Inherited(OriginOf(augment));
  for (xmlNode* s = FirstChild(augment); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    if (IsBrought(s)) {
      TakeOut(s);
      xmlNode* put = PutNode(out, target, s);
      Inherit(out, inherited, put, StatementOf(augment)->usedAt);
      Wake(folding, turn, target, put);
    } else if (Is(s, Keyword::kNone)) {
      Lose(out, s, "an extension in augment has no place in the output");
    }
    s = next;
  }
  RemoveStatement(augment);
}

void TakeTurn(Folding* folding, const Turn& turn) {
  Waiting* one = &folding->augments[turn.second];
  if (Advance(folding->out, one)) {
    one->folded = true;
    Fold(folding, turn, one->augment->node, one->at);
  } else if (one->at != nullptr) {
    const std::string_view missing = one->augment->steps[one->next].name;
    folding->waiters[StatementOf(one->at)][missing].push_back(turn.second);
  }
}

Module* Written(Compilation* all, Module* module) {
  Module* written = WrittenModule(all->repository, module->name);
  return written == nullptr ? module : written;
}

// The input or output that an operation does not write: it has both all the same (RFC
// 7950, sections 7.14.2 and 7.14.3). The library makes it when an augment leads there, so
// it is not to stand in the tree: it knows its operation, which does not hold it.
xmlNode* ImpliedChild(Output* out, xmlNode* operation, std::string_view name) {
  if (!IsOperation(KeywordOf(operation)) || (name != "input" && name != "output")) return nullptr;
  const Keyword keyword = FindKeyword(name);
  LooseStatement& implied = out->implied[{operation, keyword}];
  if (implied == nullptr) {
    implied.reset(MakeStatement(out->all->session, operation, keyword, std::string_view()));
    implied->parent = operation;
  }
  return implied.get();
}

FoundNode ChildIn(Compilation* all, const FoundNode& parent, const TargetStep& step,
                  const std::string& head) {
  if (step.module == nullptr) return {};
  if (step.module->name == parent.output->module->name) {
    xmlNode* found = FindSchemaChild(all, parent.node, step.name);
    if (found == nullptr) found = ImpliedChild(parent.output, parent.node, step.name);
    return {found, parent.output};
  }
  Output* other = ExpandedOutput(all, Written(all, step.module));
  WrapForeignCases(other);
  xmlNode* found = FindHung(other, head, step.name);
  return found == nullptr ? FoundNode{} : FoundNode{found, other};
}

// True when the trees that the path leads through could be made.
bool AreWhole(Compilation* all, const std::vector<TargetStep>& steps) {
  return std::none_of(steps.begin(), steps.end(), [all](const TargetStep& step) {
    return step.module != nullptr && ExpandedOutput(all, Written(all, step.module))->stopped;
  });
}

// Each shorthand case becomes a case of the same name.
void WrapChildren(Output* out, const WrittenAugment& augment) {
  NamedNodes* hung = out->hungFilled ? HungAt(out, augment.steps) : nullptr;
  for (xmlNode* s = FirstChild(augment.node); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    if (IsShorthandCase(KeywordOf(s))) {
      xmlNode* wrapping = MakeImpliedCase(out, s);
      InsertBefore(s, wrapping);
      TakeOut(s);
      AppendChild(wrapping, s);
      const auto named = hung == nullptr ? NamedNodes::iterator() : hung->find(SchemaName(s));
      if (hung != nullptr && named != hung->end() && named->second == s) named->second = wrapping;
    }
    s = next;
  }
}

bool LeadsThroughOthers(const Output& out, const WrittenAugment& augment) {
  return IsOwn(out, augment.steps) && !IsOwnStep(out, augment.steps[0]);
}

// What an own augment finds below another module's choice are cases already.
void WrapCasesThatOwnPathsMeet(Output* out) {
  auto& all = out->augments;
  if (std::none_of(all.begin(), all.end(), [out](const WrittenAugment& augment) {
        return LeadsThroughOthers(*out, augment);
      }))
    return;
  for (WrittenAugment& augment : all) {
    if (IsOwn(*out, augment.steps)) continue;
    const FoundNode target = TargetOf(out->all, &augment);
    if (target.node != nullptr && Is(target.node, Keyword::kChoice)) WrapChildren(out, augment);
  }
}

}  // namespace

std::vector<TargetStep> TargetSteps(const xmlNode* statement) {
  const xmlNode* origin = OriginOf(statement);
  const char* text = ArgumentOf(origin);
  NodePath path;
  XpathError error;
  if (text == nullptr || !ParseSchemaNodeId(text, true, &path, &error)) return {};
  std::vector<TargetStep> steps;
  for (const PathStep& step : path.steps) {
    const size_t begin = step.name.begin;
    steps.push_back({ModuleOfPrefix(StatementOf(origin)->words, path.Of(step.prefix)),
                     std::string_view(text + begin, step.name.end - begin)});
  }
  return steps;
}

FoundNode FindTarget(Compilation* all, const std::vector<TargetStep>& steps) {
  if (steps.empty() || steps[0].module == nullptr) return {};
  FoundNode at;
  at.output = ExpandedOutput(all, Written(all, steps[0].module));
  at.node = FindSchemaChild(all, at.output->written.root, steps[0].name);
  std::string head;
  for (size_t i = 1; at.node != nullptr && i < steps.size(); ++i) {
    AddToKey(&head, steps[i - 1]);
    at = ChildIn(all, at, steps[i], head);
  }
  return at;
}

FoundNode TargetOf(Compilation* all, WrittenAugment* augment) {
  if (!augment->looked) {
    augment->looked = true;
    augment->target = FindTarget(all, augment->steps);
  }
  return augment->target;
}

bool IsImplied(const FoundNode& node) {
  if (node.node == nullptr) return false;
  const auto found = node.output->implied.find({ParentOf(node.node), KeywordOf(node.node)});
  return found != node.output->implied.end() && found->second.get() == node.node;
}

void ForgetAugments(Output* out, const std::unordered_set<const xmlNode*>& gone) {
  out->hung.clear();
  out->hungFilled = false;
  if (gone.empty()) return;
  auto& all = out->augments;
  all.erase(std::remove_if(all.begin(), all.end(),
                           [&](const WrittenAugment& one) { return gone.count(one.node) != 0; }),
            all.end());
}

void FoldOwnAugments(Output* out) {
  WrapCasesThatOwnPathsMeet(out);
  Folding folding;
  folding.out = out;
  for (WrittenAugment& augment : out->augments) {
    Waiting& one = folding.augments.emplace_back();
    one.augment = &augment;
    if (!IsOwn(*out, augment.steps)) continue;
    Begin(out, &one);
    folding.turns.emplace(0, folding.augments.size() - 1);
  }
  while (!folding.turns.empty()) {
    const Turn turn = folding.turns.top();
    folding.turns.pop();
    TakeTurn(&folding, turn);
  }
  std::vector<WrittenAugment> left;
  for (const Waiting& one : folding.augments) {
    if (!one.folded) left.push_back(std::move(*one.augment));
  }
  out->augments = std::move(left);
  for (const WrittenAugment& augment : out->augments) {
    if (augment.steps.empty() || IsOwn(*out, augment.steps))
      Stop(out, "target", augment.node, "the target of the augment is not found in the module");
  }
}

void WrapForeignCases(Output* out) {
  if (out->casesWrapped || out->stopped) return;
  // Its own paths may lead through the cases of those before.
  out->casesWrapped = true;
  for (WrittenAugment& augment : out->augments) {
    const FoundNode target = TargetOf(out->all, &augment);
    if (target.node == nullptr && AreWhole(out->all, augment.steps))
      AddFinding(&out->report, Severity::kError, "target", augment.node,
                 "the target of the augment is not found");
    if (target.node != nullptr && Is(target.node, Keyword::kChoice)) WrapChildren(out, augment);
  }
}

}  // namespace compiler
