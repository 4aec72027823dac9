// SPDX-License-Identifier: BSD-3-Clause
#include "context/search_dir.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "context/memory.h"
#include "tests/support/counting_memory.h"

namespace {

namespace fs = std::filesystem;

class SearchDirTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "qmodel_dirs_XXXXXX").string();
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    base_ = name;
    for (const char* sub : {"a", "b", "c"}) fs::create_directory(Dir(sub));
    ASSERT_NE(nullptr, ctx_ = QM_CTX_Create(0));
  }
  void TearDown() override {
    QM_CTX_Delete(ctx_);
    fs::remove_all(base_);
  }

  std::string Dir(const std::string& sub) const { return base_ + "/" + sub; }
  uint32_t Set(const std::string& dir) { return QM_CTX_SetSearchDir(ctx_, dir.c_str()); }
  uint32_t UnSet(const std::string& dir) { return QM_CTX_UnSetSearchDir(ctx_, dir.c_str()); }
  std::vector<std::string> Table() const {
    return {ctx_->searchDirs, ctx_->searchDirs + ctx_->searchDirCount};
  }

  std::string base_;
  QmCtx* ctx_ = nullptr;
};

using SetSearchDir = SearchDirTest;
using UnSetSearchDir = SearchDirTest;
using SearchDirTable = SearchDirTest;
using Texts = std::vector<std::string>;

}  // namespace

TEST(FormatInputPath, DropsTrailingSlashesButNeverTheFirst) {
  const struct {
    const char* path;
    const char* expected;
  } rows[] = {{"/", "/"},         {"///", "/"},          {"/a", "/a"},
              {"/a/b//", "/a/b"}, {"//a//b/", "//a//b"}, {"/a/./../b/", "/a/./../b"},
              {"a", nullptr},     {"./a", nullptr},      {"", nullptr},
              {nullptr, nullptr}, {" /a", nullptr}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path != nullptr ? row.path : "NULL");
    char* path = QM_CTX_FormatInputPath(row.path);
    EXPECT_STREQ(row.expected, path);
    g_qmMemFreeFunc(path);
  }
}

TEST_F(SetSearchDir, NullArgumentsGive22) {
  EXPECT_EQ(QM_INVALID, QM_CTX_SetSearchDir(nullptr, "/"));
  EXPECT_EQ(QM_INVALID, QM_CTX_SetSearchDir(ctx_, nullptr));
}

TEST_F(SetSearchDir, RelativePathIsRefusedWith20) {
  EXPECT_EQ(QM_NOT_A_DIRECTORY, Set("."));
  EXPECT_EQ(QM_NOT_A_DIRECTORY, Set(""));
  EXPECT_EQ(0u, ctx_->searchDirCount);
}

TEST_F(SetSearchDir, WhatIsNoDirectoryIsRefusedWith20) {
  std::ofstream(Dir("file")) << "x";
  EXPECT_EQ(QM_NOT_A_DIRECTORY, Set(Dir("file")));
  EXPECT_EQ(QM_NOT_A_DIRECTORY, Set(Dir("absent")));
  EXPECT_EQ(0u, ctx_->searchDirCount);
}

TEST_F(SetSearchDir, DirectoriesStandInTheOrderTheyWereSet) {
  for (const char* sub : {"b", "a", "c"}) EXPECT_EQ(QM_OK, Set(Dir(sub)));
  EXPECT_EQ((Texts{Dir("b"), Dir("a"), Dir("c")}), Table());
}

TEST_F(SetSearchDir, TrailingSlashesNameTheSameEntry) {
  EXPECT_EQ(QM_OK, Set(Dir("a") + "/"));
  EXPECT_EQ(QM_OK, Set(Dir("a")));
  EXPECT_EQ(QM_OK, Set(Dir("a") + "///"));
  EXPECT_EQ(Texts{Dir("a")}, Table());
}

TEST_F(SetSearchDir, RootKeepsItsSlash) {
  EXPECT_EQ(QM_OK, Set("///"));
  EXPECT_EQ(Texts{"/"}, Table());
}

TEST_F(SetSearchDir, TableGrowsOneSlotAtATime) {
  EXPECT_EQ(0u, ctx_->searchDirCap);
  for (uint32_t i = 1; i <= 3; ++i) {
    EXPECT_EQ(QM_OK, Set(Dir(std::string(1, static_cast<char>('a' + i - 1)))));
    EXPECT_EQ(i, ctx_->searchDirCap);
    EXPECT_EQ(i, ctx_->searchDirCount);
  }
}

