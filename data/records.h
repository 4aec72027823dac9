// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include <qmodel/data.h>
#include <qmodel/error.h>

#include "schema/records.h"

// One NETCONF error record (RFC 6241 section 4.3). All texts are heap copies.
struct QmErrNode {
  uint32_t errorType;      // QmErrType
  uint32_t errorSeverity;  // QmErrSeverity
  uint32_t errorTag;       // QmErrTag
  char* errorAppTag;
  char* errorPath;
  char* errorMessage;
  char* badElement;
  char* badAttribute;  // no check of a message against its schema sets it
  // What the record's XML has beyond these.
  char* badNamespace;
  char* missingChoice;
  char* sessionId;  // clients alone set it
};

struct QmdDefaultTable;

// An element that was added as a default. The entries form a ring around a
// sentinel, whose `node` is NULL; linked to itself it is an empty list. A run may
// add defaults to 100,000 list entries and take each away again, so in a long list
// they are found through a table and not by a search.
struct QmDefaultNodeEntry {
  QmDefaultNodeEntry* next;
  QmDefaultNodeEntry* prev;
  xmlNode* node;  // in its tree as long as the entry exists
  union {
    QmDefaultNodeEntry* chain;  // an entry's: the next one of its place in the table
    QmdDefaultTable* table;     // the sentinel's: all entries by node, or NULL
  };
};

enum QmdModeFlag : uint32_t {
  QMD_MODE_RPC = 1,
  QMD_MODE_NOTIF = 2,
  QMD_MODE_ACTION_TREE = 4,  // the tree is a data tree that holds an action
  QMD_MODE_IN_ACTION = 8,    // binding is inside the action
  QMD_MODE_MOUNT_POINT = 16  // a schema-mount point was met
};

// What a run keeps of the conditions that it evaluates; xpath/ fills it.
struct QmKeptConditions;
struct QmdRunIndex;

// One validation run; lives on the caller's stack. What it keeps for its own speed is
// made by and by while the tree is checked, and gone when QMD_PAS_ValidateDataTree()
// returns: nothing of it is there when a check is called by itself.
struct QmCheckAux {
  QmCtx* ctx;
  uint32_t flags;                  // QmdModeFlag bits
  xmlNode* topNode;                // boundary: parent of the tree's root
  xmlNode* actionNode;             // the action element of a data tree that holds one
  QmErrNode* err;                  // NULL until a check fails
  QmDefaultNodeEntry defaultList;  // sentinel; latest addition first
  QmDefaultNodeFunc defaultNodeCallback;
  void* callbackArg;
  uint32_t nesting;              // schema levels that completion or the mandatory check is in
  QmdRunIndex* index;            // NULL: the checks look for themselves
  QmPointerMap* targets;         // of the leafrefs met so far; NULL: none are kept
  QmKeptConditions* conditions;  // those met so far; NULL: none are kept
};

// Completion and the mandatory check make elements for missing containers, so their
// depth is the schema's and not the message's. Augments of augments could stack a
// schema without end; beyond this they refuse it.
constexpr uint32_t kQmdMaxNesting = 4096;

// Elements that a run adds as defaults carry this number as their line.
constexpr unsigned short kQmdDefaultLine = 256;

// The error path is written from the end of its buffer to the front.
constexpr uint32_t kQmdPathBufSize = 10240;
struct QmdPathBuf {
  char* buffer;       // kQmdPathBufSize bytes
  uint32_t position;  // of the first character written
};
