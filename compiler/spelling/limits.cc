// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/limits.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/child_index.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/words/character.h"
#include "compiler/words/path.h"
#include "compiler/words/xpath_token.h"

namespace compiler {

namespace {

constexpr size_t kMaxName = 64;  // characters of a name that is looked up
constexpr char kLongName[] = "the name is longer than 64 characters";
constexpr size_t kMaxConditionLength = 3096;  // of a condition, with module names for prefixes
constexpr size_t kMaxPath = 3095;             // of a path, likewise
constexpr size_t kMaxDepth = 256;             // elements one in the other that libxml2 takes
constexpr size_t kMaxTokens = 256;            // of a range or length
constexpr size_t kMaxOfAKind = 65535;         // statements of one kind in one other

// The loader's own form: a module's name where the module changes. `*misfit` is set where
// it takes no step of that name or prefix.
template <typename Steps, typename PrefixOfStep, typename NameOfStep>
size_t LengthOfSteps(const Output& out, const Steps& steps, PrefixOfStep prefix, NameOfStep name,
                     bool* misfit) {
  size_t length = 0;
  std::string_view last;
  for (const auto& step : steps) {
    const Module* module = ModuleOfWritten(out, prefix(step));
    const std::string_view moduleName = module == nullptr ? "" : std::string_view(module->name);
    if (moduleName != last) length += moduleName.size() + 1;
    last = moduleName;
    length += 1 + name(step).size();
    const bool unknown = module == nullptr && !prefix(step).empty();
    *misfit = *misfit || unknown || name(step).size() > kMaxName || moduleName.size() > kMaxName;
  }
  return length;
}

bool PathFits(const Output& out, const NodePath& path) {
  bool misfit = false;
  const size_t length =
      3 * size_t{path.ups} + LengthOfSteps(
                                 out, path.steps,
                                 [&](const PathStep& step) { return path.Of(step.prefix); },
                                 [&](const PathStep& step) { return path.Of(step.name); }, &misfit);
  return !misfit && length <= kMaxPath;
}

bool TargetFits(const Output& out, const char* text) {
  NodePath path;
  XpathError error;
  return ParseSchemaNodeId(text, true, &path, &error) && PathFits(out, path);
}

bool LeafrefFits(const Output& out, const char* text) {
  NodePath path;
  XpathError error;
  return ParseLeafrefPath(text, &path, &error) && !path.throughDeref && PathFits(out, path);
}

bool IsLongName(std::string_view text, const XpathToken& token) {
  if (token.kind != XpathTokenKind::kName) return false;
  const std::string_view name = text.substr(token.span.begin, token.span.end - token.span.begin);
  return SplitReference(name).name.size() > kMaxName;
}

// The library knows neither axes nor variables, and records a load error for them. A
// longer name it finds nowhere.
const char* ExcessOfCondition(const Output& out, const char* text) {
  constexpr const char* kUnread = "the library cannot read this condition";
  std::vector<XpathToken> tokens;
  XpathError error;
  if (!TokenizeXpath(text, &tokens, &error)) return kUnread;
  for (const XpathToken& token : tokens) {
    if (token.kind == XpathTokenKind::kAxis || token.kind == XpathTokenKind::kVariable)
      return kUnread;
    if (IsLongName(text, token)) return "the condition has a name of more than 64 characters";
  }
  return LengthInLibrary(out, text) <= kMaxConditionLength
             ? nullptr
             : "the condition is longer than the 3096 characters that the loader takes";
}

// A number, "..", "|", "min", "max" each are one token, and the end is one.
size_t RangeTokens(std::string_view text) {
  size_t tokens = 1;
  for (size_t i = 0; i < text.size();) {
    if (IsBlank(text[i])) {
      ++i;
      continue;
    }
    ++tokens;
    if (text[i] == '|') {
      ++i;
    } else if (text.substr(i, 2) == "..") {
      i += 2;
    } else {
      ++i;
      while (i < text.size() && !IsBlank(text[i]) && text[i] != '|' && text.substr(i, 2) != "..")
        ++i;
    }
  }
  return tokens;
}

bool ReferenceFits(std::string_view text) {
  const Reference reference = SplitReference(text);
  return reference.prefix.size() <= kMaxName && reference.name.size() <= kMaxName;
}

// The loader reads the default of an identityref as a reference.
bool DefaultFits(Output* out, const xmlNode* statement) {
  const xmlNode* holder = ParentOf(statement);
  const xmlNode* type = FirstChild(holder, Keyword::kType);
  if (type == nullptr && Is(holder, Keyword::kDeviate)) {
    const FoundNode target = FindTarget(out->all, TargetSteps(ParentOf(holder)));
    if (target.node != nullptr) type = FirstChild(target.node, Keyword::kType);
  }
  const xmlNode* bottom = type == nullptr ? nullptr : FindBottomType(type).type;
  return bottom == nullptr || std::string_view(ArgumentOf(bottom)) != "identityref" ||
         ReferenceFits(ArgumentOf(statement));
}

// The reason why the statement cannot be written as it stands; NULL: it can.
const char* Excess(Output* out, const xmlNode* s) {
  const char* text = ArgumentOf(s);
  if (text == nullptr) return nullptr;
  switch (KeywordOf(s)) {
    case Keyword::kWhen:
    case Keyword::kMust:
      return ExcessOfCondition(*out, text);
    case Keyword::kAugment:
    case Keyword::kDeviation:
      if (!Is(ParentOf(s), Keyword::kModule)) return nullptr;
      return TargetFits(*out, text) ? nullptr : "the loader does not take this target path";
    case Keyword::kPath:
      return LeafrefFits(*out, text) ? nullptr : "the loader does not take this path";
    case Keyword::kRange:
    case Keyword::kLength:
      return RangeTokens(text) <= kMaxTokens
                 ? nullptr
                 : "the loader takes no more than 256 tokens in a range or length";
    case Keyword::kIfFeature:
    case Keyword::kBase:
      return ReferenceFits(text) ? nullptr : kLongName;
    case Keyword::kDefault:
      return DefaultFits(out, s) ? nullptr : kLongName;
    default:
      return nullptr;
  }
}

// A leafref without its path would be any value at all; as a string it is that too, but
// loads.
void LeaveOut(Output* out, xmlNode* s, std::unordered_set<const xmlNode*>* gone) {
  xmlNode* type = ParentOf(s);
  const bool isPath = Is(s, Keyword::kPath);
  const bool isBase = Is(s, Keyword::kBase);
  if (Is(s, Keyword::kAugment)) gone->insert(s);
  ForgetChildren(out->all, type);
  RemoveStatement(s);
  if (isPath) {
    while (xmlNode* require = FirstChild(type, Keyword::kRequireInstance)) RemoveStatement(require);
    SetArgument(out->all->session, type, "string");
  }
  if (isBase && Is(type, Keyword::kType) && FirstChild(type, Keyword::kBase) == nullptr)
    SetArgument(out->all->session, type, "string");
}

bool IsArray(Keyword keyword) {
  switch (keyword) {
    case Keyword::kMust:
    case Keyword::kIfFeature:
    case Keyword::kNone:
    case Keyword::kDefault:
    case Keyword::kEnum:
    case Keyword::kBit:
    case Keyword::kPattern:
    case Keyword::kBase:
    case Keyword::kType:
    case Keyword::kTypedef:
    case Keyword::kIdentity:
    case Keyword::kFeature:
    case Keyword::kExtension:
    case Keyword::kDeviation:
    case Keyword::kDeviate:
    case Keyword::kImport:
      return true;
    default:
      return false;
  }
}

// The typedefs that will be left out for being too many.
std::unordered_set<std::string> TypedefsBeyond(const xmlNode* root) {
  std::unordered_set<std::string> names;
  size_t count = 0;
  for (const xmlNode* s = FirstChild(root, Keyword::kTypedef); s != nullptr;
       s = NextSibling(s, Keyword::kTypedef)) {
    if (++count > kMaxOfAKind && ArgumentOf(s) != nullptr) names.insert(ArgumentOf(s));
  }
  return names;
}

// A type that is not there would fail the load; as a string it takes what that might.
void LoseType(Output* out, xmlNode* type) {
  Lose(out, type,
       std::string("the typedef \"") + ArgumentOf(type) +
           "\" is left out, since the loader takes no more than 65535; the type is written as "
           "string");
  while (xmlNode* restriction = FirstChild(type)) RemoveStatement(restriction);
  SetArgument(out->all->session, type, "string");
}

// The library compares the names of bits in a value up to that length.
void SayLongBit(Output* out, const xmlNode* bit) {
  const char* name = ArgumentOf(bit);
  if (name == nullptr || std::string_view(name).size() <= kMaxName) return;
  Lose(out, bit, std::string(kLongName) + "; the library takes no value that has this bit");
}

// Leaves out what is too many of a kind in one statement.
void KeepCounts(Output* out, xmlNode* parent) {
  size_t counts[kKeywordCount] = {};
  for (xmlNode* s = FirstChild(parent); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    const Keyword keyword = KeywordOf(s);
    if (IsArray(keyword) && ++counts[static_cast<size_t>(keyword)] > kMaxOfAKind) {
      if (counts[static_cast<size_t>(keyword)] == kMaxOfAKind + 1)
        Lose(out, s,
             std::string("the loader takes no more than 65535 of ") + NameOf(s) + " in " +
                 NameOf(parent) + "; the rest is left out");
      RemoveStatement(s);
    }
    s = next;
  }
}

// Elements from the root on, this one and that of an argument included.
size_t DepthOf(const xmlNode* statement) {
  size_t depth = StatementOf(statement)->argumentIsElement ? 2 : 1;
  for (const xmlNode* s = ParentOf(statement); s != nullptr; s = ParentOf(s)) ++depth;
  return depth;
}

// How many levels a type needs for what the loader must find in it.
size_t LevelsOfType(const xmlNode* type) {
  size_t below = 0;
  for (const xmlNode* s = FirstChild(type); s != nullptr; s = NextSibling(s)) {
    const bool isText = StatementOf(s)->argumentIsElement;
    if (!isText) below = std::max(below, Is(s, Keyword::kType) ? LevelsOfType(s) : size_t{1});
  }
  return 1 + below;
}

// True where the statement, a leaf with its type, fits into the levels of the parser.
bool FitsDepth(const xmlNode* statement) {
  size_t levels = DepthOf(statement);
  const xmlNode* type = FirstChild(statement, Keyword::kType);
  if (type != nullptr && !Is(statement, Keyword::kType)) levels += LevelsOfType(type);
  return levels <= kMaxDepth;
}

// The loader refuses a list with a key that is not one of its leafs or has a longer name.
// False: none is left.
bool KeepKeys(Output* out, xmlNode* key) {
  const char* text = ArgumentOf(key);
  std::string kept;
  for (const std::string_view name : SplitNames(text == nullptr ? "" : text)) {
    const xmlNode* leaf = FindSchemaChild(out->all, ParentOf(key), name);
    const bool isLeaf = leaf != nullptr && Is(leaf, Keyword::kLeaf) && FitsDepth(leaf);
    if (!isLeaf || name.size() > kMaxName) {
      Lose(out, key,
           "the key \"" + std::string(name) +
               "\" is left out; the loader takes leafs of the list, with names of up to 64 "
               "characters");
      continue;
    }
    if (!kept.empty()) kept += ' ';
    kept += name;
  }
  if (kept.empty()) return false;
  if (kept != text) SetArgument(out->all->session, key, kept);
  return true;
}

}  // namespace

void KeepLimits(Output* out) {
  xmlNode* root = out->written.root;
  if (out->module->name.size() > kMaxName)
    Stop(out, "name", root, "the loader takes no module whose name is longer than 64 characters");
  if (!IsIdentifier(out->module->name)) Stop(out, "name", root, "this is no name of a module");
  const std::unordered_set<std::string> typedefsBeyond = TypedefsBeyond(root);
  KeepCounts(out, root);
  std::unordered_set<const xmlNode*> gone;
  for (xmlNode* s = FirstChild(root); s != nullptr;) {
    // What stands beside a path goes with it.
    xmlNode* outside = NextOutside(root, Is(s, Keyword::kPath) ? ParentOf(s) : s);
    const char* excess = Excess(out, s);
    if (excess == nullptr && !FitsDepth(s)) excess = "it stands deeper than 256 levels";
    if (excess != nullptr) {
      Lose(out, s, std::string(excess) + "; it is left out");
      LeaveOut(out, s, &gone);
      s = outside;
      continue;
    }
    if (Is(s, Keyword::kKey) && !KeepKeys(out, s)) {
      RemoveStatement(s);
      s = outside;
      continue;
    }
    if (!typedefsBeyond.empty() && Is(s, Keyword::kType) &&
        typedefsBeyond.count(ArgumentOf(s)) != 0)
      LoseType(out, s);
    if (Is(s, Keyword::kBit)) SayLongBit(out, s);
    if (FirstChild(s) != nullptr) KeepCounts(out, s);
    s = NextInTree(root, s);
  }
  ForgetAugments(out, gone);
}

}  // namespace compiler
