// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "data/schema_walk.h"

// Completion of the kinds that make elements: a leaf at once, a container when the walk
// leaves it and something was added in it. 12 without memory, and then nothing is left
// of the element.

// Adds the leaf when it has a default and `dataParent` no child of its name; 22 for a
// leaf without its payload.
uint32_t AddDefaultOfLeaf(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode, QmdLevel* level);
// Opens the container that is there, or makes one for the time being; never one with
// presence, without children, with a schema-mount point, or beside a namesake.
uint32_t OpenDefaultContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level);
// Keeps and lists a container that was made when `ret` is 0 and something was added in
// it, else frees it; gives `ret` or the failure to list it.
uint32_t CloseDefaultContainer(QmdWalk* walk, const QmdLevel* level, uint32_t ret);
