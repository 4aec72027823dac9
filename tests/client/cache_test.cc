// SPDX-License-Identifier: BSD-3-Clause
// The cache of -c. Whether an entry was used, its file tells: a use renews its time, and
// what is compiled again replaces it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "tests/client/run_client.h"

namespace {

using Args = std::vector<std::string>;
namespace fs = std::filesystem;

constexpr time_t kLongAgo = 1000;

// An entry as it was marked: its time set to long ago.
struct Mark {
  std::string path;
  ino_t file = 0;
};

// Models in the folder `models`, the cache in the folder `cache`.
class ClientCache : public testing::Test {
 protected:
  ClientCache() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
    before_ = std::getenv("XDG_CACHE_HOME");
    setenv("XDG_CACHE_HOME", Path("cache").c_str(), 1);
    fs::create_directory(Path("models"));
    Write("models/m.yang",
          "module m { yang-version 1.1; namespace urn:m; prefix m; import n { prefix n; }\n"
          "  feature x; feature y;\n"
          "  leaf first { type n:t; }\n"
          "  leaf lost { if-feature \"x or y\"; type string; } }\n");
    WriteImported("old", "2020-01-01");
  }
  ~ClientCache() override {
    setenv("XDG_CACHE_HOME", before_.c_str(), 1);
    fs::remove_all(path_);
  }

  std::string Path(const std::string& file) const { return path_ + "/" + file; }
  void Write(const std::string& file, const std::string& text) const {
    fs::create_directories(fs::path(Path(file)).parent_path());
    std::ofstream(Path(file), std::ios::binary) << text;
  }
  std::string Read(const std::string& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  // Module n, with a leaf of that name.
  void WriteImported(const std::string& leaf, const std::string& revision,
                     const std::string& file = "models/n.yang") const {
    Write(file, "module n { namespace urn:n; prefix n; revision " + revision +
                    ";\n  typedef t { type string; } grouping g { leaf " + leaf +
                    " { type t; } } container c { uses g; } }\n");
  }
  ClientRun Run(const Args& args, const std::string& dir = "models") const {
    return RunClient(Path(dir), args);
  }
  ClientRun Tree(const Args& more = {}) const {
    Args args = {"tree", "-c", "m", "n"};
    args.insert(args.end(), more.begin(), more.end());
    return Run(args);
  }
  static bool Names(const ClientRun& run, const std::string& leaf) {
    return run.out.find(leaf) != std::string::npos;
  }

  std::set<std::string> Entries() const {
    std::set<std::string> names;
    if (!fs::exists(Path("cache/qmodel"))) return names;
    for (const auto& file : fs::directory_iterator(Path("cache/qmodel")))
      names.insert(file.path().filename().string());
    return names;
  }
  static void SetTime(const std::string& path, time_t seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    EXPECT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0)) << path;
  }
  static struct stat StatusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(0, lstat(path.c_str(), &status)) << path;
    return status;
  }
  // Marks the only entry there is.
  Mark MarkEntry() const {
    const std::set<std::string> names = Entries();
    EXPECT_EQ(1u, names.size());
    if (names.empty()) return {};
    const std::string path = Path("cache/qmodel/" + *names.begin());
    SetTime(path, kLongAgo);
    return {path, StatusOf(path).st_ino};
  }
  static bool WasUsed(const Mark& mark) {
    const struct stat now = StatusOf(mark.path);
    return now.st_ino == mark.file && now.st_mtim.tv_sec != kLongAgo;
  }
  static bool WasReplaced(const Mark& mark) { return StatusOf(mark.path).st_ino != mark.file; }
  static bool WasLeftAlone(const Mark& mark) {
    const struct stat now = StatusOf(mark.path);
    return now.st_ino == mark.file && now.st_mtim.tv_sec == kLongAgo;
  }
  // After a run that filled the cache: what `change` did is seen, and compiled anew.
  template <typename Change>
  void ExpectMissAfter(const Change& change, const std::string& leaf) const {
    EXPECT_TRUE(Names(Tree(), "old"));
    const Mark mark = MarkEntry();
    change();
    EXPECT_TRUE(Names(Tree(), leaf));
    EXPECT_TRUE(WasReplaced(mark));
    const Mark again = MarkEntry();
    EXPECT_TRUE(Names(Tree(), leaf));
    EXPECT_TRUE(WasUsed(again));
  }
  // It is compiled, as without a cache.
  void ExpectCompiled() const {
    const ClientRun run = Tree();
    const ClientRun without = Tree({"--no-cache"});
    EXPECT_EQ(0, run.status);
    EXPECT_TRUE(Names(run, "old")) << run.err;
    EXPECT_EQ(without.out, run.out);
    EXPECT_EQ(without.err, run.err);
  }

 private:
  std::string path_;
  std::string before_;
};

