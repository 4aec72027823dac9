// SPDX-License-Identifier: BSD-3-Clause
// The error-path of a record, for example /m:top/entry[name='x']/leaf. A failing
// element knows its way up but not its way down, so the text is written from the
// end of a buffer to its front while the walk climbs: for each element first its
// predicates, the last one first, then its step. A path that does not fit has no
// useful beginning, so there is then no path at all.
#include "data/error_path.h"

#include <cstring>

#include "context/guard.h"
#include "context/memory.h"
#include "context/string.h"
#include "context/xml_tree.h"
#include "data/data_node.h"
#include "platform/string.h"

// Writes in front of what the buffer holds; the caller has checked the room.
static void Prepend(QmdPathBuf* buf, const char* text, size_t length) {
  buf->position -= static_cast<uint32_t>(length);
  std::memcpy(buf->buffer + buf->position, text, length);
}

static const char* TextOrEmpty(const xmlNode* element) {
  const char* text = QM_XML_GetElemNodeContent(element);
  return text == nullptr ? "" : text;
}

char QMD_ERR_GetValueBoundaryQuota(const char* value) {
  return value == nullptr || RTK_StrChr(value, '\'') == nullptr ? '\'' : '"';
}

uint32_t QMD_ERR_PrintElementNodeAsPredicate(QmdPathBuf* buf, const char* name, const char* value) {
  if (buf == nullptr || name == nullptr || value == nullptr) return QM_INVALID;
  const size_t nameLength = RTK_StrLen(name);
  const size_t valueLength = RTK_StrLen(value);
  constexpr size_t kMarks = 5;  // [ = ] and two quotes
  if (buf->position < kMarks || nameLength > buf->position - kMarks ||
      valueLength > buf->position - kMarks - nameLength) {
    return QM_NO_MEMORY;
  }
  const char quote = QMD_ERR_GetValueBoundaryQuota(value);
  Prepend(buf, "]", 1);
  Prepend(buf, &quote, 1);
  Prepend(buf, value, valueLength);
  Prepend(buf, &quote, 1);
  Prepend(buf, "=", 1);
  Prepend(buf, name, nameLength);
  Prepend(buf, "[", 1);
  return QM_OK;
}

uint32_t QMD_ERR_PrintXpathNode(QmdPathBuf* buf, const char* modName, const char* name) {
  const size_t nameLength = RTK_StrLen(name);
  const size_t modLength = modName == nullptr ? 0 : RTK_StrLen(modName) + 1;  // with the colon
  if (nameLength + modLength + 1 > buf->position) return QM_INVALID;
  Prepend(buf, name, nameLength);
  if (modName != nullptr) {
    Prepend(buf, ":", 1);
    Prepend(buf, modName, modLength - 1);
  }
  Prepend(buf, "/", 1);
  return QM_OK;
}

const char* QMD_ERR_GetElementNodePrefix(QmCheckAux* aux, xmlNode* node) {
  const char* modName = QMD_NODE_GetModuleName(aux->ctx, node);
  if (modName == nullptr || node->parent == aux->topNode) return modName;
  const char* parentModName = QMD_NODE_GetModuleName(aux->ctx, node->parent);
  const bool same = parentModName != nullptr && RTK_StrCmp(modName, parentModName) == 0;
  return same ? nullptr : modName;
}

static uint32_t PrintKeyPredicates(const xmlNode* entry, QmdPathBuf* buf) {
  for (const xmlNode* child = entry->last; child != nullptr; child = child->prev) {
    if (QMD_NODE_IsKeyLeafNode(child) == 0) continue;
    const uint32_t ret =
        QMD_ERR_PrintElementNodeAsPredicate(buf, ElementName(child), TextOrEmpty(child));
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMD_ERR_PrintElementNode(QmCheckAux* aux, xmlNode* node, QmdPathBuf* buf) {
  const QmsNode* schemaNode = BoundSchema(node);
  uint32_t ret = QM_OK;
  if (schemaNode != nullptr && schemaNode->kind == QMS_NODE_LEAF_LIST) {
    ret = QMD_ERR_PrintElementNodeAsPredicate(buf, ".", TextOrEmpty(node));
  }
  if (ret == QM_OK) ret = PrintKeyPredicates(node, buf);
  if (ret != QM_OK) return ret;
  return QMD_ERR_PrintXpathNode(buf, QMD_ERR_GetElementNodePrefix(aux, node), ElementName(node));
}

// The boundary may be a document, so the walk ends at anything but an element.
uint32_t QMD_ERR_PrintPath(QmCheckAux* aux, xmlNode* dataNode, QmdPathBuf* buf) {
  for (xmlNode* node = dataNode; IsElement(node) && node != aux->topNode; node = node->parent) {
    const uint32_t ret = QMD_ERR_PrintElementNode(aux, node, buf);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

char* QMD_ERR_GeneralErrorPath(QmCheckAux* aux, xmlNode* dataNode) {
  QmHeld<char> work(static_cast<char*>(AllocZeroed(kQmdPathBufSize)));
  if (!work) return nullptr;
  QmdPathBuf buf = {work.Get(), kQmdPathBufSize - 1};
  if (QMD_ERR_PrintPath(aux, dataNode, &buf) != QM_OK) return nullptr;
  buf.buffer[kQmdPathBufSize - 1] = '\0';
  if (buf.position == kQmdPathBufSize - 1) return nullptr;
  return QM_UTL_StrDup(buf.buffer + buf.position);
}
