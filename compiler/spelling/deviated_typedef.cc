// SPDX-License-Identifier: BSD-3-Clause
// Adding such a property is replacing it, and where it has to go with its typedef it is
// deleted first. A deviation of another module that does the like may come before or
// after; what then becomes of the leaf is told elsewhere (deviation_order.h).
#include "compiler/spelling/deviated_typedef.h"

#include <string_view>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"

namespace compiler {

namespace {

// What the deviates of one deviation do.
struct Changes {
  xmlNode* add = nullptr;  // the deviate that adds the property
  bool any = false;        // one of them has it
  bool mandatory = false;
  bool type = false;  // there is another one
};

bool IsKind(const xmlNode* deviate, std::string_view kind) {
  const char* text = ArgumentOf(deviate);
  return text != nullptr && kind == text;
}

Changes ChangesOf(const xmlNode* deviation, Keyword property) {
  Changes changes;
  for (xmlNode* deviate = FirstChild(deviation, Keyword::kDeviate); deviate != nullptr;
       deviate = NextSibling(deviate, Keyword::kDeviate)) {
    const bool has = FirstChild(deviate, property) != nullptr;
    if (has && IsKind(deviate, "add")) changes.add = deviate;
    changes.any = changes.any || has;
    const char* mandatory = ArgumentOfChild(deviate, Keyword::kMandatory);
    if (mandatory != nullptr) changes.mandatory = std::string_view(mandatory) == "true";
    changes.type = changes.type || FirstChild(deviate, Keyword::kType) != nullptr;
  }
  return changes;
}

bool IsOfTypedef(const xmlNode* property) {
  const xmlNode* holder = ParentOf(OriginOf(property));
  return holder != nullptr && Is(holder, Keyword::kTypedef);
}

xmlNode* MakeDeviate(Output* out, const xmlNode* like, const char* kind) {
  return MakeStatement(out->all->session, like, Keyword::kDeviate, kind);
}

void TakeAway(Output* out, const xmlNode* deviation, const xmlNode* present) {
  xmlNode* deviate = MakeDeviate(out, deviation, "delete");
  InsertBefore(FirstChild(deviation, Keyword::kDeviate), deviate);
  AppendChild(deviate,
              MakeStatement(out->all->session, deviation, KeywordOf(present), ArgumentOf(present)));
}

// `deviate add` becomes `deviate replace`.
void ReplaceInstead(Output* out, xmlNode* add, Keyword property) {
  xmlNode* replace = MakeDeviate(out, add, "replace");
  InsertAfter(add, replace);
  while (xmlNode* one = FirstChild(add, property)) {
    TakeOut(one);
    AppendChild(replace, one);
  }
  if (FirstChild(add) == nullptr) RemoveStatement(add);
}

void Settle(Output* out, xmlNode* deviation, const xmlNode* present) {
  const Keyword property = KeywordOf(present);
  const Changes changes = ChangesOf(deviation, property);
  const bool goes = changes.type || (changes.mandatory && property == Keyword::kDefault);
  if (changes.add != nullptr) {
    ReplaceInstead(out, changes.add, property);
  } else if (!changes.any && goes) {
    TakeAway(out, deviation, present);
  }
}

}  // namespace

void SettleTypedefProperties(Output* out, xmlNode* deviation, const FoundNode& target) {
  if (target.node == nullptr) return;
  for (const Keyword property : {Keyword::kDefault, Keyword::kUnits}) {
    const xmlNode* present = FirstChild(target.node, property);
    if (present == nullptr || ArgumentOf(present) == nullptr || !IsOfTypedef(present)) continue;
    Settle(out, deviation, present);
  }
}

}  // namespace compiler
