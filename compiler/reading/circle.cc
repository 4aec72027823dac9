// SPDX-License-Identifier: BSD-3-Clause
// One walk for all kinds: from each starting point along what it refers to, on a stack
// of our own, since a chain may be long. Whoever is met again while still on the stack
// closes a circle.
#include "compiler/reading/circle.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/reading/type_chain.h"
#include "compiler/words/if_feature.h"

namespace compiler {

namespace {

// One way from a thing to another, and the statement that makes it.
struct Link {
  const void* to = nullptr;
  const xmlNode* statement = nullptr;
};

using LinksOf = std::function<std::vector<Link>(const void* from)>;
using NameOfThing = std::function<std::string(const void* thing)>;

struct Step {
  const void* thing = nullptr;
  std::vector<Link> links;
  size_t next = 0;
};

struct CircleSearch {
  const char* kind = "";
  const char* group = "";
  LinksOf linksOf;
  NameOfThing nameOf;
  Report* report = nullptr;
  std::unordered_map<const void*, bool> seen;  // true: on the stack
  std::vector<Step> stack;
  bool found = false;
};

void Push(CircleSearch* search, const void* thing) {
  search->seen[thing] = true;
  search->stack.push_back({thing, search->linksOf(thing), 0});
}

void ReportCircle(CircleSearch* search, const Link& closing) {
  std::string names;
  bool inside = false;
  for (const Step& step : search->stack) {
    inside = inside || step.thing == closing.to;
    if (inside) names += search->nameOf(step.thing) + " -> ";
  }
  search->found = true;
  StatementOf(closing.statement)->words->broken = true;
  AddFinding(search->report, Severity::kFatal, search->group, closing.statement,
             std::string("circle of ") + search->kind + ": " + names + search->nameOf(closing.to),
             "take one of them out of it");
}

void SearchFrom(CircleSearch* search, const void* start) {
  if (search->seen.count(start) != 0) return;
  Push(search, start);
  while (!search->stack.empty()) {
    Step& step = search->stack.back();
    if (step.next == step.links.size()) {
      search->seen[step.thing] = false;
      search->stack.pop_back();
      continue;
    }
    const Link link = step.links[step.next++];
    const auto seen = search->seen.find(link.to);
    if (seen == search->seen.end()) {
      Push(search, link.to);
    } else if (seen->second) {
      ReportCircle(search, link);
    }
  }
}

std::string FileName(const void* file) {
  return static_cast<const Module*>(file)->name;
}

std::vector<Link> ImportsOf(const void* file) {
  std::vector<Link> links;
  for (const Import& import : static_cast<const Module*>(file)->imports) {
    if (import.target != nullptr) links.push_back({import.target, import.statement});
  }
  return links;
}

std::vector<Link> IncludesOf(const void* file) {
  std::vector<Link> links;
  for (const Include& include : static_cast<const Module*>(file)->includes) {
    if (include.target != nullptr) links.push_back({include.target, include.statement});
  }
  return links;
}

const xmlNode* Node(const void* thing) {
  return static_cast<const xmlNode*>(thing);
}

std::string DefinitionName(const void* definition) {
  const char* name = ArgumentOf(Node(definition));
  return name == nullptr ? "" : name;
}

// Within the module only: a circle that leaves it is one of imports.
void AddLink(std::vector<Link>* links, SymbolKind kind, const xmlNode* at, std::string_view name) {
  const xmlNode* definition = FindSymbol(at, kind, name);
  if (definition == nullptr) return;
  if (MainModuleOf(StatementOf(definition)->words) != MainModuleOf(StatementOf(at)->words)) return;
  links->push_back({definition, at});
}

// What the substatements of this keyword name, wherever below the definition.
std::vector<Link> NamedBelow(const void* definition, Keyword keyword, SymbolKind kind) {
  std::vector<Link> links;
  const xmlNode* top = Node(definition);
  for (const xmlNode* s = NextInTree(top, top); s != nullptr; s = NextInTree(top, s)) {
    if (!Is(s, keyword) || ArgumentOf(s) == nullptr) continue;
    const bool isBuiltIn =
        kind == SymbolKind::kTypedef && FindBuiltIn(ArgumentOf(s)) != BuiltIn::kNone;
    if (!isBuiltIn) AddLink(&links, kind, s, ArgumentOf(s));
  }
  return links;
}

std::vector<Link> FeaturesOf(const void* definition) {
  std::vector<Link> links;
  const xmlNode* top = Node(definition);
  for (const xmlNode* s = FirstChild(top, Keyword::kIfFeature); s != nullptr;
       s = NextSibling(s, Keyword::kIfFeature)) {
    FeatureExpr expr;
    XpathError error;
    const char* text = ArgumentOf(s);
    if (text == nullptr || !ParseIfFeature(text, true, &expr, &error)) continue;
    for (const FeatureNode& node : expr.nodes) {
      if (node.op != FeatureOp::kFeature) continue;
      const std::string prefix(expr.Of(node.prefix));
      AddLink(&links, SymbolKind::kFeature, s,
              (prefix.empty() ? "" : prefix + ":") + std::string(expr.Of(node.name)));
    }
  }
  return links;
}

CircleSearch DefinitionSearch(Keyword keyword, Report* report) {
  CircleSearch search;
  search.report = report;
  search.nameOf = DefinitionName;
  switch (keyword) {
    case Keyword::kGrouping:
      search.kind = "groupings";
      search.group = "grouping";
      search.linksOf = [](const void* d) {
        return NamedBelow(d, Keyword::kUses, SymbolKind::kGrouping);
      };
      break;
    case Keyword::kTypedef:
      search.kind = "typedefs";
      search.group = "type";
      search.linksOf = [](const void* d) {
        return NamedBelow(d, Keyword::kType, SymbolKind::kTypedef);
      };
      break;
    case Keyword::kIdentity:
      search.kind = "identities";
      search.group = "identity";
      search.linksOf = [](const void* d) {
        return NamedBelow(d, Keyword::kBase, SymbolKind::kIdentity);
      };
      break;
    default:
      search.kind = "features";
      search.group = "feature";
      search.linksOf = FeaturesOf;
      break;
  }
  return search;
}

struct DefinitionWalk {
  CircleSearch* search;
  Keyword keyword;
};

void SearchFile(Module* file, void* arg) {
  const auto* walk = static_cast<DefinitionWalk*>(arg);
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    if (Is(s, walk->keyword)) SearchFrom(walk->search, s);
  }
}

}  // namespace

