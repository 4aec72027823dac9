// SPDX-License-Identifier: BSD-3-Clause
#include "tests/compiler/lint_files.h"

#include <gtest/gtest.h>

#include "compiler/lint/lint_library.h"
#include "compiler/reading/repository.h"
#include "compiler/reading/session.h"

namespace compiler {

LintRun LintFiles(const std::vector<std::string>& operands, const std::vector<std::string>& folders,
                  const std::vector<std::string>& classes) {
  LintRun run;
  run.session = OpenSession();
  Repository repository;
  repository.session = run.session.get();
  repository.report = &run.report;
  for (const std::string& folder : folders)
    EXPECT_TRUE(AddSearchFolder(&repository, folder, false)) << folder;
  std::vector<Module*> modules;
  for (Module* module : OpenOperands(&repository, operands))
    if (module != nullptr) modules.push_back(module);
  LintOptions options;
  for (const std::string& name : classes) EXPECT_TRUE(SetLintClass(&options, name)) << name;
  LintModules(run.session.get(), modules, &run.report);
  LintLibrary(&repository, modules, &run.report);
  SettleFindings(*run.session, options, &run.report);
  AddAdvice(&run.report);
  return run;
}

bool SaysWhatToDo(const Finding& finding) {
  return !finding.advice.empty() ||
         finding.message.find("; decide its features") != std::string::npos;
}

}  // namespace compiler
