// SPDX-License-Identifier: BSD-3-Clause
// Registration of the memory hooks. A program of its own, since the other test
// programs register counting hooks before their first test and a process takes
// hooks only once.
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstdlib>

#include <qmodel/qmodel.h>

#include "context/memory.h"

namespace {

size_t g_mallocs = 0;
size_t g_frees = 0;

void* CountingMalloc(size_t size) {
  ++g_mallocs;
  return std::malloc(size);
}
void CountingFree(void* block) {
  if (block != nullptr) ++g_frees;
  std::free(block);
}
void* OtherMalloc(size_t size) {
  return std::malloc(size);
}
void* OtherRealloc(void* block, size_t size) {
  return std::realloc(block, size);
}
void OtherFree(void* block) {
  std::free(block);
}

// Each test starts as a fresh process does, also when all run in one.
class MemRegisterCallBack : public testing::Test {
 protected:
  void SetUp() override {
    g_qmMemRegistered = 0;
    g_qmMemMallocFunc = std::malloc;
    g_qmMemReAllocFunc = std::realloc;
    g_qmMemFreeFunc = std::free;
    g_mallocs = 0;
    g_frees = 0;
  }
};

}  // namespace

TEST_F(MemRegisterCallBack, DefaultsAreTheCLibrarysFunctions) {
  EXPECT_EQ(g_qmMemMallocFunc, static_cast<QmMallocFunc>(std::malloc));
  EXPECT_EQ(g_qmMemReAllocFunc, static_cast<QmReallocFunc>(std::realloc));
  EXPECT_EQ(g_qmMemFreeFunc, static_cast<QmFreeFunc>(std::free));
}

TEST_F(MemRegisterCallBack, NullHookIsRefusedWith22AndLeavesTheRegistrationOpen) {
  EXPECT_EQ(QM_INVALID, QM_MemRegisterCallBack(nullptr, OtherRealloc, OtherFree));
  EXPECT_EQ(QM_INVALID, QM_MemRegisterCallBack(OtherMalloc, nullptr, OtherFree));
  EXPECT_EQ(QM_INVALID, QM_MemRegisterCallBack(OtherMalloc, OtherRealloc, nullptr));
  EXPECT_EQ(0u, g_qmMemRegistered);
  EXPECT_EQ(g_qmMemMallocFunc, static_cast<QmMallocFunc>(std::malloc));
  EXPECT_EQ(QM_OK, QM_MemRegisterCallBack(OtherMalloc, OtherRealloc, OtherFree));
}

TEST_F(MemRegisterCallBack, FirstRegistrationTakesAllThreeHooks) {
  EXPECT_EQ(QM_OK, QM_MemRegisterCallBack(OtherMalloc, OtherRealloc, OtherFree));
  EXPECT_EQ(1u, g_qmMemRegistered);
  EXPECT_EQ(g_qmMemMallocFunc, OtherMalloc);
  EXPECT_EQ(g_qmMemReAllocFunc, OtherRealloc);
  EXPECT_EQ(g_qmMemFreeFunc, OtherFree);
}

TEST_F(MemRegisterCallBack, SecondRegistrationGives17AndKeepsTheFirstHooks) {
  ASSERT_EQ(QM_OK, QM_MemRegisterCallBack(CountingMalloc, OtherRealloc, CountingFree));
  EXPECT_EQ(QM_EXISTS, QM_MemRegisterCallBack(OtherMalloc, std::realloc, OtherFree));
  EXPECT_EQ(g_qmMemMallocFunc, CountingMalloc);
  EXPECT_EQ(g_qmMemReAllocFunc, OtherRealloc);
  EXPECT_EQ(g_qmMemFreeFunc, CountingFree);
}

TEST_F(MemRegisterCallBack, NullHookGives22AlsoAfterARegistration) {
  ASSERT_EQ(QM_OK, QM_MemRegisterCallBack(OtherMalloc, OtherRealloc, OtherFree));
  EXPECT_EQ(QM_INVALID, QM_MemRegisterCallBack(nullptr, OtherRealloc, OtherFree));
}

TEST_F(MemRegisterCallBack, MutexThatCannotBeLockedGives37AndRegistersNothing) {
  // An error-checking mutex refuses a second lock by its owner.
  pthread_mutexattr_t attr;
  ASSERT_EQ(0, pthread_mutexattr_init(&attr));
  ASSERT_EQ(0, pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_ERRORCHECK));
  ASSERT_EQ(0, pthread_mutex_init(&g_qmMemMutex, &attr));
  ASSERT_EQ(0, pthread_mutex_lock(&g_qmMemMutex));
  EXPECT_EQ(QM_LOCK_FAILED, QM_MemRegisterCallBack(OtherMalloc, OtherRealloc, OtherFree));
  EXPECT_EQ(0u, g_qmMemRegistered);
  EXPECT_EQ(g_qmMemMallocFunc, static_cast<QmMallocFunc>(std::malloc));
  EXPECT_EQ(0, pthread_mutex_unlock(&g_qmMemMutex));
  EXPECT_EQ(QM_OK, QM_MemRegisterCallBack(OtherMalloc, OtherRealloc, OtherFree));
  pthread_mutexattr_destroy(&attr);
}

TEST_F(MemRegisterCallBack, ContextIsMadeAndFreedThroughTheRegisteredHooks) {
  ASSERT_EQ(QM_OK, QM_MemRegisterCallBack(CountingMalloc, OtherRealloc, CountingFree));
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_NE(nullptr, ctx);
  // The context, the dictionary's table and the error manager.
  EXPECT_EQ(3u, g_mallocs);
  QM_CTX_Delete(ctx);
  EXPECT_EQ(3u, g_frees);
}
