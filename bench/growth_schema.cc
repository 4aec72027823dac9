// SPDX-License-Identifier: BSD-3-Clause
// How loading, unloading and lookups grow with each thing that models have more and more of.
#include "bench/generate_models.h"
#include "bench/schema_paths.h"
#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

using Make = std::function<Work(int64_t)>;
using Statement = std::function<std::string(int64_t)>;

// The statements of 0 to count - 1.
static std::string Many(int64_t count, const Statement& statement) {
  std::string text;
  for (int64_t i = 0; i < count; ++i) text += statement(i);
  return text;
}

static std::string InContainer(const std::string& content) {
  return "<container name='c'>" + content + "</container>";
}

// Load of one module with `size` of a statement at its top or in one container.
static Make LoadOfMany(const Statement& statement, const std::string& before = "",
                       const std::string& after = "") {
  return [=](int64_t size) {
    const std::string body = before + Many(size, statement) + after;
    return LoadWork({Module("m", "m", body)}, size);
  };
}

static Make LoadOfManyBelow(const Statement& statement) {
  return [=](int64_t size) {
    return LoadWork({Module("m", "m", InContainer(Many(size, statement)))}, size);
  };
}

static std::vector<std::string> Texts(int64_t modules, int64_t nodes) {
  std::vector<std::string> texts;
  for (const GeneratedModule& module : GenerateModules(5, modules, nodes))
    texts.push_back(module.text);
  return texts;
}

static Work Modules(int64_t modules) {
  return LoadWork(Texts(modules, 20), modules);
}

static Work Nodes(int64_t nodes) {
  return LoadWork(Texts(1, nodes), nodes);
}

static std::string Nested(int64_t depth) {
  std::string text = StringLeaf("l");
  for (int64_t i = 0; i < depth; ++i) text = InContainer(text);
  return text;
}

static Work Depth(int64_t depth) {
  return LoadWork({Module("m", "m", Nested(depth))}, depth);
}

static std::string NestedPath(int64_t depth) {
  std::string path = "/m:c";
  for (int64_t i = 1; i < depth; ++i) path += "/c";
  return path + "/l";
}

static Work DepthPath(int64_t depth) {
  return PathWork(LoadedContext({Module("m", "m", Nested(depth))}), {NestedPath(depth)});
}

static std::string AugmentOf(const std::string& name) {
  return "<augment target-node='/t:c'>" + StringLeaf(name) + "</augment>";
}

static std::string Importing(int64_t number, const std::string& body) {
  std::string text = Module(Numbered("m", number), "m",
                            "<import module='target'><prefix value='t'/></import>" + body);
  return text.insert(text.find('>'), " xmlns:t='urn:target'");
}

static std::string Target(const std::string& content) {
  return Module("target", "t", InContainer(content));
}

static std::vector<std::string> AugmentingTexts(int64_t modules) {
  std::vector<std::string> texts{Target(StringLeaf("l"))};
  for (int64_t i = 0; i < modules; ++i) texts.push_back(Importing(i, AugmentOf(Numbered("l", i))));
  return texts;
}

static Work AugmentsOfModules(int64_t modules) {
  return LoadWork(AugmentingTexts(modules), modules);
}

// Each module augments the container of the one before.
static Work ChainOfAugments(int64_t modules) {
  std::vector<std::string> texts{Module("m0", "m", InContainer(""))};
  for (int64_t i = 1; i < modules; ++i) {
    const std::string before = Numbered("m", i - 1);
    const std::string body = "<import module='" + before + "'><prefix value='b'/></import>" +
                             InContainer("") + "<augment target-node='/b:c'>" + StringLeaf("l") +
                             "</augment>";
    std::string text = Module(Numbered("m", i), "m", body);
    texts.push_back(text.insert(text.find('>'), " xmlns:b='urn:" + before + "'"));
  }
  return LoadWork(texts, modules);
}

static Work AugmentsOfOneModule(int64_t augments) {
  const std::string body = Many(augments, [](int64_t i) { return AugmentOf(Numbered("l", i)); });
  return LoadWork({Target(StringLeaf("l")), Importing(0, body)}, augments);
}

static std::string NumberedLeaf(int64_t number) {
  return StringLeaf(Numbered("l", number));
}

// Of another module's leaves, one each.
static Work Deviations(int64_t deviations) {
  const std::string body = Many(deviations, [](int64_t i) {
    return "<deviation target-node='/t:c/t:" + Numbered("l", i) +
           "'><deviate value='add'><default value='v'/></deviate></deviation>";
  });
  return LoadWork({Target(Many(deviations, NumberedLeaf)), Importing(0, body)}, deviations);
}

static Make DeviatingModules(const std::string& deviate) {
  return [=](int64_t modules) {
    std::vector<std::string> texts{Target(Many(modules, NumberedLeaf))};
    for (int64_t i = 0; i < modules; ++i) {
      texts.push_back(Importing(i, "<deviation target-node='/t:c/t:" + Numbered("l", i) + "'>" +
                                       deviate + "</deviation>"));
    }
    return LoadWork(texts, modules);
  };
}