TEST_F(ClientCache, ASecondRunUsesWhatTheFirstKept) {
  const ClientRun first = Tree();
  const Mark mark = MarkEntry();
  const ClientRun second = Tree();
  EXPECT_TRUE(WasUsed(mark));
  EXPECT_EQ(0, second.status);
  EXPECT_TRUE(Names(second, "old"));
  EXPECT_EQ(first.out, second.out);
}

TEST_F(ClientCache, WhatWasLostIsSaidAgain) {
  const ClientRun first = Tree();
  EXPECT_NE(std::string::npos, first.err.find("./m.yang:4: ")) << first.err;
  const Mark mark = MarkEntry();
  EXPECT_EQ(first.err, Tree().err);
  EXPECT_TRUE(WasUsed(mark));
}

TEST_F(ClientCache, LoadErrorsNameTheOriginalFile) {
  Write("bad/b.yang",
        "module b { namespace urn:b; prefix b;\n"
        "  container c { leaf l { type decimal64 { fraction-digits 30; } } } }\n");
  const Args args = {"load", "-c", "b"};
  const ClientRun first = Run(args, "bad");
  const Mark mark = MarkEntry();
  const ClientRun second = Run(args, "bad");
  EXPECT_TRUE(WasUsed(mark));
  EXPECT_EQ(3, second.status);
  EXPECT_NE(std::string::npos, second.err.find("b: ./b.yang: ")) << second.err;
  EXPECT_EQ(first.err, second.err);
}

TEST_F(ClientCache, WhatCannotBeCompiledIsNotKept) {
  Write("bad/b.yang", "module b { namespace urn:b; prefix b; container c { uses none; } }\n");
  for (int i = 0; i < 2; ++i) {
    const ClientRun run = Run({"load", "-c", "b"}, "bad");
    EXPECT_EQ(3, run.status);
    EXPECT_EQ(0u, run.err.find("./b.yang:1: ")) << run.err;
  }
  EXPECT_TRUE(Entries().empty());
}

TEST_F(ClientCache, AChangedFileIsCompiledAgain) {
  ExpectMissAfter([this] { WriteImported("new", "2020-01-01"); }, "new");
}

// Neither size nor time tells the two apart.
TEST_F(ClientCache, AChangeThatLeavesSizeAndTimeIsSeen) {
  SetTime(Path("models/n.yang"), kLongAgo);
  ExpectMissAfter(
      [this] {
        WriteImported("new", "2020-01-01");
        SetTime(Path("models/n.yang"), kLongAgo);
      },
      "new");
}

TEST_F(ClientCache, ANewerRevisionInTheFolderIsFound) {
  ExpectMissAfter([this] { WriteImported("new", "2021-01-01", "models/n@2021-01-01.yang"); },
                  "new");
}

TEST_F(ClientCache, ARevisionThatWasReadAndNotTakenCounts) {
  WriteImported("other", "2019-01-01", "models/n@2019-01-01.yang");
  ExpectMissAfter([this] { WriteImported("new", "2021-01-01", "models/n@2019-01-01.yang"); },
                  "new");
}

TEST_F(ClientCache, AFileThatIsGoneIsNotLoaded) {
  WriteImported("new", "2019-01-01", "models/n@2019-01-01.yang");
  ExpectMissAfter([this] { fs::remove(Path("models/n.yang")); }, "new");
  fs::remove(Path("models/n@2019-01-01.yang"));
  EXPECT_EQ(3, Tree().status);
}

