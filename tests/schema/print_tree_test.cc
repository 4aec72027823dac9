// SPDX-License-Identifier: BSD-3-Clause
#include "schema/print_tree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "tests/support/counting_memory.h"
#include "tests/support/schema_tree.h"
#include "tests/support/yin.h"
#include "types/type.h"

using schema_tree::Child;
using schema_tree::LeafOf;
using schema_tree::Schema;
using schema_tree::Top;

namespace {

// What an output function received.
struct Output {
  std::string text;
  std::vector<uint32_t> chunks;
  uint32_t refuseFrom = UINT32_MAX;  // number of the first chunk that is refused
};

uint32_t TakeChunk(const char* text, uint32_t length, void* arg) {
  Output* out = static_cast<Output*>(arg);
  EXPECT_EQ(length, strlen(text)) << "a chunk is NUL-terminated";
  EXPECT_TRUE(length > 0 && text[length - 1] == '\n') << "a chunk ends with a whole line";
  if (out->chunks.size() >= out->refuseFrom) return 99;
  out->chunks.push_back(length);
  out->text += text;
  return 0;
}

std::string Printed(QmsModule* module) {
  Output out;
  EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(module, TakeChunk, &out));
  return out.text;
}

std::string PrintedNode(QmsNode* node) {
  Output out;
  EXPECT_EQ(QM_OK, QM_NODE_PrintNodesTree(node, TakeChunk, &out));
  return out.text;
}

std::string PrintedHeader(QmsNode* node) {
  Output out;
  EXPECT_EQ(QM_OK, QM_NODE_PrintNodeHeader(node, TakeChunk, &out));
  return out.text;
}

// Module ex with what other modules of the folder add to it.
struct Example {
  yin::Context ctx;
  Example() {
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, QMODEL_TEST_MODELS "/print_tree"));
    for (const char* name : {"tgt", "ex", "oth"}) EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name));
  }
  QmsModule* Module(const char* name) { return QM_CTX_GetModuleByModName(ctx, name); }
};

// A module m that is printed after the test has built its tree.
struct Built {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* c = Top(m, QMS_NODE_CONTAINER, "c");
  // The printed tree without its first two lines, which are always the same.
  std::string BelowC() {
    const std::string text = Printed(m);
    const std::string start = "module: m\n+--rw c\n";
    EXPECT_EQ(start, text.substr(0, start.size()));
    return text.substr(start.size());
  }
};

void Append(QmDict* dict, QmsNode* node, const char* feature) {
  EXPECT_EQ(QM_OK,
            QMS_NODE_AppendOneIfFeat(dict, &node->ifFeatures, &node->ifFeatureCount, "m", feature));
}

}  // namespace

TEST(PrintModelTree, ShowsEveryKindOfNode) {
  Example example;
  EXPECT_EQ(
      "module: ex\n"
      "+--rw sys!\n"
      "|  +--rw name?       string <box>\n"
      "|  +--rw id          uint32\n"
      "|  +--rw user* [uid gid]\n"
      "|  |  +--rw uid     uint32\n"
      "|  |  +--rw gid     uint32\n"
      "|  |  +--rw role*   ex:percent\n"
      "|  |  +---x reset\n"
      "|  |     +---w input\n"
      "|  |     |  +---w why?   string\n"
      "|  |     +--ro output\n"
      "|  |        +--ro done?   boolean\n"
      "|  +--rw (mode)? <auto>\n"
      "|  |  +--:(auto)\n"
      "|  |  |  +--rw speed?   uint8\n"
      "|  |  +--:(manual)\n"
      "|  |     +--rw manual?   string\n"
      "|  +--ro stats\n"
      "|  |  +--ro hits?   uint64\n"
      "|  +--rw blob?       anydata\n"
      "|  +--rw raw         anyxml\n"
      "|  +---n alarm\n"
      "|  |  +--ro why?   string\n"
      "|  x--rw old?        string\n"
      "|  o--ro dead?       string\n"
      "|  +--rw oth:note?   string\n"
      "+--rw ref?   -> /ex:sys/name\n"
      "+--rw val?   union\n"
      "augment /tgt:top:\n"
      "+--rw extra?   int32\n"
      "rpcs:\n"
      "+---x go\n"
      "|  +---w input\n"
      "|  |  +---w x?   string\n"
      "|  +--ro output\n"
      "|     +--ro y?   string\n"
      "+---x stop\n"
      "notifications:\n"
      "+---n ev\n"
      "   +--ro what?   string\n",
      Printed(example.Module("ex")));
}

TEST(PrintModelTree, PrintsTheRunOfAnAugmentUnderItsTargetPath) {
  Example example;
  EXPECT_EQ(
      "module: oth\n"
      "augment /ex:sys:\n"
      "+--rw note?   string\n",
      Printed(example.Module("oth")));
  EXPECT_EQ(
      "module: tgt\n"
      "+--rw top\n"
      "   +--rw own?        string\n"
      "   +--rw ex:extra?   int32\n",
      Printed(example.Module("tgt")));
}

