// SPDX-License-Identifier: BSD-3-Clause
// What the context's parts answer when an argument is missing or has no room.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstdint>

#include "context/array.h"
#include "context/dict.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "context/relation.h"
#include "context/string.h"
#include "context/text_scan.h"
#include "tests/support/counting_memory.h"
#include "tests/support/null_arguments.h"

namespace {

using counting_memory::Refuse;
using null_arguments::ExpectEachGives;

class ContextArguments : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(0)); }
  void TearDown() override { QM_CTX_Delete(ctx_); }
  QmCtx* ctx_ = nullptr;
};

TEST_F(ContextArguments, IntegersNeedATextAndAPlace) {
  int64_t value = 7;
  uint64_t whole = 7;
  ExpectEachGives(QM_INVALID, QM_UTL_ReadInputStrAsSignedInteger, "1", nullptr, 0, &value);
  ExpectEachGives(QM_INVALID, QM_UTL_ReadInputStrAsUnsignedInteger, "1", nullptr, 0, &whole);
  EXPECT_EQ(7, value);
  EXPECT_EQ(7u, whole);
}

TEST_F(ContextArguments, MessagesNeedAModuleAndAText) {
  ExpectEachGives(QM_INVALID, QM_CTX_AddErrorMsgToMod, ctx_->errMng, "m", "text");
  EXPECT_EQ(nullptr, QM_CTX_GetErrNodeByModName(ctx_, "m"));
  QmErrModNode* errNode = QMS_MOD_CreateErrNode(&ctx_->dict, "m");
  ASSERT_NE(nullptr, errNode);
  ExpectEachGives(QM_INVALID, QMS_MOD_RecordErrorInfo, ctx_, errNode, "text");
  EXPECT_EQ(0, errNode->errorCount);
  QMS_MOD_FreeErrModNode(&ctx_->dict, errNode);
}

TEST_F(ContextArguments, RelationsNeedAContext) {
  EXPECT_EQ(QM_INVALID, QM_CTX_InitModRelationTree(nullptr));
  QM_CTX_DeInitModRelationTree(nullptr);
  QmCtxModRelTbl* tbl = QM_CTX_AddModRelationTbl(ctx_, "t");
  ASSERT_NE(nullptr, tbl);
  QM_CTX_DeleteModRelationTbl(nullptr, tbl);
  QM_CTX_DeleteModRelationTbl(ctx_, nullptr);
  EXPECT_EQ(tbl, QM_CTX_FindModRelationTbl(ctx_, "t"));
}

// A name that the dictionary does not hold yet needs two blocks of its own.
TEST_F(ContextArguments, ARelationIsWholeOrNotThere) {
  QmCtxModRelTbl* tbl = QM_CTX_AddModRelationTbl(ctx_, "t");
  ASSERT_NE(nullptr, tbl);
  for (uint64_t n = 1; n <= 3; ++n) {
    SCOPED_TRACE(n);
    const size_t before = counting_memory::LiveBlocks();
    counting_memory::RefuseNth(n, Refuse::kOnce);
    EXPECT_EQ(nullptr, QM_CTX_AddModRelationItem(tbl, QM_RELATION_AUGMENT, "source"));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(before, counting_memory::LiveBlocks());
  }
  EXPECT_NE(nullptr, QM_CTX_AddModRelationItem(tbl, QM_RELATION_AUGMENT, "source"));
}

TEST_F(ContextArguments, NoCharacterIsFoundInNoText) {
  EXPECT_EQ(nullptr, QM_UTL_Strnchr(nullptr, 'a', 1));
}

TEST_F(ContextArguments, OutputsWithoutRoomAreLeftAlone) {
  char name[8] = "x";
  EXPECT_NE(QM_OK, QM_UTL_GetXPathNextNodeName("abc", nullptr, 8));
  EXPECT_NE(QM_OK, QM_UTL_GetXPathNextNodeName("abc", name, 0));
  EXPECT_STREQ("x", name);
  EXPECT_EQ(QM_OK, QM_UTL_GetXPathNextNodeName("a_b", name, sizeof name));
  EXPECT_STREQ("a_b", name);
}

TEST_F(ContextArguments, ArraysOfRecordsGrowUpToTheCounterAndNoFurther) {
  uint64_t* array = nullptr;
  ASSERT_EQ(QM_OK, NewArrayOf(&array, 1));
  EXPECT_EQ(QM_INVALID, GrowByOne(&array, kMaxArrayCount));
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, GrowByOne(&array, 1));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  ASSERT_NE(nullptr, array);
  EXPECT_EQ(QM_OK, GrowByOne(&array, 1));
  g_qmMemFreeFunc(array);
}

}  // namespace
