// SPDX-License-Identifier: BSD-3-Clause
//
// Choice and case (RFC 7950 section 7.9). A data node that stands directly
// under a choice is kept there as it is; no case node is made for it.
#include <cstdint>
#include <iterator>

#include "yin/statements.h"
#include "yin/stmt_node.h"

static constexpr QmsStmt kChoiceSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE, QMS_STMT_DEFAULT,     QMS_STMT_CONFIG,
    QMS_STMT_MANDATORY, QMS_STMT_STATUS,     QMS_STMT_DESCRIPTION, QMS_STMT_CASE,
    QMS_STMT_CONTAINER, QMS_STMT_LEAF,       QMS_STMT_LEAF_LIST,   QMS_STMT_LIST,
    QMS_STMT_CHOICE,    QMS_STMT_ANYDATA,    QMS_STMT_ANYXML,      QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kChoiceSubStmts) == 16);

static constexpr QmsStmt kCaseSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE, QMS_STMT_STATUS,    QMS_STMT_DESCRIPTION,
    QMS_STMT_CONTAINER, QMS_STMT_LEAF,       QMS_STMT_LEAF_LIST, QMS_STMT_LIST,
    QMS_STMT_CHOICE,    QMS_STMT_ANYDATA,    QMS_STMT_ANYXML,    QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kCaseSubStmts) == 12);

uint32_t QMS_LOADER_ParseChoice(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  static constexpr QmsNodeStmt kChoice = {QMS_NODE_CHOICE, kChoiceSubStmts,
                                          std::size(kChoiceSubStmts), nullptr, nullptr};
  return ParseNodeStmt(kChoice, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseCase(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  static constexpr QmsNodeStmt kCase = {QMS_NODE_CASE, kCaseSubStmts, std::size(kCaseSubStmts),
                                        nullptr, nullptr};
  return ParseNodeStmt(kCase, module, element, parentStmt, dest);
}
