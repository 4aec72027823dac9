// SPDX-License-Identifier: BSD-3-Clause
// The part that all commands share: a context with the modules that the command
// line names. The order is fixed: directories, loads, unloads, features. Load
// errors are printed after the loads and again after the unloads.
#include "client/session.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <new>

#include <qmodel/inspect.h>
#include <qmodel/loader.h>
#include <qmodel/schema.h>

#include "client/hints.h"
#include "client/memory_watch.h"
#include "client/shown_text.h"
#include "client/skipped.h"
#include "client/terminal.h"

namespace {

struct Printing {
  const Options& options;
  bool printed = false;
};

// The file that the person who called knows: with -c the one that was compiled.
std::string KnownFile(const Options& options, const char* file) {
  const auto source = options.sources.find(file);
  return ShowControls(source == options.sources.end() ? file : source->second.c_str());
}

std::string LoadErrorLine(const Options& options, const char* module, const char* file,
                          const char* message) {
  std::string line = ShowControls(module) + ": ";
  if (file != nullptr) line += KnownFile(options, file) + ": ";
  return line + ShowControls(message) + "\n";
}

uint32_t PrintLoadError(const char* module, const char* file, const char* message, void* arg) {
  auto* printing = static_cast<Printing*>(arg);
  printing->printed = true;
  const std::string line = LoadErrorLine(printing->options, module, file, message);
  static_cast<void>(std::fputs(line.c_str(), stderr));
  return 0;
}

// True when there was at least one.
bool PrintLoadErrors(QmCtx* ctx, const Options& options) {
  Printing printing{options};
  static_cast<void>(QM_CTX_ScanAllSchemaLoadFail(ctx, kGuarded<PrintLoadError>, &printing));
  return printing.printed;
}

bool AddSearchDir(QmCtx* ctx, const std::string& dir) {
  std::string absolute = dir;
  if (dir.empty() || dir[0] != '/') {
    char cwd[PATH_MAX];
    if (dir.empty() || getcwd(cwd, sizeof(cwd)) == nullptr) {
      PrintError("%s: %s", dir.c_str(), std::strerror(dir.empty() ? ENOENT : errno));
      return false;
    }
    absolute = dir == "." ? cwd : std::string(cwd) + "/" + dir;
  }
  if (QM_CTX_SetSearchDir(ctx, absolute.c_str()) == 0) return true;
  CheckMemory();
  PrintError("%s: not a usable search directory", dir.c_str());
  return false;
}

bool AddSearchDirs(QmCtx* ctx, const Options& options) {
  if (options.searchDirs.empty()) return AddSearchDir(ctx, ".");
  for (const std::string& dir : options.searchDirs) {
    if (!AddSearchDir(ctx, dir)) return false;
  }
  return true;
}

// Errors that alone fail nothing.
void NoteLoadErrors(QmCtx* ctx, const Options& options) {
  if (!options.quiet) PrintLoadErrors(ctx, options);
}

// Runs one load or unload for each name; the first that fails ends it.
bool ForEachModule(QmCtx* ctx, const Options& options, const std::vector<std::string>& names,
                   uint32_t (*step)(QmCtx*, const char*), const char* verb) {
  for (const std::string& name : names) {
    const uint32_t ret = step(ctx, name.c_str());
    if (ret == 0) continue;
    const bool printed = PrintLoadErrors(ctx, options);
    CheckMemory();
    if (!printed) {
      PrintError("module '%s' could not be %s", name.c_str(), verb);
    }
    return false;
  }
  return true;
}

uint32_t Load(QmCtx* ctx, const char* name) {
  const Progress progress("loading");
  return QM_CTX_LoadModule(ctx, name);
}
// Unloading what is not loaded is no error of the library's, but most likely a mistake.
uint32_t Unload(QmCtx* ctx, const char* name) {
  if (QM_CTX_GetModuleByModName(ctx, name) == nullptr) {
    PrintError("module '%s' is not loaded%s", name, DidYouMeanModule(ctx, name).c_str());
  }
  return QM_CTX_UnloadModule(ctx, name);
}

bool LoadNamed(QmCtx* ctx, const Options& options, bool loadOperands) {
  if (!ForEachModule(ctx, options, options.modules, Load, "loaded")) return false;
  if (loadOperands && !ForEachModule(ctx, options, options.operands, Load, "loaded")) return false;
  NoteLoadErrors(ctx, options);
  return true;
}

bool LoadAll(QmCtx* ctx, const Options& options, bool loadOperands) {
  const bool loaded = LoadNamed(ctx, options, loadOperands);
  // What the compiler would spell out is often why a load fails.
  if (loadOperands && !options.compileFirst && !options.quiet) PrintSkipped(options);
  if (!loaded) return false;
  if (options.unloads.empty()) return true;
  if (!ForEachModule(ctx, options, options.unloads, Unload, "unloaded")) return false;
  NoteLoadErrors(ctx, options);
  return true;
}

// A module without a feature refuses "*".
uint32_t EnableAllOf(QmsModule* module, void* /*arg*/) {
  static_cast<void>(QM_MOD_EnableFeature(module, "*"));
  return 0;
}

bool EnableFeatures(QmCtx* ctx, const Options& options) {
  for (const FeatureRef& ref : options.features) {
    if (ref.module.empty()) {
      static_cast<void>(QM_CTX_ScanAllModule(ctx, EnableAllOf, nullptr));
      continue;
    }
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, ref.module.c_str());
    if (module != nullptr && QM_MOD_EnableFeature(module, ref.feature.c_str()) == 0) continue;
    CheckMemory();
    const std::string hint = module == nullptr ? DidYouMeanModule(ctx, ref.module) : std::string();
    PrintError("no feature '%s' in a loaded module '%s'%s", ref.feature.c_str(), ref.module.c_str(),
               hint.c_str());
    if (module == nullptr) HintImport(ctx, options, ref.module);
    return false;
  }
  return true;
}

int Prepare(QmCtx* ctx, const Options& options, bool loadOperands) {
  // One thread, and all messages of a call: there is nothing to be said against it.
  static_cast<void>(QM_CTX_SetKeepPatterns(ctx, 1));
  if (!AddSearchDirs(ctx, options)) return kExitUnusable;
  if (!LoadAll(ctx, options, loadOperands)) return kExitUnusable;
  return EnableFeatures(ctx, options) ? kExitOk : kExitUsage;
}

}  // namespace

Context OpenSession(const Options& options, bool loadOperands, int* status) {
  Context ctx(QM_CTX_Create(options.loadFlags));
  if (ctx == nullptr) throw std::bad_alloc();
  *status = Prepare(ctx.get(), options, loadOperands);
  CheckMemory();
  if (*status != kExitOk) ctx.reset();
  return ctx;
}

int ValidateFiles(const Options& options, ValidateFunc validate) {
  int status = kExitOk;
  const Context ctx = OpenSession(options, false, &status);
  if (ctx == nullptr) return status;
  JsonArray answers;
  const Validation validation{ctx.get(), options, &answers};
  for (const std::string& file : options.operands) {
    status = std::max(status, validate(validation, file));
  }
  if (options.json) answers.Print();
  return status;
}
