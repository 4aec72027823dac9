// SPDX-License-Identifier: BSD-3-Clause
//
// The content of a module or submodule element: the header of a module, the linkage of
// both, then the body. A submodule writes into the record of the module that includes
// it, and a module's includes are read before its own body; so the arrays of the record
// are grown once per file, and nothing may keep the address of an element while a file
// is being counted.
#include "yin/module_content.h"

#include <cstdint>
#include <iterator>

#include "context/array.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/typedef.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/linkage.h"
#include "yin/stmt_ext_inst.h"

// The statements that say what a module is (RFC 7950 section 7.1): yang-version,
// namespace and prefix, which are read before anything else since every prefix in the
// body is resolved with them, and the first revision.

// Deliberate: an unknown version is refused with -1, which is no errno value.
uint32_t QMS_LOADER_ParseYangVersion(QmsModule* module, xmlNode* element) {
  const char* version = ReadArgument(module, element, QMS_STMT_YANG_VERSION);
  if (version == nullptr) return QM_INVALID;
  if (RTK_StrCmp(version, "1") == 0) {
    module->yangVersion = QMS_YANG_VERSION_1;
  } else if (RTK_StrCmp(version, "1.1") == 0) {
    module->yangVersion = QMS_YANG_VERSION_1_1;
  } else {
    RecordBadValue(module, version, QMS_STMT_YANG_VERSION);
    return QM_MINUS_ONE;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_ParseNamespace(QmsModule* module, xmlNode* element) {
  return InternArgument(module, element, QMS_STMT_NAMESPACE, &module->ns, nullptr);
}

uint32_t QMS_LOADER_ParsePrefix(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                void* dest) {
  return InternArgument(module, element, QMS_STMT_PREFIX, static_cast<const char**>(dest), nullptr);
}

// Modules list the newest revision first; the older ones are not kept.
uint32_t QMS_LOADER_ParseRevision(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                  void* dest) {
  auto** revision = static_cast<const char**>(dest);
  if (*revision != nullptr) return QM_OK;
  return InternArgument(module, element, QMS_STMT_REVISION, revision, nullptr);
}

static uint32_t ParseOwnPrefix(QmsModule* module, xmlNode* element) {
  return QMS_LOADER_ParsePrefix(module, element, QMS_STMT_MODULE, &module->prefix);
}

namespace {
struct HeadStmtRow {
  QmsStmt stmt;
  uint32_t (*parse)(QmsModule* module, xmlNode* element);
};
}  // namespace

constexpr HeadStmtRow kHeadStmts[] = {{QMS_STMT_YANG_VERSION, QMS_LOADER_ParseYangVersion},
                                      {QMS_STMT_NAMESPACE, QMS_LOADER_ParseNamespace},
                                      {QMS_STMT_PREFIX, ParseOwnPrefix}};

static uint32_t ParseHeadStmt(QmsModule* module, xmlNode* child) {
  for (const HeadStmtRow& row : kHeadStmts) {
    if (row.stmt != PrivateMark(child)) continue;
    const uint32_t ret = row.parse(module, child);
    if (ret != QM_OK) RecordBadStatement(module, row.stmt);
    return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_ParseModuleHeadStmts(QmsModule* module, xmlNode* root) {
  for (xmlNode* child = root->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    const uint32_t ret = ParseHeadStmt(module, child);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

namespace {
struct BodyCounterRow {
  QmsStmt stmt;
  uint16_t QmsBodyStmtCounter::*counter;
};
}  // namespace

constexpr BodyCounterRow kBodyCounters[] = {
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
  if (ret == QM_OK) {
    ret = ExpandBodyArray(&module->extensions, module->extensionCount, &counter->extensions);
  }
  if (ret == QM_OK) {
    ret = ExpandBodyArray(&module->features, module->featureCount, &counter->features);
  }
  if (ret == QM_OK) {
    ret = ExpandBodyArray(&module->identities, module->identityCount, &counter->identities);
  }
  if (ret == QM_OK) ret = ExpandTypedefs(module, &counter->typedefs);
  if (ret == QM_OK) {
    ret = ExpandBodyArray(&module->deviations, module->deviationCount, &counter->deviations);
  }
  if (ret == QM_OK) {
    ret = ExpandBodyArray(&module->extInsts, module->extInstCount, &counter->extInsts);
  }
  return ret;
}

// A module accepts all rows; a submodule all but the first and the last, since
// the revision and the organization are those of the module.
constexpr uint32_t kModuleBodyRows = 19;
constexpr uint32_t kSubmoduleBodyRows = kModuleBodyRows - 2;

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
