// SPDX-License-Identifier: BSD-3-Clause
// Augments of augments may stack a schema higher than any file could nest it, and
// a caller's tree may follow it. Nothing of this may exhaust the stack.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <vector>

#include "data/add_defaults.h"
#include "data/bind.h"
#include "data/default_list.h"
#include "data/must.h"
#include "data/validate.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"
#include "tests/support/small_stack.h"

namespace {

const xmlChar* Chars(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

// An rpc whose input nests `depth` containers c around a mandatory leaf x.
class DeepSchema {
 public:
  DeepSchema(QmCtx* ctx, size_t depth) : containers_(depth) {
    module_.ctx = ctx;
    module_.name = "m";
    module_.ns = "urn:m";
    Link(&rpc_, nullptr, &input_, QMS_NODE_RPC, "r");
    Link(&input_, &rpc_, containers_.data(), QMS_NODE_INPUT, "input");
    for (size_t i = 0; i < depth; ++i) {
      QmsNode* parent = i == 0 ? &input_ : &containers_[i - 1];
      QmsNode* child = i + 1 == depth ? &leaf_ : &containers_[i + 1];
      Link(&containers_[i], parent, child, QMS_NODE_CONTAINER, "c");
    }
    Link(&leaf_, &containers_.back(), nullptr, QMS_NODE_LEAF, "x");
    leaf_.payload = &leafPayload_;
    leaf_.flags = QMS_NODE_MANDATORY_TRUE;
    leafPayload_.type.baseType = QMT_BASE_STRING;
  }
  QmsNode* rpc() { return &rpc_; }

 private:
  void Link(QmsNode* node, QmsNode* parent, QmsNode* child, uint32_t kind, const char* name) {
    node->module = &module_;
    node->parent = parent;
    node->firstChild = child;
    node->lastChild = child;
    node->kind = kind;
    node->name = name;
  }
  QmsModule module_ = {};
  QmsNode rpc_ = {};
  QmsNode input_ = {};
  QmsNode leaf_ = {};
  QmsLeaf leafPayload_ = {};
  std::vector<QmsNode> containers_;
};

// An element r bound to the rpc, with `depth` elements c below each other and an x.
class DeepTree {
 public:
  DeepTree(QmsNode* rpc, size_t depth) : doc_(xmlNewDoc(nullptr)) {
    xmlNode* root = xmlNewDocNode(doc_, nullptr, Chars("r"), nullptr);
    xmlDocSetRootElement(doc_, root);
    root->_private = rpc;
    xmlNode* node = root;
    for (size_t i = 0; i < depth; ++i) node = xmlNewChild(node, nullptr, Chars("c"), nullptr);
    if (depth != 0) xmlNewChild(node, nullptr, Chars("x"), nullptr);
  }
  ~DeepTree() { xmlFreeDoc(doc_); }
  DeepTree(const DeepTree&) = delete;
  DeepTree& operator=(const DeepTree&) = delete;
  xmlNode* root() const { return xmlDocGetRootElement(doc_); }

 private:
  xmlDoc* doc_;
};

class DeepRun : public testing::Test {
 protected:
  void SetUp() override {
    QMD_PAS_InitCheckAux(&aux_, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  }
  message_fixture::Schema schema_;
  QmCheckAux aux_ = {};
};

TEST_F(DeepRun, TreesOfAnyDepthAreBoundAndEvaluated) {
  constexpr size_t kDepth = 50000;
  DeepSchema schema(schema_.ctx(), kDepth);
  const DeepTree tree(schema.rpc(), kDepth);
  aux_.topNode = tree.root()->parent;
  EXPECT_EQ(QM_OK, QMD_PAS_FlushAllElementChildNodeWithSchema(&aux_, tree.root(), schema.rpc()));
  const xmlNode* node = tree.root();
  size_t bound = 0;
  for (; node != nullptr && node->_private != nullptr; node = node->children) ++bound;
  EXPECT_EQ(kDepth + 2, bound);
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataTreeWhenMust(&aux_, tree.root()));
  QMD_PAS_ClearXmlTreePrivate(tree.root());
}

// The rpc, its input and the leaf are levels too.
TEST_F(DeepRun, DefaultsAndMandatoryNodesAreFollowedTo4096Levels) {
  DeepSchema schema(schema_.ctx(), 4093);
  const DeepTree tree(schema.rpc(), 0);
  aux_.topNode = tree.root()->parent;
  EXPECT_EQ(QM_OK, QMD_PAS_CompleteTree(&aux_, tree.root(), QMD_MODE_RPC));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckTreeMandatory(&aux_, tree.root()));
  ASSERT_NE(nullptr, aux_.err);
  EXPECT_STREQ("Missing element: x.", QM_GetErrorMessage(aux_.err));
  EXPECT_EQ(nullptr, tree.root()->children);
  QM_FreeErrNode(aux_.err);
}

TEST_F(DeepRun, OneLevelMoreIsRefused) {
  DeepSchema schema(schema_.ctx(), 4094);
  const DeepTree tree(schema.rpc(), 0);
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteTree(&aux_, tree.root(), QMD_MODE_RPC));
  EXPECT_EQ(nullptr, tree.root()->children);
  EXPECT_EQ(0u, aux_.nesting);
}

