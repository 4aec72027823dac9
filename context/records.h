// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <pthread.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <qmodel/qmodel.h>

#include "platform/avl.h"

constexpr uint32_t kQmsNameSize = 65;  // a name of 64 characters and its NUL

// One interned text.
struct QmDictEntry {
  char* str;          // private NUL-terminated copy
  uint32_t refCount;  // inserts not yet matched by a remove
  uint32_t hash;      // of the text
  QmDictEntry* next;  // chain link
};

struct QmDictBucket {
  uint32_t entryCount;
  QmDictEntry* first;
};

// The string dictionary of a context: a fixed table of chains.
struct QmDict {
  uint32_t bucketCount;  // 1024, never resized
  uint32_t usedBuckets;
  QmDictBucket* buckets;  // owned; NULL before QM_DICT_Init and after QM_DICT_Destroy
};

// Circular doubly linked list with a sentinel; empty when the head points to itself.
struct QmListLink {
  QmListLink* next;
  QmListLink* prev;
};

// A relation: `srcModName` augments or deviates the target of the table.
struct QmCtxModRelItem {
  QmListLink link;         // must stay first: the list is walked through it
  uint32_t relType;        // QmRelationKind
  const char* srcModName;  // interned; one reference of its own; compared by pointer
  uint32_t refCount;       // 1, never changed
};

enum QmRelationKind : uint32_t { QM_RELATION_AUGMENT = 0, QM_RELATION_DEVIATION = 1 };

// The relations of one target module.
struct QmCtxModRelTbl {
  RtkAvl3Link link;     // in QmCtx::modRelTree
  const char* modName;  // interned name of the target
  QmDict* dict;         // the context's, not owned
  QmListLink items;     // sentinel of QmCtxModRelItem; new items at the head
};

// The growing result of a closure over relations.
struct QmCtxNameHolder {
  const char** names;  // borrowed interned texts; the array is owned
  uint32_t count;
  uint32_t capacity;
};

// One recorded load failure. Both texts are heap copies.
struct QmErrInfo {
  char* yinFile;  // NULL when no file was current
  char* message;
};

// The load failures of one module; the first `errorCapacity` are kept.
struct QmErrModNode {
  RtkAvl3Link link;  // in QmCtxErrMng::tree
  const char* modName;
  uint32_t errorCount;
  uint32_t errorCapacity;
  QmErrInfo* errs;
};

struct QmCtxErrMng {
  RtkAvl3Tree tree;       // QmErrModNode by module name
  pthread_rwlock_t lock;  // guards tree
  QmCtx* ctx;             // owner
};

constexpr size_t kQmCurYinFileSize = 256;

// Compiled forms of patterns; context/kept_pattern.cc knows them.
struct QmKeptPatterns;

// Modules on their way; loader/ knows them.
struct QmsModPendTbl;

// The schema context. Zero-filled at creation; never moved.
struct QmCtx {
  RtkAvl3Tree modByName;    // QmsModule by name
  RtkAvl3Tree modByNs;      // QmsModule by namespace
  const char** searchDirs;  // owned array of interned paths, in the order set
  uint32_t searchDirCount;
  uint32_t searchDirCap;
  char curYinFile[kQmCurYinFileSize];  // base name of the file being read; "" when none
  QmCtxErrMng* errMng;                 // owned; NULL: the context runs without error records
  QmDict dict;
  QmPridataFreeFunc pridataFreeFunc;
  QmFirstAugChildRelinkFunc firstAugChildRelinkFunc;
  QmBeforeDeviateNotSupportFunc beforeDeviateNotSupportFunc;
  QmBeforeDeviateExtInstFunc beforeDeviateExtInstFunc;
  QmReloadModuleCbFunc reloadModuleCbFunc;
  QmExtInstFilterCbFunc extInstFilterCbFunc;
  QmAgentEventFunc eventFunc;
  void* eventArg;
  const QmsModPendTbl* reloading;  // what an unload loads again at the moment, else NULL
  RtkAvl3Tree modRelTree;          // QmCtxModRelTbl by target-module name
  uint32_t loadFlags;              // QmLoadFlag bits
  uint32_t keepPatterns;           // 1: compiled forms are kept
  uint32_t hasForgottenRuns;       // 1: some augment may be marked so; see coupling/detach
  QmKeptPatterns* keptPatterns;    // owned; NULL: none yet. Published by checks, atomically
};

static_assert(std::is_standard_layout_v<QmCtx> && std::is_trivially_copyable_v<QmCtx>);
static_assert(std::is_standard_layout_v<QmCtxModRelTbl>);
static_assert(offsetof(QmCtxModRelItem, link) == 0, "list walks cast the link to its item");
