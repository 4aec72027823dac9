// SPDX-License-Identifier: BSD-3-Clause
// Loading by name from files: what is read, what is registered, what is told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <set>
#include <string>
#include <vector>

#include "context/dict.h"
#include "loader/module_load.h"
#include "schema/module.h"
#include "schema/records.h"
#include "tests/support/counting_memory.h"
#include "tests/support/listing.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"
#include "yin/linkage.h"

using testing::ElementsAre;

namespace {

using yin_text::Leaf;

// A context that searches one folder, and after it others.
class Loader {
 public:
  Loader() { Search(folder_); }
  void Search(const yin::Folder& folder) const {
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder.Dir()));
  }
  void Write(const std::string& file, const std::string& text) const { folder_.Write(file, text); }
  uint32_t Load(const char* name) const { return QM_CTX_LoadModule(ctx_, name); }
  QmsModule* Module(const char* name) const { return QM_CTX_GetModuleByModName(ctx_, name); }
  std::vector<std::string> Errors() const { return ctx_.Errors(); }
  QmCtx* Ctx() const { return ctx_; }
  const yin::Folder& Dir() const { return folder_; }

 private:
  yin::Folder folder_;
  yin::Context ctx_;
};

}  // namespace

static std::string TopNodes(const QmsModule* module) {
  std::string names;
  for (const QmsNode* node = module->dataNodes; node != nullptr; node = node->next)
    names += std::string(node->name) + " ";
  return names;
}

static std::string Suffixes(const QmsModule* module) {
  std::string names;
  for (uint32_t i = 0; i < module->mergeSourceCount; ++i)
    names += std::string(module->mergeSources[i]) + " ";
  return names;
}

TEST(LoadModuleByModName, APlainFile) {
  Loader loader;
  loader.Write("m.yin", yin::Module("m", Leaf("x")));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  ASSERT_NE(nullptr, loader.Module("m"));
  EXPECT_EQ("x ", TopNodes(loader.Module("m")));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  EXPECT_STREQ("", loader.Ctx()->curYinFile);
}

