/* SPDX-License-Identifier: BSD-3-Clause */
/* Lists of texts. */
#include <stdlib.h>
#include <string.h>

#include "agent.h"

void ListAdd(List *list, const char *item) {
  list->items = Need(realloc(list->items, (list->count + 1) * sizeof *list->items));
  list->items[list->count++] = CopyText(item);
}

int ListHas(const List *list, const char *item) {
  for (size_t i = 0; i < list->count; i++)
    if (strcmp(list->items[i], item) == 0) return 1;
  return 0;
}

void ListFree(List *list) {
  for (size_t i = 0; i < list->count; i++) free(list->items[i]);
  free(list->items);
  *list = (List){NULL, 0};
}
