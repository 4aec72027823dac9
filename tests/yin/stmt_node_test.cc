// SPDX-License-Identifier: BSD-3-Clause
#include "yin/stmt_node.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <set>
#include <string>

#include "context/dict.h"
#include "schema/node.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "tests/support/yin_text.h"
#include "yin/stmt_kinds.h"

using testing::ElementsAre;

static const char kImport[] = "<import module='other'><prefix value='o'/></import>";
static const char kXmlns[] = "xmlns:o='urn:other'";

static std::string Model(const std::string& body) {
  return yin::Module("m", kImport + body, kXmlns);
}

// A statement with one child, wrapped so that it may stand at the top.
struct Holder {
  const char* keyword;
  const char* before;  // up to and with what goes before the child
  const char* after;
  std::set<std::string> accepted;
};

static const std::set<std::string> kDataNodes = {"container", "leaf",    "leaf-list", "list",
                                                 "choice",    "anydata", "anyxml"};

static std::set<std::string> With(std::set<std::string> names, bool dataNodes) {
  if (dataNodes) names.insert(kDataNodes.begin(), kDataNodes.end());
  return names;
}

static const Holder* Holders(size_t* count) {
  static const Holder holders[] = {
      {"container", "<container name='n'>", "</container>",
       With(
           {"when", "if-feature", "must", "presence", "config", "status", "action", "notification"},
           true)},
      {"leaf", "<leaf name='n'><type name='string'/>", "</leaf>",
       With({"when", "if-feature", "must", "type", "units", "default", "config", "mandatory",
             "status"},
            false)},
      {"leaf-list", "<leaf-list name='n'><type name='string'/>", "</leaf-list>",
       With({"when", "if-feature", "must", "type", "units", "default", "config", "ordered-by",
             "status"},
            false)},
      {"list", "<list name='n'>", "</list>",
       With({"when", "if-feature", "must", "key", "config", "ordered-by", "status", "action",
             "notification"},
            true)},
      {"choice", "<choice name='n'>", "</choice>",
       With({"when", "if-feature", "default", "config", "mandatory", "status", "case"}, true)},
      {"case", "<choice name='h'><case name='n'>", "</case></choice>",
       With({"when", "if-feature", "status"}, true)},
      {"anydata",
       "<anydata name='n'>",
       "</anydata>",
       {"when", "if-feature", "must", "config", "mandatory", "status"}},
      {"anyxml",
       "<anyxml name='n'>",
       "</anyxml>",
       {"when", "if-feature", "must", "config", "mandatory", "status"}},
      {"rpc", "<rpc name='n'>", "</rpc>", {"if-feature", "status", "input", "output"}},
      {"action",
       "<container name='h'><action name='n'>",
       "</action></container>",
       {"if-feature", "status", "input", "output"}},
      {"input", "<rpc name='h'><input>", "</input></rpc>", With({"must"}, true)},
      {"output", "<rpc name='h'><output>", "</output></rpc>", With({"must"}, true)},
      {"notification", "<notification name='n'>", "</notification>",
       With({"if-feature", "must", "status"}, true)},
      {"augment", "<augment target-node='/o:t'>", "</augment>",
       With({"when", "if-feature", "status", "case", "action", "notification"}, true)},
  };
  *count = std::size(holders);
  return holders;
}

// Statements that fail without an argument, so that a load tells who reads them.
static const char* const kFailWithoutArgument[] = {
    "when",    "if-feature", "must",     "presence",     "config",    "mandatory",
    "status",  "ordered-by", "key",      "default",      "units",     "type",
    "case",    "container",  "leaf",     "leaf-list",    "list",      "choice",
    "anydata", "anyxml",     "action",   "notification", "typedef",   "rpc",
    "augment", "feature",    "identity", "extension",    "deviation", "error-app-tag",
    "base",    "deviate",    "argument", "yin-element",  "prefix",    "revision"};

static const char* const kNeverRead[] = {"grouping",     "uses",         "refine",    "unique",
                                         "min-elements", "max-elements", "reference", "contact",
                                         "path",         "unknown",      "Leaf"};

