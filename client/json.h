// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <string_view>

// A JSON string with its quotes; bytes that are no UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);

// The same, or null for NULL.
std::string JsonOrNull(const char* text);

// An array, printed with a line for each item, so that it can be read by eye, too.
class JsonArray {
 public:
  void Add(const std::string& item);
  void Print() const;

 private:
  std::string text_;
};
