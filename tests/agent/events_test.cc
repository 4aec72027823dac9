// SPDX-License-Identifier: BSD-3-Clause
// The events of a context as a log of short words, one event each:
//   +m        the module m was loaded         -m   it is about to go
//   =m        it is back                      *m   it was extended
//   m>/t:x    an augment of m was attached    m</t:x   it is about to be detached
//   !m:n by d the node n of m is about to go
// Whatever comes and goes, the log is exact, and every walk ends in every event.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include <qmodel/qmodel.h>

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

struct Log {
  std::string text;
  std::map<std::string, int> loaded;    // loaded or back, less gone
  std::map<std::string, int> attached;  // by "module path", less detached
  bool walks = true;
};

std::string NodeName(const QmsNode* node) {
  return std::string(QM_MOD_GetModuleName(QM_NODE_GetModule(node))) + ":" +
         QM_NODE_GetNodeName(node);
}

void CheckModuleEvent(QmCtx* ctx, const QmAgentEvent& event) {
  EXPECT_EQ(event.module, QM_CTX_GetModuleByModName(ctx, event.moduleName));
  EXPECT_EQ(nullptr, event.node);
  EXPECT_EQ(nullptr, event.target);
  EXPECT_EQ(nullptr, event.path);
  EXPECT_EQ(nullptr, event.deviatingModule);
}

void CheckAugmentEvent(const QmAgentEvent& event) {
  ASSERT_NE(nullptr, event.node);
  EXPECT_EQ(event.module, QM_NODE_GetModule(event.node));
  EXPECT_EQ(event.target, QM_NODE_GetParentNode(event.node)) << "it hangs in its target";
  EXPECT_EQ(nullptr, event.deviatingModule);
}

std::string Word(QmCtx* ctx, const QmAgentEvent& event) {
  const std::string name = event.moduleName;
  EXPECT_STREQ(event.moduleName, QM_MOD_GetModuleName(event.module));
  switch (event.kind) {
    case QM_AGENT_EVENT_MODULE_LOADED:
      CheckModuleEvent(ctx, event);
      return "+" + name;
    case QM_AGENT_EVENT_MODULE_GOING:
      CheckModuleEvent(ctx, event);
      return "-" + name;
    case QM_AGENT_EVENT_MODULE_BACK:
      CheckModuleEvent(ctx, event);
      return "=" + name;
    case QM_AGENT_EVENT_MODULE_EXTENDED:
      CheckModuleEvent(ctx, event);
      return "*" + name;
    case QM_AGENT_EVENT_AUGMENT_ATTACHED:
      CheckAugmentEvent(event);
      return name + ">" + event.path;
    case QM_AGENT_EVENT_AUGMENT_DETACHING:
      CheckAugmentEvent(event);
      return name + "<" + event.path;
    case QM_AGENT_EVENT_NODE_GOING:
      EXPECT_EQ(event.module, QM_NODE_GetModule(event.node));
      EXPECT_EQ(nullptr, event.target);
      return "!" + NodeName(event.node) + " by " + event.deviatingModule;
    default:
      ADD_FAILURE() << "an event of kind " << event.kind;
      return "?";
  }
}

void Count(Log* log, const QmAgentEvent& event) {
  const std::string name = event.moduleName;
  switch (event.kind) {
    case QM_AGENT_EVENT_MODULE_LOADED:
    case QM_AGENT_EVENT_MODULE_BACK:
      EXPECT_EQ(1, ++log->loaded[name]) << name;
      break;
    case QM_AGENT_EVENT_MODULE_GOING:
      EXPECT_EQ(0, --log->loaded[name]) << name;
      break;
    case QM_AGENT_EVENT_AUGMENT_ATTACHED:
      ++log->attached[name + " " + event.path];
      break;
    case QM_AGENT_EVENT_AUGMENT_DETACHING:
      EXPECT_LE(0, --log->attached[name + " " + event.path]) << name << " " << event.path;
      break;
    default:
      break;
  }
}