TEST(NodeStatements, EachReadsItsOwnSubStatementsAndSkipsAllOthers) {
  size_t count = 0;
  const Holder* holders = Holders(&count);
  ASSERT_EQ(14u, count);
  for (size_t i = 0; i < count; ++i) {
    for (const char* child : kFailWithoutArgument) {
      SCOPED_TRACE(std::string(child) + " under " + holders[i].keyword);
      yin::Context ctx(QM_LOAD_UNITS);
      const std::string body =
          std::string(holders[i].before) + "<" + child + "/>" + holders[i].after;
      yin::Parsed module(ctx, Model(body));
      EXPECT_EQ(holders[i].accepted.count(child) == 0, bool{module});
    }
    for (const char* child : kNeverRead) {
      SCOPED_TRACE(std::string(child) + " under " + holders[i].keyword);
      yin::Context ctx(QM_LOAD_UNITS);
      yin::Parsed module(ctx, Model(std::string(holders[i].before) + "<" + child + "><leaf/></" +
                                    child + ">" + holders[i].after));
      EXPECT_TRUE(module);
      EXPECT_THAT(ctx.Errors(), ElementsAre());
    }
    for (const char* child : {"input", "output"}) {
      SCOPED_TRACE(std::string(child) + " under " + holders[i].keyword);
      yin::Context ctx;
      yin::Parsed module(ctx, Model(std::string(holders[i].before) + "<" + child + "><leaf/></" +
                                    child + ">" + holders[i].after));
      EXPECT_EQ(holders[i].accepted.count(child) == 0, bool{module});
    }
  }
}

// The node that a holder makes, deepest first.
static const QmsNode* NodeOf(const QmsModule* module, const char* keyword) {
  const std::string key = keyword;
  if (key == "augment") return module->augmentNodes;
  if (key == "case" || key == "action") return yin::Find(module, "h/n");
  if (key == "input" || key == "output") return yin::Find(module, "h/" + key);
  return yin::Find(module, "n");
}

TEST(NodeStatements, DescriptionsAndInstancesAreKeptWhereTheyMay) {
  size_t count = 0;
  const Holder* holders = Holders(&count);
  for (size_t i = 0; i < count; ++i) {
    const std::string key = holders[i].keyword;
    SCOPED_TRACE(key);
    yin::Context ctx(QM_LOAD_DESCRIPTIONS);
    yin::Parsed module(
        ctx, Model(std::string(holders[i].before) +
                   "<description><text>d</text></description><m:e/><o:f/>" + holders[i].after));
    ASSERT_TRUE(module);
    const QmsNode* node = NodeOf(module.Get(), holders[i].keyword);
    ASSERT_NE(nullptr, node);
    const bool hasDescription = key != "input" && key != "output";
    EXPECT_EQ(hasDescription, node->description != nullptr);
    EXPECT_EQ(key == "augment" ? 0 : 2, node->extInstCount);
    EXPECT_EQ(module.Get(), node->module);
  }
}

TEST(NodeStatements, AFailedSubStatementIsToldWithKeywordAndName) {
  size_t count = 0;
  const Holder* holders = Holders(&count);
  for (size_t i = 0; i < count; ++i) {
    const std::string key = holders[i].keyword;
    SCOPED_TRACE(key);
    const std::string child = *holders[i].accepted.begin();  // fails without an argument
    yin::Context ctx;
    yin::Parsed module(
        ctx, Model(std::string(holders[i].before) + "<" + child + "/>" + holders[i].after));
    EXPECT_FALSE(module);
    const bool isNamedByKeyword = key == "input" || key == "output";
    const std::string name = key == "augment" ? "/other:t" : isNamedByKeyword ? key : "n";
    EXPECT_THAT(ctx.Errors(),
                ElementsAre("m -: Failed to get value of statement \"" + child + "\".",
                            "m -: Failed to parse \"" + key + "\" statement \"" + name + "\"."));
  }
}

