// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/handed_down.h"

#include <optional>
#include <string>
#include <vector>

#include "compiler/reading/statement.h"
#include "compiler/spelling/expand.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/xpath_edit.h"

namespace compiler {

namespace {

// True when no node of data stands above: the context node is the root.
bool IsAtTop(const xmlNode* node) {
  for (const xmlNode* s = ParentOf(node); s != nullptr; s = ParentOf(s)) {
    if (Is(s, Keyword::kModule)) return true;
    if (!Is(s, Keyword::kChoice) && !Is(s, Keyword::kCase)) return false;
  }
  return true;
}

void MoveExtensions(xmlNode* from, xmlNode* to) {
  for (xmlNode* s = FirstChild(from); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    if (Is(s, Keyword::kNone)) {
      TakeOut(s);
      AppendChild(to, s);
    }
    s = next;
  }
}

bool HasIfFeature(const xmlNode* node, std::string_view feature) {
  for (const xmlNode* s = FirstChild(node, Keyword::kIfFeature); s != nullptr;
       s = NextSibling(s, Keyword::kIfFeature)) {
    if (feature == ArgumentOf(s)) return true;
  }
  return false;
}

void GiveIfFeatures(Output* out, const xmlNode* augment, xmlNode* node) {
  std::vector<const xmlNode*> missing;
  for (const xmlNode* s = FirstChild(augment, Keyword::kIfFeature); s != nullptr;
       s = NextSibling(s, Keyword::kIfFeature)) {
    if (!HasIfFeature(node, ArgumentOf(s))) missing.push_back(s);
  }
  Inherit(out, missing, node, StatementOf(augment)->usedAt);
}

}  // namespace

bool LibraryHandsDown(const Output& out, const xmlNode* augment, std::string_view condition) {
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(condition, &xpath, &error) || !LibraryShiftsRightly(xpath)) return false;
  // It has room for twice the length of what it has made of the literals.
  if (ShiftOneDown(xpath)->size() - condition.size() > LengthInLibrary(out, condition))
    return false;
  for (const xmlNode* s = FirstChild(augment); s != nullptr; s = NextSibling(s)) {
    if (IsSchemaNode(KeywordOf(s)) && !IsDataNode(KeywordOf(s))) return false;
  }
  return true;
}

bool SettleHandedDown(Output* out, xmlNode* when) {
  const xmlNode* node = ParentOf(when);
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(ArgumentOf(when), &xpath, &error)) return false;
  std::optional<std::string> moved = xpath.text;
  if (IsAtTop(node)) {
    moved = ShiftToRoot(xpath);
  } else if (IsDataNode(KeywordOf(node))) {
    moved = ShiftOneDown(xpath);
  }
  if (!moved) {
    Lose(out, when, "the condition cannot be written for the nodes that it holds for");
    return false;
  }
  SetArgument(out->all->session, when, *moved);
  return true;
}

void JoinConditionsOf(Output* out, xmlNode* node) {
  std::vector<xmlNode*> all;
  for (xmlNode* s = FirstChild(node, Keyword::kWhen); s != nullptr;
       s = NextSibling(s, Keyword::kWhen))
    all.push_back(s);
  if (all.size() < 2) return;
  std::string text = ArgumentOf(all.back());
  for (size_t i = all.size() - 1; i-- > 0;) text = JoinConditions(ArgumentOf(all[i]), text);
  SetArgument(out->all->session, all[0], text);
  for (size_t i = 1; i < all.size(); ++i) {
    MoveExtensions(all[i], all[0]);
    RemoveStatement(all[i]);
  }
}

void SpreadAugmentConditions(Output* out) {
  for (const WrittenAugment& augment : out->augments) {
    const xmlNode* when = FirstChild(augment.node, Keyword::kWhen);
    if (when == nullptr || ArgumentOf(when) == nullptr ||
        LibraryHandsDown(*out, augment.node, ArgumentOf(when)))
      continue;
    for (xmlNode* s = FirstChild(augment.node); s != nullptr; s = NextSibling(s)) {
      if (IsSchemaNode(KeywordOf(s))) InheritWhen(out, when, s, StatementOf(when)->usedAt);
    }
    while (xmlNode* own = FirstChild(augment.node, Keyword::kWhen)) RemoveStatement(own);
  }
}

void SpreadAugmentFeatures(Output* out) {
  for (const WrittenAugment& augment : out->augments) {
    for (xmlNode* s = FirstChild(augment.node); s != nullptr; s = NextSibling(s)) {
      if (Is(s, Keyword::kAction) || Is(s, Keyword::kNotification))
        GiveIfFeatures(out, augment.node, s);
    }
  }
}

}  // namespace compiler
