// SPDX-License-Identifier: BSD-3-Clause
#include "data/default_list.h"

#include <gtest/gtest.h>

#include <string>

#include "data/validate.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"

namespace {

using message_fixture::Document;

class DefaultList : public testing::Test {
 protected:
  void SetUp() override { QMD_PAS_InitCheckAux(&aux_, nullptr, QMD_MODE_RPC, nullptr, nullptr); }
  void Mark(const std::string& name) { doc_.Find(name)->line = 256; }
  size_t Length() const {
    size_t length = 0;
    for (const QmDefaultNodeEntry* entry = aux_.defaultList.next; entry != &aux_.defaultList;
         entry = entry->next) {
      ++length;
    }
    return length;
  }
  Document doc_{"<r><c><d/></c></r>"};
  QmCheckAux aux_ = {};
};

TEST_F(DefaultList, OnlyElementsOnLine256ReadAsAdded) {
  EXPECT_EQ(0u, QMD_PAS_IsDefaultAddNode(doc_.Find("c")));
  Mark("c");
  EXPECT_EQ(1u, QMD_PAS_IsDefaultAddNode(doc_.Find("c")));
  EXPECT_EQ(0u, QMD_PAS_IsDefaultAddNode(nullptr));
  EXPECT_EQ(0u, QMD_PAS_IsDefaultAddNode(doc_.root()->parent));
}

TEST_F(DefaultList, OnlyTopmostMarkedNodesAreListed) {
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("c")));
  EXPECT_EQ(0u, Length());
  Mark("c");
  Mark("d");
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("d")));
  EXPECT_EQ(0u, Length());
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("c")));
  ASSERT_EQ(1u, Length());
  EXPECT_EQ(doc_.Find("c"), aux_.defaultList.next->node);
  QMD_PAS_RemoveDefaultNodeFromList(&aux_.defaultList, doc_.Find("d"));
  EXPECT_EQ(1u, Length());
  QMD_PAS_RemoveDefaultNodeFromList(&aux_.defaultList, doc_.Find("c"));
  EXPECT_EQ(0u, Length());
}

// A run that was filled by hand, as a zeroed record with an empty ring.
TEST_F(DefaultList, ASentinelThatIsZeroedAndLinkedToItselfIsAnEmptyList) {
  const auto zeroed = [this] {
    aux_.defaultList = {};
    aux_.defaultList.next = &aux_.defaultList;
    aux_.defaultList.prev = &aux_.defaultList;
  };
  zeroed();
  QMD_PAS_RemoveDefaultNodeFromList(&aux_.defaultList, doc_.Find("c"));
  EXPECT_EQ(0u, Length());
  QMD_PAS_ClearDefaultNodeList(&aux_, 1);
  EXPECT_EQ(0u, Length());
  zeroed();
  Mark("c");
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("c")));
  ASSERT_EQ(1u, Length());
  EXPECT_EQ(doc_.Find("c"), aux_.defaultList.next->node);
  QMD_PAS_RemoveDefaultNodeFromList(&aux_.defaultList, doc_.Find("c"));
  EXPECT_EQ(0u, Length());
  zeroed();
  QMD_PAS_DeleteDefaultAddNode(&aux_, doc_.Find("c"));
  EXPECT_EQ(0u, Length());
  EXPECT_EQ("<r/>", doc_.Dump());
}

TEST_F(DefaultList, RefusedEntryGives12) {
  Mark("c");
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("c")));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(0u, Length());
}

TEST_F(DefaultList, DeletedNodeLeavesTreeAndList) {
  Mark("d");
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("d")));
  QMD_PAS_DeleteDefaultAddNode(&aux_, doc_.Find("d"));
  EXPECT_EQ(0u, Length());
  EXPECT_EQ("<r><c/></r>", doc_.Dump());
}

// c reads as added without being listed; d below it is listed on its own, since
// an element of the client stands between them.
TEST_F(DefaultList, DeletingAnUnlistedNodeTakesTheEntriesBelowAlong) {
  Mark("d");
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("d")));
  QMD_PAS_DeleteDefaultAddNode(&aux_, doc_.Find("c"));
  EXPECT_EQ(0u, Length());
  EXPECT_EQ("<r/>", doc_.Dump());
}

TEST_F(DefaultList, KeptNodesStayWithoutMarks) {
  Mark("c");
  Mark("d");
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("c")));
  QMD_PAS_ClearDefaultNodeList(&aux_, 1);
  EXPECT_EQ(0u, Length());
  EXPECT_EQ("<r><c><d/></c></r>", doc_.Dump());
  EXPECT_EQ(0, doc_.Find("c")->line);
  EXPECT_EQ(0, doc_.Find("d")->line);
}

TEST_F(DefaultList, OtherNodesAreFreed) {
  Mark("c");
  EXPECT_EQ(QM_OK, QMD_PAS_AddDefaultNodeToList(&aux_.defaultList, doc_.Find("c")));
  QMD_PAS_ClearDefaultNodeList(&aux_, 2);
  EXPECT_EQ(0u, Length());
  EXPECT_EQ("<r/>", doc_.Dump());
}

}  // namespace