TEST(PrintModelTree, PrintsAPendingAugmentInTheSameWay) {
  yin::Context ctx;
  const std::string body =
      "<import module=\"gone\"><prefix value=\"g\"/></import>"
      "<augment target-node=\"/g:x\" xmlns:g=\"urn:gone\">"
      "<leaf name=\"note\"><type name=\"string\"/></leaf></augment>";
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("a", body).c_str()));
  EXPECT_EQ("module: a\naugment /gone:x:\n+--rw note?   string\n",
            Printed(QM_CTX_GetModuleByModName(ctx, "a")));
}

TEST(PrintModelTree, OfAModuleWithoutNodesIsItsFirstLine) {
  Schema schema;
  EXPECT_EQ("module: empty\n", Printed(schema.Module("empty")));
}

TEST(PrintModelTree, ShowsNoHeadlineOfAnEmptyList) {
  Built built;
  EXPECT_EQ("module: m\n+--rw c\n", Printed(built.m));
}

TEST(PrintModelTree, RefusesNullWith22) {
  Schema schema;
  Output out;
  EXPECT_EQ(QM_INVALID, QM_MOD_PrintModelTree(nullptr, TakeChunk, &out));
  EXPECT_EQ(QM_INVALID, QM_MOD_PrintModelTree(schema.Module("m"), nullptr, &out));
}

TEST(PrintModelTree, Is12WithoutMemoryForTheBuffer) {
  Built built;
  Output out;
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QM_MOD_PrintModelTree(built.m, TakeChunk, &out));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ("", out.text);
}

TEST(PrintContainer, APresenceContainerEndsInAnExclamationMark) {
  Built built;
  Child(built.c, QMS_NODE_CONTAINER, "p")->flags = QMS_NODE_PRESENCE;
  Child(built.c, QMS_NODE_CONTAINER, "q");
  EXPECT_EQ("   +--rw p!\n   +--rw q\n", built.BelowC());
}

TEST(PrintList, ShowsItsKeysInBrackets) {
  Built built;
  QmsNode* list = Child(built.c, QMS_NODE_LIST, "l");
  LeafOf(list, "a", QMT_BASE_INT8)->flags = QMS_NODE_KEY;
  LeafOf(list, "between", QMT_BASE_INT8);
  LeafOf(list, "b", QMT_BASE_INT8)->flags = QMS_NODE_KEY;
  // The brackets show the leaves that are there, not the number kept.
  list->keyCount = 3;
  EXPECT_EQ(
      "   +--rw l* [a b]\n"
      "      +--rw a          int8\n"
      "      +--rw between?   int8\n"
      "      +--rw b          int8\n",
      built.BelowC());
}

TEST(PrintList, WithoutKeysHasNoBrackets) {
  Built built;
  QmsNode* list = Child(built.c, QMS_NODE_LIST, "l");
  LeafOf(list, "a", QMT_BASE_INT8);
  EXPECT_EQ("   +--rw l*\n      +--rw a?   int8\n", built.BelowC());
}

TEST(PrintLeaf, MarksOptionalMandatoryAndKeyLeaves) {
  Built built;
  LeafOf(built.c, "optional", QMT_BASE_STRING);
  LeafOf(built.c, "mandatory", QMT_BASE_STRING)->flags = QMS_NODE_MANDATORY_TRUE;
  LeafOf(built.c, "said-no", QMT_BASE_STRING)->flags = QMS_NODE_MANDATORY_FALSE;
  EXPECT_EQ(
      "   +--rw optional?    string\n"
      "   +--rw mandatory    string\n"
      "   +--rw said-no?     string\n",
      built.BelowC());
}

TEST(PrintLeaf, ShowsOnlyItsOwnDefault) {
  Built built;
  schema_tree::Typedef(built.m, "t", QMT_BASE_INT8);
  ASSERT_TRUE(InternText(built.schema.dict(), &built.m->typedefs[0].defaultValue, "5"));
  QmsNode* own = LeafOf(built.c, "own", QMT_BASE_INT8);
  ASSERT_TRUE(
      InternText(built.schema.dict(), &static_cast<QmsLeaf*>(own->payload)->defaultValue, "7"));
  schema_tree::SetDerivedType(Child(built.c, QMS_NODE_LEAF, "inherited"), "m", "t");
  EXPECT_EQ(
      "   +--rw own?         int8 <7>\n"
      "   +--rw inherited?   m:t\n",
      built.BelowC());
}

TEST(PrintLeafList, ShowsNoDefaults) {
  Built built;
  QmsNode* list = Child(built.c, QMS_NODE_LEAF_LIST, "ll");
  schema_tree::SetType(list, QMT_BASE_INT8);
  const char* values[] = {"1"};
  ASSERT_EQ(QM_OK, QMS_NODE_AppendLeaflistDefaults(
                       built.schema.dict(), static_cast<QmsLeafList*>(list->payload), 1, values));
  EXPECT_EQ("   +--rw ll*   int8\n", built.BelowC());
}

