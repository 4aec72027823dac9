// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/every_walk.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "context/memory.h"
#include "schema/node_path.h"
#include "schema/node_walk.h"
#include "schema/records.h"

namespace every_walk {
namespace {

constexpr uint32_t kCutShort = 77;
constexpr size_t kMostNodes = 50'000;
constexpr size_t kMostText = 32u << 20;

// What a walk shows on its way down, and how many steps it may take.
struct Seen {
  std::vector<QmsNode*> nodes;
  size_t steps = 0;
  size_t mostSteps = kMostNodes;
};

uint32_t See(QmsNode* node, uint32_t travType, void* arg) {
  Seen* seen = static_cast<Seen*>(arg);
  if (++seen->steps > seen->mostSteps) return kCutShort;
  if (travType != QMS_TRAV_PARENT) seen->nodes.push_back(node);
  return 0;
}

uint32_t Measure(const char*, uint32_t length, void* arg) {
  size_t* total = static_cast<size_t*>(arg);
  *total += length;
  return *total > kMostText ? kCutShort : 0;
}

// The children by their links alone. A run lies in a longer list.
std::vector<QmsNode*> ChildrenOf(const QmsNode* node) {
  std::vector<QmsNode*> children;
  for (QmsNode* child = node->firstChild; child != nullptr; child = child->next) {
    children.push_back(child);
    if (child == node->lastChild || children.size() > kMostNodes) break;
  }
  return children;
}

std::vector<QmsNode*> TreeOf(QmsNode* root) {
  std::vector<QmsNode*> tree;
  std::vector<QmsNode*> open = {root};
  while (!open.empty() && tree.size() <= kMostNodes) {
    QmsNode* node = open.back();
    open.pop_back();
    tree.push_back(node);
    const std::vector<QmsNode*> children = ChildrenOf(node);
    open.insert(open.end(), children.rbegin(), children.rend());
  }
  return tree;
}

class Reader {
 public:
  Reader(QmCtx* ctx, bool quick) : ctx_(ctx), quick_(quick) {}

  void Run() {
    for (void* record = RTK_AVL3_First(&ctx_->modByName);
         record != nullptr && !testing::Test::HasFailure();
         record = RTK_AVL3_Next(&ctx_->modByName, record)) {
      Module(static_cast<QmsModule*>(record));
    }
  }

 private:
  void Module(QmsModule* module) {
    Seen tops;
    EXPECT_EQ(QM_OK, QM_MOD_IterScanTopmostNode(module, See, &tops));
    EXPECT_EQ(QM_OK, QM_MOD_IterScanAugmentNode(module, See, &tops));
    for (QmsNode* top : tops.nodes) {
      SCOPED_TRACE(std::string(module->name) + " " + top->name);
      EXPECT_EQ(nullptr, top->parent);
      if (!testing::Test::HasFailure()) Tree(top);
    }
    // It may fail for want of memory. Only now: it could not be cut short everywhere.
    size_t length = 0;
    if (!testing::Test::HasFailure())
      static_cast<void>(QM_MOD_PrintModelTree(module, Measure, &length));
    EXPECT_LE(length, kMostText) << "the print does not end";
  }

  void Tree(QmsNode* top) {
    const std::vector<QmsNode*> tree = TreeOf(top);
    ASSERT_LE(tree.size(), kMostNodes) << "the links make a ring";
    Seen seen;
    seen.mostSteps = 2 * tree.size();
    EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(top, See, &seen)) << "the walk does not end";
    EXPECT_EQ(tree, seen.nodes) << "the walk leaves its tree";
    if (testing::Test::HasFailure()) return;
    for (QmsNode* node : tree) Node(node);
    // An augment has no own level in the data tree, so that all below it is searched.
    EXPECT_EQ(nullptr, QMS_NODE_FindChildDataTreeNodeByName(top, "", "no such name"));
  }

  void Node(QmsNode* node) {
    EXPECT_EQ(node->module,
              QM_CTX_GetModuleByModName(ctx_, QM_MOD_GetModuleName(QM_NODE_GetModule(node))));
    Climb(node);
    if (quick_ || testing::Test::HasFailure()) return;
    Children(node);
    Siblings(node);
    Lookups(node);
    Prints(node);
  }

  static void Climb(const QmsNode* node) {
    size_t levels = 0;
    for (const QmsNode* up = node; up != nullptr && ++levels < kMostNodes;)
      up = QM_NODE_GetParentNode(up);
    EXPECT_LT(levels, kMostNodes) << "the way up makes a ring";
    const QmsNode* above = QM_NODE_GetNonChoiceCaseParent(node);
    EXPECT_TRUE(above == nullptr || above != node);
  }

  static void Children(QmsNode* node) {
    Seen seen;
    EXPECT_EQ(QM_OK, QM_NODE_IterScanChildrenNode(node, See, &seen));
    EXPECT_EQ(ChildrenOf(node), seen.nodes);
  }

  static void Siblings(QmsNode* node) {
    Seen seen;
    EXPECT_EQ(QM_OK, QM_NODE_IterScanSiblingNode(node, See, &seen));
    for (const QmsNode* sibling : seen.nodes) EXPECT_EQ(node->parent, sibling->parent);
  }

  void Lookups(QmsNode* node) {
    char* path = QMS_NODE_PrintPath(node);
    if (path != nullptr) static_cast<void>(QM_CTX_GetTargetNode(ctx_, path, nullptr));
    g_qmMemFreeFunc(path);
    static_cast<void>(QM_NODE_GetAugmentTargetNode(node));
    static_cast<void>(QM_NODE_GetLeafrefTargetNode(node, 1));
    static_cast<void>(QM_NODE_GetDefaultValueStr(node));
    static_cast<void>(QM_NODE_GetUnitsValueStr(node));
    static_cast<void>(QM_NODE_IsEnabled(node));
    static_cast<void>(QM_NODE_ValidateValue(node, QM_INPUT_TEXT, "1"));
  }

  // A node below an augment that still waits has no place in a tree: 22.
  static void Prints(QmsNode* node) {
    size_t length = 0;
    static_cast<void>(QM_NODE_PrintNodesTree(node, Measure, &length));
    static_cast<void>(QM_NODE_PrintNodeHeader(node, Measure, &length));
    EXPECT_LE(length, kMostText) << "the print does not end";
  }

  QmCtx* ctx_;
  bool quick_;
};

}  // namespace

void Check(QmCtx* ctx) {
  Reader(ctx, false).Run();
}

void CheckQuickly(QmCtx* ctx) {
  Reader(ctx, true).Run();
}

}  // namespace every_walk
