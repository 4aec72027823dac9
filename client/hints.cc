// SPDX-License-Identifier: BSD-3-Clause
// Hints. A name is near another one when a few letters were missed, doubled, mistaken or
// swapped. Imports are named as missing only where a lookup needed a module that is not
// loaded: a value that is simply wrong is no reason to load more.
#include "client/hints.h"

#include <qmodel/inspect.h>
#include <qmodel/schema.h>

#include <algorithm>

#include "client/find_model.h"
#include "client/memory_watch.h"
#include "compiler/words/suggestion.h"

namespace {

constexpr size_t kLongestWord = 256;  // a longer one was not mistyped

uint32_t AddName(QmsModule* module, void* arg) {
  static_cast<std::vector<std::string>*>(arg)->emplace_back(QM_MOD_GetModuleName(module));
  return 0;
}

void HintModule(const std::string& name, const std::vector<std::string>& names,
                const std::vector<std::string>& texts) {
  if (std::find(names.begin(), names.end(), name) != names.end()) return;
  if (std::find(texts.begin(), texts.end(), ModelName(name)) != texts.end()) {
    PrintError("'%s' is YANG text, which is compiled first: use -c", name.c_str());
    return;
  }
  const std::string hint = DidYouMean(name, names);
  if (!hint.empty()) PrintError("no module '%s'%s", name.c_str(), hint.c_str());
}

struct Search {
  QmCtx* ctx;
  std::string_view wanted;  // this import only, unless empty
  bool missing;
};

void Need(const char* module, Search* search) {
  if (module == nullptr || *module == '\0') return;
  if (!search->wanted.empty() && search->wanted != module) return;
  if (QM_CTX_GetModuleByModName(search->ctx, module) == nullptr) search->missing = true;
}

uint32_t NeedImport(const char* module, void* arg) {
  Need(module, static_cast<Search*>(arg));
  return 0;
}

uint32_t NeedImports(QmsModule* module, void* arg) {
  return QM_MOD_ScanImport(module, NeedImport, arg);
}

uint32_t NeedBase(const char* module, const char* /*identity*/, void* arg) {
  Need(module, static_cast<Search*>(arg));
  return 0;
}

uint32_t NeedType(const char* module, const char* name, QmtType* type, void* arg);

void NeedOfType(QmtType* type, Search* search) {
  switch (QM_TYPE_GetBuiltInBaseType(type)) {
    case QMT_BASE_IDENTITYREF:
      static_cast<void>(QM_TYPE_ScanIdentRefBase(type, NeedBase, search));
      break;
    case QMT_BASE_UNION:
      static_cast<void>(QM_TYPE_ScanUnionSubType(type, NeedType, search));
      break;
    default:
      break;
  }
}

// Members of unions may be unions; the depth of a model's types is bounded by its load.
uint32_t NeedType(const char* module, const char* /*name*/, QmtType* type, void* arg) {
  auto* search = static_cast<Search*>(arg);
  Need(module, search);
  if (type != nullptr) NeedOfType(type, search);
  return 0;
}

bool NeedsMore(QmCtx* ctx, QmsNode* node) {
  Search search{ctx, {}, false};
  static_cast<void>(QM_NODE_ScanDerivedType(node, NeedType, &search));
  QmtType* type = QM_NODE_GetRealType(node);
  if (type != nullptr) NeedOfType(type, &search);
  const bool leafref = type != nullptr && QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_LEAFREF;
  return search.missing || (leafref && QM_NODE_GetLeafrefTargetNode(node, 1) == nullptr);
}

// True when it was said.
bool HintImports(QmCtx* ctx, const Options& options, std::string_view wanted) {
  if ((options.loadFlags & QM_LOAD_IMPORTS) != 0) return false;
  Search search{ctx, wanted, false};
  static_cast<void>(QM_CTX_ScanAllModule(ctx, NeedImports, &search));
  if (search.missing) PrintError("imports not loaded: use -i");
  return search.missing;
}

}  // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string>& names) {
  if (word.size() > kLongestWord) return {};
  // A short word is another word soon.
  unsigned near = word.size() < 4 ? 1 : word.size() < 9 ? 2 : 3;
  std::string_view nearest;
  for (const std::string& name : names) {
    if (name.size() > kLongestWord) continue;
    const unsigned distance = compiler::EditDistance(word, name, near);
    if (distance > near || (distance == near && !nearest.empty())) continue;
    near = distance;
    nearest = name;
  }
  return nearest.empty() ? std::string() : "; did you mean '" + std::string(nearest) + "'?";
}

std::string DidYouMeanModule(QmCtx* ctx, std::string_view word) {
  std::vector<std::string> names;
  static_cast<void>(QM_CTX_ScanAllModule(ctx, kGuarded<AddName>, &names));
  return DidYouMean(word, names);
}

void HintModules(const Options& options, bool withOperands, bool readsText) {
  std::vector<std::string> names = ModelNames(options, ".yin");
  std::vector<std::string> texts = ModelNames(options, ".yang");
  if (readsText) {
    names.insert(names.end(), texts.begin(), texts.end());
    texts.clear();
  }
  for (const std::string& name : options.modules) HintModule(name, names, texts);
  if (!withOperands) return;
  for (const std::string& name : options.operands) HintModule(name, names, texts);
}

void HintImport(QmCtx* ctx, const Options& options, std::string_view module) {
  if (!module.empty()) HintImports(ctx, options, module);
}

void HintImportsOfPath(QmCtx* ctx, const Options& options, std::string_view path) {
  for (size_t colon = path.find(':'); colon != path.npos; colon = path.find(':', colon + 1)) {
    const size_t slash = path.substr(0, colon).rfind('/');
    const size_t start = slash == path.npos ? 0 : slash + 1;
    const std::string_view module = path.substr(start, colon - start);
    if (!module.empty() && HintImports(ctx, options, module)) return;
  }
}

void HintImportsOfType(QmCtx* ctx, const Options& options, QmsNode* node) {
  if (NeedsMore(ctx, node)) HintImports(ctx, options, {});
}

void HintImportsOfRecord(QmCtx* ctx, const Options& options, const QmErrNode* record) {
  const uint32_t tag = QM_GetErrorTag(record);
  const char* path = QM_GetErrorPath(record);
  QmsNode* node = path == nullptr ? nullptr : QM_CTX_FindDataNode(ctx, path);
  if (node != nullptr) {
    HintImportsOfType(ctx, options, node);
  } else if (tag == QM_ERR_TAG_UNKNOWN_ELEMENT || tag == QM_ERR_TAG_UNKNOWN_NAMESPACE) {
    HintImports(ctx, options, {});
  }
}
