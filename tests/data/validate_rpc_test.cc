// SPDX-License-Identifier: BSD-3-Clause
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <libxml/globals.h>
#include <libxml/parser.h>

#include <string>
#include <vector>

#include "context/xml_tree.h"
#include "data/validate.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"

namespace {

using message_fixture::Describe;
using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateRpc;
using testing::ElementsAre;

constexpr char kGeneral[] = "18|/|-|-|-";

constexpr char kRpc[] = R"(<rpc name="r"><input>
  <leaf name="a"><type name="int8"/><default value="1"/></leaf>
  <leaf name="b"><must condition="../a != '2'"/><type name="string"/></leaf>
</input></rpc>)";

class RpcEntry : public testing::Test {
 protected:
  void SetUp() override { schema_.Load("m", kRpc); }
  Schema schema_;
};

TEST_F(RpcEntry, ValidElementKeepsItsDefaultsAndNoBinding) {
  Document doc("<r xmlns='urn:m'><b/></r>");
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><b/></r>", doc.Dump());
  EXPECT_EQ(0u, doc.BoundElements());
}

TEST_F(RpcEntry, StaleBindingsAreCleared) {
  Document doc("<r xmlns='urn:m'><b/></r>");
  doc.root()->_private = doc.doc();
  doc.Find("b")->_private = doc.doc();
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ(0u, doc.BoundElements());
}

TEST_F(RpcEntry, ElementOfALargerTreeIsValidatedAlone) {
  Document doc("<rpc xmlns='urn:nc'><r xmlns='urn:m'><b/></r><r xmlns='urn:m'/><z/></rpc>");
  EXPECT_EQ("valid", Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT,
                                                         doc.Find("r"), nullptr, nullptr)));
  EXPECT_EQ(
      "<rpc xmlns=\"urn:nc\"><r xmlns=\"urn:m\"><a>1</a><b/></r><r xmlns=\"urn:m\"/><z/></rpc>",
      doc.Dump());
  EXPECT_EQ("8|/m:r/a|a has invalid value x.|a|-", [&] {
    Document bad("<rpc xmlns='urn:nc'><r xmlns='urn:m'><a>x</a></r></rpc>");
    return Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT, bad.Find("r"),
                                               nullptr, nullptr));
  }());
}

TEST_F(RpcEntry, TextGivesTheSameVerdict) {
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'><b/></r>"));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'>\n  <b/>\n</r>\n"));
  EXPECT_EQ("18|/m:r/b|b is not satisfied must condition.|b|must-violation",
            ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'><a>2</a><b/></r>"));
}

// Any kind but 2 is a text.
TEST_F(RpcEntry, EveryOtherInputKindIsText) {
  for (const uint32_t kind : {0u, 1u, 3u, 0xFFFFFFFFu}) {
    char text[] = "<r xmlns='urn:m'/>";
    EXPECT_EQ("valid",
              Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), kind, text, nullptr, nullptr)));
  }
}

TEST_F(RpcEntry, NullArgumentsGiveTheGeneralRecord) {
  char text[] = "<r xmlns='urn:m'/>";
  EXPECT_EQ(kGeneral, Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_TEXT, nullptr,
                                                          nullptr, nullptr)));
  EXPECT_EQ(kGeneral, Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT, nullptr,
                                                          nullptr, nullptr)));
  EXPECT_EQ(kGeneral,
            Describe(QM_CTX_ValidateRpcDataTree(nullptr, QM_INPUT_TEXT, text, nullptr, nullptr)));
}

TEST_F(RpcEntry, UnparsableTextGivesTheGeneralRecord) {
  testing::internal::CaptureStderr();
  for (const char* text :
       {"", " ", "<r", "<r xmlns='urn:m'><b></r>", "<!--x-->", "text", "<?xml?>"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(kGeneral, ValidateRpc(schema_.ctx(), text));
  }
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST_F(RpcEntry, RootWithoutNamespaceGivesTheGeneralRecord) {
  EXPECT_EQ(kGeneral, ValidateRpc(schema_.ctx(), "<r/>"));
}

TEST_F(RpcEntry, NodesThatAreNoElementsGiveTheGeneralRecord) {
  Document doc("<r xmlns='urn:m'><!--c--><a>1</a></r>");
  void* inputs[] = {doc.doc(), doc.root()->children, doc.Find("a")->children};
  for (void* input : inputs) {
    EXPECT_EQ(kGeneral, Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT, input,
                                                            nullptr, nullptr)));
  }
  EXPECT_EQ("<r xmlns=\"urn:m\"><!--c--><a>1</a></r>", doc.Dump());
}

