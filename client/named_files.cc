// SPDX-License-Identifier: BSD-3-Clause
// "dir/name.yin" for a module: the library loads by name only, so the folder becomes a
// search directory. What else has the module's name there or in the directories before it
// must not be loaded in its place.
#include "client/named_files.h"

#include <sys/stat.h>

#include <algorithm>

#include "client/file_input.h"
#include "client/find_model.h"

namespace {

bool IsModelFile(const std::string& text) {
  struct stat status {};
  return ModelEnding(text) == ".yin" && stat(text.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

void AddFolderOf(const std::string& file, Options* options) {
  const size_t slash = file.rfind('/');
  const std::string dir =
      slash == std::string::npos ? "." : file.substr(0, std::max<size_t>(slash, 1));
  std::vector<std::string> dirs = SearchedDirs(*options);
  if (std::find(dirs.begin(), dirs.end(), dir) == dirs.end()) dirs.push_back(dir);
  options->searchDirs = std::move(dirs);
}

// A copy, named so that the search finds it first.
bool PutFirst(const std::string& file, const std::string& name, Options* options,
              PrivateFolder* folder) {
  std::string text;
  if (!ReadRegularFile(file, &text)) {  // which may have become a FIFO since it was looked at
    PrintError("%s: cannot be read", file.c_str());
    return false;
  }
  if (folder->path().empty()) {
    if (!folder->Make()) return false;
    options->searchDirs.insert(options->searchDirs.begin(), folder->path());
  }
  options->sources[name + ".yin"] = file;
  return folder->Write(name + ".yin", text);
}

bool TakeNamedFile(std::string* module, Options* options, PrivateFolder* folder) {
  if (!IsModelFile(*module)) return true;
  const std::string file = *module;
  *module = ModelName(file);
  AddFolderOf(file, options);
  if (IsSameFile(file, FindModelFile(*options, *module))) return true;
  return PutFirst(file, *module, options, folder);
}

}  // namespace

bool TakeNamedFiles(Options* options, bool withOperands, PrivateFolder* folder) {
  for (std::string& module : options->modules) {
    if (!TakeNamedFile(&module, options, folder)) return false;
  }
  for (std::string& operand : options->operands) {
    if (withOperands && !TakeNamedFile(&operand, options, folder)) return false;
  }
  for (std::string& module : options->unloads) {
    if (IsModelFile(module)) module = ModelName(module);
  }
  return true;
}
