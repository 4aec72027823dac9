// SPDX-License-Identifier: BSD-3-Clause
// libxml2's own allocations are refused too, each in a process of its own, since
// libxml2 may not survive it. Where it crashes itself, that is counted and printed;
// the library's own code must not.
#include <dlfcn.h>
#include <execinfo.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <string>

#include "tests/memory/scenarios.h"
#include "tests/support/xml_memory.h"

namespace {

// Exit statuses of a child.
constexpr int kNothingRefused = 10;
constexpr int kSurvived = 11;
constexpr int kCrashInLibxml2 = 12;
constexpr int kCrashElsewhere = 13;

int g_report = -1;  // where a child tells the function that crashed

// Ends the child with the place of its crash: the frame below the C library's, told
// by the first function around it that has a name.
void NameTheCulprit(int /*signal*/) {
  void* frames[16];
  const int count = backtrace(frames, 16);
  bool inLibxml2 = false;
  for (int i = 2; i < count; ++i) {
    Dl_info info = {};
    if (dladdr(frames[i], &info) == 0 || info.dli_fname == nullptr) continue;
    if (std::strstr(info.dli_fname, "libc.so") != nullptr) continue;
    if (std::strstr(info.dli_fname, "libxml2") == nullptr) break;
    inLibxml2 = true;
    if (info.dli_sname == nullptr) continue;
    if (write(g_report, info.dli_sname, std::strlen(info.dli_sname)) < 0) _exit(1);
    break;
  }
  _exit(inLibxml2 ? kCrashInLibxml2 : kCrashElsewhere);
}

[[noreturn]] void RunChild(const Scenario& scenario, uint64_t n) {
  // libxml2 reports its own failures on standard error.
  if (std::freopen("/dev/null", "w", stderr) == nullptr) _exit(1);
  void* warmUp[2];
  backtrace(warmUp, 2);  // loads what the handler needs
  std::signal(SIGSEGV, NameTheCulprit);
  if (!xml_memory::Install()) _exit(1);
  xmlInitParser();
  xml_memory::RefuseNth(n);
  scenario.run(true);
  _exit(xml_memory::Left() != 0 ? kNothingRefused : kSurvived);
}

struct Report {
  uint64_t survived = 0;
  std::map<std::string, uint64_t> libxml2Crashed;  // by function
  uint64_t crashed = 0;
};

// A sanitized process is slow to fork; there a sample must do.
#ifdef __SANITIZE_ADDRESS__
constexpr uint64_t kStride = 53;
#else
constexpr uint64_t kStride = 1;
#endif

uint64_t Next(uint64_t n) {
  return n < 200 ? n + 1 : n + kStride;
}

// The exit status of a child; what it told comes into `told`.
int WaitFor(pid_t pid, int reportEnd, std::string* told) {
  char text[256];
  const ssize_t size = read(reportEnd, text, sizeof text);
  if (size > 0) told->assign(text, static_cast<size_t>(size));
  int status = 0;
  if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return kCrashElsewhere;
  return WEXITSTATUS(status);
}

int RefuseOne(const Scenario& scenario, uint64_t n, std::string* told) {
  int ends[2];
  if (pipe(ends) != 0) return kCrashElsewhere;
  const pid_t pid = fork();
  if (pid == 0) {
    g_report = ends[1];
    RunChild(scenario, n);
  }
  close(ends[1]);
  const int status = pid < 0 ? kCrashElsewhere : WaitFor(pid, ends[0], told);
  close(ends[0]);
  return status;
}

void RefuseEach(const Scenario& scenario, Report* report) {
  for (uint64_t n = 1;; n = Next(n)) {
    std::string told;
    const int status = RefuseOne(scenario, n, &told);
    if (status == kNothingRefused) return;
    if (status == kSurvived) {
      ++report->survived;
    } else if (status == kCrashInLibxml2) {
      ++report->libxml2Crashed[told];
    } else {
      std::cout << scenario.name << ": not survived when allocation " << n << " is refused\n";
      if (++report->crashed > 100) return;
    }
  }
}

class Libxml2Allocation : public testing::TestWithParam<Scenario> {};

TEST_P(Libxml2Allocation, RefusalsNeverCrashTheLibrarysOwnCode) {
  Report report;
  RefuseEach(GetParam(), &report);
  std::cout << report.survived << " refused allocations of libxml2 survived, " << report.crashed
            << " not by the library, and not by libxml2 itself:\n";
  for (const auto& [function, count] : report.libxml2Crashed) {
    std::cout << "  in " << function << ": " << count << "\n";
  }
  EXPECT_GT(report.survived, 50u);
  EXPECT_EQ(0u, report.crashed);
}

INSTANTIATE_TEST_SUITE_P(Lives, Libxml2Allocation, testing::ValuesIn(ContextLives()), NameOf);

}  // namespace
