// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

// A folder of model files that lives as long as the test.
class ModelDir {
 public:
  ModelDir() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
  }
  ~ModelDir() { std::filesystem::remove_all(path_); }
  ModelDir(const ModelDir&) = delete;
  ModelDir& operator=(const ModelDir&) = delete;
  void Write(const std::string& file, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(path_ + "/" + file).parent_path());
    std::ofstream(path_ + "/" + file) << text;
  }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};
