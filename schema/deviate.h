// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// Applying deviates to their target. All functions take (deviating module,
// target node, deviate) and return 0, 1 for a refused change or 12 without
// memory. What was refused is recorded against the deviating module. What was
// changed before a failure stays changed.

QM_BEGIN_INTERNAL_DECLS

// To be called before each deviate: rewrites the prefixes of identityref
// defaults to module names, once. 22 when a value cannot be rewritten.
uint32_t QMS_MOD_RefreshDeviateDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The whole deviates "add", "delete" and "replace".
uint32_t QMS_MOD_CoupleDevAdd(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevDel(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevRepl(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The steps of "add". Each is to be called only for a deviate that carries the
// property, and the ones named after a node kind only for that kind.
uint32_t QMS_MOD_CoupleDevAddFlag(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_AddNodeMandatory(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevAddDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_AddChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_AddLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_AddLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevAddMusts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevAddUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevAddExtInsts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The steps of "delete".
uint32_t QMS_MOD_CoupleDevDelDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_DelChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_DelLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_DelLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevDelMusts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevDelUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevDelExtInsts(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// The steps of "replace".
uint32_t QMS_MOD_CoupleDevReplFlag(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplNodeConfig(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplNodeMandatory(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevReplDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplChoiceDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplLeafDefault(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_ReplLeaflistDefaults(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevReplType(QmsModule* module, QmsNode* target, QmsDeviate* deviate);
uint32_t QMS_MOD_CoupleDevReplUnits(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// Tells the client that a deviation is about to change the extension instances
// of `node`. Gives the client's answer, 0 without a hook.
uint32_t QMS_NODE_NotifyBeforeExtInstsChange(QmsNode* node);

QM_END_INTERNAL_DECLS
