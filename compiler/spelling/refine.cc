// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/refine.h"

#include "compiler/reading/statement.h"
#include "compiler/spelling/expand.h"

namespace compiler {

namespace {

// Properties of which a node has one, so that the refinement takes its place.
bool IsSingle(Keyword keyword) {
  switch (keyword) {
    case Keyword::kDescription:
    case Keyword::kReference:
    case Keyword::kPresence:
    case Keyword::kConfig:
    case Keyword::kMandatory:
    case Keyword::kMinElements:
    case Keyword::kMaxElements:
      return true;
    default:
      return false;
  }
}

void RemoveAll(xmlNode* node, Keyword keyword) {
  for (xmlNode* s = FirstChild(node, keyword); s != nullptr; s = FirstChild(node, keyword))
    RemoveStatement(s);
}

void Replace(Output* out, xmlNode* node, const xmlNode* property, const Place* usedAt) {
  xmlNode* copy = CopyStatement(out->all->session, node->doc, property, usedAt);
  xmlNode* own = FirstChild(node, KeywordOf(property));
  if (own == nullptr) {
    AppendChild(node, copy);
    return;
  }
  InsertBefore(own, copy);
  RemoveStatement(own);
}

}  // namespace

void Refine(Output* out, const xmlNode* refine, BroughtNodes* roots, const Place* usedAt) {
  xmlNode* node = FindBelow(out, roots, refine);
  if (node == nullptr) {
    Stop(out, "target", refine, "the node to be refined is not in the grouping");
    return;
  }
  // The defaults of a leaf-list are replaced together.
  if (FirstChild(refine, Keyword::kDefault) != nullptr) RemoveAll(node, Keyword::kDefault);
  for (const xmlNode* s = FirstChild(refine); s != nullptr; s = NextSibling(s)) {
    if (IsSingle(KeywordOf(s))) {
      Replace(out, node, s, usedAt);
    } else {
      AppendChild(node, CopyStatement(out->all->session, node->doc, s, usedAt));
    }
  }
}

}  // namespace compiler
