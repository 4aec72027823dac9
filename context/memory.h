// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <pthread.h>

#include <cstddef>
#include <cstdint>

#include <qmodel/memory.h>

#include "context/internal.h"
#include "platform/hooks.h"

// 1 once hooks were registered, which happens once per process at most.
extern uint32_t g_qmMemRegistered;
// Guards the registration, and nothing else: the hooks are read without a lock.
extern pthread_mutex_t g_qmMemMutex;

// A zero-filled block for one record, or NULL.
void* AllocZeroed(size_t size);

template <typename Record>
Record* NewRecord() {
  return static_cast<Record*>(AllocZeroed(sizeof(Record)));
}

// Frees *field and sets it to NULL, so that no later release can meet it again.
template <typename Block>
void FreeAndNull(Block** field) {
  g_qmMemFreeFunc(*field);
  *field = nullptr;
}

QM_BEGIN_INTERNAL_DECLS

// Stores the three hooks, or gives 17 when some are stored already. To be called
// with g_qmMemMutex locked.
uint32_t QM_MemRegisterHandleInner(QmMallocFunc mallocFunc, QmReallocFunc reallocFunc,
                                   QmFreeFunc freeFunc);

QM_END_INTERNAL_DECLS
