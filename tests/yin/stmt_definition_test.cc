// SPDX-License-Identifier: BSD-3-Clause
// Features, identities, extensions, deviations and extension instances.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/array.h"
#include "schema/definitions.h"
#include "schema/node.h"
#include "schema/records.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"
#include "yin/stmt_definition.h"
#include "yin/stmt_deviation.h"
#include "yin/stmt_ext_inst.h"

using testing::ElementsAre;

static const char kImport[] = "<import module='other'><prefix value='o'/></import>";
static const char kXmlns[] = "xmlns:o='urn:other' xmlns:z='urn:z' xmlns:nacm='urn:nacm'";

static std::string Model(const std::string& body) {
  return yin::Module("m", kImport + body, kXmlns);
}

// Refused models and the messages they leave.
struct Refused {
  const char* body;
  const char* first;
  const char* second;
};

static void ExpectRefused(const Refused& row) {
  SCOPED_TRACE(row.body);
  yin::Context ctx;
  yin::Parsed module(ctx, Model(row.body));
  EXPECT_FALSE(module);
  std::vector<std::string> expected = {std::string("m -: ") + row.first};
  if (row.second != nullptr) expected.push_back(std::string("m -: ") + row.second);
  EXPECT_EQ(expected, ctx.Errors());
}

using ParseFunc = uint32_t (*)(QmsModule*, xmlNode*, uint32_t, void*);

// Parses one YIN element as the module would. `refuseNth`, unless 0, is the
// allocation that is refused meanwhile.
static uint32_t ParseOne(QmCtx* ctx, ParseFunc parse, const std::string& element, uint32_t parent,
                         void* dest, uint64_t refuseNth = 0) {
  yin::Parsed module(ctx, Model(""));
  EXPECT_TRUE(module);
  xmlDoc* doc = yin::Xml(yin_text::Root(element));
  if (refuseNth > 0) counting_memory::RefuseNth(refuseNth, counting_memory::Refuse::kOnce);
  const uint32_t ret = parse(module.Get(), xmlDocGetRootElement(doc)->children, parent, dest);
  if (refuseNth > 0) {
    EXPECT_EQ(1u, counting_memory::StopRefusing());
  }
  xmlFreeDoc(doc);
  return ret;
}

// Room for one record of any kind.
union AnyDefinition {
  char bytes[sizeof(QmsDeviate)];
  QmsFeature feature;
  QmsIdentity identity;
  QmsIdentBase base;
  QmsExtension extension;
  QmsDeviation deviation;
  QmsDeviate deviate;
  QmsExtInst instance;
};

static bool IsZero(const AnyDefinition& record) {
  for (const char byte : record.bytes)
    if (byte != 0) return false;
  return true;
}

TEST(Definitions, AFailedOneIsClearedAndItsCodePassedOn) {
  struct {
    ParseFunc parse;
    const char* element;
    uint32_t status;
  } const rows[] = {
      {QMS_LOADER_ParseFeature, "<feature/>", QM_INVALID},
      {QMS_LOADER_ParseFeature,
       "<feature name='a'><if-feature name='b'/><if-feature name=''/></feature>", QM_FAILED},
      {QMS_LOADER_ParseIdentity, "<identity/>", QM_INVALID},
      {QMS_LOADER_ParseIdentity,
       "<identity name='i'><if-feature name='f'/><base name='x'/><base name='p:x'/></identity>",
       QM_INVALID},
      {QMS_LOADER_ParseExtension, "<extension/>", QM_INVALID},
      {QMS_LOADER_ParseExtension,
       "<extension name='e'><argument name='a'><yin-element value='yes'/></argument></extension>",
       QM_INVALID},
      {QMS_LOADER_ParseDeviation, "<deviation/>", QM_INVALID},
      {QMS_LOADER_ParseDeviation, "<deviation target-node='o:a'/>", QM_INVALID},
      {QMS_LOADER_ParseDeviation, "<deviation target-node='/p:a'/>", QM_INVALID},
      {QMS_LOADER_ParseDeviation,
       "<deviation target-node='/o:a'><deviate value='delete'><must condition='x'/></deviate>"
       "<deviate value='Add'/></deviation>",
       UINT32_MAX},
      {QMS_LOADER_ParseDeviate,
       "<deviate value='add'><must condition='x'/><default value='1'/><units name='u'/>"
       "<m:e a='1'/><config value='bad'/></deviate>",
       QM_INVALID},
      {QMS_LOADER_ParseDeviate, "<deviate value='delete'><must condition='x'/><default/></deviate>",
       QM_INVALID},
      {QMS_LOADER_ParseDeviate,
       "<deviate value='replace'><type name='int8'/><mandatory value='bad'/></deviate>",
       QM_INVALID},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.element);
    yin::Context ctx(QM_LOAD_UNITS);
    AnyDefinition record = {};
    EXPECT_EQ(row.status, ParseOne(ctx, row.parse, row.element, 39, &record));
    EXPECT_TRUE(IsZero(record));
  }
}

