// SPDX-License-Identifier: BSD-3-Clause
// What each public function promises to answer when a pointer is NULL, one line for
// each. Clients call them with what they have found, or have not.
#include <gtest/gtest.h>

#include <qmodel/qmodel.h>

#include "tests/support/message_fixture.h"
#include "tests/support/null_arguments.h"

namespace {

using null_arguments::ExpectEachGives;

class PublicArguments : public testing::Test {
 protected:
  void SetUp() override {
    schema_.Load("m", R"(<feature name="f"/><identity name="i"/>
      <typedef name="t"><type name="int8"/></typedef>
      <leaf name="l"><type name="t"/></leaf>
      <rpc name="r"/><notification name="n"/>)");
    ctx_ = schema_.ctx();
    ASSERT_NE(nullptr, mod_ = QM_CTX_GetModuleByModName(ctx_, "m"));
    ASSERT_NE(nullptr, node_ = QM_CTX_GetTargetNode(ctx_, "/m:l", nullptr));
    ASSERT_NE(nullptr, type_ = QM_NODE_GetRealType(node_));
    ASSERT_EQ(QM_OK, QM_MOD_ScanAllIdentity(mod_, NoteIdentity, &identity_));
    ASSERT_NE(nullptr, identity_);
  }
  static uint32_t NoteIdentity(QmsIdentity* identity, void* arg, uint32_t) {
    *static_cast<QmsIdentity**>(arg) = identity;
    return 0;
  }

  message_fixture::Schema schema_;
  QmCtx* ctx_ = nullptr;
  QmsModule* mod_ = nullptr;
  QmsNode* node_ = nullptr;
  QmtType* type_ = nullptr;
  QmsIdentity* identity_ = nullptr;
};

uint32_t OnNode(QmsNode*, uint32_t, void*) {
  return 77;
}
uint32_t OnBase(const char*, const char*, void*) {
  return 77;
}
uint32_t OnType(const char*, const char*, QmtType*, void*) {
  return 77;
}
uint32_t OnText(const char*, uint32_t, void*) {
  return 77;
}

TEST_F(PublicArguments, OfContexts) {
  QM_CTX_Delete(nullptr);
  ExpectEachGives(nullptr, QM_CTX_GetModuleByModName, ctx_, "m");
  ExpectEachGives(nullptr, QM_CTX_GetModuleByModNs, ctx_, "urn:m");
  ExpectEachGives(nullptr, QM_CTX_GetTargetNode, ctx_, "/m:l", nullptr);
  ExpectEachGives(QM_INVALID, QM_CTX_DisableModFeature, ctx_, "m", "f");
  ExpectEachGives(QM_INVALID, QM_CTX_IsModFeatureEnable, ctx_, "m", "f");
  ExpectEachGives(QM_INVALID, QM_CTX_SetSearchDir, ctx_, "/");
  EXPECT_EQ(QM_INVALID, QM_CTX_UnSetSearchDir(nullptr, "/"));
  EXPECT_EQ(QM_OK, QM_CTX_UnSetSearchDir(ctx_, nullptr)) << "takes all off";
  QM_CTX_SetPridataFreeFunc(nullptr, nullptr);
  QM_CTX_SetFirstAugChildRelinkFunc(nullptr, nullptr);
  QM_CTX_SetBeforeDeviateNotSupportFunc(nullptr, nullptr);
  QM_CTX_SetBeforeDeviateExtInstFunc(nullptr, nullptr);
  QM_CTX_SetReloadModuleCbFunc(nullptr, nullptr);
  QM_CTX_SetExtInstFilterCbFunc(nullptr, nullptr);
  ExpectEachGives(QM_INVALID, QM_CTX_LoadModule, ctx_, "m");
  ExpectEachGives(QM_INVALID, QM_CTX_LoadMemory, ctx_, "<module/>");
  ExpectEachGives(0, QM_CTX_UnloadModule, ctx_, "m");
  EXPECT_EQ(mod_, QM_CTX_GetModuleByModName(ctx_, "m")) << "it is still there";
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(nullptr, nullptr, nullptr));
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, nullptr, nullptr));
}

