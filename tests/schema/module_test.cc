// SPDX-License-Identifier: BSD-3-Clause
#include "schema/module.h"

#include <gtest/gtest.h>

#include <string>

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/dict.h"
#include "context/memory.h"
#include "loader/context_life.h"
#include "schema/definitions.h"
#include "schema/module_nodes.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "schema/typedef.h"
#include "tests/support/counting_memory.h"
#include "tests/support/module_builder.h"
#include "tests/support/module_fixture.h"

namespace {

using module_builder::AddChild;
using module_builder::AddTop;
using module_builder::ListText;
using module_builder::NewModule;
using module_builder::References;

class ModuleTest : public module_fixture::OneModule {
 protected:
  void SetText(const char** field, const char* text) {
    ASSERT_TRUE(InternText(dict_, field, text));
  }
};

using ModuleAccessors = ModuleTest;

TEST_F(ModuleAccessors, TextsAreThoseOfTheRecord) {
  SetText(&module_->prefix, "p");
  SetText(&module_->organization, "o");
  SetText(&module_->revision, "2024-01-01");
  EXPECT_STREQ("m", QM_MOD_GetModuleName(module_));
  EXPECT_STREQ("urn:m", QM_MOD_GetModuleNs(module_));
  EXPECT_STREQ("p", QM_MOD_GetModulePrefix(module_));
  EXPECT_STREQ("o", QM_MOD_GetOrganization(module_));
  EXPECT_STREQ("2024-01-01", QM_MOD_GetRevision(module_));
}

TEST_F(ModuleAccessors, NullModuleGivesNull) {
  EXPECT_EQ(nullptr, QM_MOD_GetModuleName(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetModuleNs(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetModulePrefix(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetOrganization(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetRevision(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetPrivate(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_SetPrivate(nullptr, &ctx_));
  EXPECT_EQ(nullptr, QM_MOD_GetRealTypeByTypDefName(nullptr, "t"));
  EXPECT_EQ(nullptr, QM_MOD_GetIdentityName(nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetIdentityDescription(nullptr));
}

TEST_F(ModuleAccessors, SetPrivateGivesThePreviousPointer) {
  int first = 0;
  int second = 0;
  EXPECT_EQ(nullptr, QM_MOD_SetPrivate(module_, &first));
  EXPECT_EQ(&first, QM_MOD_GetPrivate(module_));
  EXPECT_EQ(&first, QM_MOD_SetPrivate(module_, &second));
  EXPECT_EQ(&second, QM_MOD_SetPrivate(module_, nullptr));
  EXPECT_EQ(nullptr, QM_MOD_GetPrivate(module_));
}

TEST_F(ModuleAccessors, TypeOfATypedefIsFoundByItsName) {
  QmtType type = {};
  type.baseType = QMT_BASE_INT8;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module_, "t", &type, nullptr));
  EXPECT_EQ(&module_->typedefs[0].type, QM_MOD_GetRealTypeByTypDefName(module_, "t"));
  EXPECT_EQ(nullptr, QM_MOD_GetRealTypeByTypDefName(module_, "u"));
  EXPECT_EQ(nullptr, QM_MOD_GetRealTypeByTypDefName(module_, nullptr));
}

using PrefixLookup = ModuleTest;

TEST_F(PrefixLookup, ImportGivesTheNameOfItsModule) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "other", "o"));
  EXPECT_STREQ("other", QMS_MOD_GetImportModNameByPrefix(module_, "o"));
  EXPECT_STREQ("other", QMS_MOD_GetModuleNameByPrefix(module_, "o"));
  EXPECT_EQ(nullptr, QMS_MOD_GetImportModNameByPrefix(module_, "x"));
  EXPECT_EQ(nullptr, QMS_MOD_GetModuleNameByPrefix(module_, "x"));
}

TEST_F(PrefixLookup, OwnPrefixWinsOverAnImportThatRepeatsIt) {
  SetText(&module_->prefix, "p");
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "other", "p"));
  EXPECT_STREQ("m", QMS_MOD_GetModuleNameByPrefix(module_, "p"));
  EXPECT_STREQ("other", QMS_MOD_GetImportModNameByPrefix(module_, "p"));
}

TEST_F(PrefixLookup, FirstImportOfAPrefixCounts) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "one", "p"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "two", "p"));
  EXPECT_STREQ("one", QMS_MOD_GetModuleNameByPrefix(module_, "p"));
}

