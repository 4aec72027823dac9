// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The global definitions of a module, kind by kind; typedefs have a file of their own
// (typedef.h). Each kind has the same operations, as far as they are needed:
//
// Append grows the module's array by one, has Fill fill the new element and raises
// the count last. It gives what Fill gives; 22 also for no module or one without a
// context, and when there are 65535 already; 12 without memory for the array.
// Fill interns the texts of one element. 0; 22 when anything but an optional text is
// NULL; 12 without memory. The element is clear after a failure.
// Find gives the first element with that name, compared as text, or NULL; elements
// without a name, which are still being read, are passed over.
// CheckTwo…Same gives 1 or 0; interned texts are compared by their pointers, and
// nothing is the same as NULL.
// Clear releases what one element holds and zeroes it. Free clears all elements and
// frees the array. Both do nothing for NULL.
// Copy gives a new array with references of its own; NULL for an empty one and
// when memory runs out.

QM_BEGIN_INTERNAL_DECLS

// Imports, found by their prefix. Fill gives 22 also when memory runs out.
uint32_t QMS_MOD_AppendOneImport(QmsModule* mod, const char* moduleName, const char* prefix);
uint32_t QMS_MOD_FillImport(QmDict* dict, QmsImport* import, const char* moduleName,
                            const char* prefix);
QmsImport* QMS_MOD_FindImportByPrefix(QmsImport* imports, uint32_t count, const char* prefix);
void QMS_MOD_ClearImport(QmDict* dict, QmsImport* import);
void QMS_MOD_FreeImports(QmDict* dict, QmsImport* imports, uint32_t count);

// Includes, found by the name of the submodule.
uint32_t QMS_MOD_AppendOneInclude(QmsModule* mod, const char* subName);
uint32_t QMS_MOD_FillInclude(QmDict* dict, QmsInclude* include, const char* subName);
QmsInclude* QMS_MOD_FindIncludeBySubName(QmsInclude* includes, uint32_t count, const char* name);
void QMS_MOD_ClearInclude(QmDict* dict, QmsInclude* include);
void QMS_MOD_FreeIncludes(QmDict* dict, QmsInclude* includes, uint32_t count);

// Frees the suffixes of the files that `mod` was merged from, which has none then.
// The texts stay in use when the module has no context.
void QMS_MOD_FreeMrgSource(QmsModule* mod);

// Features, disabled when appended. The same: of one name, with the same
// if-features in the same order, enabled or not.
uint32_t QMS_MOD_AppendOneFeature(QmsModule* mod, const char* name);
uint32_t QMS_MOD_FillFeature(QmDict* dict, QmsFeature* feature, const char* name);
QmsFeature* QMS_MOD_FindFeatureByName(QmsModule* mod, const char* name);
uint32_t QMS_MOD_CheckTwoFeatureSame(const QmsFeature* a, const QmsFeature* b);
void QMS_MDL_ClearFeature(QmDict* dict, QmsFeature* feature);
void QMS_MOD_FreeFeatures(QmDict* dict, QmsFeature* features, uint32_t count);

// Identities, without bases when appended. The same: of one name, with the same
// bases and if-features in the same order.
uint32_t QMS_MOD_AppendOneIdentity(QmsModule* mod, const char* name);
uint32_t QMS_MOD_FillIdentity(QmDict* dict, QmsIdentity* identity, const char* name);
QmsIdentity* QMS_MOD_FindIdentityByName(QmsModule* mod, const char* name);
uint32_t QMS_MOD_CheckTwoIdentitySame(const QmsIdentity* a, const QmsIdentity* b);
void QMS_MDL_ClearIdentity(QmDict* dict, QmsIdentity* identity);
void QMS_MOD_FreeIdentities(QmDict* dict, QmsIdentity* identities, uint32_t count);

// The bases of an identity, as they are written: prefix and name, not resolved.
uint32_t QMS_MOD_FillIdentBase(QmDict* dict, QmsIdentBase* base, const char* prefix,
                               const char* name);
uint32_t QMS_MOD_CheckTwoIdentBaseSame(const QmsIdentBase* a, const QmsIdentBase* b);
QmsIdentBase* QMS_MOD_CopyIdentBaseArray(QmDict* dict, const QmsIdentBase* bases, uint32_t count);
void QMS_MDL_ClearIdentBase(QmDict* dict, QmsIdentBase* base);
void QMS_MDL_FreeIdentBases(QmDict* dict, QmsIdentBase* bases, uint32_t count);

// Definitions of extensions; the argument is optional. SetExtension is their Fill.
uint32_t QMS_MOD_AppendOneExtension(QmsModule* mod, const char* name, const char* argument,
                                    uint32_t yinElement);
uint32_t QMS_MOD_SetExtension(QmDict* dict, QmsExtension* ext, const char* name,
                              const char* argument, uint32_t yinElement);
QmsExtension* QMS_MOD_FindExtensionByName(QmsModule* mod, const char* name);
uint32_t QMS_MOD_CheckTwoExtensionSame(const QmsExtension* a, const QmsExtension* b);
void QMS_MDL_ClearExtension(QmDict* dict, QmsExtension* ext);
void QMS_MOD_FreeExtensions(QmDict* dict, QmsExtension* extensions, uint32_t count);

// Deviations, without deviates when appended. Deliberate: no two are the same, so
// a module never has the same one already.
uint32_t QMS_MOD_AppendOneDeviation(QmsModule* mod, const char* targetPath);
uint32_t QMS_MOD_FillDeviationTargetNode(QmDict* dict, QmsDeviation* dev, const char* path);
uint32_t QMS_MOD_CheckTwoDeviationSame(const QmsDeviation* a, const QmsDeviation* b);
uint32_t QMS_MOD_CheckSameDeviationExist(const QmsModule* mod, const QmsDeviation* dev);
void QMS_MOD_ClearDeviation(QmDict* dict, QmsDeviation* deviation);
void QMS_MOD_FreeDeviation(QmDict* dict, QmsDeviation* deviations, uint32_t count);

// Deviates. Fill copies `src` without its extension instances, and gives 12 for any
// failure of that; the array is copied with them. The same: of one kind, with the
// same flags, musts, defaults and units; types and instances are not compared.
uint32_t QMS_MOD_FillDeviate(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src);
QmsDeviate* QMS_MOD_CopyDeviateArray(QmDict* dict, const QmsDeviate* deviates, uint32_t count);
uint32_t QMS_MOD_CheckTwoDeviateSame(const QmsDeviate* a, const QmsDeviate* b);
void QMS_MOD_ClearDeviate(QmDict* dict, QmsDeviate* deviate);
void QMS_MOD_FreeDeviate(QmDict* dict, QmsDeviate* deviates, uint32_t count);

QM_END_INTERNAL_DECLS
