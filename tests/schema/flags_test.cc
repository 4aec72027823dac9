// SPDX-License-Identifier: BSD-3-Clause

#include <gtest/gtest.h>

#include <string>

#include <qmodel/error.h>

#include "context/dict.h"
#include "context/memory.h"
#include "schema/flags.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/node_link.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"
#include "yin/augment_condition.h"

using schema_tree::Child;
using schema_tree::Loose;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

constexpr uint32_t kTrue = QMS_NODE_CONFIG_TRUE;
constexpr uint32_t kFalse = QMS_NODE_CONFIG_FALSE;
constexpr uint32_t kOwn = QMS_NODE_CONFIG_OWN;
constexpr uint32_t kAll = QMS_NODE_DENY_ALL;
constexpr uint32_t kWrite = QMS_NODE_DENY_WRITE;
constexpr uint32_t kOther = QMS_NODE_DEPRECATED | QMS_NODE_MANDATORY_TRUE;

// p > n > k, with flags.
struct Line {
  Schema schema;
  QmsNode* p = Top(schema.Module("m"), QMS_NODE_CONTAINER, "p");
  QmsNode* n = Child(p, QMS_NODE_CONTAINER, "n");
  QmsNode* k = Child(n, QMS_NODE_LEAF, "k");
  Line(uint32_t pFlags, uint32_t nFlags, uint32_t kFlags) {
    p->flags = pFlags;
    n->flags = nFlags;
    k->flags = kFlags;
  }
};

// The rewritten condition, or "NULL".
std::string Rewritten(const char* when) {
  char* text = QMS_NODE_GetParentCond(when, nullptr);
  std::string result = text == nullptr ? "NULL" : text;
  g_qmMemFreeFunc(text);
  return result;
}

void SetWhen(QmDict* dict, QmsNode* node, const char* when) {
  EXPECT_TRUE(InternText(dict, &node->when, when));
}

}  // namespace

TEST(UpdateConfigFlag, FollowsTheTableOfParentAndNode) {
  const struct {
    uint32_t parent;
    uint32_t before;
    uint32_t after;
  } rows[] = {
      {0, 0, 0},
      {0, kFalse, kFalse},
      {kTrue, 0, kTrue},
      {kFalse, 0, kFalse},
      {kFalse, kTrue, kFalse},
      {kTrue, kFalse, kTrue},
      {kFalse, kTrue | kOwn, kFalse},         // overruled, and the own mark is lost
      {kTrue, kFalse | kOwn, kFalse | kOwn},  // may restrict
      {kTrue, kTrue | kOwn, kTrue | kOwn},
      {kFalse, kFalse | kOwn, kFalse | kOwn},
      {kFalse | kOwn, kTrue, kFalse},  // the parent's own mark is not inherited
      {kFalse, kTrue | kOther, kFalse | kOther},
  };
  for (const auto& row : rows) {
    Line line(row.parent, row.before, 0);
    EXPECT_EQ(QM_OK, QMS_NODE_UpdateConfigFlag(line.n));
    EXPECT_EQ(row.after, line.n->flags) << row.parent << " over " << row.before;
  }
}

TEST(UpdateConfigFlag, GoesDownOnlyFromANodeThatChanged) {
  Line changed(kFalse, kTrue, kTrue);
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateConfigFlag(changed.n));
  EXPECT_EQ(kFalse, changed.k->flags);
  // The child would change, but the node above it stays as it is.
  Line unchanged(kFalse, kFalse, kTrue);
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateConfigFlag(unchanged.n));
  EXPECT_EQ(kTrue, unchanged.k->flags);
}

TEST(UpdateConfigFlag, ATopNodeStaysAndNullIsRefusedWith22) {
  Line line(kTrue, 0, 0);
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateConfigFlag(line.p));
  EXPECT_EQ(kTrue, line.p->flags);
  EXPECT_EQ(QM_INVALID, QMS_NODE_UpdateConfigFlag(nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UpdateNacmFlag(nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_UpdateFlag(nullptr));
}

TEST(UpdateConfigFlag, ReachesEverySiblingAndLevel) {
  Line line(kFalse, 0, 0);
  QmsNode* inner = Child(line.n, QMS_NODE_CONTAINER, "inner");
  QmsNode* deep = Child(inner, QMS_NODE_LEAF, "deep");
  QmsNode* last = Child(line.n, QMS_NODE_LEAF, "last");
  QmsNode* outside = Child(line.p, QMS_NODE_LEAF, "outside");
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateConfigFlag(line.n));
  for (QmsNode* node : {line.n, line.k, inner, deep, last}) EXPECT_EQ(kFalse, node->flags);
  EXPECT_EQ(0u, outside->flags);
}

