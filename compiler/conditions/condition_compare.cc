// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "compiler/conditions/condition_writer.h"
#include "compiler/words/path.h"

// Comparisons (XPath 1.0, section 3.4). For the library a missing node is an empty text;
// in XPath no comparison with it holds, "!=" among them. So where it matters, the path
// itself is put in front: "x and x != 'a'".

namespace compiler {
namespace {

constexpr double kMany = 1e300;

bool Holds(double left, std::string_view op, double right) {
  if (op == "=") return left == right;
  if (op == "!=") return left != right;
  if (op == "<") return left < right;
  if (op == "<=") return left <= right;
  return op == ">" ? left > right : left >= right;
}

std::string_view Flipped(std::string_view op) {
  if (op == "<") return ">";
  if (op == "<=") return ">=";
  if (op == ">") return "<";
  return op == ">=" ? "<=" : op;
}

bool IsEquality(std::string_view op) {
  return op == "=" || op == "!=";
}

// Without an exponent, which XPath does not know.
std::string NumberText(double number) {
  std::array<char, 400> buffer{};
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed);
  return {buffer.data(), written.ptr};
}

bool IsNumeric(ValueKind kind) {
  return kind == ValueKind::kNumber || kind == ValueKind::kDecimal ||
         kind == ValueKind::kNumberOrWord;
}

// Kinds whose texts XPath and the library read as the same number, or as none.
bool ReadsAlike(ValueKind kind) {
  return kind != ValueKind::kUnknown;
}

bool MayBeEmpty(ValueKind kind) {
  return kind == ValueKind::kUnknown || kind == ValueKind::kEmpty;
}

}  // namespace

// Calculations with numbers only. The whole condition is one context of one node.
std::optional<double> ConditionWriter::Constant(uint32_t index) const {
  index = WithoutParentheses(xpath_, index);
  const XpathNode& node = xpath_.At(index);
  if (node.kind == XpathKind::kNumber) {
    const std::string_view text = xpath_.Of(node.span);
    double number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() ? std::optional<double>(number) : std::nullopt;
  }
  if (IsCall(xpath_, index, "position") || IsCall(xpath_, index, "last")) {
    return base_.outermost && node.operands.empty() ? std::optional<double>(1) : std::nullopt;
  }
  const bool calculates = node.kind == XpathKind::kNegate || node.kind == XpathKind::kAdditive ||
                          node.kind == XpathKind::kMultiplicative;
  std::optional<double> result = calculates ? Constant(node.operands[0]) : std::nullopt;
  if (!result) return std::nullopt;
  if (node.kind == XpathKind::kNegate) return -*result;
  for (size_t i = 1; i < node.operands.size(); ++i) {
    const std::optional<double> operand = Constant(node.operands[i]);
    if (!operand) return std::nullopt;
    const std::string_view op = xpath_.Of(node.operators[i - 1]);
    if (op == "+") *result += *operand;
    if (op == "-") *result -= *operand;
    if (op == "*") *result *= *operand;
    if (op == "div") *result /= *operand;
    if (op == "mod") *result = std::fmod(*result, *operand);
  }
  return std::isfinite(*result) ? result : std::nullopt;
}

Side ConditionWriter::SideOf(uint32_t index) {
  Side side;
  side.index = index;
  const uint32_t inner = WithoutParentheses(xpath_, index);
  const XpathNode& node = xpath_.At(inner);
  if (const std::optional<double> number = Constant(inner)) {
    side.kind = Side::kNumber;
    side.number = *number;
    side.folded = node.kind != XpathKind::kNumber;
  } else if (node.kind == XpathKind::kLiteral) {
    side.kind = Side::kText;
    side.literal = LiteralText(xpath_, inner);
  } else if (TypeOf(xpath_, inner) == XpathType::kBoolean) {
    side.kind = Side::kBoolean;
  } else if (node.kind == XpathKind::kUnion) {
    side.kind = Side::kPaths;
    for (const uint32_t operand : node.operands) {
      side.paths.push_back(ResolvePath(xpath_, place_, base_, operand));
    }
  } else if (TypeOf(xpath_, inner) == XpathType::kNodeSet && node.kind != XpathKind::kVariable) {
    side.kind = Side::kPaths;
    side.paths.push_back(ResolvePath(xpath_, place_, base_, inner));
  } else if (node.kind == XpathKind::kCall) {
    return SideOfCall(index, inner);
  }
  return side;
}

