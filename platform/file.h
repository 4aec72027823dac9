// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

// Files and directories. All functions accept what the C library accepts; a
// NULL handle gives the failure value.

struct RtkVfsFile;
struct RtkVfsFind;

extern "C" {
RtkVfsFile* RTK_VFS_FOpen(const char* path, const char* mode);
uint32_t RTK_VFS_SetBufMode(RtkVfsFile* file, uint32_t mode);
int32_t RTK_VFS_FSeek(RtkVfsFile* file, long offset, int32_t origin);
long RTK_VFS_FTell(RtkVfsFile* file);
size_t RTK_VFS_FRead(void* buffer, size_t size, size_t count, RtkVfsFile* file);
int32_t RTK_VFS_FClose(RtkVfsFile* file);
uint32_t RTK_VFS_IsFileExist(const char* path);
uint32_t RTK_VFS_IsDirExist(const char* path);
RtkVfsFind* RTK_VFS_FindFirst(const char* pattern, char* nameOut, uint32_t nameSize);
uint32_t RTK_VFS_FindNext(RtkVfsFind* find, char* nameOut, uint32_t nameSize);
void RTK_VFS_FindClose(RtkVfsFind* find);
}
