// SPDX-License-Identifier: BSD-3-Clause
// Error records as clients make, fill and read them. The records are those of validation,
// so that an agent answers its own errors and the library's through the same functions;
// only here may a text be set a second time.
#include "agent/record.h"

#include <iterator>

#include <qmodel/agent.h>

#include "context/memory.h"
#include "context/string.h"
#include "context/table.h"

namespace {
struct Field {
  uint32_t number;
  char* QmErrNode::*text;
};

// What a message that could not be parsed is answered with.
struct Answer {
  uint32_t reason;
  uint32_t tag;
};
}  // namespace

constexpr Field kFields[] = {{QM_AGENT_FIELD_APP_TAG, &QmErrNode::errorAppTag},
                             {QM_AGENT_FIELD_PATH, &QmErrNode::errorPath},
                             {QM_AGENT_FIELD_MESSAGE, &QmErrNode::errorMessage},
                             {QM_AGENT_FIELD_BAD_ATTRIBUTE, &QmErrNode::badAttribute},
                             {QM_AGENT_FIELD_BAD_ELEMENT, &QmErrNode::badElement},
                             {QM_AGENT_FIELD_BAD_NAMESPACE, &QmErrNode::badNamespace},
                             {QM_AGENT_FIELD_SESSION_ID, &QmErrNode::sessionId},
                             {QM_AGENT_FIELD_MISSING_CHOICE, &QmErrNode::missingChoice}};
static_assert(RowsStandAtTheir<&Field::number>(kFields, QM_AGENT_FIELD_APP_TAG));
static_assert(std::size(kFields) + QM_AGENT_FIELD_APP_TAG == QM_AGENT_FIELD_COUNT, "a row each");

constexpr Answer kAnswers[] = {{QM_AGENT_REASON_WRONG_CALL, QM_ERR_TAG_OPERATION_FAILED},
                               {QM_AGENT_REASON_NO_MEMORY, QM_ERR_TAG_RESOURCE_DENIED},
                               {QM_AGENT_REASON_TOO_BIG, QM_ERR_TAG_TOO_BIG},
                               {QM_AGENT_REASON_TOO_DEEP, QM_ERR_TAG_TOO_BIG},
                               {QM_AGENT_REASON_TOO_MANY, QM_ERR_TAG_TOO_BIG},
                               {QM_AGENT_REASON_NOT_UTF8, QM_ERR_TAG_MALFORMED_MESSAGE},
                               {QM_AGENT_REASON_DOCUMENT_TYPE, QM_ERR_TAG_MALFORMED_MESSAGE},
                               {QM_AGENT_REASON_NOT_XML, QM_ERR_TAG_MALFORMED_MESSAGE}};
static_assert(RowsStandAtTheir<&Answer::reason>(kAnswers, QM_AGENT_REASON_WRONG_CALL));

// The place of a record's text; NULL for what is no field.
static char** TextOf(QmErrNode* err, uint32_t field) {
  if (err == nullptr || field < QM_AGENT_FIELD_APP_TAG || field >= QM_AGENT_FIELD_COUNT) {
    return nullptr;
  }
  return &(err->*kFields[field - QM_AGENT_FIELD_APP_TAG].text);
}

QmErrNode* NewMessageRecord(uint32_t type, uint32_t tag, const char* message) {
  QmErrNode* err = QM_AGENT_NewRecord(type, tag);
  if (err == nullptr || QM_AGENT_SetRecordText(err, QM_AGENT_FIELD_MESSAGE, message) == QM_OK) {
    return err;
  }
  QM_FreeErrNode(err);
  return nullptr;
}

QmErrNode* QM_AGENT_NewRecord(uint32_t type, uint32_t tag) noexcept {
  if (QM_AGENT_GetTypeName(type) == nullptr || QM_AGENT_GetTagName(tag) == nullptr) return nullptr;
  auto* err = NewRecord<QmErrNode>();
  if (err == nullptr) return nullptr;
  err->errorType = type;
  err->errorSeverity = QM_ERR_SEVERITY_ERROR;
  err->errorTag = tag;
  return err;
}

QmErrNode* QM_AGENT_NewReasonRecord(uint32_t reason) noexcept {
  for (const Answer& answer : kAnswers) {
    if (answer.reason != reason) continue;
    return NewMessageRecord(QM_ERR_TYPE_RPC, answer.tag, QM_AGENT_GetReasonText(reason));
  }
  return nullptr;
}

uint32_t QM_AGENT_SetRecordText(QmErrNode* err, uint32_t field, const char* text) noexcept {
  char** place = TextOf(err, field);
  if (place == nullptr) return QM_INVALID;
  char* copy = QM_UTL_StrDup(text);
  if (copy == nullptr && text != nullptr) return QM_NO_MEMORY;
  g_qmMemFreeFunc(*place);
  *place = copy;
  return QM_OK;
}

const char* QM_AGENT_GetRecordText(const QmErrNode* err, uint32_t field) noexcept {
  if (err == nullptr || field < QM_AGENT_FIELD_APP_TAG || field >= QM_AGENT_FIELD_COUNT) {
    return nullptr;
  }
  return err->*kFields[field - QM_AGENT_FIELD_APP_TAG].text;
}
