/* SPDX-License-Identifier: BSD-3-Clause */
/* Edits: what edit-config changes in a configuration, RFC 6241 section 7.2. */
#ifndef AGENT_EDIT_H
#define AGENT_EDIT_H

#include "operation_attribute.h"

/* Applies what stands below a checked and bound "config" of a request to a bound document. The
   operation is the default one: merge, replace or none. After an error the document is in
   between; the caller drops it. */
QmErrNode *EditApply(QmCtx *ctx, xmlDoc *doc, xmlNode *config, EditOperation operation);

#endif
