// SPDX-License-Identifier: BSD-3-Clause
// Validation's parts when they are called with less than a whole run gives them:
// missing arguments, elements without binding, records without names.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstring>
#include <string>

#include "context/memory.h"
#include "context/xml_tree.h"
#include "data/add_defaults.h"
#include "data/bind.h"
#include "data/data_node.h"
#include "data/default_list.h"
#include "data/error.h"
#include "data/error_path.h"
#include "data/mandatory.h"
#include "data/must.h"
#include "data/node_check.h"
#include "data/schema_query.h"
#include "data/validate.h"
#include "data/when.h"
#include "schema/node_walk.h"
#include "tests/support/message_fixture.h"
#include "tests/support/null_arguments.h"
#include "xpath/bound_value.h"
#include "xpath/child_lookup.h"

namespace {

using message_fixture::Describe;
using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateRpc;
using null_arguments::ExpectEachGives;

// An rpc whose input has one leaf and one choice, with its parts at hand.
class DataArguments : public testing::Test {
 protected:
  void SetUp() override {
    schema_.Load("m", R"(
      <rpc name="r"><input>
        <leaf name="a"><type name="string"/></leaf>
        <choice name="ch">
          <case name="ca"><leaf name="x"><type name="string"/></leaf></case>
          <leaf name="y"><type name="string"/></leaf>
        </choice>
        <leaf name="need"><mandatory value="true"/><type name="string"/></leaf>
      </input></rpc>)");
    rpc_ = QM_CTX_GetTargetNode(schema_.ctx(), "/m:r", nullptr);
    ASSERT_NE(nullptr, rpc_);
    input_ = QMD_PAS_GetRpcSubTreeInputMdl(rpc_);
    ASSERT_NE(nullptr, input_);
    QMD_PAS_InitCheckAux(&aux_, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
    aux_.topNode = doc_.root()->parent;
  }
  QmsNode* Node(const char* name) { return QMS_NODE_FindChildNodeByName(input_, nullptr, name); }
  xmlNode* Text() { return doc_.Find("a")->children; }

  Schema schema_;
  Document doc_{"<r xmlns='urn:m'><a>1</a></r>"};
  QmsNode* rpc_ = nullptr;
  QmsNode* input_ = nullptr;
  QmCheckAux aux_ = {};
};

TEST_F(DataArguments, BindingRefusesWhatIsMissingWith22) {
  ExpectEachGives(QM_INVALID, QMD_PAS_FlushAllElementChildNodeWithSchema, &aux_, doc_.root(), rpc_);
  ExpectEachGives(QM_INVALID, QMD_PAS_FlushSubTreeWithSchema, &aux_, doc_.Find("a"), rpc_);
  ExpectEachGives(QM_INVALID, QMD_PAS_FlushTreeWithSchema, &aux_, doc_.root());
  EXPECT_EQ(QM_INVALID, QMD_PAS_FlushAllElementChildNodeWithSchema(&aux_, Text(), rpc_));
  EXPECT_EQ(QM_INVALID, QMD_PAS_FlushSubTreeWithSchema(&aux_, Text(), rpc_));
  EXPECT_EQ(QM_INVALID, QMD_PAS_CheckTopSchemaNode(&aux_, doc_.root())) << "not bound";
  EXPECT_EQ(0u, doc_.BoundElements());
  EXPECT_EQ(nullptr, aux_.err);
}

TEST_F(DataArguments, OneElementIsBoundWithAllBelowIt) {
  EXPECT_EQ(QM_OK, QMD_PAS_FlushSubTreeWithSchema(&aux_, doc_.Find("a"), rpc_));
  EXPECT_EQ(Node("a"), doc_.Find("a")->_private);
  EXPECT_EQ(nullptr, doc_.root()->_private);
  Document other("<r xmlns='urn:m'><a>1</a></r>");
  EXPECT_EQ(QM_OK, QMD_PAS_FlushAllElementChildNodeWithSchema(&aux_, other.root(), rpc_));
  EXPECT_EQ(Node("a"), other.Find("a")->_private);
}

TEST_F(DataArguments, AnElementThatDoesNotBindIsReported) {
  Document other("<r xmlns='urn:m'><q/></r>");
  aux_.topNode = other.root()->parent;
  EXPECT_EQ(QM_INVALID, QMD_PAS_FlushSubTreeWithSchema(&aux_, other.Find("q"), rpc_));
  EXPECT_EQ("9|/m:r/q|Unexpected element: q.|q|-", Describe(aux_.err));
}

TEST_F(DataArguments, CompletionRefusesWhatIsMissingWith22) {
  uint32_t added = 0;
  ExpectEachGives(QM_INVALID, QMD_PAS_CompleteSubTree, &aux_, doc_.root(), rpc_, &added);
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteTree(&aux_, doc_.root(), QMD_MODE_RPC)) << "not bound";
  EXPECT_EQ(QM_OK, QMD_PAS_CompleteTree(&aux_, doc_.root(), QMD_MODE_NOTIF));
  EXPECT_EQ(0u, added);
  EXPECT_EQ(QM_INVALID, QMD_PAS_ValidateDataTree(nullptr, doc_.root()));
  EXPECT_EQ(QM_INVALID, QMD_PAS_ValidateDataTree(&aux_, nullptr));
}

TEST_F(DataArguments, AnInputIsCheckedForMandatoryNodesByItself) {
  ASSERT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux_, doc_.root()));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckSubtreeMandatory(&aux_, doc_.root(), input_));
  EXPECT_EQ("7|/m:r|Missing element: need.|need|-", Describe(aux_.err));
  aux_.err = nullptr;
  Document whole("<r xmlns='urn:m'><need/></r>");
  ASSERT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux_, whole.root()));
  EXPECT_EQ(QM_OK, QM_PAS_CheckSubtreeMandatory(&aux_, whole.root(), input_));
  QmsNode strange = {};
  strange.kind = QMS_NODE_KIND_COUNT;
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckSubtreeMandatory(&aux_, whole.root(), &strange));
}