TEST_F(PrefixLookup, MissingArgumentGivesNull) {
  EXPECT_EQ(nullptr, QMS_MOD_GetImportModNameByPrefix(nullptr, "p"));
  EXPECT_EQ(nullptr, QMS_MOD_GetImportModNameByPrefix(module_, nullptr));
  EXPECT_EQ(nullptr, QMS_MOD_GetModuleNameByPrefix(nullptr, "p"));
  EXPECT_EQ(nullptr, QMS_MOD_GetModuleNameByPrefix(module_, nullptr));
}

using Features = ModuleTest;

TEST_F(Features, StarOnAModuleWithoutFeaturesSucceeds) {
  EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(module_, "*"));
}

TEST_F(Features, StarEnablesEveryFeature) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "a"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "b"));
  EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(module_, "*"));
  EXPECT_EQ(0x40, module_->features[0].flags);
  EXPECT_EQ(0x40, module_->features[1].flags);
}

TEST_F(Features, OneIsEnabledAndDisabledByName) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "a"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "b"));
  EXPECT_FALSE(IsFeatureEnabled(&module_->features[1]));
  EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(module_, "b"));
  EXPECT_FALSE(IsFeatureEnabled(&module_->features[0]));
  EXPECT_TRUE(IsFeatureEnabled(&module_->features[1]));
  EXPECT_EQ(QM_OK, QM_MOD_DisableFeature(module_, "b"));
  EXPECT_FALSE(IsFeatureEnabled(&module_->features[1]));
}

TEST_F(Features, SwitchingLeavesOtherBitsAlone) {
  QmsFeature feature = {};
  feature.flags = 0x8001;
  SetFeatureEnabled(&feature, true);
  EXPECT_EQ(0x8041, feature.flags);
  SetFeatureEnabled(&feature, false);
  EXPECT_EQ(0x8001, feature.flags);
}

TEST_F(Features, DisableKnowsNoStar) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "a"));
  ASSERT_EQ(QM_OK, QM_MOD_EnableFeature(module_, "*"));
  EXPECT_EQ(QM_INVALID, QM_MOD_DisableFeature(module_, "*"));
  EXPECT_TRUE(IsFeatureEnabled(&module_->features[0]));
}

TEST_F(Features, UnknownNameAndMissingArgumentsAreRefusedWith22) {
  EXPECT_EQ(QM_INVALID, QM_MOD_EnableFeature(module_, "a"));
  EXPECT_EQ(QM_INVALID, QM_MOD_EnableFeature(module_, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_EnableFeature(nullptr, "*"));
  EXPECT_EQ(QM_INVALID, QM_MOD_DisableFeature(module_, "a"));
  EXPECT_EQ(QM_INVALID, QM_MOD_DisableFeature(module_, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_DisableFeature(nullptr, "a"));
}

struct Scan {
  std::string seen;
  int stopAfter = 0;  // number of calls after which 77 is returned; 0: never
  int calls = 0;
};

uint32_t Answer(Scan* scan) {
  return ++scan->calls == scan->stopAfter ? 77 : 0;
}

uint32_t SeeIdentity(QmsIdentity* identity, void* arg, uint32_t zero) {
  auto* scan = static_cast<Scan*>(arg);
  EXPECT_EQ(0u, zero);
  scan->seen += std::string(QM_MOD_GetIdentityName(identity)) + " ";
  return Answer(scan);
}

uint32_t SeeBase(const char* module, const char* name, void* arg) {
  auto* scan = static_cast<Scan*>(arg);
  scan->seen += std::string(module) + ":" + name + " ";
  return Answer(scan);
}

uint32_t SeeNode(QmsNode* node, uint32_t travType, void* arg) {
  auto* scan = static_cast<Scan*>(arg);
  EXPECT_EQ(3u, travType);
  scan->seen += std::string(node->name) + " ";
  return Answer(scan);
}

using ScanIdentities = ModuleTest;

TEST_F(ScanIdentities, OrderIsThatOfTheModule) {
  Scan scan;
  EXPECT_EQ(QM_OK, QM_MOD_ScanAllIdentity(module_, SeeIdentity, &scan));
  for (const char* name : {"c", "a", "b"}) {
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, name));
  }
  EXPECT_EQ(QM_OK, QM_MOD_ScanAllIdentity(module_, SeeIdentity, &scan));
  EXPECT_EQ("c a b ", scan.seen);
}

