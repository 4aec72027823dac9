// SPDX-License-Identifier: BSD-3-Clause
// Validation of requests whose size grows in one place.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <qmodel/qmodel.h>

#include "bench/counting_hooks.h"
#include "bench/generate.h"

static void ParseOnly(benchmark::State& state, bool belowCase) {
  const std::string text = GenerateRequest(static_cast<int>(state.range(0)), belowCase);
  for (auto _ : state) {
    xmlFreeDoc(xmlParseMemory(text.data(), static_cast<int>(text.size())));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

static void Validate(benchmark::State& state, bool belowCase) {
  QmCtx* ctx = QM_CTX_Create(0);
  if (QM_CTX_LoadMemory(ctx, GenerateRpcModule().c_str()) != 0) state.SkipWithError("no model");
  std::string text = GenerateRequest(static_cast<int>(state.range(0)), belowCase);
  const AllocationCounter counter;
  for (auto _ : state) {
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, text.data(), nullptr, nullptr);
    if (err != nullptr) state.SkipWithError("the request is not valid");
    QM_FreeErrNode(err);
  }
  counter.Report(&state);
  state.SetItemsProcessed(state.iterations() * state.range(0));
  QM_CTX_Delete(ctx);
}

static void BM_ParseListEntriesOnly(benchmark::State& state) {
  ParseOnly(state, false);
}
static void BM_ValidateListEntries(benchmark::State& state) {
  Validate(state, false);
}
static void BM_ParseCaseEntriesOnly(benchmark::State& state) {
  ParseOnly(state, true);
}
static void BM_ValidateCaseEntries(benchmark::State& state) {
  Validate(state, true);
}
BENCHMARK(BM_ParseListEntriesOnly)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_ValidateListEntries)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_ParseCaseEntriesOnly)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_ValidateCaseEntries)->Arg(1000)->Arg(10000)->Arg(100000);
