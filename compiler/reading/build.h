// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Nodes of a tree, made as libxml2's own parser makes them: names belong to the
// dictionary and are not copied, short texts lie in their node. The tree's owner
// frees them with it.
#include <string_view>

#include "compiler/reading/records.h"

namespace compiler {

// Appends an element with a name of the dictionary. `parent` may be the document.
xmlNode* AppendElement(xmlNode* parent, xmlNs* ns, const xmlChar* name);

// An element that is not linked yet.
xmlNode* NewElement(xmlDoc* document, xmlNs* ns, const xmlChar* name);

// Appends an attribute with a name of the dictionary.
xmlAttr* AppendAttribute(xmlNode* element, const xmlChar* name, std::string_view value);

// Appends a text; nothing for an empty one.
void AppendText(xmlNode* element, std::string_view text);

// Replaces what an attribute holds.
void SetAttributeText(xmlAttr* attribute, std::string_view value);

// Whether XML lets a prefix be declared, and a namespace for one: some have a meaning of
// their own there.
bool IsXmlPrefix(std::string_view prefix) noexcept;
bool IsXmlNamespace(std::string_view uri) noexcept;

// Appends a namespace declaration to those of an element, and gives it. `last` may be the
// one that was appended before, when many are.
xmlNs* AppendNamespace(xmlNode* element, xmlNs* last, std::string_view prefix,
                       std::string_view uri);

// Gives the element's declaration of a prefix another one.
void RenameNamespace(xmlNode* element, std::string_view before, std::string_view after);

// Removes all that stands in an element, attributes apart.
void RemoveContent(xmlNode* element) noexcept;

}  // namespace compiler
