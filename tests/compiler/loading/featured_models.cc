// SPDX-License-Identifier: BSD-3-Clause
// A type is remembered with the values that it has when every feature is on, so that
// restrictions and defaults mostly fit; whether a value depends on a feature is not looked
// at, except where YANG forbids it in plain sight.
#include "tests/compiler/loading/featured_models.h"

#include <algorithm>
#include <random>

namespace featured_models {

namespace {

constexpr unsigned kFeatures = 4;

enum class Kind { kEnum, kBits, kIdentity, kUnion, kNumber, kText, kLeafref };

// A typedef, or a type written in place.
struct Type {
  Kind kind = Kind::kText;
  std::string module;               // of the typedef
  std::string name;                 // empty: written in place
  std::vector<std::string> values;  // some that it takes; of identities with the prefix "a:"
  std::vector<std::string> sure;    // those among them that depend on no feature
  std::string byDefault;            // that of the nearest typedef; empty: none
  bool wantsDefault = false;        // a restriction has lost that
};

class Drawing {
 public:
  explicit Drawing(uint64_t seed) : random_(seed) {}

  Model All() {
    const std::string a = Library();
    const std::string b = User();
    const std::string c = Deviator();
    return {{"a", a}, {"b", b}, {"c", c}};
  }

 private:
  struct Deviated {
    std::string path;
    Type type;
    bool hasDefault;
    bool isList;
  };

  struct GroupingInfo {
    std::string name;
    std::string leaf;
    Type type;
  };

  unsigned Below(size_t count) { return static_cast<unsigned>(random_() % count); }
  bool OneIn(unsigned count) { return Below(count) == 0; }

  template <typename T>
  const T& OneOf(const std::vector<T>& all) {
    return all[Below(all.size())];
  }

  std::string Number() { return std::to_string(++number_); }

  std::string Feature() {
    return (module_ == "a" ? "f" : "a:f") + std::to_string(Below(kFeatures));
  }

  std::string Condition(unsigned oneIn) {
    if (!OneIn(oneIn)) return {};
    switch (Below(6)) {
      case 0:
        return " if-feature \"not " + Feature() + "\";";
      case 1:
        return " if-feature \"" + Feature() + " and " + Feature() + "\";";
      case 2:
        return " if-feature \"" + Feature() + " or " + Feature() + "\";";
      default:
        return " if-feature " + Feature() + ";";
    }
  }

  // What stands in a module of such a value.
  std::string Written(const std::string& value) const {
    const bool isIdentity = value.rfind("a:", 0) == 0;
    return isIdentity && module_ == "a" ? value.substr(2) : value;
  }

  std::string Braced(const std::string& body) const {
    return body.empty() ? ";" : " {" + body + " }";
  }

  std::string Items(Type* type, const std::vector<std::string>& of, const char* keyword,
                    const char* number, bool derived) {
    std::string text;
    std::vector<std::string> sure;
    unsigned last = 0;
    type->values.clear();
    for (const std::string& name : of) {
      if (derived && OneIn(3) && !(type->values.empty() && name == of.back())) continue;
      std::string below = Condition(3);
      const bool wasSure =
          !derived || std::find(type->sure.begin(), type->sure.end(), name) != type->sure.end();
      if (below.empty() && wasSure) sure.push_back(name);
      if (!derived && OneIn(4)) {
        last += 1 + Below(5);
        below += std::string(" ") + number + " " + std::to_string(last) + ";";
      } else {
        ++last;
      }
      if (!derived) last = std::max<unsigned>(last, static_cast<unsigned>(type->values.size()) + 1);
      type->values.push_back(name);
      text += std::string(" ") + keyword + " " + name + Braced(below);
    }
    type->sure = sure;
    return text;
  }

  std::string NewItems(Type* type) {
    const bool isEnum = type->kind == Kind::kEnum;
    std::vector<std::string> names;
    const unsigned count = 1 + Below(4);
    for (unsigned i = 0; i < count; ++i)
      names.push_back(std::string(1, static_cast<char>('p' + i)));
    return (isEnum ? "type enumeration {" : "type bits {") +
           Items(type, names, isEnum ? "enum" : "bit", isEnum ? "value" : "position", false) + " }";
  }