static Work UnloadAmong(int64_t modules) {
  const Context ctx = LoadedContext(Texts(modules, 20));
  const std::string text = Module("alone", "a", InContainer(StringLeaf("l")));
  LoadText(ctx.get(), text);
  Work work;
  work.run = [ctx, text] {
    Require(QM_CTX_UnloadModule(ctx.get(), "alone") == 0, "a module is not unloaded");
    LoadText(ctx.get(), text);
  };
  return work;
}

enum class Order { kLastFirst, kFirstFirst };

// Unload of the modules `name`0, `name`1 and so on of these texts.
static Work UnloadEach(const std::vector<std::string>& texts, const char* name, int64_t modules,
                       Order order) {
  const auto ctx = std::make_shared<Context>();
  Work work;
  work.before = [ctx, texts] { *ctx = LoadedContext(texts); };
  work.run = [=] {
    for (int64_t i = 0; i < modules; ++i) {
      const int64_t number = order == Order::kLastFirst ? modules - 1 - i : i;
      static_cast<void>(QM_CTX_UnloadModule(ctx->get(), Numbered(name, number).c_str()));
    }
  };
  work.after = [ctx] { ctx->reset(); };
  return work;
}

static Make UnloadOfGenerated(Order order) {
  return [=](int64_t modules) { return UnloadEach(Texts(modules, 20), "gen-", modules, order); };
}

static Make UnloadOfAugmenting(Order order) {
  return [=](int64_t modules) { return UnloadEach(AugmentingTexts(modules), "m", modules, order); };
}

static Work FeatureLookups(int64_t features) {
  const std::string body =
      Many(features, [](int64_t i) { return "<feature name='" + Numbered("f", i) + "'/>"; });
  Work work;
  work.run = [ctx = LoadedContext({Module("m", "m", body)}), features] {
    for (int64_t i = 0; i < features; ++i) {
      const uint32_t enabled = QM_CTX_IsModFeatureEnable(ctx.get(), "m", Numbered("f", i).c_str());
      Require(enabled == 0, "a feature is enabled");
    }
  };
  return work;
}

static Work SiblingPaths(int64_t leaves) {
  std::vector<std::string> paths;
  for (int64_t i = 0; i < leaves; ++i) paths.push_back("/m:c/" + Numbered("l", i));
  return PathWork(LoadedContext({Module("m", "m", InContainer(Many(leaves, NumberedLeaf)))}),
                  paths);
}

static Work ModuleLookups(int64_t modules) {
  const Context ctx = LoadedContext(Texts(modules, 10));
  Work work;
  work.run = [ctx, modules] {
    for (int64_t i = 0; i < modules; ++i)
      Require(QM_CTX_GetModuleByModName(ctx.get(), Numbered("gen-", i).c_str()) != nullptr,
              "a module is missing");
  };
  return work;
}

static uint32_t IgnoreText(const char* /*text*/, uint32_t /*length*/, void* /*arg*/) {
  return 0;
}

static Work PrintedTree(int64_t nodes) {
  const Context ctx = LoadedContext({Module("m", "m", InContainer(Many(nodes, NumberedLeaf)))});
  Work work;
  work.run = [ctx] {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx.get(), "m");
    Require(QM_MOD_PrintModelTree(module, IgnoreText, nullptr) == 0, "a tree is not printed");
  };
  return work;
}

static std::string LeafWithLongName(int64_t length) {
  return StringLeaf(std::string(static_cast<size_t>(length), 'n'));
}

static Work NamesLength(int64_t length) {
  return LoadWork({Module("m", "m", InContainer(LeafWithLongName(length)))}, length);
}

static std::string NamedStatement(const char* statement, const char* name, int64_t number) {
  return std::string("<") + statement + " name='" + Numbered(name, number) + "'/>";
}

static std::string OneIdentity(int64_t number) {
  return NamedStatement("identity", "i", number);
}

// Each derived from the one before.
static std::string ChainedIdentity(int64_t number) {
  if (number == 0) return OneIdentity(number);
  return "<identity name='" + Numbered("i", number) +
         "'><base name='m:" + Numbered("i", number - 1) + "'/></identity>";
}

static std::string OneTypedef(int64_t number) {
  return "<typedef name='" + Numbered("t", number) + "'>" + Type("string") + "</typedef>";
}

static std::string LeafOfTypedef(int64_t number) {
  return OneTypedef(number) + Leaf(Numbered("l", number), Type("m:" + Numbered("t", number)));
}

static std::string ConditionalLeaf(int64_t number) {
  return Leaf(Numbered("l", number), "<when condition=\"../l0 = 'a'\"/>" + Type("string") +
                                         "<must condition=\"../m:l0 != 'b' and not(../l1)\"/>");
}

