// SPDX-License-Identifier: BSD-3-Clause
// Matching against XML Schema regular expressions, which is libxml2's: a pattern is
// compiled, and its compiled form is run over a text.
//
// libxml2 trusts both more than a library may that is handed models and messages of
// others, so what it could run away with is refused before: bytes that are no UTF-8, texts
// longer than it can count, and patterns that would overflow the stack when compiled.
// Running a compiled form keeps all its state on the stack and in blocks of the run; the
// form itself is only read, so that threads may share it.
#include "context/pattern.h"

#include <libxml/xmlstring.h>

#include <climits>

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "platform/string.h"

// libxml2 counts the characters of a text in an int.
bool CanBeMatched(const char* text) {
  return text != nullptr && RTK_StrNLen(text, INT_MAX) < INT_MAX &&
         xmlCheckUTF8(XmlChars(text)) != 0;
}

// Whether the pattern has a part at `c`, outside of classes, that may match nothing.
static bool IsOptionalPart(const char* c) {
  switch (*c) {
    case '?':
    case '*':
      return true;
    case '{':
      return c[1] == '0';
    case '(':
    case '|':
      return c[1] == '|' || c[1] == ')';
    default:
      return false;
  }
}

// libxml2 recurses where it compiles: once for each class that is taken from a class, and
// along parts that may match nothing, 124 bytes of stack for each. A pattern of some
// hundred kilobytes would overflow any stack; no real one is near these bounds.
static bool CanBeCompiled(const char* pattern) {
  constexpr uint32_t kMaxOpenClasses = 1024;
  constexpr uint32_t kMaxOptionalParts = 512;
  uint32_t openClasses = 0;
  uint32_t optionalParts = 0;
  for (const char* c = pattern; *c != '\0'; ++c) {
    if (*c == '\\' && c[1] != '\0') {
      ++c;
      continue;
    }
    if (*c == '[') ++openClasses;
    if (*c == ']' && openClasses > 0) --openClasses;
    if (openClasses == 0 && IsOptionalPart(c)) ++optionalParts;
    if (openClasses > kMaxOpenClasses || optionalParts > kMaxOptionalParts) return false;
  }
  return true;
}

static void NoteReport(void* isWhole, xmlErrorPtr /*error*/) {
  *static_cast<bool*>(isWhole) = false;
}

xmlRegexp* CompilePattern(const char* pattern, bool* isWhole) {
  *isWhole = CanBeMatched(pattern) && CanBeCompiled(pattern);
  if (!*isWhole) return nullptr;
  xmlSetStructuredErrorFunc(isWhole, NoteReport);
  return xmlRegexpCompile(XmlChars(pattern));
}

uint32_t MatchCompiled(xmlRegexp* compiled, const char* str) {
  return xmlRegexpExec(compiled, XmlChars(str)) == 1 ? QM_OK : QM_INVALID;
}

uint32_t QM_UTL_MatchStrWithPattern(const char* str, const char* pattern) {
  if (!CanBeMatched(str)) return QM_INVALID;
  const XmlSilence silence;
  bool isWhole = false;
  const QmOwn<xmlRegFreeRegexp> compiled(CompilePattern(pattern, &isWhole));
  return compiled ? MatchCompiled(compiled.Get(), str) : uint32_t{QM_INVALID};
}
