// SPDX-License-Identifier: BSD-3-Clause
#include "context/dict.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <set>
#include <string>

#include "tests/support/counting_memory.h"

namespace {

class Dict : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(QM_OK, QM_DICT_Init(&dict_)); }
  void TearDown() override { QM_DICT_Destroy(&dict_); }

  const QmDictEntry* Find(const char* text) {
    const QmDictBucket& bucket = dict_.buckets[QM_DICT_HashVal(text) & (dict_.bucketCount - 1)];
    const QmDictEntry* entry = bucket.first;
    while (entry != nullptr && std::string(entry->str) != text) entry = entry->next;
    return entry;
  }

  QmDict dict_ = {};
};

// The first `count` texts that share a bucket with "t0".
std::set<std::string> TextsOfOneBucket(size_t count) {
  std::set<std::string> texts;
  const uint32_t index = QM_DICT_HashVal("t0") & 1023;
  for (int i = 0; texts.size() < count; ++i) {
    const std::string text = "t" + std::to_string(i);
    if ((QM_DICT_HashVal(text.c_str()) & 1023) == index) texts.insert(text);
  }
  return texts;
}

}  // namespace

TEST(DictHashVal, EmptyTextHashesTo0) {
  EXPECT_EQ(0u, QM_DICT_HashVal(""));
}

TEST(DictHashVal, IsTheOneAtATimeHash) {
  // Published values of the function for these two texts.
  EXPECT_EQ(0xca2e9442u, QM_DICT_HashVal("a"));
  EXPECT_EQ(0x519e91f5u, QM_DICT_HashVal("The quick brown fox jumps over the lazy dog"));
}

TEST(DictHashVal, BytesFrom0x80AreTakenAsNegative) {
  // One byte b: h = b, h += h << 10, h ^= h >> 6, then the final mixing.
  const auto oneByte = [](uint32_t h) {
    h += h << 10;
    h ^= h >> 6;
    h += h << 3;
    h ^= h >> 11;
    return h + (h << 15);
  };
  EXPECT_EQ(oneByte(0xFFFFFF80u), QM_DICT_HashVal("\x80"));
  EXPECT_EQ(oneByte(0xFFFFFFFFu), QM_DICT_HashVal("\xFF"));
  EXPECT_NE(oneByte(0x80u), QM_DICT_HashVal("\x80"));
  EXPECT_EQ(oneByte(0x7Fu), QM_DICT_HashVal("\x7F"));
}

TEST_F(Dict, HasAFixedTableOf1024EmptyBuckets) {
  EXPECT_EQ(1024u, dict_.bucketCount);
  EXPECT_EQ(0u, dict_.usedBuckets);
  for (uint32_t i = 0; i < dict_.bucketCount; ++i) {
    EXPECT_EQ(0u, dict_.buckets[i].entryCount);
    EXPECT_EQ(nullptr, dict_.buckets[i].first);
  }
}

TEST_F(Dict, EqualTextsGiveOnePointer) {
  const std::string other = "alpha";
  const char* first = QM_DICT_Insert(&dict_, "alpha");
  ASSERT_NE(nullptr, first);
  EXPECT_STREQ("alpha", first);
  EXPECT_EQ(first, QM_DICT_Insert(&dict_, other.c_str()));
  EXPECT_NE(first, QM_DICT_Insert(&dict_, "beta"));
  EXPECT_NE(nullptr, QM_DICT_Insert(&dict_, ""));
}

TEST_F(Dict, FindInternedTakesNoReferenceAndInsertsNothing) {
  EXPECT_EQ(nullptr, FindInterned(&dict_, "alpha"));
  EXPECT_EQ(0u, dict_.usedBuckets);
  const char* text = QM_DICT_Insert(&dict_, "alpha");
  EXPECT_EQ(text, FindInterned(&dict_, "alpha"));
  EXPECT_EQ(nullptr, FindInterned(&dict_, nullptr));
  QM_DICT_Remove(&dict_, "alpha");
  EXPECT_EQ(nullptr, FindInterned(&dict_, "alpha"));
}

TEST_F(Dict, FindInternedSpanFindsAPartOfATextAndTellsItsReferences) {
  const TextSpan alpha = {"alphabet", 5};
  uint32_t refCount = 7;
  EXPECT_EQ(nullptr, FindInternedSpan(&dict_, alpha, &refCount));
  EXPECT_NE(nullptr, QM_DICT_Insert(&dict_, "alphabet"));
  EXPECT_EQ(nullptr, FindInternedSpan(&dict_, alpha, &refCount));
  EXPECT_EQ(7u, refCount);
  const char* text = QM_DICT_Insert(&dict_, "alpha");
  EXPECT_EQ(text, FindInternedSpan(&dict_, alpha, &refCount));
  EXPECT_EQ(1u, refCount);
  EXPECT_EQ(text, QM_DICT_Insert(&dict_, "alpha"));
  EXPECT_EQ(text, FindInternedSpan(&dict_, alpha, &refCount));
  EXPECT_EQ(2u, refCount);
  QmDict none = {};
  EXPECT_EQ(nullptr, FindInternedSpan(&none, alpha, &refCount));
}

