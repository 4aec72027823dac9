// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdlib>
#include <string>

// The folder of real-world models and messages, or "" when there is none; tests are
// skipped then, and say with kNoRealModels how to run them. The environment wins over what
// the build was configured with.
inline constexpr char kNoRealModels[] =
    "no real-world models: set QMODEL_MODELS_DIR to run these tests";

inline std::string RealModelsFolder() {
  const char* fromEnvironment = std::getenv("QMODEL_MODELS_DIR");
  return fromEnvironment != nullptr ? fromEnvironment : QMODEL_MODELS_DIR;
}
