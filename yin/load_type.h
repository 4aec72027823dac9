// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "schema/statement.h"
#include "types/records.h"

// A type statement is loaded in two passes over the children of its element. The
// first counts the restrictions of each kind and marks each child that is one;
// the second makes one constraint per kind found, in kind order, and fills it
// from the marked children. A name that is no built-in type is a restriction of
// its own, the derived kind.

// The mark of a restriction child, OR-ed into its `_private` word.
enum QmtTypeMark : uint32_t {
  QMT_MARK_BASE = 0x1,
  QMT_MARK_BIT = 0x2,
  QMT_MARK_ENUM = 0x4,
  QMT_MARK_FRACTION = 0x8,
  QMT_MARK_LENGTH = 0x10,
  QMT_MARK_PATH = 0x20,
  QMT_MARK_PATTERN = 0x40,
  QMT_MARK_RANGE = 0x80,
  QMT_MARK_UNION = 0x200  // 0x100 is left free
};

// How many restriction children of each kind a type element has.
struct QmtTypeCounters {
  uint16_t perKind[QMT_CONS_COUNT];
  uint16_t distinct;
};

// Fills one kind of constraint, the last of `type`, from the marked children.
using QmtConsFillFunc = uint32_t (*)(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                     QmtConstraint* entry, uint32_t itemCount);

QM_BEGIN_INTERNAL_DECLS

// Entries of the dispatch table (dispatch.h). `dest` is a zeroed QmtType, and a zeroed
// QmsTypedef. A type that fails is left half filled for its owner to destroy; a
// typedef that fails is destroyed and zero again. 22 for bad input, 12 without memory.
uint32_t QMT_LOADER_ParseTypeStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMT_LOADER_ParseTypeDefStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);

// The id of a built-in type, 0 for any other name.
uint32_t QMT_LOADER_GetBaseTypeFromTypeName(const char* name);

// The passes. The counters are raised, not set, so that the caller can count the
// derived kind first; 22 when one is full. The second gives the code of the kind that
// failed.
uint32_t QMT_LOADER_CountAndMarkTypeSubElem(xmlNode* typeElem, QmtTypeCounters* counters);
uint32_t QMT_LOADER_FillAllTypeConstraint(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                          const QmtTypeCounters* counters);

// Makes the body of the next constraint, for `itemCount` items, and counts it. 22 for an
// unknown kind or when the entry has a body already, 12 without memory.
uint32_t QMT_LOADER_CreateConsDataInLastConstraint(QmsModule* module, QmtType* type, uint32_t kind,
                                                   uint32_t itemCount);

// The fill function of a kind (QmtConsKind), NULL past the last.
QmtConsFillFunc QMT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind);

QM_END_INTERNAL_DECLS
