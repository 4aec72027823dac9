// SPDX-License-Identifier: BSD-3-Clause
// Random modules that act on each other in every way, loaded, unloaded, changed
// and split in any order, with memory refused now and then. The files of the split
// one are listed in another order by each seed.
//
// Nothing is known about the outcome of a step; what must hold after each is
// that the trees are properly linked, that every reading call works on what is
// loaded, and that in the end nothing is left. Under the address sanitizer that
// finds pointers into modules that are gone.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include <qmodel/data.h>
#include <qmodel/error.h>

#include "tests/support/counting_memory.h"
#include "tests/support/coupling.h"
#include "tests/support/every_walk.h"
#include "tests/support/listing.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"

namespace {

constexpr uint32_t kModules = 5;
constexpr uint32_t kNames = 3;  // names of one kind of thing; few, so that they meet
constexpr int kSeeds = 30;
constexpr int kSteps = 40;

using Random = std::mt19937;

// The words of the random models. Nearly all of it can be parsed; what it names
// may be missing, of another kind, or not loaded.
class Writer {
 public:
  Writer(Random* random, uint32_t self) : random_(*random), self_(self) {}

  std::string Body() {
    std::string text = Imports();
    if (Chance(4)) text += "<include module='s" + Number(kNames) + "'/>";
    for (uint32_t i = 0; i < kNames; ++i) text += Typedef(i);
    // What the paths of the others mostly lead to.
    text += "<container name='n0'><container name='n1'>" + Nodes(2) + "</container>" + Node(1) +
            "</container>";
    return text + Part();
  }

  std::string Imports() {
    std::string text;
    for (uint32_t i = 0; i < kModules; ++i)
      if (i != self_)
        text += "<import module='" + Mod(i) + "'><prefix value='" + Mod(i) + "'/></import>";
    return text;
  }

  // What a submodule holds.
  std::string Part() {
    std::string text = Definitions();
    for (uint32_t i = Below(3); i > 0; --i) text += Node(0);
    return text + Rest();
  }

  // What one file of a split module may have beside another.
  std::string Rest() {
    std::string text;
    if (Chance(3)) text += Operation("rpc");
    if (Chance(4)) text += "<notification name='" + Name() + "'>" + Nodes(1) + "</notification>";
    for (uint32_t i = Below(5); i > 0; --i) text += Augment();
    for (uint32_t i = Below(3); i > 0; --i) text += Deviation();
    return Chance(15) ? text + Broken() : text;
  }

 private:
  uint32_t Below(uint32_t n) { return static_cast<uint32_t>(random_()) % n; }
  bool Chance(uint32_t n) { return Below(n) == 0; }
  std::string Number(uint32_t n) { return std::to_string(Below(n)); }
  static std::string Mod(uint32_t i) { return "m" + std::to_string(i); }
  std::string AnyMod() { return Mod(Below(kModules)); }
  std::string Name() { return "n" + Number(kNames); }
  std::string Own(const std::string& name) { return Chance(2) ? name : AnyMod() + ":" + name; }

  std::string Definitions() {
    std::string text;
    if (Chance(2)) text += "<feature name='f" + Number(kNames) + "'/>";
    for (uint32_t i = Below(3); i > 0; --i)
      text += "<identity name='i" + Number(kNames) + "'>" + Bases() + "</identity>";
    if (Chance(4)) text += "<extension name='e'/><" + AnyMod() + ":e x='" + Number(3) + "'/>";
    return text;
  }

  // Names only later ones of its module, so that most can be resolved.
  std::string Typedef(uint32_t i) {
    const std::string next = "t" + std::to_string(i + 1);
    return "<typedef name='t" + std::to_string(i) + "'>" +
           (i + 1 < kNames && Chance(2) ? "<type name='" + next + "'/>" : Type(2)) +
           (Chance(3) ? "<default value='1'/>" : "") + "</typedef>";
  }

  std::string Bases() {
    std::string text;
    for (uint32_t i = Below(3); i > 0; --i)
      text += "<base name='" + Own("i" + Number(kNames)) + "'/>";
    return text;
  }

