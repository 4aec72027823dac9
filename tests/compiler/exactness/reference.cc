// SPDX-License-Identifier: BSD-3-Clause
#include "tests/compiler/exactness/reference.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <cstring>
#include <map>
#include <set>
#include <vector>

#include "compiler/reading/session.h"
#include "compiler/words/path.h"
#include "compiler/words/xpath_edit.h"

namespace exactness {

using compiler::DataNode;
using compiler::DataSchema;
using compiler::Keyword;

namespace {

const xmlChar* Xml(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

std::string Chars(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

std::string ContentOf(const xmlNode* element) {
  xmlChar* text = xmlNodeGetContent(element);
  std::string content = Chars(text);
  xmlFree(text);
  return content;
}

bool Flip(std::mt19937* random, unsigned of = 2) {
  return (*random)() % of == 0;
}

template <typename T>
const T& Pick(const std::vector<T>& all, std::mt19937* random) {
  return all[(*random)() % all.size()];
}

// Identities of the model with their bases, by name.
std::map<std::string, std::set<std::string>> IdentitiesOf(const Model& model) {
  std::map<std::string, std::set<std::string>> bases;
  for (const xmlNode* child = model.Root()->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE || compiler::YinKeyword(child) != Keyword::kIdentity)
      continue;
    auto& own = bases[std::string(compiler::YinArgument(child))];
    for (const xmlNode* base = child->children; base != nullptr; base = base->next) {
      if (base->type == XML_ELEMENT_NODE && compiler::YinKeyword(base) == Keyword::kBase) {
        own.insert(std::string(compiler::YinArgument(base)));
      }
    }
  }
  return bases;
}

bool Derives(const std::map<std::string, std::set<std::string>>& bases, const std::string& from,
             const std::string& base) {
  const auto found = bases.find(from);
  if (found == bases.end()) return false;
  for (const std::string& one : found->second) {
    if (one == base || Derives(bases, one, base)) return true;
  }
  return false;
}

std::vector<std::string> EnumsOf(const xmlNode* type) {
  std::vector<std::string> names;
  for (const xmlNode* child = type->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE && compiler::YinKeyword(child) == Keyword::kEnum) {
      names.emplace_back(compiler::YinArgument(child));
    }
  }
  return names;
}

// Values that conditions tell apart.
std::vector<std::string> ValuesOf(const Model& model, DataNode* leaf) {
  compiler::DataModule* words = nullptr;
  const xmlNode* type = model.Schema()->TypeOf(leaf, &words);
  const std::string name(compiler::YinArgument(type));
  if (name == "int32") return {"-1", "0", "1", "2", "10"};
  if (name == "decimal64") return {"-1.0", "0.0", "1.5", "10.0"};
  if (name == "boolean") return {"true", "false"};
  if (name == "empty") return {""};
  if (name == "enumeration") return EnumsOf(type);
  if (name == "identityref") {
    std::vector<std::string> names;
    for (const auto& [identity, bases] : IdentitiesOf(model)) {
      if (!bases.empty()) names.push_back("m:" + identity);
    }
    return names;
  }
  return {"", "a", "b", "1", "5e0", "true"};
}

bool IsMandatory(DataNode* node) {
  const xmlNode* mandatory = compiler::YinChild(node->statement, Keyword::kMandatory);
  return mandatory != nullptr && compiler::YinArgument(mandatory) == "true";
}

class Drawer {
 public:
  Drawer(const Model& model, std::mt19937* random) : model_(model), random_(random) {}

  std::string Children(DataNode* parent) {
    std::string out;
    for (DataNode* child : model_.Schema()->OwnChildren(parent)) out += Node(child);
    return out;
  }

  std::string Node(DataNode* node) {
    const compiler::Presence presence = PresenceOf(model_.Schema(), node);
    switch (node->keyword) {
      case Keyword::kInput:
      case Keyword::kCase:
        return Children(node);
      case Keyword::kOutput:
        return "";
      case Keyword::kChoice:
        return Flip(random_, 4) ? "" : Node(Pick(model_.Schema()->OwnChildren(node), random_));
      case Keyword::kLeafList:
      case Keyword::kList:
        return Entries(node);
      default:
        return presence.inMessage || IsMandatory(node) || Flip(random_) ? Element(node) : "";
    }
  }

