// SPDX-License-Identifier: BSD-3-Clause
// Models that several modules deviate, drawn from a seed. Where each property of a node is
// changed by one module at most, RFC 7950, section 7.20.3, says what comes of it in whatever
// order they are loaded. Where two modules change what they like of one leaf, the compiler
// has to say just when the order matters.
#include <qmodel/inspect.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>

#include "tests/compiler/loading/loading_helper.h"

namespace compiler {
namespace {

constexpr unsigned kSeeds = 8;
constexpr unsigned kOrders = 3;
constexpr unsigned kMeetings = 40;

// A leaf as the models have it before.
struct Leaf {
  std::string path;  // with module names for prefixes
  std::string type;
  std::string byDefault;  // its own
  std::string written;    // as it is written
  std::string units;      // likewise
  bool mandatory = false;
  std::vector<std::string> musts;
  bool inRequest = false;  // takes no config
};

const std::vector<Leaf>& Leafs() {
  static const std::vector<Leaf> leafs = {
      {"/b:c/b:gi", "b:i", "", "", "", false, {}, false},
      {"/b:c/b:gd", "b:d", "", "", "", false, {}, false},
      {"/b:c/b:gm", "int16", "", "", "", false, {"../gd", "../gi = 'one'"}, false},
      {"/b:c/b:n", "int8", "1", "1", "m", false, {}, false},
      {"/b:c/b:k", "int8", "", "", "", true, {}, false},
      {"/b:c/b:t", "b:i", "b:one", "one", "", false, {}, false},
      {"/b:c/b:r", "identityref", "b:one", "p:one", "", false, {}, false},
      {"/b:c/b:ch/b:x1/b:x1", "b:ii", "", "", "", false, {}, false},
      {"/b:c/b:l/b:v", "b:ii", "", "", "", true, {}, false},
      {"/b:r/b:input/b:gi", "b:i", "", "", "", false, {}, true},
      {"/b:r/b:input/b:gm", "int16", "", "", "", false, {"../gd", "../gi = 'one'"}, true},
      {"/b:r/b:input/b:q", "b:ii", "", "", "", false, {}, true},
      {"/b:c/a:x/a:gi", "b:i", "", "", "", false, {}, false},
      {"/b:c/a:x/a:gm", "int16", "", "", "", false, {"../gd", "../gi = 'one'"}, false},
      {"/b:c/a:x/a:f", "b:ii", "b:three", "q:three", "", false, {}, false},
      {"/b:c/a:x/a:h", "a:j", "", "", "", false, {}, false},
  };
  return leafs;
}

constexpr char kBase[] = R"(module b { yang-version 1.1; namespace urn:b; prefix p;
  identity base; identity one { base base; } identity two { base base; }
  identity three { base base; }
  typedef d { type int8; default 5; units s; }
  typedef i { type identityref { base base; } default one; }
  typedef ii { type i; default p:two; }
  grouping g { leaf gi { type i; } leaf gd { type d; }
    leaf gm { type int16; must "../gd"; must "../gi = 'one'"; } }
  container c { uses g; leaf n { type int8; default 1; units m; }
    leaf k { type int8; mandatory true; } leaf t { type i; default one; }
    leaf r { type identityref { base base; } default p:one; }
    choice ch { leaf x1 { type ii; } leaf y1 { type string; } }
    list l { key id; leaf id { type int8; } leaf v { type ii; mandatory true; } } }
  rpc r { input { uses g; leaf q { type ii; } } } })";

constexpr char kAugment[] = R"(module a { yang-version 1.1; namespace urn:a; prefix p;
  import b { prefix q; } identity near { base q:base; }
  typedef j { type q:ii; default near; }
  augment /q:c { container x { uses q:g; leaf f { type q:ii; default q:three; }
    leaf h { type j; } } } })";

const std::vector<std::string> kDeviating = {"y", "z", "w"};

// The default that a type brings, and its units.
std::pair<std::string, std::string> BroughtBy(const std::string& type) {
  static const std::map<std::string, std::pair<std::string, std::string>> brought = {
      {"b:i", {"b:one", ""}},  {"b:ii", {"b:two", ""}}, {"b:d", {"5", "s"}},
      {"a:j", {"a:near", ""}}, {"y:e", {"y:far", ""}},  {"z:e", {"z:far", ""}},
      {"w:e", {"w:far", ""}},
  };
  const auto found = brought.find(type);
  return found == brought.end() ? std::pair<std::string, std::string>() : found->second;
}