TEST_F(ScanIdentities, FirstNonZeroResultEndsTheScan) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, "a"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, "b"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, "c"));
  Scan scan{"", 2, 0};
  EXPECT_EQ(77u, QM_MOD_ScanAllIdentity(module_, SeeIdentity, &scan));
  EXPECT_EQ("a b ", scan.seen);
}

TEST_F(ScanIdentities, BasesAreGivenAsModuleAndName) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, "a"));
  const QmsIdentBase bases[] = {{"m", "x"}, {"n", "y"}};
  QmsIdentity* identity = &module_->identities[0];
  identity->bases = QMS_MOD_CopyIdentBaseArray(&ctx_->dict, bases, 2);
  ASSERT_NE(nullptr, identity->bases);
  identity->baseCount = 2;
  Scan all;
  EXPECT_EQ(QM_OK, QM_MOD_ScanIdentityBase(identity, SeeBase, &all));
  EXPECT_EQ("m:x n:y ", all.seen);
  Scan stopped{"", 1, 0};
  EXPECT_EQ(77u, QM_MOD_ScanIdentityBase(identity, SeeBase, &stopped));
  EXPECT_EQ("m:x ", stopped.seen);
}

TEST_F(ScanIdentities, DescriptionIsThatOfTheIdentity) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, "a"));
  EXPECT_EQ(nullptr, QM_MOD_GetIdentityDescription(&module_->identities[0]));
  SetText(&module_->identities[0].description, "what it is");
  EXPECT_STREQ("what it is", QM_MOD_GetIdentityDescription(&module_->identities[0]));
}

TEST_F(ScanIdentities, MissingArgumentsAreRefusedWith22) {
  QmsIdentity identity = {};
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanAllIdentity(nullptr, SeeIdentity, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanAllIdentity(module_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanIdentityBase(nullptr, SeeBase, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_ScanIdentityBase(&identity, nullptr, nullptr));
}

using TopLevelNodes = ModuleTest;

TEST_F(TopLevelNodes, KindDecidesTheList) {
  for (uint32_t kind : {QMS_NODE_CONTAINER, QMS_NODE_LEAF, QMS_NODE_LEAF_LIST, QMS_NODE_LIST,
                        QMS_NODE_CHOICE, QMS_NODE_ANYDATA, QMS_NODE_ANYXML}) {
    ASSERT_NE(nullptr, AddTop(module_, kind, ("d" + std::to_string(kind)).c_str()));
  }
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_RPC, "r"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_NOTIFICATION, "n"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_AUGMENT, "/x:y"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_RPC, "r2"));
  EXPECT_EQ("d1 d2 d3 d4 d5 d7 d8", ListText(module_->dataNodes));
  EXPECT_EQ("r r2", ListText(module_->rpcNodes));
  EXPECT_EQ("n", ListText(module_->notifNodes));
  EXPECT_EQ("/x:y", ListText(module_->augmentNodes));
  EXPECT_EQ(module_->rpcNodes, module_->rpcNodes->next->prev);
  EXPECT_EQ(nullptr, module_->rpcNodes->next->parent);
}

TEST_F(TopLevelNodes, AreAppendedBehindTheLastOneThatIsLeft) {
  QmsNode* a = AddTop(module_, QMS_NODE_CONTAINER, "a");
  QmsNode* b = AddTop(module_, QMS_NODE_LEAF, "b");
  QmsNode* c = AddTop(module_, QMS_NODE_LEAF, "c");
  for (QmsNode* last : {c, b}) {
    ASSERT_EQ(QM_OK, QMS_NODE_Unlink(last));
    QMS_NODE_Free(last);
  }
  QmsNode* d = AddTop(module_, QMS_NODE_LIST, "d");
  EXPECT_EQ("a d", ListText(module_->dataNodes));
  EXPECT_EQ(a, d->prev);
  for (QmsNode* first : {a, d}) {
    ASSERT_EQ(QM_OK, QMS_NODE_Unlink(first));
    QMS_NODE_Free(first);
  }
  EXPECT_EQ(nullptr, module_->dataNodes);
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_LIST, "e"));
  EXPECT_EQ("e", ListText(module_->dataNodes));
}

