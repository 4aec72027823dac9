// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>
#include <vector>

// Exit statuses; when several apply, the greatest is given.
enum ExitStatus : int { kExitOk = 0, kExitInvalid = 1, kExitUsage = 2, kExitUnusable = 3 };

// A feature to enable; "*" stands for all of the module.
struct FeatureRef {
  std::string module;
  std::string feature;
};

// One call of the program, as its arguments say it.
struct Options {
  std::string command;
  bool help = false;
  bool version = false;
  std::vector<std::string> searchDirs;
  std::vector<std::string> modules;
  std::vector<std::string> unloads;
  std::vector<FeatureRef> features;
  std::vector<std::string> operands;  // without the command
  uint32_t loadFlags = 0;
};

// Reads the arguments. False, with one line on standard error, on wrong usage.
bool ParseArguments(int argc, char** argv, Options* options);

// One line on standard error that begins with the program's name.
void PrintError(const char* format, ...) __attribute__((format(printf, 1, 2)));
