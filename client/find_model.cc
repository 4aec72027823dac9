// SPDX-License-Identifier: BSD-3-Clause
// The library does not tell which file it has read, so the file is looked up in the way
// in which the library does: in each directory the plain file, else the first that the
// listing gives with a revision.
#include "client/find_model.h"

#include <sys/stat.h>

#include <algorithm>

#include "compiler/reading/folder_list.h"

namespace {

std::string FindWithRevision(const std::string& dir, const std::string& name) {
  std::vector<std::string> files;
  if (!compiler::ListFiles(dir, false, &files)) return {};
  std::string start = dir;
  if (!dir.ends_with('/')) start += '/';
  start.append(name).append("@");
  for (const std::string& file : files) {
    if (file.starts_with(start) && file.ends_with(".yin")) return file;
  }
  return {};
}

bool IsThere(const std::string& file) {
  struct stat status {};
  return stat(file.c_str(), &status) == 0;
}

}  // namespace

std::vector<std::string> SearchedDirs(const Options& options) {
  return options.searchDirs.empty() ? std::vector<std::string>{"."} : options.searchDirs;
}

// A name with a slash is no identifier and could lead elsewhere.
std::string FindModelFile(const Options& options, const std::string& name) {
  if (name.find('/') != std::string::npos) return {};
  std::string withRevision;
  for (const std::string& dir : SearchedDirs(options)) {
    std::string plain = dir;
    plain.append("/").append(name).append(".yin");
    if (withRevision.empty() && IsThere(plain)) return plain;
    if (withRevision.empty()) withRevision = FindWithRevision(dir, name);
  }
  return withRevision;
}

std::string ModelName(const std::string& file) {
  const size_t slash = file.rfind('/');
  std::string name = slash == std::string::npos ? file : file.substr(slash + 1);
  name.resize(name.size() - ModelEnding(name).size());
  return name.substr(0, name.find('@'));
}

std::string_view ModelEnding(const std::string& file) {
  if (file.ends_with(".yin")) return ".yin";
  return file.ends_with(".yang") ? ".yang" : "";
}

bool IsSameFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::vector<std::string> ModelNames(const Options& options, std::string_view ending) {
  std::vector<std::string> files;
  const bool recursive = options.recursive;
  for (const std::string& dir : SearchedDirs(options)) {
    static_cast<void>(compiler::ListFiles(dir, recursive, &files));
  }
  std::vector<std::string> names;
  for (const std::string& file : files) {
    if (ModelEnding(file) == ending) names.push_back(ModelName(file));
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}
