// SPDX-License-Identifier: BSD-3-Clause
// What links a module to others: its imports, its includes, and the suffixes of
// the split files that it was merged from.
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/record_array.h"

uint32_t QMS_MOD_FillImport(QmDict* dict, QmsImport* import, const char* moduleName,
                            const char* prefix) {
  if (dict == nullptr || import == nullptr) return QM_INVALID;
  // An import without prefix is refused here: RFC 7950 section 7.1.5 demands one.
  const bool filled = InternBoth(dict, &import->moduleName, moduleName, &import->prefix, prefix);
  return filled ? QM_OK : QM_INVALID;
}

uint32_t QMS_MOD_AppendOneImport(QmsModule* mod, const char* moduleName, const char* prefix) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&mod->imports, &mod->importCount, [&](QmsImport* import) {
    return QMS_MOD_FillImport(ModuleDict(mod), import, moduleName, prefix);
  });
}

QmsImport* QMS_MOD_FindImportByPrefix(QmsImport* imports, uint32_t count, const char* prefix) {
  return FindByText(imports, count, &QmsImport::prefix, prefix);
}

void QMS_MOD_ClearImport(QmDict* dict, QmsImport* import) {
  if (import == nullptr) return;
  ReleaseText(dict, &import->moduleName);
  ReleaseText(dict, &import->prefix);
}

void QMS_MOD_FreeImports(QmDict* dict, QmsImport* imports, uint32_t count) {
  FreeArrayOf(dict, imports, count, QMS_MOD_ClearImport);
}

uint32_t QMS_MOD_FillInclude(QmDict* dict, QmsInclude* include, const char* subName) {
  if (dict == nullptr || include == nullptr || subName == nullptr) return QM_INVALID;
  return InternText(dict, &include->submoduleName, subName) ? QM_OK : QM_NO_MEMORY;
}

uint32_t QMS_MOD_AppendOneInclude(QmsModule* mod, const char* subName) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&mod->includes, &mod->includeCount, [&](QmsInclude* include) {
    return QMS_MOD_FillInclude(ModuleDict(mod), include, subName);
  });
}

QmsInclude* QMS_MOD_FindIncludeBySubName(QmsInclude* includes, uint32_t count, const char* name) {
  return FindByText(includes, count, &QmsInclude::submoduleName, name);
}

void QMS_MOD_ClearInclude(QmDict* dict, QmsInclude* include) {
  if (include == nullptr) return;
  ReleaseText(dict, &include->submoduleName);
}

void QMS_MOD_FreeIncludes(QmDict* dict, QmsInclude* includes, uint32_t count) {
  FreeArrayOf(dict, includes, count, QMS_MOD_ClearInclude);
}

void QMS_MOD_FreeMrgSource(QmsModule* mod) {
  if (mod == nullptr) return;
  // A dictionary without buckets holds nothing, so nothing is released.
  QmDict noTexts = {};
  QmDict* dict = mod->ctx == nullptr ? &noTexts : ModuleDict(mod);
  FreeArrayOf(dict, mod->mergeSources, mod->mergeSourceCount, ReleaseText);
  mod->mergeSources = nullptr;
  mod->mergeSourceCount = 0;
}
