// SPDX-License-Identifier: BSD-3-Clause
// The order of the checks, and the table of their classes.
#include "compiler/lint/lint.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/circle.h"
#include "compiler/spelling/data_template.h"

namespace compiler {

namespace {

constexpr LintClass kClasses[] = {
    {cls::kSyntax, true},  {cls::kStatement, true},   {cls::kArgument, true},
    {cls::kName, true},    {cls::kLinkage, true},     {cls::kExtension, true},
    {cls::kFeature, true}, {cls::kIdentity, true},    {cls::kGrouping, true},
    {cls::kType, true},    {cls::kRestriction, true}, {cls::kDefault, true},
    {cls::kList, true},    {cls::kConfig, true},      {cls::kTarget, true},
    {cls::kPath, true},    {cls::kCondition, true},   {cls::kStatus, true},
    {cls::kLibrary, true}, {cls::kUnused, true},      {cls::kStyle, false},
};

// Of one file, by its statements.
constexpr void (*kFileChecks[])(Lint*, const Module*) = {
    LintGrammar, LintLinkage,      LintFeatures, LintIdentities, LintGroupings,
    LintTypes,   LintRestrictions, LintDefaults, LintStatus,     LintStyle,
};

// Of a module with all of its files.
constexpr void (*kModuleChecks[])(Lint*) = {
    LintNames, LintNodes, LintTemplates, LintTargets, LintPaths, LintConditions, LintUnused,
};

void CollectFile(Module* file, void* arg) {
  static_cast<std::vector<Module*>*>(arg)->push_back(file);
}

void CollectTops(Lint* lint) {
  std::unordered_set<const SchemaNode*> known;
  const auto add = [&](const SchemaNode* top) {
    if (top != nullptr && known.insert(top).second) lint->tops.push_back(top);
  };
  for (const Module* file : lint->files)
    for (const Keyword keyword : {Keyword::kGrouping, Keyword::kNone})
      ForEachStatement(file, keyword, [&](xmlNode* s) {
        if (keyword == Keyword::kGrouping || DataTemplateOf(s) != DataTemplate::kNone)
          add(ViewAlone(lint->view, s));
      });
  add(lint->view->trees[lint->module]);
}

// `common`: what all modules of a call share.
void LintOne(const Lint& common, Module* module) {
  Lint lint = common;
  SchemaView* view = lint.view;
  lint.module = module;
  ForEachFile(module, CollectFile, &lint.files);
  CollectTops(&lint);
  lint.targets = &view->targets[module];
  for (const auto& check : kFileChecks)
    for (const Module* file : lint.files) check(&lint, file);
  for (const auto& check : kModuleChecks) check(&lint);
  ReportDefinitionCircles(module, lint.report);  // marks files, so it comes last
  if (view->full)
    Fatal(&lint, cls::kGrouping, module->root,
          "the schema has more than " + std::to_string(kMaxSchemaNodes) +
              " nodes or is nested too deeply",
          "look for groupings that use one another several times");
}

// What the class of a finding has for its place in the table.
size_t IndexOfClass(std::string_view name) noexcept {
  const auto* row = std::find_if(std::begin(kClasses), std::end(kClasses),
                                 [name](const LintClass& c) { return name == c.name; });
  return static_cast<size_t>(row - std::begin(kClasses));
}

bool IsWanted(const LintOptions& options, const Finding& finding) {
  if (finding.severity != Severity::kWarning) return finding.severity != Severity::kLoss;
  const size_t index = IndexOfClass(finding.group);
  return index == std::size(kClasses) || options.shown[index];
}

// File in the order of reading, line, column, and the order in which they were found.
using PlaceKey = std::tuple<size_t, uint32_t, uint32_t, size_t>;

std::vector<PlaceKey> SortedPlaces(const Session& session, const Report& report) {
  std::unordered_map<const SourceFile*, size_t> order;
  for (const SourceFile& file : session.files) order.emplace(&file, order.size() + 1);
  std::vector<PlaceKey> keys;
  for (size_t i = 0; i < report.findings.size(); ++i) {
    const Place& place = report.findings[i].place;
    keys.emplace_back(place.file == nullptr ? 0 : order[place.file], place.line, place.column, i);
  }
  std::sort(keys.begin(), keys.end());
  return keys;
}

bool IsSamePlace(const Finding& a, const Finding& b) {
  return a.place.file == b.place.file && a.place.line == b.place.line &&
         a.place.column == b.place.column;
}

// What is said of a statement itself is not said again of each use of it.
bool IsSaid(const std::vector<Finding>& settled, const Finding& finding) {
  for (auto other = settled.rbegin(); other != settled.rend(); ++other) {
    if (!IsSamePlace(*other, finding)) return false;
    if (other->message == finding.message) return true;
  }
  return false;
}

}  // namespace

std::span<const LintClass> LintClasses() noexcept {
  return kClasses;
}

LintOptions::LintOptions() {
  for (const LintClass& row : kClasses) shown.push_back(row.on);
}

bool SetLintClass(LintOptions* options, std::string_view text) {
  const bool on = text.substr(0, 3) != "no-";
  const size_t index = IndexOfClass(on ? text : text.substr(3));
  if (index == std::size(kClasses)) return false;
  options->shown[index] = on;
  return true;
}

void LintModules(Session* session, std::span<Module* const> modules, Report* report) {
  SchemaView view;
  std::unordered_set<const xmlNode*> used;
  CollectUsed(*session, &used);
  Lint common;
  common.session = session;
  common.report = report;
  common.view = &view;
  common.used = &used;
  AddToView(&view, modules);
  for (Module* module : modules) LintOne(common, module);
}

void SettleFindings(const Session& session, const LintOptions& options, Report* report) {
  std::vector<Finding> settled;
  for (const PlaceKey& key : SortedPlaces(session, *report)) {
    Finding& finding = report->findings[std::get<3>(key)];
    if (IsWanted(options, finding) && !IsSaid(settled, finding))
      settled.push_back(std::move(finding));
  }
  report->findings.swap(settled);
}

size_t CountErrors(const Report& report) noexcept {
  return static_cast<size_t>(
      std::count_if(report.findings.begin(), report.findings.end(), [](const Finding& f) {
        return f.severity == Severity::kError || f.severity == Severity::kFatal;
      }));
}

}  // namespace compiler
