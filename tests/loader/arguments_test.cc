// SPDX-License-Identifier: BSD-3-Clause
// The loader's steps where an argument is missing, a record is empty, or there is
// too little room.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <qmodel/error.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <string>

#include "context/memory.h"
#include "context/relation.h"
#include "coupling/change_event.h"
#include "coupling/couple_augment.h"
#include "coupling/couple_deviation.h"
#include "loader/pending.h"
#include "loader/register.h"
#include "loader/unload.h"
#include "schema/module.h"
#include "schema/node_link.h"
#include "schema/target_path.h"
#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"
#include "tests/support/module_builder.h"
#include "tests/support/null_arguments.h"
#include "tests/support/yin.h"
#include "yin/dispatch.h"
#include "yin/file_lookup.h"
#include "yin/linkage.h"
#include "yin/load_assister.h"
#include "yin/prefix_rewrite.h"
#include "yin/reader.h"
#include "yin/stmt_ext_inst.h"
#include "yin/stmt_node.h"

namespace {

using counting_memory::Refuse;
using coupling::Augment;
using coupling::Container;
using coupling::Deviate;
using coupling::Deviation;
using coupling::Imports;
using coupling::Leaf;
using null_arguments::ExpectEachGives;
using testing::ElementsAre;

constexpr char kRpc[] = "<rpc name=\"r\"/>";

TEST(LoaderArguments, CouplingOfAugmentsRefusesNull) {
  coupling::World world;
  QmsModule* t = world.Add("t", Container("x") + kRpc);
  QmsModule* a = world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  QmsNode* augment = a->augmentNodes;
  ExpectEachGives(QM_INVALID, QMS_LOADER_CoupleAugmentAndGenRelation, world.ctx(), a);
  ExpectEachGives(QM_INVALID, QMS_LOADER_CoupleSelfAugmentNode, world.ctx(), a);
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNode(nullptr));
  uint32_t kind = QMS_NODE_NONE;
  ExpectEachGives(nullptr, QMS_NODE_GetAugRpcParentNodeAndChildType, world.ctx(), "/t:r", "input",
                  &kind);
  EXPECT_EQ(uint32_t{QMS_NODE_NONE}, kind);
  ExpectEachGives(nullptr, QMS_NODE_ConstructInputOutputNodeIfMatch, world.ctx(), "/t:r", "input");
  ExpectEachGives(nullptr, QMS_NODE_UpdateTargetPathWithInputOutput, world.ctx(), "/t:r/input");
  QMS_NODE_NotifyAugmentFirstChildNodeRelink(nullptr);
  QMS_NODE_RemoveCoupledAugmentNodeChildLink(nullptr, augment->firstChild);
  QMS_NODE_RemoveCoupledAugmentNodeChildLink(augment, nullptr);
  QMS_LOADER_DestroySelfAugNode(nullptr);
  EXPECT_EQ("x{y:a} r", world.Tree("t"));
  EXPECT_EQ(nullptr, t->rpcNodes->firstChild);
}

