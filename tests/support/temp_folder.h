// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

namespace temp_folder {

// A directory with a name that nobody else has, neither another process nor what one
// left behind. It is removed with all its files at the end.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string Path(const std::string& file) const;
  const char* Dir() const { return dir_.c_str(); }
  void Write(const std::string& file, const std::string& text) const;
  void MakeDir(const std::string& name) const;

 private:
  std::string dir_;
};

}  // namespace temp_folder
