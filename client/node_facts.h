// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "client/type_facts.h"

// What the schema says of a node beside its kind and path.
std::vector<Fact> FactsOf(QmCtx* ctx, QmsNode* node);

// The path of a node with all its steps.
std::string PathOf(const QmsNode* node);
