// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// One call of the compiler from its operands to texts: what `qmodel compile` and -c do.
// Refused memory is caught here.
#include <memory>
#include <string>
#include <vector>

#include "compiler/spelling/compile.h"

namespace compiler {

struct JobRequest {
  std::vector<std::string> folders;  // searched in this order
  bool recursive = false;            // with their sub-folders
  std::vector<std::string> operands;
  bool withImports = false;  // write what the operands import too
  bool keepInputs = false;   // give back what was read
  CompileOptions options;
};

struct JobFile {
  std::string path;
  std::string content;
};

struct JobModule {
  std::string name;
  std::string source;  // the file that it was read from
  std::string yin;
};

enum class JobState : uint8_t {
  kDone,       // all was written
  kLost,       // all was written, but something was lost or is wrong
  kStopped,    // a module has an error that stops it; the rest was written
  kNoFeature,  // a feature that is named is not there, see `detail`; nothing was written
  kNoFolder,   // a folder cannot be searched, see `detail`
  kNoMemory,
};

struct JobResult {
  JobState state = JobState::kDone;
  std::string detail;
  std::vector<JobModule> modules;         // operands first, then imports
  std::vector<std::string> operandNames;  // of the operands\' modules; empty: there is none
  std::vector<std::string> findings;      // lines, in order of files and places
  std::vector<std::string> filesRead;     // each once, in order of reading
  // All that the result depends on, when the request keeps it.
  std::string listing;
  std::vector<JobFile> inputs;
};

JobResult RunJob(const JobRequest& request);

// What the directories of a request hold now, to be compared with `listing` of a result.
// False: one cannot be listed. Throws when memory is refused.
bool ListInputs(const JobRequest& request, std::string* listing);

// "FILE:LINE: what and why" for each finding, and where it was used; each once.
std::vector<std::string> FindingLines(const Session& session, const Report& report);

}  // namespace compiler
