// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/deviated_default.h"

#include <string>
#include <string_view>

#include "compiler/data_lookup.h"
#include "compiler/identities.h"
#include "compiler/statement.h"
#include "compiler/symbols.h"
#include "compiler/typedefs.h"

namespace compiler {

namespace {

// What the deviates of one deviation do, as far as a default depends on it.
struct Changes {
  xmlNode* add = nullptr;  // the deviate that adds a default
  bool anyDefault = false;
  bool mandatory = false;
  const xmlNode* type = nullptr;  // the one that it has afterwards
};

bool IsKind(const xmlNode* deviate, std::string_view kind) {
  const char* text = ArgumentOf(deviate);
  return text != nullptr && kind == text;
}

Changes ChangesOf(const xmlNode* deviation) {
  Changes changes;
  for (xmlNode* deviate = FirstChild(deviation, Keyword::kDeviate); deviate != nullptr;
       deviate = NextSibling(deviate, Keyword::kDeviate)) {
    const bool hasDefault = FirstChild(deviate, Keyword::kDefault) != nullptr;
    if (hasDefault && IsKind(deviate, "add")) changes.add = deviate;
    changes.anyDefault = changes.anyDefault || hasDefault;
    const char* mandatory = ArgumentOfChild(deviate, Keyword::kMandatory);
    if (mandatory != nullptr) changes.mandatory = std::string_view(mandatory) == "true";
    if (const xmlNode* type = FirstChild(deviate, Keyword::kType)) changes.type = type;
  }
  return changes;
}

bool IsOfTypedef(const xmlNode* byDefault) {
  const xmlNode* holder = ParentOf(OriginOf(byDefault));
  return holder != nullptr && Is(holder, Keyword::kTypedef);
}

// The default that the new type brings; NULL: none, or one that the library knows itself.
const xmlNode* DefaultOfType(const xmlNode* type) {
  const BottomType bottom = type == nullptr ? BottomType() : FindBottomType(type);
  const bool isIdentity =
      bottom.type != nullptr && std::string_view(ArgumentOf(bottom.type)) == "identityref";
  return isIdentity ? bottom.byDefault : nullptr;
}

xmlNode* MakeDeviate(Output* out, const xmlNode* like, const char* kind) {
  return MakeStatement(out->all->session, like, Keyword::kDeviate, kind);
}

void PutDefault(Output* out, xmlNode* deviation, const char* kind, const xmlNode* byDefault) {
  xmlNode* deviate = MakeDeviate(out, deviation, kind);
  AppendChild(deviation, deviate);
  xmlNode* copy =
      CopyStatement(out->all->session, deviation->doc, byDefault, &StatementOf(deviation)->place);
  AppendChild(deviate, copy);
  RewriteDefault(out, copy);
}

void TakeDefaultAway(Output* out, const xmlNode* deviation, const xmlNode* byDefault) {
  xmlNode* first = FirstChild(deviation, Keyword::kDeviate);
  xmlNode* deviate = MakeDeviate(out, deviation, "delete");
  InsertBefore(first, deviate);
  AppendChild(deviate, MakeStatement(out->all->session, deviation, Keyword::kDefault,
                                     ArgumentOf(byDefault)));
}

// `deviate add` of a default becomes `deviate replace`.
void ReplaceInstead(Output* out, xmlNode* add) {
  xmlNode* replace = MakeDeviate(out, add, "replace");
  InsertAfter(add, replace);
  while (xmlNode* byDefault = FirstChild(add, Keyword::kDefault)) {
    TakeOut(byDefault);
    AppendChild(replace, byDefault);
  }
  if (FirstChild(add) == nullptr) RemoveStatement(add);
}

}  // namespace

void SettleTypedefDefault(Output* out, xmlNode* deviation, const FoundNode& target) {
  if (target.node == nullptr || !Is(target.node, Keyword::kLeaf)) return;
  const Changes changes = ChangesOf(deviation);
  const xmlNode* present = FirstChild(target.node, Keyword::kDefault);
  const xmlNode* brought = changes.mandatory ? nullptr : DefaultOfType(changes.type);
  if (present == nullptr) {
    const char* mandatory = ArgumentOfChild(target.node, Keyword::kMandatory);
    const bool stays = mandatory != nullptr && std::string_view(mandatory) == "true";
    if (brought != nullptr && !changes.anyDefault && !stays)
      PutDefault(out, deviation, "add", brought);
    return;
  }
  if (!IsOfTypedef(present) || ArgumentOf(present) == nullptr) return;
  if (changes.add != nullptr) {
    ReplaceInstead(out, changes.add);
  } else if (!changes.anyDefault && brought != nullptr) {
    PutDefault(out, deviation, "replace", brought);
  } else if (!changes.anyDefault && (changes.mandatory || changes.type != nullptr)) {
    TakeDefaultAway(out, deviation, present);
  }
}

}  // namespace compiler
