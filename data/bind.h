// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// Binding: each element's `_private` names its schema node, or is NULL. An element
// that is already bound is left alone with everything below it.

QM_BEGIN_INTERNAL_DECLS

// Binds a message from its top element on, which is found by namespace and name, and
// checks each element. 0, or the status of the first check that fails: 22 for an element
// that nothing describes, for one without namespace at the top and for NULL.
uint32_t QMD_PAS_FlushTreeWithSchema(QmCheckAux* aux, xmlNode* root);
// The same for an element that stands below `parentSchemaNode`, with what is below it.
uint32_t QMD_PAS_FlushSubTreeWithSchema(QmCheckAux* aux, xmlNode* element,
                                        QmsNode* parentSchemaNode);
// The same for what is below an element that stands for `schemaNode`.
uint32_t QMD_PAS_FlushAllElementChildNodeWithSchema(QmCheckAux* aux, xmlNode* element,
                                                    QmsNode* schemaNode);
// Whether the bound top element suits the run: 0, or 22 when it is not bound, or is none
// of a notification in the run of one. A request that is no rpc is marked as a tree with
// an action.
uint32_t QMD_PAS_CheckTopSchemaNode(QmCheckAux* aux, xmlNode* root);
// Clears the bindings of a whole tree.
void QMD_PAS_ClearXmlTreePrivate(xmlNode* node);

QM_END_INTERNAL_DECLS
