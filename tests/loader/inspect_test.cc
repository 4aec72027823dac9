// SPDX-License-Identifier: BSD-3-Clause
// What clients can list of loaded modules: everything that a YANG library or the completion
// of a command line needs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/inspect.h>
#include <qmodel/loader.h>

#include <string>
#include <vector>

#include <qmodel/error.h>

#include "tests/support/counting_memory.h"
#include "tests/support/null_arguments.h"
#include "tests/support/temp_folder.h"
#include "tests/support/yin_text.h"

namespace {

using null_arguments::ExpectEachGives;
using testing::ElementsAre;
using testing::IsEmpty;
using yin_text::Leaf;
using yin_text::Module;
using Texts = std::vector<std::string>;

std::string Import(const std::string& name) {
  return "<import module='" + name + "'><prefix value='" + name + "'/></import>";
}

uint32_t TakeText(const char* text, void* arg) {
  static_cast<Texts*>(arg)->push_back(text);
  return QM_OK;
}

uint32_t TakeModule(QmsModule* mod, void* arg) {
  static_cast<Texts*>(arg)->push_back(QM_MOD_GetModuleName(mod));
  return QM_OK;
}

uint32_t TakeNode(QmsNode* node, uint32_t travType, void* arg) {
  EXPECT_EQ(uint32_t{QMS_TRAV_CHILD}, travType);
  static_cast<Texts*>(arg)->push_back(QM_NODE_GetNodeName(node));
  return QM_OK;
}

uint32_t TakeFeature(const QmsFeature* feature, void* arg) {
  static_cast<Texts*>(arg)->push_back(std::string(QM_FEATURE_GetName(feature)) +
                                      (QM_FEATURE_IsEnabled(feature) != 0 ? " on" : " off"));
  return QM_OK;
}

uint32_t TakeIfFeature(const char* module, const char* feature, uint32_t enabled, void* arg) {
  static_cast<Texts*>(arg)->push_back(std::string(module) + ":" + feature +
                                      (enabled != 0 ? " on" : " off"));
  return QM_OK;
}

uint32_t TakeMust(const char* condition, const char* message, const char* appTag, void* arg) {
  const auto text = [](const char* t) { return std::string(t == nullptr ? "-" : t); };
  static_cast<Texts*>(arg)->push_back(text(condition) + " " + text(message) + " " + text(appTag));
  return QM_OK;
}

uint32_t TakeIdentity(QmsModule* mod, QmsIdentity* identity, void* arg) {
  static_cast<Texts*>(arg)->push_back(std::string(QM_MOD_GetModuleName(mod)) + ":" +
                                      QM_MOD_GetIdentityName(identity));
  return QM_OK;
}

// A callback's own result ends each scan and is its result.
constexpr uint32_t kEnough = 4711;

class Inspect : public testing::Test {
 protected:
  void SetUp() override {
    before_ = counting_memory::LiveBlocks();
    ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(QM_LOAD_DESCRIPTIONS));
  }
  void TearDown() override {
    QM_CTX_Delete(ctx_);
    EXPECT_EQ(before_, counting_memory::LiveBlocks());
  }
  QmsModule* Load(const std::string& name, const std::string& body, const std::string& head = "") {
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, Module(name, body, head).c_str()));
    return QM_CTX_GetModuleByModName(ctx_, name.c_str());
  }
  QmsNode* Node(const char* path) { return QM_CTX_GetTargetNode(ctx_, path, nullptr); }
  std::string Name(const char* dataPath) {
    const char* name = QM_NODE_GetNodeName(QM_CTX_FindDataNode(ctx_, dataPath));
    return name == nullptr ? "none" : name;
  }

  QmCtx* ctx_ = nullptr;
  size_t before_ = 0;
};

TEST_F(Inspect, ModulesComeInTheOrderOfTheirNames) {
  Texts found;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllModule(ctx_, TakeModule, &found));
  EXPECT_THAT(found, IsEmpty());
  for (const char* name : {"b", "a-b", "a", "c", "B"}) Load(name, "");
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllModule(ctx_, TakeModule, &found));
  EXPECT_THAT(found, ElementsAre("B", "a", "a-b", "b", "c"));
  const auto stop = [](QmsModule*, void*) { return kEnough; };
  EXPECT_EQ(kEnough, QM_CTX_ScanAllModule(ctx_, stop, nullptr));
}