TEST(Definitions, AFailedInternIs22AndOfAReferenceOrAnInstance12) {
  struct {
    ParseFunc parse;
    const char* element;
    uint64_t refuseNth;
    uint32_t status;
    std::vector<std::string> errors;
  } const rows[] = {
      {QMS_LOADER_ParseFeature, "<feature name='new'/>", 1, QM_INVALID, {}},
      {QMS_LOADER_ParseIdentity, "<identity name='new'/>", 1, QM_INVALID, {}},
      {QMS_LOADER_ParseExtension, "<extension name='new'/>", 1, QM_INVALID, {}},
      {QMS_LOADER_ParseArgument, "<argument name='new'/>", 1, QM_INVALID, {}},
      {QMS_LOADER_ParseDeviation, "<deviation target-node='/o:new'/>", 2, QM_INVALID, {}},
      {QMS_LOADER_ParseIdentBase,
       "<base name='new'/>",
       1,
       QM_NO_MEMORY,
       {"m -: Failed to parse value \"new\" of statement \"base\"."}},
      {QMS_LOADER_ParseExtInst,
       "<m:new/>",
       1,
       QM_NO_MEMORY,
       {"m -: Failed to parse extension instance \"m:new\""}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.element);
    yin::Context ctx;
    AnyDefinition record = {};
    EXPECT_EQ(row.status, ParseOne(ctx, row.parse, row.element, 39, &record, row.refuseNth));
    EXPECT_TRUE(IsZero(record));
    EXPECT_EQ(row.errors, ctx.Errors());
  }
}

TEST(ParseDeviation, ATargetThatCannotBeConvertedForLackOfMemoryIsTold) {
  yin::Context ctx;
  AnyDefinition record = {};
  EXPECT_EQ(QM_INVALID, ParseOne(ctx, QMS_LOADER_ParseDeviation,
                                 "<deviation target-node='/o:new'/>", 39, &record, 1));
  EXPECT_THAT(ctx.Errors(),
              ElementsAre("m -: Failed to parse \"deviation\" statement \"/o:new\"."));
}

TEST(ParseFeature, KeepsNameAndConditions) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<feature name='a'/><feature name='b'><if-feature name='a'/>"
                                "<if-feature name='o:c'/><description/></feature>"));
  ASSERT_TRUE(module);
  ASSERT_EQ(2u, module.Get()->featureCount);
  const QmsFeature* b = &module.Get()->features[1];
  EXPECT_STREQ("a", module.Get()->features[0].name);
  EXPECT_STREQ("b", b->name);
  EXPECT_EQ(0u, b->flags) << "a fresh feature is disabled";
  ASSERT_EQ(2u, b->ifFeatureCount);
  EXPECT_STREQ("m", b->ifFeatures[0].module);
  EXPECT_STREQ("other", b->ifFeatures[1].module);
  EXPECT_STREQ("c", b->ifFeatures[1].feature);
}

TEST(ParseFeature, RefusedOnes) {
  const Refused rows[] = {
      {"<feature/>", "Failed to get value of statement \"feature\".", nullptr},
      {"<feature name='b'><if-feature/></feature>",
       "Failed to get value of statement \"if-feature\".",
       "Failed to parse value \"b\" of statement \"feature\"."},
  };
  for (const Refused& row : rows) ExpectRefused(row);
}

