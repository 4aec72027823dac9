/* SPDX-License-Identifier: BSD-3-Clause */
/* Finds entries of lists and leaf-lists by their keys and values, also among thousands. */
#ifndef AGENT_INSTANCES_H
#define AGENT_INSTANCES_H

#include <libxml/hash.h>

#include <qmodel/qmodel.h>

typedef struct Instances {
  QmCtx *ctx;
  xmlHashTable *table;
} Instances;

/* An empty index; frees it. */
void InstancesOpen(Instances *instances, QmCtx *ctx);
void InstancesClose(Instances *instances);
/* The child of a parent that is the same instance as an element of a request, or NULL. */
xmlNode *InstancesFind(Instances *instances, xmlNode *parent, xmlNode *element);
/* Notes that a child was added to its parent, or is about to be taken away. */
void InstancesAdd(Instances *instances, xmlNode *element);
void InstancesRemove(Instances *instances, xmlNode *element);

#endif
