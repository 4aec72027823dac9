// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"

// The text of an element; NULL for anything that is not one, a document included.
const char* RawText(const xmlNode* node);

// The value of a bound element as a new text: an identity with its module's name
// in front. *out is NULL, with 0, for an element without text and for an identity
// whose prefix leads nowhere. 12 without memory.
uint32_t CopyBoundValue(xmlNode* node, QmsNode* schemaNode, char** out);

// A value in its two parts: the module's name of an identity, or NULL, and a text.
struct QmBoundText {
  const char* moduleName;
  const char* text;  // never NULL
};

// The same value without a copy, with the text "" where there would be none. 12 where
// nothing could be copied either.
uint32_t ReadBoundText(const xmlNode* node, const QmsNode* schemaNode, bool isIdentityref,
                       QmBoundText* out);
// Whether the copies, names and texts joined by ":", would be equal.
bool BoundTextsAreEqual(const QmBoundText* left, const QmBoundText* right);

QM_BEGIN_INTERNAL_DECLS

// The value of a bound element as a new text, an identity with its module's name in front.
// NULL for anything but an element, without text, for an identity whose prefix leads
// nowhere, and without memory.
char* QMD_NODE_GetValueContent(xmlNode* element, QmsNode* schemaNode);

// The value `text` of an identityref with the name of a module for its prefix, which is
// resolved at the element; without one with that of the leaf's module. A new text, or NULL
// as above.
char* QMD_NODE_ConvertPrefixValueToModValue(xmlNode* element, QmsNode* schemaNode,
                                            const char* text);

// 1 when the node's type, or a type that it derives from, is identityref; else 0.
uint32_t QMD_MDL_IsIdentityref(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
