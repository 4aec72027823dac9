// SPDX-License-Identifier: BSD-3-Clause
// A directory is listed once, and a file read when its name promises the module that is
// looked for. Which of several revisions is the newest only the files themselves tell,
// so all candidates of one directory are read; what is wrong in those that are not
// chosen is nobody's concern.
#include "compiler/reading/repository.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "compiler/reading/circle.h"
#include "compiler/reading/folder_list.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/words/argument.h"
#include "compiler/words/path.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

constexpr std::string_view kTextEnding = ".yang";
constexpr std::string_view kYinEnding = ".yin";

bool EndsIn(std::string_view text, std::string_view ending) {
  return text.size() > ending.size() && text.substr(text.size() - ending.size()) == ending;
}

bool IsModelFile(std::string_view path) {
  return EndsIn(path, kTextEnding) || EndsIn(path, kYinEnding);
}

// "NAME.yang" and "NAME@REVISION.yang" promise NAME.
std::string PromisedName(const std::string& path) {
  const size_t slash = path.rfind('/');
  const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
  return base.substr(0, std::min(base.find('@'), base.rfind('.')));
}

bool MakeFolder(const std::string& path, bool recursive, SearchFolder* folder) {
  std::vector<std::string> paths;
  folder->path = path;
  if (!ListFiles(path, recursive, &paths)) return false;
  std::sort(paths.begin(), paths.end());
  for (std::string& file : paths) {
    if (IsModelFile(file)) folder->files[PromisedName(file)].push_back(std::move(file));
  }
  return true;
}

ReadFile* Read(Repository* repository, const std::string& path, FileOrigin origin) {
  const auto [entry, isNew] = repository->files.try_emplace(path);
  ReadFile* file = &entry->second;
  if (isNew) {
    file->path = path;
    file->module = ReadModuleFile(repository->session, path, origin, &file->report);
  }
  return file;
}

// Hands on what is wrong in a file, once.
Module* Choose(Repository* repository, ReadFile* file) {
  if (!std::exchange(file->reported, true)) {
    auto& findings = repository->report->findings;
    findings.insert(findings.end(), std::make_move_iterator(file->report.findings.begin()),
                    std::make_move_iterator(file->report.findings.end()));
  }
  return file->module;
}

// True when `a` is rather taken than `b`; of equals the one that came first stays.
bool IsBetter(const Module& a, const Module& b, const std::string& revision) {
  const bool aAsked = !revision.empty() && a.revision == revision;
  const bool bAsked = !revision.empty() && b.revision == revision;
  if (aAsked != bAsked) return aAsked;
  if (a.revision != b.revision) return a.revision > b.revision;
  return a.file->isText && !b.file->isText;
}

// The best file of one directory. Those that hold no module at all join `unread`.
ReadFile* BestOf(Repository* repository, const std::vector<std::string>& paths,
                 const std::string& name, const std::string& revision,
                 std::vector<ReadFile*>* unread) {
  ReadFile* best = nullptr;
  for (const std::string& path : paths) {
    ReadFile* file = Read(repository, path, FileOrigin::kFound);
    if (file->module == nullptr) {
      unread->push_back(file);
    } else if (file->module->name == name &&
               (best == nullptr || IsBetter(*file->module, *best->module, revision))) {
      best = file;
    }
  }
  return best;
}

Module* Search(Repository* repository, const std::string& name, const std::string& revision) {
  std::vector<ReadFile*> unread;
  ReadFile* best = nullptr;
  for (const SearchFolder& folder : repository->folders) {
    const auto paths = folder.files.find(name);
    if (paths == folder.files.end()) continue;
    best = BestOf(repository, paths->second, name, revision, &unread);
    if (best != nullptr) break;
  }
  // One of them may be what was meant.
  for (ReadFile* file : unread) Choose(repository, file);
  return best == nullptr ? nullptr : Choose(repository, best);
}

// "FILE holds module 'b', not 'a'" for the first file that promises the module and holds
// another; empty: there is none.
std::string FoundInstead(Repository* repository, const std::string& name) {
  for (const SearchFolder& folder : repository->folders) {
    const auto paths = folder.files.find(name);
    if (paths == folder.files.end()) continue;
    for (const std::string& path : paths->second) {
      const Module* module = Read(repository, path, FileOrigin::kFound)->module;
      if (module == nullptr || module->name == name) continue;
      const char* kind = Is(module->root, Keyword::kModule) ? "module '" : "submodule '";
      std::string held = path;
      held.append(" holds ").append(kind).append(module->name);
      return held.append("', not '").append(name).append("'");
    }
  }
  return {};
}

