// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/memory.h>

// Every block of the library, this layer's included, is made and released
// through these three. They start as the C library's functions and change at
// most once, before the first context is created; registration is the business
// of context/memory.
extern QmMallocFunc g_qmMemMallocFunc;
extern QmReallocFunc g_qmMemReAllocFunc;
extern QmFreeFunc g_qmMemFreeFunc;
