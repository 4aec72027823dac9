// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>

#include <qmodel/qmodel.h>

#include "context/records.h"
#include "schema/records.h"

// Hand-built schema trees, and texts that show what a walk or a tree is like.
namespace schema_tree {

// A context with modules that are built by hand; deletes all of them at its end.
class Schema {
 public:
  explicit Schema(uint32_t loadFlags = 0);
  ~Schema();
  Schema(const Schema&) = delete;
  Schema& operator=(const Schema&) = delete;

  QmCtx* ctx() const { return ctx_; }
  QmDict* dict() const;

  // Registers an empty module with its name as prefix and "urn:NAME" as namespace.
  QmsModule* Module(const char* name) const;
  // Loads a module from YIN text; NULL when that fails.
  QmsModule* Load(const char* name, const std::string& yin) const;

 private:
  QmCtx* ctx_;
};

// A node of `module` that is linked nowhere.
QmsNode* Loose(QmsModule* module, uint32_t kind, const char* name);
// The same as last node of its top-level list.
QmsNode* Top(QmsModule* module, uint32_t kind, const char* name);
// The same as last child of `parent`, of the parent's module or of `module`.
QmsNode* Child(QmsNode* parent, uint32_t kind, const char* name, QmsModule* module = nullptr);

// A leaf or leaf-list with a built-in type; also the type of an existing one.
QmsNode* LeafOf(QmsNode* parent, const char* name, uint32_t baseType);
void SetType(QmsNode* leaf, uint32_t baseType);
// Gives the leaf a type that names a typedef, or a leafref with this path.
void SetDerivedType(QmsNode* leaf, const char* moduleName, const char* typedefName);
void SetLeafref(QmsNode* leaf, const char* path);

// Adds a typedef to a module; its type is the built-in one.
QmsTypedef* Typedef(QmsModule* module, const char* name, uint32_t baseType);
// Makes the type of a typedef name another typedef.
void DeriveTypedef(QmsModule* module, const char* name, const char* fromModule, const char* from);

// Moves the children of `augment` to the end of `target` and marks it coupled.
void Couple(QmsNode* augment, QmsNode* target);

// "name:travType" of each step of a walk, with blanks between.
std::string Walk(QmsNode* root);
// The names of the children in order, with blanks between.
std::string Children(QmsNode* node);

}  // namespace schema_tree
