// SPDX-License-Identifier: BSD-3-Clause
#include "schema/lookup.h"

#include <gtest/gtest.h>

#include <string>

#include <qmodel/error.h>

#include "schema/node_value.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"

using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

// m: c { l  choice ch { case ca { in } }  inner { deep } } ; choice top { case t { lost } } ;
//    rpc r { input { i } output { o } }. n adds "extra" and a second "l" below c.
struct Tree {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule* n = schema.Module("n");
  QmsNode* c = Top(m, QMS_NODE_CONTAINER, "c");
  QmsNode* l = Child(c, QMS_NODE_LEAF, "l");
  QmsNode* ch = Child(c, QMS_NODE_CHOICE, "ch");
  QmsNode* ca = Child(ch, QMS_NODE_CASE, "ca");
  QmsNode* in = Child(ca, QMS_NODE_LEAF, "in");
  QmsNode* inner = Child(c, QMS_NODE_CONTAINER, "inner");
  QmsNode* deep = Child(inner, QMS_NODE_LEAF, "deep");
  QmsNode* top = Top(m, QMS_NODE_CHOICE, "top");
  QmsNode* lost = Child(Child(top, QMS_NODE_CASE, "t"), QMS_NODE_LEAF, "lost");
  QmsNode* r = Top(m, QMS_NODE_RPC, "r");
  QmsNode* input = Child(r, QMS_NODE_INPUT, "input");
  QmsNode* i = Child(input, QMS_NODE_LEAF, "i");
  QmsNode* o = Child(Child(r, QMS_NODE_OUTPUT, "output"), QMS_NODE_LEAF, "o");
  QmsNode* augment = Top(n, QMS_NODE_AUGMENT, "/m:c");
  QmsNode* extra = Child(augment, QMS_NODE_CONTAINER, "extra");
  QmsNode* below = Child(extra, QMS_NODE_LEAF, "below");
  QmsNode* nl = Child(augment, QMS_NODE_LEAF, "l");
  Tree() { schema_tree::Couple(augment, c); }
  QmsNode* Data(QmsNode* start, const char* path) { return QMS_MOD_GetNodeByXpath(m, start, path); }
  QmsNode* Id(QmsNode* start, const char* path) {
    return QMS_MOD_GetNodeBySchemaNodeId(m, start, path);
  }
};

}  // namespace

TEST(GetNodeByXpath, AnAbsolutePathNeedsAModuleOnItsFirstStep) {
  Tree tree;
  EXPECT_EQ(tree.l, tree.Data(nullptr, "/m:c/l"));
  EXPECT_EQ(tree.deep, tree.Data(nullptr, "/m:c/m:inner/m:deep"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/c/l"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/unknown:c"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:c/unknown"));
}

TEST(GetNodeByXpath, AStepWithoutModuleBelongsToThatOfTheStepBefore) {
  Tree tree;
  EXPECT_EQ(tree.below, tree.Data(nullptr, "/m:c/n:extra/below"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:c/extra"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:c/n:extra/m:below"));
  EXPECT_EQ(tree.l, tree.Data(nullptr, "/m:c/l"));
  EXPECT_EQ(tree.nl, tree.Data(nullptr, "/m:c/n:l"));
}

TEST(GetNodeByXpath, AParentStepSkipsCaseAndChoice) {
  Tree tree;
  EXPECT_EQ(tree.l, tree.Data(tree.in, "../l"));
  EXPECT_EQ(tree.in, tree.Data(tree.l, "../in"));
  EXPECT_EQ(tree.l, tree.Data(tree.deep, "../../l"));
  EXPECT_EQ(tree.i, tree.Data(tree.o, "../i"));
}

TEST(GetNodeByXpath, ParentStepsMayReachTheTopLevelButNotLeaveIt) {
  Tree tree;
  EXPECT_EQ(tree.l, tree.Data(tree.l, "../../m:c/l"));
  EXPECT_EQ(nullptr, tree.Data(tree.l, "../../c/l"));
  EXPECT_EQ(nullptr, tree.Data(tree.l, "../../../m:c/l"));
}

TEST(GetNodeByXpath, ARelativePathWithoutADotBeginsAtTheStartNode) {
  Tree tree;
  EXPECT_EQ(tree.deep, tree.Data(tree.c, "inner/deep"));
  EXPECT_EQ(tree.in, tree.Data(tree.c, "in"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "inner/deep"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "../l"));
}

TEST(GetNodeByXpath, ParentStepsAloneAndOtherDotsNameNothing) {
  Tree tree;
  for (const char* path : {"..", "../", "../..", "../../", ".", "./l", "...", "..l", "inner/.."}) {
    EXPECT_EQ(nullptr, tree.Data(tree.deep, path)) << path;
    EXPECT_EQ(nullptr, tree.Data(tree.c, path)) << path;
  }
}

TEST(GetNodeByXpath, NeverGivesAChoiceOrACase) {
  Tree tree;
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:c/ch"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:c/ca"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:top"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:r/input"));
}