TEST_F(ClientCache, OptionsAndOperandsHaveEntriesOfTheirOwn) {
  WriteImported("new", "2021-01-01", "models/sub/n.yang");
  EXPECT_TRUE(Names(Tree(), "old"));
  EXPECT_TRUE(Names(Tree({"-p", "sub", "-p", "."}), "new"));
  EXPECT_TRUE(Names(Tree({"-p", "."}), "old"));
  EXPECT_EQ(2u, Entries().size());  // "." is searched when nothing is named
  EXPECT_TRUE(Names(Tree({"-r"}), "new"));
  EXPECT_TRUE(Names(Run({"tree", "-c", "n"}), "old"));
  EXPECT_TRUE(Names(Run({"tree", "-c", "sub/n.yang"}), "new"));
  EXPECT_EQ(5u, Entries().size());
  EXPECT_TRUE(Names(Tree(), "old"));
  EXPECT_EQ(5u, Entries().size());
}

TEST_F(ClientCache, EqualNamesInOtherFoldersAreOtherModels) {
  WriteImported("new", "2020-01-01", "other/n.yang");
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(Names(Run({"tree", "-c", "./n.yang"}), "old"));
    EXPECT_TRUE(Names(Run({"tree", "-c", "./n.yang"}, "other"), "new"));
  }
  EXPECT_EQ(2u, Entries().size());
}

TEST_F(ClientCache, AbsoluteNamesMeanTheSameEverywhere) {
  const Args args = {"tree", "-c", "-p", Path("models"), "n"};
  EXPECT_TRUE(Names(Run(args), "old"));
  const Mark mark = MarkEntry();
  EXPECT_TRUE(Names(Run(args, "."), "old"));
  EXPECT_TRUE(WasUsed(mark));
}

TEST_F(ClientCache, APipeIsReadOnceAndNotKept) {
  const std::string command = "cat n.yang | " QMODEL_CLIENT " tree -c /dev/stdin";
  for (int i = 0; i < 2; ++i) {
    const ClientRun run = RunProgram("/bin/sh", Path("models"), {"-c", command});
    EXPECT_TRUE(Names(run, "old")) << run.err;
  }
  EXPECT_TRUE(Entries().empty());
}

TEST_F(ClientCache, TheFolderIsItsOwnersAlone) {
  EXPECT_TRUE(Names(Tree(), "old"));
  const struct stat folder = StatusOf(Path("cache/qmodel"));
  EXPECT_TRUE(S_ISDIR(folder.st_mode));
  EXPECT_EQ(0700u, folder.st_mode & 0777u);
  EXPECT_EQ(0600u, StatusOf(MarkEntry().path).st_mode & 0777u);
}

TEST_F(ClientCache, AFolderThatOthersCanEnterIsNotUsed) {
  for (const mode_t mode : {0755u, 0770u, 0701u}) {
    fs::create_directories(Path("cache/qmodel"));
    ASSERT_EQ(0, chmod(Path("cache/qmodel").c_str(), mode));
    ExpectCompiled();
    EXPECT_TRUE(Entries().empty());
  }
}

TEST_F(ClientCache, AnEntryInAFolderThatOthersCanEnterIsNotUsed) {
  EXPECT_TRUE(Names(Tree(), "old"));
  const Mark mark = MarkEntry();
  ASSERT_EQ(0, chmod(Path("cache/qmodel").c_str(), 0777));
  ExpectCompiled();
  EXPECT_TRUE(WasLeftAlone(mark));
}

TEST_F(ClientCache, AFolderOfAnotherOwnerIsNotUsed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  EXPECT_TRUE(Names(Tree(), "old"));
  const Mark mark = MarkEntry();
  ASSERT_EQ(0, chown(Path("cache/qmodel").c_str(), 65534, 65534));
  ExpectCompiled();
  EXPECT_TRUE(WasLeftAlone(mark));
}

TEST_F(ClientCache, ALinkToAFolderIsNotFollowed) {
  fs::create_directories(Path("cache"));
  fs::create_directories(Path("elsewhere"));
  ASSERT_EQ(0, chmod(Path("elsewhere").c_str(), 0700));
  fs::create_directory_symlink(Path("elsewhere"), Path("cache/qmodel"));
  ExpectCompiled();
  EXPECT_TRUE(fs::is_empty(Path("elsewhere")));
}

