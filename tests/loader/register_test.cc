// SPDX-License-Identifier: BSD-3-Clause
#include "loader/register.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstring>
#include <string>

#include "context/dict.h"
#include "context/xml_parse.h"
#include "coupling/couple_augment.h"
#include "schema/module_registry.h"
#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"
#include "tests/support/yin_text.h"
#include "types/type.h"
#include "yin/reader.h"

using coupling::Augment;
using coupling::Container;
using coupling::Deviate;
using coupling::Deviation;
using coupling::Imports;
using coupling::Leaf;
using testing::ElementsAre;
using testing::IsEmpty;

static std::string Typedef(const std::string& name, const std::string& type) {
  return "<typedef name=\"" + name + "\"><type name=\"" + type + "\"/></typedef>";
}

static std::string LeafOfType(const std::string& name, const std::string& type) {
  return "<leaf name=\"" + name + "\"><type name=\"" + type + "\"/></leaf>";
}

// A module that is parsed and belongs to the test until it is registered.
static QmsModule* Parse(QmCtx* ctx, const std::string& text) {
  xmlDoc* doc = ParseXmlText(text.data(), text.size());
  QmsModule* module = QMS_LOADER_ParseYinContent(ctx, doc, nullptr);
  xmlFreeDoc(doc);
  EXPECT_NE(nullptr, module);
  return module;
}

static const QmtType* TypeAt(const QmsModule* module, const char* path) {
  return QM_NODE_GetRealType(yin::Find(module, path));
}

TEST(AppendModuleToCtx, NullIsRefusedWith22) {
  yin::Context ctx;
  EXPECT_EQ(QM_INVALID, QMS_LOADER_AppendModuleToCtx(ctx, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_AppendModuleToCtx(nullptr, nullptr, nullptr));
}

TEST(AppendModuleToCtx, EntersTheModuleByNameAndNamespace) {
  yin::Context ctx;
  QmsModule* m = Parse(ctx, yin::Module("m", ""));
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(ctx, m, nullptr));
  EXPECT_EQ(m, QM_CTX_GetModuleByModName(ctx, "m"));
  EXPECT_EQ(m, QM_CTX_GetModuleByModNs(ctx, "urn:m"));
}

TEST(AppendModuleToCtx, ANamespaceThatIsTakenGives1AndTheModuleStaysTheCallers) {
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("m", "").c_str()));
  yin::Parsed other(ctx, yin_text::ModuleOf("urn:m", "o"));
  ASSERT_TRUE(other);
  EXPECT_EQ(QM_FAILED, QMS_LOADER_AppendModuleToCtx(ctx, other.Get(), nullptr));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx, "o"));
}

TEST(AppendModuleToCtx, ASecondRecordOfOneNameGives1) {
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("m", "").c_str()));
  yin::Parsed other(ctx, yin::Module("m", ""));
  ASSERT_TRUE(other);
  EXPECT_EQ(QM_FAILED, QMS_LOADER_AppendModuleToCtx(ctx, other.Get(), nullptr));
}

TEST(AppendModuleToCtx, ARegisteredModuleIsNotInsertedAgainButCoupled) {
  coupling::World world;
  QmsModule* m = world.Add("m", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  world.Add("t", Container("x"));
  ASSERT_EQ(QM_OK, QMS_NODE_UnCoupleAugmentNode(m->augmentNodes));
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(world.ctx(), m, nullptr));
  EXPECT_EQ("/t:x coupled{y}", world.Augments("m"));
}

TEST(AppendModuleToCtx, AMissingAugmentTargetIsNoErrorAndLeavesTheAugmentPending) {
  coupling::World world;
  world.Add("m", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_THAT(world.Errors(), IsEmpty());
  EXPECT_EQ("/t:x pending{y}", world.Augments("m"));
  EXPECT_EQ("augment:m", world.Relations("t"));
}

TEST(AppendModuleToCtx, TypesOfTheModuleArePointedAtItsTypedefs) {
  yin::Context ctx;
  const std::string body =
      Typedef("base", "string") + Typedef("mine", "base") + LeafOfType("top", "mine") +
      Container("c", LeafOfType("deep", "m:mine")) + "<rpc name=\"r\"><input>" +
      LeafOfType("in", "mine") + "</input></rpc>" + "<notification name=\"n\">" +
      LeafOfType("note", "mine") + "</notification>";
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("m", body).c_str()));
  QmsModule* m = QM_CTX_GetModuleByModName(ctx, "m");
  const QmtType* mine = QM_MOD_GetRealTypeByTypDefName(m, "mine");
  for (const char* path : {"top", "c/deep", "r/input/in", "n/note"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(mine, QMT_TYPE_GetTypeConsDataDerived(TypeAt(m, path))->resolved);
  }
  EXPECT_EQ(QM_MOD_GetRealTypeByTypDefName(m, "base"),
            QMT_TYPE_GetTypeConsDataDerived(mine)->resolved);
  EXPECT_THAT(ctx.Errors(), IsEmpty());
}

TEST(AppendModuleToCtx, ATypedefThatDoesNotExistIsRecordedAndTheModuleStays) {
  const std::string member =
      "<leaf name=\"l\"><type name=\"union\"><type name=\"none\"/></type></leaf>";
  for (const std::string& body : {Typedef("mine", "none"), LeafOfType("l", "none"), member}) {
    SCOPED_TRACE(body);
    coupling::World world;
    world.Add("m", body);
    EXPECT_THAT(world.Errors(), ElementsAre("m -: Failed to update typedef statements."));
  }
}

