// SPDX-License-Identifier: BSD-3-Clause
#include "tests/compiler/compile_helper.h"

#include <libxml/parser.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace compiler {

namespace {

const std::set<std::string>& HeaderNames() {
  static const std::set<std::string> names = {"yang-version", "namespace",   "prefix",
                                              "import",       "revision",    "organization",
                                              "contact",      "description", "reference"};
  return names;
}

std::string Name(const xmlNode* node) {
  const std::string local = reinterpret_cast<const char*>(node->name);
  return node->ns == nullptr || node->ns->prefix == nullptr
             ? local
             : reinterpret_cast<const char*>(node->ns->prefix) + std::string(":") + local;
}

std::string Text(const xmlNode* node) {
  xmlChar* content = xmlNodeGetContent(node);
  std::string text = reinterpret_cast<const char*>(content);
  xmlFree(content);
  return text;
}

std::string Dump(const xmlNode* node);

std::string DumpChildren(const xmlNode* parent, bool skipHeader) {
  std::string text;
  for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    if (skipHeader && HeaderNames().count(Name(child)) != 0) continue;
    text += (text.empty() ? "" : " ") + Dump(child);
  }
  return text;
}

std::string Dump(const xmlNode* node) {
  std::string text = Name(node);
  if (node->properties != nullptr)
    text += " " + Text(reinterpret_cast<const xmlNode*>(node->properties));
  const bool isText = node->children != nullptr && node->children->type == XML_TEXT_NODE &&
                      node->children->next == nullptr;
  if (isText) return text + " \"" + Text(node) + "\"";
  const std::string below = DumpChildren(node, false);
  return below.empty() ? text + ";" : text + " { " + below + " }";
}

struct Parsed {
  explicit Parsed(const std::string& yin)
      : doc(xmlReadMemory(yin.data(), static_cast<int>(yin.size()), nullptr, nullptr,
                          XML_PARSE_NOBLANKS)) {}
  ~Parsed() { xmlFreeDoc(doc); }
  xmlDoc* doc;
};

std::string YinOf(const JobResult& result, const std::string& name) {
  for (const JobModule& module : result.modules) {
    if (module.name == name) return module.yin;
  }
  return {};
}

}  // namespace

Compiling::Compiling() {
  folder_ = testing::TempDir() + "qmodel-compile-XXXXXX";
  EXPECT_NE(nullptr, mkdtemp(folder_.data()));
}

Compiling::~Compiling() {
  std::filesystem::remove_all(folder_);
}

void Compiling::Write(const std::string& name, const std::string& text) const {
  const std::filesystem::path path = folder_ + "/" + name;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path) << text;
}

void Compiling::Module(const std::string& name, const std::string& body) const {
  Write(name + ".yang", "module " + name + " { namespace urn:" + name + "; prefix " + name + ";\n" +
                            body + "\n}\n");
}

void Compiling::Module11(const std::string& name, const std::string& body) const {
  Write(name + ".yang", "module " + name + " { yang-version 1.1; namespace urn:" + name +
                            "; prefix " + name + ";\n" + body + "\n}\n");
}

JobResult Compiling::Run(const std::vector<std::string>& operands, CompileOptions options) const {
  JobRequest request;
  request.folders = {folder_};
  request.operands = operands;
  request.withImports = true;
  request.options = std::move(options);
  return RunJob(request);
}

std::string Compiling::Body(const std::string& name) const {
  const JobResult result = Run({name});
  for (const std::string& finding : result.findings) ADD_FAILURE() << finding;
  return BodyOf(result, name);
}

std::string Compiling::Findings(const std::string& name, CompileOptions options) const {
  std::string lines;
  for (std::string line : Run({name}, std::move(options)).findings) {
    for (size_t at = line.find(folder_); at != std::string::npos; at = line.find(folder_))
      line.erase(at, folder_.size() + 1);
    lines += line + "\n";
  }
  return lines;
}

std::string BodyOf(const JobResult& result, const std::string& name) {
  const Parsed parsed(YinOf(result, name));
  return parsed.doc == nullptr ? "" : DumpChildren(xmlDocGetRootElement(parsed.doc), true);
}

std::string ImportsOf(const JobResult& result, const std::string& name) {
  const Parsed parsed(YinOf(result, name));
  std::string text;
  if (parsed.doc == nullptr) return text;
  for (const xmlNode* node = xmlDocGetRootElement(parsed.doc)->children; node != nullptr;
       node = node->next) {
    if (node->type != XML_ELEMENT_NODE || Name(node) != "import") continue;
    text += (text.empty() ? "" : " ") +
            Text(reinterpret_cast<const xmlNode*>(node->children->properties)) + "=" +
            Text(reinterpret_cast<const xmlNode*>(node->properties));
  }
  return text;
}

}  // namespace compiler
