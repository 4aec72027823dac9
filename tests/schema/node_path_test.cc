// SPDX-License-Identifier: BSD-3-Clause
#include "schema/node_path.h"

#include <gtest/gtest.h>

#include <string>

#include <qmodel/error.h>

#include "context/memory.h"
#include "schema/definitions.h"
#include "schema/node.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"

using schema_tree::Child;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

std::string Taken(char* text) {
  std::string result = text == nullptr ? "NULL" : text;
  g_qmMemFreeFunc(text);
  return result;
}

std::string Path(QmsNode* node) {
  return Taken(QMS_NODE_PrintPath(node));
}

}  // namespace

TEST(PrintPath, NamesTheModuleWhereItChanges) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule* n = schema.Module("n");
  QmsNode* a = Top(m, QMS_NODE_CONTAINER, "a");
  QmsNode* b = Child(a, QMS_NODE_CONTAINER, "b");
  QmsNode* x = Child(b, QMS_NODE_CONTAINER, "x", n);
  QmsNode* y = Child(x, QMS_NODE_LEAF, "y");
  QmsNode* back = Child(x, QMS_NODE_LEAF, "back", m);
  EXPECT_EQ("/m:a", Path(a));
  EXPECT_EQ("/m:a/b", Path(b));
  EXPECT_EQ("/m:a/b/n:x/y", Path(y));
  EXPECT_EQ("/m:a/b/n:x/m:back", Path(back));
}

TEST(PrintPath, OfALeafInTheInputOfAnRpc) {
  Schema schema;
  QmsNode* r = Top(schema.Module("m"), QMS_NODE_RPC, "r");
  QmsNode* l = Child(Child(r, QMS_NODE_INPUT, "any name"), QMS_NODE_LEAF, "l");
  QmsNode* o = Child(Child(r, QMS_NODE_OUTPUT, "any name"), QMS_NODE_LEAF, "o");
  EXPECT_EQ("/m:r/input/l", Path(l));
  EXPECT_EQ("/m:r/output/o", Path(o));
}

TEST(PrintPath, ShowsChoicesAndCases) {
  Schema schema;
  QmsNode* c = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* choice = Child(c, QMS_NODE_CHOICE, "ch");
  EXPECT_EQ("/m:c/ch/ca/l", Path(Child(Child(choice, QMS_NODE_CASE, "ca"), QMS_NODE_LEAF, "l")));
}

TEST(PrintPath, HoldsUpTo3095Characters) {
  Schema schema;
  QmsNode* node = Top(schema.Module("m"), QMS_NODE_CONTAINER, "top");  // 6 characters
  for (int i = 0; i < 30; ++i) node = Child(node, QMS_NODE_CONTAINER, std::string(99, 'x').c_str());
  QmsNode* fits = Child(node, QMS_NODE_LEAF, std::string(88, 'y').c_str());
  QmsNode* tooLong = Child(node, QMS_NODE_LEAF, std::string(89, 'y').c_str());
  EXPECT_EQ(3095u, Path(fits).size());
  EXPECT_EQ("NULL", Path(tooLong));
}

TEST(PrintPath, OfATreeDeeperThanTheCallStackIsRefused) {
  Schema schema;
  QmsNode* node = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  for (int i = 0; i < 200000; ++i) node = Child(node, QMS_NODE_CONTAINER, "c");
  EXPECT_EQ("NULL", Path(node));
}

TEST(PrintPath, GivesNullForNullAndForANodeWithoutNameOrModule) {
  QmsNode node{};
  EXPECT_EQ("NULL", Path(nullptr));
  EXPECT_EQ("NULL", Path(&node));
  node.name = "n";
  EXPECT_EQ("NULL", Path(&node));
}

TEST(PrintPathIntoBuffer, GoesOnAtTheGivenLengthAndReports12WhenItDoesNotFit) {
  Schema schema;
  QmsNode* node = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  char buf[16] = "ab";
  uint32_t length = 2;
  EXPECT_EQ(QM_OK, QMS_NODE_PrintJsonPathRecursive(node, buf, sizeof(buf), &length));
  EXPECT_STREQ("ab/m:c", buf);
  EXPECT_EQ(6u, length);
  length = 0;
  EXPECT_EQ(QM_NO_MEMORY, QMS_NODE_PrintJsonPathRecursive(node, buf, 4, &length));
  EXPECT_EQ(0u, length);
  EXPECT_EQ(QM_OK, QMS_NODE_PrintJsonPathRecursive(node, buf, 5, &length));
  EXPECT_STREQ("/m:c", buf);
}

TEST(PrintPathIntoBuffer, RefusesNullWith22) {
  char buf[16];
  uint32_t length = 0;
  QmsNode node{};
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintJsonPathRecursive(nullptr, buf, sizeof(buf), &length));
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintJsonPathRecursive(&node, nullptr, sizeof(buf), &length));
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintJsonPathRecursive(&node, buf, sizeof(buf), nullptr));
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintJsonPathRecursive(&node, buf, sizeof(buf), &length));
}

TEST(ConvertPrefixVal, PutsTheModuleNameInPlaceOfThePrefix) {
  Schema schema;
  QmsModule* module = schema.Module("mod");
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module, "other-module", "o"));
  const std::string longest(64, 'v');
  const struct {
    std::string text;
    std::string converted;
  } rows[] = {{"value", "mod:value"},
              {"mod:value", "mod:value"},
              {"o:value", "other-module:value"},
              {"unknown:value", "NULL"},
              {"", "NULL"},
              {"a b", "NULL"},
              {"o:", "NULL"},
              {":value", "NULL"},
              {longest, "mod:" + longest},
              {longest + "v", "NULL"},
              {"o:" + longest + "v", "NULL"}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.converted, Taken(QMS_MOD_ConvertPrefixValToJsonFormat(module, row.text.c_str())))
        << row.text;
  }
  EXPECT_EQ(nullptr, QMS_MOD_ConvertPrefixValToJsonFormat(nullptr, "value"));
  EXPECT_EQ(nullptr, QMS_MOD_ConvertPrefixValToJsonFormat(module, nullptr));
}

namespace {

QmsNode* g_node;

void PathScenario(bool refusing) {
  const std::string path = Path(g_node);
  EXPECT_TRUE(path == "/m:c" || (refusing && path == "NULL")) << path;
  const std::string value = Taken(QMS_MOD_ConvertPrefixValToJsonFormat(g_node->module, "v"));
  EXPECT_TRUE(value == "m:v" || (refusing && value == "NULL")) << value;
}

}  // namespace

TEST(PrintPath, SurvivesEveryFailedAllocation) {
  Schema schema;
  g_node = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  EXPECT_LT(3u, counting_memory::FailEachAllocation(PathScenario));
}
