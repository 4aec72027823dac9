// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "schema/statement.h"
#include "yin/records.h"

// The parsers of the dispatch table, one per statement. Each takes the module
// under construction, the statement's element, the id of the parent statement,
// and the place that the parent's descriptor names:
//   nodes                    the parent QmsNode; the QmsModule at the top
//   texts                    const char**; key borrows, the others intern
//   flag statements          uint32_t* of a node, uint16_t* of a deviate
//   records                  one zero-filled array element
//   argument, yin-element    the QmsExtension, its uint32_t
//   extension instances      the QmsNode, or one QmsExtInst elsewhere
// 0 on success. On failure what lies at the place can still be cleared by its
// owner, array elements of a module are zero-filled, and a message is recorded
// for the module as a rule.

QM_BEGIN_INTERNAL_DECLS

// The module header.
uint32_t QMS_LOADER_ParsePrefix(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseRevision(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);

QM_END_INTERNAL_DECLS
