/* SPDX-License-Identifier: BSD-3-Clause */
#include "schema.h"

#include <stdlib.h>
#include <string.h>

#include "text.h"
#include "value.h"

enum { SCAN_FOUND = 1 };

/* Tells whether a node has elements in a datastore. */
static int HasElements(uint32_t kind) {
  return kind == QMS_NODE_CONTAINER || kind == QMS_NODE_LIST || kind == QMS_NODE_LEAF ||
         kind == QMS_NODE_LEAF_LIST || kind == QMS_NODE_ANYXML || kind == QMS_NODE_ANYDATA;
}

/* The node of that module and name among the children of a node, or the top nodes of the module;
   choices and cases have no elements, so it looks into them. */
static QmsNode *FindNode(const QmsModule *module, const QmsNode *parent, const char *name) {
  QmsNode *node = NULL;
  for (;;) {
    node =
        parent == NULL ? QM_MOD_GetNextTopNode(module, node) : QM_NODE_GetNextChild(parent, node);
    if (node == NULL) return NULL;
    if (!QM_NODE_IsEnabled(node)) continue;
    uint32_t kind = QM_NODE_GetNodeType(node);
    QmsNode *found = NULL;
    if (kind == QMS_NODE_CHOICE || kind == QMS_NODE_CASE) {
      found = FindNode(module, node, name);
    } else if (HasElements(kind) && QM_NODE_GetModule(node) == module &&
               strcmp(QM_NODE_GetNodeName(node), name) == 0) {
      found = node;
    }
    if (found != NULL) return found;
  }
}

QmsNode *SchemaChild(QmCtx *ctx, QmsNode *parent, const xmlNode *element) {
  const QmsModule *module = QM_CTX_GetModuleByModNs(ctx, NamespaceOf(element));
  return module == NULL ? NULL : FindNode(module, parent, C(element->name));
}

void SchemaBind(QmCtx *ctx, xmlNode *element, QmsNode *node) {
  element->_private = node;
  uint32_t kind = QM_NODE_GetNodeType(node);
  if (kind == QMS_NODE_ANYXML || kind == QMS_NODE_ANYDATA) return;
  for (xmlNode *child = FirstElement(element); child != NULL; child = NextElement(child)) {
    QmsNode *below = SchemaChild(ctx, node, child);
    if (below != NULL) SchemaBind(ctx, child, below);
  }
}

QmsNode *SchemaOf(const xmlNode *element) {
  return element->_private;
}

uint32_t SchemaKind(const xmlNode *element) {
  return QM_NODE_GetNodeType(element->_private);
}

xmlNode *FirstElement(const xmlNode *parent) {
  xmlNode *child = parent->children;
  while (child != NULL && child->type != XML_ELEMENT_NODE) child = child->next;
  return child;
}

xmlNode *NextElement(const xmlNode *element) {
  xmlNode *next = element->next;
  while (next != NULL && next->type != XML_ELEMENT_NODE) next = next->next;
  return next;
}

const char *NamespaceOf(const xmlNode *element) {
  return element->ns == NULL || element->ns->href == NULL ? "" : C(element->ns->href);
}

xmlNode *ChildNamed(const xmlNode *parent, const char *ns, const char *name) {
  const char *wanted = ns == NULL ? NamespaceOf(parent) : ns;
  for (xmlNode *child = FirstElement(parent); child != NULL; child = NextElement(child)) {
    if (!xmlStrEqual(child->name, X(name))) continue;
    /* The library takes a parameter without a namespace as one of the operation's. */
    int none = ns == NULL && (*NamespaceOf(child) == '\0' || *wanted == '\0');
    if (none || strcmp(NamespaceOf(child), wanted) == 0) return child;
  }
  return NULL;
}

/* What the scan of a list's keys needs. */
typedef struct KeyScan {
  QmCtx *ctx;
  xmlNode *entry;
  Text *text;
  const char *missing;
  int quoted; /* As predicates of a path. */
} KeyScan;

static uint32_t AddKey(QmsNode *key, uint32_t travType, void *arg) {
  KeyScan *scan = arg;
  (void)travType;
  const char *name = QM_NODE_GetNodeName(key);
  xmlNode *leaf = ChildNamed(scan->entry, QM_MOD_GetModuleNs(QM_NODE_GetModule(key)), name);
  if (leaf == NULL) {
    scan->missing = name;
    return SCAN_FOUND;
  }
  if (!scan->quoted) {
    char *value = ValueOf(scan->ctx, key, leaf);
    TextPrint(scan->text, "\n%zu %s", strlen(value), value);
    free(value);
    return 0;
  }
  xmlChar *value = Need(xmlNodeGetContent(leaf));
  const char *quote = xmlStrchr(value, '\'') == NULL ? "'" : "\"";
  TextPrint(scan->text, "[%s=%s%s%s]", name, quote, C(value), quote);
  xmlFree(value);
  return 0;
}

char *SchemaInstance(QmCtx *ctx, xmlNode *element, QmsNode *node, const char **missing) {
  Text text = {NULL, 0, 0};
  TextPrint(&text, "%s %s", C(element->name), NamespaceOf(element));
  uint32_t kind = QM_NODE_GetNodeType(node);
  KeyScan scan = {ctx, element, &text, NULL, 0};
  if (kind == QMS_NODE_LIST && QM_NODE_ScanKey(node, AddKey, &scan) != 0) {
    *missing = scan.missing;
    TextFree(&text);
    return NULL;
  }
  if (kind == QMS_NODE_LEAF_LIST) {
    char *value = ValueOf(ctx, node, element);
    TextPrint(&text, "\n%s", value);
    free(value);
  }
  return text.data;
}

static void AddStep(Text *text, xmlNode *element) {
  QmsNode *node = SchemaOf(element);
  xmlNode *parent = element->parent;
  QmsNode *above = parent != NULL && parent->type == XML_ELEMENT_NODE ? SchemaOf(parent) : NULL;
  if (above != NULL) AddStep(text, parent);
  TextAdd(text, "/");
  const QmsModule *module = node == NULL ? NULL : QM_NODE_GetModule(node);
  if (module != NULL && (above == NULL || QM_NODE_GetModule(above) != module))
    TextPrint(text, "%s:", QM_MOD_GetModuleName(module));
  TextAdd(text, C(element->name));
  KeyScan scan = {NULL, element, text, NULL, 1};
  /* An entry without a key has no predicate for it. */
  if (QM_NODE_GetNodeType(node) == QMS_NODE_LIST &&
      QM_NODE_ScanKey(node, AddKey, &scan) == SCAN_FOUND)
    return;
}

char *SchemaPath(xmlNode *element) {
  Text text = {NULL, 0, 0};
  AddStep(&text, element);
  return text.data;
}
