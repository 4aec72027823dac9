// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// The fill functions of bits and enums; load_restriction.h tells what they share with the
// others. 22 also for a number that is out of bounds or that no free one follows.
uint32_t FillBits(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                  uint32_t itemCount);
uint32_t FillEnums(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount);

QM_BEGIN_INTERNAL_DECLS

// Keep the first sentence of each enum's description (RFC 7950 section 7.21.3); of a
// description that begins with "." nothing. The first releases what it kept and gives 12
// when one fails; the second gives 22 for a description without text, 12 without memory.
uint32_t QM_LOADER_FillDescWithAllEnum(QmsModule* module, xmlNode* typeElem, QmtConsEnum* body);
uint32_t QM_LOADER_FillDescWithOneEnum(QmsModule* module, xmlNode* enumElem,
                                       const char** description);

QM_END_INTERNAL_DECLS
