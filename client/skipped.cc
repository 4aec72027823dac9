// SPDX-License-Identifier: BSD-3-Clause
// Counts in the files that a load has read, which are read with the library's own care.
#include "client/skipped.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>
#include <cstring>
#include <set>
#include <string>

#include "client/file_input.h"
#include "client/find_model.h"
#include "client/memory_watch.h"
#include "client/owned.h"

namespace {

constexpr char kYinNamespace[] = "urn:ietf:params:xml:ns:yang:yin:1";
constexpr size_t kMaxAttributeDefaults = 16;  // of a model that the library reads

bool IsNamed(const xmlNode* node, const char* name) {
  return std::strcmp(reinterpret_cast<const char*>(node->name), name) == 0;
}

bool IsYin(const xmlNode* node) {
  return node->type == XML_ELEMENT_NODE && node->ns != nullptr &&
         std::strcmp(reinterpret_cast<const char*>(node->ns->href), kYinNamespace) == 0;
}

// A statement that the loader skips; what stands in it is skipped with it.
bool IsSkipped(const xmlNode* node, const xmlNode* root) {
  return IsNamed(node, "uses") || IsNamed(node, "grouping") ||
         (IsNamed(node, "typedef") && node->parent != root);
}

struct Counting {
  const Options& options;
  std::set<std::string> files;  // that were counted, or are being
  std::vector<std::string> open;
  size_t count = 0;
};

void NoteInclude(Counting* counting, const xmlNode* include) {
  const xmlAttr* name = include->properties;
  if (name == nullptr || name->children == nullptr || name->children->content == nullptr) return;
  const std::string file =
      FindModelFile(counting->options, reinterpret_cast<const char*>(name->children->content));
  if (!file.empty() && counting->files.insert(file).second) counting->open.push_back(file);
}

void CountTree(Counting* counting, const xmlNode* root) {
  const xmlNode* node = root->children;
  while (node != nullptr) {
    const bool yin = IsYin(node);
    const bool skipped = yin && IsSkipped(node, root);
    if (skipped) ++counting->count;
    if (yin && node->parent == root && IsNamed(node, "include")) NoteInclude(counting, node);
    if (yin && !skipped && node->children != nullptr) {
      node = node->children;
      continue;
    }
    while (node != root && node->next == nullptr) node = node->parent;
    node = node == root ? nullptr : node->next;
  }
}

// In place of libxml2's handler of attribute declarations, which it calls. The library
// refuses a model with more than a few, since they cost time in their square.
void CountAttributeDefault(void* parser, const xmlChar* element, const xmlChar* name, int type,
                           int use, const xmlChar* value, xmlEnumerationPtr choices) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  auto* count = static_cast<size_t*>(context->_private);
  xmlSAX2AttributeDecl(parser, element, name, type, use, value, choices);
  if (value == nullptr || ++*count <= kMaxAttributeDefaults) return;
  xmlStopParser(context);
  context->wellFormed = 0;
}

// NULL for what the library would not read either.
XmlDocument ParseModel(const std::string& file) {
  std::string text;
  if (!ReadRegularFile(file, &text) || text.empty() || text.size() > INT_MAX) return nullptr;
  xmlParserCtxt* context = xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()));
  if (context == nullptr) return nullptr;
  static_cast<void>(
      xmlCtxtUseOptions(context, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
  size_t attributeDefaults = 0;
  context->_private = &attributeDefaults;
  context->sax->attributeDecl = CountAttributeDefault;
  static_cast<void>(xmlParseDocument(context));
  XmlDocument doc(context->myDoc);
  if (context->wellFormed == 0) doc.reset();
  xmlFreeParserCtxt(context);
  return doc;
}

size_t CountSkipped(const Options& options, const std::string& module) {
  Counting counting{options, {}, {}, 0};
  counting.open.push_back(FindModelFile(options, module));
  while (!counting.open.empty()) {
    const std::string file = counting.open.back();
    counting.open.pop_back();
    const XmlDocument doc = file.empty() ? nullptr : ParseModel(file);
    const xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc.get());
    if (root != nullptr) CountTree(&counting, root);
  }
  return counting.count;
}

}  // namespace

void PrintSkipped(const Options& options) {
  for (const std::string& module : options.operands) {
    const size_t count = CountSkipped(options, module);
    CheckMemory();
    if (count > 0) {
      PrintError("%s: %zu statements were skipped that -c spells out", module.c_str(), count);
    }
  }
}
