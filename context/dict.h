// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// Releases the interned text in *field and sets the field to NULL. Releases go
// by text, so a second one would take away somebody else's reference.
void ReleaseText(QmDict* dict, const char** field);

// Interns `text` into *field in place of what is there. False, with the field
// unchanged, when `text` is NULL or memory runs out.
bool InternText(QmDict* dict, const char** field, const char* text);

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_DICT_Init(QmDict* dict);
uint32_t QM_DICT_HashVal(const char* str);
const char* QM_DICT_Insert(QmDict* dict, const char* str);
void QM_DICT_Remove(QmDict* dict, const char* str);
void QM_DICT_Destroy(QmDict* dict);

QM_END_INTERNAL_DECLS
