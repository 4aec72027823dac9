// SPDX-License-Identifier: BSD-3-Clause
// Error records of validation, after the rpc-error element of RFC 6241 section
// 4.3. The first check that fails makes the record; each field keeps the first
// value that was set, so that a caller further up may name a general cause
// without covering the exact one. All texts are copies of the record's own.
// Without memory a text stays NULL, or the whole record does: the status that a
// check returns is the failure, the record only explains it.

#include "data/error.h"

#include <cstdarg>
#include <cstdio>

#include "context/guard.h"
#include "context/memory.h"
#include "context/string.h"
#include "context/xml_tree.h"
#include "data/error_path.h"

namespace {
constexpr size_t kMaxMessageLength = 10240;
}

static void SetTextOnce(char** field, const char* text) {
  if (*field == nullptr && text != nullptr) *field = QM_UTL_StrDup(text);
}

QmErrNode* QMD_ERR_NewErrNode(QmCheckAux* aux, uint32_t type, uint32_t severity, uint32_t tag,
                              xmlNode* dataNode) {
  auto* err = NewRecord<QmErrNode>();
  if (err == nullptr) return nullptr;
  err->errorType = type;
  err->errorSeverity = severity;
  err->errorTag = tag;
  err->errorPath =
      dataNode == nullptr ? QM_UTL_StrDup("/") : QMD_ERR_GeneralErrorPath(aux, dataNode);
  return err;
}

void QMD_ERR_SetErrorMsg(QmErrNode* err, const char* format, ...) {
  if (err == nullptr || err->errorMessage != nullptr || format == nullptr) return;
  QmHeld<char> work(static_cast<char*>(AllocZeroed(kMaxMessageLength + 1)));
  if (!work) return;
  va_list args;
  va_start(args, format);
  // A longer message is cut, which is no failure.
  const int length = std::vsnprintf(work.Get(), kMaxMessageLength + 1, format, args);
  va_end(args);
  if (length > 0) SetTextOnce(&err->errorMessage, work.Get());
}

void QMD_ERR_SetErrorAppTag(QmErrNode* err, const char* text) {
  if (err != nullptr) SetTextOnce(&err->errorAppTag, text);
}

void QMD_ERR_SetBadElement(QmErrNode* err, const char* text) {
  if (err != nullptr) SetTextOnce(&err->badElement, text);
}

void SetBadNamespace(QmErrNode* err, const char* ns) {
  if (err != nullptr) SetTextOnce(&err->badNamespace, ns);
}

void SetMissingChoice(QmErrNode* err, const char* name) {
  if (err != nullptr) SetTextOnce(&err->missingChoice, name);
}

QmErrNode* RunError(QmCheckAux* aux, uint32_t tag, xmlNode* dataNode) {
  if (aux->err == nullptr) {
    aux->err =
        QMD_ERR_NewErrNode(aux, QM_ERR_TYPE_APPLICATION, QM_ERR_SEVERITY_ERROR, tag, dataNode);
  }
  return aux->err;
}

void ReportUnexpectedElement(QmCheckAux* aux, xmlNode* element) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_UNKNOWN_ELEMENT, element);
  QMD_ERR_SetErrorMsg(err, "Unexpected element: %s.", ElementName(element));
  QMD_ERR_SetBadElement(err, ElementName(element));
}

void ReportConditionFailure(QmCheckAux* aux, xmlNode* element, const char* format) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_OPERATION_FAILED, element);
  QMD_ERR_SetErrorMsg(err, format, ElementName(element));
  QMD_ERR_SetBadElement(err, ElementName(element));
}

uint32_t QM_GetErrorType(const QmErrNode* err) noexcept {
  return err == nullptr ? 0 : err->errorType;
}

uint32_t QM_GetErrorSeverity(const QmErrNode* err) noexcept {
  return err == nullptr ? 0 : err->errorSeverity;
}

uint32_t QM_GetErrorTag(const QmErrNode* err) noexcept {
  return err == nullptr ? 0 : err->errorTag;
}

const char* QM_GetErrorAppTag(const QmErrNode* err) noexcept {
  return err == nullptr ? nullptr : err->errorAppTag;
}

const char* QM_GetErrorPath(const QmErrNode* err) noexcept {
  return err == nullptr ? nullptr : err->errorPath;
}

const char* QM_GetErrorMessage(const QmErrNode* err) noexcept {
  return err == nullptr ? nullptr : err->errorMessage;
}

const char* QM_GetBadElement(const QmErrNode* err) noexcept {
  return err == nullptr ? nullptr : err->badElement;
}

const char* QM_GetBadAttribute(const QmErrNode* err) noexcept {
  return err == nullptr ? nullptr : err->badAttribute;
}

void QM_FreeErrNode(QmErrNode* err) noexcept {
  if (err == nullptr) return;
  g_qmMemFreeFunc(err->errorAppTag);
  g_qmMemFreeFunc(err->errorPath);
  g_qmMemFreeFunc(err->errorMessage);
  g_qmMemFreeFunc(err->badElement);
  g_qmMemFreeFunc(err->badAttribute);
  g_qmMemFreeFunc(err->badNamespace);
  g_qmMemFreeFunc(err->missingChoice);
  g_qmMemFreeFunc(err->sessionId);
  g_qmMemFreeFunc(err);
}
