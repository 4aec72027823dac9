// SPDX-License-Identifier: BSD-3-Clause
//
// Splits an XPath text into tokens (XPath 1.0 section 3.7) in one pass from left to
// right. The first character of a token picks one of three rules: number, name, or
// other. A token is an offset and a length in the borrowed text, so nothing is copied.
// What makes it more than a character switch is that "*" and the words and, or, div and
// mod are operators or names depending on the token before them, and that a name turns
// into a function name when "(" follows.
#include "xpath/token.h"

#include <cstring>
#include <iterator>
#include <type_traits>

#include "context/array.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/table.h"
#include "platform/string.h"

namespace {

constexpr uint32_t kTokenStep = 10;

// A record as the tokenizer makes it. What only it knows stands behind the public
// fields: a record that was made by hand has nothing there, and its array grows by
// steps alone.
struct TokenizedExpr {
  QmXpathExpr expr;
  uint64_t room;  // slots in the block; at least the capacity
};
static_assert(std::is_standard_layout_v<TokenizedExpr> &&
                  std::is_trivially_copyable_v<TokenizedExpr>,
              "the record is freed by the address of its first field");

struct SymbolRow {
  const char* lexeme;
  uint32_t kind;
  uint32_t length;
  uint32_t reserved;  // 0
};

// Searched in this order: two-character lexemes stand before their prefixes.
constexpr SymbolRow g_qmXpathSymbolTbl[] = {
    {")", QM_XPATH_TOKEN_RPAREN, 1, 0},      {"[", QM_XPATH_TOKEN_LBRACKET, 1, 0},
    {"]", QM_XPATH_TOKEN_RBRACKET, 1, 0},    {"@", QM_XPATH_TOKEN_AT, 1, 0},
    {",", QM_XPATH_TOKEN_COMMA, 1, 0},       {"|", QM_XPATH_TOKEN_UNION, 1, 0},
    {"+", QM_XPATH_TOKEN_ADDITIVE, 1, 0},    {"-", QM_XPATH_TOKEN_ADDITIVE, 1, 0},
    {"=", QM_XPATH_TOKEN_EQUALITY, 1, 0},    {"!=", QM_XPATH_TOKEN_EQUALITY, 2, 0},
    {">=", QM_XPATH_TOKEN_RELATIONAL, 2, 0}, {"<=", QM_XPATH_TOKEN_RELATIONAL, 2, 0},
    {">", QM_XPATH_TOKEN_RELATIONAL, 1, 0},  {"<", QM_XPATH_TOKEN_RELATIONAL, 1, 0},
    {"..", QM_XPATH_TOKEN_DDOT, 2, 0},       {"//", QM_XPATH_TOKEN_SLASH, 2, 0},
    {"/", QM_XPATH_TOKEN_SLASH, 1, 0},
};
static_assert(std::size(g_qmXpathSymbolTbl) == 17);

consteval bool LengthsMatchLexemes() {
  for (const SymbolRow& row : g_qmXpathSymbolTbl) {
    uint32_t length = 0;
    while (row.lexeme[length] != '\0') ++length;
    if (length != row.length) return false;
  }
  return true;
}
static_assert(LengthsMatchLexemes());

struct OperatorNameRow {
  const char* word;
  uint32_t kind;
  uint32_t length;
};

constexpr OperatorNameRow kOperatorNames[] = {
    {"and", QM_XPATH_TOKEN_AND, 3},
    {"or", QM_XPATH_TOKEN_OR, 2},
    {"div", QM_XPATH_TOKEN_MULTIPLICATIVE, 3},
    {"mod", QM_XPATH_TOKEN_MULTIPLICATIVE, 3},
};

struct ExprTypeRow {
  uint32_t kind;
  uint32_t exprType;
};

// The operator kinds are consecutive, so the index is kind - 14.
constexpr ExprTypeRow kExprTypes[] = {
    {QM_XPATH_TOKEN_UNION, QM_XPATH_EXPR_UNION},
    {QM_XPATH_TOKEN_MULTIPLICATIVE, QM_XPATH_EXPR_MULTIPLICATIVE},
    {QM_XPATH_TOKEN_ADDITIVE, QM_XPATH_EXPR_ADDITIVE},
    {QM_XPATH_TOKEN_RELATIONAL, QM_XPATH_EXPR_RELATIONAL},
    {QM_XPATH_TOKEN_EQUALITY, QM_XPATH_EXPR_EQUALITY},
    {QM_XPATH_TOKEN_AND, QM_XPATH_EXPR_AND},
    {QM_XPATH_TOKEN_OR, QM_XPATH_EXPR_OR},
};

static_assert(std::size(kExprTypes) == QM_XPATH_TOKEN_OR - QM_XPATH_TOKEN_UNION + 1);
static_assert(RowsStandAtTheir<&ExprTypeRow::kind>(kExprTypes, QM_XPATH_TOKEN_UNION));

}  // namespace

