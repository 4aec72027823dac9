// SPDX-License-Identifier: BSD-3-Clause
// Every allocation of the library is refused once, alone and together with all
// later ones. Nothing may leak or crash, and the context goes on working.
#include <gtest/gtest.h>

#include <iostream>

#include "tests/memory/scenarios.h"
#include "tests/support/counting_memory.h"
#include "tests/support/real_models.h"

namespace {

// One test for each life and each module, so that none takes long.
class EveryAllocation : public testing::TestWithParam<Scenario> {};

TEST_P(EveryAllocation, OfAWholeLifeOfAContextIsSurvived) {
  const uint64_t injected = counting_memory::FailEachAllocation(GetParam().run);
  EXPECT_GT(injected, 100u) << "the scenario allocates less than it must to mean anything";
  std::cout << injected << " refused allocations survived\n";
}

INSTANTIATE_TEST_SUITE_P(Lives, EveryAllocation, testing::ValuesIn(ContextLives()), NameOf);

// A real module, or one of so many slices of its allocations.
struct RealModule {
  const char* name;
  uint64_t slice = 1;
  uint64_t slices = 1;
};

// Modules that import, augment and deviate others, some that are many, and a
// submodule, which is refused.
const RealModule kRealModules[] = {
    {"ietf-netconf-with-defaults"},
    {"ietf-netconf-notifications"},
    {"example-server-deviations", 1, 6},
    {"example-server-deviations", 2, 6},
    {"example-server-deviations", 3, 6},
    {"example-server-deviations", 4, 6},
    {"example-server-deviations", 5, 6},
    {"example-server-deviations", 6, 6},
    {"ietf-snmp-engine"},
    {"ietf-factory-default"},
    {"ietf-netconf-partial-lock"},
    {"ietf-acldns"},
    {"ietf-origin"},
    {"ietf-bfd-types"},
    {"ietf-ip"},
    {"iana-crypt-hash"},
    {"openconfig-types"},
};

std::string NameOfModule(const testing::TestParamInfo<RealModule>& module) {
  const RealModule& row = module.param;
  return CamelCase(row.name, '-') + (row.slices > 1 ? std::to_string(row.slice) : "");
}

// Sanitized code is slow; there a sample of them must do.
#ifdef __SANITIZE_ADDRESS__
constexpr uint64_t kStride = 13;
#else
constexpr uint64_t kStride = 1;
#endif

std::string g_module;
std::string g_dir;

class EveryAllocationOfModule : public testing::TestWithParam<RealModule> {};

TEST_P(EveryAllocationOfModule, IsSurvived) {
  if (RealModelsFolder().empty()) GTEST_SKIP() << kNoRealModels;
  g_dir = RealModelsFolder() + "/models";
  const RealModule& module = GetParam();
  g_module = module.name;
  const uint64_t injected = counting_memory::FailEachAllocation(
      [](bool) { RunModuleLife(g_dir, g_module); }, kStride * module.slices, module.slice);
  EXPECT_GT(injected * kStride * module.slices, 50u)
      << "the module allocates less than it must to mean anything";
  std::cout << injected << " refused allocations survived\n";
}

INSTANTIATE_TEST_SUITE_P(Real, EveryAllocationOfModule, testing::ValuesIn(kRealModules),
                         NameOfModule);

}  // namespace