  // A type of a new kind.
  std::string NewType(Type* type, unsigned depth) {
    type->kind = static_cast<Kind>(Below(depth > 2 ? 3 : 7));
    switch (type->kind) {
      case Kind::kEnum:
      case Kind::kBits:
        return NewItems(type);
      case Kind::kIdentity:
        type->values = identities_;
        type->sure = sureIdentities_;
        return std::string("type identityref { base ") + (module_ == "a" ? "" : "a:") + "base; }";
      case Kind::kUnion:
        return NewUnion(type, depth);
      case Kind::kNumber:
        type->values = type->sure = {"1", "2", "9"};
        return OneIn(2) ? "type int8;" : "type uint16 { range 0..100; }";
      case Kind::kLeafref:
        if (!leafs_.empty()) return Leafref(type);
        [[fallthrough]];
      default:
        type->kind = Kind::kText;
        type->values = type->sure = {"p", "q", "any"};
        return OneIn(2) ? "type string;" : "type string { pattern [a-z]*; }";
    }
  }

  std::string Leafref(Type* type) {
    const auto& [path, target] = OneOf(leafs_);
    type->kind = Kind::kLeafref;
    type->values = target.values;
    type->sure = target.sure;
    return "type leafref { path \"" + path + "\"; }";
  }

  std::string NewUnion(Type* type, unsigned depth) {
    std::string text = "type union {";
    const unsigned count = 1 + Below(3);
    for (unsigned i = 0; i < count; ++i) {
      Type member;
      text += " " + AnyType(&member, depth + 1);
      type->values.insert(type->values.end(), member.values.begin(), member.values.end());
      type->sure.insert(type->sure.end(), member.sure.begin(), member.sure.end());
    }
    type->kind = Kind::kUnion;
    return text + " }";
  }

  // One that was defined before, restricted or not.
  std::string Derived(Type* type) {
    *type = OneOf(types_);
    std::string name =
        type->module == module_ || type->module.empty() ? type->name : "a:" + type->name;
    type->name.clear();
    std::string below;
    if (type->kind == Kind::kEnum && OneIn(2))
      below = Items(type, std::vector<std::string>(type->values), "enum", "", true);
    if (type->kind == Kind::kBits && OneIn(2))
      below = Items(type, std::vector<std::string>(type->values), "bit", "", true);
    type->wantsDefault =
        !below.empty() && !type->byDefault.empty() &&
        std::find(type->values.begin(), type->values.end(), type->byDefault) == type->values.end();
    return "type " + name + Braced(below);
  }

  std::string AnyType(Type* type, unsigned depth) {
    if (!types_.empty() && !OneIn(3)) return Derived(type);
    return NewType(type, depth);
  }

  // Notes what it has drawn.
  std::string Default(Type* noted, unsigned oneIn) {
    const Type& type = *noted;
    if (type.values.empty() || !(type.wantsDefault || OneIn(oneIn))) return {};
    const bool mayDepend = type.kind == Kind::kUnion || OneIn(8);
    if (!mayDepend && type.sure.empty()) return {};
    std::string value = OneOf(mayDepend ? type.values : type.sure);
    if (type.kind == Kind::kBits && OneIn(2) && type.sure.size() > 1)
      value = "\"" + type.sure[0] + " " + type.sure[1] + "\"";
    noted->byDefault = value;
    return " default " + Written(value) + ";";
  }

  std::string Typedef() {
    Type type;
    std::string text = AnyType(&type, 0);
    const std::string byDefault = Default(&type, 2);
    type.wantsDefault = false;
    type.module = module_;
    type.name = "t" + Number();
    const std::string units = OneIn(5) ? " units u" + type.name + ";" : "";
    text = "typedef " + type.name + " { " + (OneIn(2) ? text + byDefault : byDefault + " " + text) +
           units + " }\n";
    types_.push_back(type);
    return text;
  }

