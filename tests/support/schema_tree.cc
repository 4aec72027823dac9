// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/schema_tree.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/memory.h"
#include "schema/module.h"
#include "schema/module_nodes.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "schema/node_value.h"
#include "schema/typedef.h"
#include "types/type.h"

namespace schema_tree {
namespace {

QmtConstraint* OnlyConstraint(QmtType* type, uint32_t kind, void* body) {
  EXPECT_EQ(QM_OK, QMT_TYPE_ExpandConstraintArray(type, 1));
  type->consCount = 1;
  type->cons[0].kind = kind;
  type->cons[0].body = body;
  return type->cons;
}

void MakeDerived(QmDict* dict, QmtType* type, const char* moduleName, const char* typedefName) {
  QMT_TYPE_DestroyQmtRealTypeInner(dict, type);
  QmtConsDerived* derived = NewRecord<QmtConsDerived>();
  derived->moduleName = QM_DICT_Insert(dict, moduleName);
  derived->typedefName = QM_DICT_Insert(dict, typedefName);
  type->baseType = QMT_BASE_TYPEDEF;
  OnlyConstraint(type, QMT_CONS_DERIVED, derived);
}

uint32_t NoteStepCb(QmsNode* node, uint32_t travType, void* arg) {
  std::string* text = static_cast<std::string*>(arg);
  if (!text->empty()) *text += ' ';
  *text += std::string(node->name) + ":" + std::to_string(travType);
  return 0;
}

uint32_t NoteNameCb(QmsNode* node, uint32_t travType, void* arg) {
  EXPECT_EQ(static_cast<uint32_t>(QMS_TRAV_CHILD), travType);
  std::string* text = static_cast<std::string*>(arg);
  if (!text->empty()) *text += ' ';
  *text += node->name;
  return 0;
}

}  // namespace

Schema::Schema(uint32_t loadFlags) : ctx_(QM_CTX_Create(loadFlags)) {
  EXPECT_NE(nullptr, ctx_);
}

Schema::~Schema() {
  QM_CTX_Delete(ctx_);
}

QmDict* Schema::dict() const {
  return &ctx_->dict;
}

QmsModule* Schema::Module(const char* name) const {
  QmsModule* module = NewRecord<QmsModule>();
  module->ctx = ctx_;
  EXPECT_TRUE(InternText(dict(), &module->name, name));
  EXPECT_TRUE(InternText(dict(), &module->prefix, name));
  EXPECT_TRUE(InternText(dict(), &module->ns, (std::string("urn:") + name).c_str()));
  RTK_AVL3_InitLink(&module->nameLink);
  RTK_AVL3_InitLink(&module->nsLink);
  EXPECT_EQ(QM_OK, QM_CTX_AddModuleNode(ctx_, module));
  return module;
}

QmsModule* Schema::Load(const char* name, const std::string& yin) const {
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, yin.c_str())) << "module " << name;
  return QM_CTX_GetModuleByModName(ctx_, name);
}

QmsNode* Loose(QmsModule* module, uint32_t kind, const char* name) {
  QmsNode* node = QMS_NODE_New(kind);
  node->module = module;
  EXPECT_TRUE(InternText(ModuleDict(module), &node->name, name));
  return node;
}

QmsNode* Top(QmsModule* module, uint32_t kind, const char* name) {
  QmsNode* node = Loose(module, kind, name);
  EXPECT_EQ(QM_OK, QMS_MOD_AddTopNodeToSchemaTree(module, node));
  return node;
}

QmsNode* Child(QmsNode* parent, uint32_t kind, const char* name, QmsModule* module) {
  QmsNode* node = Loose(module != nullptr ? module : parent->module, kind, name);
  EXPECT_EQ(QM_OK, QMS_NODE_AddChild(parent, node));
  return node;
}

QmsNode* LeafOf(QmsNode* parent, const char* name, uint32_t baseType) {
  QmsNode* leaf = Child(parent, QMS_NODE_LEAF, name);
  SetType(leaf, baseType);
  return leaf;
}

void SetType(QmsNode* leaf, uint32_t baseType) {
  QMS_NODE_GetLeafSchemaRealType(leaf)->baseType = baseType;
}

void SetDerivedType(QmsNode* leaf, const char* moduleName, const char* typedefName) {
  MakeDerived(ModuleDict(leaf->module), QMS_NODE_GetLeafSchemaRealType(leaf), moduleName,
              typedefName);
}

void SetLeafref(QmsNode* leaf, const char* path) {
  QmtType* type = QMS_NODE_GetLeafSchemaRealType(leaf);
  QmtConsPath* body = NewRecord<QmtConsPath>();
  body->path = QM_DICT_Insert(ModuleDict(leaf->module), path);
  body->requireInstance = 1;
  type->baseType = QMT_BASE_LEAFREF;
  OnlyConstraint(type, QMT_CONS_PATH, body);
}

QmsTypedef* Typedef(QmsModule* module, const char* name, uint32_t baseType) {
  QmtType type{};
  type.baseType = baseType;
  EXPECT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module, name, &type, nullptr));
  return QMS_MOD_FindQmsTypDefByName(module, name);
}

void DeriveTypedef(QmsModule* module, const char* name, const char* fromModule, const char* from) {
  MakeDerived(ModuleDict(module), &QMS_MOD_FindQmsTypDefByName(module, name)->type, fromModule,
              from);
}

void Couple(QmsNode* augment, QmsNode* target) {
  QmsNode* first = augment->firstChild;
  QmsNode* last = augment->lastChild;
  while (augment->firstChild != nullptr) {
    QmsNode* child = augment->firstChild;
    EXPECT_EQ(QM_OK, QMS_NODE_Unlink(child));
    EXPECT_EQ(QM_OK, QMS_NODE_AddChild(target, child));
  }
  augment->firstChild = first;
  augment->lastChild = last;
  augment->flags |= QMS_NODE_COUPLED;
}

std::string Walk(QmsNode* root) {
  std::string text;
  EXPECT_EQ(QM_OK, QM_NODE_TreeScanAllNode(root, NoteStepCb, &text));
  return text;
}

std::string Children(QmsNode* node) {
  std::string text;
  EXPECT_EQ(QM_OK, QM_NODE_IterScanChildrenNode(node, NoteNameCb, &text));
  return text;
}

}  // namespace schema_tree
