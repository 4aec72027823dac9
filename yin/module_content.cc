// SPDX-License-Identifier: BSD-3-Clause
//
// The content of a module or submodule element. A submodule writes into the
// record of the module that includes it, and a module's includes are read
// before its own body; so the arrays of the record are grown once per file, and
// nothing may keep the address of an element while a file is being counted.
#include <cstdint>
#include <iterator>

#include "context/array.h"
#include "context/guard.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/header.h"
#include "yin/keyword.h"
#include "yin/linkage.h"
#include "yin/stmt_ext_inst.h"

struct BodyCounterRow {
  QmsStmt stmt;
  uint16_t QmsBodyStmtCounter::*counter;
};

static constexpr BodyCounterRow kBodyCounters[] = {
    {QMS_STMT_EXTENSION, &QmsBodyStmtCounter::extensions},
    {QMS_STMT_FEATURE, &QmsBodyStmtCounter::features},
    {QMS_STMT_IDENTITY, &QmsBodyStmtCounter::identities},
    {QMS_STMT_TYPEDEF, &QmsBodyStmtCounter::typedefs},
    {QMS_STMT_DEVIATION, &QmsBodyStmtCounter::deviations},
    {QMS_STMT_EXTENSION_INSTANCE, &QmsBodyStmtCounter::extInsts}};

static uint32_t CountOneBodyStmt(QmsBodyStmtCounter* counter, uintptr_t stmt) {
  for (const BodyCounterRow& row : kBodyCounters) {
    if (row.stmt != stmt) continue;
    if (counter->*row.counter >= kMaxArrayCount) return QM_INVALID;
    ++(counter->*row.counter);
  }
  return QM_OK;
}

