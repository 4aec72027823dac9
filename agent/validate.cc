// SPDX-License-Identifier: BSD-3-Clause
// Validation with a verdict of its own. The run is the one of data/; what is added is
// what stands around a message, and the certainty that a verdict rests on what was read
// and not on what there was no memory to read: when any allocation was refused on the
// way, whether or not a step took notice, the verdict is that there is none.
#include <qmodel/agent.h>

#include "agent/envelope.h"
#include "context/guard.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "data/bind.h"
#include "data/default_list.h"
#include "data/error.h"
#include "data/indexed_run.h"
#include "data/validate.h"
#include "schema/module_nodes.h"
#include "schema/module_registry.h"

namespace {

// One call: what the client handed in, and how much was refused before.
struct Call {
  QmCtx* ctx;
  uint32_t mode;  // QMD_MODE_RPC or QMD_MODE_NOTIF
  QmDefaultNodeFunc defaultCallback;
  void* callbackArg;
  QmErrNode** error;  // may be NULL
  uint32_t refusedBefore;
};

}  // namespace

static uint32_t HandOver(const Call& call, QmErrNode* err) {
  const bool refused = RefusedAllocations() != call.refusedBefore;
  if (refused || err == nullptr) {
    QM_FreeErrNode(err);
    return QM_AGENT_NO_MEMORY;
  }
  if (call.error == nullptr) {
    QM_FreeErrNode(err);
  } else {
    *call.error = err;
  }
  return QM_AGENT_INVALID;
}

// The mark of added elements is a line, so none of the client's may have one.
static void ClearLines(xmlNode* root) {
  for (xmlNode* node = root; node != nullptr; node = NextElement(root, node)) node->line = 0;
}

static bool HasDocumentType(const xmlNode* element) {
  const xmlDoc* doc = element->doc;
  return doc != nullptr && (doc->intSubset != nullptr || doc->extSubset != nullptr);
}

// An rpc holds the rpc of a module, an action holds a data tree. Of what the schema does
// not know, the run says so.
static bool IsMisplaced(const Call& call, const Envelope& envelope) {
  if (!envelope.rpc && !envelope.action) return false;
  const char* ns = QM_XML_GetXmlNodeDefaultNs(envelope.content);
  QmsModule* module = QM_CTX_GetModuleByModNs(call.ctx, ns);
  const QmsNode* node = QMS_MOD_FindTopLevelSchemaNode(module, ElementName(envelope.content));
  return node != nullptr && (node->kind == QMS_NODE_RPC) == envelope.action;
}

static uint32_t Run(QmCheckAux* aux, const Call& call, const Envelope& envelope) {
  const XmlSilence silence;
  aux->topNode = envelope.content->parent;
  if (call.mode == QMD_MODE_RPC && IsMisplaced(call, envelope)) {
    ReportUnexpectedElement(aux, envelope.content);
    return QM_INVALID;
  }
  QMD_PAS_ClearXmlTreePrivate(envelope.content);
  const uint32_t ret = RunWithIndex(aux, envelope.content);
  QMD_PAS_ClearXmlTreePrivate(envelope.content);
  return ret;
}

static uint32_t Judge(const Call& call, const Envelope& envelope) {
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, call.ctx, call.mode, call.defaultCallback, call.callbackArg);
  const uint32_t ret = Run(&aux, call, envelope);
  if (ret != QM_OK) static_cast<void>(RunError(&aux, QM_ERR_TAG_OPERATION_FAILED, nullptr));
  const bool valid = ret == QM_OK && RefusedAllocations() == call.refusedBefore;
  QMD_PAS_ClearDefaultNodeList(&aux, valid ? 1 : 0);
  if (!valid) return HandOver(call, aux.err);
  QM_FreeErrNode(aux.err);
  return QM_AGENT_VALID;
}

