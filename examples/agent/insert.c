/* SPDX-License-Identifier: BSD-3-Clause */
/* The entry beside which another goes is named by its keys or its value. An element is made of
   them that stands in the request for as long as it is looked for, so that prefixes mean there
   what the client means. */
#define _GNU_SOURCE
#include "insert.h"

#include <stdlib.h>
#include <string.h>

#include "fault.h"
#include "schema.h"
#include "text.h"

#define YANG_NS "urn:ietf:params:xml:ns:yang:1"

static const char *Attribute(const xmlNode *element, const char *name) {
  const xmlAttr *attribute = xmlHasNsProp(element, X(name), X(YANG_NS));
  if (attribute == NULL) return NULL;
  return attribute->children == NULL ? "" : C(attribute->children->content);
}

/* The attribute that names the other entry. */
static const char *Namer(const xmlNode *element) {
  return SchemaKind(element) == QMS_NODE_LIST ? "key" : "value";
}

static int WantsOther(const char *where) {
  return strcmp(where, "before") == 0 || strcmp(where, "after") == 0;
}

int InsertKnows(const xmlNode *element, const xmlAttr *attribute) {
  return attribute->ns != NULL && xmlStrEqual(attribute->ns->href, X(YANG_NS)) &&
         QM_NODE_IsOrderedByNode(SchemaOf(element)) &&
         (xmlStrEqual(attribute->name, X("insert")) ||
          xmlStrEqual(attribute->name, X(Namer(element))));
}

static QmErrNode *BadAttribute(uint32_t tag, xmlNode *in, const char *name, const char *message) {
  return With(FaultAt(tag, in, message, NULL), QM_AGENT_FIELD_BAD_ATTRIBUTE, name);
}

QmErrNode *InsertCheck(xmlNode *element) {
  const char *where = Attribute(element, "insert");
  int named = Attribute(element, Namer(element)) != NULL;
  if (where == NULL || strcmp(where, "first") == 0 || strcmp(where, "last") == 0)
    return named ? BadAttribute(QM_ERR_TAG_BAD_ATTRIBUTE, element, Namer(element),
                                "%s names another entry and does not say why.")
                 : NULL;
  if (!WantsOther(where))
    return BadAttribute(QM_ERR_TAG_BAD_ATTRIBUTE, element, "insert",
                        "%s is inserted neither first, last, before nor after.");
  return named ? NULL
               : BadAttribute(QM_ERR_TAG_MISSING_ATTRIBUTE, element, Namer(element),
                              "%s does not say before or after which entry.");
}

/* Adds a key to the element that stands for the other entry; 0 when the name is wrong. */
static int AddKey(xmlNode *in, xmlNode *other, char *name, const char *value, size_t length) {
  char *colon = strchr(name, ':');
  if (colon != NULL) {
    *colon = '\0';
    const xmlNs *ns = xmlSearchNs(in->doc, in, X(name));
    if (ns == NULL || strcmp(C(ns->href), NamespaceOf(in)) != 0) return 0;
  }
  xmlNode *leaf = Need(xmlNewDocNode(in->doc, in->ns, X(colon == NULL ? name : colon + 1), NULL));
  xmlNodeAddContentLen(leaf, X(value), (int)length);
  xmlAddChild(other, leaf);
  return 1;
}

/* Takes one predicate, as [p:name='value']; gives what follows, or NULL for what is none. */
static const char *TakePredicate(xmlNode *in, xmlNode *other, const char *at) {
  if (*at++ != '[') return NULL;
  at += strspn(at, kBlanks);
  size_t length = strcspn(at, "=[]'\" \t\r\n");
  char *name = Need(strndup(at, length));
  at += length + strspn(at + length, kBlanks);
  if (*at == '=') at += 1 + strspn(at + 1, kBlanks);
  const char *end = *at == '\'' || *at == '"' ? strchr(at + 1, *at) : NULL;
  int good = end != NULL && AddKey(in, other, name, at + 1, (size_t)(end - at - 1));
  free(name);
  if (!good) return NULL;
  end += 1 + strspn(end + 1, kBlanks);
  return *end == ']' ? end + 1 + strspn(end + 1, kBlanks) : NULL;
}

/* The entry that the request names; NULL when there is none. */
static xmlNode *FindOther(Instances *instances, xmlNode *parent, xmlNode *in) {
  xmlNode *other = Need(xmlNewDocNode(in->doc, in->ns, in->name, NULL));
  other->_private = SchemaOf(in);
  xmlAddChild(in, other);
  const char *at = Attribute(in, Namer(in));
  if (SchemaKind(in) == QMS_NODE_LIST) {
    at += strspn(at, kBlanks);
    while (at != NULL && *at != '\0') at = TakePredicate(in, other, at);
  } else {
    xmlNodeAddContent(other, X(at));
  }
  const char *missing = NULL;
  char *instance = SchemaInstance(instances->ctx, other, SchemaOf(other), &missing);
  xmlNode *found = at == NULL || instance == NULL ? NULL : InstancesFind(instances, parent, other);
  free(instance);
  xmlUnlinkNode(other);
  xmlFreeNode(other);
  return found;
}

/* The first or the last entry of the list that the entry is in. */
static xmlNode *EndOfList(const xmlNode *entry, int last) {
  xmlNode *at = last ? entry->parent->last : entry->parent->children;
  while (SchemaOf(at) != SchemaOf(entry)) at = last ? at->prev : at->next;
  return at;
}

QmErrNode *InsertPlace(Instances *instances, xmlNode *parent, xmlNode *in) {
  const char *where = Attribute(in, "insert");
  if (where == NULL) return NULL;
  xmlNode *entry = InstancesFind(instances, parent, in);
  int last = strcmp(where, "last") == 0;
  xmlNode *beside = WantsOther(where) ? FindOther(instances, parent, in) : EndOfList(entry, last);
  if (beside == NULL)
    return With(BadAttribute(QM_ERR_TAG_BAD_ATTRIBUTE, in, Namer(in),
                             "There is no entry as %s names one to stand beside."),
                QM_AGENT_FIELD_APP_TAG, "missing-instance");
  if (beside == entry) return NULL;
  xmlUnlinkNode(entry);
  if (last || strcmp(where, "after") == 0) {
    xmlAddNextSibling(beside, entry);
  } else {
    xmlAddPrevSibling(beside, entry);
  }
  return NULL;
}
