// SPDX-License-Identifier: BSD-3-Clause
// What an augment hands on to its children before they move into the target: its
// when-condition and its if-features, since the augment itself is no node of the
// data tree.
//
// The condition of an augment is written for the target as context node (RFC
// 7950 section 7.21.5). For a child the context node lies one level deeper, so a
// step is put before each location path: "../a" becomes "../../a", a path that
// begins with "/" stays, and behind current() the step goes after the call.
#include <cstring>

#include <qmodel/error.h>
#include <qmodel/xpath.h>

#include "context/dict.h"
#include "context/guard.h"
#include "context/string.h"
#include "platform/string.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/node_walk.h"
#include "yin/augment_condition.h"

namespace {
// The text being built. Once a piece did not fit, nothing more is added.
struct ConditionText {
  char* buf;
  size_t room;  // characters, the NUL not counted
  size_t used;
  bool full;
};

struct Token {
  const char* text;
  uint32_t kind;
  uint32_t length;
};

struct RewriteState {
  bool atPathStart;   // a location path may begin here
  bool afterCurrent;  // current() was met and no "/" since
};
}  // namespace

static void Put(ConditionText* out, const char* text, size_t length) {
  out->full = out->full || length > out->room - out->used;
  if (out->full) return;
  std::memcpy(out->buf + out->used, text, length);
  out->used += length;
  out->buf[out->used] = '\0';
}

static Token TokenAt(const QmXpathExpr* expr, uint32_t index) {
  Token token{nullptr, QM_XPATH_TOKEN_INVALID, 0};
  token.text = QM_XPATH_GetTokenExprByPos(expr, index, &token.kind, &token.length);
  return token;
}

static bool IsOperator(uint32_t kind) {
  return kind >= QM_XPATH_TOKEN_UNION && kind <= QM_XPATH_TOKEN_OR;
}

static bool IsCallOfCurrent(const QmXpathExpr* expr, uint32_t index, const Token& token) {
  static constexpr char kName[] = "current";
  constexpr uint32_t kNameLength = sizeof(kName) - 1;
  return token.kind == QM_XPATH_TOKEN_FUNCNAME && token.length == kNameLength &&
         std::memcmp(token.text, kName, kNameLength) == 0 &&
         TokenAt(expr, index + 1).kind == QM_XPATH_TOKEN_LPAREN &&
         TokenAt(expr, index + 2).kind == QM_XPATH_TOKEN_RPAREN;
}

// What goes before a token that begins a location path; NULL for one that begins none.
static const char* StepBefore(uint32_t kind) {
  if (kind == QM_XPATH_TOKEN_DOT) return ".";
  if (kind == QM_XPATH_TOKEN_DDOT || kind == QM_XPATH_TOKEN_NAMETEST) return "../";
  return kind == QM_XPATH_TOKEN_SLASH ? "" : nullptr;
}

static void PutStepAtPathStart(ConditionText* out, RewriteState* state, uint32_t kind) {
  const char* step = state->atPathStart ? StepBefore(kind) : nullptr;
  if (step == nullptr) return;
  Put(out, step, RTK_StrLen(step));
  state->atPathStart = false;
}

static void PutStepAfterCurrent(ConditionText* out, RewriteState* state, uint32_t kind) {
  if (!state->afterCurrent || kind != QM_XPATH_TOKEN_SLASH) return;
  Put(out, "/..", 3);
  state->afterCurrent = false;
}

static void PutRewritten(ConditionText* out, const QmXpathExpr* expr, const char* when) {
  RewriteState state{true, false};
  const char* copied = when;  // end of what is copied
  const uint32_t count = QM_XPATH_GetTokenNumber(expr);
  for (uint32_t i = 0; i < count && !out->full; ++i) {
    const Token token = TokenAt(expr, i);
    Put(out, copied, static_cast<size_t>(token.text - copied));
    PutStepAtPathStart(out, &state, token.kind);
    PutStepAfterCurrent(out, &state, token.kind);
    Put(out, token.text, token.length);
    copied = token.text + token.length;
    if (IsOperator(token.kind)) state.atPathStart = true;
    if (IsCallOfCurrent(expr, i, token)) state.afterCurrent = true;
  }
}

char* QMS_NODE_GetParentCond(const char* when, const QmsNode* /*augment*/) {
  QmOwn<QM_XPATH_FreeXpathLex> expr(QM_XPATH_ExprTokenize(when));
  if (!expr) return nullptr;
  if (QM_XPATH_GetTokenNumber(expr.Get()) == 0) return QM_UTL_CreateEmptyString();
  // Deliberate: twice the length is all the room there is.
  const size_t room = 2 * RTK_StrLen(when);
  QmHeld<char> buf(static_cast<char*>(AllocZeroed(room + 1)));
  if (!buf) return nullptr;
  ConditionText out{buf.Get(), room, 0, false};
  PutRewritten(&out, expr.Get(), when);
  return out.full ? nullptr : buf.Release();
}

char* QMS_NODE_CombineTwoWhenCondition(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return nullptr;
  static constexpr char kOpen[] = "(";
  static constexpr char kMiddle[] = ") and (";
  static constexpr char kClose[] = ")";
  const size_t room =
      RTK_StrLen(kOpen) + RTK_StrLen(a) + RTK_StrLen(kMiddle) + RTK_StrLen(b) + RTK_StrLen(kClose);
  char* text = static_cast<char*>(AllocZeroed(room + 1));
  if (text == nullptr) return nullptr;
  ConditionText out{text, room, 0, false};
  for (const char* piece : {kOpen, a, kMiddle, b, kClose}) Put(&out, piece, RTK_StrLen(piece));
  return text;
}

uint32_t QMS_NODE_InheritAugNodeWhenCondToChildNode(QmDict* dict, const char* parentCond,
                                                    QmsNode* child) {
  if (dict == nullptr || child == nullptr) return QM_INVALID;
  if (parentCond == nullptr) return QM_OK;
  if (child->when == nullptr) {
    return InternText(dict, &child->when, parentCond) ? QM_OK : QM_INVALID;
  }
  QmHeld<char> both(QMS_NODE_CombineTwoWhenCondition(parentCond, child->when));
  return InternText(dict, &child->when, both.Get()) ? QM_OK : QM_INVALID;
}

uint32_t QMS_NODE_InheritAugNodeEvalToChildNode(QmDict* dict, const QmsNode* augment,
                                                const char* parentCond, QmsNode* child) {
  const uint32_t ret = QMS_NODE_InheritAugNodeWhenCondToChildNode(dict, parentCond, child);
  if (ret != QM_OK) return ret;
  return QMS_NODE_InheritAugNodeIfFeatArrayToChildNode(dict, augment, child);
}

uint32_t QMS_NODE_InheritAugNodeEvalToAllChildNode(QmDict* dict, QmsNode* augment) {
  if (dict == nullptr || augment == nullptr) return QM_INVALID;
  // A condition that cannot be rewritten is not inherited.
  QmHeld<char> condition(QMS_NODE_GetParentCond(augment->when, augment));
  for (QmsNode* child = augment->firstChild; child != nullptr; child = NextChild(augment, child)) {
    if (child->kind == QMS_NODE_ACTION || child->kind == QMS_NODE_NOTIFICATION) continue;
    const uint32_t ret =
        QMS_NODE_InheritAugNodeEvalToChildNode(dict, augment, condition.Get(), child);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