  std::string Leaf(const std::string& path, bool noted, bool mayBeMandatory = false) {
    Type type;
    const bool isList = OneIn(4);
    const std::string name = "l" + Number();
    std::string text = AnyType(&type, 0);
    std::string own;
    if (!isList && mayBeMandatory && !type.wantsDefault && OneIn(6)) {
      text += " mandatory true;";
    } else {
      own = Default(&type, 3);
      text += own;
    }
    if (noted && !isList) leafs_.emplace_back(path + "/" + module_ + ":" + name, type);
    if (noted) deviated_.push_back({path + "/" + module_ + ":" + name, type, !own.empty(), isList});
    lastLeaf_ = {isList ? "" : name, type};
    return (isList ? "leaf-list " : "leaf ") + name + " {" + Condition(5) + " " + text + " }\n";
  }

  std::string Choice(const std::string& path) {
    const std::string name = "h" + Number();
    std::string text = "choice " + name + " {" + Condition(6);
    std::string cases;
    std::string first;
    const unsigned count = 1 + Below(3);
    for (unsigned i = 0; i < count; ++i) {
      const std::string number = "k" + Number();
      if (first.empty() || OneIn(2)) first = number;
      cases += OneIn(2)
                   ? "case " + number + " {" + Condition(3) + " " + Leaf(path, false) + "}\n"
                   : "container " + number + " {" + Condition(3) + " " + Leaf(path, false) + "}\n";
    }
    if (OneIn(3)) {
      text += " mandatory true;";
    } else if (OneIn(2)) {
      text += " default " + first + ";";
    }
    return text + " " + cases + "}\n";
  }

  std::string List(const std::string& path) {
    const std::string name = "i" + Number();
    const std::string below = path + "/" + module_ + ":" + name;
    std::string text = "list " + name + " {" + Condition(6) + " key k; leaf k { type string; }\n" +
                       Leaf(below, false);
    if (OneIn(3) && !lastLeaf_.first.empty()) text += "unique " + lastLeaf_.first + ";\n";
    return text + "}\n";
  }

  std::string Nodes(const std::string& path, unsigned depth, bool noted) {
    std::string text;
    const unsigned count = 1 + Below(4);
    for (unsigned i = 0; i < count; ++i) {
      switch (Below(depth > 2 ? 3 : 6)) {
        case 3: {
          const std::string name = "c" + Number();
          text += "container " + name + " {" + Condition(4) + "\n" +
                  Nodes(path + "/" + module_ + ":" + name, depth + 1, noted) + "}\n";
          break;
        }
        case 4:
          text += Choice(path);
          break;
        case 5:
          text += List(path);
          break;
        default:
          text += Leaf(path, noted, true);
          break;
      }
    }
    return text;
  }

  // A grouping with a typedef of its own, which nobody else sees.
  std::string Grouping() {
    const std::string name = "g" + Number();
    const std::vector<Type> before = types_;
    std::string text = "grouping " + name + " {\n";
    if (OneIn(2)) text += Typedef();
    text += Leaf("", false);
    groupings_.push_back({name, lastLeaf_.first, lastLeaf_.second});
    text += Nodes("", 2, false);
    if (!groupings_[0].leaf.empty() && groupings_.size() > 1 && OneIn(3))
      text += "container n" + Number() + " {" + Condition(3) + " " + Uses(groupings_[0]) + "}\n";
    types_ = before;
    return text + "}\n";
  }

  std::string Uses() {
    if (groupings_.empty()) return {};
    return Uses(OneOf(groupings_));
  }

  std::string Uses(const GroupingInfo& grouping) {
    std::string refine;
    if (OneIn(2) && !grouping.leaf.empty()) {
      Type type = grouping.type;
      refine = " refine " + grouping.leaf + " {" + Default(&type, 1) + Condition(3) + " }";
    }
    return "uses " + std::string(module_ == "a" ? "" : "a:") + grouping.name + " {" + Condition(4) +
           refine + " }\n";
  }

