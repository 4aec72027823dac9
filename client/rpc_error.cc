// SPDX-License-Identifier: BSD-3-Clause
// An error record as XML, in the form without bound prefixes, and as JSON.
#include "client/rpc_error.h"

#include <cstdio>
#include <span>

#include <qmodel/agent.h>

#include "client/json.h"

namespace {

struct Field {
  uint32_t field;
  const char* name;
};

constexpr Field kTexts[] = {
    {QM_AGENT_FIELD_APP_TAG, "error-app-tag"},
    {QM_AGENT_FIELD_PATH, "error-path"},
    {QM_AGENT_FIELD_MESSAGE, "error-message"},
};

constexpr Field kInfo[] = {
    {QM_AGENT_FIELD_BAD_ATTRIBUTE, "bad-attribute"},
    {QM_AGENT_FIELD_BAD_ELEMENT, "bad-element"},
    {QM_AGENT_FIELD_BAD_NAMESPACE, "bad-namespace"},
    {QM_AGENT_FIELD_MISSING_CHOICE, "missing-choice"},
};

void AddMember(std::string* json, const char* name, const std::string& value) {
  if (!json->empty()) *json += ", ";
  *json += std::string("\"") + name + "\": " + value;
}

void AddTexts(const QmErrNode* record, std::span<const Field> fields, std::string* json) {
  for (const Field& row : fields) {
    const char* text = QM_AGENT_GetRecordText(record, row.field);
    if (text != nullptr) AddMember(json, row.name, JsonText(text));
  }
}

// What standard output does not take is seen at the end of the program.
uint32_t Print(const char* text, size_t length, void* /*arg*/) {
  static_cast<void>(std::fwrite(text, 1, length, stdout));
  return 0;
}

}  // namespace

void PrintRpcError(const QmErrNode* record) {
  constexpr uint32_t kForm = QM_AGENT_RECORD_INDENTED | QM_AGENT_RECORD_BARE;
  static_cast<void>(QM_AGENT_WriteRecord(record, nullptr, kForm, Print, nullptr));
}

std::string RecordAsJson(const QmErrNode* record) {
  if (record == nullptr) return "null";
  std::string json;
  AddMember(&json, "error-type", JsonOrNull(QM_AGENT_GetTypeName(QM_GetErrorType(record))));
  AddMember(&json, "error-tag", JsonOrNull(QM_AGENT_GetTagName(QM_GetErrorTag(record))));
  AddMember(&json, "error-severity",
            JsonOrNull(QM_AGENT_GetSeverityName(QM_GetErrorSeverity(record))));
  AddTexts(record, kTexts, &json);
  std::string info;
  AddTexts(record, kInfo, &info);
  if (!info.empty()) AddMember(&json, "error-info", "{" + info + "}");
  return "{" + json + "}";
}
