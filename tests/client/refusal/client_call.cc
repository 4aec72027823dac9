// SPDX-License-Identifier: BSD-3-Clause
#include "tests/client/refusal/client_call.h"

#include <getopt.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "client/memory_watch.h"
#include "tests/compiler/refusal/refused_memory.h"

int ClientMain(int argc, char** argv);

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

constexpr char kNoMemory[] = "qmodel: out of memory\n";

std::string ContentOf(const fs::path& path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

Files FilesIn(const fs::path& folder) {
  Files files;
  if (!fs::exists(folder)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    files[entry.path().lexically_relative(folder.parent_path())] =
        entry.is_directory() ? "/" : ContentOf(entry.path());
  }
  return files;
}

// Takes what is written to a stream, as long as it lives.
class Capture {
 public:
  Capture(std::FILE* stream, std::string* text)
      : stream_(stream), text_(text), number_(fileno(stream)), before_(dup(number_)) {
    std::fflush(stream_);
    file_ = memfd_create("capture", MFD_CLOEXEC);
    EXPECT_LE(0, dup2(file_, number_));
  }
  ~Capture() {
    std::fflush(stream_);
    EXPECT_LE(0, dup2(before_, number_));
    close(before_);
    text_->resize(static_cast<size_t>(lseek(file_, 0, SEEK_END)));
    EXPECT_EQ(static_cast<ssize_t>(text_->size()), pread(file_, text_->data(), text_->size(), 0));
    close(file_);
  }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

 private:
  std::FILE* stream_;
  std::string* text_;
  int number_;
  int before_;
  int file_ = -1;
};

// All that calls have written is whole: as the first, undisturbed one left it.
void ExpectWhole(const ClientFolder& folder, Files* whole) {
  EXPECT_TRUE(fs::is_empty(folder.In("temporary")));
  Files files = FilesIn(folder.In("output"));
  files.merge(FilesIn(folder.In("caches")));
  if (whole->empty()) *whole = files;
  for (const auto& [name, content] : files) {
    EXPECT_EQ(1U, whole->count(name)) << name << " is left";
    EXPECT_TRUE((*whole)[name] == content) << name << " is not whole";
  }
}

void Clear(const ClientFolder& folder, Between between) {
  if (between == Between::kNothing) return;
  fs::remove_all(folder.In("output"));
  if (between == Between::kEmptyAll) fs::remove_all(folder.In("caches", "qmodel"));
}

}  // namespace

ClientFolder::ClientFolder() {
  WatchMemory();
  std::string path = testing::TempDir() + "qmodel-test-XXXXXX";
  EXPECT_NE(nullptr, mkdtemp(path.data()));
  path_ = path;
  for (const char* name : {"models", "temporary", "caches", "output"})
    fs::create_directory(path_ / name);
  EXPECT_EQ(0, setenv("TMPDIR", In("temporary").c_str(), 1));
  EXPECT_EQ(0, setenv("XDG_CACHE_HOME", In("caches").c_str(), 1));
}

ClientFolder::~ClientFolder() {
  EXPECT_EQ(0, unsetenv("TMPDIR"));
  fs::remove_all(path_);
}

std::string ClientFolder::In(const std::string& folder, const std::string& name) const {
  return name.empty() ? path_ / folder : path_ / folder / name;
}

void ClientFolder::MakeFolder(const std::string& folder, const std::string& name) const {
  EXPECT_TRUE(fs::create_directory(In(folder, name)));
}

void ClientFolder::Write(const std::string& folder, const std::string& name,
                         const std::string& text) const {
  std::ofstream(In(folder, name)) << text;
}

CallOutcome Call(const std::vector<std::string>& words) {
  std::vector<std::string> arguments = words;
  arguments.insert(arguments.begin(), "qmodel");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  CallOutcome outcome;
  optind = 0;  // getopt_long() begins anew
  {
    const Capture output(stdout, &outcome.output);
    const Capture errors(stderr, &outcome.errors);
    const Watch watch;
    outcome.status = ClientMain(static_cast<int>(arguments.size()), argv.data());
  }
  return outcome;
}

void RefuseCall(const ClientFolder& folder, const std::vector<std::string>& words, Between between,
                bool forGood) {
  Files whole;
  std::string undisturbed;
  bool isFirst = true;
  const auto call = [&] {
    Clear(folder, between);
    const CallOutcome made = Call(words);
    if (isFirst) undisturbed = made.output;
    if (isFirst || between != Between::kNothing) ExpectWhole(folder, &whole);
    isFirst = false;
    RunOutcome outcome;
    outcome.refused = made.status == 3 && made.errors.ends_with(kNoMemory);
    outcome.result = std::to_string(made.status) + "\n" + made.output + made.errors;
    EXPECT_TRUE(undisturbed.starts_with(made.output)) << made.output;
    return outcome;
  };
  constexpr uint64_t kFewest = 1;  // of a call that only looks at its arguments
  RefuseEach(call, forGood, kFewest);
  ExpectWhole(folder, &whole);
}
