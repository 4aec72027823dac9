// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Model files by name in the search directories.
#include <string>
#include <string_view>
#include <vector>

#include "client/options.h"

// The directories of the options; the current one without any.
std::vector<std::string> SearchedDirs(const Options& options);

// The file that the library reads first for a module; empty: there is none.
std::string FindModelFile(const Options& options, const std::string& name);

// ".yin", ".yang", or empty for a name that ends otherwise.
std::string_view ModelEnding(const std::string& file);

// The module that a file is named for: without folder, revision and ending.
std::string ModelName(const std::string& file);

bool IsSameFile(const std::string& a, const std::string& b);

// The names of all modules in the directories whose files end so, in order.
std::vector<std::string> ModelNames(const Options& options, std::string_view ending);
