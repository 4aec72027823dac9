// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <vector>

#include "schema/records.h"
#include "tests/support/yin.h"

// Modules that act on each other, and texts that show how they hang together.
namespace coupling {

// A context that loads from a folder of its own. Every module has its name as
// prefix and "urn:<name>" as namespace. After each load and unload, and at the
// end, the links of all trees are checked with CheckLinks().
class World {
 public:
  explicit World(uint32_t loadFlags = 0);
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  QmCtx* ctx() const { return ctx_.Get(); }

  // Writes <name>.yin with this body.
  void Put(const std::string& name, const std::string& body) const;
  void PutFile(const std::string& file, const std::string& name, const std::string& body) const;
  void Remove(const std::string& file) const;

  uint32_t Load(const std::string& name) const;
  uint32_t LoadText(const std::string& name, const std::string& body) const;
  uint32_t Unload(const std::string& name) const;
  // Puts and loads; the load must succeed.
  QmsModule* Add(const std::string& name, const std::string& body) const;

  QmsModule* Module(const std::string& name) const;  // NULL when not loaded
  bool IsLoaded(const std::string& name) const { return Module(name) != nullptr; }

  // Tree(), Augments() and Deviations() of the module with this name.
  std::string Tree(const std::string& name) const;
  std::string Augments(const std::string& name) const;
  std::string Deviations(const std::string& name) const;
  // The relations to the target with this name, in list order: "augment:A deviation:D".
  std::string Relations(const std::string& target) const;
  std::vector<std::string> Errors() const { return ctx_.Errors(); }

 private:
  yin::Folder folder_;
  yin::Context ctx_;
};

// "import" statements for modules whose prefix is their name.
std::string Imports(const std::vector<std::string>& names);
std::string Augment(const std::string& target, const std::string& body);
std::string Deviation(const std::string& target, const std::string& deviates);
std::string Deviate(const std::string& kind, const std::string& body = "");
std::string NotSupported();
std::string Container(const std::string& name, const std::string& body = "");
using yin_text::Leaf;

// The top-level nodes with their subtrees: "x{l y:A{z:B}} r", the module's name
// behind a node whose module is not its parent's.
std::string Tree(const QmsModule* module);
std::string Subtree(const QmsNode* node);

// The augments in order: "/T:x pending{y}" or "/T:x coupled{y}", joined by "; ".
std::string Augments(const QmsModule* module);

// The deviations in order: "/T:x applied" or "/T:x pending", joined by "; ".
std::string Deviations(const QmsModule* module);

// Checks that every tree of the context is properly linked, that every node
// belongs to a registered module, and that every coupled augment marks a run of
// its own nodes in one child list.
void CheckLinks(QmCtx* ctx);

}  // namespace coupling
