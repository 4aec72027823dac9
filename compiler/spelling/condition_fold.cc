// SPDX-License-Identifier: BSD-3-Clause
// A path without nodes is false as a condition, unequal and equal to nothing, and the
// empty text for a function that takes a text (XPath 1.0, sections 3.4 and 4). What
// follows from that is followed outwards; the rest stays as its author wrote it. A part
// is only ever replaced by one that binds at least as tightly.
#include "compiler/spelling/condition_fold.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace compiler {

namespace {

constexpr char kZero[] = "0";

enum class Known : uint8_t {
  kNothing,
  kTrue,
  kFalse,
  kNoNodes,  // a node set, and empty
};

struct Part {
  Known known = Known::kNothing;
  bool changed = false;
  std::string text{};
};

class Folder {
 public:
  Folder(const Xpath& xpath, const KnownParts& known) : xpath_(xpath), known_(known) {}

  FoldedCondition Run() {
    const Part part = AsBoolean(Fold(xpath_.root));
    FoldedCondition folded;
    folded.text = xpath_.text;
    if (part.known != Known::kNothing) {
      folded.value = part.known == Known::kTrue;
    } else if (part.changed) {
      const TextSpan span = xpath_.At(xpath_.root).span;
      folded.text.replace(span.begin, span.end - span.begin, part.text);
    }
    return folded;
  }

 private:
  static Part AsBoolean(Part part) {
    if (part.known == Known::kNoNodes) part.known = Known::kFalse;
    return part;
  }

  Part Author(uint32_t index) const {
    return {Known::kNothing, false, std::string(xpath_.Of(xpath_.At(index).span))};
  }

  static Part Fresh(std::string text) { return {Known::kNothing, true, std::move(text)}; }

  // What an operand is when its value is wanted, not whether it holds.
  static std::string TextOf(const Part& part) {
    switch (part.known) {
      case Known::kTrue:
        return "true()";
      case Known::kFalse:
        return "false()";
      case Known::kNoNodes:
        return "''";
      default:
        return part.text;
    }
  }

  struct Replacement {
    TextSpan span;
    std::string text;
  };

  Part Splice(uint32_t index, const std::vector<Replacement>& parts) const {
    if (parts.empty()) return Author(index);
    const TextSpan span = xpath_.At(index).span;
    std::string text;
    uint32_t copied = span.begin;
    for (const Replacement& part : parts) {
      text.append(xpath_.Of({copied, part.span.begin})).append(part.text);
      copied = part.span.end;
    }
    return Fresh(text.append(xpath_.Of({copied, span.end})));
  }

  Part Fold(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    switch (node.kind) {
      case XpathKind::kOr:
      case XpathKind::kAnd:
        return Chain(index);
      case XpathKind::kGroup:
        return Group(index);
      case XpathKind::kPath:
        return Path(index);
      case XpathKind::kUnion:
        return Union(index);
      case XpathKind::kEquality:
      case XpathKind::kRelational:
        return Comparison(index);
      case XpathKind::kCall:
        return Call(index);
      default:
        return Values(index);
    }
  }

  // Operands that are known decide, or drop out.
  Part Chain(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    const Known deciding = node.kind == XpathKind::kOr ? Known::kTrue : Known::kFalse;
    std::vector<Part> left;
    std::vector<Replacement> parts;
    uint32_t last = 0;
    for (const uint32_t operand : node.operands) {
      Part part = AsBoolean(Fold(operand));
      if (part.known == deciding) return {deciding, true};
      if (part.known != Known::kNothing) continue;
      last = operand;
      if (part.changed) parts.push_back({xpath_.At(operand).span, part.text});
      left.push_back(std::move(part));
    }
    if (left.size() == node.operands.size()) return Splice(index, parts);
    if (left.empty()) return {deciding == Known::kTrue ? Known::kFalse : Known::kTrue, true};
    std::string text;
    for (const Part& part : left) {
      if (!text.empty()) text += node.kind == XpathKind::kOr ? " or " : " and ";
      text += part.text;
    }
    // Alone, it may be a node set or a text, and is wanted as a boolean.
    const bool isBoolean = left.size() > 1 || TypeOf(xpath_, last) == XpathType::kBoolean;
    return Fresh(isBoolean ? text : "boolean(" + text + ")");
  }

  Part Group(uint32_t index) {
    const uint32_t operand = xpath_.At(index).operands[0];
    Part inner = Fold(operand);
    if (inner.known != Known::kNothing) return inner;
    if (!inner.changed) return Author(index);
    return Splice(index, {{xpath_.At(operand).span, inner.text}});
  }

  // False: a predicate holds for no node.
  bool FoldPredicates(const std::vector<uint32_t>& predicates, std::vector<Replacement>* parts) {
    for (const uint32_t predicate : predicates) {
      const Part part = Fold(predicate);
      const Known known = AsBoolean(part).known;
      if (known == Known::kFalse) return false;
      const TextSpan span = xpath_.At(predicate).span;
      if (known == Known::kTrue) {
        parts->push_back({span, "true()"});
      } else if (part.changed) {
        parts->push_back({span, part.text});
      }
    }
    return true;
  }

