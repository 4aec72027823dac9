// SPDX-License-Identifier: BSD-3-Clause
#include "xpath/object.h"
#include "tests/support/status_name.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cmath>
#include <limits>
#include <string>

#include "context/guard.h"
#include "context/xml_tree.h"
#include "tests/support/condition_tree.h"
#include "tests/support/counting_memory.h"
#include "xpath/compare.h"
#include "xpath/convert.h"

namespace {

using Stack = QmOwn<RTK_DeleteStack>;
using Object = QmOwn<QM_XPATH_FreeObject>;

TEST(ObjectStack, GivesBackWhatWasPushed) {
  Stack stack(RTK_CreateStack());
  xmlNode node = {};
  EXPECT_EQ(QM_OK, QM_XPATH_PushNodeToObjStack(stack.Get(), &node));
  EXPECT_EQ(QM_OK, QM_XPATH_PushStringToObjStack(stack.Get(), "abcd", 3));
  EXPECT_EQ(nullptr, QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_NODE));
  EXPECT_EQ(2u, RTK_GetSize(stack.Get()));
  Object text(QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_STRING));
  ASSERT_TRUE(text);
  EXPECT_STREQ("abc", text->value.string);
  Object popped(QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_NODE));
  ASSERT_TRUE(popped);
  EXPECT_EQ(&node, popped->value.node);
  EXPECT_EQ(nullptr, QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_NODE));
}

TEST(ObjectStack, AnEmptyStringIsAString) {
  Stack stack(RTK_CreateStack());
  EXPECT_EQ(QM_OK, QM_XPATH_PushStringToObjStack(stack.Get(), "abc", 0));
  Object text(QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_STRING));
  ASSERT_TRUE(text);
  EXPECT_STREQ("", text->value.string);
}

TEST(ObjectStack, OnlyANodeOnTopIsReplaced) {
  Stack stack(RTK_CreateStack());
  xmlNode node = {};
  EXPECT_EQ(QM_INVALID, QM_XPATH_ReplaceNodeToTopElemInObjStack(stack.Get(), &node));
  EXPECT_EQ(QM_OK, QM_XPATH_PushNodeToObjStack(stack.Get(), nullptr));
  EXPECT_EQ(nullptr, QM_XPATH_GetStackTopObjNode(stack.Get()));
  EXPECT_EQ(QM_OK, QM_XPATH_ReplaceNodeToTopElemInObjStack(stack.Get(), &node));
  EXPECT_EQ(&node, QM_XPATH_GetStackTopObjNode(stack.Get()));
  EXPECT_EQ(QM_OK, QM_XPATH_PushBooleanToObjStack(stack.Get(), 1));
  EXPECT_EQ(nullptr, QM_XPATH_GetStackTopObjNode(stack.Get()));
  EXPECT_EQ(QM_INVALID, QM_XPATH_ReplaceNodeToTopElemInObjStack(stack.Get(), nullptr));
  Object boolean(QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_BOOLEAN));
  Object replaced(QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_NODE));
  EXPECT_TRUE(boolean && replaced);
}

TEST(ObjectStack, AFailedPushLeavesNothing) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    Stack stack(RTK_CreateStack());
    if (!stack) return;
    const uint32_t ret = QM_XPATH_PushStringToObjStack(stack.Get(), "abc", 3);
    Object text(QM_XPATH_GetArgumentByType(stack.Get(), QM_XPATH_OBJECT_STRING));
    EXPECT_EQ(ret == QM_OK, static_cast<bool>(text));
    EXPECT_TRUE(ret == QM_OK || (refusing && ret == QM_NO_MEMORY)) << ret;
  });
  EXPECT_EQ(8u, injected);  // stack, text, object and slots, in both modes
}

TEST(FreeObject, NullIsAccepted) {
  QM_XPATH_FreeObject(nullptr);
}

// An operand of each type.
struct Operand {
  explicit Operand(double number) : Operand() {
    EXPECT_EQ(QM_OK, QM_XPATH_PushNumberToObjStack(stack.Get(), number));
  }
  explicit Operand(bool boolean) : Operand() {
    EXPECT_EQ(QM_OK, QM_XPATH_PushBooleanToObjStack(stack.Get(), boolean ? 1 : 0));
  }
  explicit Operand(const std::string& text) : Operand() {
    EXPECT_EQ(QM_OK, QM_XPATH_PushStringToObjStack(stack.Get(), text.c_str(),
                                                   static_cast<uint32_t>(text.size())));
  }
  explicit Operand(xmlNode* node) : Operand() {
    EXPECT_EQ(QM_OK, QM_XPATH_PushNodeToObjStack(stack.Get(), node));
  }
  ~Operand() { QM_XPATH_FreeObject(static_cast<QmXpathObject*>(RTK_Pop(stack.Get()))); }
  QmXpathObject* Get() { return static_cast<QmXpathObject*>(RTK_Peep(stack.Get())); }

 private:
  Operand() = default;
  Stack stack{RTK_CreateStack()};
};