TEST(ParseIdentity, KeepsResolvedBasesConditionsAndDescription) {
  yin::Context ctx(QM_LOAD_DESCRIPTIONS);
  yin::Parsed module(ctx, Model("<identity name='i'><base name='x'/><base name='o:y'/>"
                                "<base name='m:z'/><if-feature name='f'/>"
                                "<description><text>d</text></description></identity>"));
  ASSERT_TRUE(module);
  const QmsIdentity* i = &module.Get()->identities[0];
  EXPECT_STREQ("i", i->name);
  ASSERT_EQ(3u, i->baseCount);
  EXPECT_STREQ("m", i->bases[0].prefix);
  EXPECT_STREQ("x", i->bases[0].name);
  EXPECT_STREQ("other", i->bases[1].prefix) << "the module's name stands for its prefix";
  EXPECT_STREQ("y", i->bases[1].name);
  EXPECT_STREQ("m", i->bases[2].prefix);
  EXPECT_EQ(1u, i->ifFeatureCount);
  EXPECT_STREQ("d", i->description);
}

TEST(ParseIdentity, RefusedOnes) {
  const Refused rows[] = {
      {"<identity/>", "Failed to get value of statement \"identity\".", nullptr},
      {"<identity name='i'><base/></identity>", "Failed to get value of statement \"base\".",
       "Failed to parse value \"i\" of statement \"identity\"."},
      {"<identity name='i'><base name='p:x'/></identity>", "Failed to find module by prefix \"p\".",
       "Failed to parse value \"i\" of statement \"identity\"."},
      {"<identity name='i'><base name='a b'/></identity>", "Failed to parse xpath \"a b\".",
       "Failed to parse value \"i\" of statement \"identity\"."},
  };
  for (const Refused& row : rows) ExpectRefused(row);
}

TEST(ParseIdentBase, StatusesAndMessages) {
  const std::string tooLong(65, 'x');
  struct {
    std::string argument;
    uint32_t status;
    std::string error;
  } const rows[] = {
      {"x", QM_OK, ""},
      {"o:x", QM_OK, ""},
      {"", QM_FAILED, "Failed to parse xpath \"\"."},
      {"a b", QM_INVALID, "Failed to parse xpath \"a b\"."},
      {tooLong, QM_NAME_TOO_LONG, "Failed to parse xpath \"" + tooLong + "\"."},
      {tooLong + ":x", QM_NAME_TOO_LONG, "Failed to parse xpath \"" + tooLong + ":x\"."},
      {"p:x", QM_INVALID, "Failed to find module by prefix \"p\"."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.argument);
    yin::Context ctx;
    QmsIdentBase base = {};
    EXPECT_EQ(row.status, ParseOne(ctx, QMS_LOADER_ParseIdentBase,
                                   "<base name='" + row.argument + "'/>", 25, &base));
    if (row.status == QM_OK)
      EXPECT_THAT(ctx.Errors(), ElementsAre());
    else
      EXPECT_THAT(ctx.Errors(), ElementsAre("m -: " + row.error));
    QMS_MDL_ClearIdentBase(&ctx.Get()->dict, &base);
  }
}

TEST(ParseYinElement, OnlyTwoWordsAreKnown) {
  yin::Context ctx;
  uint32_t value = 7;
  EXPECT_EQ(QM_OK, ParseOne(ctx, QMS_LOADER_ParseYinElement, "<y value='true'/>", 4, &value));
  EXPECT_EQ(1u, value);
  EXPECT_EQ(QM_OK, ParseOne(ctx, QMS_LOADER_ParseYinElement, "<y value='false'/>", 4, &value));
  EXPECT_EQ(0u, value);
  value = 7;
  EXPECT_EQ(QM_INVALID, ParseOne(ctx, QMS_LOADER_ParseYinElement, "<y value='1'/>", 4, &value));
  EXPECT_EQ(QM_INVALID, ParseOne(ctx, QMS_LOADER_ParseYinElement, "<y/>", 4, &value));
  EXPECT_EQ(7u, value);
}

TEST(ParseExtension, KeepsArgumentAndYinElement) {
  yin::Context ctx;
  yin::Parsed module(
      ctx, Model("<extension name='e'/><extension name='f'><argument name='a'/></extension>"
                 "<extension name='g'><argument name='b'><yin-element value='true'/></argument>"
                 "</extension><extension name='h'><argument name='c'>"
                 "<yin-element value='false'/></argument></extension>"));
  ASSERT_TRUE(module);
  ASSERT_EQ(4u, module.Get()->extensionCount);
  const QmsExtension* e = module.Get()->extensions;
  EXPECT_STREQ("e", e[0].name);
  EXPECT_EQ(nullptr, e[0].argument);
  EXPECT_STREQ("a", e[1].argument);
  EXPECT_EQ(0u, e[1].yinElement);
  EXPECT_STREQ("b", e[2].argument);
  EXPECT_EQ(1u, e[2].yinElement);
  EXPECT_EQ(0u, e[3].yinElement);
}