TEST(LoaderArguments, NodesOfNoContextAreNotReportedAndNotUncoupled) {
  QmsModule bare = {};
  QmsNode node = {};
  node.kind = QMS_NODE_AUGMENT;
  node.flags = QMS_NODE_COUPLED;
  node.module = &bare;
  QMS_NODE_NotifyAugmentFirstChildNodeRelink(&node);
  EXPECT_EQ(QM_INVALID, QMS_NODE_UnCoupleAugmentNode(&node));
  EXPECT_EQ(QM_OK, QMS_NODE_NotifyBeforeDeviateNotSupport(&node, nullptr, "d", "/t:x"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_CoupleDevNotSup(&node, nullptr, "d", "/t:x"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(&bare, "d", "/t:x"));
  node.flags = 0;
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNode(&node));
  node.module = nullptr;
  EXPECT_EQ(QM_INVALID, QMS_NODE_CoupleAugmentNode(&node));
  EXPECT_EQ(QM_INVALID, QMS_NODE_NotifyBeforeDeviateNotSupport(&node, nullptr, "d", "/t:x"));
}

TEST(LoaderArguments, CouplingOfDeviationsRefusesNull) {
  coupling::World world;
  QmsModule* t = world.Add("t", Container("x"));
  QmsDeviation deviation = {};
  ExpectEachGives(QM_INVALID, QMS_MOD_CoupleDeviation, t, &deviation);
  ExpectEachGives(QM_INVALID, QMS_LOADER_CoupleDeviationAndGenRelation, world.ctx(), t);
  EXPECT_EQ(QM_INVALID, QMS_NODE_NotifyBeforeDeviateNotSupport(nullptr, nullptr, "d", "/t:x"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(t, "d", nullptr));
  EXPECT_EQ("x", world.Tree("t"));
}

TEST(LoaderArguments, UnloadingNothingSucceeds) {
  coupling::World world;
  QmsModule* t = world.Add("t", Container("x"));
  EXPECT_EQ(QM_OK, QMS_LOADER_UnloadModuleProc(nullptr, "t"));
  EXPECT_EQ(QM_OK, QMS_LOADER_UnloadModuleProc(world.ctx(), nullptr));
  EXPECT_TRUE(world.IsLoaded("t"));
  ASSERT_EQ(QM_OK, QM_CTX_AddTwoModRelation(world.ctx(), "a", t->name, QM_RELATION_DEVIATION));
  EXPECT_EQ(0u, QMS_LOADER_IsAugAndRmvModShareSameDevaition(world.ctx(), "a", t))
      << "nothing deviates t";
  QM_CTX_DelTwoModRelation(world.ctx(), "a", t->name, QM_RELATION_DEVIATION);
}

// t goes, and with it a, which augments it and has the deviating module in common:
// each of the steps may find no memory, and then nothing may hang in the air.
TEST(LoaderArguments, AnUnloadWithASharedDeviationSurvivesRefusedMemory) {
  uint64_t n = 1;
  for (bool refused = true; refused; ++n) {
    SCOPED_TRACE(n);
    coupling::World world;
    world.Add("t", Container("x", Leaf("l")));
    world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")) + Leaf("own"));
    world.Add("d", Imports({"t", "a"}) +
                       Deviation("/t:x/t:l", Deviate("add", "<default value=\"v\"/>")) +
                       Deviation("/a:own", Deviate("add", "<default value=\"v\"/>")));
    ASSERT_EQ("deviation:d augment:a", world.Relations("t"));
    ASSERT_EQ("deviation:d", world.Relations("a"));
    counting_memory::RefuseNth(n, Refuse::kOnce);
    const uint32_t ret = QM_CTX_UnloadModule(world.ctx(), "t");
    refused = counting_memory::StopRefusing() != 0;
    coupling::CheckLinks(world.ctx());
    EXPECT_TRUE(refused || (ret == QM_OK && !world.IsLoaded("t"))) << ret;
  }
  EXPECT_GT(n, 10u);
}

TEST(LoaderArguments, SubmodulesNeedAContextAndAModule) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_LoadSubModule(nullptr, module.Get(), "s", nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_LoadSubModule(ctx, nullptr, "s", nullptr));
  EXPECT_EQ(nullptr, QMS_LOADER_ParseYinContent(ctx, nullptr, nullptr));
  xmlDoc* doc = yin::Xml(yin::Module("m", ""));
  EXPECT_EQ(nullptr, QMS_LOADER_ParseYinContent(nullptr, doc, nullptr));
  xmlFreeDoc(doc);
}

// A split module takes the parts of one delivery: a submodule of another one is
// not its own.
TEST(LoaderArguments, ASubmoduleOfAnotherSuffixIsNotFound) {
  yin::Folder folder;
  folder.Write("s@@two.yin", yin::Submodule("s", ""));
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, folder.Dir()));
  yin::Parsed module(ctx, yin::Module("m", ""));
  QmsLoadSuffix own = {"one", 0};
  QmsLoadAssister assister = {};
  assister.current = kQmsNoSuffix;
  assister.suffixes = static_cast<QmsLoadSuffix*>(g_qmMemMallocFunc(sizeof own));
  ASSERT_NE(nullptr, assister.suffixes);
  assister.suffixes[0] = own;
  assister.suffixCount = 1;
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_LoadSubModule(ctx, module.Get(), "s", &assister));
  EXPECT_EQ(2, assister.suffixCount) << "the other delivery is remembered all the same";
  EXPECT_EQ(0u, assister.includeDepth);
  ClearLoadAssister(&assister);
}

