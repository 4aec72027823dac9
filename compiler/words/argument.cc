// SPDX-License-Identifier: BSD-3-Clause
// Arguments are judged character by character as the grammar of RFC 7950, section 14,
// writes them. Which form a statement wants stands in one table by statement; the few
// that depend on the statement around them are told apart in FormOf().
#include "compiler/words/argument.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "compiler/words/character.h"

namespace compiler {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool BeginsWithXml(std::string_view text) noexcept {
  return text.size() >= 3 && (text[0] == 'x' || text[0] == 'X') &&
         (text[1] == 'm' || text[1] == 'M') && (text[2] == 'l' || text[2] == 'L');
}

std::string_view Trim(std::string_view text) noexcept {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// A prefixed step is allowed in either version to begin with "xml": the name is
// judged where it is defined.
bool IsNodeIdPath(std::string_view text) noexcept {
  for (;;) {
    const size_t slash = text.find('/');
    if (!IsIdentifierRef(text.substr(0, slash), true)) return false;
    if (slash == std::string_view::npos) return true;
    text.remove_prefix(slash + 1);
  }
}

bool DayExists(unsigned year, unsigned month, unsigned day) noexcept {
  constexpr unsigned char kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12 || day < 1 || day > kDays[month - 1]) return false;
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month != 2 || day < 29 || leap;
}

unsigned NumberAt(std::string_view text, size_t from, size_t count) noexcept {
  unsigned value = 0;
  for (size_t i = from; i < from + count; ++i)
    value = value * 10 + static_cast<unsigned>(text[i] - '0');
  return value;
}

// Digits, or digits "." digits, with a sign; a length takes digits alone.
bool IsBound(std::string_view text, bool length) noexcept {
  if (text == "min" || text == "max") return true;
  if (!length && !text.empty() && text[0] == '-') text.remove_prefix(1);
  const size_t point = length ? std::string_view::npos : text.find('.');
  const std::string_view whole = text.substr(0, point);
  if (whole.empty() || !std::all_of(whole.begin(), whole.end(), IsDigit)) return false;
  if (whole.size() > 1 && whole[0] == '0') return false;
  if (point == std::string_view::npos) return true;
  const std::string_view fraction = text.substr(point + 1);
  return !fraction.empty() && std::all_of(fraction.begin(), fraction.end(), IsDigit);
}

bool ParsePart(std::string_view text, bool length, RangePart* part) {
  const size_t dots = text.find("..");
  part->low = Trim(text.substr(0, dots));
  part->high = dots == std::string_view::npos ? part->low : Trim(text.substr(dots + 2));
  return IsBound(part->low, length) && IsBound(part->high, length);
}

// ---- the form that each statement's argument has

enum class Form : uint8_t {
  kAny,
  kIdentifier,
  kReference,
  kDate,
  kUri,
  kBoolean,
  kVersion,
  kStatus,
  kOrder,
  kModifier,
  kDeviate,
  kUnsigned,
  kMaximum,
  kInteger,
  kFraction,
  kRange,
  kLength,
  kKey,
  kUnique,
  kAbsolute,
  kDescendant,
  kEnum,
};

struct FormRow {
  Keyword keyword;
  Form form;
};

constexpr FormRow kForms[] = {
    {Keyword::kAction, Form::kIdentifier},
    {Keyword::kAnydata, Form::kIdentifier},
    {Keyword::kAnyxml, Form::kIdentifier},
    {Keyword::kArgument, Form::kIdentifier},
    {Keyword::kAugment, Form::kAbsolute},
    {Keyword::kBase, Form::kReference},
    {Keyword::kBelongsTo, Form::kIdentifier},
    {Keyword::kBit, Form::kIdentifier},
    {Keyword::kCase, Form::kIdentifier},
    {Keyword::kChoice, Form::kIdentifier},
    {Keyword::kConfig, Form::kBoolean},
    {Keyword::kContainer, Form::kIdentifier},
    {Keyword::kDeviate, Form::kDeviate},
    {Keyword::kDeviation, Form::kAbsolute},
    {Keyword::kEnum, Form::kEnum},
    {Keyword::kExtension, Form::kIdentifier},
    {Keyword::kFeature, Form::kIdentifier},
    {Keyword::kFractionDigits, Form::kFraction},
    {Keyword::kGrouping, Form::kIdentifier},
    {Keyword::kIdentity, Form::kIdentifier},
    {Keyword::kImport, Form::kIdentifier},
    {Keyword::kInclude, Form::kIdentifier},
    {Keyword::kKey, Form::kKey},
    {Keyword::kLeaf, Form::kIdentifier},
    {Keyword::kLeafList, Form::kIdentifier},
    {Keyword::kLength, Form::kLength},
    {Keyword::kList, Form::kIdentifier},
    {Keyword::kMandatory, Form::kBoolean},
    {Keyword::kMaxElements, Form::kMaximum},
    {Keyword::kMinElements, Form::kUnsigned},
    {Keyword::kModifier, Form::kModifier},
    {Keyword::kModule, Form::kIdentifier},
    {Keyword::kNamespace, Form::kUri},
    {Keyword::kNotification, Form::kIdentifier},
    {Keyword::kOrderedBy, Form::kOrder},
    {Keyword::kPosition, Form::kUnsigned},
    {Keyword::kPrefix, Form::kIdentifier},
    {Keyword::kRange, Form::kRange},
    {Keyword::kRefine, Form::kDescendant},
    {Keyword::kRequireInstance, Form::kBoolean},
    {Keyword::kRevision, Form::kDate},
    {Keyword::kRevisionDate, Form::kDate},
    {Keyword::kRpc, Form::kIdentifier},
    {Keyword::kStatus, Form::kStatus},
    {Keyword::kSubmodule, Form::kIdentifier},
    {Keyword::kType, Form::kReference},
    {Keyword::kTypedef, Form::kIdentifier},
    {Keyword::kUnique, Form::kUnique},
    {Keyword::kUses, Form::kReference},
    {Keyword::kValue, Form::kInteger},
    {Keyword::kYangVersion, Form::kVersion},
    {Keyword::kYinElement, Form::kBoolean},
};

Form FormOf(Keyword keyword, Keyword parent) noexcept {
  if (keyword == Keyword::kAugment && parent == Keyword::kUses) return Form::kDescendant;
  if (keyword == Keyword::kDefault && parent == Keyword::kChoice) return Form::kReference;
  const auto* row = std::find_if(std::begin(kForms), std::end(kForms),
                                 [keyword](const FormRow& r) { return r.keyword == keyword; });
  return row == std::end(kForms) ? Form::kAny : row->form;
}

bool OneOf(std::string_view text, std::initializer_list<std::string_view> words) noexcept {
  return std::find(words.begin(), words.end(), text) != words.end();
}

template <typename Judge>
bool AllWords(std::string_view text, Judge judge) {
  const std::vector<std::string_view> words = WordsOf(text);
  return !words.empty() && std::all_of(words.begin(), words.end(), judge);
}

bool HasForm(Form form, std::string_view text, bool version11) {
  uint64_t number = 0;
  int64_t integer = 0;
  std::vector<RangePart> parts;
  switch (form) {
    case Form::kAny:
      return true;
    case Form::kIdentifier:
      return IsIdentifier(text, version11);
    case Form::kReference:
      return IsIdentifierRef(text, version11);
    case Form::kDate:
      return IsDate(text);
    case Form::kUri:
      return IsUri(text);
    case Form::kBoolean:
      return OneOf(text, {"true", "false"});
    case Form::kVersion:
      return OneOf(text, {"1", "1.1"});
    case Form::kStatus:
      return OneOf(text, {"current", "deprecated", "obsolete"});
    case Form::kOrder:
      return OneOf(text, {"user", "system"});
    case Form::kModifier:
      return text == "invert-match";
    case Form::kDeviate:
      return OneOf(text, {"not-supported", "add", "replace", "delete"});
    case Form::kUnsigned:
      return ParseUnsigned(text, UINT32_MAX, &number);
    case Form::kMaximum:
      return text == "unbounded" || (ParseUnsigned(text, UINT32_MAX, &number) && number > 0);
    case Form::kInteger:
      return ParseInteger(text, INT32_MIN, INT32_MAX, &integer);
    case Form::kFraction:
      return ParseUnsigned(text, 18, &number) && number > 0;
    case Form::kRange:
      return ParseRange(text, false, &parts);
    case Form::kLength:
      return ParseRange(text, true, &parts);
    case Form::kKey:
      return AllWords(text, [](std::string_view word) { return IsIdentifierRef(word, true); });
    case Form::kUnique:
      return AllWords(text, IsDescendantNodeId);
    case Form::kAbsolute:
      return IsAbsoluteNodeId(text);
    case Form::kDescendant:
      return IsDescendantNodeId(text);
    case Form::kEnum:
      return !text.empty() && Trim(text).size() == text.size();
  }
  return true;
}

constexpr std::string_view kFormNames[] = {
    "a string",
    "an identifier",
    "a name with or without a prefix",
    "a date",
    "a URI",
    "a truth value",
    "a version of YANG",
    "a status",
    "an order",
    "a modifier",
    "a kind of deviate",
    "a number from 0 to 4294967295",
    "a number from 1 to 4294967295, or \"unbounded\"",
    "an integer of 32 bits",
    "a number from 1 to 18",
    "a range",
    "a length",
    "a list of leaf names",
    "a list of paths to leafs",
    "an absolute schema node path",
    "a path that begins below this node",
    "the name of an enum",
};

constexpr std::string_view kFormAdvice[] = {
    "",
    "begin with a letter or \"_\" and go on with letters, digits, \"_\", \"-\" and \".\"",
    "write NAME or PREFIX:NAME",
    "write a day of the calendar as YYYY-MM-DD",
    "write an absolute URI such as \"urn:example:name\"",
    "write \"true\" or \"false\"",
    "write \"1\" or \"1.1\"",
    "write \"current\", \"deprecated\" or \"obsolete\"",
    "write \"user\" or \"system\"",
    "write \"invert-match\"",
    "write \"add\", \"delete\", \"replace\" or \"not-supported\"",
    "write digits alone, without a sign and without leading zeros",
    "write digits alone, without leading zeros, or \"unbounded\"",
    "write digits with or without \"-\", from -2147483648 to 2147483647",
    "write the number of digits behind the point",
    "write bounds parted by \"..\" and parts parted by \"|\", such as \"1..4 | 8\"",
    "write bounds without sign parted by \"..\" and parts parted by \"|\", such as \"1..4 | 8\"",
    "write the names of the list's keys, parted by blanks",
    "write paths below the list without \"/\" in front, parted by blanks",
    "write \"/PREFIX:NAME/PREFIX:NAME\"",
    "write \"NAME/NAME\" without \"/\" in front",
    "write at least one character and no blanks at the ends",
};
static_assert(std::size(kFormNames) == static_cast<size_t>(Form::kEnum) + 1, "one name a form");
static_assert(std::size(kFormAdvice) == std::size(kFormNames), "one advice a form");

}  // namespace

