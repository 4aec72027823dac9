// SPDX-License-Identifier: BSD-3-Clause
//
// Names statements by number. One table holds the keywords in the order of
// their ids; a second set holds the words of each initial letter in the order
// of how often models use them, so that a lookup compares a handful of words
// and skips the character that chose them. The compiler proves that the two
// sets name the same keywords.
#include "yin/keyword.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "context/table.h"
#include "context/xml_tree.h"
#include "platform/string.h"

constexpr QmsKeyWord g_qmsKeyWordTbl[] = {
    {"unknown", QMS_STMT_UNKNOWN},
    {"action", QMS_STMT_ACTION},
    {"anydata", QMS_STMT_ANYDATA},
    {"anyxml", QMS_STMT_ANYXML},
    {"argument", QMS_STMT_ARGUMENT},
    {"augment", QMS_STMT_AUGMENT},
    {"base", QMS_STMT_BASE},
    {"belongs-to", QMS_STMT_BELONGS_TO},
    {"bit", QMS_STMT_BIT},
    {"case", QMS_STMT_CASE},
    {"choice", QMS_STMT_CHOICE},
    {"config", QMS_STMT_CONFIG},
    {"contact", QMS_STMT_CONTACT},
    {"container", QMS_STMT_CONTAINER},
    {"default", QMS_STMT_DEFAULT},
    {"description", QMS_STMT_DESCRIPTION},
    {"deviate", QMS_STMT_DEVIATE},
    {"deviation", QMS_STMT_DEVIATION},
    {"enum", QMS_STMT_ENUM},
    {"error-app-tag", QMS_STMT_ERROR_APP_TAG},
    {"error-message", QMS_STMT_ERROR_MESSAGE},
    {"extension", QMS_STMT_EXTENSION},
    {"feature", QMS_STMT_FEATURE},
    {"fraction-digits", QMS_STMT_FRACTION_DIGITS},
    {"grouping", QMS_STMT_GROUPING},
    {"identity", QMS_STMT_IDENTITY},
    {"if-feature", QMS_STMT_IF_FEATURE},
    {"import", QMS_STMT_IMPORT},
    {"include", QMS_STMT_INCLUDE},
    {"input", QMS_STMT_INPUT},
    {"key", QMS_STMT_KEY},
    {"leaf", QMS_STMT_LEAF},
    {"leaf-list", QMS_STMT_LEAF_LIST},
    {"length", QMS_STMT_LENGTH},
    {"list", QMS_STMT_LIST},
    {"mandatory", QMS_STMT_MANDATORY},
    {"max-elements", QMS_STMT_MAX_ELEMENTS},
    {"min-elements", QMS_STMT_MIN_ELEMENTS},
    {"modifier", QMS_STMT_MODIFIER},
    {"module", QMS_STMT_MODULE},
    {"must", QMS_STMT_MUST},
    {"namespace", QMS_STMT_NAMESPACE},
    {"notification", QMS_STMT_NOTIFICATION},
    {"ordered-by", QMS_STMT_ORDERED_BY},
    {"organization", QMS_STMT_ORGANIZATION},
    {"output", QMS_STMT_OUTPUT},
    {"path", QMS_STMT_PATH},
    {"pattern", QMS_STMT_PATTERN},
    {"position", QMS_STMT_POSITION},
    {"prefix", QMS_STMT_PREFIX},
    {"presence", QMS_STMT_PRESENCE},
    {"range", QMS_STMT_RANGE},
    {"reference", QMS_STMT_REFERENCE},
    {"refine", QMS_STMT_REFINE},
    {"require-instance", QMS_STMT_REQUIRE_INSTANCE},
    {"revision", QMS_STMT_REVISION},
    {"revision-date", QMS_STMT_REVISION_DATE},
    {"rpc", QMS_STMT_RPC},
    {"status", QMS_STMT_STATUS},
    {"submodule", QMS_STMT_SUBMODULE},
    {"type", QMS_STMT_TYPE},
    {"typedef", QMS_STMT_TYPEDEF},
    {"unique", QMS_STMT_UNIQUE},
    {"units", QMS_STMT_UNITS},
    {"uses", QMS_STMT_USES},
    {"value", QMS_STMT_VALUE},
    {"when", QMS_STMT_WHEN},
    {"yang-version", QMS_STMT_YANG_VERSION},
    {"yin-element", QMS_STMT_YIN_ELEMENT},
    {"text", QMS_STMT_TEXT},
    {"extension-instance", QMS_STMT_EXTENSION_INSTANCE},
};

