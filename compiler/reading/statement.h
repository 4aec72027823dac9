// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Statements as the passes see them: elements with a record. Between them stand the
// elements of arguments, which are none; these functions know the difference.
#include <string_view>
#include <vector>

#include "compiler/reading/records.h"

namespace compiler {

inline bool IsStatement(const xmlNode* node) noexcept {
  return node->type == XML_ELEMENT_NODE && node->_private != nullptr;
}

inline Keyword KeywordOf(const xmlNode* statement) noexcept {
  return StatementOf(statement)->keyword;
}

inline bool Is(const xmlNode* statement, Keyword keyword) noexcept {
  return KeywordOf(statement) == keyword;
}

// The statement's name without prefix, as it was written.
inline const char* NameOf(const xmlNode* statement) noexcept {
  return reinterpret_cast<const char*>(statement->name);
}

// The substatements in their order; NULL: no more.
xmlNode* FirstChild(const xmlNode* parent) noexcept;
xmlNode* NextSibling(const xmlNode* statement) noexcept;
xmlNode* FirstChild(const xmlNode* parent, Keyword keyword) noexcept;
xmlNode* NextSibling(const xmlNode* statement, Keyword keyword) noexcept;

// The augments of a `uses` in an order in which each comes behind those that may bring its
// target: what one brings lies deeper than its own target.
std::vector<xmlNode*> AugmentsOfUses(const xmlNode* uses);

// The statement that `statement` stands in; NULL: it is the root.
xmlNode* ParentOf(const xmlNode* statement) noexcept;

// The next statement of the tree below `top` in order of the text, after `statement`
// (`top` itself at first); NULL: no more. NextOutside() passes over the substatements.
xmlNode* NextInTree(const xmlNode* top, const xmlNode* statement) noexcept;
xmlNode* NextOutside(const xmlNode* top, const xmlNode* statement) noexcept;

// The argument; NULL: it has none. It is part of the tree.
const char* ArgumentOf(const xmlNode* statement) noexcept;

// The argument of the first substatement of this kind; NULL: there is none.
const char* ArgumentOfChild(const xmlNode* parent, Keyword keyword) noexcept;

// True when that argument is "true".
bool IsChildTrue(const xmlNode* parent, Keyword keyword) noexcept;

void SetArgument(Session* session, xmlNode* statement, std::string_view argument);

// A new statement for the tree of `like`, not yet linked, with its place, words and
// usedAt. The argument is left out where the statement takes none.
xmlNode* MakeStatement(Session* session, const xmlNode* like, Keyword keyword,
                       std::string_view argument);

// A copy of the statement with all below it, not yet linked, for the tree `document`.
// Each copy has a record of its own: that of the original with this `usedAt`, or with
// the original's where `usedAt` is NULL.
xmlNode* CopyStatement(Session* session, xmlDoc* document, const xmlNode* statement,
                       const Place* usedAt);

// The same without what stands below it, the argument apart.
xmlNode* CopyAlone(Session* session, xmlDoc* document, const xmlNode* statement,
                   const Place* usedAt);

// Links a statement that is not linked (take it out first) into a tree.
void AppendChild(xmlNode* parent, xmlNode* statement) noexcept;
void InsertBefore(xmlNode* where, xmlNode* statement) noexcept;
void InsertAfter(xmlNode* where, xmlNode* statement) noexcept;

// Unlinks a statement; it stays in no tree until it is linked or freed.
void TakeOut(xmlNode* statement) noexcept;

// Unlinks and frees a statement with all below it. Its records stay with the session.
void RemoveStatement(xmlNode* statement) noexcept;

// Owns a statement that is not linked.
struct FreeStatement {
  void operator()(xmlNode* statement) const noexcept { xmlFreeNode(statement); }
};
using LooseStatement = std::unique_ptr<xmlNode, FreeStatement>;

}  // namespace compiler
