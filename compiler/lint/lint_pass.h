// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What the checks of lint share: the module that is looked at, its definitions, and the
// few lines that make a finding. Private to compiler/lint*.
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "compiler/lint/lint.h"
#include "compiler/lint/schema_view.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/words/quote.h"
#include "compiler/words/suggestion.h"

namespace compiler {

// The classes; the table in lint.cc has them in this order.
namespace cls {
inline constexpr char kSyntax[] = "syntax";
inline constexpr char kStatement[] = "statement";
inline constexpr char kArgument[] = "argument";
inline constexpr char kName[] = "name";
inline constexpr char kLinkage[] = "linkage";
inline constexpr char kExtension[] = "extension";
inline constexpr char kFeature[] = "feature";
inline constexpr char kIdentity[] = "identity";
inline constexpr char kGrouping[] = "grouping";
inline constexpr char kType[] = "type";
inline constexpr char kRestriction[] = "restriction";
inline constexpr char kDefault[] = "default";
inline constexpr char kList[] = "list";
inline constexpr char kConfig[] = "config";
inline constexpr char kTarget[] = "target";
inline constexpr char kPath[] = "path";
inline constexpr char kCondition[] = "condition";
inline constexpr char kStatus[] = "status";
inline constexpr char kLibrary[] = "library";
inline constexpr char kUnused[] = "unused";
inline constexpr char kStyle[] = "style";
}  // namespace cls

// How many nodes are looked at for the steps of paths in one run, likewise.
inline constexpr uint64_t kMostSteps = uint64_t{1} << 22;

// One run over a module.
struct Lint {
  Session* session = nullptr;
  Report* report = nullptr;
  Module* module = nullptr;
  std::vector<Module*> files;                                // the module and its submodules
  SchemaView* view = nullptr;                                // shared by all modules of a call
  const std::unordered_set<const xmlNode*>* used = nullptr;  // typedefs and groupings; by all
  // Whether one of the enums or bits, told by the first, has an if-feature.
  std::unordered_map<const xmlNode*, bool> conditionalItems;
  std::unordered_map<const xmlNode*, uint8_t> statuses;  // as they are written
  // The trees of the module: the groupings and templates by themselves, and its own.
  std::vector<const SchemaNode*> tops;
  // Where it hangs nodes into trees, its own among them, and what groupings bring.
  const ModuleTargets* targets = nullptr;
  uint64_t namesToCompare = kMostComparedNames;  // for "did you mean"
  uint64_t stepsToTake = kMostSteps;
  // The numbers of enums or bits by the type that has them, once others restrict it.
  std::unordered_map<const xmlNode*, std::map<std::string_view, int64_t>> numbers;
  // The arguments of the properties that deviations delete from a node.
  std::map<std::pair<const SchemaNode*, Keyword>, std::unordered_set<std::string_view>> held;
};

// "leaf "name"": a statement with its argument, as messages name it.
std::string Describe(const xmlNode* statement);

// FILE:LINE of a statement.
std::string PlaceOf(const xmlNode* statement);

void Fatal(Lint* lint, const char* group, const xmlNode* at, std::string message,
           std::string advice = {});
void Error(Lint* lint, const char* group, const xmlNode* at, std::string message,
           std::string advice = {});
void Warn(Lint* lint, const char* group, const xmlNode* at, std::string message,
          std::string advice = {});

// True when the node has the module's namespace.
bool IsOfModule(const Lint& lint, const SchemaNode* node) noexcept;

// The node, if it is of the module, and the nodes of the module below it.
template <typename Visit>
void ForEachNodeIn(const Lint& lint, const SchemaNode* top, Visit visit) {
  for (const SchemaNode* node = top; node != nullptr;) {
    const bool isOurs = IsOfModule(lint, node);
    if (isOurs) visit(node);
    node = isOurs ? NextNode(top, node) : NextBehind(top, node);
  }
}

// On a node of the schema: the finding stands at `at` and names the place where the
// node was used.
void ErrorOn(Lint* lint, const char* group, const SchemaNode* node, const xmlNode* at,
             std::string message, std::string advice = {});
void WarnOn(Lint* lint, const char* group, const SchemaNode* node, const xmlNode* at,
            std::string message, std::string advice = {});

// The definition that a name means at the statement `at`. NULL, with a finding: there is
// none; without one: it is in a module that was not found. `stops`: without it the
// module's output means nothing.
xmlNode* Resolve(Lint* lint, const char* group, const xmlNode* at, SymbolKind kind,
                 std::string_view reference, bool stops);

// `did you mean "x"?` of the definitions that could be meant, or `otherwise`.
std::string NearestSymbol(Lint* lint, const xmlNode* at, SymbolKind kind,
                          std::string_view reference, std::string_view otherwise);

// The module of a prefix at the statement `at`; NULL, with a finding: it is not declared;
// without one: that module was not found.
Module* ResolvePrefix(Lint* lint, const char* group, const xmlNode* at, std::string_view prefix);

// Judges a statement that refers to a definition by the status of both.
void JudgeStatus(Lint* lint, const xmlNode* statement, const xmlNode* definition);

// The same of one that names a node of the schema, or several of which one will do.
// `place`: where its own node stands.
void JudgeStatusOfNodes(Lint* lint, const xmlNode* statement, const SchemaNode* place,
                        std::span<const SchemaNode* const> nodes);

// Judges a default, wherever it is written, against the type that it is for.
void JudgeDefault(Lint* lint, const xmlNode* statement, const xmlNode* type);

// Reports the first prefix of a schema path that no import declares.
void JudgePathPrefixes(Lint* lint, const xmlNode* statement);

// Reports an augment or a deviation whose path leads nowhere.
void ReportLost(Lint* lint, const char* group, const TargetView& target);

// The nodes of the module: in its trees, and what it has hung into those of others. Nodes
// of others are passed over with all that stands in them, since that which is the
// module's own was hung there by it.
template <typename Visit>
void ForEachNode(const Lint& lint, Visit visit) {
  for (const SchemaNode* top : lint.tops) ForEachNodeIn(lint, top, visit);
  for (const TargetView* augment : lint.targets->augments) {
    const SchemaNode* end = augment->last == nullptr ? nullptr : augment->last->next;
    const bool isForeign = augment->target != nullptr && !IsOfModule(lint, augment->target);
    for (const SchemaNode* node = augment->first; isForeign && node != end; node = node->next)
      ForEachNodeIn(lint, node, visit);
  }
}

// All statements of a kind in a file, in order.
template <typename Visit>
void ForEachStatement(const Module* file, Keyword keyword, Visit visit) {
  for (xmlNode* s = NextInTree(file->root, file->root); s != nullptr; s = NextInTree(file->root, s))
    if (Is(s, keyword)) visit(s);
}

// The typedefs and groupings that any of the modules that were read uses.
void CollectUsed(const Session& session, std::unordered_set<const xmlNode*>* used);

// The checks, in the order in which they run.
void LintGrammar(Lint* lint, const Module* file);
void LintLinkage(Lint* lint, const Module* file);
void LintNames(Lint* lint);
void LintFeatures(Lint* lint, const Module* file);
void LintIdentities(Lint* lint, const Module* file);
void LintGroupings(Lint* lint, const Module* file);
void LintTypes(Lint* lint, const Module* file);
void LintRestrictions(Lint* lint, const Module* file);
void LintDefaults(Lint* lint, const Module* file);
void LintNodes(Lint* lint);
void LintTemplates(Lint* lint);
void LintTargets(Lint* lint);
void LintDeviations(Lint* lint, const Module* file);
void LintDeviated(Lint* lint);
void LintPaths(Lint* lint);
void LintConditions(Lint* lint);
void LintStatus(Lint* lint, const Module* file);
void LintUnused(Lint* lint);
void LintStyle(Lint* lint, const Module* file);

}  // namespace compiler
