// SPDX-License-Identifier: BSD-3-Clause
// qmodel compile: models as they are published into YIN that the library loads. Nothing
// is written before everything is compiled, and a file appears only when it is complete.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>
#include <utility>

#include <qmodel/context.h>

#include "client/commands.h"
#include "client/compile_first.h"
#include "client/file_input.h"
#include "client/interruption.h"
#include "compiler/convert.h"

namespace {

std::string PathIn(const std::string& dir, const compiler::JobModule& module) {
  return dir + "/" + module.name + ".yin";
}

// What tells a file whatever its path.
using FileId = std::pair<dev_t, ino_t>;

// False: there is none.
bool IdentifyFile(const std::string& path, FileId* id) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return false;
  *id = {status.st_dev, status.st_ino};
  return true;
}

// A file that was read is never replaced.
bool WouldReplaceInput(const std::string& dir, const compiler::JobResult& result) {
  FileId id;
  std::set<FileId> read;
  for (const std::string& path : result.filesRead) {
    if (IdentifyFile(path, &id)) read.insert(id);
  }
  for (const compiler::JobModule& module : result.modules) {
    const std::string path = PathIn(dir, module);
    if (!IdentifyFile(path, &id) || !read.contains(id)) continue;
    PrintError("%s was read and is not replaced; choose another folder", path.c_str());
    return true;
  }
  return false;
}

bool WriteAll(int file, const std::string& content) {
  for (size_t at = 0; at < content.size();) {
    const ssize_t written = write(file, content.data() + at, content.size() - at);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    at += static_cast<size_t>(written);
  }
  return true;
}

// The rights that a new file gets: what the caller's mask leaves.
mode_t NewFileMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return static_cast<mode_t>(0666) & ~mask;
}

// A signal that ends the program waits until the file is whole, so that no part is left.
bool ReplaceFile(const std::string& path, const std::string& content) {
  std::string part = path + ".XXXXXX";
  const HoldInterruption held;
  const int file = mkstemp(part.data());
  bool done = file >= 0 && WriteAll(file, content) && fchmod(file, NewFileMode()) == 0;
  int failure = errno;
  if (file >= 0 && close(file) != 0 && done) {
    failure = errno;
    done = false;
  }
  if (done && std::rename(part.c_str(), path.c_str()) != 0) {
    failure = errno;
    done = false;
  }
  if (done) return true;
  if (file >= 0) static_cast<void>(unlink(part.c_str()));
  PrintError("%s: %s", path.c_str(), std::strerror(failure));
  return false;
}

bool IsFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Makes a folder with those around it; false: errno says why not.
bool MakeFolders(const std::string& path) {
  for (size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
    const std::string outer = path.substr(0, end);
    if (!IsFolder(outer) && mkdir(outer.c_str(), 0777) != 0 && errno != EEXIST) return false;
  }
  if (IsFolder(path) || mkdir(path.c_str(), 0777) == 0) return true;
  if (errno != EEXIST) return false;
  errno = ENOTDIR;  // what is there is none, unless another process has just made one
  return IsFolder(path);
}

int WriteToFolder(const std::string& dir, const compiler::JobResult& result) {
  if (result.modules.empty()) return kExitOk;
  if (!MakeFolders(dir)) {
    PrintError("%s: %s", dir.c_str(), std::strerror(errno));
    return kExitUnusable;
  }
  if (WouldReplaceInput(dir, result)) return kExitUsage;
  for (const compiler::JobModule& module : result.modules) {
    if (!ReplaceFile(PathIn(dir, module), module.yin)) return kExitUnusable;
  }
  return kExitOk;
}

int WriteToOutput(const compiler::JobResult& result) {
  for (const compiler::JobModule& module : result.modules) {
    if (std::fwrite(module.yin.data(), 1, module.yin.size(), stdout) != module.yin.size()) {
      return kExitUnusable;
    }
  }
  return kExitOk;
}

int StatusOf(compiler::JobState state) {
  switch (state) {
    case compiler::JobState::kDone:
      return kExitOk;
    case compiler::JobState::kLost:
      return kExitInvalid;
    case compiler::JobState::kNoFeature:
      return kExitUsage;
    default:
      return kExitUnusable;
  }
}

// False, with one line on standard error: the options ask for more than a conversion.
bool CheckConversion(const Options& options) {
  for (const std::string& used : options.used) {
    if (used == "--convert") continue;
    PrintError("option '%s' does not go with '--convert'", used.c_str());
    return false;
  }
  if (options.operands.size() > 1) PrintError("'--convert' takes one FILE");
  return options.operands.size() == 1;
}

int RunConvert(const Options& options) {
  if (!CheckConversion(options)) return kExitUsage;
  compiler::ConvertRequest request;
  request.folders = options.searchDirs;
  request.file = options.operands[0];
  std::string input;
  if (request.file == "-") {
    if (!ReadInput(request.file, &input)) return kExitUnusable;
    request.text = &input;
  }
  const compiler::JobResult result = ConvertFile(request);
  PrintFindings(result);
  return std::max(StatusOf(result.state), WriteToOutput(result));
}

}  // namespace

int RunCompile(const Options& options) {
  if (options.convert) return RunConvert(options);
  for (const FeatureRef& ref : options.features) {
    if (!ref.module.empty()) continue;
    PrintError("a feature is written MODULE:FEATURE, not '*'");
    return kExitUsage;
  }
  const bool withImports = (options.loadFlags & QM_LOAD_IMPORTS) != 0;
  if (options.outputDir.empty() && (withImports || options.operands.size() > 1)) {
    PrintError("several modules are written into a folder only; name one with '-o'");
    return kExitUsage;
  }
  compiler::JobRequest request = MakeRequest(options);
  request.operands = options.operands;
  request.withImports = withImports;
  for (const FeatureRef& ref : options.features) {
    request.options.features.push_back({ref.module, ref.feature});
  }
  const compiler::JobResult result = RunJob(request);
  PrintFindings(result);
  const int written =
      options.outputDir.empty() ? WriteToOutput(result) : WriteToFolder(options.outputDir, result);
  return std::max(StatusOf(result.state), written);
}
