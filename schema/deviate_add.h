// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// The deviate "add" and its steps: arguments and statuses as deviate.h tells. A
// step is to be called only for a deviate that carries the property, and one that
// is named after a kind of node only for that kind.

QM_BEGIN_INTERNAL_DECLS

// All that the deviate adds, in the order of the steps below; the first failure
// is recorded once more, by the name of its step, and ends the deviate.
uint32_t QMS_MOD_CoupleDevAdd(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// Config, then mandatory. 1 for a node with a config statement of its own, and
// for one that is marked mandatory, true or false; a config that is only
// inherited is replaced, down the subtree.
uint32_t QMS_MOD_CoupleDevAddFlag(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// Mandatory alone; 0 when the deviate says nothing of it.
uint32_t QMS_MOD_AddNodeMandatory(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The defaults of a node, by its kind; 1 for a kind that has none.
uint32_t QMS_MOD_CoupleDevAddDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// The one default of a choice or leaf: 1 when it has one; 0, with a message and
// nothing added, for several.
uint32_t QMS_MOD_AddChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_AddLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// Appends all values or none: 1 when the leaf-list has one of them already, or
// when one could not be interned; 22 when there would be more than 65535.
uint32_t QMS_MOD_AddLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// Appends the musts, whether the node has the same already or not.
uint32_t QMS_MOD_CoupleDevAddMusts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// 1 for a node that has units, or is neither leaf nor leaf-list.
uint32_t QMS_MOD_CoupleDevAddUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
// Merges in the instances that the node does not have. The client is told before
// the first; one of access control sets its mark on the whole subtree.
uint32_t QMS_MOD_CoupleDevAddExtInsts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

QM_END_INTERNAL_DECLS