TEST(PrintStatus, DeprecatedIsXAndObsoleteIsO) {
  Built built;
  LeafOf(built.c, "d", QMT_BASE_INT8)->flags = QMS_NODE_DEPRECATED;
  LeafOf(built.c, "o", QMT_BASE_INT8)->flags = QMS_NODE_OBSOLETE;
  LeafOf(built.c, "b", QMT_BASE_INT8)->flags = QMS_NODE_OBSOLETE | QMS_NODE_DEPRECATED;
  EXPECT_EQ("   x--rw d?   int8\n   o--rw o?   int8\n   o--rw b?   int8\n", built.BelowC());
}

TEST(PrintStatus, MarksCasesOperationsAndNotificationsButNotInputAndOutput) {
  Built built;
  QmsNode* choice = Child(built.c, QMS_NODE_CHOICE, "ch");
  Child(choice, QMS_NODE_CASE, "ca")->flags = QMS_NODE_OBSOLETE;
  Child(choice, QMS_NODE_CONTAINER, "short")->flags = QMS_NODE_DEPRECATED;
  QmsNode* action = Child(built.c, QMS_NODE_ACTION, "act");
  action->flags = QMS_NODE_DEPRECATED;
  Child(action, QMS_NODE_INPUT, "input")->flags = QMS_NODE_DEPRECATED;
  Child(action, QMS_NODE_OUTPUT, "output")->flags = QMS_NODE_OBSOLETE;
  Child(built.c, QMS_NODE_NOTIFICATION, "n")->flags = QMS_NODE_OBSOLETE;
  EXPECT_EQ(
      "   +--rw (ch)?\n"
      "   |  o--:(ca)\n"
      "   |  x--:(short)\n"
      "   |     x--rw short\n"
      "   x---x act\n"
      "   |  +---w input\n"
      "   |  +--ro output\n"
      "   o---n n\n",
      built.BelowC());
}

TEST(PrintChoice, AMandatoryOneHasNoQuestionMark) {
  Built built;
  Child(built.c, QMS_NODE_CHOICE, "must")->flags = QMS_NODE_MANDATORY_TRUE;
  Child(built.c, QMS_NODE_CHOICE, "may");
  EXPECT_EQ("   +--rw (must)\n   +--rw (may)?\n", built.BelowC());
}

TEST(PrintChoice, AShorthandChildIsAloneInItsCase) {
  Built built;
  QmsNode* choice = Child(built.c, QMS_NODE_CHOICE, "ch");
  QmsNode* box = Child(choice, QMS_NODE_CONTAINER, "box");
  LeafOf(box, "l", QMT_BASE_INT8);
  LeafOf(choice, "much-longer", QMT_BASE_INT8);
  LeafOf(choice, "x", QMT_BASE_INT8);
  LeafOf(built.c, "after", QMT_BASE_INT8);
  EXPECT_EQ(
      "   +--rw (ch)?\n"
      "   |  +--:(box)\n"
      "   |  |  +--rw box\n"
      "   |  |     +--rw l?   int8\n"
      "   |  +--:(much-longer)\n"
      "   |  |  +--rw much-longer?   int8\n"
      "   |  +--:(x)\n"
      "   |     +--rw x?             int8\n"
      "   +--rw after?   int8\n",
      built.BelowC());
}

TEST(PrintAccess, UnderOperationsAndNotificationsIgnoresConfig) {
  Built built;
  QmsNode* action = Child(built.c, QMS_NODE_ACTION, "a");
  QmsNode* box = Child(Child(action, QMS_NODE_INPUT, "input"), QMS_NODE_CONTAINER, "box");
  box->flags = QMS_NODE_CONFIG_FALSE;
  LeafOf(box, "l", QMT_BASE_INT8);
  QmsNode* out = Child(action, QMS_NODE_OUTPUT, "output");
  LeafOf(out, "l", QMT_BASE_INT8)->flags = QMS_NODE_CONFIG_TRUE;
  LeafOf(built.c, "after", QMT_BASE_INT8);
  EXPECT_EQ(
      "   +---x a\n"
      "   |  +---w input\n"
      "   |  |  +---w box\n"
      "   |  |     +---w l?   int8\n"
      "   |  +--ro output\n"
      "   |     +--ro l?   int8\n"
      "   +--rw after?   int8\n",
      built.BelowC());
}

// A split module may bring the output in one file and the input in a later one.
TEST(PrintOperation, ShowsTheInputBeforeTheOutputWhereverTheyStand) {
  Built built;
  QmsNode* action = Child(built.c, QMS_NODE_ACTION, "a");
  LeafOf(Child(action, QMS_NODE_OUTPUT, "output"), "o", QMT_BASE_INT8);
  LeafOf(Child(action, QMS_NODE_INPUT, "input"), "i", QMT_BASE_INT8);
  EXPECT_EQ(
      "   +---x a\n"
      "      +---w input\n"
      "      |  +---w i?   int8\n"
      "      +--ro output\n"
      "         +--ro o?   int8\n",
      built.BelowC());
}

