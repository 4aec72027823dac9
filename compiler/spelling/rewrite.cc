// SPDX-License-Identifier: BSD-3-Clause
// One walk in order of the text. What is appended to the root meanwhile, typedefs that
// move, is met in the end; a type is rewritten before what stands in it.
#include "compiler/spelling/rewrite.h"

#include <set>
#include <string>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/condition_words.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/data_template.h"
#include "compiler/spelling/departures.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/items.h"
#include "compiler/spelling/off_defaults.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

struct Rewriting {
  Output* out = nullptr;
  // Kinds of extensions that were reported as not kept, by name and what they stand in.
  std::set<std::pair<std::string, std::string>> reportedExtensions;
};

// "/p:a/p:b/q:c", each step with its prefix.
void RewriteTarget(Output* out, xmlNode* statement) {
  const std::vector<TargetStep> steps = TargetSteps(statement);
  std::string text;
  for (const TargetStep& step : steps) {
    if (step.module == nullptr) return;
    text += "/" + PrefixOf(out, step.module) + ":" + std::string(step.name);
  }
  if (!text.empty()) SetArgument(out->all->session, statement, text);
}

// Names of own nodes, bare, with single blanks.
void RewriteNames(Output* out, xmlNode* statement) {
  const char* text = ArgumentOf(statement);
  if (text == nullptr) return;
  std::string names;
  for (const std::string_view name : SplitNames(text)) {
    if (!names.empty()) names += ' ';
    names += SplitReference(name).name;
  }
  if (names != text) SetArgument(out->all->session, statement, names);
}

// The paths of unique: their prefixes can only be the module's own.
void RewriteUnique(Output* out, xmlNode* statement) {
  const char* text = ArgumentOf(statement);
  if (text == nullptr) return;
  std::string paths;
  for (const std::string_view one : SplitNames(text)) {
    if (!paths.empty()) paths += ' ';
    NodePath path;
    XpathError error;
    if (!ParseSchemaNodeId(one, false, &path, &error)) return;
    for (size_t i = 0; i < path.steps.size(); ++i) {
      if (i > 0) paths += '/';
      paths += path.Of(path.steps[i].name);
    }
  }
  if (paths != text) SetArgument(out->all->session, statement, paths);
}

Module* ModuleOfInstance(const xmlNode* statement) {
  if (statement->ns == nullptr || statement->ns->href == nullptr) return nullptr;
  return ModuleOfNamespace(StatementOf(statement)->words,
                           reinterpret_cast<const char*>(statement->ns->href));
}

// True where the loader keeps instances of extensions.
bool KeepsExtensions(const xmlNode* parent) {
  const Keyword keyword = KeywordOf(parent);
  return keyword == Keyword::kModule || keyword == Keyword::kDeviate || keyword == Keyword::kNone ||
         IsSchemaNode(keyword);
}

// The argument of instances, as the definition has it: its name and where it stands.
bool HaveSameArgument(const xmlNode* a, const xmlNode* b) {
  const xmlNode* first = FirstChild(a, Keyword::kArgument);
  const xmlNode* second = FirstChild(b, Keyword::kArgument);
  if (first == nullptr || second == nullptr) return first == second;
  const char* name = ArgumentOf(first);
  const char* other = ArgumentOf(second);
  return name != nullptr && other != nullptr && std::string_view(name) == other &&
         IsChildTrue(first, Keyword::kYinElement) == IsChildTrue(second, Keyword::kYinElement);
}

// False: the revision of its module that is written would not know the instance.
bool IsDefinedAsWritten(const Output* out, Module* module, const xmlNode* statement) {
  Module* written = WrittenModule(out->all->repository, module->name);
  if (written == nullptr || written == module) return true;
  const xmlNode* used = FindGlobal(module, SymbolKind::kExtension, NameOf(statement));
  const xmlNode* now = FindGlobal(written, SymbolKind::kExtension, NameOf(statement));
  return used == nullptr || (now != nullptr && HaveSameArgument(used, now));
}

