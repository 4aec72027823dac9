// SPDX-License-Identifier: BSD-3-Clause
//
// The kinds of schema nodes: for each the sub-statements that it accepts, and what it
// asks for or does beyond the pattern that all of them follow, which is stmt_node.cc.
#include "yin/stmt_kinds.h"

#include <cstdint>
#include <iterator>

#include "context/load_error.h"
#include "schema/flags.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_value.h"
#include "types/type.h"
#include "yin/augment_condition.h"
#include "yin/keyword.h"
#include "yin/prefix_rewrite.h"
#include "yin/stmt_node.h"

// Container, anydata and anyxml: the data nodes that only hold or stand for other data
// (RFC 7950 sections 7.5, 7.10 and 7.11).
constexpr QmsStmt kContainerSubStmts[] = {QMS_STMT_WHEN,
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

constexpr QmsStmt kAnydataSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE, QMS_STMT_MUST,        QMS_STMT_CONFIG,
    QMS_STMT_MANDATORY, QMS_STMT_STATUS,     QMS_STMT_DESCRIPTION, QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kAnydataSubStmts) == 8);

uint32_t QMS_LOADER_ParseContainer(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest) {
  static constexpr QmsNodeStmt kContainer = {QMS_NODE_CONTAINER, SetOf(kContainerSubStmts), nullptr,
                                             nullptr};
  return ParseNodeStmt(kContainer, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseAnydataInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest, uint32_t nodeKind) {
  const QmsNodeStmt stmt = {nodeKind, SetOf(kAnydataSubStmts), nullptr, nullptr};
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

// Leaf and leaf-list (RFC 7950 sections 7.6 and 7.7): the nodes with a type, without
// which they are refused, and with defaults, which are brought into their stored form
// as soon as the type is known.
constexpr QmsStmt kLeafSubStmts[] = {QMS_STMT_WHEN,
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

constexpr QmsStmt kLeafListSubStmts[] = {QMS_STMT_WHEN,
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

static uint32_t CheckHasType(const QmsNodeParse* parse) {
  QmsNode* node = parse->node;
  if (QMT_TYPE_IsInvalidType(QMS_NODE_GetLeafSchemaRealType(node)) == 0) return QM_OK;
  QM_CTX_AddModError(parse->module->ctx, parse->module->name,
                     node->kind == QMS_NODE_LEAF
                         ? "leaf \"%s\" must define with type statement."
                         : "leaf-list \"%s\" must define with type statement.",
                     node->name);
  return QM_INVALID;
}

uint32_t QMS_LOADER_ParseLeaf(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  static constexpr QmsNodeStmt kLeaf = {QMS_NODE_LEAF, SetOf(kLeafSubStmts), CheckHasType,
                                        QMS_LOADER_RefreshLeafDefaultValue};
  return ParseNodeStmt(kLeaf, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseLeafList(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest) {
  static constexpr QmsNodeStmt kLeafList = {QMS_NODE_LEAF_LIST, SetOf(kLeafListSubStmts),
                                            CheckHasType, QMS_LOADER_RefreshLeafListDefaultValue};
  return ParseNodeStmt(kLeafList, module, element, parentStmt, dest);
}

// List (RFC 7950 section 7.8). Its key names leaves that are parsed after it may be, so
// the key text is kept aside, still inside the document, and the leaves are marked when
// all children are there.
constexpr QmsStmt kListSubStmts[] = {
    QMS_STMT_WHEN,   QMS_STMT_IF_FEATURE,   QMS_STMT_MUST,
    QMS_STMT_KEY,    QMS_STMT_CONFIG,       QMS_STMT_ORDERED_BY,
    QMS_STMT_STATUS, QMS_STMT_DESCRIPTION,  QMS_STMT_CONTAINER,
    QMS_STMT_LEAF,   QMS_STMT_LEAF_LIST,    QMS_STMT_LIST,
    QMS_STMT_CHOICE, QMS_STMT_ANYDATA,      QMS_STMT_ANYXML,
    QMS_STMT_ACTION, QMS_STMT_NOTIFICATION, QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kListSubStmts) == 18);

static uint32_t MarkKeys(const QmsNodeParse* parse) {
  return QMS_NODE_MarkKeyAttrToListLeafs(parse->node, parse->keyText, &parse->node->keyCount);
}

uint32_t QMS_LOADER_ParseListInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest, QmsNode* list) {
  static constexpr QmsNodeStmt kList = {QMS_NODE_LIST, SetOf(kListSubStmts), MarkKeys, nullptr};
  return ParseNodeBody(kList, module, element, parentStmt, dest, list);
}

uint32_t QMS_LOADER_ParseList(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  QmsNode* list = QMS_LOADER_ParseNodeCommon(module, element, QMS_NODE_LIST);
  if (list == nullptr) return QM_NO_MEMORY;
  return QMS_LOADER_ParseListInner(module, element, parentStmt, dest, list);
}

// Choice and case (RFC 7950 section 7.9). A data node that stands directly under a
// choice is kept there as it is; no case node is made for it.
constexpr QmsStmt kChoiceSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE, QMS_STMT_DEFAULT,     QMS_STMT_CONFIG,
    QMS_STMT_MANDATORY, QMS_STMT_STATUS,     QMS_STMT_DESCRIPTION, QMS_STMT_CASE,
    QMS_STMT_CONTAINER, QMS_STMT_LEAF,       QMS_STMT_LEAF_LIST,   QMS_STMT_LIST,
    QMS_STMT_CHOICE,    QMS_STMT_ANYDATA,    QMS_STMT_ANYXML,      QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kChoiceSubStmts) == 16);

constexpr QmsStmt kCaseSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE, QMS_STMT_STATUS,    QMS_STMT_DESCRIPTION,
    QMS_STMT_CONTAINER, QMS_STMT_LEAF,       QMS_STMT_LEAF_LIST, QMS_STMT_LIST,
    QMS_STMT_CHOICE,    QMS_STMT_ANYDATA,    QMS_STMT_ANYXML,    QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kCaseSubStmts) == 12);

