// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// Reads a file, or standard input for "-". False, with the reason on standard
// error, when it cannot be read.
bool ReadInput(const std::string& file, std::string* content);
