// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// Binding: each element's `_private` names its schema node, or is NULL. An element
// that is already bound is left alone with everything below it. The first failure ends
// the binding and leaves what is bound so far. The first three give 0, 22 for what the
// schema does not have there, or the status of the check that failed, with a record that
// says which element it was; and 22 without one for an argument that is NULL or no element.

QM_BEGIN_INTERNAL_DECLS

// The whole tree. 22 with a record for a namespace that no module has and for a name that
// is no top-level node of the module; without one for a root without default namespace;
// else also as QMD_PAS_CheckTopSchemaNode() gives it.
uint32_t QMD_PAS_FlushTreeWithSchema(QmCheckAux* aux, xmlNode* root);
// One element, among the data children of the schema node, and everything below it.
uint32_t QMD_PAS_FlushSubTreeWithSchema(QmCheckAux* aux, xmlNode* element,
                                        QmsNode* parentSchemaNode);
// What is below an element that is bound to `schemaNode`: nothing in anydata, anyxml and
// schema-mount points, the last of which set QMD_MODE_MOUNT_POINT. 22 for a leaf or
// leaf-list that begins with anything but text.
uint32_t QMD_PAS_FlushAllElementChildNodeWithSchema(QmCheckAux* aux, xmlNode* element,
                                                    QmsNode* schemaNode);
// Whether the bound top element suits the mode: in a request one that is no rpc sets
// QMD_MODE_ACTION_TREE. 0; 22 for an unbound root, without a record, and for anything
// but a notification where one is validated.
uint32_t QMD_PAS_CheckTopSchemaNode(QmCheckAux* aux, xmlNode* root);
// Unbinds an element and all elements below it; any other node is left as it is.
void QMD_PAS_ClearXmlTreePrivate(xmlNode* node);

QM_END_INTERNAL_DECLS
