// SPDX-License-Identifier: BSD-3-Clause
// Not with std::filesystem: its functions that report errors by code promise not to
// throw, and end the process when memory is refused.
#include "compiler/reading/folder_list.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

namespace compiler {

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { static_cast<void>(closedir(folder)); }
};

enum class EntryKind : unsigned char { kFile, kFolder, kOther };

EntryKind KindOf(const std::string& path) noexcept {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return EntryKind::kOther;
  if (S_ISDIR(status.st_mode)) return EntryKind::kFolder;
  if (S_ISLNK(status.st_mode) && stat(path.c_str(), &status) != 0) return EntryKind::kOther;
  return S_ISREG(status.st_mode) ? EntryKind::kFile : EntryKind::kOther;
}

bool IsSelfOrParent(const std::string& name) noexcept {
  return name == "." || name == "..";
}

// Lists one directory; its sub-folders go to `folders`.
bool ListOne(const std::string& folder, std::vector<std::string>* paths,
             std::vector<std::string>* folders) {
  const std::unique_ptr<DIR, CloseFolder> listing(opendir(folder.c_str()));
  if (listing == nullptr) return false;
  const std::string before = folder.ends_with('/') ? folder : folder + "/";
  while (const dirent* entry = readdir(listing.get())) {
    const std::string name = entry->d_name;
    if (IsSelfOrParent(name)) continue;
    std::string path = before + name;
    const EntryKind kind = KindOf(path);
    if (kind == EntryKind::kFile) {
      paths->push_back(std::move(path));
    } else if (kind == EntryKind::kFolder) {
      folders->push_back(std::move(path));
    }
  }
  return true;
}

}  // namespace

bool ListFiles(const std::string& folder, bool recursive, std::vector<std::string>* paths) {
  std::vector<std::string> folders;
  if (!ListOne(folder, paths, &folders)) return false;
  while (recursive && !folders.empty()) {
    const std::string next = std::move(folders.back());
    folders.pop_back();
    static_cast<void>(ListOne(next, paths, &folders));
  }
  return true;
}

}  // namespace compiler