 private:
  std::string Element(DataNode* node) {
    const bool isLeaf = node->keyword == Keyword::kLeaf || node->keyword == Keyword::kLeafList;
    const std::string name(node->name);
    const std::string inside = isLeaf ? Value(node) : Children(node);
    return "<" + name + ">" + inside + "</" + name + ">";
  }

  std::string Value(DataNode* leaf) { return Pick(ValuesOf(model_, leaf), random_); }

  std::string Entries(DataNode* node) {
    std::string out;
    for (unsigned long count = (*random_)() % 4; count > 0; --count) out += Element(node);
    return out;
  }

  const Model& model_;
  std::mt19937* random_;
};

// Puts in what exists without being written.
class Completer {
 public:
  explicit Completer(const Model& model) : model_(model) {}

  void Run(xmlNode* element, DataNode* node) {
    for (xmlNode* child = element->children; child != nullptr; child = child->next) {
      if (child->type != XML_ELEMENT_NODE) continue;
      DataNode* schema = model_.Schema()->DataChild(node, nullptr, Chars(child->name));
      Run(child, schema);
    }
    for (DataNode* child : model_.Schema()->OwnChildren(node)) Add(element, child);
  }

 private:
  void Add(xmlNode* element, DataNode* node) {
    if (node->keyword == Keyword::kInput) {
      for (DataNode* child : model_.Schema()->OwnChildren(node)) Add(element, child);
      return;
    }
    const bool plain = IsPlainContainer(node);
    const xmlNode* fallback = compiler::YinChild(node->statement, Keyword::kDefault);
    if (node->conditional || (!plain && (node->keyword != Keyword::kLeaf || fallback == nullptr)))
      return;
    for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
      if (child->type == XML_ELEMENT_NODE && Chars(child->name) == node->name) return;
    }
    xmlNode* child =
        xmlNewChild(element, element->ns, Xml(std::string(node->name).c_str()), nullptr);
    if (plain) {
      Run(child, node);
    } else {
      xmlNodeAddContent(child, Xml(std::string(compiler::YinArgument(fallback)).c_str()));
    }
  }

