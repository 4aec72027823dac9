// SPDX-License-Identifier: BSD-3-Clause
// Status: what is current must not need what is deprecated or obsolete in the same
// module, what is deprecated not what is obsolete (RFC 7950, section 7.21.2).
#include <cstring>

#include "compiler/lint/lint_pass.h"
#include "compiler/words/if_feature.h"

namespace compiler {

namespace {

enum class Status : uint8_t { kCurrent, kDeprecated, kObsolete };

constexpr const char* kWords[] = {"current", "deprecated", "obsolete"};

Status WrittenStatus(const xmlNode* statement) {
  const char* text = ArgumentOfChild(statement, Keyword::kStatus);
  for (size_t i = 0; text != nullptr && i < std::size(kWords); ++i)
    if (std::strcmp(text, kWords[i]) == 0) return static_cast<Status>(i);
  return Status::kCurrent;
}

// The weakest status of a statement and those around it.
Status StatusAround(const xmlNode* statement) {
  Status status = Status::kCurrent;
  for (; statement != nullptr; statement = ParentOf(statement))
    status = std::max(status, WrittenStatus(statement));
  return status;
}

void JudgeReference(Lint* lint, const xmlNode* statement, SymbolKind kind,
                    const std::string& name) {
  const xmlNode* definition = FindSymbol(statement, kind, name);
  if (definition != nullptr) JudgeStatus(lint, statement, definition);
}

void JudgeFeatures(Lint* lint, const xmlNode* statement, const char* text) {
  FeatureExpr expression;
  XpathError error;
  if (!ParseIfFeature(text, StatementOf(statement)->words->version11, &expression, &error)) return;
  for (const FeatureNode& node : expression.nodes) {
    if (node.op != FeatureOp::kFeature) continue;
    std::string name(expression.Of(node.name));
    const std::string prefix(expression.Of(node.prefix));
    if (!prefix.empty()) name.insert(0, prefix + ":");
    JudgeReference(lint, statement, SymbolKind::kFeature, name);
  }
}

}  // namespace

void JudgeStatus(Lint* lint, const xmlNode* statement, const xmlNode* definition) {
  for (const xmlNode* s : {statement, definition})
    if (MainModuleOf(StatementOf(s)->words) != lint->module) return;
  const Status needed = WrittenStatus(definition);
  // Most are current, and what stands around need not be asked.
  if (needed == Status::kCurrent) return;
  const Status own = StatusAround(statement);
  if (needed <= own) return;
  Error(lint, cls::kStatus, statement,
        std::string("a ") + kWords[static_cast<size_t>(own)] + " definition refers to " +
            Describe(definition) + ", which is " + kWords[static_cast<size_t>(needed)],
        "refer to another, or give this one the same status");
}

void LintStatus(Lint* lint, const Module* file) {
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    const char* argument = ArgumentOf(s);
    if (argument == nullptr) continue;
    switch (KeywordOf(s)) {
      case Keyword::kType:
        JudgeReference(lint, s, SymbolKind::kTypedef, argument);
        break;
      case Keyword::kUses:
        JudgeReference(lint, s, SymbolKind::kGrouping, argument);
        break;
      case Keyword::kBase:
        JudgeReference(lint, s, SymbolKind::kIdentity, argument);
        break;
      case Keyword::kIfFeature:
        JudgeFeatures(lint, s, argument);
        break;
      default:
        break;
    }
  }
}

}  // namespace compiler
