// SPDX-License-Identifier: BSD-3-Clause
// libxml2 says on standard error what it does not like; that is kept silent while it
// compiles. It reads on without end in bytes that are no UTF-8, so those are refused.
#include "compiler/words/pattern.h"

#include <libxml/xmlerror.h>
#include <libxml/xmlregexp.h>
#include <libxml/xmlstring.h>

#include <climits>
#include <memory>
#include <new>
#include <string>

namespace compiler {

namespace {

struct FreePattern {
  void operator()(xmlRegexp* pattern) const noexcept { xmlRegFreeRegexp(pattern); }
};
using Pattern = std::unique_ptr<xmlRegexp, FreePattern>;

// Takes the place of libxml2's messages and notes whether memory was refused.
class Silence {
 public:
  Silence() noexcept : function_(xmlStructuredError), context_(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(this, Note);
  }
  ~Silence() { xmlSetStructuredErrorFunc(context_, function_); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  bool NoMemory() const noexcept { return noMemory_; }

 private:
  static void Note(void* silence, xmlErrorPtr error) {
    if (error->code == XML_ERR_NO_MEMORY) static_cast<Silence*>(silence)->noMemory_ = true;
  }

  xmlStructuredErrorFunc function_;
  void* context_;
  bool noMemory_ = false;
};

const xmlChar* Chars(const char* text) noexcept {
  return reinterpret_cast<const xmlChar*>(text);
}

// Whether the pattern has a part at `c`, outside of classes, that may match nothing.
bool IsOptionalPart(const char* c) noexcept {
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

// libxml2 recurses once for each class that is taken from a class, and along parts that
// may match nothing. The bounds are the library's, far above every real pattern.
bool IsTooDeep(const char* pattern) noexcept {
  constexpr unsigned kMaxOpenClasses = 1024;
  constexpr unsigned kMaxOptionalParts = 512;
  unsigned openClasses = 0;
  unsigned optionalParts = 0;
  for (const char* c = pattern; *c != '\0'; ++c) {
    if (*c == '\\' && c[1] != '\0') {
      ++c;
      continue;
    }
    if (*c == '[') ++openClasses;
    if (*c == ']' && openClasses > 0) --openClasses;
    if (openClasses == 0 && IsOptionalPart(c)) ++optionalParts;
    if (openClasses > kMaxOpenClasses || optionalParts > kMaxOptionalParts) return true;
  }
  return false;
}

// NULL: it does not compile, or would take too much of the stack for it.
Pattern Compile(const char* pattern) {
  if (xmlCheckUTF8(Chars(pattern)) == 0 || IsTooDeep(pattern)) return nullptr;
  const Silence silence;
  Pattern compiled(xmlRegexpCompile(Chars(pattern)));
  if (silence.NoMemory()) throw std::bad_alloc();
  return compiled;
}

}  // namespace

PatternState JudgePattern(const char* pattern) {
  if (IsTooDeep(pattern)) return PatternState::kTooDeep;
  return Compile(pattern) == nullptr ? PatternState::kFaulty : PatternState::kCompiles;
}

bool PatternMatches(const char* pattern, std::string_view text) {
  const Pattern compiled = Compile(pattern);
  const std::string value(text);
  if (compiled == nullptr || value.size() >= INT_MAX || xmlCheckUTF8(Chars(value.c_str())) == 0)
    return true;
  const Silence silence;
  return xmlRegexpExec(compiled.get(), Chars(value.c_str())) == 1;
}

}  // namespace compiler
