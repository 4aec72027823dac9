// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Where modules come from: directories that are searched in order, and files that are
// named. Each file is read once.
//
// In the first directory (with -r: and its sub-folders) that has the module, the
// revision asked for is taken, else the newest by its own revision statements; of equals
// `.yang` before `.yin`.
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/records.h"
#include "compiler/report.h"

namespace compiler {

// The class of findings about imports, includes and circles.
inline constexpr char kLinkageClass[] = "linkage";

// A directory, as it was listed once.
struct SearchFolder {
  std::string path;
  std::vector<std::string> files;  // of models, by path; sorted
};

struct Repository {
  Session* session = nullptr;
  Report* report = nullptr;
  std::vector<SearchFolder> folders;
  std::map<std::string, Module*, std::less<>> byPath;  // NULL: cannot be read
  std::map<std::string, Module*, std::less<>> found;   // by "NAME" and "NAME@REVISION"
  std::vector<Module*> linked;                         // in the order of linking
};

// Adds a directory to those that are searched. False: it cannot be listed.
bool AddSearchFolder(Repository* repository, const std::string& path, bool recursive);

// True for an operand that names a file: it has a '/', or ends in .yang or .yin.
bool IsFileOperand(std::string_view operand) noexcept;

// The module of that name, read but not linked; `revision` empty: any. NULL: no
// directory has it (nothing is reported), or it cannot be read (that is).
Module* FindModuleFile(Repository* repository, const std::string& name,
                       const std::string& revision);

// Reads the operand, MODULE or FILE, and links it. The folder of a FILE comes first in
// the search. NULL, with a finding: there is none, or it is a submodule.
Module* OpenOperand(Repository* repository, const std::string& operand);

// Finds all imports and includes of the module, theirs too, and completes the trees.
// What is missing or circular is reported at its statement.
void Link(Repository* repository, Module* module);

// The revision of the module that is written: of each name one. NULL: not found.
Module* WrittenModule(Repository* repository, std::string_view name);

}  // namespace compiler
