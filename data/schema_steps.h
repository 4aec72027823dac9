// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "data/run_index.h"

// What a walk down the schema has to do below a schema node: of its children those that
// the walk can have something to do with. A list of a hundred leaves without defaults is
// completed without a look at any of them.

// Whether the walk may leave out what it has nothing to do with: not where it is close to
// the depth that it refuses.
bool MaySkip(const QmCheckAux* aux);

// The steps below a schema node whose children are in `dataParent`, and in *holder whose
// children they are, with `dataParent` as its present instance. NULL when the walk has to
// go over the children themselves.
const QmdSteps* StepsBelow(QmCheckAux* aux, uint32_t phase, QmsNode* node,
                           const xmlNode* dataParent, QmdParent** holder);

// The step to a child of a schema node, among the children of `holder`.
QmdStep StepTo(const QmdParent* holder, QmsNode* node);

// The default of a leaf, or NULL.
const char* DefaultOf(QmdChild* child);
// The branch that a choice names as its default, or NULL.
QmsNode* DefaultBranchOf(QmdChoice* choice);
// Whether a walk would have nothing to do for a container that is missing in the present
// instance of its holder. False without a child.
bool IsIdleWhenMissing(const QmCheckAux* aux, uint32_t phase, const QmdParent* holder,
                       QmdChild* child);