TEST(NodeStatements, AMissingNameIsTold) {
  for (const char* keyword : {"container", "leaf", "leaf-list", "list", "choice", "anydata",
                              "anyxml", "rpc", "notification", "augment"}) {
    SCOPED_TRACE(keyword);
    yin::Context ctx;
    yin::Parsed module(ctx, Model(std::string("<") + keyword + "/>"));
    EXPECT_FALSE(module);
    EXPECT_THAT(ctx.Errors(), ElementsAre(std::string("m -: Failed to get value of statement \"") +
                                          keyword + "\"."));
  }
}

TEST(ParseNodeCommon, NullWhenTheNodeCannotBeNamed) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml("<leaf/>");
  EXPECT_EQ(nullptr,
            QMS_LOADER_ParseNodeCommon(module.Get(), xmlDocGetRootElement(doc), QMS_NODE_LEAF));
  xmlFreeDoc(doc);
}

TEST(ParseNodeCommon, NullWithoutMemory) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml("<leaf name='x'/>");
  for (uint64_t n = 1; n <= 4; ++n) {  // node, payload, dictionary entry, its text
    SCOPED_TRACE(n);
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(nullptr,
              QMS_LOADER_ParseNodeCommon(module.Get(), xmlDocGetRootElement(doc), QMS_NODE_LEAF));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
  }
  xmlFreeDoc(doc);
}

struct StatusRow {
  uint32_t (*parse)(QmsModule*, xmlNode*, uint32_t, void*);
  uint32_t status;
};

TEST(NodeStatements, AnUnnamedListIs12AndAllOthersAre22) {
  const StatusRow rows[] = {
      {QMS_LOADER_ParseContainer, QM_INVALID}, {QMS_LOADER_ParseLeaf, QM_INVALID},
      {QMS_LOADER_ParseLeafList, QM_INVALID},  {QMS_LOADER_ParseList, QM_NO_MEMORY},
      {QMS_LOADER_ParseChoice, QM_INVALID},    {QMS_LOADER_ParseCase, QM_INVALID},
      {QMS_LOADER_ParseAnydata, QM_INVALID},   {QMS_LOADER_ParseAnyxml, QM_INVALID},
      {QMS_LOADER_ParseRpc, QM_INVALID},       {QMS_LOADER_ParseAction, QM_INVALID},
      {QMS_LOADER_ParseNotif, QM_INVALID},     {QMS_LOADER_ParseAugment, QM_INVALID}};
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml("<any/>");
  for (const StatusRow& row : rows)
    EXPECT_EQ(row.status,
              row.parse(module.Get(), xmlDocGetRootElement(doc), QMS_STMT_MODULE, module.Get()));
  xmlFreeDoc(doc);
}

TEST(AddNodeToSchemaTree, ANodeNeedsAParentThatTakesIt) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  QmsNode* node = QMS_NODE_New(QMS_NODE_CASE);
  ASSERT_NE(nullptr, node);
  node->module = module.Get();
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_AddNodeToSchemaTree(module.Get(), nullptr, node, QMS_STMT_CHOICE));
  EXPECT_EQ(QM_INVALID,
            QMS_LOADER_AddNodeToSchemaTree(module.Get(), nullptr, node, QMS_STMT_MODULE))
      << "a case is no top-level node";
  QMS_NODE_Free(node);
}

TEST(NodeStatements, FieldsOfAContainerAndItsChildren) {
  yin::Context ctx(QM_LOAD_UNITS);
  yin::Parsed module(
      ctx, Model("<container name='c'><when condition=\"../x = 'o:i'\"/><if-feature name='f'/>"
                 "<if-feature name='o:g'/><must condition='a'/><must condition='b'/>"
                 "<must condition='c'/><presence value='p'/><status value='obsolete'/>"
                 "<leaf name='x'><type name='string'/><units name='u'/><default value='v'/>"
                 "</leaf><leaf-list name='y'><type name='int8'/><default value='1'/>"
                 "<default value='2'/><ordered-by value='user'/></leaf-list>"
                 "<choice name='z'><default value='k'/></choice></container>"));
  ASSERT_TRUE(module);
  const QmsNode* c = yin::Find(module.Get(), "c");
  EXPECT_STREQ("../x = 'other:i'", c->when);
  ASSERT_EQ(2u, c->ifFeatureCount);
  EXPECT_STREQ("other", c->ifFeatures[1].module);
  ASSERT_EQ(3u, c->mustCount);
  EXPECT_STREQ("c", c->musts[2].condition);
  EXPECT_EQ(0x800u | 0x400u, c->flags);
  const auto* x = static_cast<const QmsLeaf*>(yin::Find(module.Get(), "c/x")->payload);
  EXPECT_EQ(uint32_t{QMT_BASE_STRING}, x->type.baseType);
  EXPECT_STREQ("u", x->units);
  EXPECT_STREQ("v", x->defaultValue);
  const QmsNode* yNode = yin::Find(module.Get(), "c/y");
  const auto* y = static_cast<const QmsLeafList*>(yNode->payload);
  EXPECT_EQ(0x80u, yNode->flags);
  ASSERT_EQ(2u, y->defaultCount);
  EXPECT_STREQ("1", y->defaults[0]);
  EXPECT_STREQ("2", y->defaults[1]);
  EXPECT_STREQ("k",
               static_cast<const QmsChoice*>(yin::Find(module.Get(), "c/z")->payload)->defaultCase);
}

