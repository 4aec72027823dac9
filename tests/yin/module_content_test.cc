// SPDX-License-Identifier: BSD-3-Clause
// The header, the linkage and the body of a module read from text.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"
#include "yin/dispatch.h"
#include "yin/linkage.h"
#include "yin/module_content.h"
#include "yin/reader.h"

using testing::ElementsAre;

TEST(ParseYinContent, HeaderFieldsOfAModule) {
  yin::Context ctx(QM_LOAD_DESCRIPTIONS);
  yin::Parsed module(
      ctx, yin::Module("m",
                       "<organization><text>org</text></organization><contact><text>c</text>"
                       "</contact><description><text>desc</text></description>"
                       "<revision date='2024-02-02'/><revision date='2020-01-01'/>"));
  ASSERT_TRUE(module);
  const QmsModule* m = module.Get();
  EXPECT_STREQ("m", m->name);
  EXPECT_STREQ("urn:m", m->ns);
  EXPECT_STREQ("m", m->prefix);
  EXPECT_EQ(1u, m->yangVersion);
  EXPECT_STREQ("org", m->organization);
  EXPECT_STREQ("desc", m->description);
  EXPECT_STREQ("2024-02-02", m->revision) << "the first revision is kept";
  EXPECT_EQ(ctx.Get(), m->ctx);
  EXPECT_FALSE(RTK_AVL3_IsLinked(&m->nameLink));
  EXPECT_FALSE(RTK_AVL3_IsLinked(&m->nsLink));
}

TEST(ParseYinContent, OnlyAModuleRootIsLoadedWhateverItsNamespace) {
  struct {
    const char* text;
    bool loads;
  } const rows[] = {{"<module name='m'/>", true},
                    {"<x:module name='m' xmlns:x='urn:x'/>", true},
                    {"<submodule name='m'/>", false},
                    {"<Module name='m'/>", false},
                    {"<module/>", false},
                    {"<module nam='m'/>", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    yin::Context ctx;
    yin::Parsed module(ctx, row.text);
    EXPECT_EQ(row.loads, bool{module});
    EXPECT_THAT(ctx.Errors(), ElementsAre());
  }
  yin::Context ctx;
  EXPECT_EQ(nullptr, QMS_LOADER_ParseYinContent(ctx, nullptr, nullptr));
}

TEST(CheckParsedModNameMatched, AnExpectedNameMustBeTheOne) {
  QmsLoadAssister any = {};
  QmsLoadAssister m = {};
  m.modName = "m";
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CheckParsedModNameMatched(nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CheckParsedModNameMatched(nullptr, &any));
  EXPECT_EQ(QM_OK, QMS_LOADER_CheckParsedModNameMatched("n", nullptr));
  EXPECT_EQ(QM_OK, QMS_LOADER_CheckParsedModNameMatched("n", &any));
  EXPECT_EQ(QM_OK, QMS_LOADER_CheckParsedModNameMatched("m", &m));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CheckParsedModNameMatched("n", &m));
}

struct HeaderRow {
  const char* header;
  const char* first;
  const char* keyword;
};

TEST(ParseModuleHeadStmts, RefusedHeadersLeaveTwoMessages) {
  const HeaderRow rows[] = {
      {"<yang-version/>", "Failed to get value of statement \"yang-version\".", "yang-version"},
      {"<yang-version value='2'/>", "Failed to parse value \"2\" of statement \"yang-version\".",
       "yang-version"},
      {"<namespace/>", "Failed to get value of statement \"namespace\".", "namespace"},
      {"<prefix/>", "Failed to get value of statement \"prefix\".", "prefix"},
      {"<import/>", "Failed to get value of statement \"import\".", "import"},
      {"<include/>", "Failed to get value of statement \"include\".", "include"},
  };
  for (const HeaderRow& row : rows) {
    SCOPED_TRACE(row.header);
    yin::Context ctx;
    yin::Parsed module(ctx, std::string("<module name='m' ") + yin_text::kNamespace + ">" +
                                row.header + "</module>");
    EXPECT_FALSE(module);
    EXPECT_THAT(ctx.Errors(), ElementsAre(std::string("m -: ") + row.first,
                                          std::string("m -: Failed to parse statement \"") +
                                              row.keyword + "\"."));
  }
}

