// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What is done only for a person at a terminal.
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

// Colours on standard output: it is a terminal that has some, and NO_COLOR is not set.
bool UseColours();

// The lines of a tree with colours for access, types and features.
std::string PaintTree(std::string_view tree);

// From one second of its life on, a line on standard error says that something is under way
// and for how long; nothing where that is no terminal. The line goes with the object.
class Progress {
 public:
  explicit Progress(const char* what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  void Run();

  const char* what_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool done_ = false;
  std::thread thread_;
};
