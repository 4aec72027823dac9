// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_IsExtInstNeedParse(QmsModule* module, const xmlNode* element);

QM_END_INTERNAL_DECLS
