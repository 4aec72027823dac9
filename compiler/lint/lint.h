// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Lint: what is wrong in a model, where, and what to do about it.
//
// A module is checked with all of its files, class after class, from its words up to
// its schema: grammar and arguments, names and linkage, features and identities, types,
// then the schema tree with keys, defaults, targets, paths and conditions. Each check
// goes on behind what it cannot understand, so that one run says everything; what
// depends on something that was reported is passed over in silence.
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"

namespace compiler {

// A class of findings, which stands in brackets behind each of them.
struct LintClass {
  const char* name;
  bool on;  // at first: whether its warnings are shown; errors always are
};

std::span<const LintClass> LintClasses() noexcept;

// Which warnings are wanted.
struct LintOptions {
  LintOptions();
  std::vector<bool> shown;  // by the class's place in LintClasses()
};

// Takes "CLASS" or "no-CLASS"; false: there is no such class.
bool SetLintClass(LintOptions* options, std::string_view text);

// Checks modules (not submodules), each with its submodules. Their imports and includes
// have been linked, as far as they can be; what went wrong there is in the report.
void LintModules(Session* session, std::span<Module* const> modules, Report* report);

// Drops the warnings that are not wanted and findings that say the same of the same
// place, and puts the rest in order: files as they were read, then lines and columns.
void SettleFindings(const Session& session, const LintOptions& options, Report* report);

// Adds to what the readers and the compiler have found what to do about it, where they do
// not say it.
void AddAdvice(Report* report);

// The number of errors, fatal ones included.
size_t CountErrors(const Report& report) noexcept;

// The findings as lines, or as a JSON array of objects.
std::string FindingsAsLines(const Report& report);
std::string FindingsAsJson(const Report& report);

}  // namespace compiler