TEST(LoaderArguments, ASubmoduleIsNotLoadedWithoutMemoryForItsSuffix) {
  yin::Folder folder;
  folder.Write("s@@two.yin", yin::Submodule("s", ""));
  uint64_t n = 1;
  for (bool refused = true; refused; ++n) {
    SCOPED_TRACE(n);
    yin::Context ctx;
    ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, folder.Dir()));
    yin::Parsed module(ctx, yin::Module("m", ""));
    QmsLoadAssister assister = {};
    assister.current = kQmsNoSuffix;
    counting_memory::RefuseNth(n, Refuse::kOnce);
    const uint32_t ret = QMS_LOADER_LoadSubModule(ctx, module.Get(), "s", &assister);
    refused = counting_memory::StopRefusing() != 0;
    EXPECT_EQ(refused, ret != QM_OK) << ret;
    ClearLoadAssister(&assister);
  }
  EXPECT_GT(n, 4u);
}

TEST(LoaderArguments, SuffixesThatNoFileCanHaveAreNotRemembered) {
  QmsPathCollection none = {};
  QmsLoadAssister assister = {};
  assister.current = kQmsNoSuffix;
  const char* sources[] = {"", "0123456789", "good"};
  QmsModule module = {};
  module.mergeSources = sources;
  module.mergeSourceCount = 3;
  EXPECT_EQ(QM_OK, QMS_LOADER_PreFillLoadAssisterFromExisting(&assister, &module, &none));
  ASSERT_EQ(1, assister.suffixCount);
  EXPECT_STREQ("good", assister.suffixes[0].suffix);
  ClearLoadAssister(&assister);
  counting_memory::RefuseNth(1, Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_LOADER_PreFillLoadAssisterFromExisting(&assister, &module, &none));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, QMS_LOADER_GetNextPathObjToProc(&none, &assister)) << "no candidates";
  ClearLoadAssister(&assister);
}

TEST(LoaderArguments, EmptyRecordsArePassedOver) {
  const char* sources[] = {nullptr, "x"};
  QmsModule module = {};
  module.mergeSources = sources;
  module.mergeSourceCount = 2;
  EXPECT_EQ(1u, QMS_LOADER_FindSuffixInModMrgSource(&module, "x"));
  EXPECT_EQ(0u, QMS_LOADER_FindSuffixInModMrgSource(&module, "y"));

  QmsFeature features[2] = {};
  features[0].flags = features[1].flags = QMS_FEATURE_ENABLED;
  features[1].name = "f";
  module.features = features;
  module.featureCount = 2;
  QmsModPendTbl tbl;
  QMS_LOADER_InitModPendTbl(&tbl);
  QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl, "m");
  ASSERT_NE(nullptr, node);
  EXPECT_EQ(QM_OK, QMS_LOADER_SaveEnabledFeatureToPendNode(&module, node));
  ASSERT_NE(&node->featPends, node->featPends.next);
  EXPECT_EQ(&node->featPends, node->featPends.next->next) << "one feature";
  QMS_LOADER_DeInitModPendTbl(&tbl);
}

