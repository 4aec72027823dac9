// SPDX-License-Identifier: BSD-3-Clause
// The names that stand for numbers: those of RFC 6241 (section 4.3 and appendix A) in
// error records, the statements of RFC 7950 for kinds of nodes, its section 4.2.4 for
// built-in types, and the texts of statuses and reasons. Each table has a row for every
// number of its enumeration, at the number's place.
#include <cstddef>
#include <iterator>

#include <qmodel/agent.h>
#include <qmodel/schema.h>
#include <qmodel/types.h>
#include <qmodel/version.h>

#include "context/memory.h"
#include "context/table.h"

namespace {
struct Name {
  uint32_t number;
  const char* name;
};
}  // namespace

constexpr Name kTypes[] = {{QM_ERR_TYPE_TRANSPORT, "transport"},
                           {QM_ERR_TYPE_RPC, "rpc"},
                           {QM_ERR_TYPE_PROTOCOL, "protocol"},
                           {QM_ERR_TYPE_APPLICATION, "application"}};
static_assert(RowsStandAtTheir<&Name::number>(kTypes, QM_ERR_TYPE_TRANSPORT));

constexpr Name kSeverities[] = {{QM_ERR_SEVERITY_ERROR, "error"},
                                {QM_ERR_SEVERITY_WARNING, "warning"}};
static_assert(RowsStandAtTheir<&Name::number>(kSeverities, QM_ERR_SEVERITY_ERROR));

constexpr Name kTags[] = {{QM_ERR_TAG_IN_USE, "in-use"},
                          {QM_ERR_TAG_INVALID_VALUE, "invalid-value"},
                          {QM_ERR_TAG_TOO_BIG, "too-big"},
                          {QM_ERR_TAG_MISSING_ATTRIBUTE, "missing-attribute"},
                          {QM_ERR_TAG_BAD_ATTRIBUTE, "bad-attribute"},
                          {QM_ERR_TAG_UNKNOWN_ATTRIBUTE, "unknown-attribute"},
                          {QM_ERR_TAG_MISSING_ELEMENT, "missing-element"},
                          {QM_ERR_TAG_BAD_ELEMENT, "bad-element"},
                          {QM_ERR_TAG_UNKNOWN_ELEMENT, "unknown-element"},
                          {QM_ERR_TAG_UNKNOWN_NAMESPACE, "unknown-namespace"},
                          {QM_ERR_TAG_ACCESS_DENIED, "access-denied"},
                          {QM_ERR_TAG_LOCK_DENIED, "lock-denied"},
                          {QM_ERR_TAG_RESOURCE_DENIED, "resource-denied"},
                          {QM_ERR_TAG_ROLLBACK_FAILED, "rollback-failed"},
                          {QM_ERR_TAG_DATA_EXISTS, "data-exists"},
                          {QM_ERR_TAG_DATA_MISSING, "data-missing"},
                          {QM_ERR_TAG_OPERATION_NOT_SUPPORTED, "operation-not-supported"},
                          {QM_ERR_TAG_OPERATION_FAILED, "operation-failed"},
                          {QM_ERR_TAG_PARTIAL_OPERATION, "partial-operation"},
                          {QM_ERR_TAG_MALFORMED_MESSAGE, "malformed-message"}};
static_assert(RowsStandAtTheir<&Name::number>(kTags, QM_ERR_TAG_IN_USE));

constexpr Name kKinds[] = {{QMS_NODE_CONTAINER, "container"},
                           {QMS_NODE_LEAF, "leaf"},
                           {QMS_NODE_LEAF_LIST, "leaf-list"},
                           {QMS_NODE_LIST, "list"},
                           {QMS_NODE_CHOICE, "choice"},
                           {QMS_NODE_CASE, "case"},
                           {QMS_NODE_ANYDATA, "anydata"},
                           {QMS_NODE_ANYXML, "anyxml"},
                           {QMS_NODE_ACTION, "action"},
                           {QMS_NODE_RPC, "rpc"},
                           {QMS_NODE_NOTIFICATION, "notification"},
                           {QMS_NODE_INPUT, "input"},
                           {QMS_NODE_OUTPUT, "output"},
                           {QMS_NODE_AUGMENT, "augment"}};