TEST(ParseExtension, RefusedOnes) {
  const Refused rows[] = {
      {"<extension/>", "Failed to get value of statement \"extension\".", nullptr},
      {"<extension name='e'><argument/></extension>",
       "Failed to get value of statement \"argument\".",
       "Failed to parse value \"e\" of statement \"extension\"."},
      {"<extension name='e'><argument name='a'><yin-element/></argument></extension>",
       "Failed to get value of statement \"yin-element\".",
       "Failed to parse value \"a\" of statement \"argument\"."},
      {"<extension name='e'><argument name='a'><yin-element value='True'/></argument></extension>",
       "Failed to parse value \"True\" of statement \"yin-element\".",
       "Failed to parse value \"a\" of statement \"argument\"."},
  };
  for (const Refused& row : rows) ExpectRefused(row);
}

TEST(GetDeviateType, KnowsFourWordsExactly) {
  EXPECT_EQ(1u, QMS_LOADER_GetDeviateType("add"));
  EXPECT_EQ(2u, QMS_LOADER_GetDeviateType("delete"));
  EXPECT_EQ(3u, QMS_LOADER_GetDeviateType("not-supported"));
  EXPECT_EQ(4u, QMS_LOADER_GetDeviateType("replace"));
  EXPECT_EQ(0u, QMS_LOADER_GetDeviateType("Add"));
  EXPECT_EQ(0u, QMS_LOADER_GetDeviateType(""));
  EXPECT_EQ(0u, QMS_LOADER_GetDeviateType(nullptr));
}

TEST(ParseDeviation, TargetIsStoredInModuleNameForm) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<deviation target-node='/o:a/o:b'><deviate value='not-supported'>"
                                "<config value='bad'/></deviate></deviation>"
                                "<deviation target-node='/o:a/m:c'/>"));
  ASSERT_TRUE(module);
  ASSERT_EQ(2u, module.Get()->deviationCount);
  const QmsDeviation* d = module.Get()->deviations;
  EXPECT_STREQ("/other:a/b", d[0].targetPath);
  ASSERT_EQ(1u, d[0].deviateCount);
  EXPECT_EQ(uint32_t{QMS_DEVIATE_NOT_SUPPORTED}, d[0].deviates[0].kind);
  EXPECT_EQ(0u, d[0].deviates[0].flags) << "the body of not-supported is not read";
  EXPECT_STREQ("/other:a/m:c", d[1].targetPath);
  EXPECT_EQ(0u, d[1].deviateCount);
}

TEST(ParseDeviateAdd, TakesSixKindsOfStatements) {
  yin::Context ctx(QM_LOAD_UNITS);
  yin::Parsed module(
      ctx, Model("<deviation target-node='/o:a'><deviate value='add'><must condition='x'/>"
                 "<must condition='y'/><default value='1'/><default value='2'/>"
                 "<config value='false'/><mandatory value='true'/><units name='s'/>"
                 "<m:ext arg='1'/><type name='string'/><description/></deviate></deviation>"));
  ASSERT_TRUE(module);
  const QmsDeviate* d = &module.Get()->deviations[0].deviates[0];
  EXPECT_EQ(uint32_t{QMS_DEVIATE_ADD}, d->kind);
  ASSERT_EQ(2u, d->mustCount);
  EXPECT_STREQ("y", d->musts[1].condition);
  ASSERT_EQ(2u, d->defaultCount);
  EXPECT_STREQ("1", d->defaults[0]);
  EXPECT_STREQ("2", d->defaults[1]);
  EXPECT_EQ(0x4 | 0x8 | 0x10, d->flags);
  EXPECT_STREQ("s", d->units);
  ASSERT_EQ(1u, d->extInstCount);
  EXPECT_STREQ("ext", d->extInsts[0].name);
  EXPECT_EQ(nullptr, d->type) << "a type cannot be added";
}

