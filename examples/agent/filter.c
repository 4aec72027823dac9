/* SPDX-License-Identifier: BSD-3-Clause */
/* Two walks: the first marks what is selected, in libxml2's field for lines, which the agent's
   trees do not use; the second removes the rest. So what two branches of a filter select of one
   element comes out as one element. */
#include "filter.h"

#include <stdlib.h>
#include <string.h>

#include <libxml/hash.h>

#include "fault.h"
#include "schema.h"
#include "text.h"
#include "value.h"

enum { MARK_NONE = 0, MARK_ON_THE_WAY = 1, MARK_WHOLE = 2 };

static void Mark(xmlNode *element, unsigned short mark) {
  if (element->line < mark) element->line = mark;
}

/* The text between the blanks at both ends. */
static char *Trimmed(char *text) {
  char *begin = text + strspn(text, kBlanks);
  size_t length = strlen(begin);
  while (length > 0 && strchr(kBlanks, begin[length - 1]) != NULL) length--;
  memmove(text, begin, length);
  text[length] = '\0';
  return text;
}

/* Blanks around what a filter wants a leaf to be do not count. */
static void TrimTexts(const xmlNode *filter) {
  for (xmlNode *child = filter->children; child != NULL; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) {
      TrimTexts(child);
    } else if (child->content != NULL) {
      char *text = Trimmed(CopyText(C(child->content)));
      xmlNodeSetContent(child, X(text));
      free(text);
    }
  }
}

/* Each attribute of a filter's element is one that the data is to have. */
static int HasAttributes(const xmlNode *filter, const xmlNode *data) {
  for (const xmlAttr *wanted = filter->properties; wanted != NULL; wanted = wanted->next) {
    const xmlAttr *there = data->properties;
    while (there != NULL && (!xmlStrEqual(there->name, wanted->name) ||
                             !xmlStrEqual(there->ns == NULL ? NULL : there->ns->href,
                                          wanted->ns == NULL ? NULL : wanted->ns->href)))
      there = there->next;
    if (there == NULL || !xmlStrEqual(there->children == NULL ? X("") : there->children->content,
                                      wanted->children == NULL ? X("") : wanted->children->content))
      return 0;
  }
  return 1;
}

/* A filter element without a namespace stands for that name in any. */
static int Matches(const xmlNode *filter, const xmlNode *data) {
  if (!xmlStrEqual(filter->name, data->name) || !HasAttributes(filter, data)) return 0;
  const char *ns = NamespaceOf(filter);
  return *ns == '\0' || strcmp(ns, NamespaceOf(data)) == 0;
}

/* A leaf with a value: "content match". */
static int IsContent(const xmlNode *filter) {
  if (FirstElement(filter) != NULL) return 0;
  return filter->children != NULL && !xmlStrEqual(filter->children->content, X(""));
}

static int HasValue(QmCtx *ctx, xmlNode *data, xmlNode *filter) {
  if (!Matches(filter, data) || FirstElement(data) != NULL) return 0;
  char *value = Trimmed(ValueOf(ctx, SchemaOf(data), data));
  char *wanted = Trimmed(ValueOf(ctx, SchemaOf(data), filter));
  int same = strcmp(value, wanted) == 0;
  free(value);
  free(wanted);
  return same;
}

/* Marks the leaf that has the wanted value when that is asked; tells whether there is one. */
static int Content(QmCtx *ctx, xmlNode *data, xmlNode *filter, int mark) {
  for (xmlNode *child = FirstElement(data); child != NULL; child = NextElement(child)) {
    if (!HasValue(ctx, child, filter)) continue;
    if (mark) Mark(child, MARK_WHOLE);
    return 1;
  }
  return 0;
}

static void MarkKeys(xmlNode *data) {
  if (SchemaKind(data) != QMS_NODE_LIST) return;
  for (xmlNode *child = FirstElement(data); child != NULL; child = NextElement(child))
    if (QM_NODE_IsKey(SchemaOf(child))) Mark(child, MARK_WHOLE);
}

static int Select(QmCtx *ctx, xmlNode *data, const xmlNode *filter, const char *ns);