// ASCII only: the locale must not decide what a name is.
static bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

static bool IsNameChar(char c) {
  return IsNameStart(c) || IsDigit(c) || c == '-' || c == '.';
}

// Most differ in the first character already, which is cheaper to see than to ask.
static bool BeginsWith(const char* text, const char* word, uint32_t length) {
  return *text == *word && RTK_StrNCmp(text, word, length) == 0;
}

static uint32_t PreviousKind(const QmXpathExpr* expr) {
  return expr->count == 0 ? uint32_t{QM_XPATH_TOKEN_INVALID} : expr->tokens[expr->count - 1].kind;
}

static uint32_t MakeToken(QmXpathToken* token, uint32_t offset, uint32_t kind, uint32_t length) {
  token->kind = kind;
  token->length = length;
  token->start = offset;
  return QM_OK;
}

static uint32_t FailToken(QmXpathToken* token, uint32_t offset) {
  static_cast<void>(MakeToken(token, offset, QM_XPATH_TOKEN_INVALID, 0));
  return QM_INVALID;
}

static uint32_t AppendToken(QmXpathExpr* expr, const QmXpathToken* token) {
  if (expr->count == expr->capacity) {
    const uint32_t ret = ExpandArrayOf(&expr->tokens, expr->capacity, kTokenStep);
    if (ret != QM_OK) return ret;
    expr->capacity += kTokenStep;
  }
  expr->tokens[expr->count] = *token;
  ++expr->count;
  return QM_OK;
}

uint32_t QM_XPATH_ParseCurTokenFromExpr(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  const char first = expr->text[offset];
  uint32_t ret = QM_OK;
  if (IsDigit(first)) {
    ret = QM_XPATH_GetTokenStartWithDigit(expr, offset, token);
  } else if (IsNameStart(first)) {
    ret = QM_XPATH_GetTokenStartWithNameStart(expr, offset, token);
  } else {
    ret = QM_XPATH_GetTokenStartWithOtherCh(expr, offset, token);
  }
  if (ret != QM_OK) return ret;
  return AppendToken(expr, token);
}

// Deliberate: the dots are counted after the first character, so that ".5.3",
// which the other-character rule hands over, is one number.
uint32_t QM_XPATH_GetTokenStartWithDigit(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  const char* text = expr->text + offset;
  uint32_t length = 1;
  uint32_t dots = 0;
  for (; IsDigit(text[length]) || text[length] == '.'; ++length) {
    if (text[length] == '.' && ++dots > 1) return FailToken(token, offset);
  }
  return MakeToken(token, offset, QM_XPATH_TOKEN_NUMBER, length);
}

static uint32_t CountNameChars(const char* text) {
  uint32_t length = 0;
  while (IsNameChar(text[length])) ++length;
  return length;
}

uint32_t QM_XPATH_GetTokenStartWithNameStart(QmXpathExpr* expr, uint32_t offset,
                                             QmXpathToken* token) {
  if (QM_XPATH_IsNextTokenOperator(PreviousKind(expr)) != 0) {
    return QM_XPATH_GetOperatorType(expr, offset, token);
  }
  const char* text = expr->text + offset;
  uint32_t length = CountNameChars(text);
  if (text[length] == ':') {
    ++length;
    length += text[length] == '*' ? 1 : CountNameChars(text + length);
  }
  return MakeToken(token, offset, QM_XPATH_TOKEN_NAMETEST, length);
}

// Deliberate: only the beginning of the word is compared, so "andx" is the
// operator "and" before the name "x".
uint32_t QM_XPATH_GetOperatorType(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  for (const OperatorNameRow& row : kOperatorNames) {
    if (BeginsWith(expr->text + offset, row.word, row.length)) {
      return MakeToken(token, offset, row.kind, row.length);
    }
  }
  return FailToken(token, offset);
}

uint32_t QM_XPATH_GetTokenStartWithOtherCh(QmXpathExpr* expr, uint32_t offset,
                                           QmXpathToken* token) {
  if (QM_XPATH_GetTgtTokenFromSymbolTbl(expr, offset, token) == QM_OK) return QM_OK;
  return QM_XPATH_ParseSpecialSymbol(expr, offset, token);
}

