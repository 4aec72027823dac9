// SPDX-License-Identifier: BSD-3-Clause
// What only a person at a terminal sees: the program with a pseudo-terminal as its output.
#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <regex>
#include <string>
#include <thread>

#include "client/terminal.h"
#include "tests/client/run_client.h"

namespace {

// What `work` prints in a process of its own with a terminal; the terminal writes "\r\n".
std::string InTerminal(const std::function<int()>& work) {
  int terminal = -1;
  const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (pid == 0) _exit(work());
  std::string seen;
  char chunk[4096];
  for (ssize_t n = 0; (n = read(terminal, chunk, sizeof(chunk))) > 0;) {
    seen.append(chunk, static_cast<size_t>(n));
  }
  int status = 0;
  EXPECT_EQ(pid, waitpid(pid, &status, 0));
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  close(terminal);
  return std::regex_replace(seen, std::regex("\r\n"), "\n");
}

std::string TreeInTerminal(const char* noColor, const char* term) {
  return InTerminal([&] {
    if (chdir(QMODEL_EXAMPLES) != 0 || setenv("NO_COLOR", noColor, 1) != 0 ||
        setenv("TERM", term, 1) != 0)
      return 99;
    execl(QMODEL_CLIENT, "qmodel", "tree", "-p", "models", "router-system", nullptr);
    return 98;
  });
}

std::string Plain() {
  return RunClient(QMODEL_EXAMPLES, {"tree", "-p", "models", "router-system"}).out;
}

TEST(ClientTerminal, TreeHasColoursThatAddNothingElse) {
  const std::string seen = TreeInTerminal("", "xterm");
  EXPECT_NE(std::string::npos, seen.find("\x1b[36m    uint32 \x1b[0m\x1b[33m<0>\x1b[0m\n")) << seen;
  EXPECT_EQ(Plain(), std::regex_replace(seen, std::regex("\x1b\\[[0-9]*m"), ""));
}

TEST(ClientTerminal, NoColorAndDumbTerminalsSwitchThemOff) {
  EXPECT_EQ(Plain(), TreeInTerminal("1", "xterm"));
  EXPECT_EQ(Plain(), TreeInTerminal("", "dumb"));
}

TEST(ClientTerminal, PipeGetsNoColours) {
  EXPECT_EQ(std::string::npos, Plain().find('\x1b'));
  EXPECT_NE(std::string::npos, Plain().find("uint32"));
}

TEST(ClientTerminal, ProgressIsToldOfAfterASecondAndGoes) {
  const auto working = [](int milliseconds) {
    return InTerminal([milliseconds] {
      const Progress progress("loading");
      std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
      return 0;
    });
  };
  EXPECT_EQ("", working(1));
  EXPECT_EQ("\rqmodel: loading, 1 s\r\x1b[K", working(1500));
}

}  // namespace
