// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "yin/records.h"

// What every statement parser does with its argument, and the messages that
// several of them share. `stmt` is the statement's own id; it names the keyword.

// A reference "[prefix:]name", its prefix resolved. `module` is interned.
struct QmsReference {
  const char* module;
  char name[kQmsNameSize];
};

// The value of the first attribute, borrowed from the document, or NULL after
// recording that it is missing.
const char* ReadArgument(QmsModule* module, const xmlNode* element, uint32_t stmt);

// The same for an absolute schema node identifier; a path that does not begin
// with "/" counts as missing.
const char* ReadAbsolutePath(QmsModule* module, const xmlNode* element, uint32_t stmt);

// The first child element of that name, whatever its namespace, or NULL.
xmlNode* FirstChildElementNamed(const xmlNode* element, const char* name);

// Reads the argument and interns it into *field; 22 when it is missing or cannot
// be interned. `value`, unless NULL, is set to the borrowed argument.
uint32_t InternArgument(QmsModule* module, const xmlNode* element, uint32_t stmt,
                        const char** field, const char** value);

// Interns `text` into *field in place of what is there; 0 or 22.
uint32_t InternOrRefuse(QmsModule* module, const char** field, const char* text);

// Records that `value` cannot be the argument of the statement.
void RecordBadValue(QmsModule* module, const char* value, uint32_t stmt);

// Records that the statement could not be parsed.
void RecordBadStatement(QmsModule* module, uint32_t stmt);

// Splits `text` and resolves its prefix; without one the module being parsed is
// meant. 0; what is wrong is recorded: 1 without a name, 126 for one that is too long, 22
// for another form or an unknown prefix.
uint32_t ReadReference(QmsModule* module, const char* text, QmsReference* reference);

// The target path of an augment or a deviation in module-name form, a block of the
// caller. NULL also for a path that leads into no module with a name of at most 64
// characters: nothing could be coupled to it, nor its module be unloaded.
char* QualifyTargetPath(QmsModule* module, const char* path);