TEST_F(ClientCache, ALinkToAnEntryIsNotFollowed) {
  EXPECT_TRUE(Names(Tree(), "old"));
  const Mark mark = MarkEntry();
  fs::rename(mark.path, Path("elsewhere"));
  SetTime(Path("elsewhere"), kLongAgo);
  fs::create_symlink(Path("elsewhere"), mark.path);
  ExpectCompiled();
  EXPECT_TRUE(WasLeftAlone({Path("elsewhere"), mark.file}));
  EXPECT_TRUE(S_ISREG(StatusOf(mark.path).st_mode));
}

TEST_F(ClientCache, WithoutAFolderItIsCompiled) {
  Write("cache", "a file");
  ExpectCompiled();
  fs::remove(Path("cache"));
  Write("cache/qmodel", "a file");
  ExpectCompiled();
  setenv("XDG_CACHE_HOME", Path("no/such").c_str(), 1);
  ExpectCompiled();
  EXPECT_FALSE(fs::exists(Path("no")));
}

TEST_F(ClientCache, StandsInTheHomeFolderWhenNoOtherIsNamed) {
  const char* home = std::getenv("HOME");
  const std::string before = home == nullptr ? "" : home;
  fs::create_directory(Path("home"));
  setenv("HOME", Path("home").c_str(), 1);
  for (const char* unset : {"", "relative"}) {
    fs::remove_all(Path("home/.cache"));
    setenv("XDG_CACHE_HOME", unset, 1);
    ExpectCompiled();
    EXPECT_TRUE(fs::exists(Path("home/.cache/qmodel"))) << unset;
    EXPECT_FALSE(fs::exists(Path("models/relative")));
  }
  fs::remove_all(Path("home/.cache"));
  unsetenv("XDG_CACHE_HOME");
  ExpectCompiled();
  EXPECT_TRUE(fs::exists(Path("home/.cache/qmodel")));
  unsetenv("HOME");
  ExpectCompiled();
  if (home != nullptr) setenv("HOME", before.c_str(), 1);
}

TEST_F(ClientCache, NoCacheNeitherUsesNorKeeps) {
  EXPECT_TRUE(Names(Tree({"--no-cache"}), "old"));
  EXPECT_FALSE(fs::exists(Path("cache")));
  EXPECT_TRUE(Names(Tree(), "old"));
  const Mark mark = MarkEntry();
  EXPECT_TRUE(Names(Tree({"--no-cache"}), "old"));
  EXPECT_TRUE(WasLeftAlone(mark));
}

TEST_F(ClientCache, NoCacheGoesWithCompilingBeforeALoad) {
  const ClientRun load = Run({"load", "--no-cache", "n"});
  EXPECT_EQ(2, load.status);
  EXPECT_EQ("qmodel: option '--no-cache' goes with '-c'\n", load.err);
  const ClientRun compile = Run({"compile", "--no-cache", "n"});
  EXPECT_EQ(2, compile.status);
  EXPECT_EQ("qmodel: 'compile' takes no option '--no-cache'\n", compile.err);
}

TEST_F(ClientCache, ADamagedEntryIsReplaced) {
  EXPECT_TRUE(Names(Tree(), "old"));
  const std::string content = Read(MarkEntry().path);
  std::vector<std::string> damaged = {"", "x", content + "x", std::string(content.size(), '\xff')};
  for (size_t part = 0; part < 8; ++part) {
    damaged.push_back(content.substr(0, content.size() * part / 8));
    damaged.push_back(content);
    damaged.back()[content.size() * part / 8] ^= 0x10;
  }
  for (size_t i = 0; i < damaged.size(); ++i) {
    const Mark mark = MarkEntry();
    std::ofstream(mark.path, std::ios::binary) << damaged[i];
    ExpectCompiled();
    EXPECT_TRUE(WasReplaced(mark)) << i;
    EXPECT_EQ(content, Read(mark.path)) << i;
  }
}

