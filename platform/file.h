// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

// Files and directories. A NULL handle or path gives the failure value. The
// handles are blocks of the memory hooks.

struct RtkVfsFile;
struct RtkVfsFind;

// Buffering of an open file.
enum RtkVfsBufMode : uint32_t {
  RTK_VFS_UNBUFFERED = 0,
  RTK_VFS_FULLY_BUFFERED = 1,
  RTK_VFS_LINE_BUFFERED = 2
};

extern "C" {
// Opens a regular file for reading, symbolic links followed. `mode` is "r"; nothing
// is ever written. NULL when it cannot be opened or is anything else: it may have
// become a FIFO since RTK_VFS_IsFileExist(), and the call never waits for a writer.
// Closed with RTK_VFS_FClose().
RtkVfsFile* RTK_VFS_FOpen(const char* path, const char* mode);
// Takes a RtkVfsBufMode, before the first read. 0, or 22 when it is refused.
uint32_t RTK_VFS_SetBufMode(RtkVfsFile* file, uint32_t mode);
// Moves the position; `origin` 0 counts from the start, 1 from the position, 2
// from the end. 0, or -1 on failure.
int32_t RTK_VFS_FSeek(RtkVfsFile* file, long offset, int32_t origin);
// The position in bytes, or -1.
long RTK_VFS_FTell(RtkVfsFile* file);
// Reads `count` items of `size` bytes; gives the number of whole items read.
size_t RTK_VFS_FRead(void* buffer, size_t size, size_t count, RtkVfsFile* file);
// Closes the file and frees the handle. 0, or -1 on failure.
int32_t RTK_VFS_FClose(RtkVfsFile* file);

// 1 for a regular file, symbolic links followed; else 0. A directory is none: a
// seek to its end would report a size that no buffer can hold.
uint32_t RTK_VFS_IsFileExist(const char* path);
// 1 for a directory, symbolic links followed; else 0.
uint32_t RTK_VFS_IsDirExist(const char* path);

// Lists the names in one directory that match the part of `pattern` after its
// last "/", in which "*" and "?" are wildcards; the part before it is taken as
// it stands. Names come in the order of the directory's listing, whatever they
// name; one that does not fit into `nameOut` is passed over. FindFirst gives NULL
// when nothing matches, else a handle for RTK_VFS_FindNext(), which gives 0 with
// the next name or 2 after the last; RTK_VFS_FindClose() ends the search.
RtkVfsFind* RTK_VFS_FindFirst(const char* pattern, char* nameOut, uint32_t nameSize);
uint32_t RTK_VFS_FindNext(RtkVfsFind* find, char* nameOut, uint32_t nameSize);
void RTK_VFS_FindClose(RtkVfsFind* find);
}
