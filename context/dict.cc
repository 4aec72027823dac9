// SPDX-License-Identifier: BSD-3-Clause
// The string dictionary: one shared, counted copy of each text that a context
// holds, so that two held texts are equal exactly when their pointers are. A
// fixed table of 1024 chains; there is no rehashing.
#include "context/dict.h"

#include <atomic>
#include <cstring>

#include "context/memory.h"
#include "context/string.h"
#include "platform/string.h"

constexpr uint32_t kBucketCount = 1024;
static_assert((kBucketCount & (kBucketCount - 1)) == 0, "the index is the hash under a mask");

bool InternText(QmDict* dict, const char** field, const char* text) {
  const char* interned = QM_DICT_Insert(dict, text);
  if (interned == nullptr) return false;
  ReleaseText(dict, field);
  *field = interned;
  return true;
}

uint32_t QM_DICT_Init(QmDict* dict) {
  auto* buckets = static_cast<QmDictBucket*>(AllocZeroed(kBucketCount * sizeof(QmDictBucket)));
  if (buckets == nullptr) return QM_FAILED;
  dict->bucketCount = kBucketCount;
  dict->usedBuckets = 0;
  dict->buckets = buckets;
  return QM_OK;
}

// Jenkins' one-at-a-time hash. Deliberate: bytes from 0x80 on count as negative.
template <typename IsEnd>
static uint32_t HashTo(const char* str, IsEnd isEnd) {
  uint32_t hash = 0;
  for (; !isEnd(str); ++str) {
    hash += static_cast<uint32_t>(static_cast<signed char>(*str));
    hash += hash << 10;
    hash ^= hash >> 6;
  }
  hash += hash << 3;
  hash ^= hash >> 11;
  hash += hash << 15;
  return hash;
}

uint32_t QM_DICT_HashVal(const char* str) {
  return HashTo(str, [](const char* at) { return *at == '\0'; });
}

static QmDictBucket* BucketOf(QmDict* dict, uint32_t hash) {
  return &dict->buckets[hash & (dict->bucketCount - 1)];
}

// The link that leads to the entry of `str`, or the empty one at the chain's end. Chains
// are long where a context holds many texts; a text whose hash differs is not looked at.
static QmDictEntry** FindLink(QmDictBucket* bucket, uint32_t hash, const char* str) {
  QmDictEntry** link = &bucket->first;
  for (; *link != nullptr; link = &(*link)->next) {
    if ((*link)->hash == hash && RTK_StrCmp((*link)->str, str) == 0) break;
  }
  return link;
}

// The entry of a text, or NULL.
static QmDictEntry* FindEntry(QmDict* dict, const char* str) {
  const uint32_t hash = QM_DICT_HashVal(str);
  return *FindLink(BucketOf(dict, hash), hash, str);
}

const char* FindInterned(QmDict* dict, const char* str) {
  if (str == nullptr || dict->buckets == nullptr) return nullptr;
  const QmDictEntry* entry = FindEntry(dict, str);
  return entry == nullptr ? nullptr : entry->str;
}

const char* FindInternedSpan(QmDict* dict, TextSpan span, uint32_t* refCount) {
  if (dict->buckets == nullptr) return nullptr;
  const char* end = span.text + span.length;
  const uint32_t hash = HashTo(span.text, [end](const char* at) { return at == end; });
  QmDictEntry* entry = BucketOf(dict, hash)->first;
  while (entry != nullptr && (entry->hash != hash || !TextIs(entry->str, span))) {
    entry = entry->next;
  }
  if (entry == nullptr) return nullptr;
  *refCount = std::atomic_ref<uint32_t>(entry->refCount).load(std::memory_order_relaxed);
  return entry->str;
}

bool ShareText(QmDict* dict, const char* interned) {
  if (dict->buckets == nullptr) return false;
  QmDictEntry* entry = FindEntry(dict, interned);
  if (entry == nullptr || entry->str != interned) return false;
  std::atomic_ref<uint32_t>(entry->refCount).fetch_add(1, std::memory_order_relaxed);
  return true;
}

void UnshareText(QmDict* dict, const char* interned) {
  QmDictEntry* entry = FindEntry(dict, interned);
  if (entry == nullptr) return;
  std::atomic_ref<uint32_t>(entry->refCount).fetch_sub(1, std::memory_order_relaxed);
}

static QmDictEntry* NewEntry(uint32_t hash, const char* str) {
  auto* entry = NewRecord<QmDictEntry>();
  if (entry == nullptr) return nullptr;
  entry->str = QM_UTL_StrDup(str);
  entry->refCount = 1;
  entry->hash = hash;
  if (entry->str != nullptr) return entry;
  g_qmMemFreeFunc(entry);
  return nullptr;
}

static void FreeEntry(QmDictEntry* entry) {
  g_qmMemFreeFunc(entry->str);
  g_qmMemFreeFunc(entry);
}

const char* QM_DICT_Insert(QmDict* dict, const char* str) {
  if (str == nullptr || dict->buckets == nullptr) return nullptr;
  const uint32_t hash = QM_DICT_HashVal(str);
  QmDictBucket* bucket = BucketOf(dict, hash);
  QmDictEntry** link = FindLink(bucket, hash, str);
  if (*link != nullptr) {
    ++(*link)->refCount;
    return (*link)->str;
  }
  // Counted before the entry exists: too high a count only makes the final
  // release look at one chain in vain.
  ++bucket->entryCount;
  QmDictEntry* entry = NewEntry(hash, str);
  if (entry == nullptr) return nullptr;
  if (bucket->first == nullptr) ++dict->usedBuckets;
  *link = entry;
  return entry->str;
}

void QM_DICT_Remove(QmDict* dict, const char* str) {
  if (str == nullptr || dict->buckets == nullptr) return;
  const uint32_t hash = QM_DICT_HashVal(str);
  QmDictBucket* bucket = BucketOf(dict, hash);
  QmDictEntry** link = FindLink(bucket, hash, str);
  QmDictEntry* entry = *link;
  if (entry == nullptr || --entry->refCount > 0) return;
  // Deliberate: any removed head counts, also one with followers.
  if (link == &bucket->first) --dict->usedBuckets;
  *link = entry->next;
  --bucket->entryCount;
  FreeEntry(entry);
}

static void FreeChain(QmDictEntry* entry) {
  while (entry != nullptr) {
    QmDictEntry* next = entry->next;
    FreeEntry(entry);
    entry = next;
  }
}

void QM_DICT_Destroy(QmDict* dict) {
  if (dict->buckets == nullptr) return;
  for (uint32_t i = 0; i < dict->bucketCount; ++i) {
    if (dict->buckets[i].entryCount != 0) FreeChain(dict->buckets[i].first);
  }
  FreeAndNull(&dict->buckets);
}
