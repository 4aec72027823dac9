// SPDX-License-Identifier: BSD-3-Clause
//
// The statements that say what a module is (RFC 7950 section 7.1): yang-version,
// namespace and prefix, which are read before anything else since every prefix
// in the body is resolved with them, and the first revision.
#include "yin/header.h"

#include <cstdint>
#include <iterator>

#include "context/xml_tree.h"
#include "platform/string.h"
#include "yin/argument.h"
#include "yin/statements.h"

// Deliberate: an unknown version is refused with -1, which is no errno value.
uint32_t QMS_LOADER_ParseYangVersion(QmsModule* module, xmlNode* element) {
  const char* version = ReadArgument(module, element, QMS_STMT_YANG_VERSION);
  if (version == nullptr) return QM_INVALID;
  if (RTK_StrCmp(version, "1") == 0) {
    module->yangVersion = QMS_YANG_VERSION_1;
  } else if (RTK_StrCmp(version, "1.1") == 0) {
    module->yangVersion = QMS_YANG_VERSION_1_1;
  } else {
    RecordBadValue(module, version, QMS_STMT_YANG_VERSION);
    return QM_MINUS_ONE;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_ParseNamespace(QmsModule* module, xmlNode* element) {
  return InternArgument(module, element, QMS_STMT_NAMESPACE, &module->ns, nullptr);
}

uint32_t QMS_LOADER_ParsePrefix(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  return InternArgument(module, element, QMS_STMT_PREFIX, static_cast<const char**>(dest), nullptr);
}

// Modules list the newest revision first; the older ones are not kept.
uint32_t QMS_LOADER_ParseRevision(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  auto** revision = static_cast<const char**>(dest);
  if (*revision != nullptr) return QM_OK;
  return InternArgument(module, element, QMS_STMT_REVISION, revision, nullptr);
}

static uint32_t ParseOwnPrefix(QmsModule* module, xmlNode* element) {
  return QMS_LOADER_ParsePrefix(module, element, QMS_STMT_MODULE, &module->prefix);
}

struct HeadStmtRow {
  QmsStmt stmt;
  uint32_t (*parse)(QmsModule* module, xmlNode* element);
};

static constexpr HeadStmtRow kHeadStmts[] = {{QMS_STMT_YANG_VERSION, QMS_LOADER_ParseYangVersion},
                                             {QMS_STMT_NAMESPACE, QMS_LOADER_ParseNamespace},
                                             {QMS_STMT_PREFIX, ParseOwnPrefix}};

static uint32_t ParseHeadStmt(QmsModule* module, xmlNode* child) {
  for (const HeadStmtRow& row : kHeadStmts) {
    if (row.stmt != PrivateMark(child)) continue;
    const uint32_t ret = row.parse(module, child);
    if (ret != QM_OK) RecordBadStatement(module, row.stmt);
    return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_ParseModuleHeadStmts(QmsModule* module, xmlNode* root) {
  for (xmlNode* child = root->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    const uint32_t ret = ParseHeadStmt(module, child);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