TEST(UpdateConfigFlag, TakesATreeDeeperThanTheCallStack) {
  Line line(kFalse, 0, 0);
  QmsNode* node = line.n;
  for (int i = 0; i < 200000; ++i) node = Child(node, QMS_NODE_CONTAINER, "c");
  line.p->flags |= kWrite;
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateFlag(line.p));
  EXPECT_EQ(kFalse | kWrite, node->flags);
}

TEST(UpdateNacmFlag, AnyMarkedParentOverwritesTheMarksOfAChild) {
  const struct {
    uint32_t parent;
    uint32_t before;
    uint32_t after;
  } rows[] = {{0, 0, 0},
              {0, kAll, kAll},
              {kAll, 0, kAll},
              {kWrite, kAll, kWrite},
              {kAll, kAll, kAll},
              {kAll | kWrite, kAll, kAll | kWrite},
              {kAll, kOther, kAll | kOther}};
  for (const auto& row : rows) {
    Line line(row.parent, row.before, 0);
    EXPECT_EQ(QM_OK, QMS_NODE_UpdateNacmFlag(line.n));
    EXPECT_EQ(row.after, line.n->flags) << row.parent << " over " << row.before;
    const uint32_t below = row.parent != 0 && row.before != row.after ? row.parent : 0;
    EXPECT_EQ(below, line.k->flags) << row.parent << " over " << row.before;
  }
}

TEST(UpdateFlag, HandsConfigAndNacmToTheChildrenOfAMarkedNode) {
  Line line(kFalse | kAll, kTrue, 0);
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateFlag(line.p));
  EXPECT_EQ(kFalse | kAll, line.n->flags);
  EXPECT_EQ(kFalse | kAll, line.k->flags);
  EXPECT_EQ(kFalse | kAll, line.p->flags);
  Line unmarked(kOther, kTrue, 0);
  EXPECT_EQ(QM_OK, QMS_NODE_UpdateFlag(unmarked.p));
  EXPECT_EQ(kTrue, unmarked.n->flags);
  EXPECT_EQ(0u, unmarked.k->flags);
}

TEST(SetNacmFlag, KnowsTwoExtensionsOfOneModule) {
  const struct {
    const char* module;
    const char* extension;
    uint32_t flags;
  } rows[] = {{"ietf-netconf-acm", "default-deny-all", 0x2000},
              {"ietf-netconf-acm", "default-deny-write", 0x1000},
              {"ietf-netconf-acm", "default-deny-al", 0},
              {"ietf-netconf-acm", nullptr, 0},
              {"other", "default-deny-all", 0},
              {nullptr, "default-deny-all", 0}};
  for (const auto& row : rows) {
    QmsNode node{};
    QMS_NODE_SetNacmFlag(&node, row.module, row.extension);
    EXPECT_EQ(row.flags, node.flags);
  }
  QMS_NODE_SetNacmFlag(nullptr, "ietf-netconf-acm", "default-deny-all");
}

namespace {

struct KeyedList {
  Schema schema;
  QmsNode* list = Top(schema.Module("m"), QMS_NODE_LIST, "l");
  QmsNode* a = Child(list, QMS_NODE_LEAF, "a");
  QmsNode* b = Child(list, QMS_NODE_LEAF, "b");
  QmsNode* c = Child(list, QMS_NODE_LEAF, "c");
  QmsNode* box = Child(list, QMS_NODE_CONTAINER, "box");
  QmsNode* many = Child(list, QMS_NODE_LEAF_LIST, "many");
  uint8_t count = 0;
};

}  // namespace

