// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/conditions/condition_path.h"

#include <algorithm>
#include <utility>

#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"

// A path is walked step by step, in the text and in the schema at once. Containers without
// presence exist for XPath even when they are empty, but not for the library: a step into
// one and back is left out.

namespace compiler {
namespace {

class Walk {
 public:
  Walk(const Xpath& xpath, const ConditionPlace& place, const PathBase& base)
      : xpath_(xpath), place_(place), base_(base) {
    if (place.schema != nullptr && place.context != nullptr) {
      message_ = DataSchema::MessageOf(place.context);
    }
  }

  PlainPath Run(uint32_t index) {
    index = WithoutParentheses(xpath_, index);
    out_.plain = Begin(index);
    if (!out_.plain) return std::move(out_);
    Finish();
    return std::move(out_);
  }

 private:
  bool Refuse(ConditionIssue issue, size_t offset, std::string message) {
    out_.remark = {issue, offset, std::move(message)};
    return false;
  }

  std::string Quoted(TextSpan span) const { return "\"" + std::string(xpath_.Of(span)) + "\""; }

  bool Begin(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    if (node.kind == XpathKind::kCall) return BeginWithCall(index);
    if (node.kind != XpathKind::kPath) {
      return Refuse(ConditionIssue::kFails, node.span.begin,
                    "the library evaluates no " + Quoted(node.span));
    }
    if (!node.operands.empty()) {
      out_.changed = true;
      if (!Begin(WithoutParentheses(xpath_, node.operands[0]))) return false;
    } else if (node.absolute) {
      BeginAt(nullptr, true, {});
      out_.absolute = true;
    } else {
      BeginAt(base_.node, base_.known, base_.items);
      out_.absolute = base_.absolute;
      out_.changed = out_.changed || !base_.outermost;
    }
    if (!Predicates(node.predicates, node.span)) return false;
    for (const XpathStep& step : node.steps) {
      if (!Step(node, step)) return false;
    }
    return true;
  }

  void BeginAt(DataNode* node, bool known, std::vector<PathItem> items) {
    current_ = node;
    known_ = known && place_.schema != nullptr;
    out_.items = std::move(items);
  }

  bool BeginWithCall(uint32_t index) {
    const XpathNode& call = xpath_.At(index);
    out_.changed = true;
    if (IsCall(xpath_, index, "current")) {
      BeginAt(place_.context, place_.context != nullptr, {});
      return true;
    }
    if (IsCall(xpath_, index, "deref") && call.operands.size() == 1) return Deref(call);
    return Refuse(ConditionIssue::kFails, call.span.begin,
                  "the library has no function " + Quoted(call.name));
  }

  bool Deref(const XpathNode& call) {
    PlainPath leaf = ResolvePath(xpath_, place_, base_, call.operands[0]);
    NodePath path;
    DataModule* words = nullptr;
    if (!leaf.plain || !leaf.predicates.empty() || leaf.several || leaf.outside ||
        leaf.lacksDefault || !leaf.known || leaf.target == nullptr ||
        !LeafrefOf(leaf.target, &path, &words)) {
      return Refuse(ConditionIssue::kFails, call.span.begin,
                    "the library has no function \"deref\"");
    }
    BeginAt(leaf.target, true, leaf.items);
    out_.absolute = leaf.absolute;
    // The leaf and what it points to are there, or the path leads nowhere.
    sure_ = out_.items.size();
    for (uint32_t i = 0; i < path.ups; ++i) Up();
    for (const PathStep& step : path.steps) {
      // The text of the path is not that of the condition.
      if (current_ == nullptr || !Enter(step, path, words)) {
        return Refuse(ConditionIssue::kFails, call.span.begin,
                      "the library has no function \"deref\"");
      }
    }
    if (Several()) {
      return Refuse(ConditionIssue::kFails, call.span.begin,
                    "the library has no function \"deref\"");
    }
    sure_ = out_.items.size();
    out_.inside = leaf.inside || IsDecidedOn(leaf.target) || IsDecidedOn(current_);
    if (!leaf.certain) out_.required.push_back(std::move(leaf));
    return true;
  }