uint32_t QMS_LOADER_ParseChoice(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest) {
  static constexpr QmsNodeStmt kChoice = {QMS_NODE_CHOICE, SetOf(kChoiceSubStmts), nullptr,
                                          nullptr};
  return ParseNodeStmt(kChoice, module, element, parentStmt, dest);
}

uint32_t QMS_LOADER_ParseCase(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                              void* dest) {
  static constexpr QmsNodeStmt kCase = {QMS_NODE_CASE, SetOf(kCaseSubStmts), nullptr, nullptr};
  return ParseNodeStmt(kCase, module, element, parentStmt, dest);
}

// Rpc, action and notification with input and output (RFC 7950 sections 7.14 to 7.16).
// Input and output have no argument and get their keyword as name.
constexpr QmsStmt kRpcSubStmts[] = {QMS_STMT_IF_FEATURE,  QMS_STMT_STATUS,
                                    QMS_STMT_DESCRIPTION, QMS_STMT_INPUT,
                                    QMS_STMT_OUTPUT,      QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kRpcSubStmts) == 6);

constexpr QmsStmt kInoutSubStmts[] = {
    QMS_STMT_MUST,   QMS_STMT_CONTAINER, QMS_STMT_LEAF,   QMS_STMT_LEAF_LIST,         QMS_STMT_LIST,
    QMS_STMT_CHOICE, QMS_STMT_ANYDATA,   QMS_STMT_ANYXML, QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kInoutSubStmts) == 9);

constexpr QmsStmt kNotifSubStmts[] = {
    QMS_STMT_IF_FEATURE, QMS_STMT_MUST,    QMS_STMT_STATUS,    QMS_STMT_DESCRIPTION,
    QMS_STMT_CONTAINER,  QMS_STMT_LEAF,    QMS_STMT_LEAF_LIST, QMS_STMT_LIST,
    QMS_STMT_CHOICE,     QMS_STMT_ANYDATA, QMS_STMT_ANYXML,    QMS_STMT_EXTENSION_INSTANCE};
static_assert(std::size(kNotifSubStmts) == 12);

uint32_t QMS_LOADER_ParseRpcInner(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest, uint32_t nodeKind) {
  const QmsNodeStmt stmt = {nodeKind, SetOf(kRpcSubStmts), nullptr, nullptr};
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
  const QmsNodeStmt stmt = {nodeKind, SetOf(kInoutSubStmts), nullptr, nullptr};
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
  static constexpr QmsNodeStmt kNotif = {QMS_NODE_NOTIFICATION, SetOf(kNotifSubStmts), nullptr,
                                         nullptr};
  return ParseNodeStmt(kNotif, module, element, parentStmt, dest);
}

// Augment (RFC 7950 section 7.17). It is a node whose name is the target path in
// module-name form. What its when and if-feature statements ask for is given to its
// children here, while they still hang under it: later they lie in the tree of another
// module.
constexpr QmsStmt kAugmentSubStmts[] = {QMS_STMT_WHEN,        QMS_STMT_IF_FEATURE,  QMS_STMT_STATUS,
                                        QMS_STMT_DESCRIPTION, QMS_STMT_CONTAINER,   QMS_STMT_LEAF,
                                        QMS_STMT_LEAF_LIST,   QMS_STMT_LIST,        QMS_STMT_CHOICE,
                                        QMS_STMT_CASE,        QMS_STMT_ANYDATA,     QMS_STMT_ANYXML,
                                        QMS_STMT_ACTION,      QMS_STMT_NOTIFICATION};
static_assert(std::size(kAugmentSubStmts) == 14);

static uint32_t InheritToChildren(const QmsNodeParse* parse) {
  return QMS_NODE_InheritAugNodeEvalToAllChildNode(ModuleDict(parse->module), parse->node);
}

uint32_t QMS_LOADER_ParseAugment(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest) {
  static constexpr QmsNodeStmt kAugment = {QMS_NODE_AUGMENT, SetOf(kAugmentSubStmts),
                                           InheritToChildren, nullptr};
  return ParseNodeStmt(kAugment, module, element, parentStmt, dest);
}
