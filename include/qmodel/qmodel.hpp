// SPDX-License-Identifier: BSD-3-Clause
#ifndef QMODEL_QMODEL_HPP
#define QMODEL_QMODEL_HPP

// The library for C++17 and later: a context that is owned, views of modules and nodes that
// loops run over, error records as values, and callbacks that are lambdas. Nothing throws
// but what the standard library throws when memory runs out. Views are as cheap as the
// pointers they hold, live as long as what they look at, and give the pointer back with
// get(). Threads, ownership and statuses are those of the C functions that a member names.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

namespace qmodel {

class Module;
class Node;

// A status of the library. True when it is success.
class Status {
 public:
  constexpr Status() = default;
  constexpr explicit Status(uint32_t code) : code_(code) {}
  constexpr uint32_t code() const { return code_; }
  constexpr bool ok() const { return code_ == 0; }
  constexpr explicit operator bool() const { return ok(); }
  // QM_AGENT_GetStatusText(); empty for a number that is none of the library's.
  std::string_view text() const {
    const char *text = QM_AGENT_GetStatusText(code_);
    return text == nullptr ? std::string_view() : std::string_view(text);
  }

 private:
  uint32_t code_ = 0;
};

namespace detail {

inline std::string_view View(const char *text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

// A forward range of views, each found from the one before: Step::Next(owner, view).
template <typename View, typename Step>
class Range {
 public:
  using Owner = typename Step::Owner;
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = View;
    using difference_type = std::ptrdiff_t;
    using pointer = const View *;
    using reference = View;

    iterator() = default;
    iterator(Owner *owner, View at) : owner_(owner), at_(at) {}
    View operator*() const { return at_; }
    const View *operator->() const { return &at_; }
    iterator &operator++() {
      at_ = View(Step::Next(owner_, at_.get()));
      return *this;
    }
    iterator operator++(int) {
      iterator old = *this;
      ++*this;
      return old;
    }
    friend bool operator==(const iterator &a, const iterator &b) {
      return a.at_.get() == b.at_.get();
    }
    friend bool operator!=(const iterator &a, const iterator &b) { return !(a == b); }

   private:
    Owner *owner_ = nullptr;
    View at_{};
  };

  explicit Range(Owner *owner) : owner_(owner) {}
  iterator begin() const { return iterator(owner_, View(Step::Next(owner_, nullptr))); }
  iterator end() const { return iterator(); }
  bool empty() const { return begin() == end(); }

 private:
  Owner *owner_;
};

struct ModuleStep {
  using Owner = QmCtx;
  static QmsModule *Next(QmCtx *ctx, const QmsModule *at) { return QM_CTX_GetNextModule(ctx, at); }
};
struct TopStep {
  using Owner = QmsModule;
  static QmsNode *Next(QmsModule *mod, const QmsNode *at) { return QM_MOD_GetNextTopNode(mod, at); }
};
struct ChildStep {
  using Owner = QmsNode;
  static QmsNode *Next(QmsNode *parent, const QmsNode *at) {
    return QM_NODE_GetNextChild(parent, at);
  }
};

// The callback that puts a text behind others.
inline uint32_t TakeText(const char *text, void *arg) {
  static_cast<std::vector<std::string_view> *>(arg)->push_back(View(text));
  return 0;
}

inline uint32_t TakePiece(const char *text, std::size_t length, void *arg) {
  static_cast<std::string *>(arg)->append(text, length);
  return 0;
}

inline uint32_t TakeChunk(const char *text, uint32_t length, void *arg) {
  static_cast<std::string *>(arg)->append(text, length);
  return 0;
}

}  // namespace detail

// How a walk goes on after a node.
enum class Walk { kOn, kSkipSubtree, kStop };

// A must of a node, with empty texts where it has no message or app-tag.
struct Must {
  std::string_view condition;
  std::string_view message;
  std::string_view appTag;
};

// A feature that a definition depends on.
struct IfFeature {
  std::string_view module;
  std::string_view feature;
  bool enabled = false;
};

// A schema node, or none.
class Node {
 public:
  using Children = detail::Range<Node, detail::ChildStep>;

