// SPDX-License-Identifier: BSD-3-Clause
// Counts what does not jitter. Under callgrind with --instr-atstart=no the first two modes
// write one dump for each run, named "CASE|SIZE|UNITS|UNIT|run" or "...|parse"; without it
// they only run. The second run of each is counted.
//
//   bench_count cases [small]   every case at its size of the tables or of the guard
//   bench_count growth          every dimension at four sizes
//   bench_count memory          a line for each case: what passes the library's hooks
//   bench_count second          seconds of every dimension at sizes that double, up to one;
//                               a size that a bound refuses ends the program
//   bench_count about           compiler and libxml2
// A word more than that chooses the cases and dimensions that have it in their name.
#include <libxml/xmlversion.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "bench/counting_memory.h"
#include "bench/shared_parts.h"

namespace {

#ifdef __clang__
constexpr const char* kCompiler = "clang++";
#else
constexpr const char* kCompiler = "g++";
#endif

void Count(const std::string& name, const std::function<void()>& run) {
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  run();
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
}

void CountWork(const std::string& name, const char* unit, int64_t size, const Work& work) {
  const std::string head =
      name + "|" + std::to_string(size) + "|" + std::to_string(work.units) + "|" + unit + "|";
  RunOnce(work);
  if (work.before) work.before();
  Count(head + "run", work.run);
  if (work.after) work.after();
  if (!work.parse) return;
  work.parse();
  Count(head + "parse", work.parse);
}

void CountCases(bool isSmall, const char* word) {
  for (const Case& one : AllCases()) {
    if (one.name.find(word) == std::string::npos) continue;
    const int64_t size = isSmall ? one.smallSize : one.countSize;
    CountWork(one.name, one.unit, size, one.make(size));
  }
}

std::string NameOf(const Growth& growth) {
  return growth.dimension + ": " + growth.what;
}

void CountGrowth(const char* word) {
  for (const Growth& growth : AllGrowth()) {
    if (NameOf(growth).find(word) == std::string::npos) continue;
    for (const int factor : {1, 2, 4, 8}) {
      const int64_t size = growth.size * factor;
      CountWork(NameOf(growth), "", size, growth.make(size));
    }
  }
}

double Seconds(const Work& work) {
  if (work.before) work.before();
  timespec start{};
  timespec end{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &start);
  work.run();
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
  if (work.after) work.after();
  return static_cast<double>(end.tv_sec - start.tv_sec) +
         static_cast<double>(end.tv_nsec - start.tv_nsec) / 1e9;
}

void PrintSecond(const char* word) {
  for (const Growth& growth : AllGrowth()) {
    if (NameOf(growth).find(word) == std::string::npos) continue;
    double seconds = 0;
    for (int64_t size = growth.size; seconds < 1 && size <= growth.size * 4096; size *= 2) {
      seconds = Seconds(growth.make(size));
      std::printf("%s\t%lld\t%.3f s\n", NameOf(growth).c_str(), static_cast<long long>(size),
                  seconds);
      std::fflush(stdout);
    }
  }
}

void PrintMemory(const char* word) {
  std::puts(
      "case\tunits\tunit\tallocations\tbytes\tpeak of the hooks\theld after\t"
      "peak of libxml2\tinput\theld by libxml2");
  for (const Case& one : AllCases()) {
    if (one.name.find(word) == std::string::npos) continue;
    const Work work = one.make(one.size);
    RunOnce(work);
    if (work.before) work.before();
    const MemoryUse use = MeasureMemory(work.run);
    if (work.after) work.after();
    std::printf("%s\t%lld\t%s\t%lld\t%lld\t%lld\t%lld\t%lld\t%lld\t%lld\n", one.name.c_str(),
                static_cast<long long>(work.units), one.unit,
                static_cast<long long>(use.allocations), static_cast<long long>(use.bytes),
                static_cast<long long>(use.peak), static_cast<long long>(use.held),
                static_cast<long long>(use.xmlPeak), static_cast<long long>(work.bytes),
                static_cast<long long>(use.xmlHeld));
    std::fflush(stdout);
  }
}

int PrintUsage() {
  std::fputs("usage: bench_count cases [small]|growth|memory|second|about [WORD]\n", stderr);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return PrintUsage();
  const std::string mode = argv[1];
  const bool isSmall = argc > 2 && std::strcmp(argv[2], "small") == 0;
  const int next = isSmall ? 3 : 2;
  const char* word = argc > next ? argv[next] : "";
  if (mode == "about") {
    std::printf("compiler\t%s %s\nlibxml2\t%s\n", kCompiler, __VERSION__, LIBXML_DOTTED_VERSION);
    return 0;
  }
  if (mode == "memory") {
    CountMemory();
    PrintMemory(word);
    return 0;
  }
  if (mode == "cases") CountCases(isSmall, word);
  if (mode == "growth") CountGrowth(word);
  if (mode == "second") PrintSecond(word);
  return mode == "cases" || mode == "growth" || mode == "second" ? 0 : PrintUsage();
}
