// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <vector>

namespace compiler {

// Appends the paths of the regular files in a directory, with those in its sub-folders
// when `recursive`, in no order. Links are followed to files, not to folders; what cannot
// be looked at is passed over. False: the directory itself cannot be listed.
bool ListFiles(const std::string& folder, bool recursive, std::vector<std::string>* paths);

}  // namespace compiler