  Node() = default;
  explicit Node(QmsNode *node) : node_(node) {}
  QmsNode *get() const { return node_; }
  explicit operator bool() const { return node_ != nullptr; }
  friend bool operator==(Node a, Node b) { return a.node_ == b.node_; }
  friend bool operator!=(Node a, Node b) { return a.node_ != b.node_; }

  std::string_view name() const { return detail::View(QM_NODE_GetNodeName(node_)); }
  inline Module module() const;
  QmsNodeKind kind() const { return static_cast<QmsNodeKind>(QM_NODE_GetNodeType(node_)); }
  std::string_view kindName() const { return detail::View(QM_AGENT_GetKindName(kind())); }
  Node parent() const { return Node(QM_NODE_GetParentNode(node_)); }
  Children children() const { return Children(node_); }
  std::string_view description() const { return detail::View(QM_NODE_GetDescription(node_)); }
  std::string_view units() const { return detail::View(QM_NODE_GetUnitsValueStr(node_)); }
  std::string_view when() const { return detail::View(QM_NODE_GetWhenCond(node_)); }
  QmtType *type() const { return QM_NODE_GetRealType(node_); }
  QmStatementStatus status() const {
    return static_cast<QmStatementStatus>(QM_NODE_GetStatus(node_));
  }
  bool isConfig() const { return QM_NODE_IsRwConfig(node_) != 0; }
  bool isMandatory() const { return QM_NODE_IsMandatory(node_) != 0; }
  bool isKey() const { return QM_NODE_IsKey(node_) != 0; }
  bool isEnabled() const { return QM_NODE_IsEnabled(node_) != 0; }
  bool isPresence() const { return QM_NODE_IsPresenceContainer(node_) != 0; }
  bool isOrderedByUser() const { return QM_NODE_IsOrderedByNode(node_) != 0; }
  // The leaf that a leafref leads to, at its end.
  Node leafrefTarget() const { return Node(QM_NODE_GetLeafrefTargetNode(node_, 1)); }

  // QM_NODE_ScanKey(): the key leaves of a list, in the order of the key statement.
  std::vector<Node> keys() const {
    std::vector<Node> found;
    static_cast<void>(QM_NODE_ScanKey(
        node_,
        [](QmsNode *node, uint32_t, void *arg) -> uint32_t {
          static_cast<std::vector<Node> *>(arg)->push_back(Node(node));
          return 0;
        },
        &found));
    return found;
  }

  // QM_NODE_ScanDefault().
  std::vector<std::string_view> defaults() const {
    std::vector<std::string_view> found;
    static_cast<void>(QM_NODE_ScanDefault(node_, detail::TakeText, &found));
    return found;
  }

  // QM_NODE_ScanMust().
  std::vector<Must> musts() const {
    std::vector<Must> found;
    static_cast<void>(QM_NODE_ScanMust(
        node_,
        [](const char *condition, const char *message, const char *appTag, void *arg) -> uint32_t {
          static_cast<std::vector<Must> *>(arg)->push_back(
              {detail::View(condition), detail::View(message), detail::View(appTag)});
          return 0;
        },
        &found));
    return found;
  }

  // QM_NODE_ScanIfFeature().
  std::vector<IfFeature> ifFeatures() const {
    std::vector<IfFeature> found;
    static_cast<void>(QM_NODE_ScanIfFeature(
        node_,
        [](const char *module, const char *feature, uint32_t enabled, void *arg) -> uint32_t {
          static_cast<std::vector<IfFeature> *>(arg)->push_back(
              {detail::View(module), detail::View(feature), enabled != 0});
          return 0;
        },
        &found));
    return found;
  }

  // QM_NODE_GetPath(); empty when the path is longer than 3,095 characters.
  std::string path() const {
    char buffer[3096];
    return QM_NODE_GetPath(node_, buffer, sizeof(buffer)) == 0 ? std::string(buffer)
                                                               : std::string();
  }

  // QM_NODE_ValidateValue() of a text.
  Status checkValue(const std::string &value) const {
    return Status(QM_NODE_ValidateValue(node_, QM_INPUT_TEXT, value.c_str()));
  }

