// SPDX-License-Identifier: BSD-3-Clause
#include "context/load_error.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "context/context.h"
#include "context/memory.h"
#include "tests/support/counting_memory.h"

namespace {

using Texts = std::vector<std::string>;

class LoadErrors : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(0)); }
  void TearDown() override { QM_CTX_Delete(ctx_); }

  static uint32_t Collect(const char* modName, const char* yinFile, const char* message,
                          void* texts) {
    static_cast<Texts*>(texts)->push_back(std::string(modName) + "|" +
                                          (yinFile != nullptr ? yinFile : "NULL") + "|" + message);
    return 0;
  }
  Texts Recorded() {
    Texts texts;
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, Collect, &texts));
    return texts;
  }

  QmCtx* ctx_ = nullptr;
};

using AddModError = LoadErrors;
using GetErrNode = LoadErrors;
using DeleteErrNode = LoadErrors;
using ScanLoadFail = LoadErrors;
using ErrNode = LoadErrors;

}  // namespace

TEST_F(AddModError, FormatsTheMessageAndKeepsTheCurrentFile) {
  QM_CTX_SetCurYinFile(ctx_, "/d/m.yin");
  QM_CTX_AddModError(ctx_, "m", "Failed to parse \"%s\" at %d.", "leaf", 7);
  QM_CTX_ClearCurYinFile(ctx_);
  QM_CTX_AddModError(ctx_, "m", "second");
  EXPECT_EQ((Texts{"m|m.yin|Failed to parse \"leaf\" at 7.", "m|NULL|second"}), Recorded());
}

TEST_F(AddModError, ThirdAndLaterMessagesOfAModuleAreDropped) {
  for (int i = 1; i <= 5; ++i) QM_CTX_AddModError(ctx_, "m", "%d", i);
  QM_CTX_AddModError(ctx_, "n", "other");
  EXPECT_EQ((Texts{"m|NULL|1", "m|NULL|2", "n|NULL|other"}), Recorded());
}

TEST_F(AddModError, MessageIsCutAt511Characters) {
  const std::string text(511, 'x');
  QM_CTX_AddModError(ctx_, "m", "%s", text.c_str());
  QM_CTX_AddModError(ctx_, "m", "%sy", text.c_str());
  EXPECT_EQ((Texts{"m|NULL|" + text, "m|NULL|" + text}), Recorded());
}

TEST_F(AddModError, NothingIsRecordedForNullArgumentsOrAFailedFormat) {
  QM_CTX_AddModError(nullptr, "m", "x");
  QM_CTX_AddModError(ctx_, nullptr, "x");
  const char* noFormat = nullptr;
  QM_CTX_AddModError(ctx_, "m", noFormat, 1);
  const wchar_t unprintable[] = {0x20AC, 0};
  QM_CTX_AddModError(ctx_, "m", "%ls", unprintable);
  EXPECT_EQ(Texts{}, Recorded());
}

TEST_F(AddModError, TextIsNoFormatOfItsOwn) {
  QM_CTX_AddModError(ctx_, "m", "%s", "%n%s%d");
  EXPECT_EQ(Texts{"m|NULL|%n%s%d"}, Recorded());
}

TEST_F(AddModError, ContextWithoutManagerRecordsNothing) {
  QM_CTX_DestroyErrMng(ctx_->errMng);
  ctx_->errMng = nullptr;
  QM_CTX_AddModError(ctx_, "m", "x");
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, "m"));
  QM_CTX_DeleteErrNodeByModName(ctx_->errMng, "m");
  EXPECT_EQ(Texts{}, Recorded());
  QM_CTX_DestroyErrMng(nullptr);
  QM_CTX_DestoryErrMngTree(nullptr);
}

TEST_F(AddModError, MissingMemoryLosesTheMessageAndNothingElse) {
  QM_CTX_AddModError(ctx_, "m", "first");
  QM_CTX_SetCurYinFile(ctx_, "m.yin");
  // A second message: the copy of the file's name, then that of the message.
  for (uint64_t n : {1u, 2u}) {
    SCOPED_TRACE(n);
    const size_t before = counting_memory::LiveBlocks();
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    QM_CTX_AddModError(ctx_, "m", "second");
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(before, counting_memory::LiveBlocks());
    EXPECT_EQ(Texts{"m|NULL|first"}, Recorded());
  }
  // A new module: its node, the entry and text of its name, the array.
  for (uint64_t n : {1u, 2u, 3u, 4u}) {
    SCOPED_TRACE(n);
    const size_t before = counting_memory::LiveBlocks();
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    QM_CTX_AddModError(ctx_, "n", "lost");
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(before, counting_memory::LiveBlocks());
    EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, "n"));
  }
}

TEST_F(GetErrNode, IsFoundByName) {
  QM_CTX_AddModError(ctx_, "m", "x");
  const std::string name = "m";
  ASSERT_NE(nullptr, QM_CTX_GetErrNodeByModName(ctx_, name.c_str()));
  EXPECT_STREQ("m", QM_CTX_GetErrNodeByModName(ctx_, "m")->modName);
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, "n"));
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(nullptr, "m"));
}

