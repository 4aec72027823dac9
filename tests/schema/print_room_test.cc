// SPDX-License-Identifier: BSD-3-Clause
// The printer where there is too little room, or where the client's output function
// gives up: every step must end the print, whatever piece of a line it was about.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "context/dict.h"
#include "schema/print_tree.h"
#include "tests/support/null_arguments.h"
#include "tests/support/schema_tree.h"

using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

uint32_t CountChunks(const char*, uint32_t, void* arg) {
  ++*static_cast<uint32_t*>(arg);
  return 0;
}

// A print into `size` bytes, the NUL counted.
struct SmallPrint {
  std::vector<char> block;
  uint32_t chunks = 0;
  QmsPrintText text;
  QmsPrintPara para = {};

  SmallPrint(uint32_t size, const QmsModule* module)
      : block(size), text{block.data(), size, 0, CountChunks, &chunks} {
    para.level = 2;
    para.nameWidth = 12;
    para.module = module;
    para.text = &text;
  }
  std::string Written() const { return std::string(block.data(), text.used); }
};

// Calls `print` with one byte more each time: 22 until everything fits, and what
// is written is always a beginning of the whole.
template <typename Print>
void ExpectAllOrRefused(const QmsModule* module, Print print) {
  SmallPrint enough(1000, module);
  ASSERT_EQ(QM_OK, print(&enough.para));
  const std::string whole = enough.Written();
  ASSERT_FALSE(whole.empty());
  for (uint32_t size = 1; size <= whole.size(); ++size) {
    SCOPED_TRACE(testing::Message() << size << " bytes for " << whole);
    SmallPrint tooSmall(size, module);
    EXPECT_EQ(QM_INVALID, print(&tooSmall.para));
    EXPECT_EQ(whole.substr(0, tooSmall.text.used), tooSmall.Written());
  }
  SmallPrint fits(static_cast<uint32_t>(whole.size()) + 1, module);
  EXPECT_EQ(QM_OK, print(&fits.para));
  EXPECT_EQ(whole, fits.Written());
}

// A module n whose nodes stand in a tree of module m, so that their lines carry
// every piece that a line can have.
struct Tree {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule* n = schema.Module("n");
  QmsNode* c = Top(m, QMS_NODE_CONTAINER, "c");

  QmsNode* Foreign(uint32_t kind) { return Child(c, kind, "f", n); }
};

TEST(PrintRoom, ALineOfAnyKindFitsOrIsRefused) {
  for (uint32_t kind = QMS_NODE_CONTAINER; kind < QMS_NODE_KIND_COUNT; ++kind) {
    SCOPED_TRACE(kind);
    Tree tree;
    QmsNode* node = tree.Foreign(kind);
    if (kind == QMS_NODE_LEAF || kind == QMS_NODE_LEAF_LIST) {
      schema_tree::SetType(node, QMT_BASE_INT8);
    }
    if (kind == QMS_NODE_LIST) {
      Child(node, QMS_NODE_LEAF, "k")->flags |= QMS_NODE_KEY;
      Child(node, QMS_NODE_LEAF, "l")->flags |= QMS_NODE_KEY;
    }
    ExpectAllOrRefused(tree.m, [node](QmsPrintPara* para) { return PrintNodeLine(node, para); });
  }
}

TEST(PrintRoom, TheLineOfACaseFitsOrIsRefused) {
  Tree tree;
  QmsNode* node = tree.Foreign(QMS_NODE_CASE);
  ExpectAllOrRefused(tree.m, [node](QmsPrintPara* para) { return PrintCaseLine(node, para); });
}

TEST(PrintRoom, EachTypeFitsOrIsRefused) {
  Tree tree;
  QmsNode* derived = LeafOf(tree.c, "d", QMT_BASE_INT8);
  schema_tree::Typedef(tree.n, "t", QMT_BASE_INT8);
  schema_tree::SetDerivedType(derived, "n", "t");
  QmsNode* reference = LeafOf(tree.c, "r", QMT_BASE_INT8);
  schema_tree::SetLeafref(reference, "../d");
  for (QmsNode* leaf : {derived, reference}) {
    const QmtType* type = QM_NODE_GetRealType(leaf);
    ExpectAllOrRefused(tree.m,
                       [type](QmsPrintPara* para) { return QMS_NODE_PrintType(type, para); });
  }
}

