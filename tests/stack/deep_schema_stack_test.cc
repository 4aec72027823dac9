// SPDX-License-Identifier: BSD-3-Clause
// A schema that is 1,700 levels deep, by augments of a module onto itself, and whatever
// walks it: loads, requests, notifications, prints, deviations, merges and unloads.
#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <qmodel/error.h>

#include "tests/stack/deep_model.h"

namespace {

using deep_model::kDeepest;
using deep_model::LoadErrors;
using deep_model::OnSmallStack;
using deep_model::Verdict;

constexpr char kLeafWithDefault[] =
    "<leaf name='x'><type name='string'/><default value='d'/></leaf>";
constexpr char kMandatoryLeaf[] =
    "<leaf name='x'><type name='string'/><mandatory value='true'/></leaf>";
constexpr char kEmptyRequest[] = "<r xmlns='urn:m'/>";
constexpr char kLeafWithCondition[] =
    "<leaf name='x'><when condition='../x'/><must condition='not(../y)'/><type name='string'/>"
    "<default value='d'/></leaf>";

uint32_t CountText(const char*, uint32_t length, void* total) {
  *static_cast<size_t*>(total) += length;
  return 0;
}

uint32_t CountNode(QmsNode*, uint32_t travType, void* total) {
  if (travType != QMS_TRAV_PARENT) ++*static_cast<size_t*>(total);
  return 0;
}

class DeepSchema : public testing::Test {
 protected:
  void TearDown() override { QM_CTX_Delete(ctx_); }
  void Load(const std::string& inner) {
    ASSERT_EQ(QM_OK,
              QM_CTX_LoadMemory(ctx_, deep_model::SelfAugmentedModule(kDeepest, inner).c_str()));
    ASSERT_EQ("", LoadErrors(ctx_));
  }
  QmCtx* ctx_ = QM_CTX_Create(QM_LOAD_IMPORTS);
};

TEST_F(DeepSchema, IsLoadedWalkedPrintedAndUnloaded) {
  size_t nodes = 0;
  size_t printed = 0;
  OnSmallStack([&] {
    Load(kLeafWithCondition);
    QmsModule* module = QM_CTX_GetModuleByModName(ctx_, "m");
    EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(QM_CTX_GetTargetNode(ctx_, "/m:r", nullptr), CountNode,
                                             &nodes));
    // A line does not fit beyond some thousand columns; the output ends there.
    EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(module, CountText, &printed));
    EXPECT_EQ(QM_FAILED, QM_NODE_PrintNodesTree(QM_CTX_GetTargetNode(ctx_, "/m:r", nullptr),
                                                CountText, &printed));
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "m"));
  });
  EXPECT_EQ(kDeepest + 3, nodes);
  EXPECT_LT(100000u, printed);
}

TEST_F(DeepSchema, IsDeletedWithItsContext) {
  OnSmallStack([&] {
    Load(kLeafWithDefault);
    QM_CTX_Delete(ctx_);
    ctx_ = nullptr;
  });
}

TEST_F(DeepSchema, AnEmptyRequestIsCompletedToItsEnd) {
  std::string verdict;
  size_t added = 0;
  Load(kLeafWithDefault);
  OnSmallStack([&] {
    verdict = Verdict(QM_CTX_ValidateRpcDataTree(
        ctx_, QM_INPUT_TEXT, const_cast<char*>(kEmptyRequest),
        [](xmlNode* node, void* total) {
          for (; node != nullptr; node = node->children) ++*static_cast<size_t*>(total);
        },
        &added));
  });
  EXPECT_EQ("valid", verdict);
  EXPECT_EQ(kDeepest + 2, added);  // the containers, the leaf and its text
}

TEST_F(DeepSchema, AConditionTakesAllDefaultsAwayAgain) {
  std::string verdict;
  Load("<leaf name='x'><when condition='../y'/><type name='string'/><default value='d'/></leaf>");
  OnSmallStack([&] {
    verdict = Verdict(QM_CTX_ValidateRpcDataTree(
        ctx_, QM_INPUT_TEXT, const_cast<char*>(kEmptyRequest), nullptr, nullptr));
  });
  EXPECT_EQ("valid", verdict);
}

TEST_F(DeepSchema, AMissingElementIsFoundAtItsEnd) {
  std::string verdict;
  Load(kMandatoryLeaf);
  OnSmallStack([&] {
    verdict = Verdict(QM_CTX_ValidateRpcDataTree(
        ctx_, QM_INPUT_TEXT, const_cast<char*>(kEmptyRequest), nullptr, nullptr));
  });
  EXPECT_EQ("Missing element: x.", verdict);
}

