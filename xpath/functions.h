// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

// A function takes its arguments from the top of the operand stack and pushes its
// result there.
using QmXpathFunc = uint32_t (*)(QmXpathEvalCtx* ctx);

// The function of that name, or NULL.
QmXpathFunc FindXpathFunction(const char* name, uint32_t length);

// Whether the identity that a bound element holds has the named one among its bases, or,
// with `orSelf`, is it. The statuses of the two functions below.
uint32_t TestIdentity(xmlNode* node, const char* argument, bool orSelf, uint32_t* result);

QM_BEGIN_INTERNAL_DECLS

// "not": the operand on top becomes a boolean and is negated; 22 without one.
uint32_t QM_XPATH_FuncNot(QmXpathEvalCtx* ctx);

// "derived-from" and "derived-from-or-self": push whether the identity that a node
// holds has the named one among its bases, or is it. QM_XPATH_BAD_ARGUMENTS without the
// two arguments, QM_XPATH_UNBOUND_NODE for a node that is not bound, 22 for one of
// another type and for an identity that is not loaded, 12 without memory.
uint32_t QM_XPATH_FuncDerivedFrom(QmXpathEvalCtx* ctx);
uint32_t QM_XPATH_FuncDerivedFromOfSelf(QmXpathEvalCtx* ctx);

QM_END_INTERNAL_DECLS
