// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// Writes the name of the module that a target path leads into, that of its last
// qualified step. False for a path that cannot be split.
bool GetTargetModuleName(const char* path, char (&name)[kQmsNameSize]);

// Copies both parts of a path, of which `slash` begins the second; the first is NULL when
// it is empty. 0; 22 without memory, with both texts as they were.
uint32_t CopyBothParts(const char* path, const char* slash, char** outParentPath,
                       char** outLastPart);

QM_BEGIN_INTERNAL_DECLS

// Rewrites the prefixes of a schema-node path, as `module` declares them, to module
// names; predicates are dropped. The first gives a new text of 3095 characters at
// most, or NULL; the second writes into `out`: 0, or 22 with a part of the path there,
// for a path that is none, an unknown prefix, or too little room.
char* QM_XPATH_TransformToJsonFormat(QmsModule* module, const char* path);
uint32_t QM_XPATH_GetJsonFormatXpath(QmsModule* module, const char* path, char* out,
                                     uint32_t outSize);

// The steps of the conversion. The prefix that a step is read with goes into
// `lastPrefix`: its own, else the last one, else that of the module; 0, or 22 when there is
// none or it does not fit. A step needs a module name in front (1, else 0) when it is the
// first, or has a prefix other than the last.
uint32_t QM_XPATH_UpdateCurrentXpathModName(QmsModule* module, const char* prefix, char* lastPrefix,
                                            uint32_t lastPrefixSize);
uint32_t QM_XPATH_NeedAppendModifiedModName(const char* lastPrefix, const char* prefix);

// The module name of the last step of a converted path that has one, inside `path`;
// NULL when there is none.
const char* QM_XPATH_GetXpathLastModNameFromRear(const char* path, uint32_t* nameLength);
// Cuts a path in front of that step, "/a:x/y/b:z/w" into "/a:x/y" and "/b:z/w", and copies
// the name; the first text is NULL for a step at the start. 0; 22 for every failure, with
// both texts NULL. With only one place for a text it gives the name alone.
uint32_t QM_XPATH_SplitTargetNodeXpath(const char* path, char* lastModName,
                                       uint32_t lastModNameSize, char** outParentPath,
                                       char** outLastPart);

QM_END_INTERNAL_DECLS
