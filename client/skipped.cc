// SPDX-License-Identifier: BSD-3-Clause
// The library does not tell which file it has read, so the file is looked up in the way
// in which the library does: in each directory the plain file, else the first that the
// listing gives with a revision.
#include "client/skipped.h"

#include <libxml/parser.h>

#include <cstring>
#include <filesystem>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr char kYinNamespace[] = "urn:ietf:params:xml:ns:yang:yin:1";

std::string FindWithRevision(const std::string& dir, const std::string& name) {
  std::error_code error;
  const std::string start = name + "@";
  fs::directory_iterator entry(dir, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string file = entry->path().filename().string();
    if (file.compare(0, start.size(), start) == 0 && entry->path().extension() == ".yin") {
      return entry->path().string();
    }
  }
  return {};
}

std::string FindFile(const Options& options, const std::string& name) {
  static const std::vector<std::string> kHere = {"."};
  std::string withRevision;
  for (const std::string& dir : options.searchDirs.empty() ? kHere : options.searchDirs) {
    std::error_code error;
    const std::string plain = dir + "/" + name + ".yin";
    if (withRevision.empty() && fs::exists(plain, error)) return plain;
    if (withRevision.empty()) withRevision = FindWithRevision(dir, name);
  }
  return withRevision;
}

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
      FindFile(counting->options, reinterpret_cast<const char*>(name->children->content));
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

size_t CountSkipped(const Options& options, const std::string& module) {
  Counting counting{options, {}, {}, 0};
  counting.open.push_back(FindFile(options, module));
  while (!counting.open.empty()) {
    const std::string file = counting.open.back();
    counting.open.pop_back();
    xmlDoc* doc = file.empty()
                      ? nullptr
                      : xmlReadFile(file.c_str(), nullptr,
                                    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    const xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc);
    if (root != nullptr) CountTree(&counting, root);
    xmlFreeDoc(doc);
  }
  return counting.count;
}

}  // namespace

void PrintSkipped(const Options& options) {
  for (const std::string& module : options.operands) {
    const size_t count = CountSkipped(options, module);
    if (count > 0) {
      PrintError("%s: %zu statements were skipped that -c spells out", module.c_str(), count);
    }
  }
}