TEST(NodeStatements, ConfigFalseGoesDownTheTree) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<container name='c'><leaf name='x'><type name='string'/></leaf>"
                                "<container name='d'><leaf name='y'><type name='string'/>"
                                "<config value='true'/></leaf></container>"
                                "<config value='false'/></container>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(0x4u | 0x8u, yin::Find(module.Get(), "c")->flags);
  EXPECT_EQ(0x4u, yin::Find(module.Get(), "c/x")->flags);
  EXPECT_EQ(0x4u, yin::Find(module.Get(), "c/d")->flags);
  EXPECT_EQ(0x4u, yin::Find(module.Get(), "c/d/y")->flags) << "its own config is overruled";
}

TEST(NodeStatements, ALeafNeedsAType) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<container name='d'><leaf name='x'/></container>"));
  EXPECT_FALSE(module);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: leaf \"x\" must define with type statement.",
                                        "m -: Failed to parse \"container\" statement \"d\"."));
}

TEST(NodeStatements, ALeafListNeedsAType) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<leaf-list name='x'><units name='s'/></leaf-list>"));
  EXPECT_FALSE(module);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: leaf-list \"x\" must define with type statement."));
}

TEST(NodeStatements, TheInnermostTwoMessagesOfANestedFailureAreKept) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<container name='c'><container name='d'><leaf name='x'>"
                                "<type name='p:t'/></leaf></container></container>"));
  EXPECT_FALSE(module);
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to parse value \"p:t\" of statement \"type\".",
                                        "m -: Failed to parse \"leaf\" statement \"x\"."));
}

TEST(ParseList, KeysAreMarkedWhereverTheKeyStands) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<list name='l'><leaf name='a'><type name='string'/></leaf>"
                                "<key value='a  b'/><leaf name='b'><type name='string'/></leaf>"
                                "<leaf name='c'><type name='string'/></leaf></list>"
                                "<list name='k'/>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(2u, yin::Find(module.Get(), "l")->keyCount);
  EXPECT_EQ(0x100u, yin::Find(module.Get(), "l/a")->flags);
  EXPECT_EQ(0x100u, yin::Find(module.Get(), "l/b")->flags);
  EXPECT_EQ(0u, yin::Find(module.Get(), "l/c")->flags);
  EXPECT_EQ(0u, yin::Find(module.Get(), "k")->keyCount);
}

TEST(ParseList, ABadKeyHasNoMessageOfItsOwn) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<container name='c'><list name='l'><key value='a z'/>"
                                "<leaf name='a'><type name='string'/></leaf></list></container>"));
  EXPECT_FALSE(module);
  EXPECT_THAT(ctx.Errors(),
              ElementsAre("m -: Failed to parse statement \"list\" under statement \"container\".",
                          "m -: Failed to parse \"container\" statement \"c\"."));
}

