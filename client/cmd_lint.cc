// SPDX-License-Identifier: BSD-3-Clause
// qmodel lint: what is wrong in models as they are published, and what to do about it.
#include <cstdio>
#include <new>

#include "client/commands.h"
#include "client/memory_watch.h"
#include "compiler/lint_job.h"

namespace {

bool TakeClasses(const Options& options, compiler::LintOptions* lint) {
  for (const std::string& name : options.lintClasses) {
    if (compiler::SetLintClass(lint, name)) continue;
    PrintError("'%s' is no class of lint; see 'qmodel help lint'", name.c_str());
    return false;
  }
  return true;
}

int StatusOf(compiler::LintState state) {
  switch (state) {
    case compiler::LintState::kClean:
      return kExitOk;
    case compiler::LintState::kErrors:
      return kExitInvalid;
    default:
      return kExitUnusable;
  }
}

}  // namespace

int RunLint(const Options& options) {
  compiler::LintRequest request;
  request.folders = options.searchDirs;
  if (request.folders.empty()) request.folders.emplace_back(".");
  request.recursive = options.recursive;
  request.operands = options.operands;
  request.json = options.json;
  if (!TakeClasses(options, &request.options)) return kExitUsage;
  const compiler::LintResult result = RunLintJob(request);
  if (result.state == compiler::LintState::kNoMemory) throw std::bad_alloc();
  CheckMemory();
  static_cast<void>(std::fwrite(result.output.data(), 1, result.output.size(), stdout));
  for (const std::string& trouble : result.troubles) PrintError("%s", trouble.c_str());
  if (result.state == compiler::LintState::kNoFolder) {
    PrintError("%s: not a usable search directory", result.detail.c_str());
  }
  return StatusOf(result.state);
}
