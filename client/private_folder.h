// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// A folder for files that only this process is to see. It goes with its object.
#include <string>
#include <string_view>
#include <vector>

class PrivateFolder {
 public:
  PrivateFolder() = default;
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  // Makes the folder. False, with the reason on standard error.
  bool Make();
  // Writes a file in it. False, with the reason on standard error.
  bool Write(const std::string& name, std::string_view content);
  // Removes the folder and what was written, as a handler of signals may.
  void Remove() const noexcept;
  const std::string& path() const { return path_; }

 private:
  std::string path_;  // empty: not made
  std::vector<std::string> files_;
};
