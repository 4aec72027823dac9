// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>
#include <vector>

struct GeneratedModule {
  std::string name;
  std::string text;   // YIN
  int64_t dataNodes;  // nodes that can have an element
};

// `modules` modules "gen-0", "gen-1", ... of `nodes` schema nodes each, to be loaded in this
// order: mixed types, chains of typedefs, ranges, patterns, conditions, leafrefs, choices,
// features and identities. Of five modules the last four import the first, use its typedef,
// augment it and deviate it.
std::vector<GeneratedModule> GenerateModules(uint64_t seed, int64_t modules, int64_t nodes);
