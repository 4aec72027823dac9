// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "context/memory.h"

// Cleanup for functions that acquire two or more things. Release() is called
// exactly where ownership passes on.

// Owns a record with the function that destroys it: QmOwn<xmlFreeDoc> doc(…).
template <auto Destroy>
class QmOwn;

template <typename T, typename Result, Result (*Destroy)(T*)>
class QmOwn<Destroy> {
 public:
  explicit QmOwn(T* record = nullptr) : record_(record) {}
  ~QmOwn() {
    if (record_ != nullptr) static_cast<void>(Destroy(record_));
  }
  QmOwn(const QmOwn&) = delete;
  QmOwn& operator=(const QmOwn&) = delete;

  T* Get() const { return record_; }
  T* operator->() const { return record_; }
  explicit operator bool() const { return record_ != nullptr; }
  [[nodiscard]] T* Release() {
    T* record = record_;
    record_ = nullptr;
    return record;
  }

 private:
  T* record_;
};

template <typename T>
void FreeBlock(T* block) {
  g_qmMemFreeFunc(block);
}

// Owns a block of the memory hooks: QmHeld<char> text(…).
template <typename T>
using QmHeld = QmOwn<FreeBlock<T>>;
