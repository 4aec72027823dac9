// SPDX-License-Identifier: BSD-3-Clause
// The walk of the tree printer, and its entry points. A module prints as its
// name, its data nodes, its augments with what they add, its rpcs and its
// notifications.
//
// The walk keeps one entry per level of siblings on a stack in the heap, since a
// tree may be deep. A level ends at its last node, which need not be the end of
// a list: an augment shows only its run, and a node that stands directly in a
// choice is alone in the case that is printed around it.
#include "schema/print_tree.h"

#include <qmodel/error.h>

#include "context/array.h"
#include "context/guard.h"
#include "schema/node.h"
#include "schema/print_node.h"

constexpr uint32_t kBufferSize = 8192;
constexpr uint32_t kStackStep = 32;

namespace {
struct PrintLevel {
  QmsPrintPara para;
  QmsNode* next;        // to be printed next; NULL: the level is done
  const QmsNode* stop;  // the last node to print; NULL: the level ends with its list
  bool inCase;          // the case around the node is printed
};

struct PrintStack {
  PrintLevel* levels;  // owned
  uint32_t count;
  uint32_t capacity;
};

}  // namespace

void QMS_NODE_InheritPrintPara(QmsPrintPara* child, const QmsPrintPara* parent) {
  *child = *parent;
  child->level = parent->level + 1;
  child->nameWidth = 0;
  child->last = nullptr;
}

// The first of `node` and its following siblings that is an input, or is none.
static QmsNode* FirstPart(QmsNode* node, bool input) {
  while (node != nullptr && (node->kind == QMS_NODE_INPUT) != input) node = node->next;
  return node;
}

// An operation shows its input first, wherever the files of a split module left it.
static QmsNode* FirstToPrint(const QmsNode* parent) {
  QmsNode* input = IsOperation(parent) ? FirstPart(parent->firstChild, true) : nullptr;
  return input != nullptr ? input : parent->firstChild;
}

static QmsNode* NextToPrint(const QmsNode* node) {
  if (node->parent == nullptr || !IsOperation(node->parent)) return node->next;
  const bool input = node->kind == QMS_NODE_INPUT;
  QmsNode* next = FirstPart(node->next, input);
  return next == nullptr && input ? FirstPart(node->parent->firstChild, false) : next;
}

uint32_t QMS_NODE_PrintCheckNextCase(const QmsNode* node) {
  return NextToPrint(node) != nullptr ? 1 : 0;
}

uint32_t QMS_NODE_PrintGetRetract(const QmsNode* node, const QmsPrintPara* para) {
  if (para->level >= kQmsPrintConnectorBits) return para->connectors;
  const uint32_t bit = 1u << para->level;
  const bool follows = para->level > 0 && node != para->last &&
                       (para->flags & QMS_PRINT_NO_CONNECTORS) == 0 &&
                       QMS_NODE_PrintCheckNextCase(node) != 0;
  return follows ? para->connectors | bit : para->connectors & ~bit;
}

// The access that a node gives to all below it, or `inherited`.
static uint32_t AccessSetBy(const QmsNode* node, uint32_t inherited) {
  if (node->kind == QMS_NODE_INPUT) return QMS_PRINT_ACCESS_WRITE;
  if (node->kind == QMS_NODE_OUTPUT) return QMS_PRINT_ACCESS_READ;
  return node->kind == QMS_NODE_NOTIFICATION ? QMS_PRINT_ACCESS_READ : inherited;
}

// The access of nodes that stand below `parent`.
static uint32_t AccessBelow(const QmsNode* parent) {
  uint32_t access = QMS_PRINT_ACCESS_CONFIG;
  while (parent != nullptr && access == QMS_PRINT_ACCESS_CONFIG) {
    access = AccessSetBy(parent, access);
    parent = parent->parent;
  }
  return access;
}

static uint32_t AccessOfChildren(const QmsNode* node, uint32_t access) {
  // What an augment adds stands below the target, once it is attached there.
  if (node->kind == QMS_NODE_AUGMENT) return AccessBelow(node->firstChild->parent);
  return AccessSetBy(node, access);
}

static uint32_t PushLevel(PrintStack* stack, const PrintLevel& level) {
  if (stack->count == stack->capacity) {
    const uint32_t ret = ExpandArrayOf(&stack->levels, stack->capacity, kStackStep);
    if (ret != QM_OK) return ret;
    stack->capacity += kStackStep;
  }
  stack->levels[stack->count++] = level;
  return QM_OK;
}

// The width of the names below `node`. In a choice only nodes that stand for a
// case have a column; all cases share that of the whole choice, also where an
// augment shows a part of them: a case then has the same lines under the augment
// and in the tree of the target.
static uint32_t WidthBelow(const QmsModule* module, const QmsNode* node) {
  const QmsNode* first = node->firstChild;
  const QmsNode* holder = first->parent->kind == QMS_NODE_CHOICE ? first->parent : node;
  return LongestName(module, holder->firstChild, holder->lastChild);
}