  bool LeafrefOf(DataNode* leaf, NodePath* path, DataModule** words) const {
    const xmlNode* type = place_.schema->TypeOf(leaf, words);
    const xmlNode* statement = type == nullptr ? nullptr : YinChild(type, Keyword::kPath);
    const xmlNode* require = type == nullptr ? nullptr : YinChild(type, Keyword::kRequireInstance);
    XpathError error;
    if (statement == nullptr || (require != nullptr && YinArgument(require) == "false")) {
      return false;
    }
    if (!ParseLeafrefPath(YinArgument(statement), path, &error)) return false;
    const bool hasPredicates =
        std::any_of(path->steps.begin(), path->steps.end(),
                    [](const PathStep& step) { return !step.predicates.empty(); });
    return !path->absolute && !path->throughDeref && !hasPredicates;
  }

  // A step of a leafref path, written with the names of the condition's module.
  bool Enter(const PathStep& step, const NodePath& path, DataModule* words) {
    const std::string_view prefix = path.Of(step.prefix);
    DataModule* wanted = prefix.empty() ? nullptr : place_.schema->OfPrefix(words, prefix);
    DataNode* child = place_.schema->DataChild(current_, wanted, path.Of(step.name));
    if (child == nullptr) return false;
    std::string_view written;
    if (child->module != place_.words) {
      const auto& imports = place_.words->imports;
      const auto import = std::find_if(imports.begin(), imports.end(), [&](const auto& one) {
        return one.second == child->module->name;
      });
      if (import == imports.end()) return false;
      written = import->first;
    }
    EnterChild({false, written, child->name, child});
    return true;
  }

  bool Step(const XpathNode& path, const XpathStep& step) {
    if (step.descendants) {
      const bool first = &step == &path.steps.front() && path.operands.empty();
      return Refuse(first ? ConditionIssue::kFails : ConditionIssue::kOther, step.span.begin,
                    first ? "the library evaluates no path that begins with \"//\""
                          : "the library takes \"//\" for \"/\"");
    }
    const bool isNode = step.test == XpathTest::kNode;
    if (isNode && step.axis == XpathAxis::kSelf) {
      out_.changed = out_.changed || !step.isShort;
    } else if (isNode && step.axis == XpathAxis::kParent) {
      out_.changed = out_.changed || !step.isShort;
      Up();
    } else if (step.axis == XpathAxis::kChild && step.test == XpathTest::kName) {
      Name(step);
    } else {
      return RefuseStep(step);
    }
    return Predicates(step.predicates, path.span);
  }

  bool RefuseStep(const XpathStep& step) {
    const bool wildcard = step.axis == XpathAxis::kChild && (step.test == XpathTest::kAnyName ||
                                                             step.test == XpathTest::kAnyOfPrefix);
    if (wildcard) {
      return Refuse(ConditionIssue::kOther, step.span.begin,
                    "the library takes " + Quoted(step.span) + " for a name, which no node has");
    }
    return Refuse(ConditionIssue::kFails, step.span.begin,
                  "the library knows no step " + Quoted(step.span));
  }

  void Name(const XpathStep& step) {
    out_.changed = out_.changed ||
                   step.span.begin != (step.prefix.empty() ? step.name.begin : step.prefix.begin);
    PathItem item = {false, xpath_.Of(step.prefix), xpath_.Of(step.name), nullptr};
    if (!known_) {
      out_.items.push_back(item);
      return;
    }
    DataSchema& schema = *place_.schema;
    DataModule* module = schema.OfPrefix(place_.words, item.prefix);
    if (module == nullptr) {  // not among what is known
      known_ = false;
      out_.items.push_back(item);
      return;
    }
    item.node = schema.DataChild(current_, module, item.name);
    if (item.node == nullptr && item.prefix.empty()) {
      item.node = schema.DataChild(current_, nullptr, item.name);
    }
    const bool another =
        item.node == nullptr && schema.DataChild(current_, nullptr, item.name) != nullptr;
    out_.namesake = out_.namesake || another ||
                    (item.node != nullptr && schema.HasNamesake(current_, item.node, place_.words));
    EnterChild(item);
  }

  void EnterChild(const PathItem& item) {
    DataNode* node = item.node;
    CheckInside(node, item.name);
    out_.items.push_back(item);
    if (node == nullptr) {  // a name that no data has: it leads nowhere, for everybody
      nowhere_ = true;
      known_ = false;
      return;
    }
    if (node != place_.decides && IsDecidedOn(node)) out_.inside = true;
    const Presence presence = PresenceOf(place_.schema, node);
    const bool byDefault = presence.byDefault && IsRequest();
    if (Several() && !(presence.inTree && (presence.inMessage || byDefault))) {
      out_.existsByFirst = false;
    }
    NoteDefault(node);
    if (!presence.inTree) certain_ = false;
    entered_.push_back(node);
    current_ = node;
  }

