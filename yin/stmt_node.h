// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include "context/internal.h"
#include "schema/statement.h"
#include "yin/records.h"

// A node whose sub-statements are being parsed, with what the parse needs and
// the node does not keep.
struct QmsNodeParse {
  QmsModule* module;
  QmsNode* node;
  const char* keyText;  // borrowed from the document; NULL without "key"
  uint16_t ifFeatures;  // children found, by kind
  uint16_t musts;
  uint16_t extInsts;
  uint16_t defaults;
};

// How one kind of schema node is parsed. The places of its sub-statements follow
// from their ids, so that a set of ids says all.
struct QmsNodeStmt {
  uint32_t kind;                                       // QmsNodeKind
  QmsStmtSet subStmts;                                 // accepted
  uint32_t (*check)(const QmsNodeParse* parse);        // after the sub-statements; may be NULL
  uint32_t (*refresh)(QmsModule* module, QmsNode* n);  // after linking; may be NULL
};

// The node parser: makes the node, parses its sub-statements, checks and links it. 0,
// or the status of the step that failed, after which nothing is left of the node.
uint32_t ParseNodeStmt(const QmsNodeStmt& stmt, QmsModule* module, xmlNode* element,
                       uint32_t parentStmt, void* dest);

// The same for a node that exists; owns it, and frees it on failure.
uint32_t ParseNodeBody(const QmsNodeStmt& stmt, QmsModule* module, xmlNode* element,
                       uint32_t parentStmt, void* dest, QmsNode* node);

QM_BEGIN_INTERNAL_DECLS

// A new node of the module, named by its statement; NULL when it cannot be made or
// named.
QmsNode* QMS_LOADER_ParseNodeCommon(QmsModule* module, xmlNode* element, uint32_t nodeKind);

// Links a parsed node under its parent, or under the module for a top-level one.
// "input" comes before "output" whatever the order in the document. 22 when the
// node cannot be linked; it stays the caller's then.
uint32_t QMS_LOADER_AddNodeToSchemaTree(QmsModule* module, QmsNode* parentNode, QmsNode* node,
                                        uint32_t parentStmt);

// The target path of an augment with module names for prefixes, interned into
// *name; 22, or -1 when it cannot be interned.
uint32_t QMS_LOADER_ParseAugmentTargetNode(QmsModule* module, xmlNode* element, const char** name);

QM_END_INTERNAL_DECLS
