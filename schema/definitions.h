// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// Forgets every resolved pointer into the typedef array of `module`, wherever in
// the module it is kept. To be called before the array is moved or freed; until
// the next refresh the typedefs are looked up by name, with the same result.
void ClearResolvedTypedefs(QmsModule* module);

// The same as QMS_MOD_AppendOneTypeDef() for one of many appends in a row: only the
// typedefs may have been resolved since the last ClearResolvedTypedefs(), so that
// the trees need not be walked for each.
uint32_t AppendNextTypeDef(QmsModule* mod, const char* name, const QmtType* realType,
                           const char* defaultValue);

// The global definitions of a module. Each family has the same operations:
// Append grows the module's array by one and raises its count last (22 when the
// counter is full); Fill interns the texts of one element and leaves it clear
// when it fails; Find scans in array order and skips elements without a name;
// CheckTwo…Same compares interned texts by pointer and gives 1 or 0; Clear
// releases what one element holds and zeroes it; Free clears all and frees the
// array. A missing text gives 22, a failed interning 12 unless noted.

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_MOD_AppendOneImport(QmsModule* mod, const char* moduleName, const char* prefix);
uint32_t QMS_MOD_AppendOneInclude(QmsModule* mod, const char* subName);
uint32_t QMS_MOD_AppendOneFeature(QmsModule* mod, const char* name);
uint32_t QMS_MOD_AppendOneIdentity(QmsModule* mod, const char* name);
uint32_t QMS_MOD_AppendOneExtension(QmsModule* mod, const char* name, const char* argument,
                                    uint32_t yinElement);
uint32_t QMS_MOD_AppendOneTypeDef(QmsModule* mod, const char* name, const QmtType* realType,
                                  const char* defaultValue);
uint32_t QMS_MOD_AppendOneDeviation(QmsModule* mod, const char* targetPath);
// 22 also when memory runs out.
uint32_t QMS_MOD_FillImport(QmDict* dict, QmsImport* import, const char* moduleName,
                            const char* prefix);
uint32_t QMS_MOD_FillInclude(QmDict* dict, QmsInclude* include, const char* subName);
uint32_t QMS_MOD_FillFeature(QmDict* dict, QmsFeature* feature, const char* name);
uint32_t QMS_MOD_FillIdentity(QmDict* dict, QmsIdentity* identity, const char* name);
uint32_t QMS_MOD_FillIdentBase(QmDict* dict, QmsIdentBase* base, const char* prefix,
                               const char* name);
uint32_t QMS_MOD_SetExtension(QmDict* dict, QmsExtension* ext, const char* name,
                              const char* argument, uint32_t yinElement);
// 22 also when the type could not be copied. The units are not set here.
uint32_t QMS_MOD_FillTypeDef(QmDict* dict, QmsTypedef* td, const char* name,
                             const QmtType* realType, const char* defaultValue);
uint32_t QMS_MOD_FillDeviationTargetNode(QmDict* dict, QmsDeviation* dev, const char* path);
// Copies all but the extension instances; 12 on any failure.
uint32_t QMS_MOD_FillDeviate(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src);
QmsImport* QMS_MOD_FindImportByPrefix(QmsImport* imports, uint32_t count, const char* prefix);
QmsInclude* QMS_MOD_FindIncludeBySubName(QmsInclude* includes, uint32_t count, const char* name);
QmsExtension* QMS_MOD_FindExtensionByName(QmsModule* mod, const char* name);
QmsTypedef* QMS_MOD_FindTypDefObjByName(QmsTypedef* typedefs, uint32_t count, const char* name);
uint32_t QMS_MOD_CheckTwoFeatureSame(const QmsFeature* a, const QmsFeature* b);
uint32_t QMS_MOD_CheckTwoIdentitySame(const QmsIdentity* a, const QmsIdentity* b);
uint32_t QMS_MOD_CheckTwoIdentBaseSame(const QmsIdentBase* a, const QmsIdentBase* b);
uint32_t QMS_MOD_CheckTwoExtensionSame(const QmsExtension* a, const QmsExtension* b);
// The types and the extension instances are not compared.
uint32_t QMS_MOD_CheckTwoDeviateSame(const QmsDeviate* a, const QmsDeviate* b);
uint32_t QMS_MOD_CheckTwoDeviationSame(const QmsDeviation* a, const QmsDeviation* b);
uint32_t QMS_MOD_CheckSameDeviationExist(const QmsModule* mod, const QmsDeviation* dev);
void QMS_MOD_ClearImport(QmDict* dict, QmsImport* import);
void QMS_MOD_ClearInclude(QmDict* dict, QmsInclude* include);
void QMS_MDL_ClearFeature(QmDict* dict, QmsFeature* feature);
void QMS_MDL_ClearIdentity(QmDict* dict, QmsIdentity* identity);
void QMS_MDL_ClearIdentBase(QmDict* dict, QmsIdentBase* base);
void QMS_MDL_ClearExtension(QmDict* dict, QmsExtension* ext);
void QMS_MOD_ClearDeviate(QmDict* dict, QmsDeviate* deviate);
void QMS_MOD_ClearDeviation(QmDict* dict, QmsDeviation* deviation);
void QMS_MOD_FreeImports(QmDict* dict, QmsImport* imports, uint32_t count);
void QMS_MOD_FreeIncludes(QmDict* dict, QmsInclude* includes, uint32_t count);
void QMS_MOD_FreeFeatures(QmDict* dict, QmsFeature* features, uint32_t count);
void QMS_MOD_FreeIdentities(QmDict* dict, QmsIdentity* identities, uint32_t count);
void QMS_MDL_FreeIdentBases(QmDict* dict, QmsIdentBase* bases, uint32_t count);
void QMS_MOD_FreeExtensions(QmDict* dict, QmsExtension* extensions, uint32_t count);
void QMS_MOD_FreeDeviation(QmDict* dict, QmsDeviation* deviations, uint32_t count);
void QMS_MOD_FreeDeviate(QmDict* dict, QmsDeviate* deviates, uint32_t count);
void QMS_TYPE_FreeTypDefArray(QmDict* dict, QmsTypedef* typedefs, uint32_t count);
void QMS_MOD_FreeMrgSource(QmsModule* mod);
QmsIdentBase* QMS_MOD_CopyIdentBaseArray(QmDict* dict, const QmsIdentBase* bases, uint32_t count);
// Whole copies, extension instances included.
QmsDeviate* QMS_MOD_CopyDeviateArray(QmDict* dict, const QmsDeviate* deviates, uint32_t count);

QmsFeature* QMS_MOD_FindFeatureByName(QmsModule* mod, const char* name);
QmsIdentity* QMS_MOD_FindIdentityByName(QmsModule* mod, const char* name);
QmsTypedef* QMS_MOD_FindQmsTypDefByName(QmsModule* mod, const char* name);

QM_END_INTERNAL_DECLS