TEST(AppendModuleToCtx, TheFirstUnresolvedTypeEndsTheRefreshButNotTheCoupling) {
  coupling::World world;
  world.Add("t", Container("x") + Leaf("l"));
  QmsModule* m =
      world.Add("m", Imports({"t"}) + Typedef("ok", "string") + LeafOfType("l1", "none") +
                         LeafOfType("l2", "ok") + Augment("/t:x", Leaf("y")) +
                         Deviation("/t:l", Deviate("add", "<default value=\"v\"/>")));
  EXPECT_THAT(world.Errors(), ElementsAre("m -: Failed to update typedef statements."));
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(TypeAt(m, "l2"))->resolved);
  EXPECT_EQ("/t:x coupled{y}", world.Augments("m"));
  EXPECT_EQ("/t:l applied", world.Deviations("m"));
}

TEST(AppendModuleToCtx, PathsThatCannotBeSplitAreRecordedAndBothStepsRun) {
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("t", Container("x") + Leaf("l")).c_str()));
  QmsModule* m = Parse(ctx, yin::Module("m", Imports({"t"}) + Augment("/t:x", Leaf("y")) +
                                                 Deviation("/t:l", Deviate("add"))));
  ASSERT_TRUE(InternText(&ctx.Get()->dict, &m->augmentNodes->name, "/x"));
  ASSERT_TRUE(InternText(&ctx.Get()->dict, &m->deviations[0].targetPath, "/l"));
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(ctx, m, nullptr));
  EXPECT_EQ(m, QM_CTX_GetModuleByModName(ctx, "m"));
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to couple augment statements.",
                                        "m -: Failed to couple deviation statements."));
}

namespace {

struct Assister {
  Assister() {
    suffixes[0] = {"x", 1};
    suffixes[1] = {"y", 0};
    suffixes[2] = {"x", 0};
    record.suffixCount = 3;
    record.suffixes = suffixes;
    record.current = kQmsNoSuffix;
  }
  QmsLoadSuffix suffixes[3];
  QmsLoadAssister record{};
};

std::string Suffixes(const QmsModule* module) {
  std::string text;
  for (uint32_t i = 0; i < module->mergeSourceCount; ++i)
    text += (text.empty() ? "" : " ") + std::string(module->mergeSources[i]);
  return text;
}

}  // namespace

TEST(AppendModuleToCtx, EverySuffixIsRememberedOnceWhetherItsFileWasLoadedOrNot) {
  yin::Context ctx;
  Assister assister;
  QmsModule* m = Parse(ctx, yin::Module("m", ""));
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(ctx, m, &assister.record));
  EXPECT_EQ("x y", Suffixes(m));
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(ctx, m, &assister.record));
  EXPECT_EQ("x y", Suffixes(m));
  EXPECT_EQ(1u, QMS_LOADER_FindSuffixInModMrgSource(m, "y"));
  EXPECT_EQ(0u, QMS_LOADER_FindSuffixInModMrgSource(m, "z"));
}

TEST(SaveSuccLoadingSuffix, WithoutMemoryItGives12AndTheCountTellsTheTruth) {
  yin::Context ctx;
  Assister assister;
  yin::Parsed m(ctx, yin::Module("m", ""));
  ASSERT_TRUE(m);
  for (uint64_t n = 1; n <= 3; ++n) {
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(QM_NO_MEMORY, QMS_LOADER_SaveSuccLoadingSuffix(m.Get(), &assister.record)) << n;
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ("", Suffixes(m.Get()));
  }
  EXPECT_EQ(QM_OK, QMS_LOADER_SaveSuccLoadingSuffix(m.Get(), &assister.record));
  EXPECT_EQ("x y", Suffixes(m.Get()));
  EXPECT_EQ(QM_OK, QMS_LOADER_SaveSuccLoadingSuffix(m.Get(), nullptr));
}

TEST(AppendModuleToCtx, ARefusedSuffixDoesNotFailTheLoad) {
  yin::Context ctx;
  Assister assister;
  QmsModule* m = Parse(ctx, yin::Module("m", ""));
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(ctx, m, &assister.record));
  EXPECT_GT(counting_memory::StopRefusing(), 0u);
  EXPECT_EQ("", Suffixes(m));
}

TEST(AppendModuleToCtx, ARelationWithoutMemoryIsRecorded) {
  const std::string text = yin::Module("m", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  int recorded = 0;
  for (uint64_t n = 1; n <= 6; ++n) {
    SCOPED_TRACE(n);
    yin::Context ctx;
    QmsModule* m = Parse(ctx, text);
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(QM_OK, QMS_LOADER_AppendModuleToCtx(ctx, m, nullptr));
    counting_memory::StopRefusing();
    if (ctx.Errors().empty()) continue;
    ++recorded;
    EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to couple augment statements."));
  }
  // The table and the item; both names are interned already.
  EXPECT_EQ(2, recorded);
}

static void LoadAndCouple(bool refusing) {
  yin::Context ctx;
  if (ctx.Get() == nullptr) return;
  const std::string body = Imports({"t"}) + Typedef("mine", "string") + LeafOfType("l", "mine") +
                           Augment("/t:x", LeafOfType("y", "mine")) +
                           Deviation("/t:k", Deviate("add", "<default value=\"v\"/>"));
  static_cast<void>(QM_CTX_LoadMemory(ctx, yin::Module("t", Container("x") + Leaf("k")).c_str()));
  static_cast<void>(QM_CTX_LoadMemory(ctx, yin::Module("m", body).c_str()));
  coupling::CheckLinks(ctx);
  if (refusing) return;
  EXPECT_EQ("x{y:m} k", coupling::Tree(QM_CTX_GetModuleByModName(ctx, "t")));
  EXPECT_THAT(ctx.Errors(), IsEmpty());
}

TEST(AppendModuleToCtx, SurvivesEveryRefusedAllocation) {
  EXPECT_GT(counting_memory::FailEachAllocation(LoadAndCouple), 100u);
}
