// SPDX-License-Identifier: BSD-3-Clause
//
// Evaluates the plan of a condition. The operands stand in one array; their strings are
// the plan's or the elements' own, so nothing is allocated and nothing copied. An identity
// with its module's name in front is never put together: the two parts are compared. What
// a value means as a number or as a boolean is asked where the conversions of operands
// ask it.
#include "xpath/condition_run.h"

#include <limits>

#include <qmodel/error.h>

#include "context/xml_tree.h"
#include "platform/string.h"
#include "xpath/bound_value.h"
#include "xpath/child_lookup.h"
#include "xpath/compare.h"
#include "xpath/convert.h"
#include "xpath/eval_path.h"
#include "xpath/functions.h"

namespace {

struct Run {
  QmKeptConditions* kept;
  xmlNode* rootNode;
  xmlNode* currentNode;
  QmXpathObject* top;  // the operand that was pushed last; the first slot stays empty
};

}  // namespace

static void SetBoolean(QmXpathObject* object, bool value) {
  object->type = QM_XPATH_OBJECT_BOOLEAN;
  object->value.boolean = value ? 1 : 0;
}

static bool BooleanOf(const QmXpathObject* object) {
  switch (object->type) {
    case QM_XPATH_OBJECT_STRING:
      return QM_XPATH_ConvertStringToBoolean(object->value.string) != 0;
    case QM_XPATH_OBJECT_NODE:
      return object->value.node != nullptr;
    case QM_XPATH_OBJECT_NUMBER:
      return QM_XPATH_ConvertNumberToBoolean(object->value.number) != 0;
    default:
      return object->value.boolean != 0;
  }
}

// Comparisons. Each node means the text that it holds.

static uint32_t TextOf(const Run* run, const QmXpathObject* object, QmBoundText* text) {
  *text = {nullptr, ""};
  if (object->type == QM_XPATH_OBJECT_STRING) {
    text->text = object->value.string;
    return QM_OK;
  }
  if (object->type != QM_XPATH_OBJECT_NODE || object->value.node == nullptr) return QM_OK;
  QmsNode* schemaNode = BoundSchema(object->value.node);
  if (schemaNode == nullptr) return QM_OK;
  return ReadBoundText(object->value.node, schemaNode, IsIdentityrefKept(run->kept, schemaNode),
                       text);
}

// An identity is no number, and neither is a node without text here.
static double NumberOf(const QmXpathObject* object, const QmBoundText* text) {
  switch (object->type) {
    case QM_XPATH_OBJECT_BOOLEAN:
      return QM_XPATH_ConvertBooleanToNumber(object->value.boolean);
    case QM_XPATH_OBJECT_NUMBER:
      return object->value.number;
    case QM_XPATH_OBJECT_STRING:
      return QM_XPATH_ConvertStringToNumber(text->text);
    default:
      if (text->moduleName != nullptr || *text->text == '\0') {
        return std::numeric_limits<double>::quiet_NaN();
      }
      return QM_XPATH_ConvertNodeToNumber(object->value.node);
  }
}

static bool BooleanInComparison(const QmXpathObject* object, const QmBoundText* text) {
  if (object->type != QM_XPATH_OBJECT_NODE) return BooleanOf(object);
  return text->moduleName != nullptr || *text->text != '\0';
}

static bool EitherIs(const QmXpathObject* left, const QmXpathObject* right, uint32_t type) {
  return left->type == type || right->type == type;
}

static bool AreEqual(const QmXpathObject* left, const QmBoundText* leftText,
                     const QmXpathObject* right, const QmBoundText* rightText) {
  if (EitherIs(left, right, QM_XPATH_OBJECT_BOOLEAN)) {
    return BooleanInComparison(left, leftText) == BooleanInComparison(right, rightText);
  }
  if (EitherIs(left, right, QM_XPATH_OBJECT_NUMBER)) {
    return NumbersAreEqual(NumberOf(left, leftText), NumberOf(right, rightText));
  }
  return BoundTextsAreEqual(leftText, rightText);
}

