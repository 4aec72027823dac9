// SPDX-License-Identifier: BSD-3-Clause
// A list that has lost its key could have no entry, and the loader refuses it; one without
// any node is no list of YANG (RFC 7950, section 7.8). So both leave, and say so. A
// container, choice, case or notification may be empty. An augment without nodes goes
// silently: all that it had depends on what is off. One list, augment or deviation may
// take the next along, so the trees are looked through in rounds until nothing leaves.
#include "compiler/spelling/departures.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/child_index.h"
#include "compiler/spelling/data_template.h"
#include "compiler/spelling/target.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

std::string Named(const xmlNode* node) {
  const char* name = ArgumentOf(node);
  return std::string(NameOf(node)) + " \"" + (name == nullptr ? "" : name) + "\"";
}

// What else stands in an input, output or augment that has lost its nodes goes with them.
void LeaveRest(Output* out, xmlNode* parent) {
  for (xmlNode* s = FirstChild(parent); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    const bool isMust = Is(s, Keyword::kMust);
    if (isMust || Is(s, Keyword::kNone))
      Lose(out, s,
           std::string(isMust ? "the must in " : "an extension in ") + NameOf(parent) +
               " has no place in the output, since every node there depends on a feature that is "
               "off");
    TakeOut(s);
    out->removed.emplace_back(s);
    s = next;
  }
}

// An input or output that no node is left of is no longer written, but the operation has
// it all the same: paths of others may lead there.
void LeaveUnwritten(Output* out, xmlNode* block) {
  LeaveRest(out, block);
  xmlNode* operation = ParentOf(block);
  ForgetChildren(out->all, operation);
  TakeOut(block);
  LooseStatement& implied = out->implied[{operation, KeywordOf(block)}];
  if (implied != nullptr) out->removed.push_back(std::move(implied));
  implied.reset(block);
  block->parent = operation;
}

// A choice does not keep the name of a default case that has gone. Of one without default
// many may go.
void ForgetDefault(Output* out, const xmlNode* choice, const xmlNode* node) {
  if (out->withoutDefault.count(choice) != 0) return;
  xmlNode* byDefault = FirstChild(choice, Keyword::kDefault);
  if (byDefault == nullptr) out->withoutDefault.insert(choice);
  if (byDefault != nullptr && ArgumentOf(node) != nullptr && ArgumentOf(byDefault) != nullptr &&
      SplitReference(ArgumentOf(byDefault)).name == ArgumentOf(node))
    RemoveStatement(byDefault);
}

bool HoldsNode(const xmlNode* parent) {
  for (const xmlNode* s = FirstChild(parent); s != nullptr; s = NextSibling(s)) {
    if (IsSchemaNode(KeywordOf(s))) return true;
  }
  return false;
}

// The name of a key leaf that has left; empty: all are there.
std::string LostKey(const Output* out, const xmlNode* list) {
  const char* key = ArgumentOfChild(list, Keyword::kKey);
  for (const std::string_view one : SplitNames(key == nullptr ? "" : key)) {
    const std::string_view name = SplitReference(one).name;
    if (FindSchemaChild(out->all, list, name) == nullptr && HasLeft(out, list, name))
      return std::string(name);
  }
  return {};
}

// The statement below the root that the node stands in.
const xmlNode* TopOf(const xmlNode* node) {
  while (ParentOf(node) != nullptr && ParentOf(ParentOf(node)) != nullptr) node = ParentOf(node);
  return node;
}

struct OwnedAugment {
  Output* output = nullptr;
  WrittenAugment* augment = nullptr;
};

class Departures {
 public:
  explicit Departures(const std::vector<Output*>& outputs) : outputs_(outputs) {
    for (Output* out : outputs) {
      for (WrittenAugment& augment : out->augments) {
        all_.push_back({out, &augment});
        const FoundNode target = TargetOf(out->all, &augment);
        if (target.node == nullptr) continue;
        if (Is(TopOf(target.node), Keyword::kAugment))
          within_[TopOf(target.node)].push_back(all_.back());
        into_[target.node].push_back(augment.node);
        targets_.emplace(augment.node, target);
      }
    }
  }

  void Follow() {
    do {
      changed_ = false;
      for (const OwnedAugment& one : all_) LeaveWithTarget(one);
      for (Output* out : outputs_) SettleLessened(out);
    } while (changed_);
    ReportMandatoryChoices();
    for (Output* out : outputs_) ForgetGone(out);
  }

 private:
  // What an augment led to has less.
  void Leave(Output* out, xmlNode* node) {
    LeaveTree(out, node);
    changed_ = true;
    const auto target = targets_.find(node);
    if (target != targets_.end()) target->second.output->lessened.push_back(target->second.node);
  }

