// SPDX-License-Identifier: BSD-3-Clause
// Loading and unloading of generated models: few big modules, many small ones, and one that
// comes and goes among many. What is compared is the parse of the same texts.
#include "bench/generate_models.h"
#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

constexpr uint64_t kSeed = 11;

static std::vector<std::string> Texts(const std::vector<GeneratedModule>& modules) {
  std::vector<std::string> texts;
  for (const GeneratedModule& module : modules) texts.push_back(module.text);
  return texts;
}

static int64_t DataNodes(const std::vector<GeneratedModule>& modules) {
  int64_t nodes = 0;
  for (const GeneratedModule& module : modules) nodes += module.dataNodes;
  return nodes;
}

static Work LoadGenerated(int64_t modules, int64_t nodes) {
  const std::vector<GeneratedModule> generated = GenerateModules(kSeed, modules, nodes);
  return LoadWork(Texts(generated), DataNodes(generated));
}

static Work LoadBigModules(int64_t modules) {
  return LoadGenerated(modules, 1000);
}

static Work LoadManyModules(int64_t modules) {
  return LoadGenerated(modules, 300);
}

// The load alone; what it keeps is deleted afterwards.
static Work KeepBigModules(int64_t modules) {
  const std::vector<GeneratedModule> generated = GenerateModules(kSeed, modules, 1000);
  const auto ctx = std::make_shared<Context>();
  const std::vector<std::string> texts = Texts(generated);
  Work work;
  work.units = DataNodes(generated);
  work.bytes = SizeOf(texts);
  work.parse = ParseOf(texts);
  work.run = [ctx, texts] { *ctx = LoadedContext(texts); };
  work.after = [ctx] { ctx->reset(); };
  return work;
}

// One module without augments and deviations is unloaded from among `modules`, and loaded
// again.
static Work ReloadOne(int64_t modules) {
  const std::vector<std::string> texts = Texts(GenerateModules(kSeed, modules, 30));
  const std::string text =
      Module("alone", "a", "<container name='c'>" + StringLeaf("l") + "</container>");
  const Context ctx = LoadedContext(texts);
  LoadText(ctx.get(), text);
  Work work;
  work.bytes = SizeOf({text});
  work.parse = ParseOf({text});
  work.run = [ctx, text] {
    Require(QM_CTX_UnloadModule(ctx.get(), "alone") == 0, "a module is not unloaded");
    LoadText(ctx.get(), text);
  };
  return work;
}

// `modules` modules that cannot be loaded, for each of which an error is recorded.
static Work LoadErrors(int64_t modules) {
  std::vector<std::string> texts;
  for (int64_t i = 0; i < modules; ++i) {
    texts.push_back(Module(Numbered("bad-", i), "b",
                           "<container name='c'>" + Leaf("l", Type("g:missing")) + "</container>"));
  }
  Work work;
  work.units = modules;
  work.bytes = SizeOf(texts);
  work.parse = ParseOf(texts);
  work.run = [texts] {
    const Context ctx = NewContext(0);
    for (const std::string& text : texts)
      Require(QM_CTX_LoadMemory(ctx.get(), text.c_str()) != 0, "a bad model is loaded");
    int errors = 0;
    const auto count = [](const char*, const char*, const char*, void* counter) -> uint32_t {
      ++*static_cast<int*>(counter);
      return 0;
    };
    Require(QM_CTX_ScanAllSchemaLoadFail(ctx.get(), count, &errors) == 0, "errors are not scanned");
    Require(errors >= static_cast<int>(texts.size()), "a load error is missing");
  };
  return work;
}

std::vector<Case> LoadCases() {
  return {
      {"load 20 modules of 1,000 nodes", "data node", 20, 20, 5, LoadBigModules},
      {"load 20 modules of 1,000 nodes and keep them", "data node", 20, 20, 5, KeepBigModules},
      {"load 1,000 modules of 300 nodes", "data node", 1000, 30, 10, LoadManyModules},
      {"unload and reload one of 1,000 modules", "run", 1000, 1000, 50, ReloadOne},
      {"load errors of 100 modules", "module", 100, 100, 50, LoadErrors},
  };
}
