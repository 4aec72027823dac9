// SPDX-License-Identifier: BSD-3-Clause
// The entry points of loading, unloading and path lookup, with the loader behind them.
#include <gtest/gtest.h>
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "context/load_error.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin_text.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class LoadEntry : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "qmodel_load_XXXXXX").string();
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    dir_ = name;
    MakeContext(0);
  }
  void TearDown() override {
    QM_CTX_Delete(ctx_);
    fs::remove_all(dir_);
  }

  void MakeContext(uint32_t loadFlags) {
    QM_CTX_Delete(ctx_);
    ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(loadFlags));
    ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, dir_.c_str()));
  }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(dir_ + "/" + name) << text;
  }
  uint32_t LoadText(const std::string& text) { return QM_CTX_LoadMemory(ctx_, text.c_str()); }
  QmsModule* Module(const char* name) { return QM_CTX_GetModuleByModName(ctx_, name); }

  static uint32_t Collect(const char* modName, const char* yinFile, const char* message,
                          void* texts) {
    static_cast<Texts*>(texts)->push_back(std::string(modName) + "|" +
                                          (yinFile != nullptr ? yinFile : "NULL") + "|" + message);
    return 0;
  }
  Texts Errors() {
    Texts texts;
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, Collect, &texts));
    return texts;
  }

  std::string dir_;
  QmCtx* ctx_ = nullptr;
};

using LoadModule = LoadEntry;
using LoadMemory = LoadEntry;
using UnloadModuleByName = LoadEntry;
using GetTargetNode = LoadEntry;

const char* const kImportT = "<import module='t'><prefix value='t'/></import>";

std::string AugmentOfT(const std::string& path, const std::string& leaf) {
  return "<augment target-node='" + path + "'><leaf name='" + leaf +
         "'><type name='string'/></leaf></augment>";
}

}  // namespace

TEST_F(LoadModule, NullArgumentsGive22) {
  EXPECT_EQ(QM_INVALID, QM_CTX_LoadModule(nullptr, "m"));
  EXPECT_EQ(QM_INVALID, QM_CTX_LoadModule(ctx_, nullptr));
}

TEST_F(LoadModule, FileInASearchDirectoryIsLoaded) {
  Write("m.yin", yin_text::Module("m"));
  EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
  EXPECT_STREQ("urn:m", QM_MOD_GetModuleNs(Module("m")));
  EXPECT_EQ(Texts{}, Errors());
}

TEST_F(LoadModule, MissingFileGives2AndItsMessage) {
  EXPECT_EQ(QM_NOT_FOUND, QM_CTX_LoadModule(ctx_, "absent"));
  EXPECT_EQ(Texts{"absent|NULL|Failed to find \"absent\" from search directories."}, Errors());
}

TEST_F(LoadModule, FailureWithoutMessageOfItsOwnGetsTheGenericOne) {
  Write("m.yin", yin_text::Module("m"));
  Write("n.yin", yin_text::Module("n"));
  std::string sameNs = yin_text::Module("n");
  for (size_t at = sameNs.find("urn:n'"); at != std::string::npos; at = sameNs.find("urn:n'")) {
    sameNs.replace(at, 5, "urn:m");
  }
  Write("n.yin", sameNs);
  ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
  EXPECT_EQ(QM_FAILED, QM_CTX_LoadModule(ctx_, "n"));
  EXPECT_EQ(Texts{"n|NULL|Failed to load module \"n\"."}, Errors());
  EXPECT_EQ(nullptr, Module("n"));
  EXPECT_EQ(Module("m"), QM_CTX_GetModuleByModNs(ctx_, "urn:m"));
}

TEST_F(LoadModule, WithTheFlagClearImportsAreNotLoaded) {
  Write("a.yin", yin_text::Module("a", kImportT));
  Write("t.yin", yin_text::Module("t"));
  EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "a"));
  EXPECT_EQ(nullptr, Module("t"));
}

TEST_F(LoadModule, WithTheFlagSetImportsAreLoadedTransitively) {
  MakeContext(QM_LOAD_IMPORTS);
  Write("a.yin", yin_text::Module("a", kImportT));
  Write("t.yin", yin_text::Module("t", "<import module='u'><prefix value='u'/></import>"));
  Write("u.yin", yin_text::Module("u"));
  EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "a"));
  EXPECT_NE(nullptr, Module("t"));
  EXPECT_NE(nullptr, Module("u"));
}