void OnEvent(QmCtx* ctx, const QmAgentEvent* event, void* arg) {
  auto* log = static_cast<Log*>(arg);
  if (!log->text.empty()) log->text += ", ";
  log->text += Word(ctx, *event);
  Count(log, *event);
  if (log->walks && !testing::Test::HasFailure()) every_walk::Check(ctx);
}

class Events : public testing::Test {
 protected:
  Events() { QM_AGENT_SetEvents(world_.ctx(), OnEvent, &log_); }
  ~Events() override { QM_AGENT_SetEvents(world_.ctx(), nullptr, nullptr); }

  // What was told since the last call.
  std::string Told() {
    std::string text;
    text.swap(log_.text);
    return text;
  }

  Log log_;
  coupling::World world_;
};

TEST_F(Events, ALoadTellsOfItsAugmentsThenOfItself) {
  world_.Add("t", Container("x"));
  EXPECT_EQ("+t", Told());
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("l") + Leaf("m")));
  EXPECT_EQ("a>/t:x, +a", Told());
  // A second load reads nothing and tells nothing.
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("", Told());
}

TEST_F(Events, WhatWaitedIsToldOfAfterTheModuleThatItWaitedFor) {
  world_.Add("b", Imports({"t"}) + Augment("/t:x", Leaf("z")));
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("y")));
  EXPECT_EQ("+b, +a", Told());
  world_.Add("t", Container("x"));
  // The relation that was recorded last is visited first.
  EXPECT_EQ("+t, a>/t:x, b>/t:x", Told());
}

TEST_F(Events, AnUnloadDetachesThenTellsOfTheModule) {
  world_.Add("t", Container("x"));
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("l")));
  static_cast<void>(Told());
  EXPECT_EQ(QM_OK, world_.Unload("a"));
  EXPECT_EQ("a</t:x, -a", Told());
  EXPECT_EQ(QM_OK, world_.Unload("a"));
  EXPECT_EQ(QM_OK, world_.Unload("never-there"));
  EXPECT_EQ("", Told());
}

TEST_F(Events, TheTargetOfAnAugmentGoesAndComes) {
  world_.Add("t", Container("x"));
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("l")));
  static_cast<void>(Told());
  EXPECT_EQ(QM_OK, world_.Unload("t"));
  EXPECT_EQ("a</t:x, -t", Told());
  EXPECT_EQ(QM_OK, world_.Load("t"));
  EXPECT_EQ("+t, a>/t:x", Told());
}

TEST_F(Events, ADeviationTellsOfTheNodeThatItRemoves) {
  world_.Add("t", Container("x", Leaf("l") + Leaf("k")));
  static_cast<void>(Told());
  world_.Add("d", Imports({"t"}) + Deviation("/t:x/t:l", NotSupported()) +
                      Deviation("/t:x/t:k", Deviate("add", "<units name='s'/>")));
  EXPECT_EQ("!t:l by d, +d", Told());
}

TEST_F(Events, AModuleThatAnUnloadRebuiltIsBack) {
  world_.Add("t", Container("x", Leaf("l") + Leaf("k")));
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("n")));
  world_.Add("d", Imports({"t"}) + Deviation("/t:x/t:l", NotSupported()));
  static_cast<void>(Told());
  EXPECT_EQ(QM_OK, world_.Unload("d"));
  EXPECT_EQ("a</t:x, -d, -t, a>/t:x, =t", Told());
  EXPECT_EQ("x{l k n:a}", world_.Tree("t"));
}

TEST_F(Events, AModuleThatIsBackHasItsFeatures) {
  world_.Add("t", "<feature name='f'/>" + Leaf("l"));
  world_.Add("d", Imports({"t"}) + Deviation("/t:l", Deviate("add", "<units name='s'/>")));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(world_.Module("t"), "f"));
  struct Seen {
    int loaded = 0;
    int back = 0;
  } seen;
  QM_AGENT_SetEvents(
      world_.ctx(),
      [](QmCtx* ctx, const QmAgentEvent* event, void* arg) {
        if (event->kind == QM_AGENT_EVENT_MODULE_LOADED) ++static_cast<Seen*>(arg)->loaded;
        if (event->kind != QM_AGENT_EVENT_MODULE_BACK) return;
        ++static_cast<Seen*>(arg)->back;
        EXPECT_EQ(1u, QM_CTX_IsModFeatureEnable(ctx, "t", "f"));
      },
      &seen);
  EXPECT_EQ(QM_OK, world_.Unload("d"));
  EXPECT_EQ(0, seen.loaded);
  EXPECT_EQ(1, seen.back);
}

