// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "data/run_index.h"

// Binding by the index of the run: the answers of data/bind.h and data/node_check.h, read
// instead of searched.

// The schema node as a parent whose children are about to be bound, `element` its new
// instance. NULL where they are to be bound without the index.
QmdParent* OpenToBind(QmCheckAux* aux, QmsNode* schemaNode, const xmlNode* element);
// The same parent again, once the children of one of its children are bound.
QmdParent* BackToBind(const QmCheckAux* aux, const QmsNode* schemaNode, const xmlNode* element);
// Binds and checks one child without what is below it.
uint32_t BindIndexedElement(QmCheckAux* aux, QmdParent* parent, xmlNode* element);
