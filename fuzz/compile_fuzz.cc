// SPDX-License-Identifier: BSD-3-Clause
// Modules from memory spelled out and written: they are parted by form feeds, the first
// is compiled, the rest can be found by name. Flag 1 takes them as YIN instead of YANG
// text, flag 2 turns all features off, flag 4 leaves failing conditions out.
#include <memory>
#include <string>

#include "compiler/job.h"
#include "compiler/reading/session.h"
#include "compiler/reading/writer.h"
#include "compiler/spelling/compile.h"
#include "fuzz/model_input.h"

namespace {

void Compile(const FuzzInput& input) {
  const std::unique_ptr<compiler::Session> session = compiler::OpenSession();
  compiler::Report report;
  compiler::Repository repository;
  repository.session = session.get();
  repository.report = &report;
  compiler::Module* first = ReadModels(input, &repository);
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
  if (input.length <= kMaxModelText) Compile(input);
}
