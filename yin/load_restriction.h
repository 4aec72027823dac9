// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

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

// Splits "prefix:name" or "name" and interns the name of the module that it leads
// to, the module's own without a prefix, and the name itself. 22 or 12 on failure.
uint32_t FillQualifiedName(QmsModule* module, const char* text, const char** moduleName,
                           const char** name);

// Interns the first `length` characters of `text`, also none; 12 without memory.
uint32_t InternPart(QmsModule* module, const char* text, size_t length, const char** field);

// The fill functions of eight kinds, reached through the table of load_type.cc; bits and
// enums are in load_number.h. Each fills `entry`, the last of `type`, from the children of
// its mark, `itemCount` of them. 22 for an argument that is missing or not allowed, 12
// without memory; what was filled until then is released with the type.
uint32_t FillDerived(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                     uint32_t itemCount);
uint32_t FillBases(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
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

// Fills the array `items` from the marked children, in document order. 22 when there are
// more than were counted; else the code of the item that failed.
uint32_t QMT_LOADER_FillTypeConstraintSeg(QmsModule* module, xmlNode* typeElem,
                                          QmtSegFiller* filler, void* items);

QM_END_INTERNAL_DECLS
