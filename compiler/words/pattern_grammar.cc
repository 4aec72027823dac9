// SPDX-License-Identifier: BSD-3-Clause
// One walk over the text, groups counted and classes within classes followed in a loop, so
// nothing recurses. A hyphen in a class is taken wherever it stands: the editions of XML
// Schema differ there.
#include "compiler/words/pattern_grammar.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>

#include "compiler/words/character.h"

namespace compiler {

namespace {

constexpr std::string_view kCategories[] = {"C",  "Cc", "Cf", "Cn", "Co", "L",  "Ll", "Lm", "Lo",
                                            "Lt", "Lu", "M",  "Mc", "Me", "Mn", "N",  "Nd", "Nl",
                                            "No", "P",  "Pc", "Pd", "Pe", "Pf", "Pi", "Po", "Ps",
                                            "S",  "Sc", "Sk", "Sm", "So", "Z",  "Zl", "Zp", "Zs"};

// Those of XML Schema, and the names that later editions of Unicode gave to three of them.
constexpr std::string_view kBlocks[] = {"AlphabeticPresentationForms",
                                        "Arabic",
                                        "ArabicPresentationForms-A",
                                        "ArabicPresentationForms-B",
                                        "Armenian",
                                        "Arrows",
                                        "BasicLatin",
                                        "Bengali",
                                        "BlockElements",
                                        "Bopomofo",
                                        "BopomofoExtended",
                                        "BoxDrawing",
                                        "BraillePatterns",
                                        "ByzantineMusicalSymbols",
                                        "CJKCompatibility",
                                        "CJKCompatibilityForms",
                                        "CJKCompatibilityIdeographs",
                                        "CJKCompatibilityIdeographsSupplement",
                                        "CJKRadicalsSupplement",
                                        "CJKSymbolsandPunctuation",
                                        "CJKUnifiedIdeographs",
                                        "CJKUnifiedIdeographsExtensionA",
                                        "CJKUnifiedIdeographsExtensionB",
                                        "Cherokee",
                                        "CombiningDiacriticalMarks",
                                        "CombiningDiacriticalMarksforSymbols",
                                        "CombiningHalfMarks",
                                        "CombiningMarksforSymbols",
                                        "ControlPictures",
                                        "CurrencySymbols",
                                        "Cyrillic",
                                        "Deseret",
                                        "Devanagari",
                                        "Dingbats",
                                        "EnclosedAlphanumerics",
                                        "EnclosedCJKLettersandMonths",
                                        "Ethiopic",
                                        "GeneralPunctuation",
                                        "GeometricShapes",
                                        "Georgian",
                                        "Gothic",
                                        "Greek",
                                        "GreekExtended",
                                        "GreekandCoptic",
                                        "Gujarati",
                                        "Gurmukhi",
                                        "HalfwidthandFullwidthForms",
                                        "HangulCompatibilityJamo",
                                        "HangulJamo",
                                        "HangulSyllables",
                                        "Hebrew",
                                        "Hiragana",
                                        "IPAExtensions",
                                        "IdeographicDescriptionCharacters",
                                        "Kanbun",
                                        "KangxiRadicals",
                                        "Kannada",
                                        "Katakana",
                                        "Khmer",
                                        "Lao",
                                        "Latin-1Supplement",
                                        "LatinExtended-A",
                                        "LatinExtended-B",
                                        "LatinExtendedAdditional",
                                        "LetterlikeSymbols",
                                        "Malayalam",
                                        "MathematicalAlphanumericSymbols",
                                        "MathematicalOperators",
                                        "MiscellaneousSymbols",
                                        "MiscellaneousTechnical",
                                        "Mongolian",
                                        "MusicalSymbols",
                                        "Myanmar",
                                        "NumberForms",
                                        "Ogham",
                                        "OldItalic",
                                        "OpticalCharacterRecognition",
                                        "Oriya",
                                        "PrivateUse",
                                        "PrivateUseArea",
                                        "Runic",
                                        "Sinhala",
                                        "SmallFormVariants",
                                        "SpacingModifierLetters",
                                        "Specials",
                                        "SuperscriptsandSubscripts",
                                        "Syriac",
                                        "Tags",
                                        "Tamil",
                                        "Telugu",
                                        "Thaana",
                                        "Thai",
                                        "Tibetan",
                                        "UnifiedCanadianAboriginalSyllabics",
                                        "YiRadicals",
                                        "YiSyllables"};

template <size_t N>
constexpr bool Ascend(const std::string_view (&names)[N]) {
  return std::is_sorted(std::begin(names), std::end(names));
}
static_assert(Ascend(kCategories) && Ascend(kBlocks), "they are searched by halves");

template <size_t N>
bool Has(const std::string_view (&names)[N], std::string_view name) {
  return std::binary_search(std::begin(names), std::end(names), name);
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

class PatternCheck {
 public:
  explicit PatternCheck(std::string_view text) : text_(text) {}

  std::string Run() {
    while (fault_.empty() && at_ < text_.size()) TakePiece();
    if (fault_.empty() && groups_ > 0) Say("a \"(\" is not closed");
    return fault_;
  }

 private:
  bool Sees(char c) const { return at_ < text_.size() && text_[at_] == c; }

  void Say(std::string fault) {
    if (fault_.empty()) fault_ = std::move(fault);
  }

  // An atom or what stands around atoms, with its quantifier.
  void TakePiece() {
    const char c = text_[at_++];
    switch (c) {
      case '(':
        ++groups_;
        return;
      case '|':
        return;
      case ')':
        if (groups_ == 0) return Say("a \")\" closes nothing");
        --groups_;
        break;
      case '[':
        TakeClass();
        break;
      case '\\':
        TakeEscape();
        break;
      case '?':
      case '*':
      case '+':
        return Say("there is nothing to repeat before " + Quoted({&c, 1}));
      case '{':
      case '}':
      case ']':
        return Say(Quoted({&c, 1}) + " stands for itself only behind a backslash");
      default:
        break;
    }
    TakeQuantifier();
  }

  void TakeQuantifier() {
    if (Sees('?') || Sees('*') || Sees('+')) {
      ++at_;
    } else if (Sees('{')) {
      TakeQuantity();
    }
  }

  bool TakeNumber(uint64_t* number) {
    const char* begin = text_.data() + at_;
    const auto read = std::from_chars(begin, text_.data() + text_.size(), *number);
    if (read.ec == std::errc::result_out_of_range) *number = UINT64_MAX;
    at_ += static_cast<size_t>(read.ptr - begin);
    return read.ptr != begin;
  }

  void TakeQuantity() {
    const size_t begin = at_++;
    uint64_t least = 0;
    uint64_t most = UINT64_MAX;
    bool isGood = TakeNumber(&least);
    if (isGood && Sees(',')) {
      ++at_;
      if (!Sees('}')) isGood = TakeNumber(&most);
    }
    isGood = isGood && Sees('}');
    if (isGood) ++at_;
    const size_t end = isGood ? at_ : std::min(text_.find('}', begin), text_.size() - 1) + 1;
    const std::string quantity = Quoted(text_.substr(begin, end - begin));
    if (!isGood) Say(quantity + " is no quantity, such as {2}, {2,} or {2,5}");
    if (isGood && most < least) Say("the quantity " + quantity + " descends");
  }

  // What follows a backslash.
  void TakeEscape() {
    const char c = at_ < text_.size() ? text_[at_++] : '\0';
    if (c == 'p' || c == 'P') return TakeProperty();
    constexpr std::string_view kEscapes = "nrt\\|.?*+(){}-[]^sSiIcCdDwW";
    if (c == '\0' || kEscapes.find(c) == std::string_view::npos)
      Say("\"\\" + std::string(c == '\0' ? "" : std::string(1, c)) + "\" is no escape");
  }

  void TakeProperty() {
    const size_t end = Sees('{') ? text_.find('}', at_) : std::string_view::npos;
    if (end == std::string_view::npos) return Say("behind \"\\p\" stands a name in braces");
    const std::string_view name = text_.substr(at_ + 1, end - at_ - 1);
    at_ = end + 1;
    constexpr std::string_view kIs = "Is";
    if (name.substr(0, kIs.size()) == kIs) {
      if (!Has(kBlocks, name.substr(kIs.size())))
        Say("there is no block of characters " + Quoted(name));
    } else if (!Has(kCategories, name)) {
      Say("there is no category of characters " + Quoted(name));
    }
  }

  // What follows a "[", to its end. What is taken from a class is a class, at its end.
  void TakeClass() {
    size_t open = 1;
    bool isEmpty = true;
    if (Sees('^')) ++at_;
    while (fault_.empty() && open > 0) {
      if (at_ == text_.size()) return Say("a \"[\" is not closed");
      const char c = text_[at_++];
      if (c == '\\') {
        TakeEscape();
      } else if (c == '-' && Sees('[') && !isEmpty) {
        ++at_;
        ++open;
        isEmpty = true;
        if (Sees('^')) ++at_;
        continue;
      } else if (c == '[') {
        return Say("\"[\" stands for itself only behind a backslash");
      } else if (c == ']') {
        if (isEmpty) return Say("a class has no characters");
        // Behind a class that is taken away, the one around it ends.
        for (--open; open > 0 && Sees(']'); --open) ++at_;
        if (open > 0 && at_ < text_.size())
          return Say("what is taken from a class stands at its end");
      }
      isEmpty = false;
    }
  }

  std::string_view text_;
  size_t at_ = 0;
  size_t groups_ = 0;
  std::string fault_;
};

}  // namespace

std::string FaultOfPattern(std::string_view pattern) {
  return PatternCheck(pattern).Run();
}

}  // namespace compiler
