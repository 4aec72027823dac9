// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// "prefix:value" as "module:value", the prefix as `module` declares it, none meaning the
// module itself. A new text; NULL for an unknown prefix or a text of another form.
char* QMS_MOD_ConvertPrefixValToJsonFormat(QmsModule* module, const char* text);
// The path of a node, every schema node on the way. A new text of 3095 characters at most,
// or NULL.
char* QMS_NODE_PrintPath(QmsNode* node);
// Appends the path to the *len characters in `buf` of `size`: 0; 12 when it does not fit, 22
// for a step without name and for bad arguments; nothing is changed then.
uint32_t QMS_NODE_PrintJsonPathRecursive(QmsNode* node, char* buf, uint32_t size, uint32_t* len);

QM_END_INTERNAL_DECLS