static_assert(RowsStandAtTheir<&Name::number>(kKinds, QMS_NODE_CONTAINER));
static_assert(std::size(kKinds) + QMS_NODE_CONTAINER == QMS_NODE_KIND_COUNT, "a row per kind");

constexpr Name kBaseTypes[] = {{QMT_BASE_BINARY, "binary"},
                               {QMT_BASE_BITS, "bits"},
                               {QMT_BASE_BOOLEAN, "boolean"},
                               {QMT_BASE_DECIMAL64, "decimal64"},
                               {QMT_BASE_EMPTY, "empty"},
                               {QMT_BASE_ENUMERATION, "enumeration"},
                               {QMT_BASE_IDENTITYREF, "identityref"},
                               {QMT_BASE_INSTANCE_IDENTIFIER, "instance-identifier"},
                               {QMT_BASE_INT8, "int8"},
                               {QMT_BASE_INT16, "int16"},
                               {QMT_BASE_INT32, "int32"},
                               {QMT_BASE_INT64, "int64"},
                               {QMT_BASE_LEAFREF, "leafref"},
                               {QMT_BASE_STRING, "string"},
                               {QMT_BASE_UINT8, "uint8"},
                               {QMT_BASE_UINT16, "uint16"},
                               {QMT_BASE_UINT32, "uint32"},
                               {QMT_BASE_UINT64, "uint64"},
                               {QMT_BASE_UNION, "union"}};
static_assert(RowsStandAtTheir<&Name::number>(kBaseTypes, QMT_BASE_BINARY));
static_assert(std::size(kBaseTypes) + QMT_BASE_BINARY == QMT_BASE_COUNT, "a row per type");

constexpr Name kReasons[] = {
    {QM_AGENT_REASON_NONE, "The message was parsed."},
    {QM_AGENT_REASON_WRONG_CALL, "There is no message."},
    {QM_AGENT_REASON_NO_MEMORY, "There is no memory for the message."},
    {QM_AGENT_REASON_TOO_BIG, "The message is too long."},
    {QM_AGENT_REASON_TOO_DEEP, "Elements of the message are nested too deeply."},
    {QM_AGENT_REASON_TOO_MANY, "An element has too many attributes or namespaces."},
    {QM_AGENT_REASON_NOT_UTF8, "The message is not encoded in UTF-8."},
    {QM_AGENT_REASON_DOCUMENT_TYPE, "The message has a document type declaration."},
    {QM_AGENT_REASON_NOT_XML, "The message is not well-formed XML."}};
static_assert(RowsStandAtTheir<&Name::number>(kReasons));

#define QM_STATUS_ROW_(name, number, text) {name, text},
// Statuses have gaps, so this table is searched.
constexpr Name kStatuses[] = {
    QM_STATUS_LIST(QM_STATUS_ROW_){QM_MINUS_ONE, "a statement was refused"}};
#undef QM_STATUS_ROW_

template <size_t Count>
static const char* NameAt(const Name (&table)[Count], uint32_t number) {
  const uint32_t first = table[0].number;
  return number >= first && number - first < Count ? table[number - first].name : nullptr;
}

void QM_AGENT_Free(void* block) noexcept {
  g_qmMemFreeFunc(block);
}

const char* QM_AGENT_GetTagName(uint32_t tag) noexcept {
  return NameAt(kTags, tag);
}

const char* QM_AGENT_GetTypeName(uint32_t type) noexcept {
  return NameAt(kTypes, type);
}

const char* QM_AGENT_GetSeverityName(uint32_t severity) noexcept {
  return NameAt(kSeverities, severity);
}

const char* QM_AGENT_GetKindName(uint32_t kind) noexcept {
  return NameAt(kKinds, kind);
}

const char* QM_AGENT_GetBaseTypeName(uint32_t base) noexcept {
  return NameAt(kBaseTypes, base);
}

const char* QM_AGENT_GetReasonText(uint32_t reason) noexcept {
  return NameAt(kReasons, reason);
}

const char* QM_AGENT_GetStatusText(uint32_t status) noexcept {
  for (const Name& row : kStatuses) {
    if (row.number == status) return row.name;
  }
  return nullptr;
}

const char* QM_AGENT_GetVersion() noexcept {
  return QM_VERSION_STRING;
}
