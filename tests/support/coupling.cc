// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/coupling.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstdio>
#include <map>
#include <set>

#include "context/list.h"
#include "context/relation.h"
#include "schema/module_registry.h"
#include "tests/support/yin_text.h"

namespace coupling {
namespace {

void AppendWord(std::string* text, const std::string& word, const char* between = " ") {
  if (!text->empty()) *text += between;
  *text += word;
}

std::vector<QmsModule*> ModulesOf(QmCtx* ctx) {
  std::vector<QmsModule*> modules;
  for (void* record = RTK_AVL3_First(&ctx->modByName); record != nullptr;
       record = RTK_AVL3_Next(&ctx->modByName, record))
    modules.push_back(static_cast<QmsModule*>(record));
  return modules;
}

class LinkCheck {
 public:
  explicit LinkCheck(QmCtx* ctx) : modules_(ModulesOf(ctx)) {}

  void Run() {
    for (const QmsModule* module : modules_) {
      Chain(nullptr, module->dataNodes, nullptr);
      Chain(nullptr, module->rpcNodes, nullptr);
      Chain(nullptr, module->notifNodes, nullptr);
      Chain(nullptr, module->augmentNodes, nullptr);
    }
    // Only now are all nodes known that a run may lead to.
    for (const QmsModule* module : modules_)
      for (const QmsNode* augment = module->augmentNodes; augment != nullptr;
           augment = augment->next)
        if ((augment->flags & QMS_NODE_COUPLED) != 0) Run(augment);
    for (const QmsModule* module : modules_)
      EXPECT_EQ(runsUnder_[module], module->runCount) << "runs under nodes of " << module->name;
  }

 private:
  void Chain(const QmsNode* parent, const QmsNode* first, const QmsNode* last) {
    const QmsNode* previous = nullptr;
    for (const QmsNode* node = first; node != nullptr; node = node->next) {
      EXPECT_TRUE(seen_.insert(node).second) << "a node hangs in two places";
      if (::testing::Test::HasFailure()) return;
      Node(parent, previous, node);
      previous = node;
    }
    if (parent == nullptr) return;
    EXPECT_EQ(last, previous) << "lastChild of " << parent->name;
  }

  void Node(const QmsNode* parent, const QmsNode* previous, const QmsNode* node) {
    EXPECT_EQ(parent, node->parent) << node->name;
    EXPECT_EQ(previous, node->prev) << node->name;
    bool registered = false;
    for (const QmsModule* module : modules_) registered = registered || module == node->module;
    EXPECT_TRUE(registered) << "a node outlived its module";
    EXPECT_EQ(0u, node->flags & 0xFFFFC000u) << node->name << " keeps a private mark";
    // The children of a coupled augment hang in its target.
    const bool coupled = node->kind == QMS_NODE_AUGMENT && (node->flags & QMS_NODE_COUPLED) != 0;
    if (!coupled) Chain(node, node->firstChild, node->lastChild);
  }

  void Run(const QmsNode* augment) {
    EXPECT_EQ(augment->firstChild == nullptr, augment->lastChild == nullptr) << augment->name;
    const QmsNode* node = augment->firstChild;
    const QmsNode* target = nullptr;
    if (node != nullptr && node->parent != nullptr) ++runsUnder_[node->parent->module];
    for (; node != nullptr; node = node->next) {
      if (seen_.count(node) == 0) {
        ADD_FAILURE() << "the run of " << augment->name << " leads to a node in no tree";
        return;
      }
      if (target == nullptr) target = node->parent;
      EXPECT_NE(nullptr, target) << augment->name;
      EXPECT_EQ(target, node->parent) << augment->name;
      EXPECT_EQ(augment->module, node->module) << augment->name;
      EXPECT_TRUE(inRun_.insert(node).second) << "two runs share a node";
      if (node == augment->lastChild) return;
    }
    if (augment->firstChild != nullptr) ADD_FAILURE() << augment->name << " has no end of its run";
  }

  std::vector<QmsModule*> modules_;
  std::set<const QmsNode*> seen_;
  std::set<const QmsNode*> inRun_;
  std::map<const QmsModule*, uint32_t> runsUnder_;
};

std::string SubtreeUnder(const QmsModule* parentModule, const QmsNode* node) {
  std::string text = node->name;
  if (node->module != parentModule) text += std::string(":") + node->module->name;
  if (node->firstChild == nullptr) return text;
  std::string children;
  for (const QmsNode* child = node->firstChild; child != nullptr; child = child->next)
    AppendWord(&children, SubtreeUnder(node->module, child));
  return text + "{" + children + "}";
}

}  // namespace

World::World(uint32_t loadFlags) : ctx_(loadFlags) {
  EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder_.Dir()));
}