// The files before `first` were searched with all that they refer to, so that no circle leads
// through them.
void ReportLinkCircles(const std::vector<Module*>& files, size_t first, Report* report) {
  const std::unordered_set<const void*> open(files.begin() + static_cast<std::ptrdiff_t>(first),
                                             files.end());
  const auto within = [&open](std::vector<Link> (*linksOf)(const void*)) {
    return [&open, linksOf](const void* file) {
      std::vector<Link> links = linksOf(file);
      const auto known = std::remove_if(links.begin(), links.end(), [&open](const Link& link) {
        return open.count(link.to) == 0;
      });
      links.erase(known, links.end());
      return links;
    };
  };
  CircleSearch imports{"imports", "linkage", within(ImportsOf), FileName, report, {}, {}, false};
  CircleSearch includes{"includes", "linkage", within(IncludesOf), FileName, report, {}, {}, false};
  for (; first < files.size(); ++first) {
    SearchFrom(&imports, files[first]);
    SearchFrom(&includes, files[first]);
  }
}

bool ReportDefinitionCircles(Module* module, Report* report) {
  bool found = false;
  for (const Keyword keyword :
       {Keyword::kGrouping, Keyword::kTypedef, Keyword::kIdentity, Keyword::kFeature}) {
    CircleSearch search = DefinitionSearch(keyword, report);
    DefinitionWalk walk{&search, keyword};
    ForEachFile(module, SearchFile, &walk);
    found = found || search.found;
  }
  return found;
}

}  // namespace compiler