TEST_F(DeleteErrNode, RemovesOneModulesRecords) {
  QM_CTX_AddModError(ctx_, "m", "x");
  QM_CTX_AddModError(ctx_, "n", "y");
  const size_t before = counting_memory::LiveBlocks();
  QM_CTX_DeleteErrNodeByModName(ctx_->errMng, "m");
  EXPECT_EQ(Texts{"n|NULL|y"}, Recorded());
  EXPECT_EQ(before - 5, counting_memory::LiveBlocks())
      << "node, array, message, and the entry and text of the name";
  QM_CTX_DeleteErrNodeByModName(ctx_->errMng, "m");
  QM_CTX_DeleteErrNodeByModName(ctx_->errMng, nullptr);
  QM_CTX_DeleteErrNodeByModName(nullptr, "n");
  EXPECT_EQ(Texts{"n|NULL|y"}, Recorded());
}

TEST_F(ScanLoadFail, GoesByAscendingModuleName) {
  for (const char* name : {"mm", "b", "a", "m"}) {
    QM_CTX_AddModError(ctx_, name, "1");
    QM_CTX_AddModError(ctx_, name, "2");
  }
  EXPECT_EQ((Texts{"a|NULL|1", "a|NULL|2", "b|NULL|1", "b|NULL|2", "m|NULL|1", "m|NULL|2",
                   "mm|NULL|1", "mm|NULL|2"}),
            Recorded());
}

TEST_F(ScanLoadFail, FirstNonZeroResultStopsItAndIsReturned) {
  QM_CTX_AddModError(ctx_, "a", "1");
  QM_CTX_AddModError(ctx_, "b", "1");
  int calls = 0;
  const QmLoadFailScanFunc stop = [](const char*, const char*, const char*,
                                     void* counter) -> uint32_t {
    ++*static_cast<int*>(counter);
    return 77;
  };
  EXPECT_EQ(77u, QM_CTX_ScanAllSchemaLoadFail(ctx_, stop, &calls));
  EXPECT_EQ(1, calls);
}

TEST_F(ScanLoadFail, NullContextOrCallbackGives0) {
  QM_CTX_AddModError(ctx_, "a", "1");
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(nullptr, Collect, nullptr));
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, nullptr, nullptr));
}

TEST_F(ScanLoadFail, CallbackThatRecordsReadsOrDeletesDoesNotHang) {
  QM_CTX_AddModError(ctx_, "a", "1");
  const QmLoadFailScanFunc intrude = [](const char*, const char*, const char*,
                                        void* arg) -> uint32_t {
    auto* ctx = static_cast<QmCtx*>(arg);
    QM_CTX_AddModError(ctx, "z", "from a scan");
    EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx, "a"));
    QM_CTX_DeleteErrNodeByModName(ctx->errMng, "a");
    return 0;
  };
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, intrude, ctx_));
  EXPECT_EQ(Texts{"a|NULL|1"}, Recorded());
  QM_CTX_AddModError(ctx_, "z", "after the scan");
  EXPECT_EQ((Texts{"a|NULL|1", "z|NULL|after the scan"}), Recorded());
}

TEST_F(ScanLoadFail, LoadThatFailsInsideACallbackDoesNotHang) {
  QM_CTX_AddModError(ctx_, "a", "1");
  const QmLoadFailScanFunc load = [](const char*, const char*, const char*, void* arg) -> uint32_t {
    return QM_CTX_LoadModule(static_cast<QmCtx*>(arg), "absent") == 0 ? 1 : 0;
  };
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, load, ctx_));
  EXPECT_EQ(Texts{"a|NULL|1"}, Recorded());
}

TEST_F(ScanLoadFail, ScansOfTwoContextsMayBeNested) {
  struct Both {
    QmCtx* outer;
    QmCtx* inner;
  } both = {ctx_, QM_CTX_Create(0)};
  ASSERT_NE(nullptr, both.inner);
  QM_CTX_AddModError(both.outer, "a", "1");
  QM_CTX_AddModError(both.inner, "b", "1");
  const QmLoadFailScanFunc inInner = [](const char*, const char*, const char*,
                                        void* arg) -> uint32_t {
    // Both contexts are being scanned by this thread now.
    QM_CTX_AddModError(static_cast<Both*>(arg)->outer, "z", "x");
    QM_CTX_AddModError(static_cast<Both*>(arg)->inner, "z", "x");
    return 0;
  };
  static QmLoadFailScanFunc s_inInner;
  s_inInner = inInner;
  const QmLoadFailScanFunc inOuter = [](const char*, const char*, const char*,
                                        void* arg) -> uint32_t {
    auto* contexts = static_cast<Both*>(arg);
    const uint32_t ret = QM_CTX_ScanAllSchemaLoadFail(contexts->inner, s_inInner, contexts);
    // The inner one is free again, the outer one is not.
    QM_CTX_AddModError(contexts->inner, "c", "2");
    QM_CTX_AddModError(contexts->outer, "z", "x");
    return ret;
  };
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(both.outer, inOuter, &both));
  EXPECT_EQ(Texts{"a|NULL|1"}, Recorded());
  Texts inner;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(both.inner, Collect, &inner));
  EXPECT_EQ((Texts{"b|NULL|1", "c|NULL|2"}), inner);
  QM_CTX_Delete(both.inner);
}

