// SPDX-License-Identifier: BSD-3-Clause
// What the deviations of a module leave of a node: that it still fits together (RFC 7950,
// section 7.20.3). The tree itself is that without deviations, so the properties are put
// together here, from the target and from the deviates in their order. Said is only what
// a deviate has brought about.
#include <map>
#include <set>

#include "compiler/lint/lint_deviated.h"
#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/reading/value_check.h"
#include "compiler/words/argument.h"
#include "compiler/words/grammar.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

const xmlNode* Left(const Result& result, Keyword keyword) {
  return LeftOf(result.node, *result.deviates, keyword);
}

// The one of two properties that a deviate has brought; NULL: none of them.
const xmlNode* Brought(const xmlNode* a, const xmlNode* b) {
  if (IsOfDeviate(a)) return a;
  return IsOfDeviate(b) ? b : nullptr;
}

void JudgeMandatory(const Result& result) {
  const xmlNode* mandatory = Left(result, Keyword::kMandatory);
  const xmlNode* preset = Left(result, Keyword::kDefault);
  if (!IsTrue(mandatory) || preset == nullptr || !CanHave(result.node, Keyword::kMandatory)) return;
  const xmlNode* at = Brought(preset, mandatory);
  if (at != nullptr)
    Error(result.lint, cls::kDefault, at,
          Quote(result.node->name) + " is mandatory and has a default",
          "a default is for a node that may be missing; remove one of the two");
}

void JudgeElements(const Result& result) {
  const xmlNode* least = Left(result, Keyword::kMinElements);
  const xmlNode* most = Left(result, Keyword::kMaxElements);
  const xmlNode* preset = Left(result, Keyword::kDefault);
  uint64_t low = 0;
  uint64_t high = 0;
  if (least == nullptr || ArgumentOf(least) == nullptr ||
      !ParseUnsigned(ArgumentOf(least), UINT32_MAX, &low))
    return;
  const bool bounded = most != nullptr && ArgumentOf(most) != nullptr &&
                       ParseUnsigned(ArgumentOf(most), UINT32_MAX, &high);
  if (bounded && high < low && Brought(most, least) != nullptr)
    Error(result.lint, cls::kList, Brought(most, least),
          Quote(result.node->name) + " has max-elements " + ArgumentOf(most) +
              " below its min-elements " + ArgumentOf(least),
          "correct one");
  if (low > 0 && preset != nullptr && Brought(preset, least) != nullptr)
    Error(result.lint, cls::kDefault, Brought(preset, least),
          Quote(result.node->name) + " has a default and a min-elements above 0",
          "a default is for a leaf-list that may be empty; remove one of the two");
}

