// SPDX-License-Identifier: BSD-3-Clause
//
// Leaf and leaf-list (RFC 7950 sections 7.6 and 7.7): the nodes with a type,
// without which they are refused, and with defaults, which are brought into
// their stored form as soon as the type is known.
#include <cstdint>
#include <iterator>

#include "context/load_error.h"
#include "schema/node_value.h"
#include "types/type.h"
#include "yin/statements.h"
#include "yin/stmt_node.h"
#include "yin/stmt_property.h"

static constexpr QmsStmt kLeafSubStmts[] = {QMS_STMT_WHEN,
                                            QMS_STMT_IF_FEATURE,
                                            QMS_STMT_MUST,
                                            QMS_STMT_TYPE,
                                            QMS_STMT_UNITS,
                                            QMS_STMT_DEFAULT,
                                            QMS_STMT_CONFIG,
                                            QMS_STMT_MANDATORY,
                                            QMS_STMT_STATUS,
                                            QMS_STMT_DESCRIPTION,
                                            QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kLeafSubStmts) == 11);

static constexpr QmsStmt kLeafListSubStmts[] = {QMS_STMT_WHEN,
                                                QMS_STMT_IF_FEATURE,
                                                QMS_STMT_MUST,
                                                QMS_STMT_TYPE,
                                                QMS_STMT_UNITS,
                                                QMS_STMT_DEFAULT,
                                                QMS_STMT_CONFIG,
                                                QMS_STMT_ORDERED_BY,
                                                QMS_STMT_STATUS,
                                                QMS_STMT_DESCRIPTION,
                                                QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kLeafListSubStmts) == 11);

static bool HasType(const QmsNodeParse* parse) {
  return QMT_TYPE_IsInvalidType(QMS_NODE_GetLeafSchemaRealType(parse->node)) == 0;
}

static uint32_t CheckLeaf(const QmsNodeParse* parse) {
  if (HasType(parse)) return QM_OK;
  QM_CTX_AddModError(parse->module->ctx, parse->module->name,
                     "leaf \"%s\" must define with type statement.", parse->node->name);
  return QM_INVALID;
}

static uint32_t CheckLeafList(const QmsNodeParse* parse) {
  if (HasType(parse)) return QM_OK;
  QM_CTX_AddModError(parse->module->ctx, parse->module->name,
                     "leaf-list \"%s\" must define with type statement.", parse->node->name);
  return QM_INVALID;
}

uint32_t QMS_LOADER_ParseLeaf(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  static constexpr QmsNodeStmt kLeaf = {QMS_NODE_LEAF, kLeafSubStmts, std::size(kLeafSubStmts),
                                        CheckLeaf, QMS_LOADER_RefreshLeafDefaultValue};
  return ParseNodeStmt(kLeaf, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseLeafList(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest) {
  static constexpr QmsNodeStmt kLeafList = {QMS_NODE_LEAF_LIST, kLeafListSubStmts,
                                            std::size(kLeafListSubStmts), CheckLeafList,
                                            QMS_LOADER_RefreshLeafListDefaultValue};
  return ParseNodeStmt(kLeafList, module, element, parentStmt, dest);
}
