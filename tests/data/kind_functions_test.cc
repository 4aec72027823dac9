// SPDX-License-Identifier: BSD-3-Clause
// The completion and the mandatory check of one schema node, asked for by its kind.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <memory>
#include <string>

#include "data/add_defaults.h"
#include "data/default_list.h"
#include "data/mandatory.h"
#include "data/validate.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using yin_text::Leaf;
using yin_text::Rpc;

std::string Default(const std::string& name, const std::string& value) {
  return "<leaf name=\"" + name + "\"><type name=\"string\"/><default value=\"" + value +
         "\"/></leaf>";
}

std::string Needed(const std::string& name) {
  return "<leaf name=\"" + name + "\"><type name=\"string\"/><mandatory value=\"true\"/></leaf>";
}

// An element of an rpc named "r", bound with its list entries as a run binds them.
class OneKind : public testing::Test {
 protected:
  void Bind(const char* text) {
    doc_ = std::make_unique<Document>(text);
    doc_->root()->_private = Node("");
    if (doc_->root()->children != nullptr) {
      doc_->Find("li")->_private = Node("/input/li");
      doc_->Find("k")->_private = Node("/input/li/k");
    }
    QMD_PAS_InitCheckAux(&aux_, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  }
  QmsNode* Node(const std::string& below) {
    QmsNode* node = QM_CTX_GetTargetNode(schema_.ctx(), ("/m:r" + below).c_str(), nullptr);
    EXPECT_NE(nullptr, node) << below;
    return node;
  }
  Schema schema_;
  std::unique_ptr<Document> doc_;
  QmCheckAux aux_ = {};
};

class CompleteOneKind : public OneKind {
 protected:
  void SetUp() override {
    schema_.Load(
        "m",
        Rpc("<container name='c'>" + Default("a", "1") + "</container>" + Default("l", "2") +
            "<leaf-list name='ll'><type name='string'/><default value='x'/>"
            "</leaf-list><list name='li'><key value='k'/>" +
            Leaf("k") + Default("d", "3") +
            "</list><choice name='ch'><default value='x'/><case name='x'>" + Default("cx", "4") +
            "</case><case name='y'>" + Default("cy", "5") + "</case></choice>"));
  }
  // What the element is after the function was called for a schema node.
  std::string Complete(decltype(&QMD_PAS_CompleteSubTree) complete, const std::string& below,
                       const char* text = "<r xmlns='urn:m'/>") {
    Bind(text);
    uint32_t added = 0;
    EXPECT_EQ(QM_OK, complete(&aux_, doc_->root(), Node(below), &added));
    added_ = added != 0;
    QMD_PAS_ClearDefaultNodeList(&aux_, 1);
    return doc_->Dump();
  }
  bool added_ = false;
};

TEST_F(CompleteOneKind, AContainerIsMadeForWhatIsAddedInIt) {
  EXPECT_EQ("<r xmlns=\"urn:m\"><c><a>1</a></c></r>",
            Complete(&QMD_PAS_CompleteDataTreeForContainer, "/input/c"));
  EXPECT_TRUE(added_);
}

TEST_F(CompleteOneKind, ALeafIsAddedWithItsDefault) {
  EXPECT_EQ("<r xmlns=\"urn:m\"><l>2</l></r>",
            Complete(&QMD_PAS_CompleteDataTreeForLeaf, "/input/l"));
  EXPECT_TRUE(added_);
}

TEST_F(CompleteOneKind, ALeafListIsNeverAdded) {
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete(&QMD_PAS_CompleteDataTreeForLeaflist, "/input/ll"));
  EXPECT_FALSE(added_);
}

TEST_F(CompleteOneKind, AListEntryIsNeverMadeButCompleted) {
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete(&QMD_PAS_CompleteDataTreeForList, "/input/li"));
  EXPECT_FALSE(added_);
  EXPECT_EQ("<r xmlns=\"urn:m\"><li><k>1</k><d>3</d></li></r>",
            Complete(&QMD_PAS_CompleteDataTreeForList, "/input/li",
                     "<r xmlns='urn:m'><li><k>1</k></li></r>"));
  EXPECT_TRUE(added_);
}

TEST_F(CompleteOneKind, AChoiceGoesOnWithItsDefaultCase) {
  EXPECT_EQ("<r xmlns=\"urn:m\"><cx>4</cx></r>",
            Complete(&QMD_PAS_CompleteDataTreeForChoice, "/input/ch"));
}

