// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/context.h>
#include <qmodel/schema.h>

// The data node that a path such as /module:a/b names, or NULL. The first step
// names its module, a later one does where the module changes. Choices and
// cases, and the input and output of an operation, are no steps; predicates are
// passed over.
QmsNode* FindDataNode(QmCtx* ctx, const char* path);
