// SPDX-License-Identifier: BSD-3-Clause
// Ranges, lengths and patterns: that their parts ascend and stay within what the base
// type allows, and that patterns compile (RFC 7950, sections 9.2.4, 9.4.4 and 9.4.5).
#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"
#include "compiler/words/argument.h"
#include "compiler/words/pattern.h"
#include "compiler/words/pattern_grammar.h"

namespace compiler {

namespace {

bool TakesRange(BuiltIn base) {
  return IsInteger(base) || base == BuiltIn::kDecimal64;
}

bool TakesLength(BuiltIn base) {
  return base == BuiltIn::kString || base == BuiltIn::kBinary;
}

// "1..4 | 8" of intervals.
std::string TextOfAll(const std::vector<Interval>& intervals, unsigned digits) {
  std::string text;
  for (const Interval& interval : intervals) {
    if (!text.empty()) text += " | ";
    text += TextOf(interval.low, digits);
    if (interval.low != interval.high) text += ".." + TextOf(interval.high, digits);
  }
  return text;
}

void JudgeIntervals(Lint* lint, const TypeChain& chain, Keyword keyword) {
  const xmlNode* statement = FirstChild(chain.types[0], keyword);
  const char* text = statement == nullptr ? nullptr : ArgumentOf(statement);
  if (text == nullptr) return;
  const std::vector<Interval> base = IntervalsOf(chain, keyword, 1);
  const unsigned digits = FractionDigits(chain);
  std::vector<Interval> parts;
  std::string fault;
  if (ReadIntervals(text, keyword == Keyword::kLength, digits, base, &parts, &fault)) return;
  if (fault.empty()) return;  // its form, which the grammar has judged
  Error(lint, cls::kRestriction, statement, "in " + Describe(statement) + " " + fault,
        "the base type allows " + TextOfAll(base, digits) + ", in ascending order");
}

void JudgeExpression(Lint* lint, const xmlNode* statement) {
  const char* pattern = ArgumentOf(statement);
  if (pattern == nullptr) return;
  const PatternState state = JudgePattern(pattern);
  if (state == PatternState::kTooDeep)
    Warn(lint, cls::kLibrary, statement,
         "the library compiles no pattern of more than 512 parts that may be empty, so no value "
         "matches",
         "write several patterns, which all have to match");
  const std::string fault = FaultOfPattern(pattern);
  if (state != PatternState::kFaulty && fault.empty()) return;
  Error(lint, cls::kRestriction, statement,
        "the pattern " + Quote(pattern) + " does not compile" + (fault.empty() ? "" : ": " + fault),
        "write a regular expression of XML Schema");
}

}  // namespace

void LintRestrictions(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kType, [&](const xmlNode* type) {
    const TypeChain chain = ChainOf(type);
    if (TakesRange(chain.base)) JudgeIntervals(lint, chain, Keyword::kRange);
    if (TakesLength(chain.base)) JudgeIntervals(lint, chain, Keyword::kLength);
  });
  ForEachStatement(file, Keyword::kPattern, [&](const xmlNode* s) { JudgeExpression(lint, s); });
}

}  // namespace compiler
