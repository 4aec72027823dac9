// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// The deviate "replace" and its steps: arguments and statuses as deviate.h tells.
// A step is to be called only for a deviate that carries the property, and one
// that is named after a kind of node only for that kind.

QM_BEGIN_INTERNAL_DECLS

// All that the deviate replaces, in the order of the steps below; the first failure
// is recorded once more, by the name of its step, and ends the deviate.
uint32_t QMS_MOD_CoupleDevRepl(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// Config and mandatory, together and each alone; always 0. Another config goes
// down the subtree.
uint32_t QMS_MOD_CoupleDevReplFlag(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplNodeConfig(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplNodeMandatory(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The defaults of a node, by its kind; 1 for a kind that has none.
uint32_t QMS_MOD_CoupleDevReplDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// The one default of a choice or leaf: 1 when it has none; 0, with a message and
// nothing replaced, for several.
uint32_t QMS_MOD_ReplChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// Puts all values in place of all defaults; 1 for a leaf-list without any. Without
// memory for the values it is left with a count and no array, and 0 is given.
uint32_t QMS_MOD_ReplLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// 1 for a node that is neither leaf nor leaf-list, else what the copy of the type
// gives; the old type is gone in any case.
uint32_t QMS_MOD_CoupleDevReplType(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// 1 for a node without units, or one that is neither leaf nor leaf-list.
uint32_t QMS_MOD_CoupleDevReplUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

QM_END_INTERNAL_DECLS
