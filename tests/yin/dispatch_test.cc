// SPDX-License-Identifier: BSD-3-Clause
#include "yin/dispatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <iterator>
#include <string>

#include "context/dict.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"
#include "yin/load_type.h"
#include "yin/stmt_definition.h"
#include "yin/stmt_ext_inst.h"
#include "yin/stmt_kinds.h"
#include "yin/stmt_must_when.h"
#include "yin/stmt_property.h"

using testing::ElementsAre;

namespace {

// An element of the YIN namespace with the given children, and a module to parse for.
class Element {
 public:
  Element(QmCtx* ctx, const std::string& name, const std::string& children)
      : parsed_(ctx, yin::Module("m", "")) {
    const std::string text = "<" + name + yin_text::kNamespace +
                             " xmlns:m='urn:m' xmlns:z='urn:z'>" + children + "</" + name + ">";
    doc_ = ParseXmlText(text.data(), text.size());
    EXPECT_NE(nullptr, doc_);
  }
  ~Element() { xmlFreeDoc(doc_); }
  xmlNode* Get() const { return xmlDocGetRootElement(doc_); }
  QmsModule* Module() const { return parsed_.Get(); }

 private:
  yin::Parsed parsed_;
  xmlDoc* doc_;
};

}  // namespace

TEST(GetStmtParseFunc, NamesTheParserOfEachStatement) {
  EXPECT_EQ(QMS_LOADER_ParseAction, QMS_LOADER_GetStmtParseFunc(1));
  EXPECT_EQ(QMS_LOADER_ParseIdentBase, QMS_LOADER_GetStmtParseFunc(6));
  EXPECT_EQ(QMS_LOADER_ParseNotif, QMS_LOADER_GetStmtParseFunc(42));
  EXPECT_EQ(QMT_LOADER_ParseTypeStmt, QMS_LOADER_GetStmtParseFunc(60));
  EXPECT_EQ(QMT_LOADER_ParseTypeDefStmt, QMS_LOADER_GetStmtParseFunc(61));
  EXPECT_EQ(QMS_LOADER_ParseText, QMS_LOADER_GetStmtParseFunc(69));
  EXPECT_EQ(QMS_LOADER_ParseExtInst, QMS_LOADER_GetStmtParseFunc(70));
}

TEST(GetStmtParseFunc, StatementsReadElsewhereOrIgnoredHaveNone) {
  for (uint32_t id : {0u,  7u,  8u,  12u, 18u, 23u, 24u, 27u, 28u, 33u, 36u, 37u, 38u, 39u, 41u,
                      46u, 47u, 48u, 51u, 52u, 53u, 54u, 56u, 59u, 62u, 64u, 67u, 71u, 999u}) {
    SCOPED_TRACE(id);
    EXPECT_EQ(nullptr, QMS_LOADER_GetStmtParseFunc(id));
  }
  uint32_t withParser = 0;
  for (uint32_t id = 0; id < 71; ++id) withParser += QMS_LOADER_GetStmtParseFunc(id) != nullptr;
  EXPECT_EQ(44u, withParser);
}

TEST(MarkSubNode, EveryChildGetsItsId) {
  yin::Context ctx;
  Element e(ctx, "container", "<leaf/><unknown/><!--c--><z:leaf/><uses/>");
  QMS_LOADER_MarkSubNode(e.Get());
  std::vector<uintptr_t> marks;
  for (xmlNode* n = e.Get()->children; n != nullptr; n = n->next) marks.push_back(PrivateMark(n));
  EXPECT_THAT(marks, ElementsAre(31u, 0u, 0u, 70u, 64u));
}

