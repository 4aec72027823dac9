// SPDX-License-Identifier: BSD-3-Clause
#include "platform/file.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/support/counting_memory.h"

namespace {

namespace fs = std::filesystem;

class File : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "qmodel_file_XXXXXX").string();
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    dir_ = name;
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string Path(const std::string& name) const { return dir_ + "/" + name; }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name)) << text;
  }
  static std::set<std::string> Search(const std::string& pattern, uint32_t nameSize = 256) {
    std::vector<char> name(nameSize);
    std::set<std::string> found;
    RtkVfsFind* find = RTK_VFS_FindFirst(pattern.c_str(), name.data(), nameSize);
    if (find == nullptr) return found;
    do {
      found.insert(name.data());
    } while (RTK_VFS_FindNext(find, name.data(), nameSize) == 0);
    EXPECT_EQ(QM_NOT_FOUND, RTK_VFS_FindNext(find, name.data(), nameSize))
        << "the end stays the end";
    RTK_VFS_FindClose(find);
    return found;
  }

  std::string dir_;
};

using Names = std::set<std::string>;

}  // namespace

TEST_F(File, SizeIsFoundBySeekingAndTheTextIsRead) {
  Write("m.yin", "hello");
  RtkVfsFile* file = RTK_VFS_FOpen(Path("m.yin").c_str(), "r");
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(QM_OK, RTK_VFS_SetBufMode(file, 1));
  EXPECT_EQ(0, RTK_VFS_FSeek(file, 0, 2));
  EXPECT_EQ(5, RTK_VFS_FTell(file));
  EXPECT_EQ(0, RTK_VFS_FSeek(file, 0, 0));
  char text[6] = "";
  EXPECT_EQ(1u, RTK_VFS_FRead(text, 5, 1, file));
  EXPECT_STREQ("hello", text);
  EXPECT_EQ(0u, RTK_VFS_FRead(text, 5, 1, file));
  EXPECT_EQ(0, RTK_VFS_FSeek(file, 1, 0));
  EXPECT_EQ(0, RTK_VFS_FSeek(file, 2, 1));
  EXPECT_EQ(3, RTK_VFS_FTell(file));
  EXPECT_EQ(0, RTK_VFS_FClose(file));
}

TEST_F(File, UnknownModesAndOriginsAreRefused) {
  Write("m.yin", "hello");
  RtkVfsFile* file = RTK_VFS_FOpen(Path("m.yin").c_str(), "r");
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(QM_INVALID, RTK_VFS_SetBufMode(file, 3));
  EXPECT_EQ(-1, RTK_VFS_FSeek(file, 0, 3));
  EXPECT_EQ(-1, RTK_VFS_FSeek(file, 0, -1));
  EXPECT_EQ(-1, RTK_VFS_FSeek(file, -1, 0));
  RTK_VFS_FClose(file);
}

TEST_F(File, OpenOfWhatIsNotThereGivesNull) {
  EXPECT_EQ(nullptr, RTK_VFS_FOpen(Path("absent").c_str(), "r"));
  EXPECT_EQ(nullptr, RTK_VFS_FOpen(nullptr, "r"));
  EXPECT_EQ(nullptr, RTK_VFS_FOpen("x", nullptr));
}

TEST_F(File, OpenOfWhatIsNoRegularFileGivesNullAtOnce) {
  ASSERT_EQ(0, mkfifo(Path("fifo.yin").c_str(), 0600));
  fs::create_symlink(Path("fifo.yin"), Path("link.yin"));
  fs::create_directory(Path("d.yin"));
  alarm(10);  // a call that waits for a writer ends the test
  for (const std::string& path : {Path("fifo.yin"), Path("link.yin"), Path("d.yin"), dir_,
                                  std::string("/dev/null"), std::string("/dev/zero")}) {
    EXPECT_EQ(nullptr, RTK_VFS_FOpen(path.c_str(), "r")) << path;
  }
  alarm(0);
}

TEST_F(File, OpenFollowsALinkToARegularFile) {
  Write("m.yin", "hello");
  fs::create_symlink(Path("m.yin"), Path("link.yin"));
  RtkVfsFile* file = RTK_VFS_FOpen(Path("link.yin").c_str(), "r");
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(0, RTK_VFS_FClose(file));
}

TEST_F(File, OpenIsForReadingOnly) {
  Write("m.yin", "hello");
  for (const char* mode : {"w", "a", "r+", "", "x"}) {
    EXPECT_EQ(nullptr, RTK_VFS_FOpen(Path("m.yin").c_str(), mode)) << mode;
  }
  EXPECT_EQ(5u, fs::file_size(Path("m.yin")));
}

