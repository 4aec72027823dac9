// SPDX-License-Identifier: BSD-3-Clause
// Features: expressions of if-feature and what they name (RFC 7950, section 7.20.2).
#include "compiler/lint/lint_pass.h"
#include "compiler/words/if_feature.h"

namespace compiler {

namespace {

// The features that an if-feature names, as far as it can be read.
std::vector<std::string> FeaturesOf(const xmlNode* statement, bool version11, XpathError* error) {
  std::vector<std::string> names;
  const char* text = ArgumentOf(statement);
  FeatureExpr expression;
  if (text == nullptr || !ParseIfFeature(text, version11, &expression, error)) return names;
  if (!expression.slips.empty()) *error = expression.slips.front();
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
          file->version11 ? "write features with \"not\", \"and\", \"or\" and parentheses, "
                            "blanks around the words"
                          : "write one feature; version 1.1 knows expressions");
    return;
  }
  for (const std::string& name : names)
    Resolve(lint, cls::kFeature, statement, SymbolKind::kFeature, name, false);
}

}  // namespace

void LintFeatures(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kIfFeature,
                   [&](const xmlNode* s) { JudgeExpression(lint, file, s); });
}

}  // namespace compiler
