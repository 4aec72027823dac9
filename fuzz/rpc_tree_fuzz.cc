// SPDX-License-Identifier: BSD-3-Clause
// A request as an element tree, validated twice: a tree that is valid once is
// valid again, since what the first run added must satisfy the second.
#include <libxml/parser.h>

#include <cstdlib>

#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"

static void Ignore(void* /*context*/, xmlErrorPtr /*error*/) {}

void FuzzOne(const FuzzInput& input) {
  xmlSetStructuredErrorFunc(nullptr, Ignore);
  xmlKeepBlanksDefault(0);
  xmlDoc* doc = xmlParseMemory(input.text, static_cast<int>(input.length));
  xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc);
  QmCtx* ctx = LoadFixedModel();
  QmErrNode* first = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, root, nullptr, nullptr);
  QmErrNode* second = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, root, nullptr, nullptr);
  // Without a record, either the request was valid or memory was refused.
  const bool refused = ctx == nullptr || root == nullptr;
  if (!refused && first == nullptr && second != nullptr &&
      QM_GetErrorTag(second) != QM_ERR_TAG_OPERATION_FAILED) {
    std::abort();
  }
  QM_FreeErrNode(first);
  QM_FreeErrNode(second);
  QM_CTX_Delete(ctx);
  xmlFreeDoc(doc);
}