TEST(GetNodeByXpath, ATopLevelChoiceIsNotLookedThrough) {
  Tree tree;
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:lost"));
}

TEST(GetNodeByXpath, SkipsPredicates) {
  Tree tree;
  EXPECT_EQ(tree.deep, tree.Data(nullptr, "/m:c[l='1']/inner[deep=2][l=3]/deep"));
  EXPECT_EQ(nullptr, tree.Data(nullptr, "/m:c[l='1'x/inner"));
}

TEST(GetNodeByXpath, AStepThatCannotBeTakenGivesNull) {
  Tree tree;
  const std::string longName = "/m:c/" + std::string(65, 'x');
  const std::string longModule = "/" + std::string(65, 'x') + ":c";
  for (const std::string& path : {std::string("/"), std::string("/m:c/"), std::string("//m:c"),
                                  std::string("/m:c//l"), std::string("/m:"), std::string("/:c"),
                                  std::string("/m:c l"), std::string("/*"), longName, longModule}) {
    EXPECT_EQ(nullptr, tree.Data(nullptr, path.c_str())) << path;
  }
  EXPECT_EQ(nullptr, tree.Data(tree.c, "inner/"));
  EXPECT_EQ(nullptr, QMS_MOD_GetNodeByXpath(nullptr, tree.c, "inner"));
  EXPECT_EQ(nullptr, tree.Data(tree.c, nullptr));
}

TEST(GetNodeByXpath, NamesOf64CharactersFit) {
  Schema schema;
  const std::string name(64, 'x');
  QmsModule* module = schema.Module(name.c_str());
  QmsNode* node = Top(module, QMS_NODE_CONTAINER, name.c_str());
  EXPECT_EQ(node, QMS_MOD_GetNodeByXpath(module, nullptr, ("/" + name + ":" + name).c_str()));
}

TEST(GetStartPathAndNode, GivesTheStartOfTheWalk) {
  Tree tree;
  QmsNode* node = tree.l;
  QmsModule* mod = tree.m;
  EXPECT_STREQ("m:c/l", QMS_MOD_GetStartPathAndNode(tree.m, tree.l, "/m:c/l", &node, &mod));
  EXPECT_EQ(nullptr, node);
  EXPECT_EQ(nullptr, mod);
  EXPECT_STREQ("x/y", QMS_MOD_GetStartPathAndNode(tree.m, tree.below, "../x/y", &node, &mod));
  EXPECT_EQ(tree.extra, node);
  EXPECT_EQ(tree.n, mod);
  EXPECT_EQ(nullptr, QMS_MOD_GetStartPathAndNode(tree.m, nullptr, "x", &node, &mod));
  EXPECT_EQ(nullptr, QMS_MOD_GetStartPathAndNode(tree.m, tree.l, nullptr, &node, &mod));
}