TEST_F(TopLevelNodes, AreAppendedBehindSiblingsThatWereLinkedOtherwise) {
  QmsNode* a = AddTop(module_, QMS_NODE_CONTAINER, "a");
  QmsNode* b = AddTop(module_, QMS_NODE_CONTAINER, "b");
  ASSERT_EQ(QM_OK, QMS_NODE_Unlink(b));
  ASSERT_EQ(QM_OK, QMS_NODE_AddSibling(a, b));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_LEAF, "c"));
  EXPECT_EQ("a b c", ListText(module_->dataNodes));
}

TEST_F(TopLevelNodes, OtherKindsAreRefusedWith22AndChangeNothing) {
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_CONTAINER, "c"));
  for (uint32_t kind : {uint32_t{QMS_NODE_NONE}, uint32_t{QMS_NODE_CASE}, uint32_t{QMS_NODE_ACTION},
                        uint32_t{QMS_NODE_INPUT}, uint32_t{QMS_NODE_OUTPUT},
                        uint32_t{QMS_NODE_KIND_COUNT}, UINT32_MAX}) {
    SCOPED_TRACE(kind);
    QmsNode node = {};
    node.kind = kind;
    EXPECT_EQ(QM_INVALID, QMS_MOD_AddTopNodeToSchemaTree(module_, &node));
  }
  EXPECT_EQ("c", ListText(module_->dataNodes));
  EXPECT_EQ(nullptr, module_->rpcNodes);
  EXPECT_EQ(nullptr, module_->notifNodes);
  EXPECT_EQ(nullptr, module_->augmentNodes);
  EXPECT_EQ(QM_INVALID, QMS_MOD_AddTopNodeToSchemaTree(nullptr, module_->dataNodes));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AddTopNodeToSchemaTree(module_, nullptr));
}

TEST_F(TopLevelNodes, FindLooksThroughDataThenRpcsThenNotificationsNotAugments) {
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_NOTIFICATION, "x"));
  QmsNode* rpc = AddTop(module_, QMS_NODE_RPC, "x");
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_AUGMENT, "/a:b"));
  EXPECT_EQ(rpc, QMS_MOD_FindTopLevelSchemaNode(module_, "x"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_LEAF, "first"));
  QmsNode* leaf = AddTop(module_, QMS_NODE_LEAF, "x");
  EXPECT_EQ(leaf, QMS_MOD_FindTopLevelSchemaNode(module_, "x"));
  EXPECT_EQ(nullptr, QMS_MOD_FindTopLevelSchemaNode(module_, "/a:b"));
  EXPECT_EQ(nullptr, QMS_MOD_FindTopLevelSchemaNode(module_, "y"));
  EXPECT_EQ(nullptr, QMS_MOD_FindTopLevelSchemaNode(module_, nullptr));
  EXPECT_EQ(nullptr, QMS_MOD_FindTopLevelSchemaNode(nullptr, "x"));
}

TEST_F(TopLevelNodes, ScanVisitsDataRpcsAndNotificationsInThatOrder) {
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_AUGMENT, "/a:b"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_NOTIFICATION, "n"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_RPC, "r"));
  QmsNode* container = AddTop(module_, QMS_NODE_CONTAINER, "c");
  ASSERT_NE(nullptr, AddChild(container, QMS_NODE_LEAF, "l"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_LEAF, "d"));
  Scan all;
  EXPECT_EQ(QM_OK, QM_MOD_IterScanTopmostNode(module_, SeeNode, &all));
  EXPECT_EQ("c d r n ", all.seen);
  Scan stopped{"", 3, 0};
  EXPECT_EQ(77u, QM_MOD_IterScanTopmostNode(module_, SeeNode, &stopped));
  EXPECT_EQ("c d r ", stopped.seen);
}

