// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What kinds of statements are nodes of a schema.
#include "compiler/words/keyword.h"

namespace compiler {

// Nodes that data has (RFC 7950, section 3: data nodes).
constexpr bool IsDataNode(Keyword keyword) noexcept {
  switch (keyword) {
    case Keyword::kContainer:
    case Keyword::kLeaf:
    case Keyword::kLeafList:
    case Keyword::kList:
    case Keyword::kAnydata:
    case Keyword::kAnyxml:
      return true;
    default:
      return false;
  }
}

constexpr bool IsOperation(Keyword keyword) noexcept {
  return keyword == Keyword::kRpc || keyword == Keyword::kAction;
}

// Nodes that a schema node identifier can name.
constexpr bool IsSchemaNode(Keyword keyword) noexcept {
  switch (keyword) {
    case Keyword::kChoice:
    case Keyword::kCase:
    case Keyword::kInput:
    case Keyword::kOutput:
    case Keyword::kNotification:
      return true;
    default:
      return IsDataNode(keyword) || IsOperation(keyword);
  }
}

// Nodes of a schema that data looks through.
constexpr bool IsTransparent(Keyword keyword) noexcept {
  return keyword == Keyword::kChoice || keyword == Keyword::kCase || keyword == Keyword::kInput ||
         keyword == Keyword::kOutput;
}

// What stands for a case of its own directly in a choice (RFC 7950, section 7.9.2).
constexpr bool IsShorthandCase(Keyword keyword) noexcept {
  return IsDataNode(keyword) || keyword == Keyword::kChoice;
}

// Nodes that take no `when`.
constexpr bool TakesWhen(Keyword keyword) noexcept {
  return IsDataNode(keyword) || keyword == Keyword::kChoice || keyword == Keyword::kCase;
}

}  // namespace compiler
