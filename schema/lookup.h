// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// The node that a data path names, from `startNode` on where the path is relative; NULL
// for a step that names nothing.
QmsNode* QMS_MOD_GetNodeByXpath(QmsModule* module, QmsNode* startNode, const char* path);
// Where a data path starts: gives the rest of it, borrowed, or NULL. *node and *mod are
// NULL for the top, which "/" leads to, and for a climb above it.
const char* QMS_MOD_GetStartPathAndNode(QmsModule* module, QmsNode* startNode, const char* path,
                                        QmsNode** node, QmsModule** mod);
// Goes the parent steps of a relative path: *node is where they lead. Gives the rest, or
// NULL for parent steps alone, or too many of them.
const char* QMS_MOD_GetRelativePathRealStartNode(QmsModule* module, QmsNode* startNode,
                                                 const char* path, QmsNode** node);
// One step of a data path, below `parent`, or at the top of the module `qualifier`. NULL
// when there is no such node; else *mod is the module of the node.
QmsNode* QMS_MOD_GetDataTreeNodeByNodeIdentifier(QmCtx* ctx, QmsModule** mod, QmsNode* parent,
                                                 const char* qualifier, const char* name);

// The node that a schema node identifier names, below `startNode` or at the top of the
// module; NULL for a step that names nothing.
QmsNode* QMS_MOD_GetNodeBySchemaNodeId(QmsModule* module, QmsNode* startNode, const char* path);
// The same below the augments of the module whose target path is `augTargetPath`; the first
// that holds the node is given too, when asked for.
QmsNode* QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(QmsModule* module, const char* augTargetPath,
                                                   const char* subPath, QmsNode** augment);
// The target of an augment of `module`, NULL when it lies in another module or is not
// found: 0. 22 for a target path that names no module, and without an argument.
uint32_t QMS_MOD_FindAugNodeTargetInSelfMod(QmsModule* module, QmsNode* augment, QmsNode** target);

QM_END_INTERNAL_DECLS
