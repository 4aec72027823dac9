/* SPDX-License-Identifier: BSD-3-Clause */
#include "check.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <libxml/hash.h>

#include "fault.h"
#include "operation_attribute.h"
#include "schema.h"
#include "text.h"

/* What siblings know of each other. */
typedef struct Siblings {
  QmCtx *ctx;
  xmlHashTable *instances; /* By what tells them apart. */
  xmlHashTable *cases;     /* The case that has data, by its choice. */
} Siblings;

static int IsAny(uint32_t kind) {
  return kind == QMS_NODE_ANYXML || kind == QMS_NODE_ANYDATA;
}

static int IsLeaf(uint32_t kind) {
  return kind == QMS_NODE_LEAF || kind == QMS_NODE_LEAF_LIST;
}

static QmErrNode *CheckInstance(const Siblings *siblings, xmlNode *element) {
  const char *missing = NULL;
  char *instance = SchemaInstance(siblings->ctx, element, SchemaOf(element), &missing);
  if (instance == NULL)
    return FaultAt(QM_ERR_TAG_MISSING_ELEMENT, element, "The key %s is missing.", missing);
  int failed = xmlHashAddEntry(siblings->instances, X(instance), element);
  free(instance);
  return failed ? FaultAt(QM_ERR_TAG_BAD_ELEMENT, element, "%s comes twice.", NULL) : NULL;
}

/* Notes for each choice around an element which of its cases the element belongs to. */
static QmErrNode *CheckCases(const Siblings *siblings, xmlNode *element) {
  QmsNode *node = SchemaOf(element);
  QmsNode *above = QM_NODE_GetParentNode(node);
  for (; above != NULL; node = above, above = QM_NODE_GetParentNode(above)) {
    uint32_t kind = QM_NODE_GetNodeType(above);
    if (kind != QMS_NODE_CHOICE && kind != QMS_NODE_CASE) return NULL;
    if (kind == QMS_NODE_CASE) continue;
    char key[32];
    snprintf(key, sizeof key, "%p", (void *)above);
    void *other = xmlHashLookup(siblings->cases, X(key));
    if (other != NULL && other != node)
      return FaultAt(QM_ERR_TAG_BAD_ELEMENT, element,
                     "%s belongs to another case than its sibling.", NULL);
    if (other == NULL && xmlHashAddEntry(siblings->cases, X(key), node) != 0) (void)Need(NULL);
  }
  return NULL;
}

static int IsDeleted(const xmlNode *element) {
  EditOperation operation = EditOperationAt(element, EDIT_MERGE);
  return operation == EDIT_DELETE || operation == EDIT_REMOVE;
}

static QmErrNode *CheckSiblings(QmCtx *ctx, const xmlNode *parent) {
  Siblings siblings = {ctx, Need(xmlHashCreate(0)), Need(xmlHashCreate(0))};
  QmErrNode *fault = NULL;
  for (xmlNode *child = FirstElement(parent); child && !fault; child = NextElement(child)) {
    if (SchemaOf(child) == NULL) continue;
    fault = CheckInstance(&siblings, child);
    if (fault == NULL && !IsDeleted(child)) fault = CheckCases(&siblings, child);
  }
  xmlHashFree(siblings.instances, NULL);
  xmlHashFree(siblings.cases, NULL);
  return fault;
}

static QmErrNode *CheckValue(xmlNode *element) {
  if (QM_NODE_ValidateValue(SchemaOf(element), QM_INPUT_ELEMENT, element) == 0) return NULL;
  return FaultAt(QM_ERR_TAG_INVALID_VALUE, element, "%s has an invalid value.", NULL);
}

/* A leaf has no elements; what has elements has no text. */
static QmErrNode *CheckShape(xmlNode *element) {
  int leaf = IsLeaf(SchemaKind(element));
  for (xmlNode *child = element->children; child != NULL; child = child->next)
    if (leaf ? child->type == XML_ELEMENT_NODE
             : child->type == XML_TEXT_NODE && !xmlIsBlankNode(child))
      return FaultAt(QM_ERR_TAG_BAD_ELEMENT, element,
                     leaf ? "%s is a leaf and has elements." : "%s has a text between elements.",
                     NULL);
  return NULL;
}