  const Model& model_;
};

// One evaluation at a time.
struct Running {
  const Model* model;
  xmlNode* context;
};
Running g_running;

void Current(xmlXPathParserContext* parser, int) {
  valuePush(parser, xmlXPathNewNodeSet(g_running.context));
}

DataNode* SchemaOf(const xmlNode* element) {
  if (element->parent == nullptr || element->parent->type != XML_ELEMENT_NODE) {
    return g_running.model->Top(Chars(element->name));
  }
  return g_running.model->Schema()->DataChild(SchemaOf(element->parent), nullptr,
                                              Chars(element->name));
}

std::string WithPrefixes(const Model& model, const std::string& condition) {
  compiler::Xpath xpath;
  compiler::XpathError error;
  if (!ParseXpath(condition, &xpath, &error)) return condition;
  compiler::NameRules rules;
  rules.nodes = [](std::string_view prefix) {
    return std::optional<std::string>(prefix.empty() ? "m" : std::string(prefix));
  };
  rules.identities = rules.nodes;
  // By the name of the leaf, which the models of the tests give to nothing else.
  rules.isIdentity = [&model](const compiler::Xpath& expression, uint32_t path, std::string_view) {
    const auto& steps = expression.At(path).steps;
    if (steps.empty()) return false;
    const std::string leaf(expression.Of(steps.back().name));
    return model.IsIdentityref(leaf);
  };
  return RenamePrefixes(xpath, rules, nullptr);
}

xmlXPathObject* Evaluate(xmlXPathContext* context, const std::string& condition) {
  return xmlXPathEvalExpression(Xml(condition.c_str()), context);
}

// The leaves at the end of the leafref's path that have its value.
void Deref(xmlXPathParserContext* parser, int) {
  xmlXPathObject* argument = valuePop(parser);
  xmlXPathObject* result = xmlXPathNewNodeSet(nullptr);
  const xmlNodeSet* nodes = argument->nodesetval;
  for (int i = 0; nodes != nullptr && i < nodes->nodeNr; ++i) {
    compiler::DataModule* words = nullptr;
    const xmlNode* type = g_running.model->Schema()->TypeOf(SchemaOf(nodes->nodeTab[i]), &words);
    const xmlNode* path = compiler::YinChild(type, Keyword::kPath);
    xmlNode* saved = parser->context->node;
    parser->context->node = nodes->nodeTab[i];
    xmlXPathObject* targets = Evaluate(
        parser->context, WithPrefixes(*g_running.model, std::string(compiler::YinArgument(path))));
    parser->context->node = saved;
    for (int j = 0; targets->nodesetval != nullptr && j < targets->nodesetval->nodeNr; ++j) {
      xmlNode* target = targets->nodesetval->nodeTab[j];
      if (ContentOf(target) == ContentOf(nodes->nodeTab[i])) {
        xmlXPathNodeSetAdd(result->nodesetval, target);
      }
    }
    xmlXPathFreeObject(targets);
  }
  xmlXPathFreeObject(argument);
  valuePush(parser, result);
}

void DerivedFrom(xmlXPathParserContext* parser, bool orSelf) {
  xmlXPathObject* literal = valuePop(parser);
  xmlXPathObject* argument = valuePop(parser);
  const std::string wanted = Chars(literal->stringval).substr(2);
  const auto bases = IdentitiesOf(*g_running.model);
  bool derived = false;
  for (int i = 0; argument->nodesetval != nullptr && i < argument->nodesetval->nodeNr; ++i) {
    const std::string text = ContentOf(argument->nodesetval->nodeTab[i]);
    const std::string value = text.substr(0, 2) == "m:" ? text.substr(2) : text;
    derived = derived || Derives(bases, value, wanted) || (orSelf && value == wanted);
  }
  xmlXPathFreeObject(literal);
  xmlXPathFreeObject(argument);
  valuePush(parser, xmlXPathNewBoolean(derived ? 1 : 0));
}

void DerivedFromFunc(xmlXPathParserContext* parser, int) {
  DerivedFrom(parser, false);
}

void DerivedFromOrSelfFunc(xmlXPathParserContext* parser, int) {
  DerivedFrom(parser, true);
}

xmlNode* FindElement(xmlNode* element, const std::string& name) {
  if (Chars(element->name) == name) return element;
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    xmlNode* found = child->type == XML_ELEMENT_NODE ? FindElement(child, name) : nullptr;
    if (found != nullptr) return found;
  }
  return nullptr;
}

}  // namespace

Model::Model(const std::string& body)
    : yin_("<module name=\"m\" xmlns=\"" + std::string(compiler::kYinNamespace) +
           "\" xmlns:m=\"urn:m\"><yang-version value=\"1.1\"/><namespace uri=\"urn:m\"/>"
           "<prefix value=\"m\"/>" +
           body + "</module>"),
      doc_(xmlReadMemory(yin_.data(), static_cast<int>(yin_.size()), "m.yin", nullptr,
                         XML_PARSE_NOBLANKS)),
      schema_([this](std::string_view name) { return name == "m" ? Root() : nullptr; }) {
  EXPECT_NE(doc_, nullptr) << yin_;
}

Model::~Model() {
  xmlFreeDoc(doc_);
}

bool Model::IsIdentityref(const std::string& leaf) const {
  return yin_.find("<leaf name=\"" + leaf + "\"><type name=\"identityref\"") != std::string::npos;
}

const xmlNode* Model::Root() const {
  return xmlDocGetRootElement(doc_);
}

DataNode* Model::Top(const std::string& name) const {
  return schema_.DataChild(nullptr, Module(), name);
}