TEST(GetNodeBySchemaNodeId, SeesEverySchemaNode) {
  Tree tree;
  EXPECT_EQ(tree.ch, tree.Id(nullptr, "/m:c/ch"));
  EXPECT_EQ(tree.ca, tree.Id(nullptr, "/m:c/m:ch/m:ca"));
  EXPECT_EQ(tree.in, tree.Id(nullptr, "c/ch/ca/in"));
  EXPECT_EQ(nullptr, tree.Id(nullptr, "/m:c/in"));
  EXPECT_EQ(tree.i, tree.Id(nullptr, "/m:r/input/i"));
  EXPECT_EQ(tree.top, tree.Id(nullptr, "/m:top"));
  EXPECT_EQ(tree.deep, tree.Id(tree.c, "inner/deep"));
  EXPECT_EQ(tree.deep, tree.Id(tree.c, "/inner/deep"));
}

TEST(GetNodeBySchemaNodeId, DoesNotLookAtTheModuleOfATopLevelStep) {
  Tree tree;
  EXPECT_EQ(tree.l, tree.Id(nullptr, "/whatever:c/l"));
}

TEST(GetNodeBySchemaNodeId, AStepWithoutModuleFitsAnyModule) {
  Tree tree;
  EXPECT_EQ(tree.extra, tree.Id(nullptr, "/m:c/extra"));
  EXPECT_EQ(tree.extra, tree.Id(nullptr, "/m:c/n:extra"));
  EXPECT_EQ(nullptr, tree.Id(nullptr, "/m:c/m:extra"));
  EXPECT_EQ(tree.nl, tree.Id(nullptr, "/m:c/n:l"));
}

TEST(GetNodeBySchemaNodeId, GivesNullForWhatCannotBeFound) {
  Tree tree;
  const std::string longName = "/" + std::string(65, 'x');
  for (const char* path :
       {"", "/", "/m:c/", "//c", "/m:c/none", "/none", "/m:c/..", longName.c_str()}) {
    EXPECT_EQ(nullptr, tree.Id(nullptr, path)) << path;
  }
  EXPECT_EQ(nullptr, QMS_MOD_GetNodeBySchemaNodeId(nullptr, tree.c, "l"));
  EXPECT_EQ(nullptr, tree.Id(tree.c, nullptr));
}

TEST(GetNodeUnderAugment, TakesTheAugmentWhoseTargetTextIsTheSame) {
  Tree tree;
  QmsNode* augment = tree.c;
  EXPECT_EQ(tree.below,
            QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, "/m:c", "/n:extra/below", &augment));
  EXPECT_EQ(tree.augment, augment);
  // Written with a prefix, a trailing slash or a second module name, it is another text.
  for (const char* text : {"/p:c", "/m:c/", "m:c", "/m:cc", ""}) {
    augment = tree.c;
    EXPECT_EQ(nullptr,
              QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, text, "/n:extra", &augment))
        << text;
    EXPECT_EQ(nullptr, augment);
  }
  EXPECT_EQ(tree.extra,
            QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, "/m:c", "/n:extra", nullptr));
}

TEST(GetNodeUnderAugment, TriesEveryAugmentOfThatTargetInOrder) {
  Tree tree;
  QmsNode* second = Top(tree.n, QMS_NODE_AUGMENT, "/m:c");
  QmsNode* more = Child(second, QMS_NODE_LEAF, "more");
  QmsNode* augment = nullptr;
  EXPECT_EQ(more, QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, "/m:c", "/n:more", &augment));
  EXPECT_EQ(second, augment);
}

TEST(GetNodeUnderAugment, DoesNotLookBehindTheRunOfAnAugment) {
  Tree tree;
  Child(tree.c, QMS_NODE_LEAF, "later");
  EXPECT_EQ(nullptr, QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, "/m:c", "/later", nullptr));
}

TEST(GetNodeUnderAugment, GivesNullForNull) {
  Tree tree;
  QmsNode* augment = tree.c;
  EXPECT_EQ(nullptr, QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(nullptr, "/m:c", "/x", &augment));
  EXPECT_EQ(nullptr, augment);
  EXPECT_EQ(nullptr, QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, nullptr, "/x", nullptr));
  EXPECT_EQ(nullptr, QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(tree.n, "/m:c", nullptr, nullptr));
}

