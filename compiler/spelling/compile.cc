// SPDX-License-Identifier: BSD-3-Clause
// The steps of spelling out, and which modules need which. A module is expanded when it
// is written or when a path of another leads into it; nothing is done twice.
#include "compiler/spelling/compile.h"

#include <set>
#include <string_view>
#include <utility>

#include "compiler/reading/circle.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/bounds.h"
#include "compiler/spelling/condition_pass.h"
#include "compiler/spelling/departures.h"
#include "compiler/spelling/deviation_order.h"
#include "compiler/spelling/deviations.h"
#include "compiler/spelling/expand.h"
#include "compiler/spelling/features.h"
#include "compiler/spelling/handed_down.h"
#include "compiler/spelling/identities.h"
#include "compiler/spelling/identity_bases.h"
#include "compiler/spelling/limits.h"
#include "compiler/spelling/off_defaults.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/references.h"
#include "compiler/spelling/rewrite.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/spelling/version.h"

namespace compiler {

namespace {

// A module of which it is asked whether it can be expanded.
struct Probe {
  Module* module = nullptr;
  bool stopped = false;
  std::vector<const Import*> imports;
  size_t next = 0;
};

// Whether a file of the module has errors of its own, or lacks what it needs.
void CheckFile(Module* file, void* arg) {
  auto* probe = static_cast<Probe*>(arg);
  bool fails = file->broken;
  for (const Include& include : file->includes) fails = fails || include.target == nullptr;
  for (const Import& import : file->imports) {
    fails = fails || import.target == nullptr;
    probe->imports.push_back(&import);
  }
  probe->stopped = probe->stopped || fails;
}

// What the module is by itself.
Probe StartProbe(Compilation* all, Module* module) {
  Probe probe;
  probe.module = module;
  // A submodule that does not say of which module is no operand, and lint says what it lacks.
  probe.stopped = !Is(module->root, Keyword::kModule);
  ForEachFile(module, CheckFile, &probe);
  probe.stopped = probe.stopped || ReportDefinitionCircles(module, all->report);
  // A circle of imports leads here again; who is in one is not sound.
  all->sound[module] = false;
  return probe;
}

// True when the module can be expanded: what it needs is there, too. Modules that import
// one another may be a long chain, so they wait on a stack of our own.
bool IsSound(Compilation* all, Module* module) {
  const auto known = all->sound.find(module);
  if (known != all->sound.end()) return known->second;
  std::vector<Probe> open = {StartProbe(all, module)};
  while (!open.empty()) {
    Probe* probe = &open.back();
    if (probe->stopped || probe->next == probe->imports.size()) {
      all->sound[probe->module] = !probe->stopped;
      open.pop_back();
      continue;
    }
    const Import* import = probe->imports[probe->next];
    const auto need = all->sound.find(import->target);
    if (need == all->sound.end()) {
      open.push_back(StartProbe(all, import->target));
      continue;
    }
    ++probe->next;
    if (need->second) continue;
    probe->stopped = true;
    AddFinding(all->report, Severity::kFatal, kLinkageClass, import->statement,
               "the imported module \"" + import->module + "\" has errors");
  }
  return all->sound[module];
}

// The modules and all that they import, as their files say it, each once.
std::vector<Output*> ExpandAll(Compilation* all, const std::vector<Module*>& modules) {
  std::vector<Output*> outputs;
  std::set<const Module*> seen;
  const auto add = [&](Module* module) {
    if (seen.insert(module).second) outputs.push_back(ExpandedOutput(all, module));
  };
  for (Module* module : modules) add(module);
  for (size_t i = 0; i < outputs.size(); ++i) {
    std::vector<Module*> files;
    ForEachFile(
        outputs[i]->module,
        [](Module* file, void* arg) { static_cast<std::vector<Module*>*>(arg)->push_back(file); },
        &files);
    for (const Module* file : files) {
      for (const Import& import : file->imports) {
        if (import.target == nullptr) continue;
        Module* written = WrittenModule(all->repository, import.module);
        add(written == nullptr ? import.target : written);
      }
    }
  }
  return outputs;
}

using Step = void (*)(Output*);

// Each step over all modules before the next: what one finds in another must not depend
// on their order.
void TakeStep(const std::vector<Output*>& outputs, Step step) {
  for (Output* out : outputs) {
    if (!out->stopped) step(out);
  }
}

// What others say of a node is looked up while it is still there.
void DecideFeatures(Compilation* all, const std::vector<Output*>& outputs) {
  if (!OptionsDecide(*all)) {
    TakeStep(outputs, ApplyFeatures);
    return;
  }
  const std::vector<NotedDeviation> deviations = NoteDeviations(outputs);
  const References references = NoteReferences(outputs);
  TakeStep(outputs, ApplyFeatures);
  FollowDepartures(outputs, deviations);
  TakeStep(outputs, RestoreBases);
  SettleReferences(references);
  all->data = {};
}

void TranslateAll(Compilation* all, const std::vector<Output*>& outputs) {
  TakeStep(outputs, WrapForeignCases);
  TakeStep(outputs, NameModulesOfDefaults);
  DecideFeatures(all, outputs);
  for (const Step step : {SpreadAugmentConditions, SpreadAugmentFeatures, NoteTypedefNames,
                          RewriteArguments, CompleteBases})
    TakeStep(outputs, step);
  if (OptionsDecide(*all)) TakeStep(outputs, SettleDeviatedDefaults);
}

// Those named, then what they import in the written form, each once.
std::vector<Output*> InOrder(Compilation* all, const std::vector<Module*>& modules) {
  std::vector<Output*> outputs;
  std::set<std::string_view> names;
  for (Module* module : modules) {
    if (names.insert(module->name).second) outputs.push_back(ExpandedOutput(all, module));
  }
  for (size_t i = 0; i < outputs.size(); ++i) {
    for (Module* import : WrittenImports(all, *outputs[i])) {
      if (names.insert(import->name).second) outputs.push_back(ExpandedOutput(all, import));
    }
  }
  return outputs;
}

// Stops what needs a module that is stopped.
void StopDependents(const std::vector<Output*>& outputs) {
  std::map<std::string_view, const Output*> byName;
  for (const Output* out : outputs) byName.emplace(out->module->name, out);
  for (bool changed = true; changed;) {
    changed = false;
    for (Output* out : outputs) {
      for (size_t i = 1; !out->stopped && i < out->prefixes.size(); ++i) {
        const std::string& name = out->prefixes[i].module->name;
        const auto need = byName.find(name);
        if (need == byName.end() || !need->second->stopped) continue;
        Stop(out, kLinkageClass, out->module->root,
             "not written, since \"" + name + "\" has errors");
        changed = true;
      }
    }
  }
}

}  // namespace

Output* ExpandedOutput(Compilation* all, Module* module) {
  std::unique_ptr<Output>& place = all->outputs[module];
  if (place != nullptr) return place.get();
  place = std::make_unique<Output>();
  Output* out = place.get();
  out->all = all;
  out->module = module;
  WriteHeader(out);
  if (!IsSound(all, module)) out->stopped = true;
  if (!out->stopped && FitsBounds(out)) {
    ExpandModule(out);
    if (!out->stopped) FoldOwnAugments(out);
  }
  return out;
}

std::vector<Module*> WrittenImports(Compilation* all, const Output& out) {
  std::vector<Module*> modules;
  for (size_t i = 1; i < out.prefixes.size(); ++i) {
    Module* written = WrittenModule(all->repository, out.prefixes[i].module->name);
    modules.push_back(written == nullptr ? out.prefixes[i].module : written);
  }
  return modules;
}

std::vector<Output*> CompileAll(Compilation* all, const std::vector<Module*>& modules) {
  TranslateAll(all, ExpandAll(all, modules));
  std::vector<Output*> outputs = InOrder(all, modules);
  StopDependents(outputs);
  SettleConditions(outputs);
  for (Output* out : outputs) {
    if (!out->stopped) SettleDeviations(out);
  }
  ReportOrderOfDeviations(outputs);
  SettleVersions(outputs);
  for (Output* out : outputs) {
    if (!out->stopped) KeepLimits(out);
  }
  return outputs;
}

void Stop(Output* out, const char* group, const xmlNode* at, std::string message,
          std::string advice) {
  out->stopped = true;
  AddFinding(&out->report, Severity::kFatal, group, at, std::move(message), std::move(advice));
}

void Lose(Output* out, const xmlNode* at, std::string message) {
  AddFinding(&out->report, Severity::kLoss, kLossClass, at, std::move(message));
}

}  // namespace compiler
