// SPDX-License-Identifier: BSD-3-Clause
// The end of a module record: first its texts and definitions, then its nodes,
// then the record. Freeing a node gives the client its private data back through
// a hook that may ask for the node's module, so every field is NULL from the
// moment on that its content is gone.
//
// A record that has lost its context has no dictionary to give texts back to: its
// blocks are freed, its texts are left alone.
#include <qmodel/schema.h>

#include "context/dict.h"
#include "context/memory.h"
#include "schema/definitions.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/record_array.h"

static void ReleaseHeaderTexts(QmDict* dict, QmsModule* mod) {
  ReleaseText(dict, &mod->name);
  ReleaseText(dict, &mod->ns);
  ReleaseText(dict, &mod->prefix);
  ReleaseText(dict, &mod->description);
  ReleaseText(dict, &mod->revision);
  ReleaseText(dict, &mod->organization);
}

static void FreeDefinitions(QmDict* dict, QmsModule* mod) {
  DropArrayOf(dict, &mod->imports, &mod->importCount, QMS_MOD_FreeImports);
  DropArrayOf(dict, &mod->includes, &mod->includeCount, QMS_MOD_FreeIncludes);
  DropArrayOf(dict, &mod->features, &mod->featureCount, QMS_MOD_FreeFeatures);
  DropArrayOf(dict, &mod->identities, &mod->identityCount, QMS_MOD_FreeIdentities);
  DropArrayOf(dict, &mod->extensions, &mod->extensionCount, QMS_MOD_FreeExtensions);
  DropArrayOf(dict, &mod->deviations, &mod->deviationCount, QMS_MOD_FreeDeviation);
  QMS_MOD_FreeMrgSource(mod);
  DropArrayOf(dict, &mod->extInsts, &mod->extInstCount, QMS_EXT_FreeExtInsts);
  DropArrayOf(dict, &mod->typedefs, &mod->typedefCount, QMS_TYPE_FreeTypDefArray);
}

void QMS_MOD_DestroyNonNodeMember(QmsModule* mod) {
  if (mod == nullptr || mod->ctx == nullptr) return;
  // While the name is still there: the nodes outlive the typedefs for a moment.
  ClearResolvedTypedefs(mod);
  ReleaseHeaderTexts(ModuleDict(mod), mod);
  FreeDefinitions(ModuleDict(mod), mod);
}

// The list is advanced before its head goes, so that it never names a freed node.
static void FreeNodeList(QmsNode** list) {
  while (*list != nullptr) {
    QmsNode* node = *list;
    *list = node->next;
    if (*list != nullptr) (*list)->prev = nullptr;
    QMS_NODE_Free(node);
  }
}

static void FreeNodeListWithoutTexts(QmsNode** list) {
  FreeNodesWithoutTexts(*list);
  *list = nullptr;
}

void QMS_MOD_DestroyNodeMember(QmsModule* mod) {
  if (mod == nullptr) return;
  const auto freeList = mod->ctx != nullptr ? FreeNodeList : FreeNodeListWithoutTexts;
  for (const QmsTopList& list : kTopLists) {
    mod->*list.tail = nullptr;
    freeList(&(mod->*list.head));
  }
}

void QMS_MOD_Free(QmsModule* mod) {
  if (mod == nullptr) return;
  if (mod->ctx != nullptr) {
    QMS_MOD_DestroyNonNodeMember(mod);
  } else {
    // A dictionary without buckets holds nothing, so no text is released.
    QmDict noTexts = {};
    FreeDefinitions(&noTexts, mod);
  }
  QMS_MOD_DestroyNodeMember(mod);
  g_qmMemFreeFunc(mod);
}
