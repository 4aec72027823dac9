// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

#include "context/records.h"
#include "schema/records.h"
#include "schema/statement.h"

constexpr uint32_t kQmsPathSize = 256;
constexpr uint32_t kQmsSuffixSize = 10;
constexpr uint32_t kQmsMaxIncludeDepth = 256;

// A set of statement ids.
struct QmsStmtSet {
  uint64_t bits[2];
  constexpr bool Has(uint32_t stmt) const {
    return stmt < QMS_STMT_COUNT && (bits[stmt / 64] >> (stmt % 64) & 1) != 0;
  }
};
static_assert(QMS_STMT_COUNT <= 128, "a bit for each statement id");

template <size_t N>
consteval QmsStmtSet SetOf(const QmsStmt (&stmts)[N]) {
  QmsStmtSet set{};
  for (const QmsStmt stmt : stmts) set.bits[stmt / 64] |= uint64_t{1} << (stmt % 64);
  return set;
}

// One row of a keyword table.
struct QmsKeyWord {
  const char* name;
  uint16_t id;
};

// One YIN file that may be loaded.
struct QmsPathObj {
  char path[kQmsPathSize];
  char suffix[kQmsSuffixSize];  // between "@@" and the next "."; "" for a plain or revision file
};

// All files found for one name.
struct QmsPathCollection {
  uint16_t count;
  uint8_t hasSuffixed;
  uint8_t hasPlain;
  uint8_t maxTries;
  uint8_t tries;
  QmsPathObj* objs;  // owned
  // While a file of the list is read: the name that messages gave before it.
  char outerYinFile[kQmCurYinFileSize];
};

struct QmsLoadSuffix {
  char suffix[kQmsSuffixSize];
  uint8_t loaded;
};

constexpr int32_t kQmsNoSuffix = -1;

// What one load of a module by name remembers, shared with its submodules.
struct QmsLoadAssister {
  const char* modName;  // expected name; NULL: any. Borrowed.
  uint16_t suffixCount;
  QmsLoadSuffix* suffixes;  // owned
  int32_t current;          // index of the suffix being loaded or kQmsNoSuffix; an index, since
                            // the array moves when a submodule adds suffixes
  uint32_t includeDepth;    // nested includes; bounded by kQmsMaxIncludeDepth
  uint8_t forgetful;        // 1: a load from memory, whose submodules leave no suffixes
};

// The totals of the six body arrays while a file is counted.
struct QmsBodyStmtCounter {
  uint16_t extensions;
  uint16_t features;
  uint16_t identities;
  uint16_t typedefs;
  uint16_t deviations;
  uint16_t extInsts;
};

using QmsKeywordLetterFunc = uint32_t (*)(const char* name);
using QmsDeviateKindParseFunc = uint32_t (*)(QmsModule* module, xmlNode* element,
                                             QmsDeviate* deviate);
