// SPDX-License-Identifier: BSD-3-Clause
// Conditions, must and when: that they parse, call functions that exist, use prefixes
// that are declared, and name nodes that data can have (RFC 7950, sections 6.4, 7.5.3
// and 7.21.5).
//
// A condition is judged at each node that has it. Its paths are walked on the schema
// from the context node; where a step cannot be followed (a wildcard, another axis, the
// outside of a grouping) what comes behind it is not judged, but for its prefixes.
#include "compiler/lint/data_path.h"
#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/words/pattern.h"
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
};

void Say(const Condition& condition, std::string message, std::string advice) {
  Error(condition.lint, cls::kCondition, condition.statement, std::move(message),
        std::move(advice));
  condition.lint->report->findings.back().usedAt = condition.usedAt;
}

std::string What(const xmlNode* statement) {
  return std::string("the ") + NameOf(statement) + " " + Quote(ArgumentOf(statement));
}

DataCursor Unknown(const Condition& condition) {
  return UnknownCursor(condition.context);
}

DataCursor FollowNode(const Condition& condition, uint32_t index, const DataCursor& context);

Module* SpaceOf(const Condition& condition, std::string_view prefix) {
  if (prefix.empty()) return condition.local;
  Module* words = StatementOf(condition.statement)->words;
  if (KnowsPrefix(words, prefix)) return ModuleOfPrefix(words, prefix);
  ResolvePrefix(condition.lint, cls::kCondition, condition.statement, prefix);
  return nullptr;
}

// Configuration is judged with configuration alone.
bool SeeState(const Condition& condition, const DataCursor& reached) {
  if (!condition.ofConfiguration || ConfigOf(reached.node) != Config::kFalse) return false;
  Say(condition,
      "in " + What(condition.statement) + " the path leads from configuration to " +
          Quote(reached.node->name) + ", which is config false",
      "refer to configuration; in the tree that is looked at there is no state");
  return true;
}

DataCursor FollowName(const Condition& condition, const XpathStep& step, const DataCursor& from,
                      bool root) {
  const std::string_view name = condition.xpath->Of(step.name);
  const Module* space = SpaceOf(condition, condition.xpath->Of(step.prefix));
  if (space == nullptr || step.axis != XpathAxis::kChild || step.descendants || from.unknown)
    return Unknown(condition);
  const DataCursor at =
      root ? RootOf(condition.context, space, step.prefix.empty() ? "" : name) : from;
  const DataCursor next = StepDown(at, space, name);
  if (next.unknown) return next;
  if (next.node != nullptr) return SeeState(condition, next) ? Unknown(condition) : next;
  const bool top = at.node->keyword == Keyword::kModule;
  Say(condition,
      "in " + What(condition.statement) + " the path leads nowhere: " +
          (top ? "module " + Quote(space->name) + " has no top-level node "
               : Quote(at.node->name) + " has no child ") +
          Quote(name),
      NearestData(at, space, name, "correct the path", &condition.lint->namesToCompare));
  return Unknown(condition);
}

DataCursor FollowUp(const Condition& condition, const DataCursor& from) {
  const DataCursor up = StepUp(from);
  if (up.node != nullptr || up.unknown) return up;
  Say(condition, "in " + What(condition.statement) + " the path climbs above the root",
      "take one \"..\" away");
  return Unknown(condition);
}

DataCursor FollowStep(const Condition& condition, const XpathStep& step, const DataCursor& from,
                      bool root) {
  if (step.test == XpathTest::kName) return FollowName(condition, step, from, root);
  if (step.test == XpathTest::kAnyOfPrefix) SpaceOf(condition, condition.xpath->Of(step.prefix));
  if (step.test != XpathTest::kNode || step.descendants || root) return Unknown(condition);
  if (step.axis == XpathAxis::kSelf) return from;
  if (step.axis == XpathAxis::kParent) return FollowUp(condition, from);
  return Unknown(condition);
}

