// SPDX-License-Identifier: BSD-3-Clause
// The module is spelled out as for the library, and the losses that are told on the way
// become warnings; the output itself is dropped. Where there are errors, what the
// library makes of the model is not yet of interest.
#include "compiler/lint/lint_library.h"

#include <string>
#include <unordered_set>
#include <utility>

#include "compiler/lint/lint_pass.h"
#include "compiler/spelling/compile.h"
#include "compiler/spelling/condition_pass.h"

namespace compiler {

namespace {

struct Faults {
  std::unordered_set<const SourceFile*> files;
  bool any = false;
};

void LookForErrors(Module* file, void* arg) {
  auto* faults = static_cast<Faults*>(arg);
  faults->any = faults->any || faults->files.count(file->file) != 0;
}

std::vector<Module*> WithoutErrors(std::span<Module* const> modules, const Report& report) {
  std::vector<Module*> sound;
  Faults faults;
  for (const Finding& finding : report.findings)
    if (finding.severity != Severity::kWarning) faults.files.insert(finding.place.file);
  for (Module* module : modules) {
    faults.any = false;
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

// What the library makes of conditions that it evaluates otherwise than they say.
void WarnOfConditions(const std::vector<Output*>& outputs,
                      const std::unordered_set<const Module*>& modules, Report* report) {
  VisitConditionRemarks(outputs,
                        [&](Output* out, const xmlNode* condition, const ConditionRemark& remark) {
                          if (modules.count(out->module) == 0) return;
                          AddFinding(report, Severity::kWarning, cls::kLibrary, condition,
                                     std::string("the ") + NameOf(condition) + " " +
                                         Quote(ArgumentOf(condition)) + ": " + remark.message,
                                     AdviceFor(remark.issue));
                        });
}

}  // namespace

void LintLibrary(Repository* repository, std::span<Module* const> modules, Report* report) {
  const std::vector<Module*> sound = WithoutErrors(modules, *report);
  const std::unordered_set<const Module*> judged(sound.begin(), sound.end());
  Report unused;
  Compilation all;
  all.session = repository->session;
  all.repository = repository;
  all.report = &unused;
  const std::vector<Output*> outputs = CompileAll(&all, sound);  // imports among them
  for (Output* out : outputs) {
    if (judged.count(out->module) == 0) continue;
    for (Finding& finding : out->report.findings) {
      if (finding.severity != Severity::kLoss) continue;
      finding.severity = Severity::kWarning;
      finding.group = cls::kLibrary;
      report->findings.push_back(std::move(finding));
    }
  }
  WarnOfConditions(outputs, judged, report);
}

}  // namespace compiler
