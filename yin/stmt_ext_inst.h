// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// 1 when an element of a foreign namespace is kept as an extension instance: its
// namespace prefix is known to the module and the client's filter, if there is
// one, lets it pass. Asked while counting, so that nothing else ever sees it.
uint32_t QMS_LOADER_IsExtInstNeedParse(QmsModule* module, const xmlNode* element);

// Entry of the dispatch table (dispatch.h): keeps an instance with those inside it. `dest`
// is the QmsNode under a schema node, which loses all of its instances when one fails,
// else one QmsExtInst. 22 when the namespace prefix leads to no module; else the code of
// what failed.
uint32_t QMS_LOADER_ParseExtInst(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);

QM_END_INTERNAL_DECLS
