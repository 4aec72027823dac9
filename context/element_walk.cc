// SPDX-License-Identifier: BSD-3-Clause
// Walks over element trees by parent and sibling links. A caller's tree may be
// deeper than any stack, so nothing here recurses.

#include "context/element_walk.h"

xmlNode* NextElementBeyond(const xmlNode* root, xmlNode* node) {
  while (node != nullptr && node != root) {
    xmlNode* sibling = FirstElement(node->next);
    if (sibling != nullptr) return sibling;
    node = node->parent;
  }
  return nullptr;
}

xmlNode* NextElement(const xmlNode* root, xmlNode* node) {
  xmlNode* child = FirstElement(node->children);
  return child != nullptr ? child : NextElementBeyond(root, node);
}

void RemoveNode(xmlNode* node) {
  xmlUnlinkNode(node);
  xmlFreeNode(node);
}