TEST(ParseYangVersion, Values) {
  struct {
    const char* value;
    uint32_t status;
    uint32_t stored;
  } const rows[] = {{"1", QM_OK, 0},
                    {"1.1", QM_OK, 1},
                    {"1.0", UINT32_MAX, 7},
                    {"2", UINT32_MAX, 7},
                    {"", UINT32_MAX, 7}};
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    xmlDoc* doc = yin::Xml(std::string("<yang-version value='") + row.value + "'/>");
    module.Get()->yangVersion = 7;
    EXPECT_EQ(row.status, QMS_LOADER_ParseYangVersion(module.Get(), xmlDocGetRootElement(doc)));
    EXPECT_EQ(row.stored, module.Get()->yangVersion);
    xmlFreeDoc(doc);
  }
}

TEST(ParseModuleContent, AnUnknownVersionIsMinusOne) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", ""));
  xmlDoc* doc = yin::Xml(std::string("<module name='m' ") + yin_text::kNamespace +
                         "><yang-version value='2'/></module>");
  EXPECT_EQ(UINT32_MAX,
            QMS_LOADER_ParseModuleContent(module.Get(), xmlDocGetRootElement(doc), nullptr));
  xmlFreeDoc(doc);
}

TEST(ParseModuleContent, ARevisionWithoutDateIsRefused) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", "<revision/>"));
  EXPECT_FALSE(module);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to get value of statement \"revision\"."));
}

TEST(ParseModuleContent, BodyGoesIntoItsArraysAndLists) {
  yin::Context ctx;
  yin::Parsed module(
      ctx, yin::Module("m",
                       "<feature name='f'/><extension name='e'/><identity name='i'/>"
                       "<typedef name='t'><type name='string'/></typedef>"
                       "<typedef name='u'><type name='t'/></typedef>"
                       "<deviation target-node='/m:a'/><m:x/><rpc name='r'/>"
                       "<notification name='n'/><augment target-node='/m:a'/>"
                       "<container name='a'/><leaf name='b'><type name='string'/></leaf>"
                       "<leaf-list name='c'><type name='string'/></leaf-list><list name='d'/>"
                       "<choice name='g'/><anydata name='h'/><anyxml name='k'/>"
                       "<grouping name='never'><leaf/></grouping><uses name='never'/>"
                       "<action name='never'/><case name='never'/>"));
  ASSERT_TRUE(module);
  const QmsModule* m = module.Get();
  EXPECT_EQ(1u, m->featureCount);
  EXPECT_EQ(1u, m->extensionCount);
  EXPECT_EQ(1u, m->identityCount);
  ASSERT_EQ(2u, m->typedefCount);
  EXPECT_STREQ("u", m->typedefs[1].name);
  EXPECT_EQ(1u, m->deviationCount);
  EXPECT_EQ(1u, m->extInstCount);
  EXPECT_STREQ("r", m->rpcNodes->name);
  EXPECT_STREQ("n", m->notifNodes->name);
  EXPECT_STREQ("/m:a", m->augmentNodes->name);
  std::string names;
  for (const QmsNode* node = m->dataNodes; node != nullptr; node = node->next) names += node->name;
  EXPECT_EQ("abcdghk", names);
}

TEST(ParseImport, ListOfImports) {
  yin::Context ctx;
  yin::Parsed module(
      ctx, yin::Module("m",
                       "<import module='a'><prefix value='p'/><revision-date date='x'/></import>"
                       "<import module='a'><prefix value='p'/></import>"
                       "<import module='b'><prefix value='p'/></import>"
                       "<import module='b'><prefix value='p'/></import>"
                       "<import module='a'><x:prefix xmlns:x='urn:x' value='q'/></import>"));
  ASSERT_TRUE(module);
  const QmsModule* m = module.Get();
  ASSERT_EQ(3u, m->importCount);
  EXPECT_STREQ("a", m->imports[0].moduleName);
  EXPECT_STREQ("p", m->imports[0].prefix);
  EXPECT_STREQ("b", m->imports[1].moduleName) << "one prefix for two modules is kept";
  EXPECT_STREQ("p", m->imports[1].prefix);
  EXPECT_STREQ("q", m->imports[2].prefix);
}