TEST(LoadModuleByModName, ALoadedModuleIsNotReadAgain) {
  Loader loader;
  loader.Write("m.yin", yin::Module("m", Leaf("x")));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  const QmsModule* first = loader.Module("m");
  loader.Write("m.yin", "broken");
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ(first, loader.Module("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
}

TEST(LoadModuleByModName, NoFileIs2) {
  Loader loader;
  EXPECT_EQ(QM_NOT_FOUND, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre("m -: Failed to find \"m\" from search directories."));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_LoadModuleByModName(loader.Ctx(), nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_LoadModuleByModName(nullptr, "m"));
}

TEST(LoadModuleByModName, ALoadFromMemoryWithoutFileIs2ThoughTheModuleIsThere) {
  Loader loader;
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(loader.Ctx(), yin::Module("m", "").c_str()));
  EXPECT_EQ(QM_NOT_FOUND, loader.Load("m"));
  EXPECT_NE(nullptr, loader.Module("m"));
}

struct BrokenRow {
  std::string text;
  std::vector<std::string> errors;
};

TEST(LoadModuleByModName, BrokenFilesAre22) {
  const BrokenRow rows[] = {
      {"<module name='m'>",
       {"m m.yin: Failed to read content from the yin file.",
        "m m.yin: Failed to parse module \"m\" from the yin file."}},
      {"<module name='n'/>", {"m m.yin: Failed to parse module \"m\" from the yin file."}},
      {"<submodule name='m'/>", {"m m.yin: Failed to parse module \"m\" from the yin file."}},
      {"<module/>", {"m m.yin: Failed to parse module \"m\" from the yin file."}},
      {yin_text::Module("m", "", "<yang-version value='2'/>"),
       {"m m.yin: Failed to parse value \"2\" of statement \"yang-version\".",
        "m m.yin: Failed to parse statement \"yang-version\"."}},
  };
  for (const BrokenRow& row : rows) {
    SCOPED_TRACE(row.text);
    Loader loader;
    loader.Write("m.yin", row.text);
    EXPECT_EQ(QM_INVALID, loader.Load("m"));
    EXPECT_EQ(nullptr, loader.Module("m"));
    EXPECT_EQ(row.errors, loader.Errors());
    EXPECT_STREQ("", loader.Ctx()->curYinFile);
  }
}

TEST(LoadModuleByModName, AFailureInTheBodyKeepsItsTwoInnermostMessages) {
  const BrokenRow rows[] = {
      {"<container name='c'><container name='d'><leaf name='x'><type name='p:t'/></leaf>"
       "</container></container>",
       {"m m.yin: Failed to parse value \"p:t\" of statement \"type\".",
        "m m.yin: Failed to parse \"leaf\" statement \"x\"."}},
      {"<container name='c'><container name='d'><leaf name='x'/></container></container>",
       {"m m.yin: leaf \"x\" must define with type statement.",
        "m m.yin: Failed to parse \"container\" statement \"d\"."}},
      {"<leaf name='x'/>",
       {"m m.yin: leaf \"x\" must define with type statement.",
        "m m.yin: Failed to parse module \"m\" from the yin file."}},
      {"<container name='c'><container name='d'><if-feature name='p:f'/></container></container>",
       {"m m.yin: Failed to find module by prefix \"p\".",
        "m m.yin: Failed to parse value \"p:f\" of statement \"if-feature\"."}},
      {"<container name='c'><container name='d'><list name='l'><key value='k'/>"
       "<container name='k'/></list></container></container>",
       {"m m.yin: Failed to parse statement \"list\" under statement \"container\".",
        "m m.yin: Failed to parse \"container\" statement \"d\"."}},
      {"<list name='l'><key value='k'/><container name='k'/></list>",
       {"m m.yin: Failed to parse statement \"list\" under statement \"module\".",
        "m m.yin: Failed to parse module \"m\" from the yin file."}},
  };
  for (const BrokenRow& row : rows) {
    SCOPED_TRACE(row.text);
    Loader loader;
    loader.Write("m.yin", yin::Module("m", row.text));
    EXPECT_EQ(QM_INVALID, loader.Load("m"));
    EXPECT_EQ(nullptr, loader.Module("m"));
    EXPECT_EQ(row.errors, loader.Errors());
    EXPECT_STREQ("", loader.Ctx()->curYinFile);
  }
}

TEST(LoadModuleByModName, ANewLoadForgetsTheOldMessages) {
  Loader loader;
  EXPECT_EQ(QM_NOT_FOUND, loader.Load("m"));
  loader.Write("m.yin", yin::Module("m", ""));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
}

TEST(LoadModuleByModName, ATakenNamespaceIs1AndTheModuleIsNotRegistered) {
  Loader loader;
  loader.Write("m.yin", yin::Module("m", ""));
  loader.Write("n.yin", yin_text::ModuleOf("urn:m", "n"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ(QM_FAILED, loader.Load("n"));
  EXPECT_EQ(nullptr, loader.Module("n"));
  EXPECT_THAT(loader.Errors(), ElementsAre("n -: Failed to load module \"n\"."));
}

TEST(LoadModuleByModName, TheRevisionFileOfAnEarlierDirectoryIsTaken) {
  yin::Folder a;
  yin::Folder b;
  a.Write("m@2001-01-01.yin", yin::Module("m", Leaf("old")));
  b.Write("m.yin", yin::Module("m", Leaf("plain")));
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, a.Dir()));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, b.Dir()));
  EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, "m"));
  EXPECT_EQ("old ", TopNodes(QM_CTX_GetModuleByModName(ctx, "m")));
  EXPECT_EQ("", Suffixes(QM_CTX_GetModuleByModName(ctx, "m")));
}

