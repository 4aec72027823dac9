// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/job.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/quiet_xml.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"
#include "compiler/reading/symbols.h"
#include "compiler/reading/writer.h"

namespace compiler {

namespace {

// Line 0 is the file as a whole.
std::string At(const Place& place) {
  return place.line == 0 ? place.file->path : place.file->path + ":" + std::to_string(place.line);
}

// Where a text is wrong is told to the column. An operand that is not there has no place: such a
// line is like others of the program.
std::string LineOf(const Finding& finding) {
  std::string line = finding.place.file == nullptr ? "qmodel: " : "";
  if (finding.place.file != nullptr) {
    line = At(finding.place);
    if (finding.place.line != 0 && std::string_view(finding.group) == kSyntaxClass)
      line += ":" + std::to_string(finding.place.column);
    line += ": ";
  }
  line += finding.message;
  if (!finding.advice.empty()) line += "; " + finding.advice;
  if (finding.usedAt != nullptr) line += ", used at " + At(*finding.usedAt);
  return line;
}

// The modules of the operands, each once, in the revision that is written.
std::vector<Module*> EachOnce(Repository* repository, const std::vector<Module*>& operands) {
  std::vector<Module*> modules;
  std::set<std::string_view> names;
  for (const Module* module : operands) {
    if (module == nullptr) continue;
    Module* written = WrittenModule(repository, module->name);
    if (names.insert(module->name).second) modules.push_back(written);
    if (module->revision == written->revision) continue;
    AddFindingAt(repository->report, Severity::kLoss, kLossClass, {module->file, 0, 0},
                 "this revision of \"" + module->name + "\" is not written, but " +
                     written->revision + " of " + written->file->path,
                 "compile it in another call");
  }
  return modules;
}

JobState StateOf(const Report& report, bool stopped) {
  if (stopped) return JobState::kStopped;
  for (const Finding& finding : report.findings) {
    if (finding.severity != Severity::kWarning) return JobState::kLost;
  }
  return JobState::kDone;
}

void Collect(Report* report, const Output& out) {
  report->findings.insert(report->findings.end(), out.report.findings.begin(),
                          out.report.findings.end());
}

// The feature of the options that no module has, as "module:feature"; empty: all are there.
std::string MissingFeature(const Repository& repository, const CompileOptions& options) {
  for (const FeatureName& name : options.features) {
    const bool isThere =
        std::any_of(repository.linked.begin(), repository.linked.end(), [&](Module* module) {
          return module->belongsTo.empty() && module->name == name.module &&
                 (name.feature == "*" ||
                  FindGlobal(module, SymbolKind::kFeature, name.feature) != nullptr);
        });
    if (!isThere) return name.module + ":" + name.feature;
  }
  return {};
}

using PlaceKey = std::tuple<const SourceFile*, uint32_t, uint32_t>;

PlaceKey KeyOf(const Place& place) {
  return {place.file, place.line, place.column};
}

// Adds the errors that lint finds in the modules. What compiling has told of a statement
// is not said again in lint's words. Compiling does not judge which statements may stand
// where, so of that nothing has been told.
void AddLintErrors(Session* session, const std::vector<Module*>& modules, Report* report) {
  LintOptions errorsOnly;
  errorsOnly.shown.assign(errorsOnly.shown.size(), false);
  Report found;
  LintModules(session, modules, &found);
  SettleFindings(*session, errorsOnly, &found);
  std::set<PlaceKey> told;
  for (const Finding& finding : report->findings) {
    if (finding.severity != Severity::kLoss) told.insert(KeyOf(finding.place));
  }
  for (Finding& finding : found.findings) {
    const bool judged = std::string_view(finding.group) != cls::kStatement;
    if (!judged || !told.contains(KeyOf(finding.place)))
      report->findings.push_back(std::move(finding));
  }
}

// What is lost in a module that is not written is of no interest, unless it is why.
void Write(Compilation* all, const std::vector<Module*>& modules, const JobRequest& request,
           JobResult* result) {
  const std::vector<Output*> outputs = CompileAll(all, modules);
  bool stopped = false;
  std::vector<Module*> wanted;
  for (size_t i = 0; i < outputs.size(); ++i) {
    const Output& out = *outputs[i];
    const bool isWanted = request.withImports || i < modules.size();
    if (isWanted || out.stopped) Collect(all->report, out);
    stopped = stopped || (isWanted && out.stopped);
    if (isWanted) wanted.push_back(out.module);
    if (!isWanted || out.stopped) continue;
    result->modules.push_back({out.module->name, out.module->file->path, WriteYin(out.written)});
  }
  AddLintErrors(all->session, wanted, all->report);
  result->state = StateOf(*all->report, stopped);
}

bool AddFolders(Repository* repository, const JobRequest& request, std::string* unusable) {
  for (const std::string& folder : request.folders) {
    if (AddSearchFolder(repository, folder, request.recursive)) continue;
    *unusable = folder;
    return false;
  }
  return true;
}

void Run(const JobRequest& request, JobResult* result) {
  const std::unique_ptr<Session> session = OpenSession();
  Report report;
  Repository repository;
  repository.session = session.get();
  repository.report = &report;
  session->keepContents = request.keepInputs;
  if (!AddFolders(&repository, request, &result->detail)) {
    result->state = JobState::kNoFolder;
    return;
  }
  Compilation all;
  all.session = session.get();
  all.repository = &repository;
  all.report = &report;
  all.options = request.options;
  const std::vector<Module*> operands = OpenOperands(&repository, request.operands);
  const bool allFound = std::find(operands.begin(), operands.end(), nullptr) == operands.end();
  result->detail = allFound ? MissingFeature(repository, request.options) : "";
  if (result->detail.empty()) {
    Write(&all, EachOnce(&repository, operands), request, result);
  } else {
    result->state = JobState::kNoFeature;
  }
  for (const Module* operand : operands) {
    result->operandNames.push_back(operand == nullptr ? "" : operand->name);
    if (operand == nullptr) result->state = JobState::kStopped;
  }
  result->findings = FindingLines(*session, report);
  for (const SourceFile& file : session->files) result->filesRead.push_back(file.path);
  if (!request.keepInputs) return;
  result->listing = ListingOf(repository);
  for (SourceFile& file : session->files)
    result->inputs.push_back({file.path, std::move(file.content)});
}

}  // namespace

std::vector<std::string> FindingLines(const Session& session, const Report& report) {
  std::unordered_map<const SourceFile*, size_t> order;
  for (const SourceFile& file : session.files) order.emplace(&file, order.size() + 1);
  std::vector<std::tuple<size_t, uint32_t, uint32_t, size_t>> keys;
  for (size_t i = 0; i < report.findings.size(); ++i) {
    const Place& place = report.findings[i].place;
    keys.emplace_back(place.file == nullptr ? 0 : order[place.file], place.line, place.column, i);
  }
  std::sort(keys.begin(), keys.end());
  std::vector<std::string> lines;
  std::set<std::string> seen;
  for (const auto& key : keys) {
    std::string line = LineOf(report.findings[std::get<3>(key)]);
    if (seen.insert(line).second) lines.push_back(std::move(line));
  }
  return lines;
}

bool ListInputs(const JobRequest& request, std::string* listing) {
  Repository repository;
  std::string unusable;
  if (!AddFolders(&repository, request, &unusable)) return false;
  AddOperandFolders(&repository, request.operands);
  *listing = ListingOf(repository);
  return true;
}

JobResult RunJob(const JobRequest& request) {
  const QuietXml quiet;
  JobResult result;
  try {
    Run(request, &result);
  } catch (const std::bad_alloc&) {
    result = JobResult();
    result.state = JobState::kNoMemory;
  }
  return result;
}

}  // namespace compiler