TEST(PrintOperation, ShowsBothOfTwoInputs) {
  Built built;
  QmsNode* action = Child(built.c, QMS_NODE_ACTION, "a");
  LeafOf(Child(action, QMS_NODE_INPUT, "input"), "i", QMT_BASE_INT8);
  LeafOf(Child(action, QMS_NODE_INPUT, "input"), "j", QMT_BASE_INT8);
  EXPECT_EQ(
      "   +---x a\n"
      "      +---w input\n"
      "      |  +---w i?   int8\n"
      "      +---w input\n"
      "         +---w j?   int8\n",
      built.BelowC());
}

TEST(PrintAccess, OfAnAugmentIsThatOfThePlaceOfItsRun) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsModule* n = schema.Module("n");
  QmsNode* rpc = Top(m, QMS_NODE_RPC, "r");
  QmsNode* box = Child(Child(rpc, QMS_NODE_INPUT, "input"), QMS_NODE_CONTAINER, "box");
  QmsNode* output = Child(rpc, QMS_NODE_OUTPUT, "output");
  QmsNode* note = Top(m, QMS_NODE_NOTIFICATION, "note");
  const struct {
    const char* path;
    QmsNode* target;
    const char* child;
  } rows[] = {{"/m:r/input/box", box, "i"},
              {"/m:r/output", output, "o"},
              {"/m:note", note, "n"},
              {"/m:gone", nullptr, "p"}};
  for (const auto& row : rows) {
    QmsNode* augment = Top(n, QMS_NODE_AUGMENT, row.path);
    LeafOf(augment, row.child, QMT_BASE_INT8);
    if (row.target != nullptr) schema_tree::Couple(augment, row.target);
  }
  EXPECT_EQ(
      "module: n\n"
      "augment /m:r/input/box:\n"
      "+---w i?   int8\n"
      "augment /m:r/output:\n"
      "+--ro o?   int8\n"
      "augment /m:note:\n"
      "+--ro n?   int8\n"
      "augment /m:gone:\n"
      "+--rw p?   int8\n",
      Printed(n));
}

TEST(PrintAugment, EndsAtItsRunWithoutConnectorAndWithItsOwnColumn) {
  Schema schema;
  QmsModule* n = schema.Module("n");
  QmsNode* target = Top(schema.Module("m"), QMS_NODE_CONTAINER, "c");
  QmsNode* first = Top(n, QMS_NODE_AUGMENT, "/m:c");
  LeafOf(first, "x", QMT_BASE_INT8);
  LeafOf(Child(first, QMS_NODE_CONTAINER, "box"), "in", QMT_BASE_INT8);
  QmsNode* second = Top(n, QMS_NODE_AUGMENT, "/m:c");
  LeafOf(second, "a-long-name", QMT_BASE_INT8);
  schema_tree::Couple(first, target);
  schema_tree::Couple(second, target);
  EXPECT_EQ(
      "module: n\n"
      "augment /m:c:\n"
      "+--rw x?     int8\n"
      "+--rw box\n"
      "   +--rw in?   int8\n"
      "augment /m:c:\n"
      "+--rw a-long-name?   int8\n",
      Printed(n));
}

TEST(PrintAugment, OfAChoiceShowsShorthandCasesWithTheColumnOfTheChoice) {
  Schema schema;
  QmsModule* n = schema.Module("n");
  QmsNode* choice = Child(Top(schema.Module("m"), QMS_NODE_CONTAINER, "c"), QMS_NODE_CHOICE, "ch");
  LeafOf(choice, "own-one", QMT_BASE_INT8);  // "m:own-one" in the tree of n
  QmsNode* augment = Top(n, QMS_NODE_AUGMENT, "/m:c/ch");
  LeafOf(augment, "x", QMT_BASE_INT8);
  LeafOf(augment, "y", QMT_BASE_INT8);
  schema_tree::Couple(augment, choice);
  EXPECT_EQ(
      "module: n\n"
      "augment /m:c/ch:\n"
      "+--:(x)\n"
      "|  +--rw x?           int8\n"
      "+--:(y)\n"
      "   +--rw y?           int8\n",
      Printed(n));
}