Side ConditionWriter::SideOfCall(uint32_t index, uint32_t call) {
  Side side;
  side.index = index;
  const XpathNode& node = xpath_.At(call);
  const std::string_view name = xpath_.Of(node.name);
  if (node.operands.size() != 1 || TypeOf(xpath_, node.operands[0]) != XpathType::kNodeSet) {
    return side;
  }
  const uint32_t operand = WithoutParentheses(xpath_, node.operands[0]);
  if (name == "count") side.kind = Side::kCount;
  if (name == "string-length") side.kind = Side::kLength;
  if (name == "string") side.kind = Side::kString;
  if (name == "number") side.kind = Side::kNumberOf;
  if (side.kind == Side::kOther) return side;
  side.paths.push_back(ResolvePath(xpath_, place_, base_, operand));
  return side;
}

Piece ConditionWriter::Compare(uint32_t index) {
  const XpathNode& node = xpath_.At(index);
  Piece author = Author(index, true);
  if (node.operands.size() != 2) {
    Remark(ConditionIssue::kOther, index,
           "the library evaluates " + Quoted(index) + " as it stands");
    return author;
  }
  const Side left = SideOf(node.operands[0]);
  const Side right = SideOf(node.operands[1]);
  const std::string_view op = xpath_.Of(node.operators[0]);
  const bool swap = left.kind == Side::kNumber || left.kind == Side::kText;
  const Side& first = swap ? right : left;
  const Side& second = swap ? left : right;
  const std::string_view way = swap ? Flipped(op) : op;
  std::optional<Piece> piece;
  if (left.kind == Side::kBoolean || right.kind == Side::kBoolean) {
    piece = CompareBoolean(index, left, right);
  } else if (first.kind == Side::kCount && second.kind == Side::kNumber) {
    piece = CompareCount(index, first, way, second.number);
  } else if (first.kind == Side::kLength && second.kind == Side::kNumber) {
    piece = CompareLength(index, first, way, second.number);
  } else if (first.kind == Side::kString && second.kind == Side::kText && IsEquality(op)) {
    piece = CompareText(index, first, way, second.literal);
  } else {
    piece = CompareValues(index, left, right);
  }
  return piece ? *piece : author;
}

std::optional<Piece> ConditionWriter::CompareBoolean(uint32_t index, const Side& left,
                                                     const Side& right) {
  const XpathNode& node = xpath_.At(index);
  const std::string_view op = xpath_.Of(node.operators[0]);
  const auto known = [&](uint32_t operand) -> std::optional<bool> {
    const uint32_t inner = WithoutParentheses(xpath_, operand);
    if (IsCall(xpath_, inner, "true")) return true;
    if (IsCall(xpath_, inner, "false")) return false;
    return std::nullopt;
  };
  const auto isSimple = [](const Side& side) {
    return side.kind == Side::kBoolean || side.kind == Side::kPaths;
  };
  if (!IsEquality(op) || !isSimple(left) || !isSimple(right)) {
    Unsupported(index);
    return std::nullopt;
  }
  const std::optional<bool> fixed = known(left.index) ? known(left.index) : known(right.index);
  if (fixed) {
    const Piece piece = Boolean(known(left.index) ? right.index : left.index);
    Piece result = *fixed == (op == "=") ? AsBoolean(piece) : Not(piece);
    result.changed = true;
    return result;
  }
  const Piece a = AsBoolean(Boolean(left.index));
  const Piece b = AsBoolean(Boolean(right.index));
  if (!a.changed && !b.changed) return std::nullopt;
  const int least = RankOf(XpathKind::kEquality);
  const std::string textA = Wrapped(a, least);
  const std::string textB = Wrapped(b, least + 1);
  return Splice(index, {{xpath_.At(left.index).span, textA}, {xpath_.At(right.index).span, textB}});
}

// The count of nodes matters only as far as it is 0 or not, or the path leads to one at
// most.
std::optional<Piece> ConditionWriter::CompareCount(uint32_t index, const Side& count,
                                                   std::string_view op, double number) {
  const PlainPath& path = count.paths[0];
  if (!path.plain || path.outside || path.namesake || path.lacksDefault || path.mayLeave ||
      !path.existsByFirst) {
    Unsupported(index);
    return std::nullopt;
  }
  const bool atNone = Holds(0, op, number);
  const bool atOne = Holds(1, op, number);
  // What is true of one and of very many is so in between, unless one number counts.
  const bool same = Holds(kMany, op, number) == atOne;
  const bool between = IsEquality(op) && number >= 1 && number == std::floor(number);
  const bool single = path.known && !path.several;
  if (!single && (!same || between)) {
    Unsupported(index);
    return std::nullopt;
  }
  if (atNone == atOne) {
    return Fresh(atOne ? "1 = 1" : "1 = 0", XpathKind::kEquality);
  }
  const uint32_t call = WithoutParentheses(xpath_, count.index);
  const size_t remarks = remarks_.size();
  Piece piece = Exists(xpath_.At(call).operands[0], path);
  if (remarks_.size() != remarks) {
    remarks_.resize(remarks);
    Unsupported(index);
    return std::nullopt;
  }
  piece.changed = true;
  return atOne ? piece : Not(piece);
}

