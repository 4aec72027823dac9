// SPDX-License-Identifier: BSD-3-Clause
// Registration of the memory hooks. It succeeds once per process: a second
// client in the same process must not take over blocks that the first one's
// allocator made.
#include "context/memory.h"

#include <cstring>

#include <qmodel/error.h>

constinit uint32_t g_qmMemRegistered = 0;
constinit pthread_mutex_t g_qmMemMutex = PTHREAD_MUTEX_INITIALIZER;

void* AllocZeroed(size_t size) {
  void* block = TakeBlock(size);
  if (block != nullptr) std::memset(block, 0, size);
  return block;
}

uint32_t QM_MemRegisterHandleInner(QmMallocFunc mallocFunc, QmReallocFunc reallocFunc,
                                   QmFreeFunc freeFunc) {
  if (g_qmMemRegistered != 0) return QM_EXISTS;
  g_qmMemMallocFunc = mallocFunc;
  g_qmMemReAllocFunc = reallocFunc;
  g_qmMemFreeFunc = freeFunc;
  g_qmMemRegistered = 1;
  return QM_OK;
}

uint32_t QM_MemRegisterCallBack(QmMallocFunc mallocFunc, QmReallocFunc reallocFunc,
                                QmFreeFunc freeFunc) noexcept {
  if (mallocFunc == nullptr || reallocFunc == nullptr || freeFunc == nullptr) return QM_INVALID;
  if (pthread_mutex_lock(&g_qmMemMutex) != 0) return QM_LOCK_FAILED;
  const uint32_t ret = QM_MemRegisterHandleInner(mallocFunc, reallocFunc, freeFunc);
  pthread_mutex_unlock(&g_qmMemMutex);
  return ret;
}
