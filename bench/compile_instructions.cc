// SPDX-License-Identifier: BSD-3-Clause
// What compiling costs, and what it is held against. Run by compile_instructions.sh under
// callgrind, which counts what happens inside of the functions Measured...().
//
//   compile_instructions compile OUT [-p DIR]... MODULE|FILE...
//       compiles, writes what is compiled to OUT and prints the files that were read
//   compile_instructions lint [-p DIR]... MODULE|FILE...
//       looks for faults, and prints nothing
//   compile_instructions parse FILE.yin...
//       libxml2's parse of each file, after one that is not counted
#include <libxml/parser.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "compiler/job.h"
#include "compiler/lint_job.h"

extern "C" __attribute__((noinline)) void MeasuredCompile(const compiler::JobRequest& request,
                                                          compiler::JobResult* result) {
  *result = compiler::RunJob(request);
}

extern "C" __attribute__((noinline)) void MeasuredLint(const compiler::LintRequest& request) {
  static_cast<void>(compiler::RunLintJob(request));
}

static void Parse(const std::string& yin) {
  xmlFreeDoc(xmlReadMemory(yin.data(), static_cast<int>(yin.size()), nullptr, nullptr, 0));
}

extern "C" __attribute__((noinline)) void MeasuredParse(const std::string& yin) {
  Parse(yin);
}

static void TakeWords(const std::vector<std::string>& words, std::vector<std::string>* folders,
                      std::vector<std::string>* operands) {
  for (size_t i = 0; i < words.size(); ++i) {
    const bool isFolder = words[i] == "-p" && i + 1 < words.size();
    if (isFolder) ++i;
    (isFolder ? folders : operands)->push_back(words[i]);
  }
}

static int CompileInto(const std::string& folder, const std::vector<std::string>& words) {
  compiler::JobRequest request;
  request.withImports = true;
  TakeWords(words, &request.folders, &request.operands);
  compiler::JobResult result;
  MeasuredCompile(request, &result);
  for (const compiler::JobModule& module : result.modules)
    std::ofstream(folder + "/" + module.name + ".yin") << module.yin;
  for (const std::string& file : result.filesRead) std::puts(file.c_str());
  return result.modules.empty() ? 1 : 0;
}

static int Lint(const std::vector<std::string>& words) {
  compiler::LintRequest request;
  TakeWords(words, &request.folders, &request.operands);
  MeasuredLint(request);
  return 0;
}

static int ParseEach(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    std::stringstream content;
    content << std::ifstream(file).rdbuf();
    Parse(content.str());
    MeasuredParse(content.str());
  }
  return 0;
}

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (words.size() < 2) {
    std::fprintf(stderr, "usage: compile_instructions compile OUT|lint|parse WORD...\n");
    return 2;
  }
  const std::string mode = words[0];
  words.erase(words.begin());
  if (mode == "parse") return ParseEach(words);
  if (mode == "lint") return Lint(words);
  const std::string folder = words[0];
  words.erase(words.begin());
  return CompileInto(folder, words);
}
