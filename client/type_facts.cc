// SPDX-License-Identifier: BSD-3-Clause
// Types: a type statement names a typedef or a built-in type and may restrict it; the
// typedef's own type follows below it, down to the built-in one. Members of a union are
// types of their own.
#include "client/type_facts.h"

#include <qmodel/agent.h>
#include <qmodel/inspect.h>
#include <qmodel/types.h>

#include <cinttypes>
#include <cstdio>

#include "client/memory_watch.h"
#include "client/shown_text.h"

namespace {

// One type statement and what it names.
struct Link {
  std::string name;
  QmtType* type;  // the statement; NULL: the typedef is not loaded
};

struct Adding {
  QmCtx* ctx;
  std::vector<Fact>* facts;
  unsigned level;
  uint32_t base;      // the built-in type below
  uint32_t fraction;  // digits of a decimal64
};

void Add(const Adding& adding, const char* label, const std::string& text) {
  adding.facts->push_back({adding.level, label, ShowControls(text)});
}

std::string Qualified(const char* module, const char* name) {
  return std::string(module == nullptr ? "" : module) + ":" + (name == nullptr ? "" : name);
}

// A number of a decimal64 travels without its point.
std::string WithPoint(const std::string& digits, uint32_t fraction) {
  const bool negative = digits.starts_with('-');
  std::string number = negative ? digits.substr(1) : digits;
  if (number.size() <= fraction) number.insert(0, fraction + 1 - number.size(), '0');
  number.insert(number.size() - fraction, ".");
  return (negative ? "-" : "") + number;
}

std::string BoundText(uint64_t value, bool isSigned, const Adding& adding) {
  const std::string digits =
      isSigned ? std::to_string(static_cast<int64_t>(value)) : std::to_string(value);
  return adding.base == QMT_BASE_DECIMAL64 && adding.fraction > 0
             ? WithPoint(digits, adding.fraction)
             : digits;
}

struct Segments {
  const Adding& adding;
  std::string text;
};

uint32_t AddSegment(uint64_t start, uint64_t end, uint32_t flags, void* arg) {
  auto* segments = static_cast<Segments*>(arg);
  const bool isSigned = (flags & QMT_SEG_SIGNED) != 0;
  std::string from = BoundText(start, isSigned, segments->adding);
  std::string to = BoundText(end, isSigned, segments->adding);
  if ((flags & QMT_SEG_START_MIN) != 0) from = "min";
  if ((flags & QMT_SEG_START_MAX) != 0) from = "max";
  if ((flags & QMT_SEG_END_MIN) != 0) to = "min";
  if ((flags & QMT_SEG_END_MAX) != 0) to = "max";
  if (!segments->text.empty()) segments->text += " | ";
  segments->text += from == to ? from : from + ".." + to;
  return 0;
}

uint32_t AddPattern(const char* pattern, uint32_t invert, void* arg) {
  Add(*static_cast<Adding*>(arg), invert != 0 ? "not pattern" : "pattern", pattern);
  return 0;
}

uint32_t AddNamed(const char* name, int64_t value, const char* description, void* arg) {
  const auto* adding = static_cast<Adding*>(arg);
  const bool bits = adding->base == QMT_BASE_BITS;
  std::string text = std::string(name) + " = " + std::to_string(value);
  if (description != nullptr && *description != '\0') text += std::string("  ") + description;
  Add(*adding, bits ? "bit" : "enum", text);
  return 0;
}

uint32_t AddIdentity(QmsModule* module, QmsIdentity* identity, void* arg) {
  Add(*static_cast<Adding*>(arg), "identity",
      Qualified(QM_MOD_GetModuleName(module), QM_MOD_GetIdentityName(identity)));
  return 0;
}

uint32_t AddBase(const char* moduleName, const char* name, void* arg) {
  auto* adding = static_cast<Adding*>(arg);
  QmsModule* module = QM_CTX_GetModuleByModName(adding->ctx, moduleName);
  QmsIdentity* identity = QM_MOD_FindIdentity(module, name);
  Add(*adding, "base", Qualified(moduleName, name) + (identity == nullptr ? " (not loaded)" : ""));
  if (identity == nullptr) return 0;
  ++adding->level;
  static_cast<void>(QM_MOD_ScanDerivedIdentity(module, identity, kGuarded<AddIdentity>, adding));
  --adding->level;
  return 0;
}

void AddType(const Adding& outer, const char* label, QmtType* type);

uint32_t AddMember(const char* module, const char* name, QmtType* type, void* arg) {
  auto* adding = static_cast<Adding*>(arg);
  if (type != nullptr) {
    AddType(*adding, "member", type);
  } else {
    Add(*adding, "member", Qualified(module, name) + " (not loaded)");
  }
  return 0;
}

// What one type statement itself says.
void AddRestrictions(QmtType* type, Adding* adding) {
  if (QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_DECIMAL64) {
    Add(*adding, "fraction-digits", std::to_string(QM_TYPE_GetDecimal64Fraction(type)));
  }
  Segments segments{*adding, {}};
  static_cast<void>(QM_TYPE_ScanStartEndPair(type, kGuarded<AddSegment>, &segments));
  const bool length = adding->base == QMT_BASE_STRING || adding->base == QMT_BASE_BINARY;
  if (!segments.text.empty()) Add(*adding, length ? "length" : "range", segments.text);
  static_cast<void>(QM_TYPE_ScanPatternInvertMatch(type, kGuarded<AddPattern>, adding));
  static_cast<void>(QM_TYPE_ScanNameValuePair(type, kGuarded<AddNamed>, adding));
  const char* path = QM_TYPE_GetTypeConsDataLeafrefPath(type);
  if (path != nullptr) Add(*adding, "path", path);
  if (adding->base == QMT_BASE_IDENTITYREF) {
    static_cast<void>(QM_TYPE_ScanIdentRefBase(type, kGuarded<AddBase>, adding));
  }
  if (adding->base == QMT_BASE_UNION) {
    static_cast<void>(QM_TYPE_ScanUnionSubType(type, kGuarded<AddMember>, adding));
  }
}

struct Derivation {
  std::vector<Link> links;
  QmtType* type;  // the statement that names the next link
};

uint32_t AddLink(const char* module, const char* name, QmtType* type, void* arg) {
  auto* derivation = static_cast<Derivation*>(arg);
  if (name == nullptr) return 0;
  std::string text = Qualified(module, name);
  if (type == nullptr) text += " (not loaded)";
  derivation->links.push_back({std::move(text), derivation->type});
  derivation->type = type;
  return 0;
}

void AddType(const Adding& outer, const char* label, QmtType* type) {
  Derivation derivation{{}, type};
  static_cast<void>(
      QM_TYPE_IterRealTypeDerivedName(type, outer.ctx, kGuarded<AddLink>, &derivation));
  Adding adding = outer;
  QmtType* last = derivation.type;
  adding.base = QM_TYPE_GetBuiltInBaseType(last);
  adding.fraction = QM_TYPE_GetDecimal64Fraction(last);
  const char* base = QM_AGENT_GetBaseTypeName(adding.base);
  if (last != nullptr) derivation.links.push_back({base == nullptr ? "?" : base, last});
  for (const Link& link : derivation.links) {
    Add(adding, label, link.name);
    ++adding.level;
    if (link.type != nullptr) AddRestrictions(link.type, &adding);
    label = "type";
  }
}

}  // namespace

void AddTypeFacts(QmCtx* ctx, QmsNode* node, std::vector<Fact>* facts) {
  QmtType* type = QM_NODE_GetRealType(node);
  if (type == nullptr) return;
  AddType({ctx, facts, 0, QMT_BASE_NONE, 0}, "type", type);
  QmsNode* target = QM_NODE_GetLeafrefTargetNode(node, 1);
  char path[8192];
  if (target == nullptr || QM_NODE_GetPath(target, path, sizeof(path)) != 0) return;
  facts->push_back({1, "target", ShowControls(path)});
}