DataCursor FollowPath(const Condition& condition, const XpathNode& path,
                      const DataCursor& context) {
  DataCursor cursor = context;
  if (!path.operands.empty()) cursor = FollowNode(condition, path.operands[0], context);
  for (const uint32_t predicate : path.predicates) FollowNode(condition, predicate, cursor);
  bool root = path.absolute;
  if (path.absolute && path.steps.empty()) return Unknown(condition);
  for (const XpathStep& step : path.steps) {
    cursor = FollowStep(condition, step, cursor, root);
    root = false;
    for (const uint32_t predicate : step.predicates) FollowNode(condition, predicate, cursor);
  }
  return cursor;
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
  if (FindSymbol(condition.statement, SymbolKind::kIdentity, literal) == nullptr)
    Say(condition, "in " + What(condition.statement) + " there is no identity " + Quote(literal),
        "name an identity with the prefix of its module");
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
DataCursor Dereference(const Condition& condition, const DataCursor& leaf) {
  const SchemaNode* target =
      leaf.node == nullptr ? nullptr : LeafrefTarget(condition.lint, leaf.node);
  if (target == nullptr) return Unknown(condition);
  DataCursor cursor = leaf;
  cursor.node = target;
  return cursor;
}

DataCursor FollowCall(const Condition& condition, const XpathNode& call,
                      const DataCursor& context) {
  DataCursor last = Unknown(condition);
  for (const uint32_t operand : call.operands) last = FollowNode(condition, operand, context);
  JudgeIdentity(condition, call);
  JudgePatternOf(condition, call);
  const std::string_view name = condition.xpath->Of(call.name);
  if (name == "current") return condition.context;
  return name == "deref" ? Dereference(condition, last) : Unknown(condition);
}

DataCursor FollowNode(const Condition& condition, uint32_t index, const DataCursor& context) {
  const XpathNode& node = condition.xpath->At(index);
  switch (node.kind) {
    case XpathKind::kPath:
      return FollowPath(condition, node, context);
    case XpathKind::kCall:
      return FollowCall(condition, node, context);
    case XpathKind::kGroup:
      return FollowNode(condition, node.operands[0], context);
    default:
      for (const uint32_t operand : node.operands) FollowNode(condition, operand, context);
      return Unknown(condition);
  }
}

void JudgeCalls(const Condition& condition) {
  for (const XpathError& error : CheckXpathCalls(*condition.xpath))
    Say(condition, "in " + What(condition.statement) + " " + error.message,
        "see the functions of XPath 1.0 and of RFC 7950, section 10");
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
           const Place* usedAt, Config config) {
  const char* text = ArgumentOf(statement);
  if (text == nullptr) return;
  Xpath xpath;
  XpathError error;
  Condition condition = {
      lint, statement, local, CursorAt(lint->view, place), usedAt, &xpath, config == Config::kTrue};
  if (!ParseXpath(text, &xpath, &error)) {
    Say(condition,
        What(statement) + " does not parse: " + error.message + " at character " +
            std::to_string(error.offset + 1),
        "write an expression of XPath 1.0");
    return;
  }
  JudgeCalls(condition);
  FollowNode(condition, xpath.root, condition.context);
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

// The `when` of a `uses` or of an augment.
void JudgeBringer(Lint* lint, const TargetView& bringer, Module* space) {
  if (bringer.target == nullptr) return;
  const xmlNode* when = FirstChild(bringer.statement, Keyword::kWhen);
  if (when != nullptr) Judge(lint, when, space, bringer.target, bringer.usedAt, Config::kOpen);
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
  for (const SchemaNode* top : lint->tops)
    for (const SchemaNode* node = top; node != nullptr; node = NextNode(top, node))
      if (IsOfModule(*lint, node)) JudgeNode(lint, node);
  for (const auto* bringers : {&lint->view->augments, &lint->view->inner, &lint->view->uses})
    for (const TargetView& bringer : *bringers)
      if (MainModuleOf(StatementOf(bringer.statement)->words) == lint->module)
        JudgeBringer(lint, bringer, lint->module);
  for (const Module* file : lint->files) JudgeDeviations(lint, file);
}

}  // namespace compiler
