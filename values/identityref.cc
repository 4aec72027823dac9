// SPDX-License-Identifier: BSD-3-Clause
// identityref (RFC 7950 section 9.10): the value names an identity that is derived from
// a base of the type. Deliberate: the base itself is accepted, too.
//
// Identities form a graph with many ways to one base, so going down each way in turn can
// take exponentially long. Instead the graph is walked breadth-first from the value's
// identity, each identity once, in a list that the check owns. An identity is met first
// on its shortest way, so the limit on the depth refuses the same values as it would
// when every way is tried.
#include "values/identityref.h"

#include <libxml/tree.h>
#include <qmodel/context.h>
#include <qmodel/schema.h>

#include <cstring>

#include "context/array.h"
#include "context/memory.h"
#include "context/records.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "types/type.h"
#include "values/type_check.h"

constexpr uint32_t kMaxBaseDepth = 128;
constexpr size_t kMaxPrefix = 1024;
constexpr uint32_t kInlineVisits = 16;

namespace {
// The two parts of a value.
struct IdentityName {
  char module[kQmsNameSize];
  const char* name;  // inside the value; not empty
};
}  // namespace

// Copies what stands before `end` with a terminator; false when it does not fit.
static bool CopyUpTo(char* out, size_t size, const char* text, const char* end) {
  const size_t length = static_cast<size_t>(end - text);
  if (length >= size) return false;
  std::memcpy(out, text, length);
  out[length] = '\0';
  return true;
}

static bool CopyModuleName(IdentityName* out, const char* name) {
  return name != nullptr &&
         CopyUpTo(out->module, sizeof(out->module), name, name + RTK_StrLen(name));
}

static bool SplitPlainValue(const char* text, IdentityName* out) {
  const char* colon = RTK_StrChr(text, ':');
  if (colon == nullptr || colon[1] == '\0') return false;
  out->name = colon + 1;
  return CopyUpTo(out->module, sizeof(out->module), text, colon);
}

// The namespace that the part before `colon` stands for at this element.
static const char* NamespaceOfPrefix(const xmlNode* element, const char* text, const char* colon) {
  const size_t length = static_cast<size_t>(colon - text);
  return length > kMaxPrefix ? nullptr : FindNamespaceOfPrefix(element, text, length);
}

static bool SplitElementValue(const xmlNode* element, const char* text, QmCtx* ctx,
                              IdentityName* out) {
  const char* colon = RTK_StrChr(text, ':');
  out->name = colon == nullptr ? text : colon + 1;
  if (*out->name == '\0') return false;
  const char* ns = colon == nullptr ? QM_XML_GetXmlNodeDefaultNs(element)
                                    : NamespaceOfPrefix(element, text, colon);
  QmsModule* module = ns == nullptr ? nullptr : QM_CTX_GetModuleByModNs(ctx, ns);
  return module != nullptr && CopyModuleName(out, QM_MOD_GetModuleName(module));
}

static bool SplitValue(uint32_t inputKind, const void* input, QmCtx* ctx, IdentityName* out) {
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr || ctx == nullptr) return false;
  if (inputKind == QMT_INPUT_STRING) return SplitPlainValue(text, out);
  return SplitElementValue(static_cast<const xmlNode*>(input), text, ctx, out);
}

namespace {
// The walk: identities met, in the order met; those before `next` have been expanded.
struct BaseWalk {
  QmCtx* ctx;
  QmsModule* module;  // the one that the last name named; NULL: none yet
  const QmtConsBase* wanted;
  QmsIdentity** met;  // inlineMet, or a block of its own
  uint32_t count;
  uint32_t capacity;
  bool found;
  QmsIdentity* inlineMet[kInlineVisits];
};
}  // namespace

static bool IsWanted(const BaseWalk* walk, const char* moduleName, const char* identityName) {
  for (uint32_t i = 0; walk->wanted->items != nullptr && i < walk->wanted->count; ++i) {
    const QmtIdentRef* base = &walk->wanted->items[i];
    if (NamesEqual(base->identityName, identityName) && NamesEqual(base->moduleName, moduleName)) {
      return true;
    }
  }
  return false;
}