TEST(ParseDeviateDelete, TakesFourKindsOfStatements) {
  yin::Context ctx(QM_LOAD_UNITS);
  yin::Parsed module(
      ctx, Model("<deviation target-node='/o:a'><deviate value='delete'><must condition='x'/>"
                 "<default value='1'/><units name='s'/><m:ext/><config value='false'/>"
                 "<mandatory value='bad'/></deviate></deviation>"));
  ASSERT_TRUE(module);
  const QmsDeviate* d = &module.Get()->deviations[0].deviates[0];
  EXPECT_EQ(uint32_t{QMS_DEVIATE_DELETE}, d->kind);
  EXPECT_EQ(1u, d->mustCount);
  EXPECT_EQ(1u, d->defaultCount);
  EXPECT_STREQ("s", d->units);
  EXPECT_EQ(1u, d->extInstCount);
  EXPECT_EQ(0u, d->flags);
}

TEST(ParseDeviateReplace, MakesATypeRecordOnlyForATypeChild) {
  yin::Context ctx(QM_LOAD_UNITS);
  yin::Parsed module(
      ctx, Model("<deviation target-node='/o:a'><deviate value='replace'><type name='int8'/>"
                 "<default value='1'/><config value='true'/><mandatory value='false'/>"
                 "<units name='s'/><must condition='x'/></deviate>"
                 "<deviate value='replace'><default value='2'/></deviate></deviation>"));
  ASSERT_TRUE(module);
  const QmsDeviate* d = module.Get()->deviations[0].deviates;
  ASSERT_EQ(2u, module.Get()->deviations[0].deviateCount);
  EXPECT_EQ(uint32_t{QMS_DEVIATE_REPLACE}, d[0].kind);
  ASSERT_NE(nullptr, d[0].type);
  EXPECT_EQ(uint32_t{QMT_BASE_INT8}, d[0].type->baseType);
  EXPECT_EQ(0x2 | 0x8 | 0x20, d[0].flags);
  EXPECT_EQ(1u, d[0].defaultCount);
  EXPECT_STREQ("s", d[0].units);
  EXPECT_EQ(0u, d[0].mustCount) << "a must cannot be replaced";
  EXPECT_EQ(nullptr, d[1].type);
}

TEST(ParseDeviation, RefusedOnes) {
  const Refused rows[] = {
      {"<deviation/>", "Failed to get value of statement \"deviation\".", nullptr},
      {"<deviation target-node='o:a'/>", "Failed to get value of statement \"deviation\".",
       nullptr},
      {"<deviation target-node='/..'/>", "Failed to parse \"deviation\" statement \"/..\".",
       nullptr},
      {"<deviation target-node='/p:a'/>", "Failed to parse \"deviation\" statement \"/p:a\".",
       nullptr},
      {"<deviation target-node='/o:a'><deviate/></deviation>",
       "Failed to get value of statement \"deviate\".",
       "Failed to parse \"deviation\" statement \"/o:a\"."},
      {"<deviation target-node='/o:a'><deviate value='Add'/></deviation>",
       "Failed to parse value \"Add\" of statement \"deviate\".",
       "Failed to parse \"deviation\" statement \"/o:a\"."},
      {"<deviation target-node='/o:a'><deviate value='replace'><type/></deviate></deviation>",
       "Failed to get value of statement \"typeName\".",
       "Failed to parse value \"replace\" of statement \"deviate\"."},
  };
  for (const Refused& row : rows) ExpectRefused(row);
}

TEST(ParseDeviate, ABadOrMissingKindIsMinusOne) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml("<r><deviate value='Add'/><deviate/></r>");
  xmlNode* first = xmlDocGetRootElement(doc)->children;
  QmsDeviate deviate = {};
  EXPECT_EQ(UINT32_MAX, QMS_LOADER_ParseDeviate(module.Get(), first, 17, &deviate));
  EXPECT_EQ(0u, deviate.kind);
  EXPECT_EQ(UINT32_MAX, QMS_LOADER_ParseDeviate(module.Get(), first->next, 17, &deviate));
  xmlFreeDoc(doc);
}