TEST(MarkKeys, ThreeNamesBetweenBlanksAndATabMarkThreeLeaves) {
  KeyedList keyed;
  keyed.count = 2;
  EXPECT_EQ(QM_OK, QMS_NODE_MarkKeyAttrToListLeafs(keyed.list, " a  b\tc\n", &keyed.count));
  EXPECT_EQ(5u, keyed.count);
  for (const QmsNode* leaf : {keyed.a, keyed.b, keyed.c}) EXPECT_EQ(1u, QM_NODE_IsKey(leaf));
}

TEST(MarkKeys, ANullTextIsNoKey) {
  EXPECT_EQ(QM_OK, QMS_NODE_MarkKeyAttrToListLeafs(nullptr, nullptr, nullptr));
}

TEST(MarkKeys, AListWithoutChildrenIsRefusedWith22) {
  Schema schema;
  uint8_t count = 0;
  QmsNode* list = Top(schema.Module("m"), QMS_NODE_LIST, "l");
  EXPECT_EQ(QM_INVALID, QMS_NODE_MarkKeyAttrToListLeafs(list, "a", &count));
  EXPECT_EQ(QM_INVALID, QMS_NODE_MarkKeyAttrToListLeafs(nullptr, "a", &count));
}

TEST(MarkKeys, ABadNameEndsWithMinusOneAndKeepsTheMarksBeforeIt) {
  const std::string tooLong = "a " + std::string(65, 'x');
  for (const char* text :
       {"a box", "a many", "a unknown", "a,b", "a /b", "a\rb", tooLong.c_str()}) {
    KeyedList keyed;
    EXPECT_EQ(0xFFFFFFFFu, QMS_NODE_MarkKeyAttrToListLeafs(keyed.list, text, &keyed.count)) << text;
    EXPECT_EQ(1u, keyed.count) << text;
    EXPECT_EQ(1u, QM_NODE_IsKey(keyed.a)) << text;
    EXPECT_EQ(0u, QM_NODE_IsKey(keyed.b)) << text;
  }
}

TEST(MarkKeys, ANameOf64CharactersFits) {
  KeyedList keyed;
  const std::string name(64, 'x');
  QmsNode* leaf = Child(keyed.list, QMS_NODE_LEAF, name.c_str());
  EXPECT_EQ(QM_OK, QMS_NODE_MarkKeyAttrToListLeafs(keyed.list, name.c_str(), &keyed.count));
  EXPECT_EQ(1u, QM_NODE_IsKey(leaf));
}

TEST(MarkKeys, MoreThan255KeysAreRefusedBeforeTheCounterOverflows) {
  KeyedList keyed;
  keyed.count = 254;
  EXPECT_EQ(0xFFFFFFFFu, QMS_NODE_MarkKeyAttrToListLeafs(keyed.list, "a b", &keyed.count));
  EXPECT_EQ(255u, keyed.count);
  EXPECT_EQ(0u, QM_NODE_IsKey(keyed.b));
}

TEST(GetParentCond, PutsAStepBeforeEachPath) {
  const struct {
    const char* when;
    const char* rewritten;
  } rows[] = {
      {"../a = current()/b", "../../a = current()/../b"},
      {"x or y", "../x or ../y"},
      {"", ""},
      {"   ", ""},
      {" abc = 1", " ../abc = 1"},
      {"abc  ", "../abc"},                      // white space at the end is no text between tokens
      {".='value'", "..='value'"},              // the context node becomes its parent
      {"/m:a/b", "/m:a/b"},                     // absolute paths stay
      {"aaa/bbb", "../aaa/bbb"},                // only the first step of a path
      {"'../a' = abc", "'../a' = ../abc"},      // literals stay
      {"count(abc) > 1", "count(../abc) > 1"},  // a call does not begin a path
      {"not(aa = bb)", "not(../aa = ../bb)"},
      {"aaa[bb = 1]/c", "../aaa[bb = 1]/c"},  // names behind "[" are not rewritten
      {"fun(aa, bb)", "fun(../aa, bb)"},      // nor behind ","
      {"current() = 1", "current() = 1"},
      {"current() = aa/b", "current() = ../aa/../b"},  // the mark stays until the next "/"
      {"/a | bb", "/a | ../bb"},
      {"boolean()/abc", "boolean()/abc"},  // as long as "current", but another function
      {"curren()/abc", "curren()/abc"},
      {"current(aa)/bbb", "current(../aa)/bbb"},  // with an argument it is another function too
      {"current(", "current("},
  };
  for (const auto& row : rows) EXPECT_EQ(row.rewritten, Rewritten(row.when)) << row.when;
}

