// SPDX-License-Identifier: BSD-3-Clause
// Binding of a data tree to its schema. The top element is found by its namespace
// and name, every other one among the data children of its parent's schema node,
// and each is checked as soon as it is bound. The walk is a loop over parent and
// sibling links: a caller's tree and the schema below it may both be deeper than
// a stack. Content of anydata, anyxml and schema-mount points is left unbound.

#include "data/bind.h"

#include "context/xml_tree.h"
#include "data/bind_indexed.h"
#include "data/bound_children.h"
#include "data/data_node.h"
#include "data/error.h"
#include "data/node_check.h"
#include "data/schema_query.h"
#include "schema/module_nodes.h"
#include "schema/node_walk.h"

static uint32_t CheckRepeatIfAction(QmCheckAux* aux, xmlNode* element) {
  const QmsNode* schemaNode = BoundSchema(element);
  if (schemaNode->kind != QMS_NODE_ACTION) return QM_OK;
  return QMD_PAS_CheckActionNodeRepeat(aux, element);
}

// The order decides which of several faults of one element is reported.
using NodeCheck = uint32_t (*)(QmCheckAux* aux, xmlNode* element);
constexpr NodeCheck kNodeChecks[] = {
    QMD_PAS_CheckMultipleInstanceNode, QMD_PAS_CheckDataNodeValue, CheckRepeatIfAction,
    QMD_PAS_CheckElementNodeOrder,     QMD_PAS_CheckMultiCases,
};

// An element without namespace counts as one of its parent's module; one in a
// namespace that no module has is nobody's, whatever its name.
static QmsNode* FindSchemaChild(QmCheckAux* aux, const xmlNode* element, QmsNode* parentSchema) {
  const char* modName = QMD_NODE_GetModuleName(aux->ctx, element);
  if (modName == nullptr && QM_XML_GetXmlNodeDefaultNs(element) != nullptr) return nullptr;
  return QMS_NODE_FindChildDataTreeNodeByName(parentSchema, modName, ElementName(element));
}

// Binds and checks one element without what is below it.
static uint32_t BindElement(QmCheckAux* aux, xmlNode* element, QmsNode* parentSchema) {
  QmsNode* schemaNode = FindSchemaChild(aux, element, parentSchema);
  if (schemaNode == nullptr) {
    ReportUnexpectedElement(aux, element);
    return QM_INVALID;
  }
  element->_private = schemaNode;
  for (NodeCheck check : kNodeChecks) {
    const uint32_t ret = check(aux, element);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static bool IsValueNode(const QmsNode* schemaNode) {
  return schemaNode->kind == QMS_NODE_LEAF || schemaNode->kind == QMS_NODE_LEAF_LIST;
}

// Prepares the walk below a bound element and stores its first child to bind,
// NULL when nothing below it is bound.
static uint32_t EnterElement(QmCheckAux* aux, xmlNode* element, const QmsNode* schemaNode,
                             xmlNode** firstChild) {
  *firstChild = nullptr;
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode) != 0) {
    if (QMD_MDL_IsSchemaNodeDefineWithMountPoint(schemaNode) != 0) {
      aux->flags |= QMD_MODE_MOUNT_POINT;
    }
    return QM_OK;
  }
  if (IsValueNode(schemaNode) && element->children != nullptr &&
      element->children->type != XML_TEXT_NODE) {
    ReportUnexpectedElement(aux, element);
    return QM_INVALID;
  }
  *firstChild = FirstElement(element->children);
  if (schemaNode->kind == QMS_NODE_ACTION) aux->flags |= QMD_MODE_IN_ACTION;
  return QM_OK;
}

static void LeaveElement(QmCheckAux* aux, const QmsNode* schemaNode) {
  if (schemaNode->kind == QMS_NODE_ACTION) aux->flags &= ~uint32_t{QMD_MODE_IN_ACTION};
}

// The next element to bind after everything below `done`, within `root`.
static xmlNode* NextToBind(QmCheckAux* aux, const xmlNode* root, const QmsNode* rootSchema,
                           xmlNode* done) {
  for (xmlNode* node = done; node != root; node = node->parent) {
    LeaveElement(aux, BoundSchema(node));
    xmlNode* sibling = FirstElement(node->next);
    if (sibling != nullptr) return sibling;
  }
  LeaveElement(aux, rootSchema);
  return nullptr;
}

// Most elements are leaves that hold nothing but one text.
static bool IsLeafOfText(const xmlNode* element) {
  const QmsNode* schemaNode = BoundSchema(element);
  const xmlNode* child = element->children;
  return IsValueNode(schemaNode) &&
         (child == nullptr || (child->type == XML_TEXT_NODE && child->next == nullptr));
}

namespace {
// Where binding is. `parent` is what the index knows of the parent's schema node, NULL
// where it is to be done without.
struct BindWalk {
  QmCheckAux* aux;
  xmlNode* root;
  QmsNode* rootSchema;
  QmdParent* parent;
};
}  // namespace

static QmsNode* SchemaOfParent(const BindWalk* walk, const xmlNode* element) {
  return element->parent == walk->root ? walk->rootSchema : BoundSchema(element->parent);
}

