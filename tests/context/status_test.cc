// SPDX-License-Identifier: BSD-3-Clause
// Every status has one number for ever: clients compare with them, and tests write the
// names. Here, and only here, each name stands beside its number.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace {

struct PinnedStatus {
  uint32_t status;
  uint32_t number;
};

constexpr PinnedStatus kPinned[] = {
    {QM_OK, 0},
    {QM_FAILED, 1},
    {QM_NOT_FOUND, 2},
    {QM_NO_MEMORY, 12},
    {QM_EXISTS, 17},
    {QM_NOT_A_DIRECTORY, 20},
    {QM_INVALID, 22},
    {QM_LOCK_FAILED, 37},
    {QM_NAME_TOO_LONG, 126},
    {QM_BELOW_SEGMENT, 4097},
    {QM_VALUE_NO_BODY, 28672},
    {QM_VALUE_BAD_DERIVED, 28673},
    {QM_VALUE_BAD_IDENTITY, 28674},
    {QM_VALUE_BAD_BITS, 28675},
    {QM_VALUE_BAD_ENUM, 28676},
    {QM_VALUE_BAD_LENGTH, 28677},
    {QM_VALUE_BAD_LEAFREF, 28678},
    {QM_VALUE_BAD_PATTERN, 28679},
    {QM_VALUE_BAD_RANGE, 28680},
    {QM_VALUE_BAD_UNION, 28681},
    {QM_VALUE_BAD_BOOLEAN, 28682},
    {QM_VALUE_BAD_BINARY, 28683},
    {QM_VALUE_BAD_EMPTY, 28684},
    {QM_XPATH_FALSE, 28928},
    {QM_XPATH_BAD_TOKEN, 28929},
    {QM_XPATH_BAD_PAREN, 28930},
    {QM_XPATH_NO_EVALUATOR, 28931},
    {QM_XPATH_BAD_OPERATION, 28932},
    {QM_XPATH_BAD_PRIMARY, 28933},
    {QM_XPATH_BAD_DOUBLE_SLASH, 28934},
    {QM_XPATH_BAD_STEP, 28935},
    {QM_XPATH_UNKNOWN_FUNCTION, 28936},
    {QM_XPATH_BAD_ARGUMENTS, 28937},
    {QM_XPATH_UNBOUND_NODE, 28938},
    {QM_XPATH_NOT_OPENED, 28939},
    {QM_XPATH_NOT_CLOSED, 28940},
    {QM_XPATH_BAD_PREDICATE, 28941},
};

#define QM_TEST_COUNT_(name, number, text) +1
constexpr size_t kStatusCount = 0 QM_STATUS_LIST(QM_TEST_COUNT_);
#undef QM_TEST_COUNT_

TEST(Status, EveryNameKeepsItsNumber) {
  for (const PinnedStatus& row : kPinned) EXPECT_EQ(row.number, row.status);
  EXPECT_EQ(UINT32_C(4294967295), QM_MINUS_ONE);
}

TEST(Status, NoneOfThemIsLeftOut) {
  EXPECT_EQ(kStatusCount, std::size(kPinned));
}

}  // namespace