World::~World() {
  CheckLinks(ctx_);
}

void World::Put(const std::string& name, const std::string& body) const {
  PutFile(name + ".yin", name, body);
}

void World::PutFile(const std::string& file, const std::string& name,
                    const std::string& body) const {
  folder_.Write(file, yin::Module(name, body));
}

void World::Remove(const std::string& file) const {
  EXPECT_EQ(0, std::remove(folder_.Path(file).c_str()));
}

uint32_t World::Load(const std::string& name) const {
  const uint32_t ret = QM_CTX_LoadModule(ctx_, name.c_str());
  CheckLinks(ctx_);
  return ret;
}

uint32_t World::LoadText(const std::string& name, const std::string& body) const {
  const uint32_t ret = QM_CTX_LoadMemory(ctx_, yin::Module(name, body).c_str());
  CheckLinks(ctx_);
  return ret;
}

uint32_t World::Unload(const std::string& name) const {
  const uint32_t ret = QM_CTX_UnloadModule(ctx_, name.c_str());
  CheckLinks(ctx_);
  return ret;
}

QmsModule* World::Add(const std::string& name, const std::string& body) const {
  Put(name, body);
  EXPECT_EQ(QM_OK, Load(name)) << name;
  EXPECT_TRUE(IsLoaded(name)) << name;
  return Module(name);
}

QmsModule* World::Module(const std::string& name) const {
  return QM_CTX_GetModuleByModName(ctx_, name.c_str());
}

std::string World::Tree(const std::string& name) const {
  return IsLoaded(name) ? coupling::Tree(Module(name)) : "(not loaded)";
}

std::string World::Augments(const std::string& name) const {
  return IsLoaded(name) ? coupling::Augments(Module(name)) : "(not loaded)";
}

std::string World::Deviations(const std::string& name) const {
  return IsLoaded(name) ? coupling::Deviations(Module(name)) : "(not loaded)";
}

std::string World::Relations(const std::string& target) const {
  std::string text;
  QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx_, target.c_str());
  if (tbl == nullptr) return text;
  for (QmListLink* link = tbl->items.next; link != &tbl->items; link = link->next) {
    const auto* item = RecordOf<QmCtxModRelItem>(link);
    AppendWord(&text,
               std::string(item->relType == QM_RELATION_AUGMENT ? "augment:" : "deviation:") +
                   item->srcModName);
  }
  return text;
}

std::string Imports(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names)
    text += "<import module=\"" + name + "\"><prefix value=\"" + name + "\"/></import>";
  return text;
}

std::string Augment(const std::string& target, const std::string& body) {
  return "<augment target-node=\"" + target + "\">" + body + "</augment>";
}

std::string Deviation(const std::string& target, const std::string& deviates) {
  return "<deviation target-node=\"" + target + "\">" + deviates + "</deviation>";
}

std::string Deviate(const std::string& kind, const std::string& body) {
  return "<deviate value=\"" + kind + "\">" + body + "</deviate>";
}

std::string NotSupported() {
  return Deviate("not-supported");
}

std::string Container(const std::string& name, const std::string& body) {
  return "<container name=\"" + name + "\">" + body + "</container>";
}

std::string Subtree(const QmsNode* node) {
  return SubtreeUnder(node->module, node);
}

std::string Tree(const QmsModule* module) {
  std::string text;
  for (const QmsNode* first : {module->dataNodes, module->rpcNodes, module->notifNodes})
    for (const QmsNode* node = first; node != nullptr; node = node->next)
      AppendWord(&text, SubtreeUnder(module, node));
  return text;
}

std::string Augments(const QmsModule* module) {
  std::string text;
  for (const QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    std::string names;
    for (const QmsNode* node = augment->firstChild; node != nullptr; node = node->next) {
      AppendWord(&names, node->name);
      if (node == augment->lastChild) break;
    }
    const bool coupled = (augment->flags & QMS_NODE_COUPLED) != 0;
    AppendWord(&text,
               augment->name + std::string(coupled ? " coupled{" : " pending{") + names + "}",
               "; ");
  }
  return text;
}

std::string Deviations(const QmsModule* module) {
  std::string text;
  for (uint32_t i = 0; i < module->deviationCount; ++i) {
    const QmsDeviation& deviation = module->deviations[i];
    const bool applied = (deviation.flags & QMS_DEVIATION_APPLIED) != 0;
    AppendWord(&text, deviation.targetPath + std::string(applied ? " applied" : " pending"), "; ");
  }
  return text;
}

void CheckLinks(QmCtx* ctx) {
  LinkCheck(ctx).Run();
}

}  // namespace coupling
