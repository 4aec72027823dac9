/* SPDX-License-Identifier: BSD-3-Clause */
#include "edit.h"

#include <stdlib.h>
#include <string.h>

#include "agent.h"
#include "fault.h"
#include "insert.h"
#include "instances.h"
#include "schema.h"
#include "value.h"

typedef struct Edit {
  QmCtx *ctx;
  Instances instances;
  xmlNode *removed; /* Holds what was taken away until the end. */
} Edit;

static QmErrNode *EditElement(Edit *edit, xmlNode *parent, xmlNode *in, EditOperation inherited);

static void Remove(Edit *edit, xmlNode *element) {
  InstancesRemove(&edit->instances, element);
  xmlUnlinkNode(element);
  /* Namespaces of ancestors stay in the document, which lives longer. */
  xmlAddChild(edit->removed, element);
}

/* A new element of the parent, in its place at the end, or before another. */
static xmlNode *NewElement(xmlNode *parent, const xmlNode *in, xmlNode *before) {
  xmlNode *element = Need(xmlNewDocNode(parent->doc, NULL, in->name, NULL));
  element->_private = in->_private;
  if (before == NULL) {
    xmlAddChild(parent, element);
  } else {
    xmlAddPrevSibling(before, element);
  }
  int same = strcmp(NamespaceOf(parent), NamespaceOf(in)) == 0;
  xmlSetNs(element, same ? parent->ns : Need(xmlNewNs(element, X(NamespaceOf(in)), NULL)));
  return element;
}

/* Sets a leaf, an entry of a leaf-list or what a node of unknown content holds. */
static xmlNode *NewLeaf(Edit *edit, xmlNode *parent, xmlNode *in, xmlNode *before) {
  uint32_t kind = SchemaKind(in);
  xmlNode *leaf = NewElement(parent, in, before);
  if (kind == QMS_NODE_ANYXML || kind == QMS_NODE_ANYDATA) {
    for (xmlNode *child = in->children; child != NULL; child = child->next)
      xmlAddChild(leaf, Need(xmlDocCopyNode(child, leaf->doc, 1)));
    return leaf;
  }
  char *value = ValueOf(edit->ctx, SchemaOf(in), in);
  ValueDeclarePrefixes(edit->ctx, leaf, in, value);
  xmlNodeAddContent(leaf, X(value));
  free(value);
  return leaf;
}

/* Data of one case deletes the data of the others, RFC 7950 section 7.9. */
static void RemoveOtherCases(Edit *edit, const xmlNode *element) {
  const QmsNode *node = SchemaOf(element);
  const QmsNode *choice = QM_NODE_GetParentNode(node);
  /* Where a neighbour is of the same case the others are gone, as with all entries of a list but
     the first. */
  const QmsNode *beside = element->prev == NULL ? NULL : SchemaOf(element->prev);
  int sameCase =
      QM_NODE_GetNodeType(choice) == QMS_NODE_CASE && QM_NODE_GetParentNode(beside) == choice;
  if (beside == node || sameCase) return;
  for (; choice != NULL; node = choice, choice = QM_NODE_GetParentNode(choice)) {
    uint32_t kind = QM_NODE_GetNodeType(choice);
    if (kind == QMS_NODE_CASE) continue;
    if (kind != QMS_NODE_CHOICE) return;
    xmlNode *next = NULL;
    for (xmlNode *sibling = FirstElement(element->parent); sibling != NULL; sibling = next) {
      next = NextElement(sibling);
      const QmsNode *below = SchemaOf(sibling);
      const QmsNode *above = QM_NODE_GetParentNode(below);
      while (above != NULL && above != choice) {
        below = above;
        above = QM_NODE_GetParentNode(above);
      }
      if (above == choice && below != node) Remove(edit, sibling);
    }
  }
}

static QmErrNode *EditChildren(Edit *edit, xmlNode *data, const xmlNode *in,
                               EditOperation operation) {
  QmErrNode *fault = NULL;
  for (xmlNode *child = FirstElement(in); child && !fault; child = NextElement(child)) {
    if (!QM_NODE_IsKey(SchemaOf(child))) {
      fault = EditElement(edit, data, child, operation);
    } else if (child->properties != NULL && (EditOperationAt(child, operation) == EDIT_DELETE ||
                                             EditOperationAt(child, operation) == EDIT_REMOVE)) {
      fault =
          FaultAt(QM_ERR_TAG_BAD_ELEMENT, child, "%s is a key and goes with its entry only.", NULL);
    }
  }
  return fault;
}

/* What the scan of the keys needs that a new entry gets. */
typedef struct KeyCopy {
  Edit *edit;
  xmlNode *entry;
  const xmlNode *in;
} KeyCopy;

