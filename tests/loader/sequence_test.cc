// SPDX-License-Identifier: BSD-3-Clause
// Random loads and unloads of modules that augment and deviate each other.
//
// Each run has a seed of its own and does the same on every machine. After the
// steps of a run, the context must be as one that loads the remaining modules
// afresh in the order in which they were loaded last. That holds for the modules
// of the first part, and the second part keeps what it does not hold for:
// - An augment that a removed node took with it comes back only when its own
//   module is loaded again, so none of them removes what others augment.
// - Config that an augment took over from its target is kept when it leaves, so
//   none of them changes config above foreign nodes.
// - A path that reaches into a module without naming it is not told when that
//   module comes, so all of their paths name every module.
// An input or output that was made for an augment stays when the augment goes;
// without children it is left out of the comparison.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/support/coupling.h"
#include "tests/support/listing.h"
#include "tests/support/yin.h"

namespace {

using Names = std::vector<std::string>;

const char kModels[] = QMODEL_TEST_MODELS "/sequence";

// What the models say, in their order.
struct Model {
  const char* name;
  Names augments;  // modules that the last qualified steps of its paths name
  Names deviates;
};

const std::vector<Model>& ActingModels() {
  static const auto* const models = new std::vector<Model>{
      {"base", {}, {}},
      {"upper", {"base"}, {}},
      {"third", {"upper", "base"}, {}},
      {"fourth", {"third", "upper"}, {}},
      {"calls", {"base"}, {}},
      {"limit", {}, {"base"}},
      {"trim", {}, {"upper"}},
      {"both", {}, {"base", "third"}},
      {"ring1", {"ring2"}, {"ring2"}},
      {"ring2", {"ring1"}, {"ring1"}},
      {"split", {"base"}, {}},
      {"cut", {}, {"split", "calls"}},
  };
  return *models;
}

const Model* FindModel(const std::string& name) {
  for (const Model& model : ActingModels())
    if (name == model.name) return &model;
  return nullptr;
}

bool Contains(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

uint32_t AppendText(const char* text, uint32_t length, void* arg) {
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

std::string Print(QmsModule* module) {
  std::string text;
  EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(module, AppendText, &text));
  return text;
}

Names LinesOf(const std::string& text) {
  Names lines;
  for (size_t start = 0; start < text.size();) {
    const size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

// Leaves the inputs and outputs without children out of a printed tree.
std::string WithoutEmptyInputs(const std::string& text) {
  const Names lines = LinesOf(text);
  std::string kept;
  for (size_t i = 0; i < lines.size(); ++i) {
    const bool made = lines[i].ends_with("+---w input") || lines[i].ends_with("+--ro output");
    const size_t level = lines[i].find('+');
    const bool hasChildren = i + 1 < lines.size() && lines[i + 1].find('+') != std::string::npos &&
                             lines[i + 1].find('+') > level;
    if (!made || hasChildren) kept += lines[i] + "\n";
  }
  return kept;
}

Names* g_destroyed = nullptr;

void NoteDestroyed(QmCtx*, const char* modName) {
  g_destroyed->push_back(modName);
}

// The names that are loaded, or whose load has failed, in the order of their last load.
class LoadOrder {
 public:
  void Loaded(const std::string& name) {
    if (!Contains(names_, name)) names_.push_back(name);
  }
  void Gone(const std::string& name) { std::erase(names_, name); }
  const Names& Get() const { return names_; }
  bool Has(const std::string& name) const { return Contains(names_, name); }

 private:
  Names names_;
};

// The modules that an unload must destroy, in their order: whom it deviates, and
// who augments one of them and is deviated by a module that deviates both.
class Closure {
 public:
  Closure(const LoadOrder& order, const std::string& name) : order_(order), pending_{name} {
    for (size_t i = 0; i < pending_.size(); ++i) Propagate(pending_[i]);
  }
  const Names& Get() const { return pending_; }

 private:
  void Append(const std::string& name) {
    if (!Contains(pending_, name)) pending_.push_back(name);
  }

  bool Deviates(const std::string& source, const std::string& target) const {
    // A module that had its turn has forgotten whom it deviates.
    return Contains(FindModel(source)->deviates, target) && !Contains(done_, source);
  }

  bool ShareDeviator(const std::string& a, const std::string& b) const {
    for (const std::string& name : order_.Get())
      if (FindModel(name) != nullptr && Deviates(name, a) && Deviates(name, b)) return true;
    return false;
  }

  void Propagate(const std::string name) {
    // Relations are visited from the one recorded last.
    for (auto it = order_.Get().rbegin(); it != order_.Get().rend(); ++it) {
      const Model* other = FindModel(*it);
      if (other != nullptr && Contains(other->augments, name) && ShareDeviator(*it, name))
        Append(*it);
    }
    for (const std::string& target : FindModel(name)->deviates)
      if (order_.Has(target)) Append(target);
    done_.push_back(name);
  }

  const LoadOrder& order_;
  Names pending_;
  Names done_;
};

// One context, and what is to be true of it.
class Player {
 public:
  explicit Player(uint32_t seed) : random_(seed) {
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, kModels));
    QM_CTX_SetReloadModuleCbFunc(ctx_, NoteDestroyed);
  }

  void Step() {
    switch (Random(8)) {
      case 0:
      case 1:
      case 2:
        return Load(AnyName());
      case 3:
      case 4:
      case 5:
        return Unload(AnyName());
      default:
        return ToggleFeature();
    }
  }

  void CompareWithAFreshContext() {
    yin::Context fresh;
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(fresh, kModels));
    for (const std::string& name : order_.Get())
      EXPECT_EQ(FindModel(name) != nullptr, QM_CTX_LoadModule(fresh, name.c_str()) == 0) << name;
    for (const auto& [name, features] : features_)
      for (const std::string& feature : features)
        EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(QM_CTX_GetModuleByModName(fresh, name.c_str()),
                                              feature.c_str()));
    for (const Model& model : ActingModels()) Compare(model.name, fresh);
    EXPECT_EQ(fresh.Errors(), ctx_.Errors());
    coupling::CheckLinks(fresh);
  }

