// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Models drawn from a seed in which much depends on features: the values of types, and
// with them defaults wherever YANG takes one.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace featured_models {

// The modules "a", which others use, "b", and "c", which deviates "b" and augments it; by
// name, as YANG text. Most of them are free of errors.
using Model = std::vector<std::pair<std::string, std::string>>;
Model Draw(uint64_t seed);

// The features of "a" that are on, beside which others may be named.
std::vector<std::string> DrawFeatures(uint64_t seed);

}  // namespace featured_models