static uint32_t CountBodyStmts(QmsModule* module, xmlNode* root, QmsBodyStmtCounter* counter) {
  for (xmlNode* child = root->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    const uintptr_t stmt = PrivateMark(child);
    if (stmt == QMS_STMT_EXTENSION_INSTANCE && QMS_LOADER_IsExtInstNeedParse(module, child) != 1) {
      child->_private = nullptr;
      continue;
    }
    const uint32_t ret = CountOneBodyStmt(counter, stmt);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Turns *count, the new elements, into the total.
template <typename Elem>
static uint32_t ExpandBodyArray(Elem** array, uint16_t oldCount, uint16_t* count) {
  const uint32_t total = uint32_t{oldCount} + *count;
  if (total > kMaxArrayCount) return QM_INVALID;
  const uint32_t ret = ExpandArrayOf(array, oldCount, *count);
  if (ret == QM_OK) *count = static_cast<uint16_t>(total);
  return ret;
}

static uint32_t ExpandTypedefs(QmsModule* module, uint16_t* count) {
  if (*count > 0) ClearResolvedTypedefs(module);
  return ExpandBodyArray(&module->typedefs, module->typedefCount, count);
}

uint32_t QMS_LOADER_CounterAndExpandBodyStmtArray(QmsModule* module, xmlNode* root,
                                                  QmsBodyStmtCounter* counter) {
  uint32_t ret = CountBodyStmts(module, root, counter);
  if (ret == QM_OK)
    ret = ExpandBodyArray(&module->extensions, module->extensionCount, &counter->extensions);
  if (ret == QM_OK)
    ret = ExpandBodyArray(&module->features, module->featureCount, &counter->features);
  if (ret == QM_OK)
    ret = ExpandBodyArray(&module->identities, module->identityCount, &counter->identities);
  if (ret == QM_OK) ret = ExpandTypedefs(module, &counter->typedefs);
  if (ret == QM_OK)
    ret = ExpandBodyArray(&module->deviations, module->deviationCount, &counter->deviations);
  if (ret == QM_OK)
    ret = ExpandBodyArray(&module->extInsts, module->extInstCount, &counter->extInsts);
  return ret;
}

// A module accepts all rows; a submodule all but the first and the last, since
// the revision and the organization are those of the module.
static constexpr uint32_t kModuleBodyRows = 19;
static constexpr uint32_t kSubmoduleBodyRows = kModuleBodyRows - 2;

static uint32_t ParseBody(QmsModule* module, xmlNode* root, uint32_t ownStmt,
                          QmsBodyStmtCounter* total) {
  QmsSubStmtDesc table[] = {
      SingleSubStmt(QMS_STMT_REVISION, &module->revision),
      SingleSubStmt(QMS_STMT_DESCRIPTION, &module->description),
      ArraySubStmt(QMS_STMT_EXTENSION, &module->extensions, &module->extensionCount,
                   &total->extensions),
      ArraySubStmt(QMS_STMT_FEATURE, &module->features, &module->featureCount, &total->features),
      ArraySubStmt(QMS_STMT_IDENTITY, &module->identities, &module->identityCount,
                   &total->identities),
      ArraySubStmt(QMS_STMT_TYPEDEF, &module->typedefs, &module->typedefCount, &total->typedefs),
      SingleSubStmt(QMS_STMT_CONTAINER, module),
      SingleSubStmt(QMS_STMT_LEAF, module),
      SingleSubStmt(QMS_STMT_LEAF_LIST, module),
      SingleSubStmt(QMS_STMT_LIST, module),
      SingleSubStmt(QMS_STMT_CHOICE, module),
      SingleSubStmt(QMS_STMT_ANYDATA, module),
      SingleSubStmt(QMS_STMT_ANYXML, module),
      SingleSubStmt(QMS_STMT_AUGMENT, module),
      SingleSubStmt(QMS_STMT_RPC, module),
      SingleSubStmt(QMS_STMT_NOTIFICATION, module),
      ArraySubStmt(QMS_STMT_DEVIATION, &module->deviations, &module->deviationCount,
                   &total->deviations),
      ArraySubStmt(QMS_STMT_EXTENSION_INSTANCE, &module->extInsts, &module->extInstCount,
                   &total->extInsts),
      SingleSubStmt(QMS_STMT_ORGANIZATION, &module->organization),
  };
  static_assert(std::size(table) == kModuleBodyRows);
  const bool isModule = ownStmt == QMS_STMT_MODULE;
  return QMS_LOADER_ParseSubStatementsInner(module, root, ownStmt, isModule ? table : table + 1,
                                            isModule ? kModuleBodyRows : kSubmoduleBodyRows);
}

static uint32_t ParseLinkageAndBody(QmsModule* module, xmlNode* root, uint32_t ownStmt,
                                    QmsLoadAssister* assister) {
  QmsBodyStmtCounter total = {};
  uint32_t ret = QMS_LOADER_ParseLinkageStmts(module, root, assister);
  if (ret == QM_OK) ret = QMS_LOADER_CounterAndExpandBodyStmtArray(module, root, &total);
  if (ret == QM_OK) ret = ParseBody(module, root, ownStmt, &total);
  return ret;
}

uint32_t QMS_LOADER_ParseModuleContent(QmsModule* module, xmlNode* root,
                                       QmsLoadAssister* assister) {
  QMS_LOADER_MarkSubNode(root);
  const uint32_t ret = QMS_LOADER_ParseModuleHeadStmts(module, root);
  return ret != QM_OK ? ret : ParseLinkageAndBody(module, root, QMS_STMT_MODULE, assister);
}

uint32_t QMS_LOADER_ParseSubmoduleContent(QmsModule* module, xmlNode* root,
                                          QmsLoadAssister* assister) {
  QMS_LOADER_MarkSubNode(root);
  return ParseLinkageAndBody(module, root, QMS_STMT_SUBMODULE, assister);
}

uint32_t QMS_LOADER_CheckParsedModNameMatched(const char* name, const QmsLoadAssister* assister) {
  if (name == nullptr) return QM_INVALID;
  if (assister == nullptr || assister->modName == nullptr) return QM_OK;
  return RTK_StrCmp(name, assister->modName) == 0 ? QM_OK : QM_INVALID;
}

QmsModule* QMS_LOADER_ParseYinDocToQmMod(QmCtx* ctx, xmlNode* root, QmsLoadAssister* assister) {
  const char* name = QM_XML_GetTargetPropertyValue(root, "name");
  if (QMS_LOADER_CheckParsedModNameMatched(name, assister) != QM_OK) return nullptr;
  QmOwn<QMS_MOD_Free> module(NewRecord<QmsModule>());
  if (!module) return nullptr;
  module->ctx = ctx;
  RTK_AVL3_InitLink(&module->nameLink);
  RTK_AVL3_InitLink(&module->nsLink);
  if (InternOrRefuse(module.Get(), &module->name, name) != QM_OK) return nullptr;
  if (QMS_LOADER_ParseModuleContent(module.Get(), root, assister) != QM_OK) return nullptr;
  return module.Release();
}

// Only the name of the root decides, its namespace does not. A submodule is
// never loaded by itself.
QmsModule* QMS_LOADER_ParseYinContent(QmCtx* ctx, xmlDoc* doc, QmsLoadAssister* assister) {
  xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc);
  if (ctx == nullptr || root == nullptr) return nullptr;
  if (QMS_LOADER_GetStmtByKeyword(XmlText(root->name)) != QMS_STMT_MODULE) return nullptr;
  return QMS_LOADER_ParseYinDocToQmMod(ctx, root, assister);
}
