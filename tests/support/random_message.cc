// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/random_message.h"

#include <algorithm>
#include <utility>

#include "tests/support/yin_text.h"

namespace random_message {

uint32_t Source::Below(uint32_t count) {
  state_ += 0x9e3779b97f4a7c15u;
  uint64_t mixed = state_;
  mixed = (mixed ^ mixed >> 30) * 0xbf58476d1ce4e5b9u;
  mixed = (mixed ^ mixed >> 27) * 0x94d049bb133111ebu;
  return static_cast<uint32_t>((mixed ^ mixed >> 31) % count);
}

namespace {

// Few names, so that siblings of two modules and nodes of two levels share them.
const char* const kNames[] = {"a", "b", "c", "e", "f", "g", "h", "i", "k", "l"};
constexpr uint32_t kNameCount = 10;

struct Type {
  const char* yin;
  const char* values[3];  // good ones
};
const Type kTypes[] = {
    {"<type name='string'/>", {"v", "w", ""}},
    {"<type name='string'><length value='1..4'/></type>", {"v", "abc", "abcd"}},
    {"<type name='uint8'/>", {"1", "7", "255"}},
    {"<type name='boolean'/>", {"true", "false", "true"}},
    {"<type name='enumeration'><enum name='v'/><enum name='w'/></type>", {"v", "w", "v"}},
    {"<type name='m:small'/>", {"1", "2", "9"}},
    {"<type name='identityref'><base name='m:shape'/></type>", {"m:round", "m:square", "m:round"}},
    {"<type name='leafref'><path value='../a'/></type>", {"v", "1", "true"}},
};
constexpr uint32_t kTypeCount = 8;

const char* const kConditions[] = {"../a",
                                   "../b",
                                   "../a = 'v'",
                                   "../b != 'w'",
                                   "not(../c)",
                                   "../../a",
                                   "../e = '1'",
                                   "count(../f) = 1",
                                   ". = 'v'",
                                   "../h or ../g",
                                   "/m:op/m:a",
                                   "../k and ../a",
                                   "../../b = ../a",
                                   "string(../a)",
                                   "../l = 7",
                                   "current()/a",
                                   "a",
                                   "/m:op/m:b = 'v'",
                                   "bad-function()",
                                   "../a ="};
constexpr uint32_t kGoodConditions = 18;
constexpr uint32_t kConditionCount = 20;

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// What is written while one model is drawn.
class ModelDraw {
 public:
  explicit ModelDraw(Source* source) : source_(*source) {}

  // The children of one schema node; names are drawn once each.
  std::string Children(const std::string& module, uint32_t depth, uint32_t count,
                       std::vector<Node>* out) {
    std::vector<std::string> names;
    std::string text;
    for (uint32_t i = 0; i < count; ++i) {
      const std::string name = kNames[source_.Below(kNameCount)];
      if (std::find(names.begin(), names.end(), name) != names.end()) continue;
      names.push_back(name);
      text += OneChild(module, depth, name, &names, out);
    }
    return text;
  }

 private:
  std::string OneChild(const std::string& module, uint32_t depth, const std::string& name,
                       std::vector<std::string>* names, std::vector<Node>* out) {
    const uint32_t kind = source_.Below(depth > 2 ? 6 : 12);
    out->push_back({"leaf", name, module, {}, 0});
    if (kind < 5) return Leaf(&out->back());
    if (kind == 5) return LeafList(&out->back());
    if (kind < 8) return Container(module, depth, &out->back());
    if (kind < 10) return List(module, depth, &out->back());
    if (kind == 10 && source_.OneIn(3)) return Any(&out->back());
    return Choice(module, depth, names, &out->back());
  }

  std::string IfFeature() {
    return source_.OneIn(9)
               ? std::string("<if-feature name='") + (source_.OneIn(2) ? "m:on" : "m:off") + "'/>"
               : "";
  }

  std::string When() {
    return source_.OneIn(12) ? "<when condition=" + Quoted(Condition()) + "/>" : "";
  }

  std::string Conditions() {
    std::string text = When();
    if (source_.OneIn(14)) text += "<must condition=" + Quoted(Condition()) + "/>";
    return text;
  }

  std::string Condition() {
    return kConditions[source_.Below(source_.OneIn(12) ? kConditionCount : kGoodConditions)];
  }

  std::string Leaf(Node* node) {
    node->type = source_.OneIn(24) ? kTypeCount - 1 : source_.Below(kTypeCount - 1);
    const Type& type = kTypes[node->type];
    std::string text = "<leaf name='" + node->name + "'>" + Conditions() + IfFeature() + type.yin;
    if (source_.OneIn(14)) {
      text += "<mandatory value='true'/>";
    } else if (source_.OneIn(3)) {
      text += std::string("<default value='") + type.values[source_.Below(3)] + "'/>";
    }
    return text + "</leaf>";
  }

