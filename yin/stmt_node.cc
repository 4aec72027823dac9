// SPDX-License-Identifier: BSD-3-Clause
//
// Every schema node is parsed by one pattern: make a node, name it, parse the
// sub-statements into it, check it, link it into the tree, push its flags down.
// What differs between the kinds is a list of sub-statement ids and one or two
// functions. The id of a sub-statement tells where its result goes, so one
// table turns ids into descriptors for all kinds. A node that fails anywhere is
// freed with everything below it; nothing half-built stays in a tree.
#include "yin/stmt_node.h"

#include <cstdint>

#include "context/guard.h"
#include "context/load_error.h"
#include "schema/flags.h"
#include "schema/module_nodes.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/keyword.h"
#include "yin/stmt_ext_inst.h"

using DescribeFunc = QmsSubStmtDesc (*)(uint32_t stmt, QmsNodeParse* parse);

static QmsSubStmtDesc DescribeNode(uint32_t stmt, QmsNodeParse* parse) {
  return SingleSubStmt(stmt, parse->node);
}

static QmsSubStmtDesc DescribeFlags(uint32_t stmt, QmsNodeParse* parse) {
  return SingleSubStmt(stmt, &parse->node->flags);
}

static QmsSubStmtDesc DescribeWhen(uint32_t stmt, QmsNodeParse* parse) {
  return SingleSubStmt(stmt, &parse->node->when);
}

static QmsSubStmtDesc DescribeDescription(uint32_t stmt, QmsNodeParse* parse) {
  return SingleSubStmt(stmt, &parse->node->description);
}

static QmsSubStmtDesc DescribeKey(uint32_t stmt, QmsNodeParse* parse) {
  return SingleSubStmt(stmt, &parse->keyText);
}

static QmsSubStmtDesc DescribeIfFeatures(uint32_t stmt, QmsNodeParse* parse) {
  QmsNode* node = parse->node;
  return ArraySubStmt(stmt, &node->ifFeatures, &node->ifFeatureCount, &parse->ifFeatures);
}

static QmsSubStmtDesc DescribeMusts(uint32_t stmt, QmsNodeParse* parse) {
  QmsNode* node = parse->node;
  return ArraySubStmt(stmt, &node->musts, &node->mustCount, &parse->musts);
}

// The engine finds the array in the node, so that `dest` is the node itself.
static QmsSubStmtDesc DescribeExtInsts(uint32_t stmt, QmsNodeParse* parse) {
  QmsNode* node = parse->node;
  return {stmt, node, &node->extInstCount, &parse->extInsts, sizeof(QmsExtInst), QMS_SUBSTMT_ARRAY};
}

static QmsSubStmtDesc DescribeType(uint32_t stmt, QmsNodeParse* parse) {
  void* payload = parse->node->payload;
  const bool isLeaf = parse->node->kind == QMS_NODE_LEAF;
  return SingleSubStmt(stmt, isLeaf ? &static_cast<QmsLeaf*>(payload)->type
                                    : &static_cast<QmsLeafList*>(payload)->type);
}

static QmsSubStmtDesc DescribeUnits(uint32_t stmt, QmsNodeParse* parse) {
  void* payload = parse->node->payload;
  const bool isLeaf = parse->node->kind == QMS_NODE_LEAF;
  return SingleSubStmt(stmt, isLeaf ? &static_cast<QmsLeaf*>(payload)->units
                                    : &static_cast<QmsLeafList*>(payload)->units);
}

// Only a leaf-list may have several defaults (RFC 7950 section 7.7.2).
static QmsSubStmtDesc DescribeDefault(uint32_t stmt, QmsNodeParse* parse) {
  void* payload = parse->node->payload;
  if (parse->node->kind == QMS_NODE_LEAF) {
    return SingleSubStmt(stmt, &static_cast<QmsLeaf*>(payload)->defaultValue);
  }
  if (parse->node->kind == QMS_NODE_CHOICE) {
    return SingleSubStmt(stmt, &static_cast<QmsChoice*>(payload)->defaultCase);
  }
  auto* leafList = static_cast<QmsLeafList*>(payload);
  return ArraySubStmt(stmt, &leafList->defaults, &leafList->defaultCount, &parse->defaults);
}

namespace {
struct DescribeTable {
  DescribeFunc byStmt[QMS_STMT_COUNT];
};
}  // namespace

