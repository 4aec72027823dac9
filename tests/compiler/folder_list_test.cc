// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/folder_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace compiler {
namespace {

namespace fs = std::filesystem;

class ListFilesTest : public testing::Test {
 protected:
  ListFilesTest() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
    fs::create_directories(path_ + "/sub/deeper");
    for (const char* file : {"/b", "/a", "/sub/c", "/sub/deeper/d"}) std::ofstream(path_ + file);
    fs::create_symlink(path_ + "/b", path_ + "/link");
    fs::create_symlink(path_ + "/gone", path_ + "/broken");
    fs::create_directory_symlink(path_, path_ + "/sub/circle");
  }
  ~ListFilesTest() override { fs::remove_all(path_); }

  std::vector<std::string> List(const std::string& folder, bool recursive) const {
    std::vector<std::string> paths;
    EXPECT_TRUE(ListFiles(folder, recursive, &paths));
    for (std::string& path : paths) {
      EXPECT_EQ(path.substr(0, path_.size()), path_);
      path = path.substr(path_.size());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  std::string path_;
};

TEST_F(ListFilesTest, GivesFilesAndLinksToFiles) {
  EXPECT_EQ(List(path_, false), (std::vector<std::string>{"/a", "/b", "/link"}));
  EXPECT_EQ(List(path_ + "/", false), (std::vector<std::string>{"/a", "/b", "/link"}));
}

TEST_F(ListFilesTest, GoesIntoSubFoldersButNotThroughLinks) {
  EXPECT_EQ(List(path_, true),
            (std::vector<std::string>{"/a", "/b", "/link", "/sub/c", "/sub/deeper/d"}));
}

TEST_F(ListFilesTest, RefusesWhatIsNoFolder) {
  std::vector<std::string> paths;
  EXPECT_FALSE(ListFiles(path_ + "/gone", false, &paths));
  EXPECT_FALSE(ListFiles(path_ + "/a", true, &paths));
  EXPECT_TRUE(paths.empty());
}

}  // namespace
}  // namespace compiler
