// SPDX-License-Identifier: BSD-3-Clause
#include "yin/reader.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include "context/xml_tree.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"

TEST(ReadYinFileToXmlDoc, BlanksBetweenElementsAreDropped) {
  yin::Folder folder;
  folder.Write("m.yin", "<module>\n  <a/>\n  <b/>\n</module>\n");
  xmlDoc* doc = QMS_LOADER_ReadYinFileToXmlDoc(folder.Path("m.yin").c_str());
  ASSERT_NE(nullptr, doc);
  const xmlNode* root = xmlDocGetRootElement(doc);
  EXPECT_STREQ("module", XmlText(root->name));
  EXPECT_STREQ("a", XmlText(root->children->name));
  EXPECT_STREQ("b", XmlText(root->children->next->name));
  EXPECT_EQ(nullptr, root->children->next->next);
  xmlFreeDoc(doc);
}

TEST(ReadYinFileToXmlDoc, ClientsBlankHandlingStaysAsItWas) {
  yin::Folder folder;
  folder.Write("m.yin", "<module/>");
  const int before = xmlKeepBlanksDefault(1);
  xmlFreeDoc(QMS_LOADER_ReadYinFileToXmlDoc(folder.Path("m.yin").c_str()));
  EXPECT_EQ(1, xmlKeepBlanksDefault(before));
}

TEST(ReadYinFileToXmlDoc, UnreadableAndMalformedFilesGiveNullInSilence) {
  yin::Folder folder;
  folder.Write("empty.yin", "");
  folder.Write("cut.yin", "<module><a>");
  folder.Write("text.yin", "module m {}");
  folder.MakeDir("dir.yin");
  testing::internal::CaptureStderr();
  for (const char* file : {"missing.yin", "empty.yin", "cut.yin", "text.yin", "dir.yin"}) {
    SCOPED_TRACE(file);
    EXPECT_EQ(nullptr, QMS_LOADER_ReadYinFileToXmlDoc(folder.Path(file).c_str()));
  }
  EXPECT_EQ(nullptr, QMS_LOADER_ReadYinFileToXmlDoc(nullptr));
  EXPECT_EQ(nullptr, QMS_LOADER_ReadFileContentAsDoc(nullptr));
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

static yin::Folder* g_folder;

TEST(ReadYinFileToXmlDoc, SurvivesRefusedMemory) {
  yin::Folder folder;
  folder.Write("m.yin", "<module/>");
  g_folder = &folder;
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    xmlDoc* doc = QMS_LOADER_ReadYinFileToXmlDoc(g_folder->Path("m.yin").c_str());
    if (!refusing) {
      EXPECT_NE(nullptr, doc);
    }
    if (doc != nullptr) xmlFreeDoc(doc);
  });
  EXPECT_GE(injected, 2u);
}