// Nothing stands below such a node in data, whatever a module augments there.
TEST(PrintAugment, OfALeafOrAnyOtherNodeWithoutChildrenShowsNothingBelowItsLine) {
  yin::Context ctx;
  const std::string choice =
      "<choice name=\"ch\"><leaf name=\"short\"><type name=\"string\"/></leaf></choice>";
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(
                       ctx, yin::Module("m",
                                        "<leaf name=\"l\"><type name=\"string\"/></leaf>"
                                        "<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>"
                                        "<anydata name=\"d\"/><anyxml name=\"x\"/>" +
                                            choice)
                                .c_str()));
  std::string augments = "<import module=\"m\"><prefix value=\"m\"/></import>";
  for (const char* target : {"l", "ll", "d", "x", "ch/m:short"}) {
    augments += "<augment target-node=\"/m:" + std::string(target) +
                "\" xmlns:m=\"urn:m\"><container name=\"c\"><leaf name=\"below\">"
                "<type name=\"int8\"/></leaf></container></augment>";
  }
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("a", augments).c_str()));
  QmsModule* m = QM_CTX_GetModuleByModName(ctx, "m");
  for (const char* name : {"l", "ll", "d", "x"}) {
    ASSERT_NE(nullptr, yin::Find(m, std::string(name) + "/c/below")) << "not coupled to " << name;
  }
  EXPECT_EQ(
      "module: m\n"
      "+--rw l?    string\n"
      "+--rw ll*   string\n"
      "+--rw d?    anydata\n"
      "+--rw x?    anyxml\n"
      "+--rw (ch)?\n"
      "   +--:(short)\n"
      "      +--rw short?   string\n",
      Printed(m));
  EXPECT_EQ("module: m\n+--rw l?    string\n", PrintedNode(yin::Find(m, "l")));
  const std::string first =
      "module: a\n"
      "augment /m:l:\n"
      "+--rw c\n"
      "   +--rw below?   int8\n";
  EXPECT_EQ(first, Printed(QM_CTX_GetModuleByModName(ctx, "a")).substr(0, first.size()));
}

TEST(PrintFeatures, ANodeThatIsNotEnabledIsLeftOutWithItsSubtree) {
  Built built;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(built.m, "off"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(built.m, "on"));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(built.m, "on"));
  LeafOf(built.c, "a", QMT_BASE_INT8);
  QmsNode* hidden = Child(built.c, QMS_NODE_CONTAINER, "hidden-one");
  LeafOf(hidden, "below", QMT_BASE_INT8);
  Append(built.schema.dict(), hidden, "off");
  QmsNode* shown = LeafOf(built.c, "b", QMT_BASE_INT8);
  Append(built.schema.dict(), shown, "on");
  // The column is that of the whole list, the hidden names counted.
  EXPECT_EQ(
      "   +--rw a?            int8\n"
      "   +--rw b?            int8\n",
      built.BelowC());
}

TEST(PrintFeatures, AnAugmentThatIsNotEnabledIsLeftOutWithItsHeadline) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(m, "off"));
  QmsNode* augment = Top(m, QMS_NODE_AUGMENT, "/x:y");
  LeafOf(augment, "l", QMT_BASE_INT8);
  Append(schema.dict(), augment, "off");
  EXPECT_EQ("module: m\n", Printed(m));
}

TEST(PrintType, ShowsTheNameOfEachBuiltInType) {
  const char* names[] = {nullptr,       "binary",      "bits",
                         "boolean",     "decimal64",   "empty",
                         "enumeration", "identityref", "instance-identifier",
                         "int8",        "int16",       "int32",
                         "int64",       "leafref",     "string",
                         "uint8",       "uint16",      "uint32",
                         "uint64",      "union"};
  for (uint32_t baseType = 1; baseType < 20; ++baseType) {
    Built built;
    LeafOf(built.c, "l", baseType);
    EXPECT_EQ(std::string("   +--rw l?   ") + names[baseType] + "\n", built.BelowC());
  }
}

TEST(PrintType, ALeafWithoutTypeFailsThePrint) {
  Built built;
  Child(built.c, QMS_NODE_LEAF, "l");
  Output out;
  EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(built.m, TakeChunk, &out));
  EXPECT_EQ("", out.text);
}

TEST(PrintType, ATypedefOfNoModuleIsItsBareName) {
  Built built;
  QmsNode* leaf = Child(built.c, QMS_NODE_LEAF, "l");
  schema_tree::SetDerivedType(leaf, "m", "t");
  ReleaseText(built.schema.dict(),
              &QMT_TYPE_GetTypeConsDataDerived(QM_NODE_GetRealType(leaf))->moduleName);
  EXPECT_EQ("   +--rw l?   t\n", built.BelowC());
}

TEST(PrintNames, OfOtherModulesCarryTheModuleInEveryKindOfLine) {
  Built built;
  QmsModule* n = built.schema.Module("n");
  schema_tree::SetType(Child(built.c, QMS_NODE_LEAF, "l", n), QMT_BASE_INT8);
  QmsNode* choice = Child(built.c, QMS_NODE_CHOICE, "ch", n);
  Child(choice, QMS_NODE_CASE, "ca");
  Child(choice, QMS_NODE_CONTAINER, "own", built.m);
  Child(built.c, QMS_NODE_ACTION, "act", n);
  EXPECT_EQ(
      "   +--rw n:l?    int8\n"
      "   +--rw (n:ch)?\n"
      "   |  +--:(n:ca)\n"
      "   |  +--:(own)\n"
      "   |     +--rw own\n"
      "   +---x n:act\n",
      built.BelowC());
}

