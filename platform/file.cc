// SPDX-License-Identifier: BSD-3-Clause
// Files through the C library, directories through POSIX. A search keeps the
// open directory and a copy of the wildcard part of its pattern; matching is
// fnmatch() without escapes, so a backslash is a character like any other.
#include "platform/file.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include <qmodel/error.h>

#include "platform/bounds.h"
#include "platform/hooks.h"
#include "platform/string.h"

struct RtkVfsFile {
  std::FILE* stream;
};

struct RtkVfsFind {
  DIR* dir;
  char* glob;  // owned; what names have to match
};

// What stands at the path may have become something else since it was looked at. A
// FIFO without a writer would hold up the caller for ever, so nothing is waited for,
// and what was opened is asked once more.
static std::FILE* OpenRegularFile(const char* path) {
  const int fd = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) return nullptr;
  struct stat info;
  if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
    std::FILE* stream = fdopen(fd, "r");
    if (stream != nullptr) return stream;
  }
  close(fd);
  return nullptr;
}

RtkVfsFile* RTK_VFS_FOpen(const char* path, const char* mode) {
  if (path == nullptr || mode == nullptr || std::strcmp(mode, "r") != 0) return nullptr;
  auto* file = static_cast<RtkVfsFile*>(TakeBlock(sizeof(RtkVfsFile)));
  if (file == nullptr) return nullptr;
  file->stream = OpenRegularFile(path);
  if (file->stream != nullptr) return file;
  g_qmMemFreeFunc(file);
  return nullptr;
}

uint32_t RTK_VFS_SetBufMode(RtkVfsFile* file, uint32_t mode) {
  constexpr int kModes[] = {_IONBF, _IOFBF, _IOLBF};
  if (file == nullptr || mode > RTK_VFS_LINE_BUFFERED) return QM_INVALID;
  return std::setvbuf(file->stream, nullptr, kModes[mode], BUFSIZ) == 0 ? QM_OK : QM_INVALID;
}

int32_t RTK_VFS_FSeek(RtkVfsFile* file, long offset, int32_t origin) {
  constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  if (file == nullptr || origin < 0 || origin > 2) return -1;
  return std::fseek(file->stream, offset, kOrigins[origin]) == 0 ? 0 : -1;
}

long RTK_VFS_FTell(RtkVfsFile* file) {
  return file != nullptr ? std::ftell(file->stream) : -1;
}

size_t RTK_VFS_FRead(void* buffer, size_t size, size_t count, RtkVfsFile* file) {
  if (buffer == nullptr || file == nullptr) return 0;
  return std::fread(buffer, size, count, file->stream);
}

int32_t RTK_VFS_FClose(RtkVfsFile* file) {
  if (file == nullptr) return -1;
  const int ret = std::fclose(file->stream);
  g_qmMemFreeFunc(file);
  return ret == 0 ? 0 : -1;
}

// The file type bits of what `path` leads to; 0 when there is nothing.
static mode_t FileType(const char* path) {
  struct stat info;
  if (path == nullptr || stat(path, &info) != 0) return 0;
  return info.st_mode & S_IFMT;
}

uint32_t RTK_VFS_IsFileExist(const char* path) {
  return FileType(path) == S_IFREG ? 1 : 0;
}

uint32_t RTK_VFS_IsDirExist(const char* path) {
  return FileType(path) == S_IFDIR ? 1 : 0;
}

// Opens the directory that the pattern names before its last slash: "/" for a
// slash at the start only, the current one without a slash.
static DIR* OpenDirOfPattern(const char* pattern, const char* lastSlash) {
  if (lastSlash == nullptr) return opendir(".");
  if (lastSlash == pattern) return opendir("/");
  char* path = CopyText(pattern, static_cast<size_t>(lastSlash - pattern));
  if (path == nullptr) return nullptr;
  DIR* dir = opendir(path);
  g_qmMemFreeFunc(path);
  return dir;
}

static RtkVfsFind* OpenFind(const char* pattern) {
  auto* find = static_cast<RtkVfsFind*>(TakeBlock(sizeof(RtkVfsFind)));
  if (find == nullptr) return nullptr;
  const char* lastSlash = std::strrchr(pattern, '/');
  const char* glob = lastSlash != nullptr ? lastSlash + 1 : pattern;
  find->glob = CopyText(glob, std::strlen(glob));
  find->dir = find->glob != nullptr ? OpenDirOfPattern(pattern, lastSlash) : nullptr;
  if (find->dir != nullptr) return find;
  RTK_VFS_FindClose(find);
  return nullptr;
}

RtkVfsFind* RTK_VFS_FindFirst(const char* pattern, char* nameOut, uint32_t nameSize) {
  if (pattern == nullptr) return nullptr;
  RtkVfsFind* find = OpenFind(pattern);
  if (find == nullptr) return nullptr;
  if (RTK_VFS_FindNext(find, nameOut, nameSize) == QM_OK) return find;
  RTK_VFS_FindClose(find);
  return nullptr;
}

uint32_t RTK_VFS_FindNext(RtkVfsFind* find, char* nameOut, uint32_t nameSize) {
  if (find == nullptr || nameOut == nullptr) return QM_INVALID;
  while (const dirent* entry = readdir(find->dir)) {
    if (fnmatch(find->glob, entry->d_name, FNM_NOESCAPE) != 0) continue;
    if (strcpy_s(nameOut, nameSize, entry->d_name) == 0) return QM_OK;
  }
  return QM_NOT_FOUND;
}

void RTK_VFS_FindClose(RtkVfsFind* find) {
  if (find == nullptr) return;
  if (find->dir != nullptr) closedir(find->dir);
  g_qmMemFreeFunc(find->glob);
  g_qmMemFreeFunc(find);
}