TEST(ParseSubStatements, ArrayHasExactlyTheElementsFoundInDocumentOrder) {
  yin::Context ctx;
  Element e(ctx, "container",
            "<must condition='a'/><leaf/><must condition='b'/><must condition='c'/>");
  QmsMust* musts = nullptr;
  uint16_t used = 0;
  uint16_t found = 0;
  QmsSubStmtDesc table[] = {ArraySubStmt(QMS_STMT_MUST, &musts, &used, &found)};
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseSubStatements(e.Module(), e.Get(), 16, table, 1));
  ASSERT_EQ(3u, used);
  EXPECT_EQ(3u, found);
  EXPECT_STREQ("a", musts[0].condition);
  EXPECT_STREQ("b", musts[1].condition);
  EXPECT_STREQ("c", musts[2].condition);
  QMS_NODE_FreeMusts(ModuleDict(e.Module()), musts, used);
}

TEST(ParseSubStatements, WhatNoDescriptorAcceptsIsLeftUnmarked) {
  yin::Context ctx;
  Element e(ctx, "container", "<grouping/><default value='1'/><!--c--><config value='bad'/>");
  const char* value = nullptr;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_DEFAULT, &value)};
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseSubStatements(e.Module(), e.Get(), 31, table, 1));
  EXPECT_STREQ("1", value);
  EXPECT_EQ(0u, PrivateMark(e.Get()->children));
  EXPECT_EQ(14u, PrivateMark(e.Get()->children->next));
  EXPECT_EQ(0u, PrivateMark(e.Get()->last));
  EXPECT_THAT(ctx.Errors(), ElementsAre());
  ReleaseText(&ctx.Get()->dict, &value);
}

TEST(ParseSubStatements, AStatementWithoutParserIsSkippedThoughAccepted) {
  yin::Context ctx;
  Element e(ctx, "container", "<reference/>");
  const char* value = nullptr;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_REFERENCE, &value)};
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseSubStatements(e.Module(), e.Get(), 13, table, 1));
  EXPECT_EQ(nullptr, value);
}

TEST(ParseSubStatements, TheLaterOfTwoSingleStatementsWins) {
  yin::Context ctx;
  Element e(ctx, "leaf", "<default value='first'/><default value='second'/>");
  const char* value = nullptr;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_DEFAULT, &value)};
  EXPECT_EQ(QM_OK, QMS_LOADER_ParseSubStatements(e.Module(), e.Get(), 31, table, 1));
  EXPECT_STREQ("second", value);
  ReleaseText(&ctx.Get()->dict, &value);
}

TEST(ParseSubStatements, FailureEndsThePassAndIsTold) {
  yin::Context ctx;
  Element e(ctx, "leaf", "<config value='true'/><value/><config/><default value='x'/>");
  uint32_t flags = 0;
  const char* value = nullptr;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_CONFIG, &flags),
                            SingleSubStmt(QMS_STMT_DEFAULT, &value)};
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseSubStatements(e.Module(), e.Get(), 31, table, 2));
  EXPECT_EQ(0x2u | 0x8u, flags);
  EXPECT_EQ(nullptr, value) << "nothing after the failure is parsed";
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to get value of statement \"config\"."));
}

static uint32_t FoundOfLimit(uint32_t preset, uint16_t* found) {
  yin::Context ctx;
  Element e(ctx, "container", "<must condition='a'/>");
  QmsMust* musts = nullptr;
  uint16_t used = 0;
  *found = static_cast<uint16_t>(preset);
  QmsSubStmtDesc table[] = {ArraySubStmt(QMS_STMT_MUST, &musts, &used, found)};
  return QMS_LOADER_MarkSubNodeAndCountArraySize(e.Module(), e.Get(), table, 1);
}

TEST(MarkSubNodeAndCountArraySize, ACounterIsNeverRaisedPastItsEnd) {
  uint16_t found = 0;
  EXPECT_EQ(0u, FoundOfLimit(65534, &found));
  EXPECT_EQ(65535u, found);
  EXPECT_EQ(QM_INVALID, FoundOfLimit(65535, &found));
  EXPECT_EQ(65535u, found);
}

