// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/condition_pass.h"

#include <string>

#include "compiler/condition.h"
#include "compiler/data_schema.h"
#include "compiler/handed_down.h"
#include "compiler/statement.h"
#include "compiler/target.h"

namespace compiler {

namespace {

// The node that a message has an element for, at the node or above it.
const DataNode* WithElement(const DataNode* node) {
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
  const DataSchema* schema = nullptr;
  const DataModule* words = nullptr;
};

const DataNode* NodeOfStatement(const Pass& pass, xmlNode* parent) {
  if (Is(parent, Keyword::kDeviate))
    return pass.schema->Find(FindTarget(pass.out->all, TargetSteps(ParentOf(parent))).node);
  if (!Is(parent, Keyword::kAugment)) return pass.schema->Find(parent);
  for (WrittenAugment& augment : pass.out->augments) {
    if (augment.node == parent) return pass.schema->Find(TargetOf(pass.out->all, &augment).node);
  }
  return nullptr;
}

// An augment's condition is handed down by the library, which not every form survives.
bool StaysRight(const xmlNode* statement, const std::string& text) {
  if (!Is(ParentOf(statement), Keyword::kAugment)) return true;
  return LibraryHandsDown(ParentOf(statement), text);
}

// False: it has left the tree.
bool SettleOne(const Pass& pass, xmlNode* statement) {
  Xpath xpath;
  XpathError error;
  const char* text = ArgumentOf(statement);
  if (text == nullptr || !ParseXpath(text, &xpath, &error)) return true;
  const DataNode* node = NodeOfStatement(pass, ParentOf(statement));
  ConditionPlace place;
  place.schema = pass.schema;
  place.words = pass.words;
  place.context = WithElement(node);
  place.isWhenOfContext = Is(statement, Keyword::kWhen) && node != nullptr &&
                          place.context == node && !Is(ParentOf(statement), Keyword::kAugment);
  if (node == nullptr) return true;
  const ConditionResult result = RewriteCondition(xpath, place);
  if (result.Fails() && pass.out->all->options.dropFailing) {
    for (const ConditionRemark& remark : result.remarks) {
      if (remark.issue == ConditionIssue::kFails)
        Lose(pass.out, statement, remark.message + "; the condition is left out");
    }
    RemoveStatement(statement);
    return false;
  }
  if (result.text != text && StaysRight(statement, result.text))
    SetArgument(pass.out->all->session, statement, result.text);
  return true;
}

void SettleTree(const Pass& pass) {
  xmlNode* root = pass.out->written.root;
  for (xmlNode* s = FirstChild(root); s != nullptr;) {
    xmlNode* outside = NextOutside(root, s);
    const bool isCondition = Is(s, Keyword::kWhen) || Is(s, Keyword::kMust);
    if (isCondition && !SettleOne(pass, s)) {
      s = outside;
    } else {
      s = NextInTree(root, s);
    }
  }
}

}  // namespace

void SettleConditions(const std::vector<Output*>& outputs) {
  DataSchema schema;
  for (const Output* out : outputs) {
    if (!out->stopped) schema.Add(out->written.root);
  }
  schema.Link();
  for (Output* out : outputs) {
    if (!out->stopped) SettleTree({out, &schema, schema.FindModule(out->module->name)});
  }
}

}  // namespace compiler
