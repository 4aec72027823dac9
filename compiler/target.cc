// SPDX-License-Identifier: BSD-3-Clause
// The library finds a node below an augment only by comparing the texts of two targets,
// and destroys an augment of own nodes whose target it does not find at once. So all
// augments into own nodes are resolved here: their children move to the target, which
// takes as many rounds as augments build on one another, and only augments of other
// modules' nodes stay statements.
#include "compiler/target.h"

#include <algorithm>
#include <string>

#include "compiler/expand.h"
#include "compiler/node_kind.h"
#include "compiler/path.h"
#include "compiler/statement.h"
#include "compiler/symbols.h"

namespace compiler {

namespace {

bool SameStep(const TargetStep& a, const TargetStep& b) {
  return a.module != nullptr && b.module != nullptr && a.module->name == b.module->name &&
         a.name == b.name;
}

bool BeginsWith(const std::vector<TargetStep>& steps, const std::vector<TargetStep>& head) {
  return !head.empty() && steps.size() > head.size() &&
         std::equal(head.begin(), head.end(), steps.begin(), SameStep);
}

// Follows own steps from `node` on, making missing inputs and outputs.
xmlNode* FollowOwn(Output* out, xmlNode* node, const std::vector<TargetStep>& steps, size_t first) {
  for (size_t i = first; node != nullptr && i < steps.size(); ++i) {
    if (steps[i].module == nullptr || steps[i].module->name != out->module->name) return nullptr;
    node = SchemaChild(out, node, steps[i].name);
  }
  return node;
}

// True for a path to a node of this module, wherever that hangs.
bool IsOwn(const Output& out, const std::vector<TargetStep>& steps) {
  return !steps.empty() && steps.back().module != nullptr &&
         steps.back().module->name == out.module->name;
}

// The node of this module's trees that the steps name: from the top, or below one of
// the augments that stay.
xmlNode* FindOwn(Output* out, const std::vector<TargetStep>& steps, const xmlNode* except) {
  xmlNode* found = FollowOwn(out, out->written.root, steps, 0);
  for (size_t i = 0; found == nullptr && i < out->augments.size(); ++i) {
    const WrittenAugment& augment = out->augments[i];
    if (augment.node != except && !IsOwn(*out, augment.steps) && BeginsWith(steps, augment.steps))
      found = FollowOwn(out, augment.node, steps, augment.steps.size());
  }
  return found;
}

// What an augment has for its target; the rest is its own.
bool IsBrought(const xmlNode* statement) {
  return IsSchemaNode(KeywordOf(statement));
}

void Fold(Output* out, xmlNode* augment, xmlNode* target) {
  const xmlNode* origin = OriginOf(augment);
  for (xmlNode* s = FirstChild(augment); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    if (IsBrought(s)) {
      TakeOut(s);
      Inherit(out, origin, PutNode(out, target, s), StatementOf(augment)->usedAt);
    } else if (Is(s, Keyword::kNone)) {
      Lose(out, s, "an extension in augment has no place in the output");
    }
    s = next;
  }
  RemoveStatement(augment);
}

// One round over the augments that are left. True: one has found its target.
bool FoldRound(Output* out) {
  bool folded = false;
  for (size_t i = 0; i < out->augments.size();) {
    const WrittenAugment augment = out->augments[i];
    xmlNode* target =
        IsOwn(*out, augment.steps) ? FindOwn(out, augment.steps, augment.node) : nullptr;
    if (target == nullptr) {
      ++i;
      continue;
    }
    out->augments.erase(out->augments.begin() + static_cast<ptrdiff_t>(i));
    Fold(out, augment.node, target);
    folded = true;
  }
  return folded;
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
                  const std::vector<TargetStep>& head) {
  if (step.module == nullptr) return {};
  if (step.module->name == parent.output->module->name) {
    xmlNode* found = FindSchemaChild(parent.node, step.name);
    if (found == nullptr) found = ImpliedChild(parent.output, parent.node, step.name);
    return {found, parent.output};
  }
  Output* other = ExpandedOutput(all, Written(all, step.module));
  for (const WrittenAugment& augment : other->augments) {
    if (augment.steps.size() != head.size() ||
        !std::equal(head.begin(), head.end(), augment.steps.begin(), SameStep))
      continue;
    xmlNode* found = FindSchemaChild(augment.node, step.name);
    if (found != nullptr) return {found, other};
  }
  return {};
}

// True when the trees that the path leads through could be made.
bool AreWhole(Compilation* all, const std::vector<TargetStep>& steps) {
  return std::none_of(steps.begin(), steps.end(), [all](const TargetStep& step) {
    return step.module != nullptr && ExpandedOutput(all, Written(all, step.module))->stopped;
  });
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
  at.node = FindSchemaChild(at.output->written.root, steps[0].name);
  for (size_t i = 1; at.node != nullptr && i < steps.size(); ++i) {
    const std::vector<TargetStep> head(steps.begin(), steps.begin() + static_cast<ptrdiff_t>(i));
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

void ForgetAugment(Output* out, const xmlNode* augment) {
  auto& all = out->augments;
  all.erase(std::remove_if(all.begin(), all.end(),
                           [augment](const WrittenAugment& one) { return one.node == augment; }),
            all.end());
}

void FoldOwnAugments(Output* out) {
  while (FoldRound(out)) {
  }
  for (const WrittenAugment& augment : out->augments) {
    if (augment.steps.empty() || IsOwn(*out, augment.steps))
      Stop(out, "target", augment.node, "the target of the augment is not found in the module");
  }
}

void WrapForeignCases(Output* out) {
  for (WrittenAugment& augment : out->augments) {
    const FoundNode target = TargetOf(out->all, &augment);
    if (target.node == nullptr && AreWhole(out->all, augment.steps))
      AddFinding(&out->report, Severity::kError, "target", augment.node,
                 "the target of the augment is not found");
    if (target.node == nullptr || !Is(target.node, Keyword::kChoice)) continue;
    for (xmlNode* s = FirstChild(augment.node); s != nullptr;) {
      xmlNode* next = NextSibling(s);
      if (IsShorthandCase(KeywordOf(s))) {
        xmlNode* wrapping = MakeStatement(out->all->session, s, Keyword::kCase, ArgumentOf(s));
        InsertBefore(s, wrapping);
        TakeOut(s);
        AppendChild(wrapping, s);
      }
      s = next;
    }
  }
}

}  // namespace compiler
