// SPDX-License-Identifier: BSD-3-Clause
// Real models and messages, from the folder that QMODEL_MODELS_DIR names: models/ with YIN
// files, messages/ with index.tsv, which says which modules and features each needs.
#include <libxml/parser.h>
#include <libxml/xmlregexp.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "bench/schema_paths.h"
#include "bench/shared_parts.h"

namespace fs = std::filesystem;

namespace {

struct RealModel {
  std::string name;
  std::string text;
  bool isModule;  // else a submodule, which its module loads
};

std::string Folder() {
  const char* folder = std::getenv("QMODEL_MODELS_DIR");
  return folder != nullptr ? folder : "";
}

std::string Content(const fs::path& file) {
  std::stringstream content;
  content << std::ifstream(file).rdbuf();
  return content.str();
}

std::vector<RealModel> RealModels() {
  std::vector<RealModel> models;
  for (const fs::directory_entry& entry : fs::directory_iterator(Folder() + "/models")) {
    if (entry.path().extension() != ".yin") continue;
    const std::string text = Content(entry.path());
    models.push_back({entry.path().stem(), text, text.find("<module ") != std::string::npos});
  }
  std::sort(models.begin(), models.end(),
            [](const RealModel& a, const RealModel& b) { return a.name < b.name; });
  return models;
}

std::vector<std::string> RealNames() {
  std::vector<std::string> names;
  for (const RealModel& model : RealModels())
    if (model.isModule) names.push_back(model.name);
  return names;
}

Context LoadReal(const std::vector<std::string>& names, uint32_t flags) {
  Context ctx = NewContext(flags);
  const std::string folder = Folder() + "/models";
  Require(QM_CTX_SetSearchDir(ctx.get(), folder.c_str()) == 0, "no folder of models");
  for (const std::string& name : names)
    Require(QM_CTX_LoadModule(ctx.get(), name.c_str()) == 0, "a real model is not loaded");
  return ctx;
}

// Every file is read and parsed once, the library's load among others.
std::function<Work(int64_t)> LoadAll(uint32_t flags) {
  return [flags](int64_t /*size*/) {
    std::vector<std::string> texts;
    for (const RealModel& model : RealModels()) texts.push_back(model.text);
    const std::vector<std::string> names = RealNames();
    Work work;
    work.units = static_cast<int64_t>(names.size());
    work.bytes = SizeOf(texts);
    work.parse = ParseOf(texts);
    work.run = [names, flags] { LoadReal(names, flags); };
    return work;
  };
}

Work RealPaths(int64_t /*size*/) {
  const std::vector<std::string> names = RealNames();
  const Context ctx = LoadReal(names, 0);
  return PathWork(ctx, PathsOf(ctx.get(), names));
}

std::string RealRequest() {
  return Content(Folder() + "/messages/edit-config-merge.xml");
}

void Validate(QmCtx* ctx, std::string request) {
  QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request.data(), nullptr, nullptr);
  Require(err == nullptr, "a real request is not valid");
}

// The first message after a load of all models.
Work ColdMessage(int64_t /*size*/) {
  const auto ctx = std::make_shared<Context>();
  const std::vector<std::string> names = RealNames();
  const std::string request = RealRequest();
  Work work;
  work.bytes = SizeOf({request});
  work.parse = ParseOf({request});
  work.before = [ctx, names] { *ctx = LoadReal(names, 0); };
  work.run = [ctx, request] { Validate(ctx->get(), request); };
  work.after = [ctx] { ctx->reset(); };
  return work;
}

Work WarmMessage(int64_t /*size*/) {
  const Context ctx = LoadReal(RealNames(), 0);
  const std::string request = RealRequest();
  Work work;
  work.bytes = SizeOf({request});
  work.parse = ParseOf({request});
  work.run = [ctx, request] { Validate(ctx.get(), request); };
  return work;
}

// The patterns of all types, each once.
std::set<std::string> RealPatterns() {
  std::set<std::string> patterns;
  for (const RealModel& model : RealModels()) {
    xmlDoc* doc = xmlParseMemory(model.text.data(), static_cast<int>(model.text.size()));
    xmlNode* const root = xmlDocGetRootElement(doc);
    for (xmlNode* node = root; node != nullptr;) {
      if (reinterpret_cast<const char*>(node->name) == std::string("pattern") &&
          node->properties != nullptr) {
        patterns.insert(reinterpret_cast<const char*>(node->properties->children->content));
      }
      xmlNode* next = node->children;
      while (next == nullptr && node != root && node != nullptr) {
        next = node->next;
        if (next == nullptr) node = node->parent;
      }
      node = next;
    }
    xmlFreeDoc(doc);
  }
  return patterns;
}

// What a context that keeps patterns has in libxml2's memory when it has met all of them.
Work CompilePatterns(int64_t /*size*/) {
  const std::set<std::string> patterns = RealPatterns();
  const auto forms = std::make_shared<std::vector<xmlRegexp*>>();
  forms->reserve(patterns.size());
  Work work;
  work.units = static_cast<int64_t>(patterns.size());
  work.run = [forms, patterns] {
    for (const std::string& pattern : patterns) {
      forms->push_back(xmlRegexpCompile(reinterpret_cast<const xmlChar*>(pattern.c_str())));
    }
  };
  work.after = [forms] {
    for (xmlRegexp* form : *forms) xmlRegFreeRegexp(form);
    forms->clear();
  };
  return work;
}

}  // namespace

std::vector<Case> RealCases() {
  if (Folder().empty()) return {};
  constexpr uint32_t kAllTexts = QM_LOAD_IMPORTS | QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS;
  return {
      {"load the real models", "module", 1, 1, 1, LoadAll(0)},
      {"load the real models with descriptions", "module", 1, 1, 1, LoadAll(kAllTexts)},
      {"paths of the real models", "path", 1, 1, 1, RealPaths},
      {"first message after the load of the real models", "run", 1, 1, 1, ColdMessage, 20},
      {"a later message for the real models", "run", 1, 1, 1, WarmMessage},
      {"compile the patterns of the real models", "pattern", 1, 1, 1, CompilePatterns},
  };
}
