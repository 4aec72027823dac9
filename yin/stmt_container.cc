// SPDX-License-Identifier: BSD-3-Clause
//
// The data nodes that only hold or stand for other data: container, anydata and
// anyxml (RFC 7950 sections 7.5, 7.10 and 7.11).
#include <cstdint>
#include <iterator>

#include "yin/statements.h"
#include "yin/stmt_node.h"

static constexpr QmsStmt kContainerSubStmts[] = {QMS_STMT_WHEN,
                                                 QMS_STMT_IF_FEATURE,
                                                 QMS_STMT_MUST,
                                                 QMS_STMT_PRESENCE,
                                                 QMS_STMT_CONFIG,
                                                 QMS_STMT_STATUS,
                                                 QMS_STMT_DESCRIPTION,
                                                 QMS_STMT_CONTAINER,
                                                 QMS_STMT_LEAF,
                                                 QMS_STMT_LEAF_LIST,
                                                 QMS_STMT_LIST,
                                                 QMS_STMT_CHOICE,
                                                 QMS_STMT_ANYDATA,
                                                 QMS_STMT_ANYXML,
                                                 QMS_STMT_ACTION,
                                                 QMS_STMT_NOTIFICATION,
                                                 QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kContainerSubStmts) == 17);

static constexpr QmsStmt kAnydataSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE, QMS_STMT_MUST,        QMS_STMT_CONFIG,
    QMS_STMT_MANDATORY, QMS_STMT_STATUS,     QMS_STMT_DESCRIPTION, QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kAnydataSubStmts) == 8);

uint32_t QMS_LOADER_ParseContainer(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest) {
  static constexpr QmsNodeStmt kContainer = {QMS_NODE_CONTAINER, kContainerSubStmts,
                                             std::size(kContainerSubStmts), nullptr, nullptr};
  return ParseNodeStmt(kContainer, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseAnydataInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest, uint32_t nodeKind) {
  const QmsNodeStmt stmt = {nodeKind, kAnydataSubStmts, std::size(kAnydataSubStmts), nullptr,
                            nullptr};
  return ParseNodeStmt(stmt, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseAnydata(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest) {
  return QMS_LOADER_ParseAnydataInner(module, element, parentStmt, dest, QMS_NODE_ANYDATA);
}

uint32_t QMS_LOADER_ParseAnyxml(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  return QMS_LOADER_ParseAnydataInner(module, element, parentStmt, dest, QMS_NODE_ANYXML);
}