// False: it has left the tree, with what stands in it.
bool RewriteExtension(Rewriting* rewriting, xmlNode* statement) {
  Output* out = rewriting->out;
  Module* module = ModuleOfInstance(statement);
  if (module == nullptr) return true;
  if (!IsDefinedAsWritten(out, module, statement)) {
    Lose(out, statement,
         "the revision of \"" + module->name + "\" that is written has no such extension \"" +
             NameOf(statement) + "\"; it is left out");
    TakeOut(statement);
    out->removed.emplace_back(statement);
    return false;
  }
  PrefixOf(out, module);
  if (DataTemplateOf(statement) == DataTemplate::kAugmentStructure) RewriteTarget(out, statement);
  const bool asElement = StatementOf(statement)->argumentIsElement;
  const xmlNode* parent = ParentOf(statement);
  if (!asElement && KeepsExtensions(parent)) return true;
  const std::string place = asElement ? "its argument as an element" : NameOf(parent);
  if (!rewriting->reportedExtensions.insert({NameOf(statement), place}).second) return true;
  Lose(out, statement,
       std::string("the loader does not keep the extension \"") + NameOf(statement) +
           (asElement ? "\" with " : "\" in ") + place + "; it stays in the file");
  return true;
}

// A condition has no other statements that would be rewritten.
void RewriteExtensionsIn(Rewriting* rewriting, const xmlNode* condition) {
  for (xmlNode* s = NextInTree(condition, condition); s != nullptr;) {
    xmlNode* outside = NextOutside(condition, s);
    const bool stays = !Is(s, Keyword::kNone) || RewriteExtension(rewriting, s);
    s = stays ? NextInTree(condition, s) : outside;
  }
}

bool IsUnionMember(const xmlNode* type) {
  return Is(ParentOf(type), Keyword::kType);
}

// Gives the statement to go on from.
xmlNode* RewriteTypeHere(Output* out, xmlNode* type) {
  if (IsUnionMember(type)) {
    const xmlNode* bottom = FindBottomType(type).type;
    if (bottom != nullptr && std::string_view(ArgumentOf(bottom)) == "leafref") {
      xmlNode* before = type->prev;
      xmlNode* parent = type->parent;
      ResolveUnionMember(out, type);
      type = before == nullptr ? parent->children : before->next;
    }
  }
  xmlNode* now = RewriteType(out, type);
  SettleItems(out, now);
  if (OptionsDecide(*out->all)) LeaveDefaultOfTypedef(out, now);
  return now;
}

// Rewrites one statement. Gives the one that stands there now, or NULL when it has left.
xmlNode* RewriteOne(Rewriting* rewriting, xmlNode* s) {
  Output* out = rewriting->out;
  switch (KeywordOf(s)) {
    case Keyword::kType:
      return RewriteTypeHere(out, s);
    case Keyword::kBase:
      return RewriteBase(out, s) ? s : nullptr;
    case Keyword::kPath:
      RewritePath(out, s);
      break;
    case Keyword::kDefault:
      if (OptionsDecide(*out->all) && IsDefaultOff(out, s)) {
        LeaveDefault(out, s);
        return nullptr;
      }
      return RewriteDefault(out, s) ? s : nullptr;
    case Keyword::kKey:
      RewriteNames(out, s);
      break;
    case Keyword::kUnique:
      RewriteUnique(out, s);
      break;
    case Keyword::kAugment:
    case Keyword::kDeviation:
      RewriteTarget(out, s);
      break;
    case Keyword::kNone:
      return RewriteExtension(rewriting, s) ? s : nullptr;
    default:
      break;
  }
  return s;
}

bool IsCondition(const xmlNode* s) {
  return Is(s, Keyword::kWhen) || Is(s, Keyword::kMust);
}

}  // namespace

void RewriteArguments(Output* out) {
  Rewriting rewriting{out, {}};
  xmlNode* root = out->written.root;
  for (xmlNode* s = FirstChild(root); s != nullptr;) {
    xmlNode* outside = NextOutside(root, s);
    if (IsCondition(s)) {
      RewriteExtensionsIn(&rewriting, s);
      TranslateCondition(out, s);
      s = outside;
      continue;
    }
    xmlNode* now = RewriteOne(&rewriting, s);
    // Typedefs may have been appended behind the last statement.
    if (now == nullptr) {
      s = outside;
    } else {
      s = NextInTree(root, now);
    }
  }
}

}  // namespace compiler