TEST_F(DataArguments, ElementsThatAreMissingHaveNoModuleNoValueAndNoChildren) {
  QmCtx* ctx = schema_.ctx();
  ExpectEachGives(nullptr, QMD_NODE_GetChildNodeWithSpecifyMdl, doc_.root(), rpc_);
  ExpectEachGives(nullptr, QMD_NODE_CreateNewChildNode, doc_.root(), rpc_);
  ExpectEachGives(nullptr, QMD_NODE_ConvertPrefixValueToModValue, doc_.root(), rpc_, "v");
  ExpectEachGives(nullptr, QMD_NODE_GetValueContent, doc_.Find("a"), Node("a"));
  ExpectEachGives(nullptr, QMD_NODE_GetChoiceInstanceCaseBranch, doc_.root(), Node("ch"));
  ExpectEachGives(nullptr, QMD_PAS_FindChildDataNode, doc_.root(), "a");
  for (xmlNode* node : {static_cast<xmlNode*>(nullptr), Text()}) {
    EXPECT_EQ(nullptr, QMD_NODE_GetModuleName(ctx, node));
    EXPECT_EQ(0u, QMD_NODE_IsKeyLeafNode(node));
    EXPECT_EQ(nullptr, QMD_NODE_CreateNewChildNode(node, rpc_));
    EXPECT_EQ(nullptr, QMD_PAS_FindChildDataNode(node, "a"));
  }
  const QmsModule nameless = {};
  QmsNode bare = {};
  EXPECT_EQ(nullptr, QMD_NODE_CreateNewChildNode(doc_.root(), &bare)) << "no name";
  EXPECT_EQ(nullptr, QMD_NODE_ConvertPrefixValueToModValue(doc_.root(), &bare, "v"));
  bare.module = const_cast<QmsModule*>(&nameless);
  EXPECT_EQ(nullptr, QMD_NODE_ConvertPrefixValueToModValue(doc_.root(), &bare, "v"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a></r>", doc_.Dump());
}

TEST_F(DataArguments, APrefixThatStandsForNothingHasNoModule) {
  Document doc("<r xmlns='urn:m' xmlns:p='urn:m' xmlns:f='urn:f'/>");
  char* value = QMD_NODE_ConvertPrefixValueToModValue(doc.root(), rpc_, "p:v");
  EXPECT_STREQ("m:v", value);
  g_qmMemFreeFunc(value);
  EXPECT_EQ(nullptr, QMD_NODE_ConvertPrefixValueToModValue(doc.root(), rpc_, "q:v"));
  EXPECT_EQ(nullptr, QMD_NODE_ConvertPrefixValueToModValue(doc.root(), rpc_, "f:v"));
}

TEST_F(DataArguments, ElementsWithoutBindingPassEveryCheckOfTheirOwn) {
  xmlNode* root = doc_.root();
  xmlNode* a = doc_.Find("a");
  uint32_t pass = 0;
  EXPECT_EQ(QM_OK, QMD_PAS_CheckMultiCases(&aux_, a));
  EXPECT_EQ(QM_OK, QMD_PAS_CheckElementNodeOrder(&aux_, a));
  EXPECT_EQ(QM_OK, QMD_PAS_CheckMultipleInstanceNode(&aux_, a));
  EXPECT_EQ(QM_OK, QMD_PAS_CheckDataNodeValue(&aux_, a));
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataNodeWhenCond(&aux_, a, &pass));
  EXPECT_EQ(1u, pass);
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataNodeMustCond(&aux_, a, nullptr));
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataTreeWhen(&aux_, root));
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataSubtreeMust(&aux_, root));
  EXPECT_EQ(QM_INVALID, QMD_PAS_EvalDataTreeMust(&aux_, root));
  EXPECT_EQ(QM_INVALID, QMD_PAS_EvalDataTreeWhenMust(&aux_, root));
  EXPECT_EQ(nullptr, aux_.err);
}

