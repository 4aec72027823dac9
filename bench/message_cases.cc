// SPDX-License-Identifier: BSD-3-Clause
// Validation of messages, each beside the parse of the same text.
#include <libxml/parser.h>

#include "bench/generate_messages.h"
#include "bench/shared_parts.h"

constexpr uint64_t kSeed = 23;
constexpr int64_t kWideElements = 80000;

static Work RequestOf(const Exchange& exchange, int64_t units) {
  return RequestWork(LoadedContext({exchange.model}), exchange.message, units);
}

// As RequestOf(), with compiled patterns kept where the library can; the first run is past.
static Work KeptRequestOf(const Exchange& exchange, int64_t units) {
  const Context ctx = LoadedContext({exchange.model});
  KeepPatterns(ctx.get());
  Work work = RequestWork(ctx, exchange.message, units);
  work.run();
  return work;
}

static Work Plain(int64_t entries) {
  return RequestOf(GeneratePlain(kSeed, entries), entries);
}

static Work PlainElements(int64_t entries) {
  const Exchange exchange = GeneratePlain(kSeed, entries);
  return ElementWork(LoadedContext({exchange.model}), exchange.message, entries);
}

static Work Conditions(int64_t entries) {
  return RequestOf(GenerateConditions(kSeed, entries), entries);
}

static Work Leafrefs(int64_t entries) {
  return RequestOf(GenerateLeafrefs(kSeed, entries), entries);
}

static Work Patterns(int64_t entries) {
  return RequestOf(GeneratePatterns(kSeed, entries), entries);
}

static Work KeptPatterns(int64_t entries) {
  return KeptRequestOf(GeneratePatterns(kSeed, entries), entries);
}

static Work Mixed(int64_t entries) {
  return RequestOf(GenerateMixed(kSeed, entries), entries);
}

static Work KeptMixed(int64_t entries) {
  return KeptRequestOf(GenerateMixed(kSeed, entries), entries);
}

// `size` elements in entries of `leaves` leaves.
static std::function<Work(int64_t)> Wide(int64_t leaves) {
  return [leaves](int64_t size) {
    const int64_t entries = size / leaves;
    return RequestOf(GenerateWide(leaves, entries), entries * leaves);
  };
}

static void ParseAndDump(const std::string& text) {
  xmlDoc* doc = xmlParseMemory(text.data(), static_cast<int>(text.size()));
  Require(doc != nullptr, "a notification is not well-formed");
  xmlChar* dumped = nullptr;
  int length = 0;
  xmlDocDumpFormatMemoryEnc(doc, &dumped, &length, "UTF-8", 1);
  Require(length > 0, "a notification is not dumped");
  xmlFree(dumped);
  xmlFreeDoc(doc);
}

static uint32_t IgnoreOutput(const char* /*text*/, void* /*arg*/) {
  return 0;
}

// Beside the parse and the formatted dump of the same text.
static Work Notification(int64_t entries) {
  const Exchange exchange = GenerateMixedNotification(kSeed, entries);
  const Context ctx = LoadedContext({exchange.model});
  Work work;
  work.units = entries;
  work.bytes = static_cast<int64_t>(exchange.message.size());
  work.parse = [text = exchange.message] { ParseAndDump(text); };
  work.run = [ctx, text = exchange.message] {
    Require(QM_CTX_ValidateNotifDataTree(ctx.get(), text.c_str(), IgnoreOutput, nullptr) == 0,
            "a notification is not valid");
  };
  return work;
}

std::vector<Case> MessageCases() {
  return {
      {"request of plain entries", "entry", 10000, 10000, 200, Plain},
      {"the same as an element tree", "entry", 10000, 10000, 200, PlainElements},
      {"request of entries with conditions", "entry", 10000, 10000, 100, Conditions},
      {"request of entries of 50 leaves", "element", kWideElements, 16000, 4000, Wide(50)},
      {"request of entries of 200 leaves", "element", kWideElements, 16000, 4000, Wide(200)},
      {"request of entries of 800 leaves", "element", kWideElements, 16000, 4000, Wide(800)},
      {"request of entries with leafrefs", "entry", 10000, 10000, 200, Leafrefs},
      {"request of entries with patterns", "entry", 10000, 300, 10, Patterns},
      {"the same, patterns kept", "entry", 10000, 1000, 50, KeptPatterns},
      {"request of 1 mixed entry", "entry", 1, 1, 1, Mixed},
      {"request of 100 mixed entries", "entry", 100, 100, 10, Mixed},
      {"request of 10,000 mixed entries", "entry", 10000, 1000, 20, Mixed},
      {"request of 1 mixed entry, patterns kept", "entry", 1, 1, 1, KeptMixed},
      {"request of 100 mixed entries, patterns kept", "entry", 100, 100, 100, KeptMixed},
      {"request of 10,000 mixed entries, patterns kept", "entry", 10000, 10000, 200, KeptMixed},
      {"request of 100,000 mixed entries, patterns kept", "entry", 100000, 20000, 400, KeptMixed},
      {"notification of mixed entries", "entry", 10000, 10000, 100, Notification},
  };
}