TEST(ParseImport, RefusedImports) {
  yin::Context ctx;
  yin::Parsed bare(ctx, yin::Module("bare", "<import module='a'/>"));
  EXPECT_FALSE(bare) << "a prefix is required";
  yin::Parsed empty(ctx, yin::Module("empty", "<import module='a'><prefix/></import>"));
  EXPECT_FALSE(empty);
  EXPECT_THAT(ctx.Errors(),
              ElementsAre("bare -: Failed to parse statement \"import\".",
                          "empty -: Failed to get value of statement \"prefix\".",
                          "empty -: Failed to parse value \"a\" of statement \"import\"."));
}

TEST(CounterAndExpandBodyStmtArray, KeepsWhatIsThereAndCountsOldAndNew) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", "<feature name='f'/><identity name='i'/>"));
  ASSERT_TRUE(module);
  xmlDoc* doc = yin::Xml(std::string("<module ") + yin_text::kNamespace +
                         " xmlns:m='urn:m' xmlns:z='urn:z'><feature name='g'/><feature name='h'/>"
                         "<m:e/><z:e/><typedef name='t'/></module>");
  xmlNode* root = xmlDocGetRootElement(doc);
  QMS_LOADER_MarkSubNode(root);
  QmsBodyStmtCounter counter = {};
  EXPECT_EQ(QM_OK, QMS_LOADER_CounterAndExpandBodyStmtArray(module.Get(), root, &counter));
  EXPECT_EQ(3u, counter.features);
  EXPECT_EQ(1u, counter.identities);
  EXPECT_EQ(1u, counter.extInsts);
  EXPECT_EQ(1u, counter.typedefs);
  EXPECT_EQ(0u, counter.extensions);
  EXPECT_EQ(1u, module.Get()->featureCount) << "raised element by element later";
  EXPECT_STREQ("f", module.Get()->features[0].name);
  EXPECT_EQ(nullptr, module.Get()->features[2].name);
  EXPECT_EQ(nullptr, root->children->next->next->next->_private)
      << "an instance that is not wanted loses its mark";
  xmlFreeDoc(doc);
}

TEST(CounterAndExpandBodyStmtArray, OldAndNewTogetherMustFitTheCounter) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m", "<feature name='f'/>"));
  xmlDoc* doc =
      yin::Xml(std::string("<module ") + yin_text::kNamespace + "><feature name='g'/></module>");
  xmlNode* root = xmlDocGetRootElement(doc);
  QMS_LOADER_MarkSubNode(root);
  QmsBodyStmtCounter counter = {};
  module.Get()->featureCount = 65535;
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CounterAndExpandBodyStmtArray(module.Get(), root, &counter));
  module.Get()->featureCount = 1;
  counter = {};
  counter.features = 65535;
  EXPECT_EQ(QM_INVALID, QMS_LOADER_CounterAndExpandBodyStmtArray(module.Get(), root, &counter));
  xmlFreeDoc(doc);
}

TEST(CounterAndExpandBodyStmtArray, TypesForgetTheTypedefsThatMove) {
  yin::Context ctx;
  yin::Parsed module(ctx, yin::Module("m",
                                      "<typedef name='t'><type name='string'/></typedef>"
                                      "<leaf name='l'><type name='t'/></leaf>"));
  ASSERT_TRUE(module);
  auto* leaf = static_cast<QmsLeaf*>(yin::Find(module.Get(), "l")->payload);
  auto* derived = static_cast<QmtConsDerived*>(leaf->type.cons[0].body);
  derived->resolved = &module.Get()->typedefs[0].type;
  xmlDoc* doc =
      yin::Xml(std::string("<module ") + yin_text::kNamespace + "><typedef name='u'/></module>");
  xmlNode* root = xmlDocGetRootElement(doc);
  QMS_LOADER_MarkSubNode(root);
  QmsBodyStmtCounter counter = {};
  EXPECT_EQ(QM_OK, QMS_LOADER_CounterAndExpandBodyStmtArray(module.Get(), root, &counter));
  EXPECT_EQ(nullptr, derived->resolved);
  xmlFreeDoc(doc);
}

TEST(ParseYinContent, SurvivesRefusedMemory) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    yin::Context ctx(QM_LOAD_DESCRIPTIONS);
    if (ctx.Get() == nullptr) return;
    yin::Parsed module(
        ctx, yin::Module("m",
                         "<import module='a'><prefix value='p'/></import>"
                         "<organization><text>o</text></organization><revision date='d'/>"
                         "<typedef name='t'><type name='p:x'/><default value='1'/></typedef>"));
    if (!refusing) {
      EXPECT_TRUE(module);
    }
  });
  EXPECT_GT(injected, 50u);
}
