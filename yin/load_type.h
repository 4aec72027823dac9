// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
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

using QmtConsFillFunc = uint32_t (*)(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                     QmtConstraint* entry, uint32_t itemCount);

// Fills one item of a list-like constraint from its element. A failed item may be
// half filled; it is released with the body.
using QmtFillOneFunc = uint32_t (*)(QmsModule* module, xmlNode* element, void* item,
                                    uint8_t* explicitMark);
struct QmtSegFiller {
  uint16_t count;     // items counted
  uint16_t itemSize;  // sizeof one item
  uint32_t markBit;   // mark of the children to read
  QmtFillOneFunc fillOne;
  uint8_t* explicitMarks;  // bit and enum: 1 for an item that gave its number; else NULL
};

// The first child element of that name, whatever its namespace, or NULL.
xmlNode* FirstChildElementNamed(const xmlNode* element, const char* name);

// Splits "prefix:name" or "name" and interns the name of the module that it leads
// to, the module's own without a prefix, and the name itself. 22 or 12 on failure.
uint32_t FillQualifiedName(QmsModule* module, const char* text, const char** moduleName,
                           const char** name);

// Interns the first `length` characters of `text`, also none; 12 without memory.
uint32_t InternPart(QmsModule* module, const char* text, size_t length, const char** field);

// The fill functions of the ten kinds; reached through the table below.
uint32_t FillDerived(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                     uint32_t itemCount);
uint32_t FillBases(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount);
uint32_t FillBits(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                  uint32_t itemCount);
uint32_t FillEnums(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount);
uint32_t FillFraction(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                      uint32_t itemCount);
uint32_t FillLength(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                    uint32_t itemCount);
uint32_t FillPath(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                  uint32_t itemCount);
uint32_t FillPatterns(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                      uint32_t itemCount);
uint32_t FillRange(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount);
uint32_t FillUnion(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount);

QM_BEGIN_INTERNAL_DECLS

// Entries of the statement dispatch. `dest` is a zeroed QmtType, and a zeroed
// QmsTypedef. A type that fails is left half filled for its owner to destroy; a
// typedef that fails is destroyed and zero again.
uint32_t QMT_LOADER_ParseTypeStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMT_LOADER_ParseTypeDefStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);

// The id of a built-in type, 0 for any other name.
uint32_t QMT_LOADER_GetBaseTypeFromTypeName(const char* name);

// The passes. The counters are raised, not set, so that the caller can count the
// derived kind first.
uint32_t QMT_LOADER_CountAndMarkTypeSubElem(xmlNode* typeElem, QmtTypeCounters* counters);
uint32_t QMT_LOADER_FillAllTypeConstraint(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                          const QmtTypeCounters* counters);
uint32_t QMT_LOADER_CreateConsDataInLastConstraint(QmsModule* module, QmtType* type, uint32_t kind,
                                                   uint32_t itemCount);
QmtConsFillFunc QMT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind);

// Fills the array `items` from the marked children, in document order.
uint32_t QMT_LOADER_FillTypeConstraintSeg(QmsModule* module, xmlNode* typeElem,
                                          QmtSegFiller* filler, void* items);

// Keeps the first sentence of each enum's description, RFC 7950 section 7.21.3.
// The first releases what it kept and gives 12 when one fails.
uint32_t QM_LOADER_FillDescWithAllEnum(QmsModule* module, xmlNode* typeElem, QmtConsEnum* body);
uint32_t QM_LOADER_FillDescWithOneEnum(QmsModule* module, xmlNode* enumElem,
                                       const char** description);

QM_END_INTERNAL_DECLS