TEST(PrintGetMaxLen, CountsContainerToAnyxmlWithForeignModuleNames) {
  Built built;
  QmsModule* n = built.schema.Module("other");
  EXPECT_EQ(0u, QMS_NODE_PrintGetMaxLen(built.m, nullptr));
  QmsNode* first = Child(built.c, QMS_NODE_LEAF, "four");
  EXPECT_EQ(4u, QMS_NODE_PrintGetMaxLen(built.m, first));
  for (uint32_t kind : {QMS_NODE_ACTION, QMS_NODE_NOTIFICATION, QMS_NODE_INPUT}) {
    Child(built.c, kind, "not-counted");
  }
  EXPECT_EQ(4u, QMS_NODE_PrintGetMaxLen(built.m, first));
  Child(built.c, QMS_NODE_ANYXML, "x", n);
  EXPECT_EQ(7u, QMS_NODE_PrintGetMaxLen(built.m, first));
  EXPECT_EQ(6u, QMS_NODE_PrintGetMaxLen(n, first));  // "m:four"
}

TEST(PrintAlignSpace, RefusesANameLongerThanTheColumnWith22) {
  char buf[32] = "";
  QmsPrintText text{buf, sizeof(buf), 0, nullptr, nullptr};
  QmsPrintPara para{};
  para.text = &text;
  para.nameWidth = 5;
  EXPECT_EQ(QM_OK, QMS_NODE_PrintNodeNameAlignSpace(5, &para));
  EXPECT_EQ(std::string(3, ' '), buf);
  EXPECT_EQ(QM_OK, QMS_NODE_PrintNodeNameAlignSpace(1, &para));
  EXPECT_EQ(std::string(10, ' '), buf);
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintNodeNameAlignSpace(6, &para));
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintNodeNameAlignSpace(0, nullptr));
}

TEST(PrintGetRetract, SetsTheBitOfTheParentsLevelWhenSomethingFollows) {
  Built built;
  QmsNode* a = Child(built.c, QMS_NODE_CONTAINER, "a");
  QmsNode* b = Child(built.c, QMS_NODE_CONTAINER, "b");
  QmsPrintPara para{};
  para.connectors = 0x2;
  para.level = 2;
  EXPECT_EQ(0x6u, QMS_NODE_PrintGetRetract(a, &para));
  EXPECT_EQ(0x2u, QMS_NODE_PrintGetRetract(b, &para));
  para.last = a;
  EXPECT_EQ(0x2u, QMS_NODE_PrintGetRetract(a, &para));
  para.last = nullptr;
  para.flags = QMS_PRINT_NO_CONNECTORS;
  EXPECT_EQ(0x2u, QMS_NODE_PrintGetRetract(a, &para));
  para.flags = 0;
  para.level = 31;
  EXPECT_EQ(0x80000002u, QMS_NODE_PrintGetRetract(a, &para));
  para.level = 32;
  EXPECT_EQ(0x2u, QMS_NODE_PrintGetRetract(a, &para));
}

TEST(PrintCheckNextCase, TellsWhetherACaseFollows) {
  Built built;
  QmsNode* choice = Child(built.c, QMS_NODE_CHOICE, "ch");
  QmsNode* first = Child(choice, QMS_NODE_CASE, "a");
  QmsNode* second = Child(choice, QMS_NODE_CASE, "b");
  EXPECT_EQ(1u, QMS_NODE_PrintCheckNextCase(first));
  EXPECT_EQ(0u, QMS_NODE_PrintCheckNextCase(second));
}

TEST(InheritPrintPara, AChildLevelIsACopyOneLevelDeeper) {
  QmsPrintText text{};
  QmsNode node{};
  const QmsPrintPara parent{0x6,     2,     9,    QMS_PRINT_ACCESS_READ, QMS_PRINT_NO_CONNECTORS,
                            nullptr, &node, &text};
  QmsPrintPara child{};
  QMS_NODE_InheritPrintPara(&child, &parent);
  EXPECT_EQ(3u, child.level);
  EXPECT_EQ(0x6u, child.connectors);
  EXPECT_EQ(static_cast<uint32_t>(QMS_PRINT_ACCESS_READ), child.access);
  EXPECT_EQ(static_cast<uint32_t>(QMS_PRINT_NO_CONNECTORS), child.flags);
  EXPECT_EQ(&text, child.text);
}

TEST(PrintLevels, Above31PrintWithoutConnectors) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* node = Top(m, QMS_NODE_CONTAINER, "c1");
  Top(m, QMS_NODE_CONTAINER, "s");
  for (int level = 2; level <= 40; ++level) {
    QmsNode* parent = node;
    node = Child(parent, QMS_NODE_CONTAINER, "c");
    Child(parent, QMS_NODE_CONTAINER, "s");
  }
  Child(node, QMS_NODE_CONTAINER, "deepest");
  std::string expected;
  for (int level = 1; level <= 40; ++level) expected += level <= 31 ? "|  " : "   ";
  EXPECT_NE(std::string::npos, Printed(m).find("\n" + expected + "+--rw deepest\n"));
}

