// SPDX-License-Identifier: BSD-3-Clause
// A message through the kit: parsed, validated as a request and as a notification, and its
// record written. A request that is valid once is valid again, and a record is XML.
#include <libxml/parser.h>

#include <cstdlib>

#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"

static void Ignore(void* /*context*/, xmlErrorPtr /*error*/) {}

// Writes the record into a buffer that just holds it, and reads it back.
static void CheckRecord(QmCtx* ctx, const QmErrNode* err) {
  const size_t length = QM_AGENT_PrintRecord(err, ctx, 0, nullptr, 0);
  auto* text = static_cast<char*>(std::malloc(length + 1));
  if (QM_AGENT_PrintRecord(err, ctx, 0, text, length + 1) != length) std::abort();
  xmlSetStructuredErrorFunc(nullptr, Ignore);
  xmlDoc* doc = xmlParseMemory(text, static_cast<int>(length));
  if (doc == nullptr) std::abort();
  xmlFreeDoc(doc);
  std::free(text);
}

static uint32_t Validate(QmCtx* ctx, xmlNode* root, bool isRequest) {
  QmErrNode* err = nullptr;
  const uint32_t verdict = isRequest ? QM_AGENT_ValidateRequest(ctx, root, nullptr, nullptr, &err)
                                     : QM_AGENT_ValidateNotification(ctx, root, &err);
  if ((verdict == QM_AGENT_INVALID) != (err != nullptr)) std::abort();
  if (err != nullptr) CheckRecord(ctx, err);
  QM_FreeErrNode(err);
  return verdict;
}

void FuzzOne(const FuzzInput& input) {
  const QmAgentLimits limits = {0, (input.flags & 0x80) != 0 ? 8u : 0u};
  uint32_t reason = QM_AGENT_REASON_NONE;
  QmCtx* ctx = LoadFixedModel();
  xmlDoc* doc = QM_AGENT_ParseMessage(input.text, input.length, &limits, &reason);
  if ((doc == nullptr) == (reason == QM_AGENT_REASON_NONE)) std::abort();
  xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc);
  for (const bool isRequest : {true, false}) {
    const uint32_t first = Validate(ctx, root, isRequest);
    // What was removed from a notification may have held up the rest of it.
    if (!isRequest || first != QM_AGENT_VALID) continue;
    if (Validate(ctx, root, isRequest) == QM_AGENT_INVALID) std::abort();
  }
  xmlFreeDoc(doc);
  QM_CTX_Delete(ctx);
}