/* Finds the schema node of an element of a request. */
static QmErrNode *BindInput(QmCtx *ctx, xmlNode *element) {
  element->_private = SchemaChild(ctx, SchemaOf(element->parent), element);
  if (SchemaOf(element) == NULL) {
    const char *ns = NamespaceOf(element);
    if (QM_CTX_GetModuleByModNs(ctx, ns) != NULL)
      return FaultAt(QM_ERR_TAG_UNKNOWN_ELEMENT, element, "%s is not known here.", NULL);
    QmErrNode *fault =
        FaultAt(QM_ERR_TAG_UNKNOWN_NAMESPACE, element, "The namespace of %s is not known.", NULL);
    return With(fault, QM_AGENT_FIELD_BAD_NAMESPACE, ns);
  }
  if (!QM_NODE_IsRwConfig(SchemaOf(element)))
    return FaultAt(QM_ERR_TAG_BAD_ELEMENT, element, "%s is state, not configuration.", NULL);
  return EditCheckAttributes(element);
}

static QmErrNode *CheckInputElement(QmCtx *ctx, xmlNode *element, int deleted) {
  QmErrNode *fault = BindInput(ctx, element);
  if (fault != NULL || IsAny(SchemaKind(element))) return fault;
  int gone = deleted || IsDeleted(element);
  fault = CheckShape(element);
  /* What is deleted may come without its value, unless that tells which one it is. */
  int needsValue =
      IsLeaf(SchemaKind(element)) &&
      (!gone || SchemaKind(element) == QMS_NODE_LEAF_LIST || QM_NODE_IsKey(SchemaOf(element)));
  if (fault == NULL && needsValue) fault = CheckValue(element);
  for (xmlNode *child = FirstElement(element); child && !fault; child = NextElement(child))
    fault = CheckInputElement(ctx, child, gone);
  return fault == NULL ? CheckSiblings(ctx, element) : fault;
}

/* What is wrong with "config" itself, which has no node and so no path. An operation there would be
   passed over, whatever the client meant. */
static QmErrNode *CheckOutermost(xmlNode *config) {
  if (config->properties == NULL) return CheckShape(config);
  QmErrNode *fault = FaultAt(QM_ERR_TAG_UNKNOWN_ATTRIBUTE, config, "%s has an attribute.", NULL);
  return With(fault, QM_AGENT_FIELD_BAD_ATTRIBUTE, C(config->properties->name));
}

QmErrNode *CheckInput(QmCtx *ctx, xmlNode *config) {
  QmErrNode *fault = NULL;
  config->_private = NULL;
  QmErrNode *own = CheckOutermost(config);
  if (own != NULL) return With(own, QM_AGENT_FIELD_PATH, NULL);
  for (xmlNode *child = FirstElement(config); child && !fault; child = NextElement(child))
    fault = CheckInputElement(ctx, child, 0);
  return fault == NULL ? CheckSiblings(ctx, config) : fault;
}

/* The search for what is missing below one element. */
typedef struct Missing {
  xmlNode *nearest; /* The nearest element that exists. */
  Text below;       /* The missing containers below it, as a path. */
  QmErrNode *fault;
} Missing;

static uint32_t CheckMandatory(QmsNode *node, uint32_t travType, void *arg);

static int HasElement(const xmlNode *parent, const QmsNode *node) {
  return ChildNamed(parent, QM_MOD_GetModuleNs(QM_NODE_GetModule(node)),
                    QM_NODE_GetNodeName(node)) != NULL;
}

/* Ends a scan with 1 when a node of the choice or case has an element. */
static uint32_t FindData(QmsNode *node, uint32_t travType, void *arg) {
  const xmlNode *parent = arg;
  (void)travType;
  uint32_t kind = QM_NODE_GetNodeType(node);
  if (kind == QMS_NODE_CHOICE || kind == QMS_NODE_CASE)
    return QM_NODE_IterScanChildrenNode(node, FindData, arg);
  return HasElement(parent, node) ? 1 : 0;
}

