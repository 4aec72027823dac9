// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>
#include <type_traits>

#include <qmodel/xpath.h>

#include "platform/stack.h"

// One token: a stretch of the expression text.
struct QmXpathToken {
  uint32_t kind;    // QmXpathTokenKind
  uint32_t length;  // characters, the quotes of a literal included
  uint32_t start;   // offset in QmXpathExpr::text
};
static_assert(sizeof(QmXpathToken) == 12, "the token array is sized in steps of 12-byte tokens");

// A tokenized expression. The text is borrowed and must outlive the record.
struct QmXpathExpr {
  QmXpathToken* tokens;  // owned
  const char* text;      // borrowed
  uint32_t count;
  uint32_t capacity;
};

enum QmXpathObjectType : uint32_t {
  QM_XPATH_OBJECT_BOOLEAN = 0,
  QM_XPATH_OBJECT_STRING = 1,
  QM_XPATH_OBJECT_NODE = 2,
  QM_XPATH_OBJECT_NUMBER = 3
};

// One operand. A string is owned; a node is not, and may be NULL.
struct QmXpathObject {
  uint32_t type;
  union {
    uint32_t boolean;
    char* string;
    xmlNode* node;
    double number;
  } value;
};

// One operator that waits for its right operand, or a sub-expression barrier.
struct QmXpathOpEntry {
  uint32_t exprType;    // QmXpathExprType
  uint32_t tokenIndex;  // the operator's token
};
static_assert(sizeof(QmXpathOpEntry) == 8);

// One evaluation; lives on the caller's stack.
struct QmXpathEvalCtx {
  xmlNode* currentNode;  // the element whose condition is evaluated
  xmlNode* rootNode;     // what "/" selects; ".." never climbs to it
  RtkStack* opStack;     // of QmXpathOpEntry, owned
  RtkStack* objStack;    // of QmXpathObject, owned
  uint32_t depth;        // open sub-expressions
};

// Sub-expressions open at one moment.
constexpr uint32_t kQmXpathMaxDepth = 256;
