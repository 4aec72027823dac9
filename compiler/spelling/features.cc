// SPDX-License-Identifier: BSD-3-Clause
// The loader reads one feature per if-feature, all of which must be on, and reads none
// at all under enum and bit. A feature that depends on one that is off is off too,
// whatever the options say of it.
#include "compiler/spelling/features.h"

#include <string>
#include <utility>

#include "compiler/reading/repository.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/departures.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/words/if_feature.h"

namespace compiler {

namespace {

constexpr char kFeatureClass[] = "feature";
// How far features that depend on features are followed; circles are errors before.
constexpr unsigned kMaxChain = 100;

FeatureState Named(const CompileOptions& options, const Module& module, std::string_view feature) {
  for (const FeatureName& name : options.features) {
    if (name.module == module.name && (name.feature == "*" || name.feature == feature))
      return FeatureState::kOn;
  }
  return options.featuresComplete ? FeatureState::kOff : FeatureState::kUnknown;
}

bool NeedsWhatIsOff(const Output* out, const xmlNode* node, unsigned chain);

FeatureState StateOf(const Output* out, Module* module, std::string_view feature, unsigned chain) {
  if (module == nullptr || chain == kMaxChain) return FeatureState::kUnknown;
  const xmlNode* definition = FindGlobal(module, SymbolKind::kFeature, feature);
  if (definition == nullptr) return FeatureState::kUnknown;
  if (NeedsWhatIsOff(out, definition, chain)) return FeatureState::kOff;
  return Named(out->all->options, *module, feature);
}

// True when one of the if-features of the statement cannot hold.
bool NeedsWhatIsOff(const Output* out, const xmlNode* node, unsigned chain) {
  for (const xmlNode* s = FirstChild(node, Keyword::kIfFeature); s != nullptr;
       s = NextSibling(s, Keyword::kIfFeature)) {
    Module* words = StatementOf(s)->words;
    FeatureExpr expr;
    XpathError error;
    if (ArgumentOf(s) == nullptr || !ParseIfFeature(ArgumentOf(s), true, &expr, &error)) continue;
    const auto oracle = [&](std::string_view prefix, std::string_view name) {
      return StateOf(out, ModuleOfPrefix(words, prefix), name, chain + 1);
    };
    if (Evaluate(expr, oracle) == FeatureState::kOff) return true;
  }
  return false;
}

bool IsEnumOrBit(const xmlNode* statement) {
  return Is(statement, Keyword::kEnum) || Is(statement, Keyword::kBit);
}

// An earlier one of the same node says the same.
bool IsRepeated(const xmlNode* statement) {
  for (const xmlNode* s = FirstChild(statement->parent, Keyword::kIfFeature); s != statement;
       s = NextSibling(s, Keyword::kIfFeature)) {
    if (std::string_view(ArgumentOf(s)) == ArgumentOf(statement)) return true;
  }
  return false;
}

void DropRepeated(xmlNode* statement) {
  if (IsRepeated(statement)) RemoveStatement(statement);
}

// Several statements for one conjunction, each that is not said yet.
void WriteConjunction(Output* out, xmlNode* statement, const std::vector<std::string>& features) {
  xmlNode* last = statement;
  for (size_t i = 1; i < features.size(); ++i) {
    xmlNode* more = MakeStatement(out->all->session, statement, Keyword::kIfFeature, features[i]);
    InsertAfter(last, more);
    last = more;
  }
  SetArgument(out->all->session, statement, features[0]);
  while (last != statement) {
    xmlNode* before = last->prev;
    DropRepeated(last);
    last = before;
  }
  DropRepeated(statement);
}

// Every feature must be known: one of an unknown prefix would make the load fail.
bool AreDefined(Output* out, const xmlNode* statement, const FeatureExpr& expr) {
  Module* words = StatementOf(statement)->words;
  for (const FeatureNode& node : expr.nodes) {
    if (node.op != FeatureOp::kFeature) continue;
    Module* module = ModuleOfPrefix(words, expr.Of(node.prefix));
    const std::string_view name = expr.Of(node.name);
    if (module != nullptr && FindGlobal(module, SymbolKind::kFeature, name) != nullptr) continue;
    AddFinding(&out->report, Severity::kError, kFeatureClass, statement,
               "the feature \"" + std::string(expr.Of(node.span)) +
                   "\" is not found; the condition is left out");
    return false;
  }
  return true;
}

// The first feature that only another revision of its module has; empty: all are there.
std::string MissingFeature(Output* out, const xmlNode* statement, const FeatureExpr& expr) {
  for (const FeatureNode& node : expr.nodes) {
    if (node.op != FeatureOp::kFeature) continue;
    Module* module = ModuleOfPrefix(StatementOf(statement)->words, expr.Of(node.prefix));
    Module* written = WrittenModule(out->all->repository, module->name);
    if (written != nullptr && written != module &&
        FindGlobal(written, SymbolKind::kFeature, expr.Of(node.name)) == nullptr)
      return "the revision of \"" + module->name + "\" that is written has no feature \"" +
             std::string(expr.Of(node.name)) + "\"";
  }
  return {};
}

// True: the node that the condition stands on stays.
bool ApplyOne(Output* out, xmlNode* statement) {
  Module* words = StatementOf(statement)->words;
  FeatureExpr expr;
  XpathError error;
  const char* text = ArgumentOf(statement);
  if (text == nullptr || !ParseIfFeature(text, words->version11, &expr, &error)) {
    AddFinding(&out->report, Severity::kError, kFeatureClass, statement,
               "the if-feature expression is wrong: " + error.message + "; it is left out");
    RemoveStatement(statement);
    return true;
  }
  if (!AreDefined(out, statement, expr)) {
    RemoveStatement(statement);
    return true;
  }
  const FeatureRest rest = Reduce(
      expr,
      [&](std::string_view prefix, std::string_view name) {
        return StateOf(out, ModuleOfPrefix(words, prefix), name, 0);
      },
      [&](std::string_view prefix) -> std::optional<std::string> {
        Module* module = ModuleOfPrefix(words, prefix);
        if (module->name == out->module->name) return std::string();
        return PrefixOf(out, module, prefix);
      });
  if (rest.state == FeatureState::kOff) return false;
  const std::string missing = MissingFeature(out, statement, expr);
  if (rest.state == FeatureState::kUnknown && !missing.empty()) {
    // Nobody could turn it on.
    Lose(out, statement,
         missing + "; its " + NameOf(statement->parent) + " stays without the if-feature");
    RemoveStatement(statement);
    return true;
  }
  if (rest.state == FeatureState::kUnknown && IsEnumOrBit(statement->parent)) {
    Lose(out, statement,
         std::string("the loader does not read if-feature of ") + NameOf(statement->parent) +
             "; decide its features with -f or -F");
  } else if (rest.state == FeatureState::kUnknown && !rest.expressible) {
    Lose(out, statement,
         std::string("the if-feature \"") + text +
             "\" cannot be written as features that must all be on; its " +
             NameOf(statement->parent) + " stays without it; decide its features with -f or -F");
  }
  if (rest.state == FeatureState::kUnknown && rest.expressible && !rest.features.empty()) {
    WriteConjunction(out, statement, rest.features);
  } else {
    RemoveStatement(statement);
  }
  return true;
}

// The options name the feature by itself, and it is off all the same.
void SayOffThoughNamed(const Output* out, const xmlNode* feature) {
  const char* name = ArgumentOf(feature);
  for (const FeatureName& one : out->all->options.features) {
    if (name == nullptr || one.module != out->module->name || one.feature != name) continue;
    AddFinding(out->all->report, Severity::kLoss, kLossClass, feature,
               "the feature \"" + one.feature +
                   "\" is off although -f names it, since it depends on one that is off");
    return;
  }
}

}  // namespace

bool IsOff(const Output* out, const xmlNode* node) {
  return NeedsWhatIsOff(out, node, 0);
}

bool SettleIfFeatures(Output* out, xmlNode* node) {
  for (xmlNode* s = FirstChild(node, Keyword::kIfFeature); s != nullptr;) {
    // What is put in behind it is done already.
    xmlNode* next = NextSibling(s, Keyword::kIfFeature);
    if (!ApplyOne(out, s)) return false;
    s = next;
  }
  return true;
}

void ApplyFeatures(Output* out) {
  xmlNode* root = out->written.root;
  for (xmlNode* s = FirstChild(root); s != nullptr;) {
    if (IsEnumOrBit(s) || SettleIfFeatures(out, s)) {
      s = NextInTree(root, s);
      continue;
    }
    xmlNode* next = NextOutside(root, s);
    if (Is(s, Keyword::kFeature)) SayOffThoughNamed(out, s);
    LeaveTree(out, s);
    s = next;
  }
}

}  // namespace compiler