  const std::string& Log() const { return log_; }

 private:
  uint32_t Random(uint32_t below) { return static_cast<uint32_t>(random_()) % below; }

  std::string AnyName() {
    const auto count = static_cast<uint32_t>(ActingModels().size());
    const uint32_t i = Random(count + 2);
    return i < count ? ActingModels()[i].name : i == count ? "broken" : "ghost";
  }

  void Load(const std::string& name) {
    log_ += " +" + name;
    const uint32_t expected = name == "broken"  ? QM_INVALID
                              : name == "ghost" ? QM_NOT_FOUND
                                                : QM_OK;
    EXPECT_EQ(expected, QM_CTX_LoadModule(ctx_, name.c_str()));
    order_.Loaded(name);
    coupling::CheckLinks(ctx_);
  }

  void Unload(const std::string& name) {
    log_ += " -" + name;
    Names expected;
    if (FindModel(name) != nullptr && order_.Has(name)) expected = Closure(order_, name).Get();
    Names destroyed;
    g_destroyed = &destroyed;
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx_, name.c_str()));
    EXPECT_EQ(expected, destroyed);
    order_.Gone(name);
    for (const std::string& gone : destroyed) order_.Gone(gone);
    for (const std::string& gone : destroyed) {
      // The one that was named comes back only when it was merged from split files.
      if (gone != name || name == "split") {
        order_.Loaded(gone);
      } else {
        features_.erase(gone);
      }
    }
    coupling::CheckLinks(ctx_);
  }

  void ToggleFeature() {
    static const char* const kNames[][2] = {{"base", "fast"},
                                            {"base", "slow"},
                                            {"upper", "fast"},
                                            {"ring1", "fast"},
                                            {"split", "fast"}};
    const auto& [name, feature] = kNames[Random(std::size(kNames))];
    QmsModule* module = QM_CTX_GetModuleByModName(ctx_, name);
    if (module == nullptr) return;
    log_ += std::string(" *") + name + ":" + feature;
    if (features_[name].erase(feature) > 0) {
      EXPECT_EQ(QM_OK, QM_MOD_DisableFeature(module, feature));
    } else {
      EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(module, feature));
      features_[name].insert(feature);
    }
  }

  void Compare(const char* name, QmCtx* fresh) const {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx_, name);
    QmsModule* other = QM_CTX_GetModuleByModName(fresh, name);
    ASSERT_EQ(other == nullptr, module == nullptr) << name;
    if (module == nullptr) return;
    EXPECT_EQ(WithoutEmptyInputs(Print(other)), WithoutEmptyInputs(Print(module)));
    EXPECT_EQ(coupling::Augments(other), coupling::Augments(module)) << name;
    EXPECT_EQ(coupling::Deviations(other), coupling::Deviations(module)) << name;
    for (const char* feature : {"fast", "slow"})
      EXPECT_EQ(QM_CTX_IsModFeatureEnable(fresh, name, feature),
                QM_CTX_IsModFeatureEnable(ctx_, name, feature))
          << name << " " << feature;
  }

  std::mt19937 random_;
  yin::Context ctx_;
  LoadOrder order_;
  std::map<std::string, std::set<std::string>> features_;
  std::string log_;
};

}  // namespace

