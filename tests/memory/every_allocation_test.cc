// SPDX-License-Identifier: BSD-3-Clause
// Every allocation of the library is refused once, alone and together with all
// later ones. Nothing may leak or crash, and the context goes on working.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "tests/memory/scenarios.h"
#include "tests/support/counting_memory.h"

namespace {

TEST(EveryAllocation, OfWholeLivesOfAContextIsSurvived) {
  uint64_t injected = 0;
  for (const Scenario& scenario : ContextLives()) {
    SCOPED_TRACE(scenario.name);
    const uint64_t here = counting_memory::FailEachAllocation(scenario.run);
    EXPECT_GT(here, 100u) << "the scenario allocates less than it must to mean anything";
    injected += here;
  }
  std::cout << injected << " refused allocations survived\n";
}

// Small real modules, with their imports.
const char* const kRealModules[] = {
    "ietf-datastores",           "ietf-origin",    "ietf-yang-metadata",
    "nc-notifications",          "notifications",  "ietf-packet-fields",
    "iana-crypt-hash",           "ietf-acldns",    "ietf-factory-default",
    "ietf-netconf-partial-lock", "iana-bfd-types", "openconfig-types",
};

std::string g_module;
std::string g_dir;

TEST(EveryAllocation, OfADozenRealModulesIsSurvived) {
  const char* folder = std::getenv("QMODEL_MODELS_DIR");
  g_dir = std::string(folder != nullptr ? folder : QMODEL_MODELS_DIR) + "/models";
  if (g_dir == "/models") GTEST_SKIP() << "no real-world models: set QMODEL_MODELS_DIR";
  // Every allocation up to the three-hundredth, then every 97th: what a large module
  // allocates later repeats what it allocated before. QMODEL_REFUSE_ALL asks for all.
  const uint64_t stride = std::getenv("QMODEL_REFUSE_ALL") != nullptr ? 1 : 97;
  uint64_t injected = 0;
  for (const char* module : kRealModules) {
    SCOPED_TRACE(module);
    g_module = module;
    injected +=
        counting_memory::FailAllocations([](bool) { RunModuleLife(g_dir, g_module); }, 300, stride);
  }
  EXPECT_GT(injected, 1000u);
  std::cout << injected << " refused allocations survived\n";
}

}  // namespace