  std::string LeafList(Node* node) {
    node->kind = "leaf-list";
    return "<leaf-list name='" + node->name + "'>" + Conditions() + IfFeature() +
           "<type name='string'/></leaf-list>";
  }

  std::string Any(Node* node) {
    node->kind = "anyxml";
    return "<anyxml name='" + node->name + "'>" + Conditions() +
           (source_.OneIn(5) ? "<mandatory value='true'/>" : "") + "</anyxml>";
  }

  std::string Container(const std::string& module, uint32_t depth, Node* node) {
    node->kind = "container";
    std::vector<Node> children;
    std::string text = "<container name='" + node->name + "'>" + Conditions() + IfFeature();
    if (source_.OneIn(4)) text += "<presence value='here'/>";
    text += Children(module, depth + 1, source_.Below(4), &children) + "</container>";
    node->children = std::move(children);
    return text;
  }

  std::string List(const std::string& module, uint32_t depth, Node* node) {
    node->kind = "list";
    std::vector<Node> children;
    std::string text = "<list name='" + node->name + "'>" + Conditions() + IfFeature() +
                       "<key value='id'/><leaf name='id'><type name='uint8'/></leaf>";
    children.push_back({"leaf", "id", module, {}, 0});
    text += Children(module, depth + 1, source_.Below(source_.OneIn(4) ? 14 : 6), &children);
    node->children = std::move(children);
    return text + "</list>";
  }

  // The nodes of all cases are siblings, so their names are drawn from the same ones.
  std::string Choice(const std::string& module, uint32_t depth, std::vector<std::string>* names,
                     Node* node) {
    node->kind = "choice";
    node->name = "ch" + node->name;
    std::vector<Node> cases;
    std::string text;
    const uint32_t count = 1 + source_.Below(3);
    for (uint32_t i = 0; i < count; ++i) {
      Node branch{"case", node->name + "k" + std::to_string(i), module, {}, 0};
      text += "<case name='" + branch.name + "'>" + When() + IfFeature();
      for (uint32_t k = 1 + source_.Below(3); k > 0; --k) {
        const std::string name = kNames[source_.Below(kNameCount)];
        if (std::find(names->begin(), names->end(), name) != names->end()) continue;
        names->push_back(name);
        text += OneChild(module, depth + 1, name, names, &branch.children);
      }
      text += "</case>";
      cases.push_back(branch);
    }
    const std::string name = kNames[source_.Below(kNameCount)];
    if (std::find(names->begin(), names->end(), name) == names->end()) {
      names->push_back(name);
      cases.push_back({"leaf", name, module, {}, 0});
      text += Leaf(&cases.back());
    }
    std::string head = "<choice name='" + node->name + "'>" + When() + IfFeature();
    if (source_.OneIn(2)) {
      head += "<default value='" + cases[source_.Below(static_cast<uint32_t>(cases.size()))].name +
              "'/>";
    } else if (source_.OneIn(4)) {
      head += "<mandatory value='true'/>";
    }
    node->children = std::move(cases);
    return head + text + "</choice>";
  }

  Source& source_;
};

std::string Augment(const std::string& target, const std::string& content) {
  return "<augment target-node='" + target + "'>" + content + "</augment>";
}

// A deviation of a node directly below the operation.
std::string Deviation(Source* source, const std::vector<Node>& nodes) {
  if (nodes.empty()) return "";
  const Node& node = nodes[source->Below(static_cast<uint32_t>(nodes.size()))];
  const std::string change = source->OneIn(2)
                                 ? "<deviate value='not-supported'/>"
                                 : "<deviate value='add'><must condition='../a'/></deviate>";
  return "<deviation target-node='/m:op/m:input/m:" + node.name + "'>" + change + "</deviation>";
}

std::string Import() {
  return "<import module='m'><prefix value='m'/></import>";
}

}  // namespace

Model DrawModel(Source* source) {
  ModelDraw draw(source);
  Model model;
  const uint32_t most = source->OneIn(3) ? 16 : 7;
  const std::string rpc = draw.Children("m", 0, 1 + source->Below(most), &model.rpc);
  const std::string event = draw.Children("m", 1, 1 + source->Below(5), &model.event);
  const std::string top = draw.Children("m", 2, source->Below(5), &model.top);
  const std::string act = draw.Children("m", 1, 1 + source->Below(5), &model.act);
  const std::string output = source->OneIn(2) ? "<output>" + rpc + "</output>" : "";
  model.modules.push_back(yin_text::Module(
      "m",
      "<feature name='on'/><feature name='off'/><identity name='shape'/>"
      "<identity name='round'><base name='m:shape'/></identity>"
      "<identity name='square'><base name='m:shape'/></identity>"
      "<typedef name='small'><type name='uint8'><range value='0..9'/></type>" +
          std::string(source->OneIn(2) ? "<default value='3'/>" : "") +
          "</typedef><container name='top'>" + top +
          "<list name='row'><key value='id'/><leaf name='id'><type name='uint8'/></leaf>"
          "<action name='act'><input>" +
          act + "</input></action></list></container><rpc name='op'><input>" + rpc + "</input>" +
          output + "</rpc><notification name='event'>" + event + "</notification>",
      yin_text::kVersion11));
  std::vector<Node> added;
  const std::string augment = draw.Children("a", 1, source->Below(5), &added);
  model.modules.push_back(yin_text::Module(
      "a", Import() + Augment("/m:op/m:input", augment) + Augment("/m:event", augment),
      yin_text::kVersion11, "xmlns:m='urn:m'"));
  if (source->OneIn(2)) {
    model.modules.push_back(yin_text::Module("d", Import() + Deviation(source, model.rpc),
                                             yin_text::kVersion11, "xmlns:m='urn:m'"));
  }
  for (std::vector<Node>* nodes : {&model.rpc, &model.event}) {
    nodes->insert(nodes->end(), added.begin(), added.end());
  }
  return model;
}

namespace {

class MessageDraw {
 public:
  explicit MessageDraw(Source* source) : source_(*source), sloppy_(source->OneIn(2)) {}

