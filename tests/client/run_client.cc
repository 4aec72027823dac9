// SPDX-License-Identifier: BSD-3-Clause
#include "tests/client/run_client.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

// The programs leave the cache of the person who tests alone, and depend on none.
class OwnCache : public testing::Environment {
 public:
  void SetUp() override {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(path_.data()));
    ASSERT_EQ(0, setenv("XDG_CACHE_HOME", path_.c_str(), 1));
  }
  void TearDown() override { std::filesystem::remove_all(path_); }

 private:
  std::string path_;
};

// GoogleTest takes it over.
[[maybe_unused]] const testing::Environment* const kOwnCache =
    testing::AddGlobalTestEnvironment(new OwnCache);

std::string ReadAll(FILE* file) {
  std::string text;
  std::rewind(file);
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
  return text;
}

[[noreturn]] void Exec(std::string program, const std::string& dir,
                       const std::vector<std::string>& args, FILE* in, FILE* out, FILE* err) {
  std::vector<char*> argv;
  argv.push_back(program.data());
  std::vector<std::string> copies = args;
  for (std::string& arg : copies) argv.push_back(arg.data());
  argv.push_back(nullptr);
  const bool ready = dup2(fileno(in), 0) >= 0 && dup2(fileno(out), 1) >= 0 &&
                     dup2(fileno(err), 2) >= 0 && chdir(dir.c_str()) == 0;
  if (ready) execv(argv[0], argv.data());
  _exit(127);
}

}  // namespace

ClientRun RunProgram(const std::string& program, const std::string& dir,
                     const std::vector<std::string>& args, const std::string& input) {
  ClientRun run;
  FILE* in = std::tmpfile();
  FILE* out = std::tmpfile();
  FILE* err = std::tmpfile();
  std::fwrite(input.data(), 1, input.size(), in);
  std::rewind(in);
  const pid_t pid = fork();
  if (pid == 0) Exec(program, dir, args, in, out, err);
  int status = 0;
  if (pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status)) {
    run.status = WEXITSTATUS(status);
  }
  run.out = ReadAll(out);
  run.err = ReadAll(err);
  std::fclose(in);
  std::fclose(out);
  std::fclose(err);
  return run;
}

ClientRun RunClient(const std::string& dir, const std::vector<std::string>& args,
                    const std::string& input) {
  return RunProgram(QMODEL_CLIENT, dir, args, input);
}
