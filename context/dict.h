// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "platform/string.h"

// Interns `text` into *field in place of what is there. False, with the field
// unchanged, when `text` is NULL or memory runs out.
bool InternText(QmDict* dict, const char** field, const char* text);

// Interns `text`, or nothing when it is NULL: what is not there is not there in a copy
// either. False when memory runs out.
inline bool InternOptional(QmDict* dict, const char** field, const char* text) {
  return text == nullptr || InternText(dict, field, text);
}

// The dictionary's copy of `str`, or NULL; nothing is inserted and no reference taken.
const char* FindInterned(QmDict* dict, const char* str);
// The same for a part of a text; *refCount gets how many references its copy has.
const char* FindInternedSpan(QmDict* dict, TextSpan span, uint32_t* refCount);

// One more reference to a text that the dictionary itself gave; false for any other. Many
// threads may do so at a time while nobody inserts or removes. The second takes it away
// again, beside them; whoever gave the text must hold it meanwhile.
bool ShareText(QmDict* dict, const char* interned);
void UnshareText(QmDict* dict, const char* interned);

QM_BEGIN_INTERNAL_DECLS

// Makes an empty dictionary. 0, or 1 without memory.
uint32_t QM_DICT_Init(QmDict* dict);
// The hash that chooses a text's chain.
uint32_t QM_DICT_HashVal(const char* str);
// The dictionary's copy of `str`, valid until each insert was matched by a remove;
// NULL for a NULL text and without memory.
const char* QM_DICT_Insert(QmDict* dict, const char* str);
// Takes one reference to a text equal to `str` away; nothing when there is none.
void QM_DICT_Remove(QmDict* dict, const char* str);
// Frees all texts, whatever their references, and the table.
void QM_DICT_Destroy(QmDict* dict);

QM_END_INTERNAL_DECLS

// Releases the interned text in *field and sets the field to NULL. Releases go
// by text, so a second one would take away somebody else's reference.
inline void ReleaseText(QmDict* dict, const char** field) {
  if (*field == nullptr) return;
  QM_DICT_Remove(dict, *field);
  *field = nullptr;
}
