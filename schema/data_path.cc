// SPDX-License-Identifier: BSD-3-Clause
// Data paths: what has no element of its own, a choice, a case, the input or the output
// of an operation, is no step, and predicates are passed over.
#include <cstring>

#include <qmodel/inspect.h>

#include "context/string.h"
#include "context/text_scan.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_walk.h"

namespace {
// One step, with an empty module where it names none.
struct DataStep {
  char module[kQmsNameSize];
  char name[kQmsNameSize];
};
}  // namespace

// Moves past the predicates at *text; false when one is not closed. Quoted brackets do not
// count.
static bool PassPredicates(const char** text) {
  while (**text == '[') {
    char quote = '\0';
    const char* at = *text + 1;
    for (; *at != '\0' && (quote != '\0' || *at != ']'); ++at) {
      if (quote == *at) {
        quote = '\0';
      } else if (quote == '\0' && (*at == '\'' || *at == '"')) {
        quote = *at;
      }
    }
    if (*at == '\0') return false;
    *text = at + 1;
  }
  return true;
}

// Reads "/name" or "/module:name" with its predicates.
static bool TakeStep(const char** text, DataStep* step) {
  if (**text != '/') return false;
  ++*text;
  step->module[0] = '\0';
  if (!TakeIdentName(text, step->name, kQmsNameSize)) return false;
  if (**text == ':') {
    ++*text;
    std::memcpy(step->module, step->name, sizeof(step->module));
    if (!TakeIdentName(text, step->name, kQmsNameSize)) return false;
  }
  return PassPredicates(text);
}

// Among the top-level nodes of one list, those inside of choices with them.
static QmsNode* FindInList(QmsNode* list, const DataStep& step) {
  for (QmsNode* node = list; node != nullptr; node = node->next) {
    if (node->kind == QMS_NODE_CHOICE) {
      QmsNode* found = QMS_NODE_FindChildDataTreeNodeByName(node, step.module, step.name);
      if (found != nullptr) return found;
    } else if (IsOfModule(node, step.module) && RTK_StrCmp(node->name, step.name) == 0) {
      return node;
    }
  }
  return nullptr;
}

static QmsNode* FindTopNode(QmCtx* ctx, const DataStep& step) {
  const QmsModule* own = QM_CTX_GetModuleByModName(ctx, step.module);
  if (own == nullptr) return nullptr;
  for (QmsNode* list : {own->dataNodes, own->rpcNodes, own->notifNodes}) {
    QmsNode* found = FindInList(list, step);
    if (found != nullptr) return found;
  }
  // A module may have augmented a choice at the top of another one.
  for (const QmsModule* at = QM_CTX_GetNextModule(ctx, nullptr); at != nullptr;
       at = QM_CTX_GetNextModule(ctx, at)) {
    QmsNode* found = FindInList(at->dataNodes, step);
    if (found != nullptr) return found;
  }
  return nullptr;
}

QmsNode* QM_CTX_FindDataNode(QmCtx* ctx, const char* path) noexcept {
  DataStep step{};
  if (ctx == nullptr || path == nullptr || !TakeStep(&path, &step)) return nullptr;
  if (step.module[0] == '\0') return nullptr;
  QmsNode* node = FindTopNode(ctx, step);
  while (node != nullptr && *path != '\0') {
    if (!TakeStep(&path, &step)) return nullptr;
    node = QMS_NODE_FindChildDataTreeNodeByName(node, step.module, step.name);
  }
  return node;
}
