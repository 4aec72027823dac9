// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>

#include "context/records.h"

// Circular doubly linked lists with a sentinel. A link that is not in a list is zero.

// The record whose first member `link` this is. The sentinel stands in none.
template <typename Record>
Record* RecordOf(QmListLink* link) {
  static_assert(offsetof(Record, link) == 0, "a link and its record have one address");
  return static_cast<Record*>(static_cast<void*>(link));
}

template <typename Record>
const Record* RecordOf(const QmListLink* link) {
  static_assert(offsetof(Record, link) == 0, "a link and its record have one address");
  return static_cast<const Record*>(static_cast<const void*>(link));
}

inline void ListInit(QmListLink* head) {
  head->next = head;
  head->prev = head;
}

inline bool ListIsEmpty(const QmListLink* head) {
  return head->next == head;
}

inline void ListInsertAfter(QmListLink* place, QmListLink* link) {
  link->next = place->next;
  link->prev = place;
  place->next->prev = link;
  place->next = link;
}

inline void ListPushHead(QmListLink* head, QmListLink* link) {
  ListInsertAfter(head, link);
}

inline void ListPushTail(QmListLink* head, QmListLink* link) {
  ListInsertAfter(head->prev, link);
}

inline void ListUnlink(QmListLink* link) {
  link->prev->next = link->next;
  link->next->prev = link->prev;
  link->next = nullptr;
  link->prev = nullptr;
}