bool IsIdentifier(std::string_view text, bool version11) noexcept {
  if (text.empty() || !IsNameStart(text[0])) return false;
  if (!version11 && BeginsWithXml(text)) return false;
  return std::all_of(text.begin(), text.end(), IsNameCharacter);
}

bool IsIdentifierRef(std::string_view text, bool version11) noexcept {
  const size_t colon = text.find(':');
  if (colon == std::string_view::npos) return IsIdentifier(text, version11);
  return IsIdentifier(text.substr(0, colon), version11) &&
         IsIdentifier(text.substr(colon + 1), version11);
}

bool IsDate(std::string_view text) noexcept {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
  for (size_t i = 0; i < text.size(); ++i)
    if (i != 4 && i != 7 && !IsDigit(text[i])) return false;
  return DayExists(NumberAt(text, 0, 4), NumberAt(text, 5, 2), NumberAt(text, 8, 2));
}

bool IsUri(std::string_view text) noexcept {
  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";
  const size_t colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0 || colon + 1 == text.size()) return false;
  const std::string_view scheme = text.substr(0, colon);
  if (!IsNameStart(scheme[0]) || scheme[0] == '_') return false;
  const auto inScheme = [](char c) {
    return (IsNameStart(c) && c != '_') || IsDigit(c) || c == '+' || c == '-' || c == '.';
  };
  if (!std::all_of(scheme.begin(), scheme.end(), inScheme)) return false;
  for (size_t i = colon; i < text.size(); ++i) {
    const char c = text[i];
    if (IsNameStart(c) || IsDigit(c) || kMarks.find(c) != std::string_view::npos) continue;
    const auto isHex = [&](size_t at) {
      return at < text.size() && (IsDigit(text[at]) || (text[at] >= 'a' && text[at] <= 'f') ||
                                  (text[at] >= 'A' && text[at] <= 'F'));
    };
    if (c != '%' || !isHex(i + 1) || !isHex(i + 2)) return false;
  }
  return true;
}

