// SPDX-License-Identifier: BSD-3-Clause
// The key statement of a list, RFC 7950 section 7.8.2: a text of leaf names. The
// leaves are marked, and the list counts them.
#include <cstring>

#include <qmodel/error.h>

#include "context/path_scan.h"
#include "schema/inherit.h"
#include "schema/node.h"
#include "schema/node_walk.h"

static constexpr uint8_t kMaxKeyCount = UINT8_MAX;

// Takes the name at *text into `name` and moves *text behind it.
static bool TakeKeyName(const char** text, char (&name)[kQmsNameSize]) {
  const uint32_t length = QM_UTL_ConsumeIdentNameBestEffort(*text);
  if (length == 0 || length >= kQmsNameSize) return false;
  memcpy(name, *text, length);
  name[length] = '\0';
  *text += length;
  return true;
}

static bool MarkKeyLeaf(QmsNode* list, const char* name) {
  QmsNode* leaf = QMS_NODE_FindChildNodeByName(list, nullptr, name);
  if (leaf == nullptr || leaf->kind != QMS_NODE_LEAF) return false;
  leaf->flags |= QMS_NODE_KEY;
  return true;
}

uint32_t QMS_NODE_MarkKeyAttrToListLeafs(QmsNode* list, const char* keyText, uint8_t* keyCount) {
  if (keyText == nullptr) return QM_OK;
  if (list == nullptr || list->firstChild == nullptr || keyCount == nullptr) return QM_INVALID;
  char name[kQmsNameSize];
  for (const char* text = QM_UTL_ConsumeAllSpaceChar(keyText); *text != '\0';
       text = QM_UTL_ConsumeAllSpaceChar(text)) {
    if (*keyCount == kMaxKeyCount) return QM_MINUS_ONE;
    if (!TakeKeyName(&text, name) || !MarkKeyLeaf(list, name)) return QM_MINUS_ONE;
    ++*keyCount;
  }
  return QM_OK;
}
