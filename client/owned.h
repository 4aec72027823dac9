// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Owners of what the library and libxml2 make: released on each way out of a function.
#include <libxml/tree.h>

#include <memory>

#include <qmodel/context.h>
#include <qmodel/error.h>

template <auto Free>
struct FreeBy {
  template <typename Record>
  void operator()(Record* record) const noexcept {
    static_cast<void>(Free(record));
  }
};

using Context = std::unique_ptr<QmCtx, FreeBy<QM_CTX_Delete>>;
using ErrorRecord = std::unique_ptr<QmErrNode, FreeBy<QM_FreeErrNode>>;
using XmlDocument = std::unique_ptr<xmlDoc, FreeBy<xmlFreeDoc>>;