// A child whose parser fails without a message of its own: the engine names it.
TEST(ParseSubStatements, EngineNamesChildAndParentWhenNothingWasRecordedYet) {
  yin::Context ctx;
  Element e(ctx, "container", "<list name='l'><key value='none'/></list>");
  QmsNode* node = QMS_NODE_New(QMS_NODE_CONTAINER);
  ASSERT_NE(nullptr, node);
  node->module = e.Module();
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_LIST, node)};
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseSubStatements(e.Module(), e.Get(), 13, table, 1));
  EXPECT_THAT(
      ctx.Errors(),
      ElementsAre("m -: Failed to parse statement \"list\" under statement \"container\"."));
  EXPECT_EQ(nullptr, node->firstChild);
  QMS_NODE_Free(node);
}

TEST(NewSubStatementsArray, InstancesOfASchemaNodeLieInTheNode) {
  yin::Context ctx;
  Element e(ctx, "leaf", "");
  QmsNode* node = QMS_NODE_New(QMS_NODE_LEAF);
  ASSERT_NE(nullptr, node);
  node->module = e.Module();
  uint16_t found = 2;
  QmsSubStmtDesc table[] = {{QMS_STMT_EXTENSION_INSTANCE, node, &node->extInstCount, &found,
                             sizeof(QmsExtInst), QMS_SUBSTMT_ARRAY}};
  EXPECT_EQ(QM_OK, QMS_LOADER_NewSubStatementsArray(QMS_STMT_LEAF, table, 1));
  EXPECT_NE(nullptr, node->extInsts);
  EXPECT_EQ(node, QMS_LOADER_GetSubParseDest(&table[0], QMS_STMT_LEAF));
  EXPECT_EQ(0u, node->extInstCount) << "the parser of the instance counts";
  QMS_NODE_Free(node);
}

TEST(NewSubStatementsArray, AnArrayThatExistsIsRefused) {
  QmsMust one = {};
  QmsMust* musts = &one;
  uint16_t used = 0;
  uint16_t found = 1;
  QmsSubStmtDesc table[] = {ArraySubStmt(QMS_STMT_MUST, &musts, &used, &found)};
  EXPECT_EQ(QM_INVALID, QMS_LOADER_NewSubStatementsArray(13, table, 1));
  EXPECT_EQ(&one, musts);
}

TEST(GetSubParseDest, HandsOutElementsInOrderAndNoneBeyondTheArray) {
  QmsMust two[2] = {};
  QmsMust* musts = two;
  uint16_t used = 0;
  uint16_t found = 2;
  QmsSubStmtDesc desc = ArraySubStmt(QMS_STMT_MUST, &musts, &used, &found);
  EXPECT_EQ(&two[0], QMS_LOADER_GetSubParseDest(&desc, 16));
  EXPECT_EQ(1u, used);
  EXPECT_EQ(&two[1], QMS_LOADER_GetSubParseDest(&desc, 16));
  EXPECT_EQ(2u, used);
  EXPECT_EQ(nullptr, QMS_LOADER_GetSubParseDest(&desc, 16));
  EXPECT_EQ(2u, used);
}

TEST(GetSubParseElem, FirstMatchWins) {
  int a = 0;
  int b = 0;
  QmsSubStmtDesc table[] = {SingleSubStmt(31, &a), SingleSubStmt(31, &b), SingleSubStmt(13, &b)};
  EXPECT_EQ(&table[0], QMS_LOADER_GetSubParseElem(table, 3, 31));
  EXPECT_EQ(&table[2], QMS_LOADER_GetSubParseElem(table, 3, 13));
  EXPECT_EQ(nullptr, QMS_LOADER_GetSubParseElem(table, 3, 34));
}

TEST(IsSchemaNodeStmt, ThirteenStatementsMakeNodesWithInstances) {
  std::vector<uint32_t> stmts;
  for (uint32_t id = 0; id < 80; ++id)
    if (IsSchemaNodeStmt(id)) stmts.push_back(id);
  EXPECT_THAT(stmts, ElementsAre(1, 2, 3, 9, 10, 13, 29, 31, 32, 34, 42, 45, 57));
}