std::optional<Piece> ConditionWriter::CompareLength(uint32_t index, const Side& length,
                                                    std::string_view op, double number) {
  const bool atNone = Holds(0, op, number);
  const bool atOne = Holds(1, op, number);
  if (Holds(kMany, op, number) != atOne || (IsEquality(op) && number != 0)) {
    Unsupported(index);
    return std::nullopt;
  }
  if (atNone == atOne) return Fresh(atOne ? "1 = 1" : "1 = 0", XpathKind::kEquality);
  std::optional<Piece> filled = CompareText(index, length, "!=", "");
  if (!filled || atOne) return filled;
  return Not(*filled);
}

// string(x) is empty where x is missing, as the library has it anyway; but the result
// should say the same to others.
std::optional<Piece> ConditionWriter::CompareText(uint32_t index, const Side& side,
                                                  std::string_view op, std::string_view literal) {
  const bool usable = side.paths.size() == 1 && side.paths[0].plain && side.paths[0].known &&
                      side.paths[0].predicates.empty() && side.paths[0].required.empty() &&
                      (side.paths[0].target == nullptr ||
                       place_.schema->ValueOf(side.paths[0].target) != ValueKind::kIdentity);
  if (!usable || !IsComparable(index, side.paths[0]) ||
      !IsLiteralRight(index, side.paths[0], literal)) {
    if (!usable) Unsupported(index);
    return std::nullopt;
  }
  const PlainPath& path = side.paths[0];
  const char quote = literal.find('\'') == std::string_view::npos ? '\'' : '"';
  const std::string compared =
      PathText(path) + " " + std::string(op) + " " + quote + std::string(literal) + quote;
  const Piece comparison = Fresh(compared, XpathKind::kEquality);
  const bool trueWhenMissing = literal.empty() == (op == "=");
  if (!trueWhenMissing || IsKnown(path)) return comparison;
  const Piece missing = Not({PathText(path), RankOf(XpathKind::kPath), false, true});
  return Or({missing, comparison});
}

// Whether a comparison with the path's value can be exact at all.
bool ConditionWriter::IsComparable(uint32_t index, const PlainPath& path) {
  if (!IsEvaluable(index, path)) return false;
  if (!path.known) {
    return Remark(ConditionIssue::kOther, index,
                  "what " + Quoted(index) +
                      " compares is not known here: a missing node counts "
                      "as an empty text for the library, and of several only the first");
  }
  if (path.several) {
    return Remark(
        ConditionIssue::kSeveral, index,
        "of several entries in " + Quoted(index) + " the library looks at the first only");
  }
  // A path that leads nowhere does so for everybody.
  const bool root = path.absolute && path.items.empty();
  if (path.target == nullptr && !root) return true;
  const bool hasText = !root && (path.target->keyword == Keyword::kLeaf ||
                                 path.target->keyword == Keyword::kLeafList);
  if (!hasText) {
    return Remark(ConditionIssue::kOther, index,
                  Quoted(index) + " compares what is no leaf: the library sees no text there");
  }
  if (place_.isWhenOfContext && path.target == place_.context) {
    return Remark(ConditionIssue::kOther, index,
                  Quoted(index) + " looks at the value of the node that it decides on");
  }
  return true;
}

bool ConditionWriter::IsLiteralRight(uint32_t index, const PlainPath& path,
                                     std::string_view literal) {
  const size_t colon = literal.find(':');
  if (colon == std::string_view::npos || place_.words == nullptr) return true;
  const std::string_view prefix = literal.substr(0, colon);
  const auto import = place_.words->imports.find(prefix);
  std::string_view module;
  if (import != place_.words->imports.end()) module = import->second;
  if (prefix == place_.words->prefix) module = place_.words->name;
  const bool isIdentity =
      path.target != nullptr && place_.schema->ValueOf(path.target) == ValueKind::kIdentity;
  if (isIdentity) {
    return !module.empty() || Remark(ConditionIssue::kOther, index,
                                     "\"" + std::string(prefix) +
                                         "\" is no prefix here: the library compares with "
                                         "module name and identity");
  }
  return module.empty() || module == prefix ||
         Remark(ConditionIssue::kOther, index,
                "the library reads \"" + std::string(prefix) + ":\" in the literal as \"" +
                    std::string(module) + ":\"");
}