uint32_t QM_XPATH_GetTgtTokenFromSymbolTbl(QmXpathExpr* expr, uint32_t offset,
                                           QmXpathToken* token) {
  for (const SymbolRow& row : g_qmXpathSymbolTbl) {
    if (BeginsWith(expr->text + offset, row.lexeme, row.length)) {
      return MakeToken(token, offset, row.kind, row.length);
    }
  }
  return FailToken(token, offset);
}

static uint32_t MakeOpeningParen(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  if (PreviousKind(expr) == QM_XPATH_TOKEN_NAMETEST) {
    expr->tokens[expr->count - 1].kind = QM_XPATH_TOKEN_FUNCNAME;
  }
  return MakeToken(token, offset, QM_XPATH_TOKEN_LPAREN, 1);
}

static uint32_t MakeStar(const QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  const bool isOperator = QM_XPATH_IsNextTokenOperator(PreviousKind(expr)) != 0;
  return MakeToken(token, offset,
                   isOperator ? QM_XPATH_TOKEN_MULTIPLICATIVE : QM_XPATH_TOKEN_NAMETEST, 1);
}

uint32_t QM_XPATH_ParseSpecialSymbol(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  const char* text = expr->text + offset;
  switch (*text) {
    case '"':
    case '\'':
      return QM_XPATH_ParseLiteralToken(expr, offset, token);
    case '(':
      return MakeOpeningParen(expr, offset, token);
    case '*':
      return MakeStar(expr, offset, token);
    case '.':
      if (IsDigit(text[1])) return QM_XPATH_GetTokenStartWithDigit(expr, offset, token);
      return MakeToken(token, offset, QM_XPATH_TOKEN_DOT, 1);
    default:
      return FailToken(token, offset);
  }
}

uint32_t QM_XPATH_ParseLiteralToken(QmXpathExpr* expr, uint32_t offset, QmXpathToken* token) {
  const char* opening = expr->text + offset;
  const char* closing = RTK_StrChr(opening + 1, *opening);
  if (closing == nullptr) return FailToken(token, offset);
  return MakeToken(token, offset, QM_XPATH_TOKEN_LITERAL,
                   static_cast<uint32_t>(closing - opening) + 1);
}

// Keeps a slot free for the next token, so that the append itself finds one. The
// block doubles, since copying it for each ten tokens would cost a long text its
// square; the capacity still rises in steps.
static uint32_t MakeRoom(TokenizedExpr* own) {
  QmXpathExpr* expr = &own->expr;
  if (expr->count < expr->capacity) return QM_OK;
  if (expr->capacity == own->room) {
    const uint32_t ret = ExpandArrayOf(&expr->tokens, expr->capacity, expr->capacity);
    if (ret != QM_OK) return ret;
    own->room *= 2;
  }
  expr->capacity += kTokenStep;
  return QM_OK;
}

static uint32_t TokenizeText(TokenizedExpr* own) {
  QmXpathExpr* expr = &own->expr;
  uint32_t offset = 0;
  while (expr->text[offset] != '\0') {
    if (IsSpace(expr->text[offset])) {
      ++offset;
      continue;
    }
    QmXpathToken token = {QM_XPATH_TOKEN_INVALID, 0, offset};
    uint32_t ret = MakeRoom(own);
    if (ret == QM_OK) ret = QM_XPATH_ParseCurTokenFromExpr(expr, offset, &token);
    if (ret != QM_OK) return ret;
    offset += token.length;
  }
  return QM_OK;
}

QmXpathExpr* QM_XPATH_ExprTokenize(const char* text) noexcept {
  // Offsets are 32 bits wide.
  if (text == nullptr || RTK_StrLen(text) >= UINT32_MAX) return nullptr;
  auto* own = NewRecord<TokenizedExpr>();
  if (own == nullptr) return nullptr;
  QmOwn<QM_XPATH_FreeXpathLex> expr(&own->expr);
  expr->text = text;
  expr->capacity = kTokenStep;
  own->room = kTokenStep;
  if (NewArrayOf(&expr->tokens, kTokenStep) != QM_OK) return nullptr;
  if (TokenizeText(own) != QM_OK) return nullptr;
  return expr.Release();
}

void QM_XPATH_FreeXpathLex(QmXpathExpr* expr) noexcept {
  if (expr == nullptr) return;
  g_qmMemFreeFunc(expr->tokens);
  g_qmMemFreeFunc(expr);
}

uint32_t QM_XPATH_GetTokenNumber(const QmXpathExpr* expr) noexcept {
  return expr == nullptr ? 0 : expr->count;
}