  std::string Library() {
    module_ = "a";
    std::string text = "module a { yang-version 1.1; namespace urn:a; prefix a;\n";
    for (unsigned i = 0; i < kFeatures; ++i) {
      const bool depends = i > 0 && OneIn(3);
      text += "feature f" + std::to_string(i) +
              (depends ? " { if-feature f" + std::to_string(Below(i)) + "; }\n" : ";\n");
    }
    text += "identity base;\n";
    for (unsigned i = 0; i < 4; ++i) {
      const std::string condition = Condition(3);
      const std::string name = "i" + std::to_string(i);
      const std::string base = i == 0 || OneIn(2) ? "base" : "i" + std::to_string(Below(i));
      text += "identity " + name + " { base " + base + ";" + condition + " }\n";
      identities_.push_back("a:" + name);
      if (condition.empty()) sureIdentities_.push_back("a:" + name);
    }
    for (unsigned i = 0; i < 5; ++i) text += Typedef();
    text += Grouping() + Grouping() + "container top {\n" + Nodes("/a:top", 0, true) + "}\n";
    return text + "}\n";
  }

  std::string User() {
    module_ = "b";
    std::string text =
        "module b { yang-version 1.1; namespace urn:b; prefix b; import a { prefix a; }\n";
    for (unsigned i = 0; i < 3; ++i) text += Typedef();
    text += "container con {\n" + Nodes("/b:con", 0, true);
    text += Uses() + "}\ncontainer more {\n" + Uses() + "}\nrpc op { input {\n" +
            Nodes("", 1, false) + Uses() + "} }\n";
    if (OneIn(2)) text += "augment /a:top {" + Condition(3) + " " + Leaf("/a:top", false) + "}\n";
    return text + "}\n";
  }

  std::string Deviate(const Deviated& target) {
    Type type = target.type;
    switch (Below(4)) {
      case 0:
        return target.hasDefault && !target.isList
                   ? "deviate delete { default " + Written(type.byDefault) + "; }"
                   : "deviate add {" + Default(&type, 1) + " }";
      case 1:
        return target.hasDefault && !target.isList ? "deviate replace {" + Default(&type, 1) + " }"
                                                   : "deviate add { units s; }";
      case 2: {
        const std::string text = AnyType(&type, 0);
        return "deviate replace { " + text + " }";
      }
      default: {
        const std::string text = AnyType(&type, 0);
        return "deviate replace { " + text + (target.hasDefault ? Default(&type, 1) : "") + " }";
      }
    }
  }

  std::string Deviator() {
    types_.erase(std::remove_if(types_.begin(), types_.end(),
                                [](const Type& type) { return type.module != "a"; }),
                 types_.end());
    module_ = "c";
    std::string text =
        "module c { yang-version 1.1; namespace urn:c; prefix c; import a { prefix a; }\n"
        "import b { prefix b; }\n";
    for (const Deviated& target : deviated_) {
      if (OneIn(4)) text += "deviation " + target.path + " { " + Deviate(target) + " }\n";
    }
    if (OneIn(2)) text += "augment /b:con { when \"true()\";" + Condition(2) + " " + Uses() + "}\n";
    return text + "}\n";
  }

  std::mt19937_64 random_;
  unsigned number_ = 0;
  std::string module_;
  std::vector<std::string> identities_;
  std::vector<std::string> sureIdentities_;
  std::vector<Type> types_;
  std::vector<GroupingInfo> groupings_;
  std::vector<std::pair<std::string, Type>> leafs_;  // that leafrefs may lead to
  std::vector<Deviated> deviated_;
  std::pair<std::string, Type> lastLeaf_;
};

}  // namespace

Model Draw(uint64_t seed) {
  return Drawing(seed).All();
}

std::vector<std::string> DrawFeatures(uint64_t seed) {
  std::mt19937_64 random(seed ^ 0x5eed);
  std::vector<std::string> features;
  for (unsigned i = 0; i < kFeatures; ++i)
    if (random() % 2 == 0) features.push_back("f" + std::to_string(i));
  return features;
}

}  // namespace featured_models