xmlDoc* DeepMessage(const char* root, size_t depth) {
  const auto* names = reinterpret_cast<const xmlChar*>("c");
  xmlDoc* doc = xmlNewDoc(nullptr);
  xmlNode* node = xmlNewDocNode(doc, nullptr, reinterpret_cast<const xmlChar*>(root), nullptr);
  xmlDocSetRootElement(doc, node);
  xmlSetNs(node, xmlNewNs(node, reinterpret_cast<const xmlChar*>("urn:m"), nullptr));
  for (size_t i = 0; i < depth; ++i) node = xmlNewChild(node, nullptr, names, nullptr);
  return doc;
}

TEST_F(DeepSchema, AMessageAsDeepAsTheSchemaIsValidated) {
  std::string verdict;
  Load(kLeafWithCondition);
  xmlDoc* doc = DeepMessage("r", kDeepest);
  OnSmallStack([&] {
    verdict = Verdict(QM_CTX_ValidateRpcDataTree(ctx_, QM_INPUT_ELEMENT, xmlDocGetRootElement(doc),
                                                 nullptr, nullptr));
  });
  xmlFreeDoc(doc);
  EXPECT_EQ("valid", verdict);
}

TEST_F(DeepSchema, AMessageThatIsDeeperIsRefused) {
  std::string verdict;
  Load(kLeafWithCondition);
  xmlDoc* doc = DeepMessage("r", 100000);
  OnSmallStack([&] {
    verdict = Verdict(QM_CTX_ValidateRpcDataTree(ctx_, QM_INPUT_ELEMENT, xmlDocGetRootElement(doc),
                                                 nullptr, nullptr));
  });
  xmlFreeDoc(doc);
  EXPECT_EQ("Unexpected element: c.", verdict);
}

TEST_F(DeepSchema, ANotificationAsDeepAsATextIsWrittenAgain) {
  std::string written;
  uint32_t status = 1;
  Load(kMandatoryLeaf);
  const std::string text = "<n xmlns='urn:m'>" +
                           deep_model::Nested(deep_model::kTextLevels - 1, "<c>", "</c>", "") +
                           "</n>";
  OnSmallStack([&] {
    status = QM_CTX_ValidateNotifDataTree(
        ctx_, text.c_str(),
        [](const char* dumped, void* out) {
          *static_cast<std::string*>(out) = dumped;
          return uint32_t{0};
        },
        &written);
  });
  EXPECT_EQ(QM_INVALID, status);  // the leaf at the end of the schema is missing
  EXPECT_EQ("", written);
}

TEST_F(DeepSchema, IsDeviatedAtItsEndAndGivenBack) {
  constexpr size_t kDepth = 1500;
  const std::string path = deep_model::PathInInput(kDepth);
  const std::string deviation =
      "<deviation target-node='" + path + "'><deviate value='add'><must condition='x'/></deviate>" +
      "</deviation><deviation target-node='" + deep_model::PathInNotification(3) +
      "'><deviate value='not-supported'/></deviation>";
  Load(kLeafWithDefault);
  OnSmallStack([&] {
    EXPECT_EQ(QM_OK,
              QM_CTX_LoadMemory(ctx_, deep_model::Module("d",
                                                         "<import module='m'><prefix value='m'"
                                                         "/></import>" +
                                                             deviation)
                                          .c_str()));
    EXPECT_EQ("", LoadErrors(ctx_));
    EXPECT_NE(nullptr, QM_CTX_GetTargetNode(ctx_, path.c_str(), nullptr));
    EXPECT_EQ(nullptr,
              QM_CTX_GetTargetNode(ctx_, deep_model::PathInNotification(3).c_str(), nullptr));
    static_cast<void>(QM_CTX_UnloadModule(ctx_, "d"));
  });
}

TEST(DeepFiles, AreMergedReloadedAndDeleted) {
  const deep_model::Folder folder;
  const std::string path = deep_model::PathInInput(1500);
  const std::string part = deep_model::SelfAugmentedModule(kDeepest, kLeafWithCondition);
  folder.Write("m@@a.yin", part);
  folder.Write("m@@b.yin", part);
  folder.Write("d.yin",
               deep_model::Module("d",
                                  "<import module='m'><prefix value='m'/></import><deviation "
                                  "target-node='" +
                                      path + "'><deviate value='not-supported'/></deviation>"));
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, folder.Dir()));
  OnSmallStack([&] {
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, "m"));
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, "d"));
    EXPECT_EQ("", LoadErrors(ctx));
    EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx, path.c_str(), nullptr));
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "d"));
    EXPECT_NE(nullptr, QM_CTX_GetTargetNode(ctx, path.c_str(), nullptr));
    QM_CTX_Delete(ctx);
  });
}

}  // namespace
