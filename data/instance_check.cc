// SPDX-License-Identifier: BSD-3-Clause
// Whether a node that may occur once occurs again. Elements are bound in document
// order, so it is the second one that is reported. Entries of lists and leaf-lists
// are never compared with each other, deliberately: neither equal keys nor equal
// values are found here. Since all others fail at their second occurrence, the
// siblings are searched at most once for each child of the schema.

#include "context/element_walk.h"
#include "data/data_node.h"
#include "data/error.h"
#include "data/node_check.h"

static bool MayOccurOften(const QmsNode* schemaNode) {
  return schemaNode->kind == QMS_NODE_LIST || schemaNode->kind == QMS_NODE_LEAF_LIST;
}

static bool HasTwin(const xmlNode* element, const QmsNode* schemaNode) {
  for (const xmlNode* node = element->prev; node != nullptr; node = node->prev) {
    if (BoundSchema(node) == schemaNode) return true;
  }
  return NextBoundSibling(element->next, schemaNode) != nullptr;
}

uint32_t QMD_PAS_CheckMultipleInstanceNode(QmCheckAux* aux, xmlNode* element) {
  const QmsNode* schemaNode = BoundSchema(element);
  if (schemaNode == nullptr || element->parent == aux->topNode || MayOccurOften(schemaNode)) {
    return QM_OK;
  }
  if (!HasTwin(element, schemaNode)) return QM_OK;
  ReportUnexpectedElement(aux, element);
  return QM_INVALID;
}
