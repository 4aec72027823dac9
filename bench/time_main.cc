// SPDX-License-Identifier: BSD-3-Clause
// The cases as benchmarks, each with the parse of the same bytes beside it, and validation
// side by side on several threads. Times say what a machine does today; what the tables are
// held against are the instructions of count_main.cc.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <thread>

#include "bench/generate_messages.h"
#include "bench/shared_parts.h"

namespace {

void Measure(benchmark::State& state, const Work& work) {
  for (auto _ : state) {
    if (!work.before) {
      work.run();
      continue;
    }
    state.PauseTiming();
    work.before();
    state.ResumeTiming();
    work.run();
    state.PauseTiming();
    if (work.after) work.after();
    state.ResumeTiming();
  }
  state.counters["units"] = static_cast<double>(work.units);
  state.SetBytesProcessed(state.iterations() * work.bytes);
}

void Register(const Case& one) {
  const auto make = one.make;
  const int64_t size = one.size;
  auto* run = benchmark::RegisterBenchmark(
      (one.name + "/run").c_str(),
      [make, size](benchmark::State& state) { Measure(state, make(size)); });
  if (one.timedRuns != 0) run->Iterations(one.timedRuns);
  benchmark::RegisterBenchmark((one.name + "/parse").c_str(),
                               [make, size](benchmark::State& state) {
                                 const Work work = make(size);
                                 if (!work.parse) state.SkipWithError("nothing is parsed");
                                 for (auto _ : state) work.parse();
                               });
}

// Each thread validates requests of its own, on the same context.
void ValidateSideBySide(benchmark::State& state) {
  static const Exchange* exchange = new Exchange(GeneratePlain(23, 1000));
  static QmCtx* ctx = [] {
    // With a second thread in the process, which only sleeps, the C library's allocator takes
    // its locks also for one thread alone: what is compared is threads, not that.
    std::thread([] { pause(); }).detach();
    QmCtx* made = QM_CTX_Create(0);
    LoadText(made, exchange->model);
    return made;
  }();
  std::string request = exchange->message;
  for (auto _ : state) {
    QmErrNode* err =
        QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request.data(), nullptr, nullptr);
    Require(err == nullptr, "a request is not valid");
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

int main(int argc, char** argv) {
  for (const Case& one : AllCases()) Register(one);
  for (const int threads : {1, 2, 4}) {
    benchmark::RegisterBenchmark("validation side by side", ValidateSideBySide)
        ->Threads(threads)
        ->UseRealTime();
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