static uint32_t PushChildren(PrintStack* stack, const QmsNode* node, const QmsPrintPara& para) {
  // Only the run of an augment ends before its list does.
  const QmsNode* last = node->kind == QMS_NODE_AUGMENT ? node->lastChild : nullptr;
  PrintLevel level{para, FirstToPrint(node), last, false};
  QMS_NODE_InheritPrintPara(&level.para, &para);
  level.para.connectors = QMS_NODE_PrintGetRetract(node, &para);
  level.para.access = AccessOfChildren(node, para.access);
  level.para.last = last;
  level.para.nameWidth = WidthBelow(para.module, node);
  return PushLevel(stack, level);
}

// A node directly in a choice stands for a case of its name (RFC 7950 section
// 7.9.2), which is printed around it. That holds for the run of a coupled augment
// too, whose nodes stand in the target and not below the augment's own line.
static uint32_t PrintCaseAround(PrintStack* stack, QmsNode* node, QmsPrintPara* para) {
  const uint32_t ret = PrintCaseLine(node, para);
  if (ret != QM_OK) return ret;
  PrintLevel level{*para, node, node, true};
  QMS_NODE_InheritPrintPara(&level.para, para);
  level.para.connectors = QMS_NODE_PrintGetRetract(node, para);
  level.para.last = node;
  level.para.nameWidth = para->nameWidth;
  return PushLevel(stack, level);
}

static bool StandsForCase(const QmsNode* node) {
  return node->kind != QMS_NODE_CASE && node->parent != nullptr &&
         node->parent->kind == QMS_NODE_CHOICE;
}

// A leaf, leaf-list, anydata or anyxml is its line. An augment may name one as its
// target; no data can stand there, so the diagram shows what it adds in the
// augment's own module only.
static bool IsItsLineOnly(const QmsNode* node) {
  return node->kind == QMS_NODE_LEAF || node->kind == QMS_NODE_LEAF_LIST ||
         node->kind == QMS_NODE_ANYDATA || node->kind == QMS_NODE_ANYXML;
}

static bool ShowsChildren(const QmsNode* node, const QmsPrintPara* para) {
  return node->firstChild != nullptr && !IsItsLineOnly(node) &&
         (para->flags & QMS_PRINT_NO_CHILDREN) == 0;
}

static uint32_t PrintNode(PrintStack* stack, QmsNode* node, QmsPrintPara* para, bool inCase) {
  if (QM_NODE_IsEnabled(node) == 0) return QM_OK;
  uint32_t ret = FlushIfFull(para->text);
  if (ret != QM_OK) return ret;
  if (!inCase && StandsForCase(node)) return PrintCaseAround(stack, node, para);
  ret = PrintNodeLine(node, para);
  return ret == QM_OK && ShowsChildren(node, para) ? PushChildren(stack, node, *para) : ret;
}

