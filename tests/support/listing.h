// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>
#include <vector>

// The order in which a directory is listed differs from one file system to the
// next, and the library takes it as it comes. So every test program replaces
// readdir() and closedir(): a listing has an order that depends on nothing but its
// names and a seed. Where the order matters, a test draws many.
namespace listing {

// From now on directories are listed in the order of this seed. Each test starts
// with that of the program (--gtest_shuffle --gtest_random_seed=N), else with 0.
void Draw(uint32_t seed);

// The files of a directory in the order in which it is listed, without "." and "..".
std::vector<std::string> Of(const std::string& dir);

// Draws until the file stands first, for a test that takes too long otherwise.
void DrawWithFirst(const std::string& dir, const std::string& file);

}  // namespace listing
