// SPDX-License-Identifier: BSD-3-Clause
// What a hook may meet. Each of the six hooks of a context is called in the middle
// of a load, an unload or a deletion, and walks all modules from there, in every
// way. The walks end, and stay in their trees.
//
// The hard moments are those of an augment: its mark is set after the hook that
// tells of the attachment, and for a run that no path leads to, it is cleared
// before the hook that tells of the detachment. In both the run lies in a foreign
// list while the augment does not count as coupled.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <map>
#include <string>

#include "context/dict.h"
#include "schema/node.h"
#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"
#include "tests/support/every_walk.h"

using coupling::Augment;
using coupling::Container;
using coupling::Deviate;
using coupling::Deviation;
using coupling::Imports;
using coupling::Leaf;
using coupling::NotSupported;

namespace {

const char kMark[] = "<extension name='e'/>";
const char kMarked[] = "<a:e xmlns:a='urn:a' x='1'/>";

// The filter hook is not told the context, the private-data hook only by its node.
QmCtx* g_ctx = nullptr;
std::map<std::string, int> g_calls;
int g_privates = 0;

void Met(const std::string& moment) {
  ++g_calls[moment];
  SCOPED_TRACE(moment);
  if (!testing::Test::HasFailure()) every_walk::Check(g_ctx);
}

// The augment whose first child this is.
const QmsNode* AugmentOf(const QmsNode* firstChild) {
  const QmsNode* augment = firstChild->module->augmentNodes;
  while (augment != nullptr && augment->firstChild != firstChild) augment = augment->next;
  return augment;
}

void OnRelink(QmCtx* ctx, QmsNode* firstChild) {
  EXPECT_EQ(g_ctx, ctx);
  const QmsNode* augment = AugmentOf(firstChild);
  ASSERT_NE(nullptr, augment);
  EXPECT_NE(augment, firstChild->parent) << "the run lies in the list of its target";
  Met(IsCoupledAugment(augment) ? "relink of a marked augment" : "relink of an unmarked augment");
}

uint32_t OnNotSupported(QmCtx*, QmsNode* node, const char*, const char*) {
  EXPECT_NE(nullptr, QM_NODE_GetNodeName(node));
  Met("not-supported");
  return 0;
}

uint32_t OnExtInsts(QmCtx*, QmsNode* node) {
  EXPECT_NE(nullptr, QM_NODE_GetNodeName(node));
  Met("extension instances");
  return 0;
}

void OnReload(QmCtx* ctx, const char* name) {
  EXPECT_NE(nullptr, QM_CTX_GetModuleByModName(ctx, name));
  Met("reload");
}

uint32_t OnFilter(const char*, const char*) {
  Met("filter");
  return 0;
}

// Of what dies, only names and modules are read, from the node on downwards.
void OnFree(QmsNode* node, void* data) {
  --g_privates;
  EXPECT_EQ(&g_privates, data);
  EXPECT_NE(nullptr, QM_NODE_GetNodeName(node));
  EXPECT_NE(nullptr, QM_NODE_GetModule(node));
  for (const QmsNode* below = node->firstChild; below != nullptr; below = below->next) {
    EXPECT_NE(nullptr, QM_NODE_GetNodeName(below));
    EXPECT_NE(nullptr, QM_NODE_GetModule(below));
  }
  Met("private data");
}

uint32_t GivePrivate(QmsNode* node, uint32_t travType, void*) {
  if (travType == QMS_TRAV_PARENT || QM_NODE_GetPrivate(node) != nullptr) return 0;
  ++g_privates;
  static_cast<void>(QM_NODE_SetPrivate(node, &g_privates));
  return 0;
}

uint32_t GivePrivates(QmsNode* top, uint32_t, void*) {
  return QM_NODE_TreeScanAllNode(top, GivePrivate, nullptr);
}

class HookMoment : public testing::Test {
 protected:
  HookMoment() {
    g_calls.clear();
    g_privates = 0;
    g_ctx = world_.ctx();
    QM_CTX_SetPridataFreeFunc(g_ctx, OnFree);
    QM_CTX_SetFirstAugChildRelinkFunc(g_ctx, OnRelink);
    QM_CTX_SetBeforeDeviateNotSupportFunc(g_ctx, OnNotSupported);
    QM_CTX_SetBeforeDeviateExtInstFunc(g_ctx, OnExtInsts);
    QM_CTX_SetReloadModuleCbFunc(g_ctx, OnReload);
    QM_CTX_SetExtInstFilterCbFunc(g_ctx, OnFilter);
  }

  // Every node of the module, and of what others added to it, gets private data.
  void Mark(const std::string& name) const {
    EXPECT_EQ(QM_OK, QM_MOD_IterScanTopmostNode(world_.Module(name), GivePrivates, nullptr));
    EXPECT_EQ(QM_OK, QM_MOD_IterScanAugmentNode(world_.Module(name), GivePrivates, nullptr));
  }

