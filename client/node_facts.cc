// SPDX-License-Identifier: BSD-3-Clause
// Facts of a node in the order in which a person asks: where it is from, what may stand in
// it, when it may stand there, and what is said about it.
#include "client/node_facts.h"

#include <qmodel/agent.h>
#include <qmodel/inspect.h>

#include "client/memory_watch.h"
#include "client/shown_text.h"

namespace {

using Facts = std::vector<Fact>;

void Add(void* facts, const char* label, const std::string& text, unsigned level = 0) {
  static_cast<Facts*>(facts)->push_back({level, label, ShowControls(text)});
}

bool IsData(uint32_t kind) {
  switch (kind) {
    case QMS_NODE_CONTAINER:
    case QMS_NODE_LEAF:
    case QMS_NODE_LEAF_LIST:
    case QMS_NODE_LIST:
    case QMS_NODE_CHOICE:
    case QMS_NODE_ANYDATA:
    case QMS_NODE_ANYXML:
      return true;
    default:
      return false;
  }
}

void AddStatus(QmsNode* node, Facts* facts) {
  const uint32_t status = QM_NODE_GetStatus(node);
  if (status == QM_STATUS_DEPRECATED) Add(facts, "status", "deprecated");
  if (status == QM_STATUS_OBSOLETE) Add(facts, "status", "obsolete");
}

bool IsInOperation(const QmsNode* node) {
  for (; node != nullptr; node = QM_NODE_GetParentNode(node)) {
    const uint32_t kind = QM_NODE_GetNodeType(node);
    if (kind == QMS_NODE_RPC || kind == QMS_NODE_ACTION || kind == QMS_NODE_NOTIFICATION)
      return true;
  }
  return false;
}

void AddMarks(QmsNode* node, Facts* facts) {
  const uint32_t kind = QM_NODE_GetNodeType(node);
  if (IsData(kind) && !IsInOperation(node)) {
    Add(facts, "config", QM_NODE_IsRwConfig(node) != 0 ? "true" : "false");
  }
  if (QM_NODE_IsMandatory(node) != 0) Add(facts, "mandatory", "true");
  if (QM_NODE_IsPresenceContainer(node) != 0) Add(facts, "presence", "has a meaning of its own");
  if (QM_NODE_IsKey(node) != 0) Add(facts, "key", "of its list");
  const bool ordered = kind == QMS_NODE_LIST || kind == QMS_NODE_LEAF_LIST;
  if (ordered && QM_NODE_IsOrderedByNode(node) != 0) Add(facts, "ordered-by", "user");
  if (QM_NODE_IsNacmDefaultDenyAll(node) != 0) Add(facts, "access", "denied by default");
  if (QM_NODE_IsNacmDefaultDenyWrite(node) != 0) Add(facts, "access", "writing denied by default");
}

uint32_t AddKey(QmsNode* key, uint32_t /*travType*/, void* keys) {
  auto* text = static_cast<std::string*>(keys);
  if (!text->empty()) *text += " ";
  *text += QM_NODE_GetNodeName(key);
  return 0;
}

void AddKeys(QmsNode* node, Facts* facts) {
  std::string keys;
  if (QM_NODE_GetNodeType(node) != QMS_NODE_LIST) return;
  static_cast<void>(QM_NODE_ScanKey(node, kGuarded<AddKey>, &keys));
  if (!keys.empty()) Add(facts, "keys", keys);
}

uint32_t AddDefault(const char* value, void* facts) {
  Add(facts, "default", value);
  return 0;
}

uint32_t AddMust(const char* condition, const char* message, const char* appTag, void* facts) {
  Add(facts, "must", condition);
  if (message != nullptr) Add(facts, "error-message", message, 1);
  if (appTag != nullptr) Add(facts, "error-app-tag", appTag, 1);
  return 0;
}

uint32_t AddIfFeature(const char* module, const char* feature, uint32_t enabled, void* facts) {
  Add(facts, "if-feature",
      std::string(module) + ":" + feature + (enabled != 0 ? " (on)" : " (off)"));
  return 0;
}

void AddConditions(QmsNode* node, Facts* facts) {
  const char* when = QM_NODE_GetWhenCond(node);
  if (when != nullptr) Add(facts, "when", when);
  static_cast<void>(QM_NODE_ScanMust(node, kGuarded<AddMust>, facts));
  static_cast<void>(QM_NODE_ScanIfFeature(node, kGuarded<AddIfFeature>, facts));
  if (QM_NODE_IsEnabled(node) == 0) Add(facts, "enabled", "no: a feature is off");
}

struct Extensions {
  Facts* facts;
  unsigned level;
};

// Instances stand in each other as deep as the model was read, which has a bound.
uint32_t AddExtension(QmsExtInst* inst, const char* module, const char* name, const char* argument,
                      void* arg) {
  auto* extensions = static_cast<Extensions*>(arg);
  std::string text = std::string(module) + ":" + name;
  if (argument != nullptr) text += std::string(" ") + argument;
  Add(extensions->facts, "extension", text, extensions->level);
  Extensions inner{extensions->facts, extensions->level + 1};
  return QM_EXT_ScanAllChildExtInsts(inst, kGuarded<AddExtension>, &inner);
}

}  // namespace

std::vector<Fact> FactsOf(QmCtx* ctx, QmsNode* node) {
  Facts facts;
  const char* module = QM_MOD_GetModuleName(QM_NODE_GetModule(node));
  Add(&facts, "module", module == nullptr ? "" : module);
  AddStatus(node, &facts);
  AddMarks(node, &facts);
  AddKeys(node, &facts);
  AddTypeFacts(ctx, node, &facts);
  const char* units = QM_NODE_GetUnitsValueStr(node);
  if (units != nullptr) Add(&facts, "units", units);
  static_cast<void>(QM_NODE_ScanDefault(node, kGuarded<AddDefault>, &facts));
  AddConditions(node, &facts);
  Extensions extensions{&facts, 0};
  static_cast<void>(QM_NODE_ScanAllExtInsts(node, kGuarded<AddExtension>, &extensions));
  const char* description = QM_NODE_GetDescription(node);
  // Its lines are kept, so it is made fit to be shown where it is shown.
  if (description != nullptr) facts.push_back({0, "description", description});
  return facts;
}

std::string PathOf(const QmsNode* node) {
  char path[8192];
  return QM_NODE_GetPath(node, path, sizeof(path)) == 0 ? ShowControls(path) : std::string();
}