  std::string Elements(const std::vector<Node>& nodes, const std::string& around) {
    std::vector<std::string> parts;
    for (const Node& node : nodes) AddParts(node, around, &parts);
    if (parts.size() > 1 && Wrong()) {
      std::swap(parts[source_.Below(static_cast<uint32_t>(parts.size()))], parts.front());
    }
    if (!parts.empty() && Wrong()) {
      parts.push_back(parts[source_.Below(static_cast<uint32_t>(parts.size()))]);
    }
    if (Wrong()) parts.push_back("<x/>");
    std::string text;
    for (const std::string& part : parts) text += part;
    return text;
  }

 private:
  bool Wrong() { return sloppy_ && source_.OneIn(24); }

  void AddParts(const Node& node, const std::string& around, std::vector<std::string>* parts) {
    if (node.kind == "choice") {
      if (node.children.empty() || source_.OneIn(4)) return;
      const auto count = static_cast<uint32_t>(node.children.size());
      const uint32_t chosen = source_.Below(count);
      for (uint32_t i = 0; i < count; ++i) {
        if (i == chosen || Wrong()) AddParts(node.children[i], around, parts);
      }
    } else if (node.kind == "case") {
      for (const Node& child : node.children) AddParts(child, around, parts);
    } else if (!source_.OneIn(3)) {
      const bool isMany = node.kind == "list" || node.kind == "leaf-list";
      for (uint32_t i = isMany ? 1 + source_.Below(4) : 1; i > 0; --i) {
        parts->push_back(Element(node, around));
      }
    }
  }

  std::string Element(const Node& node, const std::string& around) {
    const std::string module = Wrong() ? (source_.OneIn(2) ? "a" : "none") : node.module;
    std::string start = "<" + node.name;
    if (module != around || source_.OneIn(10)) start += " xmlns='urn:" + module + "'";
    if (node.kind == "leaf" || node.kind == "leaf-list") {
      return start + ">" + Value(node.type) + "</" + node.name + ">";
    }
    if (node.kind == "anyxml") return start + "><x><y>1</y></x></" + node.name + ">";
    return start + ">" + Elements(node.children, module) + "</" + node.name + ">";
  }

  std::string Value(uint32_t type) {
    if (Wrong()) return source_.OneIn(2) ? "<x/>" : "bad value";
    return kTypes[type].values[source_.Below(3)];
  }

  Source& source_;
  bool sloppy_;
};

}  // namespace

Message DrawMessage(Source* source, const Model& model) {
  MessageDraw draw(source);
  const uint32_t kind = source->Below(5);
  if (kind == 0) {
    return {true,
            "<event xmlns='urn:m' xmlns:m='urn:m'>" + draw.Elements(model.event, "m") + "</event>"};
  }
  if (kind > 1)
    return {false, "<op xmlns='urn:m' xmlns:m='urn:m'>" + draw.Elements(model.rpc, "m") + "</op>"};
  std::string text = "<top xmlns='urn:m' xmlns:m='urn:m'>" + draw.Elements(model.top, "m");
  for (uint32_t rows = 1 + source->Below(2); rows > 0; --rows) {
    text += "<row><id>1</id>";
    if (rows == 1 || source->OneIn(12)) {
      text += "<act>" + draw.Elements(model.act, "m") + "</act>";
    }
    text += "</row>";
  }
  return {false, text + "</top>"};
}

}  // namespace random_message