TEST_F(Inspect, StepsGiveWhatScansGive) {
  const auto tops = [](const QmsModule* mod) {
    Texts found;
    for (QmsNode* node = QM_MOD_GetNextTopNode(mod, nullptr); node != nullptr;
         node = QM_MOD_GetNextTopNode(mod, node)) {
      found.push_back(QM_NODE_GetNodeName(node));
    }
    return found;
  };
  const auto children = [](const QmsNode* parent) {
    Texts found;
    for (QmsNode* node = QM_NODE_GetNextChild(parent, nullptr); node != nullptr;
         node = QM_NODE_GetNextChild(parent, node)) {
      found.push_back(QM_NODE_GetNodeName(node));
    }
    return found;
  };
  EXPECT_EQ(nullptr, QM_CTX_GetNextModule(ctx_, nullptr));
  QmsModule* m =
      Load("m", "<rpc name='r1'/><notification name='n1'/><container name='c'>" + Leaf("x") +
                    Leaf("y") + "</container>" + Leaf("l") + "<rpc name='r2'/>");
  QmsModule* only = Load("only", "<notification name='n'/>");
  QmsModule* a = Load("a", Import("m") + "<augment target-node='/m:c'>" + Leaf("p") + Leaf("q") +
                               "</augment><augment target-node='/m:c'>" + Leaf("s") + "</augment>");
  EXPECT_THAT(tops(m), ElementsAre("c", "l", "r1", "r2", "n1"));
  EXPECT_THAT(tops(only), ElementsAre("n"));
  EXPECT_THAT(tops(a), IsEmpty());
  EXPECT_EQ(a, QM_CTX_GetNextModule(ctx_, nullptr));
  EXPECT_EQ(m, QM_CTX_GetNextModule(ctx_, a));
  EXPECT_EQ(only, QM_CTX_GetNextModule(ctx_, m));
  EXPECT_EQ(nullptr, QM_CTX_GetNextModule(ctx_, only));
  EXPECT_THAT(children(Node("/m:c")), ElementsAre("x", "y", "p", "q", "s"));
  EXPECT_THAT(children(Node("/m:l")), IsEmpty());
  Texts added;
  const auto takeAdded = [](QmsNode* augment, uint32_t, void* arg) {
    for (QmsNode* node = QM_NODE_GetNextChild(augment, nullptr); node != nullptr;
         node = QM_NODE_GetNextChild(augment, node)) {
      static_cast<Texts*>(arg)->push_back(QM_NODE_GetNodeName(node));
    }
    static_cast<Texts*>(arg)->push_back("|");
    return uint32_t{QM_OK};
  };
  EXPECT_EQ(QM_OK, QM_MOD_IterScanAugmentNode(a, takeAdded, &added));
  EXPECT_THAT(added, ElementsAre("p", "q", "|", "s", "|"));
  EXPECT_EQ(nullptr, QM_CTX_GetNextModule(nullptr, nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetNextTopNode(nullptr, nullptr));
  EXPECT_EQ(nullptr, QM_NODE_GetNextChild(nullptr, nullptr));
}

TEST_F(Inspect, AModuleTellsItsVersionImportsAndDescription) {
  const QmsModule* old = Load("old", "<description><text>ancient</text></description>");
  const QmsModule* m = Load("m", Import("old") + Import("gone"), yin_text::kVersion11);
  EXPECT_EQ(1u, QM_MOD_GetYangVersion(old));
  EXPECT_EQ(11u, QM_MOD_GetYangVersion(m));
  EXPECT_STREQ("ancient", QM_MOD_GetDescription(old));
  EXPECT_EQ(nullptr, QM_MOD_GetDescription(m));
  Texts imports;
  EXPECT_EQ(QM_OK, QM_MOD_ScanImport(m, TakeText, &imports));
  EXPECT_THAT(imports, ElementsAre("old", "gone"));
  Texts includes;
  EXPECT_EQ(QM_OK, QM_MOD_ScanInclude(m, TakeText, &includes));
  EXPECT_THAT(includes, IsEmpty());
}

TEST_F(Inspect, SubmodulesComeInTheOrderOfTheIncludes) {
  const temp_folder::Folder folder;
  folder.Write("m.yin", Module("m", "<include module='z'/><include module='a'/>"));
  for (const std::string name : {"z", "a"})
    folder.Write(name + ".yin", yin_text::Submodule(name, yin_text::BelongsTo("m")));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder.Dir()));
  ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, "m"));
  const QmsModule* module = QM_CTX_GetModuleByModName(ctx_, "m");
  Texts includes;
  EXPECT_EQ(QM_OK, QM_MOD_ScanInclude(module, TakeText, &includes));
  EXPECT_THAT(includes, ElementsAre("z", "a"));
  const auto stop = [](const char*, void*) { return kEnough; };
  EXPECT_EQ(kEnough, QM_MOD_ScanInclude(module, stop, nullptr));
}