TEST(PrintChunks, TheBufferIsEmptiedBeforeALineWhenMoreThan7167BytesAreInUse) {
  Schema schema;
  QmsModule* m = schema.Module("m");  // "module: m\n" is 10 bytes
  // "+--rw " + name + "\n": lines of 100 bytes after one that makes a round sum.
  Top(m, QMS_NODE_CONTAINER, std::string(50, 'a').c_str());  // 57: 67 in use
  for (int i = 0; i < 72; ++i) Top(m, QMS_NODE_CONTAINER, std::string(93, 'x').c_str());
  Output out;
  EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(m, TakeChunk, &out));
  // 67 + 71 * 100 = 7167 is not more than 7167, so one more line joins the chunk.
  EXPECT_EQ((std::vector<uint32_t>{7267}), out.chunks);
  Top(m, QMS_NODE_CONTAINER, "z");
  Output two;
  EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(m, TakeChunk, &two));
  EXPECT_EQ((std::vector<uint32_t>{7267, 8}), two.chunks);
  EXPECT_EQ(out.text + "+--rw z\n", two.text);
}

TEST(PrintChunks, ALineThatDoesNotFitFailsWith1AfterWholeChunks) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* last = nullptr;
  Top(m, QMS_NODE_CONTAINER, std::string(50, 'a').c_str());
  for (int i = 0; i < 71; ++i) Top(m, QMS_NODE_CONTAINER, std::string(93, 'x').c_str());
  // 7167 bytes are in use: 1025 are left, the NUL counted.
  last = Top(m, QMS_NODE_CONTAINER, std::string(1024 - 7, 'y').c_str());
  Output fits;
  EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(m, TakeChunk, &fits));
  EXPECT_EQ((std::vector<uint32_t>{8191}), fits.chunks);
  ASSERT_TRUE(InternText(schema.dict(), &last->name, std::string(1025 - 7, 'y').c_str()));
  Output tooLong;
  EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(m, TakeChunk, &tooLong));
  EXPECT_TRUE(tooLong.chunks.empty());
}

TEST(PrintChunks, HeadlinesFitBehindAFullBuffer) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  Top(m, QMS_NODE_CONTAINER, std::string(50, 'a').c_str());
  for (int i = 0; i < 71; ++i) Top(m, QMS_NODE_CONTAINER, std::string(93, 'x').c_str());
  Top(m, QMS_NODE_CONTAINER, std::string(1024 - 7, 'y').c_str());  // 8191 in use
  Top(m, QMS_NODE_RPC, "r");
  Output out;
  EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(m, TakeChunk, &out));
  EXPECT_EQ((std::vector<uint32_t>{8191, 14}), out.chunks);  // "rpcs:\n+---x r\n"
}

TEST(PrintChunks, AFailingOutputFunctionEndsThePrintWith1) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  for (int i = 0; i < 300; ++i) Top(m, QMS_NODE_CONTAINER, std::string(93, 'x').c_str());
  for (uint32_t refuseFrom : {0u, 1u, 4u}) {
    Output out;
    out.refuseFrom = refuseFrom;
    EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(m, TakeChunk, &out)) << refuseFrom;
    EXPECT_EQ(refuseFrom, out.chunks.size());
  }
}

TEST(PrintLevels, ATreeDeeperThanTheCallStackFailsWith1) {
  Schema schema;
  QmsModule* m = schema.Module("m");
  QmsNode* node = Top(m, QMS_NODE_CONTAINER, "c");
  for (int i = 0; i < 100000; ++i) node = Child(node, QMS_NODE_CONTAINER, "c");
  Output out;
  EXPECT_EQ(QM_FAILED, QM_MOD_PrintModelTree(m, TakeChunk, &out));
  EXPECT_EQ(QM_FAILED, QM_NODE_PrintNodesTree(node, TakeChunk, &out));
}

TEST(PrintNodeHeader, ShowsTheModuleAndTheAncestorsFromTheTopDown) {
  Example example;
  QmsNode* uid = yin::Find(example.Module("ex"), "sys/user/uid");
  ASSERT_NE(nullptr, uid);
  EXPECT_EQ(
      "module: ex\n"
      "+--rw sys!\n"
      "   +--rw user* [uid gid]\n",
      PrintedHeader(uid));
  EXPECT_EQ("module: ex\n", PrintedHeader(yin::Find(example.Module("ex"), "sys")));
}

TEST(PrintNodeHeader, ShowsTheHeadlineOfAnRpcOrNotification) {
  Example example;
  EXPECT_EQ("module: ex\nrpcs:\n+---x go\n   +---w input\n",
            PrintedHeader(yin::Find(example.Module("ex"), "go/input/x")));
  EXPECT_EQ("module: ex\nnotifications:\n+---n ev\n",
            PrintedHeader(yin::Find(example.Module("ex"), "ev/what")));
  EXPECT_EQ("module: ex\nrpcs:\n", PrintedHeader(yin::Find(example.Module("ex"), "stop")));
}

