// SPDX-License-Identifier: BSD-3-Clause
#include "context/context.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/memory.h"
#include "schema/module_registry.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin_text.h"

namespace {

class Context : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(0)); }
  void TearDown() override { QM_CTX_Delete(ctx_); }

  QmCtx* ctx_ = nullptr;
};

using CurYinFile = Context;
using HookSetters = Context;

}  // namespace

TEST(Create, KeepsTheLoadFlags) {
  QmCtx* ctx = QM_CTX_Create(0x80000009u);
  ASSERT_NE(nullptr, ctx);
  EXPECT_EQ(0x80000009u, ctx->loadFlags);
  QM_CTX_Delete(ctx);
}

TEST(Create, NewContextIsEmpty) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_NE(nullptr, ctx);
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx, "m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModNs(ctx, "urn:m"));
  EXPECT_EQ(0u, ctx->searchDirCount);
  EXPECT_STREQ("", QM_CTX_GetCurYinFile(ctx));
  EXPECT_NE(nullptr, ctx->errMng);
  EXPECT_EQ(nullptr, ctx->pridataFreeFunc);
  QM_CTX_Delete(ctx);
}

TEST(Delete, NullIsIgnored) {
  QM_CTX_Delete(nullptr);
}

TEST(Create, MissingMemoryGivesNullOrAContextWithoutErrorRecords) {
  // Blocks in order: the context, the dictionary's table, the error manager.
  for (uint64_t n : {1u, 2u}) {
    counting_memory::RefuseNth(n, counting_memory::Refuse::kFromThenOn);
    EXPECT_EQ(nullptr, QM_CTX_Create(0));
    EXPECT_LE(1u, counting_memory::StopRefusing());
  }
  counting_memory::RefuseNth(3, counting_memory::Refuse::kOnce);
  QmCtx* ctx = QM_CTX_Create(0);
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  ASSERT_NE(nullptr, ctx);
  EXPECT_EQ(nullptr, ctx->errMng);
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin_text::Module("m").c_str()));
  QM_CTX_Delete(ctx);
}

TEST_F(CurYinFile, IsTheNameAfterTheLastSlash) {
  QM_CTX_SetCurYinFile(ctx_, "/a/b/m.yin");
  EXPECT_STREQ("m.yin", QM_CTX_GetCurYinFile(ctx_));
  QM_CTX_SetCurYinFile(ctx_, "n.yin");
  EXPECT_STREQ("n.yin", QM_CTX_GetCurYinFile(ctx_));
  QM_CTX_SetCurYinFile(ctx_, "/a/");
  EXPECT_STREQ("", QM_CTX_GetCurYinFile(ctx_));
}

TEST_F(CurYinFile, NameThatDoesNotFitLeavesItEmpty) {
  QM_CTX_SetCurYinFile(ctx_, "m.yin");
  QM_CTX_SetCurYinFile(ctx_, ("/d/" + std::string(255, 'x')).c_str());
  EXPECT_EQ(std::string(255, 'x'), QM_CTX_GetCurYinFile(ctx_));
  QM_CTX_SetCurYinFile(ctx_, ("/d/" + std::string(256, 'x')).c_str());
  EXPECT_STREQ("", QM_CTX_GetCurYinFile(ctx_));
}

TEST_F(CurYinFile, NullArgumentsChangeNothing) {
  QM_CTX_SetCurYinFile(ctx_, "m.yin");
  QM_CTX_SetCurYinFile(ctx_, nullptr);
  EXPECT_STREQ("m.yin", QM_CTX_GetCurYinFile(ctx_));
  QM_CTX_SetCurYinFile(nullptr, "n.yin");
  QM_CTX_ClearCurYinFile(nullptr);
  EXPECT_EQ(nullptr, QM_CTX_GetCurYinFile(nullptr));
}

TEST_F(CurYinFile, ClearEmptiesIt) {
  QM_CTX_SetCurYinFile(ctx_, "m.yin");
  QM_CTX_ClearCurYinFile(ctx_);
  EXPECT_STREQ("", QM_CTX_GetCurYinFile(ctx_));
}

TEST_F(HookSetters, StoreAndRemoveTheHook) {
  const QmPridataFreeFunc freeFunc = [](QmsNode*, void*) {};
  const QmFirstAugChildRelinkFunc relinkFunc = [](QmCtx*, QmsNode*) {};
  const QmBeforeDeviateNotSupportFunc removeFunc = [](QmCtx*, QmsNode*, const char*,
                                                      const char*) -> uint32_t { return 0; };
  const QmBeforeDeviateExtInstFunc extInstFunc = [](QmCtx*, QmsNode*) -> uint32_t { return 0; };
  const QmReloadModuleCbFunc reloadFunc = [](QmCtx*, const char*) {};
  const QmExtInstFilterCbFunc filterFunc = [](const char*, const char*) -> uint32_t { return 0; };
  QM_CTX_SetPridataFreeFunc(ctx_, freeFunc);
  QM_CTX_SetFirstAugChildRelinkFunc(ctx_, relinkFunc);
  QM_CTX_SetBeforeDeviateNotSupportFunc(ctx_, removeFunc);
  QM_CTX_SetBeforeDeviateExtInstFunc(ctx_, extInstFunc);
  QM_CTX_SetReloadModuleCbFunc(ctx_, reloadFunc);
  QM_CTX_SetExtInstFilterCbFunc(ctx_, filterFunc);
  EXPECT_EQ(freeFunc, ctx_->pridataFreeFunc);
  EXPECT_EQ(relinkFunc, ctx_->firstAugChildRelinkFunc);
  EXPECT_EQ(removeFunc, ctx_->beforeDeviateNotSupportFunc);
  EXPECT_EQ(extInstFunc, ctx_->beforeDeviateExtInstFunc);
  EXPECT_EQ(reloadFunc, ctx_->reloadModuleCbFunc);
  EXPECT_EQ(filterFunc, ctx_->extInstFilterCbFunc);
  QM_CTX_SetPridataFreeFunc(ctx_, nullptr);
  QM_CTX_SetFirstAugChildRelinkFunc(ctx_, nullptr);
  QM_CTX_SetBeforeDeviateNotSupportFunc(ctx_, nullptr);
  QM_CTX_SetBeforeDeviateExtInstFunc(ctx_, nullptr);
  QM_CTX_SetReloadModuleCbFunc(ctx_, nullptr);
  QM_CTX_SetExtInstFilterCbFunc(ctx_, nullptr);
  EXPECT_EQ(nullptr, ctx_->pridataFreeFunc);
  EXPECT_EQ(nullptr, ctx_->firstAugChildRelinkFunc);
  EXPECT_EQ(nullptr, ctx_->beforeDeviateNotSupportFunc);
  EXPECT_EQ(nullptr, ctx_->beforeDeviateExtInstFunc);
  EXPECT_EQ(nullptr, ctx_->reloadModuleCbFunc);
  EXPECT_EQ(nullptr, ctx_->extInstFilterCbFunc);
}

TEST_F(HookSetters, NullContextDoesNothing) {
  QM_CTX_SetPridataFreeFunc(nullptr, nullptr);
  QM_CTX_SetFirstAugChildRelinkFunc(nullptr, nullptr);
  QM_CTX_SetBeforeDeviateNotSupportFunc(nullptr, nullptr);
  QM_CTX_SetBeforeDeviateExtInstFunc(nullptr, nullptr);
  QM_CTX_SetReloadModuleCbFunc(nullptr, nullptr);
  QM_CTX_SetExtInstFilterCbFunc(nullptr, nullptr);
}
