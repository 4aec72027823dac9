// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include "data/run_index.h"

// A walk down the schema beside the elements that it describes. Completion and the
// mandatory check both go this way: they follow the schema where there is data, and
// make elements for what is missing. What one kind of node asks for is a function;
// the walk itself is a loop, since augments of augments stack a schema higher than
// any stack.

// A schema node whose children the walk is in.
struct QmdLevel {
  QmsNode* schemaNode;    // NULL: there is nothing to go through
  QmsNode* next;          // the child to come; NULL after the last one
  xmlNode* dataParent;    // what the elements of the children are in
  xmlNode* made;          // element that stands for the node until the level is closed, or NULL
  const QmdSteps* steps;  // gone through in place of all children; NULL: there is no index
  QmdParent* holder;      // with steps: whose children they are
  QmdStep self;           // the node as a step of the level around
  QmdParent* around;      // and whose child it is
  uint32_t at;            // the step to come
  uint32_t entriesLeft;   // of a list, behind the present one at most
  bool isBranch;          // `next` is the only child
  bool isList;            // `dataParent` is an entry, which others may follow
  bool isCounted;         // counts as a level of the run's nesting
  bool added;             // something was added below
};

struct QmdWalk;
// Does what a schema node asks for, and opens `level` when its children come next.
using QmdOpenFunc = uint32_t (*)(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                                 QmdLevel* level);
// Settles a level that was left with status `ret`; gives the one to go on with.
using QmdCloseFunc = uint32_t (*)(QmdWalk* walk, const QmdLevel* level, uint32_t ret);

// The tables of these functions are written row by row in this order.
static_assert(QMS_NODE_CONTAINER == 1 && QMS_NODE_CASE == 6 && QMS_NODE_RPC == 10 &&
                  QMS_NODE_INPUT == 12 && QMS_NODE_KIND_COUNT == 15,
              "the rows stand at their kind");

constexpr uint32_t kQmdLevelsInPlace = 16;

// One walk; lives on its caller's stack. Levels beyond the first ones are in a block
// of the memory hooks.
struct QmdWalk {
  QmCheckAux* aux;
  uint32_t phase;                 // QmdPhase
  const QmdOpenFunc* openByKind;  // QMS_NODE_KIND_COUNT rows; NULL: nothing to do
  QmdCloseFunc close;
  uint32_t* outAdded;  // set to 1 when something was added
  // What is known of the node that is being opened: without the index no child or choice.
  QmdStep step;
  QmdParent* holder;
  QmdLevel* levels;  // inPlace, or a block of its own
  size_t count;
  size_t capacity;
  QmdLevel inPlace[kQmdLevelsInPlace];
};

// Fills the record of a walk that has not begun; the walk is ended by walking.
void InitSchemaWalk(QmdWalk* walk, QmCheckAux* aux, uint32_t phase, const QmdOpenFunc* openByKind,
                    QmdCloseFunc close, uint32_t* outAdded);

// Walks one schema node and what lies below it; ends the walk. 22 for a kind that
// there is not and for more levels than a run may be in; 12 without memory.
uint32_t WalkSchemaNode(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode);
// The same with the function of another kind, for nodes that are enabled or not.
uint32_t WalkSchemaNodeAs(QmdWalk* walk, QmdOpenFunc open, xmlNode* dataParent,
                          QmsNode* schemaNode);

// Notes for the level that is being gone through that something was added.
void NoteAdded(QmdWalk* walk);

// For the functions of the kinds: what `level` goes through. Where the walk has nothing
// to do with any child of an element that is there, no level is opened for it.
void OpenChildren(QmdWalk* walk, QmdLevel* level, QmsNode* schemaNode, xmlNode* dataParent);
// The same for an element that was made for the time being; the level has it.
void OpenMade(QmdWalk* walk, QmdLevel* level, QmsNode* schemaNode, xmlNode* made);
// The container among the children of `dataParent`; nothing where a schema is mounted.
// False when the container is missing.
bool OpenExisting(QmdWalk* walk, QmdLevel* level, QmsNode* container, xmlNode* dataParent);
// The case that holds data, or else the default one; false without either.
bool OpenBranch(QmdWalk* walk, QmdLevel* level, QmsNode* choice, xmlNode* dataParent);
// The made element of a level is about to be freed: it is nobody's instance any more.
void ForgetMade(const QmdLevel* level);

// Functions of kinds that completion and the mandatory check share; they give 0.
//
// The children of a node that has no element: they are in the same parent.
uint32_t OpenChildrenInParent(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level);
// All entries of the list that are among the children of `dataParent`.
uint32_t OpenEntries(QmdWalk* walk, xmlNode* dataParent, QmsNode* list, QmdLevel* level);
