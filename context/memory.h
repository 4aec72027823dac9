// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

#include <qmodel/memory.h>

#include "context/internal.h"

// Every block of the library is made and released through these three. They
// change at most once, before the first context is created.
extern QmMallocFunc g_qmMemMallocFunc;
extern QmReallocFunc g_qmMemReAllocFunc;
extern QmFreeFunc g_qmMemFreeFunc;
extern uint32_t g_qmMemRegistered;

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

uint32_t QM_MemRegisterHandleInner(QmMallocFunc mallocFunc, QmReallocFunc reallocFunc,
                                   QmFreeFunc freeFunc);

QM_END_INTERNAL_DECLS