TEST_F(PublicArguments, OfModules) {
  ExpectEachGives(nullptr, QM_MOD_GetModuleName, mod_);
  ExpectEachGives(nullptr, QM_MOD_GetModuleNs, mod_);
  ExpectEachGives(nullptr, QM_MOD_GetModulePrefix, mod_);
  ExpectEachGives(nullptr, QM_MOD_GetOrganization, mod_);
  ExpectEachGives(nullptr, QM_MOD_GetRevision, mod_);
  ExpectEachGives(nullptr, QM_MOD_GetPrivate, mod_);
  ExpectEachGives(nullptr, QM_MOD_SetPrivate, mod_, nullptr);
  ExpectEachGives(nullptr, QM_MOD_GetRealTypeByTypDefName, mod_, "t");
  ExpectEachGives(QM_INVALID, QM_MOD_EnableFeature, mod_, "f");
  ExpectEachGives(QM_INVALID, QM_MOD_DisableFeature, mod_, "f");
  ExpectEachGives(QM_INVALID, QM_MOD_ScanAllIdentity, mod_, NoteIdentity, nullptr);
  ExpectEachGives(QM_INVALID, QM_MOD_ScanIdentityBase, identity_, OnBase, nullptr);
  ExpectEachGives(nullptr, QM_MOD_GetIdentityName, identity_);
  ExpectEachGives(nullptr, QM_MOD_GetIdentityDescription, identity_);
  ExpectEachGives(QM_INVALID, QM_MOD_IterScanTopmostNode, mod_, OnNode, nullptr);
  ExpectEachGives(QM_INVALID, QM_MOD_IterScanAugmentNode, mod_, OnNode, nullptr);
}

TEST_F(PublicArguments, OfNodes) {
  ExpectEachGives(nullptr, QM_NODE_GetNodeName, node_);
  ExpectEachGives(nullptr, QM_NODE_GetModule, node_);
  ExpectEachGives(0, QM_NODE_GetNodeType, node_);
  ExpectEachGives(nullptr, QM_NODE_GetWhenCond, node_);
  ExpectEachGives(nullptr, QM_NODE_GetDescription, node_);
  ExpectEachGives(nullptr, QM_NODE_GetPrivate, node_);
  ExpectEachGives(nullptr, QM_NODE_SetPrivate, node_, nullptr);
  ExpectEachGives(nullptr, QM_NODE_GetParentNode, node_);
  ExpectEachGives(nullptr, QM_NODE_GetNonChoiceCaseParent, node_);
  ExpectEachGives(nullptr, QM_NODE_GetAugmentTargetNode, node_);
  ExpectEachGives(nullptr, QM_NODE_GetRealType, node_);
  ExpectEachGives(nullptr, QM_NODE_GetDefaultValueStr, node_);
  ExpectEachGives(nullptr, QM_NODE_GetUnitsValueStr, node_);
  ExpectEachGives(nullptr, QM_NODE_GetLeafrefTargetNode, node_, 1);
  for (auto* question :
       {QM_NODE_GetNodeKeyNum, QM_NODE_IsKey, QM_NODE_IsRwConfig, QM_NODE_IsMandatory,
        QM_NODE_IsOrderedByNode, QM_NODE_IsNacmDefaultDenyAll, QM_NODE_IsNacmDefaultDenyWrite,
        QM_NODE_IsObsoleteNode, QM_NODE_IsPresenceContainer, QM_NODE_IsEnabled}) {
    EXPECT_EQ(0u, question(nullptr));
  }
}