TEST(ParseList, KeyStatuses) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml(
      yin_text::Root("<list name='l'><key value='a'/></list><list name='l'><key value='z'/>" +
                     yin_text::Leaf("a") + "</list>"));
  xmlNode* first = xmlDocGetRootElement(doc)->children;
  EXPECT_EQ(QM_INVALID, QMS_LOADER_ParseList(module.Get(), first, 39, module.Get()));
  EXPECT_EQ(UINT32_MAX, QMS_LOADER_ParseList(module.Get(), first->next, 39, module.Get()));
  EXPECT_EQ(nullptr, module.Get()->dataNodes) << "a list that failed is not linked";
  xmlFreeDoc(doc);
}

TEST(ParseRpc, InputComesFirstWhateverTheOrder) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<rpc name='r'><output><leaf name='o'><type name='string'/></leaf>"
                                "</output><input><leaf name='i'><type name='string'/></leaf>"
                                "</input></rpc>"));
  ASSERT_TRUE(module);
  const QmsNode* r = yin::Find(module.Get(), "r");
  EXPECT_EQ(uint32_t{QMS_NODE_RPC}, r->kind);
  EXPECT_EQ(uint32_t{QMS_NODE_INPUT}, r->firstChild->kind);
  EXPECT_STREQ("input", r->firstChild->name);
  EXPECT_EQ(uint32_t{QMS_NODE_OUTPUT}, r->lastChild->kind);
  EXPECT_STREQ("output", r->lastChild->name);
  EXPECT_STREQ("i", r->firstChild->firstChild->name);
}

TEST(ParseRpc, TheLaterOfTwoInputsStandsFirst) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<rpc name='r'><input><anyxml name='a'/></input>"
                                "<input><anyxml name='b'/></input></rpc>"));
  ASSERT_TRUE(module);
  const QmsNode* r = yin::Find(module.Get(), "r");
  EXPECT_STREQ("b", r->firstChild->firstChild->name);
  EXPECT_STREQ("a", r->firstChild->next->firstChild->name);
}

TEST(ParseChoice, AShorthandCaseHasNoCaseNode) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<choice name='h'><leaf name='a'><type name='string'/></leaf>"
                                "<case name='b'><container name='c'/></case></choice>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(uint32_t{QMS_NODE_LEAF}, yin::Find(module.Get(), "h/a")->kind);
  EXPECT_EQ(uint32_t{QMS_NODE_CASE}, yin::Find(module.Get(), "h/b")->kind);
  EXPECT_EQ(uint32_t{QMS_NODE_CONTAINER}, yin::Find(module.Get(), "h/b/c")->kind);
}

TEST(ParseAugment, TargetHasModuleNamesAndChildrenInheritTheCondition) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<augment target-node='/o:a/o:b/m:c'><leaf name='x'>"
                                "<type name='string'/></leaf><if-feature name='f'/>"
                                "<when condition='y = 1'/></augment>"));
  ASSERT_TRUE(module);
  const QmsNode* augment = module.Get()->augmentNodes;
  EXPECT_STREQ("/other:a/b/m:c", augment->name);
  const QmsNode* x = augment->firstChild;
  EXPECT_STREQ("../y = 1", x->when);
  ASSERT_EQ(1u, x->ifFeatureCount);
  EXPECT_STREQ("f", x->ifFeatures[0].feature);
}

TEST(ParseAugment, RefusedTargets) {
  struct {
    const char* target;
    std::vector<std::string> errors;
  } const rows[] = {
      {"o:a", {"m -: Failed to get value of statement \"augment\"."}},
      {"", {"m -: Failed to get value of statement \"augment\"."}},
      {"/p:a",
       {"m -: Failed to parse xpath \"/p:a\".",
        "m -: Failed to parse value \"/p:a\" of statement \"augment\"."}},
      {"/",
       {"m -: Failed to parse xpath \"/\".",
        "m -: Failed to parse value \"/\" of statement \"augment\"."}},
      {"/..",
       {"m -: Failed to parse xpath \"/..\".",
        "m -: Failed to parse value \"/..\" of statement \"augment\"."}},
      {"/o:../..",
       {"m -: Failed to parse xpath \"/o:../..\".",
        "m -: Failed to parse value \"/o:../..\" of statement \"augment\"."}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target);
    yin::Context ctx;
    yin::Parsed module(ctx, Model(std::string("<augment target-node='") + row.target + "'/>"));
    EXPECT_FALSE(module);
    EXPECT_EQ(row.errors, ctx.Errors());
  }
}

