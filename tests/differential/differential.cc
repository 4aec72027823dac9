// SPDX-License-Identifier: BSD-3-Clause
// Stands in the door of runs with an index: each message that a program of the tests
// validates is validated in other ways first, on copies, and all must see the same. They are
// the long way, without an index; an index that is refused memory at each step; and, where
// QMODEL_DIFFERENTIAL is "changes", all of that while each feature is switched and while
// one more module is loaded, and again after it left. With "runs" the context is left alone,
// for programs that validate in several threads. A difference ends the program.
//
// QMODEL_DIFFERENTIAL_COUNT names a file that gets a line for each process: the messages, the
// other runs, those of them whose index was refused memory, and the messages that are too
// big for the long way and were not compared.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <libxml/xmlmemory.h>

#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "data/run_index.h"
#include "tests/differential/context_change.h"
#include "tests/differential/other_run.h"
#include "tests/differential/own_memory.h"

using other_run::IndexMemory;
using other_run::Outcome;

// The linker leads all calls of RunWithIndex() here, and calls of the second to it.
uint32_t RunInAllWays(QmCheckAux* aux, xmlNode* root) QMODEL_WRAP;
uint32_t RunAsEver(QmCheckAux* aux, xmlNode* root) QMODEL_REAL;

namespace {

constexpr IndexMemory kNoIndex = {true, 0, 0};
constexpr IndexMemory kAllMemory = {false, SIZE_MAX, SIZE_MAX};

// As the program started with it.
const xmlMallocFunc g_malloc = xmlMalloc;

enum class Mode { kOff, kRuns, kChanges };

Mode ReadMode() {
  const char* text = std::getenv("QMODEL_DIFFERENTIAL");
  if (text == nullptr) return Mode::kOff;
  return std::strcmp(text, "changes") == 0 ? Mode::kChanges : Mode::kRuns;
}

struct Counts {
  std::atomic<uint64_t> messages{0};
  std::atomic<uint64_t> runs{0};
  std::atomic<uint64_t> refused{0};
  std::atomic<uint64_t> tooBig{0};
};
Counts g_counts;

void WriteCounts() {
  const char* path = std::getenv("QMODEL_DIFFERENTIAL_COUNT");
  FILE* file = path == nullptr ? nullptr : std::fopen(path, "a");
  if (file == nullptr) return;
  std::fprintf(file, "%llu %llu %llu %llu\n", static_cast<unsigned long long>(g_counts.messages),
               static_cast<unsigned long long>(g_counts.runs),
               static_cast<unsigned long long>(g_counts.refused),
               static_cast<unsigned long long>(g_counts.tooBig));
  std::fclose(file);
}

void Fail(const char* what, const Outcome& expected, const Outcome& seen) {
  std::fprintf(stderr, "Runs differ: %s\nexpected %s\n%s\n%s\nseen     %s\n%s\n%s\n", what,
               expected.verdict.c_str(), expected.tree.c_str(), expected.defaults.c_str(),
               seen.verdict.c_str(), seen.tree.c_str(), seen.defaults.c_str());
  std::abort();
}

// The long way asks each sibling in the schema for each element, so what a message costs
// is bounded by the product of both.
constexpr size_t kMostWork = 4'000'000;
constexpr size_t kMostWorkOfSteps = 400'000;

class AllWays {
 public:
  AllWays(const QmCheckAux& aux, const xmlNode* root, size_t work)
      : aux_(aux), root_(root), steps_(kMostWorkOfSteps / work) {}

  // The outcome of the long way, which all others have.
  Outcome Compare(const char* what) {
    const Outcome expected = Run(kNoIndex);
    ExpectSame(what, expected, kAllMemory);
    RefuseFirstBytes(what, expected);
    RefuseBlocks(what, expected);
    return expected;
  }

  // Whether there is no time for many steps.
  bool IsBig() const { return steps_ < kFewSteps; }