std::optional<Piece> ConditionWriter::CompareValues(uint32_t index, const Side& left,
                                                    const Side& right) {
  const auto isValue = [](const Side& side) {
    return side.kind == Side::kNumber || side.kind == Side::kText || side.kind == Side::kPaths;
  };
  if (!isValue(left) || !isValue(right)) {
    const Side& wrong = isValue(left) ? right : left;
    Unsupported(WithoutParentheses(xpath_, wrong.index));
    return std::nullopt;
  }
  if (left.kind != Side::kPaths && right.kind != Side::kPaths) {
    const auto isPlain = [](const Side& side) {
      return !side.folded || side.kind != Side::kNumber;
    };
    if (isPlain(left) && isPlain(right)) return std::nullopt;
    if (left.kind == Side::kNumber && right.kind == Side::kNumber) {
      const std::string_view op = xpath_.Of(xpath_.At(index).operators[0]);
      return Fresh(Holds(left.number, op, right.number) ? "1 = 1" : "1 = 0", XpathKind::kEquality);
    }
    Unsupported(index);
    return std::nullopt;
  }
  // A union is compared one path at a time.
  std::vector<Piece> pieces;
  bool changed = left.paths.size() > 1 || right.paths.size() > 1;
  for (size_t i = 0; i < std::max<size_t>(left.paths.size(), 1); ++i) {
    for (size_t j = 0; j < std::max<size_t>(right.paths.size(), 1); ++j) {
      const std::optional<Piece> piece =
          ComparePair(index, left, left.paths.empty() ? nullptr : &left.paths[i], right,
                      right.paths.empty() ? nullptr : &right.paths[j]);
      if (!piece) return std::nullopt;
      changed = changed || piece->changed;
      pieces.push_back(*piece);
    }
  }
  if (!changed) return std::nullopt;
  return Or(pieces);
}

// A default that is not there is as unequal to the text as what is missing.
bool ConditionWriter::IsUnequalToDefault(uint32_t index, const PlainPath& path,
                                         const Side& other) const {
  if (path.target == nullptr || path.target->keyword != Keyword::kLeaf ||
      other.kind != Side::kText || other.literal.empty() ||
      xpath_.Of(xpath_.At(index).operators[0]) != "=")
    return false;
  // Where a value can be written in one way only.
  DataModule* words = nullptr;
  const xmlNode* type = place_.schema->TypeOf(path.target, &words);
  const bool isString = type != nullptr && YinArgument(type) == "string";
  if (!isString && place_.schema->ValueOf(path.target) != ValueKind::kWord) return false;
  const xmlNode* byDefault = place_.schema->DefaultOf(path.target);
  return byDefault != nullptr && YinArgument(byDefault) != other.literal;
}

bool ConditionWriter::AreComparable(uint32_t index, const Side& left, const PlainPath* leftPath,
                                    const Side& right, const PlainPath* rightPath) {
  const bool equality = xpath_.At(index).kind == XpathKind::kEquality;
  ValueKind kinds[2] = {ValueKind::kWord, ValueKind::kWord};
  const PlainPath* paths[2] = {leftPath, rightPath};
  for (size_t i = 0; i < 2; ++i) {
    if (paths[i] == nullptr) continue;
    PlainPath path = *paths[i];
    const Side& other = i == 0 ? right : left;
    path.lacksDefault = path.lacksDefault && !IsUnequalToDefault(index, path, other);
    if (!IsComparable(index, path)) return false;
    if (paths[i]->target != nullptr) kinds[i] = place_.schema->ValueOf(paths[i]->target);
  }
  const bool asNumbers = !equality || left.kind == Side::kNumber || right.kind == Side::kNumber;
  if (asNumbers && !(ReadsAlike(kinds[0]) && ReadsAlike(kinds[1]))) {
    return Remark(
        ConditionIssue::kOther, index,
        "texts such as \"+1\" and \"1e3\" in " + Quoted(index) + " are numbers for the library");
  }
  const bool identities = kinds[0] == ValueKind::kIdentity || kinds[1] == ValueKind::kIdentity;
  if (leftPath != nullptr && rightPath != nullptr && identities && kinds[0] != kinds[1]) {
    return Remark(ConditionIssue::kOther, index,
                  "the library compares an identity with its module's name in " + Quoted(index));
  }
  if (left.kind == Side::kText && !IsLiteralRight(index, *rightPath, left.literal)) return false;
  return right.kind != Side::kText || IsLiteralRight(index, *leftPath, right.literal);
}

