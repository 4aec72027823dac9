// SPDX-License-Identifier: BSD-3-Clause
//
// Rpc, action and notification with input and output (RFC 7950 sections 7.14 to
// 7.16). Input and output have no argument and get their keyword as name.
#include <cstdint>
#include <iterator>

#include "yin/statements.h"
#include "yin/stmt_node.h"

static constexpr QmsStmt kRpcSubStmts[] = {QMS_STMT_IF_FEATURE,  QMS_STMT_STATUS,
                                           QMS_STMT_DESCRIPTION, QMS_STMT_INPUT,
                                           QMS_STMT_OUTPUT,      QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kRpcSubStmts) == 6);

static constexpr QmsStmt kInoutSubStmts[] = {
    QMS_STMT_MUST,   QMS_STMT_CONTAINER, QMS_STMT_LEAF,   QMS_STMT_LEAF_LIST,         QMS_STMT_LIST,
    QMS_STMT_CHOICE, QMS_STMT_ANYDATA,   QMS_STMT_ANYXML, QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kInoutSubStmts) == 9);

static constexpr QmsStmt kNotifSubStmts[] = {
    QMS_STMT_IF_FEATURE, QMS_STMT_MUST,    QMS_STMT_STATUS,    QMS_STMT_DESCRIPTION,
    QMS_STMT_CONTAINER,  QMS_STMT_LEAF,    QMS_STMT_LEAF_LIST, QMS_STMT_LIST,
    QMS_STMT_CHOICE,     QMS_STMT_ANYDATA, QMS_STMT_ANYXML,    QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kNotifSubStmts) == 12);

uint32_t QMS_LOADER_ParseRpcInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest, uint32_t nodeKind) {
  const QmsNodeStmt stmt = {nodeKind, kRpcSubStmts, std::size(kRpcSubStmts), nullptr, nullptr};
  return ParseNodeStmt(stmt, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseRpc(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest) {
  return QMS_LOADER_ParseRpcInner(module, element, parentStmt, dest, QMS_NODE_RPC);
}

uint32_t QMS_LOADER_ParseAction(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  return QMS_LOADER_ParseRpcInner(module, element, parentStmt, dest, QMS_NODE_ACTION);
}

uint32_t QMS_LOADER_ParseInout(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest,
                               uint32_t nodeKind) {
  const QmsNodeStmt stmt = {nodeKind, kInoutSubStmts, std::size(kInoutSubStmts), nullptr, nullptr};
  return ParseNodeStmt(stmt, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseInput(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest) {
  return QMS_LOADER_ParseInout(module, element, parentStmt, dest, QMS_NODE_INPUT);
}

uint32_t QMS_LOADER_ParseOutput(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  return QMS_LOADER_ParseInout(module, element, parentStmt, dest, QMS_NODE_OUTPUT);
}

uint32_t QMS_LOADER_ParseNotif(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest) {
  static constexpr QmsNodeStmt kNotif = {QMS_NODE_NOTIFICATION, kNotifSubStmts,
                                         std::size(kNotifSubStmts), nullptr, nullptr};
  return ParseNodeStmt(kNotif, module, element, parentStmt, dest);
}
