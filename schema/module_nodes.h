// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "platform/string.h"
#include "schema/records.h"

// A top-level list of a module.
struct QmsTopList {
  QmsNode* QmsModule::*head;
  QmsNode* QmsModule::*tail;
};

constexpr QmsTopList kDataList = {&QmsModule::dataNodes, &QmsModule::dataTail};
constexpr QmsTopList kRpcList = {&QmsModule::rpcNodes, &QmsModule::rpcTail};
constexpr QmsTopList kNotifList = {&QmsModule::notifNodes, &QmsModule::notifTail};
constexpr QmsTopList kAugmentList = {&QmsModule::augmentNodes, &QmsModule::augmentTail};
constexpr QmsTopList kTopLists[] = {kDataList, kRpcList, kNotifList, kAugmentList};

// The first data node, rpc or notification of that name, or NULL.
QmsNode* FindTopNode(const QmsModule* mod, TextSpan name);

QM_BEGIN_INTERNAL_DECLS

// Appends a node to the top-level list of its kind: 0; 22 for a kind that never stands
// there, and without module or node.
uint32_t QMS_MOD_AddTopNodeToSchemaTree(QmsModule* mod, QmsNode* node);
// The same for a whole text; NULL without module or name.
QmsNode* QMS_MOD_FindTopLevelSchemaNode(QmsModule* mod, const char* name);

QM_END_INTERNAL_DECLS