TEST_F(RpcEntry, FailingCheckGivesItsOwnRecordAndRemovesDefaults) {
  schema_.Load("k",
               R"(<rpc name="r"><input><leaf name="a"><type name="int8"/><default value="1"/></leaf>
    <leaf name="b"><must condition="../a != '1'"/><type name="string"/></leaf></input></rpc>)");
  Document doc("<r xmlns='urn:k'><b/></r>");
  std::vector<std::string> added;
  EXPECT_EQ("18|/k:r/b|b is not satisfied must condition.|b|must-violation",
            ValidateRpc(schema_.ctx(), doc, &added));
  EXPECT_EQ("<r xmlns=\"urn:k\"><b/></r>", doc.Dump());
  EXPECT_EQ(0u, doc.BoundElements());
  EXPECT_THAT(added, ElementsAre());
}

struct Seen {
  std::string name;
  bool bound = true;
  int line = -1;
};

TEST_F(RpcEntry, CallbackIsCalledForTextInputToo) {
  char text[] = "<r xmlns='urn:m'/>";
  Seen seen;
  const auto note = [](xmlNode* node, void* arg) {
    auto* out = static_cast<Seen*>(arg);
    out->name = std::string(reinterpret_cast<const char*>(node->name));
    out->bound = node->_private != nullptr;
    out->line = node->line;
  };
  EXPECT_EQ("valid",
            Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_TEXT, text, note, &seen)));
  EXPECT_EQ("a", seen.name);
  Document doc("<r xmlns='urn:m'/>");
  Seen element;
  EXPECT_EQ("valid", Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT,
                                                         doc.root(), note, &element)));
  EXPECT_EQ("a", element.name);
  EXPECT_FALSE(element.bound);
  EXPECT_EQ(0, element.line);
}

// A callback may take the element out of the tree.
TEST_F(RpcEntry, CallbackMayFreeTheElement) {
  Document doc("<r xmlns='urn:m'/>");
  const auto drop = [](xmlNode* node, void*) {
    xmlUnlinkNode(node);
    xmlFreeNode(node);
  };
  EXPECT_EQ("valid", Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT,
                                                         doc.root(), drop, nullptr)));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", doc.Dump());
}

TEST_F(RpcEntry, BlankHandlingOfTheThreadIsPutBack) {
  const int before = xmlKeepBlanksDefault(1);
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'> <b/> </r>"));
  EXPECT_EQ(1, xmlKeepBlanksDefault(before));
}

// On line 256 an element would read as added, and go instead of being refused. A
// parsed text has lines only when the client has asked libxml2 for them.
TEST_F(RpcEntry, ParsedTextHasNoLineNumbersToConfuse) {
  schema_.Load("k", R"(<rpc name="r"><input>
    <leaf name="b"><when condition="../nothing"/><type name="string"/></leaf></input></rpc>)");
  const std::string text = "<r xmlns='urn:k'>" + std::string(255, '\n') + "<b/></r>";
  const int before = xmlLineNumbersDefault(0);
  EXPECT_EQ("9|/k:r/b|b is not satisfied when condition.|b|-", ValidateRpc(schema_.ctx(), text));
  xmlLineNumbersDefault(1);
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), text)) << "the element stands on another line";
  xmlLineNumbersDefault(before);
}

