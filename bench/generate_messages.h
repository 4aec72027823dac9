// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>

// A model and a message for it: a module "m" with the rpc "op", whose input holds a list
// "entry", and a request with `entries` of them. All are valid.
struct Exchange {
  std::string model;
  std::string message;
};

// Eleven leaves of types without a pattern, and four more that are added as defaults.
Exchange GeneratePlain(uint64_t seed, int64_t entries);

// Four leaves with a `when` and four with a `must`, about four other leaves.
Exchange GenerateConditions(uint64_t seed, int64_t entries);

// `leaves` leaves of type string in each entry.
Exchange GenerateWide(int64_t leaves, int64_t entries);

// Four leaves, and four leafrefs to them.
Exchange GenerateLeafrefs(uint64_t seed, int64_t entries);

// Ten leaves of types with patterns.
Exchange GeneratePatterns(uint64_t seed, int64_t entries);

// 15 to 18 elements with patterns, conditions, defaults, a choice, a leafref, a union, an
// identityref and a container; as a request, and as the notification "event".
Exchange GenerateMixed(uint64_t seed, int64_t entries);
Exchange GenerateMixedNotification(uint64_t seed, int64_t entries);
