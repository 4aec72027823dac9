/* SPDX-License-Identifier: BSD-3-Clause */
/* Texts that grow, and what the agent does when memory runs out: it ends. A session is a
   process; what it held is released, and the datastore is whole at every moment. */
#ifndef AGENT_TEXT_H
#define AGENT_TEXT_H

#include <stddef.h>
#include <stdint.h>

#include <libxml/tree.h>

typedef struct Text {
  char *data; /* Ends with a NUL; NULL while nothing was added. */
  size_t length;
  size_t capacity;
} Text;

/* Ends the process unless the block is there. */
void *Need(void *block);
/* A copy of the text, freed with free(). */
char *CopyText(const char *text);
/* printf() into a new text, freed with free(). */
__attribute__((format(printf, 1, 2))) char *PrintText(const char *format, ...);

/* Add to the end: bytes; a text; what printf() makes; a text as XML's character data, and as the
   value of an attribute; an element with all below it. */
void TextAddBytes(Text *text, const char *bytes, size_t length);
void TextAdd(Text *text, const char *add);
__attribute__((format(printf, 2, 3))) void TextPrint(Text *text, const char *format, ...);
void TextAddEscaped(Text *text, const char *add);
void TextAddAttribute(Text *text, const char *add);
void TextAddNode(Text *text, xmlNode *node);
/* Empties the text and keeps its memory; gives its memory back. */
void TextClear(Text *text);
void TextFree(Text *text);

/* What XML has between elements. */
extern const char kBlanks[];

/* Texts of libxml2 are unsigned. */
static inline const xmlChar *X(const char *text) {
  return (const xmlChar *)text;
}
static inline const char *C(const xmlChar *text) {
  return (const char *)text;
}

/* For a status that tells nothing here: a scan that its own callback may end. */
static inline void Ignore(uint32_t status) {
  (void)status;
}

#endif