  // Calls `visit(Node) -> Walk` for the node and everything below it, each once, in document
  // order. False when the walk was stopped.
  template <typename Visit>
  bool walk(Visit &&visit) const {
    if (node_ == nullptr) return true;
    Walk next = visit(*this);
    if (next == Walk::kStop) return false;
    Node at = *this;
    for (;;) {
      Node step(next == Walk::kSkipSubtree ? nullptr : QM_NODE_GetNextChild(at.node_, nullptr));
      while (!step && at != *this) {
        Node up = at.parent();
        step = Node(QM_NODE_GetNextChild(up.node_, at.node_));
        at = step ? at : up;
      }
      if (!step) return true;
      at = step;
      next = visit(at);
      if (next == Walk::kStop) return false;
    }
  }

 private:
  QmsNode *node_ = nullptr;
};

// A feature of a module.
class Feature {
 public:
  explicit Feature(const QmsFeature *feature) : feature_(feature) {}
  const QmsFeature *get() const { return feature_; }
  std::string_view name() const { return detail::View(QM_FEATURE_GetName(feature_)); }
  bool isEnabled() const { return QM_FEATURE_IsEnabled(feature_) != 0; }

 private:
  const QmsFeature *feature_;
};

// A module, or none.
class Module {
 public:
  using Nodes = detail::Range<Node, detail::TopStep>;

  Module() = default;
  explicit Module(QmsModule *module) : module_(module) {}
  QmsModule *get() const { return module_; }
  explicit operator bool() const { return module_ != nullptr; }
  friend bool operator==(Module a, Module b) { return a.module_ == b.module_; }
  friend bool operator!=(Module a, Module b) { return a.module_ != b.module_; }

  std::string_view name() const { return detail::View(QM_MOD_GetModuleName(module_)); }
  std::string_view ns() const { return detail::View(QM_MOD_GetModuleNs(module_)); }
  std::string_view prefix() const { return detail::View(QM_MOD_GetModulePrefix(module_)); }
  std::string_view revision() const { return detail::View(QM_MOD_GetRevision(module_)); }
  std::string_view description() const { return detail::View(QM_MOD_GetDescription(module_)); }
  // 1 or 11.
  uint32_t yangVersion() const { return QM_MOD_GetYangVersion(module_); }
  // The nodes at the top: data, then rpcs, then notifications.
  Nodes nodes() const { return Nodes(module_); }

  // QM_MOD_ScanAllFeature().
  std::vector<Feature> features() const {
    std::vector<Feature> found;
    static_cast<void>(QM_MOD_ScanAllFeature(
        module_,
        [](const QmsFeature *feature, void *arg) -> uint32_t {
          static_cast<std::vector<Feature> *>(arg)->push_back(Feature(feature));
          return 0;
        },
        &found));
    return found;
  }
  // QM_MOD_ScanImport(), QM_MOD_ScanInclude() and QM_MOD_ScanDeviatingModule().
  std::vector<std::string_view> imports() const { return Texts(QM_MOD_ScanImport); }
  std::vector<std::string_view> includes() const { return Texts(QM_MOD_ScanInclude); }
  std::vector<std::string_view> deviatedBy() const { return Texts(QM_MOD_ScanDeviatingModule); }

  Status enableFeature(const std::string &name) {
    return Status(QM_MOD_EnableFeature(module_, name.c_str()));
  }
  Status disableFeature(const std::string &name) {
    return Status(QM_MOD_DisableFeature(module_, name.c_str()));
  }

  // QM_MOD_PrintModelTree(); nothing when the printing failed.
  std::optional<std::string> tree() const {
    std::string text;
    if (QM_MOD_PrintModelTree(module_, detail::TakeChunk, &text) != 0) return std::nullopt;
    return text;
  }

 private:
  template <typename Scan>
  std::vector<std::string_view> Texts(Scan scan) const {
    std::vector<std::string_view> found;
    static_cast<void>(scan(module_, detail::TakeText, &found));
    return found;
  }

