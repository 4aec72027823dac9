// SPDX-License-Identifier: BSD-3-Clause
// libxml2's own serialiser breaks lines inside elements with text and leaves the
// order and place of namespaces to the tree's history, so YIN is written here.
#include "compiler/reading/writer.h"

#include <cstring>
#include <string_view>

#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"

namespace compiler {

namespace {

constexpr std::string_view View(const xmlChar* text) noexcept {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

// What stands for a character that cannot stand for itself; NULL: it can. Line feeds
// and tabs do in texts, but in attributes a parser would make blanks of them.
const char* Reference(char c, bool inAttribute) noexcept {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    case '"':
      return inAttribute ? "&quot;" : nullptr;
    case '\n':
      return inAttribute ? "&#10;" : nullptr;
    case '\t':
      return inAttribute ? "&#9;" : nullptr;
    default:
      return nullptr;
  }
}

void WriteEscaped(std::string* out, std::string_view text, bool inAttribute) {
  size_t from = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] > '>') continue;  // all that are replaced lie below
    const char* reference = Reference(text[i], inAttribute);
    if (reference == nullptr) continue;
    out->append(text.substr(from, i - from)).append(reference);
    from = i + 1;
  }
  out->append(text.substr(from));
}

void WriteAttribute(std::string* out, std::string_view name, std::string_view value) {
  out->append(1, ' ').append(name).append("=\"");
  WriteEscaped(out, value, true);
  *out += '"';
}

// The prefix that the root declares for an element's namespace; empty: that of YIN, or
// none declared.
std::string_view PrefixOf(const xmlNode* root, const xmlNode* element) noexcept {
  if (element->ns == nullptr) return {};
  const std::string_view uri = View(element->ns->href);
  if (uri == kYinNamespace) return {};
  for (const xmlNs* ns = root->nsDef; ns != nullptr; ns = ns->next)
    if (ns->prefix != nullptr && View(ns->href) == uri) return View(ns->prefix);
  return {};
}

void WriteName(std::string* out, const xmlNode* root, const xmlNode* element) {
  const std::string_view prefix = PrefixOf(root, element);
  if (!prefix.empty()) out->append(prefix).append(1, ':');
  out->append(View(element->name));
}

// The root's declarations, below one another.
void WriteNamespaces(std::string* out, const xmlNode* root) {
  const std::string indent(View(root->name).size() + 2, ' ');
  out->append("\n").append(indent).append("xmlns=\"").append(kYinNamespace).append("\"");
  for (const xmlNs* ns = root->nsDef; ns != nullptr; ns = ns->next) {
    if (ns->prefix == nullptr) continue;
    out->append("\n").append(indent.substr(1));
    WriteAttribute(out, "xmlns:" + std::string(View(ns->prefix)), View(ns->href));
  }
}

bool HoldsText(const xmlNode* element) noexcept {
  for (const xmlNode* node = element->children; node != nullptr; node = node->next)
    if (node->type == XML_TEXT_NODE) return true;
  return false;
}

// Writing one tree. Inside an element with text every blank would count, so lines are
// broken only outside of these.
struct Writer {
  std::string* out = nullptr;
  const xmlNode* root = nullptr;
  const xmlNode* solid = nullptr;  // the outermost open element with text; NULL: none
  size_t depth = 0;
};

void BreakLine(Writer* w) {
  if (w->solid != nullptr) return;
  *w->out += '\n';
  w->out->append(2 * w->depth, ' ');
}

void WriteStart(Writer* w, const xmlNode* element) {
  *w->out += '<';
  WriteName(w->out, w->root, element);
  for (const xmlAttr* a = element->properties; a != nullptr; a = a->next)
    WriteAttribute(w->out, View(a->name),
                   a->children == nullptr ? std::string_view() : View(a->children->content));
  if (element == w->root) WriteNamespaces(w->out, element);
}

void WriteEnd(Writer* w, const xmlNode* element) {
  --w->depth;
  BreakLine(w);
  *w->out += "</";
  WriteName(w->out, w->root, element);
  *w->out += '>';
  if (w->solid == element) w->solid = nullptr;
}

// Goes into an element that holds something; else to what follows it.
const xmlNode* WriteElement(Writer* w, const xmlNode* element) {
  WriteStart(w, element);
  if (element->children == nullptr) {
    *w->out += "/>";
    return nullptr;
  }
  *w->out += '>';
  ++w->depth;
  if (w->solid == nullptr && HoldsText(element)) w->solid = element;
  return element->children;
}

void WriteTree(Writer* w) {
  const xmlNode* node = WriteElement(w, w->root);
  while (node != nullptr) {
    const xmlNode* below = nullptr;
    if (node->type == XML_TEXT_NODE) {
      WriteEscaped(w->out, View(node->content), false);
    } else {
      BreakLine(w);
      below = WriteElement(w, node);
    }
    while (below == nullptr && node != w->root) {
      below = node->next;
      if (below != nullptr) break;
      node = node->parent;
      WriteEnd(w, node);
    }
    node = below;
  }
}

}  // namespace

std::string WriteYin(const Module& module) {
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  Writer writer;
  writer.out = &out;
  writer.root = module.root;
  WriteTree(&writer);
  out += '\n';
  return out;
}

}  // namespace compiler