  coupling::World world_;
};

TEST_F(HookMoment, AttachingARunBelowAnAugmentWhoseTargetIsNeverLoaded) {
  world_.Add("a", Imports({"t", "b"}) + Augment("/t:x", Container("a1") + Leaf("a2")) +
                      Augment("/t:x/b:b0", Leaf("a3") + Leaf("a4")));
  world_.Add("b", Imports({"t", "a"}) + Augment("/t:x", Container("b0") + Leaf("b1")) +
                      Augment("/t:x/a:a1", Leaf("b2") + Leaf("b3")));
  EXPECT_EQ("/t:x pending{a1 a2}; /t:x/b:b0 coupled{a3 a4}", world_.Augments("a"));
  EXPECT_EQ("/t:x pending{b0 b1}; /t:x/a:a1 coupled{b2 b3}", world_.Augments("b"));
  EXPECT_EQ(2, g_calls["relink of an unmarked augment"]);
}

TEST_F(HookMoment, DetachingARunThatNoPathLeadsTo) {
  for (const std::string gone : {"t", "a", "b"}) {
    SCOPED_TRACE(gone);
    world_.Add("t", Container("x", Leaf("l")) + Leaf("last"));
    world_.Add("a", Imports({"t"}) + Augment("/t:x", Container("y") + Leaf("y2")));
    world_.Add("b", Imports({"t"}) + Augment("/t:x/y", Container("z", Leaf("w")) + Leaf("z2")));
    EXPECT_EQ(QM_OK, world_.Load("t"));
    ASSERT_EQ("x{l y:a{z:b{w} z2:b} y2:a} last", world_.Tree("t"));
    for (const char* name : {"t", "a", "b"}) Mark(name);
    g_calls.clear();
    EXPECT_EQ(QM_OK, world_.Unload(gone));
    EXPECT_LT(0, g_calls["relink of a marked augment"]);
    EXPECT_EQ(gone == "a" ? 1 : 0, g_calls["relink of an unmarked augment"]);
    EXPECT_LT(0, g_calls["private data"]);
    EXPECT_EQ(1, g_calls["reload"]);
    for (const char* name : {"t", "a", "b"}) EXPECT_EQ(QM_OK, world_.Unload(name));
    EXPECT_EQ(0, g_privates);
  }
}

TEST_F(HookMoment, DetachingARunWhoseTargetHasLostItsName) {
  for (const std::string gone : {"t", "a"}) {
    SCOPED_TRACE(gone);
    world_.Add("t", Container("x", Leaf("l")) + Leaf("last"));
    world_.Add("a", Imports({"t"}) + Augment("/t:x", Container("y", Leaf("w")) + Leaf("z")));
    Mark("t");
    ASSERT_TRUE(InternText(&g_ctx->dict, &world_.Module("t")->dataNodes->name, "other"));
    g_calls.clear();
    EXPECT_EQ(QM_OK, world_.Unload(gone));
    EXPECT_EQ(1, g_calls["relink of an unmarked augment"]);
    for (const char* name : {"t", "a"}) EXPECT_EQ(QM_OK, world_.Unload(name));
    EXPECT_EQ(0, g_privates);
  }
}

TEST_F(HookMoment, RemovingANodeWithTheRunsBelowIt) {
  const std::string below = Container("y", Container("y1"));
  world_.Add("t", Container("x", Container("c", Leaf("l")) + Leaf("k")) + Leaf("last"));
  world_.Add("a", Imports({"t"}) + Augment("/t:x/t:c", below) + Augment("/t:x", Leaf("n")));
  world_.Add("b", Imports({"t", "a"}) + Augment("/t:x/t:c/a:y", Leaf("z")) +
                      Augment("/t:x/c/y/y1", Leaf("v")) + Augment("/t:x/a:none", Leaf("n")));
  for (const char* name : {"t", "a", "b"}) Mark(name);
  g_calls.clear();
  world_.Add("d", Imports({"t", "a"}) + Deviation("/t:x/t:c", NotSupported()) +
                      Deviation("/t:x/a:n", NotSupported()));
  EXPECT_EQ("x{k} last", world_.Tree("t"));
  EXPECT_EQ(2, g_calls["not-supported"]);
  EXPECT_LT(3, g_calls["private data"]);
  // The deviating module takes the deviated ones along, which come back.
  g_calls.clear();
  EXPECT_EQ(QM_OK, world_.Unload("d"));
  EXPECT_LT(1, g_calls["reload"]);
  EXPECT_LT(0, g_calls["relink of an unmarked augment"]);
  for (const char* name : {"b", "a", "t"}) EXPECT_EQ(QM_OK, world_.Unload(name));
  EXPECT_EQ(0, g_privates);
}

TEST_F(HookMoment, ChangingAndReadingExtensionInstances) {
  world_.Add("a", kMark + Container("x", Leaf("l", kMarked) + Leaf("k")));
  world_.Add("b", Imports({"a"}) + Augment("/a:x", Container("y", kMarked)));
  g_calls.clear();
  const std::string mark2 = "<a:e xmlns:a='urn:a' x='2'/>";
  world_.Add("d", Imports({"a", "b"}) +
                      Deviation("/a:x/a:l", Deviate("delete", kMarked) + Deviate("add", mark2)) +
                      Deviation("/a:x/b:y", Deviate("add", mark2)));
  EXPECT_EQ(3, g_calls["extension instances"]);
  EXPECT_LT(0, g_calls["filter"]);
  g_calls.clear();
  EXPECT_EQ(QM_OK, world_.Unload("d"));
  EXPECT_EQ(3, g_calls["reload"]);
  EXPECT_LT(0, g_calls["filter"]);
}

TEST_F(HookMoment, ReadingAnotherPartOfALoadedModule) {
  const std::string head = kMark + Imports({"t"});
  const std::string run = Container("y", kMarked);
  world_.Add("t", Container("x"));
  world_.PutFile("a@@1.yin", "a", head + Container("own") + Augment("/t:x", run + Leaf("z")));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  world_.Add("b", Imports({"a"}) + Augment("/a:own", Leaf("f")));
  ASSERT_TRUE(InternText(&g_ctx->dict, &world_.Module("t")->dataNodes->name, "other"));
  Mark("a");
  g_calls.clear();
  world_.PutFile("a@@2.yin", "a",
                 head + Container("own") + Augment("/t:x", run + Leaf("z") + Leaf("new")));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_THAT(world_.Errors(), testing::ElementsAre());
  EXPECT_EQ("/t:x pending{y z new}", world_.Augments("a"));
  EXPECT_LT(0, g_calls["filter"]);
  EXPECT_EQ(1, g_calls["relink of an unmarked augment"]);
}

TEST_F(HookMoment, AttachingAnAugmentOfTheModuleItself) {
  world_.Add("m", Container("c", Leaf("l")) + Augment("/m:c", Container("y") + Leaf("y2")) +
                      Augment("/m:c/m:y", Leaf("z")) + Leaf("last"));
  EXPECT_EQ("c{l y{z} y2} last", world_.Tree("m"));
  EXPECT_EQ(2, g_calls["relink of an unmarked augment"]);
}

// In an order that leaves all to the deletion of the context, and one run to be
// found by its links alone.
TEST(HookMomentAtTheEnd, DeletingAContext) {
  g_calls.clear();
  g_privates = 0;
  {
    coupling::World world;
    g_ctx = world.ctx();
    world.Add("t", Container("x", Leaf("l")) + Leaf("last"));
    world.Add("a", Imports({"t"}) + Augment("/t:x", Container("y") + Leaf("y2")));
    world.Add("b", Imports({"t"}) + Augment("/t:x/y", Container("z", Leaf("w"))));
    world.Add("c", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("v") + Leaf("v2")));
    for (const char* name : {"t", "a", "b", "c"}) {
      EXPECT_EQ(QM_OK, QM_MOD_IterScanTopmostNode(world.Module(name), GivePrivates, nullptr));
      EXPECT_EQ(QM_OK, QM_MOD_IterScanAugmentNode(world.Module(name), GivePrivates, nullptr));
    }
    ASSERT_TRUE(InternText(&g_ctx->dict, &world.Module("t")->dataNodes->name, "other"));
    QM_CTX_SetPridataFreeFunc(g_ctx, OnFree);
    QM_CTX_SetFirstAugChildRelinkFunc(g_ctx, OnRelink);
  }
  EXPECT_LT(0, g_calls["relink of an unmarked augment"]);
  EXPECT_LT(0, g_calls["relink of a marked augment"]);
  EXPECT_LT(0, g_calls["private data"]);
  EXPECT_EQ(0, g_privates);
}

