/* SPDX-License-Identifier: BSD-3-Clause */
/* The children of a parent are entered when one of them is looked for first. An element that
   was taken away is not freed while the index is in use, so that an address stands for one
   parent only. */
#include "instances.h"

#include <stdio.h>
#include <stdlib.h>

#include "schema.h"
#include "text.h"

typedef struct ParentKey {
  char text[32];
} ParentKey;

static ParentKey KeyOf(const xmlNode *parent) {
  ParentKey key;
  snprintf(key.text, sizeof key.text, "%p", (const void *)parent);
  return key;
}

void InstancesOpen(Instances *instances, QmCtx *ctx) {
  instances->ctx = ctx;
  instances->table = Need(xmlHashCreate(0));
}

void InstancesClose(Instances *instances) {
  xmlHashFree(instances->table, NULL);
}

static char *InstanceOf(const Instances *instances, xmlNode *element) {
  const char *missing = NULL;
  return SchemaInstance(instances->ctx, element, SchemaOf(element), &missing);
}

static void Enter(Instances *instances, xmlNode *parent, xmlNode *child) {
  char *instance = InstanceOf(instances, child);
  if (instance != NULL)
    (void)xmlHashUpdateEntry2(instances->table, X(KeyOf(parent).text), X(instance), child, NULL);
  free(instance);
}

static int IsEntered(const Instances *instances, const xmlNode *parent) {
  return xmlHashLookup2(instances->table, X(KeyOf(parent).text), X("")) != NULL;
}

xmlNode *InstancesFind(Instances *instances, xmlNode *parent, xmlNode *element) {
  ParentKey key = KeyOf(parent);
  if (!IsEntered(instances, parent)) {
    for (xmlNode *child = FirstElement(parent); child != NULL; child = NextElement(child))
      if (SchemaOf(child) != NULL) Enter(instances, parent, child);
    if (xmlHashAddEntry2(instances->table, X(key.text), X(""), parent) != 0) (void)Need(NULL);
  }
  char *instance = Need(InstanceOf(instances, element));
  xmlNode *found = xmlHashLookup2(instances->table, X(key.text), X(instance));
  free(instance);
  return found;
}

void InstancesAdd(Instances *instances, xmlNode *element) {
  if (IsEntered(instances, element->parent)) Enter(instances, element->parent, element);
}

void InstancesRemove(Instances *instances, xmlNode *element) {
  char *instance = InstanceOf(instances, element);
  if (instance != NULL)
    (void)xmlHashRemoveEntry2(instances->table, X(KeyOf(element->parent).text), X(instance), NULL);
  free(instance);
}
