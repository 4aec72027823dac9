// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Arguments that are paths or lists of names: leafref paths (RFC 7950, section 9.9.2),
// schema node identifiers of augment, deviation, refine and unique (section 6.5), keys.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/words/xpath.h"

namespace compiler {

struct PathStep {
  TextSpan prefix;  // empty: none
  TextSpan name;
  TextSpan predicates;  // of a leafref path, with the brackets; empty: none
};

struct NodePath {
  std::string text;
  bool absolute = false;
  uint32_t ups = 0;           // ".." in front
  bool throughDeref = false;  // a leafref path that begins with deref(); `ups` counts behind it
  TextSpan deref;             // its argument
  std::vector<PathStep> steps;

  std::string_view Of(TextSpan span) const noexcept {
    return std::string_view(text).substr(span.begin, span.end - span.begin);
  }
};

// The argument of `path` (path-arg of section 14).
bool ParseLeafrefPath(std::string_view text, NodePath* out, XpathError* error);

// A schema node identifier: "/a/b" or, when `absolute` is false, "a/b". Blanks around it
// are no part of it.
bool ParseSchemaNodeId(std::string_view text, bool absolute, NodePath* out, XpathError* error);

// The names of `key`, or the identifiers of `unique`, in their order; without blanks.
std::vector<std::string_view> SplitNames(std::string_view text);

// A name as YANG takes it (section 6.2), without a prefix.
bool IsIdentifier(std::string_view text) noexcept;

}  // namespace compiler