bool IsAbsoluteNodeId(std::string_view text) noexcept {
  return !text.empty() && text[0] == '/' && IsNodeIdPath(text.substr(1));
}

bool IsDescendantNodeId(std::string_view text) noexcept {
  return IsNodeIdPath(text);
}

bool ParseUnsigned(std::string_view text, uint64_t max, uint64_t* value) noexcept {
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsDigit)) return false;
  if (text.size() > 1 && text[0] == '0') return false;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), *value);
  return result.ec == std::errc() && *value <= max;
}

bool ParseInteger(std::string_view text, int64_t min, int64_t max, int64_t* value) noexcept {
  const std::string_view digits = text.substr(!text.empty() && text[0] == '-' ? 1 : 0);
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), IsDigit)) return false;
  if (digits.size() > 1 && digits[0] == '0') return false;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), *value);
  return result.ec == std::errc() && *value >= min && *value <= max;
}

std::vector<std::string_view> WordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  size_t end = 0;
  for (;;) {
    const size_t begin = text.find_first_not_of(kBlanks, end);
    if (begin == std::string_view::npos) return words;
    end = std::min(text.find_first_of(kBlanks, begin), text.size());
    words.push_back(text.substr(begin, end - begin));
  }
}

bool ParseRange(std::string_view text, bool length, std::vector<RangePart>* parts) {
  for (;;) {
    const size_t bar = text.find('|');
    RangePart part;
    if (!ParsePart(text.substr(0, bar), length, &part)) return false;
    parts->push_back(part);
    if (bar == std::string_view::npos) return true;
    text.remove_prefix(bar + 1);
  }
}

std::string JudgeArgument(Keyword keyword, Keyword parent, std::string_view text, bool version11) {
  const Form form = FormOf(keyword, parent);
  if (HasForm(form, text, version11)) return {};
  if (form == Form::kIdentifier && IsIdentifier(text, true))
    return "\"" + std::string(text) + "\" begins with \"xml\", which YANG 1 forbids";
  return "\"" + std::string(text) + "\" is not " +
         std::string(kFormNames[static_cast<size_t>(form)]);
}

std::string AdviseArgument(Keyword keyword, Keyword parent) {
  return std::string(kFormAdvice[static_cast<size_t>(FormOf(keyword, parent))]);
}

}  // namespace compiler
