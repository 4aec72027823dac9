// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"
#include "types/records.h"

// The typedefs of a module, and from a type to the typedef that it names.

using QmtConsUpdateDerFunc = uint32_t (*)(void* body, QmsModule* module);

// Forgets every resolved pointer into the typedef array of `module`, wherever in
// the module it is kept. To be called before the array is moved or freed; until
// the next refresh the typedefs are looked up by name, with the same result.
void ClearResolvedTypedefs(QmsModule* module);

// The same as QMS_MOD_AppendOneTypeDef() for one of many appends in a row: only the
// typedefs may have been resolved since the last ClearResolvedTypedefs(), so that
// the trees need not be walked for each.
uint32_t AppendNextTypeDef(QmsModule* mod, const char* name, const QmtType* realType,
                           const char* defaultValue);

QM_BEGIN_INTERNAL_DECLS

// The operations of all definitions, see definitions.h. The type is copied, the default
// optional, and the units are not set here. Fill gives 22 also when the type is NULL or
// could not be copied. Append forgets what is resolved, as the array moves.
uint32_t QMS_MOD_AppendOneTypeDef(QmsModule* mod, const char* name, const QmtType* realType,
                                  const char* defaultValue);
uint32_t QMS_MOD_FillTypeDef(QmDict* dict, QmsTypedef* td, const char* name,
                             const QmtType* realType, const char* defaultValue);
QmsTypedef* QMS_MOD_FindTypDefObjByName(QmsTypedef* typedefs, uint32_t count, const char* name);
QmsTypedef* QMS_MOD_FindQmsTypDefByName(QmsModule* mod, const char* name);
void QMS_TYPE_FreeTypDefArray(QmDict* dict, QmsTypedef* typedefs, uint32_t count);

// Sets `resolved` of the derived entries that name typedefs of `module`: 0; 22 when one
// does not exist there, and without type or module. The pointers lead into the typedef
// array of the module: whoever moves or frees that array calls ClearResolvedInType() first.
uint32_t QMT_TYPE_UpdateRealTypeDerivedFrom(QmtType* type, QmsModule* module);

// The function that does it for the body of one kind, with the same statuses; NULL for
// kinds that name no typedef.
QmtConsUpdateDerFunc QMT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind);

QM_END_INTERNAL_DECLS