  std::string Type(uint32_t depth) {
    switch (Below(8)) {
      case 0:
      case 1:
        return "<type name='" + Own("t" + Number(kNames)) + "'/>";
      case 2:
        return "<type name='identityref'><base name='" + Own("i" + Number(kNames)) + "'/></type>";
      case 3:
        return "<type name='leafref'><path value='" + Path(false) + "'/></type>";
      case 4:
        if (depth > 0) return "<type name='union'>" + Type(depth - 1) + Type(depth - 1) + "</type>";
        [[fallthrough]];
      case 5:
        return "<type name='string'><length value='0..9'/><pattern value='[a-z]*'/></type>";
      case 6:
        return "<type name='enumeration'><enum name='a'/><enum name='1'/></type>";
      default:
        return "<type name='int8'><range value='min..100'/></type>";
    }
  }

  std::string Properties() {
    std::string text;
    if (Chance(5)) text += "<if-feature name='" + Own("f" + Number(kNames)) + "'/>";
    if (Chance(5)) text += "<when condition=\"../" + Name() + " = 'm1:x'\"/>";
    if (Chance(6)) text += "<" + AnyMod() + ":e x='" + Number(3) + "'/>";
    return text;
  }

  std::string Nodes(uint32_t depth) {
    std::string text;
    for (uint32_t i = 1 + Below(3); i > 0; --i) text += Node(depth);
    return text;
  }

  std::string Must() { return Chance(4) ? "<must condition='" + Name() + "'/>" : ""; }
  std::string Config() {
    return Chance(6) ? std::string("<config value='") + (Chance(2) ? "true" : "false") + "'/>" : "";
  }

  std::string Node(uint32_t depth) {
    const std::string start = " name='" + Name() + "'>" + Properties();
    switch (depth < 3 ? Below(9) : Below(3)) {
      case 0:
      case 1:
        return "<leaf" + start + Must() + Type(1) + (Chance(3) ? "<default value='1'/>" : "") +
               Config() + "</leaf>";
      case 2:
        return "<leaf-list" + start + Must() + Type(1) +
               (Chance(3) ? "<default value='1'/><default value='2'/>" : "") + "</leaf-list>";
      case 3:
        return "<list" + start + "<key value='k'/><leaf name='k'>" + Type(1) + "</leaf>" +
               Nodes(depth + 1) + "</list>";
      case 4:
        return "<choice" + start + "<case name='" + Name() + "'>" + Node(depth + 1) + "</case>" +
               (Chance(2) ? "<default value='n0'/>" : "") + "</choice>";
      case 5:
        if (depth > 0 && depth < 2 && Chance(3)) return Operation("action");
        [[fallthrough]];
      default:
        return "<container" + start + Must() + Config() + Nodes(depth + 1) + "</container>";
    }
  }

  std::string Operation(const std::string& keyword) {
    std::string text = "<" + keyword + " name='" + Name() + "'>";
    if (Chance(2)) text += "<input>" + Nodes(2) + "</input>";
    if (Chance(2)) text += "<output>" + Nodes(2) + "</output>";
    return text + "</" + keyword + ">";
  }

  // With prefixes on some of its steps, as they stand where modules meet.
  std::string Path(bool absolute) {
    std::string path = absolute ? "/" + AnyMod() + ":n" + (Chance(3) ? "1" : "0") : "..";
    for (uint32_t i = Below(absolute ? 3 : 4); i > 0; --i) {
      path += "/" + (Chance(4) ? AnyMod() + ":" : "") + Step();
    }
    return path;
  }

  std::string Step() {
    return Chance(12) ? (Chance(2) ? "input" : "output") : Chance(2) ? "n1" : Name();
  }

  std::string Augment() {
    return "<augment target-node='" + Path(true) + "'>" + Properties() + Nodes(1) + "</augment>";
  }