TEST_F(Inspect, DeviatingModulesAreThoseThatAreLoaded) {
  const temp_folder::Folder folder;
  const auto deviation =
      Import("m") +
      "<deviation target-node='/m:c'><deviate value='add'><must condition='x'/></deviate>"
      "</deviation>";
  folder.Write("m.yin", Module("m", "<container name='c'/>"));
  folder.Write("d1.yin", Module("d1", deviation));
  folder.Write("d2.yin", Module("d2", deviation));
  folder.Write("a.yin", Module("a", Import("m") + "<augment target-node='/m:c'>" + Leaf("l") +
                                        "</augment>"));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder.Dir()));
  for (const char* name : {"m", "d1", "d2", "a"}) ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, name));
  const auto deviating = [this] {
    Texts found;
    const QmsModule* m = QM_CTX_GetModuleByModName(ctx_, "m");
    EXPECT_EQ(QM_OK, QM_MOD_ScanDeviatingModule(m, TakeText, &found));
    return found;
  };
  EXPECT_THAT(deviating(), ElementsAre("d2", "d1"));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "d2"));
  EXPECT_THAT(deviating(), ElementsAre("d1"));
}

TEST_F(Inspect, FeaturesTellWhetherTheyAreOnAndWhatTheyNeed) {
  QmsModule* m = Load("m",
                      "<feature name='f'/><feature name='g'><if-feature name='f'/>"
                      "<if-feature name='m:h'/></feature><feature name='h'/>");
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(m, "f"));
  Texts found;
  EXPECT_EQ(QM_OK, QM_MOD_ScanAllFeature(m, TakeFeature, &found));
  EXPECT_THAT(found, ElementsAre("f on", "g off", "h off"));
  const QmsFeature* g = nullptr;
  const auto takeG = [](const QmsFeature* feature, void* arg) {
    if (std::string(QM_FEATURE_GetName(feature)) == "g")
      *static_cast<const QmsFeature**>(arg) = feature;
    return uint32_t{QM_OK};
  };
  ASSERT_EQ(QM_OK, QM_MOD_ScanAllFeature(m, takeG, &g));
  found.clear();
  EXPECT_EQ(QM_OK, QM_FEATURE_ScanIfFeature(ctx_, g, TakeIfFeature, &found));
  EXPECT_THAT(found, ElementsAre("m:f on", "m:h off"));
}

TEST_F(Inspect, ANodeTellsItsIfFeaturesAndMusts) {
  QmsModule* m = Load("m",
                      "<feature name='f'/><feature name='g'/><container name='c'>"
                      "<if-feature name='g'/><if-feature name='f'/><must condition='a'/>"
                      "<must condition='b'><error-message><value>bad</value></error-message>"
                      "<error-app-tag value='tag'/></must></container><container name='d'/>");
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(m, "f"));
  Texts found;
  EXPECT_EQ(QM_OK, QM_NODE_ScanIfFeature(Node("/m:c"), TakeIfFeature, &found));
  EXPECT_THAT(found, ElementsAre("m:g off", "m:f on"));
  found.clear();
  EXPECT_EQ(QM_OK, QM_NODE_ScanMust(Node("/m:c"), TakeMust, &found));
  EXPECT_THAT(found, ElementsAre("a - -", "b bad tag"));
  found.clear();
  EXPECT_EQ(QM_OK, QM_NODE_ScanIfFeature(Node("/m:d"), TakeIfFeature, &found));
  EXPECT_EQ(QM_OK, QM_NODE_ScanMust(Node("/m:d"), TakeMust, &found));
  EXPECT_THAT(found, IsEmpty());
}

