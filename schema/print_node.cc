// SPDX-License-Identifier: BSD-3-Clause
// The lines of the schema tree, one per node, in the notation of RFC 8340:
// connectors, "+--" with the status and access marks, the name with "?" or "*",
// and the type in a column. A table names the line of each kind. The text gathers
// in a buffer, which comes first.
#include "schema/print_node.h"

#include <cstring>
#include <iterator>

#include <qmodel/error.h>

#include "context/table.h"
#include "platform/string.h"
#include "schema/node.h"
#include "schema/node_walk.h"
#include "types/builtin.h"
#include "types/type.h"

// The buffer of the tree printer. The text gathers in a block of fixed size and
// goes to the client in chunks; a piece either fits or fails the print, so a
// client never sees half a line.

// More than this in use, and the buffer is emptied before the next line.
constexpr uint32_t kFlushMark = 7167;

uint32_t PrintPiece(QmsPrintPara* para, const char* piece) {
  return piece == nullptr ? QM_INVALID : PrintBytes(para, piece, RTK_StrLen(piece));
}

uint32_t PrintBlanks(QmsPrintPara* para, uint32_t count) {
  char* room = TakeRoom(para->text, count);
  if (room == nullptr) return QM_INVALID;
  std::memset(room, ' ', count);
  return QM_OK;
}

uint32_t FlushText(QmsPrintText* text) {
  if (text->used == 0) return QM_OK;
  const uint32_t ret = text->output(text->buf, text->used, text->arg);
  text->used = 0;
  text->buf[0] = '\0';
  return ret == QM_OK ? QM_OK : QM_INVALID;
}

uint32_t FlushIfFull(QmsPrintText* text) {
  return text->used > kFlushMark ? FlushText(text) : QM_OK;
}

// The type column of the schema tree: the name of a built-in type, the name of a
// typedef with the module that defines it, or the path of a leafref.

uint32_t QMS_NODE_PrintTypeLeafref(const QmtType* type, QmsPrintPara* para) {
  const char* path = QM_TYPE_GetTypeConsDataLeafrefPath(type);
  if (path == nullptr) return PrintPiece(para, BuiltInTypeName(QMT_BASE_LEAFREF));
  return PrintAll(para, "-> ", path);
}

uint32_t QMS_NODE_PrintTypeDerived(const QmtType* type, QmsPrintPara* para) {
  const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(type);
  if (derived == nullptr) return QM_INVALID;
  if (derived->moduleName == nullptr) return PrintPiece(para, derived->typedefName);
  return PrintAll(para, derived->moduleName, ":", derived->typedefName);
}

uint32_t QMS_NODE_PrintType(const QmtType* type, QmsPrintPara* para) {
  if (type == nullptr || para == nullptr) return QM_INVALID;
  if (type->baseType == QMT_BASE_LEAFREF) return QMS_NODE_PrintTypeLeafref(type, para);
  if (type->baseType == QMT_BASE_TYPEDEF) return QMS_NODE_PrintTypeDerived(type, para);
  return PrintPiece(para, BuiltInTypeName(type->baseType));
}

// The lines: their marks, then one function per kind.

using PrintLineFunc = uint32_t (*)(const QmsNode* node, QmsPrintPara* para);

constexpr uint32_t kTypeGap = 3;  // blanks between the longest name and the types

static bool IsConnected(const QmsPrintPara* para, uint32_t level) {
  return level < kQmsPrintConnectorBits && (para->connectors >> level & 1u) != 0;
}

