// SPDX-License-Identifier: BSD-3-Clause
// The trees as JSON within a page that draws them. What ends a script element is escaped,
// so no text of a model becomes markup.
#include "client/tree_html.h"

#include <qmodel/agent.h>
#include <qmodel/inspect.h>

#include "client/html_page.h"
#include "client/json.h"
#include "client/memory_watch.h"
#include "client/node_facts.h"

namespace {

std::string Quoted(const std::string& text) {
  std::string json;
  for (const char c : JsonText(text)) {
    if (c == '<') {
      json += "\\u003c";
    } else {
      json += c;
    }
  }
  return json;
}

std::string FactsAsJson(const std::vector<Fact>& facts) {
  std::string json;
  for (const Fact& fact : facts) {
    json += json.empty() ? "[" : ",[";
    json += std::to_string(fact.level) + "," + Quoted(fact.label) + "," + Quoted(fact.text) + "]";
  }
  return "[" + json + "]";
}

std::string FirstText(const std::vector<Fact>& facts, const char* label) {
  for (const Fact& fact : facts) {
    if (fact.label == label) return fact.text;
  }
  return {};
}

// What a row of the tree shows; details are facts.
struct Row {
  std::string kind;
  std::string name;
  std::string marks;
  std::string access;
  std::string path;
  bool off = false;
  std::vector<Fact> facts;
};

// All of the node but its children, with the opening of their array.
std::string RowAsJson(const Row& row) {
  return "{\"kind\":" + Quoted(row.kind) + ",\"name\":" + Quoted(row.name) +
         ",\"marks\":" + Quoted(row.marks) + ",\"type\":" + Quoted(FirstText(row.facts, "type")) +
         ",\"access\":" + Quoted(row.access) + ",\"path\":" + Quoted(row.path) +
         ",\"off\":" + (row.off ? "true" : "false") + ",\"facts\":" + FactsAsJson(row.facts) +
         ",\"children\":[";
}

std::string MarksOf(const QmsNode* node, const std::vector<Fact>& facts) {
  const bool needed = QM_NODE_IsMandatory(node) != 0 || QM_NODE_IsKey(node) != 0;
  switch (QM_NODE_GetNodeType(node)) {
    case QMS_NODE_LEAF:
    case QMS_NODE_CHOICE:
    case QMS_NODE_ANYDATA:
    case QMS_NODE_ANYXML:
      return needed ? "" : "?";
    case QMS_NODE_LEAF_LIST:
      return "*";
    case QMS_NODE_LIST:
      return "* [" + FirstText(facts, "keys") + "]";
    case QMS_NODE_CONTAINER:
      return QM_NODE_IsPresenceContainer(node) != 0 ? "!" : "";
    default:
      return "";
  }
}

Row RowOf(QmCtx* ctx, QmsNode* node) {
  Row row;
  const char* kind = QM_AGENT_GetKindName(QM_NODE_GetNodeType(node));
  const char* name = QM_NODE_GetNodeName(node);
  row.kind = kind == nullptr ? "node" : kind;
  row.name = name == nullptr ? "" : name;
  row.facts = FactsOf(ctx, node);
  row.marks = MarksOf(node, row.facts);
  const std::string config = FirstText(row.facts, "config");
  if (!config.empty()) row.access = config == "true" ? "rw" : "ro";
  row.path = PathOf(node);
  row.off = QM_NODE_IsEnabled(node) == 0;
  return row;
}

// A level of the model is a level of calls; the depth of models is bounded where they are
// read.
void AddNode(QmCtx* ctx, QmsNode* node, std::string* json) {
  if (!json->ends_with('[')) *json += ",\n";
  *json += RowAsJson(RowOf(ctx, node));
  QmsNode* child = QM_NODE_GetNextChild(node, nullptr);
  for (; child != nullptr; child = QM_NODE_GetNextChild(node, child)) AddNode(ctx, child, json);
  *json += "]}";
}

struct Adding {
  QmCtx* ctx;
  std::string* json;
};

uint32_t AddAugment(QmsNode* augment, uint32_t /*travType*/, void* arg) {
  const auto* adding = static_cast<Adding*>(arg);
  AddNode(adding->ctx, augment, adding->json);
  return 0;
}

void AddModule(QmCtx* ctx, QmsModule* module, std::string* json) {
  Row row;
  row.kind = "module";
  row.name = QM_MOD_GetModuleName(module);
  const auto add = [&](const char* label, const char* text) {
    if (text != nullptr && *text != '\0') row.facts.push_back({0, label, text});
  };
  add("revision", QM_MOD_GetRevision(module));
  add("namespace", QM_MOD_GetModuleNs(module));
  add("prefix", QM_MOD_GetModulePrefix(module));
  add("organization", QM_MOD_GetOrganization(module));
  add("description", QM_MOD_GetDescription(module));
  if (!json->ends_with('[')) *json += ",\n";
  *json += RowAsJson(row);
  QmsNode* node = QM_MOD_GetNextTopNode(module, nullptr);
  for (; node != nullptr; node = QM_MOD_GetNextTopNode(module, node)) AddNode(ctx, node, json);
  Adding adding{ctx, json};
  static_cast<void>(QM_MOD_IterScanAugmentNode(module, kGuarded<AddAugment>, &adding));
  *json += "]}";
}

}  // namespace

std::string HtmlPage(QmCtx* ctx, const std::vector<QmsModule*>& modules) {
  std::string json = "[";
  for (QmsModule* module : modules) AddModule(ctx, module, &json);
  return kPageHead + json + "]" + kPageTail;
}