double NumberOf(Operand&& operand) {
  EXPECT_EQ(QM_OK, QM_XPATH_FuncNumberInner(operand.Get()));
  EXPECT_EQ(QM_XPATH_OBJECT_NUMBER, operand.Get()->type);
  return operand.Get()->value.number;
}

uint32_t BooleanOf(Operand&& operand) {
  EXPECT_EQ(QM_OK, QM_XPATH_FuncBooleanInner(operand.Get()));
  EXPECT_EQ(QM_XPATH_OBJECT_BOOLEAN, operand.Get()->type);
  return operand.Get()->value.boolean;
}

std::string StringOf(Operand&& operand) {
  const uint32_t ret = QM_XPATH_FuncStringInner(operand.Get());
  if (ret != QM_OK) return StatusName(ret);
  EXPECT_EQ(QM_XPATH_OBJECT_STRING, operand.Get()->type);
  return operand.Get()->value.string;
}

TEST(FuncNumberInner, ConvertsEachType) {
  EXPECT_EQ(1.0, NumberOf(Operand(true)));
  EXPECT_EQ(0.0, NumberOf(Operand(false)));
  EXPECT_EQ(-1.5, NumberOf(Operand(std::string(" -1.5 "))));
  EXPECT_TRUE(std::isnan(NumberOf(Operand(std::string("x")))));
  EXPECT_TRUE(std::isnan(NumberOf(Operand(std::string()))));
  EXPECT_EQ(2.5, NumberOf(Operand(2.5)));
  EXPECT_EQ(0.0, NumberOf(Operand(static_cast<xmlNode*>(nullptr))));
}

TEST(FuncNumberInner, ANodeIsTheNumberOfItsRawText) {
  xmlNode* element = xmlNewNode(nullptr, XmlChars("n"));
  EXPECT_EQ(0.0, NumberOf(Operand(element)));  // without text
  xmlNodeAddContent(element, XmlChars("42"));
  EXPECT_EQ(42.0, NumberOf(Operand(element)));
  xmlNodeAddContent(element, XmlChars("x"));
  EXPECT_TRUE(std::isnan(NumberOf(Operand(element))));
  xmlFreeNode(element);
}

TEST(FuncBooleanInner, ConvertsEachType) {
  xmlNode node = {};
  EXPECT_EQ(1u, BooleanOf(Operand(true)));
  EXPECT_EQ(0u, BooleanOf(Operand(false)));
  EXPECT_EQ(1u, BooleanOf(Operand(std::string("0"))));
  EXPECT_EQ(0u, BooleanOf(Operand(std::string())));
  EXPECT_EQ(1u, BooleanOf(Operand(&node)));
  EXPECT_EQ(0u, BooleanOf(Operand(static_cast<xmlNode*>(nullptr))));
  EXPECT_EQ(1u, BooleanOf(Operand(-0.5)));
  EXPECT_EQ(1u, BooleanOf(Operand(2.220446049250313e-16)));
  EXPECT_EQ(0u, BooleanOf(Operand(2.2e-16)));
  EXPECT_EQ(0u, BooleanOf(Operand(-2.2e-16)));
  EXPECT_EQ(0u, BooleanOf(Operand(0.0)));
  EXPECT_EQ(0u, BooleanOf(Operand(std::numeric_limits<double>::quiet_NaN())));
}

TEST(FuncStringInner, ConvertsEachTypeButNumbers) {
  EXPECT_EQ("true", StringOf(Operand(true)));
  EXPECT_EQ("false", StringOf(Operand(false)));
  EXPECT_EQ("abc", StringOf(Operand(std::string("abc"))));
  EXPECT_EQ("", StringOf(Operand(static_cast<xmlNode*>(nullptr))));
  EXPECT_EQ("QM_INVALID", StringOf(Operand(1.0)));
}

// A long text is not copied: its node stays, and compares like the copy.
TEST(ProcessArgumentsWithNodeSet, LeavesANodeWithATextOf1024CharactersANode) {
  for (const size_t length : {size_t{1023}, size_t{1024}, size_t{100000}}) {
    SCOPED_TRACE(length);
    const std::string text(length, 'x');
    condition_tree::Tree tree("<a>" + text + "</a><id>" + text + "</id>");
    const uint32_t kept = length < 1024 ? QM_XPATH_OBJECT_STRING : QM_XPATH_OBJECT_NODE;
    Operand left(tree.Element("a"));
    Operand right(text);
    EXPECT_EQ(QM_OK, QM_XPATH_ProcessArgumentsWithNodeSet(left.Get(), right.Get()));
    EXPECT_EQ(kept, left.Get()->type);
    uint32_t equal = 0;
    EXPECT_EQ(QM_OK,
              QM_XPATH_EqualityCompareAsString(left.Get(), right.Get(), QM_XPATH_OP_EQUAL, &equal));
    EXPECT_EQ(1u, equal);
    Operand other(text);
    Operand node(tree.Element("a"));
    EXPECT_EQ(QM_OK, QM_XPATH_ProcessArgumentsWithNodeSet(other.Get(), node.Get()));
    EXPECT_EQ(kept, node.Get()->type) << "on the right too";
    Operand identity(tree.Element("id"));
    EXPECT_EQ(QM_OK, QM_XPATH_ProcessArgumentsWithNodeSet(identity.Get(), other.Get()));
    EXPECT_EQ(QM_XPATH_OBJECT_STRING, identity.Get()->type) << "its prefix is rewritten";
    tree.Element("a")->_private = nullptr;
    Operand unbound(tree.Element("a"));
    EXPECT_EQ(QM_OK, QM_XPATH_ProcessArgumentsWithNodeSet(unbound.Get(), other.Get()));
    EXPECT_EQ(QM_XPATH_OBJECT_STRING, unbound.Get()->type);
  }
}