  bool IsRequest() const {
    return message_ != nullptr && message_->keyword != Keyword::kNotification;
  }

  // Defaults that XPath sees and the library does not.
  void NoteDefault(DataNode* node) {
    const bool isList = node->keyword == Keyword::kLeafList;
    const bool isLeaf = node->keyword == Keyword::kLeaf;
    if (!isList && (!isLeaf || IsRequest() || message_ == nullptr)) return;
    const Presence presence = PresenceOf(place_.schema, node);
    if (presence.inMessage || !place_.schema->HasDefault(node)) return;
    out_.lacksDefault = true;
  }

  // Out of the message: above the operation or notification. Around an action stand only
  // the keys of the entries that it lies in.
  void CheckInside(DataNode* child, std::string_view) {
    if (message_ == nullptr) return;
    if (current_ == nullptr) {
      if (child != message_ || message_->parent != nullptr) out_.outside = true;
      return;
    }
    const bool above = Contains(current_, message_) && current_ != message_;
    if (above && (child == nullptr || !child->isKey)) out_.outside = true;
  }

  static bool Contains(const DataNode* ancestor, const DataNode* node) {
    while (node != nullptr && node != ancestor) node = DataSchema::DataParent(node);
    return node != nullptr;
  }

  void Up() {
    const bool back = sure_ > 0 && sure_ == out_.items.size() && !out_.items.back().up;
    if (back) {
      out_.items.pop_back();
      --sure_;
    } else {
      out_.items.push_back({true, {}, {}, nullptr});
    }
    if (!known_) return;
    // The library never climbs to the root.
    if (current_ == nullptr || DataSchema::DataParent(current_) == nullptr) out_.outside = true;
    if (!entered_.empty()) {
      if (!IsSure(entered_.back())) certain_ = false;
      entered_.pop_back();
    }
    if (current_ != nullptr) current_ = DataSchema::DataParent(current_);
  }

  // There for the library too.
  bool IsSure(DataNode* node) const {
    const Presence presence = PresenceOf(place_.schema, node);
    return presence.inMessage || (presence.byDefault && IsRequest()) ||
           (presence.inTree && IsPlainContainer(node));
  }

  bool Several() const {
    return std::any_of(entered_.begin(), entered_.end(), [](DataNode* node) {
      return node->keyword == Keyword::kList || node->keyword == Keyword::kLeafList;
    });
  }

  bool Predicates(const std::vector<uint32_t>& predicates, TextSpan path) {
    for (const uint32_t predicate : predicates) {
      if (!Predicate(predicate, path)) return false;
    }
    return true;
  }

  bool Predicate(uint32_t predicate, TextSpan path) {
    const TextSpan span = xpath_.At(predicate).span;
    out_.changed = true;
    if (!(known_ || nowhere_) || Several() || SpeaksOfPosition(predicate)) {
      return Refuse(ConditionIssue::kPredicate, span.begin,
                    "the library passes over \"[" + std::string(xpath_.Of(span)) + "]\" in " +
                        Quoted(path) + " and takes the first entry");
    }
    if (xpath_.Of(span) == "1") return true;
    out_.predicates.push_back({predicate, {out_.absolute, out_.items, current_, known_, false}});
    return true;
  }

  bool SpeaksOfPosition(uint32_t predicate) const {
    if (TypeOf(xpath_, predicate) == XpathType::kNumber) {
      return xpath_.Of(xpath_.At(predicate).span) != "1";
    }
    const TextSpan span = xpath_.At(predicate).span;
    return std::any_of(xpath_.nodes.begin(), xpath_.nodes.end(), [&](const XpathNode& node) {
      const bool inside = node.span.begin >= span.begin && node.span.end <= span.end;
      return inside && node.kind == XpathKind::kCall &&
             (xpath_.Of(node.name) == "position" || xpath_.Of(node.name) == "last");
    });
  }

  void Finish() {
    out_.target = known_ ? current_ : nullptr;
    out_.known = known_ || nowhere_;
    out_.several = Several();
    out_.mayLeave = known_ && MayLeave();
    if (nowhere_) certain_ = false;
    out_.certain = out_.known && certain_ && !out_.several && !out_.outside && !out_.lacksDefault;
    DropPlainContainers();
    if (!entered_.empty() && !nowhere_ && !IsSure(entered_.back())) out_.certain = false;
  }