  bool IsAugmented(const xmlNode* node) const {
    const auto augments = into_.find(node);
    return augments != into_.end() &&
           std::any_of(augments->second.begin(), augments->second.end(),
                       [](const xmlNode* augment) { return ParentOf(augment) != nullptr; });
  }

  // With it go those that lead to what it brought.
  void LeaveWithTarget(const OwnedAugment& one) {
    std::vector<OwnedAugment> left = {one};
    while (!left.empty()) {
      const OwnedAugment at = left.back();
      left.pop_back();
      const FoundNode target = at.augment->target;
      if (ParentOf(at.augment->node) == nullptr || target.node == nullptr || StaysInTree(target))
        continue;
      Lose(at.output, at.augment->node,
           "the target of the augment, in module \"" + target.output->module->name +
               "\", depends on a feature that is off; the augment is left out");
      Leave(at.output, at.augment->node);
      const auto dependents = within_.find(at.augment->node);
      if (dependents != within_.end())
        left.insert(left.end(), dependents->second.begin(), dependents->second.end());
    }
  }

  void SettleLessened(Output* out) {
    while (!out->lessened.empty()) {
      xmlNode* parent = out->lessened.back();
      out->lessened.pop_back();
      if (!StaysInTree({parent, out})) continue;
      if (Is(parent, Keyword::kAugment) && !HoldsNode(parent)) {
        LeaveRest(out, parent);
        Leave(out, parent);
      }
      if (Is(parent, Keyword::kNone)) SettleTemplate(out, parent);
      if (Is(parent, Keyword::kList)) SettleList(out, parent);
      if (Is(parent, Keyword::kCase)) parent = SettleCase(out, parent);
      if (Is(parent, Keyword::kChoice)) choices_.emplace_back(out, parent);
    }
  }

  // The case that a node without one stands for goes with it, but not with what others have
  // put there. Gives the choice.
  xmlNode* SettleCase(Output* out, xmlNode* node) {
    xmlNode* choice = ParentOf(node);
    const bool isShorthand = StatementOf(node)->origin == nullptr;
    if (isShorthand && !HoldsNode(node) && !IsAugmented(node)) Leave(out, node);
    return choice;
  }

  void SettleTemplate(Output* out, xmlNode* statement) {
    if (DataTemplateOf(statement) == DataTemplate::kNone || HoldsNode(statement)) return;
    Lose(out, statement,
         "every node in " + Named(statement) + " depends on a feature that is off; it is left out");
    Leave(out, statement);
  }

  void SettleList(Output* out, xmlNode* list) {
    const std::string key = LostKey(out, list);
    if (!key.empty()) {
      Lose(out, list,
           "the key \"" + key + "\" of " + Named(list) +
               " depends on a feature that is off; the list is left out");
      Leave(out, list);
    } else if (!HoldsNode(list) && !IsAugmented(list)) {
      Lose(out, list,
           "every node in " + Named(list) + " depends on a feature that is off; it is left out");
      Leave(out, list);
    }
  }

  bool IsFilled(const xmlNode* choice) const {
    for (const xmlNode* s = choice; s != nullptr; s = NextInTree(choice, s)) {
      if (IsDataNode(KeywordOf(s)) || IsAugmented(s)) return true;
    }
    return false;
  }

  void ReportMandatoryChoices() {
    std::unordered_set<const xmlNode*> reported;
    for (const auto& [out, choice] : choices_) {
      if (!IsChildTrue(choice, Keyword::kMandatory)) continue;
      if (!StaysInTree({choice, out}) || IsFilled(choice)) continue;
      if (!reported.insert(choice).second) continue;
      Lose(out, choice,
           "every node in " + Named(choice) +
               " depends on a feature that is off, and it is mandatory; what holds it is never "
               "valid");
    }
  }

  static void ForgetGone(Output* out) {
    std::unordered_set<const xmlNode*> gone;
    for (const WrittenAugment& augment : out->augments) {
      if (ParentOf(augment.node) == nullptr) gone.insert(augment.node);
    }
    ForgetAugments(out, gone);
  }

  const std::vector<Output*>& outputs_;
  std::vector<OwnedAugment> all_;
  // Augments by the augment that brought their target, by their target, and the reverse.
  std::unordered_map<const xmlNode*, std::vector<OwnedAugment>> within_;
  std::unordered_map<const xmlNode*, std::vector<const xmlNode*>> into_;
  std::unordered_map<const xmlNode*, FoundNode> targets_;
  std::vector<std::pair<Output*, xmlNode*>> choices_;
  bool changed_ = false;
};