TEST_F(LoadModule, WithTheFlagClearAModuleLoadedLaterIsAugmentedByEarlierOnes) {
  Write("a.yin", yin_text::Module("a", kImportT + AugmentOfT("/t:x", "y")));
  Write("t.yin", yin_text::Module("t", "<container name='x'/>"));
  ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "a"));
  ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "t"));
  QmsNode* y = QM_CTX_GetTargetNode(ctx_, "/t:x/a:y", nullptr);
  ASSERT_NE(nullptr, y);
  EXPECT_STREQ("x", QM_NODE_GetNodeName(QM_NODE_GetParentNode(y)));
}

TEST_F(LoadModule, MessagesOfAFailedLoadStayUntilTheNextAttempt) {
  Write("m.yin", "<module");
  EXPECT_EQ(QM_INVALID, QM_CTX_LoadModule(ctx_, "m"));
  EXPECT_EQ((Texts{"m|m.yin|Failed to read content from the yin file.",
                   "m|m.yin|Failed to parse module \"m\" from the yin file."}),
            Errors());
  Write("m.yin", yin_text::Module("m"));
  EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
  EXPECT_EQ(Texts{}, Errors());
}

TEST_F(LoadMemory, NullArgumentsGive22) {
  EXPECT_EQ(QM_INVALID, QM_CTX_LoadMemory(nullptr, "<a/>"));
  EXPECT_EQ(QM_INVALID, QM_CTX_LoadMemory(ctx_, nullptr));
}

TEST_F(LoadMemory, TextThatIsNotWellFormedGives22AndPrintsNothing) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(QM_INVALID, LoadText("<module"));
  EXPECT_EQ(QM_INVALID, LoadText(""));
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST_F(LoadMemory, TextThatIsNoModuleGives1) {
  EXPECT_EQ(QM_FAILED, LoadText("<a/>"));
  EXPECT_EQ(QM_FAILED, LoadText(yin_text::Module("m", "<leaf name='l'/>")));
  EXPECT_EQ(nullptr, Module("m"));
}

TEST_F(LoadMemory, SecondModuleOfANameGives0AndTheFirstStays) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("m", "<container name='first'/>")));
  QmsModule* first = Module("m");
  EXPECT_EQ(QM_OK, LoadText(yin_text::Module("m", "<container name='second'/>")));
  EXPECT_EQ(first, Module("m"));
  EXPECT_NE(nullptr, QM_CTX_GetTargetNode(ctx_, "/m:first", nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx_, "/m:second", nullptr));
  EXPECT_EQ(QM_OK, LoadText(yin_text::Module("m", "<container name='first'/>")));
}

TEST_F(LoadMemory, SameNamespaceIsRefusedAndNothingStaysRecorded) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("m")));
  EXPECT_EQ(QM_FAILED, LoadText(yin_text::ModuleOf("urn:m", "n")));
  EXPECT_EQ(nullptr, Module("n"));
  EXPECT_EQ(Module("m"), QM_CTX_GetModuleByModNs(ctx_, "urn:m"));
  EXPECT_EQ(Texts{}, Errors());
}

TEST_F(LoadMemory, ImportsAreNotLoadedEvenWithTheFlagSet) {
  MakeContext(QM_LOAD_IMPORTS);
  Write("t.yin", yin_text::Module("t"));
  EXPECT_EQ(QM_OK, LoadText(yin_text::Module("a", kImportT)));
  EXPECT_EQ(nullptr, Module("t"));
}

TEST_F(LoadMemory, ModuleIsAugmentedByThoseLoadedEarlier) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("a", kImportT + AugmentOfT("/t:x", "y"))));
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("t", "<container name='x'/>")));
  QmsNode* y = QM_CTX_GetTargetNode(ctx_, "/t:x/a:y", nullptr);
  ASSERT_NE(nullptr, y);
  EXPECT_STREQ("x", QM_NODE_GetNodeName(QM_NODE_GetParentNode(y)));
}

TEST_F(LoadMemory, MessagesCarryNoFile) {
  EXPECT_EQ(QM_FAILED, LoadText(yin_text::Module("m", "<leaf name='l'/>")));
  const Texts errors = Errors();
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ("m|NULL|leaf \"l\" must define with type statement.", errors[0]);
}

TEST_F(LoadMemory, ClientsParserSettingsStay) {
  const int before = xmlKeepBlanksDefault(1);
  EXPECT_EQ(QM_OK, LoadText(yin_text::Module("m")));
  EXPECT_EQ(1, xmlKeepBlanksDefault(before));
}

