// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// A module "m" with `leaves` leaves of mixed types, grouped in containers of 50.
std::string GenerateModule(int leaves);

// A module "m" with an rpc "op" whose input has a list, a choice and defaults.
std::string GenerateRpcModule();

// A request for it with `entries` list entries, or leaf-list entries below one case.
std::string GenerateRequest(int entries, bool belowCase);