const char* QM_XPATH_GetTokenExprByPos(const QmXpathExpr* expr, uint32_t index, uint32_t* outKind,
                                       uint32_t* outLength) noexcept {
  if (expr == nullptr || index >= expr->count) return nullptr;
  const QmXpathToken* token = &expr->tokens[index];
  if (outKind != nullptr) *outKind = token->kind;
  if (outLength != nullptr) *outLength = token->length;
  return expr->text + token->start;
}

uint32_t QM_XPATH_GetTokenExprType(uint32_t kind) noexcept {
  if (kind < QM_XPATH_TOKEN_UNION || kind > QM_XPATH_TOKEN_OR) return QM_XPATH_EXPR_OPERAND;
  return kExprTypes[kind - QM_XPATH_TOKEN_UNION].exprType;
}

static uint32_t RelationalOperation(char first, uint32_t length) {
  const uint32_t ofPair = length == 1 ? QM_XPATH_OP_GREATER : QM_XPATH_OP_GREATER_EQUAL;
  return first == '>' ? ofPair : ofPair + 1;
}

uint32_t QM_XPATH_GetTokenOperationType(const QmXpathExpr* expr, uint32_t index) noexcept {
  uint32_t kind = QM_XPATH_TOKEN_INVALID;
  uint32_t length = 0;
  const char* text = QM_XPATH_GetTokenExprByPos(expr, index, &kind, &length);
  if (text == nullptr) return QM_XPATH_OP_UNKNOWN;
  switch (kind) {
    case QM_XPATH_TOKEN_OR:
      return QM_XPATH_OP_OR;
    case QM_XPATH_TOKEN_AND:
      return QM_XPATH_OP_AND;
    case QM_XPATH_TOKEN_EQUALITY:
      return length == 1 ? QM_XPATH_OP_EQUAL : QM_XPATH_OP_NOT_EQUAL;
    case QM_XPATH_TOKEN_RELATIONAL:
      return RelationalOperation(*text, length);
    default:
      return QM_XPATH_OP_UNKNOWN;
  }
}

uint32_t QM_XPATH_IsEqualityOperator(uint32_t op) noexcept {
  return op == QM_XPATH_OP_EQUAL || op == QM_XPATH_OP_NOT_EQUAL ? 1 : 0;
}

uint32_t QM_XPATH_IsRelationalOperator(uint32_t op) noexcept {
  return op >= QM_XPATH_OP_GREATER && op <= QM_XPATH_OP_LESS_EQUAL ? 1 : 0;
}

uint32_t QM_XPATH_IsCurTokenOperator(uint32_t kind) noexcept {
  return kind >= QM_XPATH_TOKEN_SLASH && kind <= QM_XPATH_TOKEN_OR ? 1 : 0;
}

uint32_t QM_XPATH_IsNextTokenOperator(uint32_t previousKind) noexcept {
  switch (previousKind) {
    case QM_XPATH_TOKEN_LPAREN:
    case QM_XPATH_TOKEN_LBRACKET:
    case QM_XPATH_TOKEN_AT:
    case QM_XPATH_TOKEN_COMMA:
      return 0;
    default:
      return previousKind < QM_XPATH_TOKEN_SLASH ? 1 : 0;
  }
}

uint32_t QM_XPATH_IsPrimaryExprBeginToken(uint32_t kind) noexcept {
  return kind == QM_XPATH_TOKEN_LPAREN ||
                 (kind >= QM_XPATH_TOKEN_FUNCNAME && kind <= QM_XPATH_TOKEN_NUMBER)
             ? 1
             : 0;
}

uint32_t QM_XPATH_IsStepBeginToken(uint32_t kind) noexcept {
  return kind == QM_XPATH_TOKEN_DOT || kind == QM_XPATH_TOKEN_DDOT ||
                 kind == QM_XPATH_TOKEN_NAMETEST || kind == QM_XPATH_TOKEN_BARRIER
             ? 1
             : 0;
}

uint32_t QM_XPATH_IsRelativeLocationPathBeginToken(uint32_t kind) noexcept {
  return QM_XPATH_IsStepBeginToken(kind);
}

char* QM_XPATH_CopyTokenContent(const QmXpathExpr* expr, uint32_t index) noexcept {
  uint32_t length = 0;
  const char* text = QM_XPATH_GetTokenExprByPos(expr, index, nullptr, &length);
  if (text == nullptr) return nullptr;
  char* copy = static_cast<char*>(AllocZeroed(static_cast<size_t>(length) + 1));
  if (copy != nullptr) std::memcpy(copy, text, length);
  return copy;
}