static uint32_t PrintLevels(PrintStack* stack) {
  while (stack->count > 0) {
    PrintLevel* top = &stack->levels[stack->count - 1];
    QmsNode* node = top->next;
    if (node == nullptr) {
      --stack->count;
      continue;
    }
    top->next = node == top->stop ? nullptr : NextToPrint(node);
    // A copy: the stack may move while the node is printed.
    QmsPrintPara para = top->para;
    const uint32_t ret = PrintNode(stack, node, &para, top->inCase);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_NODE_PrintSubTree(QmsModule* module, QmsNode* node, QmsPrintPara* para) {
  if (module == nullptr || node == nullptr || para == nullptr) return QM_INVALID;
  PrintStack stack{nullptr, 0, 0};
  PrintLevel level{*para, node, node, false};
  level.para.module = module;
  uint32_t ret = PushLevel(&stack, level);
  if (ret == QM_OK) ret = PrintLevels(&stack);
  g_qmMemFreeFunc(stack.levels);
  return ret;
}

// A headline and the nodes of a top-level list. An empty list prints nothing. The
// buffer is flushed before the headline as before a line: behind what the subtrees
// left there, the headline might not fit.
static uint32_t PrintTopList(QmsModule* module, const char* headline, QmsNode* first,
                             const QmsPrintPara& base) {
  if (first == nullptr) return QM_OK;
  QmsPrintPara para = base;
  para.nameWidth = QMS_NODE_PrintGetMaxLen(module, first);
  uint32_t ret = FlushIfFull(para.text);
  if (ret == QM_OK) ret = PrintPiece(&para, headline);
  for (QmsNode* node = first; node != nullptr && ret == QM_OK; node = node->next) {
    ret = QMS_NODE_PrintSubTree(module, node, &para);
  }
  return ret;
}

static uint32_t PrintModule(QmsModule* module, const QmsPrintPara& base) {
  QmsPrintPara para = base;
  // The line of an augment is a headline: its children are top-level nodes.
  QmsPrintPara augmentPara = base;
  augmentPara.level = 0;
  uint32_t ret = PrintAll(&para, "module: ", module->name, "\n");
  if (ret == QM_OK) ret = PrintTopList(module, "", module->dataNodes, para);
  if (ret == QM_OK) ret = PrintTopList(module, "", module->augmentNodes, augmentPara);
  if (ret == QM_OK) ret = PrintTopList(module, "rpcs:\n", module->rpcNodes, para);
  if (ret == QM_OK) ret = PrintTopList(module, "notifications:\n", module->notifNodes, para);
  return ret;
}

static const QmsNode* TopAncestor(const QmsNode* node) {
  while (node->parent != nullptr) node = node->parent;
  return node;
}

static uint32_t PrintHeadlines(const QmsNode* top, QmsPrintPara* para) {
  if (para->module == nullptr) return QM_INVALID;
  const uint32_t ret = PrintAll(para, "module: ", para->module->name, "\n");
  if (ret != QM_OK) return ret;
  if (top->kind == QMS_NODE_RPC) return PrintPiece(para, "rpcs:\n");
  if (top->kind == QMS_NODE_NOTIFICATION) return PrintPiece(para, "notifications:\n");
  return QM_OK;
}

// Prints one node at the place where it stands, as it would be printed with its
// whole module, and moves `para` to the level of its children.
static uint32_t PrintInPlace(QmsNode* node, QmsPrintPara* para) {
  const QmsNode* first = node;
  while (first->prev != nullptr) first = first->prev;
  para->nameWidth = QMS_NODE_PrintGetMaxLen(para->module, first);
  para->access = AccessBelow(node->parent);
  para->last = node;
  const uint32_t ret = QMS_NODE_PrintSubTree(TopAncestor(node)->module, node, para);
  para->level += StandsForCase(node) ? 2 : 1;
  return ret;
}

// The lines of the ancestors, from the top down.
static uint32_t PrintAncestors(QmsNode* node, QmsPrintPara* para) {
  uint32_t depth = 0;
  for (const QmsNode* n = node->parent; n != nullptr; n = n->parent) ++depth;
  QmsNode** path = nullptr;
  uint32_t ret = NewArrayOf(&path, depth);
  if (ret != QM_OK) return ret;
  QmHeld<QmsNode*> held(path);
  uint32_t place = depth;
  for (QmsNode* n = node->parent; n != nullptr; n = n->parent) path[--place] = n;
  para->flags = QMS_PRINT_NO_CHILDREN | QMS_PRINT_NO_CONNECTORS;
  for (uint32_t i = 0; i < depth && ret == QM_OK; ++i) ret = PrintInPlace(path[i], para);
  para->flags = 0;
  return ret;
}

static uint32_t PrintNodeHeader(QmsNode* node, QmsPrintPara* para) {
  const uint32_t ret = PrintHeadlines(TopAncestor(node), para);
  return ret == QM_OK ? PrintAncestors(node, para) : ret;
}

static uint32_t PrintNodeWithHeader(QmsNode* node, const QmsPrintPara& base) {
  QmsPrintPara para = base;
  const uint32_t ret = PrintNodeHeader(node, &para);
  if (ret != QM_OK) return ret;
  if (node->kind == QMS_NODE_AUGMENT) para.level = 0;
  return PrintInPlace(node, &para);
}

static uint32_t PrintHeaderOnly(QmsNode* node, const QmsPrintPara& base) {
  QmsPrintPara para = base;
  return PrintNodeHeader(node, &para);
}

// Runs a print with a buffer: all that an entry point needs around its content.
template <typename Subject>
static uint32_t PrintWithBuffer(uint32_t (*content)(Subject*, const QmsPrintPara&),
                                Subject* subject, const QmsModule* module, QmPrintOutputFunc output,
                                void* arg) {
  QmHeld<char> buf(static_cast<char*>(AllocZeroed(kBufferSize)));
  if (!buf) return QM_NO_MEMORY;
  QmsPrintText text{buf.Get(), kBufferSize, 0, output, arg};
  QmsPrintPara para{};
  para.level = 1;
  para.module = module;
  para.text = &text;
  uint32_t ret = content(subject, para);
  if (ret == QM_OK) ret = FlushText(&text);
  return ret == QM_OK ? QM_OK : QM_FAILED;
}

uint32_t QM_MOD_PrintModelTree(QmsModule* module, QmPrintOutputFunc output, void* arg) noexcept {
  if (module == nullptr || output == nullptr) return QM_INVALID;
  return PrintWithBuffer(PrintModule, module, module, output, arg);
}

// The module whose tree holds the node; NULL for a node that hangs under an
// augment and so has no place in a tree.
static const QmsModule* ModuleOfTree(const QmsNode* node) {
  const QmsNode* top = TopAncestor(node);
  return top != node && top->kind == QMS_NODE_AUGMENT ? nullptr : top->module;
}

uint32_t QM_NODE_PrintNodesTree(QmsNode* node, QmPrintOutputFunc output, void* arg) noexcept {
  if (node == nullptr || output == nullptr || ModuleOfTree(node) == nullptr) return QM_INVALID;
  return PrintWithBuffer(PrintNodeWithHeader, node, ModuleOfTree(node), output, arg);
}

uint32_t QM_NODE_PrintNodeHeader(QmsNode* node, QmPrintOutputFunc output, void* arg) noexcept {
  if (node == nullptr || output == nullptr || ModuleOfTree(node) == nullptr) return QM_INVALID;
  return PrintWithBuffer(PrintHeaderOnly, node, ModuleOfTree(node), output, arg);
}
