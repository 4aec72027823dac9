// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// The kind (QmsDeviateKind) of a deviate argument, 0 for an unknown one.
uint32_t QMS_LOADER_GetDeviateType(const char* value);

// The bodies of the kinds that have one.
uint32_t QMS_LOADER_ParseDeviateAdd(QmsModule* module, xmlNode* element, QmsDeviate* deviate);
uint32_t QMS_LOADER_ParseDeviateDelete(QmsModule* module, xmlNode* element, QmsDeviate* deviate);
uint32_t QMS_LOADER_ParseDeviateReplace(QmsModule* module, xmlNode* element, QmsDeviate* deviate);

QM_END_INTERNAL_DECLS