TEST(ParseAugmentTargetNode, APathThatCannotBeInternedIsMinusOne) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml("<augment target-node='/o:a'/>");
  uint32_t minusOnes = 0;
  uint32_t refused = 0;
  const char* name = nullptr;
  for (uint64_t n = 1; refused == n - 1; ++n) {
    counting_memory::RefuseNth(n, counting_memory::Refuse::kFromThenOn);
    const uint32_t ret =
        QMS_LOADER_ParseAugmentTargetNode(module.Get(), xmlDocGetRootElement(doc), &name);
    if (counting_memory::StopRefusing() > 0) {
      ++refused;
      EXPECT_TRUE(ret == QM_INVALID || ret == UINT32_MAX);
      EXPECT_EQ(nullptr, name);
    }
    minusOnes += ret == UINT32_MAX ? 1 : 0;
  }
  EXPECT_EQ(2u, minusOnes) << "the entry and its copy";
  ASSERT_STREQ("/other:a", name);
  ReleaseText(&ctx.Get()->dict, &name);
  xmlFreeDoc(doc);
}

TEST(ParseAugment, OneThatFailsIsNotLinkedAndOneThatIsLinkedIsWhole) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model(""));
  xmlDoc* doc = yin::Xml(std::string("<augment target-node='/o:a'") + yin_text::kNamespace +
                         "><if-feature name='f'/>" + yin_text::Leaf("x") + "</augment>");
  uint64_t refused = 1;
  for (uint64_t n = 1; refused > 0; ++n) {
    SCOPED_TRACE(n);
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    const uint32_t ret =
        QMS_LOADER_ParseAugment(module.Get(), xmlDocGetRootElement(doc), 39, module.Get());
    refused = counting_memory::StopRefusing();
    EXPECT_EQ(refused == 0, ret == QM_OK);
    QmsNode* augment = module.Get()->augmentNodes;
    ASSERT_EQ(ret == QM_OK, augment != nullptr);
  }
  EXPECT_EQ(1u, module.Get()->augmentNodes->firstChild->ifFeatureCount);
  xmlFreeDoc(doc);
}

TEST(NodeDefaults, OfIdentityrefTypesGetModuleNames) {
  yin::Context ctx;
  yin::Parsed module(ctx,
                     Model("<typedef name='t'><type name='identityref'><base name='b'/></type>"
                           "<default value='o:i'/></typedef>"
                           "<typedef name='s'><type name='string'/><default value='o:i'/></typedef>"
                           "<leaf name='a'><type name='identityref'><base name='b'/></type>"
                           "<default value='o:i'/></leaf>"
                           "<leaf name='b'><type name='identityref'><base name='b'/></type>"
                           "<default value='i'/></leaf>"
                           "<leaf name='c'><type name='t'/><default value='o:i'/></leaf>"
                           "<leaf-list name='d'><type name='identityref'><base name='b'/></type>"
                           "<default value='o:i'/><default value='j'/></leaf-list>"));
  ASSERT_TRUE(module);
  auto leafDefault = [&](const char* name) {
    return static_cast<const QmsLeaf*>(yin::Find(module.Get(), name)->payload)->defaultValue;
  };
  EXPECT_STREQ("other:i", module.Get()->typedefs[0].defaultValue);
  EXPECT_STREQ("o:i", module.Get()->typedefs[1].defaultValue);
  EXPECT_STREQ("other:i", leafDefault("a"));
  EXPECT_STREQ("m:i", leafDefault("b"));
  EXPECT_STREQ("o:i", leafDefault("c")) << "a typedef of identityref is not looked through";
  const auto* d = static_cast<const QmsLeafList*>(yin::Find(module.Get(), "d")->payload);
  EXPECT_STREQ("other:i", d->defaults[0]);
  EXPECT_STREQ("m:j", d->defaults[1]);
}