// What `unique` or a deviation of it names, from the list on, has left.
bool NamesWhatLeft(const Output* out, const xmlNode* list, std::string_view text) {
  NodePath path;
  XpathError error;
  if (!ParseSchemaNodeId(text, false, &path, &error)) return false;
  const xmlNode* at = list;
  for (const PathStep& step : path.steps) {
    const xmlNode* child = FindSchemaChild(out->all, at, path.Of(step.name));
    if (child == nullptr) return HasLeft(out, at, path.Of(step.name));
    at = child;
  }
  return false;
}

// It holds for entries that have all that it names (RFC 7950, section 7.8.3), so never.
void LeaveUniques(const Output* listOwner, const xmlNode* list, xmlNode* holder) {
  for (xmlNode* s = FirstChild(holder, Keyword::kUnique); s != nullptr;) {
    xmlNode* next = NextSibling(s, Keyword::kUnique);
    const char* text = ArgumentOf(s);
    const auto names = SplitNames(text == nullptr ? "" : text);
    if (std::any_of(names.begin(), names.end(),
                    [&](std::string_view one) { return NamesWhatLeft(listOwner, list, one); }))
      RemoveStatement(s);
    s = next;
  }
}

void LeaveUniquesOf(const Output* out) {
  const xmlNode* root = out->written.root;
  for (xmlNode* s = FirstChild(root); s != nullptr; s = NextInTree(root, s)) {
    if (Is(s, Keyword::kList)) LeaveUniques(out, s, s);
  }
}

void LeaveDeviation(const NotedDeviation& one) {
  if (ParentOf(one.deviation) == nullptr || one.target.node == nullptr) return;
  if (!StaysInTree(one.target)) {
    Lose(one.output, one.deviation,
         "the target of the deviation, in module \"" + one.target.output->module->name +
             "\", depends on a feature that is off; the deviation is left out");
    LeaveTree(one.output, one.deviation);
    return;
  }
  if (!Is(one.target.node, Keyword::kList)) return;
  for (xmlNode* s = FirstChild(one.deviation, Keyword::kDeviate); s != nullptr;) {
    xmlNode* next = NextSibling(s, Keyword::kDeviate);
    const bool had = FirstChild(s) != nullptr;
    LeaveUniques(one.target.output, one.target.node, s);
    if (had && FirstChild(s) == nullptr) RemoveStatement(s);
    s = next;
  }
  if (FirstChild(one.deviation, Keyword::kDeviate) == nullptr) LeaveTree(one.output, one.deviation);
}

}  // namespace

bool OptionsDecide(const Compilation& all) noexcept {
  return all.options.featuresComplete || !all.options.features.empty();
}

void LeaveTree(Output* out, xmlNode* node) {
  xmlNode* parent = ParentOf(node);
  if (parent != nullptr && Is(parent, Keyword::kChoice)) ForgetDefault(out, parent, node);
  if (Is(node, Keyword::kIdentity) && ArgumentOf(node) != nullptr)
    out->lostIdentities.emplace(ArgumentOf(node), node);
  if (parent != nullptr) ForgetChildren(out->all, parent);
  TakeOut(node);
  out->removed.emplace_back(node);
  if (parent == nullptr) return;
  out->left[parent].push_back(node);
  out->lessened.push_back(parent);
  const bool isBlock = Is(parent, Keyword::kInput) || Is(parent, Keyword::kOutput);
  if (isBlock && !HoldsNode(parent)) LeaveUnwritten(out, parent);
}

bool StaysInTree(const FoundNode& node) {
  const xmlNode* at = node.node;
  while (ParentOf(at) != nullptr) at = ParentOf(at);
  return at == node.output->written.root;
}

bool HasLeft(const Output* out, const xmlNode* parent, std::string_view name) {
  const auto left = out->left.find(parent);
  return left != out->left.end() &&
         std::any_of(left->second.begin(), left->second.end(), [name](const xmlNode* node) {
           const char* own = SchemaName(node);
           return own != nullptr && name == own;
         });
}

std::vector<NotedDeviation> NoteDeviations(const std::vector<Output*>& outputs) {
  std::vector<NotedDeviation> noted;
  for (Output* out : outputs) {
    xmlNode* s = out->stopped ? nullptr : FirstChild(out->written.root, Keyword::kDeviation);
    for (; s != nullptr; s = NextSibling(s, Keyword::kDeviation))
      noted.push_back({out, s, FindTarget(out->all, TargetSteps(s))});
  }
  return noted;
}

void FollowDepartures(const std::vector<Output*>& outputs,
                      const std::vector<NotedDeviation>& deviations) {
  std::vector<Output*> sound;
  for (Output* out : outputs) {
    if (!out->stopped) sound.push_back(out);
  }
  Departures(sound).Follow();
  for (const Output* out : sound) LeaveUniquesOf(out);
  for (const NotedDeviation& one : deviations) LeaveDeviation(one);
}

}  // namespace compiler
