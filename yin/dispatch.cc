// SPDX-License-Identifier: BSD-3-Clause
//
// One engine parses the sub-statements of every statement. The parser of a
// statement builds a table on its stack: which children it accepts, and where
// the result of each goes. The engine counts the children first, so that each
// array is made once and never moves while it is filled; the id of a child is
// kept in its `_private` word between the passes, so that its name is looked
// up once. What no descriptor accepts keeps the mark 0 and is skipped.
#include "yin/dispatch.h"

#include <cstdint>
#include <cstring>
#include <iterator>

#include "context/array.h"
#include "context/load_error.h"
#include "context/table.h"
#include "context/xml_tree.h"
#include "yin/keyword.h"
#include "yin/load_type.h"
#include "yin/module_content.h"
#include "yin/stmt_definition.h"
#include "yin/stmt_deviation.h"
#include "yin/stmt_ext_inst.h"
#include "yin/stmt_kinds.h"
#include "yin/stmt_must_when.h"
#include "yin/stmt_property.h"

constexpr QmsStmtParse g_qmsStmtParseFuncMapTbl[] = {
    {QMS_STMT_UNKNOWN, nullptr},
    {QMS_STMT_ACTION, QMS_LOADER_ParseAction},
    {QMS_STMT_ANYDATA, QMS_LOADER_ParseAnydata},
    {QMS_STMT_ANYXML, QMS_LOADER_ParseAnyxml},
    {QMS_STMT_ARGUMENT, QMS_LOADER_ParseArgument},
    {QMS_STMT_AUGMENT, QMS_LOADER_ParseAugment},
    {QMS_STMT_BASE, QMS_LOADER_ParseIdentBase},
    {QMS_STMT_BELONGS_TO, nullptr},
    {QMS_STMT_BIT, nullptr},
    {QMS_STMT_CASE, QMS_LOADER_ParseCase},
    {QMS_STMT_CHOICE, QMS_LOADER_ParseChoice},
    {QMS_STMT_CONFIG, QMS_LOADER_ParseConfig},
    {QMS_STMT_CONTACT, nullptr},
    {QMS_STMT_CONTAINER, QMS_LOADER_ParseContainer},
    {QMS_STMT_DEFAULT, QMS_LOADER_ParseDefault},
    {QMS_STMT_DESCRIPTION, QMS_LOADER_ParseDescription},
    {QMS_STMT_DEVIATE, QMS_LOADER_ParseDeviate},
    {QMS_STMT_DEVIATION, QMS_LOADER_ParseDeviation},
    {QMS_STMT_ENUM, nullptr},
    {QMS_STMT_ERROR_APP_TAG, QMS_LOADER_ParseErrorAppTag},
    {QMS_STMT_ERROR_MESSAGE, QMS_LOADER_ParseErrorMessage},
    {QMS_STMT_EXTENSION, QMS_LOADER_ParseExtension},
    {QMS_STMT_FEATURE, QMS_LOADER_ParseFeature},
    {QMS_STMT_FRACTION_DIGITS, nullptr},
    {QMS_STMT_GROUPING, nullptr},
    {QMS_STMT_IDENTITY, QMS_LOADER_ParseIdentity},
    {QMS_STMT_IF_FEATURE, QMS_LOADER_ParseIfFeature},
    {QMS_STMT_IMPORT, nullptr},
    {QMS_STMT_INCLUDE, nullptr},
    {QMS_STMT_INPUT, QMS_LOADER_ParseInput},
    {QMS_STMT_KEY, QMS_LOADER_ParseKey},
    {QMS_STMT_LEAF, QMS_LOADER_ParseLeaf},
    {QMS_STMT_LEAF_LIST, QMS_LOADER_ParseLeafList},
    {QMS_STMT_LENGTH, nullptr},
    {QMS_STMT_LIST, QMS_LOADER_ParseList},
    {QMS_STMT_MANDATORY, QMS_LOADER_ParseMandatory},
    {QMS_STMT_MAX_ELEMENTS, nullptr},
    {QMS_STMT_MIN_ELEMENTS, nullptr},
    {QMS_STMT_MODIFIER, nullptr},
    {QMS_STMT_MODULE, nullptr},
    {QMS_STMT_MUST, QMS_LOADER_ParseMust},
    {QMS_STMT_NAMESPACE, nullptr},
    {QMS_STMT_NOTIFICATION, QMS_LOADER_ParseNotif},
    {QMS_STMT_ORDERED_BY, QMS_LOADER_ParseOrderedBy},
    {QMS_STMT_ORGANIZATION, QMS_LOADER_ParseOrganization},
    {QMS_STMT_OUTPUT, QMS_LOADER_ParseOutput},
    {QMS_STMT_PATH, nullptr},
    {QMS_STMT_PATTERN, nullptr},
    {QMS_STMT_POSITION, nullptr},
    {QMS_STMT_PREFIX, QMS_LOADER_ParsePrefix},
    {QMS_STMT_PRESENCE, QMS_LOADER_ParsePresence},
    {QMS_STMT_RANGE, nullptr},
    {QMS_STMT_REFERENCE, nullptr},
    {QMS_STMT_REFINE, nullptr},
    {QMS_STMT_REQUIRE_INSTANCE, nullptr},
    {QMS_STMT_REVISION, QMS_LOADER_ParseRevision},
    {QMS_STMT_REVISION_DATE, nullptr},
    {QMS_STMT_RPC, QMS_LOADER_ParseRpc},
    {QMS_STMT_STATUS, QMS_LOADER_ParseStatus},
    {QMS_STMT_SUBMODULE, nullptr},
    {QMS_STMT_TYPE, QMT_LOADER_ParseTypeStmt},
    {QMS_STMT_TYPEDEF, QMT_LOADER_ParseTypeDefStmt},
    {QMS_STMT_UNIQUE, nullptr},
    {QMS_STMT_UNITS, QMS_LOADER_ParseUnits},
    {QMS_STMT_USES, nullptr},
    {QMS_STMT_VALUE, QMS_LOADER_ParseValue},
    {QMS_STMT_WHEN, QMS_LOADER_ParseWhen},
    {QMS_STMT_YANG_VERSION, nullptr},
    {QMS_STMT_YIN_ELEMENT, QMS_LOADER_ParseYinElement},
    {QMS_STMT_TEXT, QMS_LOADER_ParseText},
    {QMS_STMT_EXTENSION_INSTANCE, QMS_LOADER_ParseExtInst},
};

