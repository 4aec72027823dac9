// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace temp_folder {

Folder::Folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "qmodel-XXXXXX").string();
  if (mkdtemp(pattern.data()) != nullptr) dir_ = pattern;
  EXPECT_FALSE(dir_.empty()) << "no directory for the files of the test";
}

Folder::~Folder() {
  std::error_code ignored;
  if (!dir_.empty()) std::filesystem::remove_all(dir_, ignored);
}

std::string Folder::Path(const std::string& file) const {
  return dir_ + "/" + file;
}

void Folder::Write(const std::string& file, const std::string& text) const {
  std::ofstream out(Path(file), std::ios::binary);
  out << text;
  EXPECT_TRUE(out.good());
}

void Folder::MakeDir(const std::string& name) const {
  EXPECT_TRUE(std::filesystem::create_directory(Path(name)));
}

}  // namespace temp_folder