  std::string Deviation() {
    std::string text = "<deviation target-node='" + Path(true) + "'>";
    for (uint32_t i = 1 + Below(2); i > 0; --i) text += Deviate();
    return text + "</deviation>";
  }

  std::string Deviate() {
    const std::string ext = Chance(3) ? "<" + AnyMod() + ":e x='" + Number(3) + "'/>" : "";
    const std::string musts = Chance(3) ? "<must condition='" + Name() + "'/>" : "";
    const std::string value = Chance(3) ? "<default value='" + Number(3) + "'/>" : "";
    switch (Below(4)) {
      case 0:
        return "<deviate value='add'>" + musts + value + ext + Config() + "</deviate>";
      case 1:
        return "<deviate value='delete'>" + musts + value + ext + "</deviate>";
      case 2:
        return "<deviate value='replace'>" + (Chance(2) ? Type(1) : "") + value + Config() +
               "</deviate>";
      default:
        return "<deviate value='not-supported'/>";
    }
  }

  std::string Broken() {
    switch (Below(4)) {
      case 0:
        return "<leaf name='bad'/>";
      case 1:
        return "<include module='none'/>";
      case 2:
        return "<container name='bad'><config value='maybe'/></container>";
      default:
        return "<list name='bad'><key value='none'/></list>";
    }
  }

  Random& random_;
  uint32_t self_;
};

int g_privates = 0;  // nodes that were given private data and have not been freed

QmCtx* g_ctx = nullptr;
uint32_t g_hookCalls = 0;

// The hooks of which there are most do not walk each time.
void WalkInHook(QmCtx* ctx) {
  if (++g_hookCalls % 5 == 0 && !testing::Test::HasFailure()) every_walk::CheckQuickly(ctx);
}

// The node that dies may be read by its name and module, everything registered at
// any moment.
void FreePrivate(QmsNode* node, void* data) {
  --g_privates;
  EXPECT_EQ(&g_privates, data);
  EXPECT_NE(nullptr, QM_NODE_GetNodeName(node));
  EXPECT_NE(nullptr, QM_NODE_GetModule(node));
  WalkInHook(g_ctx);
}

uint32_t DropText(const char*, uint32_t, void*) {
  return 0;
}

uint32_t StopScan(const char*, const char*, QmtType*, void*) {
  return 0;
}

// Asks a node all that can be asked.
uint32_t Read(QmsNode* node, uint32_t travType, void* arg) {
  if (travType == QMS_TRAV_PARENT) return 0;
  QmCtx* ctx = static_cast<QmCtx*>(arg);
  const char* module = QM_MOD_GetModuleName(QM_NODE_GetModule(node));
  EXPECT_EQ(QM_NODE_GetModule(node), QM_CTX_GetModuleByModName(ctx, module));
  for (const char* value : {"1", "a", "m1:i1"}) {
    static_cast<void>(QM_NODE_ValidateValue(node, QM_INPUT_TEXT, value));
    static_cast<void>(QM_NODE_FindRealTypeMatchedValue(node, QM_INPUT_TEXT, value));
  }
  static_cast<void>(QM_NODE_ScanDerivedType(node, StopScan, nullptr));
  static_cast<void>(QM_NODE_GetLeafrefTargetNode(node, 1));
  static_cast<void>(QM_NODE_GetAugmentTargetNode(node));
  static_cast<void>(QM_NODE_GetDefaultValueStr(node));
  static_cast<void>(QM_NODE_GetUnitsValueStr(node));
  static_cast<void>(QM_NODE_IsEnabled(node));
  if (QM_NODE_GetPrivate(node) == nullptr && QM_NODE_GetNodeType(node) == QMS_NODE_CONTAINER) {
    ++g_privates;
    static_cast<void>(QM_NODE_SetPrivate(node, &g_privates));
  }
  return 0;
}

uint32_t ReadTree(QmsNode* top, uint32_t, void* arg) {
  return QM_NODE_TreeScanAllNode(top, Read, arg);
}

void ReadModule(QmCtx* ctx, const std::string& name) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
  if (module == nullptr) return;
  static_cast<void>(QM_MOD_PrintModelTree(module, DropText, nullptr));
  EXPECT_EQ(QM_OK, QM_MOD_IterScanTopmostNode(module, ReadTree, ctx));
  EXPECT_EQ(QM_OK, QM_MOD_IterScanAugmentNode(module, ReadTree, ctx));
  std::string request = "<n0 xmlns='urn:" + name + "'><n1>1</n1><n2/></n0>";
  QM_FreeErrNode(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request.data(), nullptr, nullptr));
  static_cast<void>(QM_CTX_ValidateNotifDataTree(ctx, request.c_str(), nullptr, nullptr));
}

