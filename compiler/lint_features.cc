// SPDX-License-Identifier: BSD-3-Clause
// Features: expressions of if-feature, what they name, and features that depend on
// themselves (RFC 7950, sections 7.20.1 and 7.20.2).
#include <map>

#include "compiler/if_feature.h"
#include "compiler/lint_pass.h"

namespace compiler {

namespace {

// The features that an if-feature names, as far as it can be read.
std::vector<std::string> FeaturesOf(const xmlNode* statement, bool version11, XpathError* error) {
  std::vector<std::string> names;
  const char* text = ArgumentOf(statement);
  FeatureExpr expression;
  if (text == nullptr || !ParseIfFeature(text, version11, &expression, error)) return names;
  for (const FeatureNode& node : expression.nodes) {
    if (node.op != FeatureOp::kFeature) continue;
    std::string name(expression.Of(node.prefix));
    if (!name.empty()) name += ":";
    names.push_back(name + std::string(expression.Of(node.name)));
  }
  return names;
}

void JudgeExpression(Lint* lint, const Module* file, const xmlNode* statement) {
  XpathError error;
  const std::vector<std::string> names = FeaturesOf(statement, file->version11, &error);
  if (!error.message.empty()) {
    Error(lint, cls::kFeature, statement,
          Describe(statement) + " is no feature expression: " + error.message,
          file->version11 ? "write features with \"not\", \"and\", \"or\" and parentheses"
                          : "write one feature; version 1.1 knows expressions");
    return;
  }
  for (const std::string& name : names)
    Resolve(lint, cls::kFeature, statement, SymbolKind::kFeature, name, false);
}

// The features that a feature's definition depends on.
std::vector<const xmlNode*> NeedsOf(const xmlNode* feature) {
  std::vector<const xmlNode*> needs;
  const bool version11 = StatementOf(feature)->words->version11;
  for (const xmlNode* s = FirstChild(feature, Keyword::kIfFeature); s != nullptr;
       s = NextSibling(s, Keyword::kIfFeature)) {
    XpathError error;
    for (const std::string& name : FeaturesOf(s, version11, &error)) {
      const xmlNode* definition = FindSymbol(s, SymbolKind::kFeature, name);
      if (definition != nullptr) needs.push_back(definition);
    }
  }
  return needs;
}

void JudgeCircle(Lint* lint, const xmlNode* feature) {
  std::map<const xmlNode*, bool> seen;
  std::vector<const xmlNode*> open = NeedsOf(feature);
  while (!open.empty()) {
    const xmlNode* next = open.back();
    open.pop_back();
    if (next == feature) {
      Fatal(lint, cls::kFeature, feature, Describe(feature) + " depends on itself",
            "take one if-feature of the circle away");
      return;
    }
    if (!seen.emplace(next, true).second) continue;
    for (const xmlNode* need : NeedsOf(next)) open.push_back(need);
  }
}

}  // namespace

void LintFeatures(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kIfFeature,
                   [&](const xmlNode* s) { JudgeExpression(lint, file, s); });
  ForEachStatement(file, Keyword::kFeature, [&](const xmlNode* s) { JudgeCircle(lint, s); });
}

}  // namespace compiler