TEST(LoadSequence, EndsAsAFreshLoadOfTheRemainingModules) {
  for (uint32_t seed = 1; seed <= 150 && !HasFailure(); ++seed) {
    listing::Draw(seed);
    Player player(seed);
    for (int step = 0; step < 40 && !HasFailure(); ++step) {
      player.Step();
      if (step % 4 == 3) player.CompareWithAFreshContext();
    }
    EXPECT_FALSE(HasFailure()) << "seed " << seed << ":" << player.Log();
  }
}

// Everything that a client may do, also what leaves traces: nodes with foreign
// nodes in them are removed, paths do not name the modules that they lead
// through, imports are loaded along, modules come from memory. No pointer may
// lead into a destroyed module. In the end, with all others gone, base is as on
// the first day.
TEST(WildSequence, LeavesNoPointerIntoADestroyedModule) {
  static const char* const kNames[] = {"base", "upper", "third", "fourth", "calls", "limit",
                                       "trim", "both",  "ring1", "ring2",  "split", "cut",
                                       "axe",  "hush",  "bare",  "broken", "ghost"};
  for (uint32_t seed = 1; seed <= 150 && !HasFailure(); ++seed) {
    listing::Draw(seed);
    std::mt19937 random(seed);
    std::string log;
    Names destroyed;
    g_destroyed = &destroyed;
    yin::Context ctx(seed % 3 == 0 ? QM_LOAD_IMPORTS : 0);
    ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, kModels));
    for (int step = 0; step < 50 && !HasFailure(); ++step) {
      const char* name = kNames[random() % std::size(kNames)];
      const bool load = random() % 5 < 3;
      log += std::string(load ? " +" : " -") + name;
      static_cast<void>(load ? QM_CTX_LoadModule(ctx, name) : QM_CTX_UnloadModule(ctx, name));
      coupling::CheckLinks(ctx);
      for (const char* printed : kNames)
        if (QM_CTX_GetModuleByModName(ctx, printed) != nullptr)
          Print(QM_CTX_GetModuleByModName(ctx, printed));
    }
    if (seed % 2 == 0) {
      // A context may be deleted in any state.
      EXPECT_FALSE(HasFailure()) << "seed " << seed << ":" << log;
      continue;
    }
    // A deviating module goes before the one that it would bring back. A split
    // module comes back in any case, and acts on base.
    for (const char* name : {"axe", "hush", "bare", "limit", "both", "trim", "cut", "calls",
                             "fourth", "third", "upper", "split", "base"})
      EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, name)) << name;
    for (const char* name : {"upper", "third", "fourth", "calls", "base"})
      EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(ctx, name)) << name;
    yin::Context fresh;
    ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(fresh, kModels));
    if (QM_CTX_GetModuleByModName(ctx, "split") != nullptr) {
      ASSERT_EQ(QM_OK, QM_CTX_LoadModule(fresh, "split"));
    }
    ASSERT_EQ(QM_OK, QM_CTX_LoadModule(fresh, "base"));
    ASSERT_EQ(QM_OK, QM_CTX_LoadModule(ctx, "base"));
    EXPECT_EQ(Print(QM_CTX_GetModuleByModName(fresh, "base")),
              Print(QM_CTX_GetModuleByModName(ctx, "base")));
    EXPECT_FALSE(HasFailure()) << "seed " << seed << ":" << log;
  }
}
