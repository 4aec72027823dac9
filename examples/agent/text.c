/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "text.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

const char kBlanks[] = " \t\r\n";

void *Need(void *block) {
  if (block == NULL) {
    fputs("netconf_agent: out of memory\n", stderr);
    exit(3);
  }
  return block;
}

char *CopyText(const char *text) {
  return Need(strdup(text));
}

char *PrintText(const char *format, ...) {
  va_list args;
  char *made = NULL;
  va_start(args, format);
  int length = vasprintf(&made, format, args);
  va_end(args);
  return Need(length < 0 ? NULL : made);
}

void TextAddBytes(Text *text, const char *bytes, size_t length) {
  if (text->capacity - text->length <= length) {
    size_t capacity = 2 * text->capacity + length + 256;
    text->data = Need(realloc(text->data, capacity));
    text->capacity = capacity;
  }
  memcpy(text->data + text->length, bytes, length);
  text->length += length;
  text->data[text->length] = '\0';
}

void TextAdd(Text *text, const char *add) {
  TextAddBytes(text, add, strlen(add));
}

void TextPrint(Text *text, const char *format, ...) {
  va_list args;
  char *made = NULL;
  va_start(args, format);
  int length = vasprintf(&made, format, args);
  va_end(args);
  (void)Need(length < 0 ? NULL : made);
  TextAddBytes(text, made, (size_t)length);
  free(made);
}

static void AddEscaped(Text *text, const char *add, const char *numbered) {
  for (const char *at = add; *at != '\0'; at++) {
    if (strchr(numbered, *at) != NULL) {
      TextPrint(text, "&#%d;", *at);
      continue;
    }
    switch (*at) {
      case '&':
        TextAdd(text, "&amp;");
        break;
      case '<':
        TextAdd(text, "&lt;");
        break;
      case '>':
        TextAdd(text, "&gt;");
        break;
      case '"':
        TextAdd(text, "&quot;");
        break;
      default:
        TextAddBytes(text, at, 1);
        break;
    }
  }
}

void TextAddEscaped(Text *text, const char *add) {
  AddEscaped(text, add, "\r");
}

void TextAddAttribute(Text *text, const char *add) {
  AddEscaped(text, add, "\r\n\t");
}

void TextAddNode(Text *text, xmlNode *node) {
  xmlBuffer *buffer = Need(xmlBufferCreate());
  if (xmlNodeDump(buffer, node->doc, node, 0, 0) < 0) (void)Need(NULL);
  TextAddBytes(text, C(xmlBufferContent(buffer)), (size_t)xmlBufferLength(buffer));
  xmlBufferFree(buffer);
}

void TextClear(Text *text) {
  text->length = 0;
  if (text->data != NULL) text->data[0] = '\0';
}

void TextFree(Text *text) {
  free(text->data);
  *text = (Text){NULL, 0, 0};
}
