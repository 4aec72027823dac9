// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What the compiler has to say about a model: each finding with its place, its cause
// and what to do about it. Findings are collected while it works and printed in the
// end, in order of files and lines.
#include <string>
#include <vector>

#include "compiler/reading/records.h"

namespace compiler {

enum class Severity : uint8_t {
  kFatal,    // makes the output meaningless: the module is not written
  kError,    // against RFC 7950, but the module can be written
  kWarning,  // of lint only
  kLoss,     // cannot be expressed in what is written
};

struct Finding {
  Place place;
  const Place* usedAt = nullptr;  // where the statement was used, if it stands in a grouping
  Severity severity = Severity::kError;
  const char* group = "";  // the class that lint prints in brackets, e.g. "library"
  std::string message;     // what is wrong, without a full stop
  std::string advice;      // what to do; may be empty
};

struct Report {
  std::vector<Finding> findings;
};

// Adds a finding at the place of `element` (with its usedAt).
void AddFinding(Report* report, Severity severity, const char* group, const xmlNode* element,
                std::string message, std::string advice = {});

// Adds a finding at a place that no element has.
void AddFindingAt(Report* report, Severity severity, const char* group, const Place& place,
                  std::string message, std::string advice = {});

}  // namespace compiler
