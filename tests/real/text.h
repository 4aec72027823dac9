// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

// Reading the real-world files.

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

inline std::vector<std::string> Split(const std::string& line, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(line);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}