/* One element of the filter that selects, against all children of an element. */
static int SelectChildren(QmCtx *ctx, xmlNode *data, const xmlNode *filter) {
  int any = 0;
  for (xmlNode *child = FirstElement(data); child != NULL; child = NextElement(child)) {
    if (!Matches(filter, child)) continue;
    if (FirstElement(filter) == NULL) Mark(child, MARK_WHOLE);
    any = FirstElement(filter) == NULL || Select(ctx, child, filter, NULL) || any;
  }
  return any;
}

/* The next of the filter's elements in a namespace; in any, for NULL. */
static xmlNode *NextPart(xmlNode *part, const char *ns) {
  while (part != NULL && ns != NULL && strcmp(NamespaceOf(part), ns) != 0) part = NextElement(part);
  return part;
}

/* All that stands on the level; on the outermost one, all of the namespace. */
static void MarkLevel(xmlNode *data, const char *ns) {
  if (ns == NULL) Mark(data, MARK_WHOLE);
  xmlNode *child = ns == NULL ? NULL : FirstElement(data);
  for (; child != NULL; child = NextElement(child))
    if (*ns == '\0' || strcmp(NamespaceOf(child), ns) == 0) Mark(child, MARK_WHOLE);
}

/* Marks what the elements below the filter select of the data; tells whether that is anything.
   The outermost ones belong together when they have one namespace (section 6.3). */
static int Select(QmCtx *ctx, xmlNode *data, const xmlNode *filter, const char *ns) {
  int contents = 0;
  int selections = 0;
  xmlNode *first = NextPart(FirstElement(filter), ns);
  for (xmlNode *part = first; part != NULL; part = NextPart(NextElement(part), ns)) {
    if (!IsContent(part)) {
      selections++;
    } else if (++contents && !Content(ctx, data, part, 0)) {
      return 0;
    }
  }
  if (selections == 0 && contents > 0) {
    MarkLevel(data, ns);
    return 1;
  }
  int any = contents > 0;
  for (xmlNode *part = first; part != NULL; part = NextPart(NextElement(part), ns))
    any = (IsContent(part) ? Content(ctx, data, part, 1) : SelectChildren(ctx, data, part)) || any;
  if (!any) return 0;
  Mark(data, MARK_ON_THE_WAY);
  MarkKeys(data);
  return 1;
}

static void Prune(xmlNode *data) {
  unsigned short mark = data->line;
  data->line = MARK_NONE;
  xmlNode *next = NULL;
  for (xmlNode *child = FirstElement(data); child != NULL; child = next) {
    next = NextElement(child);
    if (mark == MARK_WHOLE) child->line = MARK_WHOLE;
    if (child->line != MARK_NONE) {
      Prune(child);
      continue;
    }
    xmlUnlinkNode(child);
    xmlFreeNode(child);
  }
}

static void ClearMarks(xmlNode *data) {
  data->line = MARK_NONE;
  for (xmlNode *child = FirstElement(data); child != NULL; child = NextElement(child))
    ClearMarks(child);
}

QmErrNode *FilterCheck(const xmlNode *filter) {
  if (filter == NULL) return NULL;
  for (const xmlAttr *attribute = filter->properties; attribute; attribute = attribute->next) {
    const char *value = attribute->children == NULL ? "" : C(attribute->children->content);
    if (xmlStrEqual(attribute->name, X("type")) && strcmp(value, "subtree") == 0) continue;
    QmErrNode *fault = ProtocolFault(QM_ERR_TAG_BAD_ATTRIBUTE, "Filters are of the type subtree.");
    With(fault, QM_AGENT_FIELD_BAD_ATTRIBUTE, C(attribute->name));
    return With(fault, QM_AGENT_FIELD_BAD_ELEMENT, "filter");
  }
  return NULL;
}

int FilterApply(QmCtx *ctx, xmlNode *data, const xmlNode *filter) {
  ClearMarks(data);
  TrimTexts(filter);
  xmlHashTable *done = Need(xmlHashCreate(0));
  for (xmlNode *part = FirstElement(filter); part != NULL; part = NextElement(part)) {
    const char *ns = NamespaceOf(part);
    if (xmlHashLookup(done, X(ns)) != NULL) continue;
    (void)Select(ctx, data, filter, ns);
    if (xmlHashAddEntry(done, X(ns), part) != 0) (void)Need(NULL);
  }
  xmlHashFree(done, NULL);
  Prune(data);
  return FirstElement(data) != NULL;
}
