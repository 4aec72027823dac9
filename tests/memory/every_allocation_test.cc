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

// Real modules that import, augment and deviate others, and some that are many.
const char* const kRealModules[] = {
    "ietf-netconf-with-defaults",
    "ietf-netconf-notifications",
    "example-server-deviations",
    "ietf-snmp-engine",
    "ietf-factory-default",
    "ietf-netconf-partial-lock",
    "ietf-acldns",
    "ietf-origin",
    "ietf-bfd-types",
    "ietf-ip",
    "iana-crypt-hash",
    "openconfig-types",
};

// Sanitized code is slow; there a sample of them must do.
#ifdef __SANITIZE_ADDRESS__
constexpr uint64_t kStride = 13;
#else
constexpr uint64_t kStride = 1;
#endif

std::string g_module;
std::string g_dir;

TEST(EveryAllocation, OfADozenRealModulesIsSurvived) {
  const char* folder = std::getenv("QMODEL_MODELS_DIR");
  g_dir = std::string(folder != nullptr ? folder : QMODEL_MODELS_DIR) + "/models";
  if (g_dir == "/models") GTEST_SKIP() << "no real-world models: set QMODEL_MODELS_DIR";
  uint64_t injected = 0;
  for (const char* module : kRealModules) {
    SCOPED_TRACE(module);
    g_module = module;
    injected +=
        counting_memory::FailEachAllocation([](bool) { RunModuleLife(g_dir, g_module); }, kStride);
  }
  EXPECT_GT(injected, 5000u);
  std::cout << injected << " refused allocations survived\n";
}

}  // namespace