bool IsIdentity(const std::string& type) {
  return type == "identityref" || BroughtBy(type).first.find(':') != std::string::npos;
}

// What is to be known of a leaf, in one line.
std::string Facts(const std::string& byDefault, const std::string& units, bool mandatory,
                  bool config, size_t musts) {
  return "default " + byDefault + ", units " + units + (mandatory ? ", mandatory" : "") +
         (config ? "" : ", config false") + ", musts " + std::to_string(musts);
}

class Drawing {
 public:
  // All leafs, each property by one module.
  explicit Drawing(unsigned seed) : Drawing(std::mt19937(seed)) {
    for (const Leaf& leaf : Leafs()) Deviate(leaf);
  }
  // One leaf, by the first two modules.
  Drawing(unsigned seed, const Leaf& leaf) : Drawing(std::mt19937(seed)) {
    for (const char* name : {"y", "z"}) {
      only_ = name;
      Deviate(leaf);
    }
  }

  // The text of a deviating module.
  std::string Text(const std::string& name) const {
    const auto& [own, b, a] = prefixes_.at(name);
    const auto body = bodies_.find(name);
    return "module " + name + " { yang-version 1.1; namespace urn:" + name + "; prefix " + own +
           "; import b { prefix " + b + "; } import a { prefix " + a +
           "; }\n  identity far { base " + b + ":base; } typedef e { type " + b +
           ":i; default far; }\n" + (body == bodies_.end() ? "" : body->second) + "}\n";
  }
  const std::map<std::string, std::string>& expected() const { return expected_; }
  std::vector<std::string> DrawOrder() {
    std::vector<std::string> order = {"b", "a"};
    order.insert(order.end(), kDeviating.begin(), kDeviating.end());
    for (size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[Draw(i)]);
    return order;
  }

 private:
  struct Prefixes {
    std::string own;
    std::string b;
    std::string a;
  };

  explicit Drawing(std::mt19937 random) : random_(random) {
    for (const std::string& name : kDeviating) prefixes_[name] = DrawPrefixes(name);
  }

  size_t Draw(size_t count) { return random_() % count; }
  std::string DrawModule() { return only_.empty() ? kDeviating[Draw(kDeviating.size())] : only_; }

  Prefixes DrawPrefixes(const std::string& name) {
    std::vector<std::string> free = {"p", "q", "a", "b", name};
    for (size_t i = free.size(); i > 1; --i) std::swap(free[i - 1], free[Draw(i)]);
    return {free[0], free[1], free[2]};
  }

  // Names with modules in the words of the deviating module.
  std::string InWords(const std::string& module, const std::string& text) const {
    const Prefixes& prefixes = prefixes_.at(module);
    std::string words;
    for (size_t i = 0; i < text.size(); ++i) {
      const bool isName = i + 1 < text.size() && text[i + 1] == ':' &&
                          (i == 0 || std::isalnum(static_cast<unsigned char>(text[i - 1])) == 0);
      if (!isName) {
        words += text[i];
      } else if (text[i] == 'a' || text[i] == 'b') {
        words += text[i] == 'a' ? prefixes.a : prefixes.b;
      } else {
        words += text[i] < 'w' ? text.substr(i, 1) : prefixes.own;
      }
    }
    return words;
  }

  void Add(const std::string& module, const std::string& kind, const std::string& property) {
    deviates_[module] += " deviate " + kind + " { " + property + " }";
  }

  // The library takes no prefix for a deleted default that stands bare behind a typedef, once
  // the type is identityref itself; that matters to the order, and is told.
  bool KeepsBareDefault(const Leaf& leaf, const std::string& byDefault) const {
    return only_.empty() && byDefault.empty() && leaf.written == "one";
  }

  std::string DrawType(const std::string& before, const std::string& module) {
    const std::vector<std::string> identities = {"b:i", "b:ii", "identityref", "a:j",
                                                 module + ":e"};
    const std::vector<std::string> numbers = {"int8", "int16", "b:d", "uint32"};
    return IsIdentity(before) ? identities[Draw(identities.size())] : numbers[Draw(numbers.size())];
  }

  std::string DrawDefault(const std::string& type, const std::string& module) {
    const std::vector<std::string> identities = {"b:three", "b:one", "a:near", module + ":far"};
    return IsIdentity(type) ? identities[Draw(identities.size())] : std::to_string(10 + Draw(90));
  }

