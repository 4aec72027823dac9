// SPDX-License-Identifier: BSD-3-Clause
// The module is spelled out as for the library, and the losses that are told on the way
// become warnings; the output itself is dropped. Where there are errors, what the
// library makes of the model is not yet of interest.
#include "compiler/lint/lint_library.h"

#include <algorithm>
#include <string>
#include <utility>

#include "compiler/lint/lint_pass.h"
#include "compiler/spelling/compile.h"
#include "compiler/spelling/condition_pass.h"

namespace compiler {

namespace {

struct Faults {
  const Report* report;
  bool any;
};

void LookForErrors(Module* file, void* arg) {
  auto* faults = static_cast<Faults*>(arg);
  for (const Finding& finding : faults->report->findings)
    if (finding.place.file == file->file && finding.severity != Severity::kWarning)
      faults->any = true;
}

std::vector<Module*> WithoutErrors(std::span<Module* const> modules, const Report& report) {
  std::vector<Module*> sound;
  for (Module* module : modules) {
    Faults faults = {&report, false};
    ForEachFile(module, LookForErrors, &faults);
    if (!faults.any) sound.push_back(module);
  }
  return sound;
}

const char* AdviceFor(ConditionIssue issue) {
  switch (issue) {
    case ConditionIssue::kFails:
      return "leave it out with --drop-failing, and check it elsewhere";
    case ConditionIssue::kOutside:
      return "check it elsewhere: a message has no configuration";
    case ConditionIssue::kInside:
      return "say it of nodes beside it, or in a must";
    case ConditionIssue::kUnwritten:
      return "write it in the node around the container, or give the container a presence";
    default:
      return "check it elsewhere, or say it of nodes that occur once";
  }
}

bool IsOneOf(const std::vector<Module*>& modules, const Output* out) {
  return std::find(modules.begin(), modules.end(), out->module) != modules.end();
}

// What the library makes of conditions that it evaluates otherwise than they say.
void WarnOfConditions(const std::vector<Output*>& outputs, const std::vector<Module*>& modules,
                      Report* report) {
  VisitConditionRemarks(outputs,
                        [&](Output* out, const xmlNode* condition, const ConditionRemark& remark) {
                          if (!IsOneOf(modules, out)) return;
                          AddFinding(report, Severity::kWarning, cls::kLibrary, condition,
                                     std::string("the ") + NameOf(condition) + " " +
                                         Quote(ArgumentOf(condition)) + ": " + remark.message,
                                     AdviceFor(remark.issue));
                        });
}

}  // namespace

void LintLibrary(Repository* repository, std::span<Module* const> modules, Report* report) {
  const std::vector<Module*> sound = WithoutErrors(modules, *report);
  Report unused;
  Compilation all;
  all.session = repository->session;
  all.repository = repository;
  all.report = &unused;
  const std::vector<Output*> outputs = CompileAll(&all, sound);  // imports among them
  for (Output* out : outputs) {
    if (!IsOneOf(sound, out)) continue;
    for (Finding& finding : out->report.findings) {
      if (finding.severity != Severity::kLoss) continue;
      finding.severity = Severity::kWarning;
      finding.group = cls::kLibrary;
      report->findings.push_back(std::move(finding));
    }
  }
  WarnOfConditions(outputs, sound, report);
}

}  // namespace compiler
