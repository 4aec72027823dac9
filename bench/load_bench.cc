// SPDX-License-Identifier: BSD-3-Clause
// Loading from memory, beside libxml2's own parse of the same bytes.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <qmodel/qmodel.h>

#include "bench/counting_hooks.h"
#include "bench/generate.h"

static void BM_ParseXmlOnly(benchmark::State& state) {
  const std::string text = GenerateModule(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    xmlFreeDoc(xmlParseMemory(text.data(), static_cast<int>(text.size())));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ParseXmlOnly)->Arg(100)->Arg(1000)->Arg(10000);

static void BM_LoadModule(benchmark::State& state) {
  const std::string text = GenerateModule(static_cast<int>(state.range(0)));
  const AllocationCounter counter;
  for (auto _ : state) {
    QmCtx* ctx = QM_CTX_Create(0);
    benchmark::DoNotOptimize(QM_CTX_LoadMemory(ctx, text.c_str()));
    QM_CTX_Delete(ctx);
  }
  counter.Report(&state);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_LoadModule)->Arg(100)->Arg(1000)->Arg(10000);
