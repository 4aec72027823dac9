// SPDX-License-Identifier: BSD-3-Clause
// What calls of the client do when memory is refused to the compiler, to libxml2 or to
// themselves: they say so, and leave no block, no part of a file, no folder behind.
#include <fcntl.h>
#include <getopt.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/compiler/refusal/refused_memory.h"

int ClientMain(int argc, char** argv);

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

std::string ContentOf(const fs::path& path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

Files FilesIn(const fs::path& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    files[entry.path().lexically_relative(folder)] =
        entry.is_directory() ? "/" : ContentOf(entry.path());
  }
  return files;
}

// Puts a file in the place of a stream's descriptor, as long as it lives.
class Redirection {
 public:
  Redirection(std::FILE* stream, const fs::path& path)
      : stream_(stream), number_(fileno(stream)), before_(dup(number_)) {
    std::fflush(stream_);
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    EXPECT_LE(0, dup2(file, number_));
    close(file);
  }
  ~Redirection() {
    std::fflush(stream_);
    EXPECT_LE(0, dup2(before_, number_));
    close(before_);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

 private:
  std::FILE* stream_;
  int number_;
  int before_;
};

class ClientRefusal : public testing::TestWithParam<bool> {
 protected:
  ClientRefusal() {
    std::string path = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path.data()));
    folder_ = path;
    for (const char* name : {"models", "temporary", "caches", "output"})
      fs::create_directory(folder_ / name);
    EXPECT_EQ(0, setenv("TMPDIR", (folder_ / "temporary").c_str(), 1));
    EXPECT_EQ(0, setenv("XDG_CACHE_HOME", (folder_ / "caches").c_str(), 1));
    std::ofstream(folder_ / "models/m.yang")
        << "module m { namespace urn:m; prefix m; import n { prefix n; }\n"
           "  container c { uses n:g; leaf b { if-feature f; type n:t; must '../a'; } }\n"
           "  feature f; leaf w { type int8 { range 5..1; } } }\n";
    std::ofstream(folder_ / "models/n.yang")
        << "module n { namespace urn:n; prefix n; typedef t { type int8 { range 1..5; } }\n"
           "  grouping g { leaf a { type t; } } }\n";
  }
  ~ClientRefusal() override {
    EXPECT_EQ(0, unsetenv("TMPDIR"));
    fs::remove_all(folder_);
  }

  std::string Models() const { return folder_ / "models"; }
  std::string Output() const { return folder_ / "output"; }

  // What it printed, its status first.
  RunOutcome Call(const std::vector<std::string>& words) const {
    std::vector<std::string> arguments = words;
    arguments.insert(arguments.begin(), "qmodel");
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    int status = 0;
    optind = 0;  // getopt_long() begins anew
    {
      const Redirection output(stdout, folder_ / "stdout");
      const Redirection errors(stderr, folder_ / "stderr");
      const Watch watch;
      status = ClientMain(static_cast<int>(arguments.size()), argv.data());
    }
    const std::string errors = ContentOf(folder_ / "stderr");
    RunOutcome outcome;
    outcome.refused = status == 3 && !errors.empty();
    outcome.result = std::to_string(status) + "\n" + ContentOf(folder_ / "stdout") + errors;
    return outcome;
  }

  // Calls with each allocation refused. Nothing is left but whole files in the folders
  // for output and for what is kept.
  void RefuseCall(const std::vector<std::string>& words, bool keepsCache) const {
    Files whole;
    const auto call = [&] {
      fs::remove_all(Output());
      if (!keepsCache) fs::remove_all(folder_ / "caches/qmodel");
      const RunOutcome outcome = Call(words);
      EXPECT_TRUE(fs::is_empty(folder_ / "temporary"));
      Files files;
      for (const char* name : {"output", "caches"}) {
        if (fs::exists(folder_ / name)) files.merge(FilesIn(folder_ / name));
      }
      if (whole.empty()) whole = files;
      for (const auto& [name, content] : files) {
        EXPECT_EQ(1U, whole.count(name)) << name << " is left";
        EXPECT_TRUE(whole[name] == content) << name << " is not whole";
      }
      return outcome;
    };
    RefuseEach(call, GetParam());
  }

 private:
  fs::path folder_;
};

INSTANTIATE_TEST_SUITE_P(OnceAndForGood, ClientRefusal, testing::Bool());

TEST_P(ClientRefusal, OfCompileLeavesWholeFilesAlone) {
  RefuseCall({"compile", "-i", "-p", Models(), "-o", Output() + "/in", "m"}, false);
}

TEST_P(ClientRefusal, OfConvertIsSaid) {
  RefuseCall({"compile", "--convert", "-p", Models(), Models() + "/m.yang"}, false);
}

TEST_P(ClientRefusal, OfLintIsSaid) {
  RefuseCall({"lint", "-p", Models(), "m"}, false);
}

TEST_P(ClientRefusal, OfAFirstLoadLeavesWholeEntriesAlone) {
  RefuseCall({"load", "-c", "-p", Models(), "-i", "n"}, false);
}

TEST_P(ClientRefusal, OfALoadOfWhatIsKeptIsSaid) {
  Call({"load", "-c", "-p", Models(), "-i", "n"});
  RefuseCall({"load", "-c", "-p", Models(), "-i", "n"}, true);
}

}  // namespace
