/* SPDX-License-Identifier: BSD-3-Clause */
/* Two walks: the first marks what is selected, in libxml2's field for lines, which the agent's
   trees do not use; the second removes the rest. So what two branches of a filter select of one
   element comes out as one element. */
#include "filter.h"

#include <stdlib.h>
#include <string.h>

#include "fault.h"
#include "schema.h"
#include "text.h"

enum { MARK_NONE = 0, MARK_ON_THE_WAY = 1, MARK_WHOLE = 2 };

static const char kBlanks[] = " \t\r\n";

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

/* The value of a leaf, or what a filter wants it to be. */
static char *ValueOf(QmCtx *ctx, QmsNode *node, xmlNode *element) {
  if (node != NULL && QM_NODE_GetRealType(node) != NULL) {
    char *value = SchemaValue(ctx, node, element);
    if (strpbrk(value, kBlanks) == NULL) return value;
    free(value);
  }
  xmlChar *content = Need(xmlNodeGetContent(element));
  char *value = Trimmed(CopyText(C(content)));
  xmlFree(content);
  return value;
}

/* A filter element without a namespace stands for that name in any. */
static int Matches(const xmlNode *filter, const xmlNode *data) {
  if (!xmlStrEqual(filter->name, data->name) || filter->properties != NULL) return 0;
  const char *ns = NamespaceOf(filter);
  return *ns == '\0' || strcmp(ns, NamespaceOf(data)) == 0;
}

/* A leaf with a value: "content match". */
static int IsContent(const xmlNode *filter) {
  if (FirstElement(filter) != NULL) return 0;
  for (const xmlNode *text = filter->children; text != NULL; text = text->next)
    if (text->content != NULL && C(text->content)[strspn(C(text->content), kBlanks)] != '\0')
      return 1;
  return 0;
}

static int HasValue(QmCtx *ctx, xmlNode *data, xmlNode *filter) {
  if (!Matches(filter, data) || FirstElement(data) != NULL) return 0;
  char *value = ValueOf(ctx, SchemaOf(data), data);
  char *wanted = ValueOf(ctx, SchemaOf(data), filter);
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

static int Select(QmCtx *ctx, xmlNode *data, const xmlNode *filter);

/* One element of the filter that selects, against all children of an element. */
static int SelectChildren(QmCtx *ctx, xmlNode *data, const xmlNode *filter) {
  int any = 0;
  for (xmlNode *child = FirstElement(data); child != NULL; child = NextElement(child)) {
    if (!Matches(filter, child)) continue;
    if (FirstElement(filter) == NULL) Mark(child, MARK_WHOLE);
    any = FirstElement(filter) == NULL || Select(ctx, child, filter) || any;
  }
  return any;
}

/* Marks what the elements below the filter select of the data; tells whether that is anything. */
static int Select(QmCtx *ctx, xmlNode *data, const xmlNode *filter) {
  int contents = 0;
  int selections = 0;
  for (xmlNode *part = FirstElement(filter); part != NULL; part = NextElement(part)) {
    if (!IsContent(part)) {
      selections++;
    } else if (++contents && !Content(ctx, data, part, 0)) {
      return 0;
    }
  }
  if (selections == 0 && contents > 0) {
    Mark(data, MARK_WHOLE);
    return 1;
  }
  int any = contents > 0;
  for (xmlNode *part = FirstElement(filter); part != NULL; part = NextElement(part))
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
  for (xmlNode *part = FirstElement(filter); part != NULL; part = NextElement(part))
    (void)SelectChildren(ctx, data, part);
  Prune(data);
  return FirstElement(data) != NULL;
}