// One side as it is to be written, beside the path on the other.
std::string ConditionWriter::SideText(const Side& side, const PlainPath* path,
                                      const PlainPath* other) const {
  const TextSpan span = xpath_.At(side.index).span;
  if (path != nullptr) {
    const bool stays = !path->changed && side.paths.size() == 1;
    return stays ? std::string(xpath_.Of(span)) : PathText(*path);
  }
  if (side.kind == Side::kNumber && side.folded) {
    return side.number < 0 ? "'" + NumberText(side.number) + "'" : NumberText(side.number);
  }
  const bool identity = side.kind == Side::kText && other->target != nullptr &&
                        place_.schema->ValueOf(other->target) == ValueKind::kIdentity;
  const std::optional<std::string> own = OwnIdentityPrefix();
  if (!identity || !own || !IsIdentifier(side.literal)) return std::string(xpath_.Of(span));
  return "'" + *own + std::string(side.literal) + "'";
}

// With numbers that the library cannot read or compare so finely: both bounds instead.
std::optional<Piece> ConditionWriter::CompareNumber(uint32_t index, const PlainPath& path,
                                                    std::string_view op, const Side& number) {
  const bool fine =
      path.target != nullptr && place_.schema->ValueOf(path.target) == ValueKind::kDecimal;
  const bool numeric = path.target != nullptr && IsNumeric(place_.schema->ValueOf(path.target));
  if (!IsEquality(op) || !(number.number < 0 || fine) || !numeric) return std::nullopt;
  std::vector<Piece> pieces;
  if (!Guards(index, path, &pieces)) return std::nullopt;
  if (op == "!=") AddPresence(path, &pieces);
  Side folded = number;
  folded.folded = true;
  const std::string text = PathText(path);
  const std::string value = SideText(folded, nullptr, &path);
  const Piece both =
      Fresh(text + " >= " + value + " and " + text + " <= " + value, XpathKind::kAnd);
  if (op == "!=") {
    pieces.push_back(Not(both));
  } else {
    pieces.push_back(both);
  }
  return And(pieces);
}

std::optional<Piece> ConditionWriter::ComparePair(uint32_t index, const Side& left,
                                                  const PlainPath* leftPath, const Side& right,
                                                  const PlainPath* rightPath) {
  const XpathNode& node = xpath_.At(index);
  const std::string_view op = xpath_.Of(node.operators[0]);
  if (!AreComparable(index, left, leftPath, right, rightPath)) return std::nullopt;
  if (leftPath != nullptr && right.kind == Side::kNumber) {
    if (std::optional<Piece> piece = CompareNumber(index, *leftPath, op, right)) return piece;
  }
  if (rightPath != nullptr && left.kind == Side::kNumber) {
    if (std::optional<Piece> piece = CompareNumber(index, *rightPath, op, left)) return piece;
  }
  std::vector<Piece> pieces;
  if (leftPath != nullptr && !Guards(index, *leftPath, &pieces)) return std::nullopt;
  if (rightPath != nullptr && !Guards(index, *rightPath, &pieces)) return std::nullopt;
  const auto needs = [&](const PlainPath* path, const Side& other, const PlainPath* otherPath) {
    if (path == nullptr || !IsEquality(op)) return false;
    if (other.kind == Side::kNumber) return op == "!=";
    if (other.kind == Side::kText) return other.literal.empty() == (op == "=");
    if (op == "!=") return true;
    // Equal to a text that is there and not empty it cannot be when it is missing.
    const bool filled =
        otherPath->target != nullptr && !MayBeEmpty(place_.schema->ValueOf(otherPath->target));
    return !(IsKnown(*otherPath) && filled);
  };
  if (needs(leftPath, right, rightPath)) AddPresence(*leftPath, &pieces);
  if (needs(rightPath, left, leftPath)) AddPresence(*rightPath, &pieces);
  const std::string leftText = SideText(left, leftPath, rightPath);
  const std::string rightText = SideText(right, rightPath, leftPath);
  const TextSpan leftSpan = xpath_.At(left.index).span;
  const TextSpan rightSpan = xpath_.At(right.index).span;
  const bool same = leftText == xpath_.Of(leftSpan) && rightText == xpath_.Of(rightSpan);
  if (same && pieces.empty()) return Author(index, true);
  pieces.push_back(Splice(index, {{leftSpan, leftText}, {rightSpan, rightText}}));
  return And(pieces);
}

}  // namespace compiler