TEST_F(ScanLoadFail, LockThatCannotBeTakenRecordsAndReadsNothing) {
  QM_CTX_AddModError(ctx_, "a", "1");
  // The thread that holds the write lock is refused any further lock.
  ASSERT_EQ(0, pthread_rwlock_wrlock(&ctx_->errMng->lock));
  QM_CTX_AddModError(ctx_, "b", "x");
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, "a"));
  QM_CTX_DeleteErrNodeByModName(ctx_->errMng, "a");
  Texts texts;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, Collect, &texts));
  EXPECT_EQ(Texts{}, texts);
  ASSERT_EQ(0, pthread_rwlock_unlock(&ctx_->errMng->lock));
  EXPECT_EQ(Texts{"a|NULL|1"}, Recorded());
}

TEST_F(ScanLoadFail, OneThreadMayScanWhileAnotherRecords) {
  std::atomic<bool> done{false};
  std::thread scanner([this, &done] {
    while (!done.load()) {
      Texts texts;
      EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, Collect, &texts));
      for (const std::string& text : texts) EXPECT_NE(std::string::npos, text.find("|message"));
    }
  });
  for (int i = 0; i < 500; ++i) {
    const std::string name = "m" + std::to_string(i % 10);
    QM_CTX_AddModError(ctx_, name.c_str(), "message");
    if (i % 7 == 0) QM_CTX_DeleteErrNodeByModName(ctx_->errMng, name.c_str());
  }
  done.store(true);
  scanner.join();
}

TEST_F(ErrNode, InitGives22ForNullAnd12WithoutMemory) {
  EXPECT_EQ(QM_INVALID, QM_CTX_InitErrMng(nullptr));
  QmCtx other = {};
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QM_CTX_InitErrMng(&other));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, other.errMng);
}

TEST_F(ErrNode, IsMadeWithRoomForTwo) {
  QmErrModNode* node = QMS_MOD_CreateErrNode(&ctx_->dict, "m");
  ASSERT_NE(nullptr, node);
  EXPECT_STREQ("m", node->modName);
  EXPECT_EQ(0u, node->errorCount);
  EXPECT_EQ(2u, node->errorCapacity);
  EXPECT_EQ(QM_OK, QMS_MOD_RecordErrorInfo(ctx_, node, "1"));
  EXPECT_EQ(QM_OK, QMS_MOD_RecordErrorInfo(ctx_, node, "2"));
  EXPECT_EQ(QM_OK, QMS_MOD_RecordErrorInfo(ctx_, node, "3")) << "dropped, and no failure";
  EXPECT_EQ(2u, node->errorCount);
  Texts texts;
  EXPECT_EQ(QM_OK, QMS_MOD_ScanModAllLoadFail(node, Collect, &texts));
  EXPECT_EQ((Texts{"m|NULL|1", "m|NULL|2"}), texts);
  QMS_MOD_FreeErrModNode(&ctx_->dict, node);
}

TEST_F(ErrNode, FailedCopyGives12AndLeavesTheCount) {
  QmErrModNode* node = QMS_MOD_CreateErrNode(&ctx_->dict, "m");
  ASSERT_NE(nullptr, node);
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_MOD_RecordErrorInfo(ctx_, node, "lost"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(0u, node->errorCount);
  EXPECT_EQ(nullptr, node->errs[0].message);
  EXPECT_EQ(QM_OK, QMS_MOD_RecordErrorInfo(ctx_, node, "kept"));
  EXPECT_EQ(1u, node->errorCount);
  QMS_MOD_FreeErrModNode(&ctx_->dict, node);
}

TEST_F(ErrNode, ScanOfNothingGives0) {
  QmErrModNode* node = QMS_MOD_CreateErrNode(&ctx_->dict, "m");
  ASSERT_NE(nullptr, node);
  EXPECT_EQ(QM_OK, QMS_MOD_ScanModAllLoadFail(node, Collect, nullptr)) << "no entries";
  EXPECT_EQ(QM_OK, QMS_MOD_ScanModAllLoadFail(node, nullptr, nullptr));
  EXPECT_EQ(QM_OK, QMS_MOD_ScanModAllLoadFail(nullptr, Collect, nullptr));
  QMS_MOD_FreeErrModNode(&ctx_->dict, node);
  QMS_MOD_FreeErrModNode(&ctx_->dict, nullptr);
}

TEST(CompareModuleName, OrdersAsTextDoes) {
  EXPECT_LT(QM_CTX_CompareModuleName("a", "b"), 0);
  EXPECT_EQ(QM_CTX_CompareModuleName("a", "a"), 0);
  EXPECT_GT(QM_CTX_CompareModuleName("b", "a"), 0);
}
