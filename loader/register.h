// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_UpdateGlobalTypDefDerivedFrom(QmsModule* module);
uint32_t QMS_LOADER_ImplUpdateNodeLeafDerivedCb(QmsNode* node, uint32_t travType, void* arg);
uint32_t QMS_LOADER_SaveSuccLoadingSuffix(QmsModule* module, const QmsLoadAssister* assister);
uint32_t QMS_LOADER_FindSuffixInModMrgSource(const QmsModule* module, const char* suffix);
uint32_t QMS_LOADER_AddSuffixToModMrgSource(QmsModule* module, const char* suffix);

QM_END_INTERNAL_DECLS