TEST_F(DataArguments, ARunThatIsNeitherRequestNorNotificationEvaluatesNoMust) {
  ASSERT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux_, doc_.root()));
  aux_.flags = 0;
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataTreeMust(&aux_, doc_.root()));
}

TEST_F(DataArguments, TheStartNodeOfARunIsNeverRemovedForItsCondition) {
  xmlNode* next = doc_.root();
  EXPECT_EQ(QM_INVALID, QMD_PAS_ProcDataNodeWhenCondNoPass(&aux_, doc_.root(), doc_.root(), &next));
  EXPECT_EQ(nullptr, next);
  EXPECT_EQ(nullptr, aux_.err);
}

TEST_F(DataArguments, ChoicesAndCasesAreAskedForBranchesOnly) {
  QmsNode* choice = Node("ch");
  QmsNode* inCase = QMS_NODE_FindChildNodeByName(
      QMS_NODE_FindChildNodeByName(choice, nullptr, "ca"), nullptr, "x");
  EXPECT_EQ(nullptr, QMD_MDL_GetChoiceDefaultChildNode(rpc_));
  EXPECT_EQ(nullptr, QMD_MDL_GetChoiceDefaultChildNode(choice)) << "no default";
  QmsNode bare = {};
  bare.kind = QMS_NODE_CHOICE;
  EXPECT_EQ(nullptr, QMD_MDL_GetChoiceDefaultChildNode(&bare)) << "no record";
  EXPECT_EQ(input_, QMD_MDL_GetClosestAncestorNodeNotChoiceCase(inCase));
  EXPECT_EQ(nullptr, QMD_MDL_GetClosestAncestorNodeNotChoiceCase(rpc_));
  EXPECT_EQ(choice, QMD_MDL_GetChoiceCaseParentNode(inCase));
  EXPECT_EQ(nullptr, QMD_MDL_GetChoiceCaseParentNode(rpc_));
  QmsNode alone = {};
  alone.kind = QMS_NODE_CASE;
  QmsNode inAlone = {};
  inAlone.parent = &alone;
  EXPECT_EQ(nullptr, QMD_MDL_GetChoiceCaseParentNode(&inAlone)) << "a case in no choice";
  EXPECT_EQ(nullptr, QMD_MDL_GetClosestAncestorNodeNotChoiceCase(&inAlone));
  EXPECT_EQ(choice->firstChild, BranchOfChoice(inCase, choice));
  EXPECT_EQ(nullptr, BranchOfChoice(Node("a"), choice));
  EXPECT_EQ(nullptr, BranchOfChoice(rpc_, choice));
  EXPECT_EQ(nullptr, BranchOfChoice(&inAlone, choice));
}