TEST_F(File, NullHandleGivesTheFailureValue) {
  char c = 0;
  EXPECT_EQ(QM_INVALID, RTK_VFS_SetBufMode(nullptr, 1));
  EXPECT_EQ(-1, RTK_VFS_FSeek(nullptr, 0, 0));
  EXPECT_EQ(-1, RTK_VFS_FTell(nullptr));
  EXPECT_EQ(0u, RTK_VFS_FRead(&c, 1, 1, nullptr));
  EXPECT_EQ(-1, RTK_VFS_FClose(nullptr));
  EXPECT_EQ(QM_INVALID, RTK_VFS_FindNext(nullptr, &c, 1));
  Write("m.yin", "hello");
  RtkVfsFile* file = RTK_VFS_FOpen(Path("m.yin").c_str(), "r");
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(0u, RTK_VFS_FRead(nullptr, 1, 1, file));
  EXPECT_EQ(0, RTK_VFS_FClose(file));
  char name[8] = "";
  RtkVfsFind* find = RTK_VFS_FindFirst(Path("*").c_str(), name, sizeof name);
  ASSERT_NE(nullptr, find);
  EXPECT_EQ(QM_INVALID, RTK_VFS_FindNext(find, nullptr, 8));
  RTK_VFS_FindClose(find);
  EXPECT_EQ(nullptr, RTK_VFS_FindFirst(nullptr, &c, 1));
  RTK_VFS_FindClose(nullptr);
}

TEST_F(File, IsFileExistAcceptsRegularFilesOnly) {
  Write("m.yin", "x");
  fs::create_directory(Path("d.yin"));
  fs::create_symlink(Path("m.yin"), Path("link.yin"));
  fs::create_symlink(Path("d.yin"), Path("dirlink.yin"));
  fs::create_symlink(Path("absent"), Path("broken.yin"));
  ASSERT_EQ(0, mkfifo(Path("fifo.yin").c_str(), 0600));
  EXPECT_EQ(1u, RTK_VFS_IsFileExist(Path("m.yin").c_str()));
  EXPECT_EQ(1u, RTK_VFS_IsFileExist(Path("link.yin").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsFileExist(Path("d.yin").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsFileExist(Path("dirlink.yin").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsFileExist(Path("broken.yin").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsFileExist(Path("fifo.yin").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsFileExist(Path("absent").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsFileExist(nullptr));
}

TEST_F(File, IsDirExistAcceptsDirectoriesOnly) {
  Write("m.yin", "x");
  fs::create_symlink(dir_, Path("link"));
  EXPECT_EQ(1u, RTK_VFS_IsDirExist(dir_.c_str()));
  EXPECT_EQ(1u, RTK_VFS_IsDirExist(Path("link").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsDirExist(Path("m.yin").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsDirExist(Path("absent").c_str()));
  EXPECT_EQ(0u, RTK_VFS_IsDirExist(nullptr));
}

TEST_F(File, SearchListsTheNamesThatMatchWhateverTheyName) {
  for (const char* name : {"m@2020-01-01.yin", "m@@x.yin", "m.yin", "mm@1.yin", "m@1.yang"}) {
    Write(name, "");
  }
  fs::create_directory(Path("m@dir.yin"));
  EXPECT_EQ((Names{"m@2020-01-01.yin", "m@@x.yin", "m@dir.yin"}), Search(Path("m@*.yin")));
  EXPECT_EQ((Names{"m.yin"}), Search(Path("m.yin")));
  EXPECT_EQ((Names{"m@1.yang"}), Search(Path("m@?.*")));
}

TEST_F(File, SearchStaysInOneDirectory) {
  fs::create_directory(Path("sub"));
  Write("sub/m@1.yin", "");
  EXPECT_EQ(Names{}, Search(Path("m@*.yin")));
  EXPECT_EQ(Names{}, Search(Path("*/m@1.yin"))) << "wildcards before the last slash are none";
}

TEST_F(File, SearchWithoutMatchOrDirectoryGivesNull) {
  char name[256];
  EXPECT_EQ(nullptr, RTK_VFS_FindFirst(Path("m@*.yin").c_str(), name, sizeof name));
  EXPECT_EQ(nullptr, RTK_VFS_FindFirst("/no/such/place/*", name, sizeof name));
}

TEST_F(File, SearchPassesOverNamesThatDoNotFit) {
  Write("m@1.yin", "");
  Write("m@1234567890.yin", "");
  EXPECT_EQ((Names{"m@1.yin"}), Search(Path("m@*.yin"), 8));
  EXPECT_EQ(Names{}, Search(Path("m@*.yin"), 7));
}

TEST_F(File, BackslashInAPatternIsAnOrdinaryCharacter) {
  Write("m\\@1.yin", "");
  EXPECT_EQ((Names{"m\\@1.yin"}), Search(Path("m\\@*.yin")));
}

TEST_F(File, SearchInTheRootAndInTheCurrentDirectory) {
  EXPECT_EQ(1u, Search("/us?").count("usr"));
  Write("here.yin", "");
  const fs::path before = fs::current_path();
  fs::current_path(dir_);
  EXPECT_EQ((Names{"here.yin"}), Search("here.*"));
  fs::current_path(before);
}

TEST_F(File, RefusedAllocationGivesNullAndLeaksNothing) {
  Write("m@1.yin", "x");
  static std::string path;
  static std::string pattern;
  path = Path("m@1.yin");
  pattern = Path("m@*.yin");
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    char name[256];
    RtkVfsFile* file = RTK_VFS_FOpen(path.c_str(), "r");
    EXPECT_TRUE(file != nullptr || refusing);
    if (file != nullptr) {
      EXPECT_EQ(0, RTK_VFS_FClose(file));
    }
    RtkVfsFind* find = RTK_VFS_FindFirst(pattern.c_str(), name, sizeof name);
    EXPECT_TRUE(find != nullptr || refusing);
    RTK_VFS_FindClose(find);
  });
  // One for the file; handle, glob and directory path of the search.
  EXPECT_GE(injected, 8u);
}