TEST_F(DeepRun, DeeperSchemasAreRefusedWithoutRecord) {
  DeepSchema schema(schema_.ctx(), 50000);
  const DeepTree tree(schema.rpc(), 0);
  aux_.topNode = tree.root()->parent;
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteTree(&aux_, tree.root(), QMD_MODE_RPC));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckTreeMandatory(&aux_, tree.root()));
  EXPECT_EQ(nullptr, aux_.err);
  EXPECT_EQ(nullptr, tree.root()->children);
  EXPECT_EQ(0u, aux_.nesting);
}

// As many levels as a run may be in, by a loop.
TEST_F(DeepRun, NeedsNoMoreThanASmallStack) {
  DeepSchema schema(schema_.ctx(), 4093);
  const DeepTree tree(schema.rpc(), 0);
  aux_.topNode = tree.root()->parent;
  uint32_t completed = 1;
  uint32_t checked = 0;
  static_cast<void>(small_stack::Run([&] {
    completed = QMD_PAS_CompleteTree(&aux_, tree.root(), QMD_MODE_RPC);
    checked = QM_PAS_CheckTreeMandatory(&aux_, tree.root());
  }));
  EXPECT_EQ(0u, completed);
  EXPECT_EQ(QM_INVALID, checked);
  QM_FreeErrNode(aux_.err);
}

// Levels beyond the first ones take blocks.
TEST_F(DeepRun, SurvivesEachRefusedAllocation) {
  static DeepSchema* schema;
  static QmCtx* ctx;
  DeepSchema deep(schema_.ctx(), 100);
  schema = &deep;
  ctx = schema_.ctx();
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    const DeepTree tree(schema->rpc(), 0);
    QmCheckAux aux = {};
    QMD_PAS_InitCheckAux(&aux, ctx, QMD_MODE_RPC, nullptr, nullptr);
    aux.topNode = tree.root()->parent;
    const uint32_t completed = QMD_PAS_CompleteTree(&aux, tree.root(), QMD_MODE_RPC);
    EXPECT_TRUE(completed == 0 || (refusing && completed == 12));
    const uint32_t checked = QM_PAS_CheckTreeMandatory(&aux, tree.root());
    EXPECT_TRUE(checked == QM_INVALID || (refusing && checked == QM_NO_MEMORY));
    EXPECT_EQ(nullptr, tree.root()->children);
    EXPECT_EQ(0u, aux.nesting);
    QM_FreeErrNode(aux.err);
  });
  EXPECT_LT(6u, injected);
}

}  // namespace