void ReadModules(QmCtx* ctx) {
  for (uint32_t m = 0; m < kModules; ++m) ReadModule(ctx, "m" + std::to_string(m));
}

// The hooks walk, as they may, in the middle of what raises them. Reading all that
// can be read takes long, so that is not done each time either.
void ReadInHook(QmCtx* ctx) {
  if (!testing::Test::HasFailure()) every_walk::CheckQuickly(ctx);
  if (!testing::Test::HasFailure() && ++g_hookCalls % 7 == 0) ReadModules(ctx);
}

void OnRelink(QmCtx* ctx, QmsNode*) {
  ReadInHook(ctx);
}

uint32_t OnNotSupported(QmCtx* ctx, QmsNode*, const char*, const char*) {
  ReadInHook(ctx);
  return 1;
}

uint32_t OnExtInsts(QmCtx* ctx, QmsNode*) {
  ReadInHook(ctx);
  return 1;
}

void OnReload(QmCtx* ctx, const char*) {
  ReadInHook(ctx);
}

uint32_t OnFilter(const char*, const char*) {
  WalkInHook(g_ctx);
  return 0;
}

class Operator {
 public:
  explicit Operator(uint32_t seed) : random_(seed), ctx_(seed % 3 == 0 ? QM_LOAD_IMPORTS : 0) {
    g_ctx = ctx_;
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder_.Dir()));
    QM_CTX_SetPridataFreeFunc(ctx_, FreePrivate);
    QM_CTX_SetFirstAugChildRelinkFunc(ctx_, OnRelink);
    QM_CTX_SetBeforeDeviateNotSupportFunc(ctx_, OnNotSupported);
    QM_CTX_SetBeforeDeviateExtInstFunc(ctx_, OnExtInsts);
    QM_CTX_SetReloadModuleCbFunc(ctx_, OnReload);
    QM_CTX_SetExtInstFilterCbFunc(ctx_, OnFilter);
    for (uint32_t i = 0; i < kNames; ++i) WriteSubmodule(i);
    for (uint32_t i = 0; i < kModules; ++i) WriteModule(i);
  }

  void Step() {
    const uint32_t i = Below(kModules);
    const std::string name = "m" + std::to_string(i);
    const bool refuse = Below(5) == 0;
    if (refuse) {
      counting_memory::RefuseNth(1 + Below(400), Below(2) == 0
                                                     ? counting_memory::Refuse::kOnce
                                                     : counting_memory::Refuse::kFromThenOn);
    }
    Act(i, name);
    if (refuse) counting_memory::StopRefusing();
    coupling::CheckLinks(ctx_);
    ReadModules(ctx_);
  }

  const std::string& Log() const { return log_; }

  std::string Trees() const {
    std::string text;
    for (uint32_t m = 0; m < kModules; ++m) {
      const QmsModule* module = QM_CTX_GetModuleByModName(ctx_, ("m" + std::to_string(m)).c_str());
      if (module == nullptr) continue;
      text += coupling::Tree(module) + coupling::Augments(module) + coupling::Deviations(module);
    }
    return text + "\n";
  }

 private:
  uint32_t Below(uint32_t n) { return static_cast<uint32_t>(random_()) % n; }

  void Act(uint32_t i, const std::string& name) {
    switch (Below(12)) {
      case 0:
        log_ += " ~" + name;
        return WriteModule(i);
      case 1:
        log_ += " $" + name;
        static_cast<void>(QM_CTX_LoadMemory(ctx_, Text(i, Writer(&random_, i).Body()).c_str()));
        return;
      case 2:
        if (QmsModule* module = QM_CTX_GetModuleByModName(ctx_, name.c_str()))
          static_cast<void>(QM_MOD_EnableFeature(module, "*"));
        return;
      case 3:
      case 4:
      case 5:
      case 6:
        log_ += " -" + name;
        static_cast<void>(QM_CTX_UnloadModule(ctx_, name.c_str()));
        return;
      default:
        log_ += " +" + name;
        static_cast<void>(QM_CTX_LoadModule(ctx_, name.c_str()));
    }
  }

  static std::string Text(uint32_t i, const std::string& body) {
    std::string prefixes;
    for (uint32_t m = 0; m < kModules; ++m)
      if (m != i) prefixes += " xmlns:m" + std::to_string(m) + "='urn:m" + std::to_string(m) + "'";
    return yin::Module("m" + std::to_string(i), body, prefixes);
  }

  void WriteSubmodule(uint32_t i) {
    const std::string name = "s" + std::to_string(i);
    const std::string include = Below(3) == 0 ? "<include module='s0'/>" : "";
    folder_.Write(name + ".yin",
                  yin_text::Submodule(name, include + Writer(&random_, kModules).Part(),
                                      " xmlns:m0='urn:m0' xmlns:m1='urn:m1'"
                                      " xmlns:m2='urn:m2' xmlns:m3='urn:m3'"
                                      " xmlns:m4='urn:m4'"));
  }

  // The last module is split into files that share its beginning, as they must.
  void WriteModule(uint32_t i) {
    const std::string name = "m" + std::to_string(i);
    const std::string body = Writer(&random_, i).Body();
    if (i + 1 < kModules) return folder_.Write(name + ".yin", Text(i, body));
    folder_.Write(name + "@@a.yin", Text(i, body));
    folder_.Write(name + "@@b.yin", Text(i, body + Writer(&random_, i).Rest()));
    Writer rest(&random_, i);
    folder_.Write(name + "@@c.yin", Text(i, rest.Imports() + rest.Rest()));
  }

  yin::Folder folder_;
  Random random_;
  yin::Context ctx_;
  std::string log_;
};