TEST(PrintNodesTree, ShowsTheSubtreeAtItsOwnLevel) {
  Example example;
  EXPECT_EQ(
      "module: ex\n"
      "+--rw sys!\n"
      "   +--rw user* [uid gid]\n"
      "      +--rw uid     uint32\n"
      "      +--rw gid     uint32\n"
      "      +--rw role*   ex:percent\n"
      "      +---x reset\n"
      "         +---w input\n"
      "         |  +---w why?   string\n"
      "         +--ro output\n"
      "            +--ro done?   boolean\n",
      PrintedNode(yin::Find(example.Module("ex"), "sys/user")));
}

TEST(PrintNodesTree, ALineIsThatOfTheWholeTree) {
  Example example;
  QmsModule* ex = example.Module("ex");
  EXPECT_EQ("module: ex\n+--rw sys!\n   +--rw id          uint32\n",
            PrintedNode(yin::Find(ex, "sys/id")));
  EXPECT_EQ("module: ex\nrpcs:\n+---x go\n   +--ro output\n      +--ro y?   string\n",
            PrintedNode(yin::Find(ex, "go/output/y")));
  EXPECT_EQ(
      "module: ex\n+--rw sys!\n   +--rw (mode)? <auto>\n      +--:(manual)\n"
      "         +--rw manual?   string\n",
      PrintedNode(yin::Find(ex, "sys/mode/manual")));
  EXPECT_EQ("module: ex\n+--rw sys!\n   +---n alarm\n      +--ro why?   string\n",
            PrintedNode(yin::Find(ex, "sys/alarm/why")));
}

TEST(PrintNodesTree, ACoupledNodeIsPrintedInTheTreeOfItsTarget) {
  Example example;
  EXPECT_EQ("module: ex\n+--rw sys!\n   +--rw oth:note?   string\n",
            PrintedNode(yin::Find(example.Module("ex"), "sys/note")));
}

TEST(PrintNodesTree, BelowAShorthandContainerTheCaseIsShown) {
  Built built;
  QmsNode* choice = Child(built.c, QMS_NODE_CHOICE, "ch");
  QmsNode* leaf = LeafOf(Child(choice, QMS_NODE_CONTAINER, "box"), "l", QMT_BASE_INT8);
  Child(choice, QMS_NODE_CONTAINER, "other");
  EXPECT_EQ(
      "module: m\n"
      "+--rw c\n"
      "   +--rw (ch)?\n"
      "      +--:(box)\n"
      "         +--rw box\n"
      "            +--rw l?   int8\n",
      PrintedNode(leaf));
}

TEST(PrintNodesTree, ANodeBelowAPendingAugmentIsRefusedWith22) {
  Schema schema;
  QmsNode* augment = Top(schema.Module("m"), QMS_NODE_AUGMENT, "/x:y");
  QmsNode* box = Child(augment, QMS_NODE_CONTAINER, "box");
  QmsNode* leaf = LeafOf(box, "l", QMT_BASE_INT8);
  Output out;
  for (QmsNode* node : {box, leaf}) {
    EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodesTree(node, TakeChunk, &out));
    EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodeHeader(node, TakeChunk, &out));
  }
  EXPECT_EQ("", out.text);
  EXPECT_EQ("module: m\naugment /x:y:\n+--rw box\n   +--rw l?   int8\n", PrintedNode(augment));
}

TEST(PrintNodesTree, RefusesNullWith22) {
  Built built;
  Output out;
  QmsNode bare{};
  EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodesTree(nullptr, TakeChunk, &out));
  EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodesTree(built.c, nullptr, &out));
  EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodesTree(&bare, TakeChunk, &out));
  EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodeHeader(nullptr, TakeChunk, &out));
  EXPECT_EQ(QM_INVALID, QM_NODE_PrintNodeHeader(built.c, nullptr, &out));
  EXPECT_EQ(QM_INVALID, QMS_NODE_PrintSubTree(nullptr, built.c, nullptr));
}

namespace {

QmsModule* g_module;
QmsNode* g_node;
std::string g_whole;
std::string g_part;

void PrintScenario(bool refusing) {
  Output whole;
  Output part;
  const uint32_t a = QM_MOD_PrintModelTree(g_module, TakeChunk, &whole);
  const uint32_t b = QM_NODE_PrintNodesTree(g_node, TakeChunk, &part);
  EXPECT_TRUE(a == 0 || (refusing && (a == 1 || a == 12))) << a;
  EXPECT_TRUE(b == 0 || (refusing && (b == 1 || b == 12))) << b;
  EXPECT_EQ(a == 0 ? g_whole : "", whole.text);
  EXPECT_EQ(b == 0 ? g_part : "", part.text);
}

}  // namespace

TEST(PrintModelTree, SurvivesEveryFailedAllocation) {
  Example example;
  g_module = example.Module("ex");
  g_node = yin::Find(g_module, "sys/user");
  g_whole = Printed(g_module);
  g_part = PrintedNode(g_node);
  EXPECT_LT(6u, counting_memory::FailEachAllocation(PrintScenario));
}
