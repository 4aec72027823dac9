// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include "data/records.h"

// What a run finds out about the schema and would otherwise ask again for each element:
// the data children of a schema parent with all that binding asks of them, and which
// children completion and the mandatory check have anything to do with. It is filled for
// a schema parent when the run first needs it, lives on the stack and in few blocks, and
// is gone with the run: no other run reads it, and nothing in it can go stale.
//
// A check reads it to know that there is nothing to complain of. Where it does not say
// so, and where there is no index, the check looks at the tree itself: so refused
// memory, odd schemas and functions that are called by themselves give the same results.

struct QmdParent;
struct QmdChild;

enum QmdChildFlag : uint32_t {
  QMD_CHILD_ENABLED = 1,
  QMD_CHILD_MANY = 2,      // a list or leaf-list: its elements may be any number
  QMD_CHILD_WHEN = 4,      // a condition of its own, or of a choice or case around it
  QMD_CHILD_MUST = 8,      // has must statements
  QMD_CHILD_PLAIN = 16,    // a leaf or leaf-list: text is all that it may hold
  QMD_CHILD_DEFAULT = 32,  // its default is known: `defaultValue`, which may be NULL
  // For each QmdPhase: whether the walk has nothing to do where the container is missing,
  // once it is known; and that it was missing in an element that the walk made.
  QMD_CHILD_IDLE = 64,
  QMD_CHILD_BUSY = 256,
  QMD_CHILD_MISSED = 1024
};

// The walks down the schema.
enum QmdPhase : uint32_t { QMD_PHASE_COMPLETE = 0, QMD_PHASE_MANDATORY = 1 };
constexpr uint32_t kQmdPhaseCount = 2;

// The children of one module between which the schema has an order.
struct QmdTrack {
  const QmsModule* module;
  const QmsNode* group;  // the nearest node above that is neither choice nor case
  // Of the present instance: its elements that follow all that stand before them.
  uint32_t stamp;
  QmdChild* ahead;  // the first of them that a default may still have to stand before
  QmdChild* last;
};

// A choice among the data children of a schema parent.
struct QmdChoice {
  QmsNode* node;
  QmdChoice* outer;        // the choice that it lies in, or NULL
  QmsNode* outerBranch;    // and where
  QmsNode* defaultBranch;  // once it is known; may be NULL
  bool isDefaultKnown;
  // Of the present instance.
  uint32_t stamp;
  bool isMixed;     // there are elements of several branches
  QmsNode* branch;  // of the first element that lies in the choice
};

// A data child of a schema parent.
struct QmdChild {
  QmsNode* node;
  QmdTrack* track;
  QmdChoice* choice;         // nearest around it, or NULL
  QmsNode* branch;           // and where it lies in that
  QmdChild* namesake;        // the first child of that name, of whatever module
  const char* defaultValue;  // with QMD_CHILD_DEFAULT
  const xmlChar* madeName;   // its name in the dictionary of `madeIn`, or NULL
  const xmlDoc* madeIn;
  uint32_t order;  // among the children
  uint32_t hash;   // of the name
  uint32_t flags;  // QmdChildFlag
  // How its last element was written, to know the next one without reading names.
  const xmlChar* name;
  const xmlNs* ns;
  QmdChild* follower;  // what came after it the last time
  // Of the present instance.
  uint32_t stamp;
  uint32_t nameStamp;  // the first of a name: some child of that name has an element
  uint32_t count;      // of elements
  xmlNode* first;      // element
  QmdChild* ahead;     // the next one of the track
};

// A child of a schema node that a walk has something to do with.
struct QmdStep {
  QmsNode* node;
  QmdChild* child;    // NULL for nodes without element
  QmdChoice* choice;  // NULL for all others
};

struct QmdSteps {
  const QmdStep* steps;
  uint32_t count;
  bool isKnown;
};

// A schema node with children. One that has no element, as a case, has steps only; its
// children are among those of its holder.
struct QmdParent {
  QmsNode* node;
  QmdParent* holder;    // whose elements hold the children: itself, or one above
  QmdChild* children;   // in the order of the schema; an operation's input comes first
  uint32_t childCount;  //
  uint32_t tableMask;   // 0: there is no table
  uint32_t* table;      // children by module and name: their number and 1, or 0
  QmdChoice* choices;
  QmdTrack* tracks;
  uint32_t below;  // QMD_CHILD_WHEN and _MUST, where anything bound below has them
  bool isRefused;  // it is not one to be indexed: the checks look for themselves
  bool isSized;    // `isSmall` is known
  bool isSmall;
  bool isMet;        // an element of it was bound before,
  uint8_t walkedIn;  // or gone into in a phase: a bit for each QmdPhase
  bool isBuilt;
  QmdSteps steps[kQmdPhaseCount];
  QmdChild* firstFollower;  // what came first the last time
  // The present instance: an element, and what is known of its children.
  const xmlNode* instance;
  uint32_t stamp;
  bool isMade;     // by the walk, for the time being
  QmdChild* last;  // of the child that was met last
};

// A block of the index beyond the first one.
struct QmdBlock {
  QmdBlock* next;
};

constexpr uint32_t kQmdFirstParents = 32;
constexpr size_t kQmdFirstBytes = 6144;
// A run goes without rather than take more than that.
constexpr size_t kQmdMostIndexBytes = size_t{1} << 28;

struct QmdRunIndex {
  QmdParent** parents;  // open addressing by schema node
  uint32_t parentCount;
  uint32_t parentMask;
  uint32_t stamp;       // counts instances
  uint32_t phaseStart;  // instances up to this one are of an earlier phase
  bool isOff;           // memory was refused: nothing more is added
  bool isPartial;       // there was no memory to note where conditions are
  // The namespace that was asked for last.
  bool isNsKnown;
  const xmlNs* ns;
  const char* nsModule;
  // Memory.
  char* free;
  size_t freeBytes;
  size_t nextBlock;
  size_t allowance;  // how much more it may take from the memory hooks
  QmdBlock* blocks;
  QmdParent* firstParents[kQmdFirstParents];
  alignas(16) char firstBytes[kQmdFirstBytes];
};

// Begins and ends the index of a run. `index` need not be zeroed.
void InitRunIndex(QmdRunIndex* index);
void FreeRunIndex(QmdRunIndex* index);

// Zero-filled memory that lasts as long as the index; NULL when there is no more, and
// then the index is off.
void* IndexBytes(QmdRunIndex* index, size_t size);
// Of the bytes that were taken last, gives back all but the first `used` ones.
void GiveBackBytes(QmdRunIndex* index, void* bytes, size_t size, size_t used);

// What is known of a schema node with children, or NULL; and the same made first if need
// be, with its holder but without children. NULL when the index cannot hold it.
QmdParent* FindParent(const QmdRunIndex* index, const QmsNode* node);
QmdParent* MakeParent(QmdRunIndex* index, QmsNode* node);

// The parent with its children; NULL when it has to be done without.
QmdParent* IndexedParent(QmdRunIndex* index, QmsNode* node);
// Whether so few nodes lie below it that it pays for being indexed only when it is met
// again.
bool IsSmall(QmdParent* parent);
