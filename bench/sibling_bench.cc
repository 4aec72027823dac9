// SPDX-License-Identifier: BSD-3-Clause
// Validation of requests where the siblings of one element are many: conditions that name
// them, and messages with one element for each.
#include <benchmark/benchmark.h>

#include <string>

#include <qmodel/qmodel.h>

#include "bench/counting_hooks.h"
#include "bench/generate.h"

static void Validate(benchmark::State& state, const std::string& module, std::string request) {
  QmCtx* ctx = QM_CTX_Create(0);
  if (QM_CTX_LoadMemory(ctx, module.c_str()) != 0) state.SkipWithError("no model");
  const AllocationCounter counter;
  for (auto _ : state) {
    QmErrNode* err =
        QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, request.data(), nullptr, nullptr);
    if (err != nullptr) state.SkipWithError("the request is not valid");
    QM_FreeErrNode(err);
  }
  counter.Report(&state);
  state.SetItemsProcessed(state.iterations() * state.range(0));
  QM_CTX_Delete(ctx);
}

// A run keeps 1,024 answers to "which child has this name", so that the step from 1,000
// names to 1,100 is what counts here.
static void BM_ValidateConditionsThatNameSiblings(benchmark::State& state) {
  constexpr int kEntries = 200;
  const int names = static_cast<int>(state.range(0));
  Validate(state, GenerateNamingModule(names), GenerateNamingRequest(names, kEntries));
}
BENCHMARK(BM_ValidateConditionsThatNameSiblings)
    ->Arg(500)
    ->Arg(1000)
    ->Arg(1100)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);

static void ValidateOneOfEach(benchmark::State& state, Sibling kind) {
  const int siblings = static_cast<int>(state.range(0));
  Validate(state, GenerateSiblingModule(kind, siblings), GenerateSiblingRequest(kind, siblings));
}

static void BM_ValidateOneOfEachLeaf(benchmark::State& state) {
  ValidateOneOfEach(state, Sibling::kLeaf);
}
static void BM_ValidateOneOfEachChoice(benchmark::State& state) {
  ValidateOneOfEach(state, Sibling::kChoice);
}
static void BM_ValidateOneOfEachList(benchmark::State& state) {
  ValidateOneOfEach(state, Sibling::kList);
}
BENCHMARK(BM_ValidateOneOfEachLeaf)->Arg(2000)->Arg(4000)->Arg(8000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ValidateOneOfEachChoice)
    ->Arg(2000)
    ->Arg(4000)
    ->Arg(8000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ValidateOneOfEachList)->Arg(2000)->Arg(4000)->Arg(8000)->Unit(benchmark::kMillisecond);
