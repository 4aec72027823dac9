// SPDX-License-Identifier: BSD-3-Clause
// Status: what is current must not need what is deprecated or obsolete in the same
// module, what is deprecated not what is obsolete (RFC 7950, section 7.21.2).
#include <algorithm>
#include <cstring>

#include "compiler/lint/lint_pass.h"
#include "compiler/words/if_feature.h"

namespace compiler {

namespace {

enum class Status : uint8_t { kCurrent, kDeprecated, kObsolete };

constexpr const char* kWords[] = {"current", "deprecated", "obsolete"};

Status ReadStatus(const xmlNode* statement) {
  const char* text = ArgumentOfChild(statement, Keyword::kStatus);
  for (size_t i = 0; text != nullptr && i < std::size(kWords); ++i)
    if (std::strcmp(text, kWords[i]) == 0) return static_cast<Status>(i);
  return Status::kCurrent;
}

// Kept, since paths name a node again and again, which may have thousands of children.
Status WrittenStatus(Lint* lint, const xmlNode* statement) {
  const auto [kept, isNew] = lint->statuses.try_emplace(statement);
  if (isNew) kept->second = static_cast<uint8_t>(ReadStatus(statement));
  return static_cast<Status>(kept->second);
}

// The weakest status of a statement and those around it.
Status StatusAround(Lint* lint, const xmlNode* statement) {
  Status status = Status::kCurrent;
  for (; statement != nullptr; statement = ParentOf(statement))
    status = std::max(status, WrittenStatus(lint, statement));
  return status;
}

// The weakest status of what a node stands in, where groupings and augments have put it.
Status StatusOfPlace(Lint* lint, const SchemaNode* place) {
  Status status = Status::kCurrent;
  for (const SchemaNode* node = place; node != nullptr; node = node->parent) {
    if (node->written) status = std::max(status, WrittenStatus(lint, node->statement));
    if (node->usedAt == nullptr) continue;
    for (const TargetView& uses : lint->view->uses)
      if (&StatementOf(uses.statement)->place == node->usedAt)
        status = std::max(status, StatusAround(lint, uses.statement));
  }
  return status;
}

// A statement that refers to a definition has this status; the definition needs another.
void ReportStatus(Lint* lint, const xmlNode* statement, Status own, const xmlNode* definition) {
  Error(lint, cls::kStatus, statement,
        std::string("a ") + kWords[static_cast<size_t>(own)] + " definition refers to " +
            Describe(definition) + ", which is " +
            kWords[static_cast<size_t>(WrittenStatus(lint, definition))],
        "refer to another, or give this one the same status");
}

bool AreOfModule(const Lint& lint, const xmlNode* statement, const xmlNode* definition) {
  return MainModuleOf(StatementOf(statement)->words) == lint.module &&
         MainModuleOf(StatementOf(definition)->words) == lint.module;
}

// An instance of an extension, whose namespace tells the module.
void JudgeExtension(Lint* lint, const xmlNode* statement) {
  if (statement->ns == nullptr || statement->ns->href == nullptr ||
      lint->module->nameSpace != reinterpret_cast<const char*>(statement->ns->href))
    return;
  const xmlNode* definition = FindGlobal(lint->module, SymbolKind::kExtension, NameOf(statement));
  if (definition != nullptr) JudgeStatus(lint, statement, definition);
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
  const Status needed = WrittenStatus(lint, definition);
  // Most are current, and what stands around need not be asked.
  if (needed == Status::kCurrent || !AreOfModule(*lint, statement, definition)) return;
  const Status own = StatusAround(lint, statement);
  if (needed > own) ReportStatus(lint, statement, own, definition);
}

void JudgeStatusOfNodes(Lint* lint, const xmlNode* statement, const SchemaNode* place,
                        std::span<const SchemaNode* const> nodes) {
  const xmlNode* best = nullptr;
  Status needed = Status::kObsolete;
  for (const SchemaNode* node : nodes) {
    const Status status = node->written ? WrittenStatus(lint, node->statement) : Status::kCurrent;
    if (status == Status::kCurrent) return;
    if (best == nullptr || status < needed) {
      best = node->statement;
      needed = status;
    }
  }
  if (best == nullptr || !AreOfModule(*lint, statement, best)) return;
  const Status own = std::max(StatusAround(lint, statement), StatusOfPlace(lint, place));
  if (needed > own) ReportStatus(lint, statement, own, best);
}

void LintStatus(Lint* lint, const Module* file) {
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    const char* argument = ArgumentOf(s);
    if (Is(s, Keyword::kNone)) JudgeExtension(lint, s);
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