  QmsModule *module_ = nullptr;
};

inline Module Node::module() const {
  return Module(QM_NODE_GetModule(node_));
}

// An error record as a value; empty texts where the record has none.
struct Error {
  QmErrType type = QM_ERR_TYPE_APPLICATION;
  QmErrTag tag = QM_ERR_TAG_OPERATION_FAILED;
  std::string appTag;
  std::string path;
  std::string message;
  std::string badElement;
  std::string badAttribute;
  std::string xml;  // the <rpc-error> that QM_AGENT_WriteRecord() writes

  std::string_view tagName() const { return detail::View(QM_AGENT_GetTagName(tag)); }

  static Error From(const QmErrNode *record, QmCtx *ctx) {
    const auto text = [record](uint32_t field) {
      return std::string(detail::View(QM_AGENT_GetRecordText(record, field)));
    };
    Error error;
    error.type = static_cast<QmErrType>(QM_GetErrorType(record));
    error.tag = static_cast<QmErrTag>(QM_GetErrorTag(record));
    error.appTag = text(QM_AGENT_FIELD_APP_TAG);
    error.path = text(QM_AGENT_FIELD_PATH);
    error.message = text(QM_AGENT_FIELD_MESSAGE);
    error.badElement = text(QM_AGENT_FIELD_BAD_ELEMENT);
    error.badAttribute = text(QM_AGENT_FIELD_BAD_ATTRIBUTE);
    static_cast<void>(QM_AGENT_WriteRecord(record, ctx, 0, detail::TakePiece, &error.xml));
    return error;
  }
};

// The outcome of a validation. True for a valid message, and for nothing else.
struct Verdict {
  QmAgentVerdict code = QM_AGENT_NO_MEMORY;
  std::optional<Error> error;  // of an invalid message
  std::string completed;       // a valid one as text, where it was given as text

  explicit operator bool() const { return code == QM_AGENT_VALID; }
};

// A load error that was recorded.
struct LoadError {
  std::string module;
  std::string file;  // empty when no file was open
  std::string message;
};

// A context with its modules. Moves, and does not copy.
class Context {
 public:
  using Modules = detail::Range<Module, detail::ModuleStep>;

  // Nothing when there is no memory. `flags` are bits of QmLoadFlag.
  static std::optional<Context> Create(uint32_t flags = 0) {
    QmCtx *ctx = QM_CTX_Create(flags);
    if (ctx == nullptr) return std::nullopt;
    return Context(ctx);
  }
  // Takes over a context of the client's.
  explicit Context(QmCtx *ctx) : ctx_(ctx) {}
  Context(Context &&) = default;
  // Swaps: the context that goes still calls its function for events while it goes.
  Context &operator=(Context &&other) noexcept {
    events_.swap(other.events_);
    ctx_.swap(other.ctx_);
    return *this;
  }

  QmCtx *get() const { return ctx_.get(); }
  // Hands the context over to the caller, who deletes it. Events are removed before.
  QmCtx *release() {
    if (events_ != nullptr) QM_AGENT_SetEvents(get(), nullptr, nullptr);
    events_.reset();
    return ctx_.release();
  }

  Status addSearchDir(const std::string &dir) {
    return Status(QM_CTX_SetSearchDir(get(), dir.c_str()));
  }
  Status load(const std::string &module) {
    return Status(QM_CTX_LoadModule(get(), module.c_str()));
  }
  Status loadText(const std::string &yin) { return Status(QM_CTX_LoadMemory(get(), yin.c_str())); }
  Status unload(const std::string &module) {
    return Status(QM_CTX_UnloadModule(get(), module.c_str()));
  }
  Status keepPatterns(bool on) { return Status(QM_CTX_SetKeepPatterns(get(), on ? 1 : 0)); }

  std::vector<LoadError> loadErrors() const {
    std::vector<LoadError> found;
    static_cast<void>(QM_CTX_ScanAllSchemaLoadFail(
        get(),
        [](const char *module, const char *file, const char *message, void *arg) -> uint32_t {
          static_cast<std::vector<LoadError> *>(arg)->push_back(
              {std::string(detail::View(module)), std::string(detail::View(file)),
               std::string(detail::View(message))});
          return 0;
        },
        &found));
    return found;
  }