// With memory refused, what cannot be coupled, taken out by its path or recorded is
// settled in other ways, with hooks of their own.
TEST(HookMomentWithoutMemory, EveryRefusedAllocation) {
  static const auto life = [](bool) {
    yin::Context ctx;
    if (ctx.Get() == nullptr) return;
    g_ctx = ctx;
    QM_CTX_SetFirstAugChildRelinkFunc(ctx, [](QmCtx* c, QmsNode*) { every_walk::CheckQuickly(c); });
    QM_CTX_SetReloadModuleCbFunc(ctx, [](QmCtx* c, const char*) { every_walk::CheckQuickly(c); });
    QM_CTX_SetBeforeDeviateNotSupportFunc(ctx, [](QmCtx* c, QmsNode*, const char*, const char*) {
      every_walk::CheckQuickly(c);
      return 0u;
    });
    const auto load = [&ctx](const char* name, const std::string& body) {
      static_cast<void>(QM_CTX_LoadMemory(ctx, yin::Module(name, body).c_str()));
    };
    load("t", Container("x", Leaf("l")) + Leaf("last"));
    load("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z") + Leaf("z2")));
    load("a", Imports({"t"}) + Augment("/t:x", Container("y") + Leaf("y2")));
    load("d", Imports({"t", "a"}) + Deviation("/t:x/a:y", NotSupported()));
    static_cast<void>(QM_CTX_UnloadModule(ctx, "a"));
    static_cast<void>(QM_CTX_UnloadModule(ctx, "t"));
  };
  EXPECT_LT(100u, counting_memory::FailEachAllocation(life));
}

}  // namespace