constexpr char kYinNamespace[] = "urn:ietf:params:xml:ns:yang:yin:1";
constexpr uint32_t kFirstKeyword = QMS_STMT_ACTION;
constexpr uint32_t kLastKeyword = QMS_STMT_YIN_ELEMENT;

static consteval bool SameText(const char* a, const char* b) {
  while (*a != '\0' && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

static consteval bool ComesBefore(const char* a, const char* b) {
  while (*a != '\0' && *a == *b) {
    ++a;
    ++b;
  }
  return *a < *b;
}

static consteval bool KeywordsAscend() {
  for (uint32_t i = kFirstKeyword; i < kLastKeyword; ++i) {
    if (!ComesBefore(g_qmsKeyWordTbl[i].name, g_qmsKeyWordTbl[i + 1].name)) return false;
  }
  return true;
}

static_assert(std::size(g_qmsKeyWordTbl) == QMS_STMT_COUNT, "one row per statement id");
static_assert(RowsStandAtTheir<&QmsKeyWord::id>(g_qmsKeyWordTbl),
              "a row's index is its statement id");
static_assert(KeywordsAscend(), "the ids of YANG keywords are alphabetical");

constexpr QmsKeyWord kWordsA[] = {{"augment", QMS_STMT_AUGMENT},
                                  {"argument", QMS_STMT_ARGUMENT},
                                  {"anydata", QMS_STMT_ANYDATA},
                                  {"anyxml", QMS_STMT_ANYXML},
                                  {"action", QMS_STMT_ACTION}};
constexpr QmsKeyWord kWordsB[] = {
    {"base", QMS_STMT_BASE}, {"bit", QMS_STMT_BIT}, {"belongs-to", QMS_STMT_BELONGS_TO}};
constexpr QmsKeyWord kWordsC[] = {{"container", QMS_STMT_CONTAINER},
                                  {"config", QMS_STMT_CONFIG},
                                  {"case", QMS_STMT_CASE},
                                  {"choice", QMS_STMT_CHOICE},
                                  {"contact", QMS_STMT_CONTACT}};
constexpr QmsKeyWord kWordsD[] = {{"description", QMS_STMT_DESCRIPTION},
                                  {"default", QMS_STMT_DEFAULT},
                                  {"deviate", QMS_STMT_DEVIATE},
                                  {"deviation", QMS_STMT_DEVIATION}};
constexpr QmsKeyWord kWordsE[] = {{"enum", QMS_STMT_ENUM},
                                  {"extension", QMS_STMT_EXTENSION},
                                  {"error-message", QMS_STMT_ERROR_MESSAGE},
                                  {"error-app-tag", QMS_STMT_ERROR_APP_TAG}};
constexpr QmsKeyWord kWordsF[] = {{"fraction-digits", QMS_STMT_FRACTION_DIGITS},
                                  {"feature", QMS_STMT_FEATURE}};
constexpr QmsKeyWord kWordsG[] = {{"grouping", QMS_STMT_GROUPING}};
constexpr QmsKeyWord kWordsI[] = {{"import", QMS_STMT_IMPORT},
                                  {"identity", QMS_STMT_IDENTITY},
                                  {"input", QMS_STMT_INPUT},
                                  {"include", QMS_STMT_INCLUDE},
                                  {"if-feature", QMS_STMT_IF_FEATURE}};
constexpr QmsKeyWord kWordsK[] = {{"key", QMS_STMT_KEY}};
constexpr QmsKeyWord kWordsL[] = {{"leaf", QMS_STMT_LEAF},
                                  {"length", QMS_STMT_LENGTH},
                                  {"list", QMS_STMT_LIST},
                                  {"leaf-list", QMS_STMT_LEAF_LIST}};
constexpr QmsKeyWord kWordsM[] = {{"must", QMS_STMT_MUST},
                                  {"mandatory", QMS_STMT_MANDATORY},
                                  {"module", QMS_STMT_MODULE},
                                  {"max-elements", QMS_STMT_MAX_ELEMENTS},
                                  {"min-elements", QMS_STMT_MIN_ELEMENTS},
                                  {"modifier", QMS_STMT_MODIFIER}};
constexpr QmsKeyWord kWordsN[] = {{"namespace", QMS_STMT_NAMESPACE},
                                  {"notification", QMS_STMT_NOTIFICATION}};
constexpr QmsKeyWord kWordsO[] = {{"organization", QMS_STMT_ORGANIZATION},
                                  {"ordered-by", QMS_STMT_ORDERED_BY},
                                  {"output", QMS_STMT_OUTPUT}};
constexpr QmsKeyWord kWordsP[] = {{"prefix", QMS_STMT_PREFIX},
                                  {"path", QMS_STMT_PATH},
                                  {"pattern", QMS_STMT_PATTERN},
                                  {"presence", QMS_STMT_PRESENCE},
                                  {"position", QMS_STMT_POSITION}};
constexpr QmsKeyWord kWordsR[] = {{"range", QMS_STMT_RANGE},
                                  {"reference", QMS_STMT_REFERENCE},
                                  {"revision", QMS_STMT_REVISION},
                                  {"rpc", QMS_STMT_RPC},
                                  {"revision-date", QMS_STMT_REVISION_DATE},
                                  {"require-instance", QMS_STMT_REQUIRE_INSTANCE},
                                  {"refine", QMS_STMT_REFINE}};
constexpr QmsKeyWord kWordsS[] = {{"status", QMS_STMT_STATUS}, {"submodule", QMS_STMT_SUBMODULE}};
constexpr QmsKeyWord kWordsT[] = {
    {"text", QMS_STMT_TEXT}, {"type", QMS_STMT_TYPE}, {"typedef", QMS_STMT_TYPEDEF}};
constexpr QmsKeyWord kWordsU[] = {
    {"units", QMS_STMT_UNITS}, {"unique", QMS_STMT_UNIQUE}, {"uses", QMS_STMT_USES}};
constexpr QmsKeyWord kWordsV[] = {{"value", QMS_STMT_VALUE}};
constexpr QmsKeyWord kWordsW[] = {{"when", QMS_STMT_WHEN}};
constexpr QmsKeyWord kWordsY[] = {{"yang-version", QMS_STMT_YANG_VERSION},
                                  {"yin-element", QMS_STMT_YIN_ELEMENT}};

static consteval bool AgreesWithKeywordTable(const QmsKeyWord* words, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (words[i].name[0] != words[0].name[0] ||
        !SameText(words[i].name, g_qmsKeyWordTbl[words[i].id].name)) {
      return false;
    }
  }
  return true;
}

template <const auto& kWords>
static uint32_t FindWordOfLetter(const char* name) {
  static_assert(AgreesWithKeywordTable(kWords, std::size(kWords)),
                "the words of a letter begin with it and have the ids of the keyword table");
  return QMS_LOADER_GetStmtFromStmtMap(name, kWords, std::size(kWords));
}

// The characters before the second one chose the map and are known to agree.
uint32_t QMS_LOADER_GetStmtFromStmtMap(const char* name, const QmsKeyWord* map, uint32_t mapCount) {
  if (name == nullptr || name[0] == '\0') return QMS_STMT_UNKNOWN;
  for (uint32_t i = 0; i < mapCount; ++i) {
    // Most words of a letter differ in the second character.
    if (name[1] != map[i].name[1]) continue;
    if (RTK_StrCmp(name + 1, map[i].name + 1) == 0) return map[i].id;
  }
  return QMS_STMT_UNKNOWN;
}

uint32_t QMS_LOADER_GetStmtByKeywordStartWithA(const char* name) {
  return FindWordOfLetter<kWordsA>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithB(const char* name) {
  return FindWordOfLetter<kWordsB>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithC(const char* name) {
  return FindWordOfLetter<kWordsC>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithD(const char* name) {
  return FindWordOfLetter<kWordsD>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithE(const char* name) {
  return FindWordOfLetter<kWordsE>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithF(const char* name) {
  return FindWordOfLetter<kWordsF>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithG(const char* name) {
  return FindWordOfLetter<kWordsG>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithI(const char* name) {
  return FindWordOfLetter<kWordsI>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithK(const char* name) {
  return FindWordOfLetter<kWordsK>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithL(const char* name) {
  return FindWordOfLetter<kWordsL>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithM(const char* name) {
  return FindWordOfLetter<kWordsM>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithN(const char* name) {
  return FindWordOfLetter<kWordsN>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithO(const char* name) {
  return FindWordOfLetter<kWordsO>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithP(const char* name) {
  return FindWordOfLetter<kWordsP>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithR(const char* name) {
  return FindWordOfLetter<kWordsR>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithS(const char* name) {
  return FindWordOfLetter<kWordsS>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithT(const char* name) {
  return FindWordOfLetter<kWordsT>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithU(const char* name) {
  return FindWordOfLetter<kWordsU>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithV(const char* name) {
  return FindWordOfLetter<kWordsV>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithW(const char* name) {
  return FindWordOfLetter<kWordsW>(name);
}
uint32_t QMS_LOADER_GetStmtByKeywordStartWithY(const char* name) {
  return FindWordOfLetter<kWordsY>(name);
}

namespace {
struct LetterRow {
  char letter;
  const QmsKeyWord* words;
  size_t wordCount;
  QmsKeywordLetterFunc find;  // NULL: no keyword begins with the letter
};
}  // namespace

constexpr LetterRow kLetters[] = {
    {'a', kWordsA, std::size(kWordsA), QMS_LOADER_GetStmtByKeywordStartWithA},
    {'b', kWordsB, std::size(kWordsB), QMS_LOADER_GetStmtByKeywordStartWithB},
    {'c', kWordsC, std::size(kWordsC), QMS_LOADER_GetStmtByKeywordStartWithC},
    {'d', kWordsD, std::size(kWordsD), QMS_LOADER_GetStmtByKeywordStartWithD},
    {'e', kWordsE, std::size(kWordsE), QMS_LOADER_GetStmtByKeywordStartWithE},
    {'f', kWordsF, std::size(kWordsF), QMS_LOADER_GetStmtByKeywordStartWithF},
    {'g', kWordsG, std::size(kWordsG), QMS_LOADER_GetStmtByKeywordStartWithG},
    {'h', nullptr, 0, nullptr},
    {'i', kWordsI, std::size(kWordsI), QMS_LOADER_GetStmtByKeywordStartWithI},
    {'j', nullptr, 0, nullptr},
    {'k', kWordsK, std::size(kWordsK), QMS_LOADER_GetStmtByKeywordStartWithK},
    {'l', kWordsL, std::size(kWordsL), QMS_LOADER_GetStmtByKeywordStartWithL},
    {'m', kWordsM, std::size(kWordsM), QMS_LOADER_GetStmtByKeywordStartWithM},
    {'n', kWordsN, std::size(kWordsN), QMS_LOADER_GetStmtByKeywordStartWithN},
    {'o', kWordsO, std::size(kWordsO), QMS_LOADER_GetStmtByKeywordStartWithO},
    {'p', kWordsP, std::size(kWordsP), QMS_LOADER_GetStmtByKeywordStartWithP},
    {'q', nullptr, 0, nullptr},
    {'r', kWordsR, std::size(kWordsR), QMS_LOADER_GetStmtByKeywordStartWithR},
    {'s', kWordsS, std::size(kWordsS), QMS_LOADER_GetStmtByKeywordStartWithS},
    {'t', kWordsT, std::size(kWordsT), QMS_LOADER_GetStmtByKeywordStartWithT},
    {'u', kWordsU, std::size(kWordsU), QMS_LOADER_GetStmtByKeywordStartWithU},
    {'v', kWordsV, std::size(kWordsV), QMS_LOADER_GetStmtByKeywordStartWithV},
    {'w', kWordsW, std::size(kWordsW), QMS_LOADER_GetStmtByKeywordStartWithW},
    {'x', nullptr, 0, nullptr},
    {'y', kWordsY, std::size(kWordsY), QMS_LOADER_GetStmtByKeywordStartWithY},
    {'z', nullptr, 0, nullptr},
};

static consteval bool LettersStandInOrder() {
  for (size_t i = 0; i < std::size(kLetters); ++i) {
    const LetterRow& row = kLetters[i];
    if (row.letter != 'a' + static_cast<int>(i)) return false;
    if (row.wordCount > 0 && row.words[0].name[0] != row.letter) return false;
  }
  return true;
}

static consteval uint32_t TimesFound(uint32_t id) {
  uint32_t times = 0;
  for (const LetterRow& row : kLetters) {
    for (size_t i = 0; i < row.wordCount; ++i) times += row.words[i].id == id ? 1 : 0;
  }
  return times;
}

// "unknown" and "extension-instance" are no keywords and never found by name.
static consteval bool EveryKeywordIsFoundOnce() {
  for (uint32_t id = 0; id < QMS_STMT_COUNT; ++id) {
    const bool isName = id != QMS_STMT_UNKNOWN && id != QMS_STMT_EXTENSION_INSTANCE;
    if (TimesFound(id) != (isName ? 1u : 0u)) return false;
  }
  return true;
}

static_assert(std::size(kLetters) == 26 && LettersStandInOrder(), "one row per letter, in order");
static_assert(EveryKeywordIsFoundOnce(), "each keyword stands in exactly one letter's words");

uint32_t QMS_LOADER_GetStmtByKeyword(const char* name) {
  if (name == nullptr || name[0] < 'a' || name[0] > 'z') return QMS_STMT_UNKNOWN;
  const QmsKeywordLetterFunc find = kLetters[name[0] - 'a'].find;
  return find == nullptr ? uint32_t{QMS_STMT_UNKNOWN} : find(name);
}

const char* QMS_LOADER_GetKeywordByStmt(uint32_t stmt) {
  return g_qmsKeyWordTbl[stmt < QMS_STMT_COUNT ? stmt : uint32_t{QMS_STMT_UNKNOWN}].name;
}

// The node type is looked at first: the namespace field of a text node lies in
// memory that means something else.
uint32_t StmtOfNode(const xmlNode* node, const xmlNs** yin) {
  if (node->type != XML_ELEMENT_NODE || node->ns == nullptr) return QMS_STMT_UNKNOWN;
  if (node->ns != *yin) {
    const char* name = QM_XML_GetXmlNodeDefaultNs(node);
    if (name == nullptr) return QMS_STMT_UNKNOWN;
    if (RTK_StrCmp(name, kYinNamespace) != 0) return QMS_STMT_EXTENSION_INSTANCE;
    *yin = node->ns;
  }
  return QMS_LOADER_GetStmtByKeyword(XmlText(node->name));
}

uint32_t QMS_LOADER_GetXmlNodeYangStmt(const xmlNode* element) {
  const xmlNs* yin = nullptr;
  return element == nullptr ? uint32_t{QMS_STMT_UNKNOWN} : StmtOfNode(element, &yin);
}
