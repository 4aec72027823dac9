// SPDX-License-Identifier: BSD-3-Clause
// Single value checks.
#include <benchmark/benchmark.h>

#include <qmodel/qmodel.h>

#include "bench/counting_hooks.h"

static void CheckValue(benchmark::State& state, const char* type, const char* value) {
  QmCtx* ctx = QM_CTX_Create(0);
  const std::string text =
      "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><namespace uri='urn:m'/>"
      "<prefix value='m'/><leaf name='x'>" +
      std::string(type) + "</leaf></module>";
  if (QM_CTX_LoadMemory(ctx, text.c_str()) != 0) state.SkipWithError("no model");
  QmsNode* leaf = QM_CTX_GetTargetNode(ctx, "/m:x", nullptr);
  const AllocationCounter counter;
  for (auto _ : state) {
    if (QM_NODE_ValidateValue(leaf, QM_INPUT_TEXT, value) != 0) state.SkipWithError("not valid");
  }
  counter.Report(&state);
  QM_CTX_Delete(ctx);
}

static void BM_CheckInteger(benchmark::State& state) {
  CheckValue(state, "<type name='int32'><range value='1..10|100..max'/></type>", "500");
}
BENCHMARK(BM_CheckInteger);

static void BM_CheckEnumeration(benchmark::State& state) {
  CheckValue(state, "<type name='enumeration'><enum name='a'/><enum name='b'/></type>", "b");
}
BENCHMARK(BM_CheckEnumeration);

static void BM_CheckPattern(benchmark::State& state) {
  CheckValue(state, "<type name='string'><pattern value='[a-z0-9]{1,20}'/></type>", "ge0");
}
BENCHMARK(BM_CheckPattern);
