// SPDX-License-Identifier: BSD-3-Clause
// Names of numbers: each table whole, and nothing beyond its ends.
#include <gtest/gtest.h>

#include <string>

#include <qmodel/qmodel.h>

#include "context/memory.h"

namespace {

// The names of 1, 2, 3 and so on up to the first number without one; 0 has none.
std::string All(const char* (*get)(uint32_t)) {
  EXPECT_EQ(nullptr, get(0));
  EXPECT_EQ(nullptr, get(UINT32_MAX));
  std::string all;
  uint32_t number = 1;
  for (; get(number) != nullptr; ++number) all += get(number) + std::string(" ");
  EXPECT_EQ(nullptr, get(number + 1));
  return all;
}

TEST(Names, OfErrorRecordsAreThoseOfRfc6241) {
  EXPECT_EQ("transport rpc protocol application ", All(QM_AGENT_GetTypeName));
  EXPECT_EQ("error warning ", All(QM_AGENT_GetSeverityName));
  EXPECT_EQ(
      "in-use invalid-value too-big missing-attribute bad-attribute unknown-attribute "
      "missing-element bad-element unknown-element unknown-namespace access-denied lock-denied "
      "resource-denied rollback-failed data-exists data-missing operation-not-supported "
      "operation-failed partial-operation malformed-message ",
      All(QM_AGENT_GetTagName));
}

TEST(Names, OfKindsAndTypesAreThoseOfRfc7950) {
  EXPECT_EQ(
      "container leaf leaf-list list choice case anydata anyxml action rpc notification input "
      "output augment ",
      All(QM_AGENT_GetKindName));
  EXPECT_EQ(
      "binary bits boolean decimal64 empty enumeration identityref instance-identifier int8 int16 "
      "int32 int64 leafref string uint8 uint16 uint32 uint64 union ",
      All(QM_AGENT_GetBaseTypeName));
}

TEST(Names, EveryStatusHasItsText) {
#define QM_ROW_(name, number, text) EXPECT_STREQ(text, QM_AGENT_GetStatusText(number));
  QM_STATUS_LIST(QM_ROW_)
#undef QM_ROW_
  EXPECT_NE(nullptr, QM_AGENT_GetStatusText(QM_MINUS_ONE));
  EXPECT_EQ(nullptr, QM_AGENT_GetStatusText(3));
}

TEST(Names, EveryReasonHasASentence) {
  for (uint32_t reason = QM_AGENT_REASON_NONE; reason <= QM_AGENT_REASON_NOT_XML; ++reason) {
    const char* text = QM_AGENT_GetReasonText(reason);
    ASSERT_NE(nullptr, text) << reason;
    EXPECT_EQ('.', std::string(text).back());
  }
  EXPECT_EQ(nullptr, QM_AGENT_GetReasonText(QM_AGENT_REASON_NOT_XML + 1));
}

TEST(Names, TheVersionIsThatOfTheHeaders) {
  EXPECT_STREQ(QM_VERSION_STRING, QM_AGENT_GetVersion());
}

TEST(Free, TakesABlockOfTheHooksAndNull) {
  QM_AGENT_Free(nullptr);
  QM_AGENT_Free(AllocZeroed(16));  // the leak check of the test counts it
}

}  // namespace