uint32_t PrintConnectors(QmsPrintPara* para) {
  for (uint32_t level = 1; level < para->level; ++level) {
    const uint32_t ret = PrintAll(para, IsConnected(para, level) ? "|  " : "   ");
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static char StatusMark(const QmsNode* node) {
  if (HasFlag(node, QMS_NODE_OBSOLETE)) return 'o';
  return HasFlag(node, QMS_NODE_DEPRECATED) ? 'x' : '+';
}

static const char (&AccessMark(const QmsNode* node, uint32_t access))[4] {
  if (access == QMS_PRINT_ACCESS_WRITE) return "-w ";
  if (access == QMS_PRINT_ACCESS_READ) return "ro ";
  return HasFlag(node, QMS_NODE_CONFIG_FALSE) ? "ro " : "rw ";
}

uint32_t QMS_NODE_PrintRetractStatus(const QmsNode* node, QmsPrintPara* para) {
  const uint32_t ret = PrintConnectors(para);
  if (ret != QM_OK) return ret;
  return PrintAll(para, StatusMark(node), "--", AccessMark(node, para->access));
}

// The module name that goes before the name of a node, or NULL.
static const char* Qualifier(const QmsModule* module, const QmsNode* node) {
  return node->module == module || node->module == nullptr ? nullptr : node->module->name;
}

static uint32_t NameLength(const QmsModule* module, const QmsNode* node) {
  const char* qualifier = Qualifier(module, node);
  const size_t name = node->name == nullptr ? 0 : RTK_StrLen(node->name);
  return static_cast<uint32_t>(qualifier == nullptr ? name : RTK_StrLen(qualifier) + 1 + name);
}

uint32_t LongestName(const QmsModule* module, const QmsNode* first, const QmsNode* last) {
  uint32_t longest = 0;
  for (const QmsNode* node = first; node != nullptr; node = node == last ? nullptr : node->next) {
    if (node->kind < QMS_NODE_CONTAINER || node->kind > QMS_NODE_ANYXML) continue;
    const uint32_t length = NameLength(module, node);
    if (length > longest) longest = length;
  }
  return longest;
}

uint32_t QMS_NODE_PrintGetMaxLen(const QmsModule* module, const QmsNode* first) {
  return LongestName(module, first, nullptr);
}

static uint32_t PrintName(const QmsNode* node, QmsPrintPara* para) {
  const char* qualifier = Qualifier(para->module, node);
  if (qualifier == nullptr) return PrintPiece(para, node->name);
  return PrintAll(para, qualifier, ":", node->name);
}

static uint32_t PrintMarkedName(const QmsNode* node, QmsPrintPara* para) {
  const uint32_t ret = QMS_NODE_PrintRetractStatus(node, para);
  return ret == QM_OK ? PrintName(node, para) : ret;
}

// The line of an operation or notification, or of a part of an operation.
static uint32_t PrintOperationName(const QmsNode* node, QmsPrintPara* para, char mark,
                                   const char* access) {
  uint32_t ret = PrintConnectors(para);
  if (ret == QM_OK) ret = PrintAll(para, mark, access);
  if (ret == QM_OK) ret = PrintName(node, para);
  return ret == QM_OK ? PrintAll(para, "\n") : ret;
}

uint32_t QMS_NODE_PrintNodeNameAlignSpace(uint32_t nameLength, QmsPrintPara* para) {
  if (para == nullptr || nameLength > para->nameWidth) return QM_INVALID;
  return PrintBlanks(para, kTypeGap + para->nameWidth - nameLength);
}

// The line up to the type column.
static uint32_t PrintUpToType(const QmsNode* node, QmsPrintPara* para, char mark) {
  uint32_t ret = QMS_NODE_PrintRetractStatus(node, para);
  if (ret != QM_OK) return ret;
  const uint32_t start = para->text->used;
  ret = PrintName(node, para);
  const uint32_t nameLength = para->text->used - start;
  if (ret == QM_OK) ret = PrintAll(para, mark);
  return ret == QM_OK ? QMS_NODE_PrintNodeNameAlignSpace(nameLength, para) : ret;
}

static char OptionalMark(const QmsNode* node) {
  return HasFlag(node, QMS_NODE_MANDATORY_TRUE | QMS_NODE_KEY) ? ' ' : '?';
}

static uint32_t PrintEndWithDefault(QmsPrintPara* para, const char* defaultText) {
  if (defaultText == nullptr) return PrintAll(para, "\n");
  return PrintAll(para, " <", defaultText, ">\n");
}

static uint32_t PrintContainer(const QmsNode* node, QmsPrintPara* para) {
  const uint32_t ret = PrintMarkedName(node, para);
  if (ret != QM_OK) return ret;
  return HasFlag(node, QMS_NODE_PRESENCE) ? PrintAll(para, "!\n") : PrintAll(para, "\n");
}

static uint32_t PrintLeaf(const QmsNode* node, QmsPrintPara* para) {
  const QmsLeaf* leaf = static_cast<const QmsLeaf*>(node->payload);
  if (leaf == nullptr) return QM_INVALID;
  uint32_t ret = PrintUpToType(node, para, OptionalMark(node));
  if (ret == QM_OK) ret = QMS_NODE_PrintType(&leaf->type, para);
  return ret == QM_OK ? PrintEndWithDefault(para, leaf->defaultValue) : ret;
}

static uint32_t PrintLeafList(const QmsNode* node, QmsPrintPara* para) {
  const QmsLeafList* leafList = static_cast<const QmsLeafList*>(node->payload);
  if (leafList == nullptr) return QM_INVALID;
  uint32_t ret = PrintUpToType(node, para, '*');
  if (ret == QM_OK) ret = QMS_NODE_PrintType(&leafList->type, para);
  return ret == QM_OK ? PrintAll(para, "\n") : ret;
}

static uint32_t PrintKeys(const QmsNode* list, QmsPrintPara* para) {
  bool any = false;
  for (const QmsNode* child = list->firstChild; child != nullptr; child = NextChild(list, child)) {
    if (QM_NODE_IsKey(child) == 0) continue;
    const uint32_t ret = PrintAll(para, any ? " " : " [", child->name);
    if (ret != QM_OK) return ret;
    any = true;
  }
  return any ? PrintAll(para, "]\n") : PrintAll(para, "\n");
}

static uint32_t PrintList(const QmsNode* node, QmsPrintPara* para) {
  uint32_t ret = PrintMarkedName(node, para);
  if (ret == QM_OK) ret = PrintAll(para, "*");
  return ret == QM_OK ? PrintKeys(node, para) : ret;
}

static uint32_t PrintChoice(const QmsNode* node, QmsPrintPara* para) {
  const QmsChoice* choice = static_cast<const QmsChoice*>(node->payload);
  const bool mandatory = HasFlag(node, QMS_NODE_MANDATORY_TRUE);
  uint32_t ret = QMS_NODE_PrintRetractStatus(node, para);
  if (ret == QM_OK) ret = PrintAll(para, "(");
  if (ret == QM_OK) ret = PrintName(node, para);
  if (ret == QM_OK) ret = PrintPiece(para, mandatory ? ")" : ")?");
  if (ret != QM_OK) return ret;
  return PrintEndWithDefault(para, choice == nullptr ? nullptr : choice->defaultCase);
}

uint32_t PrintCaseLine(const QmsNode* node, QmsPrintPara* para) {
  uint32_t ret = PrintConnectors(para);
  if (ret == QM_OK) ret = PrintAll(para, StatusMark(node), "--:(");
  if (ret == QM_OK) ret = PrintName(node, para);
  return ret == QM_OK ? PrintAll(para, ")\n") : ret;
}

static uint32_t PrintAnydata(const QmsNode* node, QmsPrintPara* para) {
  const bool mandatory = HasFlag(node, QMS_NODE_MANDATORY_TRUE);
  const uint32_t ret = PrintUpToType(node, para, mandatory ? ' ' : '?');
  if (ret != QM_OK) return ret;
  return PrintPiece(para, node->kind == QMS_NODE_ANYDATA ? "anydata\n" : "anyxml\n");
}

static uint32_t PrintOperation(const QmsNode* node, QmsPrintPara* para) {
  return PrintOperationName(node, para, StatusMark(node), "---x ");
}

static uint32_t PrintNotification(const QmsNode* node, QmsPrintPara* para) {
  return PrintOperationName(node, para, StatusMark(node), "---n ");
}

static uint32_t PrintInput(const QmsNode* node, QmsPrintPara* para) {
  return PrintOperationName(node, para, '+', "---w ");
}

static uint32_t PrintOutput(const QmsNode* node, QmsPrintPara* para) {
  return PrintOperationName(node, para, '+', "--ro ");
}

static uint32_t PrintAugment(const QmsNode* node, QmsPrintPara* para) {
  return PrintAll(para, "augment ", node->name, ":\n");
}

namespace {
struct LineRow {
  uint32_t kind;
  PrintLineFunc print;
};
}  // namespace

constexpr LineRow kLines[] = {
    {QMS_NODE_NONE, nullptr},         {QMS_NODE_CONTAINER, PrintContainer},
    {QMS_NODE_LEAF, PrintLeaf},       {QMS_NODE_LEAF_LIST, PrintLeafList},
    {QMS_NODE_LIST, PrintList},       {QMS_NODE_CHOICE, PrintChoice},
    {QMS_NODE_CASE, PrintCaseLine},   {QMS_NODE_ANYDATA, PrintAnydata},
    {QMS_NODE_ANYXML, PrintAnydata},  {QMS_NODE_ACTION, PrintOperation},
    {QMS_NODE_RPC, PrintOperation},   {QMS_NODE_NOTIFICATION, PrintNotification},
    {QMS_NODE_INPUT, PrintInput},     {QMS_NODE_OUTPUT, PrintOutput},
    {QMS_NODE_AUGMENT, PrintAugment},
};

static_assert(std::size(kLines) == QMS_NODE_KIND_COUNT, "one row per kind");
static_assert(RowsStandAtTheir<&LineRow::kind>(kLines), "a row's index is its kind");

uint32_t PrintNodeLine(const QmsNode* node, QmsPrintPara* para) {
  if (node->kind >= std::size(kLines) || kLines[node->kind].print == nullptr) return QM_INVALID;
  return kLines[node->kind].print(node, para);
}
