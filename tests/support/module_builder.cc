// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/module_builder.h"

#include <gtest/gtest.h>

#include <qmodel/error.h>
#include <qmodel/loader.h>

#include "context/dict.h"
#include "context/memory.h"
#include "schema/module.h"
#include "schema/module_nodes.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "types/type.h"

namespace module_builder {

QmsModule* NewModule(QmCtx* ctx, const char* name) {
  QmsModule* module = NewRecord<QmsModule>();
  if (module == nullptr) return nullptr;
  module->ctx = ctx;
  RTK_AVL3_InitLink(&module->nameLink);
  RTK_AVL3_InitLink(&module->nsLink);
  const std::string ns = std::string("urn:") + name;
  if (InternText(&ctx->dict, &module->name, name) &&
      InternText(&ctx->dict, &module->ns, ns.c_str())) {
    return module;
  }
  QMS_MOD_Free(module);
  return nullptr;
}

QmsNode* NewNode(QmsModule* module, uint32_t kind, const char* name) {
  QmsNode* node = QMS_NODE_New(kind);
  if (node == nullptr) return nullptr;
  node->module = module;
  if (InternText(ModuleDict(module), &node->name, name)) return node;
  QMS_NODE_Free(node);
  return nullptr;
}

QmsNode* AddTop(QmsModule* module, uint32_t kind, const char* name) {
  QmsNode* node = NewNode(module, kind, name);
  if (node != nullptr) {
    EXPECT_EQ(QM_OK, QMS_MOD_AddTopNodeToSchemaTree(module, node));
  }
  return node;
}

QmsNode* AddChild(QmsNode* parent, uint32_t kind, const char* name) {
  QmsNode* node = NewNode(parent->module, kind, name);
  if (node != nullptr) {
    EXPECT_EQ(QM_OK, QMS_NODE_AddChild(parent, node));
  }
  return node;
}

bool MakeDerived(QmDict* dict, QmtType* type, const char* moduleName, const char* typedefName) {
  if (QMT_TYPE_ExpandConstraintArray(type, 1) != 0) return false;
  auto* derived = NewRecord<QmtConsDerived>();
  if (derived == nullptr) return false;
  type->cons[0].kind = QMT_CONS_DERIVED;
  type->cons[0].body = derived;
  type->consCount = 1;
  return InternText(dict, &derived->moduleName, moduleName) &&
         InternText(dict, &derived->typedefName, typedefName);
}

const QmtType* ResolvedOf(const QmtType* type) {
  const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(type);
  return derived == nullptr ? nullptr : derived->resolved;
}

QmtType* TypeOfLeaf(QmsNode* leaf) {
  return &static_cast<QmsLeaf*>(leaf->payload)->type;
}

uint32_t References(const QmDict* dict, const char* text) {
  for (uint32_t i = 0; i < dict->bucketCount; ++i) {
    for (const QmDictEntry* entry = dict->buckets[i].first; entry != nullptr; entry = entry->next) {
      if (std::string(entry->str) == text) return entry->refCount;
    }
  }
  return 0;
}

std::string ListText(const QmsNode* first) {
  std::string text;
  for (const QmsNode* node = first; node != nullptr; node = node->next) {
    if (!text.empty()) text += ' ';
    text += node->name;
    if (node->firstChild != nullptr) text += " (" + ListText(node->firstChild) + ")";
  }
  return text;
}

namespace {

struct Wanted {
  std::string module;
  std::vector<std::string>* messages;
};

uint32_t Collect(const char* modName, const char*, const char* message, void* userData) {
  const auto* wanted = static_cast<const Wanted*>(userData);
  if (wanted->module == modName) wanted->messages->push_back(message);
  return 0;
}

}  // namespace

std::vector<std::string> Messages(QmCtx* ctx, const char* moduleName) {
  std::vector<std::string> messages;
  Wanted wanted = {moduleName, &messages};
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx, Collect, &wanted));
  return messages;
}

}  // namespace module_builder
