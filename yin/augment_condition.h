// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

char* QMS_NODE_GetParentCond(const char* when, const QmsNode* augment);
char* QMS_NODE_CombineTwoWhenCondition(const char* a, const char* b);
uint32_t QMS_NODE_InheritAugNodeWhenCondToChildNode(QmDict* dict, const char* parentCond,
                                                    QmsNode* child);
uint32_t QMS_NODE_InheritAugNodeEvalToChildNode(QmDict* dict, const QmsNode* augment,
                                                const char* parentCond, QmsNode* child);
uint32_t QMS_NODE_InheritAugNodeEvalToAllChildNode(QmDict* dict, QmsNode* augment);

QM_END_INTERNAL_DECLS
