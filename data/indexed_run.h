// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "data/records.h"

// QMD_PAS_ValidateDataTree() for a tree that carries no binding: what it asks of the schema
// again and again is kept while it lasts. The results are the same.
uint32_t RunWithIndex(QmCheckAux* aux, xmlNode* root);
