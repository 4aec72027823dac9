// SPDX-License-Identifier: BSD-3-Clause
//
// List (RFC 7950 section 7.8). Its key names leaves that are parsed after it
// may be, so the key text is kept aside, still inside the document, and the
// leaves are marked when all children are there.
#include <cstdint>
#include <iterator>

#include "schema/flags.h"
#include "yin/statements.h"
#include "yin/stmt_node.h"

static constexpr QmsStmt kListSubStmts[] = {
    QMS_STMT_WHEN,   QMS_STMT_IF_FEATURE,   QMS_STMT_MUST,
    QMS_STMT_KEY,    QMS_STMT_CONFIG,       QMS_STMT_ORDERED_BY,
    QMS_STMT_STATUS, QMS_STMT_DESCRIPTION,  QMS_STMT_CONTAINER,
    QMS_STMT_LEAF,   QMS_STMT_LEAF_LIST,    QMS_STMT_LIST,
    QMS_STMT_CHOICE, QMS_STMT_ANYDATA,      QMS_STMT_ANYXML,
    QMS_STMT_ACTION, QMS_STMT_NOTIFICATION, QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kListSubStmts) == 18 && std::size(kListSubStmts) <= kMaxNodeSubStmts);

static uint32_t MarkKeys(const QmsNodeParse* parse) {
  return QMS_NODE_MarkKeyAttrToListLeafs(parse->node, parse->keyText, &parse->node->keyCount);
}

uint32_t QMS_LOADER_ParseListInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest, QmsNode* list) {
  static constexpr QmsNodeStmt kList = {QMS_NODE_LIST, kListSubStmts, std::size(kListSubStmts),
                                        MarkKeys, nullptr};
  return ParseNodeBody(kList, module, element, parentStmt, dest, list);
}

uint32_t QMS_LOADER_ParseList(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  QmsNode* list = QMS_LOADER_ParseNodeCommon(module, element, QMS_NODE_LIST);
  if (list == nullptr) return QM_NO_MEMORY;
  return QMS_LOADER_ParseListInner(module, element, parentStmt, dest, list);
}