// Binds one element and stores the first one below it, NULL when nothing below it is bound.
static uint32_t BindAndEnter(BindWalk* walk, xmlNode* element, xmlNode** firstChild) {
  QmCheckAux* aux = walk->aux;
  if (element->_private != nullptr) return QM_OK;
  uint32_t ret = QM_OK;
  if (walk->parent != nullptr) {
    ret = BindIndexedElement(aux, walk->parent, element);
  } else {
    ret = BindElement(aux, element, SchemaOfParent(walk, element));
    if (ret == QM_OK && aux->index != nullptr) NoteUnindexed(aux->index, BoundSchema(element));
  }
  if (ret != QM_OK || IsLeafOfText(element)) return ret;
  ret = EnterElement(aux, element, BoundSchema(element), firstChild);
  if (*firstChild != nullptr) walk->parent = OpenToBind(aux, BoundSchema(element), element);
  return ret;
}

static xmlNode* StepToNext(BindWalk* walk, xmlNode* done) {
  xmlNode* next = NextToBind(walk->aux, walk->root, walk->rootSchema, done);
  if (next != nullptr && next->parent != done->parent) {
    walk->parent = BackToBind(walk->aux, SchemaOfParent(walk, next), next->parent);
  }
  return next;
}

static uint32_t BindBelow(QmCheckAux* aux, xmlNode* root, QmsNode* rootSchema) {
  BindWalk walk = {aux, root, rootSchema, nullptr};
  xmlNode* next = nullptr;
  uint32_t ret = EnterElement(aux, root, rootSchema, &next);
  if (ret == QM_OK && next == nullptr) LeaveElement(aux, rootSchema);
  if (next != nullptr) walk.parent = OpenToBind(aux, rootSchema, root);
  while (ret == QM_OK && next != nullptr) {
    xmlNode* element = next;
    next = nullptr;
    ret = BindAndEnter(&walk, element, &next);
    if (ret == QM_OK && next == nullptr) next = StepToNext(&walk, element);
  }
  if (ret != QM_OK) aux->flags &= ~uint32_t{QMD_MODE_IN_ACTION};
  return ret;
}

uint32_t QMD_PAS_FlushAllElementChildNodeWithSchema(QmCheckAux* aux, xmlNode* element,
                                                    QmsNode* schemaNode) {
  if (aux == nullptr || !IsElement(element) || schemaNode == nullptr) return QM_INVALID;
  return BindBelow(aux, element, schemaNode);
}

uint32_t QMD_PAS_FlushSubTreeWithSchema(QmCheckAux* aux, xmlNode* element,
                                        QmsNode* parentSchemaNode) {
  if (aux == nullptr || !IsElement(element) || parentSchemaNode == nullptr) return QM_INVALID;
  if (element->_private != nullptr) return QM_OK;
  const uint32_t ret = BindElement(aux, element, parentSchemaNode);
  return ret == QM_OK ? BindBelow(aux, element, BoundSchema(element)) : ret;
}

uint32_t QMD_PAS_CheckTopSchemaNode(QmCheckAux* aux, xmlNode* root) {
  const QmsNode* schemaNode = BoundSchema(root);
  if (schemaNode == nullptr) return QM_INVALID;
  if ((aux->flags & QMD_MODE_RPC) != 0 && schemaNode->kind != QMS_NODE_RPC) {
    aux->flags |= QMD_MODE_ACTION_TREE;
  }
  if ((aux->flags & QMD_MODE_NOTIF) != 0 && schemaNode->kind != QMS_NODE_NOTIFICATION) {
    ReportUnexpectedElement(aux, root);
    return QM_INVALID;
  }
  return QM_OK;
}

static uint32_t ReportUnknownNamespace(QmCheckAux* aux, xmlNode* root, const char* ns) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_UNKNOWN_NAMESPACE, root);
  QMD_ERR_SetErrorMsg(err, "%s has invalid namespace: %s.", ElementName(root), ns);
  QMD_ERR_SetBadElement(err, ElementName(root));
  SetBadNamespace(err, ns);
  return QM_INVALID;
}

// A top-level choice has no element of its own; its name is nobody's.
static QmsNode* FindTopSchemaNode(QmsModule* module, const char* name) {
  QmsNode* schemaNode = QMS_MOD_FindTopLevelSchemaNode(module, name);
  if (schemaNode != nullptr && QMD_MDL_IsSchemaNodeNeedSkipInDataTree(schemaNode) != 0) {
    return nullptr;
  }
  return schemaNode;
}

uint32_t QMD_PAS_FlushTreeWithSchema(QmCheckAux* aux, xmlNode* root) {
  if (aux == nullptr || !IsElement(root)) return QM_INVALID;
  if (root->_private != nullptr) return QM_OK;
  const char* ns = QM_XML_GetXmlNodeDefaultNs(root);
  if (ns == nullptr) return QM_INVALID;
  QmsModule* module = QM_CTX_GetModuleByModNs(aux->ctx, ns);
  if (module == nullptr) return ReportUnknownNamespace(aux, root, ns);
  root->_private = FindTopSchemaNode(module, ElementName(root));
  if (root->_private == nullptr) {
    ReportUnexpectedElement(aux, root);
    return QM_INVALID;
  }
  const uint32_t ret = QMD_PAS_CheckTopSchemaNode(aux, root);
  return ret == QM_OK ? BindBelow(aux, root, BoundSchema(root)) : ret;
}

void QMD_PAS_ClearXmlTreePrivate(xmlNode* node) {
  if (!IsElement(node)) return;
  for (xmlNode* element = node; element != nullptr; element = NextElement(node, element)) {
    element->_private = nullptr;
  }
}
