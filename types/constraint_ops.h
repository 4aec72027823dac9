// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "types/constraint.h"

// The operations of one constraint kind. The file of each kind owns its record;
// constraint.cc puts them into the table by kind.
struct QmtConsOps {
  QmtConsCreateFunc create;
  QmtConsDestroyFunc destroy;
  QmtConsCopyFunc copy;
  QmtConsValidateFunc validate;
  QmtConsUpdateDerFunc updateDerivedFrom;  // NULL: the kind names no typedef
  QmtConsScanNameValueFunc scanNameValue;  // NULL: the kind has no named values
  QmtConsScanStartEndFunc scanStartEnd;    // NULL: the kind has no segments
};

extern const QmtConsOps g_qmtDerivedOps;
extern const QmtConsOps g_qmtBaseOps;
extern const QmtConsOps g_qmtBitOps;
extern const QmtConsOps g_qmtEnumOps;
extern const QmtConsOps g_qmtFractionOps;
extern const QmtConsOps g_qmtLengthOps;
extern const QmtConsOps g_qmtPathOps;
extern const QmtConsOps g_qmtPatternOps;
extern const QmtConsOps g_qmtRangeOps;
extern const QmtConsOps g_qmtUnionOps;

// The body operations that range and length share: both are segment lists.
void* CreateSegList(uint32_t itemCount, uint32_t loadFlags);
void DestroySegList(QmDict* dict, void* body);
void* CopySegList(QmDict* dict, const void* body);