TEST_F(Events, DeviationsOfTwoModulesBringBothBack) {
  world_.Add("t", Container("x", Container("y")));
  world_.Add("u", Leaf("l"));
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Container("z")));
  static_cast<void>(Told());
  world_.Add("d", Imports({"t", "u"}) + Deviation("/t:x/t:y", NotSupported()) +
                      Deviation("/u:l", NotSupported()));
  EXPECT_EQ("!t:y by d, !u:l by d, +d", Told());
  EXPECT_EQ(QM_OK, world_.Unload("d"));
  EXPECT_EQ("a</t:x, -d, -t, -u, a>/t:x, =t, =u", Told());
}

// The augment lost its children, so that there is nothing to detach.
TEST_F(Events, ADeviationThatTakesARunEndsIt) {
  world_.Add("t", Container("x", Container("y")));
  world_.Add("a", Imports({"t"}) + Augment("/t:x/t:y", Container("z", Leaf("l"))));
  static_cast<void>(Told());
  world_.Add("d", Imports({"t", "a"}) + Deviation("/t:x/t:y", NotSupported()));
  EXPECT_EQ("!t:y by d, +d", Told());
  EXPECT_EQ(QM_OK, world_.Unload("a"));
  EXPECT_EQ("-a", Told());
}

TEST_F(Events, ARebuiltModuleThatIsNoMoreThereIsNotBack) {
  world_.Add("t", Leaf("l"));
  world_.Add("d", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  static_cast<void>(Told());
  world_.Remove("t.yin");
  EXPECT_NE(QM_OK, world_.Unload("d"));
  EXPECT_EQ("-d, -t", Told());
  EXPECT_FALSE(world_.IsLoaded("t"));
}

TEST_F(Events, ALoadThatFailsTellsOfNothing) {
  EXPECT_NE(QM_OK, world_.Load("absent"));
  world_.PutFile("broken.yin", "broken", "<augment target-node='/t:x'>");
  EXPECT_NE(QM_OK, world_.Load("broken"));
  world_.Add("t", Container("x"));
  static_cast<void>(Told());
  EXPECT_NE(QM_OK, QM_CTX_LoadMemory(world_.ctx(), "<module/>"));
  // Another module with a namespace that is taken is not registered.
  EXPECT_NE(QM_OK, QM_CTX_LoadMemory(world_.ctx(),
                                     "<module name='u' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
                                     "<namespace uri='urn:t'/><prefix value='u'/></module>"));
  EXPECT_EQ("", Told());
}

TEST_F(Events, AModuleFromMemoryIsToldOfAsAnother) {
  EXPECT_EQ(QM_OK, world_.LoadText("t", Container("x")));
  EXPECT_EQ(QM_OK, world_.LoadText("a", Imports({"t"}) + Augment("/t:x", Leaf("l"))));
  EXPECT_EQ(QM_OK, world_.LoadText("a", Leaf("ignored")));
  EXPECT_EQ("+t, a>/t:x, +a", Told());
}

TEST_F(Events, AnAugmentOfAModuleIntoItselfIsAPartOfIt) {
  world_.Add("m", Container("c") + Augment("/m:c", Container("y")) +
                      Augment("/m:c/m:y", Leaf("z")) + Leaf("last"));
  EXPECT_EQ("c{y{z}} last", world_.Tree("m"));
  EXPECT_EQ("+m", Told());
  EXPECT_EQ(QM_OK, world_.Unload("m"));
  EXPECT_EQ("-m", Told());
}

TEST_F(Events, AnotherPartOfASplitModuleExtendsIt) {
  world_.Add("t", Container("x"));
  const std::string head = Imports({"t"});
  world_.PutFile("a@@1.yin", "a", head + Augment("/t:x", Leaf("l")));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("+t, a>/t:x, +a", Told());
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("", Told());
  world_.PutFile("a@@2.yin", "a", head + Augment("/t:x", Leaf("l") + Leaf("m")));
  EXPECT_EQ(QM_OK, world_.Load("a"));
  EXPECT_EQ("a</t:x, a>/t:x, *a", Told());
  // Unloading it means reading its parts again.
  EXPECT_EQ(QM_OK, world_.Unload("a"));
  EXPECT_EQ("a</t:x, -a, a>/t:x, =a", Told());
}

TEST_F(Events, EachEventGetsTheArgumentOfItsContext) {
  Log other;
  coupling::World second;
  QM_AGENT_SetEvents(second.ctx(), OnEvent, &other);
  world_.Add("t", Leaf("l"));
  second.Add("u", Leaf("l"));
  EXPECT_EQ("+t", Told());
  EXPECT_EQ("+u", other.text);
  QM_AGENT_SetEvents(second.ctx(), nullptr, &other);
  second.Add("v", Leaf("l"));
  EXPECT_EQ("+u", other.text);
  QM_AGENT_SetEvents(nullptr, OnEvent, &other);
}

TEST_F(Events, TheHookIsCalledRightBeforeTheEvent) {
  static Log* log = nullptr;
  log = &log_;
  QM_CTX_SetFirstAugChildRelinkFunc(world_.ctx(), [](QmCtx*, QmsNode* node) {
    log->text += std::string(log->text.empty() ? "" : ", ") + "hook " + QM_NODE_GetNodeName(node);
  });
  QM_CTX_SetReloadModuleCbFunc(
      world_.ctx(), [](QmCtx*, const char* name) { log->text += std::string(", hook ") + name; });
  world_.Add("t", Container("x"));
  world_.Add("a", Imports({"t"}) + Augment("/t:x", Leaf("l")));
  EXPECT_EQ(QM_OK, world_.Unload("a"));
  EXPECT_EQ("+t, hook l, a>/t:x, +a, hook l, a</t:x, hook a, -a", Told());
}

TEST_F(Events, TheFunctionMaySetItselfAndPrivateDataAndFeatures) {
  static int here = 0;
  QM_AGENT_SetEvents(
      world_.ctx(),
      [](QmCtx* ctx, const QmAgentEvent* event, void* arg) {
        EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(event->module, "f"));
        static_cast<void>(QM_MOD_SetPrivate(event->module, &here));
        QM_AGENT_SetEvents(ctx, OnEvent, arg);
      },
      &log_);
  world_.Add("t", "<feature name='f'/>" + Leaf("l"));
  world_.Add("u", Leaf("l"));
  EXPECT_EQ("+u", Told());
  EXPECT_EQ(1u, QM_CTX_IsModFeatureEnable(world_.ctx(), "t", "f"));
  EXPECT_EQ(&here, QM_MOD_GetPrivate(world_.Module("t")));
}

