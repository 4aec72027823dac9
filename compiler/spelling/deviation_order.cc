// SPDX-License-Identifier: BSD-3-Clause
// What the library does is done here with the few properties that deviations change, once
// in each order of every two modules. Texts are compared as it compares them: defaults with
// the names of modules where the type at that time is identityref itself, conditions with
// these in their literals, units as they are.
#include "compiler/spelling/deviation_order.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/words/xpath_edit.h"

namespace compiler {

namespace {

constexpr Keyword kSingle[] = {Keyword::kConfig, Keyword::kMandatory, Keyword::kUnits};

// A node while it is deviated.
struct Deviated {
  bool there = true;
  bool failed = false;  // the library refuses what comes then
  bool severalDefaults = false;
  bool isIdentityref = false;
  std::string type;
  std::map<Keyword, std::string> single;
  std::multiset<std::string> defaults;
  std::multiset<std::string> musts;
};

bool IsSame(const Deviated& a, const Deviated& b) {
  return a.there == b.there && a.type == b.type && a.single == b.single &&
         a.defaults == b.defaults && a.musts == b.musts;
}

// The deviations of one node by one module.
struct Group {
  Output* output = nullptr;
  std::vector<const xmlNode*> deviations;
};

struct Meeting {
  FoundNode target;
  std::vector<Group> groups;
};

std::string Text(const xmlNode* statement) {
  const char* text = statement == nullptr ? nullptr : ArgumentOf(statement);
  return text == nullptr ? std::string() : text;
}

std::string WithModule(const Output& out, std::string_view name) {
  const Reference reference = SplitReference(name);
  const Module* module =
      reference.prefix.empty() ? out.module : ModuleOfWritten(out, reference.prefix);
  return (module == nullptr ? std::string(reference.prefix) : module->name) + ":" +
         std::string(reference.name);
}

// The expression with the names of modules for the prefixes of literals, and of paths.
std::string WithModules(const Output& out, const std::string& text, bool inPaths) {
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(text, &xpath, &error)) return text;
  const auto name = [&out](std::string_view prefix) -> std::optional<std::string> {
    const Module* module = ModuleOfWritten(out, prefix);
    if (module == nullptr) return std::nullopt;
    return module->name;
  };
  NameRules rules;
  rules.identities = name;
  rules.nodes = [&](std::string_view prefix) -> std::optional<std::string> {
    return inPaths ? name(prefix) : std::string(prefix);
  };
  std::vector<UnknownPrefix> unknown;
  return RenamePrefixes(xpath, rules, &unknown);
}

std::string ArgumentWithModules(const Output& out, const xmlNode* s) {
  const std::string text = Text(s);
  if (Is(s, Keyword::kPath)) return WithModules(out, text, true);
  const bool isName = Is(s, Keyword::kBase) || (Is(s, Keyword::kType) && !IsBuiltInType(text));
  return isName ? WithModule(out, text) : text;
}

// A type to be compared: all that stands in it, but for what says nothing to the library.
std::string TypeText(const Output& out, const xmlNode* type) {
  std::string text = ArgumentWithModules(out, type);
  for (const xmlNode* s = FirstChild(type); s != nullptr; s = NextInTree(type, s)) {
    if (Is(s, Keyword::kDescription) || Is(s, Keyword::kReference)) continue;
    text += std::string("\n") + NameOf(s) + " " + ArgumentWithModules(out, s);
  }
  return text;
}

void SetType(Deviated* node, const Output& out, const xmlNode* type) {
  if (type == nullptr) return;
  node->type = TypeText(out, type);
  node->isIdentityref = Text(type) == "identityref";
}

void AddTexts(std::multiset<std::string>* texts, const Output& out, const xmlNode* holder,
              Keyword keyword, bool qualified) {
  for (const xmlNode* s = FirstChild(holder, keyword); s != nullptr; s = NextSibling(s, keyword)) {
    if (keyword == Keyword::kMust) {
      texts->insert(WithModules(out, Text(s), false));
    } else {
      texts->insert(qualified ? WithModule(out, Text(s)) : Text(s));
    }
  }
}

Deviated NodeBefore(const FoundNode& target) {
  Deviated node;
  node.severalDefaults = Is(target.node, Keyword::kLeafList);
  SetType(&node, *target.output, FirstChild(target.node, Keyword::kType));
  for (const Keyword keyword : kSingle) {
    const xmlNode* s = FirstChild(target.node, keyword);
    if (s != nullptr) node.single[keyword] = Text(s);
  }
  AddTexts(&node.defaults, *target.output, target.node, Keyword::kDefault, node.isIdentityref);
  AddTexts(&node.musts, *target.output, target.node, Keyword::kMust, false);
  return node;
}

void Add(Deviated* node, const xmlNode* deviate, const std::multiset<std::string>& defaults,
         const std::multiset<std::string>& musts) {
  for (const Keyword keyword : kSingle) {
    const xmlNode* s = FirstChild(deviate, keyword);
    if (s != nullptr && !node->single.emplace(keyword, Text(s)).second) node->failed = true;
  }
  for (const std::string& one : defaults) {
    if (node->severalDefaults ? node->defaults.count(one) != 0 : !node->defaults.empty())
      node->failed = true;
  }
  node->defaults.insert(defaults.begin(), defaults.end());
  node->musts.insert(musts.begin(), musts.end());
}

void Delete(Deviated* node, const xmlNode* deviate, const std::multiset<std::string>& defaults,
            const std::multiset<std::string>& musts) {
  for (const std::string& one : defaults) {
    if (node->defaults.erase(one) == 0) node->failed = true;
  }
  for (const std::string& one : musts) {
    if (node->musts.erase(one) == 0) node->failed = true;
  }
  const xmlNode* units = FirstChild(deviate, Keyword::kUnits);
  const auto present = node->single.find(Keyword::kUnits);
  if (units == nullptr) return;
  if (present == node->single.end() || present->second != Text(units)) {
    node->failed = true;
  } else {
    node->single.erase(present);
  }
}

void Replace(Deviated* node, const Output& out, const xmlNode* deviate,
             const std::multiset<std::string>& defaults) {
  for (const Keyword keyword : kSingle) {
    const xmlNode* s = FirstChild(deviate, keyword);
    if (s == nullptr) continue;
    if (keyword == Keyword::kUnits && node->single.count(keyword) == 0) node->failed = true;
    node->single[keyword] = Text(s);
  }
  if (!defaults.empty() && node->defaults.empty()) node->failed = true;
  if (!defaults.empty()) node->defaults = defaults;
  SetType(node, out, FirstChild(deviate, Keyword::kType));
}

void ApplyDeviate(Deviated* node, const Output& out, const xmlNode* deviate) {
  const std::string kind = Text(deviate);
  const xmlNode* type = FirstChild(deviate, Keyword::kType);
  const bool qualified = type == nullptr ? node->isIdentityref : Text(type) == "identityref";
  std::multiset<std::string> defaults;
  std::multiset<std::string> musts;
  AddTexts(&defaults, out, deviate, Keyword::kDefault, qualified);
  AddTexts(&musts, out, deviate, Keyword::kMust, false);
  if (kind == "add") Add(node, deviate, defaults, musts);
  if (kind == "delete") Delete(node, deviate, defaults, musts);
  if (kind == "replace") Replace(node, out, deviate, defaults);
  if (kind == "not-supported") node->there = false;
}

void Apply(Deviated* node, const Group& group) {
  for (const xmlNode* deviation : group.deviations) {
    for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
         s = NextSibling(s, Keyword::kDeviate)) {
      // A deviation of what is gone waits, and nothing is left after a failure.
      if (!node->there || node->failed) return;
      ApplyDeviate(node, *group.output, s);
    }
  }
}

