// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/statement.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "compiler/reading/build.h"

namespace compiler {

namespace {

xmlNode* StatementFrom(xmlNode* node) noexcept {
  while (node != nullptr && !IsStatement(node)) node = node->next;
  return node;
}

xmlNode* StatementFrom(xmlNode* node, Keyword keyword) noexcept {
  while (node != nullptr && !(IsStatement(node) && Is(node, keyword))) node = node->next;
  return node;
}

// The element that holds the argument, where it is no attribute. It comes first; the
// other elements without record, inside foreign ones, are nobody's argument.
xmlNode* ArgumentElement(const xmlNode* statement) noexcept {
  for (xmlNode* node = statement->children; node != nullptr; node = node->next)
    if (node->type == XML_ELEMENT_NODE) return node->_private == nullptr ? node : nullptr;
  return nullptr;
}

// The argument is the one attribute without namespace.
xmlAttr* ArgumentAttribute(const xmlNode* statement) noexcept {
  xmlAttr* attribute = statement->properties;
  while (attribute != nullptr && attribute->ns != nullptr) attribute = attribute->next;
  return attribute;
}

const char* TextOf(const xmlNode* text) noexcept {
  return text == nullptr || text->content == nullptr ? ""
                                                     : reinterpret_cast<const char*>(text->content);
}

Statement* CopyRecord(Session* session, const xmlNode* original, const Place* usedAt) {
  Statement& record = session->statements.emplace_back(*StatementOf(original));
  if (record.origin == nullptr) record.origin = original;
  if (usedAt != nullptr) record.usedAt = usedAt;
  return &record;
}

void CopyAttributes(const xmlNode* from, xmlNode* to) {
  for (const xmlAttr* attribute = from->properties; attribute != nullptr;
       attribute = attribute->next) {
    AppendAttribute(to, attribute->name, TextOf(attribute->children))->ns = attribute->ns;
  }
}

// What one element is by itself: its record, its attributes.
void CopyHead(Session* session, const xmlNode* from, xmlNode* to, const Place* usedAt) {
  if (from->_private != nullptr) to->_private = CopyRecord(session, from, usedAt);
  CopyAttributes(from, to);
}

// Copies what stands in `top` into `copy`, without recursion: `to` is always the copy of
// the element that `from` stands in.
void CopyContent(Session* session, const xmlNode* top, xmlNode* copy, const Place* usedAt) {
  const xmlNode* from = top->children;
  xmlNode* to = copy;
  while (from != nullptr) {
    if (from->type == XML_ELEMENT_NODE) {
      xmlNode* element = AppendElement(to, from->ns, from->name);
      CopyHead(session, from, element, usedAt);
      if (from->children != nullptr) {
        from = from->children;
        to = element;
        continue;
      }
    } else {
      AppendText(to, TextOf(from));
    }
    while (from != top && from->next == nullptr) {
      from = from->parent;
      if (from != top) to = to->parent;
    }
    from = from == top ? nullptr : from->next;
  }
}

}  // namespace

xmlNode* FirstChild(const xmlNode* parent) noexcept {
  return StatementFrom(parent->children);
}

xmlNode* NextSibling(const xmlNode* statement) noexcept {
  return StatementFrom(statement->next);
}

xmlNode* FirstChild(const xmlNode* parent, Keyword keyword) noexcept {
  return StatementFrom(parent->children, keyword);
}

xmlNode* NextSibling(const xmlNode* statement, Keyword keyword) noexcept {
  return StatementFrom(statement->next, keyword);
}

// Not by std::stable_sort(), whose buffer may be refused without a word.
std::vector<xmlNode*> AugmentsOfUses(const xmlNode* uses) {
  std::vector<std::pair<std::pair<ptrdiff_t, size_t>, xmlNode*>> placed;
  for (xmlNode* s = FirstChild(uses, Keyword::kAugment); s != nullptr;
       s = NextSibling(s, Keyword::kAugment)) {
    const std::string_view path = ArgumentOf(s) == nullptr ? "" : ArgumentOf(s);
    placed.push_back({{std::count(path.begin(), path.end(), '/'), placed.size()}, s});
  }
  std::sort(placed.begin(), placed.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<xmlNode*> augments;
  augments.reserve(placed.size());
  for (const auto& one : placed) augments.push_back(one.second);
  return augments;
}

xmlNode* ParentOf(const xmlNode* statement) noexcept {
  xmlNode* parent = statement->parent;
  return parent != nullptr && parent->type == XML_ELEMENT_NODE ? parent : nullptr;
}

xmlNode* NextOutside(const xmlNode* top, const xmlNode* statement) noexcept {
  for (; statement != top; statement = statement->parent) {
    xmlNode* next = NextSibling(statement);
    if (next != nullptr) return next;
  }
  return nullptr;
}

xmlNode* NextInTree(const xmlNode* top, const xmlNode* statement) noexcept {
  xmlNode* child = FirstChild(statement);
  return child != nullptr ? child : NextOutside(top, statement);
}

const char* ArgumentOf(const xmlNode* statement) noexcept {
  if (StatementOf(statement)->argumentIsElement) {
    const xmlNode* element = ArgumentElement(statement);
    return element == nullptr ? nullptr : TextOf(element->children);
  }
  const xmlAttr* attribute = ArgumentAttribute(statement);
  return attribute == nullptr ? nullptr : TextOf(attribute->children);
}

const char* ArgumentOfChild(const xmlNode* parent, Keyword keyword) noexcept {
  const xmlNode* child = FirstChild(parent, keyword);
  return child == nullptr ? nullptr : ArgumentOf(child);
}

bool IsChildTrue(const xmlNode* parent, Keyword keyword) noexcept {
  const char* argument = ArgumentOfChild(parent, keyword);
  return argument != nullptr && std::string_view(argument) == "true";
}

void SetArgument(Session* session, xmlNode* statement, std::string_view argument) {
  const Statement* record = StatementOf(statement);
  const xmlChar* name = session->arguments[static_cast<size_t>(record->keyword)];
  if (record->argumentIsElement) {
    xmlNode* element = ArgumentElement(statement);
    if (element == nullptr && name != nullptr) {
      element = NewElement(statement->doc, statement->ns, name);
      xmlNode* first = statement->children;
      if (first == nullptr) {
        AppendChild(statement, element);
      } else {
        InsertBefore(first, element);
      }
    }
    if (element == nullptr) return;
    RemoveContent(element);
    AppendText(element, argument);
    return;
  }
  xmlAttr* attribute = ArgumentAttribute(statement);
  if (attribute != nullptr) {
    SetAttributeText(attribute, argument);
  } else if (name != nullptr) {
    AppendAttribute(statement, name, argument);
  }
}

xmlNode* MakeStatement(Session* session, const xmlNode* like, Keyword keyword,
                       std::string_view argument) {
  LooseStatement made(
      NewElement(like->doc, like->ns, session->names[static_cast<size_t>(keyword)]));
  Statement* record = &session->statements.emplace_back(*StatementOf(like));
  record->origin = nullptr;
  record->keyword = keyword;
  record->isImplied = false;
  record->argumentIsElement = RowOf(keyword).argumentIsElement;
  made->_private = record;
  SetArgument(session, made.get(), argument);
  return made.release();
}

xmlNode* CopyStatement(Session* session, xmlDoc* document, const xmlNode* statement,
                       const Place* usedAt) {
  LooseStatement copy(NewElement(document, statement->ns, statement->name));
  CopyHead(session, statement, copy.get(), usedAt);
  CopyContent(session, statement, copy.get(), usedAt);
  return copy.release();
}

xmlNode* CopyAlone(Session* session, xmlDoc* document, const xmlNode* statement,
                   const Place* usedAt) {
  LooseStatement copy(NewElement(document, statement->ns, statement->name));
  CopyHead(session, statement, copy.get(), usedAt);
  const xmlNode* element =
      StatementOf(statement)->argumentIsElement ? ArgumentElement(statement) : nullptr;
  if (element != nullptr) {
    xmlNode* argument = AppendElement(copy.get(), element->ns, element->name);
    CopyContent(session, element, argument, usedAt);
  }
  return copy.release();
}

void AppendChild(xmlNode* parent, xmlNode* statement) noexcept {
  statement->parent = parent;
  statement->prev = parent->last;
  statement->next = nullptr;
  (parent->last == nullptr ? parent->children : parent->last->next) = statement;
  parent->last = statement;
}

void InsertBefore(xmlNode* where, xmlNode* statement) noexcept {
  statement->parent = where->parent;
  statement->prev = where->prev;
  statement->next = where;
  (where->prev == nullptr ? where->parent->children : where->prev->next) = statement;
  where->prev = statement;
}

void InsertAfter(xmlNode* where, xmlNode* statement) noexcept {
  if (where->next == nullptr) {
    AppendChild(where->parent, statement);
  } else {
    InsertBefore(where->next, statement);
  }
}

void TakeOut(xmlNode* statement) noexcept {
  xmlUnlinkNode(statement);
}

void RemoveStatement(xmlNode* statement) noexcept {
  xmlUnlinkNode(statement);
  xmlFreeNode(statement);
}

}  // namespace compiler
