// SPDX-License-Identifier: BSD-3-Clause
// libxml2's own allocations are refused too, each in a process of its own, since
// libxml2 may not survive it. Where it crashes itself, that is counted and printed;
// the library's own code must not.
#include <dlfcn.h>
#include <execinfo.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "tests/memory/scenarios.h"

namespace {

uint64_t g_countdown = 0;  // 0: nothing is refused

bool RefuseThis() {
  return g_countdown != 0 && --g_countdown == 0;
}

void* Malloc(size_t size) {
  return RefuseThis() ? nullptr : std::malloc(size);
}
void* Realloc(void* block, size_t size) {
  return RefuseThis() ? nullptr : std::realloc(block, size);
}
char* Duplicate(const char* text) {
  const size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(Malloc(size));
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

// Exit statuses of a child.
constexpr int kNothingRefused = 10;
constexpr int kSurvived = 11;
constexpr int kCrashInLibxml2 = 12;
constexpr int kCrashElsewhere = 13;

// Ends the child with the place of its crash: the frame below the C library's.
void NameTheCulprit(int /*signal*/) {
  void* frames[16];
  const int count = backtrace(frames, 16);
  for (int i = 2; i < count; ++i) {
    Dl_info info = {};
    if (dladdr(frames[i], &info) == 0 || info.dli_fname == nullptr) continue;
    if (std::strstr(info.dli_fname, "libxml2") != nullptr) _exit(kCrashInLibxml2);
    if (std::strstr(info.dli_fname, "libc.so") == nullptr) _exit(kCrashElsewhere);
  }
  _exit(kCrashElsewhere);
}

[[noreturn]] void RunChild(const Scenario& scenario, uint64_t n) {
  // libxml2 reports its own failures on standard error.
  if (std::freopen("/dev/null", "w", stderr) == nullptr) _exit(1);
  void* warmUp[2];
  backtrace(warmUp, 2);  // loads what the handler needs
  std::signal(SIGSEGV, NameTheCulprit);
  xmlMemSetup(std::free, Malloc, Realloc, Duplicate);
  xmlInitParser();
  g_countdown = n;
  scenario.run(true);
  _exit(g_countdown != 0 ? kNothingRefused : kSurvived);
}

struct Report {
  uint64_t survived = 0;
  uint64_t libxml2Crashed = 0;
  uint64_t crashed = 0;
};

// A large stride for the later ones: a document repeats what its start did.
uint64_t Next(uint64_t n) {
  return n < 200 ? n + 1 : n + 53;
}

Report RefuseEach(const Scenario& scenario) {
  Report report;
  for (uint64_t n = 1;; n = Next(n)) {
    const pid_t pid = fork();
    if (pid == 0) RunChild(scenario, n);
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid) return report;
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNothingRefused) return report;
    if (WIFEXITED(status) && WEXITSTATUS(status) == kSurvived) {
      ++report.survived;
    } else if (WIFEXITED(status) && WEXITSTATUS(status) == kCrashInLibxml2) {
      ++report.libxml2Crashed;
    } else {
      std::cout << scenario.name << ": not survived when allocation " << n << " is refused\n";
      ++report.crashed;
    }
  }
}

TEST(Libxml2Allocation, RefusalsNeverCrashTheLibrarysOwnCode) {
  Report total;
  for (const Scenario& scenario : ContextLives()) {
    const Report report = RefuseEach(scenario);
    total.survived += report.survived;
    total.libxml2Crashed += report.libxml2Crashed;
    total.crashed += report.crashed;
  }
  std::cout << total.survived << " refused allocations of libxml2 survived, "
            << total.libxml2Crashed << " not by libxml2 itself, " << total.crashed
            << " not by the library\n";
  EXPECT_GT(total.survived, 500u);
  EXPECT_EQ(0u, total.crashed);
}

}  // namespace