// Entries of a leaf-list of configuration are different values.
void JudgeAddedEntries(const Result& result) {
  const SchemaNode* node = result.node;
  const xmlNode* type = Left(result, Keyword::kType);
  if (node->keyword != Keyword::kLeafList || type == nullptr || ConfigOf(node) != Config::kTrue)
    return;
  std::map<std::string, const xmlNode*> values;
  for (const xmlNode* s = PropertyStatement(node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    if (ArgumentOf(s) != nullptr) values.emplace(CanonicalOf(type, ArgumentOf(s)), s);
  for (const xmlNode* deviate : *result.deviates)
    for (const xmlNode* s = FirstChild(deviate, Keyword::kDefault); s != nullptr;
         s = NextSibling(s, Keyword::kDefault)) {
      const std::string value = ArgumentOf(s) == nullptr ? "" : CanonicalOf(type, ArgumentOf(s));
      if (IsKind(deviate, "delete")) {
        values.erase(value);
      } else if (!values.emplace(value, s).second) {
        Error(result.lint, cls::kDefault, s,
              "leaf-list " + Quote(node->name) + " has the default " + Quote(value) + " already",
              "remove one");
      }
    }
}

// A default that stays must be a value of the new type. Those that deviates bring are
// judged where they are written.
void JudgeType(const Result& result) {
  const xmlNode* type = Left(result, Keyword::kType);
  const xmlNode* preset = Left(result, Keyword::kDefault);
  if (type == nullptr || preset == nullptr || !IsOfDeviate(type) || IsOfDeviate(preset) ||
      ArgumentOf(preset) == nullptr)
    return;
  const std::string fault = FaultOfValue(type, ArgumentOf(preset), preset);
  JudgeReferredDefault(result.lint, result.node, type, preset, type);
  if (fault.empty()) return;
  Error(result.lint, cls::kDefault, type,
        "the default " + Quote(ArgumentOf(preset)) + " of the " +
            std::string(RowOf(result.node->keyword).name) + " " + Quote(result.node->name) + " " +
            fault,
        "replace or delete the default, too");
}

// Properties that stand once and that two deviates add.
void JudgeAddedTwice(const Result& result) {
  std::map<Keyword, const xmlNode*> brought;
  for (const xmlNode* deviate : *result.deviates)
    for (const xmlNode* s = FirstChild(deviate); s != nullptr; s = NextSibling(s)) {
      const SubStatement* row = FindSubStatement(result.node->keyword, KeywordOf(s));
      if (row == nullptr || row->max != 1) continue;
      const xmlNode*& before = brought[KeywordOf(s)];
      const bool isNew = PropertyStatement(result.node, KeywordOf(s)) == nullptr;
      if (IsKind(deviate, "add") && isNew && before != nullptr && ParentOf(before) != deviate)
        Error(result.lint, cls::kTarget, s,
              "the " + std::string(RowOf(result.node->keyword).name) + " " +
                  Quote(result.node->name) + " has " + Quote(NameOf(s)) + " already, at " +
                  PlaceOf(before),
              "write one of the two only");
      before = IsKind(deviate, "delete") ? nullptr : s;
    }
}

// Values that a leaf-list of configuration would have twice by default.
void JudgeEntries(const Result& result) {
  const SchemaNode* node = result.node;
  const xmlNode* type = Left(result, Keyword::kType);
  if (node->keyword != Keyword::kLeafList || type == nullptr || !IsConfigAfter(*result.all, node))
    return;
  std::set<std::string> values;
  for (const xmlNode* s = PropertyStatement(node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    if (ArgumentOf(s) != nullptr) values.insert(CanonicalOf(type, ArgumentOf(s)));
  for (const xmlNode* deviate : *result.deviates) {
    if (IsKind(deviate, "replace") && FirstChild(deviate, Keyword::kDefault) != nullptr)
      values.clear();
    for (const xmlNode* s = FirstChild(deviate, Keyword::kDefault); s != nullptr;
         s = NextSibling(s, Keyword::kDefault)) {
      if (ArgumentOf(s) == nullptr) continue;
      const std::string value = CanonicalOf(type, ArgumentOf(s));
      if (IsKind(deviate, "delete")) {
        values.erase(value);
      } else if (!values.insert(value).second) {
        Error(result.lint, cls::kDefault, s,
              "leaf-list " + Quote(node->name) + " has the default " + Quote(ArgumentOf(s)) +
                  " already",
              "remove one");
      }
    }
  }
}

void JudgeAdded(const Result& result) {
  const SchemaNode* node = result.node;
  for (const xmlNode* deviate : *result.deviates) {
    if (!IsKind(deviate, "add")) continue;
    for (const xmlNode* s = FirstChild(deviate, Keyword::kUnique);
         s != nullptr && node->keyword == Keyword::kList; s = NextSibling(s, Keyword::kUnique))
      if (ArgumentOf(s) != nullptr) JudgeUnique(result.lint, node, s);
  }
  const xmlNode* preset = Left(result, Keyword::kDefault);
  if (node->keyword == Keyword::kChoice && preset != nullptr && IsOfDeviate(preset))
    JudgeDefaultCase(result.lint, node, preset);
}

void JudgeTarget(const Result& result) {
  const bool open = IsGoneBelow(*result.all, nullptr, result.node->parent);
  if (IsGone(*result.deviates)) {
    for (const xmlNode* deviate : *result.deviates)
      if (!open && IsKind(deviate, "not-supported")) return JudgeGone(result, deviate);
    return;
  }
  JudgeMandatory(result);
  JudgeInDefaultCase(result);
  JudgeElements(result);
  JudgeAddedEntries(result);
  JudgeType(result);
  JudgeAdded(result);
  JudgeAddedTwice(result);
  JudgeEntries(result);
  if (!open) JudgeConfigAround(result);
}

}  // namespace

void LintDeviated(Lint* lint) {
  Deviated all;
  for (const Module* file : lint->files)
    ForEachStatement(file, Keyword::kDeviation, [&](xmlNode* deviation) {
      const SchemaNode* target = FollowAbsolute(*lint->view, deviation).target;
      if (target == nullptr) return;
      const auto entered = all.deviates.try_emplace(target);
      if (entered.second) all.targets.push_back(target);
      for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
           s = NextSibling(s, Keyword::kDeviate))
        entered.first->second.push_back(s);
    });
  for (const SchemaNode* target : all.targets)
    JudgeTarget({lint, &all, target, &all.deviates[target]});
  JudgeLostLeafrefs(lint, all);
}

}  // namespace compiler
