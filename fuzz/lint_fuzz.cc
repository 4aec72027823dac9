// SPDX-License-Identifier: BSD-3-Clause
// Lint of a module from memory, which may import and include others: modules are parted
// by form feeds, the first is judged, the rest can be found by name. Flag 1 takes them
// as YIN instead of YANG text.
#include <memory>
#include <string>

#include "compiler/lint.h"
#include "compiler/lint_library.h"
#include "compiler/reader.h"
#include "compiler/session.h"
#include "fuzz/fuzz_target.h"

namespace {

// libxml2 compiles patterns in a time that grows faster than their length.
constexpr size_t kMaxText = 4096;

compiler::Module* Read(compiler::Session* session, const FuzzInput& input, const std::string& text,
                       compiler::Report* report) {
  const std::string path = "m" + std::to_string(session->files.size());
  return (input.flags & 1u) != 0 ? compiler::ReadModuleYin(session, path, text, report)
                                 : compiler::ReadModuleText(session, path, text, report);
}

void Lint(const FuzzInput& input) {
  const std::unique_ptr<compiler::Session> session = compiler::OpenSession();
  compiler::Report report;
  compiler::Repository repository;
  repository.session = session.get();
  repository.report = &report;
  compiler::Module* first = nullptr;
  std::string_view rest(input.text, input.length);
  while (!rest.empty()) {
    const std::string text(rest.substr(0, rest.find('\f')));
    rest.remove_prefix(std::min(text.size() + 1, rest.size()));
    compiler::Module* module = Read(session.get(), input, text, &report);
    if (module == nullptr) continue;
    if (first == nullptr) first = module;
    repository.found.emplace(module->name, module);
  }
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
  if (input.length <= kMaxText) Lint(input);
}
