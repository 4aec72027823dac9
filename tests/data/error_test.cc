// SPDX-License-Identifier: BSD-3-Clause
#include "data/error.h"
#include "data/error_path.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/memory.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"

namespace {

using message_fixture::Document;

// Two modules and a handful of schema nodes, bound to a document by hand.
struct BoundTree {
  explicit BoundTree(const std::string& text) : doc(text) {
    modA.name = "modA";
    modB.name = "modB";
    aux.topNode = doc.root()->parent;
    aux.ctx = schema.ctx();
    list.kind = QMS_NODE_LIST;
    list.module = &modA;
    key.kind = QMS_NODE_LEAF;
    key.module = &modA;
    key.parent = &list;
    key.flags = QMS_NODE_KEY;
    top.kind = QMS_NODE_CONTAINER;
    top.module = &modA;
    foreign.kind = QMS_NODE_LEAF;
    foreign.module = &modB;
    leafList.kind = QMS_NODE_LEAF_LIST;
    leafList.module = &modA;
  }
  void Bind(const std::string& name, QmsNode* schemaNode) { doc.Find(name)->_private = schemaNode; }
  std::string Path(const std::string& name) {
    char* path = QMD_ERR_GeneralErrorPath(&aux, doc.Find(name));
    const std::string text = path == nullptr ? "-" : path;
    g_qmMemFreeFunc(path);
    return text;
  }
  message_fixture::Schema schema;
  Document doc;
  QmsModule modA = {};
  QmsModule modB = {};
  QmsNode top = {};
  QmsNode list = {};
  QmsNode key = {};
  QmsNode foreign = {};
  QmsNode leafList = {};
  QmCheckAux aux = {};
};

QmErrNode* NewError() {
  return QMD_ERR_NewErrNode(nullptr, QM_ERR_TYPE_APPLICATION, QM_ERR_SEVERITY_ERROR,
                            QM_ERR_TAG_OPERATION_FAILED, nullptr);
}

TEST(ErrorRecord, WithoutDataNodeThePathIsASlash) {
  QmErrNode* err = NewError();
  ASSERT_NE(nullptr, err);
  EXPECT_EQ(4u, QM_GetErrorType(err));
  EXPECT_EQ(1u, QM_GetErrorSeverity(err));
  EXPECT_EQ(18u, QM_GetErrorTag(err));
  EXPECT_STREQ("/", QM_GetErrorPath(err));
  EXPECT_EQ(nullptr, QM_GetErrorMessage(err));
  EXPECT_EQ(nullptr, QM_GetErrorAppTag(err));
  EXPECT_EQ(nullptr, QM_GetBadElement(err));
  EXPECT_EQ(nullptr, QM_GetBadAttribute(err));
  QM_FreeErrNode(err);
}

TEST(ErrorRecord, AccessorsAcceptNull) {
  EXPECT_EQ(0u, QM_GetErrorType(nullptr));
  EXPECT_EQ(0u, QM_GetErrorSeverity(nullptr));
  EXPECT_EQ(0u, QM_GetErrorTag(nullptr));
  EXPECT_EQ(nullptr, QM_GetErrorAppTag(nullptr));
  EXPECT_EQ(nullptr, QM_GetErrorPath(nullptr));
  EXPECT_EQ(nullptr, QM_GetErrorMessage(nullptr));
  EXPECT_EQ(nullptr, QM_GetBadElement(nullptr));
  EXPECT_EQ(nullptr, QM_GetBadAttribute(nullptr));
  QM_FreeErrNode(nullptr);
}

TEST(ErrorRecord, SettersAcceptNull) {
  QMD_ERR_SetErrorMsg(nullptr, "x");
  QMD_ERR_SetErrorAppTag(nullptr, "x");
  QMD_ERR_SetBadElement(nullptr, "x");
  QmErrNode* err = NewError();
  QMD_ERR_SetErrorAppTag(err, nullptr);
  QMD_ERR_SetBadElement(err, nullptr);
  EXPECT_EQ(nullptr, QM_GetErrorAppTag(err));
  EXPECT_EQ(nullptr, QM_GetBadElement(err));
  QM_FreeErrNode(err);
}

TEST(ErrorRecord, FirstValueOfEachFieldStays) {
  QmErrNode* err = NewError();
  QMD_ERR_SetErrorMsg(err, "%s %d", "first", 1);
  QMD_ERR_SetErrorMsg(err, "second");
  QMD_ERR_SetErrorAppTag(err, "first");
  QMD_ERR_SetErrorAppTag(err, "second");
  QMD_ERR_SetBadElement(err, "first");
  QMD_ERR_SetBadElement(err, "second");
  EXPECT_STREQ("first 1", QM_GetErrorMessage(err));
  EXPECT_STREQ("first", QM_GetErrorAppTag(err));
  EXPECT_STREQ("first", QM_GetBadElement(err));
  QM_FreeErrNode(err);
}

TEST(ErrorRecord, EmptyMessageSetsNothing) {
  QmErrNode* err = NewError();
  QMD_ERR_SetErrorMsg(err, "%s", "");
  EXPECT_EQ(nullptr, QM_GetErrorMessage(err));
  QMD_ERR_SetErrorMsg(err, "%s", "later");
  EXPECT_STREQ("later", QM_GetErrorMessage(err));
  QM_FreeErrNode(err);
}

TEST(ErrorRecord, MessageIsCutAt10240Characters) {
  for (const size_t length : {size_t{10239}, size_t{10240}, size_t{10241}, size_t{20000}}) {
    SCOPED_TRACE(length);
    QmErrNode* err = NewError();
    QMD_ERR_SetErrorMsg(err, "%s", std::string(length, 'x').c_str());
    ASSERT_NE(nullptr, QM_GetErrorMessage(err));
    EXPECT_EQ(std::min(length, size_t{10240}), std::string(QM_GetErrorMessage(err)).size());
    QM_FreeErrNode(err);
  }
}

TEST(ErrorPath, RootIsOneStepWithModuleName) {
  BoundTree tree("<r/>");
  tree.Bind("r", &tree.top);
  EXPECT_EQ("/modA:r", tree.Path("r"));
}

TEST(ErrorPath, BoundaryItselfHasNoPath) {
  BoundTree tree("<r><c/></r>");
  tree.aux.topNode = tree.doc.root();
  EXPECT_EQ("-", tree.Path("r"));
  EXPECT_EQ("/c", tree.Path("c"));
}

TEST(ErrorPath, SameModuleIsLeftOutAndAnotherModuleIsNamed) {
  BoundTree tree("<r><c><l/></c></r>");
  tree.Bind("r", &tree.top);
  tree.Bind("c", &tree.top);
  tree.Bind("l", &tree.foreign);
  EXPECT_EQ("/modA:r/c", tree.Path("c"));
  EXPECT_EQ("/modA:r/c/modB:l", tree.Path("l"));
}

TEST(ErrorPath, NodeUnderOneWithoutModuleIsQualified) {
  BoundTree tree("<r><c><l/></c></r>");
  tree.Bind("r", &tree.top);
  tree.Bind("l", &tree.top);
  EXPECT_EQ("/modA:r/c/modA:l", tree.Path("l"));
}

TEST(ErrorPath, UnboundElementIsNamedAfterItsNamespace) {
  BoundTree tree("<r xmlns='urn:n'><c/></r>");
  tree.schema.Load("n", "");
  EXPECT_EQ("/n:r/c", tree.Path("c"));
}

TEST(ErrorPath, KeysStandInDocumentOrder) {
  BoundTree tree("<r><entry><name>x</name><other>o</other><id>3</id><l/></entry></r>");
  tree.Bind("r", &tree.top);
  tree.Bind("entry", &tree.list);
  tree.Bind("name", &tree.key);
  tree.Bind("id", &tree.key);
  tree.Bind("l", &tree.foreign);
  EXPECT_EQ("/modA:r/entry[name='x'][id='3']/modB:l", tree.Path("l"));
  EXPECT_EQ("/modA:r/entry[name='x'][id='3']", tree.Path("entry"));
}

TEST(ErrorPath, ValuesAreQuotedByWhatTheyHold) {
  struct Row {
    const char* value;
    const char* path;
  };
  const Row rows[] = {
      {"plain", "/modA:r/v[.='plain']"}, {"", "/modA:r/v[.='']"},
      {"it's", "/modA:r/v[.=\"it's\"]"}, {"\"q\"", "/modA:r/v[.='\"q\"']"},
      {"'\"", "/modA:r/v[.=\"'\"\"]"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.value);
    BoundTree tree(std::string("<r><v>") + row.value + "</v></r>");
    tree.Bind("r", &tree.top);
    tree.Bind("v", &tree.leafList);
    EXPECT_EQ(row.path, tree.Path("v"));
  }
}

TEST(ErrorPath, KeyWithoutTextIsEmpty) {
  BoundTree tree("<r><entry><name/></entry></r>");
  tree.Bind("r", &tree.top);
  tree.Bind("entry", &tree.list);
  tree.Bind("name", &tree.key);
  EXPECT_EQ("/modA:r/entry[name='']", tree.Path("entry"));
}

TEST(ErrorPath, LongestPathHas10239Characters) {
  // "/modA:r" is 7 characters, "/v[.='']" around the value 8.
  for (const size_t length : {size_t{10224}, size_t{10225}}) {
    SCOPED_TRACE(length);
    BoundTree tree("<r><v>" + std::string(length, 'x') + "</v></r>");
    tree.Bind("r", &tree.top);
    tree.Bind("v", &tree.leafList);
    const std::string path = tree.Path("v");
    if (length == 10224) {
      EXPECT_EQ(10239u, path.size());
    } else {
      EXPECT_EQ("-", path);
    }
  }
}

TEST(ErrorPath, PieceThatDoesNotFitIsRefused) {
  char room[16] = "";
  QmdPathBuf buf = {room, 7};
  EXPECT_EQ(QM_NO_MEMORY, QMD_ERR_PrintElementNodeAsPredicate(&buf, "n", "va"));
  EXPECT_EQ(7u, buf.position);
  EXPECT_EQ(QM_INVALID, QMD_ERR_PrintXpathNode(&buf, "abc", "def"));
  EXPECT_EQ(7u, buf.position);
  EXPECT_EQ(QM_OK, QMD_ERR_PrintXpathNode(&buf, "ab", "def"));
  EXPECT_EQ(0u, buf.position);
  buf.position = 7;
  EXPECT_EQ(QM_OK, QMD_ERR_PrintElementNodeAsPredicate(&buf, "n", "v"));
  EXPECT_EQ(0u, buf.position);
}

TEST(ErrorPath, PredicateWithoutATextIsRefusedAndNothingIsWritten) {
  char room[16] = "";
  QmdPathBuf buf = {room, 15};
  EXPECT_EQ(QM_INVALID, QMD_ERR_PrintElementNodeAsPredicate(&buf, "n", nullptr));
  EXPECT_EQ(QM_INVALID, QMD_ERR_PrintElementNodeAsPredicate(&buf, nullptr, "v"));
  EXPECT_EQ(QM_INVALID, QMD_ERR_PrintElementNodeAsPredicate(&buf, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QMD_ERR_PrintElementNodeAsPredicate(nullptr, "n", "v"));
  EXPECT_EQ(15u, buf.position);
  EXPECT_EQ(std::string(sizeof(room), '\0'), std::string(room, sizeof(room)));
}

TEST(ErrorPath, NoValueIsQuotedLikeOneWithoutApostrophe) {
  EXPECT_EQ('\'', QMD_ERR_GetValueBoundaryQuota(nullptr));
  EXPECT_EQ('\'', QMD_ERR_GetValueBoundaryQuota(""));
  EXPECT_EQ('"', QMD_ERR_GetValueBoundaryQuota("it's"));
}

TEST(ErrorPath, LongPathLeavesRecordWithoutPath) {
  BoundTree tree("<r><v>" + std::string(11000, 'x') + "</v></r>");
  tree.Bind("v", &tree.leafList);
  QmErrNode* err = QMD_ERR_NewErrNode(&tree.aux, 4, 1, QM_ERR_TAG_BAD_ELEMENT, tree.doc.Find("v"));
  ASSERT_NE(nullptr, err);
  EXPECT_EQ(nullptr, QM_GetErrorPath(err));
  QM_FreeErrNode(err);
}

BoundTree* g_tree = nullptr;

void MakeRecord(bool refusing) {
  QmErrNode* err =
      QMD_ERR_NewErrNode(&g_tree->aux, 4, 1, QM_ERR_TAG_BAD_ELEMENT, g_tree->doc.Find("v"));
  QMD_ERR_SetErrorMsg(err, "message");
  QMD_ERR_SetBadElement(err, "v");
  if (!refusing) {
    ASSERT_NE(nullptr, err);
    EXPECT_STREQ("/r/modA:v[.='1']", QM_GetErrorPath(err));
    EXPECT_STREQ("message", QM_GetErrorMessage(err));
    EXPECT_STREQ("v", QM_GetBadElement(err));
  }
  QM_FreeErrNode(err);
}

// Six blocks: the record, two for the path, two for the message, one for the
// element. Refused one by one that is 6 failures, refused from one on 12.
TEST(ErrorRecord, EachRefusedAllocationLeavesATextOut) {
  BoundTree tree("<r><v>1</v></r>");
  tree.Bind("v", &tree.leafList);
  g_tree = &tree;
  EXPECT_EQ(18u, counting_memory::FailEachAllocation(MakeRecord));
}

}  // namespace