TEST(GetParentCond, FailsWhenTheResultNeedsMoreThanTwiceTheLength) {
  EXPECT_EQ("NULL", Rewritten("a|b|c"));  // 14 characters, room for 10
  EXPECT_EQ("../abc", Rewritten("abc"));  // 6 of 6
  EXPECT_EQ("NULL", Rewritten("ab"));     // 5, room for 4
  EXPECT_EQ("..", Rewritten("."));        // 2 of 2
}

TEST(GetParentCond, IsNullForWhatIsNoExpression) {
  EXPECT_EQ("NULL", Rewritten(nullptr));
  EXPECT_EQ("NULL", Rewritten("$variable"));
  EXPECT_EQ("NULL", Rewritten("'open"));
}

TEST(CombineTwoWhenCondition, PutsBothInParentheses) {
  char* text = QMS_NODE_CombineTwoWhenCondition("a or b", "c");
  EXPECT_STREQ("(a or b) and (c)", text);
  g_qmMemFreeFunc(text);
  EXPECT_EQ(nullptr, QMS_NODE_CombineTwoWhenCondition(nullptr, "c"));
  EXPECT_EQ(nullptr, QMS_NODE_CombineTwoWhenCondition("a", nullptr));
}

TEST(InheritAugmentWhen, IsCombinedWithTheChildsOwnAndTheAugmentsComesFirst) {
  Schema schema;
  QmDict* dict = schema.dict();
  QmsModule* module = schema.Module("m");
  QmsNode* augment = Top(module, QMS_NODE_AUGMENT, "/m:c");
  SetWhen(dict, augment, "../a = 1");
  QmsNode* without = Child(augment, QMS_NODE_LEAF, "without");
  QmsNode* with = Child(augment, QMS_NODE_LEAF, "with");
  SetWhen(dict, with, "../b or ../c");
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeEvalToAllChildNode(dict, augment));
  EXPECT_STREQ("../../a = 1", without->when);
  EXPECT_STREQ("(../../a = 1) and (../b or ../c)", with->when);
  EXPECT_STREQ("../a = 1", augment->when);
}

TEST(InheritAugmentWhen, ALongCombinationIsNotCut) {
  Schema schema;
  QmDict* dict = schema.dict();
  QmsNode* augment = Top(schema.Module("m"), QMS_NODE_AUGMENT, "/m:c");
  const std::string own = "../" + std::string(3000, 'o');
  const std::string other = "../" + std::string(3000, 'a');
  SetWhen(dict, augment, other.c_str());
  QmsNode* child = Child(augment, QMS_NODE_LEAF, "l");
  SetWhen(dict, child, own.c_str());
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeEvalToAllChildNode(dict, augment));
  EXPECT_EQ("(../" + other + ") and (" + own + ")", child->when);
}

TEST(InheritAugmentWhen, AConditionThatCannotBeRewrittenIsNotInherited) {
  Schema schema;
  QmsNode* augment = Top(schema.Module("m"), QMS_NODE_AUGMENT, "/m:c");
  SetWhen(schema.dict(), augment, "a|b|c");
  QmsNode* child = Child(augment, QMS_NODE_LEAF, "l");
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeEvalToAllChildNode(schema.dict(), augment));
  EXPECT_EQ(nullptr, child->when);
}

TEST(InheritAugmentWhen, ActionsAndNotificationsAreSkipped) {
  Schema schema;
  QmDict* dict = schema.dict();
  QmsNode* augment = Top(schema.Module("m"), QMS_NODE_AUGMENT, "/m:c");
  SetWhen(dict, augment, "../a");
  ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(dict, &augment->ifFeatures, &augment->ifFeatureCount,
                                            "m", "f"));
  QmsNode* action = Child(augment, QMS_NODE_ACTION, "act");
  QmsNode* notification = Child(augment, QMS_NODE_NOTIFICATION, "note");
  QmsNode* leaf = Child(augment, QMS_NODE_LEAF, "leaf");
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeEvalToAllChildNode(dict, augment));
  for (const QmsNode* node : {action, notification}) {
    EXPECT_EQ(nullptr, node->when);
    EXPECT_EQ(0u, node->ifFeatureCount);
  }
  EXPECT_STREQ("../../a", leaf->when);
  EXPECT_EQ(1u, leaf->ifFeatureCount);
}

