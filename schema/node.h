// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "platform/string.h"
#include "schema/records.h"

// Kinds whose nodes name an element of a data tree.
constexpr uint32_t kQmsDataTreeKinds =
    1u << QMS_NODE_CONTAINER | 1u << QMS_NODE_LEAF | 1u << QMS_NODE_LEAF_LIST |
    1u << QMS_NODE_LIST | 1u << QMS_NODE_ANYDATA | 1u << QMS_NODE_ANYXML | 1u << QMS_NODE_ACTION |
    1u << QMS_NODE_RPC | 1u << QMS_NODE_NOTIFICATION;

inline bool IsDataTreeNode(const QmsNode* node) {
  return node->kind < QMS_NODE_KIND_COUNT && (kQmsDataTreeKinds >> node->kind & 1u) != 0;
}

inline bool HasFlag(const QmsNode* node, uint32_t bits) {
  return (node->flags & bits) != 0;
}

// An augment whose children lie in the child list of its target.
inline bool IsCoupledAugment(const QmsNode* node) {
  return node->kind == QMS_NODE_AUGMENT && HasFlag(node, QMS_NODE_COUPLED);
}

inline bool IsLeafOrLeafList(const QmsNode* node) {
  return node->kind == QMS_NODE_LEAF || node->kind == QMS_NODE_LEAF_LIST;
}

// A node whose children are input and output.
inline bool IsOperation(const QmsNode* node) {
  return node->kind == QMS_NODE_RPC || node->kind == QMS_NODE_ACTION;
}

// The context of the node's module, or NULL.
inline QmCtx* NodeCtx(const QmsNode* node) {
  return node->module == nullptr ? nullptr : node->module->ctx;
}

// True when both texts are given and equal. The same interned text is told by
// its address.
inline bool NamesEqual(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return false;
  return a == b || TextsEqual(a, b);
}

// True when the node's module has this name.
inline bool IsOfModule(const QmsNode* node, const char* moduleName) {
  return node->module != nullptr && NamesEqual(node->module->name, moduleName);
}

// Frees `first`, its following siblings and all their subtrees, but releases
// none of their texts, for a module that has no context and so no dictionary.
// The blocks of texts are not even read.
void FreeNodesWithoutTexts(QmsNode* first);

QM_BEGIN_INTERNAL_DECLS

// The statement of a kind, and the bytes of its payload; QMS_STMT_UNKNOWN and 0 for a
// number that is no kind.
uint32_t QMS_NODE_GetStmtByNodeType(uint32_t kind);
uint32_t QMS_NODE_GetInfoSize(uint32_t kind);
// A zero-filled node with its payload, or NULL. It is freed through the dictionary of its
// module, so `module` is to be set next.
QmsNode* QMS_NODE_New(uint32_t kind);
// Frees a node that hangs nowhere any more, with all below it; private data goes back to
// the client. Left alone: a node without context, and a coupled augment.
void QMS_NODE_Free(QmsNode* node);

// Releases the payload of a node with all it holds, and sets the field to NULL.
void QMS_NODE_DestroySchemaInfo(QmsNode* node);
// The same for the payload of one kind; NULL is ignored.
void QMS_NODE_DestroySchemaLeaf(QmDict* dict, void* payload);
void QMS_NODE_DestroySchemaLeaflist(QmDict* dict, void* payload);
void QMS_NODE_DestroySchemaChoice(QmDict* dict, void* payload);

// Hands the private data back to the client, when there is any and a hook is set.
void QMS_NODE_DestroyPrivateData(QmCtx* ctx, QmsNode* node);

QM_END_INTERNAL_DECLS