TEST_F(UnSetSearchDir, RemovesOneAndKeepsTheOrder) {
  for (const char* sub : {"a", "b", "c"}) ASSERT_EQ(QM_OK, Set(Dir(sub)));
  EXPECT_EQ(QM_OK, UnSet(Dir("a") + "/"));
  EXPECT_EQ((Texts{Dir("b"), Dir("c")}), Table());
  EXPECT_EQ(nullptr, ctx_->searchDirs[2]) << "the last slot is cleared";
  EXPECT_EQ(3u, ctx_->searchDirCap);
  EXPECT_EQ(QM_OK, Set(Dir("a")));
  EXPECT_EQ((Texts{Dir("b"), Dir("c"), Dir("a")}), Table());
  EXPECT_EQ(3u, ctx_->searchDirCap) << "the free slot is used";
}

TEST_F(UnSetSearchDir, DirectoryThatWasNotSetGives0) {
  EXPECT_EQ(QM_OK, UnSet(Dir("a")));
  EXPECT_EQ(QM_INVALID, QM_CTX_UnSetSearchDir(nullptr, "/"));
  EXPECT_EQ(QM_NOT_A_DIRECTORY, UnSet("relative"));
}

TEST_F(UnSetSearchDir, VanishedDirectoryGives20AndStays) {
  ASSERT_EQ(QM_OK, Set(Dir("a")));
  fs::remove(Dir("a"));
  EXPECT_EQ(QM_NOT_A_DIRECTORY, UnSet(Dir("a")));
  EXPECT_EQ(Texts{Dir("a")}, Table());
}

TEST_F(UnSetSearchDir, NullRemovesAllAndKeepsTheSlots) {
  ASSERT_EQ(QM_OK, Set(Dir("a")));
  ASSERT_EQ(QM_OK, Set(Dir("b")));
  EXPECT_EQ(QM_OK, QM_CTX_UnSetSearchDir(ctx_, nullptr));
  EXPECT_EQ(0u, ctx_->searchDirCount);
  EXPECT_EQ(2u, ctx_->searchDirCap);
  EXPECT_EQ(nullptr, ctx_->searchDirs[0]);
  EXPECT_EQ(nullptr, ctx_->searchDirs[1]);
  EXPECT_EQ(QM_OK, QM_CTX_UnSetSearchDir(ctx_, nullptr));
  EXPECT_EQ(QM_OK, Set(Dir("c")));
  EXPECT_EQ(Texts{Dir("c")}, Table());
}

TEST_F(SearchDirTable, FindComparesTheWholeText) {
  ASSERT_EQ(QM_OK, Set(Dir("a")));
  ASSERT_EQ(QM_OK, Set(Dir("b")));
  EXPECT_EQ(1, QM_CTX_FindSearchDirInTbl(ctx_, Dir("b").c_str()));
  EXPECT_EQ(-1, QM_CTX_FindSearchDirInTbl(ctx_, (Dir("b") + "/").c_str()));
  EXPECT_EQ(-1, QM_CTX_FindSearchDirInTbl(ctx_, base_.c_str()));
}

TEST_F(SearchDirTable, AppendRefusesASlotThatIsNotEmpty) {
  ASSERT_EQ(QM_OK, Set(Dir("a")));
  ASSERT_EQ(QM_OK, Set(Dir("b")));
  --ctx_->searchDirCount;
  EXPECT_EQ(QM_INVALID, QM_CTX_AppendSearchDirToTbl(ctx_, "/c"));
  ++ctx_->searchDirCount;
  EXPECT_EQ((Texts{Dir("a"), Dir("b")}), Table());
}

TEST_F(SearchDirTable, ClearBeyondTheEndDoesNothing) {
  ASSERT_EQ(QM_OK, Set(Dir("a")));
  QM_CTX_ClearSearchDirAtPos(ctx_, 1);
  EXPECT_EQ(Texts{Dir("a")}, Table());
}

TEST_F(SetSearchDir, MissingMemoryShowsAs20Then12Then22AndChangesNothing) {
  ASSERT_EQ(QM_OK, Set(Dir("a")));
  // Blocks in order: the normalised path, the table, the entry and its text.
  const uint32_t expected[] = {QM_NOT_A_DIRECTORY, QM_NO_MEMORY, QM_INVALID, QM_INVALID};
  for (uint64_t n = 1; n <= 4; ++n) {
    SCOPED_TRACE(n);
    const std::string dir = Dir("b");
    // Growing leaves a free slot behind, which the next attempt would use.
    ctx_->searchDirCap = ctx_->searchDirCount;
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    EXPECT_EQ(expected[n - 1], QM_CTX_SetSearchDir(ctx_, dir.c_str()));
    EXPECT_EQ(1u, counting_memory::StopRefusing());
    EXPECT_EQ(Texts{Dir("a")}, Table());
  }
  EXPECT_EQ(QM_OK, Set(Dir("b")));
  EXPECT_EQ((Texts{Dir("a"), Dir("b")}), Table());
}