TEST_F(Inspect, KeysComeInTheOrderOfTheKeyStatement) {
  Load("m", "<list name='l'><key value=' z  a m'/>" + Leaf("a") + Leaf("b") + Leaf("m") +
                Leaf("z") + "</list><list name='none'><config value='false'/>" + Leaf("a") +
                "</list>");
  Texts keys;
  EXPECT_EQ(QM_OK, QM_NODE_ScanKey(Node("/m:l"), TakeNode, &keys));
  EXPECT_THAT(keys, ElementsAre("z", "a", "m"));
  keys.clear();
  EXPECT_EQ(QM_OK, QM_NODE_ScanKey(Node("/m:none"), TakeNode, &keys));
  EXPECT_THAT(keys, IsEmpty());
  EXPECT_EQ(QM_INVALID, QM_NODE_ScanKey(Node("/m:l/m:a"), TakeNode, &keys));
  const auto stop = [](QmsNode*, uint32_t, void*) { return kEnough; };
  EXPECT_EQ(kEnough, QM_NODE_ScanKey(Node("/m:l"), stop, nullptr));
}

TEST_F(Inspect, KeysOfAModuleThatIsReadAgainKeepTheirOrder) {
  Load("m", "<list name='l'><key value='z a'/>" + Leaf("a") + Leaf("z") + "</list>");
  Load("n", Import("m") + "<augment target-node='/m:l'>" + Leaf("a") + "</augment>");
  ASSERT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, "n"));
  Texts keys;
  EXPECT_EQ(QM_OK, QM_NODE_ScanKey(Node("/m:l"), TakeNode, &keys));
  EXPECT_THAT(keys, ElementsAre("z", "a"));
}

TEST_F(Inspect, DefaultsAreThoseOfLeavesLeafListsAndChoices) {
  Load("m",
       "<typedef name='t'><type name='string'/><default value='of the type'/></typedef>" +
           Leaf("own", "<default value='o'/>") + "<leaf name='typed'><type name='t'/></leaf>" +
           Leaf("must", "<default value='x'/><mandatory value='true'/>") +
           "<leaf-list name='ll'><type name='string'/><default value='2'/><default value='1'/>"
           "</leaf-list><choice name='ch'><default value='b'/><case name='a'/><case name='b'/>"
           "</choice><choice name='plain'/><container name='c'/>",
       yin_text::kVersion11);
  const auto defaults = [this](const char* path) {
    Texts found;
    EXPECT_EQ(QM_OK, QM_NODE_ScanDefault(Node(path), TakeText, &found)) << path;
    return found;
  };
  EXPECT_THAT(defaults("/m:own"), ElementsAre("o"));
  EXPECT_THAT(defaults("/m:typed"), ElementsAre("of the type"));
  EXPECT_THAT(defaults("/m:must"), IsEmpty());
  EXPECT_THAT(defaults("/m:ll"), ElementsAre("2", "1"));
  EXPECT_THAT(defaults("/m:ch"), ElementsAre("b"));
  EXPECT_THAT(defaults("/m:plain"), IsEmpty());
  EXPECT_THAT(defaults("/m:c"), IsEmpty());
}

TEST_F(Inspect, StatusIsThatOfTheNodesOwnStatement) {
  Load("m", "<container name='old'><status value='deprecated'/>" + Leaf("l") + "</container>" +
                Leaf("gone", "<status value='obsolete'/>") +
                Leaf("now", "<status value='current'/>"));
  EXPECT_EQ(uint32_t{QM_STATUS_DEPRECATED}, QM_NODE_GetStatus(Node("/m:old")));
  EXPECT_EQ(uint32_t{QM_STATUS_CURRENT}, QM_NODE_GetStatus(Node("/m:old/m:l")));
  EXPECT_EQ(uint32_t{QM_STATUS_OBSOLETE}, QM_NODE_GetStatus(Node("/m:gone")));
  EXPECT_EQ(uint32_t{QM_STATUS_CURRENT}, QM_NODE_GetStatus(Node("/m:now")));
}

