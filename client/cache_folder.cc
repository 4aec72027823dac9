// SPDX-License-Identifier: BSD-3-Clause
// Entries are files named by sixteen hexadecimal digits. One is written beside its place
// and renamed, so that a process sees a whole entry or none, whatever others do. The
// folder is reached by its descriptor alone, and no link in it is followed. The time of
// an entry's last change is that of its last use.
#include "client/cache_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <vector>

namespace {

constexpr uint64_t kMaxBytes = uint64_t{256} << 20;
constexpr size_t kDigits = 16;
constexpr std::string_view kUnfinished = ".new";  // behind the digits

std::string NameOf(uint64_t id) {
  char digits[kDigits + 1];
  static_cast<void>(std::snprintf(digits, sizeof(digits), "%016" PRIx64, id));
  return digits;
}

// Files of other names are nobody's business here.
bool IsOurs(std::string_view name) {
  const std::string_view digits = name.substr(0, kDigits);
  const std::string_view rest = name.substr(digits.size());
  return digits.size() == kDigits &&
         digits.find_first_not_of("0123456789abcdef") == std::string_view::npos &&
         (rest.empty() || rest == kUnfinished);
}

// The user's folder for caches; empty: none is known. What is not absolute counts as unset.
std::string BaseFolder() {
  const char* base = std::getenv("XDG_CACHE_HOME");
  if (base != nullptr && base[0] == '/') return base;
  const char* home = std::getenv("HOME");
  return home != nullptr && home[0] == '/' ? std::string(home) + "/.cache" : std::string();
}

bool IsPrivateFolder(int fd) {
  struct stat info {};
  return fstat(fd, &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
         (info.st_mode & 0777) == 0700;
}

bool IsOwnFile(const struct stat& info) {
  return S_ISREG(info.st_mode) && info.st_uid == geteuid() && info.st_size >= 0 &&
         static_cast<uint64_t>(info.st_size) <= kMaxBytes;
}

bool ReadBytes(int fd, size_t size, std::string* content) {
  content->resize(size);
  size_t done = 0;
  while (done < size) {
    const ssize_t length = read(fd, content->data() + done, size - done);
    if (length <= 0) return false;
    done += static_cast<size_t>(length);
  }
  return true;
}

bool WriteBytes(int fd, std::string_view content) {
  while (!content.empty()) {
    const ssize_t length = write(fd, content.data(), content.size());
    if (length <= 0) return false;
    content.remove_prefix(static_cast<size_t>(length));
  }
  return true;
}

// Closed on every way out.
class OpenFile {
 public:
  explicit OpenFile(int fd) : fd_(fd) {}
  ~OpenFile() { static_cast<void>(close(fd_)); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

 private:
  int fd_;
};

struct CloseFolder {
  void operator()(DIR* folder) const noexcept { static_cast<void>(closedir(folder)); }
};

struct Entry {
  std::string name;
  struct timespec used {};
  uint64_t size = 0;
};

std::vector<Entry> ListEntries(int folder) {
  std::vector<Entry> entries;
  const int fd = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return entries;
  const std::unique_ptr<DIR, CloseFolder> listing(fdopendir(fd));
  if (listing == nullptr) {
    static_cast<void>(close(fd));
    return entries;
  }
  while (const dirent* file = readdir(listing.get())) {
    struct stat info {};
    if (!IsOurs(file->d_name) || fstatat(folder, file->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(info.st_mode)) {
      continue;
    }
    entries.push_back({file->d_name, info.st_mtim, static_cast<uint64_t>(info.st_size)});
  }
  return entries;
}

// Removes the entries least recently used until the others leave room for `size` bytes.
void MakeRoom(int folder, uint64_t size) {
  std::vector<Entry> entries = ListEntries(folder);
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return std::tie(a.used.tv_sec, a.used.tv_nsec, a.name) <
           std::tie(b.used.tv_sec, b.used.tv_nsec, b.name);
  });
  for (const Entry& entry : entries) size += entry.size;
  for (size_t i = 0; i < entries.size() && size > kMaxBytes; ++i) {
    static_cast<void>(unlinkat(folder, entries[i].name.c_str(), 0));
    size -= entries[i].size;
  }
}

}  // namespace

CacheFolder::~CacheFolder() {
  if (fd_ >= 0) static_cast<void>(close(fd_));
}

bool CacheFolder::Open() {
  const std::string path = BaseFolder();
  if (path.empty()) return false;
  static_cast<void>(mkdir(path.c_str(), 0700));
  const int base = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (base < 0) return false;
  static_cast<void>(mkdirat(base, "qmodel", 0700));
  fd_ = openat(base, "qmodel", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  static_cast<void>(close(base));
  return fd_ >= 0 && IsPrivateFolder(fd_);
}

bool CacheFolder::Read(uint64_t id, std::string* content) const {
  const int fd =
      openat(fd_, NameOf(id).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) return false;
  const OpenFile file(fd);
  struct stat info {};
  const bool done = fstat(fd, &info) == 0 && IsOwnFile(info) &&
                    ReadBytes(fd, static_cast<size_t>(info.st_size), content);
  if (done) static_cast<void>(futimens(fd, nullptr));
  return done;
}

void CacheFolder::Write(uint64_t id, std::string_view content) const {
  uint64_t random = 0;
  if (content.size() > kMaxBytes || getrandom(&random, sizeof(random), 0) != sizeof(random)) return;
  const std::string unfinished = NameOf(random).append(kUnfinished);
  const std::string whole = NameOf(id);  // memory may be refused, and not with a file begun
  MakeRoom(fd_, content.size());
  const int fd =
      openat(fd_, unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (fd < 0) return;
  bool done = WriteBytes(fd, content);
  done = close(fd) == 0 && done;
  done = done && renameat(fd_, unfinished.c_str(), fd_, whole.c_str()) == 0;
  if (!done) static_cast<void>(unlinkat(fd_, unfinished.c_str(), 0));
  MakeRoom(fd_, 0);  // others may have written meanwhile
}
