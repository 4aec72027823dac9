// SPDX-License-Identifier: BSD-3-Clause
// Completion where it makes elements: leaves with a default, and containers
// without presence that have such leaves below them. A new element is placed
// before the first sibling that follows it in the schema, so that the completed
// tree keeps the order that input demands and can be validated again. It is kept
// only when it is whole; until then it is taken out again on every way out.
#include "data/default_element.h"

#include "context/guard.h"
#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/data_node.h"
#include "data/default_list.h"
#include "data/node_check.h"
#include "data/schema_steps.h"
#include "platform/string.h"
#include "xpath/bound_value.h"

using NewElement = QmOwn<RemoveNode>;

// The first child of `parent` that follows a new one in the schema. Entries of one
// list stand in runs, so what held for one entry is not asked again for the next.
static xmlNode* SearchFollower(const xmlNode* parent, QmsNode* schemaNode) {
  const QmsNode* asked = nullptr;
  xmlNode* sibling = FirstElement(parent->children);
  for (; sibling != nullptr; sibling = FirstElement(sibling->next)) {
    const QmsNode* siblingSchema = BoundSchema(sibling);
    if (siblingSchema == nullptr || siblingSchema == asked) continue;
    if (siblingSchema->module != schemaNode->module) continue;
    if (FollowsInSchema(schemaNode, siblingSchema)) return sibling;
    asked = siblingSchema;
  }
  return nullptr;
}

static void MarkAndPlace(const QmdWalk* walk, xmlNode* parent, xmlNode* added,
                         QmsNode* schemaNode) {
  const QmdChild* child = walk->step.child;
  xmlNode* follower =
      child != nullptr ? FirstThatFollows(walk->holder, child) : SearchFollower(parent, schemaNode);
  added->line = kQmdDefaultLine;
  if (follower != nullptr) {
    static_cast<void>(xmlAddPrevSibling(follower, added));
  } else {
    static_cast<void>(xmlAddChild(parent, added));
  }
}

// The dictionary of the document has the name of a child once for all of its elements.
static const xmlChar* NameInTree(const QmdWalk* walk, const xmlNode* parent) {
  QmdChild* child = walk->step.child;
  xmlDoc* doc = parent->doc;
  if (child == nullptr || doc == nullptr || doc->dict == nullptr) return nullptr;
  if (child->madeName == nullptr || child->madeIn != doc) {
    child->madeName = xmlDictLookup(doc->dict, XmlChars(child->node->name), -1);
    child->madeIn = doc;
  }
  return child->madeName;
}

static bool HasNamesakeOf(const QmdWalk* walk, const xmlNode* dataParent,
                          const QmsNode* schemaNode) {
  const QmdChild* child = walk->step.child;
  return child != nullptr ? HasNamesake(walk->holder, child)
                          : FindChildElement(dataParent, schemaNode->name) != nullptr;
}

// The default of an identityref is kept with a module name where XML wants a
// prefix. When nothing else has that name as prefix here, it is declared, and the
// value reads like one that a client wrote.
static uint32_t DeclareValuePrefix(xmlNode* added, const QmsNode* schemaNode, const char* value) {
  const char* colon = RTK_StrChr(value, ':');
  if (colon == nullptr || colon == value) return QM_OK;
  const size_t length = static_cast<size_t>(colon - value);
  if (FindNamespaceOfPrefix(added, value, length) != nullptr) return QM_OK;
  const QmHeld<char> prefix(CopyText(value, length));
  if (!prefix) return QM_NO_MEMORY;
  const QmsModule* module = QM_CTX_GetModuleByModName(schemaNode->module->ctx, prefix.Get());
  const char* ns = QM_MOD_GetModuleNs(module);
  if (ns == nullptr) return QM_OK;
  return DeclareNamespace(added, ns, prefix.Get()) == nullptr ? QM_NO_MEMORY : QM_OK;
}

static void NoteAddedOf(const QmCheckAux* aux, QmdParent* parent, QmdChild* child, xmlNode* added) {
  if (child != nullptr) {
    NoteAddedChild(aux->index, parent, child, added);
  } else if (aux->index != nullptr) {
    NoteUnindexed(aux->index, BoundSchema(added));
  }
}

static uint32_t AddDefaultLeaf(const QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                               const char* value) {
  NewElement leaf(NewElementFor(dataParent, schemaNode, NameInTree(walk, dataParent)));
  if (!leaf || !AddText(leaf.Get(), value)) return QM_NO_MEMORY;
  MarkAndPlace(walk, dataParent, leaf.Get(), schemaNode);
  if (QMD_MDL_IsIdentityref(schemaNode) != 0) {
    const uint32_t ret = DeclareValuePrefix(leaf.Get(), schemaNode, value);
    if (ret != QM_OK) return ret;
  }
  const uint32_t ret = QMD_PAS_AddDefaultNodeToList(&walk->aux->defaultList, leaf.Get());
  if (ret != QM_OK) return ret;
  NoteAddedOf(walk->aux, walk->holder, walk->step.child, leaf.Release());
  return QM_OK;
}

uint32_t AddDefaultOfLeaf(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                          QmdLevel* /*level*/) {
  if (schemaNode->payload == nullptr) return QM_INVALID;
  QmdChild* child = walk->step.child;
  const char* value = child != nullptr ? DefaultOf(child) : QM_NODE_GetDefaultValueStr(schemaNode);
  if (value == nullptr || HasNamesakeOf(walk, dataParent, schemaNode)) return QM_OK;
  const uint32_t ret = AddDefaultLeaf(walk, dataParent, schemaNode, value);
  if (ret == QM_OK) NoteAdded(walk);
  return ret;
}

static uint32_t MakeContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level) {
  xmlNode* made = NewElementFor(dataParent, schemaNode, NameInTree(walk, dataParent));
  if (made == nullptr) return QM_NO_MEMORY;
  MarkAndPlace(walk, dataParent, made, schemaNode);
  OpenMade(walk, level, schemaNode, made);
  return QM_OK;
}

uint32_t OpenDefaultContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level) {
  if (OpenExisting(walk, level, schemaNode, dataParent)) return QM_OK;
  // A namesake of another module counts as existing, and nothing in it is ours.
  if (HasNamesakeOf(walk, dataParent, schemaNode)) return QM_OK;
  if (QM_NODE_IsPresenceContainer(schemaNode) != 0 || schemaNode->firstChild == nullptr) {
    return QM_OK;
  }
  if (IsIdleWhenMissing(walk->aux, walk->phase, walk->holder, walk->step.child)) return QM_OK;
  return MakeContainer(walk, dataParent, schemaNode, level);
}

uint32_t CloseDefaultContainer(QmdWalk* walk, const QmdLevel* level, uint32_t ret) {
  NewElement container(level->made);
  if (container) ForgetMade(level);
  if (container && ret == QM_OK && level->added) {
    ret = QMD_PAS_AddDefaultNodeToList(&walk->aux->defaultList, container.Get());
  }
  if (container && ret != QM_OK) return ret;
  if (level->added) {
    if (container) {
      NoteAddedOf(walk->aux, level->around, level->self.child, container.Release());
    }
    NoteAdded(walk);
  }
  return ret;
}