TEST_F(Dict, NullTextGivesNull) {
  EXPECT_EQ(nullptr, QM_DICT_Insert(&dict_, nullptr));
  QM_DICT_Remove(&dict_, nullptr);
}

TEST_F(Dict, EachInsertNeedsItsOwnRemove) {
  const size_t before = counting_memory::LiveBlocks();
  const char* text = QM_DICT_Insert(&dict_, "a");
  QM_DICT_Insert(&dict_, "a");
  EXPECT_EQ(2u, Find("a")->refCount);
  EXPECT_EQ(before + 2, counting_memory::LiveBlocks()) << "an entry and one copy";
  QM_DICT_Remove(&dict_, "a");
  ASSERT_NE(nullptr, Find("a"));
  EXPECT_EQ(text, Find("a")->str);
  QM_DICT_Remove(&dict_, "a");
  EXPECT_EQ(nullptr, Find("a"));
  EXPECT_EQ(before, counting_memory::LiveBlocks());
}

TEST_F(Dict, RemoveTakesAnyEqualText) {
  QM_DICT_Insert(&dict_, "a");
  const std::string other = "a";
  QM_DICT_Remove(&dict_, other.c_str());
  EXPECT_EQ(nullptr, Find("a"));
}

TEST_F(Dict, RemoveOfAnAbsentTextIsIgnored) {
  QM_DICT_Insert(&dict_, "a");
  QM_DICT_Remove(&dict_, "b");
  EXPECT_NE(nullptr, Find("a"));
  EXPECT_EQ(1u, dict_.usedBuckets);
}

TEST_F(Dict, TextsOfOneBucketAreChainedInTheOrderTheyCame) {
  const std::set<std::string> texts = TextsOfOneBucket(3);
  for (const std::string& text : texts) QM_DICT_Insert(&dict_, text.c_str());
  const QmDictBucket& bucket = dict_.buckets[QM_DICT_HashVal("t0") & 1023];
  EXPECT_EQ(3u, bucket.entryCount);
  EXPECT_EQ(1u, dict_.usedBuckets);
  const QmDictEntry* entry = bucket.first;
  for (const std::string& text : texts) {
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(text, entry->str);
    entry = entry->next;
  }
  EXPECT_EQ(nullptr, entry);
  // From the middle of the chain: the neighbours stay.
  const std::string& middle = *std::next(texts.begin());
  QM_DICT_Remove(&dict_, middle.c_str());
  EXPECT_EQ(nullptr, Find(middle.c_str()));
  EXPECT_NE(nullptr, Find(texts.begin()->c_str()));
  EXPECT_NE(nullptr, Find(texts.rbegin()->c_str()));
  EXPECT_EQ(2u, bucket.entryCount);
  EXPECT_EQ(1u, dict_.usedBuckets) << "no head was removed";
  QM_DICT_Remove(&dict_, texts.begin()->c_str());
  EXPECT_EQ(0u, dict_.usedBuckets) << "a head was removed";
}

TEST_F(Dict, DestroyFreesTextsWhateverTheirReferences) {
  QM_DICT_Insert(&dict_, "a");
  QM_DICT_Insert(&dict_, "a");
  QM_DICT_Insert(&dict_, "b");
  QM_DICT_Destroy(&dict_);
  EXPECT_EQ(nullptr, dict_.buckets);
  QM_DICT_Destroy(&dict_);
  EXPECT_EQ(nullptr, QM_DICT_Insert(&dict_, "a"));
  QM_DICT_Remove(&dict_, "a");
}

TEST_F(Dict, InternTextReplacesAndKeepsTheFieldOnFailure) {
  const char* field = nullptr;
  EXPECT_TRUE(InternText(&dict_, &field, "a"));
  EXPECT_STREQ("a", field);
  EXPECT_TRUE(InternText(&dict_, &field, field)) << "the same text again";
  EXPECT_EQ(1u, Find("a")->refCount);
  EXPECT_TRUE(InternText(&dict_, &field, "b"));
  EXPECT_EQ(nullptr, Find("a"));
  EXPECT_FALSE(InternText(&dict_, &field, nullptr));
  EXPECT_STREQ("b", field);
  ReleaseText(&dict_, &field);
  EXPECT_EQ(nullptr, field);
  EXPECT_EQ(nullptr, Find("b"));
  ReleaseText(&dict_, &field);
}

TEST(DictMemory, InitWithoutMemoryGives1) {
  QmDict dict = {};
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_FAILED, QM_DICT_Init(&dict));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, dict.buckets);
  QM_DICT_Destroy(&dict);
}

TEST_F(Dict, InsertWithoutMemoryGivesNullAndTheSameInsertSucceedsLater) {
  // The entry is the first block, the copy of the text the second.
  for (uint64_t n : {1u, 2u}) {
    SCOPED_TRACE(n);
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(nullptr, QM_DICT_Insert(&dict_, "a"));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(nullptr, Find("a"));
    EXPECT_EQ(0u, dict_.usedBuckets);
  }
  EXPECT_NE(nullptr, QM_DICT_Insert(&dict_, "a"));
  EXPECT_EQ(1u, Find("a")->refCount);
}
