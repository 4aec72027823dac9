// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"
#include "xpath/bound_data.h"

QM_BEGIN_INTERNAL_DECLS

char* QMD_NODE_ConvertPrefixValueToModValue(xmlNode* element, QmsNode* schemaNode,
                                            const char* text);

QM_END_INTERNAL_DECLS