TEST(EventsOfImports, AModuleIsToldOfBeforeItsImports) {
  Log log;
  coupling::World world(QM_LOAD_IMPORTS);
  QM_AGENT_SetEvents(world.ctx(), OnEvent, &log);
  world.Put("t", Imports({"u"}) + Container("x"));
  world.Put("u", Leaf("l"));
  world.Put("a", Imports({"t"}) + Augment("/t:x", Leaf("l")));
  EXPECT_EQ(QM_OK, world.Load("a"));
  EXPECT_EQ("+a, +t, +u, a>/t:x", log.text);
  // What failed for want of an import stays loaded, and was told of.
  log.text.clear();
  world.Put("w", Imports({"absent"}) + Leaf("l"));
  EXPECT_NE(QM_OK, world.Load("w"));
  EXPECT_EQ("+w", log.text);
  QM_AGENT_SetEvents(world.ctx(), nullptr, nullptr);
}

TEST(EventsOfImports, AnImportThatComesBackEarlyIsToldOfOnce) {
  Log log;
  coupling::World world(QM_LOAD_IMPORTS);
  QM_AGENT_SetEvents(world.ctx(), OnEvent, &log);
  world.Put("u", Leaf("l"));
  world.Put("t", Imports({"u"}) + Leaf("l"));
  world.Put("d", Imports({"t", "u"}) + Deviation("/t:l", NotSupported()) +
                     Deviation("/u:l", NotSupported()));
  EXPECT_EQ(QM_OK, world.Load("d"));
  EXPECT_EQ("+d, +t, +u, !t:l by d, !u:l by d", log.text);
  log.text.clear();
  // Reading t brings u along, before u's turn.
  EXPECT_EQ(QM_OK, world.Unload("d"));
  EXPECT_EQ("-d, -t, -u, =t, =u", log.text);
  QM_AGENT_SetEvents(world.ctx(), nullptr, nullptr);
}

