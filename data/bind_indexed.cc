// SPDX-License-Identifier: BSD-3-Clause
// Elements come as others of their parent's kind came before them, so the child that was
// next the last time is tried first, and known by the addresses of its name and namespace:
// no element changes or goes while a tree is bound. A check that finds something amiss
// leaves it to the function that looks at the tree, which decides and reports.
#include "data/bind_indexed.h"

#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/data_node.h"
#include "data/error.h"
#include "data/node_check.h"
#include "data/schema_children.h"
#include "platform/string.h"

// A small parent with fewer elements pays for being indexed only when it is met again.
constexpr uint32_t kManyElements = 8;
constexpr uint32_t kChildrenAhead = 6;

static bool HasManyElements(const xmlNode* element) {
  uint32_t count = 0;
  const xmlNode* node = element->children;
  while (node != nullptr && count < kManyElements) {
    if (node->type == XML_ELEMENT_NODE) ++count;
    node = node->next;
  }
  return count == kManyElements;
}

QmdParent* OpenToBind(QmCheckAux* aux, QmsNode* schemaNode, const xmlNode* element) {
  QmdRunIndex* index = aux->index;
  QmdParent* parent = index == nullptr ? nullptr : MakeParent(index, schemaNode);
  if (parent == nullptr) return nullptr;
  const bool isFirst = !parent->isMet;
  parent->isMet = true;
  if (isFirst && !HasManyElements(element) && IsSmall(parent)) return nullptr;
  parent = IndexedParent(index, schemaNode);
  if (parent != nullptr) OpenInstance(index, parent, element);
  return parent;
}

QmdParent* BackToBind(const QmCheckAux* aux, const QmsNode* schemaNode, const xmlNode* element) {
  if (aux->index == nullptr) return nullptr;
  QmdParent* parent = FindParent(aux->index, schemaNode);
  return parent != nullptr && parent->instance == element ? parent : nullptr;
}

// The module that the namespace of an element stands for, as it is asked in a search by
// name. NULL for a namespace that no module has.
static const char* ModuleOf(QmCheckAux* aux, const QmdParent* parent, const xmlNode* element) {
  QmdRunIndex* index = aux->index;
  if (!index->isNsKnown || index->ns != element->ns) {
    index->ns = element->ns;
    index->nsModule = QMD_NODE_GetModuleName(aux->ctx, element);
    index->isNsKnown = true;
  }
  const char* name = index->nsModule;
  if (name == nullptr && QM_XML_GetXmlNodeDefaultNs(element) != nullptr) return nullptr;
  return name == nullptr || *name == '\0' ? QM_MOD_GetModuleName(parent->node->module) : name;
}

static bool IsWrittenAs(const QmdChild* child, const xmlNode* element) {
  return child->name != nullptr && child->name == element->name && child->ns == element->ns;
}

// The names of a tree may be copies.
static bool IsNamedAs(const QmdChild* child, const xmlNode* element) {
  return child->name != nullptr && child->ns == element->ns &&
         RTK_StrCmp(child->node->name, ElementName(element)) == 0;
}

// Where optional elements are missing, what comes is one of the next in the schema.
static QmdChild* FindAhead(const QmdParent* parent, const xmlNode* element) {
  const uint32_t first = parent->last == nullptr ? 0 : parent->last->order + 1;
  for (uint32_t i = first; i < parent->childCount && i < first + kChildrenAhead; ++i) {
    if (IsWrittenAs(&parent->children[i], element)) return &parent->children[i];
  }
  return nullptr;
}

static QmdChild* FindByName(QmCheckAux* aux, const QmdParent* parent, const xmlNode* element) {
  const char* moduleName = ModuleOf(aux, parent, element);
  QmdChild* child =
      moduleName == nullptr ? nullptr : FindChild(parent, moduleName, ElementName(element));
  if (child == nullptr) return nullptr;
  child->name = element->name;
  child->ns = element->ns;
  return child;
}

static QmdChild* ChildOf(QmCheckAux* aux, QmdParent* parent, const xmlNode* element) {
  QmdChild* child = ExpectedChild(parent);
  if (child != nullptr && (IsWrittenAs(child, element) || IsNamedAs(child, element))) return child;
  child = FindAhead(parent, element);
  if (child == nullptr) child = FindByName(aux, parent, element);
  if (child != nullptr) LearnFollower(parent, child);
  return child;
}

static uint32_t CheckIndexed(QmCheckAux* aux, const QmdParent* parent, const QmdChild* child,
                             xmlNode* element) {
  uint32_t ret = IsAlone(parent, child) ? QM_OK : QMD_PAS_CheckMultipleInstanceNode(aux, element);
  if (ret == QM_OK && (child->flags & QMD_CHILD_PLAIN) != 0) {
    ret = QMD_PAS_CheckDataNodeValue(aux, element);
  }
  if (ret == QM_OK && child->node->kind == QMS_NODE_ACTION) {
    ret = QMD_PAS_CheckActionNodeRepeat(aux, element);
  }
  if (ret == QM_OK && !IsInOrder(parent, child)) ret = QMD_PAS_CheckElementNodeOrder(aux, element);
  if (ret == QM_OK && !IsInTheCase(parent, child)) ret = QMD_PAS_CheckMultiCases(aux, element);
  return ret;
}

uint32_t BindIndexedElement(QmCheckAux* aux, QmdParent* parent, xmlNode* element) {
  QmdChild* child = ChildOf(aux, parent, element);
  if (child == nullptr) {
    ReportUnexpectedElement(aux, element);
    return QM_INVALID;
  }
  element->_private = child->node;
  const uint32_t ret = CheckIndexed(aux, parent, child, element);
  NoteBoundChild(aux->index, parent, child, element);
  return ret;
}