TEST(LoadModuleByModName, SplitFilesAreMergedAndTheirSuffixesRemembered) {
  Loader loader;
  loader.Write("m@@x.yin", yin::Module("m", "<feature name='fx'/><container name='c'>" + Leaf("a") +
                                                "</container>"));
  loader.Write("m@@y.yin", yin::Module("m", "<feature name='fy'/><container name='c'>" + Leaf("a") +
                                                Leaf("b") + "</container>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  const QmsModule* m = loader.Module("m");
  ASSERT_NE(nullptr, m);
  EXPECT_EQ(2u, m->featureCount);
  EXPECT_NE(nullptr, yin::Find(m, "c/a"));
  EXPECT_EQ(2u, m->mergeSourceCount);
}

TEST(LoadModuleByModName, PartsOfOneDirectoryAreReadInTheOrderOfItsListing) {
  std::set<std::vector<std::string>> orders;
  for (uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    listing::Draw(seed);
    Loader loader;
    for (const std::string part : {"x", "y", "z"})
      loader.Write("m@@" + part + ".yin",
                   yin::Module("m", "<feature name='f" + part + "'/>" + Leaf(part)));
    const std::vector<std::string> listed = listing::Of(loader.Dir().Dir());
    ASSERT_EQ(3u, listed.size());
    EXPECT_EQ(QM_OK, loader.Load("m"));
    EXPECT_THAT(loader.Errors(), ElementsAre());
    std::string suffixes;
    for (const std::string& file : listed) suffixes += file.substr(3, 1) + " ";
    EXPECT_EQ(suffixes, Suffixes(loader.Module("m")));
    EXPECT_EQ(suffixes, TopNodes(loader.Module("m")));
    EXPECT_EQ(3u, loader.Module("m")->featureCount);
    orders.insert(listed);
  }
  EXPECT_EQ(6u, orders.size()) << "every order was met";
}

TEST(LoadModuleByModName, OfTheRevisionFilesOfADirectoryTheFirstListedIsTaken) {
  std::set<std::string> taken;
  for (uint32_t seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    listing::Draw(seed);
    Loader loader;
    loader.Write("m@2001-01-01.yin", yin::Module("m", Leaf("m@2001-01-01.yin")));
    loader.Write("m@2002-01-01.yin", yin::Module("m", Leaf("m@2002-01-01.yin")));
    EXPECT_EQ(QM_OK, loader.Load("m"));
    EXPECT_EQ(listing::Of(loader.Dir().Dir()).front() + " ", TopNodes(loader.Module("m")));
    taken.insert(TopNodes(loader.Module("m")));
  }
  EXPECT_EQ(2u, taken.size()) << "every order was met";
}

// Two directories, since the order within one is that of its listing.
TEST(LoadModuleByModName, PartsAreReadInTheOrderOfTheDirectories) {
  Loader loader;
  yin::Folder later;
  loader.Search(later);
  later.Write("m@@a.yin", yin::Module("m", "<container name='c'>" + Leaf("a") + "</container>"));
  loader.Write("m@@x.yin", yin::Module("m", "<container name='c'>" + Leaf("x") + "</container>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  ASSERT_NE(nullptr, loader.Module("m"));
  EXPECT_EQ("c ", TopNodes(loader.Module("m")));
  const QmsNode* c = yin::Find(loader.Module("m"), "c");
  EXPECT_STREQ("x", c->firstChild->name);
  EXPECT_STREQ("a", c->lastChild->name);
  EXPECT_EQ("x a ", Suffixes(loader.Module("m")));
}

TEST(LoadModuleByModName, WhenTheSecondPartFailsTheFirstIsRegisteredAlone) {
  Loader loader;
  yin::Folder later;
  yin::Folder last;
  loader.Search(later);
  loader.Search(last);
  loader.Write("m@@x.yin", yin::Module("m", Leaf("x")));
  later.Write("m@@y.yin", yin::Module("m", "<leaf name='l'/>"));
  last.Write("m@@z.yin", yin::Module("m", Leaf("z")));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  ASSERT_NE(nullptr, loader.Module("m"));
  EXPECT_EQ("x ", TopNodes(loader.Module("m"))) << "nothing after the failure is read";
  EXPECT_EQ("x y z ", Suffixes(loader.Module("m"))) << "but all suffixes are remembered";
  EXPECT_THAT(loader.Errors(),
              ElementsAre("m m@@y.yin: leaf \"l\" must define with type statement.",
                          "m m@@y.yin: Failed to parse module \"m\" from the yin file."));
}

TEST(LoadModuleByModName, WhenTheFirstPartFailsTheOthersAreNotRead) {
  Loader loader;
  yin::Folder later;
  loader.Search(later);
  loader.Write("m@@x.yin", yin::Module("m", "<leaf name='l'/>"));
  later.Write("m@@y.yin", yin::Module("m", Leaf("y")));
  EXPECT_EQ(QM_INVALID, loader.Load("m"));
  EXPECT_EQ(nullptr, loader.Module("m"));
  EXPECT_THAT(loader.Errors(),
              ElementsAre("m m@@x.yin: leaf \"l\" must define with type statement.",
                          "m m@@x.yin: Failed to parse module \"m\" from the yin file."));
}

TEST(LoadModuleByModName, ALaterLoadReadsOnlyNewParts) {
  Loader loader;
  loader.Write("m@@x.yin", yin::Module("m", "<feature name='fx'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  QmsModule* m = loader.Module("m");
  ASSERT_NE(nullptr, m);
  EXPECT_EQ("x ", Suffixes(m));
  loader.Write("m@@x.yin", "not read again");
  EXPECT_EQ(QM_OK, loader.Load("m")) << "nothing is read";
  EXPECT_THAT(loader.Errors(), ElementsAre());
  loader.Write("m@@y.yin", yin::Module("m", "<feature name='fy'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ(m, loader.Module("m"));
  EXPECT_EQ("x y ", Suffixes(m));
  EXPECT_EQ(2u, m->featureCount);
  EXPECT_THAT(loader.Errors(), ElementsAre());
}

TEST(LoadModuleByModName, AFailedPartEndsTheReadingButNotTheLoad) {
  Loader loader;
  loader.Write("m@@x.yin", yin::Module("m", "<feature name='fx'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  loader.Write("m@@y.yin", yin::Module("m", "<leaf name='l'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ("x y ", Suffixes(loader.Module("m"))) << "so it is not tried again";
  EXPECT_THAT(loader.Errors(),
              ElementsAre("m m@@y.yin: leaf \"l\" must define with type statement.",
                          "m m@@y.yin: Failed to parse module \"m\" from the yin file."));
}

TEST(LoadModuleByModName, AMergeThatFailsEndsTheReadingButNotTheLoad) {
  Loader loader;
  loader.Write("m@@x.yin", yin::Module("m", "<container name='c'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  loader.Write("m@@y.yin", yin::Module("m", "<list name='c'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ(2u, loader.Errors().size()) << "two causes, so that the general message is dropped";
  EXPECT_EQ("x y ", Suffixes(loader.Module("m")));
}

// The causes stand under the module's own name, the general message under the
// name that the load asked for; two names show it.
TEST(LoadModuleByPath, AMergeThatFailsIsTold) {
  Loader loader;
  loader.Write("x.yin", yin::Module("m", "<container name='c'/>"));
  loader.Write("y.yin", yin::Module("m", "<list name='c'/>"));
  QmsModule* module = nullptr;
  EXPECT_EQ(QM_OK, QMS_LOADER_LoadModuleByPath(loader.Ctx(), loader.Dir().Path("x.yin").c_str(),
                                               "a", nullptr, &module));
  QmsModule* first = module;
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_LoadModuleByPath(loader.Ctx(), loader.Dir().Path("y.yin").c_str(), "a",
                                        nullptr, &module));
  EXPECT_EQ(first, module);
  EXPECT_EQ("a y.yin: Failed to merge module \"a\".", loader.Errors().front());
  QMS_MOD_Free(module);
}

TEST(LoadModuleByModName, ALoadReadsTenPartsAtMost) {
  Loader loader;
  for (char c = 'a'; c < 'a' + 12; ++c)
    loader.Write(std::string("m@@") + c + ".yin",
                 yin::Module("m", std::string("<feature name='") + c + "'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ(10u, loader.Module("m")->featureCount);
  EXPECT_EQ(QM_NO_MEMORY, loader.Module("m")->mergeSourceCount);
}

TEST(LoadModuleByModName, CoupledAugmentsAreTakenOutBeforeAPartIsMergedAndPutBack) {
  Loader loader;
  const std::string head = "<import module='t'><prefix value='t'/></import>";
  loader.Write("t.yin", yin::Module("t", "<container name='c'>" + Leaf("own") + "</container>"));
  loader.Write("m@@x.yin",
               yin::Module("m", head + "<augment target-node='/t:c'>" + Leaf("a") + "</augment>"));
  EXPECT_EQ(QM_OK, loader.Load("t"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  const QmsNode* c = yin::Find(loader.Module("t"), "c");
  EXPECT_STREQ("a", c->lastChild->name);
  loader.Write("m@@y.yin", yin::Module("m", head + "<augment target-node='/t:c'>" + Leaf("a") +
                                                Leaf("b") + "</augment>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  std::string names;
  for (const QmsNode* n = c->firstChild; n != nullptr; n = n->next) {
    EXPECT_EQ(c, n->parent);
    names += std::string(n->name) + " ";
  }
  EXPECT_EQ("own a b ", names);
  EXPECT_EQ(uint32_t{QMS_NODE_COUPLED}, loader.Module("m")->augmentNodes->flags & 1u);
}

TEST(LoadModuleByModName, NodesOfOtherModulesInTheTreeMakeAMergeFail) {
  Loader loader;
  loader.Write("m@@x.yin", yin::Module("m", "<container name='c'/>"));
  loader.Write("b.yin", yin::Module("b",
                                    "<import module='m'><prefix value='m'/></import>"
                                    "<augment target-node='/m:c'>" +
                                        Leaf("f") + "</augment>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_EQ(QM_OK, loader.Load("b"));
  loader.Write("m@@y.yin", yin::Module("m", "<container name='c'>" + Leaf("g") + "</container>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(),
              ElementsAre("m m@@y.yin: Failed to merge node \"f\" under \"c\" with diff reason "
                          "\"name\".",
                          "m m@@y.yin: Failed to merge schema tree."));
  EXPECT_NE(nullptr, yin::Find(loader.Module("m"), "c/f"));
}

TEST(LoadModuleByModName, AnAugmentWhosePathLeadsNowhereIsTakenOutBeforeAMergeAndOthersStay) {
  Loader loader;
  const std::string head = "<import module='t'><prefix value='t'/></import>";
  loader.Write("t.yin", yin::Module("t", "<container name='c'/>"));
  loader.Write("m@@x.yin",
               yin::Module("m", head + "<container name='own'/><augment target-node='/t:c'>" +
                                    Leaf("a") + "</augment>"));
  loader.Write("b.yin", yin::Module("b",
                                    "<import module='m'><prefix value='m'/></import>"
                                    "<augment target-node='/m:own'>" +
                                        Leaf("f") + "</augment>"));
  for (const char* name : {"t", "m", "b"}) EXPECT_EQ(QM_OK, loader.Load(name));
  QmsNode* target = loader.Module("t")->dataNodes;
  ASSERT_NE(nullptr, target->firstChild);
  ASSERT_TRUE(InternText(&loader.Ctx()->dict, &target->name, "renamed"));
  // The augment itself agrees, the tree does not: the foreign node is still there.
  loader.Write("m@@y.yin", yin::Module("m", head + "<container name='own'>" + Leaf("g") +
                                                "</container><augment target-node='/t:c'>" +
                                                Leaf("a") + "</augment>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(),
              ElementsAre("m m@@y.yin: Failed to merge node \"f\" under \"own\" with diff reason "
                          "\"name\".",
                          "m m@@y.yin: Failed to merge schema tree."));
  EXPECT_EQ(nullptr, target->firstChild);
  const QmsNode* augment = loader.Module("m")->augmentNodes;
  EXPECT_EQ(0u, augment->flags & QMS_NODE_COUPLED);
  ASSERT_NE(nullptr, augment->firstChild);
  EXPECT_EQ(augment, augment->firstChild->parent);
  EXPECT_NE(nullptr, yin::Find(loader.Module("m"), "own/f"));
}

TEST(LoadModuleByPath, TheFirstFileBecomesTheModule) {
  Loader loader;
  loader.Write("m.yin", yin::Module("m", ""));
  QmsModule* module = nullptr;
  EXPECT_EQ(QM_OK, QMS_LOADER_LoadModuleByPath(loader.Ctx(), loader.Dir().Path("m.yin").c_str(),
                                               "m", nullptr, &module));
  ASSERT_NE(nullptr, module);
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_LoadModuleByPath(loader.Ctx(), loader.Dir().Path("n.yin").c_str(), "n",
                                        nullptr, &module));
  EXPECT_THAT(loader.Errors(),
              ElementsAre("n n.yin: Failed to read content from the yin file.",
                          "n n.yin: Failed to parse module \"n\" from the yin file."));
  QMS_MOD_Free(module);
}

TEST(ParseInclude, SubmodulesGoIntoTheModule) {
  Loader loader;
  loader.Write("m.yin", yin::Module("m",
                                    "<include module='s'/><include module='s'/>"
                                    "<typedef name='tm'><type name='ts'/></typedef>" +
                                        Leaf("x")));
  loader.Write("s.yin", yin::Submodule("s",
                                       "<belongs-to module='m'><prefix value='zzz'/></belongs-to>"
                                       "<include module='u'/><revision date='2020-01-01'/>"
                                       "<organization><text>no</text></organization>"
                                       "<typedef name='ts'><type name='string'/></typedef>"
                                       "<feature name='fs'><if-feature name='m:fu'/></feature>" +
                                           Leaf("y")));
  loader.Write("u.yin", yin::Submodule("u", "<include module='s'/><feature name='fu'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  const QmsModule* m = loader.Module("m");
  ASSERT_NE(nullptr, m);
  EXPECT_EQ("y x ", TopNodes(m));
  EXPECT_EQ(2u, m->includeCount);
  EXPECT_EQ(2u, m->featureCount);
  ASSERT_EQ(2u, m->typedefCount);
  EXPECT_STREQ("ts", m->typedefs[0].name);
  EXPECT_STREQ("tm", m->typedefs[1].name);
  EXPECT_EQ(nullptr, m->revision) << "that of a submodule is not read";
  EXPECT_EQ(nullptr, m->organization);
}

struct IncludeRow {
  const char* file;  // text of s.yin; NULL: there is none
  std::vector<std::string> errors;
};

TEST(ParseInclude, RefusedSubmodules) {
  const IncludeRow rows[] = {
      {nullptr,
       {"m m.yin: Failed to load submodule \"s\".",
        "m m.yin: Failed to parse statement \"include\"."}},
      {"<broken",
       {"m m.yin: Failed to load submodule \"s\".",
        "m m.yin: Failed to parse statement \"include\"."}},
      {"<module name='s'/>",
       {"m m.yin: Failed to load submodule \"s\".",
        "m m.yin: Failed to parse statement \"include\"."}},
      {"<submodule name='s' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><leaf name='l'/>"
       "</submodule>",
       {"m s.yin: leaf \"l\" must define with type statement.",
        "m m.yin: Failed to load submodule \"s\"."}},
      {"<submodule name='s' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><container name='c'>"
       "<leaf name='x'><type name='p:t'/></leaf></container></submodule>",
       {"m s.yin: Failed to parse value \"p:t\" of statement \"type\".",
        "m s.yin: Failed to parse \"leaf\" statement \"x\"."}},
  };
  for (const IncludeRow& row : rows) {
    SCOPED_TRACE(row.file == nullptr ? "no file" : row.file);
    Loader loader;
    loader.Write("m.yin", yin::Module("m", "<include module='s'/>"));
    if (row.file != nullptr) loader.Write("s.yin", row.file);
    EXPECT_EQ(QM_INVALID, loader.Load("m"));
    EXPECT_EQ(row.errors, loader.Errors());
  }
}

TEST(LoadSubModule, Statuses) {
  Loader loader;
  loader.Write("module.yin", yin::Module("module", ""));
  loader.Write("sub.yin", yin::Submodule("sub", ""));
  yin::Parsed module(loader.Ctx(), yin::Module("m", ""));
  QmCtx* ctx = loader.Ctx();
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_LoadSubModule(ctx, module.Get(), "none", nullptr));
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_LoadSubModule(ctx, module.Get(), "../sub", nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_LoadSubModule(ctx, module.Get(), "module", nullptr));
  EXPECT_EQ(QM_OK, QMS_LOADER_LoadSubModule(ctx, module.Get(), "sub", nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_LoadSubModule(nullptr, module.Get(), "sub", nullptr));
}

TEST(LoadSubModule, FromMemoryTheFirstPartIsTakenAndNothingRemembered) {
  Loader loader;
  loader.Write("s@@p.yin", yin::Submodule("s", "<include module='u'/>" + Leaf("sp")));
  loader.Write("u@@q.yin", yin::Submodule("u", Leaf("uq")));
  EXPECT_EQ(QM_OK,
            QM_CTX_LoadMemory(loader.Ctx(), yin::Module("m", "<include module='s'/>").c_str()));
  EXPECT_EQ("uq sp ", TopNodes(loader.Module("m")));
  EXPECT_EQ("", Suffixes(loader.Module("m")));
}

TEST(LoadSubModule, APartOfAModuleTakesTheSamePartOfItsSubmodules) {
  Loader loader;
  for (const char* suffix : {"a", "b"}) {
    loader.Write(std::string("m@@") + suffix + ".yin", yin::Module("m", "<include module='s'/>"));
    loader.Write(std::string("s@@") + suffix + ".yin",
                 yin::Submodule("s", std::string("<feature name='f") + suffix + "'/>"));
  }
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  EXPECT_EQ(2u, loader.Module("m")->featureCount);
}

TEST(LoadSubModule, AModuleInOneFileIsReadOncePerPartOfItsSubmodule) {
  Loader loader;
  loader.Write("m.yin", yin::Module("m", "<include module='s'/>" + Leaf("x")));
  loader.Write("s@@a.yin", yin::Submodule("s", "<feature name='fa'/>"));
  loader.Write("s@@b.yin", yin::Submodule("s", "<feature name='fb'/>"));
  EXPECT_EQ(QM_OK, loader.Load("m"));
  EXPECT_THAT(loader.Errors(), ElementsAre());
  EXPECT_EQ(2u, loader.Module("m")->featureCount);
  EXPECT_EQ("x ", TopNodes(loader.Module("m")));
  EXPECT_EQ(2u, loader.Module("m")->mergeSourceCount);
}

TEST(LoadSubModule, AChainOf256IsFollowedAndALongerOneRefused) {
  for (int length : {256, 257}) {
    SCOPED_TRACE(length);
    Loader loader;
    loader.Write("m.yin", yin::Module("m", "<include module='s1'/>"));
    for (int i = 1; i <= length; ++i)
      loader.Write(
          "s" + std::to_string(i) + ".yin",
          yin::Submodule("s", i == length ? Leaf("end")
                                          : "<include module='s" + std::to_string(i + 1) + "'/>"));
    EXPECT_EQ(length == 256 ? QM_OK : QM_INVALID, loader.Load("m"));
  }
}

// The depth of the XML bounds the depth of the statements: libxml2 parses 256
// levels below the root.
TEST(LoadModuleByModName, NestingIsAsDeepAsTheDocumentMayBe) {
  for (size_t depth : {size_t{256}, size_t{257}}) {
    SCOPED_TRACE(depth);
    Loader loader;
    std::string body;
    for (size_t i = 0; i < depth; ++i) body += "<container name='c'>";
    for (size_t i = 0; i < depth; ++i) body += "</container>";
    loader.Write("m.yin", yin::Module("m", body));
    EXPECT_EQ(depth == 256 ? QM_OK : QM_INVALID, loader.Load("m"));
  }
}

TEST(LoadModuleByModName, SurvivesRefusedMemory) {
  yin::Folder folder;
  static const yin::Folder* dir;
  dir = &folder;
  folder.Write("m@@x.yin", yin::Module("m", "<include module='s'/>" + Leaf("a")));
  folder.Write("m@@y.yin", yin::Module("m", "<feature name='f'/>"));
  folder.Write("s.yin", yin::Submodule("s", "<identity name='i'/>"));
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    yin::Context ctx;
    if (ctx.Get() == nullptr || QM_CTX_SetSearchDir(ctx, dir->Dir()) != 0) return;
    const uint32_t ret = QM_CTX_LoadModule(ctx, "m");
    if (!refusing) {
      EXPECT_EQ(QM_OK, ret);
    }
    EXPECT_STREQ("", ctx.Get()->curYinFile);
  });
  EXPECT_GT(injected, 50u);
}
