// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Brackets the declarations of functions that are exported for tools and tests
// but are no part of the public headers: C linkage, default visibility.
#define QM_BEGIN_INTERNAL_DECLS \
  extern "C" {                  \
  _Pragma("GCC visibility push(default)")
#define QM_END_INTERNAL_DECLS   \
  _Pragma("GCC visibility pop") \
  }
