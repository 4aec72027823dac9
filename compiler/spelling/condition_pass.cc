// SPDX-License-Identifier: BSD-3-Clause
// The context node of each condition is found in the trees as they are to be written. A
// node's presence depends on its own conditions, so none is left out before all are
// rewritten.
#include "compiler/spelling/condition_pass.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/spelling/condition_fold.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/handed_down.h"
#include "compiler/spelling/target.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/xpath_edit.h"

namespace compiler {

namespace {

// Finds trees by the names of their modules.
TreeFinder TreesOf(const std::vector<Output*>& outputs) {
  std::map<std::string, const xmlNode*, std::less<>> trees;
  for (const Output* out : outputs) {
    if (!out->stopped) trees.emplace(out->module->name, out->written.root);
  }
  return [trees = std::move(trees)](std::string_view name) {
    const auto found = trees.find(name);
    return found == trees.end() ? nullptr : found->second;
  };
}

// The node that a message has an element for, at the node or above it.
DataNode* WithElement(DataNode* node) {
  if (node == nullptr) return nullptr;
  switch (node->keyword) {
    case Keyword::kChoice:
    case Keyword::kCase:
    case Keyword::kInput:
    case Keyword::kOutput:
      return DataSchema::DataParent(node);
    default:
      return node;
  }
}

struct Pass {
  Output* out = nullptr;
  DataSchema* schema = nullptr;
};

// What a deviation deletes has the text of its target.
bool IsOfDeletion(const xmlNode* statement) {
  const xmlNode* parent = ParentOf(statement);
  const char* kind = Is(parent, Keyword::kDeviate) ? ArgumentOf(parent) : nullptr;
  return kind != nullptr && std::string_view(kind) == "delete";
}

// The operation is what has an element, where its input or output is not written.
DataNode* NodeOfTarget(const Pass& pass, const FoundNode& target) {
  if (target.node == nullptr) return nullptr;
  return pass.schema->Find(IsImplied(target) ? ParentOf(target.node) : target.node);
}

DataNode* NodeOfStatement(const Pass& pass, const xmlNode* parent) {
  if (Is(parent, Keyword::kDeviate))
    return NodeOfTarget(pass, FindTarget(pass.out->all, TargetSteps(ParentOf(parent))));
  if (!Is(parent, Keyword::kAugment)) return pass.schema->Find(parent);
  return NodeOfTarget(pass, AugmentTarget(pass.out->all, pass.out, parent));
}

// False: where it is evaluated is not known.
bool FindPlace(const Pass& pass, const xmlNode* statement, ConditionPlace* place) {
  const xmlNode* parent = ParentOf(statement);
  if (IsOfDeletion(statement)) return false;
  place->schema = pass.schema;
  place->words = pass.schema->FindModule(pass.out->module->name);
  place->context = WithElement(NodeOfStatement(pass, parent));
  place->isWhen = Is(statement, Keyword::kWhen);
  if (place->isWhen && !Is(parent, Keyword::kAugment)) place->decides = pass.schema->Find(parent);
  place->isWhenOfContext = Is(statement, Keyword::kWhen) && IsDataNode(KeywordOf(parent));
  return place->words != nullptr && place->context != nullptr;
}

std::vector<xmlNode*> ConditionsOf(const Output* out) {
  std::vector<xmlNode*> conditions;
  const xmlNode* root = out->written.root;
  for (xmlNode* s = FirstChild(root); s != nullptr; s = NextInTree(root, s)) {
    const bool isCondition = Is(s, Keyword::kWhen) || Is(s, Keyword::kMust);
    if (isCondition && ArgumentOf(s) != nullptr) conditions.push_back(s);
  }
  return conditions;
}

std::optional<ConditionResult> ResultOf(const Pass& pass, const xmlNode* statement,
                                        ConditionPlace* place) {
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(ArgumentOf(statement), &xpath, &error)) return std::nullopt;
  if (!FindPlace(pass, statement, place)) return std::nullopt;
  return MakeExact(xpath, *place);
}

// Gives the condition of an augment, `text` for a context node at the target, to one
// child. "(augment's) and (own)", as the library would have it.
void GiveTo(Output* out, const xmlNode* when, xmlNode* child, const std::string& text) {
  Session* session = out->all->session;
  if (xmlNode* own = FirstChild(child, Keyword::kWhen)) {
    SetArgument(session, own, JoinConditions(text, ArgumentOf(own)));
    return;
  }
  xmlNode* made = MakeStatement(session, when, Keyword::kWhen, text);
  if (xmlNode* first = FirstChild(child)) {
    InsertBefore(first, made);
  } else {
    AppendChild(child, made);
  }
}

// Not every form survives the library's own handing down; then the children get it.
void HandDown(Output* out, xmlNode* when) {
  Xpath xpath;
  XpathError error;
  xmlNode* augment = ParentOf(when);
  if (LibraryHandsDown(*out, augment, ArgumentOf(when))) return;
  if (!ParseXpath(ArgumentOf(when), &xpath, &error)) return;
  const std::optional<std::string> down = ShiftOneDown(xpath);
  if (!down) return;
  for (xmlNode* child = FirstChild(augment); child != nullptr; child = NextSibling(child)) {
    const Keyword keyword = KeywordOf(child);
    if (TakesWhen(keyword)) GiveTo(out, when, child, IsDataNode(keyword) ? *down : xpath.text);
  }
  RemoveStatement(when);
}

// A path from the context node to nodes in it.
bool LeadsInside(const XpathNode& path) {
  if (path.kind != XpathKind::kPath || path.absolute || !path.operands.empty()) return false;
  return !path.steps.empty() &&
         std::all_of(path.steps.begin(), path.steps.end(), [](const auto& s) {
           return s.axis == XpathAxis::kChild && s.test == XpathTest::kName;
         });
}

// True when the condition holds wherever there is nothing in the context node.
bool HoldsWithoutChildren(const std::string& text) {
  Xpath xpath;
  XpathError error;
  KnownParts known;
  if (!ParseXpath(text, &xpath, &error)) return false;
  for (uint32_t i = 0; i < xpath.nodes.size(); ++i) {
    const bool isOutermost = xpath.At(i).stepsBefore == kNoXpathNode;
    if (isOutermost && LeadsInside(xpath.At(i))) known.emptyPaths.insert(i);
  }
  return FoldCondition(xpath, known).value == true;
}

// The must of a container that XPath has everywhere and a message only when it is written.
std::optional<ConditionRemark> RemarkOnContainer(DataSchema* schema, const ConditionPlace& place,
                                                 const ConditionResult& result) {
  const DataNode* message = DataSchema::MessageOf(place.context);
  if (place.isWhen || message == nullptr || message->keyword == Keyword::kNotification ||
      !MayBeUnwritten(schema, place.context) || HoldsWithoutChildren(result.text))
    return std::nullopt;
  return ConditionRemark{ConditionIssue::kUnwritten, 0,
                         "\"" + std::string(place.context->name) +
                             "\" is a container that the library misses unless it is written"};
}

std::string WhyItFails(const ConditionResult& result) {
  for (const ConditionRemark& remark : result.remarks) {
    if (remark.issue == ConditionIssue::kFails) return remark.message;
  }
  return {};
}

// What is to be done when all conditions are rewritten.
struct Afterwards {
  std::vector<xmlNode*> ofAugments;
  std::vector<std::pair<xmlNode*, std::string>> failing;
};

void SettleOne(const Pass& pass, xmlNode* statement, Afterwards* later) {
  ConditionPlace place;
  const std::optional<ConditionResult> result = ResultOf(pass, statement, &place);
  const bool isOfAugment = Is(ParentOf(statement), Keyword::kAugment);
  // The words of the file were others, and may have been longer.
  if (isOfAugment) later->ofAugments.push_back(statement);
  if (!result) return;
  if (result->text != ArgumentOf(statement))
    SetArgument(pass.out->all->session, statement, result->text);
  // The library evaluates conditions of requests and notifications only.
  const bool isEvaluated = DataSchema::MessageOf(place.context) != nullptr;
  if (pass.out->all->options.dropFailing && isEvaluated && result->Fails()) {
    later->failing.emplace_back(statement, WhyItFails(*result));
    if (isOfAugment) later->ofAugments.pop_back();
  }
}

}  // namespace

