// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/lint_job.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <utility>

#include "compiler/lint/lint_library.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/repository.h"
#include "compiler/reading/session.h"

namespace compiler {

namespace {

// Takes the findings about files as a whole, which no line can be named for, out of the
// report.
std::vector<std::string> TakeTroubles(Report* report) {
  std::vector<std::string> troubles;
  std::vector<Finding> placed;
  for (Finding& finding : report->findings) {
    if (finding.place.line != 0) {
      placed.push_back(std::move(finding));
      continue;
    }
    std::string text = finding.message;
    if (finding.place.file != nullptr) text.insert(0, finding.place.file->path + ": ");
    if (!finding.advice.empty()) text += "; " + finding.advice;
    if (std::find(troubles.begin(), troubles.end(), text) == troubles.end())
      troubles.push_back(std::move(text));
  }
  report->findings.swap(placed);
  return troubles;
}

// A file that is not well-formed is no module, but what is wrong in it has been said.
bool IsSyntaxTold(const Report& report) {
  return std::any_of(report.findings.begin(), report.findings.end(), [](const Finding& finding) {
    return std::strcmp(finding.group, kSyntaxClass) == 0;
  });
}

void Run(const LintRequest& request, LintResult* result) {
  const std::unique_ptr<Session> session = OpenSession();
  Report report;
  Repository repository;
  repository.session = session.get();
  repository.report = &report;
  for (const std::string& folder : request.folders) {
    if (AddSearchFolder(&repository, folder, request.recursive)) continue;
    result->state = LintState::kNoFolder;
    result->detail = folder;
    return;
  }
  std::vector<Module*> modules;
  std::unordered_set<const Module*> known;
  bool missing = false;
  for (Module* module : OpenOperands(&repository, request.operands)) {
    missing = missing || module == nullptr;
    if (module != nullptr && known.insert(module).second) modules.push_back(module);
  }
  LintModules(session.get(), modules, &report);
  LintLibrary(&repository, modules, &report);
  result->troubles = TakeTroubles(&report);
  SettleFindings(*session, request.options, &report);
  AddAdvice(&report);
  if (CountErrors(report) != 0) result->state = LintState::kErrors;
  if (!result->troubles.empty() || (missing && !IsSyntaxTold(report)))
    result->state = LintState::kUnusable;
  result->output = request.json ? FindingsAsJson(report) : FindingsAsLines(report);
}

}  // namespace

LintResult RunLintJob(const LintRequest& request) {
  LintResult result;
  try {
    Run(request, &result);
  } catch (const std::bad_alloc&) {
    result = LintResult();
    result.state = LintState::kNoMemory;
  }
  return result;
}

}  // namespace compiler