TEST_F(ClientCache, ManyProcessesMayFillItAtOnce) {
  const ClientRun expected = Tree({"--no-cache"});
  constexpr size_t kProcesses = 8;
  std::vector<ClientRun> runs(kProcesses);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < kProcesses; ++i) {
    threads.emplace_back([this, i, &runs] {
      runs[i] = i % 2 == 0 ? Tree() : Run({"tree", "-c", "n"});
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (size_t i = 0; i < kProcesses; ++i) {
    EXPECT_EQ(0, runs[i].status) << runs[i].err;
    EXPECT_TRUE(Names(runs[i], "old"));
    if (i % 2 == 0) {
      EXPECT_EQ(expected.out, runs[i].out);
    }
  }
  EXPECT_EQ(2u, Entries().size());
}

// No file may become longer than some kilobytes, as on a disk that is full: what is loaded
// fits, the entry does not.
TEST_F(ClientCache, AnEntryThatCannotBeWrittenLeavesNothing) {
  Write("models/large.yang",
        "module large { namespace urn:l; prefix l; leaf old { type string; } }" +
            std::string(100000, ' '));
  const std::string command = "trap '' XFSZ; ulimit -f 16; " QMODEL_CLIENT " tree -c large";
  for (int i = 0; i < 2; ++i) {
    const ClientRun run = RunProgram("/bin/sh", Path("models"), {"-c", command});
    EXPECT_EQ(0, run.status) << run.err;
    EXPECT_TRUE(Names(run, "old"));
    EXPECT_EQ("", run.err);
    EXPECT_TRUE(Entries().empty());
  }
}

TEST_F(ClientCache, AFolderInAnEntrysPlaceIsLeftAlone) {
  EXPECT_TRUE(Names(Tree(), "old"));
  const Mark mark = MarkEntry();
  fs::remove(mark.path);
  fs::create_directory(mark.path);
  Write("cache/qmodel/" + fs::path(mark.path).filename().string() + "/kept", "x");
  ExpectCompiled();
  EXPECT_TRUE(fs::exists(mark.path + "/kept"));
  EXPECT_EQ(1u, Entries().size());
}

// Whenever it is killed, an entry is there whole or not at all.
TEST_F(ClientCache, AProcessThatIsKilledDoesNoHarm) {
  fs::create_directory(Path("tmp"));
  for (int i = 0; i < 24; ++i) {
    const std::string command = "TMPDIR='" + Path("tmp") + "' timeout -s KILL 0.0" +
                                std::to_string(10 + i) + " " QMODEL_CLIENT " tree -c m n";
    static_cast<void>(RunProgram("/bin/sh", Path("models"), {"-c", command}));
    ExpectCompiled();
    if (i % 4 != 0) fs::remove_all(Path("cache"));
  }
}

// Files without content, but with a size.
TEST_F(ClientCache, TheOldestUseGoesFirstWhenItIsFull) {
  EXPECT_TRUE(Names(Tree(), "old"));
  const Mark kept = MarkEntry();
  const std::string folder = "cache/qmodel/";
  const std::vector<std::string> names = {"00000000000000aa", "00000000000000bb.new",
                                          "00000000000000cc", "00000000000000dd", "foreign"};
  const std::vector<time_t> times = {4000, 2000, 3000, 5000, 1};
  for (size_t i = 0; i < names.size(); ++i) {
    Write(folder + names[i], "");
    fs::resize_file(Path(folder + names[i]), 100u << 20);
    SetTime(Path(folder + names[i]), times[i]);
  }
  EXPECT_TRUE(Names(Tree(), "old"));  // a use, which frees nothing
  EXPECT_TRUE(WasUsed(kept));
  EXPECT_EQ(6u, Entries().size());
  EXPECT_TRUE(Names(Run({"tree", "-c", "n"}), "old"));
  const std::set<std::string> left = Entries();
  EXPECT_EQ(0u, left.count("00000000000000bb.new"));
  EXPECT_EQ(0u, left.count("00000000000000cc"));
  EXPECT_EQ(1u, left.count("00000000000000aa"));
  EXPECT_EQ(1u, left.count("00000000000000dd"));
  EXPECT_EQ(1u, left.count("foreign"));
  EXPECT_EQ(1u, left.count(fs::path(kept.path).filename().string()));
  EXPECT_EQ(5u, left.size());
}

}  // namespace