void SettleConditions(const std::vector<Output*>& outputs) {
  DataSchema schema(TreesOf(outputs));
  std::vector<std::pair<Output*, Afterwards>> settled;
  for (Output* out : outputs) {
    if (out->stopped) continue;
    settled.emplace_back(out, Afterwards{});
    for (xmlNode* statement : ConditionsOf(out)) {
      SettleOne({out, &schema}, statement, &settled.back().second);
    }
  }
  for (auto& [out, later] : settled) {
    for (xmlNode* when : later.ofAugments) HandDown(out, when);
    for (auto& [statement, why] : later.failing) {
      Lose(out, statement, why + "; the condition is left out");
      // A deviation may delete it.
      out->dropped.push_back({ParentOf(statement), nullptr});
      TakeOut(statement);
      out->dropped.back().statement.reset(statement);
    }
  }
}

void VisitConditionRemarks(const std::vector<Output*>& outputs, const RemarkVisitor& visit) {
  DataSchema schema(TreesOf(outputs));
  for (Output* out : outputs) {
    if (out->stopped) continue;
    for (const xmlNode* statement : ConditionsOf(out)) {
      ConditionPlace place;
      const std::optional<ConditionResult> result = ResultOf({out, &schema}, statement, &place);
      if (!result || DataSchema::MessageOf(place.context) == nullptr) continue;
      for (const ConditionRemark& remark : result->remarks) visit(out, statement, remark);
      const auto unwritten = RemarkOnContainer(&schema, place, *result);
      if (unwritten) visit(out, statement, *unwritten);
    }
  }
}

}  // namespace compiler