static consteval DescribeTable MakeDescribeTable() {
  DescribeTable t{};
  constexpr QmsStmt kChildNodes[] = {QMS_STMT_CONTAINER, QMS_STMT_LEAF,   QMS_STMT_LEAF_LIST,
                                     QMS_STMT_LIST,      QMS_STMT_CHOICE, QMS_STMT_CASE,
                                     QMS_STMT_ANYDATA,   QMS_STMT_ANYXML, QMS_STMT_ACTION,
                                     QMS_STMT_OUTPUT,    QMS_STMT_INPUT,  QMS_STMT_NOTIFICATION};
  constexpr QmsStmt kFlagStmts[] = {QMS_STMT_CONFIG, QMS_STMT_MANDATORY, QMS_STMT_ORDERED_BY,
                                    QMS_STMT_PRESENCE, QMS_STMT_STATUS};
  for (QmsStmt stmt : kChildNodes) t.byStmt[stmt] = DescribeNode;
  for (QmsStmt stmt : kFlagStmts) t.byStmt[stmt] = DescribeFlags;
  t.byStmt[QMS_STMT_WHEN] = DescribeWhen;
  t.byStmt[QMS_STMT_DESCRIPTION] = DescribeDescription;
  t.byStmt[QMS_STMT_KEY] = DescribeKey;
  t.byStmt[QMS_STMT_IF_FEATURE] = DescribeIfFeatures;
  t.byStmt[QMS_STMT_MUST] = DescribeMusts;
  t.byStmt[QMS_STMT_EXTENSION_INSTANCE] = DescribeExtInsts;
  t.byStmt[QMS_STMT_TYPE] = DescribeType;
  t.byStmt[QMS_STMT_UNITS] = DescribeUnits;
  t.byStmt[QMS_STMT_DEFAULT] = DescribeDefault;
  return t;
}

static constexpr DescribeTable kDescribe = MakeDescribeTable();

// Deliberate: a path that cannot be interned gives -1, which is no errno value.
uint32_t QMS_LOADER_ParseAugmentTargetNode(QmsModule* module, xmlNode* element, const char** name) {
  const char* path = ReadAbsolutePath(module, element, QMS_STMT_AUGMENT);
  if (path == nullptr) return QM_INVALID;
  const QmHeld<char> target(QualifyTargetPath(module, path));
  if (!target) {
    QM_CTX_AddModError(module->ctx, module->name, "Failed to parse xpath \"%s\".", path);
    RecordBadValue(module, path, QMS_STMT_AUGMENT);
    return QM_INVALID;
  }
  return InternOrRefuse(module, name, target.Get()) == QM_OK ? uint32_t{QM_OK} : QM_MINUS_ONE;
}

// 22 when the name of the element's statement is missing or cannot be stored.
static uint32_t NameNode(QmsModule* module, xmlNode* element, QmsNode* node) {
  switch (node->kind) {
    case QMS_NODE_INPUT:
      return InternOrRefuse(module, &node->name, "input");
    case QMS_NODE_OUTPUT:
      return InternOrRefuse(module, &node->name, "output");
    case QMS_NODE_AUGMENT:
      return QMS_LOADER_ParseAugmentTargetNode(module, element, &node->name);
    default:
      return InternArgument(module, element, QMS_NODE_GetStmtByNodeType(node->kind), &node->name,
                            nullptr);
  }
}

// The module is set at once: a node without module is never freed.
static uint32_t NewNamedNode(QmsModule* module, xmlNode* element, uint32_t kind, QmsNode** node) {
  *node = QMS_NODE_New(kind);
  if (*node == nullptr) return QM_INVALID;
  (*node)->module = module;
  const uint32_t ret = NameNode(module, element, *node);
  if (ret == QM_OK) return QM_OK;
  QMS_NODE_Free(*node);
  *node = nullptr;
  return ret;
}

QmsNode* QMS_LOADER_ParseNodeCommon(QmsModule* module, xmlNode* element, uint32_t nodeKind) {
  QmsNode* node = nullptr;
  static_cast<void>(NewNamedNode(module, element, nodeKind, &node));
  return node;
}

uint32_t QMS_LOADER_AddNodeToSchemaTree(QmsModule* module, QmsNode* parentNode, QmsNode* node,
                                        uint32_t parentStmt) {
  if (parentStmt == QMS_STMT_MODULE || parentStmt == QMS_STMT_SUBMODULE) {
    return QMS_MOD_AddTopNodeToSchemaTree(module, node);
  }
  if (parentNode == nullptr || node == nullptr) return QM_INVALID;
  return node->kind == QMS_NODE_INPUT ? QMS_NODE_AddAsFirstChild(parentNode, node)
                                      : QMS_NODE_AddChild(parentNode, node);
}

// Where the children of an array are counted; NULL for what is none.
static uint16_t* FoundCounter(uint32_t stmt, QmsNodeParse* parse) {
  switch (stmt) {
    case QMS_STMT_IF_FEATURE:
      return &parse->ifFeatures;
    case QMS_STMT_MUST:
      return &parse->musts;
    case QMS_STMT_EXTENSION_INSTANCE:
      return &parse->extInsts;
    case QMS_STMT_DEFAULT:
      return parse->node->kind == QMS_NODE_LEAF_LIST ? &parse->defaults : nullptr;
    default:
      return nullptr;
  }
}