TEST(ParseExtInst, IsKeptOnModuleNodeAndInsideAnother) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<m:top a='1'><o:mid><m:low b='2'/><z:skipped/></o:mid></m:top>"
                                "<container name='c'><o:mark/><m:mark x='v'/></container>"));
  ASSERT_TRUE(module);
  ASSERT_EQ(1u, module.Get()->extInstCount);
  const QmsExtInst* top = module.Get()->extInsts;
  EXPECT_STREQ("m", top->module);
  EXPECT_STREQ("top", top->name);
  EXPECT_STREQ("1", top->argument);
  ASSERT_EQ(1u, top->childCount);
  EXPECT_STREQ("other", top->children[0].module);
  EXPECT_EQ(nullptr, top->children[0].argument);
  ASSERT_EQ(1u, top->children[0].childCount);
  EXPECT_STREQ("low", top->children[0].children[0].name);
  const QmsNode* c = yin::Find(module.Get(), "c");
  ASSERT_EQ(2u, c->extInstCount);
  EXPECT_STREQ("other", c->extInsts[0].module);
  EXPECT_STREQ("v", c->extInsts[1].argument);
}

TEST(ParseExtInst, UnknownPrefixesAndDefaultNamespacesAreSkipped) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<z:e/><e xmlns='urn:other'/><e xmlns=''/>"
                                "<leaf name='l'><z:e/><type name='string'/></leaf>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(0u, module.Get()->extInstCount);
  EXPECT_EQ(nullptr, module.Get()->extInsts);
  EXPECT_EQ(0u, yin::Find(module.Get(), "l")->extInstCount);
  EXPECT_THAT(ctx.Errors(), ElementsAre());
}

TEST(ParseExtInst, InstancesUnderAugmentAndPropertiesAreNotCollected) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<augment target-node='/o:a'><m:e/></augment>"
                                "<leaf name='l'><type name='string'><m:e/></type></leaf>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(0u, module.Get()->augmentNodes->extInstCount);
  EXPECT_EQ(0u, yin::Find(module.Get(), "l")->extInstCount);
}

static std::string g_asked;

static uint32_t RefuseDropped(const char* modName, const char* keyword) {
  g_asked += std::string(modName) + ":" + keyword + " ";
  return std::string(keyword) == "dropped" ? 7 : 0;
}

TEST(IsExtInstNeedParse, TheFilterDecidesForEachKeyword) {
  yin::Context ctx;
  QM_CTX_SetExtInstFilterCbFunc(ctx, RefuseDropped);
  g_asked.clear();
  yin::Parsed module(ctx, Model("<o:kept/><o:dropped/><z:never/><container name='c'><m:dropped/>"
                                "<m:kept><m:dropped/></m:kept></container>"));
  ASSERT_TRUE(module);
  ASSERT_EQ(1u, module.Get()->extInstCount);
  EXPECT_STREQ("kept", module.Get()->extInsts[0].name);
  const QmsNode* c = yin::Find(module.Get(), "c");
  ASSERT_EQ(1u, c->extInstCount);
  EXPECT_EQ(0u, c->extInsts[0].childCount);
  EXPECT_EQ("other:kept other:dropped m:dropped m:kept m:dropped ", g_asked);
}

TEST(ParseExtInst, AccessControlMarksGoToTheNodeAndBelow) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<import module='ietf-netconf-acm'><prefix value='nacm'/></import>"
                                "<container name='c'><nacm:default-deny-write/>"
                                "<leaf name='l'><type name='string'/></leaf></container>"
                                "<container name='d'><nacm:default-deny-all/></container>"
                                "<container name='e'><m:default-deny-all/></container>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(uint32_t{QMS_NODE_DENY_WRITE}, yin::Find(module.Get(), "c")->flags);
  EXPECT_EQ(uint32_t{QMS_NODE_DENY_WRITE}, yin::Find(module.Get(), "c/l")->flags);
  EXPECT_EQ(uint32_t{QMS_NODE_DENY_ALL}, yin::Find(module.Get(), "d")->flags);
  EXPECT_EQ(0u, yin::Find(module.Get(), "e")->flags);
}

TEST(IsExtInstNeedParse, PrefixNameAndModuleAreNeeded) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlNs ns = {};
  xmlNode element = {};
  element.type = XML_ELEMENT_NODE;
  element.ns = &ns;
  xmlChar name[] = "e";
  xmlChar known[] = "o";
  xmlChar unknown[] = "z";
  element.name = name;
  EXPECT_EQ(0u, QMS_LOADER_IsExtInstNeedParse(module.Get(), &element)) << "no prefix";
  ns.prefix = unknown;
  EXPECT_EQ(0u, QMS_LOADER_IsExtInstNeedParse(module.Get(), &element));
  ns.prefix = known;
  EXPECT_EQ(1u, QMS_LOADER_IsExtInstNeedParse(module.Get(), &element));
  element.name = nullptr;
  EXPECT_EQ(0u, QMS_LOADER_IsExtInstNeedParse(module.Get(), &element)) << "no name";
}