TEST(FuncNotInner, NegatesEachType) {
  for (bool value : {true, false}) {
    Operand operand(value);
    EXPECT_EQ(QM_OK, QM_XPATH_FuncNotInner(operand.Get()));
    EXPECT_EQ(value ? 0u : 1u, operand.Get()->value.boolean);
  }
  Operand text(std::string("x"));
  EXPECT_EQ(QM_OK, QM_XPATH_FuncNotInner(text.Get()));
  EXPECT_EQ(QM_XPATH_OBJECT_BOOLEAN, text.Get()->type);
  EXPECT_EQ(0u, text.Get()->value.boolean);
}

TEST(GetExprEvalFunc, OnlyFourClassesHaveOne) {
  EXPECT_EQ(&QM_XPATH_EvalOrExpr, QM_XPATH_GetExprEvalFunc(0));
  EXPECT_EQ(&QM_XPATH_EvalAndExpr, QM_XPATH_GetExprEvalFunc(1));
  EXPECT_EQ(&QM_XPATH_EvalEqualityExpr, QM_XPATH_GetExprEvalFunc(2));
  EXPECT_EQ(&QM_XPATH_EvalRelationalExpr, QM_XPATH_GetExprEvalFunc(3));
  for (uint32_t type : {4u, 5u, 6u, 7u, 8u, 9u, UINT32_MAX}) {
    EXPECT_EQ(nullptr, QM_XPATH_GetExprEvalFunc(type)) << type;
  }
}

TEST(EqualityCompare, TheTypeOfEitherSideDecides) {
  struct {
    Operand left;
    Operand right;
    bool equal;
  } rows[] = {
      {Operand(true), Operand(std::string("x")), true},
      {Operand(7.0), Operand(true), true},
      {Operand(1.0), Operand(std::string("1.0")), true},
      {Operand(std::string("1")), Operand(std::string("1.0")), false},
      {Operand(std::numeric_limits<double>::quiet_NaN()), Operand(1.0), false},
      {Operand(1.0), Operand(1.0 + 1e-16), true},
      {Operand(1.0), Operand(1.0 + 4e-16), false},
  };
  for (auto& row : rows) {
    uint32_t equal = 9;
    uint32_t different = 9;
    EXPECT_EQ(QM_OK, QM_XPATH_EqualityCompareTwoObject(row.left.Get(), row.right.Get(),
                                                       QM_XPATH_OP_EQUAL, &equal));
    EXPECT_EQ(QM_OK, QM_XPATH_EqualityCompareTwoObject(row.left.Get(), row.right.Get(),
                                                       QM_XPATH_OP_NOT_EQUAL, &different));
    EXPECT_EQ(row.equal ? 1u : 0u, equal);
    EXPECT_EQ(row.equal ? 0u : 1u, different);
  }
}

TEST(RelationalCompare, NanIsNeitherBelowNorAbove) {
  for (uint32_t operation = QM_XPATH_OP_GREATER; operation <= QM_XPATH_OP_LESS_EQUAL; ++operation) {
    Operand nan(std::string("x"));
    Operand one(1.0);
    uint32_t result = 9;
    EXPECT_EQ(QM_OK, QM_XPATH_RelationalCompareTwoObject(nan.Get(), one.Get(), operation, &result));
    EXPECT_EQ(0u, result);
  }
}

// No comparison of two strings holds a number: numbers are compared as numbers.
TEST(EqualityCompare, ANumberIsNoString) {
  QmXpathObject left = {};
  QmXpathObject right = {};
  left.type = right.type = QM_XPATH_OBJECT_NUMBER;
  uint32_t result = 7;
  EXPECT_EQ(QM_INVALID,
            QM_XPATH_EqualityCompareAsString(&left, &right, QM_XPATH_OP_EQUAL, &result));
  EXPECT_EQ(7u, result);
}

TEST(PlainConversions, ATextThatIsMissingIsNoNumberAndFalse) {
  EXPECT_TRUE(std::isnan(QM_XPATH_ConvertStringToNumber(nullptr)));
  EXPECT_EQ(0u, QM_XPATH_ConvertStringToBoolean(nullptr));
}

}  // namespace
