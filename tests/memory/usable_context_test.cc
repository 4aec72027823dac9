// SPDX-License-Identifier: BSD-3-Clause
// A context that an allocation was refused to is as good as new once memory is back:
// after everything was unloaded it loads the same trees as a fresh one.
#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include <qmodel/qmodel.h>

#include "tests/support/counting_memory.h"

namespace {

using counting_memory::Refuse;

// In an order in which augments and deviations wait for their targets.
const char* const kModules[] = {"st-change", "st-all", "st-base", "st-add"};

uint32_t AddText(const char* text, uint32_t length, void* arg) {
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

QmCtx* NewContext() {
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
  EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, QMODEL_TEST_MODELS "/statements"));
  return ctx;
}

void LoadAll(QmCtx* ctx) {
  for (const char* name : kModules) static_cast<void>(QM_CTX_LoadModule(ctx, name));
}

void UnloadAll(QmCtx* ctx) {
  for (const char* name : kModules) static_cast<void>(QM_CTX_UnloadModule(ctx, name));
}

// Unloads and loads everything (a split module comes back from its unload by itself);
// gives the trees with all features on.
std::string TreesOfReload(QmCtx* ctx) {
  for (const char* name : kModules) EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, name)) << name;
  for (const char* name : kModules) EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name)) << name;
  std::string trees;
  for (const char* name : kModules) {
    EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(QM_CTX_GetModuleByModName(ctx, name), "*")) << name;
  }
  for (const char* name : kModules) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, name);
    EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(module, AddText, &trees)) << name;
  }
  return trees;
}

std::string TreesOfFreshContext() {
  QmCtx* ctx = NewContext();
  std::string trees = TreesOfReload(ctx);
  QM_CTX_Delete(ctx);
  return trees;
}

// Refuses each allocation of `step` in a context of its own, alone and with all later
// ones, and compares what the context loads afterwards.
void RefuseEachOf(void (*prepare)(QmCtx*), void (*step)(QmCtx*)) {
  const std::string expected = TreesOfFreshContext();
  ASSERT_NE(std::string::npos, expected.find("st-add:deeper?   string")) << expected;
  uint64_t injected = 0;
  for (Refuse mode : {Refuse::kOnce, Refuse::kFromThenOn}) {
    for (uint64_t n = 1;; ++n) {
      SCOPED_TRACE(testing::Message() << "allocation " << n << " refused");
      QmCtx* ctx = NewContext();
      prepare(ctx);
      counting_memory::RefuseNth(n, mode);
      step(ctx);
      const uint64_t refused = counting_memory::StopRefusing();
      EXPECT_EQ(expected, TreesOfReload(ctx));
      QM_CTX_Delete(ctx);
      if (refused == 0) break;
      if (testing::Test::HasFailure()) return;
      injected += refused;
    }
  }
  std::cout << injected << " refused allocations, each followed by a whole load\n";
}

TEST(UsableContext, LoadsAllAgainAfterARefusedLoad) {
  RefuseEachOf([](QmCtx*) {}, LoadAll);
}

TEST(UsableContext, LoadsAllAgainAfterARefusedUnload) {
  RefuseEachOf(LoadAll, UnloadAll);
}

}  // namespace