  Part Path(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    Part none = {Known::kNoNodes, true};
    if (known_.emptyPaths.count(index) != 0) return none;
    std::vector<Replacement> parts;
    if (!node.operands.empty()) {
      const Part begin = Fold(node.operands[0]);
      if (begin.known == Known::kNoNodes) return none;
      if (begin.changed && begin.known == Known::kNothing)
        parts.push_back({xpath_.At(node.operands[0]).span, begin.text});
    }
    if (!FoldPredicates(node.predicates, &parts)) return none;
    for (const XpathStep& step : node.steps) {
      if (!FoldPredicates(step.predicates, &parts)) return none;
    }
    return Splice(index, parts);
  }

  Part Union(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    std::string text;
    size_t left = 0;
    bool changed = false;
    for (const uint32_t operand : node.operands) {
      const Part part = Fold(operand);
      changed = changed || part.changed;
      if (part.known == Known::kNoNodes) continue;
      if (left++ > 0) text += " | ";
      text += part.text;
    }
    if (left == 0) return {Known::kNoNodes, true};
    return changed ? Fresh(text) : Author(index);
  }

  static Known OfBoolean(bool value) { return value ? Known::kTrue : Known::kFalse; }

  // No node is equal to anything, nor unequal, nor less; against a boolean it is false.
  Part Comparison(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    std::vector<Part> sides;
    for (const uint32_t operand : node.operands) sides.push_back(Fold(operand));
    const auto isNone = [](const Part& part) { return part.known == Known::kNoNodes; };
    const auto none = std::find_if(sides.begin(), sides.end(), isNone);
    if (none == sides.end()) return Numbers(index, sides);
    if (sides.size() != 2) return Author(index);
    const size_t at = static_cast<size_t>(none - sides.begin());
    if (TypeOf(xpath_, node.operands[1 - at]) != XpathType::kBoolean || isNone(sides[1 - at]))
      return {Known::kFalse, true};
    return CompareFalse(index, at, sides[1 - at]);
  }

  std::optional<double> NumberOf(uint32_t operand, const Part& part) const {
    if (xpath_.At(operand).kind != XpathKind::kNumber && part.text != kZero) return std::nullopt;
    return std::strtod(part.text.c_str(), nullptr);
  }

  // What counts nodes may have become a number.
  Part Numbers(uint32_t index, const std::vector<Part>& sides) {
    const XpathNode& node = xpath_.At(index);
    const bool isChanged = sides.size() == 2 && (sides[0].changed || sides[1].changed);
    const auto left = isChanged ? NumberOf(node.operands[0], sides[0]) : std::nullopt;
    const auto right = isChanged ? NumberOf(node.operands[1], sides[1]) : std::nullopt;
    if (!left || !right) return Values(index);
    const std::string_view op = xpath_.Of(node.operators[0]);
    const bool isLess = *left < *right;
    const bool isMore = *left > *right;
    const bool holds = op == "="    ? !isLess && !isMore
                       : op == "!=" ? isLess || isMore
                       : op == "<"  ? isLess
                       : op == "<=" ? !isMore
                       : op == ">"  ? isMore
                                    : !isLess;
    return {OfBoolean(holds), true};
  }

  Part CompareFalse(uint32_t index, size_t at, const Part& other) {
    const XpathNode& node = xpath_.At(index);
    if (node.kind != XpathKind::kEquality)
      return Splice(index, {{xpath_.At(node.operands[at]).span, "false()"}});
    const bool isEqual = xpath_.Of(node.operators[0]) == "=";
    if (other.known != Known::kNothing)
      return {OfBoolean((other.known == Known::kFalse) == isEqual), true};
    return Fresh((isEqual ? "not(" : "boolean(") + other.text + ")");
  }

  // Each operand for its value.
  Part Values(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    std::vector<Replacement> parts;
    for (const uint32_t operand : node.operands) {
      const Part part = Fold(operand);
      if (part.changed) parts.push_back({xpath_.At(operand).span, TextOf(part)});
    }
    return Splice(index, parts);
  }

  // What the functions of node sets give for none.
  Part CallOfNoNodes(uint32_t index, std::string_view name) {
    if (name == "boolean" || name == "bit-is-set" || name == "derived-from" ||
        name == "derived-from-or-self")
      return {Known::kFalse, true};
    if (name == "count" || name == "sum" || name == "string-length") return Fresh(kZero);
    if (name == "deref") return {Known::kNoNodes, true};
    if (name == "enum-value") return Fresh("number('')");
    if (name == "local-name" || name == "name" || name == "namespace-uri" || name == "string")
      return Fresh("''");
    return Values(index);
  }

  Part Call(uint32_t index) {
    const XpathNode& node = xpath_.At(index);
    if (known_.falseCalls.count(index) != 0) return {Known::kFalse, true};
    const std::string_view name = xpath_.Of(node.name);
    if (node.operands.empty()) {
      if (name == "true") return {Known::kTrue};
      if (name == "false") return {Known::kFalse};
      return Author(index);
    }
    const Part first = Fold(node.operands[0]);
    if (first.known == Known::kNoNodes && name != "not") return CallOfNoNodes(index, name);
    if (node.operands.size() != 1 || (name != "not" && name != "boolean")) return Values(index);
    const Known known = AsBoolean(first).known;
    if (known == Known::kNothing) return Values(index);
    return {OfBoolean((known == Known::kTrue) == (name == "boolean")), true};
  }

  const Xpath& xpath_;
  const KnownParts& known_;
};

}  // namespace

FoldedCondition FoldCondition(const Xpath& xpath, const KnownParts& known) {
  return Folder(xpath, known).Run();
}

}  // namespace compiler