TEST_F(DataArguments, AConditionOfATopChoiceHasNoParentToSpeakOf) {
  schema_.Load("t", R"(<choice name="c"><leaf name="l"><type name="string"/></leaf></choice>)");
  Document doc("<l xmlns='urn:t'/>");
  QmsNode* choice = QM_CTX_GetModuleByModName(schema_.ctx(), "t")->dataNodes;
  doc.root()->_private = choice->firstChild;
  uint32_t pass = 0;
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataNodeWhenCond(&aux_, doc.root(), &pass));
  EXPECT_EQ(1u, pass);
}

TEST_F(DataArguments, CommentsBeforeTheElementsOfACaseAreNoData) {
  EXPECT_EQ("8|/m:r/y|Data for more than one case branch of a choice is present.|y|-",
            ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'><x/><!--c--><y/><need/></r>"));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'><!--c--><x/><need/></r>"));
}

TEST_F(DataArguments, AnElementThatIsBoundAlreadyIsLeftAloneWithAllBelowIt) {
  Document doc("<r xmlns='urn:m'><a><nowhere/></a><x/></r>");
  doc.Find("a")->_private = Node("a");
  EXPECT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux_, doc.root()));
  EXPECT_EQ(nullptr, doc.Find("nowhere")->_private);
  EXPECT_NE(nullptr, doc.Find("x")->_private) << "the walk goes on behind it";
  EXPECT_EQ(nullptr, aux_.err);
}

TEST_F(DataArguments, AnElementIsMadeWithoutTextToo) {
  ASSERT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux_, doc_.root()));
  xmlNode* added = QMD_PAS_AddNewChildNodeWithValue(doc_.root(), Node("need"), nullptr);
  ASSERT_NE(nullptr, added);
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><need/></r>", doc_.Dump());
  EXPECT_EQ(nullptr, QMD_PAS_AddNewChildNodeWithValue(nullptr, Node("need"), "v"));
}

// Only the mount points of RFC 8528 have content of another schema.
TEST_F(DataArguments, OtherExtensionsLeaveTheContentOfAContainerToTheModel) {
  QmsExtInst insts[] = {{}, {}, {}, {}};
  insts[0].module = "ietf-yang-schema-mount";
  insts[0].name = "other";
  insts[1].module = "other";
  insts[1].name = "mount-point";
  insts[2].name = "mount-point";
  insts[3].module = "ietf-yang-schema-mount";
  QmsNode node = {};
  node.kind = QMS_NODE_CONTAINER;
  node.extInsts = insts;
  node.extInstCount = 4;
  EXPECT_EQ(0u, QMD_MDL_IsSchemaNodeDefineWithMountPoint(&node));
  EXPECT_EQ(0u, QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(&node));
  insts[1].module = "ietf-yang-schema-mount";
  EXPECT_EQ(1u, QMD_MDL_IsSchemaNodeDefineWithMountPoint(&node));
  node.kind = QMS_NODE_LEAF;
  EXPECT_EQ(0u, QMD_MDL_IsSchemaNodeDefineWithMountPoint(&node));
}

