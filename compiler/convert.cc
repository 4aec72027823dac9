// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/convert.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>

#include "compiler/reading/build.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/repository.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/reading/writer.h"

namespace compiler {

namespace {

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

void ReportMissing(Repository* repository, const xmlNode* at, const std::string& name,
                   const std::string& what) {
  AddFinding(repository->report, Severity::kFatal, kLinkageClass, at, what + " is not found",
             AdviceForMissing(repository, name));
}

// The submodules of a module, as far as they are found: extensions may be defined there.
void FindSubmodules(Repository* repository, Module* module) {
  std::vector<Module*> files = {module};
  for (size_t i = 0; i < files.size(); ++i) {
    for (Include& include : files[i]->includes) {
      if (include.target != nullptr) continue;
      Module* found = FindModuleFile(repository, include.submodule, include.revision);
      if (found == nullptr || found->belongsTo != module->name) continue;
      include.target = found;
      if (std::find(files.begin(), files.end(), found) == files.end()) files.push_back(found);
    }
  }
}

void FindImports(Repository* repository, Module* module) {
  for (Import& import : module->imports) {
    Module* found = FindModuleFile(repository, import.module, import.revision);
    if (found == nullptr) {
      ReportMissing(repository, import.statement, import.module,
                    "the imported module '" + import.module + "'");
    } else if (!Is(found->root, Keyword::kModule)) {
      AddFinding(repository->report, Severity::kFatal, kLinkageClass, import.statement,
                 "'" + import.module + "' is a submodule and cannot be imported",
                 found->belongsTo.empty() ? "import its module"
                                          : "import its module '" + found->belongsTo + "'");
    } else {
      import.target = found;
      if (!module->extensions.empty()) FindSubmodules(repository, found);
    }
  }
}

// The module of a submodule has the namespace of its prefix.
void FindOwner(Repository* repository, Module* module) {
  if (module->belongsTo.empty()) return;
  Module* owner = FindModuleFile(repository, module->belongsTo, {});
  if (owner == nullptr) {
    ReportMissing(repository, FirstChild(module->root, Keyword::kBelongsTo), module->belongsTo,
                  "the module '" + module->belongsTo + "' of this submodule");
    return;
  }
  module->owner = owner;
  if (!module->extensions.empty()) FindSubmodules(repository, owner);
}

// A statement that YANG does not know has no form in YIN.
void ReportUnknown(const Session& session, const Module& module, Report* report) {
  for (const xmlNode* s = module.root; s != nullptr; s = NextInTree(module.root, s)) {
    if (!Is(s, Keyword::kNone) || s->ns != session.yin) continue;
    AddFinding(report, Severity::kFatal, kSyntaxClass, s,
               std::string("'") + NameOf(s) + "' is no statement of YANG");
  }
}

// What the root declares must be what XML lets it declare; nothing takes its place here.
void CheckDeclaration(Report* report, const xmlNode* at, const std::string& prefix,
                      const Module* module) {
  if (!prefix.empty() && !IsXmlPrefix(prefix))
    AddFinding(report, Severity::kFatal, "name", at,
               "the prefix \"" + prefix + "\" cannot be written in YIN", "take another prefix");
  if (module != nullptr && !IsXmlNamespace(module->nameSpace))
    AddFinding(report, Severity::kFatal, "name", at,
               "the namespace \"" + module->nameSpace + "\" is one of XML itself",
               "a module takes a namespace of its own");
}

void CheckDeclarations(Module* module, Report* report) {
  CheckDeclaration(report, module->root, module->prefix, MainModuleOf(module));
  std::map<std::string_view, std::string_view> meanings = {{module->prefix, module->name}};
  if (!module->belongsTo.empty()) meanings[module->prefix] = module->belongsTo;
  for (const Import& import : module->imports) {
    CheckDeclaration(report, import.statement, import.prefix, import.target);
    const auto entered = meanings.emplace(import.prefix, import.module);
    if (import.prefix.empty() || entered.second || entered.first->second == import.module) continue;
    AddFinding(report, Severity::kFatal, "name", import.statement,
               "the prefix \"" + import.prefix + "\" stands for module \"" +
                   std::string(entered.first->second) + "\" already",
               "take another prefix");
  }
}

// What is wrong elsewhere in a file that was looked up is nobody's concern here, unless
// something that should stand there is missed.
JobState StateOf(const Report& report, const Module* module) {
  JobState state = JobState::kDone;
  for (const Finding& finding : report.findings) {
    const bool isElsewhere = module != nullptr && finding.place.file != module->file;
    if (isElsewhere) continue;
    if (finding.severity == Severity::kFatal) return JobState::kStopped;
    state = JobState::kLost;
  }
  return state;
}

void Convert(const ConvertRequest& request, JobResult* result) {
  const std::unique_ptr<Session> session = OpenSession();
  Report report;
  Repository repository;
  repository.session = session.get();
  repository.report = &report;
  AddSearchFolder(&repository, FolderOf(request.file), false);
  for (const std::string& folder : request.folders) {
    if (AddSearchFolder(&repository, folder, false)) continue;
    result->state = JobState::kNoFolder;
    result->detail = folder;
    return;
  }
  Module* module = request.text != nullptr
                       ? ReadModuleText(session.get(), request.file, *request.text, &report)
                       : ReadModuleFile(session.get(), request.file, FileOrigin::kNamed, &report);
  if (module != nullptr) {
    FindImports(&repository, module);
    FindOwner(&repository, module);
    if (module->belongsTo.empty() && !module->extensions.empty())
      FindSubmodules(&repository, module);
    BindPrefixes(session.get(), module, &report);
    ReportUnknown(*session, *module, &report);
    CheckDeclarations(module, &report);
  }
  result->state = StateOf(report, module);
  if (result->state != JobState::kDone) result->findings = FindingLines(*session, report);
  if (module != nullptr && result->state != JobState::kStopped)
    result->modules.push_back({module->name, module->file->path, WriteYin(*module)});
}

}  // namespace

JobResult ConvertFile(const ConvertRequest& request) {
  JobResult result;
  try {
    Convert(request, &result);
  } catch (const std::bad_alloc&) {
    result = JobResult();
    result.state = JobState::kNoMemory;
  }
  return result;
}

}  // namespace compiler