// Marks and counts the sub-statements, as the engine does for other statements, but
// without a table of descriptors: most nodes have few children, and no array.
static uint32_t MarkSubStmts(const QmsNodeStmt& stmt, xmlNode* element, QmsNodeParse* parse) {
  const xmlNs* yin = nullptr;
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    const uint32_t subStmt = StmtOfNode(child, &yin);
    if (!stmt.subStmts.Has(subStmt)) continue;
    if (subStmt == QMS_STMT_EXTENSION_INSTANCE &&
        QMS_LOADER_IsExtInstNeedParse(parse->module, child) != 1) {
      continue;
    }
    AddPrivateMark(child, subStmt);
    const uint32_t ret = CountOneMore(FoundCounter(subStmt, parse));
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static uint32_t MakeArrays(uint32_t ownStmt, QmsNodeParse* parse) {
  for (const QmsStmt stmt :
       {QMS_STMT_IF_FEATURE, QMS_STMT_MUST, QMS_STMT_DEFAULT, QMS_STMT_EXTENSION_INSTANCE}) {
    const uint16_t* found = FoundCounter(stmt, parse);
    if (found == nullptr || *found == 0) continue;
    QmsSubStmtDesc desc = kDescribe.byStmt[stmt](stmt, parse);
    const uint32_t ret = QMS_LOADER_NewSubStatementsArray(ownStmt, &desc, 1);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Nodes nest as deep as the document, and so does this function.
static uint32_t ParsePreparedSubStmts(const QmsNodeStmt& stmt, const xmlNode* element,
                                      uint32_t ownStmt, QmsNodeParse* parse) {
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    const uint32_t subStmt = MarkedStmt(child);
    if (!stmt.subStmts.Has(subStmt)) continue;
    QmsSubStmtDesc desc = kDescribe.byStmt[subStmt](subStmt, parse);
    const uint32_t ret = ParseMarkedChild(parse->module, child, ownStmt, &desc);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static uint32_t ParseNodeSubStmts(const QmsNodeStmt& stmt, xmlNode* element, QmsNodeParse* parse) {
  const uint32_t ownStmt = QMS_NODE_GetStmtByNodeType(stmt.kind);
  uint32_t ret = MarkSubStmts(stmt, element, parse);
  if (ret == QM_OK) ret = MakeArrays(ownStmt, parse);
  if (ret == QM_OK) ret = ParsePreparedSubStmts(stmt, element, ownStmt, parse);
  if (ret != QM_OK) {
    QM_CTX_AddModError(parse->module->ctx, parse->module->name,
                       "Failed to parse \"%s\" statement \"%s\".",
                       QMS_LOADER_GetKeywordByStmt(ownStmt), parse->node->name);
  }
  return ret;
}

// Links the node and does what needs its place in the tree. On failure the node
// is out of the tree again.
static uint32_t LinkNode(const QmsNodeStmt& stmt, QmsModule* module, uint32_t parentStmt,
                         void* dest, QmsNode* node) {
  const bool isTop = parentStmt == QMS_STMT_MODULE || parentStmt == QMS_STMT_SUBMODULE;
  QmsNode* parent = isTop ? nullptr : static_cast<QmsNode*>(dest);
  uint32_t ret = QMS_LOADER_AddNodeToSchemaTree(module, parent, node, parentStmt);
  if (ret != QM_OK) return ret;
  ret = QMS_NODE_UpdateFlag(node);
  if (ret == QM_OK && stmt.refresh != nullptr) ret = stmt.refresh(module, node);
  if (ret != QM_OK) static_cast<void>(QMS_NODE_Unlink(node));
  return ret;
}

uint32_t ParseNodeBody(const QmsNodeStmt& stmt, QmsModule* module, xmlNode* element,
                       uint32_t parentStmt, void* dest, QmsNode* node) {
  QmsNodeParse parse = {};
  parse.module = module;
  parse.node = node;
  uint32_t ret = ParseNodeSubStmts(stmt, element, &parse);
  if (ret == QM_OK && stmt.check != nullptr) ret = stmt.check(&parse);
  if (ret == QM_OK) ret = LinkNode(stmt, module, parentStmt, dest, node);
  if (ret != QM_OK) QMS_NODE_Free(node);
  return ret;
}

uint32_t ParseNodeStmt(const QmsNodeStmt& stmt, QmsModule* module, xmlNode* element,
                       uint32_t parentStmt, void* dest) {
  QmsNode* node = nullptr;
  const uint32_t ret = NewNamedNode(module, element, stmt.kind, &node);
  return ret != QM_OK ? ret : ParseNodeBody(stmt, module, element, parentStmt, dest, node);
}