// The submodule that is one of another module, or none at all.
std::string ForeignAdvice(const Module& found) {
  if (Is(found.root, Keyword::kModule))
    return found.file->path + " holds a module; include submodules of the module only";
  return found.file->path + " holds one of '" + found.belongsTo +
         "'; include submodules of the module only";
}

void Fatal(Repository* repository, const xmlNode* at, std::string message,
           std::string advice = {}) {
  AddFinding(repository->report, Severity::kFatal, kLinkageClass, at, std::move(message),
             std::move(advice));
}

// Says that the file found is not of the revision asked for; it is taken all the same.
void NoteOtherRevision(Repository* repository, const xmlNode* at, const Module& found,
                       const std::string& revision) {
  if (!IsDate(revision) || found.revision == revision) return;
  const std::string is = found.revision.empty() ? "one without" : found.revision;
  AddFinding(repository->report, Severity::kError, kLinkageClass, at,
             "revision " + revision + " of \"" + found.name + "\" is not found, only " + is,
             "add the file to a folder that is searched");
}

// What is no identifier can be the name of no file: said as the grammar has it.
bool IsNameOfModule(Repository* repository, const xmlNode* at, Keyword keyword,
                    const std::string& name) {
  const bool version11 = StatementOf(at)->words->version11;
  const std::string fault = JudgeArgument(keyword, Keyword::kModule, name, version11);
  if (fault.empty()) return true;
  AddFinding(repository->report, Severity::kFatal, "argument", at,
             std::string("the argument of \"") + NameOf(at) + "\", " + fault,
             AdviseArgument(keyword, Keyword::kModule));
  return false;
}

void ResolveImport(Repository* repository, Import* import) {
  if (!IsNameOfModule(repository, import->statement, Keyword::kImport, import->module)) return;
  import->target = FindModuleFile(repository, import->module, import->revision);
  if (import->target == nullptr) {
    Fatal(repository, import->statement,
          "the imported module \"" + import->module + "\" is not found",
          AdviceForMissing(repository, import->module));
  } else if (!Is(import->target->root, Keyword::kModule)) {
    const std::string& owner = import->target->belongsTo;
    Fatal(repository, import->statement,
          "\"" + import->module + "\" is a submodule and cannot be imported",
          owner.empty() ? "import its module" : "import its module \"" + owner + "\"");
    import->target = nullptr;
  } else {
    NoteOtherRevision(repository, import->statement, *import->target, import->revision);
  }
}

// Of a submodule that already belongs to another revision of its module, a second copy.
Module* OwnCopy(Repository* repository, Module* submodule) {
  Report again;
  return ReadModuleFile(repository->session, submodule->file->path, FileOrigin::kFound, &again);
}

void ResolveInclude(Repository* repository, Module* file, Include* include) {
  if (!IsNameOfModule(repository, include->statement, Keyword::kInclude, include->submodule))
    return;
  Module* owner = MainModuleOf(file);
  Module* found = FindModuleFile(repository, include->submodule, include->revision);
  if (found == nullptr) {
    Fatal(repository, include->statement,
          "the included submodule \"" + include->submodule + "\" is not found",
          AdviceForMissing(repository, include->submodule));
    return;
  }
  // Which module it is of is then missing, which is said of the submodule.
  if (owner != nullptr && Is(found->root, Keyword::kSubmodule) && !IsIdentifier(found->belongsTo))
    found->belongsTo = owner->name;
  if (owner == nullptr || found->belongsTo != owner->name) {
    Fatal(repository, include->statement,
          "\"" + include->submodule + "\" is not a submodule of \"" +
              (owner == nullptr ? file->name : owner->name) + "\"",
          ForeignAdvice(*found));
    return;
  }
  NoteOtherRevision(repository, include->statement, *found, include->revision);
  if (found->owner != nullptr && found->owner != owner) found = OwnCopy(repository, found);
  if (found == nullptr) return;
  found->owner = owner;
  found->nameSpace = owner->nameSpace;
  include->target = found;
}

// A file that is met for the first time joins those whose links are to be followed.
void Meet(Repository* repository, Module* file) {
  if (file != nullptr && repository->met.insert(file).second) repository->linked.push_back(file);
}

void FollowLinks(Repository* repository, Module* file) {
  for (Import& import : file->imports) {
    ResolveImport(repository, &import);
    Meet(repository, import.target);
  }
  for (Include& include : file->includes) {
    ResolveInclude(repository, file, &include);
    Meet(repository, include.target);
  }
}

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