static_assert(std::size(g_qmsStmtParseFuncMapTbl) == QMS_STMT_COUNT, "one row per statement id");
static_assert(RowsStandAtTheir<&QmsStmtParse::id>(g_qmsStmtParseFuncMapTbl),
              "a row's index is its statement id");

constexpr QmsStmt kSchemaNodeStmts[] = {
    QMS_STMT_ACTION,       QMS_STMT_ANYDATA, QMS_STMT_ANYXML, QMS_STMT_CASE,      QMS_STMT_CHOICE,
    QMS_STMT_CONTAINER,    QMS_STMT_INPUT,   QMS_STMT_LEAF,   QMS_STMT_LEAF_LIST, QMS_STMT_LIST,
    QMS_STMT_NOTIFICATION, QMS_STMT_OUTPUT,  QMS_STMT_RPC};

static constexpr QmsStmtSet kIsSchemaNode = SetOf(kSchemaNodeStmts);

bool IsSchemaNodeStmt(uint32_t stmt) {
  return kIsSchemaNode.Has(stmt);
}

QmsStmtParseFunc QMS_LOADER_GetStmtParseFunc(uint32_t stmt) {
  return stmt < QMS_STMT_COUNT ? g_qmsStmtParseFuncMapTbl[stmt].parse : nullptr;
}

QmsSubStmtDesc* QMS_LOADER_GetSubParseElem(QmsSubStmtDesc* table, uint32_t count, uint32_t stmt) {
  for (uint32_t i = 0; i < count; ++i) {
    if (table[i].stmt == stmt) return &table[i];
  }
  return nullptr;
}

void QMS_LOADER_MarkSubNode(xmlNode* element) {
  const xmlNs* yin = nullptr;
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) AddPrivateMark(child, StmtOfNode(child, &yin));
  }
}

static bool IsArray(const QmsSubStmtDesc* desc) {
  return (desc->flags & QMS_SUBSTMT_ARRAY) != 0;
}

uint32_t CountOneMore(uint16_t* found) {
  if (found == nullptr) return QM_OK;
  if (*found >= kMaxArrayCount) return QM_INVALID;
  ++*found;
  return QM_OK;
}