TEST_F(TopLevelNodes, AugmentScanVisitsAugmentsOnly) {
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_CONTAINER, "c"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_AUGMENT, "/a:b"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_AUGMENT, "/a:c"));
  Scan all;
  EXPECT_EQ(QM_OK, QM_MOD_IterScanAugmentNode(module_, SeeNode, &all));
  EXPECT_EQ("/a:b /a:c ", all.seen);
  Scan stopped{"", 1, 0};
  EXPECT_EQ(77u, QM_MOD_IterScanAugmentNode(module_, SeeNode, &stopped));
  EXPECT_EQ("/a:b ", stopped.seen);
}

TEST_F(TopLevelNodes, ScansRefuseMissingArgumentsWith22) {
  EXPECT_EQ(QM_INVALID, QM_MOD_IterScanTopmostNode(nullptr, SeeNode, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_IterScanTopmostNode(module_, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_IterScanAugmentNode(nullptr, SeeNode, nullptr));
  EXPECT_EQ(QM_INVALID, QM_MOD_IterScanAugmentNode(module_, nullptr, nullptr));
}

using Registry = ModuleTest;

TEST_F(Registry, ModulesAreFoundByNameAndByNamespace) {
  ASSERT_EQ(QM_OK, QM_CTX_AddModuleNode(ctx_, module_));
  EXPECT_EQ(module_, QM_CTX_GetModuleByModName(ctx_, "m"));
  EXPECT_EQ(module_, QM_CTX_GetModuleByModNs(ctx_, "urn:m"));
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, "urn:m"));
  QM_CTX_DestroyModuleNode(ctx_, module_);
  module_ = nullptr;
  EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx_, "m"));
}

using FreeModule = ModuleTest;

// A module with something in every place that can hold something.
void FillEverything(QmCtx* ctx, QmsModule* module) {
  QmDict* dict = &ctx->dict;
  for (const char** field :
       {&module->prefix, &module->description, &module->revision, &module->organization}) {
    ASSERT_TRUE(InternText(dict, field, "text"));
  }
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module, "i", "p"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneInclude(module, "s"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module, "f"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module, "id"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(module, "e", "arg", 1));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(module, "/x:y"));
  QmtType type = {};
  type.baseType = QMT_BASE_STRING;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module, "t", &type, "d"));
  module->mergeSources = static_cast<const char**>(AllocZeroed(2 * sizeof(const char*)));
  ASSERT_NE(nullptr, module->mergeSources);
  module->mergeSourceCount = 2;  // the second slot stays empty
  ASSERT_TRUE(InternText(dict, &module->mergeSources[0], "suffix"));
  QmsNode* container = AddTop(module, QMS_NODE_CONTAINER, "c");
  ASSERT_NE(nullptr, AddChild(container, QMS_NODE_LEAF, "l"));
  ASSERT_NE(nullptr, AddTop(module, QMS_NODE_LEAF_LIST, "ll"));
  ASSERT_NE(nullptr, AddTop(module, QMS_NODE_RPC, "r"));
  ASSERT_NE(nullptr, AddTop(module, QMS_NODE_NOTIFICATION, "n"));
  ASSERT_NE(nullptr, AddTop(module, QMS_NODE_AUGMENT, "/x:y"));
}

uint32_t TextsHeld(const QmDict* dict) {
  uint32_t held = 0;
  for (uint32_t i = 0; i < dict->bucketCount; ++i) {
    for (const QmDictEntry* entry = dict->buckets[i].first; entry != nullptr; entry = entry->next) {
      ++held;
    }
  }
  return held;
}

TEST_F(FreeModule, NullIsIgnored) {
  QMS_MOD_Free(nullptr);
  QMS_MOD_DestroyNonNodeMember(nullptr);
  QMS_MOD_DestroyNodeMember(nullptr);
  QMS_MOD_FreeMrgSource(nullptr);
}

TEST_F(FreeModule, EveryTextGoesBackToTheDictionary) {
  FillEverything(ctx_, module_);
  QMS_MOD_Free(module_);
  module_ = nullptr;
  EXPECT_EQ(0u, TextsHeld(&ctx_->dict));
}