TEST(NodeDefaults, AnUnknownPrefixRefusesTheNodeAndTakesItOutOfTheTree) {
  for (const char* keyword : {"leaf", "leaf-list"}) {
    SCOPED_TRACE(keyword);
    yin::Context ctx;
    yin::Parsed module(ctx, Model(""));
    xmlDoc* doc = yin::Xml(std::string("<") + keyword + " name='a'" + yin_text::kNamespace +
                           "><type name='identityref'><base name='b'/></type>"
                           "<default value='p:i'/></" +
                           keyword + ">");
    auto* parse = std::string(keyword) == "leaf" ? QMS_LOADER_ParseLeaf : QMS_LOADER_ParseLeafList;
    EXPECT_EQ(QM_INVALID, parse(module.Get(), xmlDocGetRootElement(doc), 39, module.Get()));
    EXPECT_EQ(nullptr, module.Get()->dataNodes);
    xmlFreeDoc(doc);
  }
}

TEST(NodeDefaults, AFailedOneHasNoMessageOfItsOwn) {
  yin::Context ctx;
  yin::Parsed module(ctx, Model("<container name='c'><leaf name='a'><type name='identityref'>"
                                "<base name='b'/></type><default value='p:i'/></leaf>"
                                "</container>"));
  EXPECT_FALSE(module);
  EXPECT_THAT(ctx.Errors(),
              ElementsAre("m -: Failed to parse statement \"leaf\" under statement \"container\".",
                          "m -: Failed to parse \"container\" statement \"c\"."));
}

TEST(NodeStatements, AWhenOfMoreThan3096CharactersIsKeptAndTheLoadGoesOn) {
  yin::Context ctx;
  const std::string when = "a = 'o:i' or " + std::string(3096, 'b');
  yin::Parsed module(ctx, Model("<container name='c'><when condition=\"" + when +
                                "\"/></container><container name='d'/>"));
  ASSERT_TRUE(module);
  EXPECT_EQ(when, yin::Find(module.Get(), "c")->when) << "nothing in it is rewritten";
  EXPECT_NE(nullptr, yin::Find(module.Get(), "d"));
  EXPECT_THAT(ctx.Errors(), ElementsAre("m -: Failed to transfer prefix to module name in "
                                        "statement \"when\"."));
}

TEST(NodeStatements, ManyInstancesOverflowNoCounter) {
  yin::Context ctx;
  std::string musts;
  for (int i = 0; i < 65536; ++i) musts += "<must condition='a'/>";
  yin::Parsed tooMany(ctx, Model("<container name='c'>" + musts + "</container>"));
  EXPECT_FALSE(tooMany);
  musts.resize(musts.size() - sizeof("<must condition='a'/>") + 1);
  yin::Parsed most(ctx, Model("<container name='c'>" + musts + "</container>"));
  ASSERT_TRUE(most);
  EXPECT_EQ(65535u, yin::Find(most.Get(), "c")->mustCount);
}

static const char kAllNodes[] =
    "<container name='c'><when condition=\"../x = 'o:i'\"/><if-feature name='f'/>"
    "<must condition='a'><error-message><value>v</value></error-message></must><m:e a='1'/>"
    "<list name='l'><key value='k'/><leaf name='k'><type name='string'/></leaf>"
    "<leaf-list name='y'><type name='int8'/><default value='1'/><default value='2'/>"
    "<units name='u'/></leaf-list><action name='t'><input/></action></list>"
    "<choice name='z'><default value='k'/><case name='k'><anydata name='d'/></case></choice>"
    "<config value='false'/></container>"
    "<leaf name='i'><type name='identityref'><base name='b'/></type><default value='o:i'/></leaf>"
    "<rpc name='r'><output><anyxml name='a'/></output><input><must condition='x'/></input></rpc>"
    "<notification name='n'><leaf name='o'><type name='boolean'/></leaf></notification>"
    "<augment target-node='/o:a'><when condition='y'/><if-feature name='f'/>"
    "<leaf name='x'><type name='string'/></leaf></augment>";

TEST(NodeStatements, SurviveRefusedMemory) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    yin::Context ctx(QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
    if (ctx.Get() == nullptr) return;
    yin::Parsed module(ctx, Model(kAllNodes));
    if (!refusing) {
      EXPECT_TRUE(module);
    }
  });
  EXPECT_GT(injected, 200u);
}
