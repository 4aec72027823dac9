// SPDX-License-Identifier: BSD-3-Clause
// The module is spelled out as for the library, and the losses that are told on the way
// become warnings; the output itself is dropped. Where there are errors, what the
// library makes of the model is not yet of interest.
#include "compiler/lint_library.h"

#include <algorithm>
#include <utility>

#include "compiler/compile.h"
#include "compiler/lint_pass.h"

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

}  // namespace

void LintLibrary(Repository* repository, std::span<Module* const> modules, Report* report) {
  const std::vector<Module*> sound = WithoutErrors(modules, *report);
  Report unused;
  Compilation all;
  all.session = repository->session;
  all.repository = repository;
  all.report = &unused;
  for (Output* out : CompileAll(&all, sound)) {  // imports among them
    if (std::find(sound.begin(), sound.end(), out->module) == sound.end()) continue;
    for (Finding& finding : out->report.findings) {
      if (finding.severity != Severity::kLoss) continue;
      finding.severity = Severity::kWarning;
      finding.group = cls::kLibrary;
      report->findings.push_back(std::move(finding));
    }
  }
}

}  // namespace compiler