TEST(PrintRoom, ASubtreeWithShorthandCasesFitsOrIsRefused) {
  Tree tree;
  QmsNode* choice = Child(tree.c, QMS_NODE_CHOICE, "ch");
  LeafOf(choice, "a", QMT_BASE_INT8);
  LeafOf(Child(choice, QMS_NODE_CASE, "b"), "x", QMT_BASE_STRING);
  ExpectAllOrRefused(
      tree.m, [&tree](QmsPrintPara* para) { return QMS_NODE_PrintSubTree(tree.m, tree.c, para); });
}

TEST(PrintRoom, APieceThatIsMissingOrANodeOfNoKindIsRefusedWith22) {
  Tree tree;
  SmallPrint print(100, tree.m);
  EXPECT_EQ(QM_INVALID, PrintPiece(&print.para, nullptr));
  QmsNode node = {};
  for (uint32_t kind : {uint32_t{QMS_NODE_NONE}, uint32_t{QMS_NODE_KIND_COUNT}, UINT32_MAX}) {
    node.kind = kind;
    EXPECT_EQ(QM_INVALID, PrintNodeLine(&node, &print.para)) << kind;
  }
  for (uint32_t kind : {QMS_NODE_LEAF, QMS_NODE_LEAF_LIST}) {
    node.kind = kind;
    node.module = tree.m;
    EXPECT_EQ(QM_INVALID, PrintNodeLine(&node, &print.para)) << "a leaf without its record";
  }
  const QmtType type = {};
  null_arguments::ExpectEachGives(QM_INVALID, QMS_NODE_PrintType, &type, &print.para);
  null_arguments::ExpectEachGives(QM_INVALID, QMS_NODE_PrintSubTree, tree.m, tree.c, &print.para);
  EXPECT_EQ(0u, print.text.used);
}

TEST(PrintRoom, AChoiceWithoutItsRecordHasNoDefault) {
  Tree tree;
  QmsNode node = {};
  node.kind = QMS_NODE_CHOICE;
  node.module = tree.m;
  node.name = "ch";
  SmallPrint print(100, tree.m);
  EXPECT_EQ(QM_OK, PrintNodeLine(&node, &print.para));
  EXPECT_NE(std::string::npos, print.Written().find(" (ch)?\n"));
}

TEST(PrintRoom, AnEmptyBufferIsNotHandedOut) {
  Tree tree;
  SmallPrint print(100, tree.m);
  EXPECT_EQ(QM_OK, FlushText(&print.text));
  EXPECT_EQ(0u, print.chunks);
  EXPECT_EQ(QM_OK, PrintPiece(&print.para, "x"));
  EXPECT_EQ(QM_OK, FlushText(&print.text));
  EXPECT_EQ(1u, print.chunks);
}

TEST(PrintRoom, ANodeWithoutNameHasAnEmptyColumnAndFailsThePrint) {
  Tree tree;
  QmsNode* nameless = LeafOf(tree.c, "l", QMT_BASE_INT8);
  ReleaseText(tree.schema.dict(), &nameless->name);
  EXPECT_EQ(0u, QMS_NODE_PrintGetMaxLen(tree.m, nameless));
  uint32_t chunks = 0;
  EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(tree.m, CountChunks, &chunks));
  EXPECT_EQ(0u, chunks);
}

TEST(PrintRoom, AModuleNameThatDoesNotFitTheBufferFailsThePrintWith1) {
  Tree tree;
  ASSERT_TRUE(InternText(tree.schema.dict(), &tree.n->name, std::string(9000, 'x').c_str()));
  QmsNode* top = Top(tree.n, QMS_NODE_CONTAINER, "top");
  uint32_t chunks = 0;
  EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(tree.n, CountChunks, &chunks));
  EXPECT_EQ(QM_FAILED, QM_NODE_PrintNodesTree(top, CountChunks, &chunks));
  EXPECT_EQ(QM_FAILED, QM_NODE_PrintNodeHeader(top, CountChunks, &chunks));
  EXPECT_EQ(0u, chunks);
}

uint32_t GiveUp(const char*, uint32_t, void* arg) {
  ++*static_cast<uint32_t*>(arg);
  return 1;
}

TEST(PrintRoom, AnOutputFunctionThatFailsBeforeAHeadlineEndsThePrint) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  // One line fills the buffer beyond the mark, so that the headline of the rpcs
  // is what empties it.
  Top(m, QMS_NODE_CONTAINER, std::string(7500, 'x').c_str());
  Top(m, QMS_NODE_RPC, "r");
  uint32_t chunks = 0;
  EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(m, GiveUp, &chunks));
  EXPECT_EQ(1u, chunks) << "nothing is asked of it after it gave up";
}

}  // namespace