TEST(GetTargetNode, FindsNodesThatAnAugmentAdded) {
  Tree tree;
  QmsNode* augment = nullptr;
  EXPECT_EQ(tree.extra, QM_CTX_GetTargetNode(tree.schema.ctx(), "/m:c/n:extra", &augment));
  EXPECT_EQ(tree.augment, augment);
  EXPECT_EQ(tree.l, QM_CTX_GetTargetNode(tree.schema.ctx(), "/m:c/l", &augment));
  EXPECT_EQ(nullptr, augment);
  EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(tree.schema.ctx(), "/m:c/n:extra/m:x", &augment));
}

TEST(GetTargetNode, Rows) {
  Tree tree;
  const struct {
    const char* path;
    QmsNode* node;
  } rows[] = {
      {"/m:c", tree.c},
      {"/m:c/l", tree.l},
      {"/m:c/ch/ca/in", tree.in},
      {"/m:r/input/i", tree.i},
      {"/m:c/extra", tree.extra},
      {"/m:c/n:extra/below", tree.below},
      {"/m:c/m:l", nullptr},  // below an augment of m, of which there is none
      {"/m:c/x", nullptr},
      {"/m:c/l/x", nullptr},
      {"/o:c", nullptr},
      {"", nullptr},
      {"/", nullptr},
      {"/c", nullptr},
      {"/c/l", nullptr},
      {"m:c", nullptr},
      {"m:c/l", nullptr},
      {"/m:c/", nullptr},
      {"//m:c", nullptr},
      {"/m:c//l", nullptr},
      {"/m:c/l[1]", nullptr},
      {"/m:c[1]/l", nullptr},
      {"/m:c/l ", nullptr},
      {"/m:/l", nullptr},
      {"/m:m:c", nullptr},
      {"/:c", nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(row.node, QM_CTX_GetTargetNode(tree.schema.ctx(), row.path, nullptr));
  }
}

TEST(GetTargetNode, APathMayHaveAnyNumberOfSteps) {
  Schema schema;
  QmsNode* node = Top(schema.Module("m"), QMS_NODE_CONTAINER, "a");
  std::string path = "/m:a";
  for (int steps = 1; steps < 100; ++steps) {
    SCOPED_TRACE(steps);
    EXPECT_EQ(node, QM_CTX_GetTargetNode(schema.ctx(), path.c_str(), nullptr));
    EXPECT_EQ(nullptr, QM_CTX_GetTargetNode(schema.ctx(), (path + "/b").c_str(), nullptr));
    node = Child(node, QMS_NODE_CONTAINER, "a");
    path += "/a";
  }
}

TEST(GetTargetNode, NamesOf64CharactersFitAndLongerOnesNameNothing) {
  for (size_t length : {size_t{64}, size_t{65}}) {
    SCOPED_TRACE(length);
    Schema schema;
    const std::string name(length, 'x');
    QmsNode* top = Top(schema.Module("m"), QMS_NODE_CONTAINER, name.c_str());
    QmsNode* child = Child(top, QMS_NODE_LEAF, name.c_str());
    QmsNode* ofModule = Top(schema.Module(name.c_str()), QMS_NODE_CONTAINER, "c");
    const auto find = [&schema](const std::string& path) {
      return QM_CTX_GetTargetNode(schema.ctx(), path.c_str(), nullptr);
    };
    EXPECT_EQ(length == 64 ? top : nullptr, find("/m:" + name));
    EXPECT_EQ(length == 64 ? child : nullptr, find("/m:" + name + "/" + name));
    EXPECT_EQ(length == 64 ? ofModule : nullptr, find("/" + name + ":c"));
  }
}

TEST(FindAugNodeTargetInSelfMod, ResolvesTargetsOfTheModuleItself) {
  Tree tree;
  QmsNode* self = Top(tree.m, QMS_NODE_AUGMENT, "/m:c/inner");
  QmsNode* target = nullptr;
  EXPECT_EQ(QM_OK, QMS_MOD_FindAugNodeTargetInSelfMod(tree.m, self, &target));
  EXPECT_EQ(tree.inner, target);
}

TEST(FindAugNodeTargetInSelfMod, LooksBelowAnAugmentWhenThePathHasAHead) {
  Tree tree;
  QmsNode* stacked = Top(tree.n, QMS_NODE_AUGMENT, "/m:c/n:extra");
  QmsNode* target = nullptr;
  EXPECT_EQ(QM_OK, QMS_MOD_FindAugNodeTargetInSelfMod(tree.n, stacked, &target));
  EXPECT_EQ(tree.extra, target);
}

TEST(FindAugNodeTargetInSelfMod, AnotherModuleIsNoTargetAndNoError) {
  Tree tree;
  QmsNode* target = tree.c;
  EXPECT_EQ(QM_OK, QMS_MOD_FindAugNodeTargetInSelfMod(tree.n, tree.augment, &target));
  EXPECT_EQ(nullptr, target);
  QmsNode* lost = Top(tree.m, QMS_NODE_AUGMENT, "/m:none");
  target = tree.c;
  EXPECT_EQ(QM_OK, QMS_MOD_FindAugNodeTargetInSelfMod(tree.m, lost, &target));
  EXPECT_EQ(nullptr, target);
}

TEST(FindAugNodeTargetInSelfMod, GivesTheStatusOfAFailedSplit) {
  Tree tree;
  QmsNode* bad = Top(tree.m, QMS_NODE_AUGMENT, "no-module");
  QmsNode* target = tree.c;
  EXPECT_EQ(QM_INVALID, QMS_MOD_FindAugNodeTargetInSelfMod(tree.m, bad, &target));
  EXPECT_EQ(nullptr, target);
  EXPECT_EQ(QM_INVALID, QMS_MOD_FindAugNodeTargetInSelfMod(nullptr, bad, &target));
  EXPECT_EQ(QM_INVALID, QMS_MOD_FindAugNodeTargetInSelfMod(tree.m, nullptr, &target));
  EXPECT_EQ(QM_INVALID, QMS_MOD_FindAugNodeTargetInSelfMod(tree.m, bad, nullptr));
}

namespace {

Tree* g_tree;
QmsNode* g_stacked;

void SplitScenario(bool refusing) {
  QmsNode* target = nullptr;
  const uint32_t ret = QMS_MOD_FindAugNodeTargetInSelfMod(g_tree->n, g_stacked, &target);
  EXPECT_EQ(refusing && ret == QM_INVALID ? nullptr : g_tree->extra, target);
}

}  // namespace

TEST(FindAugNodeTargetInSelfMod, SurvivesEveryFailedAllocation) {
  Tree tree;
  g_tree = &tree;
  g_stacked = Top(tree.n, QMS_NODE_AUGMENT, "/m:c/n:extra");
  EXPECT_LT(1u, counting_memory::FailEachAllocation(SplitScenario));
}

TEST(LeafrefPath, IsThatOfTheTypeOrOfATypedef) {
  Tree tree;
  QmsNode* direct = Child(tree.c, QMS_NODE_LEAF, "direct");
  schema_tree::SetLeafref(direct, "../l");
  EXPECT_STREQ("../l", QMS_NODE_GetNextLeafrefPath(direct));
  schema_tree::SetType(tree.l, QMT_BASE_STRING);
  EXPECT_EQ(nullptr, QMS_NODE_GetNextLeafrefPath(tree.l));
  EXPECT_EQ(nullptr, QMS_NODE_GetNextLeafrefPath(tree.c));
  EXPECT_EQ(nullptr, QMS_NODE_GetNextLeafrefPath(nullptr));
}

TEST(GetLeafrefTargetNode, FollowsAChainOnlyWhenAsked) {
  Tree tree;
  QmsNode* first = Child(tree.c, QMS_NODE_LEAF, "first");
  QmsNode* second = Child(tree.inner, QMS_NODE_LEAF, "second");
  schema_tree::SetLeafref(first, "../inner/second");
  schema_tree::SetLeafref(second, "/m:c/l");
  schema_tree::SetType(tree.l, QMT_BASE_STRING);
  EXPECT_EQ(second, QM_NODE_GetLeafrefTargetNode(first, 0));
  EXPECT_EQ(tree.l, QM_NODE_GetLeafrefTargetNode(first, 1));
  EXPECT_EQ(tree.l, QM_NODE_GetLeafrefTargetNode(second, 0));
  EXPECT_EQ(nullptr, QM_NODE_GetLeafrefTargetNode(tree.l, 1));
}

TEST(GetLeafrefTargetNode, ACircleGivesNull) {
  Tree tree;
  QmsNode* first = Child(tree.c, QMS_NODE_LEAF, "first");
  QmsNode* second = Child(tree.c, QMS_NODE_LEAF, "second");
  schema_tree::SetLeafref(first, "../second");
  schema_tree::SetLeafref(second, "../first");
  EXPECT_EQ(nullptr, QM_NODE_GetLeafrefTargetNode(first, 1));
  EXPECT_EQ(second, QM_NODE_GetLeafrefTargetNode(first, 0));
}

TEST(GetLeafrefTargetNode, FollowsAtMost128Lookups) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* last = LeafOf(c, "n0", QMT_BASE_STRING);
  QmsNode* leaf = nullptr;
  for (int i = 1; i <= 129; ++i) {
    leaf = Child(c, QMS_NODE_LEAF, ("n" + std::to_string(i)).c_str());
    schema_tree::SetLeafref(leaf, ("../n" + std::to_string(i - 1)).c_str());
  }
  EXPECT_EQ(last, QM_NODE_GetLeafrefTargetNode(leaf->prev, 1));  // 128 lookups
  EXPECT_EQ(nullptr, QM_NODE_GetLeafrefTargetNode(leaf, 1));     // 129
}