TEST(LoaderArguments, NodesNeedAParentUnlessTheyAreTopNodes) {
  yin::Context ctx;
  QmsModule* module = module_builder::NewModule(ctx, "m");
  ASSERT_NE(nullptr, module);
  QmsNode* parent = module_builder::AddTop(module, QMS_NODE_CONTAINER, "c");
  QmsNode* node = module_builder::NewNode(module, QMS_NODE_LEAF, "l");
  EXPECT_EQ(QM_INVALID, QMS_LOADER_AddNodeToSchemaTree(module, nullptr, node, QMS_STMT_CONTAINER));
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_AddNodeToSchemaTree(module, parent, nullptr, QMS_STMT_CONTAINER));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_AddNodeToSchemaTree(module, nullptr, nullptr, QMS_STMT_MODULE));
  EXPECT_EQ(QM_OK, QMS_LOADER_AddNodeToSchemaTree(module, parent, node, QMS_STMT_CONTAINER));
  QMS_MOD_Free(module);
}

TEST(LoaderArguments, AnArrayThatWasNotMadeTakesNoChild) {
  QmsFeature* array = nullptr;
  uint16_t used = 0;
  uint16_t found = 1;
  QmsSubStmtDesc desc = ArraySubStmt(QMS_STMT_FEATURE, &array, &used, &found);
  EXPECT_EQ(nullptr, QMS_LOADER_GetSubParseDest(&desc, QMS_STMT_MODULE));
  QmsFeature one = {};
  array = &one;
  EXPECT_EQ(&one, QMS_LOADER_GetSubParseDest(&desc, QMS_STMT_MODULE));
  EXPECT_EQ(nullptr, QMS_LOADER_GetSubParseDest(&desc, QMS_STMT_MODULE)) << "all are taken";
  EXPECT_EQ(1, used);
}

// The prefix of an import is found wherever it stands among the other statements.
TEST(LoaderArguments, ThePrefixOfAnImportMayStandBehindOtherStatements) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m",
                                      "<import module=\"o\"><!-- which? -->"
                                      "<revision-date date=\"2020-01-01\"/>"
                                      "<prefix value=\"p\"/></import>"));
  ASSERT_TRUE(module);
  ASSERT_EQ(1, module.Get()->importCount);
  EXPECT_STREQ("p", module.Get()->imports[0].prefix);
}

// A foreign element without prefix is no statement of the module; the parser says so
// when it is handed one all the same.
TEST(LoaderArguments, AnElementWithoutPrefixIsNoExtensionInstance) {
  yin::Context ctx;
  yin::Parsed module(ctx,
                     yin::Module("m", "<container name=\"c\"><e xmlns=\"urn:e\"/></container>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(0, module.Get()->dataNodes->extInstCount);
  xmlDoc* doc = yin::Xml("<e xmlns=\"urn:e\"/>");
  QmsExtInst inst = {};
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseExtInst(module.Get(), xmlDocGetRootElement(doc),
                                                QMS_STMT_EXTENSION_INSTANCE, &inst));
  EXPECT_EQ(nullptr, inst.name);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to find module by prefix \"\"."));
  xmlFreeDoc(doc);
}

TEST(LoaderArguments, AConditionFitsOrIsRefusedWhateverPieceComesLast) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", Imports({"other"})));
  const char text[] = "a =  'other:b' or b";
  char out[64];
  for (uint32_t size = 1; size < sizeof text; ++size) {
    EXPECT_EQ(QM_INVALID, QMS_LOADER_CopyTokenIntoOutCondition(module.Get(), text, out, size))
        << size;
    EXPECT_LT(std::strlen(out), size);
  }
  EXPECT_EQ(QM_OK, QMS_LOADER_CopyTokenIntoOutCondition(module.Get(), text, out, sizeof text));
  EXPECT_STREQ(text, out);
  uint32_t used = 0;
  EXPECT_EQ(QM_OK, QMS_LOADER_AddModuleNameIntoCondition(module.Get(), "'b'", 3, out, 64, &used));
  EXPECT_EQ(3u, used);
  EXPECT_STREQ("'b'", out);
}

TEST(LoaderArguments, APathThatIsTooLongIsPassedOver) {
  yin::Folder folder;
  const size_t base = std::strlen(folder.Dir()) + 1;
  ASSERT_LT(base, 200u);
  // In the first folder "m@*.yin" fits a path and the file does not; in the second
  // one neither does.
  for (size_t length : {size_t{245}, size_t{252}}) {
    SCOPED_TRACE(length);
    const std::string name(length - base, 'd');
    folder.MakeDir(name);
    folder.Write(name + "/m@2020-01-01.yin", "");
    QmsPathCollection files = {};
    EXPECT_EQ(QM_OK, QMS_LOADER_FillFullNameWithRevision(&files, folder.Path(name).c_str(), "m"));
    EXPECT_EQ(0, files.count);
    g_qmMemFreeFunc(files.objs);
  }
}