void Refuse(Repository* repository, const std::string& operand, std::string message,
            std::string advice = {}) {
  AddFindingAt(repository->report, Severity::kFatal, kLinkageClass, Place(),
               operand + ": " + std::move(message), std::move(advice));
}

Module* OpenOperand(Repository* repository, const std::string& operand) {
  Module* module = nullptr;
  if (IsFileOperand(operand)) {
    module = Choose(repository, Read(repository, operand, FileOrigin::kNamed));
    if (module == nullptr) return nullptr;
  } else {
    // Whatever other operands name, so that their order makes no difference.
    module = Search(repository, operand, {});
    if (module == nullptr)
      Refuse(repository, operand, "no directory has this module",
             FoundInstead(repository, operand));
  }
  if (module == nullptr || module->belongsTo.empty()) return module;
  Refuse(repository, operand, "a submodule; name its module \"" + module->belongsTo + "\"");
  return nullptr;
}

}  // namespace

bool AddSearchFolder(Repository* repository, const std::string& path, bool recursive) {
  SearchFolder folder;
  if (!MakeFolder(path, recursive, &folder)) return false;
  repository->folders.push_back(std::move(folder));
  return true;
}

// In order of the operands, each once.
void AddOperandFolders(Repository* repository, const std::vector<std::string>& operands) {
  auto where = repository->folders.begin();
  std::unordered_set<std::string> known;
  for (const std::string& operand : operands) {
    if (!IsFileOperand(operand) || !known.insert(FolderOf(operand)).second) continue;
    SearchFolder folder;
    MakeFolder(FolderOf(operand), false, &folder);
    where = repository->folders.insert(where, std::move(folder)) + 1;
  }
}

std::string ListingOf(const Repository& repository) {
  std::string listing;
  for (const SearchFolder& folder : repository.folders) {
    listing.append(folder.path).append(2, '\0');
    for (const auto& [name, paths] : folder.files) {
      for (const std::string& path : paths) listing.append(path).push_back('\0');
    }
  }
  return listing;
}

bool IsFileOperand(std::string_view operand) noexcept {
  return operand.find('/') != std::string_view::npos || IsModelFile(operand);
}

Module* FindModuleFile(Repository* repository, const std::string& name,
                       const std::string& revision) {
  const std::string key = revision.empty() ? name : name + "@" + revision;
  const auto known = repository->found.find(key);
  if (known != repository->found.end()) return known->second;
  // An operand is the file that is meant, though another path leads to it as well.
  const auto any = repository->found.find(name);
  const bool fits =
      any != repository->found.end() && any->second != nullptr && any->second->revision == revision;
  Module* module = fits ? any->second : Search(repository, name, revision);
  repository->found.emplace(key, module);
  return module;
}

// Of the files that the directories hold, by the names that they promise.
static std::string NearestFile(Repository* repository, const std::string& wanted) {
  Suggestion near(wanted, &repository->namesToCompare);
  for (const SearchFolder& folder : repository->folders)
    for (const auto& file : folder.files)
      if (!near.Consider(file.first)) return near.Advice("add its folder with -p");
  return near.Advice("add its folder with -p");
}

std::string AdviceForMissing(Repository* repository, const std::string& name) {
  std::string found = FoundInstead(repository, name);
  return found.empty() ? NearestFile(repository, name) : found;
}

std::vector<Module*> OpenOperands(Repository* repository,
                                  const std::vector<std::string>& operands) {
  AddOperandFolders(repository, operands);
  std::vector<Module*> modules;
  for (const std::string& operand : operands) {
    Module* module = OpenOperand(repository, operand);
    modules.push_back(module);
    if (module == nullptr) continue;
    const auto [known, isNew] = repository->found.emplace(module->name, module);
    if (!isNew && module->revision > known->second->revision) known->second = module;
  }
  for (Module* module : modules) {
    if (module != nullptr) Link(repository, module);
  }
  return modules;
}

void Link(Repository* repository, Module* module) {
  size_t first = repository->linked.size();
  Meet(repository, module);
  for (size_t i = first; i < repository->linked.size(); ++i)
    FollowLinks(repository, repository->linked[i]);
  ReportLinkCircles(repository->linked, first, repository->report);
  for (; first < repository->linked.size(); ++first)
    BindPrefixes(repository->session, repository->linked[first], repository->report);
}

Module* WrittenModule(Repository* repository, std::string_view name) {
  return FindModuleFile(repository, std::string(name), {});
}

}  // namespace compiler