static uint32_t Compare(Run* run, const QmPlanStep* step) {
  const QmXpathObject* right = run->top--;
  QmXpathObject* left = run->top;
  QmBoundText leftText;
  QmBoundText rightText;
  uint32_t ret = TextOf(run, left, &leftText);
  if (ret == QM_OK) ret = TextOf(run, right, &rightText);
  if (ret != QM_OK) return ret;
  if (step->kind == QM_PLAN_EQUALITY) {
    const bool equal = AreEqual(left, &leftText, right, &rightText);
    SetBoolean(left, equal == (step->detail == QM_XPATH_OP_EQUAL));
  } else {
    SetBoolean(
        left, CompareNumbers(NumberOf(left, &leftText), NumberOf(right, &rightText), step->detail));
  }
  return QM_OK;
}

static uint32_t TestDerived(Run* run, bool orSelf) {
  const QmXpathObject* name = run->top;
  if (name->type != QM_XPATH_OBJECT_STRING || *name->value.string == '\0') {
    return QM_XPATH_BAD_ARGUMENTS;
  }
  QmXpathObject* object = --run->top;
  if (object->type != QM_XPATH_OBJECT_NODE || object->value.node == nullptr) {
    return QM_XPATH_BAD_ARGUMENTS;
  }
  uint32_t result = 0;
  const uint32_t ret = TestIdentity(object->value.node, name->value.string, orSelf, &result);
  SetBoolean(object, result != 0);
  return ret;
}

// Operands.

static void TakeStep(Run* run, const QmPlanStep* step) {
  if (step->detail != 0) {
    ++run->top;
    run->top->type = QM_XPATH_OBJECT_NODE;
    run->top->value.node = run->currentNode;
  }
  xmlNode** node = &run->top->value.node;
  switch (step->kind) {
    case QM_PLAN_PARENT:
      *node = ParentWithin(run->rootNode, *node);
      break;
    case QM_PLAN_CHILD:
      *node = QMD_PAS_FindChildDataNode(*node, step->text);
      break;
    case QM_PLAN_NOWHERE:
      *node = nullptr;
      break;
    default:
      break;
  }
}

static void PushConstant(Run* run, const QmPlanStep* step) {
  QmXpathObject* object = ++run->top;
  switch (step->kind) {
    case QM_PLAN_STRING:
      object->type = QM_XPATH_OBJECT_STRING;
      object->value.string = const_cast<char*>(step->text);  // never freed, nor written to
      break;
    case QM_PLAN_NUMBER:
      object->type = QM_XPATH_OBJECT_NUMBER;
      object->value.number = step->number;
      break;
    default:
      object->type = QM_XPATH_OBJECT_NODE;
      object->value.node = run->rootNode;
      break;
  }
}

static void Combine(Run* run, const QmPlanStep* step) {
  const bool right = BooleanOf(run->top--);
  const bool left = BooleanOf(run->top);
  SetBoolean(run->top, step->kind == QM_PLAN_OR ? left || right : left && right);
}

static uint32_t TakePlanStep(Run* run, const QmPlanStep* step) {
  switch (step->kind) {
    case QM_PLAN_STRING:
    case QM_PLAN_NUMBER:
    case QM_PLAN_ROOT:
      PushConstant(run, step);
      return QM_OK;
    case QM_PLAN_SELF:
    case QM_PLAN_PARENT:
    case QM_PLAN_CHILD:
    case QM_PLAN_NOWHERE:
      TakeStep(run, step);
      return QM_OK;
    case QM_PLAN_AND:
    case QM_PLAN_OR:
      Combine(run, step);
      return QM_OK;
    case QM_PLAN_EQUALITY:
    case QM_PLAN_RELATIONAL:
      return Compare(run, step);
    case QM_PLAN_NOT:
      SetBoolean(run->top, !BooleanOf(run->top));
      return QM_OK;
    default:
      return TestDerived(run, step->kind == QM_PLAN_DERIVED_OR_SELF);
  }
}

uint32_t RunConditionPlan(QmKeptConditions* kept, const QmConditionPlan* plan, xmlNode* rootNode,
                          xmlNode* currentNode) {
  Run run = {kept, rootNode, currentNode, kept->operands};
  for (uint32_t i = 0; i < plan->count; ++i) {
    const uint32_t ret = TakePlanStep(&run, &plan->steps[i]);
    if (ret != QM_OK) return ret;
  }
  return BooleanOf(run.top) ? uint32_t{QM_OK} : uint32_t{QM_XPATH_FALSE};
}
