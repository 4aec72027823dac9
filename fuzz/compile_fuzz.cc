// SPDX-License-Identifier: BSD-3-Clause
// Modules from memory spelled out and written: they are parted by form feeds, the first
// is compiled, the rest can be found by name. Flag 1 takes them as YIN instead of YANG
// text, flag 2 turns all features off, flag 4 leaves failing conditions out.
#include <memory>
#include <string>

#include "compiler/compile.h"
#include "compiler/job.h"
#include "compiler/reader.h"
#include "compiler/session.h"
#include "compiler/writer.h"
#include "fuzz/fuzz_target.h"

namespace {

constexpr size_t kMaxText = 4096;

compiler::Module* Read(compiler::Session* session, const FuzzInput& input, const std::string& text,
                       compiler::Report* report) {
  const std::string path = "m" + std::to_string(session->files.size());
  return (input.flags & 1u) != 0 ? compiler::ReadModuleYin(session, path, text, report)
                                 : compiler::ReadModuleText(session, path, text, report);
}

void Compile(const FuzzInput& input) {
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
  if (first == nullptr || !first->belongsTo.empty()) return;
  Link(&repository, first);
  compiler::Compilation all;
  all.session = session.get();
  all.repository = &repository;
  all.report = &report;
  all.options.featuresComplete = (input.flags & 2u) != 0;
  all.options.dropFailing = (input.flags & 4u) != 0;
  for (const compiler::Output* out : CompileAll(&all, {first})) {
    if (!out->stopped) static_cast<void>(WriteYin(out->written));
  }
  static_cast<void>(FindingLines(*session, report));
}

}  // namespace

void FuzzOne(const FuzzInput& input) {
  if (input.length <= kMaxText) Compile(input);
}
