/* SPDX-License-Identifier: BSD-3-Clause */
/* The rules on configuration that the agent checks itself, with the library's lookups and
   value checks. Not checked: must, when, the instances that leafrefs name, min-elements,
   max-elements and unique. */
#ifndef AGENT_CHECK_H
#define AGENT_CHECK_H

#include <qmodel/qmodel.h>

/* Checks and binds what a request brings below its element "config": every element is known
   and configuration, values fit, entries have their keys, nothing comes twice, one case of a
   choice at most. */
QmErrNode *CheckInput(QmCtx *ctx, xmlNode *config);
/* Checks a whole bound configuration: the same rules, and that nothing mandatory is missing. */
QmErrNode *CheckConfig(QmCtx *ctx, xmlNode *config);

#endif