TEST_F(Inspect, APathIsWrittenWhereItFits) {
  Load("m", "<container name='c'><choice name='ch'><case name='k'>" + Leaf("l") +
                "</case></choice></container>");
  const QmsNode* leaf = QM_CTX_FindDataNode(ctx_, "/m:c/l");
  const std::string whole = "/m:c/ch/k/l";
  char buffer[64] = "before";
  EXPECT_EQ(QM_OK, QM_NODE_GetPath(leaf, buffer, sizeof(buffer)));
  EXPECT_EQ(whole, buffer);
  EXPECT_EQ(QM_OK, QM_NODE_GetPath(leaf, buffer, static_cast<uint32_t>(whole.size() + 1)));
  EXPECT_EQ(whole, buffer);
  EXPECT_EQ(QM_NO_MEMORY, QM_NODE_GetPath(leaf, buffer, static_cast<uint32_t>(whole.size())));
  EXPECT_STREQ("", buffer);
  buffer[0] = 'x';
  EXPECT_EQ(QM_NO_MEMORY, QM_NODE_GetPath(leaf, buffer, 0));
  EXPECT_EQ('x', buffer[0]);
}

TEST_F(Inspect, ADataPathPassesOverWhatHasNoElement) {
  Load("m", "<container name='c'><choice name='ch'><case name='k'>" + Leaf("l") +
                "</case></choice><list name='e'><key value='n'/>" + Leaf("n") +
                "</list></container><rpc name='r'><output>" + Leaf("o") + "</output><input>" +
                Leaf("i") + "</input></rpc><notification name='e'>" + Leaf("x") +
                "</notification><choice name='top'><case name='k'>" + Leaf("inside") +
                "</case></choice>");
  Load("n", Import("m") + "<augment target-node='/m:c'>" + Leaf("far") +
                "</augment><augment target-node='/m:top'><case name='q'>" + Leaf("other") +
                "</case></augment>");
  EXPECT_EQ("l", Name("/m:c/l"));
  EXPECT_EQ("l", Name("/m:c/m:l"));
  EXPECT_EQ("n", Name("/m:c/e[n='a]b'][n=\"'\"]/n"));
  EXPECT_EQ("i", Name("/m:r/i"));
  EXPECT_EQ("o", Name("/m:r/o"));
  EXPECT_EQ("x", Name("/m:e/x"));
  EXPECT_EQ("inside", Name("/m:inside"));
  EXPECT_EQ("far", Name("/m:c/n:far"));
  EXPECT_EQ("other", Name("/n:other"));
}

TEST_F(Inspect, ADataPathThatLeadsNowhereFindsNothing) {
  Load("m", "<container name='c'><choice name='ch'>" + Leaf("l") +
                "</choice></container><choice name='top'>" + Leaf("t") + "</choice>");
  for (const char* path :
       {"", "/", "m:c", "/c", "/:c", "/m:", "/m:c/", "/m:c/ch", "/m:c/ch/l", "/m:top", "/x:c",
        "/m:c/x:l", "/m:c/l[", "/m:c/l[x='", "/m:c/l]", "/m:c//l", "/m:c/l/l", "/m:c/l x",
        "/m:aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"}) {
    EXPECT_EQ("none", Name(path)) << path;
  }
}

