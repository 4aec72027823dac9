// SPDX-License-Identifier: BSD-3-Clause
#include "tests/differential/context_change.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <qmodel/schema.h>

#include "context/xml_tree.h"
#include "schema/module_nodes.h"
#include "schema/module_registry.h"
#include "schema/node_walk.h"
#include "schema/records.h"

namespace context_change {
namespace {

constexpr char kModule[] = "differential-augment";

// The client must not hear of what is taken back.
class Deaf {
 public:
  explicit Deaf(QmCtx* ctx) : ctx_(ctx), kept_(*ctx) {
    ctx->pridataFreeFunc = nullptr;
    ctx->firstAugChildRelinkFunc = nullptr;
    ctx->beforeDeviateNotSupportFunc = nullptr;
    ctx->beforeDeviateExtInstFunc = nullptr;
    ctx->reloadModuleCbFunc = nullptr;
    ctx->extInstFilterCbFunc = nullptr;
    ctx->eventFunc = nullptr;
  }
  ~Deaf() {
    ctx_->pridataFreeFunc = kept_.pridataFreeFunc;
    ctx_->firstAugChildRelinkFunc = kept_.firstAugChildRelinkFunc;
    ctx_->beforeDeviateNotSupportFunc = kept_.beforeDeviateNotSupportFunc;
    ctx_->beforeDeviateExtInstFunc = kept_.beforeDeviateExtInstFunc;
    ctx_->reloadModuleCbFunc = kept_.reloadModuleCbFunc;
    ctx_->extInstFilterCbFunc = kept_.extInstFilterCbFunc;
    ctx_->eventFunc = kept_.eventFunc;
  }
  Deaf(const Deaf&) = delete;
  Deaf& operator=(const Deaf&) = delete;

 private:
  QmCtx* ctx_;
  QmCtx kept_;
};

void SwitchFeatures(QmsModule* module, const std::function<void(const char*)>& visit) {
  constexpr uint32_t kMostFeatures = 8;
  for (uint32_t i = 0; i < module->featureCount && i < kMostFeatures; ++i) {
    const char* name = module->features[i].name;
    const bool wasOn = QM_CTX_IsModFeatureEnable(module->ctx, module->name, name) == 1;
    static_cast<void>(wasOn ? QM_MOD_DisableFeature(module, name)
                            : QM_MOD_EnableFeature(module, name));
    visit(name);
    static_cast<void>(wasOn ? QM_MOD_EnableFeature(module, name)
                            : QM_MOD_DisableFeature(module, name));
  }
}

QmsNode* CalledNode(QmCtx* ctx, const xmlNode* root) {
  QmsModule* module = QM_CTX_GetModuleByModNs(ctx, QM_XML_GetXmlNodeDefaultNs(root));
  return module == nullptr ? nullptr : QMS_MOD_FindTopLevelSchemaNode(module, XmlText(root->name));
}

// What the message calls, as the target of an augment; empty where it has no place for one
// that would leave nothing behind.
std::string TargetPath(QmCtx* ctx, const xmlNode* root) {
  QmsNode* node = CalledNode(ctx, root);
  if (node == nullptr) return "";
  const std::string path = "/t:" + std::string(node->name);
  if (node->kind == QMS_NODE_CONTAINER || node->kind == QMS_NODE_LIST ||
      node->kind == QMS_NODE_NOTIFICATION)
    return path;
  // An input that is made for an augment stays.
  if (node->kind != QMS_NODE_RPC) return "";
  return QMS_NODE_FindChildNodeByName(node, nullptr, "input") != nullptr ? path + "/t:input" : "";
}

std::string AugmentingModule(QmCtx* ctx, const xmlNode* root) {
  const std::string target = TargetPath(ctx, root);
  if (target.empty()) return "";
  const std::string ns = QM_XML_GetXmlNodeDefaultNs(root);
  const std::string name = QM_CTX_GetModuleByModNs(ctx, ns.c_str())->name;
  if ((ns + name + target).find_first_of("'<&") != std::string::npos) return "";
  return std::string("<module name='") + kModule +
         "' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:t='" + ns +
         "'><namespace uri='urn:differential-augment'/><prefix value='d'/><import module='" + name +
         "'><prefix value='t'/></import><feature name='off'/><augment target-node='" + target +
         "'><leaf name='with-default'><type name='string'/><default value='x'/></leaf>"
         "<leaf name='without'><type name='string'/></leaf>"
         "<leaf name='switched-off'><if-feature name='off'/><type name='string'/>"
         "<default value='y'/></leaf></augment></module>";
}

void LoadAndUnload(QmCtx* ctx, const xmlNode* root, const std::function<void(const char*)>& visit) {
  const std::string text = AugmentingModule(ctx, root);
  if (text.empty() || QM_CTX_GetModuleByModName(ctx, kModule) != nullptr) return;
  if (QM_CTX_LoadMemory(ctx, text.c_str()) == 0) visit("a module is loaded");
  if (QM_CTX_UnloadModule(ctx, kModule) != 0) {
    std::fprintf(stderr, "the module of the differential test is not unloaded\n");
    std::abort();
  }
}

}  // namespace

void ForEach(QmCtx* ctx, const xmlNode* root, const std::function<void(const char*)>& visit) {
  const Deaf deaf(ctx);
  for (void* record = RTK_AVL3_First(&ctx->modByName); record != nullptr;
       record = RTK_AVL3_Next(&ctx->modByName, record))
    SwitchFeatures(static_cast<QmsModule*>(record), visit);
  LoadAndUnload(ctx, root, visit);
}

size_t SizeOfSchema(QmCtx* ctx, const xmlNode* root, size_t most) {
  const QmsNode* top = CalledNode(ctx, root);
  size_t size = 1;
  for (const QmsNode* node = top; node != nullptr && size < most; ++size) {
    if (node->firstChild != nullptr) {
      node = node->firstChild;
      continue;
    }
    while (node != top && node->next == nullptr) node = node->parent;
    if (node == top) break;
    node = node->next;
  }
  return size;
}

}  // namespace context_change
