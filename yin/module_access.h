// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "context/records.h"

// What the type loader reads of the module under construction. The module record
// belongs to a higher layer; its first field is the context, which the record
// itself asserts.
inline QmCtx* ContextOfModule(QmsModule* module) {
  return *static_cast<QmCtx**>(static_cast<void*>(module));
}

inline QmDict* DictOfModule(QmsModule* module) {
  return &ContextOfModule(module)->dict;
}
