// SPDX-License-Identifier: BSD-3-Clause
// Deviations: where they lead, and whether each deviate fits what is there (RFC 7950,
// section 7.20.3).
#include <algorithm>
#include <cstring>
#include <vector>

#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/words/grammar.h"

namespace compiler {

namespace {

enum class Deviate : uint8_t { kNone, kAdd, kDelete, kReplace, kNotSupported };

Deviate KindOf(const xmlNode* deviate) {
  constexpr const char* kWords[] = {"", "add", "delete", "replace", "not-supported"};
  const char* word = ArgumentOf(deviate);
  for (size_t i = 1; word != nullptr && i < std::size(kWords); ++i)
    if (std::strcmp(word, kWords[i]) == 0) return static_cast<Deviate>(i);
  return Deviate::kNone;
}

// What each kind may hold.
struct DeviateRow {
  Keyword property;
  bool add;
  bool remove;
  bool replace;
};

constexpr DeviateRow kProperties[] = {
    {Keyword::kConfig, true, false, true},      {Keyword::kDefault, true, true, true},
    {Keyword::kMandatory, true, false, true},   {Keyword::kMaxElements, true, false, true},
    {Keyword::kMinElements, true, false, true}, {Keyword::kMust, true, true, false},
    {Keyword::kType, false, false, true},       {Keyword::kUnique, true, true, false},
    {Keyword::kUnits, true, true, true},
};

const DeviateRow* FindProperty(Keyword keyword) {
  for (const DeviateRow& row : kProperties)
    if (row.property == keyword) return &row;
  return nullptr;
}

bool Allows(const DeviateRow& row, Deviate kind) {
  switch (kind) {
    case Deviate::kAdd:
      return row.add;
    case Deviate::kDelete:
      return row.remove;
    case Deviate::kReplace:
      return row.replace;
    default:
      return false;
  }
}

bool MayBeSeveral(const SchemaNode* target, Keyword keyword) {
  const SubStatement* row = FindSubStatement(target->keyword, keyword);
  return row != nullptr && row->max == kAnyNumber;
}

// The statement of the target, or of a refine of it, with the same argument.
bool HasEqual(Lint* lint, const SchemaNode* target, const xmlNode* property) {
  const auto entered = lint->held.try_emplace({target, KeywordOf(property)});
  auto& arguments = entered.first->second;
  if (entered.second) {
    std::vector<const xmlNode*> holders(target->changes.begin(), target->changes.end());
    if (target->written) holders.push_back(target->statement);
    for (const xmlNode* holder : holders)
      for (const xmlNode* s = FirstChild(holder, KeywordOf(property)); s != nullptr;
           s = NextSibling(s, KeywordOf(property)))
        if (ArgumentOf(s) != nullptr) arguments.insert(ArgumentOf(s));
  }
  const char* wanted = ArgumentOf(property);
  return wanted != nullptr && arguments.count(wanted) != 0;
}

// True when a deviate before this one, of the same deviation, deletes the property.
bool IsDeletedBefore(const xmlNode* property) {
  const xmlNode* deviate = ParentOf(property);
  for (const xmlNode* s = FirstChild(ParentOf(deviate), Keyword::kDeviate); s != deviate;
       s = NextSibling(s, Keyword::kDeviate))
    if (KindOf(s) == Deviate::kDelete && FirstChild(s, KeywordOf(property)) != nullptr) return true;
  return false;
}

void JudgeProperty(Lint* lint, const SchemaNode* target, Deviate kind, const xmlNode* property) {
  const Keyword keyword = KeywordOf(property);
  const std::string node = std::string(RowOf(target->keyword).name) + " " + Quote(target->name);
  const std::string word = Quote(NameOf(property));
  if (FindSubStatement(target->keyword, keyword) == nullptr) {
    Error(lint, cls::kTarget, property, "the " + node + " cannot have " + word, "remove it");
    return;
  }
  const bool several = MayBeSeveral(target, keyword);
  const xmlNode* first = FirstChild(ParentOf(property), keyword);
  if (!several && first != property && keyword == Keyword::kDefault) {
    Error(lint, cls::kTarget, property,
          "the " + node + " has " + word + " already, at " + PlaceOf(first),
          "remove one; only a leaf-list has several");
    return;
  }
  const xmlNode* present = PropertyStatement(target, keyword);
  const bool isThere = present != nullptr && !IsDeletedBefore(property);
  if (kind == Deviate::kAdd && isThere && !several) {
    Error(lint, cls::kTarget, property,
          "the " + node + " has " + word + " already, at " + PlaceOf(present),
          "write \"deviate replace\"");
  } else if (kind == Deviate::kReplace && present == nullptr && keyword != Keyword::kConfig) {
    Error(lint, cls::kTarget, property, "the " + node + " has no " + word + " to replace",
          "write \"deviate add\"");
  } else if (kind == Deviate::kDelete && !HasEqual(lint, target, property)) {
    Error(lint, cls::kTarget, property,
          "the " + node + " has no " + Describe(property) + " to delete",
          "write the argument as it stands in the target");
  }
}

void JudgeNewDefault(Lint* lint, const SchemaNode* target, const xmlNode* deviation,
                     const xmlNode* deviate) {
  const xmlNode* type = target->written ? FirstChild(target->statement, Keyword::kType) : nullptr;
  for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
       s = NextSibling(s, Keyword::kDeviate)) {
    const xmlNode* replaced = FirstChild(s, Keyword::kType);
    if (replaced != nullptr) type = replaced;
  }
  if (type == nullptr || KindOf(deviate) == Deviate::kDelete) return;
  for (const xmlNode* s = FirstChild(deviate, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault)) {
    JudgeDefault(lint, s, type);
    JudgeReferredDefault(lint, target, type, s, s);
  }
}

// `target` may be NULL when it was not found.
void JudgeDeviate(Lint* lint, const SchemaNode* target, const xmlNode* deviation,
                  const xmlNode* deviate) {
  const Deviate kind = KindOf(deviate);
  if (kind == Deviate::kNone) return;
  for (const xmlNode* s = FirstChild(deviate); s != nullptr; s = NextSibling(s)) {
    const DeviateRow* row = FindProperty(KeywordOf(s));
    if (row == nullptr) continue;  // an extension, or told by the grammar
    if (!Allows(*row, kind)) {
      Error(lint, cls::kTarget, s, Describe(deviate) + " takes no " + Quote(NameOf(s)),
            kind == Deviate::kNotSupported ? "the node is gone as a whole; remove it"
                                           : "see which deviate may hold it");
    } else if (target != nullptr) {
      JudgeProperty(lint, target, kind, s);
    }
  }
  if (target != nullptr) JudgeNewDefault(lint, target, deviation, deviate);
}

void JudgeNotSupported(Lint* lint, const xmlNode* deviation) {
  const xmlNode* first = FirstChild(deviation, Keyword::kDeviate);
  for (const xmlNode* s = first; s != nullptr; s = NextSibling(s, Keyword::kDeviate)) {
    if (KindOf(s) != Deviate::kNotSupported) continue;
    if (s == first && NextSibling(s, Keyword::kDeviate) == nullptr) continue;
    Error(lint, cls::kTarget, s, "a node that is not supported has no other deviates",
          "remove the others, or this one");
  }
}

}  // namespace

void LintDeviations(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kDeviation, [&](xmlNode* s) {
    const TargetView target = FollowAbsolute(*lint->view, s);
    if (target.unknown) {
      JudgePathPrefixes(lint, s);
    } else if (target.target == nullptr) {
      ReportLost(lint, cls::kTarget, target);
    }
    for (const xmlNode* deviate = FirstChild(s, Keyword::kDeviate); deviate != nullptr;
         deviate = NextSibling(deviate, Keyword::kDeviate))
      JudgeDeviate(lint, target.target, s, deviate);
    JudgeNotSupported(lint, s);
  });
}

}  // namespace compiler