TEST_F(PublicArguments, OfScansChecksAndPrintsOfNodes) {
  ExpectEachGives(QM_INVALID, QM_NODE_TreeScanAllNode, node_, OnNode, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_IterScanChildrenNode, node_, OnNode, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_IterScanSiblingNode, node_, OnNode, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_ScanDerivedType, node_, OnType, nullptr);
  EXPECT_EQ(QM_INVALID, QM_NODE_ValidateValue(nullptr, QM_INPUT_TEXT, "1"));
  EXPECT_EQ(nullptr, QM_NODE_FindRealTypeMatchedValue(nullptr, QM_INPUT_TEXT, "1"));
  ExpectEachGives(QM_INVALID, QM_NODE_AppendExtInst, node_, "m", "e", nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_ReplaceDstExtInst, node_, node_);
  QM_NODE_CleanExtInsts(nullptr);
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanAllExtInsts(nullptr, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanAllExtInsts(node_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanAllExtInsts(mod_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_EXT_ScanAllChildExtInsts(nullptr, nullptr, nullptr));
  ExpectEachGives(QM_INVALID, QM_MOD_PrintModelTree, mod_, OnText, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_PrintNodesTree, node_, OnText, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_PrintNodeHeader, node_, OnText, nullptr);
}

TEST_F(PublicArguments, OfTypes) {
  ExpectEachGives(QMT_BASE_NONE, QM_TYPE_GetBuiltInBaseType, type_);
  ExpectEachGives(0, QM_TYPE_GetDecimal64Fraction, type_);
  ExpectEachGives(nullptr, QM_TYPE_GetTypeConsDataLeafrefPath, type_);
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanNameValuePair(type_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanNameValuePair(nullptr, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanStartEndPair(type_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanStartEndPair(nullptr, nullptr, nullptr));
  ExpectEachGives(QM_INVALID, QM_TYPE_ScanUnionSubType, type_, OnType, nullptr);
  ExpectEachGives(QM_INVALID, QM_TYPE_ScanIdentRefBase, type_, OnBase, nullptr);
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanPatternInvertMatch(type_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanPatternInvertMatch(nullptr, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(nullptr, ctx_, OnType, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(type_, ctx_, nullptr, nullptr));
  EXPECT_EQ(77u, QM_TYPE_IterRealTypeDerivedName(type_, nullptr, OnType, nullptr))
      << "without context the typedef is told by its name";
}

TEST_F(PublicArguments, OfExpressions) {
  QM_XPATH_FreeXpathLex(nullptr);
  QmXpathExpr* expr = QM_XPATH_ExprTokenize("a");
  ASSERT_NE(nullptr, expr);
  EXPECT_EQ(nullptr, QM_XPATH_ExprTokenize(nullptr));
  ExpectEachGives(0, QM_XPATH_GetTokenNumber, expr);
  EXPECT_EQ(nullptr, QM_XPATH_GetTokenExprByPos(nullptr, 0, nullptr, nullptr));
  EXPECT_NE(nullptr, QM_XPATH_GetTokenExprByPos(expr, 0, nullptr, nullptr));
  ExpectEachGives(nullptr, QM_XPATH_CopyTokenContent, expr, 0);
  ExpectEachGives(8, QM_XPATH_GetTokenOperationType, expr, 0);
  QM_XPATH_FreeXpathLex(expr);
  const message_fixture::Document doc("<l xmlns='urn:m'/>");
  ExpectEachGives(QM_INVALID, QM_XPATH_EvalCondition, doc.root(), doc.root(), "1");
}

TEST_F(PublicArguments, OfMessages) {
  for (QmCtx* ctx : {ctx_, static_cast<QmCtx*>(nullptr)}) {
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, nullptr, nullptr, nullptr);
    EXPECT_EQ("18|/|-|-|-", message_fixture::Describe(err));
  }
  char rpc[] = "<r xmlns='urn:m'/>";
  EXPECT_EQ("18|/|-|-|-", message_fixture::Describe(QM_CTX_ValidateRpcDataTree(
                              nullptr, QM_INPUT_TEXT, rpc, nullptr, nullptr)));
  ExpectEachGives(QM_INVALID, QM_CTX_ValidateNotifDataTree, ctx_, "<n xmlns='urn:m'/>", nullptr,
                  nullptr);
  EXPECT_EQ(QM_OK, QM_CTX_ValidateNotifDataTree(ctx_, "<n xmlns='urn:m'/>", nullptr, nullptr));
  QM_FreeErrNode(nullptr);
  EXPECT_EQ(0u, QM_GetErrorType(nullptr));
  EXPECT_EQ(0u, QM_GetErrorSeverity(nullptr));
  EXPECT_EQ(0u, QM_GetErrorTag(nullptr));
  for (auto* text : {QM_GetErrorAppTag, QM_GetErrorPath, QM_GetErrorMessage, QM_GetBadElement,
                     QM_GetBadAttribute}) {
    EXPECT_EQ(nullptr, text(nullptr));
  }
}

}  // namespace