  void ChangeDefault(const Leaf& leaf, std::string* byDefault) {
    const std::string module = DrawModule();
    const bool removes = !leaf.byDefault.empty() && Draw(2) == 0;
    const std::string value = removes ? leaf.written : DrawDefault(leaf.type, module);
    *byDefault = removes ? "" : value;
    Add(module,
        removes                  ? "delete"
        : leaf.byDefault.empty() ? "add"
                                 : "replace",
        "default " + value + ";");
  }

  void ChangeType(const Leaf& leaf, const std::string& byDefault, std::string* type) {
    const std::string module = DrawModule();
    *type = DrawType(leaf.type, module);
    if (KeepsBareDefault(leaf, byDefault)) *type = "b:ii";
    Add(module, "replace", "type " + *type + (*type == "identityref" ? " { base b:base; }" : ";"));
  }

  void ChangeUnits(const Leaf& leaf, std::string* units) {
    const bool removes = !leaf.units.empty() && Draw(2) == 0;
    *units = removes ? "" : Draw(2) == 0 ? "u" : "v";
    Add(DrawModule(),
        removes              ? "delete"
        : leaf.units.empty() ? "add"
                             : "replace",
        "units " + (removes ? leaf.units : *units) + ";");
  }

  void ChangeMusts(const Leaf& leaf, size_t* musts) {
    if (leaf.musts.empty() || Draw(2) == 0) {
      ++*musts;
      Add(DrawModule(), "add", "must \"1 = 1\";");
    }
    for (const std::string& must : leaf.musts) {
      if (Draw(2) == 0) continue;
      --*musts;
      Add(DrawModule(), "delete", "must \"" + must + "\";");
    }
  }

  void Deviate(const Leaf& leaf) {
    deviates_.clear();
    std::string type = leaf.type;
    std::string byDefault = leaf.byDefault;
    std::string units = leaf.units;
    bool mandatory = leaf.mandatory;
    bool config = true;
    size_t musts = leaf.musts.size();
    if (!leaf.mandatory && Draw(2) == 0) ChangeDefault(leaf, &byDefault);
    if (Draw(2) == 0) ChangeType(leaf, byDefault, &type);
    if (Draw(3) == 0) ChangeUnits(leaf, &units);
    if (Draw(2) == 0) ChangeMusts(leaf, &musts);
    if (leaf.byDefault.empty() && byDefault.empty() && Draw(3) == 0) {
      mandatory = !leaf.mandatory;
      Add(DrawModule(), leaf.mandatory ? "replace" : "add",
          mandatory ? "mandatory true;" : "mandatory false;");
    }
    if (!leaf.inRequest && Draw(4) == 0) {
      config = false;
      Add(DrawModule(), "add", "config false;");
    }
    std::string gone;
    if (Draw(8) == 0) {
      gone = DrawModule();
      deviates_[gone] = " deviate not-supported;";
    }
    for (const auto& [module, text] : deviates_)
      bodies_[module] +=
          "  deviation " + InWords(module, leaf.path) + " {" + InWords(module, text) + " }\n";
    const auto [fromType, unitsOfType] = BroughtBy(type);
    if (byDefault.empty()) byDefault = fromType;
    if (units.empty()) units = unitsOfType;
    expected_[leaf.path] =
        gone.empty() ? Facts(mandatory ? "" : byDefault, units, mandatory, config, musts) : "gone";
  }

  std::mt19937 random_;
  std::map<std::string, Prefixes> prefixes_;
  std::map<std::string, std::string> bodies_;
  std::map<std::string, std::string> deviates_;  // of the leaf at hand, by module
  std::map<std::string, std::string> expected_;
  std::string only_;  // the module that deviates; empty: any
};

uint32_t CountMust(const char*, const char*, const char*, void* count) {
  ++*static_cast<size_t*>(count);
  return 0;
}

// As the library writes it: a step without a module is of the one before.
std::string InLibraryForm(const std::string& path) {
  std::string form;
  char module = '\0';
  for (size_t i = 0; i < path.size(); ++i) {
    form += path[i];
    if (path[i] != '/') continue;
    if (path[i + 1] == module)
      i += 2;
    else
      module = path[i + 1];
  }
  return form;
}