TEST(InheritAugmentIfFeatures, OnlyThoseThatTheChildDoesNotHaveAreAppended) {
  Schema schema;
  QmDict* dict = schema.dict();
  QmsNode* augment = Top(schema.Module("m"), QMS_NODE_AUGMENT, "/m:c");
  QmsNode* child = Child(augment, QMS_NODE_LEAF, "l");
  const struct {
    QmsNode* node;
    const char* feature;
  } have[] = {{augment, "f"}, {augment, "g"}, {child, "g"}};
  for (const auto& row : have) {
    ASSERT_EQ(QM_OK, QMS_NODE_AppendOneIfFeat(dict, &row.node->ifFeatures,
                                              &row.node->ifFeatureCount, "m", row.feature));
  }
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeEvalToAllChildNode(dict, augment));
  ASSERT_EQ(2u, child->ifFeatureCount);
  EXPECT_STREQ("g", child->ifFeatures[0].feature);
  EXPECT_STREQ("f", child->ifFeatures[1].feature);
}

TEST(InheritAugmentEval, RefusesNullWith22) {
  Schema schema;
  QmsNode node{};
  EXPECT_EQ(QM_INVALID, QMS_NODE_InheritAugNodeEvalToAllChildNode(nullptr, &node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_InheritAugNodeEvalToAllChildNode(schema.dict(), nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_InheritAugNodeWhenCondToChildNode(schema.dict(), "a", nullptr));
  EXPECT_EQ(QM_OK, QMS_NODE_InheritAugNodeWhenCondToChildNode(schema.dict(), nullptr, &node));
  EXPECT_EQ(nullptr, node.when);
}

TEST(InheritAugmentWhen, Is22WhenTheNewConditionCannotBeInterned) {
  Schema schema;
  QmsNode* leaf = Top(schema.Module("m"), QMS_NODE_LEAF, "l");
  for (const char* own : {"", "../own"}) {
    if (*own != '\0') SetWhen(schema.dict(), leaf, own);
    const char* before = leaf->when;
    counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
    EXPECT_EQ(QM_INVALID,
              QMS_NODE_InheritAugNodeWhenCondToChildNode(schema.dict(), "../new", leaf));
    EXPECT_LT(0u, counting_memory::StopRefusing());
    EXPECT_EQ(before, leaf->when);
  }
}

namespace {

Schema* g_schema;
QmsModule* g_module;

// An augment with a condition and a feature over a child that has a condition.
void InheritScenario(bool refusing) {
  QmsNode* augment = QMS_NODE_New(QMS_NODE_AUGMENT);
  if (augment == nullptr) return;
  augment->module = g_module;
  QmsNode* child = QMS_NODE_New(QMS_NODE_LEAF);
  QmDict* dict = g_schema->dict();
  bool built = child != nullptr;
  if (built) {
    child->module = g_module;
    EXPECT_EQ(QM_OK, QMS_NODE_AddChild(augment, child));
    built = InternText(dict, &augment->when, "../first") &&
            InternText(dict, &child->when, "../second") &&
            QMS_NODE_AppendOneIfFeat(dict, &augment->ifFeatures, &augment->ifFeatureCount, "m",
                                     "f") == 0;
  }
  const uint32_t ret =
      built ? QMS_NODE_InheritAugNodeEvalToAllChildNode(dict, augment) : uint32_t{QM_NO_MEMORY};
  // A condition that cannot be rewritten for want of memory is not inherited, so
  // a refused allocation need not show in the status.
  EXPECT_TRUE(ret == QM_OK || ret == QM_NO_MEMORY || ret == QM_INVALID) << ret;
  if (!refusing) {
    EXPECT_EQ(QM_OK, ret);
    EXPECT_STREQ("(../../first) and (../second)", child->when);
  }
  QMS_NODE_Free(augment);
}

}  // namespace

TEST(InheritAugmentEval, SurvivesEveryFailedAllocation) {
  Schema schema;
  g_schema = &schema;
  g_module = schema.Module("m");
  EXPECT_LT(8u, counting_memory::FailEachAllocation(InheritScenario));
}
