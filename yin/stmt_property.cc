// SPDX-License-Identifier: BSD-3-Clause
//
// The statements that fill one field of a node or of another statement: flag words from
// fixed sets of values, references to features, texts. Arguments are borrowed from the
// document; everything but the key text is interned.
#include "yin/stmt_property.h"

#include <cstdint>

#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "yin/argument.h"
#include "yin/dispatch.h"

namespace {
struct FlagWord {
  const char* word;
  uint16_t bits;
};
}  // namespace

constexpr FlagWord kConfigWords[] = {{"true", QMS_NODE_CONFIG_TRUE | QMS_NODE_CONFIG_OWN},
                                     {"false", QMS_NODE_CONFIG_FALSE | QMS_NODE_CONFIG_OWN}};
constexpr FlagWord kMandatoryWords[] = {{"true", QMS_NODE_MANDATORY_TRUE},
                                        {"false", QMS_NODE_MANDATORY_FALSE}};
constexpr FlagWord kOrderedByWords[] = {{"user", QMS_NODE_ORDERED_BY_USER}, {"system", 0}};
constexpr FlagWord kStatusWords[] = {
    {"current", 0}, {"deprecated", QMS_NODE_DEPRECATED}, {"obsolete", QMS_NODE_OBSOLETE}};

// A node's flag word has 32 bits, that of a deviate 16: a wider write would
// change the counter behind it.
static void AddFlagBits(uint16_t bits, uint32_t parentStmt, void* dest) {
  if (parentStmt == QMS_STMT_DEVIATE) {
    auto* flags = static_cast<uint16_t*>(dest);
    *flags = static_cast<uint16_t>(*flags | bits);
  } else {
    *static_cast<uint32_t*>(dest) |= bits;
  }
}

template <uint32_t kStmt, const auto& kWords>
static uint32_t ParseFlagWord(QmsModule* module, const xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  const char* value = ReadArgument(module, element, kStmt);
  if (value == nullptr) return QM_INVALID;
  for (const FlagWord& row : kWords) {
    if (RTK_StrCmp(row.word, value) != 0) continue;
    AddFlagBits(row.bits, parentStmt, dest);
    return QM_OK;
  }
  RecordBadValue(module, value, kStmt);
  return QM_INVALID;
}

uint32_t QMS_LOADER_ParseConfig(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  return ParseFlagWord<QMS_STMT_CONFIG, kConfigWords>(module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseMandatory(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest) {
  return ParseFlagWord<QMS_STMT_MANDATORY, kMandatoryWords>(module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseOrderedBy(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest) {
  return ParseFlagWord<QMS_STMT_ORDERED_BY, kOrderedByWords>(module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseStatus(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  return ParseFlagWord<QMS_STMT_STATUS, kStatusWords>(module, element, parentStmt, dest);
}

// What the presence means is for the reader of the model; only that it is there
// is kept.
uint32_t QMS_LOADER_ParsePresence(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest) {
  if (ReadArgument(module, element, QMS_STMT_PRESENCE) == nullptr) return QM_INVALID;
  AddFlagBits(QMS_NODE_PRESENCE, parentStmt, dest);
  return QM_OK;
}

// Borrowed: the keys are marked before the document is released.
uint32_t QMS_LOADER_ParseKey(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                             void* dest) {
  const char* keyText = ReadArgument(module, element, QMS_STMT_KEY);
  if (keyText == nullptr) return QM_INVALID;
  *static_cast<const char**>(dest) = keyText;
  return QM_OK;
}

uint32_t QMS_LOADER_ParseDefault(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                 void* dest) {
  const char* value = ReadArgument(module, element, QMS_STMT_DEFAULT);
  if (value == nullptr) return QM_INVALID;
  const uint32_t ret = InternOrRefuse(module, static_cast<const char**>(dest), value);
  if (ret != QM_OK) RecordBadValue(module, value, QMS_STMT_DEFAULT);
  return ret;
}

uint32_t QMS_LOADER_ParseUnits(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                               void* dest) {
  if ((module->ctx->loadFlags & QM_LOAD_UNITS) == 0) return QM_OK;
  const char* value = ReadArgument(module, element, QMS_STMT_UNITS);
  if (value == nullptr) return QM_INVALID;
  const uint32_t ret = InternOrRefuse(module, static_cast<const char**>(dest), value);
  return ret == QM_OK ? uint32_t{QM_OK} : uint32_t{QM_NO_MEMORY};
}

uint32_t QMS_LOADER_ParseErrorAppTag(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                     void* dest) {
  return InternArgument(module, element, QMS_STMT_ERROR_APP_TAG, static_cast<const char**>(dest),
                        nullptr);
}

// A single feature is the argument. The boolean expressions of RFC 7950 section 7.20.2
// are not supported: what follows the first name is refused.
uint32_t QMS_LOADER_ParseIfFeature(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                   void* dest) {
  const char* text = ReadArgument(module, element, QMS_STMT_IF_FEATURE);
  if (text == nullptr) return QM_INVALID;
  QmsReference feature;
  const uint32_t ret = ReadReference(module, text, &feature);
  if (ret != QM_OK) {
    RecordBadValue(module, text, QMS_STMT_IF_FEATURE);
    return ret;
  }
  return QMS_NODE_FillIfFeature(ModuleDict(module), static_cast<QmsIfFeature*>(dest),
                                feature.module, feature.name);
}

// Statements whose argument is a child element: "text" under description, organization
// and their kin, "value" under error-message (RFC 7950 section 13.1). Each stores one
// interned text; a second one replaces the first.
static const char* LeadingText(const xmlNode* element) {
  const xmlNode* child = element->children;
  if (child == nullptr) return nullptr;
  const bool isText = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
  return isText ? XmlText(child->content) : nullptr;
}

uint32_t QMS_LOADER_ParseText(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                              void* dest) {
  const char* text = LeadingText(element);
  if (text == nullptr) return QM_OK;
  return InternOrRefuse(module, static_cast<const char**>(dest), text);
}

// "value" also names a sub-statement of "enum", which types read themselves.
uint32_t QMS_LOADER_ParseValue(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest) {
  if (parentStmt != QMS_STMT_ERROR_MESSAGE) return QM_OK;
  return QMS_LOADER_ParseText(module, element, parentStmt, dest);
}

static uint32_t ParseOneChild(QmsModule* module, xmlNode* element, uint32_t ownStmt,
                              uint32_t childStmt, void* dest) {
  QmsSubStmtDesc table[] = {SingleSubStmt(childStmt, dest)};
  return QMS_LOADER_ParseSubStatements(module, element, ownStmt, table, 1);
}

uint32_t QMS_LOADER_ParseDescription(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                     void* dest) {
  if ((module->ctx->loadFlags & QM_LOAD_DESCRIPTIONS) == 0) return QM_OK;
  const uint32_t ret = ParseOneChild(module, element, QMS_STMT_DESCRIPTION, QMS_STMT_TEXT, dest);
  if (ret != QM_OK) RecordBadStatement(module, QMS_STMT_DESCRIPTION);
  return ret;
}

uint32_t QMS_LOADER_ParseOrganization(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                      void* dest) {
  return ParseOneChild(module, element, QMS_STMT_ORGANIZATION, QMS_STMT_TEXT, dest);
}

uint32_t QMS_LOADER_ParseErrorMessage(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                      void* dest) {
  return ParseOneChild(module, element, QMS_STMT_ERROR_MESSAGE, QMS_STMT_VALUE, dest);
}
