// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "data/schema_walk.h"

// Completion of the kinds that make elements: a leaf at once, a container when the
// walk leaves it and something was added in it.
uint32_t AddDefaultOfLeaf(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode, QmdLevel* level);
uint32_t OpenDefaultContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level);
uint32_t CloseDefaultContainer(QmdWalk* walk, const QmdLevel* level, uint32_t ret);
