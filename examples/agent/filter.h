/* SPDX-License-Identifier: BSD-3-Clause */
/* Subtree filters, RFC 6241 section 6. */
#ifndef AGENT_FILTER_H
#define AGENT_FILTER_H

#include <qmodel/qmodel.h>

/* An error when the element "filter" is none that the agent knows. */
QmErrNode *FilterCheck(const xmlNode *filter);
/* Removes from an element what the filter does not select. Keys of selected entries stay.
   Tells whether anything is left. */
int FilterApply(QmCtx *ctx, xmlNode *data, const xmlNode *filter);

#endif