TEST_F(FreeModule, NonNodeMembersAreEmptyAfterwards) {
  FillEverything(ctx_, module_);
  QMS_MOD_DestroyNonNodeMember(module_);
  EXPECT_EQ(nullptr, module_->name);
  EXPECT_EQ(nullptr, module_->ns);
  EXPECT_EQ(nullptr, module_->imports);
  EXPECT_EQ(0, module_->importCount);
  EXPECT_EQ(nullptr, module_->typedefs);
  EXPECT_EQ(0, module_->typedefCount);
  EXPECT_EQ(nullptr, module_->extInsts);
  EXPECT_EQ(nullptr, module_->mergeSources);
  EXPECT_EQ(0u, module_->mergeSourceCount);
  EXPECT_EQ("c (l) ll", ListText(module_->dataNodes));
}

TEST_F(FreeModule, NodeMembersAreEmptyAfterwards) {
  FillEverything(ctx_, module_);
  QMS_MOD_DestroyNodeMember(module_);
  EXPECT_EQ(nullptr, module_->dataNodes);
  EXPECT_EQ(nullptr, module_->rpcNodes);
  EXPECT_EQ(nullptr, module_->notifNodes);
  EXPECT_EQ(nullptr, module_->augmentNodes);
  EXPECT_STREQ("m", module_->name);
}

TEST_F(FreeModule, NonNodeMembersStayWithoutAContext) {
  module_->ctx = nullptr;
  QMS_MOD_DestroyNonNodeMember(module_);
  EXPECT_STREQ("m", module_->name);
  module_->ctx = ctx_;
}

TEST_F(FreeModule, WithoutContextNodesAndRecordGoButTextsStay) {
  FillEverything(ctx_, module_);
  const uint32_t held = TextsHeld(&ctx_->dict);
  module_->ctx = nullptr;
  const size_t before = counting_memory::LiveBlocks();
  QMS_MOD_Free(module_);
  module_ = nullptr;
  EXPECT_LT(counting_memory::LiveBlocks(), before);
  EXPECT_EQ(held, TextsHeld(&ctx_->dict));
  // The listener finds every block that was left behind but the texts, which
  // the context takes along.
}

TEST_F(FreeModule, NodesOfAModuleWithoutContextAreFreedOnTheirOwn) {
  const size_t before = counting_memory::LiveBlocks();
  ASSERT_NE(nullptr, AddChild(AddTop(module_, QMS_NODE_CONTAINER, "c"), QMS_NODE_LEAF, "l"));
  const size_t texts = 2 * 2;  // an entry and its text each, which stay
  module_->ctx = nullptr;
  QMS_MOD_DestroyNodeMember(module_);
  module_->ctx = ctx_;
  EXPECT_EQ(nullptr, module_->dataNodes);
  EXPECT_EQ(before + texts, counting_memory::LiveBlocks());
}

std::string g_freed;

void NotePrivateData(QmsNode* node, void*) {
  const char* name = QM_MOD_GetModuleName(QM_NODE_GetModule(node));
  g_freed += std::string(node->name) + (name == nullptr ? "" : ":named") + " ";
}

TEST_F(FreeModule, HookSeesAModuleWithoutNameAndNodesInListOrder) {
  int mark = 0;
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_AUGMENT, "/x:y"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_NOTIFICATION, "n"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_RPC, "r"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_LEAF, "a"));
  ASSERT_NE(nullptr, AddTop(module_, QMS_NODE_LEAF, "b"));
  for (QmsNode* list :
       {module_->dataNodes, module_->rpcNodes, module_->notifNodes, module_->augmentNodes}) {
    for (; list != nullptr; list = list->next) list->privateData = &mark;
  }
  g_freed.clear();
  QM_CTX_SetPridataFreeFunc(ctx_, NotePrivateData);
  QMS_MOD_Free(module_);
  module_ = nullptr;
  EXPECT_EQ("a b r n /x:y ", g_freed);
}

TEST_F(FreeModule, SharedTextKeepsTheReferencesOfOthers) {
  QmsModule* other = NewModule(ctx_, "m");
  ASSERT_NE(nullptr, other);
  EXPECT_EQ(2u, References(&ctx_->dict, "m"));
  QMS_MOD_Free(other);
  EXPECT_EQ(1u, References(&ctx_->dict, "m"));
  EXPECT_STREQ("m", module_->name);
}

}  // namespace
