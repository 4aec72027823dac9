// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// A module "m" with `leaves` leaves of mixed types, grouped in containers of 50.
std::string GenerateModule(int leaves);

// A module "m" with an rpc "op" whose input has a list, a choice and defaults.
std::string GenerateRpcModule();

// A request for it with `entries` list entries, or leaf-list entries below one case.
std::string GenerateRequest(int entries, bool belowCase);

// A module "m" with an rpc "op" whose input has `names` leaves and a list, each entry of
// which has a condition that names all of the leaves; and a request with all leaves and
// `entries` entries.
std::string GenerateNamingModule(int names);
std::string GenerateNamingRequest(int names, int entries);

enum class Sibling { kLeaf, kChoice, kList };

// A module "m" with an rpc "op" whose input has `siblings` nodes of one kind, and a request
// with one element for each of them.
std::string GenerateSiblingModule(Sibling kind, int siblings);
std::string GenerateSiblingRequest(Sibling kind, int siblings);
