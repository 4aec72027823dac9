// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// Merges one module read from two files. Both records belong to one context, and
// the source stays the caller's. Definitions are copied into the destination,
// schema nodes move to it. The first failure is recorded for the destination and
// ends the merge; what was merged until then stays. All give 22 for a NULL module,
// a module without a context, modules of two contexts, and for one record as both;
// 22 when the two differ where they must not; 12 when memory runs out, for an
// import or a typedef 12 or 22.

QM_BEGIN_INTERNAL_DECLS

// Everything: the definitions, then the trees.
uint32_t QMS_MOD_MergeTwoModuleInSameCtx(QmsModule* dst, QmsModule* src);
// The definitions alone: the kinds below in this order, then the extension
// instances of the module, each once.
uint32_t QMS_MOD_MergeGlobalDefData(QmsModule* dst, QmsModule* src);

// One kind of definitions, each looked up in the destination by its key: the prefix
// of an import, the name of any other. What is absent is appended. An import that
// is present must name the same module; a feature, identity or extension must be
// the same; an include or a typedef is kept without a comparison; a deviation never
// counts as present. A typedef that is appended must find those that it derives
// from in the destination already, else 22.
uint32_t QMS_MOD_MergeNonNodeMemberImport(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberInclude(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberFeature(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberIdentity(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberExtension(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberDeviation(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberTypeDef(QmsModule* dst, QmsModule* src);

QM_END_INTERNAL_DECLS
