// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/conditions/condition.h"

#include <algorithm>
#include <utility>

#include "compiler/conditions/condition_writer.h"
#include "compiler/words/character.h"

// A condition is rewritten from the outside in, each part in the light of what it is
// for: most parts stand for true or false, where a path means that it leads somewhere. A
// part without an exact form stays as it is and leaves a remark; the rest is still
// rewritten, since each part has the same answer as before.

namespace compiler {
namespace {

constexpr char kTrue[] = "1 = 1";
constexpr char kFalse[] = "1 = 0";

}  // namespace

ConditionWriter::ConditionWriter(const Xpath& xpath, const ConditionPlace& place)
    : xpath_(xpath), place_(place) {
  base_.node = place.context;
  base_.known = place.context != nullptr;
}

bool ConditionResult::Fails() const {
  return std::any_of(remarks.begin(), remarks.end(), [](const ConditionRemark& remark) {
    return remark.issue == ConditionIssue::kFails;
  });
}

std::string ConditionWriter::Quoted(uint32_t index) const {
  return "\"" + std::string(xpath_.Of(xpath_.At(index).span)) + "\"";
}

bool ConditionWriter::Remark(ConditionIssue issue, uint32_t index, std::string message) {
  remarks_.push_back({issue, xpath_.At(index).span.begin, std::move(message)});
  return false;
}

Piece ConditionWriter::Author(uint32_t index, bool isBoolean) const {
  const XpathNode& node = xpath_.At(index);
  return {std::string(xpath_.Of(node.span)), RankOf(node.kind), isBoolean, false};
}

Piece ConditionWriter::Fresh(std::string text, XpathKind kind) const {
  return {std::move(text), RankOf(kind), true, true};
}

Piece ConditionWriter::Refused(uint32_t index, ConditionRemark remark) {
  remarks_.push_back(std::move(remark));
  return Author(index, false);
}

Piece ConditionWriter::Unsupported(uint32_t index) {
  const XpathNode& node = xpath_.At(index);
  std::string what = "the library evaluates no " + Quoted(index);
  if (node.kind == XpathKind::kCall) {
    what = "the library has no function \"" + std::string(xpath_.Of(node.name)) + "\"";
  }
  return Refused(index, {ConditionIssue::kFails, node.span.begin, std::move(what)});
}

// Two words that parentheses held apart stay apart.
static void Append(std::string* text, std::string_view more, bool apart) {
  if (apart && !text->empty() && !more.empty() && IsNameCharacter(text->back()) &&
      IsNameCharacter(more.front())) {
    *text += ' ';
  }
  *text += more;
}

// The author's text with some parts replaced, which stand in their order.
Piece ConditionWriter::Splice(uint32_t index,
                              const std::vector<std::pair<TextSpan, std::string>>& parts) const {
  const TextSpan span = xpath_.At(index).span;
  Piece piece = {"", RankOf(xpath_.At(index).kind), true, true};
  uint32_t copied = span.begin;
  bool replaced = false;
  for (const auto& [part, text] : parts) {
    Append(&piece.text, xpath_.Of({copied, part.begin}), replaced);
    replaced = part.begin != part.end;
    Append(&piece.text, text, replaced);
    copied = part.end;
  }
  Append(&piece.text, xpath_.Of({copied, span.end}), replaced);
  return piece;
}

static Piece Joined(const std::vector<Piece>& pieces, const char* word, XpathKind kind) {
  if (pieces.size() == 1) return pieces[0];
  Piece all = {"", RankOf(kind), true, true};
  for (const Piece& piece : pieces) {
    if (!all.text.empty()) all.text += word;
    all.text += Wrapped(piece, RankOf(kind));
  }
  return all;
}

Piece ConditionWriter::And(const std::vector<Piece>& pieces) const {
  return Joined(pieces, " and ", XpathKind::kAnd);
}

Piece ConditionWriter::Or(const std::vector<Piece>& pieces) const {
  return Joined(pieces, " or ", XpathKind::kOr);
}

Piece ConditionWriter::Not(const Piece& piece) const {
  return Fresh("not(" + piece.text + ")", XpathKind::kCall);
}

Piece ConditionWriter::AsBoolean(const Piece& piece) const {
  return piece.isBoolean ? piece : Not(Not(piece));
}

Piece ConditionWriter::Boolean(uint32_t index) {
  switch (xpath_.At(index).kind) {
    case XpathKind::kOr:
    case XpathKind::kAnd:
      return Chain(index);
    case XpathKind::kGroup:
      return Group(index);
    case XpathKind::kEquality:
    case XpathKind::kRelational:
      return Compare(index);
    case XpathKind::kPath:
      return Exists(index, ResolvePath(xpath_, place_, base_, index));
    case XpathKind::kUnion:
      return UnionOf(index);
    case XpathKind::kCall:
      return Call(index);
    case XpathKind::kLiteral:
    case XpathKind::kNumber:
      return Author(index, false);
    case XpathKind::kVariable:
      return Unsupported(index);
    default:
      return Number(index);
  }
}

// Paths that lead to a node when the part is true (or false, if not `when`).
void ConditionWriter::CollectPresent(uint32_t index, bool when,
                                     std::vector<std::string>* keys) const {
  index = WithoutParentheses(xpath_, index);
  const XpathNode& node = xpath_.At(index);
  if (node.kind == (when ? XpathKind::kAnd : XpathKind::kOr)) {
    for (const uint32_t operand : node.operands) CollectPresent(operand, when, keys);
  } else if (IsCall(xpath_, index, "not") && node.operands.size() == 1) {
    CollectPresent(node.operands[0], !when, keys);
  } else if (node.kind == XpathKind::kPath && when) {
    const PlainPath path = ResolvePath(xpath_, place_, base_, index);
    if (path.plain && !path.outside && path.existsByFirst) keys->push_back(PathKey(path));
  }
}

// Paths that an operand of the chain may rely on, since the chain's answer is known
// without it where they lead nowhere: beside "a and", and beside "not(a) or".
std::vector<std::string> ConditionWriter::KnownBeside(const XpathNode& chain,
                                                      size_t operand) const {
  std::vector<std::string> keys;
  for (size_t i = 0; i < chain.operands.size(); ++i) {
    if (i != operand) CollectPresent(chain.operands[i], chain.kind == XpathKind::kAnd, &keys);
  }
  return keys;
}

Piece ConditionWriter::Chain(uint32_t index) {
  const XpathNode& node = xpath_.At(index);
  std::vector<std::pair<TextSpan, std::string>> parts;
  // Long chains are made by machines, and hold nothing that knows of its neighbours.
  constexpr size_t kMostNeighbours = 64;
  for (size_t i = 0; i < node.operands.size(); ++i) {
    const size_t known = present_.size();
    if (node.operands.size() <= kMostNeighbours) {
      for (std::string& key : KnownBeside(node, i)) present_.push_back(std::move(key));
    }
    const Piece piece = Boolean(node.operands[i]);
    present_.resize(known);
    if (piece.changed) {
      parts.emplace_back(xpath_.At(node.operands[i]).span, Wrapped(piece, RankOf(node.kind)));
    }
  }
  return parts.empty() ? Author(index, true) : Splice(index, parts);
}

Piece ConditionWriter::Group(uint32_t index) {
  const Piece inner = Boolean(xpath_.At(index).operands[0]);
  if (!inner.changed) return Author(index, inner.isBoolean);
  Piece piece = inner;
  if (inner.rank < RankOf(XpathKind::kUnion)) {
    piece.text = "(" + inner.text + ")";
    piece.rank = RankOf(XpathKind::kGroup);
  }
  return piece;
}

Piece ConditionWriter::Number(uint32_t index) {
  const std::optional<double> number = Constant(index);
  if (!number) return Unsupported(index);
  return Fresh(*number != 0 && *number == *number ? kTrue : kFalse, XpathKind::kEquality);
}

Piece ConditionWriter::UnionOf(uint32_t index) {
  std::vector<Piece> pieces;
  const size_t remarks = remarks_.size();
  for (const uint32_t operand : xpath_.At(index).operands) {
    if (TypeOf(xpath_, operand) != XpathType::kNodeSet) return Unsupported(index);
    pieces.push_back(Boolean(operand));
  }
  if (remarks_.size() == remarks) {
    Piece piece = Or(pieces);
    piece.changed = true;
    return piece;
  }
  remarks_.resize(remarks);
  return Unsupported(index);
}

bool ConditionWriter::IsKnown(const PlainPath& path) const {
  return path.certain ||
         std::find(present_.begin(), present_.end(), PathKey(path)) != present_.end();
}

void ConditionWriter::AddPresence(const PlainPath& path, std::vector<Piece>* out) const {
  if (IsKnown(path)) return;
  const std::string text = PathText(path);
  for (const Piece& piece : *out) {
    if (piece.text == text) return;
  }
  out->push_back({text, RankOf(XpathKind::kPath), false, true});
}

bool ConditionWriter::Guards(uint32_t index, const PlainPath& path, std::vector<Piece>* out) {
  for (const PlainPath& required : path.required) AddPresence(required, out);
  for (const PathPredicate& predicate : path.predicates) {
    const size_t remarks = remarks_.size();
    PathBase outer = std::exchange(base_, predicate.base);
    Piece piece = Boolean(predicate.expression);
    base_ = std::move(outer);
    if (remarks_.size() != remarks) {
      remarks_.resize(remarks);
      return Remark(ConditionIssue::kPredicate, index,
                    "the library passes over \"[" +
                        std::string(xpath_.Of(xpath_.At(predicate.expression).span)) + "]\" in " +
                        Quoted(index));
    }
    out->push_back(std::move(piece));
  }
  return true;
}

bool ConditionWriter::IsEvaluable(uint32_t index, const PlainPath& path) {
  if (!path.plain) {
    remarks_.push_back(path.remark);
    return false;
  }
  if (path.outside) {
    return Remark(ConditionIssue::kOutside, index,
                  Quoted(index) + " leads out of the message, where the library finds nothing");
  }
  if (path.inside) {
    return Remark(ConditionIssue::kInside, index,
                  Quoted(index) + " looks into what the condition decides on");
  }
  if (path.namesake) {
    return Remark(ConditionIssue::kOther, index,
                  "for " + Quoted(index) +
                      " the library takes the first node of that name, whatever its module");
  }
  if (path.lacksDefault) {
    return Remark(ConditionIssue::kOther, index,
                  "a default of " + Quoted(index) + " that is not written counts as missing");
  }
  if (path.mayLeave) {
    return Remark(ConditionIssue::kOther, index,
                  "a default of " + Quoted(index) +
                      " counts as there although its own condition takes it away afterwards");
  }
  return true;
}

Piece ConditionWriter::Exists(uint32_t index, PlainPath path) {
  Piece author = Author(index, false);
  if (!IsEvaluable(index, path)) return author;
  // Containers without presence exist for XPath wherever their parent does.
  while (!path.items.empty() && !path.items.back().up && path.items.back().node != nullptr &&
         IsPlainContainer(path.items.back().node)) {
    if (!PresenceOf(place_.schema, path.items.back().node).inTree) {
      Remark(ConditionIssue::kOther, index,
             Quoted(index) + " is a container that the library misses unless it is written");
      return author;
    }
    path.items.pop_back();
    path.changed = true;
  }
  if (!path.known) {
    Remark(ConditionIssue::kOther, index, "where " + Quoted(index) + " leads is not known here");
    return author;
  }
  if (!path.existsByFirst) {
    Remark(ConditionIssue::kSeveral, index,
           "of several entries in " + Quoted(index) + " the library looks at the first only");
    return author;
  }
  std::vector<Piece> guards;
  if (!Guards(index, path, &guards)) return author;
  if (!path.changed) return author;
  // Ancestors are there; in a predicate the path to its node is asked for elsewhere.
  const bool upwards = base_.outermost && std::all_of(path.items.begin(), path.items.end(),
                                                      [](const PathItem& item) { return item.up; });
  if (guards.empty() || !upwards)
    guards.push_back({PathText(path), RankOf(XpathKind::kPath), false, true});
  Piece piece = And(guards);
  piece.changed = true;
  return piece;
}

Piece ConditionWriter::Call(uint32_t index) {
  const XpathNode& node = xpath_.At(index);
  const std::string_view name = xpath_.Of(node.name);
  if (name == "derived-from" || name == "derived-from-or-self") return DerivedFrom(index);
  if (name == "current" || name == "deref") {
    return Exists(index, ResolvePath(xpath_, place_, base_, index));
  }
  if (name == "true" && node.operands.empty()) return Fresh(kTrue, XpathKind::kEquality);
  if (name == "false" && node.operands.empty()) return Fresh(kFalse, XpathKind::kEquality);
  if (node.operands.size() != 1) return Unsupported(index);
  const uint32_t operand = node.operands[0];
  if (name == "not") {
    const Piece inner = Boolean(operand);
    if (!inner.changed) return Author(index, true);
    return Splice(index, {{xpath_.At(operand).span, inner.text}});
  }
  if (name == "boolean") {
    Piece piece = Boolean(operand);
    piece.changed = true;
    return piece;
  }
  if (name == "count" && TypeOf(xpath_, operand) == XpathType::kNodeSet) {
    const std::optional<Piece> piece = CompareCount(index, SideOf(index), ">", 0);
    return piece ? *piece : Author(index, false);
  }
  if (name == "string-length" || name == "string") {
    const std::optional<Piece> piece = CompareText(index, SideOf(index), "!=", "");
    return piece ? *piece : Author(index, false);
  }
  return Unsupported(index);
}

std::optional<std::string> ConditionWriter::OwnIdentityPrefix() const {
  if (place_.words == nullptr || place_.words->prefix.empty()) return std::nullopt;
  return std::string(place_.words->prefix) + ":";
}

// Whether the path leads to an identityref in every message: where it does not, the
// library refuses the request.
bool ConditionWriter::IsIdentityAtHand(uint32_t operand, const PlainPath& path) {
  if (!path.plain || path.inside || path.namesake || path.lacksDefault || path.mayLeave)
    return IsEvaluable(operand, path);
  if (path.outside) IsEvaluable(operand, path);
  if (path.known && path.several) {
    Remark(ConditionIssue::kSeveral, operand,
           "of several entries in " + Quoted(operand) + " the library looks at the first only");
  }
  if (!path.known || path.outside || !path.certain) {
    return Remark(ConditionIssue::kFails, operand,
                  "where " + Quoted(operand) + " is missing the library refuses the request");
  }
  if (place_.isWhenOfContext && path.target == place_.context) {
    return Remark(ConditionIssue::kOther, operand,
                  Quoted(operand) + " looks at the value of the node that it decides on");
  }
  if (path.target != nullptr && place_.schema->ValueOf(path.target) == ValueKind::kIdentity) {
    return true;
  }
  return Remark(ConditionIssue::kFails, operand,
                Quoted(operand) + " is no identityref: the library refuses the request");
}

Piece ConditionWriter::DerivedFrom(uint32_t index) {
  const XpathNode& node = xpath_.At(index);
  Piece author = Author(index, true);
  if (node.operands.size() != 2) return Unsupported(index);
  const uint32_t operand = node.operands[0];
  const uint32_t literal = WithoutParentheses(xpath_, node.operands[1]);
  if (TypeOf(xpath_, operand) != XpathType::kNodeSet ||
      xpath_.At(literal).kind != XpathKind::kLiteral) {
    return Unsupported(index);
  }
  const PlainPath path = ResolvePath(xpath_, place_, base_, operand);
  if (!IsIdentityAtHand(operand, path)) return author;
  std::vector<Piece> pieces;
  if (!Guards(index, path, &pieces)) return author;
  std::vector<std::pair<TextSpan, std::string>> parts;
  if (path.changed) parts.emplace_back(xpath_.At(operand).span, PathText(path));
  const std::string_view text = LiteralText(xpath_, literal);
  const std::optional<std::string> own = OwnIdentityPrefix();
  // Without a prefix the library means the module of the leaf.
  if (text.find(':') == std::string_view::npos && own && path.target->module != place_.words) {
    const uint32_t at = xpath_.At(literal).span.begin + 1;
    parts.emplace_back(TextSpan{at, at}, *own);
  }
  if (parts.empty() && pieces.empty()) return author;
  pieces.push_back(Splice(index, parts));
  return And(pieces);
}

// What the loader makes of the literals counts: it puts names of modules for prefixes.
static size_t LengthWhenLoaded(const std::string& text, const ConditionPlace& place) {
  Xpath xpath;
  XpathError error;
  size_t length = text.size();
  if (place.words == nullptr || !ParseXpath(text, &xpath, &error)) return length;
  for (uint32_t i = 0; i < xpath.nodes.size(); ++i) {
    if (xpath.At(i).kind != XpathKind::kLiteral) continue;
    const std::string_view literal = LiteralText(xpath, i);
    const std::string_view prefix = literal.substr(0, literal.find(':'));
    const auto import = place.words->imports.find(prefix);
    std::string_view name;
    if (prefix == place.words->prefix) name = place.words->name;
    if (import != place.words->imports.end()) name = import->second;
    if (prefix.size() != literal.size() && !name.empty()) length += name.size() - prefix.size();
  }
  return length;
}

ConditionResult MakeExact(const Xpath& xpath, const ConditionPlace& place) {
  ConditionWriter writer(xpath, place);
  const Piece piece = writer.Condition();
  ConditionResult result;
  result.remarks = writer.TakeRemarks();
  result.text = xpath.text;
  if (piece.changed) {
    const TextSpan span = xpath.At(xpath.root).span;
    const std::string text =
        xpath.text.substr(0, span.begin) + piece.text + xpath.text.substr(span.end);
    if (LengthWhenLoaded(text, place) <= kMaxCondition) {
      result.text = text;
    } else {
      result.remarks.push_back({ConditionIssue::kOther, 0,
                                "the form that the library evaluates rightly is longer than its "
                                "3096 characters"});
    }
  }
  return result;
}

}  // namespace compiler
