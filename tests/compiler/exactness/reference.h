// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <random>
#include <string>

#include "compiler/conditions/data_schema.h"

// What conditions mean by RFC 7950, section 6.4.1, evaluated by libxml2, and messages to
// evaluate them on.
namespace exactness {

// A module "m" with the prefix "m" and the namespace "urn:m", in YIN, and its schema.
class Model {
 public:
  explicit Model(const std::string& body);
  ~Model();
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  const std::string& Yin() const { return yin_; }
  compiler::DataSchema* Schema() const { return &schema_; }
  compiler::DataModule* Module() const { return schema_.FindModule("m"); }
  compiler::DataNode* Top(const std::string& name) const;
  // The node at "r/input/a"; the first name is that of a top-level node.
  compiler::DataNode* Node(const std::string& path) const;
  const xmlNode* Root() const;
  bool IsIdentityref(const std::string& leaf) const;

 private:
  std::string yin_;
  xmlDoc* doc_;
  mutable compiler::DataSchema schema_;
};

// A message of the operation or notification `top` that the schema allows: optional nodes,
// entries of lists and values are drawn. Conditions are not looked at.
std::string DrawMessage(const Model& model, compiler::DataNode* top, std::mt19937* random);

// The condition's answer with the first element called `context` as context node: 1 or 0,
// -1 when libxml2 does not take the expression. Containers without presence and defaults
// are put into the tree first.
int Answer(const Model& model, const std::string& message, const std::string& context,
           const std::string& condition);

}  // namespace exactness
