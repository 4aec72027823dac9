// SPDX-License-Identifier: BSD-3-Clause
//
// Augment (RFC 7950 section 7.17). It is a node whose name is the target path
// in module-name form. What its when and if-feature statements ask for is given
// to its children here, while they still hang under it: later they lie in the
// tree of another module.
#include <cstdint>
#include <iterator>

#include "context/guard.h"
#include "context/load_error.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/augment_condition.h"
#include "yin/statements.h"
#include "yin/stmt_node.h"

static constexpr QmsStmt kAugmentSubStmts[] = {
    QMS_STMT_WHEN,      QMS_STMT_IF_FEATURE,  QMS_STMT_STATUS,    QMS_STMT_DESCRIPTION,
    QMS_STMT_CONTAINER, QMS_STMT_LEAF,        QMS_STMT_LEAF_LIST, QMS_STMT_LIST,
    QMS_STMT_CHOICE,    QMS_STMT_CASE,        QMS_STMT_ANYDATA,   QMS_STMT_ANYXML,
    QMS_STMT_ACTION,    QMS_STMT_NOTIFICATION};
static_assert(std::size(kAugmentSubStmts) == 14);

// Deliberate: a path that cannot be interned gives -1, which is no errno value.
uint32_t QMS_LOADER_ParseAugmentTargetNode(QmsModule* module, xmlNode* element, const char** name) {
  const char* path = ReadAbsolutePath(module, element, QMS_STMT_AUGMENT);
  if (path == nullptr) return QM_INVALID;
  const QmHeld<char> target(QualifyTargetPath(module, path));
  if (!target) {
    QM_CTX_AddModError(module->ctx, module->name, "Failed to parse xpath \"%s\".", path);
    RecordBadValue(module, path, QMS_STMT_AUGMENT);
    return QM_INVALID;
  }
  return InternOrRefuse(module, name, target.Get()) == QM_OK ? uint32_t{QM_OK} : QM_MINUS_ONE;
}

static uint32_t InheritToChildren(const QmsNodeParse* parse) {
  return QMS_NODE_InheritAugNodeEvalToAllChildNode(ModuleDict(parse->module), parse->node);
}

uint32_t QMS_LOADER_ParseAugment(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest) {
  static constexpr QmsNodeStmt kAugment = {QMS_NODE_AUGMENT, kAugmentSubStmts,
                                           std::size(kAugmentSubStmts), InheritToChildren, nullptr};
  return ParseNodeStmt(kAugment, module, element, parentStmt, dest);
}
