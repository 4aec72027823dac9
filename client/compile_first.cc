// SPDX-License-Identifier: BSD-3-Clause
// The model compiler in front of a load: what the options ask it for, what it has to say,
// and a folder of its own that is searched for what it wrote.
#include "client/compile_first.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string_view>

#include "client/compile_cache.h"
#include "client/memory_watch.h"
#include "client/shown_text.h"
#include "client/terminal.h"

compiler::JobRequest MakeRequest(const Options& options) {
  compiler::JobRequest request;
  request.folders = options.searchDirs;
  if (request.folders.empty()) request.folders.emplace_back(".");
  request.recursive = options.recursive;
  request.options.featuresComplete = options.featuresComplete;
  request.options.dropFailing = options.dropFailing;
  return request;
}

void PrintFindings(const compiler::JobResult& result) {
  if (result.state == compiler::JobState::kNoMemory) throw std::bad_alloc();
  CheckMemory();
  for (const std::string& line : result.findings) {
    static_cast<void>(std::fprintf(stderr, "%s\n", ShowControls(line).c_str()));
  }
  if (result.state == compiler::JobState::kNoFolder) {
    PrintError("%s: not a usable search directory", result.detail.c_str());
  }
  if (result.state == compiler::JobState::kNoFeature) {
    PrintError("no feature '%s' in a module that is compiled", result.detail.c_str());
  }
}

static compiler::JobResult Compile(const compiler::JobRequest& request, bool noCache) {
  const Progress progress("compiling");
  return noCache ? RunJob(request) : RunJobOnce(request);
}

int CompileFirst(Options* options, bool withOperands, PrivateFolder* folder) {
  compiler::JobRequest request = MakeRequest(*options);
  request.withImports = true;
  request.operands = options->modules;
  if (withOperands) {
    request.operands.insert(request.operands.end(), options->operands.begin(),
                            options->operands.end());
  }
  const compiler::JobResult result = Compile(request, options->noCache);
  if (!options->quiet || result.state > compiler::JobState::kLost) PrintFindings(result);
  if (result.state > compiler::JobState::kLost) return kExitUnusable;
  if (!folder->Make()) return kExitUnusable;
  for (const compiler::JobModule& module : result.modules) {
    if (!folder->Write(module.name + ".yin", module.yin)) return kExitUnusable;
    options->sources[module.name + ".yin"] = module.source;
  }
  options->searchDirs = {folder->path()};
  for (size_t i = 0; i < request.operands.size(); ++i) {
    std::string& name = i < options->modules.size()
                            ? options->modules[i]
                            : options->operands[i - options->modules.size()];
    // What was named by its file to be loaded may be named so to be unloaded.
    std::replace(options->unloads.begin(), options->unloads.end(), request.operands[i],
                 result.operandNames[i]);
    name = result.operandNames[i];
  }
  return kExitOk;
}