 private:
  static constexpr size_t kFewSteps = 8;
  static constexpr size_t kAlignment = 16;  // of what is taken from the index

  Outcome Run(IndexMemory memory) {
    ++g_counts.runs;
    return other_run::Run(aux_, root_, memory);
  }

  bool ExpectSame(const char* what, const Outcome& expected, IndexMemory memory) {
    const Outcome seen = Run(memory);
    if (!(expected == seen)) Fail(what, expected, seen);
    if (seen.isIndexOff) ++g_counts.refused;
    return seen.isIndexOff;
  }

  // Each number of bytes that the index can run out of, as long as it runs out.
  void RefuseFirstBytes(const char* what, const Outcome& expected) {
    const size_t step = (kQmdFirstBytes / (steps_ + 1) / kAlignment + 1) * kAlignment;
    for (size_t bytes = 0; bytes < kQmdFirstBytes; bytes += step)
      if (!ExpectSame(what, expected, {false, bytes, 0})) return;
  }

  // And each number of blocks after that: they grow twofold at least.
  void RefuseBlocks(const char* what, const Outcome& expected) {
    if (IsBig()) return;
    for (size_t bytes = 1024; bytes <= kQmdMostIndexBytes; bytes *= 2)
      if (!ExpectSame(what, expected, {false, kQmdFirstBytes, bytes})) return;
  }

  const QmCheckAux& aux_;
  const xmlNode* root_;
  size_t steps_;
};

Outcome InOtherWays(const QmCheckAux& aux, const xmlNode* root, Mode mode, size_t work) {
  const own_memory::Scope scope;
  const XmlSilence silence;
  AllWays ways(aux, root, work);
  const Outcome expected = ways.Compare("with and without the index");
  if (mode != Mode::kChanges || ways.IsBig()) return expected;
  context_change::ForEach(aux.ctx, root,
                          [&](const char* change) { static_cast<void>(ways.Compare(change)); });
  const Outcome after = ways.Compare("after the changes");
  if (!(expected == after)) Fail("before and after the changes", expected, after);
  return expected;
}

// A test that refuses libxml2 its memory would refuse it to the copies.
bool IsMemoryOfLibxml2Refused() {
  xmlFreeFunc freeBlock = nullptr;
  xmlMallocFunc allocate = nullptr;
  xmlReallocFunc reallocate = nullptr;
  xmlStrdupFunc duplicate = nullptr;
  xmlMemGet(&freeBlock, &allocate, &reallocate, &duplicate);
  return allocate != g_malloc;
}

bool IsComparable(const QmCheckAux& aux, const xmlNode* root, Mode mode) {
  return mode != Mode::kOff && aux.ctx != nullptr && IsElement(root) && !IsMemoryOfLibxml2Refused();
}

}  // namespace

uint32_t RunInAllWays(QmCheckAux* aux, xmlNode* root) {
  static const Mode mode = ReadMode();
  if (!IsComparable(*aux, root, mode)) return RunAsEver(aux, root);
  const size_t size = other_run::SizeAround(root);
  const size_t work =
      size > kMostWork ? size : size * context_change::SizeOfSchema(aux->ctx, root, kMostWork);
  if (g_counts.messages++ == 0) std::atexit(WriteCounts);
  if (work > kMostWork) {
    ++g_counts.tooBig;
    return RunAsEver(aux, root);
  }
  own_memory::StandBeforeHooks();
  const Outcome expected = InOtherWays(*aux, root, mode, work);
  static_cast<void>(own_memory::TakeRefused());
  const uint32_t status = RunAsEver(aux, root);
  if (own_memory::TakeRefused()) return status;
  const Outcome seen = {other_run::Verdict(status, aux->err), other_run::TreeAround(root), "",
                        false};
  if (seen.verdict != expected.verdict || seen.tree != expected.tree)
    Fail("the client's own run", expected, seen);
  return status;
}