TEST(EventsOfImports, TheUnloadedModuleMayComeBackAsAnImport) {
  Log log;
  coupling::World world(QM_LOAD_IMPORTS);
  QM_AGENT_SetEvents(world.ctx(), OnEvent, &log);
  world.Put("t", Imports({"d"}) + Leaf("l"));
  world.Put("d", Imports({"t"}) + Deviation("/t:l", NotSupported()));
  EXPECT_EQ(QM_OK, world.Load("d"));
  log.text.clear();
  EXPECT_EQ(QM_OK, world.Unload("d"));
  // It was not asked for, so it is loaded, and not back.
  EXPECT_EQ("-d, -t, !t:l by d, +d, =t", log.text);
  QM_AGENT_SetEvents(world.ctx(), nullptr, nullptr);
}

TEST(EventsAtTheEnd, ADeletedContextDetachesAllThenTellsOfEachModule) {
  Log log;
  {
    coupling::World world;
    QM_AGENT_SetEvents(world.ctx(), OnEvent, &log);
    world.Add("t", Container("x"));
    world.Add("b", Imports({"t"}) + Augment("/t:x", Container("y")));
    world.Add("a", Imports({"t", "b"}) + Augment("/t:x/b:y", Leaf("l")));
    log.text.clear();
  }
  EXPECT_EQ("a</t:x/b:y, b</t:x, -a, -b, -t", log.text);
  for (const auto& [name, count] : log.loaded) EXPECT_EQ(0, count) << name;
  for (const auto& [path, count] : log.attached) EXPECT_EQ(0, count) << path;
}

// With memory refused anywhere, what was loaded goes, and what was attached is detached
// unless a deviation took it.
TEST(EventsWithoutMemory, AreBalancedWhateverIsRefused) {
  static const auto life = [](bool) {
    Log log;
    log.walks = false;
    {
      yin::Context ctx;
      if (ctx.Get() == nullptr) return;
      QM_AGENT_SetEvents(ctx, OnEvent, &log);
      const auto load = [&ctx](const char* name, const std::string& body) {
        static_cast<void>(QM_CTX_LoadMemory(ctx, yin::Module(name, body).c_str()));
      };
      load("t", Container("x", Leaf("l")) + Leaf("last"));
      load("b", Imports({"t", "a"}) + Augment("/t:x/a:y", Leaf("z") + Leaf("z2")));
      load("a", Imports({"t"}) + Augment("/t:x", Container("y") + Leaf("y2")));
      static_cast<void>(QM_CTX_UnloadModule(ctx, "a"));
      load("d", Imports({"t"}) + Deviation("/t:last", NotSupported()));
      static_cast<void>(QM_CTX_UnloadModule(ctx, "t"));
    }
    for (const auto& [name, count] : log.loaded) EXPECT_EQ(0, count) << name << ": " << log.text;
    for (const auto& [path, count] : log.attached) EXPECT_EQ(0, count) << path << ": " << log.text;
  };
  EXPECT_LT(100u, counting_memory::FailEachAllocation(life));
}

}  // namespace
