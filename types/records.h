// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <type_traits>

#include <qmodel/error.h>
#include <qmodel/types.h>

#include "context/pointer_map.h"

// Constraint kinds; QmtType::cons holds at most one entry of each, ascending.
enum QmtConsKind : uint32_t {
  QMT_CONS_DERIVED = 0,
  QMT_CONS_BASE = 1,
  QMT_CONS_BIT = 2,
  QMT_CONS_ENUM = 3,
  QMT_CONS_FRACTION = 4,
  QMT_CONS_LENGTH = 5,
  QMT_CONS_PATH = 6,
  QMT_CONS_PATTERN = 7,
  QMT_CONS_RANGE = 8,
  QMT_CONS_UNION = 9,
  QMT_CONS_COUNT = 10
};

// One restriction of a type statement.
struct QmtConstraint {
  uint32_t kind;  // QmtConsKind
  void* body;     // owned; layout by kind, the QmtCons… records below
};

enum QmtRangeFlag : uint16_t {
  QMT_RANGE_STATED = 0x1,    // the statement has a range or a length
  QMT_RANGE_CONCRETE = 0x2,  // its segments are numbers
  QMT_RANGE_MIN_MAX = 0x4    // its segments use "min" or "max" over a typedef
};

// A resolved type statement. Zero-filled is a type without statement.
struct QmtType {
  uint32_t baseType;    // QmtBaseType; 0: a typedef, cons[0] is then the derived entry
  uint16_t rangeFlags;  // QmtRangeFlag bits
  uint16_t consCount;   // entries used in cons
  QmtConstraint* cons;  // owned; NULL without entries
};

struct QmtConsDerived {
  const char* moduleName;   // interned: module that defines the typedef
  const char* typedefName;  // interned
  QmtType* resolved;        // inside the typedef record, not owned; NULL until resolved
};

struct QmtIdentRef {
  const char* moduleName;    // interned
  const char* identityName;  // interned
};
struct QmtConsBase {
  uint16_t count;
  QmtIdentRef* items;  // owned
};

struct QmtBit {
  const char* name;  // interned
  uint32_t position;
};
struct QmtConsBit {
  uint16_t count;
  QmtBit* items;  // owned
};

struct QmtEnum {
  const char* name;  // interned
  int32_t value;
};
struct QmtConsEnum {
  uint16_t count;
  QmtEnum* items;             // owned
  const char** descriptions;  // owned array of `count` interned texts or NULLs; NULL: not kept
};

struct QmtConsFraction {
  uint8_t digits;
};

struct QmtConsPath {
  const char* path;          // interned; module names instead of prefixes
  uint32_t requireInstance;  // 1 unless "require-instance" is false
};

struct QmtPattern {
  const char* pattern;   // interned
  uint32_t invertMatch;  // 1 with a "modifier" sub-statement
};
struct QmtConsPattern {
  uint16_t count;
  QmtPattern* items;  // owned
};

struct QmtConsUnion {
  uint16_t count;
  QmtType* members;  // owned, in document order
};

// Segments of a range or length. The plain layouts are pairs of one integer
// type; the generic one can hold "min" and "max".
template <typename Int>
struct QmtSeg {
  Int start;
  Int end;
};
static_assert(sizeof(QmtSeg<int8_t>) == 2 && sizeof(QmtSeg<uint8_t>) == 2);
static_assert(sizeof(QmtSeg<int16_t>) == 4 && sizeof(QmtSeg<uint16_t>) == 4);
static_assert(sizeof(QmtSeg<int32_t>) == 8 && sizeof(QmtSeg<uint32_t>) == 8);

constexpr uint32_t kQmtSegSignMask = QMT_SEG_SIGNED | QMT_SEG_UNSIGNED;
constexpr uint32_t kQmtSegMinMaxMask =
    QMT_SEG_START_MIN | QMT_SEG_START_MAX | QMT_SEG_END_MIN | QMT_SEG_END_MAX;

// Packed: arrays of it are handed through byte offsets of 20. Never take the
// address of a field; copy the whole segment first.
struct __attribute__((packed)) QmtGenericSeg {
  uint64_t start;  // read as int64_t when QMT_SEG_SIGNED
  uint64_t end;
  uint32_t segFlags;  // QmtSegFlag bits
};
static_assert(sizeof(QmtGenericSeg) == 20, "segSize of generic segments");

// The body of a range or length.
struct QmtSegList {
  uint16_t count;     // segments filled
  uint16_t segSize;   // bytes per segment
  uint32_t capacity;  // segments allocated: number of "|" + 1
  void* segs;         // owned
};

// Limits of a built-in type.
struct QmtLimits {
  uint64_t min;
  uint64_t max;
  uint32_t signKind;  // QmtSignKind
};
enum QmtSignKind : uint32_t { QMT_SIGN_NONE = 0, QMT_SIGN_SIGNED = 1, QMT_SIGN_UNSIGNED = 2 };

// A named type of a module.
struct QmsTypedef {
  const char* name;          // interned
  const char* defaultValue;  // interned; may be NULL
  const char* units;         // interned; may be NULL
  QmtType type;
};

// How a value is handed to a check.
enum QmtInputKind : uint32_t { QMT_INPUT_STRING = 1, QMT_INPUT_ELEMENT = 2 };

// One top-level value check; zeroed by the caller, who sets ctx and schemaNode.
struct QmtCheckCtx {
  uint16_t derivedDepth;        // derived links followed so far; never lowered
  uint16_t fractionDigits;      // of the bottom-most type seen
  uint32_t binaryLength;        // decoded length of a binary value
  uint32_t baseType;            // of the bottom-most type seen
  uint32_t explicitRangeLevel;  // levels below the outermost concrete range, that one included
  uint32_t minMaxPending;       // a range with "min"/"max" waits for the limits of its base
  QmtGenericSeg parentLimits;   // limits of the nearest range or built-in type checked
  QmCtx* ctx;
  QmsNode* schemaNode;  // the leaf or leaf-list being checked
  QmtType* currentType;
  QmtType* matchedType;    // first type record that accepted the value
  uint32_t unionDepth;     // nested unions; bounds the recursion through fresh contexts
  uint32_t typeLevels;     // types being checked now, fresh contexts included; bounds the stack
  uint32_t* memberBudget;  // member checks left for the whole top-level check; NULL: not yet set
  QmPointerMap* targets;   // of leafrefs, by their nodes, kept for further checks; NULL: none
};

static_assert(std::is_standard_layout_v<QmtType> && std::is_trivially_copyable_v<QmtType>);
static_assert(std::is_standard_layout_v<QmtCheckCtx>);