TEST(ParseExtInst, AFailureSetsTheCounterOfItsNodeToZero) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  QmsNode* node = QMS_NODE_New(QMS_NODE_CONTAINER);
  ASSERT_NE(nullptr, node);
  node->module = module.Get();
  ASSERT_EQ(QM_OK, NewArrayOf(&node->extInsts, 2));
  EXPECT_EQ(QM_OK, ParseOne(ctx, QMS_LOADER_ParseExtInst, "<m:a><m:n/></m:a>", 13, node));
  EXPECT_EQ(1u, node->extInstCount);
  EXPECT_EQ(QM_NO_MEMORY, ParseOne(ctx, QMS_LOADER_ParseExtInst, "<m:b/>", 13, node, 1));
  EXPECT_EQ(0u, node->extInstCount);
  EXPECT_EQ(nullptr, node->extInsts[0].name);
  EXPECT_EQ(nullptr, node->extInsts[0].children);
  QMS_NODE_Free(node);
}

static uint32_t g_refuseAfter;

// Refuses memory once the second instance of the node is about to be filled.
static uint32_t RefuseMemoryAtSecond(const char*, const char* keyword) {
  if (std::string(keyword) == "deep" && ++g_refuseAfter == 1)
    counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  return 0;
}

TEST(ParseExtInst, AFailureClearsTheInstancesOfItsNode) {
  yin::Context ctx;
  QM_CTX_SetExtInstFilterCbFunc(ctx, RefuseMemoryAtSecond);
  g_refuseAfter = 0;
  yin::Parsed module(ctx, Model("<container name='c'><m:a><m:n/></m:a><m:b><m:deep/></m:b>"
                                "</container>"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_FALSE(module);
  const std::vector<std::string> errors = ctx.Errors();
  ASSERT_EQ(2u, errors.size());
  EXPECT_EQ("m -: Failed to parse extension instance \"m:b\"", errors[0]);
}

TEST(ParseExtInst, WithoutElementOrNamespaceItIs22) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml("<r><e/><p:e xmlns:p='urn:p'/></r>");
  xmlNode* e = xmlDocGetRootElement(doc)->children;
  QmsExtInst inst = {};
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseExtInst(module.Get(), nullptr, 39, &inst));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseExtInst(module.Get(), e, 39, &inst));
  EXPECT_EQ(0u, QMS_LOADER_IsExtInstNeedParse(module.Get(), nullptr));
  EXPECT_EQ(0u, QMS_LOADER_IsExtInstNeedParse(module.Get(), e));
  EXPECT_THAT(ctx.Errors(), ElementsAre());
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseExtInst(module.Get(), e->next, 39, &inst));
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to find module by prefix \"p\"."));
  xmlFreeDoc(doc);
}

static const char kAllDefinitions[] =
    "<feature name='b'><if-feature name='a'/></feature>"
    "<identity name='i'><base name='o:y'/><if-feature name='f'/>"
    "<description><text>d</text></description></identity>"
    "<extension name='g'><argument name='b'><yin-element value='true'/></argument></extension>"
    "<deviation target-node='/o:a/o:b'><deviate value='add'><must condition=\"x = 'o:b'\">"
    "<error-message><value>no</value></error-message></must><default value='1'/>"
    "<units name='s'/><m:ext arg='1'><m:in/></m:ext></deviate>"
    "<deviate value='replace'><type name='int8'><range value='1..2'/></type></deviate>"
    "</deviation><m:top a='1'><o:mid/></m:top>"
    "<container name='c'><o:mark/><m:mark x='v'><m:n/></m:mark></container>";

TEST(Definitions, SurviveRefusedMemory) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    yin::Context ctx(QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
    if (ctx.Get() == nullptr) return;
    yin::Parsed module(ctx, Model(kAllDefinitions));
    if (!refusing) {
      EXPECT_TRUE(module);
    }
  });
  EXPECT_GT(injected, 100u);
}
