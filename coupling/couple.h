// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// Coupling of a whole module: what is left of it once more modules are there.

QM_BEGIN_INTERNAL_DECLS

// Tries every augment that is not coupled and every deviation that is not
// applied; those that fail go on waiting. 22 for NULL.
uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module);

QM_END_INTERNAL_DECLS