bool DependOnOrder(const Deviated& before, const Group& first, const Group& second) {
  Deviated alone = before;
  Deviated other = before;
  Apply(&alone, first);
  Apply(&other, second);
  if (alone.failed || other.failed) return false;  // that is told for itself
  Apply(&alone, second);
  Apply(&other, first);
  if (!alone.there && !other.there) return false;
  return alone.failed || other.failed || !IsSame(alone, other);
}

void Tell(const FoundNode& target, const Group& group, const Group& other) {
  Lose(group.output, group.deviations.front(),
       "module \"" + other.output->module->name + "\" deviates the " + NameOf(target.node) + " \"" +
           Text(target.node) + "\", too, and what becomes of it depends on which of the two is " +
           "loaded first");
}

// Each module is told once of a node, since its author may see his own alone.
void Judge(const Meeting& meeting) {
  const std::vector<Group>& groups = meeting.groups;
  if (groups.size() < 2) return;
  const Deviated before = NodeBefore(meeting.target);
  std::vector<bool> told(groups.size());
  for (size_t i = 1; i < groups.size(); ++i) {
    for (size_t k = 0; k < i; ++k) {
      if ((told[i] && told[k]) || !DependOnOrder(before, groups[k], groups[i])) continue;
      if (!told[k]) Tell(meeting.target, groups[k], groups[i]);
      if (!told[i]) Tell(meeting.target, groups[i], groups[k]);
      told[k] = true;
      told[i] = true;
    }
  }
}

}  // namespace

void ReportOrderOfDeviations(const std::vector<Output*>& outputs) {
  std::vector<Meeting> meetings;
  std::unordered_map<const xmlNode*, size_t> byNode;
  for (Output* out : outputs) {
    if (out->stopped) continue;
    for (const xmlNode* s = FirstChild(out->written.root, Keyword::kDeviation); s != nullptr;
         s = NextSibling(s, Keyword::kDeviation)) {
      const FoundNode target = FindTarget(out->all, TargetSteps(s));
      if (target.node == nullptr) continue;
      const auto entered = byNode.emplace(target.node, meetings.size());
      if (entered.second) meetings.push_back({target, {}});
      std::vector<Group>& groups = meetings[entered.first->second].groups;
      if (groups.empty() || groups.back().output != out) groups.push_back({out, {}});
      groups.back().deviations.push_back(s);
    }
  }
  for (const Meeting& meeting : meetings) Judge(meeting);
}

}  // namespace compiler
