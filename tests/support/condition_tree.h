// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>
#include <string>

#include "schema/records.h"

// A data tree over two small modules, bound to them, for conditions to look at.
namespace condition_tree {

class Tree {
 public:
  // Loads the modules and binds the elements of `xml`, whose root is "top" of the
  // module "c" in the namespace "urn:c". "dd:" may stand for the module "d".
  explicit Tree(const std::string& children, const std::string& prologue = "");
  ~Tree();
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  // The status of the condition with the element at `path` ("" is top, else
  // names separated by "/") as context node and the document as root.
  uint32_t Eval(const std::string& path, const std::string& condition);
  uint32_t Eval(const std::string& condition) { return Eval("", condition); }

  xmlNode* Element(const std::string& path);
  xmlNode* Document();
  QmCtx* Context() { return ctx_; }

 private:
  QmCtx* ctx_;
  xmlDoc* doc_;
};

}  // namespace condition_tree