class DeviationOrderOfTwo : public Loading {
 protected:
  std::string FactsOf(const std::string& path) const {
    QmsNode* node = QM_CTX_GetTargetNode(ctx_, InLibraryForm(path).c_str(), nullptr);
    if (node == nullptr) return "gone";
    const char* value = QM_NODE_GetDefaultValueStr(node);
    std::string byDefault = value == nullptr ? "" : value;
    // Bare, an identity is one of the leaf's module.
    const std::string module = path.substr(path.rfind('/') + 1, 1);
    if (!byDefault.empty() && std::isalpha(static_cast<unsigned char>(byDefault[0])) != 0 &&
        byDefault.find(':') == std::string::npos)
      byDefault.insert(0, module + ":");
    const char* units = QM_NODE_GetUnitsValueStr(node);
    size_t musts = 0;
    EXPECT_EQ(QM_OK, QM_NODE_ScanMust(node, CountMust, &musts));
    const bool inRequest = path.find("/b:r/") == 0;
    return Facts(byDefault, units == nullptr ? "" : units, QM_NODE_IsMandatory(node) != 0,
                 inRequest || QM_NODE_IsRwConfig(node) != 0, musts);
  }
};

class DeviationOrder : public DeviationOrderOfTwo, public testing::WithParamInterface<unsigned> {};

TEST_P(DeviationOrder, OfLoadsMakesNoDifference) {
  Drawing drawing(GetParam());
  Write("b.yang", kBase);
  Write("a.yang", kAugment);
  std::string texts;
  for (const std::string& name : kDeviating) {
    Write(name + ".yang", drawing.Text(name));
    texts += drawing.Text(name);
  }
  for (unsigned i = 0; i < kOrders; ++i) {
    const std::vector<std::string> order = drawing.DrawOrder();
    std::string names;
    for (const std::string& name : order) names += name;
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", order " + names + "\n" + texts);
    for (const std::string& line : Run(order).findings) ADD_FAILURE() << line;
    Load(order);
    EXPECT_EQ("", Errors());
    for (const auto& [path, facts] : drawing.expected()) EXPECT_EQ(facts, FactsOf(path)) << path;
    QM_CTX_Delete(ctx_);
    ctx_ = nullptr;
    if (HasFailure()) return;
  }
  const JobResult first = Run({"y", "z", "w"});
  const JobResult again =
      Run({Path("compiled/y.yin"), Path("compiled/z.yin"), Path("compiled/w.yin")});
  ASSERT_EQ(first.modules.size(), again.modules.size());
  for (size_t i = 0; i < first.modules.size(); ++i) {
    EXPECT_EQ(first.modules[i].yin, again.modules[i].yin) << texts;
  }
}

TEST_F(DeviationOrderOfTwo, ThatMattersIsToldJustWhereItDoes) {
  unsigned told = 0;
  unsigned mattering = 0;
  Write("b.yang", kBase);
  Write("a.yang", kAugment);
  for (unsigned seed = 0; seed < kMeetings; ++seed) {
    const Leaf& leaf = Leafs()[seed % Leafs().size()];
    const Drawing drawing(seed, leaf);
    for (const char* name : {"y", "z"}) Write(std::string(name) + ".yang", drawing.Text(name));
    SCOPED_TRACE("seed " + std::to_string(seed) + "\n" + drawing.Text("y") + drawing.Text("z"));
    std::string outcomes[2];
    for (const bool isReversed : {false, true}) {
      Load(isReversed ? std::vector<std::string>{"b", "a", "z", "y"}
                      : std::vector<std::string>{"b", "a", "y", "z"});
      outcomes[isReversed ? 1 : 0] = FactsOf(leaf.path) + "\n" + Tree("b") + Errors();
      QM_CTX_Delete(ctx_);
      ctx_ = nullptr;
    }
    const bool matters =
        outcomes[0] != outcomes[1] || outcomes[0].find("Failed") != std::string::npos;
    const std::vector<std::string> findings = Run({"b", "a", "y", "z"}).findings;
    const bool isTold = std::any_of(findings.begin(), findings.end(), [](const std::string& line) {
      return line.find("which of the two is loaded first") != std::string::npos;
    });
    EXPECT_EQ(matters, isTold) << outcomes[0] << outcomes[1];
    told += isTold ? 1 : 0;
    mattering += matters ? 1 : 0;
  }
  EXPECT_LT(kMeetings / 8, told);
  EXPECT_LT(mattering, kMeetings - kMeetings / 8);
}

INSTANTIATE_TEST_SUITE_P(Seeds, DeviationOrder, testing::Range(0U, kSeeds));

}  // namespace
}  // namespace compiler
