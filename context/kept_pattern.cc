// SPDX-License-Identifier: BSD-3-Clause
// Compiled forms of patterns, kept in a context for a client that asks for speed. It is
// the one thing that checks, which run side by side, write into a context.
//
// A form is found by the address of its pattern's text in the dictionary, of which it holds
// a reference, so that no other text can come to lie there. It is made whole first and then
// linked into its chain by one atomic step; from then on it is only read. Of threads that
// make the same form at once, one links his and the others free theirs. Nothing is
// unlinked while checks run: only an unload, switching off and the context's end, which no
// check runs beside, drop forms, and they drop all.
//
// What did not compile is not kept: for want of memory looks the same, and may be mended.
#include "context/kept_pattern.h"

#include <qmodel/context.h>

#include <atomic>

#include "context/dict.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/pattern.h"
#include "context/xml_parse.h"

constexpr uint32_t kChainCount = 1024;
static_assert((kChainCount & (kChainCount - 1)) == 0, "the index is a number under a mask");

struct QmKeptPatterns {
  // One compiled form.
  struct Form {
    Form* next;           // in its chain
    const char* text;     // interned; one reference of its own
    xmlRegexp* compiled;  // owned
  };
  Form* chains[kChainCount];
};

using Form = QmKeptPatterns::Form;

static Form** ChainOf(QmKeptPatterns* kept, const char* text) {
  // Blocks lie at multiples of 16; the factor spreads what is left over the upper bits.
  const uint64_t mixed = (reinterpret_cast<uintptr_t>(text) >> 4) * 0x9E3779B97F4A7C15u;
  return &kept->chains[(mixed >> 32) & (kChainCount - 1)];
}

template <typename Record>
static Record* Published(Record** place) {
  return std::atomic_ref<Record*>(*place).load(std::memory_order_acquire);
}

// False, with what stands in the place now in *expected, when another was there first.
template <typename Record>
static bool Publish(Record** place, Record** expected, Record* record) {
  return std::atomic_ref<Record*>(*place).compare_exchange_strong(
      *expected, record, std::memory_order_acq_rel, std::memory_order_acquire);
}

// The form of a text among those from `first` up to, and without, `end`.
static Form* FindInChain(Form* first, const Form* end, const char* text) {
  while (first != end && first->text != text) first = first->next;
  return first == end ? nullptr : first;
}

// The table, made at the first need; NULL without memory.
static QmKeptPatterns* Table(QmCtx* ctx) {
  QmKeptPatterns* table = Published(&ctx->keptPatterns);
  if (table != nullptr) return table;
  QmHeld<QmKeptPatterns> made(NewRecord<QmKeptPatterns>());
  if (!made) return nullptr;
  if (!Publish(&ctx->keptPatterns, &table, made.Get())) return table;
  return made.Release();
}

// Links a form that is whole, unless its text has got one meanwhile. False then.
static bool LinkForm(Form** chain, Form* form) {
  const Form* searched = nullptr;
  form->next = Published(chain);
  while (FindInChain(form->next, searched, form->text) == nullptr) {
    searched = form->next;
    if (Publish(chain, &form->next, form)) return true;
  }
  return false;
}

// Takes a form over; false when it is still the caller's: the text is not the dictionary's,
// another thread was first, or there is no memory.
static bool Keep(QmCtx* ctx, const char* text, xmlRegexp* compiled) {
  QmKeptPatterns* table = Table(ctx);
  QmHeld<Form> form(NewRecord<Form>());
  if (table == nullptr || !form || !ShareText(&ctx->dict, text)) return false;
  form->text = text;
  form->compiled = compiled;
  if (LinkForm(ChainOf(table, text), form.Get())) {
    static_cast<void>(form.Release());
    return true;
  }
  UnshareText(&ctx->dict, text);
  return false;
}

static uint32_t CompileAndMatch(QmCtx* ctx, const char* str, const char* pattern) {
  bool isWhole = false;
  QmOwn<xmlRegFreeRegexp> compiled(CompilePattern(pattern, &isWhole));
  if (!compiled) return QM_INVALID;
  const uint32_t ret = MatchCompiled(compiled.Get(), str);
  if (isWhole && Keep(ctx, pattern, compiled.Get())) static_cast<void>(compiled.Release());
  return ret;
}

uint32_t MatchStrKeepingPattern(QmCtx* ctx, const char* str, const char* pattern) {
  if (ctx == nullptr || ctx->keepPatterns == 0) return QM_UTL_MatchStrWithPattern(str, pattern);
  if (!CanBeMatched(str) || pattern == nullptr) return QM_INVALID;
  const XmlSilence silence;
  QmKeptPatterns* table = Published(&ctx->keptPatterns);
  const Form* form = table == nullptr
                         ? nullptr
                         : FindInChain(Published(ChainOf(table, pattern)), nullptr, pattern);
  if (form != nullptr) return MatchCompiled(form->compiled, str);
  return CompileAndMatch(ctx, str, pattern);
}

static void FreeChain(QmDict* dict, Form* form) {
  while (form != nullptr) {
    Form* next = form->next;
    xmlRegFreeRegexp(form->compiled);
    ReleaseText(dict, &form->text);
    g_qmMemFreeFunc(form);
    form = next;
  }
}

void DropKeptPatterns(QmCtx* ctx) {
  if (ctx->keptPatterns == nullptr) return;
  for (Form* chain : ctx->keptPatterns->chains) FreeChain(&ctx->dict, chain);
  FreeAndNull(&ctx->keptPatterns);
}

uint32_t QM_CTX_SetKeepPatterns(QmCtx* ctx, uint32_t on) noexcept {
  if (ctx == nullptr) return QM_INVALID;
  ctx->keepPatterns = on == 0 ? 0 : 1;
  if (on == 0) DropKeptPatterns(ctx);
  return QM_OK;
}
