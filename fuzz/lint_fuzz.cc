// SPDX-License-Identifier: BSD-3-Clause
// Lint of a module from memory, which may import and include others: modules are parted
// by form feeds, the first is judged, the rest can be found by name. Flag 1 takes them
// as YIN instead of YANG text.
#include <memory>
#include <string>

#include "compiler/lint/lint.h"
#include "compiler/lint/lint_library.h"
#include "compiler/reading/session.h"
#include "fuzz/model_input.h"

namespace {

void Lint(const FuzzInput& input) {
  const std::unique_ptr<compiler::Session> session = compiler::OpenSession();
  compiler::Report report;
  compiler::Repository repository;
  repository.session = session.get();
  repository.report = &report;
  compiler::Module* first = ReadModels(input, &repository);
  if (first != nullptr && first->belongsTo.empty()) {
    Link(&repository, first);
    LintModules(session.get(), {&first, 1}, &report);
    LintLibrary(&repository, {&first, 1}, &report);
  }
  SettleFindings(*session, compiler::LintOptions(), &report);
  static_cast<void>(FindingsAsLines(report));
  static_cast<void>(FindingsAsJson(report));
}

}  // namespace

void FuzzOne(const FuzzInput& input) {
  if (input.length <= kMaxModelText) Lint(input);
}
