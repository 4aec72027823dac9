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
  char* badAttribute;  // nothing in the library sets it
};

// An element that was added as a default. The sentinel's `node` is NULL.
struct QmDefaultNodeEntry {
  QmDefaultNodeEntry* next;
  QmDefaultNodeEntry* prev;
  xmlNode* node;
};

enum QmdModeFlag : uint32_t {
  QMD_MODE_RPC = 1,
  QMD_MODE_NOTIF = 2,
  QMD_MODE_ACTION_TREE = 4,  // the tree is a data tree that holds an action
  QMD_MODE_IN_ACTION = 8,    // binding is inside the action
  QMD_MODE_MOUNT_POINT = 16  // a schema-mount point was met
};

// One validation run; lives on the caller's stack.
struct QmCheckAux {
  QmCtx* ctx;
  uint32_t flags;                  // QmdModeFlag bits
  xmlNode* topNode;                // boundary: parent of the tree's root
  xmlNode* actionNode;             // the action element of a data tree that holds one
  QmErrNode* err;                  // NULL until a check fails
  QmDefaultNodeEntry defaultList;  // sentinel; latest addition first
  QmDefaultNodeFunc defaultNodeCallback;
  void* callbackArg;
};

// Elements that a run adds as defaults carry this number as their line.
constexpr unsigned short kQmdDefaultLine = 256;

// The error path is written from the end of its buffer to the front.
constexpr uint32_t kQmdPathBufSize = 10240;
struct QmdPathBuf {
  char* buffer;       // kQmdPathBufSize bytes
  uint32_t position;  // of the first character written
};

using QmdCompleteFunc = uint32_t (*)(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                     uint32_t* outAdded);
using QmdMandatoryFunc = uint32_t (*)(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