static uint32_t Validate(const Call& call, xmlNode* message) {
  if (call.error != nullptr) *call.error = nullptr;
  if (call.ctx == nullptr || !IsElement(message)) return QM_AGENT_WRONG_CALL;
  if (HasDocumentType(message)) {
    return HandOver(call, QM_AGENT_NewReasonRecord(QM_AGENT_REASON_DOCUMENT_TYPE));
  }
  Envelope envelope = {};
  QmErrNode* err = nullptr;
  const uint32_t opened = call.mode == QMD_MODE_RPC ? OpenRequest(message, &envelope, &err)
                                                    : OpenNotification(message, &envelope, &err);
  if (opened != QM_OK) return HandOver(call, err);
  if (envelope.content->parent == nullptr) return QM_AGENT_WRONG_CALL;
  ClearLines(message);
  return Judge(call, envelope);
}

// Hands out the document as text; false without memory for all of it.
static bool Print(xmlDoc* doc, QmAgentOutputFunc output, void* arg) {
  const uint32_t refusedBefore = RefusedAllocations();
  xmlChar* text = nullptr;
  int length = 0;
  {
    const XmlSilence silence;
    xmlDocDumpFormatMemoryEnc(doc, &text, &length, "UTF-8", 1);
  }
  const bool whole = text != nullptr && RefusedAllocations() == refusedBefore;
  if (whole) static_cast<void>(output(XmlText(text), static_cast<size_t>(length), arg));
  if (text != nullptr) xmlFree(text);
  return whole;
}

static uint32_t JudgeReason(const Call& call, uint32_t reason) {
  if (reason == QM_AGENT_REASON_WRONG_CALL) return QM_AGENT_WRONG_CALL;
  if (reason == QM_AGENT_REASON_NO_MEMORY) return QM_AGENT_NO_MEMORY;
  return HandOver(call, QM_AGENT_NewReasonRecord(reason));
}

static uint32_t ValidateText(const Call& call, const char* text, size_t length,
                             const QmAgentLimits* limits, QmAgentOutputFunc output, void* arg) {
  if (call.error != nullptr) *call.error = nullptr;
  if (call.ctx == nullptr) return QM_AGENT_WRONG_CALL;
  uint32_t reason = QM_AGENT_REASON_NONE;
  const QmOwn<FreeParsedDocument> doc(QM_AGENT_ParseMessage(text, length, limits, &reason));
  if (!doc) return JudgeReason(call, reason);
  const uint32_t verdict = Validate(call, xmlDocGetRootElement(doc.Get()));
  if (verdict != QM_AGENT_VALID || output == nullptr) return verdict;
  return Print(doc.Get(), output, arg) ? uint32_t{QM_AGENT_VALID} : uint32_t{QM_AGENT_NO_MEMORY};
}

uint32_t QM_AGENT_ValidateRequest(QmCtx* ctx, xmlNode* request, QmDefaultNodeFunc defaultCallback,
                                  void* callbackArg, QmErrNode** error) noexcept {
  const Call call = {ctx, QMD_MODE_RPC, defaultCallback, callbackArg, error, RefusedAllocations()};
  return Validate(call, request);
}

uint32_t QM_AGENT_ValidateRequestText(QmCtx* ctx, const char* text, size_t length,
                                      const QmAgentLimits* limits, QmAgentOutputFunc output,
                                      void* arg, QmErrNode** error) noexcept {
  const Call call = {ctx, QMD_MODE_RPC, nullptr, nullptr, error, RefusedAllocations()};
  return ValidateText(call, text, length, limits, output, arg);
}

uint32_t QM_AGENT_ValidateNotification(QmCtx* ctx, xmlNode* notification,
                                       QmErrNode** error) noexcept {
  const Call call = {ctx, QMD_MODE_NOTIF, nullptr, nullptr, error, RefusedAllocations()};
  return Validate(call, notification);
}

uint32_t QM_AGENT_ValidateNotificationText(QmCtx* ctx, const char* text, size_t length,
                                           const QmAgentLimits* limits, QmAgentOutputFunc output,
                                           void* arg, QmErrNode** error) noexcept {
  const Call call = {ctx, QMD_MODE_NOTIF, nullptr, nullptr, error, RefusedAllocations()};
  return ValidateText(call, text, length, limits, output, arg);
}