TEST_F(CompleteOneKind, ACaseHandsTheParentOn) {
  EXPECT_EQ("<r xmlns=\"urn:m\"><cy>5</cy></r>",
            Complete(&QMD_PAS_CompleteDataTreeForCase, "/input/ch/y"));
}

TEST_F(CompleteOneKind, AnInputAndAnRpcAreCompletedWhole) {
  constexpr char kWhole[] = "<r xmlns=\"urn:m\"><c><a>1</a></c><l>2</l><cx>4</cx></r>";
  EXPECT_EQ(kWhole, Complete(&QMD_PAS_CompleteDataTreeForInput, "/input"));
  EXPECT_EQ(kWhole, Complete(&QMD_PAS_CompleteDataTreeForRpc, ""));
}

class MandatoryOfOneKind : public OneKind {
 protected:
  void SetUp() override {
    schema_.Load("m", Rpc("<container name='c'>" + Needed("a") + "</container>" + Needed("l") +
                          "<list name='li'><key value='k'/>" + Leaf("k") + Needed("d") +
                          "</list><choice name='ch'><mandatory value='true'/><case name='x'>" +
                          Needed("cx") + "</case></choice>") +
                          "<notification name='n'>" + Needed("na") + "</notification>");
  }
  // The record that the function made; "valid" without one.
  std::string Check(uint32_t (*check)(QmCheckAux*, xmlNode*, QmsNode*), const std::string& below,
                    const char* text = "<r xmlns='urn:m'/>") {
    Bind(text);
    return Verdict(check(&aux_, doc_->root(), Node(below)));
  }
  std::string Verdict(uint32_t ret) {
    QmErrNode* err = aux_.err;
    aux_.err = nullptr;
    EXPECT_EQ(err == nullptr ? uint32_t{QM_OK} : uint32_t{QM_INVALID}, ret);
    return message_fixture::Describe(err);
  }
};

TEST_F(MandatoryOfOneKind, AMissingContainerIsGoneThrough) {
  EXPECT_EQ("7|/m:r/c|Missing element: a.|a|-",
            Check(&QMD_PAS_CheckContainerMandatory, "/input/c"));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", doc_->Dump());
}

TEST_F(MandatoryOfOneKind, ALeafMustBeThere) {
  EXPECT_EQ("7|/m:r|Missing element: l.|l|-",
            Check(&QMD_PAS_CheckDataNodeWithMandatory, "/input/l"));
}

TEST_F(MandatoryOfOneKind, EveryEntryOfAListIsGoneThrough) {
  EXPECT_EQ("valid", Check(&QMD_PAS_CheckListMandatory, "/input/li"));
  EXPECT_EQ(
      "7|/m:r/li[k='1']|Missing element: d.|d|-",
      Check(&QMD_PAS_CheckListMandatory, "/input/li", "<r xmlns='urn:m'><li><k>1</k></li></r>"));
}

TEST_F(MandatoryOfOneKind, AChoiceWithoutACaseIsMissing) {
  EXPECT_EQ("16|/m:r|Mandatory choice ch missing element.|r|missing-choice",
            Check(&QMD_PAS_CheckChoiceMandatory, "/input/ch"));
}

TEST_F(MandatoryOfOneKind, ACaseHandsTheParentOn) {
  EXPECT_EQ("7|/m:r|Missing element: cx.|cx|-", Check(&QMD_PAS_CheckCaseMandatory, "/input/ch/x"));
}

TEST_F(MandatoryOfOneKind, AnInputAndAnRpcAreCheckedInTheOrderOfTheSchema) {
  EXPECT_EQ("7|/m:r/c|Missing element: a.|a|-", Check(&QMD_PAS_CheckInputMandatory, "/input"));
  EXPECT_EQ("7|/m:r/c|Missing element: a.|a|-", Check(&QMD_PAS_CheckRpcMandatory, ""));
}

TEST_F(MandatoryOfOneKind, ANotificationHandsItsElementOn) {
  doc_ = std::make_unique<Document>("<n xmlns='urn:m'/>");
  QMD_PAS_InitCheckAux(&aux_, schema_.ctx(), QMD_MODE_NOTIF, nullptr, nullptr);
  QmsNode* node = QM_CTX_GetTargetNode(schema_.ctx(), "/m:n", nullptr);
  ASSERT_NE(nullptr, node);
  doc_->root()->_private = node;
  EXPECT_EQ("7|/m:n|Missing element: na.|na|-",
            Verdict(QMD_PAS_CheckNotifMandatory(&aux_, doc_->root(), node)));
}

}  // namespace
