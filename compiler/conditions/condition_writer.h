// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The rewriting of one condition. Only compiler/condition*.cc use this.
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compiler/conditions/condition_path.h"

namespace compiler {

// A part of the new condition.
struct Piece {
  std::string text;
  int rank = 0;           // of its outermost operator: the number of its XpathKind
  bool isBoolean = true;  // the library has a boolean for it, not a node, text or number
  bool changed = false;   // it is not as the author wrote it
};

// One side of a comparison.
struct Side {
  enum Kind : uint8_t {
    kNumber,
    kText,
    kBoolean,
    kPaths,
    kCount,
    kLength,
    kString,
    kNumberOf,
    kOther
  };
  Kind kind = kOther;
  uint32_t index = 0;  // the operand as it stands
  double number = 0;
  bool folded = false;  // the number is the result of a calculation
  std::string_view literal;
  std::vector<PlainPath> paths;  // several: of a union
};

class ConditionWriter {
 public:
  ConditionWriter(const Xpath& xpath, const ConditionPlace& place);

  Piece Condition() { return Boolean(xpath_.root); }
  std::vector<ConditionRemark> TakeRemarks() { return std::move(remarks_); }

 private:
  // condition.cc: what stands for true or false.
  Piece Boolean(uint32_t index);
  Piece Chain(uint32_t index);
  Piece Group(uint32_t index);
  Piece Call(uint32_t index);
  Piece DerivedFrom(uint32_t index);
  bool IsIdentityAtHand(uint32_t operand, const PlainPath& path);
  Piece Number(uint32_t index);
  Piece UnionOf(uint32_t index);
  Piece Exists(uint32_t index, PlainPath path);
  Piece AsBoolean(const Piece& piece) const;
  void CollectPresent(uint32_t index, bool when, std::vector<std::string>* keys) const;
  std::vector<std::string> KnownBeside(const XpathNode& chain, size_t operand) const;

  // condition_compare.cc: comparisons.
  Piece Compare(uint32_t index);
  Side SideOf(uint32_t index);
  Side SideOfCall(uint32_t index, uint32_t call);
  std::optional<Piece> CompareBoolean(uint32_t index, const Side& left, const Side& right);
  std::optional<Piece> CompareCount(uint32_t index, const Side& count, std::string_view op,
                                    double number);
  std::optional<Piece> CompareLength(uint32_t index, const Side& length, std::string_view op,
                                     double number);
  std::optional<Piece> CompareText(uint32_t index, const Side& side, std::string_view op,
                                   std::string_view literal);
  std::optional<Piece> CompareValues(uint32_t index, const Side& left, const Side& right);
  std::optional<Piece> CompareNumber(uint32_t index, const PlainPath& path, std::string_view op,
                                     const Side& number);
  std::optional<Piece> ComparePair(uint32_t index, const Side& left, const PlainPath* leftPath,
                                   const Side& right, const PlainPath* rightPath);
  bool IsComparable(uint32_t index, const PlainPath& path);
  bool AreComparable(uint32_t index, const Side& left, const PlainPath* leftPath, const Side& right,
                     const PlainPath* rightPath);
  bool IsUnequalToDefault(uint32_t index, const PlainPath& path, const Side& other) const;
  bool IsLiteralRight(uint32_t index, const PlainPath& path, std::string_view literal);
  std::string SideText(const Side& side, const PlainPath* path, const PlainPath* other) const;
  std::optional<double> Constant(uint32_t index) const;

  // Shared.
  Piece Author(uint32_t index, bool isBoolean) const;
  Piece Fresh(std::string text, XpathKind kind) const;
  Piece Splice(uint32_t index, const std::vector<std::pair<TextSpan, std::string>>& parts) const;
  Piece And(const std::vector<Piece>& pieces) const;
  Piece Or(const std::vector<Piece>& pieces) const;
  Piece Not(const Piece& piece) const;
  // What must hold besides a path itself: predicates, and what deref() starts from. False:
  // a predicate has no exact form.
  bool Guards(uint32_t index, const PlainPath& path, std::vector<Piece>* out);
  // A guard that the path leads to a node, where that is not known.
  void AddPresence(const PlainPath& path, std::vector<Piece>* out) const;
  bool IsKnown(const PlainPath& path) const;
  // False, with a remark, when the path cannot be evaluated as XPath does.
  bool IsEvaluable(uint32_t index, const PlainPath& path);
  bool Remark(ConditionIssue issue, uint32_t index, std::string message);
  Piece Refused(uint32_t index, ConditionRemark remark);
  std::string Quoted(uint32_t index) const;
  Piece Unsupported(uint32_t index);
  std::optional<std::string> OwnIdentityPrefix() const;

  const Xpath& xpath_;
  const ConditionPlace& place_;
  PathBase base_;
  std::vector<std::string> present_;  // keys of paths that lead to a node, or nothing matters
  std::vector<ConditionRemark> remarks_;
};

inline std::string Wrapped(const Piece& piece, int least) {
  return piece.rank < least ? "(" + piece.text + ")" : piece.text;
}

inline constexpr int RankOf(XpathKind kind) {
  return static_cast<int>(kind);
}

}  // namespace compiler
