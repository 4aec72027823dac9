// SPDX-License-Identifier: BSD-3-Clause
#include "fuzz/model_input.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "compiler/reading/reader.h"

static compiler::Module* Read(const FuzzInput& input, const std::string& text,
                              compiler::Repository* repository) {
  compiler::Session* session = repository->session;
  const std::string path = "m" + std::to_string(session->files.size());
  return (input.flags & 1u) != 0
             ? compiler::ReadModuleYin(session, path, text, repository->report)
             : compiler::ReadModuleText(session, path, text, repository->report);
}

compiler::Module* ReadModels(const FuzzInput& input, compiler::Repository* repository) {
  compiler::Module* first = nullptr;
  std::string_view rest(input.text, input.length);
  while (!rest.empty()) {
    const std::string text(rest.substr(0, rest.find('\f')));
    rest.remove_prefix(std::min(text.size() + 1, rest.size()));
    compiler::Module* module = Read(input, text, repository);
    if (module == nullptr) continue;
    if (first == nullptr) first = module;
    repository->found.emplace(module->name, module);
  }
  return first;
}