  // A `when` sees an empty node in the place of the one that it decides on, and nothing of
  // what its choice or case holds (RFC 7950, section 7.21.5).
  bool IsDecidedOn(const DataNode* node) const {
    if (!place_.isWhen || place_.decides == nullptr) return false;
    while (node != nullptr && node != place_.decides) node = node->parent;
    return node != nullptr;
  }

  // The library adds a default whatever its `when` says, and takes it away in its turn, in
  // the order of the tree; until then others see it. What it does not add itself is
  // refused when its `when` is false. Conditions of `must` come afterwards.
  bool MayLeave() const {
    if (!place_.isWhen || !IsRequest() || entered_.empty()) return false;
    const DataNode* last = entered_.back();
    if (!IsPlainContainer(last) && !place_.schema->HasDefault(last)) return false;
    for (auto node = entered_.rbegin(); node != entered_.rend(); ++node) {
      if (*node != last && !IsPlainContainer(*node)) return false;
      if (LeavesLater(*node)) return true;
    }
    return false;
  }

  bool LeavesLater(const DataNode* node) const {
    const DataNode* end = DataSchema::DataParent(node);
    bool hasWhen = false;
    for (const DataNode* one = node; one != end; one = one->parent)
      hasWhen = hasWhen || (one->hasWhen && !IsAskedForToo(one));
    return hasWhen && (place_.decides == nullptr || !StandsBefore(node, place_.decides));
  }

  // The condition holds only where that of the sibling does, as those of one `uses`.
  bool IsAskedForToo(const DataNode* node) const {
    const xmlNode* when = YinChild(node->statement, Keyword::kWhen);
    if (when == nullptr || place_.decides == nullptr || node->module != place_.decides->module ||
        !IsDataNode(node->keyword) || !IsDataNode(place_.decides->keyword) ||
        DataSchema::DataParent(node) != DataSchema::DataParent(place_.decides))
      return false;
    const std::string_view text = YinArgument(when);
    const uint32_t root = WithoutParentheses(xpath_, xpath_.root);
    const XpathNode& all = xpath_.At(root);
    return all.kind == XpathKind::kAnd &&
           std::any_of(all.operands.begin(), all.operands.end(), [&](uint32_t operand) {
             return xpath_.Of(xpath_.At(WithoutParentheses(xpath_, operand)).span) == text;
           });
  }

  void DropPlainContainers() {
    std::vector<PathItem> kept;
    for (const PathItem& item : out_.items) {
      const bool back = item.up && !kept.empty() && !kept.back().up &&
                        kept.back().node != nullptr && IsPlainContainer(kept.back().node) &&
                        !kept.back().node->conditional &&
                        PresenceOf(place_.schema, kept.back().node).inTree;
      if (back) {
        kept.pop_back();
        out_.changed = true;
      } else {
        kept.push_back(item);
      }
    }
    out_.items = std::move(kept);
  }

  const Xpath& xpath_;
  const ConditionPlace& place_;
  const PathBase& base_;
  const DataNode* message_ = nullptr;
  PlainPath out_;
  DataNode* current_ = nullptr;
  bool known_ = false;
  bool nowhere_ = false;
  bool certain_ = true;
  size_t sure_ = 0;  // so many of the items are there if the path leads anywhere
  std::vector<DataNode*> entered_;
};

}  // namespace

uint32_t WithoutParentheses(const Xpath& xpath, uint32_t node) {
  while (xpath.At(node).kind == XpathKind::kGroup) node = xpath.At(node).operands[0];
  return node;
}

bool IsCall(const Xpath& xpath, uint32_t node, std::string_view function) {
  return xpath.At(node).kind == XpathKind::kCall && xpath.Of(xpath.At(node).name) == function;
}

PlainPath ResolvePath(const Xpath& xpath, const ConditionPlace& place, const PathBase& base,
                      uint32_t index) {
  return Walk(xpath, place, base).Run(index);
}

std::string PathText(const PlainPath& path) {
  std::string text;
  for (const PathItem& item : path.items) {
    if (!text.empty() || path.absolute) text += '/';
    if (item.up) {
      text += "..";
      continue;
    }
    if (!item.prefix.empty()) (text += item.prefix) += ':';
    text += item.name;
  }
  if (!text.empty()) return text;
  return path.absolute ? "/" : ".";
}

std::string PathKey(const PlainPath& path) {
  std::string key = path.absolute ? "/" : "";
  for (const PathItem& item : path.items) {
    key += item.up ? ".." : std::string(item.name);
    key += '/';
  }
  return key;
}

}  // namespace compiler
