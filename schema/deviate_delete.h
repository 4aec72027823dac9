// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// The deviate "delete" and its steps: arguments and statuses as deviate.h tells.
// A step is to be called only for a deviate that carries the property, and one
// that is named after a kind of node only for that kind. 12 also means that
// nothing is left of an array whose rest could not be kept.

QM_BEGIN_INTERNAL_DECLS

// All that the deviate deletes, in the order of the steps below; the first failure
// is recorded once more, by the name of its step, and ends the deviate.
uint32_t QMS_MOD_CoupleDevDel(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The defaults of a node, by its kind; 1 for a kind that has none.
uint32_t QMS_MOD_CoupleDevDelDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// The one default of a choice or leaf: 1 when it has none or another; 0, with a
// message and nothing deleted, for several.
uint32_t QMS_MOD_DelChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_DelLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// Deletes every default that equals one of the values; 1 at the first value that
// equals none, with those before it deleted.
uint32_t QMS_MOD_DelLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// Deletes every must with the condition of one of the deviate's; 1 at the first
// that the node does not have, with those before it deleted.
uint32_t QMS_MOD_CoupleDevDelMusts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// 1 for a node that has other units or none, or is neither leaf nor leaf-list.
uint32_t QMS_MOD_CoupleDevDelUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// Deletes the instances that the node has; the client is told before the first.
// Those of access control stay, which is recorded and no failure.
uint32_t QMS_MOD_CoupleDevDelExtInsts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

QM_END_INTERNAL_DECLS