static uint32_t CopyKey(QmsNode *key, uint32_t travType, void *arg) {
  const KeyCopy *copy = arg;
  (void)travType;
  xmlNode *leaf =
      ChildNamed(copy->in, QM_MOD_GetModuleNs(QM_NODE_GetModule(key)), QM_NODE_GetNodeName(key));
  if (leaf != NULL) (void)NewLeaf(copy->edit, copy->entry, leaf, NULL);
  return 0;
}

/* Adds an instance with everything that the request has of it. */
static QmErrNode *Create(Edit *edit, xmlNode *parent, xmlNode *in, xmlNode *before,
                         EditOperation operation) {
  uint32_t kind = SchemaKind(in);
  if (kind != QMS_NODE_CONTAINER && kind != QMS_NODE_LIST) {
    xmlNode *leaf = NewLeaf(edit, parent, in, before);
    InstancesAdd(&edit->instances, leaf);
    RemoveOtherCases(edit, leaf);
    return NULL;
  }
  xmlNode *element = NewElement(parent, in, before);
  KeyCopy copy = {edit, element, in};
  if (kind == QMS_NODE_LIST) Ignore(QM_NODE_ScanKey(SchemaOf(in), CopyKey, &copy));
  InstancesAdd(&edit->instances, element);
  RemoveOtherCases(edit, element);
  return EditChildren(edit, element, in, operation);
}

static QmErrNode *Replace(Edit *edit, xmlNode *parent, xmlNode *in, xmlNode *there,
                          EditOperation operation) {
  if (there == NULL) return Create(edit, parent, in, NULL, operation);
  /* The new one takes the place of the old one, which goes first, for the index. */
  xmlNode *after = there->next;
  Remove(edit, there);
  return Create(edit, parent, in, after, operation);
}

static QmErrNode *Merge(Edit *edit, xmlNode *parent, xmlNode *in, xmlNode *there) {
  if (there == NULL) return Create(edit, parent, in, NULL, EDIT_MERGE);
  uint32_t kind = SchemaKind(in);
  if (kind == QMS_NODE_CONTAINER || kind == QMS_NODE_LIST)
    return EditChildren(edit, there, in, EDIT_MERGE);
  if (kind == QMS_NODE_LEAF_LIST) return NULL;
  return Replace(edit, parent, in, there, EDIT_MERGE);
}

static QmErrNode *Apply(Edit *edit, xmlNode *parent, xmlNode *in, EditOperation operation) {
  xmlNode *there = InstancesFind(&edit->instances, parent, in);
  switch (operation) {
    case EDIT_CREATE:
      if (there != NULL) return FaultAt(QM_ERR_TAG_DATA_EXISTS, in, "%s exists already.", NULL);
      return Create(edit, parent, in, NULL, operation);
    case EDIT_DELETE:
    case EDIT_NONE:
      if (there == NULL) return FaultAt(QM_ERR_TAG_DATA_MISSING, in, "%s does not exist.", NULL);
      if (operation == EDIT_NONE) return EditChildren(edit, there, in, operation);
      Remove(edit, there);
      return NULL;
    case EDIT_REMOVE:
      if (there != NULL) Remove(edit, there);
      return NULL;
    case EDIT_REPLACE:
      return Replace(edit, parent, in, there, operation);
    default:
      return Merge(edit, parent, in, there);
  }
}

static QmErrNode *EditElement(Edit *edit, xmlNode *parent, xmlNode *in, EditOperation inherited) {
  EditOperation operation = EditOperationAt(in, inherited);
  QmErrNode *fault = Apply(edit, parent, in, operation);
  int places = operation == EDIT_CREATE || operation == EDIT_MERGE || operation == EDIT_REPLACE;
  return fault == NULL && places ? InsertPlace(&edit->instances, parent, in) : fault;
}

QmErrNode *EditApply(QmCtx *ctx, xmlDoc *doc, xmlNode *config, EditOperation operation) {
  xmlNode *root = xmlDocGetRootElement(doc);
  Edit edit = {ctx, {NULL, NULL}, Need(xmlNewDocNode(doc, NULL, X("removed"), NULL))};
  InstancesOpen(&edit.instances, ctx);
  xmlNode *next = NULL;
  for (xmlNode *child = FirstElement(root); operation == EDIT_REPLACE && child; child = next) {
    next = NextElement(child);
    /* Data of packages that are not installed is not the client's to replace. */
    if (SchemaOf(child) != NULL) Remove(&edit, child);
  }
  if (operation == EDIT_REPLACE) operation = EDIT_MERGE;
  QmErrNode *fault = NULL;
  for (xmlNode *child = FirstElement(config); child && !fault; child = NextElement(child))
    fault = EditElement(&edit, root, child, operation);
  InstancesClose(&edit.instances);
  xmlFreeNode(edit.removed);
  return fault;
}