TEST_F(DataArguments, AContainerWithAnExtensionIsValidatedLikeAnyOther) {
  schema_.Load("e", R"(<extension name="mark"/>)");
  schema_.Load("k", R"(<import module="e"><prefix value="e"/></import>
    <rpc name="r"><input><container name="c">
      <e:mark xmlns:e="urn:e"/><leaf name="l"><type name="int8"/></leaf>
    </container></input></rpc>)");
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<r xmlns='urn:k'><c><l>1</l></c></r>"));
  EXPECT_EQ("9|/k:r/c/q|Unexpected element: q.|q|-",
            ValidateRpc(schema_.ctx(), "<r xmlns='urn:k'><c><q/></c></r>"));
}

TEST_F(DataArguments, RecordsKeepTheirFirstMessageAndTakeNoneWithoutFormat) {
  QmErrNode* err = QMD_ERR_NewErrNode(&aux_, 4, 1, QM_ERR_TAG_BAD_ELEMENT, nullptr);
  ASSERT_NE(nullptr, err);
  const char* const none = nullptr;
  QMD_ERR_SetErrorMsg(err, none);
  EXPECT_EQ(nullptr, QM_GetErrorMessage(err));
  QMD_ERR_SetErrorMsg(err, "%s", "first");
  QMD_ERR_SetErrorMsg(err, "%s", "second");
  EXPECT_STREQ("first", QM_GetErrorMessage(err));
  QM_FreeErrNode(err);
}

TEST_F(DataArguments, ARunHasOneRecord) {
  QmErrNode* first = RunError(&aux_, QM_ERR_TAG_BAD_ELEMENT, doc_.Find("a"));
  ASSERT_NE(nullptr, first);
  EXPECT_EQ(first, RunError(&aux_, QM_ERR_TAG_MISSING_ELEMENT, doc_.root()));
  EXPECT_EQ("8|/m:r/a|-|-|-", Describe(first));
  aux_.err = nullptr;
}

TEST_F(DataArguments, AKeyTooLongForThePathLeavesTheRecordWithoutOne) {
  schema_.Load("k", R"(<rpc name="r"><input><list name="l"><key value="k"/>
    <leaf name="k"><type name="string"/></leaf><leaf name="v"><type name="int8"/></leaf>
    </list></input></rpc>)");
  const std::string rpc =
      "<r xmlns='urn:k'><l><k>" + std::string(11000, 'k') + "</k><v>x</v></l></r>";
  EXPECT_EQ("8|-|v has invalid value x.|v|-", ValidateRpc(schema_.ctx(), rpc));
}

TEST_F(DataArguments, APredicateFitsByEachOfItsParts) {
  char room[32] = "";
  QmdPathBuf buf = {room, 4};
  EXPECT_EQ(QM_NO_MEMORY, QMD_ERR_PrintElementNodeAsPredicate(&buf, "", ""))
      << "not even the marks";
  buf.position = 6;
  EXPECT_EQ(QM_NO_MEMORY, QMD_ERR_PrintElementNodeAsPredicate(&buf, "nn", "")) << "not the name";
  EXPECT_EQ(QM_NO_MEMORY, QMD_ERR_PrintElementNodeAsPredicate(&buf, "n", "v")) << "not the value";
  EXPECT_EQ(6u, buf.position);
  EXPECT_EQ(QM_OK, QMD_ERR_PrintElementNodeAsPredicate(&buf, "n", ""));
}

TEST_F(DataArguments, AWalkFromOutsideItsRootEndsAtTheTop) {
  Document other("<o/>");
  EXPECT_EQ(nullptr, NextElementBeyond(other.root(), doc_.Find("a")));
  EXPECT_EQ(nullptr, NextElementBeyond(other.root(), nullptr));
}

}  // namespace
