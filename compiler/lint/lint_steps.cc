// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/lint/lint_steps.h"

#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

constexpr char kCorrect[] = "correct the path";
constexpr uint64_t kCostOfName = 8;  // of one that an axis may lead to

bool IsRoot(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kModule;
}

// Where the step begins; NULL: at more than one node, or below all of them.
const SchemaNode* OnlyNode(const DataPlaces& from) noexcept {
  return from.nodes.size() == 1 && !from.foreign ? from.nodes[0] : nullptr;
}

std::string Beginning(const DataPlaces& from) {
  const SchemaNode* node = OnlyNode(from);
  if (node == nullptr) return "what the steps before it lead to";
  return IsRoot(node) ? "the root" : Quote(node->name);
}

// What is looked for, as the name of a kind of node.
std::string Wanted(const DataTest& step) {
  switch (step.test) {
    case XpathTest::kName:
      return Quote(step.name);
    case XpathTest::kAnyOfPrefix:
      return "node of module " + Quote(step.space->name);
    default:
      return "node";
  }
}

std::string ExplainChild(const DataPlaces& from, const DataTest& step) {
  const SchemaNode* node = OnlyNode(from);
  if (step.test != XpathTest::kName) return Beginning(from) + " has no child";
  if (node != nullptr && IsRoot(node))
    return "module " + Quote(step.space->name) + " has no top-level node " + Quote(step.name);
  return (node == nullptr ? "nothing that the steps before it lead to has a child "
                          : Quote(node->name) + " has no child ") +
         Quote(step.name);
}

std::string ExplainAxis(const DataPlaces& from, const DataTest& step) {
  if (step.test == XpathTest::kComment) return "data have no comments";
  if (step.test == XpathTest::kInstruction) return "data have no processing instructions";
  switch (step.axis) {
    case XpathAxis::kAttribute:
      return "data have no attributes";
    case XpathAxis::kNamespace:
      return "no namespace has the name of a node";
    case XpathAxis::kAncestor:
    case XpathAxis::kAncestorOrSelf:
      return "no " + Wanted(step) + " stands around " + Beginning(from);
    case XpathAxis::kParent:
      return "the parent of " + Beginning(from) + " is no " + Wanted(step);
    case XpathAxis::kSelf:
      return Beginning(from) + " is no " + Wanted(step);
    case XpathAxis::kFollowingSibling:
    case XpathAxis::kPrecedingSibling:
      return Beginning(from) + " has no sibling " + Wanted(step);
    case XpathAxis::kFollowing:
    case XpathAxis::kPreceding:
      return "no " + Wanted(step) + " stands beside " + Beginning(from);
    default:
      return "no " + Wanted(step) + " stands below " + Beginning(from);
  }
}

// An operation or notification of that name that the path would lead to, did it see it.
const SchemaNode* FindUnseen(const DataPlaces& from, const DataTest& step) {
  const auto* named = NodesNamed(*from.context.view, step.name);
  for (size_t i = 0; named != nullptr && i < named->size(); ++i) {
    const SchemaNode* node = (*named)[i];
    const bool isOperation = node->keyword == Keyword::kRpc || node->keyword == Keyword::kAction ||
                             node->keyword == Keyword::kNotification;
    if (isOperation && node->space == step.space && !IsSeenFrom(from.context, node)) return node;
  }
  return nullptr;
}

// The nearest of the names that stand where the step looks.
std::string NearestOnAxis(Lint* lint, const DataPlaces& from, const DataTest& step) {
  Suggestion near(step.name, &lint->namesToCompare);
  for (const SchemaNode& node : from.context.view->nodes) {
    if (lint->namesToCompare < kCostOfName) break;
    lint->namesToCompare -= kCostOfName;
    if (node.space != step.space || !IsDataNode(&node)) continue;
    DataTest other = step;
    other.name = node.name;
    if (std::string_view(other.name) == step.name) continue;
    if (EditDistance(step.name, other.name, 2) > 2) continue;
    if (!TakeStep(from, other, &lint->stepsToTake).nodes.empty() && !near.Consider(node.name))
      break;
  }
  return near.Advice(kCorrect);
}

std::string AdviceFor(Lint* lint, const DataPlaces& from, const DataTest& step) {
  if (step.test != XpathTest::kName || step.axis == XpathAxis::kAttribute ||
      step.axis == XpathAxis::kNamespace)
    return kCorrect;
  const SchemaNode* unseen = FindUnseen(from, step);
  if (unseen != nullptr)
    return "the " + std::string(RowOf(unseen->keyword).name) + " " + Quote(unseen->name) +
           " is seen from its own statements only";
  const SchemaNode* node = OnlyNode(from);
  if (node == nullptr || from.deep || step.axis != XpathAxis::kChild)
    return NearestOnAxis(lint, from, step);
  const DataCursor at = {from.context.view, node, false, from.context.message};
  return NearestData(at, step.space, step.name, kCorrect, &lint->namesToCompare);
}

}  // namespace

StepFault ExplainStep(Lint* lint, const DataPlaces& from, const DataTest& step) {
  const SchemaNode* node = OnlyNode(from);
  if (step.axis == XpathAxis::kParent && step.test == XpathTest::kNode && node != nullptr)
    return {"climbs above the root", "take one \"..\" away"};
  const bool isChild = step.axis == XpathAxis::kChild && !from.deep &&
                       (step.test == XpathTest::kName || step.test == XpathTest::kAnyName);
  return {"leads nowhere: " + (isChild ? ExplainChild(from, step) : ExplainAxis(from, step)),
          AdviceFor(lint, from, step)};
}

}  // namespace compiler