static bool IsMet(const BaseWalk* walk, const QmsIdentity* identity) {
  for (uint32_t i = 0; i < walk->count; ++i) {
    if (walk->met[i] == identity) return true;
  }
  return false;
}

static bool GrowWalk(BaseWalk* walk) {
  if (walk->count < walk->capacity) return true;
  QmsIdentity** block = walk->met == walk->inlineMet ? nullptr : walk->met;
  QmsIdentity** grown = nullptr;
  const uint32_t capacity = walk->capacity * 2;
  if (NewArrayOf(&grown, capacity) != QM_OK) return false;
  std::memcpy(grown, walk->met, walk->count * sizeof(*grown));
  g_qmMemFreeFunc(block);
  walk->met = grown;
  walk->capacity = capacity;
  return true;
}

// An identity by both names. Its bases lie in the same module as a rule, whose name they
// share then.
static QmsIdentity* FindIdentity(BaseWalk* walk, const char* moduleName, const char* identityName) {
  if (walk->module == nullptr || walk->module->name != moduleName) {
    walk->module = QM_CTX_GetModuleByModName(walk->ctx, moduleName);
  }
  return walk->module == nullptr ? nullptr : QMS_MOD_FindIdentityByName(walk->module, identityName);
}

// Looks at one identity by name, and remembers it for its bases. An identity that does
// not exist leads nowhere.
static uint32_t MeetIdentity(BaseWalk* walk, const char* moduleName, const char* identityName) {
  if (moduleName == nullptr || identityName == nullptr) return QM_OK;
  QmsIdentity* identity = FindIdentity(walk, moduleName, identityName);
  if (identity == nullptr || IsMet(walk, identity)) return QM_OK;
  walk->found = IsWanted(walk, moduleName, identityName);
  if (walk->found) return QM_OK;
  if (!GrowWalk(walk)) return QM_NO_MEMORY;
  walk->met[walk->count++] = identity;
  return QM_OK;
}

static uint32_t MeetBases(BaseWalk* walk, const QmsIdentity* identity) {
  for (uint32_t i = 0; identity->bases != nullptr && i < identity->baseCount; ++i) {
    const uint32_t ret = MeetIdentity(walk, identity->bases[i].prefix, identity->bases[i].name);
    if (ret != QM_OK || walk->found) return ret;
  }
  return QM_OK;
}

// Expands the identities of one depth; those that are met belong to the next.
static uint32_t ExpandDepth(BaseWalk* walk, uint32_t first, uint32_t end) {
  for (uint32_t i = first; i < end && !walk->found; ++i) {
    const uint32_t ret = MeetBases(walk, walk->met[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static uint32_t WalkBases(BaseWalk* walk, const IdentityName* value) {
  uint32_t ret = MeetIdentity(walk, value->module, value->name);
  uint32_t first = 0;
  for (uint32_t depth = 0; depth < kMaxBaseDepth && first < walk->count; ++depth) {
    const uint32_t end = walk->count;
    if (ret != QM_OK || walk->found) break;
    ret = ExpandDepth(walk, first, end);
    first = end;
  }
  return ret;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataBase(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx) {
  IdentityName value;
  if (!SplitValue(inputKind, input, checkCtx->ctx, &value)) return QM_VALUE_BAD_IDENTITY;
  // Field by field: clearing the room for what is met would cost as much as the walk.
  BaseWalk walk;
  walk.ctx = checkCtx->ctx;
  walk.module = nullptr;
  walk.wanted = static_cast<const QmtConsBase*>(body);
  walk.met = walk.inlineMet;
  walk.count = 0;
  walk.capacity = kInlineVisits;
  walk.found = false;
  const uint32_t ret = WalkBases(&walk, &value);
  if (walk.met != walk.inlineMet) g_qmMemFreeFunc(walk.met);
  if (ret != QM_OK) return ret;
  return walk.found ? QM_OK : QM_VALUE_BAD_IDENTITY;
}
