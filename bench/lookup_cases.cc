// SPDX-License-Identifier: BSD-3-Clause
// What only reads the schema: paths, modules, features, identities, walks and printed trees.
#include "bench/generate_models.h"
#include "bench/schema_paths.h"
#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

constexpr uint64_t kSeed = 31;

static Context GeneratedContext(int64_t modules) {
  std::vector<std::string> texts;
  for (const GeneratedModule& module : GenerateModules(kSeed, modules, 300))
    texts.push_back(module.text);
  return LoadedContext(texts);
}

static Work GeneratedPaths(int64_t modules) {
  const Context ctx = GeneratedContext(modules);
  std::vector<std::string> names;
  for (int64_t i = 0; i < modules; ++i) names.push_back(Numbered("gen-", i));
  return PathWork(ctx, PathsOf(ctx.get(), names));
}

// The path of each leaf of one list.
static Work SiblingPaths(int64_t leaves) {
  std::string content = StringLeaf("leaf0");
  std::vector<std::string> paths{"/m:list/leaf0"};
  for (int64_t i = 1; i < leaves; ++i) {
    content += StringLeaf(Numbered("leaf", i));
    paths.push_back("/m:list/" + Numbered("leaf", i));
  }
  const std::string list = "<list name='list'><key value='leaf0'/>" + content + "</list>";
  return PathWork(LoadedContext({Module("m", "m", list)}), paths);
}

static Work ModulesByName(int64_t modules) {
  Work work;
  work.units = 2 * modules;
  work.run = [ctx = GeneratedContext(modules), modules] {
    for (int64_t i = 0; i < modules; ++i) {
      const std::string name = Numbered("gen-", i);
      Require(QM_CTX_GetModuleByModName(ctx.get(), name.c_str()) != nullptr, "a module is missing");
      const std::string ns = "urn:" + name;
      Require(QM_CTX_GetModuleByModNs(ctx.get(), ns.c_str()) != nullptr, "a namespace is missing");
    }
  };
  return work;
}

static Work Features(int64_t modules) {
  Work work;
  work.units = modules;
  work.run = [ctx = GeneratedContext(modules), modules] {
    for (int64_t i = 0; i < modules; ++i) {
      const uint32_t enabled =
          QM_CTX_IsModFeatureEnable(ctx.get(), Numbered("gen-", i).c_str(), "slow");
      Require(enabled == 0, "a feature is enabled");
    }
  };
  return work;
}

static uint32_t CountBase(const char* /*module*/, const char* /*identity*/, void* count) {
  ++*static_cast<int64_t*>(count);
  return 0;
}

static uint32_t CountIdentity(QmsIdentity* identity, void* count, uint32_t /*zero*/) {
  ++*static_cast<int64_t*>(count);
  return QM_MOD_ScanIdentityBase(identity, CountBase, count);
}

static Work Identities(int64_t modules) {
  constexpr int64_t kIdentitiesAndBases = 5;
  Work work;
  work.units = modules * kIdentitiesAndBases;
  work.run = [ctx = GeneratedContext(modules), modules] {
    int64_t count = 0;
    for (int64_t i = 0; i < modules; ++i) {
      QmsModule* module = QM_CTX_GetModuleByModName(ctx.get(), Numbered("gen-", i).c_str());
      Require(QM_MOD_ScanAllIdentity(module, CountIdentity, &count) == 0, "identities are missing");
    }
    Require(count == modules * kIdentitiesAndBases, "an identity is missing");
  };
  return work;
}

static uint32_t CountNode(QmsNode* /*node*/, uint32_t /*travType*/, void* count) {
  ++*static_cast<int64_t*>(count);
  return 0;
}

static uint32_t WalkBelow(QmsNode* node, uint32_t /*travType*/, void* count) {
  return QM_NODE_TreeScanAllNode(node, CountNode, count);
}

static int64_t Walk(QmCtx* ctx, int64_t modules) {
  int64_t count = 0;
  for (int64_t i = 0; i < modules; ++i) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, Numbered("gen-", i).c_str());
    Require(QM_MOD_IterScanTopmostNode(module, WalkBelow, &count) == 0, "a walk failed");
  }
  return count;
}

static Work Walks(int64_t modules) {
  Work work;
  const Context ctx = GeneratedContext(modules);
  const int64_t visits = Walk(ctx.get(), modules);
  work.units = visits;
  work.run = [=] { Require(Walk(ctx.get(), modules) == visits, "a walk is shorter"); };
  return work;
}

static uint32_t CountText(const char* /*text*/, uint32_t length, void* count) {
  *static_cast<int64_t*>(count) += length;
  return 0;
}

static int64_t Print(QmCtx* ctx, int64_t modules) {
  int64_t length = 0;
  for (int64_t i = 0; i < modules; ++i) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, Numbered("gen-", i).c_str());
    Require(QM_MOD_PrintModelTree(module, CountText, &length) == 0, "a tree is not printed");
  }
  return length;
}

static Work Trees(int64_t modules) {
  Work work;
  const Context ctx = GeneratedContext(modules);
  const int64_t length = Print(ctx.get(), modules);
  work.units = length;
  work.bytes = length;
  work.run = [=] { Require(Print(ctx.get(), modules) == length, "a tree is shorter"); };
  return work;
}

std::vector<Case> LookupCases() {
  return {
      {"paths of 20 modules", "path", 20, 20, 2, GeneratedPaths},
      {"paths of 800 leaves of one list", "path", 800, 800, 800, SiblingPaths},
      {"modules by name and namespace", "lookup", 100, 100, 50, ModulesByName},
      {"features by name", "lookup", 100, 100, 50, Features},
      {"identities and their bases", "callback", 100, 100, 50, Identities},
      {"schema walk", "callback", 20, 20, 5, Walks},
      {"tree printing", "byte", 20, 20, 2, Trees},
  };
}