static uint32_t Report(Missing *missing, QmsNode *node, int choice) {
  const char *name = QM_NODE_GetNodeName(node);
  char *parent = SchemaOf(missing->nearest) == NULL ? CopyText("") : SchemaPath(missing->nearest);
  missing->fault = FaultAt(QM_ERR_TAG_DATA_MISSING, missing->nearest,
                           choice ? "A case of %s is missing." : "%s is missing.", name);
  /* The path of a choice is that of its parent, RFC 7950 section 15.6. */
  const char *below = missing->below.length == 0 ? "" : missing->below.data;
  int top = *parent == '\0' && *below == '\0';
  const char *module = QM_MOD_GetModuleName(QM_NODE_GetModule(node));
  char *path =
      choice ? PrintText("%s%s", parent, below)
             : PrintText("%s%s/%s%s%s", parent, below, top ? module : "", top ? ":" : "", name);
  With(missing->fault, QM_AGENT_FIELD_PATH, *path == '\0' ? "/" : path);
  if (choice) {
    With(missing->fault, QM_AGENT_FIELD_APP_TAG, "missing-choice");
    With(missing->fault, QM_AGENT_FIELD_MISSING_CHOICE, name);
  }
  free(path);
  free(parent);
  return 1;
}

/* A container without presence is there without an element too. */
static uint32_t CheckMissingContainer(Missing *missing, QmsNode *node) {
  size_t length = missing->below.length;
  int top = length == 0 && SchemaOf(missing->nearest) == NULL;
  TextPrint(&missing->below, "/%s%s%s", top ? QM_MOD_GetModuleName(QM_NODE_GetModule(node)) : "",
            top ? ":" : "", QM_NODE_GetNodeName(node));
  uint32_t end = QM_NODE_IterScanChildrenNode(node, CheckMandatory, missing);
  missing->below.length = length;
  missing->below.data[length] = '\0';
  return end;
}

static uint32_t CheckMandatory(QmsNode *node, uint32_t travType, void *arg) {
  Missing *missing = arg;
  (void)travType;
  if (!QM_NODE_IsEnabled(node) || !QM_NODE_IsRwConfig(node) || QM_NODE_GetWhenCond(node) != NULL)
    return 0;
  uint32_t kind = QM_NODE_GetNodeType(node);
  /* A node that is a case by itself is there, or another case is. */
  if (kind != QMS_NODE_CASE && QM_NODE_GetNodeType(QM_NODE_GetParentNode(node)) == QMS_NODE_CHOICE)
    return 0;
  /* Below a container that is missing everything is. */
  int there =
      missing->below.length == 0 && kind != QMS_NODE_CASE && HasElement(missing->nearest, node);
  switch (kind) {
    case QMS_NODE_LEAF:
    case QMS_NODE_ANYXML:
    case QMS_NODE_ANYDATA:
      return there || !QM_NODE_IsMandatory(node) ? 0 : Report(missing, node, 0);
    case QMS_NODE_CONTAINER:
      return there || QM_NODE_IsPresenceContainer(node) ? 0 : CheckMissingContainer(missing, node);
    case QMS_NODE_CHOICE:
      if (missing->below.length != 0 || FindData(node, QMS_TRAV_TOP, missing->nearest) == 0)
        return QM_NODE_IsMandatory(node) ? Report(missing, node, 1) : 0;
      return QM_NODE_IterScanChildrenNode(node, CheckMandatory, missing);
    case QMS_NODE_CASE:
      return FindData(node, QMS_TRAV_TOP, missing->nearest) == 0
                 ? 0
                 : QM_NODE_IterScanChildrenNode(node, CheckMandatory, missing);
    default:
      return 0;
  }
}

static uint32_t CheckModule(QmsModule *module, void *arg) {
  return QM_MOD_IterScanTopmostNode(module, CheckMandatory, arg);
}

static QmErrNode *CheckNothingMissing(QmCtx *ctx, xmlNode *element) {
  Missing missing = {element, {NULL, 0, 0}, NULL};
  QmsNode *node = SchemaOf(element);
  uint32_t end = node == NULL ? QM_CTX_ScanAllModule(ctx, CheckModule, &missing)
                              : QM_NODE_IterScanChildrenNode(node, CheckMandatory, &missing);
  (void)end;
  TextFree(&missing.below);
  return missing.fault;
}

QmErrNode *CheckConfig(QmCtx *ctx, xmlNode *config) {
  uint32_t kind = SchemaKind(config);
  if (IsAny(kind)) return NULL;
  if (IsLeaf(kind)) return CheckValue(config);
  QmErrNode *fault = CheckSiblings(ctx, config);
  for (xmlNode *child = FirstElement(config); child && !fault; child = NextElement(child))
    if (SchemaOf(child) != NULL) fault = CheckConfig(ctx, child);
  return fault == NULL ? CheckNothingMissing(ctx, config) : fault;
}
