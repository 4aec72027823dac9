// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/statement.h"
#include "types/records.h"

// How many restriction children of each kind a type element has.
struct QmtTypeCounters {
  uint16_t perKind[QMT_CONS_COUNT];
  uint16_t distinct;
};

using QmtConsFillFunc = uint32_t (*)(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                     QmtConstraint* entry, uint32_t itemCount);

// Fills one item of a list-like constraint from its element; `index` is its place.
using QmtFillOneFunc = uint32_t (*)(QmsModule* module, xmlNode* element, void* item,
                                    uint8_t* explicitMark);
struct QmtSegFiller {
  uint16_t count;     // items counted
  uint16_t itemSize;  // sizeof one item
  uint32_t markBit;   // mark of the children to read
  QmtFillOneFunc fillOne;
  uint8_t* explicitMarks;  // bit and enum: 1 for an item that gave its number; else NULL
};

QM_BEGIN_INTERNAL_DECLS

uint32_t QMT_LOADER_ParseTypeStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMT_LOADER_ParseTypeDefStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);
uint32_t QMT_LOADER_GetBaseTypeFromTypeName(const char* name);
uint32_t QMT_LOADER_CountAndMarkTypeSubElem(xmlNode* typeElem, QmtTypeCounters* counters);
uint32_t QMT_LOADER_FillAllTypeConstraint(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                          const QmtTypeCounters* counters);
uint32_t QMT_LOADER_CreateConsDataInLastConstraint(QmsModule* module, QmtType* type, uint32_t kind,
                                                   uint32_t itemCount);
QmtConsFillFunc QMT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind);
uint32_t QMT_LOADER_FillTypeConstraintSeg(QmsModule* module, xmlNode* typeElem,
                                          QmtSegFiller* filler, void* items);
uint32_t QM_LOADER_FillDescWithAllEnum(QmsModule* module, xmlNode* typeElem, QmtConsEnum* body);
uint32_t QM_LOADER_FillDescWithOneEnum(QmsModule* module, xmlNode* enumElem,
                                       const char** description);

QM_END_INTERNAL_DECLS
