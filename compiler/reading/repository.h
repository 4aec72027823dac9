// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Where modules come from: directories that are searched in order, and files that are
// named. Each file is read once.
//
// In the first directory (with -r: and its sub-folders) that has the module, the
// revision asked for is taken, else the newest by its own revision statements; of equals
// `.yang` before `.yin`.
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"
#include "compiler/words/suggestion.h"

namespace compiler {

// The class of findings about imports, includes and circles.
inline constexpr char kLinkageClass[] = "linkage";

// A directory, as it was listed once.
struct SearchFolder {
  std::string path;
  // Paths by the module that the file's name promises, in order.
  std::map<std::string, std::vector<std::string>, std::less<>> files;
};

// A file that was read. Its findings are reported when it is chosen.
struct ReadFile {
  std::string path;
  Module* module = nullptr;  // NULL: cannot be read
  Report report;
  bool reported = false;
};

struct Repository {
  Session* session = nullptr;
  Report* report = nullptr;
  std::deque<SearchFolder> folders;
  std::map<std::string, ReadFile, std::less<>> files;  // by path
  std::map<std::string, Module*, std::less<>> found;   // by "NAME" and "NAME@REVISION"
  std::vector<Module*> linked;                         // modules and submodules, as linked
  std::unordered_set<Module*> met;                     // the same
  uint64_t namesToCompare = kMostComparedNames;        // for "did you mean"
};

// Adds a directory to those that are searched. False: it cannot be listed.
bool AddSearchFolder(Repository* repository, const std::string& path, bool recursive);

// Adds the folders of operands that name files, in front of those that are there.
void AddOperandFolders(Repository* repository, const std::vector<std::string>& operands);

// What the directories were found to hold: all that tells which files are read.
std::string ListingOf(const Repository& repository);

// True for an operand that names a file: it has a '/', or ends in .yang or .yin.
bool IsFileOperand(std::string_view operand) noexcept;

// The module or submodule of that name, read but not linked; `revision` empty: any.
// When no file has the revision, the newest is given. NULL: no directory has it.
Module* FindModuleFile(Repository* repository, const std::string& name,
                       const std::string& revision);

// What to do about a module or submodule that is not found: add its folder; or what the file
// that promises it holds.
std::string AdviceForMissing(Repository* repository, const std::string& name);

// Reads the operands, MODULE or FILE, and links them; the folders of FILEs come first in
// the search. One entry for each operand; NULL, with a finding: there is no such module,
// or it is a submodule.
std::vector<Module*> OpenOperands(Repository* repository, const std::vector<std::string>& operands);

// Finds all imports and includes of the module, theirs too, and completes the trees.
// What is missing or circular is reported at its statement, as fatal.
void Link(Repository* repository, Module* module);

// The revision of the module that is written: of each name one. NULL: not found.
Module* WrittenModule(Repository* repository, std::string_view name);

}  // namespace compiler