TEST(GetLeafrefTargetNode, AMissingTargetGivesNull) {
  Tree tree;
  QmsNode* first = Child(tree.c, QMS_NODE_LEAF, "first");
  QmsNode* second = Child(tree.c, QMS_NODE_LEAF, "second");
  schema_tree::SetLeafref(first, "../second");
  schema_tree::SetLeafref(second, "../none");
  EXPECT_EQ(second, QM_NODE_GetLeafrefTargetNode(first, 0));
  EXPECT_EQ(nullptr, QM_NODE_GetLeafrefTargetNode(first, 1));
}

TEST(GetLeafrefTargetNode, ATypedefsPathIsLookedUpFromTheLeaf) {
  Tree tree;
  QmsTypedef* td = schema_tree::Typedef(tree.n, "ref", QMT_BASE_STRING);
  // The path is moved from a leaf made for it into the typedef.
  QmsNode* maker = Child(tree.c, QMS_NODE_LEAF, "maker");
  schema_tree::SetLeafref(maker, "../l");
  td->type = *QM_NODE_GetRealType(maker);
  *QM_NODE_GetRealType(maker) = QmtType{};
  schema_tree::SetType(maker, QMT_BASE_STRING);
  schema_tree::Typedef(tree.m, "far", QMT_BASE_STRING);
  schema_tree::DeriveTypedef(tree.m, "far", "n", "ref");
  schema_tree::SetType(tree.l, QMT_BASE_STRING);
  QmsNode* leaf = Child(tree.c, QMS_NODE_LEAF, "leaf");
  schema_tree::SetDerivedType(leaf, "m", "far");
  EXPECT_STREQ("../l", QMS_NODE_GetNextLeafrefPath(leaf));
  EXPECT_EQ(tree.l, QM_NODE_GetLeafrefTargetNode(leaf, 1));
}
