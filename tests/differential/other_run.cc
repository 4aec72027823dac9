// SPDX-License-Identifier: BSD-3-Clause
#include "tests/differential/other_run.h"

#include <vector>

#include "context/xml_tree.h"
#include "data/bind.h"
#include "data/default_list.h"
#include "data/run_index.h"
#include "data/validate.h"

namespace other_run {
namespace {

constexpr size_t kMostDepth = 1000;

const xmlNode* TopOf(const xmlNode* node) {
  while (node->parent != nullptr) node = node->parent;
  return node;
}

xmlNode* CopyOf(const xmlNode* top) {
  auto* original = const_cast<xmlNode*>(top);
  if (top->type == XML_DOCUMENT_NODE) {
    return reinterpret_cast<xmlNode*>(xmlCopyDoc(reinterpret_cast<xmlDoc*>(original), 1));
  }
  return xmlDocCopyNode(original, original->doc, 1);
}

// The steps down to the node: its place among its siblings, the last one first.
xmlNode* SameNode(const xmlNode* node, xmlNode* copiedTop) {
  std::vector<size_t> places;
  for (; node->parent != nullptr; node = node->parent) {
    size_t place = 0;
    for (const xmlNode* before = node->prev; before != nullptr; before = before->prev) ++place;
    places.push_back(place);
  }
  xmlNode* copy = copiedTop;
  while (!places.empty()) {
    copy = copy->children;
    for (size_t i = places.back(); i > 0; --i) copy = copy->next;
    places.pop_back();
  }
  return copy;
}

void FreeCopy(xmlNode* top) {
  if (top->type == XML_DOCUMENT_NODE) {
    xmlFreeDoc(reinterpret_cast<xmlDoc*>(top));
  } else {
    xmlFreeNode(top);
  }
}

std::string OrDash(const char* text) {
  return text == nullptr ? "-" : text;
}

void NoteDefault(xmlNode* node, void* arg) {
  auto* text = static_cast<std::string*>(arg);
  *text += "+" + std::string(XmlText(node->name)) + "<" + XmlText(node->parent->name) + " ";
}

Outcome RunOn(const QmCheckAux& aux, xmlNode* root, IndexMemory memory) {
  Outcome outcome;
  QmCheckAux other = {};
  QMD_PAS_InitCheckAux(&other, aux.ctx, aux.flags, NoteDefault, &outcome.defaults);
  QmdRunIndex index;
  InitRunIndex(&index);
  if (memory.first < index.freeBytes) index.freeBytes = memory.first;
  if (memory.more < index.allowance) index.allowance = memory.more;
  if (!memory.none) other.index = &index;
  QMD_PAS_ClearXmlTreePrivate(root);
  const uint32_t status = QMD_PAS_ValidateDataTree(&other, root);
  QMD_PAS_ClearXmlTreePrivate(root);
  outcome.isIndexOff = index.isOff;
  FreeRunIndex(&index);
  outcome.verdict = Verdict(status, other.err);
  outcome.tree = TreeAround(root);
  QMD_PAS_ClearDefaultNodeList(&other, status == QM_OK ? 1 : 0);
  outcome.defaults += TreeAround(root);
  QM_FreeErrNode(other.err);
  return outcome;
}

}  // namespace

Outcome Run(const QmCheckAux& aux, const xmlNode* root, IndexMemory memory) {
  xmlNode* top = CopyOf(TopOf(root));
  const Outcome outcome = RunOn(aux, SameNode(root, top), memory);
  FreeCopy(top);
  return outcome;
}

std::string Verdict(uint32_t status, const QmErrNode* err) {
  std::string text = std::to_string(status);
  if (err == nullptr) return text + " no record";
  for (const uint32_t number : {err->errorType, err->errorSeverity, err->errorTag})
    text += " " + std::to_string(number);
  for (const char* part :
       {err->errorAppTag, err->errorPath, err->errorMessage, err->badElement, err->badAttribute,
        err->badNamespace, err->missingChoice, err->sessionId})
    text += "|" + OrDash(part);
  return text;
}

std::string TreeAround(const xmlNode* node) {
  auto* top = const_cast<xmlNode*>(TopOf(node));
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, top->doc, top, 0, 0);
  std::string text(XmlText(xmlBufferContent(buffer)), static_cast<size_t>(xmlBufferLength(buffer)));
  xmlBufferFree(buffer);
  return text;
}

size_t SizeAround(const xmlNode* node) {
  const xmlNode* top = TopOf(node);
  size_t size = 1;
  size_t depth = 0;
  for (const xmlNode* at = top;;) {
    if (at->type != XML_ENTITY_REF_NODE && at->children != nullptr) {
      if (++depth > kMostDepth) return SIZE_MAX;
      at = at->children;
    } else {
      for (; at != top && at->next == nullptr; --depth) at = at->parent;
      if (at == top) return size;
      at = at->next;
    }
    ++size;
  }
}

}  // namespace other_run