DataNode* Model::Node(const std::string& path) const {
  DataNode* node = nullptr;
  for (size_t i = 0; i < path.size();) {
    const size_t end = std::min(path.find('/', i), path.size());
    const std::string name = path.substr(i, end - i);
    i = end + 1;
    if (node == nullptr) {
      node = Top(name);
      continue;
    }
    DataNode* next = nullptr;
    for (DataNode* child : schema_.OwnChildren(node)) {
      if (child->name == name) next = child;
    }
    node = next;
    if (node == nullptr) return nullptr;
  }
  return node;
}

// Gives each leafref the value of one of its targets, and takes those away that have none.
static void SettleLeafrefs(const Model& model, xmlXPathContext* context, xmlNode* element) {
  for (xmlNode *child = element->children, *next = nullptr; child != nullptr; child = next) {
    next = child->next;
    if (child->type == XML_ELEMENT_NODE) SettleLeafrefs(model, context, child);
  }
  DataNode* leaf = SchemaOf(element);
  compiler::DataModule* words = nullptr;
  if (leaf->keyword != Keyword::kLeaf) return;
  const xmlNode* path = compiler::YinChild(model.Schema()->TypeOf(leaf, &words), Keyword::kPath);
  if (path == nullptr) return;
  context->node = element;
  xmlXPathObject* targets =
      Evaluate(context, WithPrefixes(model, std::string(compiler::YinArgument(path))));
  if (targets->nodesetval == nullptr || targets->nodesetval->nodeNr == 0) {
    xmlUnlinkNode(element);
    xmlFreeNode(element);
  } else {
    xmlNodeSetContent(element, Xml(ContentOf(targets->nodesetval->nodeTab[0]).c_str()));
  }
  xmlXPathFreeObject(targets);
}

std::string DrawMessage(const Model& model, DataNode* top, std::mt19937* random) {
  const std::string name(top->name);
  const std::string drawn = "<" + name + " xmlns=\"urn:m\" xmlns:m=\"urn:m\">" +
                            Drawer(model, random).Children(top) + "</" + name + ">";
  xmlDoc* doc = xmlReadMemory(drawn.data(), static_cast<int>(drawn.size()), "message", nullptr, 0);
  xmlXPathContext* context = xmlXPathNewContext(doc);
  xmlXPathRegisterNs(context, Xml("m"), Xml("urn:m"));
  g_running = {&model, nullptr};
  SettleLeafrefs(model, context, xmlDocGetRootElement(doc));
  xmlXPathFreeContext(context);
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, doc, xmlDocGetRootElement(doc), 0, 0);
  const std::string message = Chars(xmlBufferContent(buffer));
  xmlBufferFree(buffer);
  xmlFreeDoc(doc);
  return message;
}

int Answer(const Model& model, const std::string& message, const std::string& context,
           const std::string& condition) {
  xmlDoc* doc =
      xmlReadMemory(message.data(), static_cast<int>(message.size()), "message", nullptr, 0);
  xmlNode* root = xmlDocGetRootElement(doc);
  Completer(model).Run(root, model.Top(Chars(root->name)));
  xmlXPathContext* evaluation = xmlXPathNewContext(doc);
  xmlXPathRegisterNs(evaluation, Xml("m"), Xml("urn:m"));
  xmlXPathRegisterFunc(evaluation, Xml("current"), Current);
  xmlXPathRegisterFunc(evaluation, Xml("deref"), Deref);
  xmlXPathRegisterFunc(evaluation, Xml("derived-from"), DerivedFromFunc);
  xmlXPathRegisterFunc(evaluation, Xml("derived-from-or-self"), DerivedFromOrSelfFunc);
  evaluation->node = FindElement(root, context);
  evaluation->contextSize = 1;
  evaluation->proximityPosition = 1;
  g_running = {&model, evaluation->node};
  xmlXPathObject* result = Evaluate(evaluation, WithPrefixes(model, condition));
  const int answer = result == nullptr ? -1 : xmlXPathCastToBoolean(result);
  xmlXPathFreeObject(result);
  xmlXPathFreeContext(evaluation);
  xmlFreeDoc(doc);
  return answer;
}

}  // namespace exactness