TEST_F(LoadMemory, MissingMemoryGivesAStatusAndLeavesNothingBehind) {
  static QmCtx* s_ctx = nullptr;
  static std::string s_text;
  s_text = yin_text::Module("m",
                            "<container name='c'><leaf name='l'><type name='string'/></leaf>"
                            "</container>");
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    s_ctx = QM_CTX_Create(0);
    if (s_ctx == nullptr) {
      EXPECT_TRUE(refusing);
      return;
    }
    const uint32_t ret = QM_CTX_LoadMemory(s_ctx, s_text.c_str());
    EXPECT_TRUE(ret == QM_OK || refusing) << ret;
    EXPECT_EQ(ret == QM_OK, QM_CTX_GetModuleByModName(s_ctx, "m") != nullptr);
    QM_CTX_Delete(s_ctx);
  });
  EXPECT_GT(injected, 20u);
}

TEST_F(UnloadModuleByName, NullContextOrNameGives0) {
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(nullptr, "m"));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, nullptr));
}

TEST_F(UnloadModuleByName, ModuleIsGoneAfterwards) {
  Write("m.yin", yin_text::Module("m"));
  ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "m"));
  EXPECT_EQ(nullptr, Module("m"));
}

TEST_F(UnloadModuleByName, NameThatIsNotLoadedForgetsItsErrors) {
  EXPECT_EQ(QM_NOT_FOUND, QM_CTX_LoadModule(ctx_, "absent"));
  ASSERT_NE(Texts{}, Errors());
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "absent"));
  EXPECT_EQ(Texts{}, Errors());
}

TEST_F(GetTargetNode, FindsNodesByTheirSchemaPath) {
  ASSERT_EQ(QM_OK,
            LoadText(yin_text::Module("t",
                                      "<container name='x'><leaf name='l'><type name='string'/>"
                                      "</leaf></container>")));
  EXPECT_STREQ("x", QM_NODE_GetNodeName(QM_CTX_GetTargetNode(ctx_, "/t:x", nullptr)));
  EXPECT_STREQ("l", QM_NODE_GetNodeName(QM_CTX_GetTargetNode(ctx_, "/t:x/l", nullptr)));
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx_, "/t:x/t:l", nullptr))
      << "a module name stands only where the module changes";
}

TEST_F(GetTargetNode, FindsNodesOfAnAugmentAndTellsTheAugment) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("t", "<container name='x'/>")));
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("a", kImportT + AugmentOfT("/t:x", "y"))));
  QmsNode* augment = nullptr;
  QmsNode* y = QM_CTX_GetTargetNode(ctx_, "/t:x/a:y", &augment);
  ASSERT_NE(nullptr, y);
  EXPECT_STREQ("y", QM_NODE_GetNodeName(y));
  ASSERT_NE(nullptr, augment);
  EXPECT_EQ(static_cast<uint32_t>(QMS_NODE_AUGMENT), QM_NODE_GetNodeType(augment));
}

TEST_F(GetTargetNode, AugmentIsEmptiedFirst) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("t", "<container name='x'/>")));
  QmsNode* const x = QM_CTX_GetTargetNode(ctx_, "/t:x", nullptr);
  ASSERT_NE(nullptr, x);
  QmsNode* augment = x;
  EXPECT_EQ(x, QM_CTX_GetTargetNode(ctx_, "/t:x", &augment));
  EXPECT_EQ(nullptr, augment);
  augment = x;
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx_, nullptr, &augment));
  EXPECT_EQ(nullptr, augment);
}

TEST_F(GetTargetNode, GivesNullForWhatItCannotFind) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("t", "<container name='x'/>")));
  for (const char* path : {"/t:absent", "/absent:x", "/t:x/t:y", "/t:x/absent:y", "", "/", "x"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx_, path, nullptr));
  }
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx_, nullptr, nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(nullptr, "/t:x", nullptr));
}

TEST_F(GetTargetNode, ModuleNamesHaveAtMost64Characters) {
  const std::string longest(64, 'm');
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module(longest, "<container name='x'/>")));
  EXPECT_NE(nullptr, QM_CTX_GetTargetNode(ctx_, ("/" + longest + ":x").c_str(), nullptr));
  const std::string tooLong = longest + "m";
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module(tooLong, "<container name='x'/>")));
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(ctx_, ("/" + tooLong + ":x").c_str(), nullptr));
}

TEST_F(GetTargetNode, MissingMemoryGivesNullAndLeaksNothing) {
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("t", "<container name='x'/>")));
  ASSERT_EQ(QM_OK, LoadText(yin_text::Module("a", kImportT + AugmentOfT("/t:x", "y"))));
  static QmCtx* s_ctx = nullptr;
  s_ctx = ctx_;
  counting_memory::FailEachAllocation([](bool refusing) {
    EXPECT_TRUE(QM_CTX_GetTargetNode(s_ctx, "/t:x/a:y", nullptr) != nullptr || refusing);
  });
}