  Modules modules() const { return Modules(get()); }
  Module module(const std::string &name) const {
    return Module(QM_CTX_GetModuleByModName(get(), name.c_str()));
  }
  Module moduleByNamespace(const std::string &ns) const {
    return Module(QM_CTX_GetModuleByModNs(get(), ns.c_str()));
  }
  // By a data path, "/m:a/b", and by a schema node identifier, "/m:a/m:b".
  Node dataNode(const std::string &path) const {
    return Node(QM_CTX_FindDataNode(get(), path.c_str()));
  }
  Node schemaNode(const std::string &path) const {
    return Node(QM_CTX_GetTargetNode(get(), path.c_str(), nullptr));
  }

  // QM_AGENT_ValidateRequest(): the element of a tree, whose defaults are completed.
  // `added(xmlNode*)` is called for each topmost default.
  template <typename Added>
  Verdict validateRequest(xmlNode *request, Added &&added) const {
    using Function = std::remove_reference_t<Added>;
    QmErrNode *record = nullptr;
    const auto call = [](xmlNode *node, void *arg) { (*static_cast<Function *>(arg))(node); };
    const uint32_t code = QM_AGENT_ValidateRequest(
        get(), request, call, const_cast<void *>(static_cast<const void *>(&added)), &record);
    return Take(code, record);
  }
  Verdict validateRequest(xmlNode *request) const {
    QmErrNode *record = nullptr;
    const uint32_t code = QM_AGENT_ValidateRequest(get(), request, nullptr, nullptr, &record);
    return Take(code, record);
  }
  // QM_AGENT_ValidateRequestText(): the completed request stands in the verdict.
  Verdict validateRequest(std::string_view text, const QmAgentLimits *limits = nullptr) const {
    return ValidateText(QM_AGENT_ValidateRequestText, text, limits);
  }
  Verdict validateNotification(xmlNode *notification) const {
    QmErrNode *record = nullptr;
    const uint32_t code = QM_AGENT_ValidateNotification(get(), notification, &record);
    return Take(code, record);
  }
  Verdict validateNotification(std::string_view text, const QmAgentLimits *limits = nullptr) const {
    return ValidateText(QM_AGENT_ValidateNotificationText, text, limits);
  }

  // Calls `func(const QmAgentEvent&)` for each event; an empty function ends that.
  void onEvent(std::function<void(const QmAgentEvent &)> func) {
    if (!func) {
      QM_AGENT_SetEvents(get(), nullptr, nullptr);
      events_.reset();
      return;
    }
    auto kept = std::make_unique<std::function<void(const QmAgentEvent &)>>(std::move(func));
    const auto call = [](QmCtx *, const QmAgentEvent *event, void *arg) {
      (*static_cast<std::function<void(const QmAgentEvent &)> *>(arg))(*event);
    };
    QM_AGENT_SetEvents(get(), call, kept.get());
    events_ = std::move(kept);
  }

 private:
  struct Delete {
    void operator()(QmCtx *ctx) const { QM_CTX_Delete(ctx); }
  };

  Verdict Take(uint32_t code, QmErrNode *record) const {
    const std::unique_ptr<QmErrNode, void (*)(QmErrNode *)> owned(
        record, [](QmErrNode *error) { QM_FreeErrNode(error); });
    Verdict verdict;
    verdict.code = static_cast<QmAgentVerdict>(code);
    if (record != nullptr) verdict.error = Error::From(record, get());
    return verdict;
  }

  template <typename Validate>
  Verdict ValidateText(Validate validate, std::string_view text,
                       const QmAgentLimits *limits) const {
    QmErrNode *record = nullptr;
    std::string completed;
    const uint32_t code = validate(get(), text.data() == nullptr ? "" : text.data(), text.size(),
                                   limits, detail::TakePiece, &completed, &record);
    Verdict verdict = Take(code, record);
    verdict.completed = std::move(completed);
    return verdict;
  }

  // Before the context, which still calls it while it is deleted.
  std::unique_ptr<std::function<void(const QmAgentEvent &)>> events_;
  std::unique_ptr<QmCtx, Delete> ctx_;
};

}  // namespace qmodel

#endif