TEST_F(Inspect, DerivedIdentitiesAreFoundInAllModules) {
  QmsModule* m = Load("m",
                      "<identity name='base'/><identity name='a'><base name='base'/></identity>"
                      "<identity name='b'><base name='m:a'/></identity><identity name='alone'/>");
  Load("k", Import("m") +
                "<identity name='c'><base name='m:b'/></identity>"
                "<identity name='base'/><identity name='d'><base name='base'/></identity>");
  QmsIdentity* base = QM_MOD_FindIdentity(m, "base");
  ASSERT_NE(nullptr, base);
  EXPECT_EQ(nullptr, QM_MOD_FindIdentity(m, "c"));
  Texts found;
  EXPECT_EQ(QM_OK, QM_MOD_ScanDerivedIdentity(m, base, TakeIdentity, &found));
  EXPECT_THAT(found, ElementsAre("k:c", "m:a", "m:b"));
  found.clear();
  EXPECT_EQ(QM_OK,
            QM_MOD_ScanDerivedIdentity(m, QM_MOD_FindIdentity(m, "alone"), TakeIdentity, &found));
  EXPECT_THAT(found, IsEmpty());
  const auto stop = [](QmsModule*, QmsIdentity*, void*) { return kEnough; };
  EXPECT_EQ(kEnough, QM_MOD_ScanDerivedIdentity(m, base, stop, nullptr));
}

TEST_F(Inspect, WithoutMemoryTheSearchForDerivedIdentitiesSaysSo) {
  QmsModule* m = Load("m", "<identity name='b'/><identity name='a'><base name='b'/></identity>");
  Texts found;
  found.reserve(4);
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  const uint32_t ret =
      QM_MOD_ScanDerivedIdentity(m, QM_MOD_FindIdentity(m, "b"), TakeIdentity, &found);
  EXPECT_NE(0u, counting_memory::StopRefusing());
  EXPECT_EQ(QM_NO_MEMORY, ret);
}

TEST_F(Inspect, MissingArgumentsAreRefusedWith22) {
  QmsModule* m =
      Load("m", "<feature name='f'/><identity name='i'/><list name='l'><key value='k'/>" +
                    Leaf("k") + "</list>");
  QmsIdentity* identity = QM_MOD_FindIdentity(m, "i");
  const QmsNode* list = Node("/m:l");
  const QmsFeature* feature = nullptr;
  const auto take = [](const QmsFeature* f, void* arg) {
    *static_cast<const QmsFeature**>(arg) = f;
    return uint32_t{QM_OK};
  };
  ASSERT_EQ(QM_OK, QM_MOD_ScanAllFeature(m, take, &feature));
  char buffer[8];
  ExpectEachGives(QM_INVALID, QM_CTX_ScanAllModule, ctx_, TakeModule, nullptr);
  ExpectEachGives(QM_INVALID, QM_MOD_ScanInclude, m, TakeText, nullptr);
  ExpectEachGives(QM_INVALID, QM_MOD_ScanImport, m, TakeText, nullptr);
  ExpectEachGives(QM_INVALID, QM_MOD_ScanDeviatingModule, m, TakeText, nullptr);
  ExpectEachGives(QM_INVALID, QM_MOD_ScanAllFeature, m, TakeFeature, nullptr);
  ExpectEachGives(QM_INVALID, QM_FEATURE_ScanIfFeature, ctx_, feature, TakeIfFeature, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_ScanIfFeature, list, TakeIfFeature, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_ScanMust, list, TakeMust, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_ScanKey, list, TakeNode, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_ScanDefault, list, TakeText, nullptr);
  ExpectEachGives(QM_INVALID, QM_NODE_GetPath, list, buffer, sizeof(buffer));
  ExpectEachGives(QM_INVALID, QM_MOD_ScanDerivedIdentity, m, identity, TakeIdentity, nullptr);
  EXPECT_EQ(nullptr, QM_MOD_GetDescription(nullptr));
  EXPECT_EQ(1u, QM_MOD_GetYangVersion(nullptr));
  EXPECT_EQ(nullptr, QM_FEATURE_GetName(nullptr));
  EXPECT_EQ(0u, QM_FEATURE_IsEnabled(nullptr));
  EXPECT_EQ(uint32_t{QM_STATUS_CURRENT}, QM_NODE_GetStatus(nullptr));
  EXPECT_EQ(nullptr, QM_CTX_FindDataNode(nullptr, "/m:l"));
  EXPECT_EQ(nullptr, QM_CTX_FindDataNode(ctx_, nullptr));
  EXPECT_EQ(nullptr, QM_MOD_FindIdentity(nullptr, "i"));
  EXPECT_EQ(nullptr, QM_MOD_FindIdentity(m, nullptr));
}

}  // namespace
