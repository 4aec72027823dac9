// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// The condition `when`, written for the target of an augment, as it reads for a child of
// the target: a new text, "" for one without tokens. NULL when it cannot be split into
// tokens, would get more than twice as long, or memory ran out. `augment` is not looked at.
char* QMS_NODE_GetParentCond(const char* when, const QmsNode* augment);

// "(a) and (b)" as a new text; NULL when one of them is NULL or memory ran out.
char* QMS_NODE_CombineTwoWhenCondition(const char* a, const char* b);

// Gives a child the condition of its augment, as rewritten above (NULL: there is none),
// before one of its own. 22 when an argument is NULL or the new condition cannot be made.
uint32_t QMS_NODE_InheritAugNodeWhenCondToChildNode(QmDict* dict, const char* parentCond,
                                                    QmsNode* child);

// The same with the if-features of the augment that the child does not have; also the
// code of adding one.
uint32_t QMS_NODE_InheritAugNodeEvalToChildNode(QmDict* dict, const QmsNode* augment,
                                                const char* parentCond, QmsNode* child);

// The same for all children but actions and notifications; a condition that cannot be
// rewritten is not handed on. Stops at the first child that fails.
uint32_t QMS_NODE_InheritAugNodeEvalToAllChildNode(QmDict* dict, QmsNode* augment);

QM_END_INTERNAL_DECLS