static std::string LeafIfFeature(int64_t number) {
  return Leaf(Numbered("l", number), "<if-feature name='m:f'/>" + Type("string"));
}

static std::string OneCase(int64_t number) {
  return "<case name='" + Numbered("k", number) + "'>" + NumberedLeaf(number) + "</case>";
}

static std::string LeafWithDefault(int64_t number) {
  return Leaf(Numbered("l", number), Type("string") + "<default value='v'/>");
}

static std::string Leafref(int64_t number) {
  return Leaf(Numbered("l", number), Type("leafref", "<path value='../l0'/>"));
}

static std::string OneMust(int64_t number) {
  return "<must condition=\"../l = '" + std::to_string(number) + "'\"/>";
}

static std::string OneRpc(int64_t number) {
  return "<rpc name='" + Numbered("r", number) + "'><input>" + StringLeaf("l") + "</input></rpc>";
}

static std::string Extension(int64_t number) {
  return NamedStatement("extension", "x", number);
}

static std::string ExtensionInstance(int64_t number) {
  return "<m:x xmlns:m='urn:m' name='" + std::to_string(number) + "'/>";
}

static std::string OneImport(int64_t number) {
  return "<import module='" + Numbered("other", number) + "'><prefix value='" +
         Numbered("o", number) + "'/></import>";
}

static std::string SpacedTopLeaf(int64_t number) {
  return "<container name='" + Numbered("c", number) + "'>" + StringLeaf("l") + "</container>";
}

std::vector<Growth> SchemaGrowth() {
  const std::string feature = "<feature name='f'/>";
  return {
      {"modules", "load", 50, Modules},
      {"modules", "lookups of each", 100, ModuleLookups},
      {"modules", "unload and reload of one among them", 50, UnloadAmong},
      {"modules", "unload of each, the last first", 100, UnloadOfGenerated(Order::kLastFirst)},
      {"modules", "unload of each, the first first", 100, UnloadOfGenerated(Order::kFirstFirst)},
      {"nodes", "load", 500, Nodes},
      {"nodes", "printed tree", 500, PrintedTree},
      {"depth", "load", 25, Depth},
      {"depth", "lookup of the deepest", 25, DepthPath},
      {"siblings", "load of leaves below one container", 250, LoadOfManyBelow(NumberedLeaf)},
      {"siblings", "load of containers at the top", 250, LoadOfMany(SpacedTopLeaf)},
      {"siblings", "load of rpcs", 250, LoadOfMany(OneRpc)},
      {"siblings", "lookup of each path", 250, SiblingPaths},
      {"names' length", "load", 1000, NamesLength},
      {"typedefs", "load, each used by one leaf", 100, LoadOfMany(LeafOfTypedef)},
      {"identities", "load", 250, LoadOfMany(OneIdentity)},
      {"identities", "load, each based on the one before", 250, LoadOfMany(ChainedIdentity)},
      {"features", "load", 250,
       LoadOfMany([](int64_t i) { return NamedStatement("feature", "f", i); })},
      {"features", "lookup of each", 250, FeatureLookups},
      {"features", "load of leaves with an if-feature", 250,
       [=](int64_t size) {
         return LoadWork({Module("m", "m", feature + InContainer(Many(size, LeafIfFeature)))},
                         size);
       }},
      {"imports", "load", 100, LoadOfMany(OneImport)},
      {"augments onto one target", "load of a module each", 50, AugmentsOfModules},
      {"augments onto one target", "unload of each module, the last first", 50,
       UnloadOfAugmenting(Order::kLastFirst)},
      {"augments onto one target", "unload of each module, the first first", 50,
       UnloadOfAugmenting(Order::kFirstFirst)},
      {"augments", "load of modules, each onto the one before", 50, ChainOfAugments},
      {"augments onto one target", "load of one module with all", 100, AugmentsOfOneModule},
      {"deviations", "load of one module with all", 100, Deviations},
      {"deviations", "load of a module each", 50,
       DeviatingModules("<deviate value='add'><default value='v'/></deviate>")},
      {"deviations", "load of a module each, which removes its leaf", 50,
       DeviatingModules("<deviate value='not-supported'/>")},
      {"conditions", "load of leaves with a when and a must", 250,
       LoadOfManyBelow(ConditionalLeaf)},
      {"conditions", "load of one leaf with many musts", 100,
       LoadOfMany(OneMust, "<leaf name='x'>" + Type("string"), "</leaf>")},
      {"leafrefs", "load", 250, LoadOfManyBelow(Leafref)},
      {"defaults", "load", 250, LoadOfManyBelow(LeafWithDefault)},
      {"cases", "load of one choice", 250, LoadOfMany(OneCase, "<choice name='h'>", "</choice>")},
      {"extensions", "load", 250, LoadOfMany(Extension)},
      {"extensions", "load of instances on the module", 250,
       LoadOfMany(ExtensionInstance, "<extension name='x'><argument name='name'/></extension>")},
  };
}