// Other runs than the usual ones: --gtest_shuffle --gtest_random_seed=N.
uint32_t FirstSeed() {
  return 1 + 1000 * static_cast<uint32_t>(testing::UnitTest::GetInstance()->random_seed());
}

TEST(HostileSequence, LeavesNoPointerIntoWhatIsGone) {
  for (uint32_t seed = FirstSeed(); seed < FirstSeed() + kSeeds && !HasFailure(); ++seed) {
    g_privates = 0;
    g_hookCalls = 0;
    listing::Draw(seed);
    {
      Operator op(seed);
      for (int step = 0; step < kSteps && !HasFailure(); ++step) op.Step();
      EXPECT_FALSE(HasFailure()) << "seed " << seed << ":" << op.Log();
    }
    EXPECT_EQ(0, g_privates) << "seed " << seed;
  }
}

// All that the loads and unloads have made of the modules.
std::string Outcome(uint32_t seed) {
  listing::Draw(seed);
  g_hookCalls = 0;
  std::string outcome;
  Operator op(seed);
  for (int step = 0; step < kSteps && !testing::Test::HasFailure(); ++step) {
    op.Step();
    outcome += op.Trees();
  }
  return outcome;
}

TEST(HostileSequence, DependsOnNothingButItsSeed) {
  std::set<std::string> outcomes;
  for (uint32_t seed = FirstSeed(); seed < FirstSeed() + 4; ++seed) {
    const std::string outcome = Outcome(seed);
    EXPECT_EQ(outcome, Outcome(seed)) << "seed " << seed;
    outcomes.insert(outcome);
  }
  EXPECT_EQ(4u, outcomes.size());
}

}  // namespace