// What the header and SECURITY.md tell a client who hands in trees.
TEST_F(RpcEntry, ATreeOfXmlReadMemoryHasLineNumbersThatReadAsMarks) {
  schema_.Load("k", R"(<rpc name="r"><input>
    <leaf name="b"><when condition="../nothing"/><type name="string"/></leaf></input></rpc>)");
  const std::string text = "<r xmlns='urn:k'>" + std::string(255, '\n') + "<b/></r>";
  const int size = static_cast<int>(text.size());
  xmlDoc* withLines = xmlReadMemory(text.data(), size, nullptr, nullptr, XML_PARSE_NOBLANKS);
  xmlNode* root = xmlDocGetRootElement(withLines);
  EXPECT_EQ(256, root->children->line);
  EXPECT_EQ("valid", Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT, root,
                                                         nullptr, nullptr)));
  EXPECT_EQ(nullptr, root->children) << "taken for a default and removed";
  xmlFreeDoc(withLines);
  xmlDoc* without = xmlParseMemory(text.data(), size);
  EXPECT_EQ("9|/k:r/b|b is not satisfied when condition.|b|-",
            Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT,
                                                xmlDocGetRootElement(without), nullptr, nullptr)));
  xmlFreeDoc(without);
}

// Deliberate, and told in the header and SECURITY.md.
TEST_F(RpcEntry, WithoutMemoryForARecordTheAnswerReadsAsValid) {
  char text[] = "garbage";
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  QmErrNode* err = QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_TEXT, text, nullptr, nullptr);
  counting_memory::StopRefusing();
  EXPECT_EQ(nullptr, err);
  EXPECT_EQ(kGeneral, ValidateRpc(schema_.ctx(), text));
}

constexpr const char* kDocumentTypes[] = {"<!DOCTYPE r>", "<!DOCTYPE r SYSTEM 'r.dtd'>",
                                          "<!DOCTYPE r []>", "<!DOCTYPE r [<!ENTITY e 'x'>]>",
                                          "<!DOCTYPE r [<!ATTLIST r b CDATA #IMPLIED>]>"};

TEST_F(RpcEntry, TextWithADocumentTypeGivesTheGeneralRecord) {
  for (const char* declaration : kDocumentTypes) {
    SCOPED_TRACE(declaration);
    EXPECT_EQ(kGeneral,
              ValidateRpc(schema_.ctx(), std::string(declaration) + "<r xmlns='urn:m'/>"));
  }
  EXPECT_EQ(kGeneral, ValidateRpc(schema_.ctx(),
                                  "<!DOCTYPE r [<!ENTITY e 'x'>]>"
                                  "<r xmlns='urn:m'><b>&e;</b></r>"));
}

TEST_F(RpcEntry, ElementOfADocumentWithADocumentTypeGivesTheGeneralRecord) {
  for (const char* declaration : kDocumentTypes) {
    SCOPED_TRACE(declaration);
    Document doc(std::string(declaration) + "<r xmlns='urn:m'><b/></r>");
    doc.root()->_private = &doc;
    std::vector<std::string> added;
    EXPECT_EQ(kGeneral, ValidateRpc(schema_.ctx(), doc, &added));
    EXPECT_THAT(added, ElementsAre());
    EXPECT_EQ("<r xmlns=\"urn:m\"><b/></r>", doc.Dump());
    EXPECT_EQ(0u, doc.BoundElements());
  }
}

TEST_F(RpcEntry, ElementOfADocumentWithAnExternalSubsetGivesTheGeneralRecord) {
  Document doc("<r xmlns='urn:m'><b/></r>");
  ASSERT_NE(nullptr, xmlNewDtd(doc.doc(), XmlChars("r"), nullptr, XmlChars("r.dtd")));
  EXPECT_EQ(nullptr, doc.doc()->intSubset);
  EXPECT_EQ(kGeneral, ValidateRpc(schema_.ctx(), doc));
}

TEST(InitCheckAux, FieldsAreFilledAndTheListIsEmpty) {
  QmCheckAux aux = {};
  int arg = 0;
  QmCtx* ctx = QM_CTX_Create(0);
  QMD_PAS_InitCheckAux(&aux, ctx, 5, nullptr, &arg);
  EXPECT_EQ(ctx, aux.ctx);
  EXPECT_EQ(5u, aux.flags);
  EXPECT_EQ(&arg, aux.callbackArg);
  EXPECT_EQ(&aux.defaultList, aux.defaultList.next);
  EXPECT_EQ(&aux.defaultList, aux.defaultList.prev);
  EXPECT_EQ(QM_INVALID, QMD_PAS_ValidateDataTree(&aux, nullptr));
  QM_CTX_Delete(ctx);
}

}  // namespace