uint32_t QMS_LOADER_MarkSubNodeAndCountArraySize(QmsModule* module, xmlNode* element,
                                                 QmsSubStmtDesc* table, uint32_t count) {
  const xmlNs* yin = nullptr;
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    const uint32_t stmt = StmtOfNode(child, &yin);
    const QmsSubStmtDesc* desc = QMS_LOADER_GetSubParseElem(table, count, stmt);
    if (stmt == QMS_STMT_UNKNOWN || desc == nullptr) continue;
    if (stmt == QMS_STMT_EXTENSION_INSTANCE && QMS_LOADER_IsExtInstNeedParse(module, child) != 1) {
      continue;
    }
    AddPrivateMark(child, stmt);
    const uint32_t ret = CountOneMore(IsArray(desc) ? desc->foundCount : nullptr);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// The instances of a schema node lie in the node itself, which the descriptor's
// `dest` names.
static bool LiesInNode(const QmsSubStmtDesc* desc, uint32_t parentStmt) {
  return desc->stmt == QMS_STMT_EXTENSION_INSTANCE && IsSchemaNodeStmt(parentStmt);
}

// `dest` is the address of a pointer to some element type.
static uint32_t NewArrayAt(void* dest, uint32_t count, uint32_t elemSize) {
  void* array = nullptr;
  std::memcpy(&array, dest, sizeof(array));
  const uint32_t ret = QM_UTL_NewArray(&array, count, elemSize);
  std::memcpy(dest, &array, sizeof(array));
  return ret;
}

uint32_t QMS_LOADER_NewSubStatementsArray(uint32_t parentStmt, QmsSubStmtDesc* table,
                                          uint32_t count) {
  for (QmsSubStmtDesc* desc = table; desc < table + count; ++desc) {
    if (!IsArray(desc) || *desc->foundCount == 0) continue;
    const uint32_t ret =
        LiesInNode(desc, parentStmt)
            ? NewArrayOf(&static_cast<QmsNode*>(desc->dest)->extInsts, *desc->foundCount)
            : NewArrayAt(desc->dest, *desc->foundCount, desc->elemSize);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

void* QMS_LOADER_GetSubParseDest(QmsSubStmtDesc* desc, uint32_t parentStmt) {
  if (!IsArray(desc) || LiesInNode(desc, parentStmt)) return desc->dest;
  char* array = nullptr;
  std::memcpy(&array, desc->dest, sizeof(array));
  const uint32_t index = *desc->usedCount;
  if (array == nullptr || index >= *desc->foundCount) return nullptr;
  ++*desc->usedCount;
  return array + size_t{index} * desc->elemSize;
}

// Only while the module has no message yet, so that the innermost failure, which
// was recorded first, is the one that is told.
static void RecordFailedChild(QmsModule* module, uint32_t stmt, uint32_t parentStmt) {
  if (QM_CTX_GetErrNodeByModName(module->ctx, module->name) != nullptr) return;
  QM_CTX_AddModError(module->ctx, module->name,
                     "Failed to parse statement \"%s\" under statement \"%s\".",
                     QMS_LOADER_GetKeywordByStmt(stmt), QMS_LOADER_GetKeywordByStmt(parentStmt));
}

uint32_t ParseMarkedChild(QmsModule* module, xmlNode* child, uint32_t parentStmt,
                          QmsSubStmtDesc* desc) {
  const QmsStmtParseFunc parse = QMS_LOADER_GetStmtParseFunc(desc->stmt);
  if (parse == nullptr) return QM_OK;
  void* dest = QMS_LOADER_GetSubParseDest(desc, parentStmt);
  const uint32_t ret =
      dest == nullptr ? uint32_t{QM_INVALID} : parse(module, child, parentStmt, dest);
  if (ret != QM_OK) RecordFailedChild(module, desc->stmt, parentStmt);
  return ret;
}

uint32_t QMS_LOADER_ParseSubStatementsInner(QmsModule* module, xmlNode* element,
                                            uint32_t parentStmt, QmsSubStmtDesc* table,
                                            uint32_t count) {
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    QmsSubStmtDesc* desc = QMS_LOADER_GetSubParseElem(table, count, MarkedStmt(child));
    if (desc == nullptr) continue;
    const uint32_t ret = ParseMarkedChild(module, child, parentStmt, desc);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_ParseSubStatements(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                       QmsSubStmtDesc* table, uint32_t count) {
  uint32_t ret = QMS_LOADER_MarkSubNodeAndCountArraySize(module, element, table, count);
  if (ret == QM_OK) ret = QMS_LOADER_NewSubStatementsArray(parentStmt, table, count);
  if (ret == QM_OK) {
    ret = QMS_LOADER_ParseSubStatementsInner(module, element, parentStmt, table, count);
  }
  return ret;
}