TEST(LoaderArguments, AFileThatHasBecomeAFifoDoesNotHoldUpALoad) {
  yin::Folder folder;
  const std::string fifo = folder.Path("m.yin");
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  alarm(10);  // a load that waits for a writer ends the test
  EXPECT_EQ(nullptr, QMS_LOADER_ReadYinFileToXmlDoc(fifo.c_str()));
  alarm(0);
}

TEST(LoaderArguments, FilesThatCannotBeMeasuredAreNotRead) {
  yin::Folder folder;
  const std::string fifo = folder.Path("fifo.yin");
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  // Held open for writing too, so that the reader does not wait for a writer.
  const int held = open(fifo.c_str(), O_RDWR);
  ASSERT_NE(-1, held);
  EXPECT_EQ(nullptr, QMS_LOADER_ReadYinFileToXmlDoc(fifo.c_str()));
  close(held);

  folder.Write("huge.yin", "<module/>");
  ASSERT_EQ(0, truncate(folder.Path("huge.yin").c_str(), off_t{INT_MAX} + 1));
  const uint64_t asked = counting_memory::AllocationCount();
  EXPECT_EQ(nullptr, QMS_LOADER_ReadYinFileToXmlDoc(folder.Path("huge.yin").c_str()));
  EXPECT_EQ(asked + 1, counting_memory::AllocationCount()) << "only the handle, no buffer";
}

TEST(LoaderArguments, AnEndedSelfAugmentLeavesTheRunsOfOthers) {
  coupling::World world;
  world.Add("t", Container("x"));
  world.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  QmsModule* b = world.Add("b", Imports({"gone"}) + Augment("/gone:x", Container("z")));
  QMS_LOADER_DestroySelfAugNode(b->augmentNodes);
  EXPECT_EQ(nullptr, b->augmentNodes);
  EXPECT_EQ("/t:x coupled{y}", world.Augments("a"));
}

TEST(LoaderArguments, AnEndedSelfAugmentLeavesTheRunsInTheRestOfItsModule) {
  coupling::World world;
  QmsModule* b =
      world.Add("b", Imports({"gone"}) + Container("w") + Augment("/gone:x", Container("z")));
  world.Add("a", Imports({"b"}) + Augment("/b:w", Leaf("y")));
  ASSERT_EQ("/b:w coupled{y}", world.Augments("a"));
  QMS_LOADER_DestroySelfAugNode(b->augmentNodes);
  EXPECT_EQ(nullptr, b->augmentNodes);
  EXPECT_EQ("/b:w coupled{y}", world.Augments("a"));
}

TEST(LoaderArguments, APathWithoutModuleLeadsIntoNone) {
  char name[kQmsNameSize] = "";
  EXPECT_FALSE(GetTargetModuleName("/x", name));
  EXPECT_FALSE(GetTargetModuleName("", name));
  EXPECT_TRUE(GetTargetModuleName("/t:x", name));
  EXPECT_STREQ("t", name);
}

// A pending augment has no run in another tree: a merge leaves it where it is.
TEST(LoaderArguments, AMergeKeepsAPendingAugment) {
  coupling::World world;
  for (const char* file : {"m@@1.yin", "m@@2.yin"}) {
    world.PutFile(file, "m", Imports({"t"}) + Augment("/t:x", Leaf("y")) + Leaf("a"));
  }
  ASSERT_EQ(QM_OK, world.Load("m"));
  ASSERT_EQ(2, world.Module("m")->mergeSourceCount);
  EXPECT_EQ("/t:x pending{y}", world.Augments("m"));
  EXPECT_EQ("a", world.Tree("m"));
}

}  // namespace
