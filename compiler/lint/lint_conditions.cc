// SPDX-License-Identifier: BSD-3-Clause
// Conditions, must and when: that they parse, call functions that exist, use prefixes
// that are declared, and name nodes that data can have (RFC 7950, sections 6.4, 7.5.3
// and 7.21.5).
//
// A condition is judged at each node that has it. Its paths are walked on the schema
// from the context node, along all axes; where a step cannot be followed (below anydata,
// out of a grouping) what comes behind it is not judged, but for its prefixes.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "compiler/lint/data_axes.h"
#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/lint/lint_steps.h"
#include "compiler/words/pattern.h"
#include "compiler/words/suggestion.h"
#include "compiler/words/xpath.h"

namespace compiler {

namespace {

// A condition at one place of the schema.
struct Condition {
  Lint* lint;
  const xmlNode* statement;
  Module* local;       // what a name without prefix means
  DataCursor context;  // current()
  const Place* usedAt;
  const Xpath* xpath;
  bool ofConfiguration;  // it sees configuration only (section 6.4.1)
  // What the uses or augment with the condition brings into a request or notification.
  const std::unordered_set<const SchemaNode*>* brought;
};

void Say(const Condition& condition, std::string message, std::string advice) {
  Error(condition.lint, cls::kCondition, condition.statement, std::move(message),
        std::move(advice));
  condition.lint->report->findings.back().usedAt = condition.usedAt;
}

std::string What(const xmlNode* statement) {
  return std::string("the ") + NameOf(statement) + " " + Quote(ArgumentOf(statement));
}

DataPlaces Unknown(const Condition& condition) {
  return UnknownPlaces(condition.context);
}

DataPlaces FollowNode(const Condition& condition, uint32_t index, const DataPlaces& context);

Module* SpaceOf(const Condition& condition, std::string_view prefix) {
  if (prefix.empty()) return condition.local;
  Module* words = StatementOf(condition.statement)->words;
  if (KnowsPrefix(words, prefix)) return ModuleOfPrefix(words, prefix);
  ResolvePrefix(condition.lint, cls::kCondition, condition.statement, prefix);
  return nullptr;
}

// Configuration is judged with configuration alone: true when that is why a step leads
// nowhere.
bool SeeState(const Condition& condition, const DataPlaces& from, DataTest test) {
  if (!test.configuration) return false;
  test.configuration = false;
  const DataPlaces reached = TakeStep(from, test, &condition.lint->stepsToTake);
  if (reached.unknown) return true;
  if (reached.nodes.empty()) return false;
  Say(condition,
      "in " + What(condition.statement) + " the path leads from configuration to " +
          Quote(reached.nodes[0]->name) + ", which is config false",
      "refer to configuration; in the tree that is looked at there is no state");
  return true;
}

DataPlaces FollowStep(const Condition& condition, const XpathStep& step, const DataPlaces* before) {
  const std::string_view prefix = condition.xpath->Of(step.prefix);
  DataTest test = {step.axis, step.test, nullptr, condition.xpath->Of(step.name),
                   condition.ofConfiguration};
  const bool isNamed = step.test == XpathTest::kName || step.test == XpathTest::kAnyOfPrefix;
  if (isNamed) test.space = SpaceOf(condition, prefix);
  if (isNamed && test.space == nullptr) return Unknown(condition);
  DataPlaces from = before == nullptr ? RootPlaces(condition.context, test,
                                                   isNamed && !prefix.empty(), step.descendants)
                                      : *before;
  from.deep = from.deep || step.descendants;
  DataPlaces reached = TakeStep(from, test, &condition.lint->stepsToTake);
  if (step.test == XpathTest::kName && !reached.unknown)
    JudgeStatusOfNodes(condition.lint, condition.statement, condition.context.node, reached.nodes);
  if (!IsNowhere(reached)) return reached;
  if (SeeState(condition, from, test)) return Unknown(condition);
  StepFault fault = ExplainStep(condition.lint, from, test);
  Say(condition, "in " + What(condition.statement) + " the path " + fault.what, fault.advice);
  return Unknown(condition);
}

// For XPath a `when` of a uses or augment sees nothing of what that brings (RFC 7950, section
// 7.21.5); the library sees it.
bool LooksInside(const Condition& condition, const DataPlaces& places) {
  if (condition.brought->empty()) return false;
  return std::any_of(places.nodes.begin(), places.nodes.end(), [&](const SchemaNode* node) {
    while (node != nullptr && condition.brought->count(node) == 0) node = node->parent;
    return node != nullptr;
  });
}

void WarnOfLookInside(const Condition& condition, TextSpan path) {
  Warn(condition.lint, cls::kLibrary, condition.statement,
       What(condition.statement) + ": " + Quote(condition.xpath->Of(path)) +
           " looks into what the condition decides on",
       "say it of nodes beside it, or in a must");
  condition.lint->report->findings.back().usedAt = condition.usedAt;
}

DataPlaces FollowPath(const Condition& condition, const XpathNode& path,
                      const DataPlaces& context) {
  DataPlaces places = context;
  if (!path.operands.empty()) places = FollowNode(condition, path.operands[0], context);
  for (const uint32_t predicate : path.predicates) FollowNode(condition, predicate, places);
  bool root = path.absolute;
  bool looksInside = false;
  if (path.absolute && path.steps.empty()) return Unknown(condition);
  for (const XpathStep& step : path.steps) {
    places = FollowStep(condition, step, root ? nullptr : &places);
    root = false;
    looksInside = looksInside || LooksInside(condition, places);
    for (const uint32_t predicate : step.predicates) FollowNode(condition, predicate, places);
  }
  if (looksInside) WarnOfLookInside(condition, path.span);
  return places;
}

// The second argument of derived-from() and its kin names an identity: without a prefix
// one of the module in which the condition is written.
void JudgeIdentity(const Condition& condition, const XpathNode& call) {
  const std::string_view name = condition.xpath->Of(call.name);
  if ((name != "derived-from" && name != "derived-from-or-self") || call.operands.size() != 2)
    return;
  if (condition.xpath->At(call.operands[1]).kind != XpathKind::kLiteral) return;
  const std::string literal(LiteralText(*condition.xpath, call.operands[1]));
  const Reference reference = SplitReference(literal);
  Module* module = reference.prefix.empty() ? MainModuleOf(StatementOf(condition.statement)->words)
                                            : SpaceOf(condition, reference.prefix);
  if (module == nullptr || IsLossy(module)) return;
  const xmlNode* identity = FindSymbol(condition.statement, SymbolKind::kIdentity, literal);
  if (identity != nullptr)
    JudgeStatus(condition.lint, condition.statement, identity);
  else
    Say(condition, "in " + What(condition.statement) + " there is no identity " + Quote(literal),
        NearestSymbol(condition.lint, condition.statement, SymbolKind::kIdentity, literal,
                      "name an identity with the prefix of its module"));
}

// The second argument of re-match() is a pattern as that of a type.
void JudgePatternOf(const Condition& condition, const XpathNode& call) {
  if (condition.xpath->Of(call.name) != "re-match" || call.operands.size() != 2 ||
      condition.xpath->At(call.operands[1]).kind != XpathKind::kLiteral)
    return;
  const std::string pattern(LiteralText(*condition.xpath, call.operands[1]));
  if (JudgePattern(pattern.c_str()) == PatternState::kFaulty)
    Say(condition,
        "in " + What(condition.statement) + " the pattern " + Quote(pattern) + " does not compile",
        "write a regular expression of XML Schema");
}

// What deref() of a leafref leads to.
DataPlaces Dereference(const Condition& condition, const DataPlaces& leafs) {
  if (leafs.unknown || leafs.deep || leafs.foreign || leafs.nodes.size() != 1)
    return Unknown(condition);
  const SchemaNode* target = LeafrefTarget(condition.lint, leafs.nodes[0]);
  if (target == nullptr) return Unknown(condition);
  DataPlaces places = leafs;
  places.nodes[0] = target;
  return places;
}

DataPlaces FollowCall(const Condition& condition, const XpathNode& call,
                      const DataPlaces& context) {
  DataPlaces last = Unknown(condition);
  for (const uint32_t operand : call.operands) last = FollowNode(condition, operand, context);
  JudgeIdentity(condition, call);
  JudgePatternOf(condition, call);
  const std::string_view name = condition.xpath->Of(call.name);
  if (name == "current") return PlacesAt(condition.context, condition.context);
  return name == "deref" ? Dereference(condition, last) : Unknown(condition);
}

// All that the operands of "|" lead to.
DataPlaces FollowUnion(const Condition& condition, const XpathNode& node,
                       const DataPlaces& context) {
  DataPlaces all = PlacesAt(condition.context, {});
  for (const uint32_t operand : node.operands) {
    const DataPlaces one = FollowNode(condition, operand, context);
    all.nodes.insert(all.nodes.end(), one.nodes.begin(), one.nodes.end());
    all.deep = all.deep || one.deep;
    all.foreign = all.foreign || one.foreign;
    all.unknown = all.unknown || one.unknown;
  }
  return all;
}

DataPlaces FollowNode(const Condition& condition, uint32_t index, const DataPlaces& context) {
  const XpathNode& node = condition.xpath->At(index);
  switch (node.kind) {
    case XpathKind::kPath:
      return FollowPath(condition, node, context);
    case XpathKind::kCall:
      return FollowCall(condition, node, context);
    case XpathKind::kGroup:
      return FollowNode(condition, node.operands[0], context);
    case XpathKind::kUnion:
      return FollowUnion(condition, node, context);
    default:
      for (const uint32_t operand : node.operands) FollowNode(condition, operand, context);
      return Unknown(condition);
  }
}

std::string AdviceOnCall(const Condition& condition, std::string_view name) {
  constexpr char kElse[] = "see the functions of XPath 1.0 and of RFC 7950, section 10";
  if (FindXpathFunction(name) != nullptr) return kElse;  // its arguments are wrong
  Suggestion near(name, &condition.lint->namesToCompare);
  for (const XpathFunction& function : XpathFunctions())
    if (!near.Consider(function.name)) break;
  return near.Advice(kElse);
}

void JudgeCalls(const Condition& condition) {
  std::unordered_map<size_t, std::string_view> names;  // by where they stand
  const std::vector<XpathError> errors = CheckXpathCalls(*condition.xpath);
  for (const XpathNode& node : condition.xpath->nodes)
    if (!errors.empty() && node.kind == XpathKind::kCall)
      names.emplace(node.name.begin, condition.xpath->Of(node.name));
  for (const XpathError& error : errors)
    Say(condition, "in " + What(condition.statement) + " " + error.message,
        AdviceOnCall(condition, names[error.offset]));
  if (StatementOf(condition.statement)->words->version11) return;
  for (const XpathNode& node : condition.xpath->nodes) {
    if (node.kind != XpathKind::kCall) continue;
    const XpathFunction* function = FindXpathFunction(condition.xpath->Of(node.name));
    if (function != nullptr && function->version11)
      Say(condition,
          "in " + What(condition.statement) + " the function " + Quote(function->name) +
              " is of YANG version 1.1",
          "write \"yang-version 1.1;\" at the head of the file");
  }
}

// `place`: the node that has the condition, or that what it is said of stands in.
void Judge(Lint* lint, const xmlNode* statement, Module* local, const SchemaNode* place,
           const Place* usedAt, Config config,
           const std::unordered_set<const SchemaNode*>& brought = {}) {
  const char* text = ArgumentOf(statement);
  if (text == nullptr) return;
  Xpath xpath;
  XpathError error;
  Condition condition = {lint,
                         statement,
                         local,
                         CursorAt(lint->view, place),
                         usedAt,
                         &xpath,
                         config == Config::kTrue,
                         &brought};
  if (!ParseXpath(text, &xpath, &error)) {
    Say(condition,
        What(statement) + " does not parse: " + error.message + " at character " +
            std::to_string(error.offset + 1),
        "write an expression of XPath 1.0");
    return;
  }
  JudgeCalls(condition);
  FollowNode(condition, xpath.root, PlacesAt(condition.context, condition.context));
}

void JudgeAll(Lint* lint, const xmlNode* holder, Keyword keyword, const SchemaNode* node) {
  for (const xmlNode* s = FirstChild(holder, keyword); s != nullptr; s = NextSibling(s, keyword))
    Judge(lint, s, node->space, node, node->usedAt, ConfigOf(node));
}

void JudgeNode(Lint* lint, const SchemaNode* node) {
  const bool isTop = node->parent == nullptr && node->keyword != Keyword::kNone;
  if (!node->written || isTop) return;
  JudgeAll(lint, node->statement, Keyword::kMust, node);
  JudgeAll(lint, node->statement, Keyword::kWhen, node);
  for (const xmlNode* change : node->changes) JudgeAll(lint, change, Keyword::kMust, node);
}

// True for what stands in a request or notification, whose conditions the library evaluates.
bool IsEvaluated(const SchemaNode* node) {
  while (node != nullptr && node->keyword != Keyword::kInput && node->keyword != Keyword::kOutput &&
         node->keyword != Keyword::kNotification)
    node = node->parent;
  return node != nullptr && node->keyword != Keyword::kOutput;
}

std::unordered_set<const SchemaNode*> NodesOf(const TargetView& bringer) {
  std::unordered_set<const SchemaNode*> nodes;
  if (!IsEvaluated(bringer.target)) return nodes;
  for (const SchemaNode* node = bringer.first; node != nullptr; node = node->next) {
    nodes.insert(node);
    if (node == bringer.last) break;
  }
  return nodes;
}

// The `when` of a `uses` or of an augment.
void JudgeBringer(Lint* lint, const TargetView& bringer) {
  if (bringer.target == nullptr) return;
  const xmlNode* when = FirstChild(bringer.statement, Keyword::kWhen);
  if (when != nullptr)
    Judge(lint, when, bringer.space, bringer.target, bringer.usedAt, Config::kOpen,
          NodesOf(bringer));
}

void JudgeDeviations(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kDeviation, [&](xmlNode* deviation) {
    const TargetView target = FollowAbsolute(*lint->view, deviation);
    for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
         s = NextSibling(s, Keyword::kDeviate))
      for (const xmlNode* must = FirstChild(s, Keyword::kMust);
           must != nullptr && target.target != nullptr; must = NextSibling(must, Keyword::kMust)) {
        const char* kind = ArgumentOf(s);
        if (kind != nullptr && std::string_view(kind) == "add")
          Judge(lint, must, lint->module, target.target, nullptr, ConfigOf(target.target));
      }
  });
}

}  // namespace

void LintConditions(Lint* lint) {
  ForEachNode(*lint, [lint](const SchemaNode* node) { JudgeNode(lint, node); });
  for (const auto* bringers : {&lint->targets->augments, &lint->targets->brought})
    for (const TargetView* bringer : *bringers) JudgeBringer(lint, *bringer);
  for (const Module* file : lint->files) JudgeDeviations(lint, file);
}

}  // namespace compiler
