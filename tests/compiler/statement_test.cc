// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/statement.h"

#include <gtest/gtest.h>

#include "compiler/reading/build.h"
#include "compiler/reading/session.h"

namespace compiler {
namespace {

// A module with a container of two leaves, made by hand.
class StatementTest : public testing::Test {
 protected:
  StatementTest() {
    document_.reset(Need(xmlNewDoc(nullptr)));
    document_->dict = session_->dictionary.get();
    xmlDictReference(document_->dict);
    module_ = NewElement(document_.get(), nullptr, session_->names[size_t(Keyword::kModule)]);
    AppendChild(reinterpret_cast<xmlNode*>(document_.get()), module_);
    Statement& record = session_->statements.emplace_back();
    record.keyword = Keyword::kModule;
    record.place.line = 7;
    module_->_private = &record;
    SetArgument(session_.get(), module_, "m");
    container_ = Add(module_, Keyword::kContainer, "c");
    first_ = Add(container_, Keyword::kLeaf, "a-name-longer-than-sixteen-bytes");
    description_ = Add(first_, Keyword::kDescription, "d");
    second_ = Add(container_, Keyword::kLeaf, "b");
  }

  xmlNode* Add(xmlNode* parent, Keyword keyword, const char* argument) {
    xmlNode* made = MakeStatement(session_.get(), parent, keyword, argument);
    AppendChild(parent, made);
    return made;
  }

  std::unique_ptr<Session> session_ = OpenSession();
  Document document_;
  xmlNode* module_ = nullptr;
  xmlNode* container_ = nullptr;
  xmlNode* first_ = nullptr;
  xmlNode* description_ = nullptr;
  xmlNode* second_ = nullptr;
};

TEST_F(StatementTest, ArgumentIsFoundInAttributeAndElement) {
  EXPECT_STREQ(ArgumentOf(first_), "a-name-longer-than-sixteen-bytes");
  EXPECT_STREQ(ArgumentOf(description_), "d");
  EXPECT_STREQ(ArgumentOfChild(container_, Keyword::kLeaf), "a-name-longer-than-sixteen-bytes");
  EXPECT_EQ(ArgumentOfChild(container_, Keyword::kList), nullptr);
  EXPECT_EQ(ArgumentOf(Add(module_, Keyword::kInput, "ignored")), nullptr);
}

TEST_F(StatementTest, ArgumentIsReplaced) {
  SetArgument(session_.get(), first_, "x");
  SetArgument(session_.get(), description_, "a text of more than sixteen bytes");
  EXPECT_STREQ(ArgumentOf(first_), "x");
  EXPECT_STREQ(ArgumentOf(description_), "a text of more than sixteen bytes");
  SetArgument(session_.get(), description_, "");
  EXPECT_STREQ(ArgumentOf(description_), "");
}

TEST_F(StatementTest, ArgumentElementIsNoSubstatement) {
  EXPECT_EQ(FirstChild(description_), nullptr);
  EXPECT_NE(description_->children, nullptr);
}

TEST_F(StatementTest, TreeIsWalkedInOrderOfTheText) {
  std::vector<const xmlNode*> seen;
  for (const xmlNode* s = module_; s != nullptr; s = NextInTree(module_, s)) seen.push_back(s);
  EXPECT_EQ(seen,
            (std::vector<const xmlNode*>{module_, container_, first_, description_, second_}));
  EXPECT_EQ(NextOutside(module_, first_), second_);
  EXPECT_EQ(NextOutside(first_, description_), nullptr);
  EXPECT_EQ(NextInTree(second_, second_), nullptr);
}

TEST_F(StatementTest, CopyHasRecordsOfItsOwnThatSayWhereItWasUsed) {
  Place use;
  use.line = 99;
  LooseStatement copy(CopyStatement(session_.get(), document_.get(), container_, &use));
  EXPECT_EQ(copy->parent, nullptr);
  xmlNode* leaf = FirstChild(copy.get(), Keyword::kLeaf);
  ASSERT_NE(leaf, nullptr);
  EXPECT_NE(StatementOf(leaf), StatementOf(first_));
  EXPECT_EQ(StatementOf(leaf)->usedAt, &use);
  EXPECT_EQ(StatementOf(leaf)->place.line, 7u);
  EXPECT_EQ(StatementOf(leaf)->origin, first_);
  EXPECT_EQ(StatementOf(first_)->usedAt, nullptr);
  EXPECT_STREQ(ArgumentOf(leaf), "a-name-longer-than-sixteen-bytes");
  EXPECT_STREQ(ArgumentOfChild(leaf, Keyword::kDescription), "d");
  EXPECT_STREQ(ArgumentOf(NextSibling(leaf)), "b");
  EXPECT_EQ(NextSibling(NextSibling(leaf)), nullptr);
}

TEST_F(StatementTest, CopyOfOneWithoutSubstatementsTakesNoNeighbour) {
  LooseStatement copy(CopyStatement(session_.get(), document_.get(), first_, nullptr));
  EXPECT_EQ(copy->next, nullptr);
  EXPECT_STREQ(ArgumentOfChild(copy.get(), Keyword::kDescription), "d");
  copy.reset(CopyStatement(session_.get(), document_.get(), second_, nullptr));
  EXPECT_EQ(copy->children, nullptr);
}

TEST_F(StatementTest, StatementsAreInsertedTakenOutAndRemoved) {
  xmlNode* middle = MakeStatement(session_.get(), first_, Keyword::kLeaf, "m");
  InsertBefore(second_, middle);
  InsertAfter(second_, MakeStatement(session_.get(), first_, Keyword::kList, "last"));
  EXPECT_EQ(NextSibling(first_), middle);
  EXPECT_EQ(NextSibling(middle), second_);
  TakeOut(middle);
  InsertBefore(first_, middle);
  EXPECT_EQ(FirstChild(container_), middle);
  RemoveStatement(middle);
  EXPECT_EQ(FirstChild(container_), first_);
  EXPECT_STREQ(ArgumentOf(FirstChild(container_, Keyword::kList)), "last");
  EXPECT_EQ(ParentOf(first_), container_);
  EXPECT_EQ(ParentOf(module_), nullptr);
}

}  // namespace
}  // namespace compiler
